#!/usr/bin/python3
"""Numpy's view of the measurements of a curve, written into the folder given.

trapezoid_x, trapezoid_y: a trapezoid wave whose edges last a different time in each period,
sampled at its corners and at random points between them. Its answers are exact and come from
the wave's definition, not from its samples: levels, 10%-90% rise and fall times, slew rates,
frequency and duty cycle at 50%, over the whole curve and over an interval that cuts edges.
sine_x, sine_y: a sine on a random grid; its crossings by numpy's vectorised interpolation.
smooth_*: a random curve with undefined samples, and its centred moving averages.
Scalars go to expected.txt as "name value" lines; arrays as raw little-endian doubles."""
import os
import sys

import numpy as np

folder, seed = sys.argv[1], int(sys.argv[2])
rng = np.random.default_rng(seed)
expected = {}


def save(name, values):
    np.asarray(values, dtype=np.float64).tofile(os.path.join(folder, name))


# ---- The trapezoid wave: low flat, rise, high flat, fall, in each period.
LOW, HIGH, PERIOD, PERIODS = -0.5, 2.5, 2e-6, 12
corners_x, corners_y, edges = [], [], []
for k in range(PERIODS):
    t0 = k * PERIOD
    rise = rng.uniform(0.02, 0.2) * PERIOD
    fall = rng.uniform(0.02, 0.2) * PERIOD
    wait = rng.uniform(0.05, 0.2) * PERIOD
    high = rng.uniform(0.2, 0.4) * PERIOD
    times = [t0, t0 + wait, t0 + wait + rise, t0 + wait + rise + high, t0 + wait + rise + high + fall]
    corners_x += times
    corners_y += [LOW, LOW, HIGH, HIGH, LOW]
    edges.append(("rise", times[1], rise))
    edges.append(("fall", times[3], fall))
corners_x.append(PERIODS * PERIOD)
corners_y.append(LOW)
corners_x, corners_y = np.array(corners_x), np.array(corners_y)
# Random samples between the corners, kept off the last 5% of each ramp next to the levels, so
# that the levels' bins hold only the flats.
extra = []
for a, b, ya, yb in zip(corners_x[:-1], corners_x[1:], corners_y[:-1], corners_y[1:]):
    count = rng.integers(0, 12)
    lo, hi = (0.05, 0.95) if ya != yb else (0.0, 1.0)
    extra += list(a + (b - a) * rng.uniform(lo, hi, count))
x = np.union1d(corners_x, extra)
y = np.interp(x, corners_x, corners_y)
save("trapezoid_x", x)
save("trapezoid_y", y)
span = HIGH - LOW


def edge_statistics(x1, x2, low_pct, high_pct):
    """Edges whose both reference crossings lie in [x1, x2], from the wave's definition."""
    rises, falls = [], []
    for kind, start, duration in edges:
        if kind == "rise":
            a, b = start + duration * low_pct / 100, start + duration * high_pct / 100
        else:
            a, b = start + duration * (1 - high_pct / 100), start + duration * (1 - low_pct / 100)
        if a >= x1 and b <= x2:
            (rises if kind == "rise" else falls).append(b - a)
    return np.array(rises), np.array(falls)


def crossings_at_half(x1, x2):
    """Rising and falling 50% crossings in [x1, x2]."""
    rising, falling = [], []
    for kind, start, duration in edges:
        at = start + duration / 2
        if x1 <= at <= x2:
            (rising if kind == "rise" else falling).append(at)
    return np.array(rising), np.array(falling)


def record(prefix, x1, x2, low_pct, high_pct):
    rises, falls = edge_statistics(x1, x2, low_pct, high_pct)
    slews = np.concatenate([span * (high_pct - low_pct) / 100 / rises, span * (high_pct - low_pct) / 100 / falls])
    for name, values in (("rise", rises), ("fall", falls), ("slew", slews)):
        expected[prefix + name + "_min"] = values.min()
        expected[prefix + name + "_avg"] = values.mean()
        expected[prefix + name + "_max"] = values.max()
        expected[prefix + name + "_count"] = len(values)
    rising, falling = crossings_at_half(x1, x2)
    expected[prefix + "frequency"] = (len(rising) - 1) / (rising[-1] - rising[0])
    duties = []
    for a, b in zip(rising[:-1], rising[1:]):
        fall = falling[(falling > a) & (falling < b)][0]
        duties.append((fall - a) / (b - a))
    expected[prefix + "duty"] = np.mean(duties)


expected["low"], expected["high"] = LOW, HIGH
record("all_", -np.inf, np.inf, 10, 90)
record("all_20_80_", -np.inf, np.inf, 20, 80)
# An interval whose bounds fall inside edges (between samples): those edges don't count.
rise3, fall7 = edges[6], edges[15]
x1 = rise3[1] + 0.4 * rise3[2]
x2 = fall7[1] + 0.3 * fall7[2]
expected["cut_x1"], expected["cut_x2"] = x1, x2
record("cut_", x1, x2, 10, 90)

# ---- A sine on a random grid: crossings by numpy.
sx = np.cumsum(rng.uniform(0.5, 1.5, 5000)) * 1e-3
sy = np.sin(2 * np.pi * 7.0 * sx) * 1.5 + 0.25
save("sine_x", sx)
save("sine_y", sy)
for name, threshold in (("sine_0", 0.25), ("sine_1", 1.0)):
    below = sy < threshold
    up = np.nonzero(below[:-1] & ~below[1:])[0]
    down = np.nonzero(~below[:-1] & below[1:])[0]

    def at(i):
        return sx[i] + (threshold - sy[i]) * (sx[i + 1] - sx[i]) / (sy[i + 1] - sy[i])

    rising, falling = at(up), at(down)
    expected[name + "_threshold"] = threshold
    expected[name + "_frequency"] = (len(rising) - 1) / (rising[-1] - rising[0])
    duties = [(falling[(falling > a) & (falling < b)][0] - a) / (b - a) for a, b in zip(rising[:-1], rising[1:])]
    expected[name + "_duty"] = np.mean(duties)
# Extremes over an interval whose ends fall between samples; the interpolated ends count.
for k, (a, b) in enumerate(((sx[100] + 1e-5, sx[160] - 2e-5), (sx[40] + 1e-4, sx[41] - 1e-4), (np.nan, np.nan))):
    lo = sx[0] if np.isnan(a) else a
    hi = sx[-1] if np.isnan(b) else b
    inside = (sx > lo) & (sx < hi)
    xs = np.concatenate([[lo], sx[inside], [hi]])
    ys = np.interp(xs, sx, sy)
    expected["extreme%d_x1" % k], expected["extreme%d_x2" % k] = a, b
    expected["extreme%d_min" % k], expected["extreme%d_xmin" % k] = ys.min(), xs[ys.argmin()]
    expected["extreme%d_max" % k], expected["extreme%d_xmax" % k] = ys.max(), xs[ys.argmax()]

# ---- Moving averages: each sample the mean of the samples within w on both sides, the window
# shrunk symmetrically to fit between the curve's ends and its undefined samples.
my = rng.normal(0.0, 2.0, 700) + 1e3
my[rng.choice(np.arange(700), 12, replace=False)] = np.nan
my[[350, 351, 352]] = np.nan
save("smooth_y", my)
widths = [0, 1, 2, 5, 40]
save("smooth_widths", widths)
defined = ~np.isnan(my)
for w in widths:
    out = np.full(my.size, np.nan)
    for i in np.nonzero(defined)[0]:
        left = i
        while left > 0 and defined[left - 1]:
            left -= 1
        right = i
        while right + 1 < my.size and defined[right + 1]:
            right += 1
        h = min(w, i - left, right - i)
        out[i] = np.mean(my[i - h:i + h + 1])
    save("smooth_%d" % w, out)

with open(os.path.join(folder, "expected.txt"), "w") as f:
    for name, value in expected.items():
        f.write("%s %r\n" % (name, float(value)))
