#!/usr/bin/python3
"""Numpy's and scipy's view of one curve on a random grid: slopes by diff(y)/diff(x), the centred
form, cumulative_trapezoid integrals, and averages over intervals whose ends fall between samples.
Writes raw little-endian arrays into the folder given."""
import os
import sys

import numpy as np
from scipy.integrate import cumulative_trapezoid

folder, seed = sys.argv[1], int(sys.argv[2])
rng = np.random.default_rng(seed)
x = np.cumsum(rng.uniform(0.01, 1.0, 2000))
y = np.sin(x) * 3 + rng.normal(0, 0.1, x.size)


def save(name, values):
    np.asarray(values, dtype=np.float64).tofile(os.path.join(folder, name))


save("x", x)
save("y", y)
slopes = np.diff(y) / np.diff(x)
save("forward", np.append(slopes, slopes[-1]))
save("backward", np.insert(slopes, 0, slopes[0]))
centred = (y[2:] - y[:-2]) / (x[2:] - x[:-2])
save("centred", np.concatenate([[centred[0]], centred, [centred[-1]]]))
save("integral", cumulative_trapezoid(y, x, initial=0))

trapezoid = getattr(np, "trapezoid", None) or np.trapz
intervals = []
averages = []
for _ in range(50):
    a, b = np.sort(rng.uniform(x[0] - 5, x[-1] + 5, 2))
    lo, hi = max(a, x[0]), min(b, x[-1])
    inside = (x > lo) & (x < hi)
    xs = np.concatenate([[lo], x[inside], [hi]])
    ys = np.interp(xs, x, y)
    intervals += [a, b]
    averages.append(trapezoid(ys, xs) / (hi - lo))
# The whole curve, by the NaN bounds.
intervals += [np.nan, np.nan]
averages.append(trapezoid(y, x) / (x[-1] - x[0]))
save("intervals", intervals)
save("averages", averages)
