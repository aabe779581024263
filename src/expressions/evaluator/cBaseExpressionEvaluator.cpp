// The evaluator's state, its reports, the user's definitions and the assignment.
#include "expressions/evaluator/cBaseExpressionEvaluator.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <new>

#include "expressions/cWaveformExpression.h"

namespace vx3 {

using namespace baseExpression;

template <class T>
cBaseExpressionEvaluator<T>::cBaseExpressionEvaluator()
{
    initStd();
}

template <class T>
void cBaseExpressionEvaluator<T>::insertUserDefinedExpression(const std::string& name, const T& value)
{
    // A new value replaces the old under any spelling that finds it.
    if (!mCaseSensitive)
        removeUserDefinedExpression(name);
    mUserExpressions[normaliseName(name)] = value;
}

template <class T>
void cBaseExpressionEvaluator<T>::insertUserDefinedParameterValue(const std::string& name, double value)
{
    insertUserDefinedExpression(name, T(value));
}

template <class T>
bool cBaseExpressionEvaluator<T>::removeUserDefinedExpression(const std::string& name)
{
    bool removed = mUserExpressions.erase(normaliseName(name)) > 0;
    if (!mCaseSensitive)
        std::erase_if(mUserExpressions, [&](const auto& entry) {
            const bool same = normaliseName(entry.first) == normaliseName(name);
            removed = removed || same;
            return same;
        });
    return removed;
}

template <class T>
void cBaseExpressionEvaluator<T>::insertUserDefinedFunction(const std::string& name,
                                                           const std::vector<std::string>& arguments, const T& body)
{
    for (auto& function : mUserFunctions) {
        if (function.name == name && function.arguments.size() == arguments.size()) {
            function.arguments = arguments;
            function.body = body;
            return;
        }
    }
    mUserFunctions.push_back({name, arguments, body});
}

template <class T>
const typename cBaseExpressionEvaluator<T>::cUserFunction*
cBaseExpressionEvaluator<T>::findMatchingUserDefinedFunction(const std::string& name, size_t argumentCount) const
{
    for (const auto& function : mUserFunctions)
        if (function.name == name && function.arguments.size() == argumentCount)
            return &function;
    return nullptr;
}

template <class T>
void cBaseExpressionEvaluator<T>::initStd()
{
    // Entered as written: a case-sensitive look-up wants "Pi", the other finds "pi" and "PI" too.
    mUserExpressions["undef"] = T(NAN);
    mUserExpressions["Pi"] = T(3.141592653589793);
    mUserExpressions["e"] = T(2.718281828459045);
    mUserExpressions["j"] = T(0.0, 1.0);
}

template <class T>
void cBaseExpressionEvaluator<T>::clearEvaluator()
{
    mUserExpressions.clear();
    mUserFunctions.clear();
    mCurrentArguments.clear();
    this->clearElaborations();
}

template <class T>
std::string cBaseExpressionEvaluator<T>::normaliseName(const std::string& name) const
{
    if (mCaseSensitive)
        return name;
    std::string lower = name;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

template <class T>
bool cBaseExpressionEvaluator<T>::enterLevel()
{
    if (++mDepth <= kMaximumDepth)
        return true;
    if (!mTooDeepReported) {
        mTooDeepReported = true;
        this->errorMsg("The evaluation nests more than " + std::to_string(kMaximumDepth) +
                       " levels deep; a function that calls itself without end?");
    }
    return false;
}

template <class T>
bool cBaseExpressionEvaluator<T>::topLevelEvaluate(T& tree, bool reportUnevaluated)
{
    resetRecursion();
    const std::string text = tree.getExpressionAsString();
    op_type result = op_failed;
    try {
        result = evaluate(tree);
    } catch (const std::bad_alloc&) {
        // A result too large for memory (a random curve of a billion points) fails, and what
        // was loaded stays.
        this->errorMsg("Not enough memory to evaluate the expression ... (" + text + ")");
        return false;
    }
    if (checkIsStatus(result))
        return false;
    if (!checkIfEvaluationResultMakesSense(tree)) {
        if (reportUnevaluated) {
            this->errorMsg("Expression evaluation error ... (" + text + ")");
            if (tree.getOperator() == op_name)
                this->infoMsg("\"" + tree.getAsString() + "\" is neither a curve nor a parameter nor a constant.");
        }
        return false;
    }
    return true;
}

template <class T>
bool cBaseExpressionEvaluator<T>::checkIfEvaluationResultMakesSense(const T& tree) const
{
    const op_type kind = tree.getOperator();
    if (kind == op_integer || kind == op_real || kind == op_complex || kind == op_real_vector ||
        kind == op_complex_vector || kind == op_quoted_string)
        return true;
    if (kind == op_name) {
        // A function definition leaves its name.
        for (const auto& function : mUserFunctions)
            if (function.name == tree.getAsString())
                return true;
    }
    return false;
}

template <class T>
op_type cBaseExpressionEvaluator<T>::evaluateSubExpressions(T& node)
{
    op_type kind = op_none;
    for (auto& child : node.operands()) {
        const op_type result = evaluate(child);
        if (checkIsStatus(result))
            return op_failed;
        kind = kind == op_none ? result : getMaximum(kind, result);
    }
    return kind;
}

template <class T>
op_type cBaseExpressionEvaluator<T>::getMaximum(op_type a, op_type b)
{
    if (checkIsStatus(a))
        return a;
    if (checkIsStatus(b))
        return b;
    if (a == b)
        return a;
    auto rank = [](op_type kind) {
        switch (kind) {
        case op_integer: return 0;
        case op_real: return 1;
        case op_complex: return 2;
        case op_real_vector: return 3;
        case op_complex_vector: return 4;
        default: return -1;
        }
    };
    const int ra = rank(a), rb = rank(b);
    if (ra < 0 || rb < 0)
        return ra < 0 ? a : b;
    // A complex scalar with a real vector is a complex vector.
    if ((a == op_complex && b == op_real_vector) || (b == op_complex && a == op_real_vector))
        return op_complex_vector;
    return ra > rb ? a : b;
}

template <class T>
op_type cBaseExpressionEvaluator<T>::printErrorMessages(op_type status, const std::string& name) const
{
    const bool named = !name.empty();
    const std::string quoted = "\"" + name + "\"";
    switch (status) {
    case op_bad_arguments: this->errorMsg(named ? "Bad arguments for " + quoted + "." : "Bad arguments."); break;
    case op_bad_first_argument:
        this->errorMsg(named ? "Bad first argument for " + quoted + "." : "Bad first argument.");
        break;
    case op_bad_second_argument:
        this->errorMsg(named ? "Bad second argument for " + quoted + "." : "Bad second argument.");
        break;
    case op_bad_third_argument:
        this->errorMsg(named ? "Bad third argument for " + quoted + "." : "Bad third argument.");
        break;
    case op_bad_fourth_argument:
        this->errorMsg(named ? "Bad 4th argument for " + quoted + "." : "Bad 4th argument.");
        break;
    case op_bad_number_of_arguments:
        this->errorMsg(named ? "Bad number of arguments for " + quoted + "." : "Bad number of arguments.");
        break;
    case op_vector_sizes_differ: this->errorMsg("The vector sizes do not match."); break;
    case op_bad_vector_index: this->errorMsg("The vector index is bad."); break;
    case op_complex_not_allowed:
        this->errorMsg(named ? quoted + " does not apply to complex values." : "Does not apply to complex values.");
        break;
    case op_unknown_function:
        this->errorMsg(named ? "The function " + quoted + " is unknown." : "Unknown function.");
        break;
    case op_curves_of_wrong_type:
        this->errorMsg("One or several curves in the expression have an incompatible data type.");
        break;
    default: break;
    }
    return op_failed;
}

template <class T>
std::string cBaseExpressionEvaluator<T>::getNameForMessages(const T& node)
{
    const op_type kind = node.getOperator();
    if (node.checkIsFunction())
        return node.getFunctionName();
    if (kind == op_index || kind == op_square_brackets || kind == op_round_brackets || kind == op_curly_brackets)
        return {};
    return std::string(getOperatorText(kind));
}

template <class T>
bool cBaseExpressionEvaluator<T>::checkIsStringNode(const T& node) const
{
    return node.getOperator() == op_quoted_string;
}

template <class T>
std::string cBaseExpressionEvaluator<T>::getStringOf(const T& node) const
{
    return node.stringValues().empty() ? std::string() : node.stringValues()[0];
}

template <class T>
const T* cBaseExpressionEvaluator<T>::findUserDefinedExpression(const std::string& name) const
{
    const std::string key = normaliseName(name);
    const auto found = mUserExpressions.find(key);
    if (found != mUserExpressions.end())
        return &found->second;
    if (!mCaseSensitive)
        for (const auto& [entry, value] : mUserExpressions)
            if (normaliseName(entry) == key)
                return &value;
    return nullptr;
}

template <class T>
op_type cBaseExpressionEvaluator<T>::computeString(T& node)
{
    const T* found = findUserDefinedExpression(getStringOf(node));
    if (!found)
        return op_name;  // unknown: the operator that needs a value reports
    node = *found;
    return node.getOperator();
}

template <class T>
op_type cBaseExpressionEvaluator<T>::computeCondition(T& node)
{
    // "c ? a : b" is read as c ? (a : b): only the branch taken is evaluated, so that a function
    // can call itself under a condition.
    if (node.childSize() != 2 || node.getChildOperator(1) != op_range || node.operands()[1].childSize() != 2)
        return op_bad_arguments;
    T& condition = node.operands()[0];
    const op_type kind = evaluate(condition);
    if (checkIsStatus(kind))
        return op_failed;
    if (!condition.checkIsNumber())
        return op_bad_first_argument;
    const tComplex value = condition.getAsComplex();
    if (std::isnan(value.real()) || std::isnan(value.imag())) {
        node = T(NAN);
        return op_real;
    }
    T branch = std::move(node.operands()[1].operands()[value != tComplex(0, 0) ? 0 : 1]);
    node = std::move(branch);
    return evaluate(node);
}

template <class T>
bool cBaseExpressionEvaluator<T>::expandAssign(T& node)
{
    const op_type kind = node.getOperator();
    if (node.childSize() != 2) {
        this->errorMsg("The expression is malformed.");
        return false;
    }
    if (kind != op_assign) {
        // "a += b" is "a = a + b".
        const op_type op = kind == op_add_assign        ? op_add
                           : kind == op_subtract_assign ? op_subtract
                           : kind == op_multiply_assign ? op_multiply
                                                        : op_divide;
        T lhs = node.operands()[0];
        T rhs(op, node.operands()[0], std::move(node.operands()[1]));
        node = T(op_assign, std::move(lhs), std::move(rhs));
    }
    return true;
}

template <class T>
op_type cBaseExpressionEvaluator<T>::computeAssign(T& node)
{
    if (!expandAssign(node))
        return op_failed;
    T& lhs = node.operands()[0];
    const op_type lhsKind = lhs.getOperator();
    if (lhsKind == op_user_function) {
        // A function definition: f(a, b) = body, kept unevaluated.
        const std::string name = lhs.getFunctionName();
        if (name.empty()) {
            this->errorMsg("The function definition must have a name.");
            return op_failed;
        }
        if (lhs.childSize() == 0) {
            this->errorMsg("The function definition must have at least one argument.");
            return op_failed;
        }
        std::vector<std::string> arguments;
        for (const auto& argument : lhs.operands()) {
            if (argument.getOperator() != op_name) {
                this->errorMsg("Only string arguments are allowed in function definitions.");
                return op_failed;
            }
            arguments.push_back(argument.getAsString());
        }
        insertUserDefinedFunction(name, arguments, node.operands()[1]);
        node = T(name);
        return op_name;
    }
    if (lhsKind != op_name && lhsKind != op_index && !lhs.checkIsFunction()) {
        this->errorMsg("The left hand side of the expression is malformed.");
        return op_failed;
    }
    if (lhs.checkIsFunction()) {
        // A built-in function's name can't be defined again.
        this->errorMsg("The left hand side of the expression is malformed.");
        return op_failed;
    }
    T value = std::move(node.operands()[1]);
    const op_type valueKind = evaluate(value);
    if (checkIsStatus(valueKind))
        return op_failed;
    if (lhsKind == op_index)
        return assignVectorElement(node, value);
    if (value.getOperator() == op_name) {
        this->errorMsg("Expression evaluation error ... (" + value.getAsString() + ")");
        return op_failed;
    }
    insertUserDefinedExpression(lhs.getAsString(), value);
    node = std::move(value);
    return node.getOperator();
}

template <class T>
op_type cBaseExpressionEvaluator<T>::assignVectorElement(T& node, T& value)
{
    // v[i] = value on a vector parameter.
    T& lhs = node.operands()[0];
    if (lhs.childSize() != 2 || lhs.getChildOperator(0) != op_name) {
        this->errorMsg("The left hand side of the expression is malformed.");
        return op_failed;
    }
    const std::string name = normaliseName(lhs.operands()[0].getAsString());
    const auto found = mUserExpressions.find(name);
    if (found == mUserExpressions.end() || !(found->second.checkIsVector() || found->second.checkIsNumber()))
        return op_bad_first_argument;
    T index = lhs.operands()[1];
    if (checkIsStatus(evaluate(index)))
        return op_failed;
    if (!index.checkIsNumber() || !value.checkIsNumber())
        return op_bad_arguments;
    T& vector = found->second;
    vector.extendToDoubleVector();
    const double position = index.getAsDouble() - (mFirstIndexIsOne ? 1 : 0);
    if (!(position >= 0) || position != std::floor(position) || position >= static_cast<double>(vector.size()))
        return op_bad_vector_index;
    const auto i = static_cast<size_t>(position);
    if (value.getOperator() == op_complex && vector.getOperator() == op_real_vector)
        vector.extendDoubleToComplex();
    const tComplex number = value.getAsComplex();
    if (vector.getOperator() == op_complex_vector) {
        vector.doubleValues()[2 * i] = number.real();
        vector.doubleValues()[2 * i + 1] = number.imag();
    } else {
        vector.doubleValues()[i] = number.real();
    }
    node = value;
    return node.getOperator();
}

template <class T>
op_type cBaseExpressionEvaluator<T>::computeUserDefinedFunction(T& node)
{
    const std::string name = node.getFunctionName();
    const cUserFunction* function = findMatchingUserDefinedFunction(name, node.childSize());
    if (!function)
        return op_unknown_function;
    // The arguments are evaluated once, in the caller's scope, then put in place of the
    // formal names of a copy of the body.
    if (checkIsStatus(evaluateSubExpressions(node)))
        return op_failed;
    T body = function->body;
    body.substituteFunctionArguments(function->arguments, node.operands());
    std::vector<std::string> saved = std::move(mCurrentArguments);
    mCurrentArguments = function->arguments;
    node = std::move(body);
    const op_type result = evaluate(node);
    mCurrentArguments = std::move(saved);
    return checkIsStatus(result) ? op_failed : result;
}

}  // namespace vx3

// The member functions of the other responsibilities, instantiated below with these.
#include "expressions/evaluator/cBaseExpressionEvaluatorMathImpl.h"
#include "expressions/evaluator/cBaseExpressionEvaluatorOperatorsImpl.h"
#include "expressions/evaluator/cBaseExpressionEvaluatorRandomImpl.h"
#include "expressions/evaluator/cBaseExpressionEvaluatorVectorsImpl.h"

namespace vx3 {

template class cBaseExpressionEvaluator<cWaveformExpression>;

}  // namespace vx3
