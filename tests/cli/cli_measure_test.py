#!/usr/bin/python3
"""zelwave-cli measure against ngspice's own measurements of the same run.

ngspice simulates a pulse source with finite edges driving an RC low pass and writes a binary raw
file; a second ngspice session loads that file and measures it with .meas-style commands (AVG,
INTEG, MIN, MAX, FIND ... AT, WHEN, TRIG/TARG), at the reference levels that zelwave-cli reports,
so that both measure the same numbers. ngspice prints 7 significant digits (6 for INTEG): the
tolerances below are that rounding, with a margin. Skips only when ngspice is absent."""
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import numpy as np

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from cli_raw_test import read_binary  # noqa: E402  (the raw file's rows, read by numpy)

CLI = None
TRAPEZOID = getattr(np, "trapezoid", None) or np.trapz  # np.trapz is gone in NumPy 2
NGSPICE = shutil.which("ngspice")
# Rounding of ngspice's printed values: 7 significant digits are within 5e-7 relative.
PRINTED = 1e-6

NETLIST = """pulse through an RC low pass
v1 in 0 pulse(0 2 1u 0.2u 0.3u 2u 5u)
r1 in out 1k
c1 out 0 100p
.tran 2n 31u 0 5n
.end
"""
EDGES = 6  # rising edges start at 1u, 6u, ... 26u; falling ones at 3.2u, 8.2u, ... 28.2u


def run(*arguments):
    result = subprocess.run([CLI, *arguments], capture_output=True, text=True, timeout=300)
    return result.returncode, result.stdout, result.stderr


def measure(*arguments):
    code, out, err = run("measure", *arguments)
    if code != 0:
        raise AssertionError("measure %s failed: %s" % (arguments, err))
    values = {}
    for line in out.splitlines():
        name, value = line.split(",")
        values[name] = float("nan") if value == "undefined" else float(value)
    return values


def ngspice_measure(folder, raw, commands):
    """Runs ngspice on raw with the measure commands; returns {name: value} of those that succeeded."""
    path = os.path.join(folder, "measure.cir")
    with open(path, "w") as f:
        f.write("measurements of a stored run\n.control\nload %s\n%s\n.endc\n.end\n" % (raw, "\n".join(commands)))
    result = subprocess.run([NGSPICE, "-b", path], cwd=folder, capture_output=True, text=True, timeout=300)
    values = {}
    for line in result.stdout.splitlines():
        found = re.match(r"^(\w+)\s+=\s+(\S+)", line)
        if found:
            values[found.group(1)] = float(found.group(2))
    return values


@unittest.skipIf(NGSPICE is None, "ngspice is not installed: the measurement tests need it as their oracle")
class AgainstNgspice(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.dir = cls.folder.name
        with open(os.path.join(cls.dir, "pulse.cir"), "w") as f:
            f.write(NETLIST)
        subprocess.run([NGSPICE, "-b", "-r", "pulse.raw", "pulse.cir"], cwd=cls.dir, capture_output=True, timeout=300)
        cls.raw = os.path.join(cls.dir, "pulse.raw")
        if not os.path.exists(cls.raw):
            raise AssertionError("ngspice wrote no raw file")
        header, names, rows = read_binary(cls.raw)[0]
        cls.time = rows[:, 0]
        cls.curves = {name: rows[:, k] for k, name in enumerate(names)}

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def edges_of(self, curve, got):
        """ngspice's TRIG/TARG edges and periods, and WHEN crossings, at zelwave's references and threshold."""
        low, high, threshold = (repr(got[k]) for k in ("low_reference", "high_reference", "threshold"))
        commands = []
        for k in range(1, EDGES + 1):
            commands += [
                "meas tran rise%d TRIG %s VAL=%s RISE=%d TARG %s VAL=%s RISE=%d" % (k, curve, low, k, curve, high, k),
                "meas tran fall%d TRIG %s VAL=%s FALL=%d TARG %s VAL=%s FALL=%d" % (k, curve, high, k, curve, low, k),
                # Periods between rising crossings of the threshold, and the time above it.
                "meas tran period%d TRIG %s VAL=%s RISE=%d TARG %s VAL=%s RISE=%d"
                % (k, curve, threshold, k, curve, threshold, k + 1),
                "meas tran above%d TRIG %s VAL=%s RISE=%d TARG %s VAL=%s FALL=%d"
                % (k, curve, threshold, k, curve, threshold, k),
                # Where each edge starts and ends, to tell which lie inside an interval.
                "meas tran riseat%d WHEN %s=%s RISE=%d" % (k, curve, low, k),
                "meas tran fallat%d WHEN %s=%s FALL=%d" % (k, curve, low, k),
            ]
        spice = ngspice_measure(self.dir, "pulse.raw", commands)
        for key, count in (("rise", EDGES), ("fall", EDGES), ("period", EDGES - 1), ("above", EDGES)):
            self.assertEqual(sum(1 for k in range(1, EDGES + 1) if key + str(k) in spice), count, key)
        return spice

    def compare_edges(self, got, rises, falls):
        span = got["high_reference"] - got["low_reference"]
        slews = np.concatenate([span / rises, span / falls])
        self.assertEqual(got["rising_edges"], len(rises))
        self.assertEqual(got["falling_edges"], len(falls))
        for name, values in (("rise_time", rises), ("fall_time", falls), ("slew_rate", slews)):
            for prefix, expected in (("min_", values.min()), ("average_", values.mean()), ("max_", values.max())):
                self.assertAlmostEqual(got[prefix + name], expected, delta=PRINTED * abs(expected), msg=prefix + name)

    def test_edges_frequency_and_duty_cycle(self):
        for curve in ("v(in)", "v(out)"):
            with self.subTest(curve=curve):
                got = measure(self.raw, curve)
                spice = self.edges_of(curve, got)
                rises = np.array([spice["rise%d" % k] for k in range(1, EDGES + 1)])
                falls = np.array([spice["fall%d" % k] for k in range(1, EDGES + 1)])
                self.compare_edges(got, rises, falls)
                periods = np.array([spice["period%d" % k] for k in range(1, EDGES)])
                above = np.array([spice["above%d" % k] for k in range(1, EDGES)])
                self.assertAlmostEqual(got["frequency"], 1 / periods.mean(), delta=PRINTED / periods.mean())
                self.assertAlmostEqual(got["duty_cycle"], np.mean(above / periods), delta=PRINTED)
                # The source's own edges: 0.2u and 0.3u ramps of 0 to 2 V, every 5u, 2.25u above 1 V.
                if curve == "v(in)":
                    self.assertEqual((got["low_level"], got["high_level"]), (0.0, 2.0))
                    self.assertAlmostEqual(got["average_rise_time"], 0.16e-6, delta=1e-15)
                    self.assertAlmostEqual(got["average_fall_time"], 0.24e-6, delta=1e-15)
                    self.assertAlmostEqual(got["frequency"], 200e3, delta=1e-6)
                    self.assertAlmostEqual(got["duty_cycle"], 0.45, delta=1e-9)
                else:
                    # The low pass rounds the edges: slower than the source's, and levels that it
                    # reaches within a few time constants.
                    self.assertGreater(got["average_rise_time"], 0.16e-6 * 1.2)
                    self.assertAlmostEqual(got["low_level"], 0.0, delta=1e-3)
                    self.assertAlmostEqual(got["high_level"], 2.0, delta=1e-3)

        # An interval whose end cuts the fifth falling edge: only edges wholly inside count. The
        # source's levels are the same there, and so are the references.
        whole = measure(self.raw, "v(in)")
        spice = self.edges_of("v(in)", whole)
        x1, x2 = 7e-6, 23.3e-6
        got = measure("--from", "7u", "--to", repr(x2), self.raw, "v(in)")
        self.assertEqual(got["low_reference"], whole["low_reference"])
        self.assertEqual(got["high_reference"], whole["high_reference"])

        def inside(kind, k):
            # A rise starts at its low crossing, a fall ends at it.
            at, duration = spice["%sat%d" % (kind, k)], spice["%s%d" % (kind, k)]
            start, end = (at, at + duration) if kind == "rise" else (at - duration, at)
            return x1 <= start and end <= x2

        rises = np.array([spice["rise%d" % k] for k in range(1, EDGES + 1) if inside("rise", k)])
        falls = np.array([spice["fall%d" % k] for k in range(1, EDGES + 1) if inside("fall", k)])
        self.assertEqual((len(rises), len(falls)), (3, 3))
        self.compare_edges(got, rises, falls)

    def test_average_integral_extremes_and_values(self):
        # ngspice's AVG and INTEG start and stop at samples: bounds on sample times make both
        # integrate the same trapezoids.
        t = self.time
        x1, x2 = t[np.searchsorted(t, 6.3e-6)], t[np.searchsorted(t, 24.1e-6)]
        for curve in ("v(in)", "v(out)"):
            with self.subTest(curve=curve):
                got = measure("--from", repr(x1), "--to", repr(x2), self.raw, curve)
                at = [float(v) for v in np.linspace(x1, x2, 7)[1:-1]]
                commands = ["meas tran avg AVG %s from=%r to=%r" % (curve, x1, x2),
                            "meas tran integ INTEG %s from=%r to=%r" % (curve, x1, x2),
                            "meas tran lowest MIN %s from=%r to=%r" % (curve, x1, x2),
                            "meas tran highest MAX %s from=%r to=%r" % (curve, x1, x2)]
                commands += ["meas tran find%d FIND %s AT=%r" % (k, curve, x) for k, x in enumerate(at)]
                spice = ngspice_measure(self.dir, "pulse.raw", commands)
                self.assertAlmostEqual(got["average"], spice["avg"], delta=PRINTED * abs(spice["avg"]))
                # INTEG prints one digit less.
                self.assertAlmostEqual(got["integral"], spice["integ"], delta=10 * PRINTED * abs(spice["integ"]))
                self.assertAlmostEqual(got["minimum_value"], spice["lowest"], delta=PRINTED * abs(spice["lowest"]))
                self.assertAlmostEqual(got["maximum_value"], spice["highest"], delta=PRINTED * abs(spice["highest"]))
                # numpy's trapezoids over the same samples: the same sum to rounding.
                y = self.curves[curve]
                part = (t >= x1) & (t <= x2)
                self.assertAlmostEqual(got["integral"], TRAPEZOID(y[part], t[part]), delta=1e-12 * abs(got["integral"]))
                self.assertEqual(got["maximum_value"], y[part].max())
                self.assertEqual(got["maximum_x_value"], t[part][y[part].argmax()])
                code, out, err = run("at", self.raw, curve, *[repr(x) for x in at])
                self.assertEqual(code, 0, err)
                values = [float(line.split(",")[1]) for line in out.splitlines()[1:]]
                for k, value in enumerate(values):
                    expected = spice["find%d" % k]
                    self.assertAlmostEqual(value, expected, delta=PRINTED * abs(expected) + 1e-15)


class BadInputAndPlainFiles(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.dir = self.folder.name

    def tearDown(self):
        self.folder.cleanup()

    def write_csv(self, name, header, columns):
        path = os.path.join(self.dir, name)
        with open(path, "w") as f:
            f.write(",".join(header) + "\n")
            for row in zip(*columns):
                f.write(",".join(repr(float(v)) for v in row) + "\n")
        return path

    def test_square_wave_table_and_bad_requests(self):
        # A square wave of vertical jumps between 1 and 3 with a period of 4u, 1u of it high.
        t = np.array([0, 1, 1, 2, 2, 5, 5, 6, 6, 9, 9, 10, 10, 12]) * 1e-6
        v = np.array([1, 1, 3, 3, 1, 1, 3, 3, 1, 1, 3, 3, 1, 1], dtype=float)
        path = self.write_csv("square.csv", ["time", "v"], [t, v])
        got = measure(path, "v")
        self.assertEqual((got["low_level"], got["high_level"]), (1.0, 3.0))
        self.assertAlmostEqual(got["frequency"], 1 / 4e-6, delta=1e-6)
        self.assertAlmostEqual(got["duty_cycle"], 0.25, delta=1e-12)
        self.assertEqual(got["rising_edges"], 3)
        self.assertEqual(got["max_rise_time"], 0.0)  # a jump takes no time
        self.assertAlmostEqual(got["average"], TRAPEZOID(v, t) / 12e-6, delta=1e-15)
        # Engineering suffixes; an interval with one rising edge has no period.
        got = measure("--from", "0.5u", "--to", "3u", "--threshold", "2", path, "v")
        self.assertEqual(got["threshold"], 2.0)
        self.assertTrue(np.isnan(got["frequency"]) and np.isnan(got["duty_cycle"]))
        self.assertAlmostEqual(got["minimum_x_value"], 0.5e-6, delta=1e-20)
        # A flat curve: levels and extremes, no edges.
        flat = self.write_csv("flat.csv", ["time", "v"], [t, np.full(t.size, 0.7)])
        got = measure(flat, "v")
        self.assertEqual((got["low_level"], got["high_level"], got["rising_edges"]), (0.7, 0.7, 0))
        self.assertTrue(np.isnan(got["average_slew_rate"]))
        # Bad requests: a clear message and no crash.
        for arguments, code, message in (
                (["--low", "90", "--high", "10", path, "v"], 2, "0 <= low < high <= 100"),
                (["--from", "soon", path, "v"], 2, "--from wants a number"),
                (["--to"], 2, "--to wants a number"),
                ([path], 2, "name one file and one curve"),
                ([path, "w"], 1, 'no curve "w"'),
                (["--from", "1", "--to", "2", path, "v"], 1, "no defined value in the interval"),
                ([os.path.join(self.dir, "missing.csv"), "v"], 1, "")):
            with self.subTest(arguments=arguments):
                got_code, out, err = run("measure", *arguments)
                self.assertEqual(got_code, code, err)
                self.assertIn(message, err)
                self.assertEqual(out, "")

if __name__ == "__main__":
    CLI = sys.argv.pop(1)
    unittest.main(verbosity=2)
