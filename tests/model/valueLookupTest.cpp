// Values at x positions: interpolation, integrals and closest values against numpy on random
// grids, and the rules for NaN, repeated x and logarithmic x.
#include <cmath>
#include <cstdio>
#include <fstream>
#include <random>
#include <sstream>

#include <gtest/gtest.h>

#include "../base/testSupport.h"
#include "model/curveValueAnalysis.h"
#include "model/curveValueLookup.h"

using namespace vx3;
using namespace vx3::curvePlotVariable;
using namespace vx3::derivedCurveFunction;

namespace {

// Runs a Python program over numpy and answers its printed numbers.
std::vector<double> runNumpy(const std::string& program)
{
    zwtest::cTempDir dir;
    const std::string script = dir.write("check.py", program);
    FILE* pipe = ::popen(("/usr/bin/python3 " + script).c_str(), "r");
    std::vector<double> values;
    if (!pipe)
        return values;
    char line[64];
    while (std::fgets(line, sizeof(line), pipe))
        values.push_back(std::strtod(line, nullptr));
    ::pclose(pipe);
    return values;
}

std::string pythonList(const std::vector<double>& values)
{
    std::ostringstream text;
    text.precision(17);
    text << "[";
    for (double v : values)
        text << v << ",";
    text << "]";
    return text.str();
}

}  // namespace

TEST(CurveValuesVsNumpy, InterpolationIntegralsAndClosestValues)
{
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> step(1e-3, 1.0), value(-5, 5);
    const size_t n = 2000, queries = 5000;
    std::vector<double> xs(n), ys(n), targets(queries);
    double x = -100;
    for (size_t i = 0; i < n; ++i) {
        x += step(random);
        xs[i] = x;
        ys[i] = value(random);
    }
    std::uniform_real_distribution<double> inside(xs.front() - 10, xs.back() + 10);
    for (double& t : targets)
        t = inside(random);
    std::sort(targets.begin(), targets.begin() + queries / 2);  // sequential cursor use, then random

    ASSERT_EQ(zwtest::missingPythonModules("numpy"), "");
    const std::vector<double> expected = runNumpy(
        "import numpy as np\n"
        "trapezoid = getattr(np, 'trapezoid', None) or np.trapz  # np.trapz is gone in NumPy 2\n"
        "xs = np.array(" + pythonList(xs) + ")\n"
        "ys = np.array(" + pythonList(ys) + ")\n"
        "ts = np.array(" + pythonList(targets) + ")\n"
        "for v in np.interp(ts, xs, ys): print(repr(float(v)))\n"
        "for t in ts: print(int(np.argmin(np.abs(xs - t))))\n"
        "print(repr(float(trapezoid(ys, xs))))\n"
        "fine = np.linspace(xs[0], xs[-1], 4000001)\n"
        "print(repr(float(trapezoid(np.abs(np.interp(fine, xs, ys)), fine))))\n"
        "print(repr(float(trapezoid(ys[::-1], xs[::-1]))))\n");
    ASSERT_EQ(expected.size(), 2 * queries + 3) << "numpy ran";

    const cDerivedCurveFunction plain;
    uint64_t cursor = 0, closest = 0;
    for (size_t q = 0; q < queries; ++q) {
        double out = NAN;
        ASSERT_TRUE(findInterpolatedValue(targets[q], xs.data(), ys.data(), n, monotony_strictly_rising, cursor, out,
                                          plain));
        ASSERT_NEAR(out, expected[q], 1e-12) << "at " << targets[q];
        double found = 0;
        ASSERT_TRUE(computeClosestXValue(targets[q], xs.data(), closest, found, n, monotony_strictly_rising));
        ASSERT_EQ(closest, static_cast<uint64_t>(expected[queries + q])) << "at " << targets[q];
        uint64_t anywhere = closest * 7 % n;
        ASSERT_TRUE(computeClosestXValue(targets[q], xs.data(), anywhere, found, n, monotony_none_rising));
        ASSERT_EQ(anywhere, closest) << "the linear pass agrees";
    }
    EXPECT_NEAR(computeRealIntegral(xs.data(), ys.data(), n), expected[2 * queries], 1e-9);
    EXPECT_NEAR(computeRealAbsIntegral(xs.data(), ys.data(), n), expected[2 * queries + 1], 1e-4)
        << "exact cut at zero against a fine sampling";

    // The same curve with x falling.
    std::vector<double> rx(xs.rbegin(), xs.rend()), ry(ys.rbegin(), ys.rend());
    EXPECT_EQ(computeMonotonyType(rx.data(), n), monotony_strictly_falling);
    EXPECT_NEAR(computeRealIntegral(rx.data(), ry.data(), n), expected[2 * queries + 2], 1e-9);
    cursor = 0;
    for (size_t q = 0; q < queries; q += 7) {
        double out = NAN;
        ASSERT_TRUE(findInterpolatedValue(targets[q], rx.data(), ry.data(), n, monotony_strictly_falling, cursor, out,
                                          plain));
        ASSERT_NEAR(out, expected[q], 1e-12);
        double found = 0;
        ASSERT_TRUE(computeClosestXValue(targets[q], rx.data(), closest, found, n, monotony_strictly_falling));
        ASSERT_EQ(n - 1 - closest, static_cast<uint64_t>(expected[queries + q]));
    }
}

TEST(CurveValues, InterpolationRules)
{
    const cDerivedCurveFunction plain;
    uint64_t cursor = 0;
    double out = 0;
    const double one[] = {2.0}, oneY[] = {7.0};
    ASSERT_TRUE(computeInterpolatedValueIncreasing(-5.0, one, oneY, 1, cursor, out, plain));
    EXPECT_EQ(out, 7.0) << "one value is the value everywhere";

    // Repeated x: the mean at that x; a NaN in the pair leaves the other value.
    const double xs[] = {0, 1, 1, 2}, ys[] = {0, 2, 4, 6};
    ASSERT_TRUE(computeInterpolatedValueIncreasing(1.0, xs, ys, 4, cursor, out, plain));
    EXPECT_EQ(out, 3.0);
    const double nanPair[] = {0, NAN, 4, 6};
    ASSERT_TRUE(computeInterpolatedValueIncreasing(1.0, xs, nanPair, 4, cursor, out, plain));
    EXPECT_EQ(out, 4.0);
    ASSERT_TRUE(computeInterpolatedValueIncreasing(1.5, xs, ys, 4, cursor, out, plain));
    EXPECT_EQ(out, 5.0);

    // NaN neighbours: undefined between, defined at the exact x of the other end.
    const double gx[] = {0, 1, 2, 3}, gy[] = {0, NAN, 2, NAN};
    cursor = 0;
    EXPECT_FALSE(computeInterpolatedValueIncreasing(0.5, gx, gy, 4, cursor, out, plain));
    ASSERT_TRUE(computeInterpolatedValueIncreasing(0.0, gx, gy, 4, cursor, out, plain));
    EXPECT_EQ(out, 0.0);
    ASSERT_TRUE(computeInterpolatedValueIncreasing(2.0, gx, gy, 4, cursor, out, plain));
    EXPECT_EQ(out, 2.0);
    ASSERT_TRUE(computeInterpolatedValueIncreasing(3.0, gx, gy, 4, cursor, out, plain));
    EXPECT_TRUE(std::isnan(out)) << "NaN at the last index";
    const double both[] = {NAN, NAN};
    ASSERT_TRUE(computeInterpolatedValueIncreasing(0.5, gx, both, 2, cursor, out, plain));
    EXPECT_TRUE(std::isnan(out));

    // Outside the range the end values carry on.
    cursor = 0;
    ASSERT_TRUE(findInterpolatedValue(-3.0, xs, ys, 4, monotony_rising, cursor, out, plain));
    EXPECT_EQ(out, 0.0);
    ASSERT_TRUE(findInterpolatedValue(30.0, xs, ys, 4, monotony_rising, cursor, out, plain));
    EXPECT_EQ(out, 6.0);

    // Logarithmic x: interpolation on log10 x; x at or below 1e-100 counts as 1e-100.
    const double lx[] = {1, 100}, ly[] = {0, 2};
    cursor = 0;
    ASSERT_TRUE(computeInterpolatedValueIncreasing(10.0, lx, ly, 2, cursor, out, plain, true));
    EXPECT_DOUBLE_EQ(out, 1.0);
    EXPECT_EQ(interpolate_save_log(0.0, 1e-120, 1, 0, 1), interpolate_save_log(1e-100, 1e-100, 1, 0, 1));
    EXPECT_EQ(interpolate_save_log(5, 3, 3, 1, 2), 1.5);
    EXPECT_DOUBLE_EQ(interpolate_save_log(1e-50, 1e-100, 1, 0, 1), 0.5);

    // Complex values are interpolated after their conversion.
    const std::complex<double> cy[] = {{3, 4}, {6, 8}};
    const cDerivedCurveFunction magnitude(derivedCurveFunction::magnitude, derivedCurveFunction::default_digital);
    cursor = 0;
    ASSERT_TRUE(computeInterpolatedValueIncreasing(0.5, lx, cy, 2, cursor, out, magnitude));
    EXPECT_NEAR(out, 5.0 + 5.0 * (0.5 - 1) / 99, 1e-12);
    // A sweep-matrix cut: y read with a stride.
    const double strided[] = {0, 99, 10, 99};
    cursor = 0;
    ASSERT_TRUE(computeInterpolatedValueIncreasing(50.5, lx, strided, 2, cursor, out, plain, false, 2));
    EXPECT_DOUBLE_EQ(out, 5.0);

    // Not monotone: the segment that holds x.
    const double zx[] = {0, 2, 1, 3}, zy[] = {0, 2, 4, 6};
    EXPECT_EQ(computeMonotonyType(zx, 4), monotony_none_rising);
    cursor = 0;
    ASSERT_TRUE(findInterpolatedValue(2.5, zx, zy, 4, monotony_none_rising, cursor, out, plain));
    EXPECT_EQ(out, 5.5) << "the first segment that holds x: (1, 4) to (3, 6)";
    EXPECT_FALSE(findInterpolatedValue(9.0, zx, zy, 4, monotony_none_rising, cursor, out, plain));

    // Gradients from the parabola through three neighbours: exact for a quadratic.
    const double qx[] = {0, 1, 3, 4}, qy[] = {0, 1, 9, 16};
    double gradient = 0;
    cursor = 0;
    ASSERT_TRUE(computeInterpolatedGradient(2.0, qx, qy, 4, cursor, gradient, plain));
    EXPECT_DOUBLE_EQ(gradient, 4.0);
    ASSERT_TRUE(computeExtrapolatedGradient(9.0, qx, qy, 4, gradient, plain));
    EXPECT_DOUBLE_EQ(gradient, 8.0);
}

TEST(CurveValues, MonotonyClosestSparseAndShapes)
{
    const double flat[] = {1, 1, 1}, rising[] = {1, 2, 2, 3}, strict[] = {1, 2, 3}, falling[] = {3, 3, 1};
    const double down[] = {3, 2, 1}, upDown[] = {1, 3, 1}, downUp[] = {3, 1, 2};
    EXPECT_EQ(computeMonotonyType(flat, 3), monotony_constant);
    EXPECT_EQ(computeMonotonyType(strict, 1), monotony_constant) << "fewer than two values";
    EXPECT_EQ(computeMonotonyType(rising, 4), monotony_rising);
    EXPECT_EQ(computeMonotonyType(strict, 3), monotony_strictly_rising);
    EXPECT_EQ(computeMonotonyType(falling, 3), monotony_falling);
    EXPECT_EQ(computeMonotonyType(down, 3), monotony_strictly_falling);
    EXPECT_EQ(computeMonotonyType(upDown, 3), monotony_undefined);
    EXPECT_EQ(computeMonotonyType(downUp, 3), monotony_none_falling);
    EXPECT_EQ(computeMonotonyType(strict, 2, 2), monotony_strictly_rising) << "with a stride";

    uint64_t index = 99;
    double found = 0;
    EXPECT_FALSE(computeClosestXValue(1.0, strict, index, found, 0, monotony_strictly_rising));
    const double ties[] = {0, 2, 4};
    ASSERT_TRUE(computeClosestXValue(3.0, ties, index, found, 3, monotony_strictly_rising));
    EXPECT_EQ(index, 1u) << "a tie goes to the lower index";
    ASSERT_TRUE(computeClosestXValue(3.0, ties, index, found, 3, monotony_none_rising));
    EXPECT_EQ(index, 1u);
    EXPECT_EQ(findApproxXValueIndex(ties, 3, 2.0, true, monotony_rising), 1u);
    EXPECT_EQ(findApproxXValueIndex(ties, 3, 2.0, false, monotony_rising), 2u);
    EXPECT_EQ(findApproxXValueIndex(ties, 3, 9.0, true, monotony_rising), 3u);
    EXPECT_EQ(findApproxXValueIndex(down, 3, 2.0, false, monotony_strictly_falling), 2u);

    // Event data: the value in force is the last change at or before the target.
    const uint64_t positions[] = {10, 20, 30};
    const char values[] = "aabbcc";
    const char* value = nullptr;
    uint64_t cursor = 99;  // unusable: found by search
    EXPECT_TRUE(findSparseValueVectorPairImpl(positions, values, 3, 2, uint64_t(20), cursor, value));
    EXPECT_EQ(std::string(value, 2), "bb");
    EXPECT_FALSE(findSparseValueVectorPairImpl(positions, values, 3, 2, uint64_t(29), cursor, value));
    EXPECT_EQ(std::string(value, 2), "bb");
    EXPECT_FALSE(findSparseValueVectorPairImpl(positions, values, 3, 2, uint64_t(99), cursor, value));
    EXPECT_EQ(std::string(value, 2), "cc");
    EXPECT_FALSE(findSparseValueVectorPairImpl(positions, values, 3, 2, uint64_t(5), cursor, value));
    EXPECT_EQ(value, nullptr) << "before the first change";
    EXPECT_FALSE(findSparseValueVectorPairImpl<uint64_t>(nullptr, values, 3, 2, 20, cursor, value));

    // Logarithmic spacing and repeated sweeps.
    const double decades[] = {1, 10, 100, 1000}, linear[] = {1, 2, 3, 4};
    EXPECT_TRUE(checkForLogScale(decades, 4));
    EXPECT_FALSE(checkForLogScale(linear, 4));
    const float perDecade[] = {1.0f, 1.2589254f, 1.5848932f, 1.9952623f, 2.5118864f};
    EXPECT_TRUE(checkForLogScale(perDecade, 5)) << "float rounding stays within the threshold";
    uint64_t identical = 0, repetitions = 0, period = 0;
    const double repeated[] = {1, 2, 3, 1, 2, 3}, blocks[] = {5, 5, 6, 6, 5, 5, 6, 6}, mixed[] = {1, 2, 1, 3};
    EXPECT_TRUE(checkForRepetitionsAndIdenticalValues(repeated, 6, identical, repetitions, period));
    EXPECT_EQ(std::make_tuple(identical, repetitions, period), std::make_tuple(1u, 2u, 3u));
    EXPECT_TRUE(checkForRepetitionsAndIdenticalValues(blocks, 8, identical, repetitions, period));
    EXPECT_EQ(std::make_tuple(identical, repetitions, period), std::make_tuple(2u, 2u, 2u));
    EXPECT_FALSE(checkForRepetitionsAndIdenticalValues(mixed, 4, identical, repetitions, period));

    EXPECT_DOUBLE_EQ(computePointToPointDistance(0, 0, 3, 4), 5.0);
    EXPECT_DOUBLE_EQ(computePointToLineDistance(1, 1, 0, 0, 2, 0), 1.0);
    EXPECT_DOUBLE_EQ(computePointToLineDistance(5, 4, 0, 0, 2, 0), 5.0) << "beyond the end: the end point";
}
