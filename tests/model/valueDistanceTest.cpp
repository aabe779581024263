// The distance from a screen point to a curve as drawn, against brute force over every segment.
#include <cmath>
#include <complex>
#include <random>

#include <gtest/gtest.h>

#include "model/cCurvePlotDataFile.h"
#include "model/curveValueDistance.h"

using namespace vx3;
using namespace vx3::curvePlotVariable;
using namespace vx3::curvePlotProperties;

namespace {

struct cAnswer {
    bool hit = false;
    double distance2 = 1e300;
    uint64_t index = 0;
};

// Absolute pixels of every sample, written out here rather than borrowed from the code under test.
struct cOracle {
    cDistanceScale scale;
    double sx(double x) const { return (scale.logX ? std::log10(std::max(x, 1e-100)) : x) * scale.pixelsPerX; }
    double sy(double y) const { return y * scale.pixelsPerY; }

    static double segment2(double px, double py, double ax, double ay, double bx, double by)
    {
        const double vx = bx - ax, vy = by - ay, length2 = vx * vx + vy * vy;
        const double t = length2 > 0 ? std::clamp(((px - ax) * vx + (py - ay) * vy) / length2, 0.0, 1.0) : 0;
        return (ax + t * vx - px) * (ax + t * vx - px) + (ay + t * vy - py) * (ay + t * vy - py);
    }
    // Every segment between defined neighbours (answering its nearer end), every lone sample.
    cAnswer polyline(const std::vector<double>& xs, const std::vector<double>& ys, double x, double y) const
    {
        cAnswer best;
        auto defined = [&](size_t i) { return i < xs.size() && !std::isnan(ys[i]); };
        auto to = [&](size_t i) { return segment2(sx(x), sy(y), sx(xs[i]), sy(ys[i]), sx(xs[i]), sy(ys[i])); };
        for (size_t i = 0; i < xs.size(); ++i) {
            double d = 1e300;
            if (defined(i) && defined(i + 1))
                d = segment2(sx(x), sy(y), sx(xs[i]), sy(ys[i]), sx(xs[i + 1]), sy(ys[i + 1]));
            else if (defined(i) && (i == 0 || !defined(i - 1)))
                d = to(i);
            if (d < best.distance2)
                best = {true, d, defined(i + 1) && to(i + 1) < to(i) ? i + 1 : i};
        }
        return best;
    }
    // Steps from each value to the next x, the last one on to the right, joined by vertical edges.
    cAnswer steps(const std::vector<double>& xs, const std::vector<double>& vs, double x, double y) const
    {
        cAnswer best;
        for (size_t i = 0; i < xs.size(); ++i) {
            if (std::isnan(vs[i]))
                continue;
            const double end = i + 1 < xs.size() ? sx(xs[i + 1]) : std::max(sx(x), sx(xs[i]));
            double d = segment2(sx(x), sy(y), sx(xs[i]), sy(vs[i]), end, sy(vs[i]));
            if (i > 0 && !std::isnan(vs[i - 1]))
                d = std::min(d, segment2(sx(x), sy(y), sx(xs[i]), sy(vs[i - 1]), sx(xs[i]), sy(vs[i])));
            if (d < best.distance2)
                best = {true, d, i};
        }
        return best;
    }
};

// relative: the oracle's absolute pixels lose digits far from the origin.
void expectSame(const cAnswer& got, const cAnswer& expected, const std::string& what, double relative = 1e-9)
{
    ASSERT_EQ(got.hit, expected.hit) << what;
    if (expected.hit) {
        ASSERT_NEAR(got.distance2, expected.distance2, relative * (1 + expected.distance2)) << what;
        ASSERT_EQ(got.index, expected.index) << what;
    }
}

}  // namespace

TEST(ValueDistance, PolylinesAgainstBruteForce)
{
    std::mt19937_64 random(5);
    std::uniform_real_distribution<double> u(0, 1);
    const cDerivedCurveFunction plain,
        magnitude(derivedCurveFunction::magnitude, derivedCurveFunction::default_digital);
    enum kind { rising, falling, none, withNans, logX, complexMagnitude };
    for (const int curve : {rising, falling, none, withNans, logX, complexMagnitude}) {
        const size_t n = 300;
        std::vector<double> xs(n), ys(n);
        std::vector<std::complex<double>> zs(n);
        double x = -3;
        for (size_t i = 0; i < n; ++i) {
            // Some repeated x; log x starts at 0 and spans decades.
            x = curve == logX ? (i ? std::max(1e-9, x * 1.08) : 0.0) : x + (u(random) < 0.05 ? 0 : u(random));
            xs[i] = curve == none ? 50 * u(random) : x;
            zs[i] = {4 * u(random) - 2, 4 * u(random) - 2};
            ys[i] = curve == complexMagnitude ? std::abs(zs[i]) : zs[i].real();
            if (curve == withNans && u(random) < 0.2)
                ys[i] = NAN;  // leaves lone points among the lines
        }
        if (curve == falling)
            std::reverse(xs.begin(), xs.end());
        const unsigned monotony = computeMonotonyType(xs.data(), n);
        const auto [low, high] = std::minmax_element(xs.begin(), xs.end());
        cOracle oracle;
        oracle.scale.pixelsPerX = curve == logX ? 40 : 1000 / (*high - *low);
        oracle.scale.pixelsPerY = -70;  // screen y runs downwards
        oracle.scale.logX = curve == logX;
        for (const double tolerance : {double(INFINITY), 15.0}) {
            oracle.scale.tolerancePixels = tolerance;
            uint64_t cursor = 0;
            for (int k = 0; k < 500; ++k) {
                // Points around the curve's box, and right on samples.
                const size_t on = k % 5 ? n : k % n;
                const double qx = on < n ? xs[on] : *low + (1.2 * u(random) - 0.1) * (*high - *low);
                const double qy = on < n && !std::isnan(ys[on]) ? ys[on] : 5 * u(random) - 2.5;
                const cAnswer expected = oracle.polyline(xs, ys, qx, qy);
                if (expected.distance2 > tolerance * tolerance)
                    continue;  // the band may miss a farther nearest point
                cAnswer got;
                cursor = u(random) < 0.1 ? UINT64_MAX : cursor;  // a stale cursor now and then
                got.hit = curve == complexMagnitude
                              ? computeDistanceToValue(qx, qy, xs.data(), zs.data(), n, monotony, oracle.scale,
                                                       magnitude, cursor, got.distance2)
                              : computeDistanceToValue(qx, qy, xs.data(), ys.data(), n, monotony, oracle.scale,
                                                       plain, cursor, got.distance2);
                got.index = cursor;
                expectSame(got, expected, "curve " + std::to_string(curve) + " query " + std::to_string(k));
            }
        }
    }

    // One point is a point; nothing is no hit.
    const double one = 2.0, value = 3.0, nan = NAN;
    uint64_t index = 9;
    double distance2 = 0;
    ASSERT_TRUE(computeDistanceToValueIncreasing(5.0, 7.0, &one, &value, 1, cDistanceScale{}, plain, index, distance2));
    EXPECT_EQ(distance2, 25.0);
    EXPECT_EQ(index, 0u);
    EXPECT_FALSE(computeDistanceToValueNone(5.0, 7.0, &one, &value, 0, cDistanceScale{}, plain, index, distance2));
    EXPECT_EQ(distance2, 1e300);
    EXPECT_FALSE(computeDistanceToValueIncreasing(5.0, 7.0, &one, &nan, 1, cDistanceScale{}, plain, index, distance2));
}

TEST(ValueDistance, ToleranceBandKeepsLinesThatCrossItAndReadsLittle)
{
    // Two samples 1000 pixels apart, the point 3 pixels above the line and 1 pixel of tolerance.
    const double rising[] = {0.0, 1000.0}, falling[] = {1000.0, 0.0}, ys[] = {0.0, 1000.0};
    cDistanceScale scale;
    scale.tolerancePixels = 1;
    uint64_t index = 0;
    double distance2 = 0;
    ASSERT_TRUE(computeDistanceToValueIncreasing(500.0, 503.0, rising, ys, 2, scale, {}, index, distance2));
    EXPECT_NEAR(distance2, 4.5, 1e-9);
    ASSERT_TRUE(computeDistanceToValueDecreasing(500.0, 497.0, falling, ys, 2, scale, {}, index, distance2));
    EXPECT_NEAR(distance2, 4.5, 1e-9);

    // A million events at times of 1e-9 per position step, 20 pixels apart: a step within 10
    // pixels is found after reading a handful of values.
    const uint64_t n = 1000000;
    std::vector<uint64_t> positions(n);
    std::vector<double> values(n), times(n);
    std::mt19937_64 random(3);
    for (uint64_t i = 0; i < n; ++i) {
        positions[i] = i * 100 + random() % 50;
        times[i] = positions[i] * 1e-9;
        values[i] = random() % 7 == 0 ? NAN : double(random() % 5);
    }
    cOracle oracle;
    oracle.scale = {2e8, 30, false, 10};
    uint64_t reads = 0, cursor = 0, checked = 0;
    for (int k = 0; k < 200; ++k) {
        const double x = (random() % (n * 100)) * 1e-9, y = (random() % 600) / 100.0 - 0.5;
        // Events more than five away lie over 80 pixels off: the oracle sees the 16 around x.
        const uint64_t from = std::min(n - 16, x / 1e-7 > 5 ? uint64_t(x / 1e-7) - 5 : 0);
        cAnswer expected = oracle.steps({times.begin() + from, times.begin() + from + 16},
                                        {values.begin() + from, values.begin() + from + 16}, x, y);
        expected.index += from;
        cAnswer got;
        got.hit = computeDistanceToValueSparse(
            x, y, n, [&](uint64_t i) { return positionToX(positions[i], 1e-9L); },
            [&](uint64_t i) { return ++reads, values[i]; }, oracle.scale, cursor, got.distance2);
        got.index = cursor;
        if (expected.distance2 > 100)
            continue;
        expectSame(got, expected, "event query " + std::to_string(k), 1e-6);
        ++checked;
    }
    EXPECT_GT(checked, 20u);
    EXPECT_LT(reads, 200u * 6) << "the band holds one or two events";
}

TEST(ValueDistance, CurvesOfASection)
{
    cCurvePlotDataFile store;
    cCurvePlotDataSection* section = store.addDataSection("tran");
    section->addSweepVariable(store.addType("s", data_double, curvePlotDataType::second), "time", 0);
    const double ts[] = {0, 1, 2, 3};
    section->getSweepVariable(0).setDoubleValues(ts, 4);
    section->getSweepVariable(0).setMonotony(derivedCurveFunction::monotony_strictly_rising);
    cOracle oracle;
    oracle.scale = {100, 50, false, INFINITY, 20};
    uint64_t index = 0;
    auto measure = [&](uint64_t curve, double x, double y, bool second = false) {
        cAnswer got;
        got.hit = section->getVariable(curve).computeDistanceToValue(*section, x, y, oracle.scale, index,
                                                                     got.distance2, second);
        got.index = index;
        return got;
    };
    auto add = [&](data_type type) { return section->addVariable(store.addType("t", type, {}), "c"); };

    // Complex over the sweep: the magnitude, and the angle in degrees as the second value.
    const uint64_t c = add(double_complex);
    const std::complex<double> zs[] = {{3, 4}, {0, 2}, {-1, 0}, {1, 1}};
    section->getVariable(c).setDoubleComplexValues(zs, 4);
    section->getVariable(c).setConversion(derivedCurveFunction::magnitude_and_angle);
    expectSame(measure(c, 0.5, 3.0), oracle.polyline({0, 1, 2, 3}, {5, 2, 1, std::sqrt(2.0)}, 0.5, 3.0), "mag");
    expectSame(measure(c, 2.5, 100.0, true),
               oracle.polyline({0, 1, 2, 3}, {53.13010235415598, 90, 180, 45}, 2.5, 100.0), "angle");

    // Events with 64-bit and 32-bit positions, drawn as steps.
    const std::vector<double> positions = {2, 5, 6, 9, 14}, values = {1, -1, NAN, 2, 0.5};
    for (const data_type type : {interleaved_sparse_double_64b_index, interleaved_sparse_double_32b_index}) {
        cCurvePlotVariable& events = section->getVariable(add(type));
        const bool wide = type == interleaved_sparse_double_64b_index;
        events.setGrowthFlag(true);
        events.setElementSize(wide ? 16 : 12);
        for (size_t i = 0; i < positions.size(); ++i)
            wide ? events.pushBackInterleavedValuePair(uint64_t(positions[i]), values[i])
                 : events.pushBackInterleavedValuePair(uint32_t(positions[i]), values[i]);
        const uint64_t e = section->getNbOfVariables() - 1;
        for (const auto& [x, y] : std::vector<std::pair<double, double>>{
                 {5.2, -0.8}, {6.5, 0.0}, {8.9, 1.0}, {30.0, 0.7}, {0.0, 1.0}, {7.0, 2.0}, {14.0, 0.5}})
            expectSame(measure(e, x, y), oracle.steps(positions, values, x, y), "event at " + std::to_string(x));
    }

    // Logic rows of 20 pixels: the vertical distance to the level, nothing outside the row or
    // before the first state.
    auto row = [](double y, double level, uint64_t i) { return cAnswer{true, (y - level) * (y - level) * 400, i}; };
    const uint64_t bit = add(interleaved_sparse_logic);
    section->getVariable(bit).setGrowthFlag(true);
    section->getVariable(bit).setElementSize(9);
    const char* states = "01zxH";
    const double levels[] = {0, 1, 0.5, 0.5, 1};
    for (uint64_t i = 0; i < 5; ++i)
        section->getVariable(bit).pushBackInterleavedSparse4StateValueLogicPair(10 * i + 10, states + i, 1);
    for (uint64_t i = 0; i < 5; ++i)
        expectSame(measure(bit, 10.0 * i + 13, 0.25), row(0.25, levels[i], i), "bit " + std::to_string(i));
    EXPECT_FALSE(measure(bit, 9.0, 0.5).hit) << "before the first state";
    EXPECT_FALSE(measure(bit, 25.0, 1.2).hit) << "above the row";
    EXPECT_FALSE(measure(bit, 25.0, -0.01).hit) << "below the row";

    const uint64_t bus = add(sparse_logic_vector_4_state);
    ASSERT_TRUE(section->getVariable(bus).setValueVectorPairSize(3, 3));
    using cEvent = std::pair<uint64_t, const char*>;
    for (const auto& [position, vector] : std::vector<cEvent>{{4, "x10"}, {8, "0x1"}, {12, "xxx"}})
        ASSERT_TRUE(section->getVariable(bus).pushBackValueVectorPair(position, vector, 3));
    expectSame(measure(bus, 5.0, 0.9), row(0.9, 1.0, 0), "leftmost significant bit 1");
    expectSame(measure(bus, 11.0, 0.9), row(0.9, 0.0, 1), "leftmost significant bit 0");
    expectSame(measure(bus, 99.0, 0.9), row(0.9, 0.5, 2), "all unknown, held to the right");

    const uint64_t sampled = add(double_parameterized_uint8);
    ASSERT_TRUE(section->getVariable(sampled).setParameterizedSize(3, 8, 1));
    for (const auto& [x, state] : std::vector<std::pair<double, char>>{{0.5, '1'}, {1.5, '0'}, {2.5, 'z'}})
        ASSERT_TRUE(section->getVariable(sampled).pushBackValuePair(x, state));
    expectSame(measure(sampled, 2.0, 0.0), row(0.0, 0.0, 1), "on the low level");
    expectSame(measure(sampled, 2.6, 0.0), row(0.0, 0.5, 2), "z in the middle");
}
