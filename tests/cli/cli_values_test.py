#!/usr/bin/python3
"""zelwave-cli at and integral against numpy: interpolation, closest samples, log x, complex
conversions and trapezoid integrals on random tables written by numpy."""
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
trapezoid = getattr(np, "trapezoid", None) or np.trapz  # np.trapz is gone in NumPy 2


def run(*arguments):
    result = subprocess.run([CLI, *arguments], capture_output=True, text=True, timeout=120)
    return result.returncode, result.stdout, result.stderr


def table(*arguments):
    code, out, err = run(*arguments)
    if code != 0:
        raise AssertionError("%s failed: %s" % (arguments, err))
    return pd.read_csv(io.StringIO(out), float_precision="round_trip", keep_default_na=False)


def write_csv(path, header, columns):
    with open(path, "w") as f:
        f.write(",".join(header) + "\n")
        for row in zip(*columns):
            f.write(",".join(repr(float(v)) for v in row) + "\n")


class Values(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.dir = self.folder.name
        rng = np.random.default_rng(11)
        self.t = np.cumsum(rng.uniform(0.1, 2.0, 400))
        self.v = rng.normal(0.0, 3.0, 400)
        self.path = os.path.join(self.dir, "random.csv")
        write_csv(self.path, ["time", "v"], [self.t, self.v])
        self.rng = rng

    def tearDown(self):
        self.folder.cleanup()

    def test_interpolation_and_ends(self):
        inside = np.sort(self.rng.uniform(self.t[0], self.t[-1], 300))
        # Exact sample positions and points outside the range too, in no order.
        xs = np.concatenate([inside, self.t[[0, 7, 399]], [self.t[0] - 5, self.t[-1] + 5]])
        self.rng.shuffle(xs)
        got = table("at", self.path, "v", *[repr(float(x)) for x in xs])
        expected = np.interp(xs, self.t, self.v)  # carries the end values outside, like a cursor
        np.testing.assert_allclose(got["v"].astype(float), expected, rtol=1e-12, atol=1e-12)
        np.testing.assert_array_equal(got["x"].astype(float), xs)

    def test_closest_sample(self):
        xs = self.rng.uniform(self.t[0] - 1, self.t[-1] + 1, 200)
        got = table("at", "--closest", self.path, "v", *[repr(float(x)) for x in xs])
        index = np.abs(self.t[None, :] - xs[:, None]).argmin(axis=1)
        np.testing.assert_array_equal(got["closest_x"].astype(float), self.t[index])
        np.testing.assert_array_equal(got["v"].astype(float), self.v[index])

    def test_log_x(self):
        f = np.logspace(1, 6, 60)
        g = 20 * np.log10(1 / np.sqrt(1 + (f / 1e3) ** 2))
        path = os.path.join(self.dir, "bode.csv")
        write_csv(path, ["frequency", "gain"], [f, g])
        xs = np.sort(self.rng.uniform(11, 9e5, 100))
        got = table("at", "--log-x", path, "gain", *[repr(float(x)) for x in xs])
        expected = np.interp(np.log10(xs), np.log10(f), g)
        np.testing.assert_allclose(got["gain"].astype(float), expected, rtol=1e-10, atol=1e-12)

    def test_complex_conversions(self):
        f = np.linspace(1e3, 1e6, 80)
        h = 1 / (1 + 1j * f / 2e5)
        path = os.path.join(self.dir, "complex.csv")
        # Two columns of one name are the real and imaginary part of one curve.
        write_csv(path, ["frequency", "h", "h"], [f, h.real, h.imag])
        xs = np.sort(self.rng.uniform(f[0], f[-1], 50))
        args = [repr(float(x)) for x in xs]
        # Interpolation happens in the converted domain: magnitude of each point, then the line.
        for flag, convert in (("--magnitude", np.abs), ("--db", lambda z: 20 * np.log10(np.abs(z))),
                              ("--imag", np.imag), ("--phase", np.angle)):
            got = table("at", flag, path, "h", *args)["h"].astype(float)
            expected = np.interp(xs, f, convert(h))
            if flag == "--phase":
                # The angle may be in degrees; compare through the ratio to radians.
                ratio = got / expected
                scale = np.median(ratio)
                self.assertTrue(np.isclose(scale, 1) or np.isclose(scale, 180 / np.pi), scale)
                np.testing.assert_allclose(got, expected * scale, rtol=1e-9)
            else:
                np.testing.assert_allclose(got, expected, rtol=1e-9, atol=1e-15, err_msg=flag)
        real = table("at", path, "h", *args)["h"].astype(float)
        np.testing.assert_allclose(real, np.interp(xs, f, h.real), rtol=1e-12)

    def test_integrals(self):
        got = table("integral", self.path, "v")
        self.assertAlmostEqual(float(got["integral"][0]), float(trapezoid(self.v, self.t)), delta=1e-9)
        # |v| with each sign change cut at its zero crossing: refine every segment at the root.
        t, v = [self.t[0]], [self.v[0]]
        for i in range(1, len(self.t)):
            a, b = self.v[i - 1], self.v[i]
            if a * b < 0:
                t.append(self.t[i - 1] + (self.t[i] - self.t[i - 1]) * a / (a - b))
                v.append(0.0)
            t.append(self.t[i])
            v.append(b)
        self.assertAlmostEqual(float(got["absolute_integral"][0]), float(trapezoid(np.abs(v), t)), delta=1e-9)

    def test_bad_usage(self):
        code, _, err = run("at", self.path, "v")
        self.assertEqual(code, 2)
        code, _, err = run("at", self.path, "v", "ten")
        self.assertEqual(code, 2)
        self.assertIn('"ten" is no number', err)
        code, _, err = run("at", self.path, "w", "1")
        self.assertEqual(code, 1)
        self.assertIn('no curve "w"', err)
        code, _, err = run("integral", os.path.join(self.dir, "missing.csv"), "v")
        self.assertEqual(code, 1)
        self.assertTrue(err.strip())
        # Negative positions are numbers, not options.
        got = table("at", self.path, "v", "-3")
        self.assertEqual(float(got["v"][0]), self.v[0])


if __name__ == "__main__":
    CLI = sys.argv.pop(1)
    unittest.main()
