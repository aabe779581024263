#include "expressions/evaluator/cAlgebraicCurve.h"

#include <algorithm>
#include <cmath>

#include "expressions/cExpressionDerivative.h"
#include "expressions/evaluator/cWaveformExpressionEvaluator.h"
#include "expressions/cWaveformExpressionParser.h"

namespace vx3 {

using namespace baseExpression;

cAlgebraicCurve::cAlgebraicCurve() : mEvaluator(std::make_unique<cWaveformExpressionEvaluator>()) {}

cAlgebraicCurve::~cAlgebraicCurve() = default;

bool cAlgebraicCurve::defineAlgebraicCurve(const std::string& text, const cVxLogger& logger, cCurvePlotDataFile* store,
                                           cCurvePlotDataSection* section)
{
    mLogger = &logger;
    mEvaluator = std::make_unique<cWaveformExpressionEvaluator>(store, section);
    mEvaluator->setLoggerCallBack(logger.getLoggerCallBack());
    auto fail = [&] {
        logger.errorMsg("Failed to define algebraic curve from ... (" + text + ")");
        return false;
    };
    cWaveformExpressionParser parser(logger);
    cWaveformExpression tree;
    if (!parser.parseString(text, tree))
        return fail();
    mLimited = false;
    if (tree.getOperator() == op_user_function && tree.getFunctionName() == "interval" && tree.childSize() == 3) {
        // interval(expression, x1, x2)
        cWaveformExpression x1 = tree.operands()[1], x2 = tree.operands()[2];
        if (!mEvaluator->topLevelEvaluate(x1) || !mEvaluator->topLevelEvaluate(x2) || !x1.checkIsNumber() ||
            !x2.checkIsNumber())
            return fail();
        mX1 = std::min(x1.getAsDouble(), x2.getAsDouble());
        mX2 = std::max(x1.getAsDouble(), x2.getAsDouble());
        mLimited = true;
        cWaveformExpression body = std::move(tree.operands()[0]);
        tree = std::move(body);
    }
    // The x-variable: the one name that stands for nothing else.
    std::vector<std::string> unknown;
    for (const auto& name : tree.computeVariableNames())
        if (!mEvaluator->findUserDefinedExpression(name) && !mEvaluator->checkIfCurveNameExists(name))
            unknown.push_back(name);
    if (unknown.size() != 1)
        return fail();
    mText = text;
    mVariable = unknown.front();
    mExpression = std::move(tree);
    return true;
}

bool cAlgebraicCurve::checkIsLimittedToInterval(double& x1, double& x2) const
{
    if (!mLimited)
        return false;
    x1 = mX1;
    x2 = mX2;
    return true;
}

std::vector<double> cAlgebraicCurve::createXAxisVector(double x1, double x2, size_t count, bool logarithmic)
{
    std::vector<double> xs(count);
    if (count == 1) {
        xs[0] = x1;
        return xs;
    }
    const bool log = logarithmic && x1 > 0 && x2 > 0;
    const double a = log ? std::log10(x1) : x1, b = log ? std::log10(x2) : x2;
    for (size_t i = 0; i < count; ++i) {
        const double t = a + (b - a) * static_cast<double>(i) / static_cast<double>(count - 1);
        xs[i] = log ? std::pow(10.0, t) : t;
    }
    xs.back() = x2;
    return xs;
}

bool cAlgebraicCurve::evaluate(const std::vector<double>& xs, std::vector<double>& ys)
{
    ys.assign(xs.size(), NAN);
    if (mVariable.empty() || xs.empty())
        return !mVariable.empty();
    // One evaluation for all points: the variable becomes the vector of x.
    cWaveformExpression values(op_real_vector);
    values.doubleValues() = xs;
    cWaveformExpression tree = mExpression;
    tree.substituteFunctionArguments({mVariable}, {values});
    const uint64_t saved = mEvaluator->getMaximumVectorSize();
    mEvaluator->setMaximumVectorSize(std::max<uint64_t>(saved, xs.size()));
    const bool evaluated = mEvaluator->topLevelEvaluate(tree);
    mEvaluator->setMaximumVectorSize(saved);
    if (!evaluated)
        return false;
    if (tree.getOperator() == op_real_vector && tree.doubleSize() == xs.size()) {
        ys = tree.doubleValues();
    } else if (tree.getOperator() == op_complex_vector && tree.doubleSize() == 2 * xs.size()) {
        for (size_t i = 0; i < xs.size(); ++i)
            ys[i] = tree.doubleValues()[2 * i];
    } else if (tree.checkIsNumber()) {
        std::fill(ys.begin(), ys.end(), tree.getAsDouble());
    } else {
        return false;
    }
    if (mLimited)
        for (size_t i = 0; i < xs.size(); ++i)
            if (xs[i] < mX1 || xs[i] > mX2)
                ys[i] = NAN;
    return true;
}

double cAlgebraicCurve::computeInterpolatedValue(double x)
{
    std::vector<double> ys;
    return evaluate({x}, ys) ? ys[0] : NAN;
}

double cAlgebraicCurve::computeGradient(double x)
{
    // The symbolic derivative where every node has a rule, evaluated at x.
    cExpressionDerivative derivative(mVariable, mEvaluator->getFlagMatchStringsCaseSensitive());
    cWaveformExpression gradient;
    if (derivative.computeDerivative(mExpression, gradient)) {
        gradient.substituteFunctionArguments({mVariable}, {cWaveformExpression(x)});
        if (mEvaluator->topLevelEvaluate(gradient, false) && gradient.checkIsNumber())
            return gradient.getAsDouble();
    }
    // Otherwise a centred difference.
    const double h = std::max(std::fabs(x), 1e-300) * 1e-6;
    std::vector<double> ys;
    if (!evaluate({x - h, x + h}, ys))
        return NAN;
    return (ys[1] - ys[0]) / (2 * h);
}

bool cAlgebraicCurve::updateAlgebraicCurveValues(const std::string& name, double x1, double x2, size_t count)
{
    if (mLimited) {
        x1 = std::max(x1, mX1);
        x2 = std::min(x2, mX2);
    }
    mBuffer = cAlgebraicCurveBuffer();
    if (!(x1 <= x2) || count == 0 || !std::isfinite(x1) || !std::isfinite(x2)) {
        // Nothing of the curve lies in the range: an empty buffer, no failure.
        return x1 > x2;
    }
    mBuffer.xs = createXAxisVector(x1, x2, count);
    if (!evaluate(mBuffer.xs, mBuffer.ys)) {
        if (mLogger)
            mLogger->errorMsg("Failed to update algebraic curve values for \"" + name + "\".");
        mBuffer = cAlgebraicCurveBuffer();
        return false;
    }
    return true;
}

}  // namespace vx3
