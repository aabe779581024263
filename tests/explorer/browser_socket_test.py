#!/usr/bin/python3
"""The curve browser of the running program, driven over the interactive socket: filters, the order
of levels, the style of runs and the search row's messages, read back as the rows the browser
shows ("browser_action rows")."""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "app"))
import socket_session_test as session  # noqa: E402  (the listening peer of the socket tests)


def values(reply):
    """The quoted values of a reply line '0 "a" "b"', unescaped."""
    status, _, rest = reply.partition(" ")
    out, current, inside, escaped = [], "", False, False
    for ch in rest:
        if escaped:
            current += ch
            escaped = False
        elif ch == "\\" and inside:
            escaped = True
        elif ch == '"':
            if inside:
                out.append(current)
                current = ""
            inside = not inside
        elif inside:
            current += ch
    return status, out


# Three runs of a step response as a simulator's text export writes them.
STEPS = ("time\tV(out)\tx1.I(R1)\n"
         "Step Information: R=1k C=1n (Run: 1/3)\n0\t0\t1\n1e-6\t0.5\t2\n"
         "Step Information: R=2k C=1n (Run: 2/3)\n0\t0\t1\n1e-6\t0.4\t2\n"
         "Step Information: R=4k C=2n (Run: 3/3)\n0\t0\t1\n1e-6\t0.3\t2\n")

NETLIST = """rc filter
V1 in 0 DC 0 AC 1 PULSE(0 1 0 1n 1n 5u 10u)
R1 in x1.out 1k
C1 x1.out 0 1n
.tran 50n 5u
.ac dec 5 1k 10meg
.end
"""


class BrowserOverSocket(unittest.TestCase):
    def setUp(self):
        self.dir = tempfile.TemporaryDirectory(prefix="zelwave-browser-")
        self.peer = session.Peer(self.dir.name)
        self.assertEqual(self.peer.line(), "0", "the ready line comes first")

    def tearDown(self):
        self.peer.close()
        self.dir.cleanup()

    def write(self, name, text):
        path = os.path.join(self.dir.name, name)
        with open(path, "w") as f:
            f.write(text)
        return path

    def rows(self):
        status, rows = values(self.peer.ask("browser_action rows"))
        self.assertEqual(status, "0")
        return rows

    def open(self, path, count):
        # Files load in the background ("2": queued): the rows are awaited, never a fixed time.
        self.assertEqual(self.peer.ask('open_file "%s"' % path), "2")
        self.assertTrue(session.wait_until(lambda: len(self.rows()) >= count), self.rows())

    def test_run_parameter_filters_order_and_style(self):
        self.open(self.write("steps.txt", STEPS), 6)
        self.assertEqual(self.rows(), [
            "steps.txt | steps.txt | tran | 1000, 1e-09 |  | V(out) | V | 2",
            "steps.txt | steps.txt | tran | 1000, 1e-09 | x1 | I(R1) |  | 2",
            "steps.txt | steps.txt | tran | 2000, 1e-09 |  | V(out) | V | 2",
            "steps.txt | steps.txt | tran | 2000, 1e-09 | x1 | I(R1) |  | 2",
            "steps.txt | steps.txt | tran | 4000, 2e-09 |  | V(out) | V | 2",
            "steps.txt | steps.txt | tran | 4000, 2e-09 | x1 | I(R1) |  | 2"])
        ask = self.peer.ask
        # A discrete filter hides one run; a number filter on another parameter hides more.
        self.assertEqual(ask("set_browser_run_parameter_filter R 2000 0"), "0")
        self.assertEqual([r.split(" | ")[3] for r in self.rows()], ["1000, 1e-09"] * 2 + ["4000, 2e-09"] * 2)
        self.assertEqual(ask("set_browser_run_parameter_number_filter C 1.5e-9 nan nan nan"), "0")
        self.assertEqual([r.split(" | ")[3] for r in self.rows()], ["4000, 2e-09"] * 2)
        # Maximum below minimum: only what lies outside 0.5n .. 1.5n passes, and R=2000 is back.
        self.assertEqual(ask("set_browser_run_parameter_number_filter C 1.5e-9 0.5e-9 nan nan"), "0")
        self.assertEqual(ask("set_browser_run_parameter_filter R 2000 1"), "0")
        self.assertEqual([r.split(" | ")[3] for r in self.rows()], ["4000, 2e-09"] * 2)
        self.assertEqual(ask("set_browser_run_parameter_number_filter C nan nan nan nan"), "0")
        self.assertEqual(len(self.rows()), 6)
        # Names and values, C first.
        self.assertEqual(ask("set_browser_run_parameter_style names"), "0")
        self.assertEqual(ask("set_browser_run_parameter_order C"), "0")
        self.assertEqual(self.rows()[0].split(" | ")[3], "C=1e-09, R=1000")
        self.assertEqual(ask("set_browser_run_parameter_style fancy"), "1")
        # Full hierarchical names: no instance level, the curve shows whole.
        self.assertEqual(ask("set_gui_option browser_use_full_hierarchical_names 1"), "0")
        self.assertEqual(self.rows()[1], "steps.txt | steps.txt | tran | C=1e-09, R=1000 | x1.I(R1) |  | 2")
        # Curve name as the top level: each curve gathers its runs.
        self.assertEqual(ask('set_browser_item_order "Curve name" "Section run index or parameter"'), "0")
        self.assertEqual([r.split(" | ")[:2] for r in self.rows()[:4]],
                         [["V(out)", "C=1e-09, R=1000"], ["V(out)", "C=1e-09, R=2000"],
                          ["V(out)", "C=2e-09, R=4000"], ["x1.I(R1)", "C=1e-09, R=1000"]])
        self.assertEqual(ask('set_browser_item_order "Curve name" "no such level"'), "1")
        self.assertIn('Unknown browser item "no such level".', self.peer.log_text())
        self.assertEqual(ask("set_browser_default_item_order"), "0")
        self.assertEqual(self.rows()[0].split(" | ")[0], "steps.txt")

    def test_rules_are_kept_over_a_restart(self):
        steps = self.write("steps.txt", STEPS)
        self.open(steps, 6)
        ask = self.peer.ask
        self.assertEqual(ask('set_browser_item_order "Curve name" "Section run index or parameter"'), "0")
        self.assertEqual(ask("set_browser_run_parameter_filter R 2000 0"), "0")
        self.assertEqual(ask("set_browser_run_parameter_number_filter C nan 1.5e-9 nan nan"), "0")
        self.assertEqual(ask("set_browser_run_parameter_style names"), "0")
        self.assertEqual(ask("set_browser_run_parameter_order C"), "0")
        before = self.rows()
        # The curve level first (its instance just before it), one run left, written by names, C first.
        self.assertEqual([r.split(" | ")[:2] for r in before], [["", "V(out)"], ["x1", "I(R1)"]])
        self.assertTrue(all("C=1e-09, R=1000" in r.split(" | ") for r in before), before)
        # Closing saves the changed rules; the next start with the same HOME reads them back.
        self.peer.connection.sendall(b"close\n")
        self.assertEqual(self.peer.process.wait(timeout=session.DEADLINE), 0)
        self.peer.close()
        self.peer = session.Peer(self.dir.name)
        self.assertEqual(self.peer.line(), "0")
        self.open(steps, 2)
        self.assertEqual(self.rows(), before)
        self.assertIn("Loaded browser from ", self.peer.log_text())

    def test_sweep_variable_filters_on_a_table_with_a_parameter_column(self):
        table = "R,time,v(out)\n" + "".join(
            "%g,%g,%g\n" % (r, k * 1e-6, k * 0.1) for r in (1000.0, 2000.0, 4000.0) for k in range(5))
        self.open(self.write("runs.csv", table), 3)
        self.assertEqual([r.split(" | ")[2] for r in self.rows()], ["R=1000", "R=2000", "R=4000"])
        self.assertEqual(self.peer.ask("set_browser_sweep_variable_filter R 2000 0"), "0")
        self.assertEqual([r.split(" | ")[2] for r in self.rows()], ["R=1000", "R=4000"])
        self.assertEqual(self.peer.ask("set_browser_sweep_variable_number_filter 1500 5000 nan nan"), "0")
        self.assertEqual([r.split(" | ")[2] for r in self.rows()], ["R=4000"])

    def test_search_messages(self):
        self.open(self.write("steps.txt", STEPS), 6)
        ask = lambda command: values(self.peer.ask(command))[1]
        self.assertEqual(ask("browser_action search out 0 0 0 1"), ["Please select an instance.", ""])
        self.assertEqual(ask("browser_action search nothing"), ["No matching curve found.", ""])
        self.assertEqual(ask("browser_action find_next"), ["No matching curve found.", ""])
        # Three matches, case-insensitive, found through the full name "x1.I(R1)".
        self.assertEqual(ask("browser_action search X1.i"), ["", "x1.I(R1)"])
        self.assertEqual(ask("browser_action find_next"), ["", "x1.I(R1)"])
        self.assertEqual(ask("browser_action find_next"), ["", "x1.I(R1)"])
        self.assertEqual(ask("browser_action find_next"), ["End of forward search reached.", "x1.I(R1)"])
        self.assertEqual(ask("browser_action find_previous"), ["", "x1.I(R1)"])
        self.assertEqual(ask("browser_action find_previous"), ["", "x1.I(R1)"])
        self.assertEqual(ask("browser_action find_previous"), ["End of backward search reached.", "x1.I(R1)"])
        self.assertEqual(ask("browser_action search X1.i 1"), ["No matching curve found.", "x1.I(R1)"])
        # Wild cards match the whole name; wrap goes on from the other end.
        self.assertEqual(ask("browser_action search v(*) 0 1 1"), ["", "V(out)"])
        self.assertEqual(ask("browser_action find_next"), ["", "V(out)"])
        self.assertEqual(ask("browser_action find_next"), ["", "V(out)"])
        self.assertEqual(ask("browser_action find_next"),
                         ["End of forward search reached, continuing from top.", "V(out)"])
        self.assertEqual(ask("browser_action find_previous"),
                         ["End of backward search reached, continuing from bottom.", "V(out)"])
        self.assertEqual(ask("browser_action search v(*x 0 1 1"), ["No matching curve found.", "V(out)"])
        # The selected instance is the group of the current curve: one run's two curves.
        self.assertEqual(ask("browser_action search x1 0 0 0 0"), ["", "x1.I(R1)"])
        self.assertEqual(ask("browser_action search v(out) 0 0 1 1"), ["", "V(out)"])
        self.assertEqual(ask("browser_action find_next"),
                         ["End of forward search reached, continuing from top.", "V(out)"])
        self.assertEqual(ask("browser_action bogus"), [])

    @unittest.skipUnless(shutil.which("ngspice"), "ngspice is not installed")
    def test_analysis_levels_from_ngspice(self):
        self.write("rc.cir", NETLIST)
        raw = os.path.join(self.dir.name, "rc.raw")
        subprocess.run(["ngspice", "-b", "-r", raw, "rc.cir"], cwd=self.dir.name, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, timeout=120)
        self.assertTrue(os.path.exists(raw))
        self.open(raw, 6)
        rows = self.rows()
        self.assertEqual(sorted({r.split(" | ")[2] for r in rows}), ["ac", "tran"])
        # A dot inside brackets does not split the name into an instance.
        self.assertIn("v(x1.out)", [r.split(" | ")[3] for r in rows])
        self.assertEqual(self.peer.ask('set_browser_item_order "Analysis type" "Curve name"'), "0")
        self.assertEqual([r.split(" | ")[0] for r in self.rows()], ["ac"] * 3 + ["tran"] * 3)
        # Reloading the file keeps the rows as they were.
        before = self.rows()
        self.assertEqual(self.peer.ask('reload_file "%s"' % values(self.peer.ask("get_section_name 0"))[1][0]), "0")
        self.assertTrue(session.wait_until(lambda: self.rows() == before), self.rows())


if __name__ == "__main__":
    session.PROGRAM = sys.argv.pop(1)
    unittest.main(verbosity=2)
