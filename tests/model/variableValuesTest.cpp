// A loaded curve read by x through its own members, against plain computations in the test.
#include <cmath>
#include <complex>
#include <random>

#include <gtest/gtest.h>

#include "model/cCurvePlotDataFile.h"

using namespace vx3;
using namespace vx3::curvePlotProperties;

namespace {

struct cCurveOnGrid {
    cCurvePlotDataFile store;
    cCurvePlotDataSection* section = store.addDataSection("values");
    std::vector<double> xs;

    explicit cCurveOnGrid(std::vector<double> x) : xs(std::move(x))
    {
        const uint64_t sweep = section->addSweepVariable(store.addType("time", data_double, curvePlotDataType::no_unit),
                                                          "time", 0);
        section->getSweepVariable(sweep).setDoubleValues(xs.data(), xs.size());
    }
    cCurvePlotVariable& real(const std::string& name, const std::vector<double>& ys)
    {
        const uint64_t index =
            section->addVariable(store.addType(name, data_double, curvePlotDataType::no_unit), name);
        section->getVariable(index).setDoubleValues(ys.data(), ys.size());
        return section->getVariable(index);
    }
};

double naiveInterpolation(const std::vector<double>& xs, const std::vector<double>& ys, double x)
{
    if (x <= xs.front())
        return ys.front();
    if (x >= xs.back())
        return ys.back();
    size_t i = 0;
    while (xs[i + 1] < x)
        ++i;
    return ys[i] + (ys[i + 1] - ys[i]) * (x - xs[i]) / (xs[i + 1] - xs[i]);
}

}  // namespace

TEST(VariableValues, CursorClosestAndCrossings)
{
    std::mt19937 random(4);
    std::uniform_real_distribution<double> step(0.01, 0.05), anywhere(-1, 8);
    std::vector<double> xs{0};
    while (xs.back() < 7)
        xs.push_back(xs.back() + step(random));
    std::vector<double> ys;
    for (double x : xs)
        ys.push_back(std::sin(x));
    cCurveOnGrid grid(xs);
    const cCurvePlotVariable& curve = grid.real("s", ys);
    const cCurvePlotDataSection& section = *grid.section;

    uint64_t cursor = 0, index = 0;
    for (int k = 0; k < 300; ++k) {
        const double x = anywhere(random);
        double value = 0, closest = 0;
        ASSERT_TRUE(curve.findInterpolatedValue(section, x, cursor, value));
        EXPECT_NEAR(value, naiveInterpolation(xs, ys, x), 1e-12) << x;
        ASSERT_TRUE(curve.findClosestXValue(section, x, index, closest));
        size_t best = 0;
        for (size_t i = 1; i < xs.size(); ++i)
            if (std::fabs(xs[i] - x) < std::fabs(xs[best] - x))
                best = i;
        EXPECT_EQ(index, best) << x;
        EXPECT_EQ(closest, xs[best]);
    }
    double value = 0;
    ASSERT_TRUE(curve.findCorresponingValue(section, 5, value));
    EXPECT_EQ(value, ys[5]);
    EXPECT_FALSE(curve.findCorresponingValue(section, xs.size(), value));
    EXPECT_EQ(curve.computeXValue(section, 7), xs[7]);
    EXPECT_TRUE(std::isnan(curve.computeXValue(section, xs.size())));
    EXPECT_EQ(curve.findApproxXValueIndex(section, xs[10], true), 10u);
    EXPECT_EQ(curve.findApproxXValueIndex(section, xs[10], false), 11u);

    // sin crosses 0.5 at pi/6 and 5pi/6 (and 13pi/6): the one nearest to the start wins.
    double x = 0;
    ASSERT_TRUE(curve.findClosestXValueForGivenY(section, 0.5, 2.0, x));
    EXPECT_NEAR(x, 5 * M_PI / 6, 2e-4);
    ASSERT_TRUE(curve.findClosestXValueForGivenY(section, 0.5, 0.0, x));
    EXPECT_NEAR(x, M_PI / 6, 2e-4);
    EXPECT_FALSE(curve.findClosestXValueForGivenY(section, 3.0, 0.0, x)) << "never reached";
}

TEST(VariableValues, RangeIntegralsAndShapes)
{
    const int n = 2001;
    std::vector<double> xs(n), ys(n), flat(n);
    for (int i = 0; i < n; ++i) {
        xs[i] = 4 * M_PI * i / (n - 1);
        ys[i] = std::sin(xs[i]);
        flat[i] = xs[i] < 5 ? 1.0 : xs[i];
    }
    cCurveOnGrid grid(xs);
    grid.real("s", ys);
    grid.real("f", flat);
    const cCurvePlotDataSection& section = *grid.section;
    const cCurvePlotVariable& s = section.getVariable(0);
    const cCurvePlotVariable& f = section.getVariable(1);

    double low = 0, high = 0, integral = 0, absolute = 0;
    ASSERT_TRUE(s.getMinXAxisValue(section, low));
    ASSERT_TRUE(s.getMaxXAxisValue(section, high));
    EXPECT_EQ(low, 0);
    EXPECT_DOUBLE_EQ(high, 4 * M_PI);
    EXPECT_DOUBLE_EQ(s.estimateSamplingFrequency(section), (n - 1) / (4 * M_PI));
    ASSERT_TRUE(s.computeIntegral(section, integral));
    ASSERT_TRUE(s.computeAbsIntegral(section, absolute));
    EXPECT_NEAR(integral, 0, 1e-9);
    EXPECT_NEAR(absolute, 8, 1e-4) << "four half waves of area 2";

    EXPECT_TRUE(s.checkIsPeriodic(section, 2 * M_PI, 1e-3));
    EXPECT_FALSE(s.checkIsPeriodic(section, M_PI, 1e-3));
    EXPECT_FALSE(s.checkIsPeriodic(section, 5 * M_PI, 1e-3)) << "longer than the curve";
    EXPECT_TRUE(f.checkIsConstantOverPeriod(section, 0, 4.9));
    EXPECT_FALSE(f.checkIsConstantOverPeriod(section, 0, 6));
    EXPECT_FALSE(f.checkIsConstantOverPeriod(section, 13, 14)) << "no sample inside";
    EXPECT_FALSE(s.checkForLogarithmicScale(section));

    std::vector<double> frequencies;
    for (int i = 0; i <= 60; ++i)
        frequencies.push_back(std::pow(10.0, 1 + i / 10.0));
    cCurveOnGrid bode(frequencies);
    const cCurvePlotVariable& gain = bode.real("g", std::vector<double>(frequencies.size(), 1.0));
    EXPECT_TRUE(gain.checkForLogarithmicScale(*bode.section));
}

TEST(VariableValues, SecondValueOfTwoValuedConversions)
{
    const std::vector<double> xs{0, 1, 2};
    cCurveOnGrid grid(xs);
    const std::complex<double> zs[] = {{1, 0}, {0, 1}, {-1, 0}};
    const uint64_t index =
        grid.section->addVariable(grid.store.addType("h", double_complex, curvePlotDataType::no_unit), "h");
    cCurvePlotVariable& h = grid.section->getVariable(index);
    ASSERT_TRUE(h.setDoubleComplexValues(zs, 3));
    h.setConversion(derivedCurveFunction::real_and_imaginary_part);
    uint64_t cursor = 0;
    double re = 0, im = 0;
    ASSERT_TRUE(h.findInterpolatedValue(*grid.section, 0.5, cursor, re));
    ASSERT_TRUE(h.findInterpolatedValue(*grid.section, 0.5, cursor, im, false, true));
    EXPECT_DOUBLE_EQ(re, 0.5);
    EXPECT_DOUBLE_EQ(im, 0.5);
    double value = 0;
    ASSERT_TRUE(h.findCorresponingValue(*grid.section, 1, value, true));
    EXPECT_EQ(value, 1.0);
    EXPECT_FALSE(h.computeIntegral(*grid.section, value)) << "integrals are of real curves";
}
