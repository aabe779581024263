// The evaluator through its interface: each status reported once with its text, the flags and
// the standard names, temporary and named curves in the result section, nesting limits.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "expressions/evaluator/cWaveformExpressionEvaluator.h"
#include "expressions/cWaveformExpressionParser.h"

using namespace vx3;

namespace {

class cMessages : public cVxLoggerCallBack {
public:
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override
    {
        if (severity == vxLogger::error)
            errors.push_back(text);
    }
    std::vector<std::string> errors;
};

class Evaluator : public ::testing::Test {
protected:
    void SetUp() override { evaluator.setLoggerCallBack(&messages); }

    // The value of text, or NaN after a failure.
    double number(const std::string& text)
    {
        cWaveformExpression result;
        if (!evaluator.evaluateString(text, result))
            return NAN;
        return result.getAsDouble();
    }
    bool succeeds(const std::string& text)
    {
        cWaveformExpression result;
        return evaluator.evaluateString(text, result);
    }
    // The errors reported by a failing text.
    std::vector<std::string> failure(const std::string& text)
    {
        messages.errors.clear();
        cWaveformExpression result;
        EXPECT_FALSE(evaluator.evaluateString(text, result)) << text;
        return messages.errors;
    }

    cMessages messages;
    cWaveformExpressionEvaluator evaluator;
};

}  // namespace

TEST_F(Evaluator, EveryStatusIsReportedOnceWithItsText)
{
    ASSERT_TRUE(succeeds("create_waveform(\"t\", \"a\", [1, 2, 3])"));
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"sin(\"x\")", "Bad arguments for \"sin\"."},
        {"x[1]", "Bad first argument."},
        {"\"a\" + 1", "Bad first argument for \"+\"."},
        {"1 - \"a\"", "Bad second argument for \"-\"."},
        {"resample_waveform(a, 0, \"a\", 1)", "Bad third argument for \"resample_waveform\"."},
        {"shift_waveform(a, 1, 0, \"y\", 0)", "Bad 4th argument for \"shift_waveform\"."},
        {"cos(1, 2)", "Bad number of arguments for \"cos\"."},
        {"[1, 2] * [1, 2, 3]", "The vector sizes do not match."},
        {"[1, 2][0]", "The vector index is bad."},
        {"sgn(1 + j)", "\"sgn\" does not apply to complex values."},
        {"Cos(1)", "The function \"Cos\" is unknown."},
        {"bit(a, 1)", "One or several curves in the expression have an incompatible data type."},
        // Deep in a tree, told once, not once per level.
        {"1 + (2 * (3 - sin(4, 5)))", "Bad number of arguments for \"sin\"."},
    };
    for (const auto& [text, message] : cases)
        EXPECT_EQ(failure(text), std::vector<std::string>{message}) << text;
}

TEST_F(Evaluator, StandardNamesFlagsAndDefinitions)
{
    EXPECT_DOUBLE_EQ(number("Pi"), 3.141592653589793);
    EXPECT_DOUBLE_EQ(number("PI"), 3.141592653589793);
    EXPECT_DOUBLE_EQ(number("e"), 2.718281828459045);
    EXPECT_TRUE(std::isnan(number("undef")));
    cWaveformExpression result;
    ASSERT_TRUE(evaluator.evaluateString("j", result));
    EXPECT_EQ(result.getAsComplex(), baseExpression::double_complex(0, 1));

    evaluator.insertUserDefinedParameterValue("Gain", 4);
    EXPECT_EQ(number("gain * 2"), 8);
    EXPECT_TRUE(succeeds("f(x, y) = x*y + gain"));
    EXPECT_EQ(number("f(2, 3)"), 10);
    ASSERT_NE(evaluator.findMatchingUserDefinedFunction("f", 2), nullptr);
    EXPECT_EQ(evaluator.findMatchingUserDefinedFunction("f", 1), nullptr);
    EXPECT_EQ(failure("f(1)"), std::vector<std::string>{"The function \"f\" is unknown."});

    // Case-sensitive names: "pi" is no longer Pi.
    evaluator.setFlagMatchStringsCaseSensitive(true);
    EXPECT_EQ(number("Pi"), 3.141592653589793);
    EXPECT_EQ(failure("pi + 1"), std::vector<std::string>{"Bad first argument for \"+\"."});
    EXPECT_EQ(number("\"A\" == \"a\""), 0);
    evaluator.setFlagMatchStringsCaseSensitive(false);
    EXPECT_EQ(number("\"A\" == \"a\""), 1);

    evaluator.setFlagAcceptWildCardsForStringComparison(true);
    EXPECT_EQ(number("\"v(out)\" == \"v(*)\""), 1);
    evaluator.setFlagAcceptWildCardsForStringComparison(false);
    EXPECT_EQ(number("\"v(out)\" == \"v(*)\""), 0);

    evaluator.setFlagFirstVectorIndexIsOne(false);
    EXPECT_EQ(number("[7, 8, 9][0]"), 7);
    evaluator.setFlagFirstVectorIndexIsOne(true);
    EXPECT_EQ(number("[7, 8, 9][1]"), 7);

    evaluator.setMaximumVectorSize(3);
    EXPECT_EQ(failure("[1, 2, 3, 4]"), std::vector<std::string>{"The maximum vector size has been reached."});
    evaluator.setMaximumVectorSize(1000);

    // v[i] = x on a vector parameter; a += b.
    EXPECT_TRUE(succeeds("v = [1, 2, 3]"));
    EXPECT_EQ(number("v[2] = 20"), 20);
    EXPECT_EQ(number("v[2] + v[3]"), 23);
    EXPECT_EQ(number("n = 5"), 5);
    EXPECT_EQ(number("n += 2"), 7);
    EXPECT_EQ(number("n *= 2"), 14);

    EXPECT_EQ(failure("a + b = 3"), std::vector<std::string>{"The left hand side of the expression is malformed."});

    evaluator.clearEvaluator();
    EXPECT_EQ(failure("Pi + 1"), std::vector<std::string>{"Bad first argument for \"+\"."});
    EXPECT_EQ(evaluator.findMatchingUserDefinedFunction("f", 2), nullptr);
    evaluator.initStd();
    EXPECT_DOUBLE_EQ(number("Pi"), 3.141592653589793);
}

TEST_F(Evaluator, TemporaryAndNamedCurvesLiveInTheResultSection)
{
    cCurvePlotDataFile store;
    evaluator.setDataFile(&store);
    cWaveformExpression result;
    ASSERT_TRUE(evaluator.evaluateString("create_waveform(\"t\", \"a\", [1, 2, 4], [0, 1, 2])", result));
    ASSERT_TRUE(evaluator.evaluateString("a * 2 + 1", result));
    // Each operation leaves a temporary curve "_n_"; the value is the last one's name.
    EXPECT_EQ(result.getOperator(), baseExpression::op_name);
    const std::string name = result.getAsString();
    EXPECT_EQ(name.front(), '_');
    EXPECT_EQ(name.back(), '_');
    const cCurvePlotVariable* curve = evaluator.getResultCurvePtr(result);
    ASSERT_NE(curve, nullptr);
    EXPECT_EQ(curve->getVectorSize(), 3u);
    EXPECT_EQ(curve->getDoubleValue(2), 9);
    cCurvePlotDataSection* section = evaluator.getResultSection();
    EXPECT_EQ(section->name(), "post_process");
    EXPECT_EQ(section->getNbOfVariables(), 3u);  // a, a*2 and a*2+1

    ASSERT_TRUE(evaluator.evaluateString("b = a - 1", result));
    EXPECT_EQ(result.getAsString(), "b");
    evaluator.clearTemporaryCurves();
    EXPECT_EQ(section->getNbOfVariables(), 2u);  // a and b stay
    EXPECT_NE(section->findVariableIndex("b"), cCurvePlotDataSection::npos);
    EXPECT_EQ(number("b[3]"), 3);
    EXPECT_EQ(number("max(b)"), 3);
    EXPECT_EQ(number("size(b)"), 3);
    EXPECT_EQ(number("B(1.5)"), 2);  // names are lower-cased before the look-up

    // A parameter of the same name takes the curve's place.
    EXPECT_EQ(number("b = 7"), 7);
    EXPECT_EQ(section->findVariableIndex("b"), cCurvePlotDataSection::npos);
    EXPECT_EQ(number("b + 1"), 8);

    evaluator.clearEvaluator();
    EXPECT_EQ(section->getNbOfVariables(), 0u);
}

TEST_F(Evaluator, DeepTreesStopWithAMessage)
{
    // A chain deeper than the limit, built without the parser.
    cWaveformExpression tree(1.0);
    for (int i = 0; i < 6000; ++i)
        tree = cWaveformExpression(baseExpression::op_add, std::move(tree), cWaveformExpression(1.0));
    messages.errors.clear();
    EXPECT_FALSE(evaluator.topLevelEvaluate(tree));
    ASSERT_EQ(messages.errors.size(), 1u);
    EXPECT_NE(messages.errors[0].find("nests more than 5000 levels deep"), std::string::npos);

    cWaveformExpression shallow(1.0);
    for (int i = 0; i < 4000; ++i)
        shallow = cWaveformExpression(baseExpression::op_add, std::move(shallow), cWaveformExpression(1.0));
    ASSERT_TRUE(evaluator.topLevelEvaluate(shallow));
    EXPECT_EQ(shallow.getAsDouble(), 4001);

    // Terminating recursion through a condition evaluates only the branch taken.
    EXPECT_TRUE(succeeds("fib(n) = n < 2 ? n : fib(n - 1) + fib(n - 2)"));
    EXPECT_EQ(number("fib(15)"), 610);
}

TEST_F(Evaluator, RandomNumbersAndPreparedTables)
{
    // Seed 0 is taken as 11.
    const double first = number("random_seed(0) + random_number(uniform_distribution(2, 5))");
    const double again = number("random_seed(11) + random_number(uniform_distribution(5, 2))") - 11;
    EXPECT_EQ(first, again);
    EXPECT_GE(first, 2);
    EXPECT_LE(first, 5);
    cWaveformExpression result;
    ASSERT_TRUE(evaluator.evaluateString("random_number(normal_distribution(1, 0.5), 1000)", result));
    ASSERT_EQ(result.doubleSize(), 1000u);
    double sum = 0;
    for (double value : result.doubleValues())
        sum += value;
    EXPECT_NEAR(sum / 1000, 1, 0.1);
    EXPECT_EQ(failure("random_number(3)"), std::vector<std::string>{"Bad first argument for \"random_number\"."});
    ASSERT_TRUE(evaluator.evaluateString("create_random_waveform(\"t\", \"noise\", 11, 1e-3, uniform_distribution(-1, 1))", result));
    EXPECT_EQ(number("size(noise)"), 11);
    EXPECT_GE(number("min(noise)"), -1);
    EXPECT_LE(number("max(noise)"), 1);

    EXPECT_EQ(number("poly(1, 0, -2, 3)"), 7);
    EXPECT_EQ(number("poly([1, 0, -2], 3)"), 7);
    EXPECT_EQ(number("interpolate_linear([0, 1, 2], [0, 10, 20], 0.25)"), 2.5);
    EXPECT_TRUE(std::isnan(number("interpolate_linear([0, 1, 2], [0, 10, 20], 3)")));
    EXPECT_EQ(number("extrapolate_linear([0, 1, 2], [0, 10, 20], 3)"), 30);
    // The polynomial through three points of x^2 is x^2.
    EXPECT_DOUBLE_EQ(number("interpolate_poly([0, 1, 3], [0, 1, 9], 2)"), 4);
    // A curve read through a table, sample by sample.
    ASSERT_TRUE(evaluator.evaluateString("create_waveform(\"t\", \"ramp\", [0, 0.5, 1])", result));
    ASSERT_TRUE(evaluator.evaluateString("interpolate_linear([0, 1], [10, 20], ramp)", result));
    EXPECT_EQ(number("max(interpolate_linear([0, 1], [10, 20], ramp))"), 20);
    messages.errors.clear();
    EXPECT_TRUE(std::isnan(number("interpolate_linear([0, 0], [1, 2], 1)")));
    ASSERT_EQ(messages.errors.size(), 1u);
    EXPECT_EQ(messages.errors[0].rfind("Bad arguments for \"interpolate_linear\".", 0), 0u);
}

TEST_F(Evaluator, CurvesDefinedFromTextAndEmptyCurves)
{
    ASSERT_TRUE(succeeds("create_waveform(\"t\", \"a\", [1, 2, 3], [0, 1, 2])"));
    ASSERT_TRUE(evaluator.defineCurveFromString("Twice", "a * 2"));
    EXPECT_EQ(number("twice[3]"), 6);
    messages.errors.clear();
    EXPECT_FALSE(evaluator.defineCurveFromString("c", "1 + 2"));
    EXPECT_EQ(messages.errors, std::vector<std::string>{"Failed to define curve from \"c\" ... (1 + 2)"});
    // a - b of curves that don't overlap is empty, and so is what is made of it.
    ASSERT_TRUE(succeeds("create_waveform(\"t\", \"b\", [1, 2], [5, 6])"));
    ASSERT_TRUE(succeeds("d = a - b"));
    EXPECT_EQ(number("size(d)"), 0);
    EXPECT_EQ(failure("d + 1"), std::vector<std::string>{"The curve \"d\" is empty."});
}
