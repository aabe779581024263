// The recursion of the evaluator and its dispatch by node kind. E is the layer that computes
// (cEvaluator for curves), T the tree type.
#pragma once

#include "expressions/baseExpression.h"

namespace vx3 {

template <class E, class T>
class cExpressionEvaluator : public E {
public:
    using op_type = baseExpression::op_type;

    // Reduces node in place to its value; returns the value's kind or op_failed after a report.
    op_type evaluate(T& node) override
    {
        using namespace baseExpression;
        if (!this->enterLevel())
            return op_failed;
        op_type result = dispatch(node);
        this->leaveLevel();
        if (checkIsStatus(result) && result != op_failed) {
            result = this->printErrorMessages(result, this->getNameForMessages(node));
            // An operand that stayed a name is the likely cause: say so.
            for (const auto& operand : node.operands())
                if (operand.getOperator() == op_name && !this->checkIfEvaluationResultMakesSense(operand))
                    this->infoMsg("\"" + operand.getAsString() + "\" is neither a curve nor a parameter nor a constant.");
        }
        return result;
    }

private:
    op_type dispatch(T& node)
    {
        using namespace baseExpression;
        const op_type kind = node.getOperator();
        switch (kind) {
        case op_integer:
        case op_real:
        case op_complex:
        case op_real_vector:
        case op_complex_vector:
        case op_quoted_string: return kind;
        case op_name: return this->computeString(node);
        case op_square_brackets:
        case op_round_brackets:
        case op_curly_brackets: return this->computeSquareBrackets(node);
        case op_index: return this->computeIndex(node);
        case op_assign:
        case op_add_assign:
        case op_subtract_assign:
        case op_multiply_assign:
        case op_divide_assign: return this->computeAssign(node);
        case op_condition: return this->computeCondition(node);
        case op_user_function: return this->computeUserDefinedFunction(node);
        case op_none: return op_bad_arguments;
        default: break;
        }
        if (checkIsStatus(kind))
            return op_failed;
        bool handled = false;
        const op_type special = this->computeSpecialFunction(node, handled);
        if (handled)
            return special;
        if (checkIsStatus(this->evaluateSubExpressions(node)))
            return op_failed;
        return this->computeOperator(node);
    }
};

}  // namespace vx3
