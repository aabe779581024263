#include "expressions/cExpressionDerivative.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

namespace vx3 {

namespace {
using namespace baseExpression;
using cNode = cWaveformExpression;

// Deeper trees (thousands of chained operators) are left to the numeric derivative rather than
// risking the stack.
constexpr size_t kMaximumDepth = 2000;

bool getNumber(const cNode& node, double& value)
{
    if ((node.getOperator() != op_real && node.getOperator() != op_integer) || node.doubleSize() != 1)
        return false;
    value = node.doubleValues()[0];
    return true;
}

bool checkIsNumber(const cNode& node, double wanted)
{
    double value;
    return getNumber(node, value) && value == wanted;
}

bool checkIsZero(const cNode& node)
{
    if (checkIsNumber(node, 0))
        return true;
    if (node.getOperator() == op_complex || node.checkIsVector())
        return !node.doubleValues().empty() &&
               std::all_of(node.doubleValues().begin(), node.doubleValues().end(), [](double v) { return v == 0; });
    return false;
}

// Numbers that fold give a number only when the result is an ordinary one.
bool fold(const cNode& a, const cNode& b, double (*op)(double, double), cNode& result)
{
    double x, y;
    if (!getNumber(a, x) || !getNumber(b, y))
        return false;
    const double value = op(x, y);
    if (!std::isfinite(value))
        return false;
    result = cNode(value);
    return true;
}

cNode makeNegate(cNode a)
{
    double value;
    if (getNumber(a, value))
        return cNode(-value);
    if (a.getOperator() == op_negate && a.childSize() == 1) {
        cNode inner = std::move(a.operands()[0]);
        return inner;
    }
    return cNode(op_negate, std::move(a));
}

cNode makeAdd(cNode a, cNode b)
{
    cNode folded;
    if (fold(a, b, [](double x, double y) { return x + y; }, folded))
        return folded;
    if (checkIsZero(a))
        return b;
    if (checkIsZero(b))
        return a;
    double value;
    if (getNumber(b, value) && value < 0)
        return cNode(op_subtract, std::move(a), cNode(-value));
    if (b.getOperator() == op_negate && b.childSize() == 1)
        return cNode(op_subtract, std::move(a), std::move(b.operands()[0]));
    return cNode(op_add, std::move(a), std::move(b));
}

cNode makeSubtract(cNode a, cNode b)
{
    cNode folded;
    if (fold(a, b, [](double x, double y) { return x - y; }, folded))
        return folded;
    if (checkIsZero(b))
        return a;
    if (checkIsZero(a))
        return makeNegate(std::move(b));
    double value;
    if (getNumber(b, value) && value < 0)
        return cNode(op_add, std::move(a), cNode(-value));
    if (b.getOperator() == op_negate && b.childSize() == 1)
        return cNode(op_add, std::move(a), std::move(b.operands()[0]));
    return cNode(op_subtract, std::move(a), std::move(b));
}

cNode makeMultiply(cNode a, cNode b)
{
    cNode folded;
    if (fold(a, b, [](double x, double y) { return x * y; }, folded))
        return folded;
    if (checkIsZero(a) || checkIsZero(b))
        return cNode(0.0);
    if (checkIsNumber(a, 1))
        return b;
    if (checkIsNumber(b, 1))
        return a;
    if (checkIsNumber(a, -1))
        return makeNegate(std::move(b));
    if (checkIsNumber(b, -1))
        return makeNegate(std::move(a));
    // A number goes in front: "2*x", not "x*2".
    double value;
    if (getNumber(b, value) && !getNumber(a, value))
        return cNode(op_multiply, std::move(b), std::move(a));
    return cNode(op_multiply, std::move(a), std::move(b));
}

cNode makeDivide(cNode a, cNode b)
{
    cNode folded;
    if (fold(a, b, [](double x, double y) { return x / y; }, folded))
        return folded;
    if (checkIsZero(a))
        return cNode(0.0);
    if (checkIsNumber(b, 1))
        return a;
    return cNode(op_divide, std::move(a), std::move(b));
}

cNode makePower(cNode a, cNode b)
{
    cNode folded;
    if (fold(a, b, [](double x, double y) { return std::pow(x, y); }, folded))
        return folded;
    if (checkIsNumber(b, 1))
        return a;
    if (checkIsNumber(b, 0))
        return cNode(1.0);
    return cNode(op_power, std::move(a), std::move(b));
}

cNode makeCall(op_type function, cNode argument) { return cNode(function, std::move(argument)); }

// u^2 in the rules of the inverse functions.
cNode square(const cNode& u) { return makePower(u, cNode(2.0)); }

constexpr double kRadiansPerDegree = std::numbers::pi / 180;
constexpr double kDegreesPerRadian = 180 / std::numbers::pi;

std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}
}  // namespace

cExpressionDerivative::cExpressionDerivative(std::string variable, bool caseSensitive)
    : mVariable(caseSensitive ? std::move(variable) : lowered(std::move(variable))), mCaseSensitive(caseSensitive)
{
}

bool cExpressionDerivative::checkIsVariable(const cNode& node) const
{
    if (node.getOperator() != op_name || node.stringValues().empty())
        return false;
    const std::string& name = node.stringValues()[0];
    return mCaseSensitive ? name == mVariable : lowered(name) == mVariable;
}

bool cExpressionDerivative::checkDependsOnVariable(const cNode& expression) const
{
    std::vector<const cNode*> work{&expression};
    while (!work.empty()) {
        const cNode* node = work.back();
        work.pop_back();
        if (checkIsVariable(*node))
            return true;
        for (const auto& child : node->operands())
            work.push_back(&child);
    }
    return false;
}

bool cExpressionDerivative::computeDerivative(const cNode& expression, cNode& result) const
{
    return derive(expression, result, 0);
}

bool cExpressionDerivative::derive(const cNode& node, cNode& result, size_t depth) const
{
    if (depth > kMaximumDepth)
        return false;
    if (!checkDependsOnVariable(node)) {
        // Constants: numbers, vectors, other names, and any subtree without the variable. Strings
        // and statuses have no derivative at all.
        if (node.getOperator() == op_quoted_string || checkIsStatus(node.getOperator()))
            return false;
        result = cNode(0.0);
        return true;
    }
    const auto& operands = node.operands();
    cNode da, db;
    switch (node.getOperator()) {
    case op_name:
        result = cNode(1.0);
        return true;
    case op_round_brackets:
        return operands.size() == 1 && derive(operands[0], result, depth + 1);
    case op_negate:
        if (operands.size() != 1 || !derive(operands[0], da, depth + 1))
            return false;
        result = makeNegate(std::move(da));
        return true;
    case op_percent:
        if (operands.size() != 1 || !derive(operands[0], da, depth + 1))
            return false;
        result = makeDivide(std::move(da), cNode(100.0));
        return true;
    case op_add:
    case op_subtract:
        if (operands.size() != 2 || !derive(operands[0], da, depth + 1) || !derive(operands[1], db, depth + 1))
            return false;
        result = node.getOperator() == op_add ? makeAdd(std::move(da), std::move(db))
                                              : makeSubtract(std::move(da), std::move(db));
        return true;
    case op_multiply:
        if (operands.size() != 2 || !derive(operands[0], da, depth + 1) || !derive(operands[1], db, depth + 1))
            return false;
        result = makeAdd(makeMultiply(std::move(da), operands[1]), makeMultiply(operands[0], std::move(db)));
        return true;
    case op_divide:
        if (operands.size() != 2 || !derive(operands[0], da, depth + 1) || !derive(operands[1], db, depth + 1))
            return false;
        if (checkIsZero(db)) {
            result = makeDivide(std::move(da), operands[1]);
        } else {
            // (a'b - ab') / b^2
            result = makeDivide(makeSubtract(makeMultiply(std::move(da), operands[1]),
                                             makeMultiply(operands[0], std::move(db))),
                                square(operands[1]));
        }
        return true;
    case op_power:
        return operands.size() == 2 && derivePower(operands[0], operands[1], result, depth);
    default:
        if (checkIsBuiltInFunction(node.getOperator()))
            return deriveFunction(node, result, depth);
        return false;
    }
}

bool cExpressionDerivative::derivePower(const cNode& a, const cNode& b, cNode& result, size_t depth) const
{
    cNode da, db;
    if (!derive(a, da, depth + 1) || !derive(b, db, depth + 1))
        return false;
    if (checkIsZero(db)) {
        // b a^(b-1) a'
        result = makeMultiply(makeMultiply(b, makePower(a, makeSubtract(b, cNode(1.0)))), std::move(da));
        return true;
    }
    double base;
    cNode logarithm = getNumber(a, base) ? cNode(std::log(base)) : makeCall(op_function_ln, a);
    if (checkIsZero(da)) {
        // a^b ln(a) b'
        result = makeMultiply(makeMultiply(makePower(a, b), std::move(logarithm)), std::move(db));
        return true;
    }
    // a^b (b' ln(a) + b a' / a)
    result = makeMultiply(makePower(a, b), makeAdd(makeMultiply(std::move(db), std::move(logarithm)),
                                                   makeDivide(makeMultiply(b, std::move(da)), a)));
    return true;
}

bool cExpressionDerivative::deriveFunction(const cNode& node, cNode& result, size_t depth) const
{
    const op_type function = node.getOperator();
    const auto& operands = node.operands();
    if (function == op_function_pow || function == op_function_power)
        return operands.size() == 2 && derivePower(operands[0], operands[1], result, depth);
    if (operands.size() != 1)
        return false;
    const cNode& u = operands[0];
    cNode du;
    if (!derive(u, du, depth + 1))
        return false;
    auto chain = [&](cNode outer) { return makeMultiply(std::move(outer), du); };
    auto scaledChain = [&](double factor, cNode outer) {
        return makeMultiply(makeMultiply(cNode(factor), std::move(outer)), du);
    };
    switch (function) {
    case op_function_sin: result = chain(makeCall(op_function_cos, u)); break;
    case op_function_cos: result = makeNegate(chain(makeCall(op_function_sin, u))); break;
    case op_function_tan: result = makeDivide(du, square(makeCall(op_function_cos, u))); break;
    case op_function_sinh: result = chain(makeCall(op_function_cosh, u)); break;
    case op_function_cosh: result = chain(makeCall(op_function_sinh, u)); break;
    case op_function_tanh: result = makeDivide(du, square(makeCall(op_function_cosh, u))); break;
    case op_function_asin: result = makeDivide(du, makeCall(op_function_sqrt, makeSubtract(cNode(1.0), square(u)))); break;
    case op_function_acos:
        result = makeNegate(makeDivide(du, makeCall(op_function_sqrt, makeSubtract(cNode(1.0), square(u)))));
        break;
    case op_function_atan: result = makeDivide(du, makeAdd(cNode(1.0), square(u))); break;
    case op_function_asinh: result = makeDivide(du, makeCall(op_function_sqrt, makeAdd(square(u), cNode(1.0)))); break;
    case op_function_acosh:
        result = makeDivide(du, makeCall(op_function_sqrt, makeSubtract(square(u), cNode(1.0))));
        break;
    case op_function_atanh: result = makeDivide(du, makeSubtract(cNode(1.0), square(u))); break;
    case op_function_exp: result = chain(makeCall(op_function_exp, u)); break;
    case op_function_ln:
    case op_function_log: result = makeDivide(du, u); break;
    case op_function_log10: result = makeDivide(du, makeMultiply(cNode(std::numbers::ln10), u)); break;
    case op_function_sqrt: result = makeDivide(du, makeMultiply(cNode(2.0), makeCall(op_function_sqrt, u))); break;
    // |u|' = sgn(u) u' on real values (undefined at 0, where sgn gives 0).
    case op_function_abs:
    case op_function_mag:
    case op_function_magnitude: result = chain(makeCall(op_function_sgn, u)); break;
    // Linear in u.
    case op_function_real:
    case op_function_imag:
    case op_function_conj: result = makeCall(function, du); break;
    case op_function_db: result = makeDivide(makeMultiply(cNode(20 / std::numbers::ln10), du), u); break;
    case op_function_sind: result = scaledChain(kRadiansPerDegree, makeCall(op_function_cosd, u)); break;
    case op_function_cosd:
        result = makeNegate(scaledChain(kRadiansPerDegree, makeCall(op_function_sind, u)));
        break;
    case op_function_tand:
        result = makeDivide(makeMultiply(cNode(kRadiansPerDegree), du), square(makeCall(op_function_cosd, u)));
        break;
    case op_function_sinhd: result = scaledChain(kRadiansPerDegree, makeCall(op_function_coshd, u)); break;
    case op_function_coshd: result = scaledChain(kRadiansPerDegree, makeCall(op_function_sinhd, u)); break;
    case op_function_tanhd:
        result = makeDivide(makeMultiply(cNode(kRadiansPerDegree), du), square(makeCall(op_function_coshd, u)));
        break;
    case op_function_asind:
        result = makeDivide(makeMultiply(cNode(kDegreesPerRadian), du),
                            makeCall(op_function_sqrt, makeSubtract(cNode(1.0), square(u))));
        break;
    case op_function_acosd:
        result = makeNegate(makeDivide(makeMultiply(cNode(kDegreesPerRadian), du),
                                       makeCall(op_function_sqrt, makeSubtract(cNode(1.0), square(u)))));
        break;
    case op_function_atand:
        result = makeDivide(makeMultiply(cNode(kDegreesPerRadian), du), makeAdd(cNode(1.0), square(u)));
        break;
    case op_function_asinhd:
        result = makeDivide(makeMultiply(cNode(kDegreesPerRadian), du),
                            makeCall(op_function_sqrt, makeAdd(square(u), cNode(1.0))));
        break;
    case op_function_acoshd:
        result = makeDivide(makeMultiply(cNode(kDegreesPerRadian), du),
                            makeCall(op_function_sqrt, makeSubtract(square(u), cNode(1.0))));
        break;
    case op_function_atanhd:
        result = makeDivide(makeMultiply(cNode(kDegreesPerRadian), du), makeSubtract(cNode(1.0), square(u)));
        break;
    default: return false;
    }
    return true;
}

}  // namespace vx3
