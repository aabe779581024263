// Whole-vector questions about curve values: integrals, logarithmic spacing, repeated sweeps,
// and the distances that find the curve under the mouse.
#pragma once

#include <cmath>
#include <cstdint>

namespace vx3::curvePlotVariable {

// Trapezoids between neighbouring points.
template <typename X, typename Y>
double computeRealIntegral(const X* xs, const Y* ys, uint64_t count, uint64_t stride = 1)
{
    double sum = 0;
    for (uint64_t i = 1; i < count; ++i)
        sum += 0.5 * (static_cast<double>(ys[(i - 1) * stride]) + static_cast<double>(ys[i * stride])) *
               (static_cast<double>(xs[i]) - static_cast<double>(xs[i - 1]));
    return sum;
}

// The same of |y|; a trapezoid whose ends have opposite signs is cut at the zero crossing.
template <typename X, typename Y>
double computeRealAbsIntegral(const X* xs, const Y* ys, uint64_t count, uint64_t stride = 1)
{
    double sum = 0;
    for (uint64_t i = 1; i < count; ++i) {
        const double y1 = static_cast<double>(ys[(i - 1) * stride]), y2 = static_cast<double>(ys[i * stride]);
        const double dx = static_cast<double>(xs[i]) - static_cast<double>(xs[i - 1]);
        if ((y1 >= 0) == (y2 >= 0) || y1 == 0 || y2 == 0) {
            sum += 0.5 * (std::fabs(y1) + std::fabs(y2)) * dx;
        } else {
            const double t = y1 / (y1 - y2);  // where the segment crosses zero, 0..1
            sum += 0.5 * std::fabs(y1) * t * dx + 0.5 * std::fabs(y2) * (1 - t) * dx;
        }
    }
    return sum;
}

// True when the values are spaced by a constant ratio: log10 steps that agree within threshold
// of the first step. At least three positive values are needed.
template <typename T>
bool checkForLogScale(const T* xs, uint64_t count, double threshold = 0.0001, uint64_t stride = 1)
{
    if (!xs || count < 3)
        return false;
    for (uint64_t i = 0; i < count; ++i)
        if (!(xs[i * stride] > 0))
            return false;
    const double step = std::log10(static_cast<double>(xs[stride])) - std::log10(static_cast<double>(xs[0]));
    if (step == 0 || !std::isfinite(step))
        return false;
    for (uint64_t i = 2; i < count; ++i) {
        const double d = std::log10(static_cast<double>(xs[i * stride])) -
                         std::log10(static_cast<double>(xs[(i - 1) * stride]));
        if (std::fabs(d - step) > threshold * std::fabs(step))
            return false;
    }
    return true;
}

// Whether a flat vector of size values is a sweep variable repeated: each value repeated
// identical times in a row, and the sequence of distinct values (period values long) repeated
// repetitions times. True when identical > 1 or repetitions > 1.
template <typename T>
bool checkForRepetitionsAndIdenticalValues(const T* xs, uint64_t size, uint64_t& identical, uint64_t& repetitions,
                                           uint64_t& period)
{
    identical = repetitions = period = 0;
    if (!xs || size < 2)
        return false;
    uint64_t run = 1;
    while (run < size && xs[run] == xs[0])
        ++run;
    if (size % run)
        return false;
    for (uint64_t i = 0; i < size; ++i)
        if (xs[i] != xs[i - i % run] || (i % run == 0 && i && xs[i] == xs[i - 1]))
            return false;
    const uint64_t reduced = size / run;
    // The shortest period of the reduced vector that tiles it.
    uint64_t p = 1;
    for (; p <= reduced; ++p) {
        if (reduced % p)
            continue;
        bool tiles = true;
        for (uint64_t i = p; i < reduced && tiles; ++i)
            tiles = xs[i * run] == xs[(i % p) * run];
        if (tiles)
            break;
    }
    identical = run;
    period = p;
    repetitions = reduced / p;
    return identical > 1 || repetitions > 1;
}

inline double computePointToPointDistance(double x1, double y1, double x2, double y2)
{
    return std::hypot(x2 - x1, y2 - y1);
}

// Distance of (px, py) from the segment (x1, y1) - (x2, y2).
inline double computePointToLineDistance(double px, double py, double x1, double y1, double x2, double y2)
{
    const double dx = x2 - x1, dy = y2 - y1;
    const double length2 = dx * dx + dy * dy;
    if (length2 == 0)
        return computePointToPointDistance(px, py, x1, y1);
    double t = ((px - x1) * dx + (py - y1) * dy) / length2;
    t = t < 0 ? 0 : t > 1 ? 1 : t;
    return computePointToPointDistance(px, py, x1 + t * dx, y1 + t * dy);
}

}  // namespace vx3::curvePlotVariable
