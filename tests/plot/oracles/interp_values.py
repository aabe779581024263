"""Oracle of the plot's readouts: values at given x by numpy and scipy.

Usage: interp_values.py KIND POINTS QUERIES OUT
POINTS: lines "x y" (sorted by x for linear and spline); QUERIES: one x a line.
KIND: linear (numpy.interp), spline (natural cubic spline, extrapolating), polynomial (the
polynomial through all points). OUT: one value a line, repr precision.
"""
import sys

import numpy as np


def main():
    kind, points_file, queries_file, out_file = sys.argv[1:5]
    points = np.loadtxt(points_file, ndmin=2)
    queries = np.loadtxt(queries_file, ndmin=1)
    xs, ys = points[:, 0], points[:, 1]
    if kind == "linear":
        values = np.interp(queries, xs, ys)
    elif kind == "spline":
        from scipy.interpolate import CubicSpline
        values = CubicSpline(xs, ys, bc_type="natural", extrapolate=True)(queries)
    elif kind == "polynomial":
        from scipy.interpolate import BarycentricInterpolator
        values = BarycentricInterpolator(xs, ys)(queries)
    else:
        raise SystemExit("unknown kind " + kind)
    with open(out_file, "w") as out:
        for value in values:
            out.write(repr(float(value)) + "\n")


if __name__ == "__main__":
    main()
