// zelwave-cli eval: expressions of the waveform calculator. It parses an expression and prints
// its tree; the evaluation over the curves of files comes with the curve engine.
#include <iostream>
#include <string>
#include <vector>

#include "base/cVxLogger.h"
#include "cCliTool.h"
#include "expressions/cWaveformExpressionParser.h"

namespace vx3 {

namespace {

// Parse messages on the error stream, with their severity tags.
class cEvalLogger : public cVxLoggerCallBack {
public:
    explicit cEvalLogger(std::ostream& stream) : mStream(stream) {}
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override
    {
        mStream << vxLogger::severityTag(severity) << text << '\n';
    }

private:
    std::ostream& mStream;
};

// One line per node, indented by depth: its kind, then its name, string or numbers.
void printNodes(const cWaveformExpression& tree, std::ostream& out)
{
    std::vector<std::pair<const cWaveformExpression*, size_t>> pending{{&tree, 0}};
    while (!pending.empty()) {
        const auto [node, depth] = pending.back();
        pending.pop_back();
        out << std::string(2 * depth, ' ') << baseExpression::getOpTypeName(node->getOperator());
        for (const auto& text : node->stringValues())
            out << " \"" << text << '"';
        for (double value : node->doubleValues()) {
            std::string number;
            baseExpression::appendNumber(number, value, false);
            out << ' ' << number;
        }
        out << '\n';
        for (size_t i = node->childSize(); i-- > 0;)
            pending.emplace_back(&node->operands()[i], depth + 1);
    }
}

int runEval(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err)
{
    std::vector<std::string> files;
    std::string expression;
    bool haveExpression = false, tree = false, nodes = false;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if ((argument == "-e" || argument == "--expression") && i + 1 < arguments.size()) {
            if (haveExpression) {
                err << "zelwave-cli eval: give one expression\n";
                return 2;
            }
            expression = arguments[++i];
            haveExpression = true;
        } else if (argument == "--tree") {
            tree = true;
        } else if (argument == "--nodes") {
            nodes = true;
        } else if (argument.size() > 1 && argument[0] == '-') {
            err << "zelwave-cli eval: unknown option \"" << argument << "\"\n";
            return 2;
        } else {
            files.push_back(argument);
        }
    }
    if (!haveExpression) {
        err << "zelwave-cli eval: give an expression with -e EXPR\n";
        return 2;
    }
    if (!tree && !nodes) {
        err << "zelwave-cli eval: evaluating expressions is not available yet; --tree and --nodes print the "
               "parsed expression\n";
        return 1;
    }
    cEvalLogger messages(err);
    cVxLogger logger;
    logger.setLoggerCallBack(&messages);
    cWaveformExpressionParser parser(logger);
    cWaveformExpression result;
    if (!parser.parseString(expression, result))
        return 1;
    if (tree)
        out << result.getExpressionAsString() << '\n';
    if (nodes)
        printNodes(result, out);
    return 0;
}

}  // namespace

void addEvalSubcommands(cCliTool& tool)
{
    tool.add({"eval", "parse an expression of the waveform calculator and print its tree",
              "usage: zelwave-cli eval [FILE...] -e EXPR [--tree] [--nodes]\n\n"
              "Parses EXPR as the waveform calculator does.\n"
              "  --tree   prints the expression back with brackets around every operand that is\n"
              "           itself an operation, so the text shows how it was read: \"2*3+4\" prints\n"
              "           as \"(2*3)+4\", \"-a-b-c\" as \"(-(a-b))-c\".\n"
              "  --nodes  prints the tree one node a line, indented by depth: the node's kind, then\n"
              "           its name or string in quotes or its numbers.\n"
              "Parse errors go to standard error and the exit code is 1.\n\n"
              "Not available yet: evaluating EXPR over the curves of the FILEs (a number, or a curve\n"
              "as CSV). Without --tree or --nodes eval says so and exits with 1; the FILEs are not\n"
              "read.\n",
              runEval});
}

}  // namespace vx3
