// zelwave-cli eval: expressions of the waveform calculator, evaluated over the curves of files,
// or parsed and printed as their trees.
#include <iostream>
#include <string>
#include <vector>

#include "base/cVxLogger.h"
#include "cCliTool.h"
#include "base/cVxString.h"
#include "cliFileSupport.h"
#include "expressions/evaluator/cWaveformExpressionEvaluator.h"
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

// A value of the evaluator on out: a number, one element a line, a string, or a curve as CSV.
void printValue(cWaveformExpressionEvaluator& evaluator, const cWaveformExpression& value, std::ostream& out)
{
    using namespace baseExpression;
    const auto& numbers = value.doubleValues();
    switch (value.getOperator()) {
    case op_integer:
    case op_real:
        out << cliFiles::number(numbers.at(0)) << '\n';
        return;
    case op_complex:
        out << cliFiles::number(numbers.at(0)) << ',' << cliFiles::number(numbers.at(1)) << '\n';
        return;
    case op_real_vector:
        for (double number : numbers)
            out << cliFiles::number(number) << '\n';
        return;
    case op_complex_vector:
        for (size_t i = 0; i + 1 < numbers.size(); i += 2)
            out << cliFiles::number(numbers[i]) << ',' << cliFiles::number(numbers[i + 1]) << '\n';
        return;
    case op_quoted_string: out << value.getAsString() << '\n'; return;
    default: break;
    }
    cPostProcessCurveDescription curve;
    if (!evaluator.getCurveDescription(value, curve)) {
        // A function definition leaves its name.
        out << value.getAsString() << '\n';
        return;
    }
    if (curve.checkCurveIsDigital()) {
        std::string error;
        if (curve.load(false, error)) {
            out << "x,state\n";
            cliFiles::dumpLogicChanges(*curve.getSection(), *curve.getCurvePtr(), false, out);
        }
        return;
    }
    waveformExpressionEvaluator::cEvaluator::cCurveCopy copy;
    if (!evaluator.readCurve(curve, copy))
        return;
    out << (copy.complex ? "x,real,imag\n" : "x,y\n");
    for (size_t i = 0; i < copy.size(); ++i) {
        out << cliFiles::number(copy.xs[i]) << ',';
        if (copy.complex)
            out << cliFiles::number(copy.yc[i].real()) << ',' << cliFiles::number(copy.yc[i].imag()) << '\n';
        else
            out << cliFiles::number(copy.ys[i]) << '\n';
    }
}

int runEval(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err)
{
    std::vector<std::string> expressions, rest;
    bool tree = false, nodes = false, caseSensitive = false, fromZero = false;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if ((argument == "-e" || argument == "--expression") && i + 1 < arguments.size())
            expressions.push_back(arguments[++i]);
        else if (argument == "--tree")
            tree = true;
        else if (argument == "--nodes")
            nodes = true;
        else if (argument == "--case-sensitive")
            caseSensitive = true;
        else if (argument == "--index-from-zero")
            fromZero = true;
        else
            rest.push_back(argument);
    }
    cliFiles::cFileOptions options;
    if (!cliFiles::readOptions(rest, options, err, true))
        return 2;
    if (expressions.empty()) {
        err << "zelwave-cli eval: give an expression with -e EXPR\n";
        return 2;
    }
    cEvalLogger messages(err);
    if (tree || nodes) {
        cVxLogger logger;
        logger.setLoggerCallBack(&messages);
        cWaveformExpressionParser parser(logger);
        for (const auto& expression : expressions) {
            cWaveformExpression result;
            if (!parser.parseString(expression, result))
                return 1;
            if (tree)
                out << result.getExpressionAsString() << '\n';
            if (nodes)
                printNodes(result, out);
        }
        return 0;
    }
    cCurvePlotDataFile store;
    for (const auto& file : options.positional) {
        const returnCode code = cliFiles::readFile(store, file, options, err);
        if (code != ok && code != partly_parsed) {
            err << "zelwave-cli eval: can't read \"" << file << "\"\n";
            return 1;
        }
    }
    cCurvePlotDataSection* current = nullptr;
    if (!options.positional.empty()) {
        uint64_t index = 0;
        const std::vector<cCurvePlotDataSection*> sections = cliFiles::sectionsOf(store);
        if (!cVxString(options.section).toUint64(index) || index >= sections.size()) {
            err << "zelwave-cli eval: --section wants a number below " << sections.size() << '\n';
            return 2;
        }
        current = sections[index];
    }
    cWaveformExpressionEvaluator evaluator(&store, current);
    evaluator.setLoggerCallBack(&messages);
    evaluator.setFlagMatchStringsCaseSensitive(caseSensitive);
    evaluator.setFlagFirstVectorIndexIsOne(!fromZero);
    cWaveformExpression result;
    for (const auto& expression : expressions)
        if (!evaluator.evaluateString(expression, result))
            return 1;
    printValue(evaluator, result, out);
    return 0;
}

}  // namespace

void addEvalSubcommands(cCliTool& tool)
{
    tool.add({"eval", "evaluate an expression of the waveform calculator over the curves of files",
              "usage: zelwave-cli eval [FILE...] -e EXPR [-e EXPR...] [--section N] [--tree] [--nodes]\n\n"
              "Reads the FILEs and evaluates EXPR as the waveform calculator does. Plain names are\n"
              "curves of the current section (the first one, or section N of --section, counted from\n"
              "0 as zelwave-cli info lists them), then parameters; waveform(\"section\", \"curve\")\n"
              "names a curve of any section; a number there is the section's id: the sections of all\n"
              "FILEs count from 1 in the order they are read. With several -e the expressions are\n"
              "evaluated in order in one calculator, so that a definition (\"f(x) = x^2\", \"g = v(out) - v(in)\")\n"
              "serves the expressions after it; the value of the last one is printed:\n"
              "  a number          one line (a complex number as real,imaginary)\n"
              "  a vector          one element a line\n"
              "  a string          the string\n"
              "  a curve           CSV with a header line: x,y (complex: x,real,imag); a logic\n"
              "                    curve: x,state, one line per change\n"
              "Options:\n"
              "  --section N         the current section\n"
              "  --case-sensitive    names match with their case (by default they are lower-cased)\n"
              "  --index-from-zero   vector and curve indices count from 0 (by default from 1)\n"
              "  --reader NAME, --read-all, --verbose   as for zelwave-cli info\n"
              "  --tree              prints each expression back with brackets around every operand\n"
              "                      that is itself an operation, so the text shows how it was read:\n"
              "                      \"2*3+4\" prints as \"(2*3)+4\", \"-a-b-c\" as \"(-(a-b))-c\"\n"
              "  --nodes             prints the tree one node a line, indented by depth: the node's\n"
              "                      kind, then its name or string in quotes or its numbers\n"
              "With --tree or --nodes nothing is evaluated and the FILEs are not read.\n"
              "Parse and evaluation errors go to standard error and the exit code is 1.\n",
              runEval});
}

}  // namespace vx3
