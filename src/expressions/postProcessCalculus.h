// Derivatives, integrals, averages and interval cuts of one curve. Each reads the samples in
// walking order (rising x) and writes its result for the same x positions, unless it says
// otherwise. Sums run in extended precision.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "expressions/cPostProcessCurveDescriptionUser.h"

namespace vx3::postProcess {

// The slope towards the next sample, the last sample taking its neighbour's. Runs of equal x
// take the slope after them; undefined samples stay undefined. Fewer than 3 samples: false.
template <class X, class Y>
bool computeDerivedCurve(const cCurveSamples<X, Y>& s, std::vector<double>& result)
{
    const uint64_t n = s.count;
    if (n < 3)
        return false;
    result.assign(n, NAN);
    for (uint64_t i = n - 1; i-- > 0;) {
        const long double x0 = static_cast<double>(s.x[i]), x1 = static_cast<double>(s.x[i + 1]);
        if (x1 == x0) {
            result[i] = i + 2 < n ? result[i + 1] : NAN;
            continue;
        }
        const long double y0 = static_cast<long double>(s.y[i]), y1 = static_cast<long double>(s.y[i + 1]);
        result[i] = static_cast<double>((y1 - y0) / (x1 - x0));
    }
    result[n - 1] = result[n - 2];
    return true;
}

// The slope towards the next sample (forward) or from the previous one (backward); the end
// without a neighbour on that side copies the next one inwards. Equal x gives no slope (NaN).
template <class X, class Y>
bool computeForwardDerivedCurve(const cCurveSamples<X, Y>& s, std::vector<double>& result)
{
    const uint64_t n = s.count;
    if (n < 3)
        return false;
    result.assign(n, NAN);
    for (uint64_t i = 0; i + 1 < n; ++i) {
        const long double dx = static_cast<long double>(static_cast<double>(s.x[i + 1])) - static_cast<double>(s.x[i]);
        const long double dy = static_cast<long double>(s.y[i + 1]) - static_cast<long double>(s.y[i]);
        result[i] = dx == 0 ? NAN : static_cast<double>(dy / dx);
    }
    result[n - 1] = result[n - 2];
    return true;
}

template <class X, class Y>
bool computeBackwardDerivedCurve(const cCurveSamples<X, Y>& s, std::vector<double>& result)
{
    if (!computeForwardDerivedCurve(s, result))
        return false;
    // The backward slope at i is the forward slope at i - 1.
    for (uint64_t i = s.count - 1; i > 0; --i)
        result[i] = result[i - 1];
    result[0] = result[1];
    return true;
}

// (y[i+1] - y[i-1]) / (x[i+1] - x[i-1]) where the three samples are defined and x strictly
// monotone through them; the ends copy their neighbours.
template <class X, class Y>
bool computeCenteredDerivedCurve(const cCurveSamples<X, Y>& s, std::vector<double>& result)
{
    const uint64_t n = s.count;
    if (n < 3)
        return false;
    result.assign(n, NAN);
    for (uint64_t i = 1; i + 1 < n; ++i) {
        const long double x0 = static_cast<double>(s.x[i - 1]), x1 = static_cast<double>(s.x[i]),
                          x2 = static_cast<double>(s.x[i + 1]);
        const long double y0 = static_cast<long double>(s.y[i - 1]), y1 = static_cast<long double>(s.y[i]),
                          y2 = static_cast<long double>(s.y[i + 1]);
        if (std::isnan(y0) || std::isnan(y1) || std::isnan(y2) || !((x0 < x1 && x1 < x2) || (x0 > x1 && x1 > x2)))
            continue;
        result[i] = static_cast<double>((y2 - y0) / (x2 - x0));
    }
    result[0] = result[1];
    result[n - 1] = result[n - 2];
    return true;
}

// The running trapezoid sum, 0 at the first sample; undefined samples add nothing.
template <class X, class Y>
bool computeIntegralCurveTrapez(const cCurveSamples<X, Y>& s, std::vector<double>& result)
{
    const uint64_t n = s.count;
    if (n < 1)
        return false;
    result.assign(n, 0.0);
    long double sum = 0;
    for (uint64_t i = 0; i + 1 < n; ++i) {
        const long double y0 = static_cast<long double>(s.y[i]), y1 = static_cast<long double>(s.y[i + 1]);
        if (!std::isnan(y0) && !std::isnan(y1))
            sum += (y0 + y1) * 0.5L *
                   (static_cast<long double>(static_cast<double>(s.x[i + 1])) - static_cast<double>(s.x[i]));
        result[i + 1] = static_cast<double>(sum);
    }
    return true;
}

// fn(x, y) for each point of [x1, x2] in rising x: an interpolated point at a bound that falls
// between samples, the samples inside. False (and no call) for an empty or non-monotone curve,
// or an interval that misses it.
template <class X, class Y, class Fn>
bool walkSamplesInInterval(const cCurveSamples<X, Y>& s, double x1, double x2, Fn&& fn)
{
    static_assert(!kIsComplex<Y>, "measurements read real curves");
    const uint64_t n = s.count;
    if (!n || !s.monotone)
        return false;
    auto xAt = [&](uint64_t i) { return static_cast<double>(s.x[i]); };
    const double first = xAt(0), last = xAt(n - 1);
    if (std::isnan(x1))
        x1 = first;
    if (std::isnan(x2))
        x2 = last;
    if (x1 > x2)
        std::swap(x1, x2);
    if (x2 < first || x1 > last)
        return false;
    x1 = std::max(x1, first);
    x2 = std::min(x2, last);
    // The first sample at or after x1 (the axis rises).
    uint64_t lo = 0, hi = n;
    while (lo < hi) {
        const uint64_t mid = lo + (hi - lo) / 2;
        if (xAt(mid) < x1)
            lo = mid + 1;
        else
            hi = mid;
    }
    auto interpolated = [&](uint64_t i, double x) {
        // x lies strictly between samples i - 1 and i.
        const long double xa = xAt(i - 1), xb = xAt(i);
        const long double ya = static_cast<long double>(s.y[i - 1]), yb = static_cast<long double>(s.y[i]);
        return static_cast<double>(ya + (yb - ya) * (static_cast<long double>(x) - xa) / (xb - xa));
    };
    uint64_t i = lo;
    double lastX = x1;
    if (xAt(i) > x1)
        fn(x1, interpolated(i, x1));
    for (; i < n && xAt(i) <= x2; ++i) {
        lastX = xAt(i);
        fn(lastX, static_cast<double>(s.y[i]));
    }
    if (i < n && lastX < x2)
        fn(x2, interpolated(i, x2));
    return true;
}

// The samples in [x1, x2], with interpolated end points at x1 and x2 where they fall between
// samples. NaN stands for the curve's end on its side. False when the interval misses the curve
// or the x-axis isn't monotone.
template <class X, class Y>
bool reduceWaveformToInterval(const cCurveSamples<X, Y>& s, double x1, double x2, std::vector<double>& xs,
                              std::vector<double>& ys)
{
    xs.clear();
    ys.clear();
    return walkSamplesInInterval(s, x1, x2, [&](double x, double y) {
        xs.push_back(x);
        ys.push_back(y);
    });
}

// The trapezoid integral over [x1, x2] (NaN: the curve's end) divided by its length; NaN for an
// interval of no length or one that misses the curve.
template <class X, class Y>
double computeCurveAverage(const cCurveSamples<X, Y>& s, double x1, double x2)
{
    std::vector<double> xs, ys, integral;
    if (!reduceWaveformToInterval(s, x1, x2, xs, ys) || xs.size() < 2)
        return NAN;
    const auto cut = makeCurveSamples(xs.data(), ys.data(), xs.size());
    computeIntegralCurveTrapez(cut, integral);
    const double length = xs.back() - xs.front();
    return length > 0 ? integral.back() / length : NAN;
}

}  // namespace vx3::postProcess
