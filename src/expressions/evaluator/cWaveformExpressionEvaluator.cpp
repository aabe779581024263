#include "expressions/evaluator/cWaveformExpressionEvaluator.h"

#include "expressions/cWaveformExpressionParser.h"

namespace vx3 {

bool cWaveformExpressionEvaluator::evaluateString(std::string_view text, cWaveformExpression& result)
{
    cWaveformExpressionParser parser(*this);
    if (!parser.parseString(text, result)) {
        errorMsg("Failed to parse expression ... (" + std::string(text) + ")");
        return false;
    }
    return topLevelEvaluate(result);
}

bool cWaveformExpressionEvaluator::defineCurveFromString(const std::string& name, std::string_view text)
{
    cWaveformExpression result;
    cPostProcessCurveDescription curve;
    if (!evaluateString(text, result) || !getCurveDescription(result, curve) ||
        baseExpression::checkIsStatus(defineOrUpdateCurve(normaliseName(name), result))) {
        errorMsg("Failed to define curve from \"" + name + "\" ... (" + std::string(text) + ")");
        return false;
    }
    return true;
}

}  // namespace vx3
