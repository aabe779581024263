// The mathematics of the evaluator on numbers and vectors: the operators and the functions of
// one and two values, element by element.
#include <algorithm>
#include <cmath>
#include <limits>

#include "expressions/cBaseExpressionEvaluator.h"
#include "expressions/cWaveformExpression.h"

namespace vx3 {

using namespace baseExpression;
using baseExpressionEvaluator::tComplex;

namespace {

constexpr double kDegree = 3.141592653589793 / 180.0;

double sgnOf(double x) { return x > 0 ? 1.0 : x < 0 ? -1.0 : 0.0; }

tComplex partwise(tComplex z, double (*f)(double)) { return {f(z.real()), f(z.imag())}; }

// Division by zero is undefined here as in the curve engine: a gap, not an infinity.
double divide(double a, double b) { return b == 0 ? NAN : a / b; }
tComplex divideComplex(tComplex a, tComplex b) { return b == tComplex(0, 0) ? tComplex(NAN, NAN) : a / b; }

double db(double magnitude) { return magnitude >= 1e-300 ? 20.0 * std::log10(magnitude) : -300.0; }

// The complex functions of the standard library, until the project's own complex mathematics
// takes their place.
namespace ops {
#define ZW_COMPLEX_FUNCTION(name) \
    tComplex name(tComplex z) { return std::name(z); }
ZW_COMPLEX_FUNCTION(sin) ZW_COMPLEX_FUNCTION(cos) ZW_COMPLEX_FUNCTION(tan) ZW_COMPLEX_FUNCTION(asin)
ZW_COMPLEX_FUNCTION(acos) ZW_COMPLEX_FUNCTION(atan) ZW_COMPLEX_FUNCTION(sinh) ZW_COMPLEX_FUNCTION(cosh)
ZW_COMPLEX_FUNCTION(tanh) ZW_COMPLEX_FUNCTION(asinh) ZW_COMPLEX_FUNCTION(acosh) ZW_COMPLEX_FUNCTION(atanh)
ZW_COMPLEX_FUNCTION(exp) ZW_COMPLEX_FUNCTION(log) ZW_COMPLEX_FUNCTION(log10) ZW_COMPLEX_FUNCTION(sqrt)
#undef ZW_COMPLEX_FUNCTION
tComplex pow(tComplex a, tComplex b) { return std::pow(a, b); }
}  // namespace ops

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
    cFunctors f;
    known = true;
    auto real = [&f](double (*r)(double), tComplex (*c)(tComplex)) {
        f.real1 = r;
        f.complex1 = c;
    };
    switch (op) {
    case op_function_abs:
    case op_function_mag:
    case op_function_magnitude:
        f.real1 = [](double x) { return std::fabs(x); };
        f.complex1 = [](tComplex z) { return tComplex(std::abs(z), 0); };
        f.complexResultIsReal = true;
        break;
    case op_function_sin: real([](double x) { return std::sin(x); }, ops::sin); break;
    case op_function_cos: real([](double x) { return std::cos(x); }, ops::cos); break;
    case op_function_tan: real([](double x) { return std::tan(x); }, ops::tan); break;
    case op_function_asin: real([](double x) { return std::asin(x); }, ops::asin); break;
    case op_function_acos: real([](double x) { return std::acos(x); }, ops::acos); break;
    case op_function_atan: real([](double x) { return std::atan(x); }, ops::atan); break;
    case op_function_sinh: real([](double x) { return std::sinh(x); }, ops::sinh); break;
    case op_function_cosh: real([](double x) { return std::cosh(x); }, ops::cosh); break;
    case op_function_tanh: real([](double x) { return std::tanh(x); }, ops::tanh); break;
    case op_function_asinh: real([](double x) { return std::asinh(x); }, ops::asinh); break;
    case op_function_acosh: real([](double x) { return std::acosh(x); }, ops::acosh); break;
    case op_function_atanh: real([](double x) { return std::atanh(x); }, ops::atanh); break;
    case op_function_exp: real([](double x) { return std::exp(x); }, ops::exp); break;
    case op_function_ln:
    case op_function_log: real([](double x) { return std::log(x); }, ops::log); break;
    case op_function_log10: real([](double x) { return std::log10(x); }, ops::log10); break;
    case op_function_sqrt: real([](double x) { return std::sqrt(x); }, ops::sqrt); break;
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
        f.real1 = [](double x) { return std::atan2(0.0, x); };
        f.complex1 = [](tComplex z) { return tComplex(std::arg(z), 0); };
        f.complexResultIsReal = true;
        break;
    case op_function_angle:
        f.real1 = [](double x) { return std::atan2(0.0, x) / kDegree; };
        f.complex1 = [](tComplex z) { return tComplex(std::arg(z) / kDegree, 0); };
        f.complexResultIsReal = true;
        break;
    case op_function_floor: real([](double x) { return std::floor(x); }, [](tComplex z) { return partwise(z, std::floor); }); break;
    case op_function_ceil: real([](double x) { return std::ceil(x); }, [](tComplex z) { return partwise(z, std::ceil); }); break;
    case op_function_round: real([](double x) { return std::round(x); }, [](tComplex z) { return partwise(z, std::round); }); break;
    case op_function_trunc: real([](double x) { return std::trunc(x); }, [](tComplex z) { return partwise(z, std::trunc); }); break;
    // Degree forms: the argument in degrees, or the result in degrees.
    case op_function_sind: real([](double x) { return std::sin(x * kDegree); }, [](tComplex z) { return ops::sin(z * kDegree); }); break;
    case op_function_cosd: real([](double x) { return std::cos(x * kDegree); }, [](tComplex z) { return ops::cos(z * kDegree); }); break;
    case op_function_tand: real([](double x) { return std::tan(x * kDegree); }, [](tComplex z) { return ops::tan(z * kDegree); }); break;
    case op_function_sinhd: real([](double x) { return std::sinh(x * kDegree); }, [](tComplex z) { return ops::sinh(z * kDegree); }); break;
    case op_function_coshd: real([](double x) { return std::cosh(x * kDegree); }, [](tComplex z) { return ops::cosh(z * kDegree); }); break;
    case op_function_tanhd: real([](double x) { return std::tanh(x * kDegree); }, [](tComplex z) { return ops::tanh(z * kDegree); }); break;
    case op_function_asind: real([](double x) { return std::asin(x) / kDegree; }, [](tComplex z) { return ops::asin(z) / kDegree; }); break;
    case op_function_acosd: real([](double x) { return std::acos(x) / kDegree; }, [](tComplex z) { return ops::acos(z) / kDegree; }); break;
    case op_function_atand: real([](double x) { return std::atan(x) / kDegree; }, [](tComplex z) { return ops::atan(z) / kDegree; }); break;
    case op_function_asinhd: real([](double x) { return std::asinh(x) / kDegree; }, [](tComplex z) { return ops::asinh(z) / kDegree; }); break;
    case op_function_acoshd: real([](double x) { return std::acosh(x) / kDegree; }, [](tComplex z) { return ops::acosh(z) / kDegree; }); break;
    case op_function_atanhd: real([](double x) { return std::atanh(x) / kDegree; }, [](tComplex z) { return ops::atanh(z) / kDegree; }); break;
    case op_function_db:
        f.real1 = [](double x) { return db(std::fabs(x)); };
        f.complex1 = [](tComplex z) { return tComplex(db(std::abs(z)), 0); };
        f.complexResultIsReal = true;
        break;
    case op_function_sign: f.real1 = [](double x) { return x >= 0 ? 1.0 : -1.0; }; break;
    case op_function_sgn: f.real1 = sgnOf; break;
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
        f.real2 = [](double a, double b) { return std::pow(a, b); };
        f.complex2 = [](tComplex a, tComplex b) { return ops::pow(a, b); };
        break;
    case op_function_pwr:
        // The magnitude to the power, with the sign of the base: an odd power of a signal.
        f.real2 = [](double a, double b) { return a < 0 ? -std::pow(-a, b) : std::pow(a, b); };
        break;
    case op_function_sign:
        f.real2 = [](double a, double b) { return b >= 0 ? std::fabs(a) : -std::fabs(a); };
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

template class cBaseExpressionEvaluator<cWaveformExpression>;

}  // namespace vx3
