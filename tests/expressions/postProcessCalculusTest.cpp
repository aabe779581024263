// Derivatives, integrals, averages and interval cuts of one curve: against numpy and scipy on a
// random grid, and the corners (equal x, undefined samples, short curves) by hand.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <unistd.h>

#include "expressions/postProcessCalculus.h"

#include "expressionTestSupport.h"

using namespace vx3;
using namespace vx3::postProcess;

namespace {

using zwexpressions::readDoubles;

void expectClose(const std::vector<double>& got, const std::vector<double>& expected, double tolerance,
                 const std::string& what)
{
    ASSERT_EQ(got.size(), expected.size()) << what;
    for (size_t i = 0; i < got.size(); ++i)
        ASSERT_NEAR(got[i], expected[i], tolerance * (1 + std::fabs(expected[i]))) << what << " at " << i;
}

}  // namespace

TEST(CurveCalculus, AgainstNumpyAndScipy)
{
    std::string pattern = "/tmp/zw_calculus_test_XXXXXX";
    ASSERT_TRUE(::mkdtemp(pattern.data()));
    const std::string folder = pattern;
    const std::string script = std::string(ZW_SOURCE_DIR) + "/tests/expressions/oracles/calculus.py";
    const int status = std::system(("/usr/bin/python3 '" + script + "' '" + folder + "' 5").c_str());
    auto file = [&](const char* name) { return readDoubles(folder + "/" + name); };
    const auto x = file("x"), y = file("y");
    const auto forward = file("forward"), backward = file("backward"), centred = file("centred");
    const auto integral = file("integral"), intervals = file("intervals"), averages = file("averages");
    std::error_code error;
    std::filesystem::remove_all(folder, error);
    ASSERT_EQ(status, 0);
    ASSERT_EQ(x.size(), 2000u);

    // Falling copies give the same results, reversed: they are walked in rising x.
    for (const bool reversed : {false, true}) {
        std::vector<double> rx(x.rbegin(), x.rend()), ry(y.rbegin(), y.rend());
        const auto s = reversed ? makeCurveSamples(rx.data(), ry.data(), rx.size())
                                : makeCurveSamples(x.data(), y.data(), x.size());
        std::vector<double> result;
        ASSERT_TRUE(computeDerivedCurve(s, result));
        expectClose(result, forward, 1e-9, "derivative");
        ASSERT_TRUE(computeForwardDerivedCurve(s, result));
        expectClose(result, forward, 1e-9, "forward derivative");
        ASSERT_TRUE(computeBackwardDerivedCurve(s, result));
        expectClose(result, backward, 1e-9, "backward derivative");
        ASSERT_TRUE(computeCenteredDerivedCurve(s, result));
        expectClose(result, centred, 1e-9, "centred derivative");
        ASSERT_TRUE(computeIntegralCurveTrapez(s, result));
        expectClose(result, integral, 1e-11, "integral");
        for (size_t i = 0; i < averages.size(); ++i)
            EXPECT_NEAR(computeCurveAverage(s, intervals[2 * i], intervals[2 * i + 1]), averages[i],
                        1e-11 * (1 + std::fabs(averages[i])))
                << "interval " << intervals[2 * i] << " " << intervals[2 * i + 1];
    }
}

TEST(CurveCalculus, Corners)
{
    std::vector<double> result;
    // Fewer than three samples: no derivative.
    const std::vector<double> two = {0, 1};
    EXPECT_FALSE(computeDerivedCurve(makeCurveSamples(two.data(), two.data(), 2), result));
    EXPECT_FALSE(computeCenteredDerivedCurve(makeCurveSamples(two.data(), two.data(), 2), result));

    // A run of equal x takes the slope after it; the forward form has none there.
    const std::vector<double> x = {0, 1, 1, 1, 2, 4}, y = {0, 1, 3, 5, 6, 10};
    const auto s = makeCurveSamples(x.data(), y.data(), x.size());
    ASSERT_TRUE(computeDerivedCurve(s, result));
    EXPECT_EQ(result, (std::vector<double>{1, 1, 1, 1, 2, 2}));
    ASSERT_TRUE(computeForwardDerivedCurve(s, result));
    EXPECT_TRUE(std::isnan(result[1]) && std::isnan(result[2]));
    EXPECT_EQ(result[3], 1.0);
    // The centred form needs x strictly monotone through the three samples.
    ASSERT_TRUE(computeCenteredDerivedCurve(s, result));
    EXPECT_TRUE(std::isnan(result[1]) && std::isnan(result[2]) && std::isnan(result[3]));
    EXPECT_EQ(result[4], (10.0 - 5.0) / (4.0 - 1.0));

    // Undefined samples: no slope next to them, nothing added to the integral.
    const std::vector<double> ux = {0, 1, 2, 3, 4}, uy = {1, 1, NAN, 1, 1};
    const auto u = makeCurveSamples(ux.data(), uy.data(), ux.size());
    ASSERT_TRUE(computeDerivedCurve(u, result));
    EXPECT_EQ(result[0], 0.0);
    EXPECT_TRUE(std::isnan(result[1]) && std::isnan(result[2]));
    EXPECT_EQ(result[3], 0.0);
    ASSERT_TRUE(computeIntegralCurveTrapez(u, result));
    EXPECT_EQ(result, (std::vector<double>{0, 1, 1, 1, 2}));

    // Interval cuts: interpolated ends, nothing outside the curve.
    std::vector<double> xs, ys;
    ASSERT_TRUE(reduceWaveformToInterval(makeCurveSamples(ux.data(), ux.data(), 5), 0.5, 2.25, xs, ys));
    EXPECT_EQ(xs, (std::vector<double>{0.5, 1, 2, 2.25}));
    EXPECT_EQ(ys, xs);
    ASSERT_TRUE(reduceWaveformToInterval(makeCurveSamples(ux.data(), ux.data(), 5), 1.25, 1.5, xs, ys));
    EXPECT_EQ(xs, (std::vector<double>{1.25, 1.5}));
    EXPECT_FALSE(reduceWaveformToInterval(makeCurveSamples(ux.data(), ux.data(), 5), 5, 6, xs, ys));
    EXPECT_TRUE(std::isnan(computeCurveAverage(makeCurveSamples(ux.data(), ux.data(), 5), 2, 2)));
    EXPECT_EQ(computeCurveAverage(makeCurveSamples(ux.data(), ux.data(), 5), NAN, NAN), 2.0);
}
