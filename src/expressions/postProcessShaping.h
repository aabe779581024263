// Shaping of one curve: shift and scale, resampling on a new grid, the staircase of a sampled
// curve, and the thinning of samples that a straight line between their neighbours already
// shows. Each reads the samples in walking order (rising x) and writes new x and y vectors;
// complex curves keep complex values.
#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "expressions/cPostProcessCurveDescriptionUser.h"
#include "expressions/postProcessOperators.h"

namespace vx3::postProcess {

// x' = x * scaleX + offsetX, y' = y * scaleY + offsetY; a complex y takes the scale on both parts
// and the offset on the real part. A negative scaleX leaves a falling x-axis, which later walks
// read from its end.
template <class X, class Y>
void shiftCurve(const cCurveSamples<X, Y>& s, double scaleX, double offsetX, double scaleY, double offsetY,
                std::vector<double>& xs, std::vector<tStored<Y>>& ys)
{
    using tValue = tStored<Y>;
    xs.resize(s.count);
    ys.resize(s.count);
    for (uint64_t i = 0; i < s.count; ++i) {
        xs[i] = static_cast<double>(static_cast<long double>(static_cast<double>(s.x[i])) * scaleX + offsetX);
        const tValue y = widen<tValue>(s.y[i]);
        ys[i] = y * scaleY + tValue(offsetY);
    }
}

// The curve read at the rising positions xs by linear interpolation (a jump read at its x gives
// the mean of both sides). Positions outside the curve are undefined: resampling makes no values
// up. False with the reason for a non-monotone curve or positions that fall.
template <class X, class Y>
bool resampleCurve(const cCurveSamples<X, Y>& s, const std::vector<double>& xs, std::vector<tStored<Y>>& ys,
                   std::string& error)
{
    using tValue = tStored<Y>;
    if (!s.monotone) {
        error = cPostProcessCurveDescriptionUser::kNonMonotoneMessage;
        return false;
    }
    for (size_t i = 1; i < xs.size(); ++i)
        if (!(xs[i] >= xs[i - 1])) {
            error = "Resampling needs rising x values.";
            return false;
        }
    ys.resize(xs.size());
    if (!s.count) {
        std::fill(ys.begin(), ys.end(), undefinedValue<tValue>());
        return true;
    }
    const double first = static_cast<double>(s.x[0]), last = static_cast<double>(s.x[s.count - 1]);
    cCurveWalker<X, Y> walker(s);
    for (size_t i = 0; i < xs.size(); ++i)
        ys[i] = xs[i] < first || xs[i] > last ? undefinedValue<tValue>() : narrow<tValue>(walker.valueAt(xs[i]));
    return true;
}

// The positions xStart, xStart + xStep, ... up to xEnd (included when it falls on the grid within
// rounding); each is computed from its index, so that no error accumulates. False with the
// reason for a step that isn't positive, an end below the start or more than maxPoints points.
bool buildResampleGrid(double xStart, double xEnd, double xStep, std::vector<double>& xs, std::string& error,
                       uint64_t maxPoints = uint64_t(1) << 31);

template <class X, class Y>
bool resampleCurve(const cCurveSamples<X, Y>& s, double xStart, double xEnd, double xStep, std::vector<double>& xs,
                   std::vector<tStored<Y>>& ys, std::string& error)
{
    return buildResampleGrid(xStart, xEnd, xStep, xs, error) && resampleCurve(s, xs, ys, error);
}

// A staircase: each sample holds its value until the next one, where a second point with the
// next x and the previous value makes the step vertical. A step is drawn only where the value
// changes by more than threshold (in magnitude); undefined samples always make one.
template <class X, class Y>
void convertCurveToStepFunction(const cCurveSamples<X, Y>& s, double threshold, std::vector<double>& xs,
                                std::vector<tStored<Y>>& ys)
{
    using tValue = tStored<Y>;
    xs.clear();
    ys.clear();
    xs.reserve(s.count * 2);
    ys.reserve(s.count * 2);
    for (uint64_t i = 0; i < s.count; ++i) {
        const double x = static_cast<double>(s.x[i]);
        const tValue y = widen<tValue>(s.y[i]);
        if (i > 0) {
            const tValue previous = ys.back();
            const bool undefined = checkIsUndefined(previous) || checkIsUndefined(y);
            if (undefined || std::abs(y - previous) > threshold) {
                xs.push_back(x);
                ys.push_back(previous);
            }
        }
        xs.push_back(x);
        ys.push_back(y);
    }
}

// Each candidate checks the whole run behind it: without a limit a flat curve of millions of
// samples would take quadratic time.
constexpr size_t kMaxReductionRun = 256;

// Thins a curve in place: from the last kept sample it walks on while the samples in between
// stay within a band of total width epsY around the chord to the candidate (largest deviation
// above plus largest below), and the candidate lies less than epsX beyond the kept sample in x
// (epsX <= 0 or NaN: no limit); a candidate that breaks this keeps its predecessor. Jumps (an x
// step below epsY * 1e-5) and undefined samples are always kept, so steps and gaps survive. A
// complex curve must pass for both parts; logX measures x on a logarithmic scale. Fewer than 3
// samples: nothing to do. A run leaves out at most kMaxReductionRun samples.

template <class Y>
void reduceNumberOfPoints(std::vector<double>& xs, std::vector<Y>& ys, double epsX, double epsY, bool logX = false)
{
    const size_t n = std::min(xs.size(), ys.size());
    if (n < 3)
        return;
    const bool limitX = epsX > 0;
    // Thinning is a tolerance test, not a sum: plain doubles keep its inner loop fast.
    auto position = [&](size_t i) -> double { return logX ? std::log10(xs[i]) : xs[i]; };
    auto parts = [](const Y& y, int part) -> double {
        if constexpr (kIsComplex<Y>)
            return part ? y.imag() : y.real();
        else
            return part ? 0.0 : static_cast<double>(y);
    };
    constexpr int kParts = kIsComplex<Y> ? 2 : 1;
    // Whether the samples strictly between anchor and candidate lie in the band around their chord.
    auto fits = [&](size_t anchor, size_t candidate) {
        const double xa = position(anchor), xc = position(candidate);
        for (int part = 0; part < kParts; ++part) {
            const double ya = parts(ys[anchor], part), yc = parts(ys[candidate], part);
            const double slope = (yc - ya) / (xc - xa);
            double above = 0, below = 0;
            for (size_t k = anchor + 1; k < candidate; ++k) {
                const double deviation = parts(ys[k], part) - (ya + slope * (position(k) - xa));
                above = std::max(above, deviation);
                below = std::min(below, deviation);
            }
            if (above - below > epsY)
                return false;
        }
        return true;
    };
    const double equalX = epsY * 1e-5;
    std::vector<char> keep(n, 0);
    keep[0] = keep[n - 1] = 1;
    size_t anchor = 0;
    for (size_t j = 1; j < n; ++j) {
        const bool undefined = checkIsUndefined(ys[j]) || checkIsUndefined(ys[j - 1]);
        const bool jump = std::fabs(position(j) - position(j - 1)) <= equalX;
        if (undefined || jump || checkIsUndefined(ys[anchor])) {
            // Both sides of a gap or a jump stay; the walk starts again behind it.
            keep[j - 1] = keep[j] = 1;
            anchor = j;
            continue;
        }
        if (j == anchor + 1)
            continue;
        const bool tooFar = (limitX && !(position(j) - position(anchor) < epsX)) || j - anchor > kMaxReductionRun;
        if (tooFar || !fits(anchor, j)) {
            keep[j - 1] = 1;
            anchor = j - 1;
        }
    }
    size_t out = 0;
    for (size_t i = 0; i < n; ++i)
        if (keep[i]) {
            xs[out] = xs[i];
            ys[out] = ys[i];
            ++out;
        }
    xs.resize(out);
    ys.resize(out);
}

template <class Y>
void reduceNumberOfPointsLogX(std::vector<double>& xs, std::vector<Y>& ys, double epsX, double epsY)
{
    reduceNumberOfPoints(xs, ys, epsX, epsY, true);
}

}  // namespace vx3::postProcess

namespace vx3::postProcess {

// shape(samples, xs, ys, error) for the curve of the store a, its result stored as the new curve
// name of resultSection (real or complex as ys comes out); false with the reason in error.
template <class Shape>
bool shapeStoreCurve(cCurvePlotDataFile& store, cCurvePlotDataSection& resultSection, const std::string& name,
                     const cPostProcessCurveDescription& a, Shape&& shape, uint64_t& resultIndex, std::string& error)
{
    curvePlotFunctionArgs::cDataVectors vectors;
    if (!a.load(false, error) || !a.computeDataVectors(vectors, error))
        return false;
    const auto unit = static_cast<curvePlotDataType::dataUnit>(a.getCurvePtr()->getUnitIdentifier());
    bool stored = false;
    const bool walked = visitSamples(vectors, [&](const auto& samples) {
        std::vector<double> xs;
        std::vector<tStored<std::remove_cvref_t<decltype(samples.y[0])>>> ys;
        if (!shape(samples, xs, ys, error))
            return;
        constexpr bool complex = kIsComplex<typename decltype(ys)::value_type>;
        stored = storeResultCurve(
            store, resultSection, name,
            complex ? curvePlotProperties::parameterized_double_complex : curvePlotProperties::parameterized_double,
            unit,
            [&](cCurvePlotVariable& result) {
                if constexpr (complex)
                    return result.setParameterizedDoubleComplexValues(xs.data(), ys.data(), xs.size());
                else
                    return result.setParameterizedDoubleValues(xs.data(), ys.data(), xs.size());
            },
            resultIndex, error);
    });
    if (!walked)
        error = "Incompatible data type.";
    return walked && stored;
}

// The curve a resampled from xStart to xEnd in steps of xStep, as a new curve of resultSection.
inline bool resampleCurve(cCurvePlotDataFile& store, cCurvePlotDataSection& resultSection, const std::string& name,
                          const cPostProcessCurveDescription& a, double xStart, double xEnd, double xStep,
                          uint64_t& resultIndex, std::string& error)
{
    return shapeStoreCurve(
        store, resultSection, name, a,
        [&](const auto& samples, std::vector<double>& xs, auto& ys, std::string& message) {
            return resampleCurve(samples, xStart, xEnd, xStep, xs, ys, message);
        },
        resultIndex, error);
}

// The curve a shifted and scaled, as a new curve of resultSection.
inline bool shiftCurve(cCurvePlotDataFile& store, cCurvePlotDataSection& resultSection, const std::string& name,
                       const cPostProcessCurveDescription& a, double scaleX, double offsetX, double scaleY,
                       double offsetY, uint64_t& resultIndex, std::string& error)
{
    return shapeStoreCurve(
        store, resultSection, name, a,
        [&](const auto& samples, std::vector<double>& xs, auto& ys, std::string&) {
            shiftCurve(samples, scaleX, offsetX, scaleY, offsetY, xs, ys);
            return true;
        },
        resultIndex, error);
}

}  // namespace vx3::postProcess
