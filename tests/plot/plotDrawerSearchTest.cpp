// The first drawn point of a curve must be the one before std::lower_bound(xmin), whatever the
// data's spacing; the interpolation search only makes finding it fast.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "model/curveValueLookup.h"
#include "plot/wxPlotDrawerSearch.h"

using namespace vx3;

namespace {

uint64_t expectedStart(const std::vector<double>& x, double xmin)
{
    const auto lb = uint64_t(std::lower_bound(x.begin(), x.end(), xmin) - x.begin());
    return lb == 0 ? 0 : lb - 1;
}

}  // namespace

TEST(plotDrawerSearch, agreesWithLowerBoundOnRandomRisingData)
{
    std::mt19937_64 random(20261124);
    std::uniform_real_distribution<double> step(0.0, 1.0);
    for (int trial = 0; trial < 3000; ++trial) {
        const uint64_t n = trial < 30 ? 1 + trial % 3 : 1 + random() % (trial % 7 == 0 ? 5000 : 40);
        std::vector<double> x(n);
        double v = step(random) * 10 - 5;
        const bool clustered = trial % 3 == 0;  // runs of equal x and a few huge gaps
        for (auto& value : x) {
            value = v;
            const double s = step(random);
            v += clustered ? (s < 0.3 ? 0.0 : s < 0.32 ? 1000.0 * s : s) : s;
        }
        const unsigned monotony = curvePlotVariable::computeMonotonyType(x.data(), n);
        const auto xAt = [&](uint64_t i) { return x[i]; };
        for (int probe = 0; probe < 20; ++probe) {
            double xmin = x.front() + (x.back() - x.front() + 2) * step(random) - 1;
            if (probe == 0)
                xmin = x[random() % n];  // exactly on a sample
            const uint64_t start = plotDrawer::findFirstDrawnPoint(xAt, n, xmin, x.front(), x.back(), monotony);
            ASSERT_EQ(start, expectedStart(x, xmin)) << "n=" << n << " xmin=" << xmin << " trial " << trial;
        }
    }
}

TEST(plotDrawerSearch, otherShapesScanAndNeverRunAway)
{
    // Falling x: a linear scan for the first x at or beyond xmin.
    const std::vector<double> falling{5, 4, 3, 2, 1};
    const auto at = [&](uint64_t i) { return falling[i]; };
    EXPECT_EQ(plotDrawer::findFirstDrawnPoint(at, 5, 3.5, 1, 5, derivedCurveFunction::monotony_strictly_falling), 0u);
    // A non-monotone curve starting below xmin.
    const std::vector<double> wiggle{0, 2, 1, 3, 2, 4};
    const auto wat = [&](uint64_t i) { return wiggle[i]; };
    EXPECT_EQ(plotDrawer::findFirstDrawnPoint(wat, 6, 2.5, 0, 4, derivedCurveFunction::monotony_none_rising), 2u);
    // NaN inside rising data or NaN limits must not hang and must stay in range.
    std::vector<double> holes{0, 1, NAN, 3, NAN, NAN, 6, 7};
    const auto hat = [&](uint64_t i) { return holes[i]; };
    for (double xmin : {-1.0, 0.5, 2.5, 4.0, 6.5, 9.0}) {
        const uint64_t start =
            plotDrawer::findFirstDrawnPoint(hat, holes.size(), xmin, 0, 7, derivedCurveFunction::monotony_rising);
        EXPECT_LT(start, holes.size());
    }
    EXPECT_EQ(plotDrawer::findFirstDrawnPoint(hat, holes.size(), 5.0, NAN, NAN, derivedCurveFunction::monotony_rising), 0u);
}
