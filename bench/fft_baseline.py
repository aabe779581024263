#!/usr/bin/python3
"""The numpy/scipy side of bench_fft: times the same work on the same data, in the same run.

fft_baseline.py FOLDER REPEATS prints one line per measurement, "name seconds" (the median):
rfft of real_2e20 and real_2p (np.fft.rfft), interp of the curve to 2^20 points (np.interp),
and the convolution of conv_a and conv_b (scipy.signal.fftconvolve)."""
import os
import sys
import time

import numpy as np
from scipy.signal import fftconvolve

folder, repeats = sys.argv[1], int(sys.argv[2])


def load(name):
    return np.fromfile(os.path.join(folder, name), dtype=np.float64)


def median(work):
    times = []
    for _ in range(repeats):
        start = time.perf_counter()
        work()
        times.append(time.perf_counter() - start)
    return float(np.median(times))


for name in ("real_2e20", "real_2p"):
    data = load(name)
    np.fft.rfft(data)
    print(name, median(lambda: np.fft.rfft(data)))
x, y = load("curve_x"), load("curve_y")
grid = x[0] + np.arange(1 << 20) * ((x[-1] - x[0]) / (1 << 20))
print("resample", median(lambda: np.interp(grid, x, y, left=0.0, right=0.0)))
a, b = load("conv_a"), load("conv_b")
print("convolution", median(lambda: fftconvolve(a, b) * 1e-6))
