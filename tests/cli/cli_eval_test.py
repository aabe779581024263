#!/usr/bin/python3
"""zelwave-cli eval through its door: printed trees, node listings, parse errors and exit codes;
the evaluation of numbers, vectors, strings and user functions; curves of raw files that ngspice
writes at test time, against numpy and scipy on the same values read by a parser of this test."""
import io
import math
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

import numpy as np
from scipy.integrate import cumulative_trapezoid

CLI = None
NGSPICE = shutil.which("ngspice")
NETLISTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "raw")
IVERILOG = shutil.which("iverilog")
VERILOG = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "readers", "vcd_inputs", "counter_tb.v")


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
        # A file that can't be read: a message, no value.
        code, out, err = run("no-such-file.csv", "-e", "1+1")
        self.assertEqual((code, out), (1, ""))
        self.assertIn("no-such-file.csv", err)
        self.assertEqual(run("--tree")[0], 2)
        # Several expressions: each tree in turn.
        self.assertEqual(run("-e", "a", "-e", "b+c", "--tree")[:2], (0, "a\nb+c\n"))
        self.assertEqual(run("-e", "a", "--frobnicate")[0], 2)
        code, out, _ = run("--help")
        self.assertEqual(code, 0)
        self.assertTrue(out.startswith("usage: zelwave-cli eval"))


def value(*arguments):
    """The printed value of an evaluation that must succeed."""
    code, out, err = run(*arguments)
    if code != 0:
        raise AssertionError("eval %s failed: %s" % (arguments, err))
    return out


def number(*arguments):
    return float(value(*arguments))


def curve(*arguments):
    """A curve printed as CSV: x and y (or x, real, imag) as arrays."""
    out = value(*arguments)
    lines = out.splitlines()
    columns = lines[0].split(",")
    if len(lines) == 1:
        return np.zeros(0), np.zeros(0)
    data = np.loadtxt(io.StringIO("\n".join(lines[1:]) + "\n"), delimiter=",", ndmin=2)
    if columns == ["x", "real", "imag"]:
        return data[:, 0], data[:, 1] + 1j * data[:, 2]
    assert columns == ["x", "y"], columns
    return data[:, 0], data[:, 1]


def read_ascii_raw(path):
    """The one plot of an ASCII raw file: {name: array}, the x-axis under its own name."""
    with open(path) as handle:
        lines = handle.read().splitlines()
    count = next(int(l.split(":")[1]) for l in lines if l.startswith("No. Variables:"))
    complex_values = "complex" in next(l for l in lines if l.startswith("Flags:"))
    start = lines.index("Variables:") + 1
    names = [lines[start + i].split()[1] for i in range(count)]
    tokens = " ".join(lines[lines.index("Values:") + 1:]).split()
    rows = [tokens[k + 1:k + 1 + count] for k in range(0, len(tokens), count + 1)]
    columns = {}
    for i, name in enumerate(names):
        if complex_values:
            pairs = [row[i].split(",") for row in rows]
            columns[name] = np.array([float(a) + 1j * float(b) for a, b in pairs])
        else:
            columns[name] = np.array([float(row[i]) for row in rows])
    return columns


def simulate(folder, netlist, raw, replace=None):
    """An ASCII raw file that ngspice writes from a netlist of tests/cli/raw."""
    with open(os.path.join(NETLISTS, netlist)) as handle:
        text = handle.read()
    if replace:
        text = text.replace(*replace)
    with open(os.path.join(folder, raw + ".cir"), "w") as handle:
        handle.write(text)
    env = dict(os.environ, SPICE_ASCIIRAWFILE="1")
    subprocess.run([NGSPICE, "-b", "-r", raw, raw + ".cir"], cwd=folder, env=env, capture_output=True,
                   timeout=300)
    path = os.path.join(folder, raw)
    if not os.path.exists(path):
        raise AssertionError("ngspice wrote no " + raw)
    return path


def close(test, got, expected, what, tolerance=1e-12):
    got, expected = np.asarray(got), np.asarray(expected)
    test.assertEqual(got.shape, expected.shape, what)
    scale = 1 + np.abs(expected)
    test.assertTrue(np.all(np.abs(got - expected) <= tolerance * scale), "%s: largest error %g" % (
        what, np.max(np.abs(got - expected) / scale)))


class Numbers(unittest.TestCase):
    def test_values(self):
        table = {
            "db(0)": "-300", "sgn(0)": "0", "sign(0)": "1", "sgn(-2.5)": "-1", "sign(3, -1)": "-3",
            "pwr(-2, 2)": "-4", "pow(-2, 2)": "4", "power(2, 10)": "1024", "2^3^2": "64",
            "[1, 2, 3][1]": "1", "2*3+4": "10", "8/4/2": "1", "a = 3": "3", "max(1, 5, 3)": "5",
            "min([4, 2, 8])": "2", "size([1, 2, 3])": "3", "bit(5, 2)": "1", "bit(5, 1)": "0",
            "strcmp(\"a\", \"b\")": "-1", "strncmp(\"abc\", \"abd\", 2)": "0", "5 > 2 ? 10 : 20": "10",
            "\"ab\" =~ \"A.\"": "1", "\"ab\" !~ \"A.\"": "0", "\"x\" == \"X\"": "1", "!0": "1", "6 & 3": "2",
            "6 | 3": "7", "atand(1)": "45", "angle(j)": "90", "abs(3 + 4*j)": "5", "real(3 + 4*j)": "3",
            "imag(3 + 4*j)": "4", "floor(-1.5)": "-2", "round(2.5)": "3", "trunc(-2.7)": "-2", "1/0": "nan",
            "undef + 1": "nan", "PI == Pi": "1", "simplify(2 + 0*j)": "2",
        }
        for text, expected in table.items():
            self.assertEqual(value("-e", text), expected + "\n", text)
        self.assertEqual(value("-e", "j*j"), "-1,0\n")
        self.assertEqual(value("-e", "conj(1 + 2*j)"), "1,-2\n")
        self.assertEqual(value("-e", "[1:0.5:3]"), "1\n1.5\n2\n2.5\n3\n")
        self.assertEqual(value("-e", "[1, 2, 3] * 2"), "2\n4\n6\n")
        self.assertEqual(value("-e", "v = [1, 2, 3]", "-e", "v[2:3]"), "2\n3\n")
        self.assertEqual(value("--index-from-zero", "-e", "[1, 2, 3][0]"), "1\n")
        self.assertEqual(value("-e", "\"text\""), "text\n")
        self.assertEqual(value("-e", "e"), "2.7182818284590451\n")
        for name in ("sin", "cos", "tan", "exp", "sqrt", "log10", "atan", "sinh", "tanh", "asinh"):
            self.assertAlmostEqual(number("-e", name + "(0.3)"), getattr(math, name)(0.3), 14, name)
        self.assertAlmostEqual(number("-e", "ln(0.3)"), math.log(0.3), 14)
        self.assertAlmostEqual(number("-e", "sind(30)"), 0.5, 14)
        self.assertAlmostEqual(number("-e", "asind(0.5)"), 30, 12)
        z = complex(*map(float, value("-e", "sqrt(-4 + 0*j)").split(",")))
        self.assertAlmostEqual(z, 2j, 14)
        z = complex(*map(float, value("-e", "exp(j*Pi/3)").split(",")))
        self.assertAlmostEqual(z, complex(0.5, math.sqrt(3) / 2), 14)

    def test_spectra_and_windows(self):
        from scipy.signal import windows
        def vector(text):
            return np.array([complex(*map(float, (line + ",0").split(",")[:2])) for line in value("-e", text).split()])
        for name, expected in (("hann(9)", windows.hann(9)), ("hann_periodic(8)", windows.hann(8, sym=False)),
                               ("hamming(7)", windows.hamming(7)), ("blackman(6)", windows.blackman(6)),
                               ("blackman_periodic(6)", windows.blackman(6, sym=False)),
                               ("hamming_periodic(6)", windows.hamming(6, sym=False)),
                               ("bartlett(5)", windows.bartlett(5)), ("triang(6)", windows.triang(6)),
                               ("kaiser(7)", windows.kaiser(7, 0.5)), ("kaiser(7, 3)", windows.kaiser(7, 3))):
            close(self, vector(name).real, expected, name, 1e-14)
        data = np.array([0.5, -1.25, 3, 2, -0.75, 4, 1])
        text = "[" + ",".join(repr(v) for v in data) + "]"
        close(self, vector("fft(%s)" % text), np.fft.fft(data), "fft", 1e-13)
        close(self, vector("fft(%s, 10)" % text), np.fft.fft(data, 10), "padded fft", 1e-13)
        close(self, vector("ifft(fft(%s))" % text), data, "ifft", 1e-13)
        close(self, vector("ifft(%s * (1 + 2*j))" % text), np.fft.ifft(data * (1 + 2j)), "complex ifft", 1e-13)
        close(self, vector("fftshift(%s)" % text).real, np.fft.fftshift(data), "fftshift")
        close(self, vector("ifftshift(%s)" % text).real, np.fft.ifftshift(data), "ifftshift")
        code, out, err = run("-e", "hann(0)")
        self.assertEqual((code, err), (1, " - E - Expression evaluation error ... (hann(0))\n"))
        code, out, err = run("-e", "hann(1001)")
        self.assertEqual((code, err), (1, " - E - The maximum vector size has been reached.\n"))

    def test_user_functions(self):
        self.assertEqual(value("-e", "f(x) = x^2 + 1", "-e", "f(3)"), "10\n")
        self.assertEqual(value("-e", "fact(n) = n <= 1 ? 1 : n*fact(n - 1)", "-e", "fact(10)"), "3628800\n")
        self.assertEqual(value("-e", "g(a, b) = a - b", "-e", "g(5, 2) + g(1, 1)"), "3\n")
        # The symbolic derivative, its value, and the numeric one where a node has no rule.
        self.assertEqual(value("-e", "derivative(x^2*sin(x), x)"), "((2*x)*sin(x))+((x^2)*cos(x))\n")
        self.assertAlmostEqual(number("-e", "derivative(x^2*sin(x), x, 1)"), 2 * math.sin(1) + math.cos(1), 14)
        self.assertAlmostEqual(number("-e", "k = 2", "-e", "derivative(k*x^3, x, 2)"), 24, 12)
        self.assertAlmostEqual(number("-e", "derivative(round(x) + x^2, x, 1.2)"), 2.4, 8)
        # Parameters are names in lower case; function names keep their case.
        self.assertEqual(value("-e", "Gain = 2", "-e", "gain*GAIN"), "4\n")
        code, out, err = run("-e", "SIN(1)")
        self.assertEqual((code, out, err), (1, "", " - E - The function \"SIN\" is unknown.\n"))
        # A function that calls itself without end: a message, no crash.
        code, out, err = run("-e", "f(x) = 2*f(x)", "-e", "f(1)")
        self.assertEqual((code, out), (1, ""))
        self.assertIn("nests more than 5000 levels deep", err)
        # A sum of 4000 terms nests as deep as it is long, and evaluates.
        self.assertEqual(value("-e", "+".join(["1"] * 4000)), "4000\n")

    def test_messages(self):
        table = {
            "[1, 2] + [1, 2, 3]": "The vector sizes do not match.",
            "[1, 2, 3][4]": "The vector index is bad.",
            "[" + ",".join(["1"] * 1001) + "]": "The maximum vector size has been reached.",
            "[1:1001]": "The maximum vector size has been reached.",
            "sgn(j)": "\"sgn\" does not apply to complex values.",
            "strcmp(1, 2)": "Bad arguments for \"strcmp\".",
            "strncmp(\"a\", \"b\")": "Bad arguments for \"strncmp\".",
            "foo + 1": "Bad first argument for \"+\".",
            "1 + foo": "Bad second argument for \"+\".",
            "sin(1, 2)": "Bad number of arguments for \"sin\".",
            "sin(\"a\")": "Bad arguments for \"sin\".",
            "smooth_sgolay(1)": "The function \"smooth_sgolay\" is unknown.",
            "(a, b) = 2": "The left hand side of the expression is malformed.",
            "f(1) = 2": "Only string arguments are allowed in function definitions.",
            "f() = 2": "The function definition must have at least one argument.",
            "waveform(1)": "Bad arguments for \"waveform()\".",
            "waveform(\"nowhere\", \"v\")": "Didn't find section \"nowhere\".",
            "create_waveform(\"t\", \"y\", t*u, [1, 2])":
                "Bad arguments for \"create_waveform()\". The equation has more than one unknown variable.",
            "create_waveform(\"t\", \"y\", u^2, [1, 2])":
                "Bad arguments for \"create_waveform()\". The x-axis variable must correspond to the equation's variable.",
            "create_waveform(\"t\", \"y\", [1, 2, 3], [1, 2])": "Incoherent vector sizes in \"create_waveform()\".",
            "foo": "Expression evaluation error ... (foo)",
        }
        for text, message in table.items():
            code, out, err = run("-e", text)
            self.assertEqual((code, out), (1, ""), text)
            self.assertEqual(err.splitlines()[0], " - E - " + message, text)
        code, out, err = run("-e", "2 +* 3")
        self.assertEqual(code, 1)
        self.assertIn("Failed to parse expression ... (2 +* 3)", err)

    def test_created_curves(self):
        # Curves made from values, with their own x: combined, indexed, measured.
        x, y = curve("-e", "create_waveform(\"t\", \"a\", t^2, [0:0.5:3])")
        close(self, x, np.arange(0, 3.5, 0.5), "x of a")
        close(self, y, x ** 2, "t^2")
        a = "create_waveform(\"t\", \"a\", [1, 2, 3], [0, 1, 2])"
        b = "create_waveform(\"t\", \"b\", [10, 20], [2.5, 3.5])"
        # a + b lives on both ranges, a - b only where both are: here nowhere.
        x, y = curve("-e", a, "-e", b, "-e", "a + b")
        close(self, x, [0, 1, 2, 2.5, 3.5], "a+b grid")
        close(self, y, [1, 2, 3, 10, 20], "a+b")
        x, y = curve("-e", a, "-e", b, "-e", "a - b")
        self.assertEqual(len(x), 0)
        self.assertEqual(value("-e", a, "-e", "a[2]"), "2\n")
        self.assertEqual(value("-e", a, "-e", "a(0.5)"), "1.5\n")
        self.assertEqual(value("-e", a, "-e", "a(7)"), "nan\n")
        self.assertEqual(value("-e", a, "-e", "a[2] = 5", "-e", "a[1:3]"), "1\n5\n3\n")
        # A number left of a curve: commuted operations, comparisons by their partner.
        x, y = curve("-e", a, "-e", "10 - a")
        close(self, y, [9, 8, 7], "10 - a")
        x, y = curve("-e", a, "-e", "2 < a")
        close(self, y, [0, 1, 1], "2 < a, evaluated as a >= 2")


@unittest.skipIf(NGSPICE is None, "ngspice is not installed: the raw file tests need it to write their files")
class RawFiles(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="zw_cli_eval_")
        cls.tran = simulate(cls.folder, "rc_tran.cir", "a.raw")
        cls.short = simulate(cls.folder, "rc_tran.cir", "b.raw", (".tran 0.05u 20u", ".tran 0.07u 15u"))
        cls.ac = simulate(cls.folder, "rc_ac.cir", "ac.raw")
        cls.a = read_ascii_raw(cls.tran)
        cls.b = read_ascii_raw(cls.short)
        cls.c = read_ascii_raw(cls.ac)

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.folder)

    def test_one_file(self):
        t, vin, vout = self.a["time"], self.a["v(in)"], self.a["v(out)"]
        x, y = curve(self.tran, "-e", "v(out) - v(in)")
        close(self, x, t, "grid of v(out) - v(in)")
        close(self, y, vout - vin, "v(out) - v(in)")
        x, y = curve(self.tran, "-e", "2*V(OUT)^2 + 1")
        close(self, y, 2 * vout ** 2 + 1, "2*v(out)^2 + 1")
        x, y = curve(self.tran, "-e", "sin(v(out)*time*1e5)")
        close(self, y, np.sin(vout * t * 1e5), "sin of a curve times the x-axis")
        slope = np.diff(vout) / np.diff(t)
        x, y = curve(self.tran, "-e", "derivative(v(out))")
        close(self, y, np.append(slope, slope[-1]), "derivative", 1e-9)
        x, y = curve(self.tran, "-e", "derivative_forward(v(out))")
        close(self, y[:-1], slope, "forward derivative", 1e-9)
        x, y = curve(self.tran, "-e", "derivative_backward(v(out))")
        close(self, y[1:], slope, "backward derivative", 1e-9)
        x, y = curve(self.tran, "-e", "derivative_centered(v(out))")
        close(self, y[1:-1], (vout[2:] - vout[:-2]) / (t[2:] - t[:-2]), "centred derivative", 1e-9)
        x, y = curve(self.tran, "-e", "integral(v(in))")
        close(self, y, cumulative_trapezoid(vin, t, initial=0), "integral", 1e-11)
        self.assertAlmostEqual(number(self.tran, "-e", "average(v(out))"),
                               np.trapz(vout, t) / (t[-1] - t[0]), 12)
        # Over an interval, with interpolated ends.
        x1, x2 = 2.1e-6, 8.3e-6
        inside = (t > x1) & (t < x2)
        xs = np.concatenate([[x1], t[inside], [x2]])
        ys = np.interp(xs, t, vout)
        self.assertAlmostEqual(number(self.tran, "-e", "avg(v(out), 2.1e-6, 8.3e-6)"),
                               np.trapz(ys, xs) / (x2 - x1), 12)
        self.assertAlmostEqual(number(self.tran, "-e", "integral(v(out), 2.1e-6, 8.3e-6)") / np.trapz(ys, xs), 1, 12)
        x, y = curve(self.tran, "-e", "apply_window_function(v(out), 2.1e-6, 8.3e-6)")
        close(self, x, xs, "window grid")
        close(self, y, ys, "window values")
        self.assertEqual(number(self.tran, "-e", "maximum_value(v(out))"), vout.max())
        self.assertEqual(number(self.tran, "-e", "maximum_x_value(v(out))"), t[np.argmax(vout)])
        self.assertEqual(number(self.tran, "-e", "minimum_value(v(in) - v(out))"), (vin - vout).min())
        self.assertEqual(number(self.tran, "-e", "max(v(out))"), vout.max())
        self.assertEqual(number(self.tran, "-e", "size(v(out))"), len(t))
        self.assertEqual(value(self.tran, "-e", "v(out)[1:3]").split(), ["%.17g" % v for v in vout[:3]])
        self.assertEqual(number(self.tran, "-e", "c = v(out)", "-e", "c(3.3e-6)"), np.interp(3.3e-6, t, vout))
        x, y = curve(self.tran, "-e", "v(out) > 0.5")
        close(self, y, (vout > 0.5).astype(float), "a comparison")
        x, y = curve(self.tran, "-e", "shift_waveform(v(out), 2, 1e-6, 3, 0.5)")
        close(self, x, 2 * t + 1e-6, "shifted x")
        close(self, y, 3 * vout + 0.5, "shifted y")
        grid = np.arange(0, 20e-6 + 1e-12, 1e-6)
        x, y = curve(self.tran, "-e", "resample_waveform(v(out), 0, 20e-6, 1e-6)")
        close(self, x, grid, "resampled grid", 1e-9)
        close(self, y, np.interp(x, t, vout), "resampled values")
        # A file's curve can't be changed.
        code, out, err = run(self.tran, "-e", "v(out) = 3")
        self.assertEqual((code, out, err), (1, "", " - E - The curve \"v(out)\" is read-only.\n"))
        code, out, err = run(self.tran, "-e", "waveform(\"a.raw\", \"v(nowhere)\")")
        self.assertEqual(err, " - E - Didn't find curve \"v(nowhere)\".\n")

    def test_measurements(self):
        # The measurements are those of zelwave-cli measure, with the calculator's defaults.
        measured = dict(line.split(",") for line in subprocess.run(
            [CLI, "measure", self.tran, "v(out)"], capture_output=True, text=True, timeout=120).stdout.splitlines())
        for name in ("average_rise_time", "min_rise_time", "max_rise_time", "average_fall_time", "min_fall_time",
                     "max_fall_time", "average_slew_rate", "min_slew_rate", "max_slew_rate"):
            self.assertEqual(number(self.tran, "-e", name + "(v(out))"), float(measured[name]), name)
            self.assertEqual(number(self.tran, "-e", name + "(v(out), 10, 90)"), float(measured[name]), name)
        threshold = measured["threshold"]
        self.assertEqual(number(self.tran, "-e", "estimate_frequency(v(out), %s)" % threshold),
                         float(measured["frequency"]))
        self.assertEqual(number(self.tran, "-e", "duty_cycle(v(out), %s)" % threshold), float(measured["duty_cycle"]))
        # The source's pulse: a period of 10 us, high half of it.
        self.assertAlmostEqual(number(self.tran, "-e", "estimate_frequency(v(in))") / 1e5, 1, 9)
        self.assertAlmostEqual(number(self.tran, "-e", "duty_cycle(v(in), 0.5)"), 0.5, 3)
        # Rise times of both rising edges against numpy's crossings of 10% and 90% of the levels.
        t, v = self.a["time"], self.a["v(out)"]
        low, high = float(measured["low_level"]), float(measured["high_level"])
        times = []
        for start in (0, 10e-6):
            edge = (t >= start) & (t <= start + 5e-6)
            times.append(np.interp(low + 0.9 * (high - low), v[edge], t[edge]) -
                         np.interp(low + 0.1 * (high - low), v[edge], t[edge]))
        self.assertAlmostEqual(number(self.tran, "-e", "max_rise_time(v(out))") / max(times), 1, 9)
        self.assertAlmostEqual(number(self.tran, "-e", "min_rise_time(v(out))") / min(times), 1, 9)
        # The moving average over 5 samples, centred, shrinking at the ends.
        x, y = curve(self.tran, "-e", "smooth_average(v(out), 5)")
        expected = np.array([v[max(0, i - min(2, i, len(v) - 1 - i)):i + min(2, i, len(v) - 1 - i) + 1].mean()
                             for i in range(len(v))])
        close(self, y, expected, "moving average")

    def test_spectrum_of_a_curve(self):
        # The spectrum of a curve is the one zelwave-cli fft makes, as a complex curve.
        x, y = curve(self.tran, "-e", "fft(v(in), 256)")
        result = subprocess.run([CLI, "fft", "--points", "256", "--reim", self.tran, "v(in)"], capture_output=True,
                                text=True, timeout=120)
        self.assertEqual(result.returncode, 0, result.stderr)
        reference = np.loadtxt(io.StringIO(result.stdout), delimiter=",", skiprows=1, ndmin=2)
        close(self, x, reference[:, 0], "frequencies")
        close(self, y, reference[:, 1] + 1j * reference[:, 2], "spectrum")
        x, y = curve(self.tran, "-e", "db(fft(v(in), 256))")
        close(self, y, 20 * np.log10(np.maximum(np.abs(reference[:, 1] + 1j * reference[:, 2]), 1e-300)), "db")

    def test_cut_of_a_swept_curve(self):
        # A dc sweep over two sources: waveform() with sweep indices takes one cut, x the inner sweep.
        path = simulate(self.folder, "dc_sweep.cir", "dc.raw")
        table = read_ascii_raw(path)
        inner, outer, out = table["v(v-sweep)"], table["v(ref)"], table["v(out)"]
        for ref in range(3):
            rows = outer == ref
            x, y = curve(path, "-e", "waveform(\"dc.raw\", \"v(out)\", [0, 1], [%d, 0])" % ref)
            close(self, x, inner[rows], "cut %d x" % ref)
            close(self, y, out[rows], "cut %d" % ref)
        code, out, err = run(path, "-e", "waveform(\"dc.raw\", \"v(out)\", [0, 1], [3, 0])")
        self.assertEqual(err, " - E - Incoherent vector indices in \"waveform()\".\n")
        code, out, err = run(path, "-e", "waveform(\"dc.raw\", \"v(out)\", [0], [1])")
        self.assertEqual(err, " - E - Incoherent vector sizes in \"waveform()\".\n")

    def test_two_files_on_unlike_grids(self):
        ta, va = self.a["time"], self.a["v(out)"]
        tb, vb = self.b["time"], self.b["v(out)"]
        other = "waveform(\"b.raw\", \"v(out)\")"
        union = np.union1d(ta, tb)
        # Outside its range a curve adds nothing.
        inside = lambda t, x, y: np.where((t >= x[0]) & (t <= x[-1]), np.interp(t, x, y), 0.0)
        x, y = curve(self.tran, self.short, "-e", "v(out) + " + other)
        close(self, x, union, "union grid")
        close(self, y, inside(union, ta, va) + inside(union, tb, vb), "a + b")
        overlap = union[(union >= max(ta[0], tb[0])) & (union <= min(ta[-1], tb[-1]))]
        x, y = curve(self.tran, self.short, "-e", "v(out) - " + other)
        close(self, x, overlap, "overlap grid")
        close(self, y, np.interp(overlap, ta, va) - np.interp(overlap, tb, vb), "a - b")
        # The second file as the current section.
        x, y = curve(self.tran, self.short, "--section", "1", "-e", "v(out)")
        close(self, y, vb, "section 1")

    def test_complex_curves(self):
        f, v = self.c["frequency"].real, self.c["v(out)"]
        x, y = curve(self.ac, "-e", "v(out)")
        close(self, x, f, "frequencies")
        close(self, y, v, "complex values")
        x, y = curve(self.ac, "-e", "db(v(out))")
        close(self, y, 20 * np.log10(np.abs(v)), "db")
        x, y = curve(self.ac, "-e", "phase(v(out))")
        close(self, y, np.angle(v), "phase")
        x, y = curve(self.ac, "-e", "v(out)*j + 1")
        close(self, y, v * 1j + 1, "complex arithmetic")
        x, y = curve(self.ac, "-e", "v(in) - v(out)")
        close(self, y, self.c["v(in)"] - v, "two complex curves")
        code, out, err = run(self.ac, "-e", "v(out) > 0.5")
        self.assertEqual(code, 1)
        self.assertIn("does not apply to complex values", err)


def changes(text):
    """The lines of a logic curve's CSV after its header, as (time, state) pairs."""
    return [(float(t), state) for t, state in (line.split(",") for line in text.splitlines()[1:])]


def collapse(pairs, end):
    """Repeated states dropped, the last state repeated at end, as the evaluator's logic results are."""
    result = []
    for time, state in pairs:
        if not result or result[-1][1] != state:
            result.append((time, state))
    if result and result[-1][0] < end:
        result.append((end, result[-1][1]))
    return result


@unittest.skipIf(IVERILOG is None, "iverilog is not installed: the logic tests need it to write their dump")
class LogicCurves(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="zw_cli_eval_vcd_")
        subprocess.run([IVERILOG, "-o", "counter.vvp", VERILOG], cwd=cls.folder, check=True, capture_output=True,
                       timeout=300)
        subprocess.run(["vvp", "counter.vvp"], cwd=cls.folder, check=True, capture_output=True, timeout=300)
        cls.vcd = os.path.join(cls.folder, "counter.vcd")

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.folder)

    def dump(self, name):
        result = subprocess.run([CLI, "dump", self.vcd, name], capture_output=True, text=True, timeout=120)
        self.assertEqual(result.returncode, 0, result.stderr)
        return changes(result.stdout)

    def test_bits_buses_and_comparisons(self):
        count = self.dump("tb.count[7:0]")
        end = count[-1][0]
        vector = "waveform(\"counter.vcd\", \"tb.count[7:0]\")"
        for bit in (0, 1, 3):
            got = changes(value(self.vcd, "-e", "bit(%s, %d)" % (vector, bit)))
            self.assertEqual(got, collapse([(t, s[7 - bit]) for t, s in count], end), "bit %d" % bit)
        # A clock compared with its copy in the sub-module never differs.
        self.assertEqual({s for _, s in changes(value(self.vcd, "-e", "compare_digital_signals(tb.clk, tb.t1.clk)"))},
                         {"0"})
        # A bus of two one-bit curves: the first one is the upper bit.
        clk, half = self.dump("tb.clk"), self.dump("tb.half")
        times = sorted({t for t, _ in clk} | {t for t, _ in half})
        def state_at(pairs, t):
            return [s for time, s in pairs if time <= t][-1]
        expected = collapse([(t, state_at(clk, t) + state_at(half, t)) for t in times], times[-1])
        self.assertEqual(changes(value(self.vcd, "-e", "create_digital_bus(tb.clk, tb.half)")), expected)
        # The index form of a logic curve is its bit.
        self.assertEqual(changes(value(self.vcd, "-e", "tb.clk[0]")), collapse(clk, clk[-1][0]))
        # In arithmetic a logic curve counts by its levels: 0, 1, and x (the dump switched off) 0.5.
        x, y = curve(self.vcd, "-e", "tb.clk + 1")
        levels = {"0": 1.0, "1": 2.0, "x": 1.5}
        for t, state in clk:
            # The ramp of 1e-15 starts at the change.
            self.assertEqual(y[np.searchsorted(x, t + 2e-15, side="right") - 1], levels[state], t)
        code, out, err = run(self.vcd, "-e", "bit(tb.level, 1)")
        self.assertEqual((code, err.splitlines()[-1]),
                         (1, " - E - One or several curves in the expression have an incompatible data type."))


if __name__ == "__main__":
    CLI = sys.argv.pop(1)
    unittest.main()
