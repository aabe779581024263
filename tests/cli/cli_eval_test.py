#!/usr/bin/python3
"""zelwave-cli eval through its door: printed trees, node listings, parse errors and exit codes."""
import subprocess
import sys
import unittest

CLI = None


def run(*arguments):
    result = subprocess.run([CLI, "eval", *arguments], capture_output=True, text=True, timeout=120)
    return result.returncode, result.stdout, result.stderr


class Eval(unittest.TestCase):
    def test_trees(self):
        table = {
            "2*3+4": "(2*3)+4",
            "a*b/c": "a*(b/c)",
            "-a-b-c": "(-(a-b))-c",
            "!a && b": "!(a&&b)",
            "x[1+2]": "(x[1])+2",
            "x[1:2]": "x[1:2]",
            "v(out) - v(in)": "v(out)-v(in)",
            "derivative(waveform(\"tran\", \"v(out)\"))": "derivative(waveform(\"tran\",\"v(out)\"))",
        }
        for text, expected in table.items():
            code, out, err = run("-e", text, "--tree")
            self.assertEqual((code, err), (0, ""), text)
            self.assertEqual(out, expected + "\n", text)

    def test_nodes(self):
        # The negation takes the first operand of the root of what follows it: here "a^b".
        code, out, _ = run("--nodes", "-e", "-a^b + sin(2.5e3, \"s\")")
        self.assertEqual(code, 0)
        self.assertEqual(out.splitlines(), [
            "+",
            "  -",
            "    ^",
            '      name "a"',
            '      name "b"',
            "  sin",
            "    real 2500",
            '    quoted string "s"',
        ])

    def test_errors(self):
        code, out, err = run("-e", "(a,b", "--tree")
        self.assertEqual((code, out), (1, ""))
        self.assertEqual(err, " - E - Failed to parse expression.\n")
        code, out, err = run("-e", "1k", "--tree")
        self.assertEqual((code, out), (1, ""))
        self.assertEqual(err.splitlines(), [" - E - Failed to entirely parse expression.", " - I - 1", " - E - ... k"])
        # Nesting deeper than the parser allows: a message, no crash.
        code, out, err = run("-e", "(" * 60000 + "a" + ")" * 60000, "--tree")
        self.assertEqual((code, out), (1, ""))
        self.assertIn("more than 1000 levels deep", err)
        # Evaluation isn't there yet, and says so.
        code, out, err = run("some.csv", "-e", "a+b")
        self.assertEqual((code, out), (1, ""))
        self.assertIn("not available yet", err)
        self.assertEqual(run("--tree")[0], 2)
        self.assertEqual(run("-e", "a", "-e", "b", "--tree")[0], 2)
        self.assertEqual(run("-e", "a", "--frobnicate")[0], 2)
        code, out, _ = run("--help")
        self.assertEqual(code, 0)
        self.assertTrue(out.startswith("usage: zelwave-cli eval"))


if __name__ == "__main__":
    CLI = sys.argv.pop(1)
    unittest.main()
