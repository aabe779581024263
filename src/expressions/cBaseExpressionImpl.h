// The member functions of cBaseExpression (included by cBaseExpression.h).
#pragma once

#include <string_view>

namespace vx3 {

template <class Derived>
cBaseExpression<Derived>::cBaseExpression(const cBaseExpression& other)
    : mKind(other.mKind), mDoubles(other.mDoubles), mStrings(other.mStrings)
{
    std::vector<std::pair<const cBaseExpression*, cBaseExpression*>> pending;
    pending.emplace_back(&other, this);
    bool first = true;
    while (!pending.empty()) {
        auto [from, to] = pending.back();
        pending.pop_back();
        if (!first) {
            to->mKind = from->mKind;
            to->mDoubles = from->mDoubles;
            to->mStrings = from->mStrings;
        }
        first = false;
        // Sized once, so the addresses of the new children stay valid while they wait.
        to->mOperands.resize(from->mOperands.size());
        for (size_t i = 0; i < from->mOperands.size(); ++i)
            pending.emplace_back(&base(from->mOperands[i]), &base(to->mOperands[i]));
    }
}

template <class Derived>
cBaseExpression<Derived>& cBaseExpression<Derived>::operator=(const cBaseExpression& other)
{
    if (this != &other) {
        cBaseExpression copy(other);
        *this = std::move(copy);
    }
    return *this;
}

template <class Derived>
cBaseExpression<Derived>& cBaseExpression<Derived>::operator=(cBaseExpression&& other) noexcept
{
    if (this != &other) {
        cBaseExpression taken(std::move(other));
        std::swap(mKind, taken.mKind);
        mOperands.swap(taken.mOperands);
        mDoubles.swap(taken.mDoubles);
        mStrings.swap(taken.mStrings);
    }
    return *this;
}

template <class Derived>
cBaseExpression<Derived>::~cBaseExpression()
{
    if (mOperands.empty())
        return;
    // Every node below is emptied of its children before it is destroyed, so no destructor nests.
    std::vector<Derived> pending = std::move(mOperands);
    while (!pending.empty()) {
        Derived node = std::move(pending.back());
        pending.pop_back();
        for (auto& child : base(node).mOperands)
            pending.push_back(std::move(child));
        base(node).mOperands.clear();
    }
}

template <class Derived>
bool cBaseExpression<Derived>::checkIsNumber() const
{
    using namespace baseExpression;
    return mKind == op_integer || mKind == op_real || mKind == op_complex;
}

template <class Derived>
bool cBaseExpression<Derived>::checkIsVector() const
{
    return mKind == baseExpression::op_real_vector || mKind == baseExpression::op_complex_vector;
}

template <class Derived>
bool cBaseExpression<Derived>::checkIsFunction() const
{
    return mKind == baseExpression::op_user_function || baseExpression::checkIsBuiltInFunction(mKind);
}

template <class Derived>
bool cBaseExpression<Derived>::checkIsComplex() const
{
    std::vector<const cBaseExpression*> pending{this};
    while (!pending.empty()) {
        const cBaseExpression* node = pending.back();
        pending.pop_back();
        if (node->mKind == baseExpression::op_complex || node->mKind == baseExpression::op_complex_vector)
            return true;
        for (const auto& child : node->mOperands)
            pending.push_back(&base(child));
    }
    return false;
}

template <class Derived>
bool cBaseExpression<Derived>::checkIfExpressionIsUndefined() const
{
    std::vector<const cBaseExpression*> pending{this};
    while (!pending.empty()) {
        const cBaseExpression* node = pending.back();
        pending.pop_back();
        if (node->checkIsNumber() || node->checkIsVector()) {
            for (double value : node->mDoubles)
                if (std::isnan(value))
                    return true;
            continue;
        }
        for (const auto& child : node->mOperands)
            pending.push_back(&base(child));
    }
    return false;
}

template <class Derived>
bool cBaseExpression<Derived>::checkRequiresBrackets() const
{
    using namespace baseExpression;
    if (checkIsFunction() || mKind == op_round_brackets || mKind == op_square_brackets || mKind == op_curly_brackets)
        return false;
    if (mKind == op_complex || mOperands.size() > 1)
        return true;
    return checkIsPrefixOperator(mKind) || checkIsPostfixOperator(mKind);
}

template <class Derived>
double cBaseExpression<Derived>::getAsDouble() const
{
    return checkIsNumber() && !mDoubles.empty() ? mDoubles[0] : NAN;
}

template <class Derived>
int64_t cBaseExpression<Derived>::getAsInteger() const
{
    const double value = getAsDouble();
    return std::isfinite(value) && std::fabs(value) < 9.2e18 ? static_cast<int64_t>(std::llround(value)) : 0;
}

template <class Derived>
baseExpression::double_complex cBaseExpression<Derived>::getAsComplex() const
{
    if (!checkIsNumber() || mDoubles.empty())
        return {NAN, NAN};
    return {mDoubles[0], mKind == baseExpression::op_complex && mDoubles.size() > 1 ? mDoubles[1] : 0.0};
}

template <class Derived>
double cBaseExpression<Derived>::getChildAsDouble(size_t index) const
{
    return index < mOperands.size() ? mOperands[index].getAsDouble() : NAN;
}

template <class Derived>
int64_t cBaseExpression<Derived>::getChildAsInteger(size_t index) const
{
    return index < mOperands.size() ? mOperands[index].getAsInteger() : 0;
}

template <class Derived>
baseExpression::double_complex cBaseExpression<Derived>::getChildAsComplex(size_t index) const
{
    return index < mOperands.size() ? mOperands[index].getAsComplex() : baseExpression::double_complex(NAN, NAN);
}

template <class Derived>
std::string cBaseExpression<Derived>::getAsString() const
{
    using namespace baseExpression;
    if ((mKind == op_name || mKind == op_quoted_string || mKind == op_user_function) && !mStrings.empty())
        return mStrings[0];
    return getExpressionAsString();
}

template <class Derived>
std::string cBaseExpression<Derived>::getFunctionName() const
{
    if (mKind == baseExpression::op_user_function)
        return mStrings.empty() ? std::string() : mStrings[0];
    return std::string(baseExpression::getFunctionNameOfType(mKind));
}

template <class Derived>
std::string cBaseExpression<Derived>::getLhsFunctionName() const
{
    if (mKind != baseExpression::op_assign || mOperands.empty() || !mOperands[0].checkIsFunction())
        return {};
    return mOperands[0].getFunctionName();
}

template <class Derived>
std::string cBaseExpression<Derived>::getLhsVariableName() const
{
    if (mKind != baseExpression::op_assign || mOperands.empty() ||
        mOperands[0].getOperator() != baseExpression::op_name)
        return {};
    return mOperands[0].getAsString();
}

template <class Derived>
std::string cBaseExpression<Derived>::getLhsVectorName() const
{
    if (mKind != baseExpression::op_assign || mOperands.empty())
        return {};
    return mOperands[0].getVectorName();
}

template <class Derived>
std::string cBaseExpression<Derived>::getVectorName() const
{
    if (mKind != baseExpression::op_index || mOperands.empty() ||
        mOperands[0].getOperator() != baseExpression::op_name)
        return {};
    return mOperands[0].getAsString();
}

template <class Derived>
std::set<std::string> cBaseExpression<Derived>::computeVariableNames() const
{
    std::set<std::string> names;
    std::vector<const cBaseExpression*> pending{this};
    while (!pending.empty()) {
        const cBaseExpression* node = pending.back();
        pending.pop_back();
        if (node->mKind == baseExpression::op_name && !node->mStrings.empty())
            names.insert(node->mStrings[0]);
        for (const auto& child : node->mOperands)
            pending.push_back(&base(child));
    }
    return names;
}

template <class Derived>
size_t cBaseExpression<Derived>::size() const
{
    using namespace baseExpression;
    if (mKind == op_real_vector)
        return mDoubles.size();
    if (mKind == op_complex_vector)
        return mDoubles.size() / 2;
    if (checkIsNumber())
        return 1;
    return mOperands.size();
}

template <class Derived>
size_t cBaseExpression<Derived>::getTotalSize() const
{
    size_t count = 0;
    std::vector<const cBaseExpression*> pending{this};
    while (!pending.empty()) {
        const cBaseExpression* node = pending.back();
        pending.pop_back();
        ++count;
        for (const auto& child : node->mOperands)
            pending.push_back(&base(child));
    }
    return count;
}

template <class Derived>
bool cBaseExpression<Derived>::operator==(const cBaseExpression& other) const
{
    std::vector<std::pair<const cBaseExpression*, const cBaseExpression*>> pending;
    pending.emplace_back(this, &other);
    while (!pending.empty()) {
        auto [a, b] = pending.back();
        pending.pop_back();
        if (a->mKind != b->mKind || a->mStrings != b->mStrings || a->mDoubles.size() != b->mDoubles.size() ||
            a->mOperands.size() != b->mOperands.size())
            return false;
        for (size_t i = 0; i < a->mDoubles.size(); ++i) {
            const double x = a->mDoubles[i], y = b->mDoubles[i];
            if (!(x == y || (std::isnan(x) && std::isnan(y))))
                return false;
        }
        for (size_t i = 0; i < a->mOperands.size(); ++i)
            pending.emplace_back(&base(a->mOperands[i]), &base(b->mOperands[i]));
    }
    return true;
}

template <class Derived>
void cBaseExpression<Derived>::convertComplexToDouble()
{
    using namespace baseExpression;
    if (mKind != op_complex && mKind != op_complex_vector)
        return;
    std::vector<double> reals;
    for (size_t i = 0; i < mDoubles.size(); i += 2)
        reals.push_back(mDoubles[i]);
    mDoubles = std::move(reals);
    mKind = mKind == op_complex ? op_real : op_real_vector;
}

template <class Derived>
void cBaseExpression<Derived>::extendDoubleToComplex()
{
    using namespace baseExpression;
    if (mKind != op_integer && mKind != op_real && mKind != op_real_vector)
        return;
    std::vector<double> pairs;
    pairs.reserve(mDoubles.size() * 2);
    for (double value : mDoubles) {
        pairs.push_back(value);
        pairs.push_back(0.0);
    }
    mDoubles = std::move(pairs);
    mKind = mKind == op_real_vector ? op_complex_vector : op_complex;
}

template <class Derived>
bool cBaseExpression<Derived>::extendToDoubleVector()
{
    using namespace baseExpression;
    if (checkIsVector())
        return true;
    if (mKind == op_integer || mKind == op_real) {
        mDoubles.resize(1);
        mKind = op_real_vector;
        return true;
    }
    if (mKind == op_complex) {
        mDoubles.resize(2);
        mKind = op_complex_vector;
        return true;
    }
    if (mKind != op_square_brackets && mKind != op_round_brackets && mKind != op_curly_brackets)
        return false;
    bool complex = false;
    for (const auto& element : mOperands) {
        if (!element.checkIsNumber())
            return false;
        complex = complex || element.getOperator() == op_complex;
    }
    std::vector<double> values;
    for (const auto& element : mOperands) {
        const double_complex value = element.getAsComplex();
        values.push_back(value.real());
        if (complex)
            values.push_back(value.imag());
    }
    mOperands.clear();
    mDoubles = std::move(values);
    mKind = complex ? op_complex_vector : op_real_vector;
    return true;
}

template <class Derived>
void cBaseExpression<Derived>::extendToExpressionVector()
{
    using namespace baseExpression;
    if (checkIsNumber()) {
        Derived element;
        base(element) = std::move(*this);
        clear();
        mOperands.push_back(std::move(element));
    } else if (checkIsVector()) {
        const bool complex = mKind == op_complex_vector;
        const size_t step = complex ? 2 : 1;
        for (size_t i = 0; i + step <= mDoubles.size(); i += step) {
            Derived element;
            base(element).mKind = complex ? op_complex : op_real;
            base(element).mDoubles.assign(mDoubles.begin() + static_cast<std::ptrdiff_t>(i),
                                          mDoubles.begin() + static_cast<std::ptrdiff_t>(i + step));
            mOperands.push_back(std::move(element));
        }
        mDoubles.clear();
    } else {
        return;
    }
    mKind = op_square_brackets;
}

template <class Derived>
void cBaseExpression<Derived>::clear()
{
    cBaseExpression empty;
    *this = std::move(empty);
}

template <class Derived>
void cBaseExpression<Derived>::undefineDoubleValues()
{
    for (double& value : mDoubles)
        value = NAN;
}

template <class Derived>
void cBaseExpression<Derived>::insertFront(Derived node)
{
    cBaseExpression* place = this;
    while (!place->mOperands.empty() && baseExpression::precedenceIsLeq(place->mKind, node.getOperator()))
        place = &base(place->mOperands[0]);
    base(node).mOperands.push_back(std::move(static_cast<Derived&>(*place)));
    *place = std::move(base(node));
}

template <class Derived>
void cBaseExpression<Derived>::substituteFunctionArguments(const std::vector<std::string>& names,
                                                           const std::vector<Derived>& values)
{
    std::vector<cBaseExpression*> pending{this};
    while (!pending.empty()) {
        cBaseExpression* node = pending.back();
        pending.pop_back();
        if (node->mKind == baseExpression::op_name && !node->mStrings.empty()) {
            for (size_t i = 0; i < names.size() && i < values.size(); ++i) {
                if (names[i] == node->mStrings[0]) {
                    *node = base(values[i]);
                    break;
                }
            }
            continue;
        }
        for (auto& child : node->mOperands)
            pending.push_back(&base(child));
    }
}

template <class Derived>
void cBaseExpression<Derived>::print(std::string& text) const
{
    using namespace baseExpression;
    // Each task prints a node or a piece of text; a node's parts are pushed in reverse order.
    struct cTask {
        const cBaseExpression* node;
        std::string_view literal;
    };
    std::vector<cTask> tasks{{this, {}}};
    std::vector<cTask> parts;
    auto operand = [&parts](const Derived& child, bool brackets) {
        if (brackets && base(child).checkRequiresBrackets()) {
            parts.push_back({nullptr, "("});
            parts.push_back({&base(child), {}});
            parts.push_back({nullptr, ")"});
        } else {
            parts.push_back({&base(child), {}});
        }
    };
    auto list = [&](std::string_view open, std::string_view close, size_t from) {
        parts.push_back({nullptr, open});
        for (size_t i = from; i < tasks.back().node->mOperands.size(); ++i) {
            if (i > from)
                parts.push_back({nullptr, ","});
            operand(tasks.back().node->mOperands[i], false);
        }
        parts.push_back({nullptr, close});
    };
    while (!tasks.empty()) {
        if (!tasks.back().node) {
            text += tasks.back().literal;
            tasks.pop_back();
            continue;
        }
        const cBaseExpression& node = *tasks.back().node;
        const auto& values = node.mDoubles;
        parts.clear();
        switch (node.mKind) {
        case op_none: break;
        case op_integer:
        case op_real:
            if (!values.empty())
                appendNumber(text, values[0], node.mKind == op_integer);
            break;
        case op_complex:
            if (values.size() >= 2) {
                appendNumber(text, values[0], false);
                text += '+';
                appendNumber(text, values[1], false);
                text += "*j";
            }
            break;
        case op_real_vector:
        case op_complex_vector: {
            const bool complex = node.mKind == op_complex_vector;
            text += '[';
            for (size_t i = 0; i < values.size(); i += complex ? 2 : 1) {
                if (i)
                    text += ',';
                appendNumber(text, values[i], false);
                if (complex && i + 1 < values.size()) {
                    text += '+';
                    appendNumber(text, values[i + 1], false);
                    text += "*j";
                }
            }
            text += ']';
            break;
        }
        case op_name:
            if (!node.mStrings.empty())
                text += node.mStrings[0];
            break;
        case op_quoted_string:
            text += '"';
            if (!node.mStrings.empty())
                for (char c : node.mStrings[0]) {
                    if (c == '"' || c == '\\')
                        text += '\\';
                    text += c;
                }
            text += '"';
            break;
        case op_round_brackets: list("(", ")", 0); break;
        case op_square_brackets: list("[", "]", 0); break;
        case op_curly_brackets: list("{", "}", 0); break;
        case op_user_function:
            if (!node.mStrings.empty())
                text += node.mStrings[0];
            list("(", ")", 0);
            break;
        case op_index:
            if (!node.mOperands.empty())
                operand(node.mOperands[0], true);
            if (node.mOperands.size() == 2 && node.mOperands[1].getOperator() == op_square_brackets &&
                node.mOperands[1].childSize() > 1) {
                // Several indices: "x[i,j]".
                parts.push_back({&base(node.mOperands[1]), {}});
            } else {
                list("[", "]", 1);
            }
            break;
        default:
            if (checkIsBuiltInFunction(node.mKind)) {
                text += getFunctionNameOfType(node.mKind);
                list("(", ")", 0);
            } else if (checkIsPrefixOperator(node.mKind)) {
                parts.push_back({nullptr, getOperatorText(node.mKind)});
                for (const auto& child : node.mOperands) {
                    // A negation read back takes the first element of a list: "-([1,2])" keeps it whole.
                    if (node.mKind == op_negate && child.childSize() > 1 && !child.checkIsFunction() &&
                        !base(child).checkRequiresBrackets()) {
                        parts.push_back({nullptr, "("});
                        parts.push_back({&base(child), {}});
                        parts.push_back({nullptr, ")"});
                    } else {
                        operand(child, true);
                    }
                }
            } else if (checkIsPostfixOperator(node.mKind)) {
                for (const auto& child : node.mOperands)
                    operand(child, true);
                parts.push_back({nullptr, getOperatorText(node.mKind)});
            } else if (checkIsStatus(node.mKind)) {
                text += getOpTypeName(node.mKind);
            } else {
                const std::string_view op = getOperatorText(node.mKind);
                // "!=", "!~", "." and "%" right behind a name would read as part of it: blanks around.
                const bool spaced = !op.empty() && op[0] != ':' && !checkIsNameTerminator(op[0]);
                for (size_t i = 0; i < node.mOperands.size(); ++i) {
                    if (i || node.mOperands.size() == 1) {
                        if (spaced)
                            parts.push_back({nullptr, " "});
                        parts.push_back({nullptr, op});
                        if (spaced)
                            parts.push_back({nullptr, " "});
                    }
                    operand(node.mOperands[i], true);
                }
            }
            break;
        }
        tasks.pop_back();
        for (auto part = parts.rbegin(); part != parts.rend(); ++part)
            tasks.push_back(*part);
    }
}

template <class Derived>
std::string cBaseExpression<Derived>::getOperatorAsString() const
{
    using namespace baseExpression;
    switch (mKind) {
    case op_user_function: return (mStrings.empty() ? std::string() : mStrings[0]) + "(.)";
    case op_round_brackets: return "(.)";
    case op_square_brackets:
    case op_index: return "[.]";
    case op_curly_brackets: return "{.}";
    default: break;
    }
    if (checkIsBuiltInFunction(mKind))
        return std::string(getFunctionNameOfType(mKind)) + "(.)";
    const std::string_view text = getOperatorText(mKind);
    return text.empty() ? getExpressionAsString() : std::string(text);
}

}  // namespace vx3
