#!/usr/bin/python3
"""Spice raw files written by ngspice at test time, read through zelwave-cli info, dump and at.

The oracles: the ascii file of the same run, and the binary block read with numpy. Float32 and
big-endian copies are made with numpy. Skips (with a message) only when ngspice is absent."""
import io
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import numpy as np
import pandas as pd

CLI = None
NETLISTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "raw")
NGSPICE = shutil.which("ngspice")


def slurp(path, mode="rb"):
    with open(path, mode) as f:
        return f.read()


def run(*arguments):
    result = subprocess.run([CLI, *arguments], capture_output=True, text=True, timeout=300)
    return result.returncode, result.stdout, result.stderr


def dump(*arguments):
    code, out, err = run("dump", *arguments)
    if code != 0:
        raise AssertionError("dump %s failed: %s" % (arguments, err))
    return pd.read_csv(io.StringIO(out), dtype=float, float_precision="round_trip")


def dump_complex(*arguments):
    code, out, err = run("dump", *arguments)
    if code != 0:
        raise AssertionError("dump %s failed: %s" % (arguments, err))
    return pd.read_csv(io.StringIO(out), float_precision="round_trip")


def simulate(folder, netlist, raw, ascii=False):
    """Runs ngspice on a netlist of tests/cli/raw in folder; returns the raw file's path."""
    shutil.copy(os.path.join(NETLISTS, netlist), folder)
    env = dict(os.environ)
    if ascii:
        env["SPICE_ASCIIRAWFILE"] = "1"
    command = [NGSPICE, "-b", netlist] if raw is None else [NGSPICE, "-b", "-r", raw, netlist]
    # A control block's loop may end ngspice with status 1 in batch mode: the file decides.
    result = subprocess.run(command, cwd=folder, env=env, capture_output=True, timeout=300)
    path = os.path.join(folder, raw if raw else "runs.raw")
    if not os.path.exists(path):
        raise AssertionError("ngspice wrote no %s: %s" % (path, result.stderr.decode(errors="replace")))
    return path


def read_binary(path):
    """The plots of a binary raw file as (header lines, variable names, rows as an array)."""
    data = slurp(path)
    plots, position = [], 0
    while position < len(data):
        start = data.index(b"Binary:\n", position) + len("Binary:\n")
        header = data[position:start].decode()
        count = int(re.search(r"No\. Variables:\s*(\d+)", header).group(1))
        points = int(re.search(r"No\. Points:\s*(\d+)", header).group(1))
        complex_ = "complex" in re.search(r"Flags:(.*)", header).group(1)
        names = re.findall(r"^\s+\d+\s+(\S+)\s+\S+", header.split("\nVariables:")[1], re.M)[:count]
        width = count * (16 if complex_ else 8)
        rows = np.frombuffer(data[start:start + points * width], dtype="<f8").reshape(points, -1)
        if complex_:
            rows = rows[:, 0::2] + 1j * rows[:, 1::2]
        plots.append((header, names, rows))
        position = start + points * width
    return plots


def rewrite(path, target, dtype, float_header=False):
    """A copy of a one-plot binary raw file with its values stored as dtype (numpy)."""
    data = slurp(path)
    start = data.index(b"Binary:\n") + len("Binary:\n")
    header = data[:start]
    if float_header:
        header = header.replace(b"Flags: real", b"Flags: real (float)")
    values = np.frombuffer(data[start:], dtype="<f8")
    with open(target, "wb") as f:
        f.write(header + values.astype(dtype).tobytes())
    return values


@unittest.skipIf(NGSPICE is None, "ngspice is not installed: the raw file tests need it to write their files")
class RawFiles(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.dir = self.folder.name

    def tearDown(self):
        self.folder.cleanup()

    def path(self, name):
        return os.path.join(self.dir, name)

    def test_transient_binary_and_ascii_agree_and_match_numpy(self):
        binary = simulate(self.dir, "rc_tran.cir", "tran.raw")
        text = simulate(self.dir, "rc_tran.cir", "tran_ascii.raw", ascii=True)
        header, names, rows = read_binary(binary)[0]
        code, out, err = run("info", binary)
        self.assertEqual(code, 0, err)
        self.assertIn("nutmeg binary, 1 section", out)
        self.assertIn('sweep "time" [Second] %d points' % len(rows), out)
        # Names of the instance tree come through as written: x1.m lies in the subcircuit.
        for name in names[1:]:
            self.assertIn('curve "%s"' % name, out)
        self.assertTrue(any(name.startswith("v(x1.") for name in names), names)
        code, out, err = run("info", text)
        self.assertEqual(code, 0, err)
        self.assertIn("nutmeg ascii, 1 section", out)
        for k, name in enumerate(names[1:], start=1):
            b = dump(binary, name)
            a = dump(text, name)
            np.testing.assert_array_equal(b.iloc[:, 0].to_numpy(), rows[:, 0], err_msg=name)
            np.testing.assert_array_equal(b.iloc[:, 1].to_numpy(), rows[:, k], err_msg=name)
            np.testing.assert_allclose(a.to_numpy(), b.to_numpy(), rtol=1e-15, atol=0, err_msg=name)
        # The value at x as a cursor reads it: linear between the samples around it.
        x = 0.5 * (rows[10, 0] + rows[11, 0])
        code, out, err = run("at", binary, "v(out)", repr(x))
        self.assertEqual(code, 0, err)
        got = float(out.strip().splitlines()[-1].split(",")[-1])
        self.assertAlmostEqual(got, float(np.interp(x, rows[:, 0], rows[:, 2])), delta=1e-12)

    def test_ac_complex_curves_over_a_real_frequency_axis(self):
        binary = simulate(self.dir, "rc_ac.cir", "ac.raw")
        text = simulate(self.dir, "rc_ac.cir", "ac_ascii.raw", ascii=True)
        header, names, rows = read_binary(binary)[0]
        code, out, err = run("info", binary)
        self.assertEqual(code, 0, err)
        self.assertIn('sweep "frequency" [Hz] %d points' % len(rows), out)
        self.assertIn('curve "v(out)" [V] %d points, complex' % len(rows), out)
        k = names.index("v(out)")
        for path in (binary, text):
            got = dump_complex(path, "v(out)")
            self.assertEqual(list(got.columns), ["frequency", "v(out)", "imag"])
            np.testing.assert_allclose(got["frequency"].to_numpy(), rows[:, 0].real, rtol=1e-15, atol=0)
            np.testing.assert_allclose(got["v(out)"].to_numpy() + 1j * got["imag"].to_numpy(), rows[:, k],
                                       rtol=1e-15, atol=1e-300)
        # An RC low pass: |H| = 1 / sqrt(1 + (w R C)^2), from numpy, not from the simulator.
        f = rows[:, 0].real
        np.testing.assert_allclose(np.abs(rows[:, k]), 1 / np.sqrt(1 + (2 * np.pi * f * 1e3 * 1e-9) ** 2), rtol=1e-6)
        code, out, err = run("at", "--magnitude", binary, "v(out)", repr(f[5]))
        self.assertEqual(code, 0, err)
        self.assertAlmostEqual(float(out.strip().splitlines()[-1].split(",")[-1]), abs(rows[5, k]), delta=1e-12)

    def test_dc_sweep_and_runs_appended_to_one_file(self):
        dc = simulate(self.dir, "dc_sweep.cir", "dc.raw")
        header, names, rows = read_binary(dc)[0]
        # v2 steps over 0, 1, 2 while v1 sweeps 0 .. 1: a matrix of 3 cuts named by v(ref).
        code, out, err = run("info", dc)
        self.assertEqual(code, 0, err)
        self.assertIn('sweep "v(ref)" [V] 3 points\n  sweep "%s" [V] 5 points' % names[0], out)
        got = dump(dc, "v(out)")
        self.assertEqual(list(got.columns), ["v(ref)", names[0], "v(out)"])
        np.testing.assert_array_equal(got.iloc[:, 0].to_numpy(), rows[:, names.index("v(ref)")])
        np.testing.assert_array_equal(got.iloc[:, 1].to_numpy(), rows[:, 0])
        np.testing.assert_array_equal(got.iloc[:, -1].to_numpy(), rows[:, names.index("v(out)")])
        # Every value of the divider: (v1 + v2) / 2.
        np.testing.assert_allclose(rows[:, names.index("v(out)")],
                                   (rows[:, names.index("v(in)")] + rows[:, names.index("v(ref)")]) / 2, atol=1e-9)
        runs = simulate(self.dir, "runs.cir", None)
        plots = read_binary(runs)
        self.assertEqual(len(plots), 3)
        code, out, err = run("info", runs)
        self.assertEqual(code, 0, err)
        self.assertIn("3 sections", out)
        for n in (1, 2, 3):
            self.assertIn(", run %d\n" % n, out)
        for s, (header, names, rows) in enumerate(plots):
            got = dump("--section", str(s), runs, "v(out)")
            np.testing.assert_array_equal(got.iloc[:, 0].to_numpy(), rows[:, 0])
            np.testing.assert_array_equal(got.iloc[:, 1].to_numpy(), rows[:, names.index("v(out)")])

    def test_several_analyses_and_every_cut_of_the_file(self):
        for ascii in (False, True):
            path = simulate(self.dir, "three_analyses.cir", "three_%d.raw" % ascii, ascii=ascii)
            code, out, err = run("info", path)
            self.assertEqual(code, 0, err)
            self.assertIn("3 sections", out)
            for name in ("AC Analysis", "DC transfer characteristic", "Transient Analysis"):
                self.assertIn(name, out)
            # Cut anywhere, the file opens with what it holds or is refused: never a crash.
            data = slurp(path)
            step = max(1, len(data) // 80)
            for size in list(range(1, len(data), step)) + [len(data) - 1]:
                cut = self.path("cut.raw")
                with open(cut, "wb") as f:
                    f.write(data[:size])
                code, out, err = run("info", cut)
                self.assertIn(code, (0, 1), "cut at %d of %d: %s" % (size, len(data), err))
                if code == 0 and size < len(data) - 1:
                    self.assertIn("(read partially)", out, "cut at %d" % size)

    def test_float_and_big_endian_copies_load_to_their_precision(self):
        binary = simulate(self.dir, "rc_tran.cir", "tran.raw")
        header, names, rows = read_binary(binary)[0]
        k = names.index("v(out)")
        want = rows[:, k]
        for name, dtype, marked in (("be64.raw", ">f8", False), ("le32.raw", "<f4", False),
                                    ("be32.raw", ">f4", False), ("le32_marked.raw", "<f4", True)):
            rewrite(binary, self.path(name), dtype, float_header=marked)
            got = dump(self.path(name), "v(out)")
            if dtype.endswith("8"):
                np.testing.assert_array_equal(got.iloc[:, 1].to_numpy(), want, err_msg=name)
                np.testing.assert_array_equal(got.iloc[:, 0].to_numpy(), rows[:, 0], err_msg=name)
            else:
                np.testing.assert_array_equal(got.iloc[:, 1].to_numpy(), want.astype(np.float32).astype(float),
                                              err_msg=name)
                np.testing.assert_array_equal(got.iloc[:, 0].to_numpy(), rows[:, 0].astype(np.float32).astype(float),
                                              err_msg=name)

    def test_bad_input_keeps_what_can_be_read(self):
        binary = simulate(self.dir, "rc_tran.cir", "tran.raw")
        data = slurp(binary)
        header, names, rows = read_binary(binary)[0]
        start = data.index(b"Binary:\n") + len("Binary:\n")
        stride = len(names) * 8

        def write(name, content):
            with open(self.path(name), "wb") as f:
                f.write(content)
            return self.path(name)

        # A header that breaks off inside the variable list: no plot, a clear message.
        code, out, err = run("info", write("cut_header.raw", data[:data.index(b"Variables:") + 30]))
        self.assertEqual(code, 1)
        self.assertIn("Nutmeg Parser failed.", err)
        # More variables promised than listed.
        wrong = data.replace(b"No. Variables: %d" % len(names), b"No. Variables: %d" % (len(names) + 1))
        code, out, err = run("info", write("wrong_count.raw", wrong))
        self.assertEqual(code, 1)
        self.assertIn("spi3 parser : incoherent nb of variables", err)
        # A header promising more points than the file holds, cut in the middle of a row: the
        # whole rows are kept.
        cut = data[:start + 40 * stride + stride // 2]
        code, out, err = run("info", write("cut_row.raw", cut))
        self.assertEqual(code, 0, err)
        self.assertIn("(read partially)", out)
        self.assertIn('sweep "time" [Second] 40 points', out)
        got = dump(self.path("cut_row.raw"), "v(out)")
        np.testing.assert_array_equal(got.iloc[:, 1].to_numpy(), rows[:40, names.index("v(out)")])
        # The header's count is wrong in the other direction: the file decides.
        fewer = data.replace(b"No. Points: %d" % len(rows), b"No. Points: %d" % 7)
        code, out, err = run("info", write("fewer.raw", fewer))
        self.assertEqual(code, 0, err)
        self.assertIn('sweep "time" [Second] %d points' % len(rows), out)
        # An absurd count in an ascii header sizes nothing: the rows decide.
        text_path = simulate(self.dir, "rc_tran.cir", "tran_ascii.raw", ascii=True)
        absurd = re.sub(r"No\. Points:\s*\d+", "No. Points: 999999999999", slurp(text_path, "r"), count=1)
        code, out, err = run("info", write("absurd.raw", absurd.encode()))
        self.assertEqual(code, 0, err)
        self.assertIn('sweep "time" [Second] %d points' % len(rows), out)
        # An ascii row without its last value, and a complex value without its comma.
        text = slurp(simulate(self.dir, "rc_tran.cir", "tran_ascii.raw", ascii=True), "r")
        lines = text.splitlines(keepends=True)
        first_row = next(i for i, line in enumerate(lines) if line.startswith("Values:")) + 1
        cut_text = "".join(lines[:first_row + 5 * len(names) + 2])
        code, out, err = run("info", write("cut_ascii.raw", cut_text.encode()))
        self.assertEqual(code, 0, err)
        self.assertIn("(read partially)", out)
        self.assertIn('sweep "time" [Second] 5 points', out)
        self.assertIn("Nutmeg Parser : skipping inconsistent entries.", err)
        ac = slurp(simulate(self.dir, "rc_ac.cir", "ac_ascii.raw", ascii=True), "r")
        # Four values a row: the second value of the third row loses its comma.
        broken = re.sub(r"(Values:\n(?:.*\n){%d})\t([-0-9.e+]+),([-0-9.e+]+)" % (2 * 4 + 1), r"\1\t\2 \3", ac, count=1)
        self.assertNotEqual(broken, ac)
        code, out, err = run("info", write("no_comma.raw", broken.encode()))
        self.assertEqual(code, 0, err)
        self.assertIn('sweep "frequency" [Hz] 2 points', out)
        # Random bytes after a valid header: never a crash, and a clear outcome.
        rng = np.random.default_rng(12)
        for seed in range(5):
            noise = rng.integers(0, 256, 4000 + seed * 37, dtype=np.uint8).tobytes()
            for name, head in (("noise_bin.raw", data[:start]), ("noise_ascii.raw", lines_head(text))):
                code, out, err = run("info", write(name, head + noise))
                # Noise makes sense in no layout, and is no ascii row: the file is refused.
                self.assertEqual(code, 1, out + err)
                self.assertIn("Nutmeg Parser failed.", err)
                if name == "noise_bin.raw":
                    self.assertIn("fit none of the known layouts", err)


def lines_head(text):
    return text[:text.index("Values:\n") + len("Values:\n")].encode()


if __name__ == "__main__":
    CLI = sys.argv.pop(1)
    unittest.main(verbosity=2)
