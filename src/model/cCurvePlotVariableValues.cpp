// Reading a loaded curve's values by x: closest samples, cursor values, crossings, extremes of
// x, integrals and the questions a plot asks before choosing its axes.
#include <algorithm>
#include <cmath>

#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"
#include "model/cDataVectors.h"
#include "model/curveValueAnalysis.h"
#include "model/curveValueLookup.h"

namespace vx3 {

using curvePlotFunctionArgs::cDataVectors;

namespace {

// The curve's vectors with x; false when it has no values or no x.
bool vectorsWithX(const cCurvePlotVariable& curve, const cCurvePlotDataSection& section, cDataVectors& vectors)
{
    return curve.computeDataVectors(section, vectors) && vectors.count && vectors.checkHasX();
}

// fn(xs, ys) with the typed pointers.
template <class Fn>
auto visit(const cDataVectors& v, Fn&& fn)
{
    auto withY = [&](auto xs) {
        if (v.yDouble)
            return fn(xs, v.yDouble);
        if (v.yFloat)
            return fn(xs, v.yFloat);
        if (v.yDoubleComplex)
            return fn(xs, v.yDoubleComplex);
        return fn(xs, v.yFloatComplex);
    };
    if (v.xDouble)
        return withY(v.xDouble);
    if (v.xFloat)
        return withY(v.xFloat);
    return withY(v.xUint64);
}

unsigned monotonyOf(const cDataVectors& v)
{
    if (v.monotony != derivedCurveFunction::monotony_unknown)
        return v.monotony;
    return visit(v, [&](auto xs, auto) { return unsigned(curvePlotVariable::computeMonotonyType(xs, v.count)); });
}

template <typename Y>
double valueOf(const Y& y, const cDerivedCurveFunction& conversion, bool secondValue)
{
    if constexpr (std::is_same_v<Y, std::complex<double>> || std::is_same_v<Y, std::complex<float>>)
        return conversion.applyConversion(std::complex<double>(y.real(), y.imag()), secondValue);
    else
        return secondValue ? conversion.applyConversion(std::complex<double>(y, 0.0), true)
                           : curvePlotVariable::convertedValue(y, conversion);
}

}  // namespace

bool cCurvePlotVariable::findClosestXValue(const cCurvePlotDataSection& section, double x, uint64_t& index,
                                           double& closestX) const
{
    cDataVectors v;
    if (!vectorsWithX(*this, section, v))
        return false;
    const unsigned monotony = monotonyOf(v);
    return visit(v, [&](auto xs, auto) {
        return curvePlotVariable::computeClosestXValue(x, xs, index, closestX, v.count, monotony);
    });
}

bool cCurvePlotVariable::findInterpolatedValue(const cCurvePlotDataSection& section, double x, uint64_t& cursor,
                                               double& value, bool logX, bool secondValue) const
{
    cDataVectors v;
    if (!vectorsWithX(*this, section, v))
        return false;
    const unsigned monotony = monotonyOf(v);
    // The second value of a two-valued conversion interpolates in its own domain: imaginary
    // part or angle, as a conversion of its own.
    cDerivedCurveFunction conversion(*this);
    if (secondValue) {
        using namespace derivedCurveFunction;
        const unsigned c = getConversion();
        if (c == real_and_imaginary_part)
            conversion.setConversion(imaginary_part);
        else if (c == magnitude_and_angle || c == magnitude_in_db_and_angle)
            conversion.setConversion(angle);
    }
    return visit(v, [&](auto xs, auto ys) {
        return curvePlotVariable::findInterpolatedValue(x, xs, ys, v.count, monotony, cursor, value, conversion, logX);
    });
}

bool cCurvePlotVariable::findCorresponingValue(const cCurvePlotDataSection& section, uint64_t index, double& value,
                                               bool secondValue) const
{
    cDataVectors v;
    if (!computeDataVectors(section, v) || index >= v.count)
        return false;
    value = visit(v, [&](auto, auto ys) { return valueOf(ys[index], *this, secondValue); });
    return true;
}

bool cCurvePlotVariable::findClosestXValueForGivenY(const cCurvePlotDataSection& section, double y, double startX,
                                                    double& x) const
{
    cDataVectors v;
    if (!vectorsWithX(*this, section, v))
        return false;
    bool found = false;
    double bestDistance = INFINITY;
    visit(v, [&](auto xs, auto ys) {
        for (uint64_t i = 0; i < v.count; ++i) {
            const double x2 = static_cast<double>(xs[i]), y2 = valueOf(ys[i], *this, false);
            double crossing = NAN;
            if (y2 == y) {
                crossing = x2;
            } else if (i > 0) {
                const double x1 = static_cast<double>(xs[i - 1]), y1 = valueOf(ys[i - 1], *this, false);
                // A segment that passes through y strictly between its ends.
                if ((y1 < y && y < y2) || (y2 < y && y < y1))
                    crossing = x1 + (x2 - x1) * (y - y1) / (y2 - y1);
            }
            if (!std::isnan(crossing) && std::fabs(crossing - startX) < bestDistance) {
                bestDistance = std::fabs(crossing - startX);
                x = crossing;
                found = true;
            }
        }
        return 0;
    });
    return found;
}

uint64_t cCurvePlotVariable::findApproxXValueIndex(const cCurvePlotDataSection& section, double x,
                                                   bool atOrAfter) const
{
    cDataVectors v;
    if (!vectorsWithX(*this, section, v))
        return v.count;
    const unsigned monotony = monotonyOf(v);
    return visit(v, [&](auto xs, auto) {
        return curvePlotVariable::findApproxXValueIndex(xs, v.count, x, atOrAfter, monotony);
    });
}

double cCurvePlotVariable::computeXValue(const cCurvePlotDataSection& section, uint64_t index) const
{
    cDataVectors v;
    if (!vectorsWithX(*this, section, v) || index >= v.count)
        return NAN;
    return visit(v, [&](auto xs, auto) { return static_cast<double>(xs[index]); });
}

bool cCurvePlotVariable::getMinXAxisValue(const cCurvePlotDataSection& section, double& x) const
{
    cDataVectors v;
    if (!vectorsWithX(*this, section, v))
        return false;
    x = visit(v, [&](auto xs, auto) {
        double low = INFINITY;
        for (uint64_t i = 0; i < v.count; ++i)
            low = std::min(low, static_cast<double>(xs[i]));
        return low;
    });
    return true;
}

bool cCurvePlotVariable::getMaxXAxisValue(const cCurvePlotDataSection& section, double& x) const
{
    cDataVectors v;
    if (!vectorsWithX(*this, section, v))
        return false;
    x = visit(v, [&](auto xs, auto) {
        double high = -INFINITY;
        for (uint64_t i = 0; i < v.count; ++i)
            high = std::max(high, static_cast<double>(xs[i]));
        return high;
    });
    return true;
}

bool cCurvePlotVariable::computeIntegral(const cCurvePlotDataSection& section, double& integral) const
{
    cDataVectors v;
    if (!vectorsWithX(*this, section, v) || v.yDoubleComplex || v.yFloatComplex)
        return false;
    integral = v.yDouble ? visit(v, [&](auto xs, auto) { return curvePlotVariable::computeRealIntegral(xs, v.yDouble, v.count); })
                         : visit(v, [&](auto xs, auto) { return curvePlotVariable::computeRealIntegral(xs, v.yFloat, v.count); });
    return true;
}

bool cCurvePlotVariable::computeAbsIntegral(const cCurvePlotDataSection& section, double& integral) const
{
    cDataVectors v;
    if (!vectorsWithX(*this, section, v) || v.yDoubleComplex || v.yFloatComplex)
        return false;
    integral = v.yDouble
                   ? visit(v, [&](auto xs, auto) { return curvePlotVariable::computeRealAbsIntegral(xs, v.yDouble, v.count); })
                   : visit(v, [&](auto xs, auto) { return curvePlotVariable::computeRealAbsIntegral(xs, v.yFloat, v.count); });
    return true;
}

double cCurvePlotVariable::estimateSamplingFrequency(const cCurvePlotDataSection& section) const
{
    double low = 0, high = 0;
    cDataVectors v;
    if (!vectorsWithX(*this, section, v) || v.count < 2 || !getMinXAxisValue(section, low) ||
        !getMaxXAxisValue(section, high) || high <= low)
        return 0;
    return static_cast<double>(v.count - 1) / (high - low);
}

bool cCurvePlotVariable::checkIsPeriodic(const cCurvePlotDataSection& section, double period, double tolerance) const
{
    cDataVectors v;
    if (!(period > 0) || !vectorsWithX(*this, section, v) || v.count < 2)
        return false;
    const unsigned monotony = monotonyOf(v);
    if (!derivedCurveFunction::check_monotony_increasing(monotony))
        return false;
    return visit(v, [&](auto xs, auto ys) {
        double low = INFINITY, high = -INFINITY;
        for (uint64_t i = 0; i < v.count; ++i) {
            const double y = valueOf(ys[i], *this, false);
            low = std::min(low, y);
            high = std::max(high, y);
        }
        const double allowed = tolerance * std::max(1e-300, high - low);
        const double last = static_cast<double>(xs[v.count - 1]);
        uint64_t cursor = 0, checked = 0;
        for (uint64_t i = 0; i < v.count; ++i) {
            const double later = static_cast<double>(xs[i]) + period;
            if (later > last)
                break;
            double value = 0;
            if (!curvePlotVariable::computeInterpolatedValueIncreasing(later, xs, ys, v.count, cursor, value, *this))
                return false;
            if (!(std::fabs(value - valueOf(ys[i], *this, false)) <= allowed))
                return false;
            ++checked;
        }
        // A period as long as the curve proves nothing.
        return checked > 0;
    });
}

bool cCurvePlotVariable::checkIsConstantOverPeriod(const cCurvePlotDataSection& section, double from, double to,
                                                   double tolerance) const
{
    cDataVectors v;
    if (!vectorsWithX(*this, section, v) || from > to)
        return false;
    return visit(v, [&](auto xs, auto ys) {
        bool first = true;
        double reference = 0;
        for (uint64_t i = 0; i < v.count; ++i) {
            const double x = static_cast<double>(xs[i]);
            if (x < from || x > to)
                continue;
            const double y = valueOf(ys[i], *this, false);
            if (first) {
                reference = y;
                first = false;
            } else if (!(std::fabs(y - reference) <= tolerance * std::max(1.0, std::fabs(reference)))) {
                return false;
            }
        }
        return !first;
    });
}

bool cCurvePlotVariable::checkForLogarithmicScale(const cCurvePlotDataSection& section) const
{
    cDataVectors v;
    if (!vectorsWithX(*this, section, v))
        return false;
    return visit(v, [&](auto xs, auto) { return curvePlotVariable::checkForLogScale(xs, v.count); });
}

}  // namespace vx3
