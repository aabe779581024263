// How far a screen point lies from a curve as drawn, in squared pixels: the lookup behind "which
// curve is under the mouse". Analog curves are polylines broken at undefined values, event values
// are steps, and logic states lie on their level inside the curve's row.
//
// Every form answers whether it found anything, the squared distance (1e+300 when it found
// nothing) and the index of the nearest sample. index also comes in: the cursor of the previous
// call, so that a mouse moving along the curve costs a few steps instead of a search.
#pragma once

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "model/curveValueAnalysis.h"
#include "model/curveValueLookup.h"

namespace vx3::curvePlotVariable {

struct cDistanceScale {
    double pixelsPerX = 1.0;
    double pixelsPerY = 1.0;
    // x measured on log10 of x; values at or below 1e-100 count as 1e-100 (as interpolate_save_log).
    bool logX = false;
    // Monotone x: only samples this many pixels or less from the point in x are examined, with the
    // two segments that straddle the edges. Infinite: every sample.
    double tolerancePixels = std::numeric_limits<double>::infinity();
    // Digital curves: the pixel height of the row's band, which spans y 0.0 to 1.0 of the row.
    double rowPixels = 1.0;
};

constexpr double kNoDistance = 1e300;

// An event's integer position on the x axis.
inline double positionToX(uint64_t position, long double timeScaleFactor)
{
    return static_cast<double>(static_cast<long double>(position) * timeScaleFactor);
}

namespace detail {

inline double screenX(double x, bool logX) { return logX ? std::log10(x < 1e-100 ? 1e-100 : x) : x; }

// The x range in data units outside of which every sample is farther than the tolerance.
struct cXBand {
    double low, high;
};

inline cXBand xBandOf(double x, const cDistanceScale& scale)
{
    constexpr double kAll = std::numeric_limits<double>::infinity();
    const double half = scale.tolerancePixels / std::fabs(scale.pixelsPerX);
    if (!(half < kAll))  // also NaN: a zero scale with a zero tolerance
        return {-kAll, kAll};
    if (!scale.logX)
        return {x - half, x + half};
    const double l = screenX(x, true);
    // Everything at or below 1e-100 sits at -100 on the axis, negative values too.
    return {l - half <= -100 ? -kAll : std::pow(10.0, l - half), std::pow(10.0, l + half)};
}

// The last index for which holds(i) is true, where it is true for a prefix of 0..count-1; false
// when it holds for none. cursor is where the search starts: a near answer costs a few steps, a
// far one a logarithm.
template <typename Holds>
bool findLastHolding(uint64_t count, uint64_t& cursor, Holds holds)
{
    if (count == 0)
        return false;
    if (cursor >= count)
        cursor = count - 1;
    uint64_t low = 0, high = 0;  // holds(low), and high == count or !holds(high)
    if (holds(cursor)) {
        uint64_t step = 1;
        low = cursor;
        while (low + step < count && holds(low + step)) {
            low += step;
            step <<= 1;
        }
        high = std::min(low + step, count);
    } else {
        uint64_t step = 1;
        high = cursor;
        while (high >= step && !holds(high - step)) {
            high -= step;
            step <<= 1;
        }
        if (high >= step) {
            low = high - step;
        } else if (high > 0 && holds(0)) {
            low = 0;
        } else {
            cursor = 0;
            return false;
        }
    }
    while (high - low > 1) {
        const uint64_t middle = low + (high - low) / 2;
        (holds(middle) ? low : high) = middle;
    }
    cursor = low;
    return true;
}

template <typename Y>
double valueForDistance(const Y& y, const cDerivedCurveFunction& conversion, bool secondValue)
{
    if (!secondValue)
        return convertedValue(y, conversion);
    if constexpr (std::is_same_v<Y, std::complex<double>> || std::is_same_v<Y, std::complex<float>>)
        return conversion.applyConversion(std::complex<double>(y.real(), y.imag()), true);
    else
        return conversion.applyConversion(std::complex<double>(static_cast<double>(y), 0.0), true);
}

// The nearest candidate so far. Candidates are given in pixels relative to the point, so that
// large x values lose no precision to the subtraction.
struct cNearest {
    double distance2 = kNoDistance;
    uint64_t index = 0;

    void offerPoint(double ax, double ay, uint64_t i)
    {
        const double d2 = ax * ax + ay * ay;
        if (d2 < distance2) {
            distance2 = d2;
            index = i;
        }
    }
    // The segment from sample i to sample j; the index is its nearer end.
    void offerSegment(double ax, double ay, double bx, double by, uint64_t i, uint64_t j)
    {
        // The bounding box is never nearer than the segment: most segments end here.
        const double boxX = std::max({0.0, std::min(ax, bx), -std::max(ax, bx)});
        const double boxY = std::max({0.0, std::min(ay, by), -std::max(ay, by)});
        if (boxX * boxX + boxY * boxY >= distance2)
            return;
        const double d = computePointToLineDistance(0, 0, ax, ay, bx, by);
        if (d * d < distance2) {
            distance2 = d * d;
            index = computePointToPointDistance(0, 0, ax, ay) <= computePointToPointDistance(0, 0, bx, by) ? i : j;
        }
    }
    bool answer(uint64_t& outIndex, double& outDistance2) const
    {
        outDistance2 = distance2;
        if (distance2 >= kNoDistance)
            return false;
        outIndex = index;
        return true;
    }
};

// The polyline from sample first on, up to and including the first sample whose x is beyond.
// A segment needs both ends defined; a defined sample without a defined predecessor counts as a
// point (a lone point, or a line's start, which is never nearer than its first segment).
template <typename X, typename Y, typename Beyond>
void measurePolyline(double x, double y, const X* xs, const Y* ys, uint64_t first, uint64_t count,
                     const cDistanceScale& scale, const cDerivedCurveFunction& conversion, bool secondValue,
                     uint64_t xStride, uint64_t yStride, Beyond beyond, cNearest& nearest)
{
    const double mx = screenX(x, scale.logX), ppx = std::fabs(scale.pixelsPerX), ppy = std::fabs(scale.pixelsPerY);
    bool previousDefined = false;
    double px = 0, py = 0;
    for (uint64_t i = first; i < count; ++i) {
        const double xi = static_cast<double>(xs[i * xStride]);
        const double ax = (screenX(xi, scale.logX) - mx) * ppx;
        const double ay = (valueForDistance(ys[i * yStride], conversion, secondValue) - y) * ppy;
        const bool defined = std::isfinite(ax) && std::isfinite(ay);
        if (defined && previousDefined)
            nearest.offerSegment(px, py, ax, ay, i - 1, i);
        else if (defined)
            nearest.offerPoint(ax, ay, i);
        previousDefined = defined;
        px = ax;
        py = ay;
        if (beyond(xi))
            break;
    }
}

inline bool noHit(double& distance2)
{
    distance2 = kNoDistance;
    return false;
}

}  // namespace detail

// x rising (or constant).
template <typename X, typename Y>
bool computeDistanceToValueIncreasing(double x, double y, const X* xs, const Y* ys, uint64_t count,
                                      const cDistanceScale& scale, const cDerivedCurveFunction& conversion,
                                      uint64_t& index, double& distance2, bool secondValue = false,
                                      uint64_t yStride = 1)
{
    if (!xs || !ys || count == 0 || std::isnan(x) || std::isnan(y))
        return detail::noHit(distance2);
    const detail::cXBand band = detail::xBandOf(x, scale);
    uint64_t first = std::min(index, count - 1);
    first = detail::placeCursorRising(xs, count, band.low, first);  // the segment across the left edge starts here
    detail::cNearest nearest;
    detail::measurePolyline(x, y, xs, ys, first, count, scale, conversion, secondValue, 1, yStride,
                            [&band](double xi) { return xi > band.high; }, nearest);
    return nearest.answer(index, distance2);
}

// x falling: the mirror image.
template <typename X, typename Y>
bool computeDistanceToValueDecreasing(double x, double y, const X* xs, const Y* ys, uint64_t count,
                                      const cDistanceScale& scale, const cDerivedCurveFunction& conversion,
                                      uint64_t& index, double& distance2, bool secondValue = false,
                                      uint64_t yStride = 1)
{
    if (!xs || !ys || count == 0 || std::isnan(x) || std::isnan(y))
        return detail::noHit(distance2);
    const detail::cXBand band = detail::xBandOf(x, scale);
    uint64_t first = index;
    if (!detail::findLastHolding(count, first, [&](uint64_t i) { return xs[i] >= band.high; }))
        first = 0;
    detail::cNearest nearest;
    detail::measurePolyline(x, y, xs, ys, first, count, scale, conversion, secondValue, 1, yStride,
                            [&band](double xi) { return xi < band.low; }, nearest);
    return nearest.answer(index, distance2);
}

// x in no order: every segment.
template <typename X, typename Y>
bool computeDistanceToValueNone(double x, double y, const X* xs, const Y* ys, uint64_t count,
                                const cDistanceScale& scale, const cDerivedCurveFunction& conversion, uint64_t& index,
                                double& distance2, bool secondValue = false, uint64_t xStride = 1,
                                uint64_t yStride = 1)
{
    if (!xs || !ys || count == 0 || std::isnan(x) || std::isnan(y))
        return detail::noHit(distance2);
    detail::cNearest nearest;
    detail::measurePolyline(x, y, xs, ys, 0, count, scale, conversion, secondValue, xStride, yStride,
                            [](double) { return false; }, nearest);
    return nearest.answer(index, distance2);
}

// By the monotony of x. Only plain x vectors (stride 1) are searched.
template <typename X, typename Y>
bool computeDistanceToValue(double x, double y, const X* xs, const Y* ys, uint64_t count, unsigned monotony,
                            const cDistanceScale& scale, const cDerivedCurveFunction& conversion, uint64_t& index,
                            double& distance2, bool secondValue = false, uint64_t xStride = 1, uint64_t yStride = 1)
{
    using namespace derivedCurveFunction;
    if (xStride == 1 && (monotony == monotony_constant || check_monotony_increasing(monotony)))
        return computeDistanceToValueIncreasing(x, y, xs, ys, count, scale, conversion, index, distance2, secondValue,
                                                yStride);
    if (xStride == 1 && (monotony == monotony_falling || monotony == monotony_strictly_falling))
        return computeDistanceToValueDecreasing(x, y, xs, ys, count, scale, conversion, index, distance2, secondValue,
                                                yStride);
    return computeDistanceToValueNone(x, y, xs, ys, count, scale, conversion, index, distance2, secondValue, xStride,
                                      yStride);
}

// Event values, x rising, drawn as steps: each value holds from its x to the next sample's x,
// where a vertical edge joins it to the next value; the last value runs on to the right.
// xAt(i) gives the sample's x, valueAt(i) its value through the conversion. An undefined value
// draws neither its step nor the edges that touch it. A horizontal step answers its sample, an
// edge the sample that starts there.
template <typename XAt, typename ValueAt>
bool computeDistanceToValueSparse(double x, double y, uint64_t count, XAt xAt, ValueAt valueAt,
                                  const cDistanceScale& scale, uint64_t& index, double& distance2)
{
    if (count == 0 || std::isnan(x) || std::isnan(y))
        return detail::noHit(distance2);
    const detail::cXBand band = detail::xBandOf(x, scale);
    uint64_t first = index;
    if (!detail::findLastHolding(count, first, [&](uint64_t i) { return xAt(i) <= band.low; }))
        first = 0;
    const double mx = detail::screenX(x, scale.logX), ppx = std::fabs(scale.pixelsPerX),
                 ppy = std::fabs(scale.pixelsPerY);
    auto offsetX = [&](uint64_t i) { return (detail::screenX(xAt(i), scale.logX) - mx) * ppx; };
    detail::cNearest nearest;
    double ax = offsetX(first), previousY = NAN;
    for (uint64_t i = first; i < count; ++i) {
        if (i > first && xAt(i) > band.high)
            break;
        const double ay = (valueAt(i) - y) * ppy;
        const double bx = i + 1 < count ? offsetX(i + 1) : std::max(ax, 0.0);
        if (std::isfinite(ax) && std::isfinite(ay)) {
            if (std::isfinite(previousY))
                nearest.offerSegment(ax, previousY, ax, ay, i, i);
            if (std::isfinite(bx))
                nearest.offerSegment(ax, ay, bx, ay, i, i);
        }
        previousY = ay;
        ax = bx;
    }
    return nearest.answer(index, distance2);
}

// Logic states, x rising: a state holds from its x until the next sample's and lies on its level
// (levelAt(i): 0.0, 0.5 or 1.0) of the row, which spans y 0.0 to 1.0. Only a point inside the
// band, at or after the first sample, hits; its distance is the vertical one to the level.
template <typename XAt, typename LevelAt>
bool computeDistanceToValueLogic(double x, double y, uint64_t count, XAt xAt, LevelAt levelAt,
                                 const cDistanceScale& scale, uint64_t& index, double& distance2)
{
    if (count == 0 || std::isnan(x) || !(y >= 0.0 && y <= 1.0))
        return detail::noHit(distance2);
    uint64_t cursor = index;
    if (!detail::findLastHolding(count, cursor, [&](uint64_t i) { return xAt(i) <= x; }))
        return detail::noHit(distance2);
    const double dy = (y - levelAt(cursor)) * scale.rowPixels;
    index = cursor;
    distance2 = dy * dy;
    return true;
}

}  // namespace vx3::curvePlotVariable
