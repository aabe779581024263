// The expression tree: the fast right fold against plain insertFront, the node enquiries and
// conversions, and trees too deep for recursion.
#include <gtest/gtest.h>

#include <random>

#include "expressions/cExpressionFrontInserter.h"
#include "expressions/cWaveformExpression.h"

using namespace vx3;
using namespace vx3::baseExpression;

namespace {

cWaveformExpression name(const std::string& text) { return cWaveformExpression(text); }

}  // namespace

TEST(ExpressionTree, FastFoldEqualsRepeatedInsertFront)
{
    // Random operator chains over random left operands, some of them operator nodes themselves
    // (an index, a negation, a percentage, a range), as the parser's operands can be.
    const std::vector<op_type> ops = {op_assign,   op_condition, op_range, op_logical_or, op_logical_and,
                                      op_bitwise_or, op_bitwise_and, op_not_equal, op_equal, op_less_equal,
                                      op_less,     op_greater,   op_add,   op_subtract,   op_multiply,
                                      op_divide,   op_power,     op_dot,   op_arrow,      op_add_assign};
    std::mt19937 random(3);
    auto operand = [&](int i) {
        const std::string leaf = "n" + std::to_string(i);
        switch (random() % 7) {
        case 0: return cWaveformExpression(op_index, name(leaf), cWaveformExpression(1.0));
        case 1: return cWaveformExpression(op_negate, name(leaf));
        case 2: return cWaveformExpression(op_percent, name(leaf));
        case 3: return cWaveformExpression(op_range, name(leaf), name("r"));
        case 4: {
            cWaveformExpression call(op_function_sin);
            call.pushOperand(name(leaf));
            return call;
        }
        default: return name(leaf);
        }
    };
    for (int round = 0; round < 3000; ++round) {
        const int count = 1 + static_cast<int>(random() % 12);
        std::vector<cWaveformExpression> lefts;
        std::vector<op_type> chosen;
        for (int i = 0; i < count; ++i) {
            lefts.push_back(operand(i));
            chosen.push_back(ops[random() % ops.size()]);
        }
        cWaveformExpression last = operand(count);
        cWaveformExpression slow = last, fast = last;
        cExpressionFrontInserter<cWaveformExpression> inserter(fast);
        for (int i = count; i-- > 0;) {
            slow.insertFront(cWaveformExpression(chosen[i], lefts[i]));
            inserter.insert(chosen[i], lefts[i]);
        }
        ASSERT_TRUE(fast == slow) << fast.getExpressionAsString() << " vs " << slow.getExpressionAsString();
    }
}

TEST(ExpressionTree, EnquiriesAndConversions)
{
    const cWaveformExpression real(2.5);
    EXPECT_TRUE(real.checkIsNumber());
    EXPECT_FALSE(real.checkIsComplex());
    EXPECT_EQ(real.getAsInteger(), 3);
    EXPECT_EQ(real.getAsComplex(), double_complex(2.5, 0));
    const cWaveformExpression complex(double_complex(1, -2));
    EXPECT_EQ(complex.getOperator(), op_complex);
    EXPECT_EQ(complex.getExpressionAsString(), "1+-2*j");
    EXPECT_EQ(cWaveformExpression(float_complex(3, 0)).getExpressionAsString(), "3+0*j");
    EXPECT_TRUE(complex.checkRequiresBrackets());
    EXPECT_EQ(cWaveformExpression(op_multiply, complex, name("x")).getExpressionAsString(), "(1+-2*j)*x");

    // Complex anywhere below makes the tree complex; NaN anywhere makes it undefined.
    cWaveformExpression sum(op_add, name("a"), cWaveformExpression(op_negate, complex));
    EXPECT_TRUE(sum.checkIsComplex());
    EXPECT_FALSE(sum.checkIfExpressionIsUndefined());
    cWaveformExpression undefined(op_add, name("a"), cWaveformExpression(op_negate, cWaveformExpression(NAN)));
    EXPECT_TRUE(undefined.checkIfExpressionIsUndefined());
    EXPECT_EQ(undefined.getExpressionAsString(), "a+(-undef)");

    // Conversions between numbers, vectors and lists.
    cWaveformExpression vector(op_square_brackets);
    vector.pushOperand(cWaveformExpression(1.0));
    vector.pushOperand(cWaveformExpression(2.0, 1.0));
    ASSERT_TRUE(vector.extendToDoubleVector());
    EXPECT_EQ(vector.getOperator(), op_complex_vector);
    EXPECT_EQ(vector.size(), 2u);
    EXPECT_EQ(vector.getExpressionAsString(), "[1+0*j,2+1*j]");
    vector.convertComplexToDouble();
    EXPECT_EQ(vector.getOperator(), op_real_vector);
    EXPECT_EQ(vector.getExpressionAsString(), "[1,2]");
    vector.extendDoubleToComplex();
    EXPECT_EQ(vector.doubleValues(), (std::vector<double>{1, 0, 2, 0}));
    vector.extendToExpressionVector();
    EXPECT_EQ(vector.getOperator(), op_square_brackets);
    EXPECT_EQ(vector.childSize(), 2u);
    EXPECT_EQ(vector.getChildOperator(1), op_complex);
    cWaveformExpression notNumbers(op_square_brackets);
    notNumbers.pushOperand(name("a"));
    EXPECT_FALSE(notNumbers.extendToDoubleVector());
    cWaveformExpression single(4.0);
    single.extendToExpressionVector();
    EXPECT_EQ(single.getExpressionAsString(), "[4]");
    single.undefineDoubleValues();
    EXPECT_EQ(single.getExpressionAsString(), "[4]");  // the list's own numbers: none
    cWaveformExpression numbers(op_real_vector);
    numbers.pushDoubleValues(1);
    numbers.pushDoubleValues(2);
    numbers.undefineDoubleValues();
    EXPECT_EQ(numbers.getExpressionAsString(), "[undef,undef]");

    // Names of the left side of assignments.
    cWaveformExpression call(op_user_function);
    call.setStringValue("f");
    call.pushOperand(name("x"));
    EXPECT_EQ(cWaveformExpression(op_assign, call, name("y")).getLhsFunctionName(), "f");
    EXPECT_EQ(cWaveformExpression(op_assign, name("v"), name("y")).getLhsVariableName(), "v");
    const cWaveformExpression element(op_index, name("w"), cWaveformExpression(2.0));
    EXPECT_EQ(element.getVectorName(), "w");
    EXPECT_EQ(cWaveformExpression(op_assign, element, name("y")).getLhsVectorName(), "w");
    EXPECT_EQ(cWaveformExpression(op_add, element, name("y")).getLhsVectorName(), "");
    EXPECT_EQ(cWaveformExpression(op_function_integral).getFunctionName(), "integral");
    EXPECT_EQ(call.getOperatorAsString(), "f(.)");
    EXPECT_EQ(element.getOperatorAsString(), "[.]");
    EXPECT_EQ(cWaveformExpression(op_curly_brackets).getOperatorAsString(), "{.}");
    EXPECT_EQ(cWaveformExpression(op_not_equal).getOperatorAsString(), "!=");

    // Function arguments replaced by copies of the actual trees, names elsewhere kept.
    cWaveformExpression body(op_multiply, name("a"), cWaveformExpression(op_add, name("b"), name("a")));
    body.substituteFunctionArguments({"a", "b"}, {cWaveformExpression(op_negate, name("x")), cWaveformExpression(3.0)});
    EXPECT_EQ(body.getExpressionAsString(), "(-x)*(3+(-x))");
    EXPECT_EQ(body.computeVariableNames(), (std::set<std::string>{"x"}));
    EXPECT_EQ(body.getTotalSize(), 7u);

    cWaveformExpression cleared = body;
    cleared.clear();
    EXPECT_EQ(cleared.getOperator(), op_none);
    EXPECT_EQ(cleared.getTotalSize(), 1u);
    EXPECT_NE(cleared, body);
}

TEST(ExpressionTree, TreesDeeperThanTheStack)
{
    // A chain of two million negations: copied, compared, printed, searched and destroyed.
    const size_t depth = 2000000;
    cWaveformExpression tree = name("x");
    for (size_t i = 0; i < depth; ++i)
        tree = cWaveformExpression(op_logical_not, std::move(tree));
    cWaveformExpression copy = tree;
    EXPECT_TRUE(copy == tree);
    EXPECT_EQ(copy.getTotalSize(), depth + 1);
    EXPECT_EQ(copy.computeVariableNames().size(), 1u);
    EXPECT_FALSE(copy.checkIsComplex());
    const std::string text = copy.getExpressionAsString();
    // "!(!(...!x...))": a unary operand of a unary operator is bracketed.
    EXPECT_EQ(text.size(), 3 * depth - 1);
    EXPECT_EQ(text.substr(0, 4), "!(!(");
    EXPECT_EQ(text.substr(2 * (depth - 1) - 2, 6), "!(!x))");
    // Moving a subtree into its own root.
    tree = std::move(tree.operands()[0]);
    EXPECT_EQ(tree.getTotalSize(), depth);
}
