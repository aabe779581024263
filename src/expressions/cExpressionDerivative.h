// The symbolic derivative of an expression tree with respect to one variable: the rules of sums,
// products, quotients, powers and the chain rule for the functions of one value. The result is
// simplified as it is built (no "0*x", "1*x", "x+0", "x^1"), so that it prints readably.
#pragma once

#include <string>

#include "expressions/cWaveformExpression.h"

namespace vx3 {

class cExpressionDerivative {
public:
    // variable: the name to differentiate by; every other name is a constant. Names compare
    // ignoring case unless caseSensitive is set, as the evaluator looks names up.
    explicit cExpressionDerivative(std::string variable, bool caseSensitive = false);

    // The derivative of expression into result. False when some node has no rule (comparisons,
    // user functions, rounding, indices, ...): the caller then derives numerically. On false,
    // result is undefined and must not be used.
    bool computeDerivative(const cWaveformExpression& expression, cWaveformExpression& result) const;

    // Whether expression contains the variable at all.
    bool checkDependsOnVariable(const cWaveformExpression& expression) const;

private:
    bool checkIsVariable(const cWaveformExpression& node) const;
    bool derive(const cWaveformExpression& node, cWaveformExpression& result, size_t depth) const;
    bool deriveFunction(const cWaveformExpression& node, cWaveformExpression& result, size_t depth) const;
    bool derivePower(const cWaveformExpression& base, const cWaveformExpression& exponent,
                     cWaveformExpression& result, size_t depth) const;

    std::string mVariable;
    bool mCaseSensitive;
};

}  // namespace vx3
