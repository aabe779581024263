// Symbolic derivatives: the printed results of a table of expressions, that they read back to the
// same tree, and that they agree numerically with a finite difference of the expression computed
// by Python's math from the same texts; then the nodes without a rule.
#include <gtest/gtest.h>

#include <fstream>

#include "../base/testSupport.h"
#include "expressions/cExpressionDerivative.h"
#include "expressions/cWaveformExpressionParser.h"

#include "expressionTestSupport.h"

using namespace vx3;
using zwexpressions::runOracle;

namespace {
struct cCase {
    const char* expression;
    const char* derivative;  // printed, by x
    const char* points;      // where Python compares with a finite difference
};

const cCase kCases[] = {
    {"x^2", "2*x", "-1.5,0.3,2"},
    {"3*x+1", "3", "0,1"},
    {"x*y", "y", "0.5"},
    {"a/x", "(-a)/(x^2)", "0.4,2,-3"},
    {"(x+1)*(x-1)", "(x-1)+(x+1)", "-2,0.7"},
    {"x/(1+x)", "((1+x)-x)/((1+x)^2)", "0.3,4"},
    {"1/x^2", "(-(2*x))/((x^2)^2)", "0.5,-2"},
    {"-x^3", "-(3*((-x)^2))", "-1,0.6"},
    {"x^-1", "-(x^-2)", "0.5,3"},
    {"x^x", "(x^x)*(ln(x)+(x/x))", "0.5,1.5"},
    {"2^x", "0.6931471805599453*(2^x)", "-1,2.5"},
    {"e^x", "(e^x)*ln(e)", "0.1,1"},
    {"pow(x,3)", "3*(x^2)", "-1.2,2"},
    {"power(b,x)", "(b^x)*ln(b)", "0.3"},
    {"x%", "0.01", "1"},
    {"sin(2*x)", "2*cos(2*x)", "0.1,1.3"},
    {"cos(x)^2", "(2*cos(x))*(-sin(x))", "0.2,2"},
    {"tan(x)", "1/(cos(x)^2)", "0.2,1.1"},
    {"exp(-x)", "-exp(-x)", "-1,2"},
    {"ln(x)", "1/x", "0.2,5"},
    {"log(x^2+1)", "(2*x)/((x^2)+1)", "-1,3"},
    {"log10(x)", "1/(2.302585092994046*x)", "0.5,20"},
    {"sqrt(1+x^2)", "(2*x)/(2*sqrt(1+(x^2)))", "-2,0.5"},
    {"sinh(x)*cosh(x)", "(cosh(x)*cosh(x))+(sinh(x)*sinh(x))", "-1,0.8"},
    {"tanh(3*x)", "3/(cosh(3*x)^2)", "-0.4,0.2"},
    {"asin(x)", "1/sqrt(1-(x^2))", "-0.5,0.7"},
    {"acos(x/2)", "-(0.5/sqrt(1-((x/2)^2)))", "-1,1.5"},
    {"atan(x^2)", "(2*x)/(1+((x^2)^2))", "-1,2"},
    {"asinh(x)", "1/sqrt((x^2)+1)", "-3,0.5"},
    {"acosh(x+2)", "1/sqrt(((x+2)^2)-1)", "0,1.5"},
    {"atanh(x/2)", "0.5/(1-((x/2)^2))", "-1,0.9"},
    {"abs(x)", "sgn(x)", "-2,0.5"},
    {"mag(x^3-2)", "sgn((x^3)-2)*(3*(x^2))", "0.5,2"},
    {"db(x)", "8.685889638065035/x", "0.01,-3"},
    {"sind(x)", "0.017453292519943295*cosd(x)", "30,200"},
    {"cosd(2*x)", "-(2*(0.017453292519943295*sind(2*x)))", "10,100"},
    {"tand(x)", "0.017453292519943295/(cosd(x)^2)", "10,60"},
    {"asind(x)", "57.29577951308232/sqrt(1-(x^2))", "-0.3,0.9"},
    {"atand(x)", "57.29577951308232/(1+(x^2))", "1,-4"},
    {"coshd(x)", "0.017453292519943295*sinhd(x)", "-50,90"},
    {"X^2", "2*X", "1.5"},
    {"y+1", "0", "1"},
};
}  // namespace

TEST(ExpressionDerivative, PrintedAndCheckedNumerically)
{
    zwtest::cTempDir folder("zw_derivative_test_");
    cWaveformExpressionParser parser;
    const cExpressionDerivative byX("x");
    std::string lines;
    for (const auto& c : kCases) {
        cWaveformExpression tree, derivative, reread;
        ASSERT_TRUE(parser.parseString(c.expression, tree)) << c.expression;
        ASSERT_TRUE(byX.computeDerivative(tree, derivative)) << c.expression;
        const std::string text = derivative.getExpressionAsString();
        EXPECT_EQ(text, c.derivative) << c.expression;
        // The printed derivative reads back to the same tree.
        ASSERT_TRUE(parser.parseString(text, reread)) << text;
        EXPECT_EQ(reread.getExpressionAsString(), text);
        lines += tree.getExpressionAsString() + "\t" + text + "\t" + c.points + "\n";
    }
    folder.write("cases", lines);
    ASSERT_EQ(runOracle("derivative.py", {folder.file("cases"), folder.file("errors")}), 0);
    std::ifstream errors(folder.file("errors"));
    size_t row = 0;
    for (double error; errors >> error; ++row) {
        ASSERT_LT(row, std::size(kCases));
        EXPECT_LT(error, 1e-8) << kCases[row].expression << " -> " << kCases[row].derivative;
    }
    EXPECT_EQ(row, std::size(kCases));
}

TEST(ExpressionDerivative, NodesWithoutRuleAndNames)
{
    cWaveformExpressionParser parser;
    const cExpressionDerivative byX("x");
    for (const char* text : {"x>1", "f(x)", "floor(x)", "x[1]", "min(x,2)", "sign(x)", "x==2 ? 1 : 0", "sin(x, 2)",
                             "\"x\"", "x=3", "strcmp(x, \"a\")", "2*g(x)+1"}) {
        cWaveformExpression tree, derivative;
        ASSERT_TRUE(parser.parseString(text, tree)) << text;
        EXPECT_FALSE(byX.computeDerivative(tree, derivative)) << text << " gave " << derivative.getExpressionAsString();
    }

    // By another variable; case counts only when asked to.
    cWaveformExpression tree, derivative;
    ASSERT_TRUE(parser.parseString("Time*x^2+sin(time)", tree));
    ASSERT_TRUE(cExpressionDerivative("TIME").computeDerivative(tree, derivative));
    EXPECT_EQ(derivative.getExpressionAsString(), "(x^2)+cos(time)");
    ASSERT_TRUE(cExpressionDerivative("time", true).computeDerivative(tree, derivative));
    EXPECT_EQ(derivative.getExpressionAsString(), "cos(time)");
    EXPECT_TRUE(byX.checkDependsOnVariable(tree));
    EXPECT_FALSE(cExpressionDerivative("y").checkDependsOnVariable(tree));

    // A long chained sum (the parser folds it into a deep tree) is derived, or left to the
    // numeric derivative when too deep, without running out of stack.
    std::string sum = "x";
    for (int i = 0; i < 300; ++i)
        sum += "+x";
    ASSERT_TRUE(parser.parseString(sum, tree));
    ASSERT_TRUE(byX.computeDerivative(tree, derivative));
    EXPECT_EQ(derivative.getExpressionAsString(), "301");
    for (int i = 0; i < 20000; ++i)
        sum += "+x";
    ASSERT_TRUE(parser.parseString(sum, tree));
    EXPECT_FALSE(byX.computeDerivative(tree, derivative));
}
