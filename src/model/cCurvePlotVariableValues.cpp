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
using curvePlotFunctionArgs::visitDataVectors;

namespace {

// The curve's vectors with x; false when it has no values or no x.
bool vectorsWithX(const cCurvePlotVariable& curve, const cCurvePlotDataSection& section, cDataVectors& vectors)
{
    return curve.computeDataVectors(section, vectors) && vectors.count && vectors.checkHasX();
}

unsigned monotonyOf(const cDataVectors& v)
{
    if (v.monotony != derivedCurveFunction::monotony_unknown)
        return v.monotony;
    return visitDataVectors(v, [&](auto xs, auto) { return unsigned(curvePlotVariable::computeMonotonyType(xs, v.count)); });
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

// Trapezoids of a real curve over x, of y or of |y|; false for complex curves.
bool computeRealIntegrals(const cCurvePlotVariable& curve, const cCurvePlotDataSection& section, double& integral,
                          bool absolute)
{
    cDataVectors v;
    if (!vectorsWithX(curve, section, v) || v.yDoubleComplex || v.yFloatComplex)
        return false;
    integral = visitDataVectors(v, [&](auto xs, auto ys) {
        if constexpr (std::is_arithmetic_v<std::remove_cv_t<std::remove_pointer_t<decltype(ys)>>>)
            return absolute ? curvePlotVariable::computeRealAbsIntegral(xs, ys, v.count)
                            : curvePlotVariable::computeRealIntegral(xs, ys, v.count);
        else
            return 0.0;
    });
    return true;
}

// The smallest and largest x, and the number of samples; 0 when there is no x.
uint64_t computeXRange(const cCurvePlotVariable& curve, const cCurvePlotDataSection& section, double& low,
                       double& high)
{
    cDataVectors v;
    if (!vectorsWithX(curve, section, v))
        return 0;
    low = INFINITY;
    high = -INFINITY;
    visitDataVectors(v, [&](auto xs, auto) {
        for (uint64_t i = 0; i < v.count; ++i) {
            low = std::min(low, static_cast<double>(xs[i]));
            high = std::max(high, static_cast<double>(xs[i]));
        }
        return 0;
    });
    return v.count;
}

}  // namespace

bool cCurvePlotVariable::findClosestXValue(const cCurvePlotDataSection& section, double x, uint64_t& index,
                                           double& closestX) const
{
    cDataVectors v;
    if (!vectorsWithX(*this, section, v))
        return false;
    const unsigned monotony = monotonyOf(v);
    return visitDataVectors(v, [&](auto xs, auto) {
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
    return visitDataVectors(v, [&](auto xs, auto ys) {
        return curvePlotVariable::findInterpolatedValue(x, xs, ys, v.count, monotony, cursor, value, conversion, logX);
    });
}

bool cCurvePlotVariable::findCorresponingValue(const cCurvePlotDataSection& section, uint64_t index, double& value,
                                               bool secondValue) const
{
    cDataVectors v;
    if (!computeDataVectors(section, v) || index >= v.count)
        return false;
    value = visitDataVectors(v, [&](auto, auto ys) { return valueOf(ys[index], *this, secondValue); });
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
    visitDataVectors(v, [&](auto xs, auto ys) {
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
    return visitDataVectors(v, [&](auto xs, auto) {
        return curvePlotVariable::findApproxXValueIndex(xs, v.count, x, atOrAfter, monotony);
    });
}

double cCurvePlotVariable::computeXValue(const cCurvePlotDataSection& section, uint64_t index) const
{
    cDataVectors v;
    if (!vectorsWithX(*this, section, v) || index >= v.count)
        return NAN;
    return visitDataVectors(v, [&](auto xs, auto) { return static_cast<double>(xs[index]); });
}

bool cCurvePlotVariable::getMinXAxisValue(const cCurvePlotDataSection& section, double& x) const
{
    double high = 0;
    return computeXRange(*this, section, x, high);
}

bool cCurvePlotVariable::getMaxXAxisValue(const cCurvePlotDataSection& section, double& x) const
{
    double low = 0;
    return computeXRange(*this, section, low, x);
}

bool cCurvePlotVariable::computeIntegral(const cCurvePlotDataSection& section, double& integral) const
{
    return computeRealIntegrals(*this, section, integral, false);
}

bool cCurvePlotVariable::computeAbsIntegral(const cCurvePlotDataSection& section, double& integral) const
{
    return computeRealIntegrals(*this, section, integral, true);
}

double cCurvePlotVariable::estimateSamplingFrequency(const cCurvePlotDataSection& section) const
{
    double low = 0, high = 0;
    const uint64_t count = computeXRange(*this, section, low, high);
    return count >= 2 && high > low ? static_cast<double>(count - 1) / (high - low) : 0;
}

bool cCurvePlotVariable::checkIsPeriodic(const cCurvePlotDataSection& section, double period, double tolerance) const
{
    cDataVectors v;
    if (!(period > 0) || !vectorsWithX(*this, section, v) || v.count < 2)
        return false;
    const unsigned monotony = monotonyOf(v);
    if (!derivedCurveFunction::check_monotony_increasing(monotony))
        return false;
    return visitDataVectors(v, [&](auto xs, auto ys) {
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
    return visitDataVectors(v, [&](auto xs, auto ys) {
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
    return visitDataVectors(v, [&](auto xs, auto) { return curvePlotVariable::checkForLogScale(xs, v.count); });
}

}  // namespace vx3
