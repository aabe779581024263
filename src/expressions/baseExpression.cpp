#include "expressions/baseExpression.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vx3::baseExpression {

namespace {

constexpr int kValuePrecedence = 39;

struct cFunctionName {
    std::string_view name;
    op_type op;
};

// Sorted once by name for the look-up of a call's name.
const std::array<cFunctionName, op_last_function - op_first_function - 1>& sortedFunctionNames()
{
    static const auto table = [] {
        std::array<cFunctionName, op_last_function - op_first_function - 1> names{};
        size_t i = 0;
#define ZW_EXPRESSION_FUNCTION_ENTRY(code, text) names[i++] = {text, op_function_##code};
        ZW_EXPRESSION_FUNCTIONS(ZW_EXPRESSION_FUNCTION_ENTRY)
#undef ZW_EXPRESSION_FUNCTION_ENTRY
        std::sort(names.begin(), names.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
        return names;
    }();
    return table;
}

}  // namespace

int getPrecedence(op_type op)
{
    switch (op) {
    case op_multiply_assign: return 1;
    case op_divide_assign: return 2;
    case op_subtract_assign: return 3;
    case op_add_assign: return 4;
    case op_assign: return 5;
    case op_condition: return 6;
    case op_range: return 7;
    case op_logical_or: return 8;
    case op_logical_and: return 9;
    case op_bitwise_or: return 10;
    case op_bitwise_xor: return 11;
    case op_bitwise_and: return 12;
    case op_not_equal: return 13;
    case op_equal: return 14;
    case op_regex_mismatch: return 15;
    case op_regex_match: return 16;
    case op_less_equal: return 17;
    case op_less: return 18;
    case op_greater_equal: return 19;
    case op_greater: return 20;
    case op_shift_left: return 21;
    case op_shift_right: return 22;
    case op_add:
    case op_subtract: return 23;
    case op_multiply: return 24;
    case op_modulo: return 25;
    case op_divide: return 26;
    case op_percent: return 27;
    case op_logical_not: return 28;
    case op_negate: return 29;
    case op_power: return 30;
    case op_pre_increment: return 31;
    case op_post_increment: return 32;
    case op_pre_decrement: return 33;
    case op_post_decrement: return 34;
    case op_dot: return 35;
    case op_arrow: return 36;
    case op_index: return 38;
    default: return kValuePrecedence;
    }
}

bool precedenceIsLeq(op_type a, op_type b)
{
    if (a == op_range && b == op_index)
        return false;
    if (a == op_index && b == op_range)
        return true;
    return getPrecedence(a) <= getPrecedence(b);
}

bool checkIsStatus(op_type op) { return op >= op_failed && op <= op_curves_of_wrong_type; }

bool checkIsBuiltInFunction(op_type op) { return op > op_first_function && op < op_last_function; }

bool checkIsPrefixOperator(op_type op)
{
    return op == op_logical_not || op == op_negate || op == op_bitwise_not || op == op_pre_increment ||
           op == op_pre_decrement;
}

bool checkIsPostfixOperator(op_type op)
{
    return op == op_percent || op == op_post_increment || op == op_post_decrement;
}

bool checkIsBinaryOperator(op_type op)
{
    return op >= op_multiply_assign && op <= op_several_dots && !checkIsPrefixOperator(op) &&
           !checkIsPostfixOperator(op) && op != op_index;
}

bool checkIsNameTerminator(char c)
{
    const auto u = static_cast<unsigned char>(c);
    if (u <= 0x20 || u >= 0x7f)
        return true;
    switch (c) {
    case '"': case '&': case '\'': case '(': case ')': case '*': case '+': case ',': case '-':
    case '/': case '<': case '=': case '>': case '?': case '[': case ']': case '^': case '`':
    case '{': case '|': case '}': case '~':
        return true;
    default:
        return false;
    }
}

op_type stringToOpFunctionType(std::string_view name)
{
    const auto& table = sortedFunctionNames();
    const auto found = std::lower_bound(table.begin(), table.end(), name,
                                        [](const cFunctionName& entry, std::string_view key) { return entry.name < key; });
    return found != table.end() && found->name == name ? found->op : op_none;
}

std::string_view getFunctionNameOfType(op_type op)
{
    switch (op) {
#define ZW_EXPRESSION_FUNCTION_CASE(code, text) \
    case op_function_##code: return text;
        ZW_EXPRESSION_FUNCTIONS(ZW_EXPRESSION_FUNCTION_CASE)
#undef ZW_EXPRESSION_FUNCTION_CASE
    default: return {};
    }
}

std::string_view getOperatorText(op_type op)
{
    switch (op) {
    case op_multiply_assign: return "*=";
    case op_divide_assign: return "/=";
    case op_subtract_assign: return "-=";
    case op_add_assign: return "+=";
    case op_assign: return "=";
    case op_condition: return "?";
    case op_range: return ":";
    case op_logical_or: return "||";
    case op_logical_and: return "&&";
    case op_bitwise_or: return "|";
    case op_bitwise_xor: return "^";
    case op_bitwise_and: return "&";
    case op_not_equal: return "!=";
    case op_equal: return "==";
    case op_regex_mismatch: return "!~";
    case op_regex_match: return "=~";
    case op_less_equal: return "<=";
    case op_less: return "<";
    case op_greater_equal: return ">=";
    case op_greater: return ">";
    case op_shift_left: return "<<";
    case op_shift_right: return ">>";
    case op_add: return "+";
    case op_subtract: return "-";
    case op_multiply: return "*";
    case op_modulo: return "%";
    case op_divide: return "/";
    case op_percent: return "%";
    case op_logical_not: return "!";
    case op_negate: return "-";
    case op_power: return "^";
    case op_pre_increment:
    case op_post_increment: return "++";
    case op_pre_decrement:
    case op_post_decrement: return "--";
    case op_dot: return ".";
    case op_arrow: return "->";
    case op_bitwise_not: return "~";
    case op_several_dots: return "...";
    default: return {};
    }
}

std::string getOpTypeName(op_type op)
{
    static const std::pair<op_type, const char*> names[] = {
        {op_failed, "failed"},
        {op_bad_arguments, "bad arguments"},
        {op_bad_first_argument, "bad first argument"},
        {op_bad_second_argument, "bad second argument"},
        {op_bad_third_argument, "bad third argument"},
        {op_bad_fourth_argument, "bad fourth argument"},
        {op_bad_number_of_arguments, "bad number of arguments"},
        {op_vector_sizes_differ, "vector sizes differ"},
        {op_bad_vector_index, "bad vector index"},
        {op_complex_not_allowed, "complex not allowed"},
        {op_unknown_function, "unknown function"},
        {op_curves_of_wrong_type, "curves of wrong type"},
        {op_none, "none"},
        {op_integer, "integer"},
        {op_real, "real"},
        {op_complex, "complex"},
        {op_real_vector, "real vector"},
        {op_complex_vector, "complex vector"},
        {op_name, "name"},
        {op_quoted_string, "quoted string"},
        {op_round_brackets, "round brackets"},
        {op_square_brackets, "square brackets"},
        {op_curly_brackets, "curly brackets"},
        {op_user_function, "user function"},
        {op_index, "index"},
    };
    for (const auto& [code, name] : names)
        if (code == op)
            return name;
    if (checkIsBuiltInFunction(op))
        return std::string(getFunctionNameOfType(op));
    const std::string_view text = getOperatorText(op);
    return text.empty() ? "unknown" : std::string(text);
}

}  // namespace vx3::baseExpression
