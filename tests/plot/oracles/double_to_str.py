"""Label texts of numbers, computed with exact decimal arithmetic.

Reads lines "precision hexfloat" from argv[1], writes to argv[2] per line either
"text error" (error = |value - written value| as %.17g) or "skip" when the value sits so close to
a rounding boundary (of the exponent or of the last digit) that a binary computation may
legitimately fall on either side.
"""
import sys
from decimal import Decimal, getcontext, ROUND_HALF_UP, ROUND_FLOOR

getcontext().prec = 60  # far beyond the 17 digits of a double and the slack below
TEN = Decimal(10)


def round_half_away(x):
    return int(x.to_integral_value(rounding=ROUND_HALF_UP))


def near_half(x, slack):
    fraction = x - x.to_integral_value(rounding=ROUND_FLOOR)
    return abs(fraction - Decimal("0.5")) <= slack


def exponent(a):
    logarithm = a.log10()
    ambiguous = near_half(logarithm, Decimal("1e-12"))
    e = round_half_away(logarithm)
    if a < 1 and a < TEN ** e:
        e -= 1
    if abs(a - TEN ** e) <= a * Decimal("1e-14"):
        ambiguous = True
    return e, ambiguous


def digits(m, power):
    x = m * power
    # The binary side forms this product with a relative error near 1e-19.
    return round_half_away(x), near_half(x, x * Decimal("1e-17") + Decimal("1e-12"))


def label(precision, value):
    if value == 0:
        return "0.0", Decimal(0)
    negative = value < 0
    a = abs(value)
    e, ambiguous = exponent(a)
    scaled = e < -3 or e > 3
    m = a / TEN ** e if scaled else a
    precision = max(0, min(precision, 18))
    while precision > 0 and m * TEN ** precision >= Decimal("9e18"):
        precision -= 1
    power = TEN ** precision
    n, near = digits(m, power)
    if ambiguous or near:
        return None
    if n == 0:
        return "0.0", a
    if scaled and n // int(power) > 9:
        e += 1
        m = a / TEN ** e
        n, near = digits(m, power)
        if near:
            return None
    whole, fraction = divmod(n, int(power))
    text = ("-" if negative else "") + str(whole) + "."
    if fraction == 0:
        text += "0"
    else:
        text += str(fraction).rjust(precision, "0").rstrip("0")
    written = Decimal(n) / power
    if scaled:
        text += "e" + str(e)
        written *= TEN ** e
    return text, abs(a - written)


def main():
    with open(sys.argv[1]) as source, open(sys.argv[2], "w") as target:
        for line in source:
            precision, hexadecimal = line.split()
            result = label(int(precision), Decimal(float.fromhex(hexadecimal)))
            if result is None:
                target.write("skip\n")
            else:
                target.write("%s %.17g\n" % (result[0], float(result[1])))


main()
