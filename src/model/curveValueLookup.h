// Reading values of a curve at an x position: monotony, closest value, interpolation with the
// NaN and logarithmic rules, extrapolation, gradients, and the lookup of sparse (event) data.
// Templates over the stored x and y types; y may be real or complex, and passes through the
// curve's conversion before it is interpolated. y is read at index * stride (a sweep-matrix cut).
#pragma once

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>

#include "model/derivedCurveFunction.h"

namespace vx3::curvePlotVariable {

using derivedCurveFunction::value_monotony_type;

template <typename X>
value_monotony_type computeMonotonyType(const X* xs, uint64_t count, uint64_t stride = 1)
{
    using namespace derivedCurveFunction;
    if (!xs || count < 2)
        return monotony_constant;
    bool rising = false, falling = false, equal = false;
    for (uint64_t i = 1; i < count; ++i) {
        const X a = xs[(i - 1) * stride], b = xs[i * stride];
        rising = rising || b > a;
        falling = falling || b < a;
        equal = equal || b == a;
    }
    if (!rising && !falling)
        return monotony_constant;
    if (rising && !falling)
        return equal ? monotony_rising : monotony_strictly_rising;
    if (falling && !rising)
        return equal ? monotony_falling : monotony_strictly_falling;
    const X first = xs[0], last = xs[(count - 1) * stride];
    return last > first ? monotony_none_rising : last < first ? monotony_none_falling : monotony_undefined;
}

// The index of the x value closest to target. index is a cursor kept between calls. Answers
// false for empty data.
template <typename X>
bool computeClosestXValue(double target, const X* xs, uint64_t& index, double& result, uint64_t count,
                          unsigned monotony)
{
    using namespace derivedCurveFunction;
    if (!xs || count == 0)
        return false;
    if (index >= count)
        index = count - 1;
    auto answer = [&](uint64_t i) {
        index = i;
        result = static_cast<double>(xs[i]);
        return true;
    };
    if (count == 1)
        return answer(0);
    const bool rising = monotony == monotony_rising_and_falling || monotony == monotony_constant ||
                        monotony == monotony_rising || monotony == monotony_strictly_rising;
    const bool falling = monotony == monotony_falling || monotony == monotony_strictly_falling;
    if (!rising && !falling) {
        uint64_t best = 0;
        double distance = std::fabs(static_cast<double>(xs[0]) - target);
        for (uint64_t i = 1; i < count; ++i) {
            const double d = std::fabs(static_cast<double>(xs[i]) - target);
            if (d < distance) {
                distance = d;
                best = i;
            }
        }
        return answer(best);
    }
    uint64_t c = index;
    if (rising) {
        if (target <= xs[0])
            return answer(0);
        if (target >= xs[count - 1])
            return answer(count - 1);
        while (c + 1 < count && xs[c] < target)
            ++c;
        while (c > 0 && xs[c] > target)
            --c;
    } else {
        if (xs[count - 1] >= target)
            return answer(count - 1);
        if (target >= xs[0])
            return answer(0);
        while (c + 1 < count && xs[c] > target)
            ++c;
        while (c > 0 && xs[c] < target)
            --c;
    }
    // c is the neighbour on the near side of target; c + 1 the one beyond. Ties take c.
    if (c + 1 < count && std::fabs(static_cast<double>(xs[c + 1]) - target) < std::fabs(static_cast<double>(xs[c]) - target))
        return answer(c + 1);
    return answer(c);
}

// The first index at or past x (atOrAfter) or strictly past x, in the direction of the
// monotony; count when there is none.
template <typename X>
uint64_t findApproxXValueIndex(const X* xs, uint64_t count, double x, bool atOrAfter, unsigned monotony)
{
    const bool falling = derivedCurveFunction::check_monotony_decreasing(monotony) &&
                         monotony != derivedCurveFunction::monotony_rising_and_falling;
    for (uint64_t i = 0; i < count; ++i) {
        const double v = static_cast<double>(xs[i]);
        if (falling ? (atOrAfter ? v <= x : v < x) : (atOrAfter ? v >= x : v > x))
            return i;
    }
    return count;
}

// The line through (x1, y1), (x2, y2) at x, on log10 of the x values; x values below 1e-100
// count as 1e-100. Equal x give the mean.
inline double interpolate_save_log(double x, double x1, double x2, double y1, double y2)
{
    if (x1 == x2)
        return 0.5 * (y1 + y2);
    auto safeLog = [](double v) { return std::log10(v < 1e-100 ? 1e-100 : v); };
    const double l = safeLog(x), l1 = safeLog(x1), l2 = safeLog(x2);
    if (l1 == l2)
        return 0.5 * (y1 + y2);
    return y1 + (y2 - y1) * (l - l1) / (l2 - l1);
}

inline double interpolate_linear(double x, double x1, double x2, double y1, double y2)
{
    if (x1 == x2)
        return 0.5 * (y1 + y2);
    return y1 + (y2 - y1) * (x - x1) / (x2 - x1);
}

template <typename Y>
inline double convertedValue(const Y& y, const cDerivedCurveFunction& conversion)
{
    if constexpr (std::is_same_v<Y, std::complex<double>> || std::is_same_v<Y, std::complex<float>>)
        return conversion.applyConversion(std::complex<double>(y.real(), y.imag()));
    else
        return conversion.applyConversion(static_cast<double>(y));
}

namespace detail {
// For rising x: the last index whose x is at or below target (0 when none is), searched from
// cursor by galloping and halving, for a jump across the curve. Out of line, so that the common
// path below stays small.
template <typename X>
__attribute__((noinline)) uint64_t searchCursorRising(const X* xs, uint64_t count, double target, uint64_t cursor)
{
    if (cursor + 1 < count && xs[cursor + 1] <= target) {
        uint64_t low = cursor + 1, step = 1;
        while (low + step < count && xs[low + step] <= target) {
            low += step;
            step <<= 1;
        }
        uint64_t high = std::min(low + step, count);  // xs[high] > target, or the end
        while (high - low > 1) {
            const uint64_t middle = low + (high - low) / 2;
            if (xs[middle] <= target)
                low = middle;
            else
                high = middle;
        }
        return low;
    }
    if (cursor == 0 || !(xs[cursor] > target))
        return cursor;
    uint64_t high = cursor, step = 1;  // xs[high] > target
    while (high >= step && xs[high - step] > target) {
        high -= step;
        step <<= 1;
    }
    if (high == 0)
        return 0;
    uint64_t low = high >= step ? high - step : 0;  // xs[low] <= target unless low is 0
    if (xs[low] > target)
        return 0;
    while (high - low > 1) {
        const uint64_t middle = low + (high - low) / 2;
        if (xs[middle] <= target)
            low = middle;
        else
            high = middle;
    }
    return low;
}

// The last index whose x is at or below target (0 when none is), for rising x, starting from the
// cursor of the previous query. Sequential queries move a few points: counting, without a
// branch, how many of the next x values are at or below the target places the cursor at once.
// Two blocks of 8 rather than one of 16: the second is taken by a well-predicted branch, and the
// shorter sums shorten the chain from one query to the next. Inlined and by value, so that the
// cursor stays in a register across queries.
template <typename X>
__attribute__((always_inline)) inline uint64_t placeCursorRising(const X* xs, uint64_t count, double target,
                                                                 uint64_t cursor)
{
    constexpr uint64_t kBlock = 8;
    if (cursor + 2 * kBlock < count) {
        uint64_t below = 0;
        for (uint64_t k = 1; k <= kBlock; ++k)
            below += xs[cursor + k] <= target ? 1u : 0u;
        if (below == kBlock) {
            uint64_t more = 0;
            for (uint64_t k = kBlock + 1; k <= 2 * kBlock; ++k)
                more += xs[cursor + k] <= target ? 1u : 0u;
            if (more < kBlock)
                return cursor + kBlock + more;
            return searchCursorRising(xs, count, target, cursor + 2 * kBlock);
        }
        if (below > 0 || xs[cursor] <= target)
            return cursor + below;
        // the target lies behind the cursor: the search walks back
    }
    return searchCursorRising(xs, count, target, cursor);
}

// Steps 2 to 8 for the pair (lower, lower + 1) once the cursor is placed.
template <typename X, typename Y>
bool interpolatePair(double x, const X* xs, const Y* ys, uint64_t count, uint64_t lower, double& out,
                     const cDerivedCurveFunction& conversion, bool logX, uint64_t stride)
{
    if (lower >= count - 1) {
        const double last = convertedValue(ys[(count - 1) * stride], conversion);
        if (std::isnan(last) || count == 1) {
            out = last;
            return true;
        }
        lower = count - 2;
    }
    const double x1 = static_cast<double>(xs[lower]), x2 = static_cast<double>(xs[lower + 1]);
    const double y1 = convertedValue(ys[lower * stride], conversion);
    const double y2 = convertedValue(ys[(lower + 1) * stride], conversion);
    if (x1 == x2) {
        out = y2;  // NaN when y2 is NaN
        return true;
    }
    if (std::isnan(y1) || std::isnan(y2)) {
        if (std::isnan(y1) && std::isnan(y2)) {
            out = NAN;
            return true;
        }
        // One end undefined: the curve is defined only at the other end's exact x.
        if (std::isnan(y1) && x == x2) {
            out = y2;
            return true;
        }
        if (std::isnan(y2) && x == x1) {
            out = y1;
            return true;
        }
        return false;
    }
    if (logX)
        out = interpolate_save_log(x < x1 ? x1 : x, x1, x2, y1, y2);
    else
        out = interpolate_linear(x, x1, x2, y1, y2);
    return true;
}

// Two equal x at exactly x: the mean of their values, or the one that isn't NaN.
template <typename X, typename Y>
bool duplicateAtX(double x, const X* xs, const Y* ys, uint64_t cursor, double& out,
                  const cDerivedCurveFunction& conversion, uint64_t stride)
{
    if (cursor == 0 || static_cast<double>(xs[cursor]) != x || static_cast<double>(xs[cursor - 1]) != x)
        return false;
    const double a = convertedValue(ys[(cursor - 1) * stride], conversion);
    const double b = convertedValue(ys[cursor * stride], conversion);
    out = std::isnan(a) ? b : std::isnan(b) ? a : 0.5 * (a + b);
    return true;
}
}  // namespace detail

// x rising. cursor is kept between calls (sequential queries walk only a few steps). False
// where the curve is undefined at x (a NaN neighbour).
template <typename X, typename Y>
bool computeInterpolatedValueIncreasing(double x, const X* xs, const Y* ys, uint64_t count, uint64_t& cursor,
                                        double& out, const cDerivedCurveFunction& conversion, bool logX = false,
                                        uint64_t stride = 1)
{
    if (!xs || !ys || count == 0)
        return false;
    if (cursor >= count)
        cursor = count - 1;
    cursor = detail::placeCursorRising(xs, count, x, cursor);
    if (detail::duplicateAtX(x, xs, ys, cursor, out, conversion, stride))
        return true;
    return detail::interpolatePair(x, xs, ys, count, cursor, out, conversion, logX, stride);
}

// x falling: the mirror image.
template <typename X, typename Y>
bool computeInterpolatedValueDecreasing(double x, const X* xs, const Y* ys, uint64_t count, uint64_t& cursor,
                                        double& out, const cDerivedCurveFunction& conversion, bool logX = false,
                                        uint64_t stride = 1)
{
    if (!xs || !ys || count == 0)
        return false;
    if (cursor >= count)
        cursor = count - 1;
    while (cursor + 1 < count && xs[cursor + 1] >= x)
        ++cursor;
    while (cursor > 0 && xs[cursor] < x)
        --cursor;
    if (detail::duplicateAtX(x, xs, ys, cursor, out, conversion, stride))
        return true;
    return detail::interpolatePair(x, xs, ys, count, cursor, out, conversion, logX, stride);
}

// x not monotone: the first segment from the cursor on (then from the start) that holds x.
template <typename X, typename Y>
bool computeInterpolatedValueNone(double x, const X* xs, const Y* ys, uint64_t count, uint64_t& cursor, double& out,
                                  const cDerivedCurveFunction& conversion, bool logX = false, uint64_t stride = 1)
{
    if (!xs || !ys || count == 0)
        return false;
    if (count == 1)
        return detail::interpolatePair(x, xs, ys, count, 0, out, conversion, logX, stride);
    if (cursor >= count - 1)
        cursor = 0;
    auto holds = [&](uint64_t i) {
        const double a = static_cast<double>(xs[i]), b = static_cast<double>(xs[i + 1]);
        return (a <= x && x <= b) || (b <= x && x <= a);
    };
    for (uint64_t pass = 0; pass < 2; ++pass)
        for (uint64_t i = pass ? 0 : cursor; i + 1 < count && (!pass || i < cursor); ++i)
            if (holds(i)) {
                cursor = i;
                return detail::interpolatePair(x, xs, ys, count, i, out, conversion, logX, stride);
            }
    return false;
}

// Outside the x range the curve carries its end values.
template <typename X, typename Y>
bool findExtrapolatedValue(double x, const X* xs, const Y* ys, uint64_t count, double& out,
                           const cDerivedCurveFunction& conversion, uint64_t stride = 1)
{
    if (!xs || !ys || count == 0)
        return false;
    const double first = static_cast<double>(xs[0]), last = static_cast<double>(xs[count - 1]);
    const bool nearFirst = first <= last ? x <= first : x >= first;
    out = convertedValue(ys[(nearFirst ? 0 : count - 1) * stride], conversion);
    return true;
}

// The value at x by the monotony of the x vector, extrapolated outside the range.
template <typename X, typename Y>
bool findInterpolatedValue(double x, const X* xs, const Y* ys, uint64_t count, unsigned monotony, uint64_t& cursor,
                           double& out, const cDerivedCurveFunction& conversion, bool logX = false,
                           uint64_t stride = 1)
{
    if (!xs || !ys || count == 0)
        return false;
    const double first = static_cast<double>(xs[0]), last = static_cast<double>(xs[count - 1]);
    if (derivedCurveFunction::check_monotony_none(monotony))
        return computeInterpolatedValueNone(x, xs, ys, count, cursor, out, conversion, logX, stride);
    if (derivedCurveFunction::check_monotony_decreasing(monotony) && first > last) {
        if (x > first || x < last)
            return findExtrapolatedValue(x, xs, ys, count, out, conversion, stride);
        return computeInterpolatedValueDecreasing(x, xs, ys, count, cursor, out, conversion, logX, stride);
    }
    if (x < first || x > last)
        return findExtrapolatedValue(x, xs, ys, count, out, conversion, stride);
    return computeInterpolatedValueIncreasing(x, xs, ys, count, cursor, out, conversion, logX, stride);
}

// The slope at x of the parabola through (x0, y0), (x1, y1), (x2, y2).
inline double difference_quotient_order_2(double x, double x0, double y0, double x1, double y1, double x2, double y2)
{
    if (x0 == x1 || x1 == x2 || x0 == x2)
        return x2 != x0 ? (y2 - y0) / (x2 - x0) : 0.0;
    return y0 * (2 * x - x1 - x2) / ((x0 - x1) * (x0 - x2)) + y1 * (2 * x - x0 - x2) / ((x1 - x0) * (x1 - x2)) +
           y2 * (2 * x - x0 - x1) / ((x2 - x0) * (x2 - x1));
}

// The gradient at x from the three points around the lower neighbour (x rising or falling).
template <typename X, typename Y>
bool computeInterpolatedGradient(double x, const X* xs, const Y* ys, uint64_t count, uint64_t& cursor,
                                 double& gradient, const cDerivedCurveFunction& conversion, uint64_t stride = 1)
{
    if (!xs || !ys || count < 2)
        return false;
    if (count == 2) {
        gradient = (convertedValue(ys[stride], conversion) - convertedValue(ys[0], conversion)) /
                   (static_cast<double>(xs[1]) - static_cast<double>(xs[0]));
        return std::isfinite(gradient);
    }
    double ignored = 0;
    const bool rising = xs[count - 1] >= xs[0];
    if (rising)
        computeInterpolatedValueIncreasing(x, xs, ys, count, cursor, ignored, conversion, false, stride);
    else
        computeInterpolatedValueDecreasing(x, xs, ys, count, cursor, ignored, conversion, false, stride);
    const uint64_t middle = std::clamp<uint64_t>(cursor, 1, count - 2);
    gradient = difference_quotient_order_2(
        x, static_cast<double>(xs[middle - 1]), convertedValue(ys[(middle - 1) * stride], conversion),
        static_cast<double>(xs[middle]), convertedValue(ys[middle * stride], conversion),
        static_cast<double>(xs[middle + 1]), convertedValue(ys[(middle + 1) * stride], conversion));
    return std::isfinite(gradient);
}

// The gradient at the nearer end of the range, for x outside it.
template <typename X, typename Y>
bool computeExtrapolatedGradient(double x, const X* xs, const Y* ys, uint64_t count, double& gradient,
                                 const cDerivedCurveFunction& conversion, uint64_t stride = 1)
{
    if (!xs || !ys || count < 2)
        return false;
    const bool atStart = std::fabs(x - static_cast<double>(xs[0])) <= std::fabs(x - static_cast<double>(xs[count - 1]));
    uint64_t cursor = atStart ? 0 : count - 1;
    return computeInterpolatedGradient(static_cast<double>(xs[cursor]), xs, ys, count, cursor, gradient, conversion,
                                       stride);
}

// Event data: positions rising, a value of width bytes per position. Places index on the last
// change at or before target and sets value to it (null when target precedes all changes).
// True only when a change lies exactly at target.
template <typename P>
bool findSparseValueVectorPairImpl(const P* positions, const char* values, uint64_t count, uint64_t width,
                                   P target, uint64_t& index, const char*& value)
{
    value = nullptr;
    if (!positions || !values || count == 0)
        return false;
    if (index >= count)  // no usable cursor: a binary search places it
        index = static_cast<uint64_t>(std::upper_bound(positions, positions + count, target) - positions);
    if (index >= count)
        index = count - 1;
    while (index > 0 && positions[index] > target)
        --index;
    while (index + 1 < count && !(positions[index + 1] > target))
        ++index;
    if (positions[index] > target)
        return false;
    value = values + index * width;
    return positions[index] == target;
}

}  // namespace vx3::curvePlotVariable
