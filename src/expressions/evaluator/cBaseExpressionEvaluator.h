// The evaluator's layer of numbers, complex values, vectors and strings, with the user's
// parameters and functions. A tree is reduced in place: each compute operation replaces its node
// by the value and returns the value's kind, or a status that says why it could not.
#pragma once

#include <complex>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "expressions/evaluator/cBaseExpressionElab.h"
#include "expressions/cPseudoRandomNumbers64.h"

namespace vx3 {

namespace baseExpressionEvaluator {

using tComplex = std::complex<double>;

// The numbers of a node: one value or a vector, real or complex.
struct cNumbers {
    std::vector<tComplex> values;
    bool complex = false;
    bool vector = false;
    bool integer = false;
    size_t size() const { return values.size(); }
    const tComplex& at(size_t i) const { return values[values.size() == 1 ? 0 : i]; }
};

// How an operation treats its operands.
struct cFunctors {
    std::function<double(double)> real1;
    std::function<tComplex(tComplex)> complex1;
    std::function<double(double, double)> real2;
    std::function<tComplex(tComplex, tComplex)> complex2;
    bool complexResultIsReal = false;  // abs, phase, comparisons: the imaginary part is dropped
};

}  // namespace baseExpressionEvaluator

template <class T>
class cBaseExpressionEvaluator : public cBaseExpressionElab<T>, public cPseudoRandomNumbers64 {
public:
    using op_type = baseExpression::op_type;
    using tComplex = baseExpressionEvaluator::tComplex;
    using cNumbers = baseExpressionEvaluator::cNumbers;
    using cFunctors = baseExpressionEvaluator::cFunctors;

    struct cUserFunction {
        std::string name;
        std::vector<std::string> arguments;
        T body;
    };

    // Nested evaluations (operators, brackets, calls of the user's functions) deeper than this
    // stop with a message instead of exhausting the stack.
    static constexpr unsigned kMaximumDepth = 5000;

    cBaseExpressionEvaluator();
    virtual ~cBaseExpressionEvaluator() = default;

    // ---- The user's definitions
    std::map<std::string, T>& userDefinedExpressions() { return mUserExpressions; }
    const std::vector<cUserFunction>& userDefinedFunctions() const { return mUserFunctions; }
    void insertUserDefinedExpression(const std::string& name, const T& value);
    void insertUserDefinedParameterValue(const std::string& name, double value);
    bool removeUserDefinedExpression(const std::string& name);
    // The value of a parameter or constant; null for an unknown name.
    const T* findUserDefinedExpression(const std::string& name) const;
    // Replaces a definition of the same name and number of arguments.
    void insertUserDefinedFunction(const std::string& name, const std::vector<std::string>& arguments, const T& body);
    const cUserFunction* findMatchingUserDefinedFunction(const std::string& name, size_t argumentCount) const;
    // The formal arguments of the function being evaluated (empty outside one).
    const std::vector<std::string>& currentFunctionDefinitionArguments() const { return mCurrentArguments; }

    // ---- Flags
    void setFlagMatchStringsCaseSensitive(bool flag) { mCaseSensitive = flag; }
    bool getFlagMatchStringsCaseSensitive() const { return mCaseSensitive; }
    void setFlagFirstVectorIndexIsOne(bool flag) { mFirstIndexIsOne = flag; }
    bool getFlagFirstVectorIndexIsOne() const { return mFirstIndexIsOne; }
    void setMaximumVectorSize(uint64_t size) { mMaximumVectorSize = size; }
    uint64_t getMaximumVectorSize() const { return mMaximumVectorSize; }
    void setFlagAcceptWildCardsForStringComparison(bool flag) { mWildCards = flag; }
    bool getFlagAcceptWildCardsForStringComparison() const { return mWildCards; }
    void setFlagUsedFromViewer(bool flag) { mUsedFromViewer = flag; }
    bool getFlagUsedFromViewer() const { return mUsedFromViewer; }
    void setFlagResultIsComplex(bool flag) { mResultIsComplex = flag; }
    bool getFlagResultIsComplex() const { return mResultIsComplex; }

    // The standard names: undef, Pi, e, j.
    void initStd();
    // All definitions go; callers follow with initStd.
    virtual void clearEvaluator();

    // ---- Evaluation
    virtual op_type evaluate(T& node) = 0;
    // Resets the recursion state, evaluates and checks that the value is one. False after the
    // reasons were reported.
    bool topLevelEvaluate(T& tree, bool reportUnevaluated);
    bool topLevelEvaluate(T& tree) { return topLevelEvaluate(tree, true); }
    // Whether tree holds a value: a number, a vector, a string, or a name that stands for something.
    virtual bool checkIfEvaluationResultMakesSense(const T& tree) const;
    // Children left to right; the first failure stops.
    op_type evaluateSubExpressions(T& node);
    // The kind of a combination of two operands: failures win, integer widens to real, real to
    // complex, a scalar to a vector.
    static op_type getMaximum(op_type a, op_type b);
    // Reports status (with the operator's or function's name where there is one); returns op_failed.
    op_type printErrorMessages(op_type status, const std::string& name) const;
    // The name that messages give node: a function's name or an operator's text.
    static std::string getNameForMessages(const T& node);
    // The name as it is looked up: lower case unless the case-sensitive flag is set.
    std::string normaliseName(const std::string& name) const;

    // ---- The compute operations of the dispatch; each replaces node by its value.
    virtual op_type computeString(T& node);
    virtual op_type computeSquareBrackets(T& node);
    virtual op_type computeIndex(T& node);
    virtual op_type computeAssign(T& node);
    virtual op_type computeCondition(T& node);
    virtual op_type computeUserDefinedFunction(T& node);
    // Operators and built-in functions whose operands are evaluated already.
    virtual op_type computeOperator(T& node);
    // Built-in functions that read their arguments unevaluated, or evaluate them themselves.
    virtual op_type computeSpecialFunction(T& node, bool& handled);

    // ---- Numbers
    static bool readNumbers(const T& node, cNumbers& numbers);
    static void writeNumbers(T& node, const cNumbers& numbers);
    static cFunctors getUnaryFunctors(op_type op, bool& known);
    static cFunctors getBinaryFunctors(op_type op, bool& known);
    // A binary operation on numbers and vectors, element by element; NaN inputs give NaN.
    op_type evalEx2(T& node, const cFunctors& functors);
    // A unary operation.
    op_type evalEx0(T& node, const cFunctors& functors);
    // min or max of any number of values; one vector gives its extreme.
    op_type evalExN(T& node, bool maximum);
    op_type computeStrcmp(T& node, bool limited);
    op_type computeStringComparison(T& node);
    op_type computeBitOfNumber(T& node);
    op_type computeSize(T& node);
    op_type computeSimplify(T& node);
    // random_seed, random_number and the distributions (cBaseExpressionEvaluatorRandomImpl.h).
    op_type computeRandomFunction(T& node);
    // A draw of the distribution node (normal_distribution or uniform_distribution with numbers).
    bool drawRandomNumber(const T& distribution, double& value);
    // poly, piecewise_poly and the inter- and extrapolations: functions of a table made of all
    // arguments but the last, read at the last.
    static bool checkIsTableFunction(op_type op)
    {
        switch (op) {
        case baseExpression::op_function_poly:
        case baseExpression::op_function_piecewise_poly:
        case baseExpression::op_function_interpolate_poly:
        case baseExpression::op_function_interpolate_linear:
        case baseExpression::op_function_interpolate_spline:
        case baseExpression::op_function_extrapolate_poly:
        case baseExpression::op_function_extrapolate_linear:
        case baseExpression::op_function_extrapolate_spline: return true;
        default: return false;
        }
    }
    // The table of all arguments but the last of such a function.
    const cInterpolationTable* elaborate(T& node, op_type& status);
    op_type computeElaboration(T& node);
    // Fills node with a from a to b in steps of step; false (reported) past the maximum size.
    op_type defineVectorRange(T& node, double from, double step, double to);

protected:
    // A compound assignment "a op= b" rewritten as "a = a op b"; false (reported) for a node
    // without its two operands.
    bool expandAssign(T& node);
    void resetRecursion() { mDepth = 0; mTooDeepReported = false; }
    // Counts a level of nesting; false, once reported, when too deep.
    bool enterLevel();
    void leaveLevel() { --mDepth; }
    bool checkIsStringNode(const T& node) const;
    std::string getStringOf(const T& node) const;
    op_type assignVectorElement(T& lhs, T& value);

    std::map<std::string, T> mUserExpressions;
    std::vector<cUserFunction> mUserFunctions;
    std::vector<std::string> mCurrentArguments;
    bool mCaseSensitive = false;
    bool mFirstIndexIsOne = true;
    uint64_t mMaximumVectorSize = 1000;
    bool mWildCards = false;
    bool mUsedFromViewer = true;
    bool mResultIsComplex = false;
    unsigned mDepth = 0;
    bool mTooDeepReported = false;
    bool mInsideFunctionDefinition = false;
};

}  // namespace vx3
