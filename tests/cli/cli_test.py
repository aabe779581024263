#!/usr/bin/python3
"""zelwave-cli through its own door: exit codes, help texts, checking command files."""
import os
import subprocess
import sys
import tempfile
import unittest
from html.parser import HTMLParser

CLI = None


def run(*arguments):
    result = subprocess.run([CLI, *arguments], capture_output=True, text=True, timeout=60)
    return result.returncode, result.stdout, result.stderr


class CommandLanguage(unittest.TestCase):
    def test_overview_and_usage_errors(self):
        code, out, _ = run("--help")
        self.assertEqual(code, 0)
        self.assertIn("usage: zelwave-cli <subcommand>", out)
        for name in ("help", "check", "doc"):
            self.assertIn("  " + name, out)
        self.assertEqual(run()[0], 2)
        code, _, err = run("frobnicate")
        self.assertEqual(code, 2)
        self.assertIn('unknown subcommand "frobnicate"', err)
        code, out, _ = run("check", "--help")
        self.assertEqual(code, 0)
        self.assertTrue(out.startswith("usage: zelwave-cli check FILE..."))

    def test_help_matches_the_viewer(self):
        code, out, _ = run("help")
        self.assertEqual(code, 0)
        lines = out.splitlines()
        self.assertEqual(len(lines), 315)
        self.assertEqual(lines[0], "help <command>")
        code, out, _ = run("help", "wait")
        self.assertEqual(out.splitlines()[0], "wait <time_in_seconds>")
        self.assertIn("fixed point real value", out)
        code, out, _ = run("help", "set_option", "data_reduction_tolerance")
        self.assertEqual(code, 0)
        self.assertIn("relative error tolerance", out)
        self.assertEqual(run("help", "spreadsheet_move_column")[0], 1)

    def test_check_reports_the_lines_that_do_not_parse(self):
        with tempfile.TemporaryDirectory() as d:
            good = os.path.join(d, "good.cmd")
            bad = os.path.join(d, "bad.cmd")
            with open(good, "w") as f:
                f.write("# comment\nadd_section s\nadd_curve s v 0 V s 0 1 1 2\n\nclose\n")
            with open(bad, "w") as f:
                f.write("add_section s\r\nget_curve_name s x\r\ncomment_start\r\nignored words\r\n"
                        "comment_end\r\nwait -1\r\nno_such_word 1\r\nset_filter p c\r\n")
            code, out, _ = run("check", good)
            self.assertEqual(code, 0, out)
            self.assertIn("0 lines do not parse", out)
            code, out, _ = run("check", good, bad)
            self.assertEqual(code, 1)
            self.assertIn(bad + ":2: get_curve_name s x\n    Interactive Mode: bad 2nd argument.", out)
            self.assertNotIn("ignored words", out)
            self.assertIn(bad + ':6: wait -1\n    Interactive Command "wait -1" : bad 1st argument.', out)
            self.assertIn(bad + ":7: no_such_word 1\n    unknown command word", out)
            self.assertIn("Interactive Mode: bad 3nd argument.", out)
            self.assertIn("4 lines do not parse", out)
            code, _, err = run("check", os.path.join(d, "missing.cmd"))
            self.assertEqual(code, 1)
            self.assertIn("cannot be read", err)

    def test_doc_writes_html_that_parses(self):
        with tempfile.TemporaryDirectory() as d:
            target = os.path.join(d, "reference.html")
            code, out, _ = run("doc", target)
            self.assertEqual(code, 0)

            class Counter(HTMLParser):
                paragraphs = 0

                def handle_starttag(self, tag, attrs):
                    if tag == "p":
                        self.paragraphs += 1

            counter = Counter()
            with open(target) as f:
                counter.feed(f.read())
            self.assertEqual(counter.paragraphs, 315)
            self.assertEqual(run("doc")[0], 2)
            self.assertEqual(run("doc", "/nonexistent/dir/x.html")[0], 1)


if __name__ == "__main__":
    CLI = sys.argv.pop(1)
    unittest.main(verbosity=2)
