// Resampling for the transforms: a curve read on an even grid, with zeros where the curve has
// no samples, and the tolerance that keeps a grid point on the curve's end from falling off it
// by rounding.
#pragma once

#include <cmath>
#include <complex>
#include <cstdint>
#include <string>
#include <vector>

#include "expressions/cPostProcessCurveDescription.h"
#include "expressions/cPostProcessCurveDescriptionUser.h"
#include "expressions/postProcessOperators.h"

namespace vx3::cFFTAnalysisCommon {

// Relative tolerance on the curve's ends.
constexpr double kRelativeTolerance = 1e-7;

// x moved up (raise) or down (lower) by the relative tolerance, whatever its sign.
inline double raiseThreshold(double x, double tolerance = kRelativeTolerance)
{
    return x > 0 ? x * (1 + tolerance) : x < 0 ? x * (1 - tolerance) : tolerance * 1e-300;
}
inline double lowerThreshold(double x, double tolerance = kRelativeTolerance)
{
    return x > 0 ? x * (1 - tolerance) : x < 0 ? x * (1 + tolerance) : -tolerance * 1e-300;
}

// The curve read at the rising positions position(0) ... position(n-1): linear interpolation
// between neighbours, the mean of both sides where two samples share an x, the end value at a
// position within the tolerance beyond an end, 0 farther out. An undefined sample reads as 0
// too, as no curve there would: one gap must not make a whole spectrum undefined. False for a
// non-monotone curve.
template <class X, class Y, class Position, class R>
bool resampleVector(const postProcess::cCurveSamples<X, Y>& s, uint64_t n, Position&& position, R* out)
{
    using namespace postProcess;
    if (!s.monotone)
        return false;
    if (!s.count) {
        std::fill(out, out + n, R(0));
        return true;
    }
    const uint64_t last = s.count - 1;
    const double first = static_cast<double>(s.x[0]), final = static_cast<double>(s.x[last]);
    const double low = lowerThreshold(first), high = raiseThreshold(final);
    auto value = [&](uint64_t i) { return narrow<R>(widen<tStored<Y>>(s.y[i])); };
    uint64_t j = 0;
    for (uint64_t k = 0; k < n; ++k) {
        const double t = position(k);
        if (!(t >= low && t <= high)) {
            out[k] = R(0);
            continue;
        }
        if (t <= first) {
            out[k] = s.count > 1 && static_cast<double>(s.x[1]) == first ? (value(0) + value(1)) * 0.5 : value(0);
            continue;
        }
        if (t >= final) {
            out[k] = s.count > 1 && static_cast<double>(s.x[last - 1]) == final ? (value(last - 1) + value(last)) * 0.5
                                                                                 : value(last);
            continue;
        }
        while (j < last && static_cast<double>(s.x[j + 1]) <= t)
            ++j;
        const double xj = static_cast<double>(s.x[j]);
        if (xj == t) {
            out[k] = j > 0 && static_cast<double>(s.x[j - 1]) == t ? (value(j - 1) + value(j)) * 0.5 : value(j);
            continue;
        }
        const double xn = static_cast<double>(s.x[j + 1]);
        const R yj = value(j);
        out[k] = yj + (value(j + 1) - yj) * ((t - xj) / (xn - xj));
    }
    for (uint64_t k = 0; k < n; ++k)
        if (checkIsUndefined(out[k]))
            out[k] = R(0);
    return true;
}

// The curve on the grid start + k * step, k from 0 to n-1.
template <class X, class Y, class R>
bool resampleVectorOnInterval(const postProcess::cCurveSamples<X, Y>& s, double start, double step, uint64_t n,
                              R* out)
{
    return resampleVector(s, n, [&](uint64_t k) { return start + static_cast<double>(k) * step; }, out);
}

// A curve's samples, resampled: real values into real, complex ones into complex (the other
// stays empty). The curve must be loaded. False with the reason in error.
struct cResampled {
    std::vector<double> real;
    std::vector<std::complex<double>> complex;
    bool isComplex = false;
};
bool resampleVariable(const cPostProcessCurveDescription& curve, double start, double step, uint64_t n,
                      cResampled& result, std::string& error);

// The unit of a curve's values, for the curves made from it.
inline curvePlotDataType::dataUnit unitOf(const cPostProcessCurveDescription& curve)
{
    const cCurvePlotVariable* variable = curve.getCurvePtr();
    return variable ? static_cast<curvePlotDataType::dataUnit>(variable->getUnitIdentifier())
                    : curvePlotDataType::no_unit;
}

// The x range of a loaded curve, in rising order; false when it has no samples.
bool findXRange(const cPostProcessCurveDescription& curve, double& first, double& last, uint64_t& count,
                std::string& error);

}  // namespace vx3::cFFTAnalysisCommon
