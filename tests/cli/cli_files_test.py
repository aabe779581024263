#!/usr/bin/python3
"""zelwave-cli info and dump on tables that numpy and pandas write: the values come back exactly."""
import io
import os
import subprocess
import sys
import tempfile
import unittest

try:
    import numpy as np
    import pandas as pd
except ImportError as missing:
    sys.exit("%s: the oracle needs numpy and pandas for /usr/bin/python3 (Debian packages python3-numpy, "
             "python3-pandas; scripts/install-deps installs them): %s" % (os.path.basename(__file__), missing))

CLI = None


def run(*arguments):
    result = subprocess.run([CLI, *arguments], capture_output=True, text=True, timeout=120)
    return result.returncode, result.stdout, result.stderr


def dump(*arguments):
    code, out, err = run("dump", *arguments)
    if code != 0:
        raise AssertionError("dump %s failed: %s" % (arguments, err))
    return pd.read_csv(io.StringIO(out), dtype=float, float_precision="round_trip")


def frame(rows=300, seed=5):
    rng = np.random.default_rng(seed)
    t = np.cumsum(rng.uniform(1e-12, 1e-9, rows))
    v = rng.normal(0.0, 1.0, rows) * 10.0 ** rng.integers(-20, 20, rows)
    i = rng.uniform(-1e-3, 1e-3, rows)
    v[:3] = [5e-324, -1.7976931348623157e308, 0.1]
    return pd.DataFrame({"time": t, "v(out)": v, "i(r1)": i})


class Tables(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.dir = self.folder.name
        self.df = frame()

    def tearDown(self):
        self.folder.cleanup()

    def path(self, name):
        return os.path.join(self.dir, name)

    def assertColumnsEqual(self, got, want, what):
        self.assertEqual(len(got), len(want), what)
        np.testing.assert_array_equal(np.asarray(got, dtype=float), np.asarray(want, dtype=float), err_msg=what)

    def test_pandas_files_read_back_exactly(self):
        self.df.to_csv(self.path("plain.csv"), index=False)
        self.df.to_csv(self.path("indexed.csv"))
        self.df.to_csv(self.path("comma.csv"), sep=";", decimal=",", index=False)
        self.df.to_html(self.path("page.html"), float_format=repr)
        for name in ("plain.csv", "indexed.csv", "comma.csv", "page.html"):
            for curve in ("v(out)", "i(r1)"):
                got = dump(self.path(name), curve)
                self.assertEqual(list(got.columns), ["time", curve], name)
                self.assertColumnsEqual(got["time"], self.df["time"], name + " time")
                self.assertColumnsEqual(got[curve], self.df[curve], name + " " + curve)

    def test_fast_and_slow_readers_agree(self):
        self.df.to_csv(self.path("a.csv"), index=False)
        self.df.to_csv(self.path("b.csv"), sep="\t", index=False)
        np.savetxt(self.path("c.txt"), self.df.values, header="time v i")
        for name, curve in (("a.csv", "v(out)"), ("b.csv", "i(r1)"), ("c.txt", "v")):
            fast = run("dump", "--reader", "fast", self.path(name), curve)
            slow = run("dump", "--reader", "slow", self.path(name), curve)
            self.assertEqual(fast[0], 0, fast[2])
            self.assertEqual(fast, slow, name)

    def test_tecplot_point_and_block_agree(self):
        values = self.df.values
        header = 'TITLE = "t"\nVARIABLES = "time", "v(out)", "i(r1)"\n'
        with open(self.path("point.dat"), "w") as f:
            f.write(header + 'ZONE T="z", I=%d, F=POINT\n' % len(values))
            np.savetxt(f, values, fmt="%.17g")
        with open(self.path("block.dat"), "w") as f:
            f.write(header + 'ZONE T="z", I=%d, DATAPACKING=BLOCK\n' % len(values))
            np.savetxt(f, values.T.reshape(-1, 10), fmt="%.17g")
        for curve in ("v(out)", "i(r1)"):
            point = dump(self.path("point.dat"), curve)
            block = dump(self.path("block.dat"), curve)
            self.assertColumnsEqual(point[curve], self.df[curve], "point " + curve)
            self.assertColumnsEqual(block[curve], self.df[curve], "block " + curve)
            self.assertColumnsEqual(block["time"], point["time"], "x " + curve)

    def test_info_lists_sections_curves_units_and_points(self):
        self.df.to_csv(self.path("a.csv"), index=False)
        code, out, err = run("info", self.path("a.csv"))
        self.assertEqual(code, 0, err)
        self.assertIn('file "%s": csv, 1 section\n' % self.path("a.csv"), out)
        self.assertIn('  sweep "time" [Second] 300 points\n', out)
        self.assertIn('  curve "v(out)" [V] 300 points\n', out)
        self.assertIn('  curve "i(r1)" [A] 300 points\n', out)
        pd.DataFrame({"f": [1.0, 2.0], "re(h)": [1.0, 2.0], "im(h)": [-1.0, -2.0]}).to_csv(self.path("h.csv"), index=False)
        code, out, _ = run("info", self.path("a.csv"), self.path("h.csv"))
        self.assertIn('  curve "h" [] 2 points, complex\n', out)
        got = dump(self.path("h.csv"), "h")
        self.assertEqual(list(got.columns), ["f", "h", "imag"])
        self.assertColumnsEqual(got["imag"], [-1.0, -2.0], "imaginary part")

    def test_sweep_matrix_and_sections(self):
        with open(self.path("m.csv"), "w") as f:
            f.write("p,t,v\n")
            for p in (1.0, 2.0):
                for t in (0.0, 0.5, 1.0):
                    f.write("%r,%r,%r\n" % (p, t, p * 10 + t))
        got = dump(self.path("m.csv"), "v")
        self.assertEqual(list(got.columns), ["p", "t", "v"])
        self.assertColumnsEqual(got["v"], [10.0, 10.5, 11.0, 20.0, 20.5, 21.0], "matrix")
        with open(self.path("r.csv"), "w") as f:
            f.write("t,v\n0,1\n1,2\n2,3\n0,4\n1,5\n")
        self.assertColumnsEqual(dump("--section", "1", self.path("r.csv"), "v")["v"], [4.0, 5.0], "second run")
        code, _, err = run("dump", "--section", "2", self.path("r.csv"), "v")
        self.assertEqual(code, 1)
        self.assertIn("the file has 2 section(s)", err)

    def test_dump_header_quotes_names_as_csv(self):
        # Names with separators and quotes come back whole through Python's csv module.
        import csv
        path = self.path("quoted.csv")
        with open(path, "w", newline="") as f:
            csv.writer(f).writerows([["time", "v(a,b)", 'say "hi"'], [0, 1, 2], [1, 3, 4]])
        for name, column in (("v(a,b)", ["1", "3"]), ('say "hi"', ["2", "4"])):
            code, out, err = run("dump", path, name)
            self.assertEqual(code, 0, err)
            rows = list(csv.reader(io.StringIO(out)))
            self.assertEqual(rows[0], ["time", name])
            self.assertEqual([row[1] for row in rows[1:]], column)

    def test_help_and_failures(self):
        for name in ("info", "dump"):
            code, out, _ = run(name, "--help")
            self.assertEqual(code, 0)
            self.assertTrue(out.startswith("usage: zelwave-cli " + name), out)
        code, out, _ = run("--help")
        self.assertIn("  info", out)
        self.assertIn("  dump", out)
        missing = self.path("missing.csv")
        code, out, err = run("info", missing)
        self.assertEqual(code, 1)
        self.assertIn(' - E - The file "%s" does not exist.' % missing, err)
        empty = self.path("empty.csv")
        open(empty, "w").close()
        code, _, err = run("dump", empty, "v")
        self.assertEqual(code, 1)
        self.assertIn(' - E - The file "%s" is empty.' % empty, err)
        self.df.to_csv(self.path("a.csv"), index=False)
        self.assertEqual(run("dump", self.path("a.csv"))[0], 2)
        self.assertEqual(run("dump", "--reader", "sideways", self.path("a.csv"), "v")[0], 2)
        code, _, err = run("dump", self.path("a.csv"), "nothing")
        self.assertEqual(code, 1)
        self.assertIn('no curve "nothing"', err)
        with open(self.path("noise.csv"), "wb") as f:
            f.write(np.random.default_rng(1).integers(0, 256, 5000, dtype=np.uint8).tobytes())
        code, _, err = run("info", self.path("noise.csv"))
        self.assertEqual(code, 1)
        self.assertIn(' - E - Failed to parse the file "%s".' % self.path("noise.csv"), err)
        code, _, err = run("info", "--reader", "tecplot", self.path("a.csv"))
        self.assertEqual(code, 1)
        self.assertIn(' - E - Failed to parse the csv file "%s"' % self.path("a.csv"), err)


if __name__ == "__main__":
    CLI = sys.argv.pop(1)
    unittest.main(verbosity=2)
