#!/usr/bin/python3
"""Eighteen curve colours in exact rational arithmetic: walk the hue triangle blue -> red ->
green -> blue in eighteen equal steps, visiting every third step, each channel lifted by lowest
and rounded half up. Prints "index red green blue" for lowest given on the command line."""
import sys
from fractions import Fraction
from math import floor


def channel(value):
    return floor(value + Fraction(1, 2))


def colour(index, lowest):
    u = index % 18
    step = u // 3 + (u % 3) * 6          # position on the hue triangle, 0..17
    edge, within = divmod(step, 6)       # which edge, and how far along it
    t = Fraction(within, 6)
    span = 255 - lowest
    rise, fall = lowest + span * t, lowest + span * (1 - t)
    # The edges: blue fades into red, red into green, green into blue.
    rgb = [(rise, lowest, fall), (fall, rise, lowest), (lowest, fall, rise)][edge]
    return tuple(channel(Fraction(c)) for c in rgb)


lowest = int(sys.argv[1])
with open(sys.argv[2], "w") as out:
    for i in range(40):
        out.write("%d %d %d %d\n" % ((i,) + colour(i, lowest)))
