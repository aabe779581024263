#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

#include "base/cDoubleDouble.h"

using vx3::cDoubleDouble;

namespace {

// 113 bits of mantissa hold the exact product of two doubles and sums of doubles of near size.
__float128 exact(const cDoubleDouble& value)
{
    return static_cast<__float128>(value.high()) + static_cast<__float128>(value.low());
}

}  // namespace

TEST(cDoubleDouble, TwoSumAndTwoProductAreErrorFree)
{
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> mantissa(-1.0, 1.0);
    std::uniform_int_distribution<int> exponent(-40, 40);
    for (int i = 0; i < 20000; ++i) {
        const double a = std::ldexp(mantissa(random), exponent(random));
        const double b = std::ldexp(mantissa(random), exponent(random));
        const cDoubleDouble sum = cDoubleDouble::twoSum(a, b);
        ASSERT_TRUE(exact(sum) == static_cast<__float128>(a) + static_cast<__float128>(b)) << a << " " << b;
        ASSERT_EQ(sum.high(), a + b);
        const cDoubleDouble product = cDoubleDouble::twoProduct(a, b);
        ASSERT_TRUE(exact(product) == static_cast<__float128>(a) * static_cast<__float128>(b)) << a << " " << b;
        ASSERT_EQ(product.high(), a * b);
    }
}

TEST(cDoubleDouble, ArithmeticKeepsAbout32Digits)
{
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> value(-1000.0, 1000.0);
    for (int i = 0; i < 5000; ++i) {
        const cDoubleDouble a = cDoubleDouble::twoSum(value(random), value(random) * 1e-17);
        const cDoubleDouble b = cDoubleDouble::twoSum(value(random), value(random) * 1e-17);
        const double c = value(random);
        const __float128 ea = exact(a), eb = exact(b), ec = c;
        auto relative = [](__float128 got, __float128 want) {
            const __float128 difference = got - want;
            const __float128 size = want < 0 ? -want : want;
            return static_cast<double>((difference < 0 ? -difference : difference) / (size > 1e-300 ? size : 1));
        };
        EXPECT_LT(relative(exact(a + b), ea + eb), 1e-30);
        EXPECT_LT(relative(exact(a - b), ea - eb), 1e-30);
        EXPECT_LT(relative(exact(a * b), ea * eb), 1e-30);
        EXPECT_LT(relative(exact(a * c), ea * ec), 1e-30);
        EXPECT_LT(relative(exact(a + c), ea + ec), 1e-30);
        EXPECT_LT(relative(exact(c - a), ec - ea), 1e-30);
    }
    // A product whose exact result needs more than one double.
    const double tiny = std::ldexp(1.0, -60);
    const cDoubleDouble product = cDoubleDouble(1.0 + std::ldexp(1.0, -52)) * cDoubleDouble(1.0, tiny);
    EXPECT_EQ(product.high(), 1.0 + std::ldexp(1.0, -52));
    EXPECT_EQ(product.low(), tiny + std::ldexp(1.0, -112));
}

TEST(cDoubleDouble, PicosecondsApartAtSeconds)
{
    // Three seconds plus one picosecond, and a million picosecond steps: plain doubles lose the
    // picosecond at the 13th digit, the double-double keeps it.
    const cDoubleDouble start(3.0);
    const cDoubleDouble later = start + 1e-12;
    EXPECT_EQ((later - start).toDouble(), 1e-12);
    EXPECT_NE((3.0 + 1e-12) - 3.0, 1e-12);
    EXPECT_TRUE(later > start);
    EXPECT_TRUE(start < later);
    EXPECT_EQ(later.high(), 3.0 + 1e-12);  // the same double as the plain sum, with the rest kept

    cDoubleDouble time(100.0);
    double plain = 100.0;
    for (int i = 0; i < 1000000; ++i) {
        time += 1e-12;
        plain += 1e-12;
    }
    EXPECT_NEAR((time - 100.0).toDouble(), 1e-6, 1e-20);
    EXPECT_GT(std::fabs((plain - 100.0) - 1e-6), 1e-9);  // what a plain double makes of it

    // Two ticks 2 ps apart at 5 s are told apart and ordered, and each is exact to 1e-25.
    const cDoubleDouble a = cDoubleDouble(5.0) + cDoubleDouble::twoProduct(1234567.0, 2e-12);
    const cDoubleDouble b = a + 2e-12;
    EXPECT_TRUE(a < b && b > a && a <= b && !(b <= a) && a != b);
    EXPECT_NEAR((b - a).toDouble(), 2e-12, 1e-25);
    EXPECT_EQ(((b - a) * 0.5).toDouble(), 1e-12);
}

TEST(cDoubleDouble, ComparisonAndRounding)
{
    const cDoubleDouble one(1.0), above(1.0, 1e-20), further(1.0, 2e-20), below(1.0, -1e-20);
    EXPECT_TRUE(one < above && above < further && below < one);
    EXPECT_TRUE(above >= one && further > above && one <= one && one == cDoubleDouble(1.0, 0.0));
    EXPECT_FALSE(above == one);

    const double big = std::ldexp(1.0, 60);
    EXPECT_EQ(cDoubleDouble(big, 0.6).roundToInt64(), (int64_t(1) << 60) + 1);
    EXPECT_EQ(cDoubleDouble(big, -0.6).roundToInt64(), (int64_t(1) << 60) - 1);
    EXPECT_EQ(cDoubleDouble(big, 7.0).roundToInt64(), (int64_t(1) << 60) + 7);
    EXPECT_EQ(cDoubleDouble(2.4).roundToInt64(), 2);
    EXPECT_EQ(cDoubleDouble(2.6).roundToInt64(), 3);
    EXPECT_EQ(cDoubleDouble(-2.6).roundToInt64(), -3);
    EXPECT_EQ(cDoubleDouble(2.5, -1e-20).roundToInt64(), 2);  // just below the half
    EXPECT_EQ(cDoubleDouble(2.5, 1e-20).roundToInt64(), 3);
    EXPECT_EQ(cDoubleDouble(1e30).roundToInt64(), std::numeric_limits<int64_t>::max());
    EXPECT_EQ(cDoubleDouble(-1e30).roundToInt64(), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(cDoubleDouble(std::nan("")).roundToInt64(), 0);
    EXPECT_EQ(cDoubleDouble(1.0, 1e-20).toDouble(), 1.0);
    EXPECT_EQ(vx3::abs(cDoubleDouble(-2.0, 1e-20)), cDoubleDouble(2.0, -1e-20));
    // Infinite values stay infinite without a NaN in the low part.
    const cDoubleDouble infinite = cDoubleDouble(1e308) * 10.0 + 1.0;
    EXPECT_TRUE(std::isinf(infinite.high()));
    EXPECT_EQ(infinite.low(), 0.0);
}

TEST(cDoubleDouble, DecimalPowersAndDistances)
{
    // 10^-13 to 32 digits: its parts are the nearest double and the nearest double to the rest.
    for (int exponent = -60; exponent <= 60; ++exponent) {
        const cDoubleDouble power = cDoubleDouble::powerOfTen(exponent);
        const __float128 reference = exponent >= 0 ? [&] { __float128 p = 1; for (int i = 0; i < exponent; ++i) p *= 10; return p; }()
                                                   : [&] { __float128 p = 1; for (int i = 0; i < -exponent; ++i) p *= 10; return 1 / p; }();
        const __float128 difference = exact(power) - reference;
        EXPECT_LT(static_cast<double>((difference < 0 ? -difference : difference) / reference), 1e-30) << exponent;
    }
    EXPECT_EQ(cDoubleDouble::powerOfTen(5), cDoubleDouble(1e5));
    // 0.2 is two tenths, 2.5e-14 is 25 * 10^-15, 21600 stays; a value that is no short decimal stays too.
    EXPECT_EQ(cDoubleDouble::decimalOf(0.2), cDoubleDouble::powerOfTen(-1) * 2.0);
    EXPECT_EQ(cDoubleDouble::decimalOf(-2.5e-14), -(cDoubleDouble::powerOfTen(-15) * 25.0));
    EXPECT_EQ(cDoubleDouble::decimalOf(21600.0), cDoubleDouble(21600.0));
    EXPECT_EQ(cDoubleDouble::decimalOf(1.0 / 3.0), cDoubleDouble(1.0 / 3.0));
    EXPECT_EQ(cDoubleDouble::decimalOf(0.0), cDoubleDouble(0.0));
    // Ten steps of a decimal tenth make one to 32 digits; in doubles they don't.
    cDoubleDouble sum;
    const cDoubleDouble tenth = cDoubleDouble::decimalOf(0.1);
    double plain = 0.0;
    for (int i = 0; i < 10; ++i) {
        sum += tenth;
        plain += 0.1;
    }
    EXPECT_NEAR((sum - 1.0).toDouble(), 0.0, 1e-31);
    EXPECT_NE(plain, 1.0);
}
