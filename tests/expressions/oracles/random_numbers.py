#!/usr/bin/python3
"""The calculator's random number recurrence written out with Python integers held to 64 bits:
for each seed given, the first words, the doubles made from the next ones, uniform draws between
ordered-later bounds and normal draws through scipy's inverse error function."""
import os
import sys

import numpy as np
from scipy.special import erfinv

MASK = (1 << 64) - 1
START_V = 4101842887655102017


class Generator:
    def __init__(self, seed):
        if seed == 0:
            seed = 11
        elif seed == START_V:
            seed = 12
        self.v = START_V
        self.w = 1
        self.u = seed ^ self.v
        self.next()
        self.v = self.u
        self.next()
        self.w = self.v
        self.next()

    def next(self):
        self.u = (self.u * 2862933555777941757 + 7046029254386353087) & MASK
        self.v ^= self.v >> 17
        self.v ^= (self.v << 31) & MASK
        self.v ^= self.v >> 8
        self.w = (4294957665 * (self.w & 0xFFFFFFFF) + (self.w >> 32)) & MASK
        x = self.u ^ ((self.u << 21) & MASK)
        x ^= x >> 35
        x ^= (x << 4) & MASK
        return ((x + self.v) & MASK) ^ self.w

    def double(self):
        return 5.42101086242752217e-20 * float(self.next())


folder, count = sys.argv[1], int(sys.argv[2])
seeds = [int(s) for s in sys.argv[3:]]
words, doubles, uniform, normal = [], [], [], []
for seed in seeds:
    g = Generator(seed)
    words += [g.next() for _ in range(count)]
    doubles += [g.double() for _ in range(count)]
    low, high = 5.0, -3.0  # given the wrong way round on purpose
    low, high = min(low, high), max(low, high)
    uniform += [low + g.double() * (high - low) for _ in range(count)]
    for _ in range(count):
        while True:
            deviate = float(erfinv(2 * g.double() - 1))
            if np.isfinite(deviate):
                break
        normal.append(deviate * 0.25 * 1.4142135623730951 + 10.0)
np.array(words, dtype=np.uint64).tofile(os.path.join(folder, "words"))
for name, values in (("doubles", doubles), ("uniform", uniform), ("normal", normal)):
    np.array(values, dtype=np.float64).tofile(os.path.join(folder, name))
