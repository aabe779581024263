#!/usr/bin/python3
"""scipy's and cmath's view of the calculator's scalar functions: the inverse error function over
the middle and both tails, and the complex inverse functions and logarithms on a grid of points
that includes both sides of every branch cut. Writes raw little-endian arrays into the folder given."""
import cmath
import os
import sys

import numpy as np
from scipy.special import erfinv

folder = sys.argv[1]
rng = np.random.default_rng(7)


def save(name, values):
    np.asarray(values, dtype=np.float64).tofile(os.path.join(folder, name))


middle = rng.uniform(-0.9, 0.9, 2000)
tails = 1 - np.logspace(-1, -15.9, 400)
tiny = np.array([1e-300, 5e-324, 1e-20, 1e-10, 1e-5])
y = np.concatenate([middle, tails, -tails, tiny, -tiny])
save("erfinv_y", y)
save("erfinv", erfinv(y))

# Points on both sides of the cuts (imaginary part +-0 and +-1e-300 beyond +-1 and +-i) and a
# spread of ordinary points.
points = [complex(r, i) for r in (-3.5, -1.5, -1.0, -0.5, 0.0, 0.25, 1.0, 2.0, 7.0)
          for i in (-2.0, -1e-300, -0.0, 0.0, 1e-300, 0.75)]
points += [complex(i, r) for r in (-3.5, -1.5, 1.5, 4.0) for i in (-0.0, 0.0, 1e-300, -1e-300)]
points += [complex(*p) for p in rng.uniform(-4, 4, (200, 2))]
functions = ["asin", "acos", "atan", "asinh", "acosh", "atanh", "log", "log10", "sqrt", "exp",
             "sin", "cos", "tan", "sinh", "cosh", "tanh"]
values = []
for z in points:
    for name in functions:
        try:
            w = getattr(cmath, name)(z)
        except (ValueError, OverflowError):
            w = complex(float("nan"), float("nan"))
        values += [w.real, w.imag]
save("complex_points", [c for z in points for c in (z.real, z.imag)])
save("complex_values", values)
