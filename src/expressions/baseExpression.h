// The kinds of expression tree nodes, their operators and built-in functions, and the statuses that
// the evaluation returns: one enumeration, so that a node kind, an operator to apply and the result
// of applying it are the same type.
#pragma once

#include <string>
#include <string_view>

namespace vx3 {

// The built-in functions, in the order of their table. X(code name, text the user writes).
#define ZW_EXPRESSION_FUNCTIONS(X)                                                                          \
    X(abs, "abs") X(mag, "mag") X(magnitude, "magnitude") X(sin, "sin") X(cos, "cos") X(tan, "tan")        \
    X(asin, "asin") X(acos, "acos") X(atan, "atan") X(sinh, "sinh") X(cosh, "cosh") X(tanh, "tanh")        \
    X(asinh, "asinh") X(acosh, "acosh") X(atanh, "atanh") X(exp, "exp") X(ln, "ln") X(log, "log")          \
    X(log10, "log10") X(sqrt, "sqrt") X(real, "real") X(imag, "imag") X(conj, "conj") X(phase, "phase")    \
    X(arg, "arg") X(argument, "argument") X(angle, "angle") X(floor, "floor") X(ceil, "ceil")              \
    X(round, "round") X(trunc, "trunc") X(sind, "sind") X(cosd, "cosd") X(tand, "tand")                   \
    X(sinhd, "sinhd") X(coshd, "coshd") X(tanhd, "tanhd") X(asind, "asind") X(acosd, "acosd")             \
    X(atand, "atand") X(asinhd, "asinhd") X(acoshd, "acoshd") X(atanhd, "atanhd") X(db, "db")             \
    X(sign, "sign") X(sgn, "sgn") X(pow, "pow") X(power, "power") X(pwr, "pwr") X(min, "min")             \
    X(max, "max") X(bit, "bit") X(size, "size") X(vector, "vector") X(simplify, "simplify")               \
    X(strcmp, "strcmp") X(strncmp, "strncmp") X(derivative, "derivative")                                 \
    X(derivative_forward, "derivative_forward") X(derivative_backward, "derivative_backward")             \
    X(derivative_centered, "derivative_centered") X(integral, "integral")                                 \
    X(integral_trapez, "integral_trapez") X(average, "average") X(avg, "avg")                             \
    X(estimate_average_value, "estimate_average_value") X(apply_window_function, "apply_window_function") \
    X(estimate_frequency, "estimate_frequency") X(duty_cycle, "duty_cycle")                               \
    X(average_slew_rate, "average_slew_rate") X(min_slew_rate, "min_slew_rate")                           \
    X(max_slew_rate, "max_slew_rate") X(average_rise_time, "average_rise_time")                           \
    X(min_rise_time, "min_rise_time") X(max_rise_time, "max_rise_time")                                   \
    X(average_fall_time, "average_fall_time") X(min_fall_time, "min_fall_time")                           \
    X(max_fall_time, "max_fall_time") X(maximum_value, "maximum_value") X(minimum_value, "minimum_value") \
    X(maximum_x_value, "maximum_x_value") X(minimum_x_value, "minimum_x_value")                           \
    X(convert_to_step_function, "convert_to_step_function") X(smooth_average, "smooth_average")           \
    X(smooth_sgolay, "smooth_sgolay") X(fft, "fft") X(ifft, "ifft") X(fftshift, "fftshift")               \
    X(ifftshift, "ifftshift") X(bartlett, "bartlett") X(blackman, "blackman")                             \
    X(blackman_periodic, "blackman_periodic") X(hamming, "hamming") X(hamming_periodic, "hamming_periodic") \
    X(hann, "hann") X(hann_periodic, "hann_periodic") X(triang, "triang") X(kaiser, "kaiser")             \
    X(random_seed, "random_seed") X(random_number, "random_number")                                       \
    X(normal_distribution, "normal_distribution") X(uniform_distribution, "uniform_distribution")         \
    X(poly, "poly") X(piecewise_poly, "piecewise_poly") X(interpolate_poly, "interpolate_poly")           \
    X(interpolate_linear, "interpolate_linear") X(interpolate_spline, "interpolate_spline")               \
    X(extrapolate_poly, "extrapolate_poly") X(extrapolate_linear, "extrapolate_linear")                   \
    X(extrapolate_spline, "extrapolate_spline")

namespace baseExpression {

enum op_type : int {
    // Statuses of an evaluation. Each is reported once and then becomes op_failed.
    op_failed = 0,
    op_bad_arguments,
    op_bad_first_argument,
    op_bad_second_argument,
    op_bad_third_argument,
    op_bad_fourth_argument,
    op_bad_number_of_arguments,
    op_vector_sizes_differ,
    op_bad_vector_index,
    op_complex_not_allowed,
    op_unknown_function,
    op_curves_of_wrong_type,

    // An empty node.
    op_none,

    // Values and lists.
    op_integer,
    op_real,
    op_complex,
    op_real_vector,
    op_complex_vector,
    op_name,
    op_quoted_string,
    op_round_brackets,
    op_square_brackets,
    op_curly_brackets,
    op_user_function,

    // Operators.
    op_multiply_assign,
    op_divide_assign,
    op_subtract_assign,
    op_add_assign,
    op_assign,
    op_condition,
    op_range,
    op_logical_or,
    op_logical_and,
    op_bitwise_or,
    op_bitwise_xor,
    op_bitwise_and,
    op_not_equal,
    op_equal,
    op_regex_mismatch,
    op_regex_match,
    op_less_equal,
    op_less,
    op_greater_equal,
    op_greater,
    op_shift_left,
    op_shift_right,
    op_add,
    op_subtract,
    op_multiply,
    op_modulo,
    op_divide,
    op_percent,
    op_logical_not,
    op_negate,
    op_power,
    op_pre_increment,
    op_post_increment,
    op_pre_decrement,
    op_post_decrement,
    op_dot,
    op_arrow,
    op_index,
    op_bitwise_not,
    op_several_dots,

    // Built-in functions: op_function_<name>.
    op_first_function,
#define ZW_EXPRESSION_FUNCTION_ENUM(code, text) op_function_##code,
    ZW_EXPRESSION_FUNCTIONS(ZW_EXPRESSION_FUNCTION_ENUM)
#undef ZW_EXPRESSION_FUNCTION_ENUM
    op_last_function
};

// Binding strength: a higher number binds tighter. Values, brackets and calls are 39.
int getPrecedence(op_type op);
// precedence(a) <= precedence(b), except that a range never gives way to an index and an index
// always gives way to a range, so that "x[1:2]" indexes with the range.
bool precedenceIsLeq(op_type a, op_type b);

bool checkIsStatus(op_type op);
bool checkIsBuiltInFunction(op_type op);
bool checkIsPrefixOperator(op_type op);
bool checkIsPostfixOperator(op_type op);
// Operators written between two operands.
bool checkIsBinaryOperator(op_type op);

// Characters that end a name (blanks, operators, brackets, quotes, anything outside printable
// ASCII). A single ":" ends a name too, "::" doesn't: that is the scanner's business.
bool checkIsNameTerminator(char c);

// The built-in function of a name (case-sensitive); op_none for other names.
op_type stringToOpFunctionType(std::string_view name);
// The name of a built-in function; empty for other kinds.
std::string_view getFunctionNameOfType(op_type op);
// The text of an operator as it is printed ("+", "!=", "^", "%"); empty for other kinds.
std::string_view getOperatorText(op_type op);
// A name for messages and dumps of every kind ("real", "name", "add", "sin", "bad arguments").
std::string getOpTypeName(op_type op);

}  // namespace baseExpression
}  // namespace vx3
