// A number held as the unevaluated sum of two doubles (about 32 significant digits), so that
// tick values and pixel positions stay exact when a view of picoseconds sits at a time of seconds.
#pragma once

#include <cstdint>

namespace vx3 {

class cDoubleDouble {
public:
    constexpr cDoubleDouble() = default;
    constexpr cDoubleDouble(double value) : mHigh(value) {}  // NOLINT: a double is a double-double
    constexpr cDoubleDouble(double high, double low) : mHigh(high), mLow(low) {}

    // Error-free transformations: s + e == a + b and p + e == a * b exactly.
    static cDoubleDouble twoSum(double a, double b);
    static cDoubleDouble quickTwoSum(double a, double b);  // needs |a| >= |b|
    static cDoubleDouble twoProduct(double a, double b);
    // 10^exponent to about 32 digits (exact up to 10^22), so that multiples of 0.1 land on decimals.
    static cDoubleDouble powerOfTen(int exponent);
    // A tick distance such as 0.2, 2.5e-14 or 21600 as the decimal it stands for: a whole number of
    // up to seven digits times a power of ten; other values are taken as they are.
    static cDoubleDouble decimalOf(double value);

    double high() const { return mHigh; }
    double low() const { return mLow; }
    double toDouble() const { return mHigh + mLow; }
    // Nearest integer (a value within 2^-53 of a half may go either way), saturated at the int64
    // limits; NaN gives 0.
    int64_t roundToInt64() const;
    // Nearest whole number as a double-double, exact also beyond 2^53.
    cDoubleDouble roundToWhole() const;

    cDoubleDouble operator-() const { return cDoubleDouble(-mHigh, -mLow); }
    cDoubleDouble& operator+=(const cDoubleDouble& other);
    cDoubleDouble& operator-=(const cDoubleDouble& other);
    cDoubleDouble& operator*=(const cDoubleDouble& other);
    cDoubleDouble& operator+=(double other);
    cDoubleDouble& operator-=(double other);
    cDoubleDouble& operator*=(double other);

    friend cDoubleDouble operator+(cDoubleDouble a, const cDoubleDouble& b) { return a += b; }
    friend cDoubleDouble operator-(cDoubleDouble a, const cDoubleDouble& b) { return a -= b; }
    friend cDoubleDouble operator*(cDoubleDouble a, const cDoubleDouble& b) { return a *= b; }
    friend cDoubleDouble operator+(cDoubleDouble a, double b) { return a += b; }
    friend cDoubleDouble operator-(cDoubleDouble a, double b) { return a -= b; }
    friend cDoubleDouble operator*(cDoubleDouble a, double b) { return a *= b; }
    friend cDoubleDouble operator+(double a, const cDoubleDouble& b) { return cDoubleDouble(a) += b; }
    friend cDoubleDouble operator-(double a, const cDoubleDouble& b) { return cDoubleDouble(a) -= b; }
    friend cDoubleDouble operator*(double a, const cDoubleDouble& b) { return cDoubleDouble(a) *= b; }

    // Comparisons of the exact sums; both parts are normalised, so high decides unless equal.
    friend bool operator==(const cDoubleDouble& a, const cDoubleDouble& b)
    {
        return a.mHigh == b.mHigh && a.mLow == b.mLow;
    }
    friend bool operator<(const cDoubleDouble& a, const cDoubleDouble& b)
    {
        return a.mHigh < b.mHigh || (a.mHigh == b.mHigh && a.mLow < b.mLow);
    }
    friend bool operator>(const cDoubleDouble& a, const cDoubleDouble& b) { return b < a; }
    friend bool operator<=(const cDoubleDouble& a, const cDoubleDouble& b) { return !(b < a); }
    friend bool operator>=(const cDoubleDouble& a, const cDoubleDouble& b) { return !(a < b); }

private:
    double mHigh = 0.0;
    double mLow = 0.0;
};

cDoubleDouble abs(const cDoubleDouble& value);

}  // namespace vx3
