// Vectors and strings in the evaluator: bracket lists, ranges, indices, string comparison.
// (Included by cBaseExpressionEvaluator.cpp, the one place where the template is instantiated.)
#pragma once
#include <algorithm>
#include <cmath>
#include <cstring>

#include "base/cPatternMatch.h"
#include "expressions/evaluator/cBaseExpressionEvaluator.h"
#include "expressions/cWaveformExpression.h"

namespace vx3 {

using namespace baseExpression;

template <class T>
op_type cBaseExpressionEvaluator<T>::computeSquareBrackets(T& node)
{
    // [a:b] and [a:s:b]: a range.
    if (node.childSize() == 1 && node.getChildOperator(0) == op_range) {
        T range = std::move(node.operands()[0]);
        node = std::move(range);
        return evaluate(node);
    }
    // A single element in round brackets is that element.
    if (node.getOperator() == op_round_brackets && node.childSize() == 1) {
        T inner = std::move(node.operands()[0]);
        node = std::move(inner);
        return evaluate(node);
    }
    if (checkIsStatus(evaluateSubExpressions(node)))
        return op_failed;
    cNumbers result;
    result.vector = true;
    for (const auto& element : node.operands()) {
        cNumbers numbers;
        if (readNumbers(element, numbers)) {
            // A vector among the elements is spliced in.
            result.complex = result.complex || numbers.complex;
            result.values.insert(result.values.end(), numbers.values.begin(), numbers.values.end());
        } else {
            result.values.emplace_back(NAN, 0.0);
        }
        if (result.values.size() > mMaximumVectorSize) {
            this->errorMsg("The maximum vector size has been reached.");
            return op_failed;
        }
    }
    writeNumbers(node, result);
    return node.getOperator();
}

template <class T>
op_type cBaseExpressionEvaluator<T>::computeIndex(T& node)
{
    if (node.childSize() != 2)
        return op_bad_arguments;
    T& base = node.operands()[0];
    T& index = node.operands()[1];
    if (checkIsStatus(evaluate(base)))
        return op_failed;
    cNumbers values;
    if (!readNumbers(base, values))
        return op_bad_first_argument;
    // The positions: one number, a range a:b, or a vector of them.
    std::vector<double> positions;
    if (index.getOperator() == op_range) {
        if (checkIsStatus(evaluateSubExpressions(index)))
            return op_failed;
        const T& lowNode = index.operands()[0];
        const T& highNode = index.operands()[1];
        if (index.childSize() != 2 || !lowNode.checkIsNumber() || !highNode.checkIsNumber())
            return op_bad_vector_index;
        const double low = lowNode.getAsDouble(), high = highNode.getAsDouble();
        if (!(low <= high) || high - low >= static_cast<double>(mMaximumVectorSize))
            return op_bad_vector_index;
        for (double i = low; i <= high; i += 1)
            positions.push_back(i);
    } else {
        if (checkIsStatus(evaluate(index)))
            return op_failed;
        cNumbers numbers;
        if (!readNumbers(index, numbers) || numbers.complex)
            return op_bad_vector_index;
        for (const auto& value : numbers.values)
            positions.push_back(value.real());
    }
    const double offset = mFirstIndexIsOne ? 1 : 0;
    cNumbers result;
    result.complex = values.complex;
    result.vector = positions.size() != 1;
    for (double position : positions) {
        const double i = position - offset;
        if (!(i >= 0) || i != std::floor(i) || i >= static_cast<double>(values.size()))
            return op_bad_vector_index;
        result.values.push_back(values.values[static_cast<size_t>(i)]);
    }
    writeNumbers(node, result);
    return node.getOperator();
}

template <class T>
op_type cBaseExpressionEvaluator<T>::computeStrcmp(T& node, bool limited)
{
    const size_t wanted = limited ? 3 : 2;
    if (node.childSize() != wanted || !checkIsStringNode(node.operands()[0]) ||
        !checkIsStringNode(node.operands()[1])) {
        this->errorMsg(limited ? "Bad arguments for \"strncmp\"." : "Bad arguments for \"strcmp\".");
        return op_failed;
    }
    std::string a = getStringOf(node.operands()[0]), b = getStringOf(node.operands()[1]);
    if (!mCaseSensitive) {
        a = normaliseName(a);
        b = normaliseName(b);
    }
    int result = 0;
    if (limited) {
        const double n = node.operands()[2].getAsDouble();
        if (!node.operands()[2].checkIsNumber() || !(n >= 0)) {
            this->errorMsg("Bad arguments for \"strncmp\".");
            return op_failed;
        }
        result = std::strncmp(a.c_str(), b.c_str(), static_cast<size_t>(n));
    } else {
        result = std::strcmp(a.c_str(), b.c_str());
    }
    node = T(static_cast<double>(result < 0 ? -1 : result > 0 ? 1 : 0));
    node.setOperator(op_integer);
    return op_integer;
}

template <class T>
op_type cBaseExpressionEvaluator<T>::computeStringComparison(T& node)
{
    // ==, != and the regular expression matches of two strings.
    const op_type op = node.getOperator();
    const T& left = node.operands()[0];
    const T& right = node.operands()[1];
    if (!checkIsStringNode(left))
        return op_bad_first_argument;
    if (!checkIsStringNode(right))
        return op_bad_second_argument;
    const std::string text = getStringOf(left), pattern = getStringOf(right);
    bool match = false;
    if (op == op_regex_match || op == op_regex_mismatch) {
        match = cRegularExpressionPatternMatch::checkMatches(mCaseSensitive ? pattern : "(?i)" + pattern, text);
        if (op == op_regex_mismatch)
            match = !match;
    } else {
        if (mWildCards)
            match = cWildCardPatternMatch::checkMatches(normaliseName(pattern), normaliseName(text));
        else
            match = normaliseName(text) == normaliseName(pattern);
        if (op == op_not_equal)
            match = !match;
    }
    node = T(match ? 1.0 : 0.0);
    node.setOperator(op_integer);
    return op_integer;
}


}  // namespace vx3
