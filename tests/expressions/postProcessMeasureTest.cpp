// Measurements and the moving average of a curve: a trapezoid wave with exact answers and a
// sine on a random grid against numpy, moving averages against numpy's slices, and the corners
// (gaps, runts, flat, noisy and ramp-only curves, complex and non-monotone curves) by hand.
#include <gtest/gtest.h>

#include <complex>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <sstream>

#include <unistd.h>

#include "expressions/postProcessFilter.h"
#include "expressions/postProcessMeasure.h"

#include "expressionTestSupport.h"

using namespace vx3;
using namespace vx3::postProcess;

namespace {

using zwexpressions::readDoubles;

// The oracle's arrays and scalars; its folder is removed at once.
struct cOracle {
    std::map<std::string, std::vector<double>> arrays;
    std::map<std::string, double> scalars;
    int status = -1;
};

cOracle runOracle(const std::vector<std::string>& arrays)
{
    cOracle oracle;
    std::string pattern = "/tmp/zw_measure_test_XXXXXX";
    if (!::mkdtemp(pattern.data()))
        return oracle;
    const std::string folder = pattern;
    const std::string script = std::string(ZW_SOURCE_DIR) + "/tests/expressions/oracles/measure.py";
    oracle.status = std::system(("/usr/bin/python3 '" + script + "' '" + folder + "' 7").c_str());
    for (const auto& name : arrays)
        oracle.arrays[name] = readDoubles(folder + "/" + name);
    std::ifstream text(folder + "/expected.txt");
    std::string name, value;
    while (text >> name >> value)
        oracle.scalars[name] = std::strtod(value.c_str(), nullptr);
    std::error_code error;
    std::filesystem::remove_all(folder, error);
    return oracle;
}

void expectRelative(double got, double expected, double tolerance, const std::string& what)
{
    EXPECT_NEAR(got, expected, tolerance * std::fabs(expected)) << what;
}

}  // namespace

TEST(CurveMeasure, TrapezoidAndSineAgainstNumpy)
{
    cOracle oracle = runOracle({"trapezoid_x", "trapezoid_y", "sine_x", "sine_y"});
    ASSERT_EQ(oracle.status, 0);
    auto& e = oracle.scalars;
    ASSERT_GT(e.size(), 60u);
    const auto& x = oracle.arrays["trapezoid_x"];
    const auto& y = oracle.arrays["trapezoid_y"];
    ASSERT_EQ(x.size(), y.size());
    ASSERT_GT(x.size(), 100u);

    // Float copies walk the same code; a falling copy is walked from its end.
    std::vector<double> rx(x.rbegin(), x.rend()), ry(y.rbegin(), y.rend());
    for (const bool reversed : {false, true}) {
        const auto s = reversed ? makeCurveSamples(rx.data(), ry.data(), rx.size())
                                : makeCurveSamples(x.data(), y.data(), x.size());
        double low = 0, high = 0;
        ASSERT_TRUE(computeStateLevels(s, NAN, NAN, low, high));
        EXPECT_NEAR(low, e["low"], 1e-12);
        EXPECT_NEAR(high, e["high"], 1e-12);
        const double half = low + 0.5 * (high - low);
        // The crossings are exact on the ramps; what is left is rounding.
        for (const std::string prefix : {"all_", "all_20_80_", "cut_"}) {
            const double x1 = prefix == "cut_" ? e["cut_x1"] : NAN, x2 = prefix == "cut_" ? e["cut_x2"] : NAN;
            const double lowPercent = prefix == "all_20_80_" ? 20 : 10, highPercent = prefix == "all_20_80_" ? 80 : 90;
            expectRelative(computeFrequency(s, half, x1, x2), e[prefix + "frequency"], 1e-9, prefix + "frequency");
            expectRelative(computeCurveDutyCycle(s, half, x1, x2), e[prefix + "duty"], 1e-9, prefix + "duty");
            for (const auto& [name, kind] : {std::pair{"rise", edgeMeasure::rising_edge},
                                             std::pair{"fall", edgeMeasure::falling_edge},
                                             std::pair{"slew", edgeMeasure::slew_edge}}) {
                const std::string key = prefix + name;
                const cEdgeStatistics edges = computeEdgeTimes(s, lowPercent, highPercent, x1, x2, kind);
                EXPECT_EQ(static_cast<double>(edges.count), e[key + "_count"]) << key;
                expectRelative(edges.minimum, e[key + "_min"], 1e-7, key + " min");
                expectRelative(edges.average, e[key + "_avg"], 1e-7, key + " average");
                expectRelative(edges.maximum, e[key + "_max"], 1e-7, key + " max");
                EXPECT_NEAR(edges.lowReference, low + (high - low) * lowPercent / 100, 1e-12);
            }
        }
        // The named entries pick their kind and statistic, with the usual references.
        expectRelative(computeCurveAverageRiseTime(s), e["all_rise_avg"], 1e-7, "average rise time");
        expectRelative(computeCurveMinFallTime(s), e["all_fall_min"], 1e-7, "min fall time");
        expectRelative(computeCurveMaxSlewRate(s, 10, 90, e["cut_x1"], e["cut_x2"]), e["cut_slew_max"], 1e-7,
                       "max slew rate in the cut");
    }

    // The sine: numpy's interpolated crossings on the same samples, as floats too.
    const auto& sx = oracle.arrays["sine_x"];
    const auto& sy = oracle.arrays["sine_y"];
    std::vector<float> fy(sy.begin(), sy.end());
    const auto s = makeCurveSamples(sx.data(), sy.data(), sx.size());
    const auto f = makeCurveSamples(sx.data(), fy.data(), sx.size());
    for (const std::string name : {"sine_0", "sine_1"}) {
        const double threshold = e[name + "_threshold"];
        expectRelative(computeFrequency(s, threshold), e[name + "_frequency"], 1e-10, name + " frequency");
        expectRelative(computeCurveDutyCycle(s, threshold), e[name + "_duty"], 1e-10, name + " duty cycle");
        expectRelative(computeFrequency(f, threshold), e[name + "_frequency"], 1e-5, name + " frequency of floats");
    }
    for (int k = 0; k < 3; ++k) {
        const std::string name = "extreme" + std::to_string(k);
        double minY = 0, xAtMin = 0, maxY = 0, xAtMax = 0;
        ASSERT_TRUE(computeMinMaxXValues(s, e[name + "_x1"], e[name + "_x2"], minY, xAtMin, maxY, xAtMax));
        EXPECT_NEAR(minY, e[name + "_min"], 1e-13) << name;
        EXPECT_EQ(xAtMin, e[name + "_xmin"]) << name;
        EXPECT_NEAR(maxY, e[name + "_max"], 1e-13) << name;
        EXPECT_EQ(xAtMax, e[name + "_xmax"]) << name;
    }
}

TEST(CurveMeasure, MovingAverageAgainstNumpy)
{
    const std::vector<std::string> names = {"smooth_y", "smooth_widths", "smooth_0", "smooth_1",
                                            "smooth_2", "smooth_5",      "smooth_40"};
    cOracle oracle = runOracle(names);
    ASSERT_EQ(oracle.status, 0);
    const auto& y = oracle.arrays["smooth_y"];
    ASSERT_EQ(y.size(), 700u);
    std::vector<double> x(y.size());
    for (size_t i = 0; i < x.size(); ++i)
        x[i] = 0.5 * static_cast<double>(i * i);  // any rising axis: the window counts samples
    const auto s = makeCurveSamples(x.data(), y.data(), x.size());
    for (const double width : oracle.arrays["smooth_widths"]) {
        const auto& expected = oracle.arrays["smooth_" + std::to_string(static_cast<int>(width))];
        ASSERT_EQ(expected.size(), y.size());
        std::vector<double> xs, ys;
        std::string error;
        ASSERT_TRUE(applyFilterOperatorToSingleCurve(s, cOpSmoothAverage{static_cast<uint64_t>(width)}, xs, ys, error));
        EXPECT_EQ(xs, x);
        for (size_t i = 0; i < y.size(); ++i) {
            if (std::isnan(expected[i]))
                ASSERT_TRUE(std::isnan(ys[i])) << "width " << width << " at " << i;
            else
                ASSERT_NEAR(ys[i], expected[i], 1e-11) << "width " << width << " at " << i;
        }
    }
}

TEST(CurveMeasure, Corners)
{
    // A gap: no period and no edge reaches over an undefined sample.
    const std::vector<double> x = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    const std::vector<double> y = {0, 1, 0, 1, 0, NAN, 0, 1, 0, 1, 0, 1, 0};
    const auto s = makeCurveSamples(x.data(), y.data(), x.size());
    // Rising crossings at 0.5, 2.5 | 6.5, 8.5, 10.5: periods of 2 on both sides of the gap only.
    EXPECT_DOUBLE_EQ(computeFrequency(s, 0.5), 0.5);
    EXPECT_DOUBLE_EQ(computeCurveDutyCycle(s, 0.5), 0.5);
    // One rising crossing is no period.
    EXPECT_TRUE(std::isnan(computeFrequency(s, 0.5, 0, 2)));
    EXPECT_TRUE(std::isnan(computeCurveDutyCycle(s, 0.5, 0, 2)));
    // The thresholds' edges: 0.1 to 0.9 of each ramp of length 1.
    const cEdgeStatistics rises = computeEdgeTimes(s, 10, 90, NAN, NAN, edgeMeasure::rising_edge);
    EXPECT_EQ(rises.count, 5u);
    EXPECT_NEAR(rises.average, 0.8, 1e-15);
    const cEdgeStatistics slews = computeEdgeTimes(s, 10, 90, NAN, NAN, edgeMeasure::slew_edge);
    EXPECT_EQ(slews.count, 10u);  // the edges that end at the gap's sides still count
    EXPECT_NEAR(slews.maximum, 1.0, 1e-15);

    // A runt that turns back below the far reference makes no edge; the next full edge starts
    // from the last crossing of its near reference.
    const std::vector<double> rx = {0, 1, 2, 3, 4, 5, 6, 7};
    const std::vector<double> ry = {0, 0, 5, 0, 10, 10, 0, 0};
    const auto r = makeCurveSamples(rx.data(), ry.data(), rx.size());
    double low = 0, high = 0;
    ASSERT_TRUE(computeStateLevels(r, NAN, NAN, low, high));
    EXPECT_EQ(low, 0);
    EXPECT_EQ(high, 10);
    const cEdgeStatistics runt = computeEdgeTimes(r, 10, 90, NAN, NAN, edgeMeasure::rising_edge);
    EXPECT_EQ(runt.count, 1u);
    EXPECT_NEAR(runt.minimum, 0.8, 1e-15);  // 3.1 to 3.9, not from the runt's 1.2
    // An interval that starts inside the edge: the edge isn't whole, so there is none; the fall
    // after it is.
    EXPECT_EQ(computeEdgeTimes(r, 10, 90, 3.5, NAN, edgeMeasure::rising_edge).count, 0u);
    EXPECT_TRUE(std::isnan(computeCurveAverageRiseTime(r, 10, 90, 3.5, NAN)));
    EXPECT_NEAR(computeCurveAverageFallTime(r, 10, 90, 3.5, NAN), 0.8, 1e-15);
    // References that aren't in order give nothing.
    EXPECT_EQ(computeEdgeTimes(r, 90, 10, NAN, NAN, edgeMeasure::rising_edge).count, 0u);

    // A triangle dwells nowhere: its levels are its extremes.
    std::vector<double> triangleX(401), triangleY(401);
    for (int i = 0; i <= 400; ++i) {
        triangleX[i] = i * 0.01;
        triangleY[i] = std::abs(i % 200 - 100) * 0.04 - 2;
    }
    ASSERT_TRUE(computeStateLevels(makeCurveSamples(triangleX.data(), triangleY.data(), 401), NAN, NAN, low, high));
    EXPECT_EQ(low, -2);
    EXPECT_EQ(high, 2);
    // A noisy square wave: the levels sit in the middle of the noise, not at its extremes.
    std::mt19937 random(5);
    std::normal_distribution<double> noise(0.0, 0.03);
    std::vector<double> noisyX(4000), noisyY(4000);
    for (int i = 0; i < 4000; ++i) {
        noisyX[i] = i * 1e-9;
        noisyY[i] = ((i / 100) % 2 ? 1.0 : -1.0) + noise(random);
    }
    ASSERT_TRUE(computeStateLevels(makeCurveSamples(noisyX.data(), noisyY.data(), 4000), NAN, NAN, low, high));
    // The median of 2000 samples of sigma 0.03 is within 0.001 or so.
    EXPECT_NEAR(low, -1, 0.005);
    EXPECT_NEAR(high, 1, 0.005);
    const std::vector<double> tx = {0, 1, 2, 3, 4}, ty = {-2, 6, -2, 6, -2};
    const auto t = makeCurveSamples(tx.data(), ty.data(), tx.size());
    // Over an interval, the interpolated ends bound the range.
    ASSERT_TRUE(computeStateLevels(t, 0.25, 0.75, low, high));
    EXPECT_EQ(low, 0);
    EXPECT_EQ(high, 4);
    // A flat curve: both levels are its value, and it has no edges.
    const std::vector<double> flat = {3, 3, 3, 3, 3};
    const auto c = makeCurveSamples(tx.data(), flat.data(), tx.size());
    ASSERT_TRUE(computeStateLevels(c, NAN, NAN, low, high));
    EXPECT_EQ(low, 3);
    EXPECT_EQ(high, 3);
    EXPECT_TRUE(std::isnan(computeCurveMaxSlewRate(c)));
    // A vertical jump: a rise time of 0, an infinite slew rate.
    const std::vector<double> jx = {0, 1, 1, 2}, jy = {0, 0, 1, 1};
    const auto j = makeCurveSamples(jx.data(), jy.data(), jx.size());
    EXPECT_EQ(computeCurveMinRiseTime(j), 0.0);
    EXPECT_TRUE(std::isinf(computeCurveMaxSlewRate(j)));

    // Nothing defined, an interval beside the curve, a non-monotone axis, complex values.
    const std::vector<double> undefined = {NAN, NAN, NAN, NAN, NAN};
    double minY = 0, xAtMin = 0, maxY = 0, xAtMax = 0;
    EXPECT_FALSE(computeMinMaxXValues(makeCurveSamples(tx.data(), undefined.data(), 5), NAN, NAN, minY, xAtMin,
                                      maxY, xAtMax));
    EXPECT_TRUE(std::isnan(minY));
    EXPECT_FALSE(computeStateLevels(t, 10, 20, low, high));
    const std::vector<double> zigzag = {0, 2, 1, 3, 4};
    EXPECT_FALSE(computeStateLevels(makeCurveSamples(zigzag.data(), ty.data(), 5), NAN, NAN, low, high));
    EXPECT_TRUE(std::isnan(computeFrequency(makeCurveSamples(zigzag.data(), ty.data(), 5), 0)));
    const std::vector<std::complex<double>> cy = {{0, 1}, {1, 1}, {0, 1}, {1, 1}, {0, 1}};
    const auto z = makeCurveSamples(tx.data(), cy.data(), cy.size());
    EXPECT_TRUE(std::isnan(computeFrequency(z, 0.5)));
    EXPECT_FALSE(computeMinMaxXValues(z, NAN, NAN, minY, xAtMin, maxY, xAtMax));

    // The moving average of a complex curve averages both parts; a width beyond the curve
    // shrinks to what fits around each sample.
    std::vector<std::complex<double>> smoothed;
    smoothAverage(z, 1, smoothed);
    ASSERT_EQ(smoothed.size(), 5u);
    EXPECT_EQ(smoothed[0], std::complex<double>(0, 1));
    EXPECT_NEAR(smoothed[1].real(), 1.0 / 3, 1e-15);
    EXPECT_NEAR(smoothed[1].imag(), 1.0, 1e-15);
    std::vector<double> wide;
    smoothAverage(t, 1000, wide);
    const std::vector<double> shrunk = {-2, 2.0 / 3, 1.2, 2.0 / 3, -2};
    ASSERT_EQ(wide.size(), shrunk.size());
    for (size_t i = 0; i < shrunk.size(); ++i)
        EXPECT_NEAR(wide[i], shrunk[i], 1e-15) << i;
    // An infinite sample makes the windows that hold it infinite, and only those.
    const std::vector<double> px = {0, 1, 2, 3, 4, 5, 6, 7}, py = {1, INFINITY, 1, 1, 1, 1, -INFINITY, 1};
    std::vector<double> spike;
    smoothAverage(makeCurveSamples(px.data(), py.data(), px.size()), 1, spike);
    const std::vector<double> spikeWanted = {1, INFINITY, INFINITY, 1, 1, -INFINITY, -INFINITY, 1};
    ASSERT_EQ(spike.size(), spikeWanted.size());
    for (size_t i = 0; i < spike.size(); ++i)
        EXPECT_EQ(spike[i], spikeWanted[i]) << i;
    const std::vector<std::complex<double>> pz = {{1, 1}, {1, INFINITY}, {1, 1}, {1, 1}, {1, 1}};
    std::vector<std::complex<double>> complexSpike;
    smoothAverage(makeCurveSamples(px.data(), pz.data(), pz.size()), 1, complexSpike);
    ASSERT_EQ(complexSpike.size(), 5u);
    EXPECT_TRUE(std::isinf(complexSpike[2].imag()));
    EXPECT_EQ(complexSpike[3], std::complex<double>(1, 1));
    EXPECT_EQ(complexSpike[4], std::complex<double>(1, 1));
}

TEST(CurveMeasure, CurvesOfTheStore)
{
    cCurvePlotDataFile store;
    cCurvePlotDataSection* source = store.addDataSection("tran");
    const std::vector<double> x = {0, 1, 2, 3, 4, 5};
    const std::vector<double> y = {0, 3, 0, 3, 0, 3};
    const uint64_t sweep = source->addSweepVariable(
        store.addType("time", curvePlotProperties::data_double, curvePlotDataType::no_unit), "time", 0);
    source->getSweepVariable(sweep).setDoubleValues(x.data(), x.size());
    const uint64_t index =
        source->addVariable(store.addType("v", curvePlotProperties::data_double, curvePlotDataType::no_unit), "v");
    source->getVariable(index).setDoubleValues(y.data(), y.size());
    cCurvePlotDataSection* results = store.addDataSection("post-process");
    const cPostProcessCurveDescription curve(source, index);

    uint64_t smoothed = 0;
    std::string error;
    ASSERT_TRUE(applyFilterOperatorToSingleCurve(store, *results, "smoothed", curve, cOpSmoothAverage{1}, smoothed,
                                                 error))
        << error;
    curvePlotFunctionArgs::cDataVectors vectors;
    ASSERT_TRUE(results->getVariable(smoothed).computeDataVectors(*results, vectors));
    ASSERT_TRUE(vectors.xDouble && vectors.yDouble);
    ASSERT_EQ(vectors.count, 6u);
    EXPECT_EQ(vectors.yDouble[0], 0.0);
    EXPECT_EQ(vectors.yDouble[1], 1.0);
    EXPECT_EQ(vectors.yDouble[2], 2.0);
    EXPECT_EQ(vectors.yDouble[5], 3.0);

    double frequency = 0;
    ASSERT_TRUE(measureStoreCurve(curve, [&](const auto& s) { frequency = computeFrequency(s, 1.5); }, error))
        << error;
    EXPECT_DOUBLE_EQ(frequency, 0.5);
    // A description that names no curve reports why.
    EXPECT_FALSE(measureStoreCurve(cPostProcessCurveDescription(), [](const auto&) {}, error));
    EXPECT_FALSE(error.empty());
}
