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

}  // namespace vx3
