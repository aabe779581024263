#!/usr/bin/python3
"""Numpy's view of two curves on unlike grids: the union grid with np.union1d, values by np.interp
(0 outside a curve), and the overlap grid. Writes raw little-endian arrays into the folder given."""
import os
import sys

import numpy as np

folder, seed = sys.argv[1], int(sys.argv[2])
rng = np.random.default_rng(seed)


def grid(n, start, end, dtype):
    return np.unique(rng.uniform(start, end, n)).astype(dtype)


def save(name, values, dtype=np.float64):
    np.asarray(values, dtype=dtype).tofile(os.path.join(folder, name))


def read(x, y, u):
    xs, ys = x.astype(np.float64), y.astype(np.float64)
    inside = (u >= xs[0]) & (u <= xs[-1])
    return np.where(inside, np.interp(u, xs, ys), 0.0)


cases = [
    # (a's samples, a's range, b's samples, b's range, b's type)
    (500, (0.0, 10.0), 700, (3.0, 15.0), np.float64),
    (1000, (-5.0, 5.0), 37, (-1.0, 1.0), np.float64),
    (300, (0.0, 1.0), 400, (0.0, 1.0), np.float32),
]
for number, (na, ra, nb, rb, btype) in enumerate(cases):
    ax, bx = grid(na, *ra, np.float64), grid(nb, *rb, btype)
    # Shared points, as curves of one simulation have.
    ax = np.unique(np.concatenate([ax, bx[::5].astype(np.float64)]))
    ay, by = rng.normal(0, 2, ax.size), rng.normal(3, 1, bx.size).astype(btype)
    prefix = "case%d_" % number
    save(prefix + "ax", ax)
    save(prefix + "ay", ay)
    save(prefix + "bx", bx, btype)
    save(prefix + "by", by, btype)
    u = np.union1d(ax, bx.astype(np.float64))
    save(prefix + "union_x", u)
    save(prefix + "union_add", read(ax, ay, u) + read(bx, by, u))
    lo, hi = max(ax[0], float(bx[0])), min(ax[-1], float(bx[-1]))
    o = u[(u >= lo) & (u <= hi)]
    va, vb = read(ax, ay, o), read(bx, by, o)
    save(prefix + "overlap_x", o)
    save(prefix + "overlap_subtract", va - vb)
    save(prefix + "overlap_multiply", va * vb)
    save(prefix + "overlap_divide", va / vb)
    save(prefix + "overlap_less", (va < vb).astype(np.float64))

# A real curve with a complex one (as an ac analysis gives): the real one widens with zero
# imaginary part; the complex one is read part by part.
ax, bx = grid(400, 0.0, 10.0, np.float64), grid(300, 2.0, 12.0, np.float64)
ay = rng.normal(0, 2, ax.size)
by = rng.normal(1, 1, bx.size) + 1j * rng.normal(-1, 1, bx.size)
save("complex_ax", ax)
save("complex_ay", ay)
save("complex_bx", bx)
save("complex_by", by, np.complex128)


def readc(x, y, u):
    return read(x, y.real, u) + 1j * read(x, y.imag, u)


u = np.union1d(ax, bx)
save("complex_union_x", u)
save("complex_union_add", read(ax, ay, u) + readc(bx, by, u), np.complex128)
o = u[(u >= max(ax[0], bx[0])) & (u <= min(ax[-1], bx[-1]))]
save("complex_overlap_x", o)
save("complex_overlap_divide", read(ax, ay, o) / readc(bx, by, o), np.complex128)
save("complex_overlap_subtract_comm", readc(bx, by, o) - read(ax, ay, o), np.complex128)
