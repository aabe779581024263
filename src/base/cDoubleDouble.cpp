#include "base/cDoubleDouble.h"

#include <cmath>
#include <limits>

namespace vx3 {

cDoubleDouble cDoubleDouble::twoSum(double a, double b)
{
    const double s = a + b;
    const double bb = s - a;
    const double e = (a - (s - bb)) + (b - bb);
    return cDoubleDouble(s, e);
}

cDoubleDouble cDoubleDouble::quickTwoSum(double a, double b)
{
    const double s = a + b;
    return cDoubleDouble(s, b - (s - a));
}

cDoubleDouble cDoubleDouble::twoProduct(double a, double b)
{
    const double p = a * b;
    return cDoubleDouble(p, std::fma(a, b, -p));
}

cDoubleDouble cDoubleDouble::powerOfTen(int exponent)
{
    if (exponent >= 0 && exponent <= 22)
        return cDoubleDouble(std::pow(10.0, exponent));  // exact: 5^22 fits 53 bits
    if (exponent > 22)
        return exponent > 330 ? cDoubleDouble(HUGE_VAL) : powerOfTen(exponent - 22) * 1e22;
    if (exponent < -22)
        return exponent < -340 ? cDoubleDouble(0.0) : powerOfTen(exponent + 22) * powerOfTen(-22);
    // The reciprocal of an exact power, with one correction step.
    const double divisor = std::pow(10.0, -exponent);
    const double quotient = 1.0 / divisor;
    const double remainder = -std::fma(quotient, divisor, -1.0);  // 1 - quotient * divisor, exactly
    return quickTwoSum(quotient, remainder / divisor);
}

cDoubleDouble cDoubleDouble::decimalOf(double value)
{
    const double magnitude = std::fabs(value);
    if (!(magnitude > 0.0) || !std::isfinite(magnitude))
        return cDoubleDouble(value);
    const int top = static_cast<int>(std::floor(std::log10(magnitude)));
    for (int exponent = top; exponent >= top - 6; --exponent) {
        const double power = std::pow(10.0, exponent);
        const double whole = std::round(magnitude / power);
        if (whole >= 1.0 && std::fabs(whole * power - magnitude) <= 4e-16 * magnitude) {
            const cDoubleDouble decimal = powerOfTen(exponent) * whole;
            return value < 0.0 ? -decimal : decimal;
        }
    }
    return cDoubleDouble(value);
}

cDoubleDouble& cDoubleDouble::operator+=(const cDoubleDouble& other)
{
    // Sum of both parts with both rounding errors carried: accurate to about 2^-104 relative.
    cDoubleDouble s = twoSum(mHigh, other.mHigh);
    if (!std::isfinite(s.mHigh))
        return *this = cDoubleDouble(s.mHigh, 0.0);
    cDoubleDouble t = twoSum(mLow, other.mLow);
    double low = s.mLow + t.mHigh;
    s = quickTwoSum(s.mHigh, low);
    low = t.mLow + s.mLow;
    *this = quickTwoSum(s.mHigh, low);
    return *this;
}

cDoubleDouble& cDoubleDouble::operator-=(const cDoubleDouble& other) { return *this += -other; }

cDoubleDouble& cDoubleDouble::operator+=(double other)
{
    cDoubleDouble s = twoSum(mHigh, other);
    if (!std::isfinite(s.mHigh))
        return *this = cDoubleDouble(s.mHigh, 0.0);
    s.mLow += mLow;
    *this = quickTwoSum(s.mHigh, s.mLow);
    return *this;
}

cDoubleDouble& cDoubleDouble::operator-=(double other) { return *this += -other; }

cDoubleDouble& cDoubleDouble::operator*=(const cDoubleDouble& other)
{
    cDoubleDouble p = twoProduct(mHigh, other.mHigh);
    if (!std::isfinite(p.mHigh))
        return *this = cDoubleDouble(p.mHigh, 0.0);
    p.mLow += mHigh * other.mLow + mLow * other.mHigh;
    *this = quickTwoSum(p.mHigh, p.mLow);
    return *this;
}

cDoubleDouble& cDoubleDouble::operator*=(double other)
{
    cDoubleDouble p = twoProduct(mHigh, other);
    if (!std::isfinite(p.mHigh))
        return *this = cDoubleDouble(p.mHigh, 0.0);
    p.mLow += mLow * other;
    *this = quickTwoSum(p.mHigh, p.mLow);
    return *this;
}

cDoubleDouble cDoubleDouble::roundToWhole() const
{
    double high = std::round(mHigh);
    if (high == mHigh) {
        // The high part is whole already (always so beyond 2^52): the low part decides.
        double low = std::round(mLow);
        return quickTwoSum(high, low);
    }
    // The low part is far below one unit here, but it can move a value sitting on a half.
    if (std::fabs(high - mHigh) == 0.5) {
        if (mHigh > 0 && high > mHigh && mLow < 0)
            high -= 1.0;
        else if (mHigh < 0 && high < mHigh && mLow > 0)
            high += 1.0;
    }
    return cDoubleDouble(high, 0.0);
}

int64_t cDoubleDouble::roundToInt64() const
{
    if (std::isnan(mHigh))
        return 0;
    constexpr double limit = 9.2233720368547758e18;
    if (mHigh >= limit)
        return std::numeric_limits<int64_t>::max();
    if (mHigh <= -limit)
        return std::numeric_limits<int64_t>::min();
    const cDoubleDouble whole = roundToWhole();
    // Both parts are whole numbers now; the sum fits, so add them as integers to keep every digit.
    return static_cast<int64_t>(whole.mHigh) + static_cast<int64_t>(whole.mLow);
}

cDoubleDouble abs(const cDoubleDouble& value) { return value.high() < 0 ? -value : value; }

}  // namespace vx3
