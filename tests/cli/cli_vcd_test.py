#!/usr/bin/python3
"""Value change dumps written at test time by real simulators, read through zelwave-cli.

Oracles: the test benches' own printed values (iverilog's $display, ghdl's report), and the same
dump after a round trip through gtkwave's vcd2fst and fst2vcd, which rewrites every line.
usage: cli_vcd_test.py ZELWAVE_CLI SOURCE_DIR
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

CLI = None
INPUTS = None


def run(*arguments, cwd=None):
    result = subprocess.run([CLI, *arguments], capture_output=True, text=True, timeout=300, cwd=cwd)
    return result.returncode, result.stdout, result.stderr


def changes(path, curve):
    """The (time in ticks, state) records of a digital curve."""
    code, out, err = run("dump", "--ticks", path, curve)
    if code != 0:
        raise AssertionError("dump %s %s failed: %s" % (path, curve, err))
    lines = out.strip().split("\n")[1:]
    return [(int(t), v) for t, v in (line.split(",", 1) for line in lines)]


def all_changes(path):
    """Every digital curve's records, by name."""
    code, out, err = run("dump", "--ticks", "--all-logic", path)
    if code != 0:
        raise AssertionError("dump --all-logic %s failed: %s" % (path, err))
    result = {}
    for line in out.strip().split("\n")[1:]:
        name, time, state = line.rsplit(",", 2)
        result.setdefault(name, []).append((int(time), state))
    return result


def state_at(records, time):
    state = None
    for t, v in records:
        if t > time:
            break
        state = v
    return state


def distinct_runs(records):
    """The records without repeats of the same state: what a value change means."""
    result = []
    for t, v in records:
        if not result or result[-1][1] != v:
            result.append((t, v))
    return result


def curve_names(path):
    code, out, err = run("info", path)
    if code != 0:
        raise AssertionError("info %s failed: %s" % (path, err))
    return re.findall(r'^  curve "([^"]+)"', out, re.M)


def need(*tools):
    missing = [tool for tool in tools if not shutil.which(tool)]
    if missing:
        raise unittest.SkipTest("not installed: %s (scripts/install-deps installs them)" % ", ".join(missing))


class Simulators(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.dir = self.folder.name

    def tearDown(self):
        self.folder.cleanup()

    def iverilog_counter(self):
        need("iverilog", "vvp")
        subprocess.run(["iverilog", "-o", "tb.vvp", os.path.join(INPUTS, "counter_tb.v")], cwd=self.dir, check=True)
        shown = subprocess.run(["vvp", "tb.vvp"], cwd=self.dir, check=True, capture_output=True, text=True).stdout
        return os.path.join(self.dir, "counter.vcd"), shown

    def test_iverilog_names_scopes_widths_and_values(self):
        path, shown = self.iverilog_counter()
        code, out, err = run("info", path)
        self.assertEqual(code, 0, err)
        for line in ('curve "tb.count[7:0]" [Logic] 12 points, logic vector of 8',
                     'curve "tb.nib[3:0]" [Logic] 4 points, logic vector of 4', 'curve "tb.t1.q" [Logic]',
                     'curve "tb.level" []', 'sweep "time" [time]'):
            self.assertIn(line, out)
        code, tree, err = run("info", "--tree", path)
        self.assertEqual(code, 0, err)
        self.assertRegex(tree, r"\n  tb/ \(module\)\n(    tb\.[^\n]+\n)+    tb\.t1/ \(module\)\n      tb\.t1\.clk\n      tb\.t1\.q\n")

        # Every value the test bench printed is the dump's state at that time, except while
        # dumping was off (33 ns to 53 ns), where the dump says unknown.
        records = {name: changes(path, name) for name in ("tb.count[7:0]", "tb.half", "tb.t1.q")}
        checked = 0
        for time, name, value in re.findall(r"^T (\d+) (count|half) (\S+)$", shown, re.M):
            time = int(time)
            curve = "tb.count[7:0]" if name == "count" else "tb.half"
            expected = "x" * len(value) if 33000 <= time < 53000 else value
            self.assertEqual(state_at(records[curve], time), expected, "%s at %d" % (curve, time))
            checked += 1
        self.assertGreater(checked, 15)
        # A signal seen from two scopes shares its code: both curves hold the same records.
        self.assertEqual(records["tb.half"], records["tb.t1.q"])
        # The unset 4-bit register with the value x1z0 written after $dumpon.
        self.assertEqual(changes(path, "tb.nib[3:0]"), [(0, "xxxx"), (33000, "xxxx"), (53000, "x1z0"), (100000, "x1z0")])

        # Reals: the printed level against dump's x and values, and 'at' between changes.
        code, out, err = run("dump", path, "tb.level")
        self.assertEqual(code, 0, err)
        level = {round(float(t) * 1e12): float(v) for t, v in (l.split(",") for l in out.strip().split("\n")[1:])}
        for time, value in re.findall(r"^T (\d+) level (\S+)$", shown, re.M):
            if not 33000 <= int(time) < 53000:
                self.assertEqual(level[int(time)], float(value))
        code, out, err = run("at", path, "tb.count[7:0]", "4.9e-9", "5e-9", "2.6e-8", "-1")
        self.assertEqual(code, 0, err)
        self.assertEqual([line.split(",")[1] for line in out.split("\n")[1:5]],
                         ["00000000", "00000011", "00001001", "undefined"])
        code, out, err = run("at", "--hex", path, "tb.count[7:0]", "2.6e-8")
        self.assertIn(",09", out)

    def test_fst_round_trip_keeps_every_change(self):
        need("vcd2fst", "fst2vcd")
        path, _ = self.iverilog_counter()
        files = [path]
        # A larger dump with many signals, reals and buses from the project's generator.
        generator = os.environ.get("ZW_VCD_GENERATOR")
        if generator and os.path.exists(generator):
            generated = os.path.join(self.dir, "generated.vcd")
            subprocess.run([generator, generated, "3", "400"], check=True)
            files.append(generated)
        for original in files:
            fst = original + ".fst"
            again = original + ".again.vcd"
            subprocess.run(["vcd2fst", original, fst], check=True, capture_output=True)
            with open(again, "w") as out:
                subprocess.run(["fst2vcd", fst], check=True, stdout=out, stderr=subprocess.DEVNULL)
            names = curve_names(original)
            self.assertEqual(names, curve_names(again))
            first, second = all_changes(original), all_changes(again)
            self.assertGreater(len(first), 5)
            self.assertEqual(sorted(first), sorted(second))
            for name in first:
                # The round trip may drop repeated states: compare the changes themselves.
                self.assertEqual(distinct_runs(first[name]), distinct_runs(second[name]), name)

    def test_ghdl_four_states_load_and_nine_states_are_refused(self):
        need("ghdl")
        source = os.path.join(INPUTS, "shifter_tb.vhd")
        subprocess.run(["ghdl", "-a", "--std=08", source], cwd=self.dir, check=True)
        subprocess.run(["ghdl", "-e", "--std=08", "shifter_tb"], cwd=self.dir, check=True)
        shown = subprocess.run(["ghdl", "-r", "--std=08", "shifter_tb", "--vcd=four.vcd", "--vcd-4states"],
                               cwd=self.dir, check=True, capture_output=True, text=True)
        subprocess.run(["ghdl", "-r", "--std=08", "shifter_tb", "--vcd=nine.vcd"], cwd=self.dir, check=True,
                       capture_output=True)
        four = os.path.join(self.dir, "four.vcd")
        records = changes(four, "shifter_tb.data[7:0]")
        reports = re.findall(r"T (\d+) fs data ([01]+)", shown.stdout + shown.stderr)
        self.assertGreater(len(reports), 8)
        for time, value in reports:
            self.assertEqual(state_at(records, int(time)), value)
        # The unset bit starts unknown and is set at the fourth rising edge.
        late = changes(four, "shifter_tb.late")
        self.assertEqual(late[0], (0, "x"))
        self.assertEqual(distinct_runs(late)[1][1], "1")
        # The 9-state letters of the default form are not 4-state values: the dump is refused
        # with the position of the first one.
        code, out, err = run("info", os.path.join(self.dir, "nine.vcd"))
        self.assertEqual(code, 1)
        self.assertRegex(err, r"Vcd parser, file position \d+ : invalid entry\.")


if __name__ == "__main__":
    CLI = sys.argv[1]
    INPUTS = os.path.abspath(sys.argv[2])
    unittest.main(argv=sys.argv[:1], verbosity=2)
