// The operator switch of the evaluator's number layer: operators and built-in functions whose
// operands are values already.
// (Included by cBaseExpressionEvaluator.cpp, the one place where the template is instantiated.)
#pragma once
#include <cmath>

#include "expressions/evaluator/cBaseExpressionEvaluator.h"
#include "expressions/cWaveformExpression.h"

namespace vx3 {

using namespace baseExpression;

template <class T>
op_type cBaseExpressionEvaluator<T>::computeOperator(T& node)
{
    const op_type op = node.getOperator();
    if (checkIsTableFunction(op))
        return computeElaboration(node);
    switch (op) {
    case op_equal:
    case op_not_equal:
        if (node.childSize() == 2 && (checkIsStringNode(node.operands()[0]) || checkIsStringNode(node.operands()[1])))
            return computeStringComparison(node);
        break;
    case op_regex_match:
    case op_regex_mismatch:
        if (node.childSize() != 2)
            return op_bad_number_of_arguments;
        return computeStringComparison(node);
    case op_function_min:
    case op_function_max: return evalExN(node, op == op_function_max);
    case op_function_sign:
        if (node.childSize() == 1)
            break;
        {
            bool known = false;
            return evalEx2(node, getBinaryFunctors(op, known));
        }
    case op_function_bit: return computeBitOfNumber(node);
    case op_function_size: return computeSize(node);
    case op_function_simplify: return computeSimplify(node);
    case op_function_vector: {
        node.setOperator(op_square_brackets);
        cNumbers result;
        result.vector = true;
        for (const auto& element : node.operands()) {
            cNumbers numbers;
            if (!readNumbers(element, numbers))
                return op_bad_arguments;
            result.complex = result.complex || numbers.complex;
            result.values.insert(result.values.end(), numbers.values.begin(), numbers.values.end());
        }
        if (result.values.size() > mMaximumVectorSize) {
            this->errorMsg("The maximum vector size has been reached.");
            return op_failed;
        }
        writeNumbers(node, result);
        return node.getOperator();
    }
    case op_function_strcmp: return computeStrcmp(node, false);
    case op_function_strncmp: return computeStrcmp(node, true);
    case op_function_integral:
    case op_function_integral_trapez: {
        // On numbers: the trapezoid integral of a vector of y over a vector of x.
        if (node.childSize() != 2)
            return op_bad_number_of_arguments;
        cNumbers ys, xs;
        if (!readNumbers(node.operands()[0], ys) || ys.complex)
            return op_bad_first_argument;
        if (!readNumbers(node.operands()[1], xs) || xs.complex)
            return op_bad_second_argument;
        if (xs.size() != ys.size())
            return op_vector_sizes_differ;
        long double sum = 0;
        for (size_t i = 0; i + 1 < xs.size(); ++i)
            sum += (static_cast<long double>(ys.values[i].real()) + ys.values[i + 1].real()) * 0.5L *
                   (static_cast<long double>(xs.values[i + 1].real()) - xs.values[i].real());
        node = T(static_cast<double>(sum));
        return op_real;
    }
    case op_function_random_seed:
    case op_function_random_number:
    case op_function_normal_distribution:
    case op_function_uniform_distribution: return computeRandomFunction(node);
    case op_function_smooth_sgolay:
        // Reserved: there is no such filter; the call stays unevaluated.
        return op_unknown_function;
    default: break;
    }
    bool known = false;
    if (node.childSize() == 2) {
        const cFunctors functors = getBinaryFunctors(op, known);
        if (known)
            return evalEx2(node, functors);
    }
    const cFunctors unary = getUnaryFunctors(op, known);
    if (known) {
        if (node.childSize() != 1)
            return op_bad_number_of_arguments;
        return evalEx0(node, unary);
    }
    getBinaryFunctors(op, known);
    if (known)
        return op_bad_number_of_arguments;
    return checkIsBuiltInFunction(op) ? op_unknown_function : op_bad_arguments;
}

template <class T>
op_type cBaseExpressionEvaluator<T>::computeSpecialFunction(T& node, bool& handled)
{
    handled = false;
    if (node.getOperator() != op_range)
        return op_none;
    // a:b and a:s:b (read as (a:s):b): a vector from a to b in steps of s, 1 by default.
    handled = true;
    if (node.childSize() != 2)
        return op_bad_arguments;
    std::vector<T*> bounds;
    if (node.getChildOperator(0) == op_range && node.operands()[0].childSize() == 2) {
        bounds = {&node.operands()[0].operands()[0], &node.operands()[0].operands()[1], &node.operands()[1]};
    } else {
        bounds = {&node.operands()[0], &node.operands()[1]};
    }
    for (size_t i = 0; i < bounds.size(); ++i) {
        if (checkIsStatus(evaluate(*bounds[i])))
            return op_failed;
        if (!bounds[i]->checkIsNumber() || bounds[i]->getOperator() == op_complex)
            return i == 0 ? op_bad_first_argument : i == 1 ? op_bad_second_argument : op_bad_third_argument;
    }
    const double from = bounds[0]->getAsDouble();
    const double step = bounds.size() == 3 ? bounds[1]->getAsDouble() : 1.0;
    const double to = bounds.back()->getAsDouble();
    return defineVectorRange(node, from, step, to);
}


}  // namespace vx3
