#!/usr/bin/python3
"""numpy's and scipy's view of the interpolation tables: a natural cubic spline (continued beyond
the ends with its end pieces), np.interp with straight continuation, np.polyval of coefficients,
the polynomial through all points by np.polyfit of degree n-1, and a piecewise polynomial by
scipy's PPoly, all evaluated on one grid that reaches beyond the points."""
import os
import sys

import numpy as np
from scipy.interpolate import CubicSpline, PPoly

folder = sys.argv[1]
rng = np.random.default_rng(11)


def save(name, values):
    np.asarray(values, dtype=np.float64).ravel().tofile(os.path.join(folder, name))


x = np.cumsum(rng.uniform(0.05, 1.0, 40))
y = np.sin(x) * 2 + rng.normal(0, 0.3, x.size)
grid = np.sort(np.concatenate([rng.uniform(x[0] - 3, x[-1] + 3, 3000), x]))
save("x", x)
save("y", y)
save("grid", grid)
save("spline", CubicSpline(x, y, bc_type="natural", extrapolate=True)(grid))
linear = np.interp(grid, x, y)
left, right = grid < x[0], grid > x[-1]
linear[left] = y[0] + (y[1] - y[0]) / (x[1] - x[0]) * (grid[left] - x[0])
linear[right] = y[-1] + (y[-1] - y[-2]) / (x[-1] - x[-2]) * (grid[right] - x[-1])
save("linear", linear)

coefficients = rng.uniform(-2, 2, 6)
save("coefficients", coefficients)
save("polyval", np.polyval(coefficients, grid))

px = np.sort(rng.uniform(-1.5, 1.5, 7))
py = rng.uniform(-1, 1, px.size)
pgrid = np.linspace(px[0] - 0.5, px[-1] + 0.5, 500)
save("px", px)
save("py", py)
save("pgrid", pgrid)
save("polyfit", np.polyval(np.polyfit(px, py, px.size - 1), pgrid))

breaks = np.cumsum(rng.uniform(0.2, 1.0, 6))
pieces = rng.uniform(-1, 1, (4, breaks.size - 1))  # scipy: c[k, i] is the k-th power from the top
save("breaks", breaks)
save("pieces", pieces.T)  # ours: piece after piece
save("ppoly", PPoly(pieces, breaks, extrapolate=True)(grid / grid.max() * 8 - 1))
save("ppoly_grid", grid / grid.max() * 8 - 1)
