"""Table pages through the program's own door: command files run offscreen over CSV files that
numpy writes here, the table written back by export_as_data and read with Python's csv module.
Calculator columns are checked against numpy, sorting and moved columns against Python's sorted."""
import csv
import math
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

import numpy as np

PROGRAM = None


class TablePageTest(unittest.TestCase):
    def setUp(self):
        self.dir = tempfile.mkdtemp(prefix="zelwave-table-")
        rng = np.random.default_rng(7)
        n = 60
        self.t = np.cumsum(rng.uniform(1e-6, 1e-3, n))
        self.a = rng.normal(0.0, 2.0, n)
        self.b = rng.integers(0, 4, n).astype(float)  # few values: many ties
        with open(self.path("data.csv"), "w") as f:
            f.write("time,va,vb\n")
            for row in zip(self.t, self.a, self.b):
                f.write(",".join(repr(float(v)) for v in row) + "\n")
        # A second file on a grid of its own, half way between the first one's points.
        self.t2 = (self.t[:-1] + self.t[1:]) / 2
        self.c = np.cos(self.t2 * 3e3)
        with open(self.path("other.csv"), "w") as f:
            f.write("time,vc\n")
            for row in zip(self.t2, self.c):
                f.write(",".join(repr(float(v)) for v in row) + "\n")

    def tearDown(self):
        shutil.rmtree(self.dir, ignore_errors=True)

    def path(self, name):
        return os.path.join(self.dir, name)

    def run_commands(self, commands):
        """Runs the commands (a close is appended) and answers the lines of the log that the
        command file caused."""
        with open(self.path("run.cmd"), "w") as f:
            f.write(commands + "close\n")
        env = dict(os.environ, HOME=self.dir, QT_QPA_PLATFORM="offscreen")
        subprocess.run([PROGRAM, "--log", "run.log", "5", "--command_file", "run.cmd"], cwd=self.dir, env=env,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=300)
        with open(self.path("run.log"), encoding="utf-8", errors="replace") as f:
            log = f.read()
        start = log.find("Reading command file")
        self.assertGreaterEqual(start, 0, log)
        return log[start:]

    def read_table(self, name):
        with open(self.path(name), newline="") as f:
            rows = list(csv.reader(f))
        return rows[0], rows[1:]

    @staticmethod
    def errors(log):
        return [line.split(" - ", 3)[3] for line in log.splitlines() if line.startswith(" - E - ")]

    def test_columns_calculator_sort_and_move(self):
        log = self.run_commands(
            "open_file data.csv\n"
            "add_plot tb table 1 1\n"
            "add_curve_to_plot_by_name tb data.csv va 0\n"
            "add_curve_to_plot_by_index tb data.csv 1 0\n"
            'add_algebraic_curve_to_plot tb "A*B - 3*A + exp(B/4)"\n'
            "export_as_data tb plain.csv\n"
            # vb descending, then va rising among equal vb: vb is moved leftmost, since the
            # leftmost sorting column leads.
            "spreadsheet_sort_column tb 2 down\n"
            "spreadsheet_sort_column tb 1 up\n"
            "spreadsheet_move_column tb 2 0\n"
            "export_as_data tb sorted.csv\n"
            "spreadsheet_sort_column tb 1 none\n"
            "spreadsheet_move_column tb 3 1\n"
            "export_as_data tb moved.csv\n")
        self.assertEqual(self.errors(log), [], log)

        header, rows = self.read_table("plain.csv")
        self.assertEqual(header, ["time", "va", "vb", "A*B - 3*A + exp(B/4)"])
        values = np.array([[float(v) for v in row] for row in rows])
        np.testing.assert_array_equal(values[:, 0], self.t)
        np.testing.assert_array_equal(values[:, 1], self.a)
        np.testing.assert_array_equal(values[:, 2], self.b)
        np.testing.assert_allclose(values[:, 3], self.a * self.b - 3 * self.a + np.exp(self.b / 4), rtol=1e-12)

        header, rows = self.read_table("sorted.csv")
        self.assertEqual(header, ["vb", "time", "va", "A*B - 3*A + exp(B/4)"])
        expected = sorted(range(len(self.t)), key=lambda i: (-self.b[i], self.a[i]))
        self.assertEqual([float(row[1]) for row in rows], [float(self.t[i]) for i in expected])

        # Only vb sorts now, downwards: equal values keep the order of the file.
        header, rows = self.read_table("moved.csv")
        self.assertEqual(header, ["vb", "A*B - 3*A + exp(B/4)", "time", "va"])
        expected = sorted(range(len(self.t)), key=lambda i: -self.b[i])
        self.assertEqual([float(row[2]) for row in rows], [float(self.t[i]) for i in expected])

    def test_interpolation_option_and_inverted_table(self):
        log = self.run_commands(
            "open_file data.csv\n"
            "open_file other.csv\n"
            "add_plot tb table 1 1\n"
            "add_curve_to_plot_by_name tb data.csv va 0\n"
            "add_curve_to_plot other.csv vc tb 0\n"
            "export_as_data tb interpolated.csv\n"
            "set_option spreadsheet_interpolate_missing_values 0\n"
            "export_as_data tb gaps.csv\n"
            "set_option spreadsheet_invert_rows_and_columns 1\n"
            "spreadsheet_sort_column tb 1 up\n"
            "export_as_data tb inverted.csv\n")
        header, rows = self.read_table("interpolated.csv")
        self.assertEqual(header, ["time", "va", "vc"])
        xs = np.array([float(row[0]) for row in rows])
        np.testing.assert_array_equal(xs, np.union1d(self.t, self.t2))
        # vc between its own points is numpy's linear interpolation; outside its range it is blank.
        inside = (xs >= self.t2[0]) & (xs <= self.t2[-1])
        vc = np.array([float(row[2]) if row[2] else math.nan for row in rows])
        np.testing.assert_allclose(vc[inside], np.interp(xs[inside], self.t2, self.c), rtol=1e-9, atol=1e-12)
        self.assertTrue(np.isnan(vc[~inside]).all())
        va = np.array([float(row[1]) for row in rows])
        np.testing.assert_allclose(va, np.interp(xs, self.t, self.a), rtol=1e-9, atol=1e-12)

        _, rows = self.read_table("gaps.csv")
        own_a = {float(v) for v in self.t}
        for row in rows:
            self.assertEqual(row[1] != "", float(row[0]) in own_a, row)

        # The inverted table refuses column commands and still writes its data upright.
        self.assertIn("The table shows its rows and columns inverted: sorting acts on the columns of the upright table.",
                      self.errors(log))
        with open(self.path("gaps.csv")) as gaps, open(self.path("inverted.csv")) as inverted:
            self.assertEqual(gaps.read(), inverted.read())

    def test_bad_input_is_told_and_changes_nothing(self):
        log = self.run_commands(
            "open_file data.csv\n"
            "add_plot tb table 1 1\n"
            "add_plot pl analog\n"
            "add_curve_to_plot_by_name tb data.csv va 0\n"
            "add_curve_to_plot_by_name tb data.csv vb 0\n"
            "export_as_data tb before.csv\n"
            "spreadsheet_sort_column nosuch 1 up\n"
            "spreadsheet_move_column nosuch 1 0\n"
            "spreadsheet_get_nb_sweep_variable_columns nosuch\n"
            "spreadsheet_sort_column pl 1 up\n"
            "spreadsheet_sort_column tb 3 up\n"
            "spreadsheet_sort_column tb 1 sideways\n"
            "spreadsheet_move_column tb 5 0\n"
            "spreadsheet_move_column tb 1 3\n"
            "add_curve_to_plot_by_name tb data.csv nosuch 0\n"
            "add_curve_to_plot_by_index tb data.csv 7 1\n"
            "add_curve_to_plot_by_name tb nosection va 1\n"
            'add_algebraic_curve_to_plot tb "A +* B"\n'
            'add_algebraic_curve_to_plot tb "2 * 3"\n'
            "add_plot tb analog\n"
            "export_as_data tb missing/after.csv\n"
            "export_as_data tb after.csv\n")
        errors = self.errors(log)
        for message in [
                'The plot window "nosuch" was not found.',
                'The plot window "pl" is not a table.',
                "The column index 3 is not in the table (columns 0 to 2).",
                'The sort direction "sideways" is not up, down or none.',
                "The column index 5 is not in the table (columns 0 to 2).",
                "The column position 3 is not in the table (positions 0 to 2).",
                'The curve "nosuch" was not found in section "data.csv".',
                'The curve number 7 was not found in section "data.csv".',
                'The section "nosection" was not found.',
                "The result of the expression evaluation isn't a curve.",
                'The plot window "tb" already exists.',
                'Failed to open file "%s".' % self.path("missing/after.csv")]:
            self.assertIn(message, errors, log)
        self.assertEqual(errors.count('The plot window "nosuch" was not found.'), 3, log)
        # The calculator tells the expression as typed.
        self.assertTrue(any("A +* B" in e for e in errors), errors)
        self.assertFalse(any("waveform(" in e for e in errors), errors)
        with open(self.path("before.csv")) as before, open(self.path("after.csv")) as after:
            self.assertEqual(before.read(), after.read())


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main()
