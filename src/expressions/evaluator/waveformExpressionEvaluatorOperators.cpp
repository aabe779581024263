// Operators and functions of the curve layer: a curve with a curve through the engine, a curve
// with a number sample by sample, and the functions that take a whole curve.
#include <algorithm>
#include <cmath>

#include "expressions/cExpressionDerivative.h"
#include "expressions/postProcessCalculus.h"
#include "expressions/postProcessFilter.h"
#include "expressions/postProcessMeasure.h"
#include "expressions/postProcessOperators.h"
#include "expressions/postProcessShaping.h"
#include "expressions/evaluator/waveformExpressionEvaluator.h"

namespace vx3::waveformExpressionEvaluator {

using namespace baseExpression;

namespace {

// Two-curve operations that the engine's table lacks.
struct cPwr {
    static constexpr bool kRealOnly = true;
    template <class V>
    V operator()(V a, V b) const { return a < 0 ? -std::pow(-a, b) : std::pow(a, b); }
};
struct cSignOf {
    static constexpr bool kRealOnly = true;
    template <class V>
    V operator()(V a, V b) const { return b >= 0 ? std::fabs(a) : -std::fabs(a); }
};
struct cMinimum {
    static constexpr bool kRealOnly = true;
    template <class V>
    V operator()(V a, V b) const { return std::min(a, b); }
};
struct cMaximum {
    static constexpr bool kRealOnly = true;
    template <class V>
    V operator()(V a, V b) const { return std::max(a, b); }
};

// With the number left of the curve, a comparison is evaluated by its partner with the curve
// left: "<" by ">=", "<=" by ">", and back.
op_type comparisonPartner(op_type op)
{
    switch (op) {
    case op_less: return op_greater_equal;
    case op_greater_equal: return op_less;
    case op_less_equal: return op_greater;
    case op_greater: return op_less_equal;
    default: return op;
    }
}

bool checkIsComparison(op_type op)
{
    return op == op_less || op == op_less_equal || op == op_greater || op == op_greater_equal;
}

postProcess::cCurveSamples<double, double> samplesOf(const std::vector<double>& xs, const std::vector<double>& ys)
{
    return postProcess::makeCurveSamples(xs.data(), ys.data(), xs.size());
}

}  // namespace

op_type cEvaluator::checkIfEvaluationIsPossible(T& node, std::vector<cPostProcessCurveDescription>& descriptions,
                                                std::vector<bool>& isCurve)
{
    descriptions.assign(node.childSize(), cPostProcessCurveDescription());
    isCurve.assign(node.childSize(), false);
    bool any = false;
    for (size_t i = 0; i < node.childSize(); ++i) {
        if (getCurveDescription(node.operands()[i], descriptions[i])) {
            std::string error;
            if (!descriptions[i].load(false, error)) {
                errorMsg(error);
                return op_failed;
            }
            if (descriptions[i].getNbOfValues() == 0 && node.getOperator() != op_function_size) {
                errorMsg("The curve \"" + descriptions[i].getName() + "\" is empty.");
                return op_failed;
            }
            if (!makeNumeric(descriptions[i]))
                return op_failed;
            isCurve[i] = any = true;
        }
    }
    return any ? op_name : op_none;
}

op_type cEvaluator::computeSpecialFunction(T& node, bool& handled)
{
    const op_type op = node.getOperator();
    const bool derivative = op == op_function_derivative || op == op_function_derivative_forward ||
                            op == op_function_derivative_backward || op == op_function_derivative_centered;
    if (derivative && (node.childSize() == 2 || node.childSize() == 3) && node.getChildOperator(1) == op_name) {
        handled = true;
        return computeDerivative(node);
    }
    return cBaseExpressionEvaluator::computeSpecialFunction(node, handled);
}

op_type cEvaluator::computeDerivative(T& node)
{
    // derivative(expression, x): the derivative's text; derivative(expression, x, at): its value at x = at,
    // by a centred difference where a node has no rule.
    const std::string variable = node.operands()[1].getAsString();
    const T& expression = node.operands()[0];
    cExpressionDerivative rules(variable, mCaseSensitive);
    T derived;
    const bool symbolic = rules.computeDerivative(expression, derived);
    if (node.childSize() == 2) {
        if (!symbolic) {
            errorMsg("\"" + expression.getExpressionAsString() + "\" has no symbolic derivative.");
            return op_failed;
        }
        T text(op_quoted_string);
        text.setStringValue(derived.getExpressionAsString());
        node = std::move(text);
        return op_quoted_string;
    }
    T at = node.operands()[2];
    if (checkIsStatus(evaluate(at)))
        return op_failed;
    if (!at.checkIsNumber() || at.getOperator() == op_complex)
        return op_bad_third_argument;
    auto valueAt = [&](const T& tree, double x, double& value) {
        T copy = tree;
        copy.substituteFunctionArguments({variable}, {T(x)});
        if (checkIsStatus(evaluate(copy)) || !copy.checkIsNumber())
            return false;
        value = copy.getAsDouble();
        return true;
    };
    const double x = at.getAsDouble();
    double value = NAN;
    if (symbolic) {
        if (!valueAt(derived, x, value))
            return op_bad_first_argument;
    } else {
        const double h = std::max(std::fabs(x), 1e-300) * 1e-6;
        double below = NAN, above = NAN;
        if (!valueAt(expression, x - h, below) || !valueAt(expression, x + h, above))
            return op_bad_first_argument;
        value = (above - below) / (2 * h);
    }
    node = T(value);
    return op_real;
}

op_type cEvaluator::computeOperator(T& node)
{
    std::vector<cPostProcessCurveDescription> curves;
    std::vector<bool> isCurve;
    if (node.getOperator() == op_function_bit && node.childSize() == 2) {
        // The bit of a logic vector stays logic.
        cPostProcessCurveDescription curve;
        if (getCurveDescription(node.operands()[0], curve) && curve.checkCurveIsDigital()) {
            if (!node.operands()[1].checkIsNumber())
                return op_bad_second_argument;
            return computeCurveBit(node, curve, node.operands()[1].getAsDouble());
        }
    }
    const op_type possible = checkIfEvaluationIsPossible(node, curves, isCurve);
    if (checkIsStatus(possible))
        return op_failed;
    const op_type op = node.getOperator();
    if (checkIsSpectralFunction(op)) {
        if (possible != op_none)
            return isCurve[0] ? computeCurveSpectrum(node, curves[0]) : op_bad_arguments;
        if (op == op_function_fft || op == op_function_ifft || op == op_function_fftshift ||
            op == op_function_ifftshift)
            return computeVectorSpectrum(node);
        return computeWindow(node);
    }
    if (possible == op_none)
        return cBaseExpressionEvaluator::computeOperator(node);
    bool handled = false;
    const op_type result = computeCurveFunction(node, curves, isCurve, handled);
    if (handled)
        return result;
    if (node.childSize() == 2 && (checkIsBinaryOperator(op) || op == op_function_pow || op == op_function_power ||
                                  op == op_function_pwr || op == op_function_sign || op == op_function_min ||
                                  op == op_function_max))
        return computeCurveBinary(node, curves, isCurve);
    if (node.childSize() == 1) {
        bool known = false;
        getUnaryFunctors(op, known);
        if (known)
            return computeCurveUnary(node, curves[0]);
    }
    return node.childSize() == 1 || !checkIsBuiltInFunction(op) ? op_bad_arguments : op_bad_number_of_arguments;
}

op_type cEvaluator::computeCurveUnary(T& node, const cPostProcessCurveDescription& curve)
{
    bool known = false;
    const cFunctors f = getUnaryFunctors(node.getOperator(), known);
    cCurveCopy copy;
    if (!readCurve(curve, copy))
        return op_failed;
    if (copy.complex) {
        if (!f.complex1)
            return op_complex_not_allowed;
        for (size_t i = 0; i < copy.size(); ++i) {
            const tComplex z = copy.yc[i];
            copy.yc[i] = std::isnan(z.real()) || std::isnan(z.imag()) ? tComplex(NAN, NAN) : f.complex1(z);
        }
        if (f.complexResultIsReal) {
            copy.ys.resize(copy.size());
            for (size_t i = 0; i < copy.size(); ++i)
                copy.ys[i] = copy.yc[i].real();
            copy.yc.clear();
            copy.complex = false;
        }
    } else {
        for (double& y : copy.ys)
            y = std::isnan(y) ? NAN : f.real1(y);
    }
    return storeTemporaryCurve(node, copy);
}

op_type cEvaluator::computeCurveBinary(T& node, const std::vector<cPostProcessCurveDescription>& curves,
                                       const std::vector<bool>& isCurve)
{
    const op_type op = node.getOperator();
    if (isCurve[0] && isCurve[1]) {
        // Only an addition extends over both curves; everything else is defined where both are.
        const bool unionMode = op == op_add;
        cCurvePlotDataSection* section = getResultSection();
        const std::string name = generateNewTmpCurve();
        uint64_t index = 0;
        auto run = [&](auto functor) {
            return applyOperatorToTwoCurves(getDataFile(), *section, name, curves[0], curves[1], unionMode, functor,
                                            index);
        };
        bool done = false;
        switch (op) {
        case op_add: done = run(postProcess::cAdd()); break;
        case op_subtract: done = run(postProcess::cSubtract()); break;
        case op_multiply: done = run(postProcess::cMultiply()); break;
        case op_divide: done = run(postProcess::cDivide()); break;
        case op_power:
        case op_function_pow:
        case op_function_power: done = run(postProcess::cPower()); break;
        case op_function_pwr: done = run(cPwr()); break;
        case op_function_sign: done = run(cSignOf()); break;
        case op_function_min: done = run(cMinimum()); break;
        case op_function_max: done = run(cMaximum()); break;
        case op_less: done = run(postProcess::cLess()); break;
        case op_less_equal: done = run(postProcess::cLessEqual()); break;
        case op_greater: done = run(postProcess::cGreater()); break;
        case op_greater_equal: done = run(postProcess::cGreaterEqual()); break;
        case op_equal: done = run(postProcess::cEqual()); break;
        case op_not_equal: done = run(postProcess::cNotEqual()); break;
        case op_logical_and: done = run(postProcess::cLogicalAnd()); break;
        case op_logical_or: done = run(postProcess::cLogicalOr()); break;
        default: return op_bad_arguments;
        }
        if (!done) {
            if (getErrorString() == kComplexMessage) {
                errorMsg("\"" + getNameForMessages(node) + "\" does not apply to complex values.");
                return op_failed;
            }
            return reportEngineError("The curves could not be combined.");
        }
        insertTemporaryCurve(name, section->getSectionId());
        node = T(name);
        return op_name;
    }
    // A curve with a number: each sample with the number.
    const bool curveLeft = isCurve[0];
    const T& scalarNode = node.operands()[curveLeft ? 1 : 0];
    if (!scalarNode.checkIsNumber())
        return curveLeft ? op_bad_second_argument : op_bad_first_argument;
    const tComplex scalar = scalarNode.getAsComplex();
    const bool scalarComplex = scalarNode.getOperator() == op_complex;
    bool known = false;
    const bool partner = !curveLeft && checkIsComparison(op);
    const cFunctors f = getBinaryFunctors(partner ? comparisonPartner(op) : op, known);
    if (!known)
        return op_bad_arguments;
    cCurveCopy copy;
    if (!readCurve(curves[curveLeft ? 0 : 1], copy))
        return op_failed;
    const bool complex = copy.complex || scalarComplex;
    if (complex && !f.complex2)
        return op_complex_not_allowed;
    // The scalar stands left only for the commuted operations; comparisons use their partner.
    const bool swap = !curveLeft && !partner;
    if (complex) {
        if (!copy.complex) {
            copy.yc.assign(copy.ys.begin(), copy.ys.end());
            copy.ys.clear();
        }
        const bool scalarUndefined = std::isnan(scalar.real()) || std::isnan(scalar.imag());
        for (auto& y : copy.yc) {
            if (scalarUndefined || std::isnan(y.real()) || std::isnan(y.imag()))
                y = tComplex(NAN, NAN);
            else
                y = swap ? f.complex2(scalar, y) : f.complex2(y, scalar);
        }
        copy.complex = !f.complexResultIsReal;
        if (!copy.complex) {
            for (const auto& y : copy.yc)
                copy.ys.push_back(y.real());
            copy.yc.clear();
        }
    } else {
        const double s = scalar.real();
        for (double& y : copy.ys)
            y = std::isnan(s) || std::isnan(y) ? NAN : swap ? f.real2(s, y) : f.real2(y, s);
    }
    return storeTemporaryCurve(node, copy);
}

bool cEvaluator::readInterval(const T& node, size_t first, double& x1, double& x2)
{
    x1 = x2 = NAN;
    if (node.childSize() > first) {
        if (!node.operands()[first].checkIsNumber())
            return false;
        x1 = node.operands()[first].getAsDouble();
    }
    if (node.childSize() > first + 1) {
        if (!node.operands()[first + 1].checkIsNumber())
            return false;
        x2 = node.operands()[first + 1].getAsDouble();
    }
    return node.childSize() <= first + 2;
}

op_type cEvaluator::computeExtreme(T& node, const cPostProcessCurveDescription& curve, bool maximum, bool xValue)
{
    double x1 = NAN, x2 = NAN;
    if (!readInterval(node, 1, x1, x2))
        return node.childSize() > 3 ? op_bad_number_of_arguments : op_bad_arguments;
    if (curve.checkCurveIsComplex())
        return op_complex_not_allowed;
    double minY = NAN, xAtMin = NAN, maxY = NAN, xAtMax = NAN;
    std::string error;
    if (!postProcess::measureStoreCurve(
            curve,
            [&](const auto& samples) { postProcess::computeMinMaxXValues(samples, x1, x2, minY, xAtMin, maxY, xAtMax); },
            error)) {
        errorMsg(error);
        return op_failed;
    }
    node = T(maximum ? (xValue ? xAtMax : maxY) : (xValue ? xAtMin : minY));
    return op_real;
}

op_type cEvaluator::computeMeasurement(T& node, const cPostProcessCurveDescription& curve)
{
    using namespace postProcess;
    const op_type op = node.getOperator();
    const size_t n = node.childSize();
    for (size_t i = 1; i < n; ++i)
        if (!node.operands()[i].checkIsNumber() || node.operands()[i].getOperator() == op_complex)
            return i == 1 ? op_bad_second_argument : i == 2 ? op_bad_third_argument : i == 3 ? op_bad_fourth_argument
                                                                                             : op_bad_arguments;
    auto argument = [&](size_t i, double fallback) { return i < n ? node.operands()[i].getAsDouble() : fallback; };
    if (curve.checkCurveIsComplex())
        return op_complex_not_allowed;
    double result = NAN;
    std::string error;
    bool measured = false;
    if (op == op_function_estimate_frequency || op == op_function_duty_cycle) {
        // curve [, threshold [, x1, x2]]
        if (n > 4 || n == 3)
            return op_bad_number_of_arguments;
        measured = measureStoreCurve(
            curve,
            [&](const auto& samples) {
                const double x1 = argument(2, NAN), x2 = argument(3, NAN);
                double threshold = argument(1, NAN);
                if (std::isnan(threshold)) {
                    // The frequency's threshold is the average; the duty cycle's lies at 90% of the range.
                    if (op == op_function_estimate_frequency) {
                        threshold = computeCurveAverage(samples, x1, x2);
                    } else {
                        double minY, xMin, maxY, xMax;
                        computeMinMaxXValues(samples, x1, x2, minY, xMin, maxY, xMax);
                        threshold = minY + 0.9 * (maxY - minY);
                    }
                }
                result = op == op_function_estimate_frequency ? computeFrequency(samples, threshold, x1, x2)
                                                              : computeCurveDutyCycle(samples, threshold, x1, x2);
            },
            error);
    } else {
        // curve; curve, low %, high %; curve, low %, high %, x1, x2
        if (n != 1 && n != 3 && n != 5)
            return op_bad_number_of_arguments;
        const double low = argument(1, 10), high = argument(2, 90), x1 = argument(3, NAN), x2 = argument(4, NAN);
        measured = measureStoreCurve(
            curve,
            [&](const auto& samples) {
                switch (op) {
                case op_function_average_slew_rate: result = computeCurveAverageSlewRate(samples, low, high, x1, x2); break;
                case op_function_min_slew_rate: result = computeCurveMinSlewRate(samples, low, high, x1, x2); break;
                case op_function_max_slew_rate: result = computeCurveMaxSlewRate(samples, low, high, x1, x2); break;
                case op_function_average_rise_time: result = computeCurveAverageRiseTime(samples, low, high, x1, x2); break;
                case op_function_min_rise_time: result = computeCurveMinRiseTime(samples, low, high, x1, x2); break;
                case op_function_max_rise_time: result = computeCurveMaxRiseTime(samples, low, high, x1, x2); break;
                case op_function_average_fall_time: result = computeCurveAverageFallTime(samples, low, high, x1, x2); break;
                case op_function_min_fall_time: result = computeCurveMinFallTime(samples, low, high, x1, x2); break;
                default: result = computeCurveMaxFallTime(samples, low, high, x1, x2); break;
                }
            },
            error);
    }
    if (!measured) {
        errorMsg(error);
        return op_failed;
    }
    node = T(result);
    return op_real;
}

op_type cEvaluator::computeTableOfCurve(T& node, const std::vector<cPostProcessCurveDescription>& curves,
                                        const std::vector<bool>& isCurve)
{
    // The table read at each sample of a curve.
    for (size_t i = 0; i + 1 < isCurve.size(); ++i)
        if (isCurve[i])
            return i == 0 ? op_bad_first_argument : op_bad_arguments;
    op_type status = op_none;
    const cInterpolationTable* table = elaborate(node, status);
    if (!table)
        return status;
    cCurveCopy copy;
    if (!readCurve(curves.back(), copy))
        return op_failed;
    if (copy.complex)
        return op_complex_not_allowed;
    for (double& y : copy.ys)
        y = std::isnan(y) ? NAN : table->evaluate(y);
    return storeTemporaryCurve(node, copy);
}

op_type cEvaluator::computeCurveFunction(T& node, const std::vector<cPostProcessCurveDescription>& curves,
                                         const std::vector<bool>& isCurve, bool& handled)
{
    handled = true;
    const op_type op = node.getOperator();
    const bool firstIsCurve = !isCurve.empty() && isCurve[0];
    if (checkIsTableFunction(op))
        return computeTableOfCurve(node, curves, isCurve);
    switch (op) {
    case op_function_derivative:
    case op_function_derivative_forward:
    case op_function_derivative_backward:
    case op_function_derivative_centered: {
        if (node.childSize() != 1)
            return op_bad_number_of_arguments;
        cCurveCopy copy;
        if (!readCurve(curves[0], copy))
            return op_failed;
        auto derive = [op](const std::vector<double>& xs, const std::vector<double>& ys, std::vector<double>& out) {
            const auto s = samplesOf(xs, ys);
            switch (op) {
            case op_function_derivative_forward: return postProcess::computeForwardDerivedCurve(s, out);
            case op_function_derivative_backward: return postProcess::computeBackwardDerivedCurve(s, out);
            case op_function_derivative_centered: return postProcess::computeCenteredDerivedCurve(s, out);
            default: return postProcess::computeDerivedCurve(s, out);
            }
        };
        if (!copy.monotone)
            return reportEngineError(kNonMonotoneMessage);
        std::vector<double> out;
        if (copy.complex) {
            std::vector<double> re(copy.size()), im(copy.size()), dre, dim;
            for (size_t i = 0; i < copy.size(); ++i) {
                re[i] = copy.yc[i].real();
                im[i] = copy.yc[i].imag();
            }
            if (!derive(copy.xs, re, dre) || !derive(copy.xs, im, dim)) {
                errorMsg("The curve \"" + curves[0].getName() + "\" has fewer than 3 samples: no derivative.");
                return op_failed;
            }
            for (size_t i = 0; i < copy.size(); ++i)
                copy.yc[i] = tComplex(dre[i], dim[i]);
        } else {
            if (!derive(copy.xs, copy.ys, out)) {
                errorMsg("The curve \"" + curves[0].getName() + "\" has fewer than 3 samples: no derivative.");
                return op_failed;
            }
            copy.ys = std::move(out);
        }
        return storeTemporaryCurve(node, copy);
    }
    case op_function_integral:
    case op_function_integral_trapez: {
        if (!firstIsCurve)
            break;
        if (node.childSize() != 1 && node.childSize() != 3)
            return op_bad_number_of_arguments;
        cCurveCopy copy;
        if (!readCurve(curves[0], copy))
            return op_failed;
        if (copy.complex)
            return op_complex_not_allowed;
        if (node.childSize() == 1) {
            std::vector<double> out;
            postProcess::computeIntegralCurveTrapez(samplesOf(copy.xs, copy.ys), out);
            copy.ys = std::move(out);
            return storeTemporaryCurve(node, copy);
        }
        // Over an interval: the number.
        double x1 = NAN, x2 = NAN;
        if (!readInterval(node, 1, x1, x2))
            return op_bad_arguments;
        std::vector<double> xs, ys, out;
        double value = NAN;
        if (postProcess::reduceWaveformToInterval(samplesOf(copy.xs, copy.ys), x1, x2, xs, ys) && !xs.empty()) {
            postProcess::computeIntegralCurveTrapez(samplesOf(xs, ys), out);
            value = out.empty() ? 0.0 : out.back();
        }
        node = T(value);
        return op_real;
    }
    case op_function_average:
    case op_function_avg:
    case op_function_estimate_average_value: {
        if (!firstIsCurve)
            return op_bad_first_argument;
        double x1 = NAN, x2 = NAN;
        if (!readInterval(node, 1, x1, x2))
            return node.childSize() > 3 ? op_bad_number_of_arguments : op_bad_arguments;
        cCurveCopy copy;
        if (!readCurve(curves[0], copy))
            return op_failed;
        if (copy.complex) {
            std::vector<double> re, im;
            for (const auto& z : copy.yc) {
                re.push_back(z.real());
                im.push_back(z.imag());
            }
            node = T(postProcess::computeCurveAverage(samplesOf(copy.xs, re), x1, x2),
                     postProcess::computeCurveAverage(samplesOf(copy.xs, im), x1, x2));
            return op_complex;
        }
        node = T(postProcess::computeCurveAverage(samplesOf(copy.xs, copy.ys), x1, x2));
        return op_real;
    }
    case op_function_apply_window_function: {
        if (!firstIsCurve)
            return op_bad_first_argument;
        if (node.childSize() != 3)
            return op_bad_number_of_arguments;
        double x1 = NAN, x2 = NAN;
        if (!readInterval(node, 1, x1, x2))
            return op_bad_arguments;
        cCurveCopy copy, cut;
        if (!readCurve(curves[0], copy))
            return op_failed;
        cut.unit = copy.unit;
        if (copy.complex) {
            std::vector<double> re, im, xs, ysRe, ysIm;
            for (const auto& z : copy.yc) {
                re.push_back(z.real());
                im.push_back(z.imag());
            }
            postProcess::reduceWaveformToInterval(samplesOf(copy.xs, re), x1, x2, cut.xs, ysRe);
            postProcess::reduceWaveformToInterval(samplesOf(copy.xs, im), x1, x2, xs, ysIm);
            cut.complex = true;
            for (size_t i = 0; i < ysRe.size() && i < ysIm.size(); ++i)
                cut.yc.emplace_back(ysRe[i], ysIm[i]);
        } else {
            postProcess::reduceWaveformToInterval(samplesOf(copy.xs, copy.ys), x1, x2, cut.xs, cut.ys);
        }
        return storeTemporaryCurve(node, cut);
    }
    case op_function_maximum_value:
    case op_function_minimum_value:
    case op_function_maximum_x_value:
    case op_function_minimum_x_value:
        if (!firstIsCurve)
            return op_bad_first_argument;
        return computeExtreme(node, curves[0], op == op_function_maximum_value || op == op_function_maximum_x_value,
                              op == op_function_maximum_x_value || op == op_function_minimum_x_value);
    case op_function_estimate_frequency:
    case op_function_duty_cycle:
    case op_function_average_slew_rate:
    case op_function_min_slew_rate:
    case op_function_max_slew_rate:
    case op_function_average_rise_time:
    case op_function_min_rise_time:
    case op_function_max_rise_time:
    case op_function_average_fall_time:
    case op_function_min_fall_time:
    case op_function_max_fall_time:
        if (!firstIsCurve)
            return op_bad_first_argument;
        return computeMeasurement(node, curves[0]);
    case op_function_smooth_average: {
        // smooth_average(curve [, size]): a window of size samples, centred (2 on each side by default).
        if (!firstIsCurve)
            return op_bad_first_argument;
        if (node.childSize() > 2)
            return op_bad_number_of_arguments;
        postProcess::cOpSmoothAverage smooth;
        if (node.childSize() == 2) {
            const double size = node.operands()[1].getAsDouble();
            if (!node.operands()[1].checkIsNumber() || !(size >= 1) || size != std::floor(size) || size > 1e9)
                return op_bad_second_argument;
            smooth.halfWidth = static_cast<uint64_t>(size) / 2;
        }
        cCurvePlotDataSection* section = getResultSection();
        const std::string name = generateNewTmpCurve();
        uint64_t index = 0;
        std::string error;
        const bool smoothed = postProcess::shapeStoreCurve(
            getDataFile(), *section, name, curves[0],
            [&](const auto& samples, std::vector<double>& xs, auto& ys, std::string& message) {
                return smooth(samples, xs, ys, message);
            },
            index, error);
        return adoptTemporaryCurve(node, smoothed, name, section->getSectionId(), error);
    }
    case op_function_min:
    case op_function_max:
        if (node.childSize() == 1)
            return computeExtreme(node, curves[0], op == op_function_max, false);
        break;
    case op_function_size: {
        if (node.childSize() != 1)
            return op_bad_number_of_arguments;
        std::string error;
        if (!curves[0].load(false, error)) {
            errorMsg(error);
            return op_failed;
        }
        node = T(static_cast<double>(curves[0].getNbOfValues()));
        node.setOperator(op_integer);
        return op_integer;
    }
    case op_function_simplify: {
        if (node.childSize() != 1)
            return op_bad_number_of_arguments;
        cCurveCopy copy;
        if (!readCurve(curves[0], copy))
            return op_failed;
        if (!copy.complex)
            return storeTemporaryCurve(node, copy);
        for (const auto& z : copy.yc)
            if (z.imag() != 0)
                return storeTemporaryCurve(node, copy);
        for (const auto& z : copy.yc)
            copy.ys.push_back(z.real());
        copy.yc.clear();
        copy.complex = false;
        return storeTemporaryCurve(node, copy);
    }
    case op_function_convert_to_step_function: {
        if (!firstIsCurve)
            return op_bad_first_argument;
        if (node.childSize() > 2)
            return op_bad_number_of_arguments;
        double threshold = 0;
        if (node.childSize() == 2) {
            if (!node.operands()[1].checkIsNumber())
                return op_bad_second_argument;
            threshold = node.operands()[1].getAsDouble();
        }
        cCurveCopy copy, steps;
        if (!readCurve(curves[0], copy))
            return op_failed;
        steps.unit = copy.unit;
        steps.complex = copy.complex;
        if (copy.complex)
            postProcess::convertCurveToStepFunction(postProcess::makeCurveSamples(copy.xs.data(), copy.yc.data(),
                                                                                  copy.size()),
                                                    threshold, steps.xs, steps.yc);
        else
            postProcess::convertCurveToStepFunction(samplesOf(copy.xs, copy.ys), threshold, steps.xs, steps.ys);
        return storeTemporaryCurve(node, steps);
    }
    case op_function_bit:
        // Bits of a real curve: not a logic vector.
        return op_curves_of_wrong_type;
    default: break;
    }
    handled = false;
    return op_none;
}

}  // namespace vx3::waveformExpressionEvaluator
