// The calculator's scalar mathematics: the inverse error function against scipy over the middle
// and the tails, the complex functions against Python's cmath on both sides of every branch cut,
// and the catalogue's own definitions at their corners.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "../base/testSupport.h"
#include "expressions/vxBasicOperators.h"

#include "expressionTestSupport.h"

using namespace vx3;
namespace ops = vx3::vxBasicOperators;
using zwexpressions::readDoubles;
using zwexpressions::runOracle;

TEST(BasicOperators, InverseErrorFunctionAgainstScipy)
{
    zwtest::cTempDir folder("zw_basic_ops_test_");
    ASSERT_EQ(runOracle("basic_operators.py", {folder.path()}), 0);
    const auto y = readDoubles(folder.file("erfinv_y")), expected = readDoubles(folder.file("erfinv"));
    ASSERT_EQ(y.size(), expected.size());
    ASSERT_GT(y.size(), 2000u);
    double worstMiddle = 0, worstTail = 0;
    for (size_t i = 0; i < y.size(); ++i) {
        const double got = ops::inverse_error_function(y[i]);
        const double error = std::fabs(got - expected[i]) / std::fabs(expected[i]);
        double& worst = std::fabs(y[i]) <= 0.9 ? worstMiddle : worstTail;
        worst = std::max(worst, error);
        // And back: erf of the result is y again.
        if (std::fabs(y[i]) <= 0.9) {
            EXPECT_NEAR(std::erf(got), y[i], 2e-16 + 4e-16 * std::fabs(y[i])) << y[i];
        }
    }
    EXPECT_LT(worstMiddle, 1e-15);
    EXPECT_LT(worstTail, 1e-14);

    EXPECT_EQ(ops::inverse_error_function(0.0), 0.0);
    EXPECT_EQ(ops::inverse_error_function(1.0), std::numeric_limits<double>::infinity());
    EXPECT_EQ(ops::inverse_error_function(-1.0), -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(ops::inverse_error_function(1.0000001)));
    EXPECT_TRUE(std::isnan(ops::inverse_error_function(NAN)));
    // The largest double below 1 still gives a finite value (scipy.special.erfinv: 5.8635847487551676).
    EXPECT_NEAR(ops::inverse_error_function(std::nextafter(1.0, 0.0)), 5.8635847487551676, 1e-14);
    // Quantiles of the normal distribution.
    EXPECT_NEAR(ops::rand_gauss_distrib(0.975, 0, 1), 1.959963984540054, 1e-14);
    EXPECT_NEAR(ops::rand_gauss_distrib(0.5, 3, 2), 3.0, 1e-15);
}

TEST(BasicOperators, ComplexFunctionsAgainstCmath)
{
    zwtest::cTempDir folder("zw_basic_ops_test_");
    ASSERT_EQ(runOracle("basic_operators.py", {folder.path()}), 0);
    const auto points = readDoubles(folder.file("complex_points")), values = readDoubles(folder.file("complex_values"));
    using fn = ops::double_complex (*)(const ops::double_complex&);
    const std::vector<std::pair<const char*, fn>> functions = {
        {"asin", ops::asin}, {"acos", ops::acos}, {"atan", ops::atan}, {"asinh", ops::asinh},
        {"acosh", ops::acosh}, {"atanh", ops::atanh}, {"log", ops::log}, {"log10", ops::log10},
        {"sqrt", ops::sqrt}, {"exp", ops::exp}, {"sin", ops::sin}, {"cos", ops::cos},
        {"tan", ops::tan}, {"sinh", ops::sinh}, {"cosh", ops::cosh}, {"tanh", ops::tanh}};
    ASSERT_EQ(values.size(), points.size() / 2 * functions.size() * 2);
    size_t compared = 0;
    for (size_t p = 0; p < points.size() / 2; ++p) {
        const ops::double_complex z(points[2 * p], points[2 * p + 1]);
        for (size_t f = 0; f < functions.size(); ++f) {
            const size_t at = (p * functions.size() + f) * 2;
            const ops::double_complex expected(values[at], values[at + 1]);
            if (std::isnan(expected.real()))
                continue;  // a pole, where cmath raises
            const ops::double_complex got = functions[f].second(z);
            EXPECT_LE(std::abs(got - expected), 1e-14 * std::max(1.0, std::abs(expected)))
                << functions[f].first << z << " gave " << got << " instead of " << expected;
            ++compared;
        }
    }
    EXPECT_GT(compared, 4000u);

    // Whole powers multiply out exactly; fractional powers of negative numbers turn complex.
    EXPECT_EQ(ops::pow({-2, 0}, {2, 0}), ops::double_complex(4, 0));
    EXPECT_EQ(ops::pow({-2, 0}, {-3, 0}), ops::double_complex(-0.125, 0));
    EXPECT_EQ(ops::pow({0, 1}, {2, 0}), ops::double_complex(-1, 0));
    EXPECT_EQ(ops::pow({1, 1}, {4, 0}), ops::double_complex(-4, 0));
    const auto root = ops::pow({-4, 0}, {0.5, 0});
    EXPECT_NEAR(root.real(), 0, 1e-15);
    EXPECT_NEAR(root.imag(), 2, 1e-15);
    const auto ii = ops::pow({0, 1}, {0, 1});  // i^i = e^(-pi/2)
    EXPECT_NEAR(ii.real(), std::exp(-std::numbers::pi / 2), 1e-16);
    EXPECT_NEAR(ii.imag(), 0, 1e-16);
    EXPECT_EQ(ops::pow({0, 0}, {2, 1}), ops::double_complex(0, 0));
}

TEST(BasicOperators, CatalogueDefinitions)
{
    EXPECT_EQ(ops::db(0.0), -300);
    EXPECT_EQ(ops::db(1e-301), -300);
    EXPECT_DOUBLE_EQ(ops::db(1e-300), -6000);
    EXPECT_DOUBLE_EQ(ops::db(-10.0), 20);
    EXPECT_DOUBLE_EQ(ops::db(ops::double_complex(3, 4)), 20 * std::log10(5.0));
    EXPECT_EQ(ops::db(ops::double_complex(0, 0)), -300);

    EXPECT_EQ(ops::sign(0.0), 1);
    EXPECT_EQ(ops::sign(-0.0), 1);
    EXPECT_EQ(ops::sign(-3.0), -1);
    EXPECT_EQ(ops::sgn(0.0), 0);
    EXPECT_EQ(ops::sgn(-2.5), -1);
    EXPECT_EQ(ops::sgn(7.0), 1);
    EXPECT_TRUE(std::isnan(ops::sgn(NAN)));
    EXPECT_EQ(ops::sign(-3.0, 0.0), 3);
    EXPECT_EQ(ops::sign(-3.0, -0.0), 3);
    EXPECT_EQ(ops::sign(3.0, -1e-300), -3);
    EXPECT_EQ(ops::pwr(-2, 2), -4);
    EXPECT_EQ(ops::pwr(2, 3), 8);
    EXPECT_EQ(ops::pwr(-8, 1.0 / 3), -2);
    EXPECT_EQ(ops::pow(-2.0, 2.0), 4);

    EXPECT_DOUBLE_EQ(ops::phase(-1.0), std::numbers::pi);
    EXPECT_EQ(ops::phase(2.0), 0);
    EXPECT_DOUBLE_EQ(ops::angle(ops::double_complex(0, -1)), -90);
    EXPECT_DOUBLE_EQ(ops::angle(-5.0), 180);

    // Multiples of 90 degrees are exact; others agree with the radian functions.
    for (int k = -8; k <= 8; ++k) {
        const double degrees = 90.0 * k;
        const int quarter = ((k % 4) + 4) % 4;
        EXPECT_EQ(ops::sind(degrees), quarter == 1 ? 1 : quarter == 3 ? -1 : 0) << degrees;
        EXPECT_EQ(ops::cosd(degrees), quarter == 0 ? 1 : quarter == 2 ? -1 : 0) << degrees;
    }
    EXPECT_EQ(ops::tand(45.0), 1);
    EXPECT_EQ(ops::tand(90.0), std::numeric_limits<double>::infinity());
    // Huge arguments are reduced exactly before the conversion to radians.
    EXPECT_NEAR(ops::sind(1e22), std::sin(std::fmod(1e22, 360.0) * std::numbers::pi / 180), 1e-15);
    EXPECT_EQ(ops::tand(-45.0), -1);
    EXPECT_EQ(ops::tand(225.0), 1);
    for (double d : {-721.3, -30.0, 12.5, 123.456, 1000.0}) {
        EXPECT_NEAR(ops::sind(d), std::sin(d * std::numbers::pi / 180), 1e-14);
        EXPECT_NEAR(ops::cosd(d), std::cos(d * std::numbers::pi / 180), 1e-14);
        EXPECT_NEAR(ops::tand(d), std::tan(d * std::numbers::pi / 180), 1e-13 * (1 + std::fabs(ops::tand(d))));
        EXPECT_NEAR(ops::sinhd(d), std::sinh(d * std::numbers::pi / 180), 1e-14 * std::cosh(d * std::numbers::pi / 180));
    }
    EXPECT_DOUBLE_EQ(ops::asind(0.5), 30);
    EXPECT_DOUBLE_EQ(ops::acosd(-1.0), 180);
    EXPECT_DOUBLE_EQ(ops::atand(1.0), 45);
    EXPECT_DOUBLE_EQ(ops::asinhd(std::sinh(1.0)), 180 / std::numbers::pi);
    EXPECT_TRUE(std::isnan(ops::asind(2.0)));
    const auto complexAsind = ops::asind(ops::double_complex(2, 0));
    EXPECT_DOUBLE_EQ(complexAsind.real(), 90);
    EXPECT_EQ(ops::sind(ops::double_complex(180, 0)), ops::double_complex(0, 0));

    // The quiet real functions: NaN out of domain, infinities at poles, never a throw.
    EXPECT_TRUE(std::isnan(ops::acosh(0.5)));
    EXPECT_TRUE(std::isnan(ops::atanh(1.5)));
    EXPECT_EQ(ops::atanh(-1.0), -std::numeric_limits<double>::infinity());
    EXPECT_DOUBLE_EQ(ops::asinh(-std::sinh(2.0)), -2);
    EXPECT_DOUBLE_EQ(ops::acosh(std::cosh(3.0)), 3);
    EXPECT_DOUBLE_EQ(ops::expm1(1e-10), 1.00000000005e-10);

    EXPECT_TRUE(ops::checkAppliesToComplex(baseExpression::op_function_asin));
    EXPECT_TRUE(ops::checkAppliesToComplex(baseExpression::op_function_db));
    EXPECT_FALSE(ops::checkAppliesToComplex(baseExpression::op_function_sgn));
    EXPECT_FALSE(ops::checkAppliesToComplex(baseExpression::op_function_sign));
    EXPECT_FALSE(ops::checkAppliesToComplex(baseExpression::op_function_pwr));
}
