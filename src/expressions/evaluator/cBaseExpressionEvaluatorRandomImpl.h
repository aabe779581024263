// Random numbers and the prepared tables (polynomials, interpolations) of the evaluator's number
// layer.
// (Included by cBaseExpressionEvaluator.cpp, the one place where the template is instantiated.)
#pragma once
#include <cmath>

#include "expressions/evaluator/cBaseExpressionEvaluator.h"
#include "expressions/cWaveformExpression.h"

namespace vx3 {

using namespace baseExpression;

template <class T>
bool cBaseExpressionEvaluator<T>::drawRandomNumber(const T& distribution, double& value)
{
    const op_type kind = distribution.getOperator();
    if ((kind != op_function_normal_distribution && kind != op_function_uniform_distribution) ||
        distribution.childSize() != 2)
        return false;
    const T& first = distribution.operands()[0];
    const T& second = distribution.operands()[1];
    if (!first.checkIsNumber() || !second.checkIsNumber() || first.getOperator() == op_complex ||
        second.getOperator() == op_complex)
        return false;
    value = kind == op_function_normal_distribution ? randomNormal(first.getAsDouble(), second.getAsDouble())
                                                    : randomUniform(first.getAsDouble(), second.getAsDouble());
    return true;
}

template <class T>
op_type cBaseExpressionEvaluator<T>::computeRandomFunction(T& node)
{
    const op_type op = node.getOperator();
    const size_t n = node.childSize();
    switch (op) {
    case op_function_normal_distribution:
    case op_function_uniform_distribution:
        // A distribution stays as it is, with its parameters evaluated, for random_number.
        if (n != 2)
            return op_bad_number_of_arguments;
        for (size_t i = 0; i < 2; ++i)
            if (!node.operands()[i].checkIsNumber() || node.operands()[i].getOperator() == op_complex)
                return i == 0 ? op_bad_first_argument : op_bad_second_argument;
        return op;
    case op_function_random_seed: {
        if (n == 0) {
            random_seed();
            node = T(0.0);
            return op_real;
        }
        if (n != 1)
            return op_bad_number_of_arguments;
        const double seed = node.operands()[0].getAsDouble();
        if (!node.operands()[0].checkIsNumber() || !(seed >= 0) || seed != std::floor(seed) || seed >= 1.8e19)
            return op_bad_arguments;
        random_seed(static_cast<uint64_t>(seed));
        node = T(seed);
        return op_real;
    }
    case op_function_random_number: {
        // random_number(): uniform in [0, 1]; random_number(distribution [, count]).
        if (n == 0) {
            node = T(randomDouble());
            return op_real;
        }
        if (n > 2)
            return op_bad_number_of_arguments;
        size_t count = 1;
        if (n == 2) {
            const double wanted = node.operands()[1].getAsDouble();
            if (!node.operands()[1].checkIsNumber() || !(wanted >= 1) || wanted != std::floor(wanted))
                return op_bad_second_argument;
            if (wanted > static_cast<double>(mMaximumVectorSize)) {
                this->errorMsg("The maximum vector size has been reached.");
                return op_failed;
            }
            count = static_cast<size_t>(wanted);
        }
        std::vector<double> values(count);
        for (double& value : values)
            if (!drawRandomNumber(node.operands()[0], value))
                return op_bad_first_argument;
        if (n == 1) {
            node = T(values[0]);
            return op_real;
        }
        node.clear();
        node.setOperator(op_real_vector);
        node.doubleValues() = std::move(values);
        return op_real_vector;
    }
    default: return op_bad_arguments;
    }
}

template <class T>
const cInterpolationTable* cBaseExpressionEvaluator<T>::elaborate(T& node, op_type& status)
{
    const op_type op = node.getOperator();
    const size_t n = node.childSize();
    std::vector<double> first, second;
    auto real = [](const T& argument, std::vector<double>& out) {
        cNumbers numbers;
        if (!readNumbers(argument, numbers) || numbers.complex)
            return false;
        for (const auto& value : numbers.values)
            out.push_back(value.real());
        return true;
    };
    status = op_none;
    if (op == op_function_poly) {
        // poly(c0, c1, ..., x) or poly([c0, c1, ...], x): highest power first.
        if (n < 2) {
            status = op_bad_number_of_arguments;
            return nullptr;
        }
        for (size_t i = 0; i + 1 < n; ++i) {
            if (!real(node.operands()[i], first)) {
                status = i == 0 ? op_bad_first_argument : op_bad_arguments;
                return nullptr;
            }
        }
    } else {
        // piecewise_poly(breaks, coefficients, x), interpolate_*(xs, ys, x), extrapolate_*(xs, ys, x).
        if (n != 3) {
            status = op_bad_number_of_arguments;
            return nullptr;
        }
        if (!real(node.operands()[0], first)) {
            status = op_bad_first_argument;
            return nullptr;
        }
        if (!real(node.operands()[1], second)) {
            status = op_bad_second_argument;
            return nullptr;
        }
    }
    std::string error;
    const cInterpolationTable* table = this->prepareInterpolation(op, first, second, error);
    if (!table) {
        this->errorMsg("Bad arguments for \"" + std::string(getFunctionNameOfType(op)) + "\". " + error);
        status = op_failed;
    }
    return table;
}

template <class T>
op_type cBaseExpressionEvaluator<T>::computeElaboration(T& node)
{
    op_type status = op_none;
    const cInterpolationTable* table = elaborate(node, status);
    if (!table)
        return status;
    cNumbers at;
    if (!readNumbers(node.operands().back(), at) || at.complex)
        return node.childSize() == 3 ? op_bad_third_argument : op_bad_arguments;
    cNumbers result;
    result.vector = at.vector;
    for (const auto& x : at.values)
        result.values.emplace_back(std::isnan(x.real()) ? NAN : table->evaluate(x.real()), 0.0);
    writeNumbers(node, result);
    return node.getOperator();
}


}  // namespace vx3
