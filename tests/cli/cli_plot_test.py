"""zelwave-cli plot: curves of a raw file that ngspice writes at test time, drawn headless.

The PNG is read back here (a small decoder over zlib) and the curve followed column by column:
an RC charging curve must climb from left to right. Formats are checked with `file`, the SVG
with xmllint. Skips (with a message) only when ngspice is absent."""
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

CLI = sys.argv.pop(1) if len(sys.argv) > 1 else "zelwave-cli"
NGSPICE = shutil.which("ngspice")

NETLIST = """RC charging
v1 in 0 pwl(0 0 1n 1)
r1 in out 1k
c1 out 0 1n
.tran 10n 5u
.end
"""


def run(*arguments):
    result = subprocess.run([CLI, *arguments], capture_output=True, text=True, timeout=300)
    return result.returncode, result.stdout, result.stderr


def read_png(path):
    """(width, height, rows of (r, g, b) tuples) of an 8-bit, non-interlaced RGB or RGBA PNG."""
    with open(path, "rb") as f:
        data = f.read()
    assert data[:8] == b"\x89PNG\r\n\x1a\n"
    position, idat, header = 8, b"", None
    while position < len(data):
        length, kind = struct.unpack(">I4s", data[position:position + 8])
        body = data[position + 8:position + 8 + length]
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            idat += body
        position += 12 + length
    width, height, depth, colour, _, _, interlace = header
    assert depth == 8 and colour in (2, 6) and interlace == 0, header
    channels = 3 if colour == 2 else 4
    raw = zlib.decompress(idat)
    stride = width * channels
    rows, previous = [], bytearray(stride)
    for y in range(height):
        kind = raw[y * (stride + 1)]
        line = bytearray(raw[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
        for i in range(stride):
            a = line[i - channels] if i >= channels else 0
            b = previous[i]
            c = previous[i - channels] if i >= channels else 0
            if kind == 1:
                line[i] = (line[i] + a) & 255
            elif kind == 2:
                line[i] = (line[i] + b) & 255
            elif kind == 3:
                line[i] = (line[i] + (a + b) // 2) & 255
            elif kind == 4:
                p = a + b - c
                pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
                line[i] = (line[i] + (a if pa <= pb and pa <= pc else b if pb <= pc else c)) & 255
        rows.append([tuple(line[x * channels:x * channels + 3]) for x in range(width)])
        previous = line
    return width, height, rows


def curve_row(rows, column):
    """Mean row of the pure blue curve pixels in a column, None without any."""
    hits = [y for y, row in enumerate(rows) if row[column][2] > 180 and row[column][0] < 90 and row[column][1] < 90]
    return sum(hits) / len(hits) if hits else None


@unittest.skipIf(NGSPICE is None, "ngspice is not installed")
class PlotTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="zw-cli-plot-")
        with open(os.path.join(cls.folder, "rc.cir"), "w") as f:
            f.write(NETLIST)
        subprocess.run([NGSPICE, "-b", "-r", "rc.raw", "rc.cir"], cwd=cls.folder, capture_output=True, timeout=300)
        cls.raw = os.path.join(cls.folder, "rc.raw")
        if not os.path.exists(cls.raw):
            raise AssertionError("ngspice wrote no rc.raw")

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.folder, ignore_errors=True)

    def path(self, name):
        return os.path.join(self.folder, name)

    def test_png_shows_the_charging_curve_climbing(self):
        code, out, err = run("plot", self.raw, "v(out)", "-o", self.path("rc.png"))
        self.assertEqual(code, 0, err)
        self.assertEqual(out.strip(), self.path("rc.png"))
        width, height, rows = read_png(self.path("rc.png"))
        self.assertEqual((width, height), (1200, 800))
        # Across the canvas (clear of the axis at the left and the legend at the top right) the
        # curve never goes down the picture, and climbs most of its height.
        samples = [curve_row(rows, x) for x in range(120, 1050, 40)]
        self.assertNotIn(None, samples)
        for left, right in zip(samples, samples[1:]):
            self.assertLessEqual(right, left + 2.0, samples)
        self.assertGreater(samples[0] - samples[-1], 400, samples)

    def test_each_format_and_size(self):
        expected = {"rc.svg": "SVG Scalable Vector Graphics image", "rc.jpg": "JPEG image data",
                    "rc.bmp": "PC bitmap", "rc.tif": "TIFF image data"}
        for name, kind in expected.items():
            code, _, err = run("plot", self.raw, "v(out)", "v(in)", "-o", self.path(name))
            self.assertEqual(code, 0, err)
            described = subprocess.run(["file", "-b", self.path(name)], capture_output=True, text=True).stdout
            self.assertIn(kind, described, name)
        lint = subprocess.run(["xmllint", "--noout", self.path("rc.svg")], capture_output=True, text=True)
        self.assertEqual(lint.returncode, 0, lint.stderr)
        code, _, err = run("plot", self.raw, "v(out)", "--size", "640x320", "-o", self.path("small.png"))
        self.assertEqual(code, 0, err)
        self.assertEqual(read_png(self.path("small.png"))[:2], (640, 320))

    def test_bad_input_says_why_and_writes_nothing(self):
        cases = [
            (("plot", self.raw, "nosuch", "-o", self.path("a.png")), 1, "nosuch"),
            (("plot", self.path("missing.raw"), "v(out)", "-o", self.path("b.png")), 1, "missing.raw"),
            (("plot", self.raw, "v(out)"), 2, "-o"),
            (("plot", self.raw, "v(out)", "-o", self.path("no/dir/c.png")), 1, "doesn't exist"),
            (("plot", self.raw, "v(out)", "-o", self.path("d.xyz")), 1, "Failed to export to"),
            (("plot", self.raw, "v(out)", "--size", "12", "-o", self.path("e.png")), 2, "no size"),
        ]
        for arguments, status, text in cases:
            code, _, err = run(*arguments)
            self.assertEqual(code, status, (arguments, err))
            self.assertIn(text, err, arguments)
        for name in ("a.png", "b.png", "d.xyz", "e.png"):
            self.assertFalse(os.path.exists(self.path(name)), name)


if __name__ == "__main__":
    unittest.main()
