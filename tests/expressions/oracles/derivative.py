#!/usr/bin/python3
"""Checks printed symbolic derivatives numerically. Each line of the input file is
"expression<TAB>derivative<TAB>x1,x2,...", both in the calculator's text form, differentiated by x.
Both texts are evaluated with Python's math after turning "^" into "**" and the percent sign into a division by 100; the derivative at each x is
compared with a Richardson-extrapolated central difference of the expression. Writes, per line, the
largest relative disagreement."""
import math
import sys

RAD = math.pi / 180


def sgn(v):
    return (v > 0) - (v < 0)


names = {
    "sin": math.sin, "cos": math.cos, "tan": math.tan, "asin": math.asin, "acos": math.acos,
    "atan": math.atan, "sinh": math.sinh, "cosh": math.cosh, "tanh": math.tanh,
    "asinh": math.asinh, "acosh": math.acosh, "atanh": math.atanh, "exp": math.exp,
    "ln": math.log, "log": math.log, "log10": math.log10, "sqrt": math.sqrt, "abs": abs,
    "mag": abs, "magnitude": abs, "sgn": sgn, "pow": math.pow, "power": math.pow,
    "db": lambda v: 20 * math.log10(abs(v)),
    "sind": lambda v: math.sin(v * RAD), "cosd": lambda v: math.cos(v * RAD),
    "tand": lambda v: math.tan(v * RAD), "sinhd": lambda v: math.sinh(v * RAD),
    "coshd": lambda v: math.cosh(v * RAD), "tanhd": lambda v: math.tanh(v * RAD),
    "asind": lambda v: math.asin(v) / RAD, "acosd": lambda v: math.acos(v) / RAD,
    "atand": lambda v: math.atan(v) / RAD, "asinhd": lambda v: math.asinh(v) / RAD,
    "acoshd": lambda v: math.acosh(v) / RAD, "atanhd": lambda v: math.atanh(v) / RAD,
    "a": 1.7, "b": 2.6, "y": -0.6, "e": math.e,
}


def evaluate(text, x):
    return eval(text.replace("^", "**").replace("%", "/100"), {"__builtins__": {}}, dict(names, x=x, X=x))


def central(text, x):
    h = 1e-3 * max(1.0, abs(x))
    d = lambda step: (evaluate(text, x + step) - evaluate(text, x - step)) / (2 * step)
    # Two Richardson steps: error of order h^6.
    d1, d2, d3 = d(h), d(h / 2), d(h / 4)
    e1, e2 = (4 * d2 - d1) / 3, (4 * d3 - d2) / 3
    return (16 * e2 - e1) / 15


with open(sys.argv[1]) as source, open(sys.argv[2], "w") as sink:
    for line in source:
        expression, derivative, points = line.rstrip("\n").split("\t")
        worst = 0.0
        for x in (float(p) for p in points.split(",")):
            expected = central(expression, x)
            got = evaluate(derivative, x)
            worst = max(worst, abs(got - expected) / max(1.0, abs(expected)))
        sink.write(f"{worst!r}\n")
