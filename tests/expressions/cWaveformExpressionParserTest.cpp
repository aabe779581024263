// The expression parser: trees (through their printed text and their node kinds), the failure
// messages, deep nesting and large input.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "expressions/cWaveformExpressionParser.h"

using namespace vx3;
using namespace vx3::baseExpression;

namespace {

// Keeps the messages with their severities.
class cCollector : public cVxLoggerCallBack {
public:
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override
    {
        messages.push_back({severity, text});
    }
    std::vector<std::pair<unsigned, std::string>> messages;
};

struct cParsed {
    bool ok = false;
    cWaveformExpression tree;
    std::vector<std::pair<unsigned, std::string>> messages;
};

cParsed parse(const std::string& text, bool modulo = false)
{
    cCollector collector;
    cVxLogger logger;
    logger.setLoggerCallBack(&collector);
    cWaveformExpressionParser parser(logger);
    parser.setFlagParseModuloOperator(modulo);
    cParsed result;
    result.ok = parser.parseString(text, result.tree);
    result.messages = collector.messages;
    return result;
}

std::string printed(const std::string& text)
{
    cParsed result = parse(text);
    EXPECT_TRUE(result.ok) << text;
    EXPECT_TRUE(result.messages.empty()) << text;
    return result.tree.getExpressionAsString();
}

}  // namespace

TEST(ExpressionParser, PrintedTreesOfTheLanguage)
{
    const std::vector<std::pair<std::string, std::string>> table = {
        // Numbers: no suffixes, "inf" and "nan" by their first three letters.
        {"1e3", "1000"},
        {"2.5e-3", "0.0025"},
        {"nan", "undef"},
        {"-inf", "-inf"},
        {"Inf", "inf"},
        // Arithmetic: equal precedence folds to the left, "^" too; "/" binds tighter than "*".
        {"2*3+4", "(2*3)+4"},
        {"2+3*4", "2+(3*4)"},
        {"8/4/2", "(8/4)/2"},
        {"2^3^2", "(2^3)^2"},
        {"a*b/c", "a*(b/c)"},
        {"a/b*c", "(a/b)*c"},
        {"a-b+c", "(a-b)+c"},
        // Comparisons: ">" binds tighter than ">=", "<" tighter than "<=".
        {"a>=b>c", "a>=(b>c)"},
        {"a>b>=c", "(a>b)>=c"},
        {"a<b<=c", "(a<b)<=c"},
        {"a&&b||c", "(a&&b)||c"},
        {"a||b&&c", "a||(b&&c)"},
        {"a==b && c != d", "(a==b)&&(c != d)"},
        // "!" is a name character: this is an assignment to "c!".
        {"c!=d", "c!=d"},
        {"a?b:c", "a?(b:c)"},
        {"y=a+b", "y=(a+b)"},
        // One kind for two spellings.
        {"a**b", "a^b"},
        {"a:=b", "a=b"},
        {"a~=b", "a != b"},
        {"a=~\"v.*\"", "a=~\"v.*\""},
        {"a*=2", "a*=2"},
        {"a-=2", "a-=2"},
        // Prefix operators.
        {"-a+b", "(-a)+b"},
        {"-a^b", "(-a)^b"},
        {"-a-b-c", "(-(a-b))-c"},
        {"-sin(a)+b", "(-sin(a))+b"},
        {"!a && b", "!(a&&b)"},
        {"~a+b", "~(a+b)"},
        {"+a*b", "a*b"},
        {"a*-b", "a*(-b)"},
        // A negation of a list takes its first element.
        {"-(a,b)", "(-a,b)"},
        // Percent, names and ranges.
        {"a%", "a%"},
        {"a%b", "a%b"},
        {"a% + b", "(a%)+b"},
        {"hier::name", "hier::name"},
        {"top.x1.v#1", "top.x1.v#1"},
        {"a:b", "a:b"},
        // Calls, lists and strings.
        {"f()", "f()"},
        {"f", "f"},
        {"f (a, b)", "f(a,b)"},
        {"sin(x)+1", "sin(x)+1"},
        {"max(a, b, c)", "max(a,b,c)"},
        {"[1, 2, 3][1]", "[1,2,3][1]"},
        {"{a, \"b c\"}", "{a,\"b c\"}"},
        {"(a+b)*c", "(a+b)*c"},
        {"\"say \\\"hi\\\"\"", "\"say \\\"hi\\\"\""},
        // Indices bind tighter than any operator, except that a range stays whole.
        {"x[1+2]", "(x[1])+2"},
        {"x[1:2]", "x[1:2]"},
        {"x[(1+2)]", "x[(1+2)]"},
        {"x[1]+2", "(x[1])+2"},
        {"a+x[1]", "a+(x[1])"},
        {"a:x[1]", "(a:x)[1]"},
        {"x[i, j]", "x[i,j]"},
        {"x[[i]]", "x[[i]]"},
        // Dots and arrows between operands.
        {"(a).b", "(a) . b"},
        {"a .b", "a . b"},
        {"a->b", "a->b"},
        // Blanks and tabs between tokens.
        {"\ta\t+ \tb ", "a+b"},
    };
    for (const auto& [text, expected] : table)
        EXPECT_EQ(printed(text), expected) << "expression: " << text;
}

TEST(ExpressionParser, NodeKinds)
{
    EXPECT_EQ(parse("-3").tree.getOperator(), op_real);
    EXPECT_EQ(parse("-3").tree.getAsDouble(), -3.0);
    // The number parser doesn't skip the blank: a negation.
    const cWaveformExpression negation = parse("- 3").tree;
    ASSERT_EQ(negation.getOperator(), op_negate);
    EXPECT_EQ(negation.getChildAsDouble(0), 3.0);

    const cWaveformExpression call = parse("f()").tree;
    EXPECT_EQ(call.getOperator(), op_user_function);
    EXPECT_EQ(call.childSize(), 0u);
    EXPECT_EQ(call.getFunctionName(), "f");
    EXPECT_EQ(parse("f").tree.getOperator(), op_name);

    // Built-in names are case-sensitive.
    EXPECT_EQ(parse("sin(x)").tree.getOperator(), op_function_sin);
    EXPECT_EQ(parse("SIN(x)").tree.getOperator(), op_user_function);
    EXPECT_EQ(parse("derivative_centered(v)").tree.getOperator(), op_function_derivative_centered);
    // Waveform commands are resolved by the evaluator, not the parser.
    EXPECT_EQ(parse("waveform(1, 2)").tree.getOperator(), op_user_function);

    EXPECT_EQ(parse("a%").tree.getOperator(), op_percent);
    EXPECT_EQ(parse("a%b").tree.getOperator(), op_name);
    EXPECT_EQ(parse("a%b").tree.getAsString(), "a%b");
    EXPECT_EQ(parse("hier::name").tree.getOperator(), op_name);
    EXPECT_EQ(parse("a:b").tree.getOperator(), op_range);
    EXPECT_EQ(parse("\"s\"").tree.getOperator(), op_quoted_string);
    EXPECT_EQ(parse("\"s\"").tree.getAsString(), "s");

    // With the modulo flag "%" is an operator between operands.
    cParsed modulo = parse("a%b", true);
    EXPECT_EQ(modulo.tree.getOperator(), op_name);  // "%" is still a name character
    modulo = parse("a % b", true);
    ASSERT_TRUE(modulo.ok);
    EXPECT_EQ(modulo.tree.getOperator(), op_modulo);
    EXPECT_EQ(modulo.tree.getExpressionAsString(), "a % b");
    EXPECT_EQ(parse("c!=d").tree.getOperator(), op_assign);
    EXPECT_EQ(parse("c != d").tree.getOperator(), op_not_equal);
}

TEST(ExpressionParser, FailureMessages)
{
    const std::string failed = "Failed to parse expression.";
    for (const std::string text : {"", "   ", "(a,b", "[a)", "{a", "*a", ")", "\"open"}) {
        const cParsed result = parse(text);
        EXPECT_FALSE(result.ok) << text;
        ASSERT_EQ(result.messages.size(), 1u) << text;
        EXPECT_EQ(result.messages[0].first, vxLogger::error);
        EXPECT_EQ(result.messages[0].second, failed);
        EXPECT_EQ(result.tree.getOperator(), op_none) << text;
    }
    // A prefix parses: the message, the parsed part as information, then the rest.
    const std::vector<std::tuple<std::string, std::string, std::string>> partial = {
        {"1k", "1", "... k"},
        {"nancy", "nancy", ""},
        {"sin x", "sin", "... x"},
        {"a+", "a", "... +"},
        {"a\nb", "a", "...  b"},  // the log line has the newline as a blank
        {"f(a", "f", "... (a"},
        {"x[]", "x", "... []"},
        {"a b", "a", "... b"},
    };
    for (const auto& [text, part, rest] : partial) {
        const cParsed result = parse(text);
        EXPECT_FALSE(result.ok) << text;
        if (text == "nancy") {
            // NaN followed by "cy".
            ASSERT_EQ(result.messages.size(), 3u);
            EXPECT_EQ(result.messages[1].second, "nan");
            EXPECT_EQ(result.messages[2].second, "... cy");
            continue;
        }
        ASSERT_EQ(result.messages.size(), 3u) << text;
        EXPECT_EQ(result.messages[0], std::make_pair(unsigned(vxLogger::error), std::string("Failed to entirely parse expression.")));
        EXPECT_EQ(result.messages[1], std::make_pair(unsigned(vxLogger::info), part)) << text;
        EXPECT_EQ(result.messages[2], std::make_pair(unsigned(vxLogger::error), rest)) << text;
    }
}

TEST(ExpressionParser, DeepNestingIsRefusedWithAMessage)
{
    const std::string tooDeep = "The expression nests brackets or prefix operators more than 1000 levels deep.";
    const size_t deep = 200000;
    const std::vector<std::string> texts = {
        std::string(deep, '(') + "a" + std::string(deep, ')'),
        std::string(deep, '[') + "1" + std::string(deep, ']'),
        std::string(deep, '(') + "a",
        std::string(deep, '-') + "a",
        std::string(deep, '!') + "a",
        "f(" + std::string(deep, '{'),
        [&] {
            std::string text = "x";
            for (size_t i = 0; i < deep / 3; ++i)
                text += "[x";
            return text;
        }(),
    };
    for (const auto& text : texts) {
        const cParsed result = parse(text);
        EXPECT_FALSE(result.ok);
        ASSERT_EQ(result.messages.size(), 2u);
        EXPECT_EQ(result.messages[0].second, tooDeep);
        EXPECT_EQ(result.messages[1].second, "Failed to parse expression.");
        EXPECT_EQ(result.tree.getOperator(), op_none);
    }
    // Up to the limit the nesting parses, and prints back.
    const std::string atLimit = std::string(1000, '(') + "a+b" + std::string(1000, ')');
    EXPECT_EQ(printed(atLimit), atLimit);
    EXPECT_FALSE(parse("(" + atLimit + ")").ok);
}

TEST(ExpressionParser, MegabyteExpressions)
{
    // A sum of 150000 names folds to the left: a tree as deep as the text is long, parsed,
    // printed, copied, compared and destroyed without recursion.
    const size_t terms = 150000;
    std::string sum = "v0";
    for (size_t i = 1; i < terms; ++i)
        sum += "+v" + std::to_string(i);
    ASSERT_GT(sum.size(), 1000000u);
    const cParsed result = parse(sum);
    ASSERT_TRUE(result.ok);
    EXPECT_EQ(result.tree.getTotalSize(), 2 * terms - 1);
    EXPECT_EQ(result.tree.computeVariableNames().size(), terms);
    // The left spine: the last term is the root's second operand, the first the deepest node.
    EXPECT_EQ(result.tree.operands()[1].getAsString(), "v" + std::to_string(terms - 1));
    const cWaveformExpression* node = &result.tree;
    size_t depth = 0;
    while (node->childSize()) {
        node = &node->operands()[0];
        ++depth;
    }
    EXPECT_EQ(depth, terms - 1);
    EXPECT_EQ(node->getAsString(), "v0");
    std::string expected(terms - 2, '(');
    expected += "v0+v1";
    for (size_t i = 2; i < terms; ++i)
        expected += ")+v" + std::to_string(i);
    EXPECT_EQ(result.tree.getExpressionAsString(), expected);
    cWaveformExpression copy = result.tree;
    EXPECT_TRUE(copy == result.tree);
    copy.operands()[0].operands()[1].setStringValue("changed");
    EXPECT_TRUE(copy != result.tree);

    // A right-leaning chain: each "*" goes below the "+" to its left.
    std::string mixed = "1";
    for (size_t i = 0; i < 100000; ++i)
        mixed += i % 2 ? "+2" : "*3";
    const cParsed mixedResult = parse(mixed);
    ASSERT_TRUE(mixedResult.ok);
    EXPECT_EQ(mixedResult.tree.getTotalSize(), 200001u);

    // A vector literal of a megabyte.
    std::string vector = "[";
    std::vector<double> values;
    std::mt19937_64 random(5);
    std::uniform_real_distribution<double> uniform(-1e6, 1e6);
    while (vector.size() < 1000000) {
        values.push_back(uniform(random));
        char buffer[40];
        std::snprintf(buffer, sizeof buffer, "%.17g", values.back());
        vector += (values.size() > 1 ? ", " : "") + std::string(buffer);
    }
    vector += "]";
    cParsed list = parse(vector);
    ASSERT_TRUE(list.ok);
    ASSERT_EQ(list.tree.childSize(), values.size());
    ASSERT_TRUE(list.tree.extendToDoubleVector());
    EXPECT_EQ(list.tree.doubleValues(), values);
}

TEST(ExpressionParser, PrintedTextReadsBackToTheSameTree)
{
    // Random expressions over every operator and prefix: the printed text parses to a tree that
    // prints the same again.
    std::mt19937 random(17);
    const std::vector<std::string> operators = {"+", "-", "*", "/", "^", "**", "<", "<=", ">", ">=", "==", "!=",
                                                "&&", "||", "&", "|", ":", "?", "=", "=~", "!~", ".", "->"};
    const std::vector<std::string> operands = {"a", "b2", "x.y", "3", "0.5", "f(a)", "sin(b)", "(a+b)", "[1,2]",
                                               "\"s\"", "v[1]", "w[1:2]", "c%"};
    for (int round = 0; round < 2000; ++round) {
        std::string text;
        const int count = 1 + static_cast<int>(random() % 7);
        for (int i = 0; i < count; ++i) {
            if (i)
                text += " " + operators[random() % operators.size()] + " ";
            const unsigned prefix = random() % 8;
            if (prefix == 0)
                text += "-";
            else if (prefix == 1)
                text += "!";
            text += operands[random() % operands.size()];
            if (random() % 9 == 0)
                text += "[" + operands[random() % operands.size()] + "]";
        }
        const cParsed first = parse(text);
        ASSERT_TRUE(first.ok) << text;
        const std::string once = first.tree.getExpressionAsString();
        const cParsed second = parse(once);
        ASSERT_TRUE(second.ok) << text << " printed as " << once;
        EXPECT_EQ(second.tree.getExpressionAsString(), once) << text;
    }
}
