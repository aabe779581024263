#!/usr/bin/python3
"""zelwave-cli fft and convolve on Spice raw files that ngspice writes at test time.

The oracles: numpy on the values of the same raw file (read here with numpy), resampled with
np.interp on the same grid; and ngspice's own fft command on the same transient, run in batch
mode. Skips (with a message) only when ngspice is absent."""
import io
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import numpy as np

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, "cli"))
from cli_raw_test import read_binary  # noqa: E402  (the raw file's rows, read by numpy)

CLI = None
NGSPICE = shutil.which("ngspice")

NETLIST = """Sine and square into an RC filter
v1 in 0 sin(0 1 10k 0 0 0)
v2 sq 0 pulse(0 1 0 1u 1u 20u 50u)
r1 in out 1k
c1 out 0 10n
r2 sq sqout 2k
c2 sqout 0 5n
.control
set specwindow=none
tran 1u 2m
write tran.raw v(in) v(out) v(sqout)
linearize v(out)
fft v(out)
wrdata fft.txt v(out)
ac dec 20 100 10meg
write ac.raw v(out)
.endc
.end
"""


def run(*arguments):
    result = subprocess.run([CLI, *arguments], capture_output=True, text=True, timeout=300)
    return result.returncode, result.stdout, result.stderr


def table(text):
    return np.loadtxt(io.StringIO(text), delimiter=",", skiprows=1, ndmin=2)


def read_raw(path):
    """The first plot of a binary raw file: {name: values}, real or complex."""
    header, names, rows = read_binary(path)[0]
    return {name: rows[:, i] for i, name in enumerate(names)}


def resample(t, x, y):
    """The grid read as the analysis reads it: np.interp, zeros off the curve except within the
    relative tolerance of 1e-7 beyond an end."""
    v = np.interp(t, x, y, left=0.0, right=0.0)
    low = x[0] * (1 - 1e-7) if x[0] > 0 else x[0] * (1 + 1e-7) if x[0] < 0 else -1e-307
    high = x[-1] * (1 + 1e-7) if x[-1] > 0 else x[-1] * (1 - 1e-7)
    v = np.where((t >= low) & (t < x[0]), y[0], v)
    return np.where((t > x[-1]) & (t <= high), y[-1], v)


@unittest.skipIf(NGSPICE is None, "ngspice is not installed")
class FftOnSpiceRuns(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="zw_cli_fft_")
        with open(os.path.join(cls.folder, "rc.cir"), "w") as f:
            f.write(NETLIST)
        result = subprocess.run([NGSPICE, "-b", "rc.cir"], cwd=cls.folder, capture_output=True, timeout=300)
        cls.tran = os.path.join(cls.folder, "tran.raw")
        cls.ac = os.path.join(cls.folder, "ac.raw")
        for path in (cls.tran, cls.ac, os.path.join(cls.folder, "fft.txt")):
            if not os.path.exists(path):
                raise AssertionError("ngspice wrote no %s: %s" % (path, result.stderr.decode(errors="replace")))
        cls.values = read_raw(cls.tran)
        cls.time = cls.values["time"]

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.folder, ignore_errors=True)

    def spectrum(self, *arguments):
        code, out, err = run("fft", self.tran, *arguments)
        self.assertEqual(code, 0, err)
        return table(out)

    def test_spectrum_against_numpy_and_ngspice(self):
        # The transient's own steps are uneven: the resampling is part of what is checked.
        self.assertGreater(np.ptp(np.diff(self.time)), 1e-9)
        n, fs = 2048, 1e6
        got = self.spectrum("v(out)", "--points", str(n), "--fs", str(fs), "--reim")
        t = self.time[0] + np.arange(n) / fs
        expected = np.fft.rfft(resample(t, self.time, self.values["v(out)"]))
        self.assertEqual(got.shape, (n // 2 + 1, 3))
        np.testing.assert_allclose(got[:, 0], np.arange(n // 2 + 1) * fs / n, rtol=1e-12)
        scale = np.abs(expected).max()
        np.testing.assert_allclose(got[:, 1] + 1j * got[:, 2], expected, rtol=0, atol=1e-10 * scale)

        # ngspice's fft of the same transient: linearised on its own 1 us steps, zero-padded to
        # 2048 points like the grid above runs past the end, scaled by 2/N.
        ng = np.loadtxt(os.path.join(self.folder, "fft.txt"))
        self.assertEqual(ng.shape[0], n // 2 + 1)
        ngspice = (ng[:, 1] + 1j * ng[:, 2]) / (2.0 / n)
        np.testing.assert_allclose(got[:, 1] + 1j * got[:, 2], ngspice, rtol=0, atol=1e-7 * scale)
        peak = np.argmax(np.abs(ngspice))
        self.assertEqual(np.argmax(np.abs(got[:, 1] + 1j * got[:, 2])), peak)
        self.assertAlmostEqual(got[peak, 0], 10e3, delta=fs / n)

        # Magnitude in dB and phase in degrees, with a window over an interval and normalised.
        got = self.spectrum("v(sqout)", "--points", "1000", "--from", "0.5e-3", "--to", "1.5e-3",
                            "--window", "hann", "--normalize")
        t = 0.5e-3 + np.arange(1000) * ((1.5e-3 - 0.5e-3) / 1000)
        window = 0.5 - 0.5 * np.cos(2 * np.pi * np.arange(1000) / 1000)
        expected = np.fft.rfft(resample(t, self.time, self.values["v(sqout)"]) * window) / 1000
        np.testing.assert_allclose(got[:, 0], np.arange(501) * 1000.0, rtol=1e-9)
        strong = np.abs(expected) > 1e-6 * np.abs(expected).max()
        np.testing.assert_allclose(got[strong, 1], 20 * np.log10(np.abs(expected[strong])), rtol=0, atol=1e-8)
        phase = np.degrees(np.angle(expected[strong]))
        difference = (got[strong, 2] - phase + 180) % 360 - 180
        np.testing.assert_allclose(difference, 0, atol=1e-6)

    def test_bad_input_gives_messages(self):
        code, out, err = run("fft", self.tran, "v(out)", "--points", "1023")
        self.assertEqual(code, 1)
        self.assertEqual(out, "")
        self.assertIn("The FFT on real time values can only be computed on an even number of points.", err)
        code, out, err = run("fft", self.tran, "v(out)", "--from", "1e-3", "--to", "1e-3")
        self.assertEqual(code, 1)
        self.assertIn("The FFT Window Size is 0.0.", err)
        code, out, err = run("fft", self.tran, "v(out)", "--window", "gauss")
        self.assertEqual(code, 2)
        self.assertIn("unknown window", err)
        code, out, err = run("fft", self.tran, "v(nothing)")
        self.assertEqual(code, 1)
        code, out, err = run("convolve", self.tran, "v(in)", "v(out)", "--fs", "0")
        self.assertEqual(code, 1)
        self.assertIn("Bad sampling Frequency.", err)

    def test_inverse_of_an_ac_sweep(self):
        ac = read_raw(self.ac)
        f, h = ac["frequency"].real, ac["v(out)"]
        n, fs = 4096, 40e6
        code, out, err = run("fft", self.ac, "v(out)", "--inverse", "--points", str(n), "--fs", str(fs),
                             "--normalize-inverse")
        self.assertEqual(code, 0, err)
        got = table(out)
        # The lines spread on their two neighbouring bins by 1 - distance / df.
        df = fs / n
        bins = np.zeros(n // 2 + 1, dtype=complex)
        position = f / df
        lower = np.floor(position).astype(int)
        weight = 1 - (position - lower)
        inside = lower < bins.size
        np.add.at(bins, lower[inside], weight[inside] * h[inside])
        upper = inside & (lower + 1 < bins.size)
        np.add.at(bins, lower[upper] + 1, (1 - weight[upper]) * h[upper])
        expected = np.fft.irfft(bins, n)
        self.assertEqual(got.shape, (n, 2))
        np.testing.assert_allclose(got[:, 0], np.arange(n) / fs, rtol=1e-12, atol=1e-20)
        np.testing.assert_allclose(got[:, 1], expected, rtol=0, atol=1e-12 * np.abs(expected).max())

    def test_convolution_and_correlation_against_numpy(self):
        fs, dt = 1e6, 1e-6
        a = resample(self.time[0] + np.arange(2001) * dt, self.time, self.values["v(in)"])
        b = resample(self.time[0] + np.arange(2001) * dt, self.time, self.values["v(sqout)"])
        cases = [
            ([], np.convolve(a, b) * dt, 0),
            (["--xcorr"], np.correlate(b, a, "full") * dt, -2000 * dt),
            (["--xcorr", "--direct"], np.correlate(b, a, "full") * dt, -2000 * dt),
        ]
        for options, expected, first in cases:
            code, out, err = run("convolve", self.tran, "v(in)", "v(sqout)", "--fs", str(fs), *options)
            self.assertEqual(code, 0, err)
            got = table(out)
            self.assertEqual(got.shape, (expected.size, 2), options)
            self.assertAlmostEqual(got[0, 0], first, delta=1e-15)
            np.testing.assert_allclose(got[:, 1], expected, rtol=0, atol=1e-12 * np.abs(expected).max(),
                                       err_msg=str(options))
        code, out, err = run("convolve", self.tran, "v(in)", "--autocorr", "--fs", str(fs))
        self.assertEqual(code, 0, err)
        got = table(out)
        expected = np.correlate(a, a, "full") * dt
        np.testing.assert_allclose(got[:, 1], expected, rtol=0, atol=1e-12 * np.abs(expected).max())
        self.assertAlmostEqual(got[2000, 0], 0.0, delta=1e-15)
        # 2001 samples each: a periodic convolution by the real transform refuses the odd length;
        # by direct sums it is the circular convolution, centred on lag 0.
        code, out, err = run("convolve", self.tran, "v(in)", "v(sqout)", "--fs", str(fs), "--periodic")
        self.assertEqual(code, 1)
        self.assertIn("The FFT on real time values can only be computed on an even number of points.", err)
        code, out, err = run("convolve", self.tran, "v(in)", "v(sqout)", "--fs", str(fs), "--periodic", "--direct")
        self.assertEqual(code, 0, err)
        circular = np.fft.ifft(np.fft.fft(a) * np.fft.fft(b)).real * dt
        np.testing.assert_allclose(table(out)[:, 1], np.roll(circular, 1000), rtol=0,
                                   atol=1e-12 * np.abs(circular).max())


if __name__ == "__main__":
    CLI = sys.argv.pop(1)
    unittest.main()
