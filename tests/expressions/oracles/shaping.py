#!/usr/bin/python3
"""Numpy's view of the shaping of one curve.
make FOLDER SEED: a random grid with a noisy sine, its shifted copy, its resampling on a regular
grid (np.interp, undefined outside the curve) and its staircase, as raw little-endian arrays.
check FOLDER EPS: whether the thinned curve (reduced_x, reduced_y) read by np.interp at every
original sample stays within EPS of it; prints the kept share, exits 1 when not."""
import os
import sys

import numpy as np

mode, folder = sys.argv[1], sys.argv[2]


def path(name):
    return os.path.join(folder, name)


def save(name, values):
    np.asarray(values, dtype=np.float64).tofile(path(name))


def load(name):
    return np.fromfile(path(name), dtype=np.float64)


if mode == "make":
    rng = np.random.default_rng(int(sys.argv[3]))
    x = np.cumsum(rng.uniform(0.01, 1.0, 3000))
    y = np.sin(x / 7) * 3 + rng.normal(0, 0.05, x.size)
    save("x", x)
    save("y", y)
    save("shift_x", x * 2.5 - 1)
    save("shift_y", y * -0.5 + 3)
    start, end, step = x[0] - 3.3, x[-1] + 2.0, 0.37
    grid = start + np.arange(int(np.floor((end - start) / step + 1e-9)) + 1) * step
    save("resample_bounds", [start, end, step])
    save("resample_x", grid)
    inside = (grid >= x[0]) & (grid <= x[-1])
    save("resample_y", np.where(inside, np.interp(grid, x, y), np.nan))
    save("step_x", np.repeat(x, 2)[1:])
    save("step_y", np.repeat(y, 2)[:-1])
    # A smooth curve for the thinning, with a jump in the middle.
    sx = np.linspace(0, 100, 20001)
    sy = np.sin(sx / 5) + (sx >= 50)
    sx = np.insert(sx, 10000, 50.0)
    sy = np.insert(sy, 10000, np.sin(50 / 5))
    save("smooth_x", sx)
    save("smooth_y", sy)
elif mode == "check":
    eps = float(sys.argv[3])
    x, y = load("smooth_x"), load("smooth_y")
    rx, ry = load("reduced_x"), load("reduced_y")
    # Each side of the jump on its own, np.interp can't hold two values at one x: the jump's two
    # samples must both be kept.
    jump = np.flatnonzero(rx == 50.0)
    if jump.size != 2:
        print("the jump at 50 lost a side: %d samples there" % jump.size)
        sys.exit(1)
    worst = 0.0
    for (orig, red) in ((slice(0, 10001), slice(0, jump[0] + 1)), (slice(10001, None), slice(jump[1], None))):
        read = np.interp(x[orig], rx[red], ry[red])
        worst = max(worst, float(np.max(np.abs(read - y[orig]))))
    kept = rx.size / x.size
    print("kept %.4f worst %.3g" % (kept, worst))
    sys.exit(0 if worst <= eps * (1 + 1e-9) and set(rx).issubset(set(x)) else 1)
