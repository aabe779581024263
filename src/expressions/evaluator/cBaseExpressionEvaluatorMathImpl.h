// The mathematics of the evaluator on numbers and vectors: the operators and the functions of
// one and two values, element by element.
// (Included by cBaseExpressionEvaluator.cpp, the one place where the template is instantiated.)
#pragma once
#include <algorithm>
#include <cmath>
#include <limits>

#include "expressions/evaluator/cBaseExpressionEvaluator.h"
#include "expressions/cWaveformExpression.h"
#include "expressions/vxBasicOperators.h"

namespace vx3 {

using namespace baseExpression;
using baseExpressionEvaluator::tComplex;

namespace {


// Division by zero is undefined here as in the curve engine: a gap, not an infinity.
double divide(double a, double b) { return b == 0 ? NAN : a / b; }
tComplex divideComplex(tComplex a, tComplex b) { return b == tComplex(0, 0) ? tComplex(NAN, NAN) : a / b; }


}  // namespace

template <class T>
bool cBaseExpressionEvaluator<T>::readNumbers(const T& node, cNumbers& numbers)
{
    numbers = cNumbers();
    const auto& values = node.doubleValues();
    switch (node.getOperator()) {
    case op_integer:
    case op_real:
        if (values.empty())
            return false;
        numbers.values.emplace_back(values[0], 0.0);
        numbers.integer = node.getOperator() == op_integer;
        return true;
    case op_complex:
        if (values.size() < 2)
            return false;
        numbers.values.emplace_back(values[0], values[1]);
        numbers.complex = true;
        return true;
    case op_real_vector:
        numbers.vector = true;
        numbers.values.reserve(values.size());
        for (double value : values)
            numbers.values.emplace_back(value, 0.0);
        return true;
    case op_complex_vector:
        numbers.vector = numbers.complex = true;
        for (size_t i = 0; i + 1 < values.size(); i += 2)
            numbers.values.emplace_back(values[i], values[i + 1]);
        return true;
    default: return false;
    }
}

template <class T>
void cBaseExpressionEvaluator<T>::writeNumbers(T& node, const cNumbers& numbers)
{
    node.clear();
    if (numbers.vector) {
        node.setOperator(numbers.complex ? op_complex_vector : op_real_vector);
    } else {
        node.setOperator(numbers.complex ? op_complex : numbers.integer ? op_integer : op_real);
    }
    auto& values = node.doubleValues();
    values.reserve(numbers.values.size() * (numbers.complex ? 2 : 1));
    for (const tComplex& value : numbers.values) {
        values.push_back(value.real());
        if (numbers.complex)
            values.push_back(value.imag());
    }
}

template <class T>
typename cBaseExpressionEvaluator<T>::cFunctors cBaseExpressionEvaluator<T>::getUnaryFunctors(op_type op, bool& known)
{
    namespace ops = vxBasicOperators;
    cFunctors f;
    known = true;
    auto real = [&f](std::function<double(double)> r, std::function<tComplex(tComplex)> c) {
        f.real1 = std::move(r);
        f.complex1 = std::move(c);
    };
    switch (op) {
    case op_function_abs:
    case op_function_mag:
    case op_function_magnitude:
        f.real1 = [](double x) { return std::fabs(x); };
        f.complex1 = [](tComplex z) { return tComplex(std::abs(z), 0); };
        f.complexResultIsReal = true;
        break;
    case op_function_sin: real([](double x) { return std::sin(x); }, [](tComplex z) { return ops::sin(z); }); break;
    case op_function_cos: real([](double x) { return std::cos(x); }, [](tComplex z) { return ops::cos(z); }); break;
    case op_function_tan: real([](double x) { return std::tan(x); }, [](tComplex z) { return ops::tan(z); }); break;
    case op_function_asin: real([](double x) { return std::asin(x); }, [](tComplex z) { return ops::asin(z); }); break;
    case op_function_acos: real([](double x) { return std::acos(x); }, [](tComplex z) { return ops::acos(z); }); break;
    case op_function_atan: real([](double x) { return std::atan(x); }, [](tComplex z) { return ops::atan(z); }); break;
    case op_function_sinh: real([](double x) { return std::sinh(x); }, [](tComplex z) { return ops::sinh(z); }); break;
    case op_function_cosh: real([](double x) { return std::cosh(x); }, [](tComplex z) { return ops::cosh(z); }); break;
    case op_function_tanh: real([](double x) { return std::tanh(x); }, [](tComplex z) { return ops::tanh(z); }); break;
    case op_function_asinh: real([](double x) { return ops::asinh(x); }, [](tComplex z) { return ops::asinh(z); }); break;
    case op_function_acosh: real([](double x) { return ops::acosh(x); }, [](tComplex z) { return ops::acosh(z); }); break;
    case op_function_atanh: real([](double x) { return ops::atanh(x); }, [](tComplex z) { return ops::atanh(z); }); break;
    case op_function_exp: real([](double x) { return std::exp(x); }, [](tComplex z) { return ops::exp(z); }); break;
    case op_function_ln:
    case op_function_log: real([](double x) { return std::log(x); }, [](tComplex z) { return ops::log(z); }); break;
    case op_function_log10: real([](double x) { return std::log10(x); }, [](tComplex z) { return ops::log10(z); }); break;
    case op_function_sqrt: real([](double x) { return std::sqrt(x); }, [](tComplex z) { return ops::sqrt(z); }); break;
    case op_function_real:
        f.real1 = [](double x) { return x; };
        f.complex1 = [](tComplex z) { return tComplex(z.real(), 0); };
        f.complexResultIsReal = true;
        break;
    case op_function_imag:
        f.real1 = [](double) { return 0.0; };
        f.complex1 = [](tComplex z) { return tComplex(z.imag(), 0); };
        f.complexResultIsReal = true;
        break;
    case op_function_conj:
        f.real1 = [](double x) { return x; };
        f.complex1 = [](tComplex z) { return std::conj(z); };
        break;
    case op_function_phase:
    case op_function_arg:
    case op_function_argument:
        f.real1 = [](double x) { return ops::phase(x); };
        f.complex1 = [](tComplex z) { return tComplex(ops::phase(z), 0); };
        f.complexResultIsReal = true;
        break;
    case op_function_angle:
        f.real1 = [](double x) { return ops::angle(x); };
        f.complex1 = [](tComplex z) { return tComplex(ops::angle(z), 0); };
        f.complexResultIsReal = true;
        break;
    case op_function_floor: f.real1 = [](double x) { return std::floor(x); }; break;
    case op_function_ceil: f.real1 = [](double x) { return std::ceil(x); }; break;
    case op_function_round: f.real1 = [](double x) { return std::round(x); }; break;
    case op_function_trunc: f.real1 = [](double x) { return std::trunc(x); }; break;
    // Degree forms: the argument in degrees, or the result in degrees.
    case op_function_sind: real([](double x) { return ops::sind(x); }, [](tComplex z) { return ops::sind(z); }); break;
    case op_function_cosd: real([](double x) { return ops::cosd(x); }, [](tComplex z) { return ops::cosd(z); }); break;
    case op_function_tand: real([](double x) { return ops::tand(x); }, [](tComplex z) { return ops::tand(z); }); break;
    case op_function_sinhd: real([](double x) { return ops::sinhd(x); }, [](tComplex z) { return ops::sinhd(z); }); break;
    case op_function_coshd: real([](double x) { return ops::coshd(x); }, [](tComplex z) { return ops::coshd(z); }); break;
    case op_function_tanhd: real([](double x) { return ops::tanhd(x); }, [](tComplex z) { return ops::tanhd(z); }); break;
    case op_function_asind: real([](double x) { return ops::asind(x); }, [](tComplex z) { return ops::asind(z); }); break;
    case op_function_acosd: real([](double x) { return ops::acosd(x); }, [](tComplex z) { return ops::acosd(z); }); break;
    case op_function_atand: real([](double x) { return ops::atand(x); }, [](tComplex z) { return ops::atand(z); }); break;
    case op_function_asinhd: real([](double x) { return ops::asinhd(x); }, [](tComplex z) { return ops::asinhd(z); }); break;
    case op_function_acoshd: real([](double x) { return ops::acoshd(x); }, [](tComplex z) { return ops::acoshd(z); }); break;
    case op_function_atanhd: real([](double x) { return ops::atanhd(x); }, [](tComplex z) { return ops::atanhd(z); }); break;
    case op_function_db:
        f.real1 = [](double x) { return ops::db(x); };
        f.complex1 = [](tComplex z) { return tComplex(ops::db(z), 0); };
        f.complexResultIsReal = true;
        break;
    case op_function_sign: f.real1 = [](double x) { return ops::sign(x); }; break;
    case op_function_sgn: f.real1 = [](double x) { return ops::sgn(x); }; break;
    case op_negate: real([](double x) { return -x; }, [](tComplex z) { return -z; }); break;
    case op_percent: real([](double x) { return x / 100.0; }, [](tComplex z) { return z / 100.0; }); break;
    case op_logical_not: f.real1 = [](double x) { return x != 0 ? 0.0 : 1.0; }; break;
    case op_bitwise_not:
        f.real1 = [](double x) {
            return std::fabs(x) < 9e15 ? static_cast<double>(~static_cast<int64_t>(x)) : NAN;
        };
        break;
    default: known = false; break;
    }
    return f;
}

template <class T>
typename cBaseExpressionEvaluator<T>::cFunctors cBaseExpressionEvaluator<T>::getBinaryFunctors(op_type op, bool& known)
{
    cFunctors f;
    known = true;
    auto truth = [](bool value) { return value ? 1.0 : 0.0; };
    auto integer = [](double x) { return static_cast<int64_t>(x); };
    switch (op) {
    case op_add:
        f.real2 = [](double a, double b) { return a + b; };
        f.complex2 = [](tComplex a, tComplex b) { return a + b; };
        break;
    case op_subtract:
        f.real2 = [](double a, double b) { return a - b; };
        f.complex2 = [](tComplex a, tComplex b) { return a - b; };
        break;
    case op_multiply:
        f.real2 = [](double a, double b) { return a * b; };
        f.complex2 = [](tComplex a, tComplex b) { return a * b; };
        break;
    case op_divide:
        f.real2 = divide;
        f.complex2 = divideComplex;
        break;
    case op_power:
    case op_function_power:
    case op_function_pow:
        f.real2 = [](double a, double b) { return vxBasicOperators::pow(a, b); };
        f.complex2 = [](tComplex a, tComplex b) { return vxBasicOperators::pow(a, b); };
        break;
    case op_function_pwr:
        // The magnitude to the power, with the sign of the base: an odd power of a signal.
        f.real2 = [](double a, double b) { return vxBasicOperators::pwr(a, b); };
        break;
    case op_function_sign:
        f.real2 = [](double a, double b) { return vxBasicOperators::sign(a, b); };
        break;
    case op_equal:
        f.real2 = [truth](double a, double b) { return truth(a == b); };
        f.complex2 = [truth](tComplex a, tComplex b) { return tComplex(truth(a == b), 0); };
        f.complexResultIsReal = true;
        break;
    case op_not_equal:
        f.real2 = [truth](double a, double b) { return truth(a != b); };
        f.complex2 = [truth](tComplex a, tComplex b) { return tComplex(truth(a != b), 0); };
        f.complexResultIsReal = true;
        break;
    case op_less: f.real2 = [truth](double a, double b) { return truth(a < b); }; break;
    case op_less_equal: f.real2 = [truth](double a, double b) { return truth(a <= b); }; break;
    case op_greater: f.real2 = [truth](double a, double b) { return truth(a > b); }; break;
    case op_greater_equal: f.real2 = [truth](double a, double b) { return truth(a >= b); }; break;
    case op_logical_and: f.real2 = [truth](double a, double b) { return truth(a != 0 && b != 0); }; break;
    case op_logical_or: f.real2 = [truth](double a, double b) { return truth(a != 0 || b != 0); }; break;
    case op_bitwise_and:
        f.real2 = [integer](double a, double b) { return static_cast<double>(integer(a) & integer(b)); };
        break;
    case op_bitwise_or:
        f.real2 = [integer](double a, double b) { return static_cast<double>(integer(a) | integer(b)); };
        break;
    case op_function_min: f.real2 = [](double a, double b) { return std::min(a, b); }; break;
    case op_function_max: f.real2 = [](double a, double b) { return std::max(a, b); }; break;
    default: known = false; break;
    }
    return f;
}

template <class T>
op_type cBaseExpressionEvaluator<T>::evalEx2(T& node, const cFunctors& functors)
{
    if (node.childSize() != 2)
        return op_bad_number_of_arguments;
    cNumbers a, b;
    if (!readNumbers(node.operands()[0], a))
        return op_bad_first_argument;
    if (!readNumbers(node.operands()[1], b))
        return op_bad_second_argument;
    if (a.vector && b.vector && a.size() != b.size())
        return op_vector_sizes_differ;
    const bool complex = a.complex || b.complex;
    if (complex && !functors.complex2)
        return op_complex_not_allowed;
    cNumbers result;
    result.vector = a.vector || b.vector;
    result.complex = complex && !functors.complexResultIsReal;
    const size_t n = a.vector ? a.size() : b.size();
    result.values.resize(n);
    bool whole = a.integer && b.integer;
    for (size_t i = 0; i < n; ++i) {
        const tComplex va = a.at(i), vb = b.at(i);
        if (std::isnan(va.real()) || std::isnan(va.imag()) || std::isnan(vb.real()) || std::isnan(vb.imag())) {
            result.values[i] = tComplex(NAN, complex ? NAN : 0.0);
            whole = false;
            continue;
        }
        result.values[i] = complex ? functors.complex2(va, vb) : tComplex(functors.real2(va.real(), vb.real()), 0);
        whole = whole && result.values[i].real() == std::trunc(result.values[i].real());
    }
    result.integer = whole && !result.complex;
    writeNumbers(node, result);
    return node.getOperator();
}

template <class T>
op_type cBaseExpressionEvaluator<T>::evalEx0(T& node, const cFunctors& functors)
{
    if (node.childSize() != 1)
        return op_bad_number_of_arguments;
    cNumbers a;
    if (!readNumbers(node.operands()[0], a))
        return op_bad_arguments;
    if (a.complex && !functors.complex1)
        return op_complex_not_allowed;
    cNumbers result = a;
    result.integer = false;
    result.complex = a.complex && !functors.complexResultIsReal;
    for (auto& value : result.values) {
        if (std::isnan(value.real()) || std::isnan(value.imag())) {
            value = tComplex(NAN, result.complex ? NAN : 0.0);
            continue;
        }
        value = a.complex ? functors.complex1(value) : tComplex(functors.real1(value.real()), 0);
    }
    writeNumbers(node, result);
    return node.getOperator();
}

template <class T>
op_type cBaseExpressionEvaluator<T>::evalExN(T& node, bool maximum)
{
    if (node.childSize() == 0)
        return op_bad_number_of_arguments;
    double best = NAN;
    bool any = false;
    for (size_t k = 0; k < node.childSize(); ++k) {
        cNumbers numbers;
        if (!readNumbers(node.operands()[k], numbers))
            return node.childSize() == 1 ? op_bad_arguments : k == 0 ? op_bad_first_argument : op_bad_arguments;
        if (numbers.complex)
            return op_complex_not_allowed;
        for (const auto& value : numbers.values) {
            // Undefined values are left out: the extreme of what is defined.
            if (std::isnan(value.real()))
                continue;
            if (!any || (maximum ? value.real() > best : value.real() < best))
                best = value.real();
            any = true;
        }
    }
    node = T(best);
    return op_real;
}

template <class T>
op_type cBaseExpressionEvaluator<T>::computeBitOfNumber(T& node)
{
    if (node.childSize() != 2)
        return op_bad_number_of_arguments;
    const T& value = node.operands()[0];
    const T& bit = node.operands()[1];
    if (value.getOperator() == op_complex || !value.checkIsNumber())
        return op_bad_first_argument;
    const double v = value.getAsDouble(), n = bit.getAsDouble();
    if (!bit.checkIsNumber() || !(n >= 0) || n > 63 || n != std::floor(n))
        return op_bad_second_argument;
    if (!(std::fabs(v) < 9.2e18) || v != std::floor(v))
        return op_bad_first_argument;
    const auto integer = static_cast<uint64_t>(static_cast<int64_t>(v));
    node = T(static_cast<double>((integer >> static_cast<unsigned>(n)) & 1u));
    node.setOperator(op_integer);
    return op_integer;
}

template <class T>
op_type cBaseExpressionEvaluator<T>::computeSize(T& node)
{
    if (node.childSize() != 1)
        return op_bad_number_of_arguments;
    const T& value = node.operands()[0];
    size_t size = 0;
    if (value.checkIsNumber() || value.checkIsVector())
        size = value.size();
    else if (value.getOperator() == op_quoted_string)
        size = getStringOf(value).size();
    else
        return op_bad_arguments;
    node = T(static_cast<double>(size));
    node.setOperator(op_integer);
    return op_integer;
}

template <class T>
op_type cBaseExpressionEvaluator<T>::computeSimplify(T& node)
{
    if (node.childSize() != 1)
        return op_bad_number_of_arguments;
    T value = std::move(node.operands()[0]);
    if (!value.checkIsNumber() && !value.checkIsVector())
        return op_bad_arguments;
    if (value.getOperator() == op_complex || value.getOperator() == op_complex_vector) {
        bool real = true;
        for (size_t i = 1; i < value.doubleValues().size(); i += 2)
            real = real && value.doubleValues()[i] == 0;
        if (real)
            value.convertComplexToDouble();
    }
    node = std::move(value);
    return node.getOperator();
}

template <class T>
op_type cBaseExpressionEvaluator<T>::defineVectorRange(T& node, double from, double step, double to)
{
    if (!std::isfinite(from) || !std::isfinite(step) || !std::isfinite(to) || step == 0)
        return op_bad_arguments;
    const double count = std::floor((to - from) / step + 1e-9) + 1;
    if (count < 0 || !std::isfinite(count))
        return op_bad_arguments;
    if (count > static_cast<double>(mMaximumVectorSize)) {
        this->errorMsg("The maximum vector size has been reached.");
        return op_failed;
    }
    node.clear();
    node.setOperator(op_real_vector);
    const auto n = static_cast<size_t>(count);
    for (size_t i = 0; i < n; ++i)
        node.pushDoubleValues(from + static_cast<double>(i) * step);
    return op_real_vector;
}


}  // namespace vx3
