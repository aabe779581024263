// One node of an expression tree: its kind, its child nodes (owned by value), its numbers (a
// complex number is two consecutive doubles, real then imaginary) and its strings.
//
// Trees can be as deep as an expression is long: "a1+a2+...+an" folds to the left, so its left
// spine holds n nodes. Copying, comparing, printing, searching and destroying therefore walk the
// tree with a work list of their own instead of recursing, and never run out of stack.
#pragma once

#include <cmath>
#include <complex>
#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "expressions/baseExpression.h"

namespace vx3 {

namespace baseExpression {
using double_complex = std::complex<double>;
using float_complex = std::complex<float>;
// A double as the expression language prints it: shortest text that reads back to the same value,
// "undef" for NaN, "inf" and "-inf".
void appendNumber(std::string& text, double value, bool whole);
}  // namespace baseExpression

template <class Derived>
class cBaseExpression {
public:
    using op_type = baseExpression::op_type;

    cBaseExpression() = default;
    explicit cBaseExpression(op_type kind) : mKind(kind) {}
    cBaseExpression(const cBaseExpression& other);
    cBaseExpression(cBaseExpression&& other) noexcept = default;
    cBaseExpression& operator=(const cBaseExpression& other);
    // Safe when other lies inside this tree: other is taken whole before the old content goes.
    cBaseExpression& operator=(cBaseExpression&& other) noexcept;
    ~cBaseExpression();

    op_type getOperator() const { return mKind; }
    void setOperator(op_type kind) { mKind = kind; }
    std::vector<Derived>& operands() { return mOperands; }
    const std::vector<Derived>& operands() const { return mOperands; }
    std::vector<double>& doubleValues() { return mDoubles; }
    const std::vector<double>& doubleValues() const { return mDoubles; }
    std::vector<std::string>& stringValues() { return mStrings; }
    const std::vector<std::string>& stringValues() const { return mStrings; }

    // ---- Enquiries
    bool checkIsNumber() const;  // integer, real or complex
    bool checkIsVector() const;  // real or complex vector
    bool checkIsFunction() const;  // a user function call or a built-in function
    bool checkIsComplex() const;   // complex kinds here or anywhere below
    // A NaN among this node's numbers, or, for a node without numbers, anywhere below.
    bool checkIfExpressionIsUndefined() const;
    // Whether the node is put in brackets as the operand of an operator. Calls and bracket lists
    // print their own brackets; nodes of several operands, complex values and unary operators
    // take brackets, so that the text shows the tree and reads back to it.
    bool checkRequiresBrackets() const;
    double getAsDouble() const;  // NaN for a node that isn't a number
    int64_t getAsInteger() const;
    baseExpression::double_complex getAsComplex() const;
    double getChildAsDouble(size_t index) const;
    int64_t getChildAsInteger(size_t index) const;
    baseExpression::double_complex getChildAsComplex(size_t index) const;
    // A name, quoted string or call: its string; other nodes: their printed text.
    std::string getAsString() const;
    std::string getFunctionName() const;     // of a call or built-in function, else empty
    std::string getLhsFunctionName() const;  // "f" of "f(x) = ..."
    std::string getLhsVariableName() const;  // "a" of "a = ..."
    std::string getLhsVectorName() const;    // "v" of "v[i] = ..."
    std::string getVectorName() const;       // "v" of "v[i]"
    std::set<std::string> computeVariableNames() const;  // every name node of the tree
    size_t size() const;  // elements of a vector, 1 for a number, else the number of operands
    size_t getTotalSize() const;  // nodes in the tree
    size_t doubleSize() const { return mDoubles.size(); }
    size_t childSize() const { return mOperands.size(); }
    op_type getChildOperator(size_t index) const
    {
        return index < mOperands.size() ? mOperands[index].getOperator() : baseExpression::op_none;
    }
    // The trees are equal in kind, numbers (NaN equals NaN), strings and children.
    bool operator==(const cBaseExpression& other) const;
    bool operator!=(const cBaseExpression& other) const { return !(*this == other); }

    // ---- Conversions in place
    void convertComplexToDouble();  // drops imaginary parts
    void extendDoubleToComplex();   // adds zero imaginary parts
    // A number to a vector of one element, a list of numbers to a vector; false for others.
    bool extendToDoubleVector();
    // A vector or number to a square bracket list of number nodes.
    void extendToExpressionVector();
    void setStringValue(const std::string& text) { mStrings.assign(1, text); }
    void clear();
    void pushOperand(Derived operand) { mOperands.push_back(std::move(operand)); }
    void pushDoubleValues(double value) { mDoubles.push_back(value); }
    void pushDoubleValues(double real, double imaginary)
    {
        mDoubles.push_back(real);
        mDoubles.push_back(imaginary);
    }
    void undefineDoubleValues();
    // Puts node (an operator holding its left operand) in front of this tree: down the first
    // children while they bind no tighter than node, then node takes that place and the node
    // found there becomes its second operand.
    void insertFront(Derived node);
    // Replaces each name node names[i] by a copy of values[i].
    void substituteFunctionArguments(const std::vector<std::string>& names, const std::vector<Derived>& values);

    // ---- Printing
    std::string getExpressionAsString() const
    {
        std::string text;
        print(text);
        return text;
    }
    void print(std::string& text) const;
    // The operator's text; "name(.)" for calls, "[.]" for an index, "{.}" for a curly list.
    std::string getOperatorAsString() const;

protected:
    static const cBaseExpression& base(const Derived& node) { return node; }
    static cBaseExpression& base(Derived& node) { return node; }

    op_type mKind = baseExpression::op_none;
    std::vector<Derived> mOperands;
    std::vector<double> mDoubles;
    std::vector<std::string> mStrings;
};

}  // namespace vx3

#include "expressions/cBaseExpressionImpl.h"
