#include "cliFileSupport.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <iostream>

#include "base/cVxLogger.h"
#include "base/cVxString.h"
#include "readers/scan/cParserBase.h"
#include "readers/scan/cParserBaseIterators.h"

namespace vx3::cliFiles {

namespace {
// The reader's messages go to the error stream, so that standard output stays data.
class cStreamLogger : public cVxLoggerCallBack {
public:
    cStreamLogger(std::ostream& stream, bool verbose) : mStream(stream), mVerbose(verbose) {}
    // Errors and warnings always; informations and the rest only when asked for.
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override
    {
        const bool problem = severity >= vxLogger::fatal_error && severity <= vxLogger::warning;
        if (problem || mVerbose)
            mStream << vxLogger::severityTag(severity) << text << '\n';
    }

private:
    std::ostream& mStream;
    bool mVerbose;
};

}  // namespace

bool cFileOptions::hasFlag(const std::string& flag) const
{
    return std::find(flags.begin(), flags.end(), flag) != flags.end();
}

// Common options; false (with a message) for a bad one.
bool readOptions(const std::vector<std::string>& arguments, cFileOptions& options, std::ostream& err,
                 bool withSection)
{
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "--reader" && i + 1 < arguments.size()) {
            const std::string& name = arguments[++i];
            if (name == "csv")
                options.reader = curvePlotParser::tabulated;
            else if (name == "fast")
                options.reader = curvePlotParser::tabulated_fast;
            else if (name == "slow")
                options.reader = curvePlotParser::tabulated_slow;
            else if (name == "html")
                options.reader = curvePlotParser::html;
            else if (name == "tecplot")
                options.reader = curvePlotParser::tecplot;
            else if (name == "vcd")
                options.reader = curvePlotParser::vcd;
            else if (name == "nutmeg")
                options.reader = curvePlotParser::nutmeg;
            else {
                err << "zelwave-cli: unknown reader \"" << name << "\" (csv, fast, slow, html, tecplot, vcd, nutmeg)\n";
                return false;
            }
        } else if (argument == "--read-all") {
            options.readAll = true;
        } else if (argument == "--verbose" || argument == "-v") {
            options.verbose = true;
        } else if (withSection && argument == "--section" && i + 1 < arguments.size()) {
            options.section = arguments[++i];
        } else if (std::find(options.allowedFlags.begin(), options.allowedFlags.end(), argument) !=
                   options.allowedFlags.end()) {
            options.flags.push_back(argument);
        } else if (argument.size() > 1 && argument[0] == '-' && argument != "-" &&
                   !(argument.size() > 1 && (std::isdigit(static_cast<unsigned char>(argument[1])) || argument[1] == '.'))) {
            err << "zelwave-cli: unknown option \"" << argument << "\"\n";
            return false;
        } else {
            options.positional.push_back(argument);
        }
    }
    return true;
}

// Reads one file into the store; messages go to err.
returnCode readFile(cCurvePlotDataFile& store, const std::string& name, const cFileOptions& options, std::ostream& err)
{
    cStreamLogger messages(err, options.verbose);
    cCurvePlotParser parser;
    parser.logger().setLoggerCallBack(&messages);
    parser.setForcedParserType(options.reader);
    if (options.readAll)
        parser.setOption(curvePlotParser::prop_parser_option_minimum_size_for_db_access, -1.0);
    const returnCode code = parser.parse(store, name);
    parser.logger().setLoggerCallBack(nullptr);
    return code;
}

std::vector<cCurvePlotDataSection*> sectionsOf(cCurvePlotDataFile& store)
{
    std::vector<cCurvePlotDataSection*> sections;
    for (uint64_t i = 0; i < store.getNbOfDataSections(); ++i)
        sections.push_back(store.getDataSectionFromIndex(i));
    return sections;
}

bool findCurve(cCurvePlotDataFile& store, const cFileOptions& options, const std::string& name,
               const std::string& subcommand, std::ostream& err, cCurveChoice& choice)
{
    uint64_t sectionIndex = 0;
    if (!cVxString(options.section).toUint64(sectionIndex)) {
        err << "zelwave-cli " << subcommand << ": --section wants a number\n";
        return false;
    }
    const std::vector<cCurvePlotDataSection*> sections = sectionsOf(store);
    if (sectionIndex >= sections.size()) {
        err << "zelwave-cli " << subcommand << ": the file has " << sections.size() << " section(s)\n";
        return false;
    }
    choice.section = sections[sectionIndex];
    cCurvePlotDataSection& section = *choice.section;
    const uint64_t index = section.findVariableIndex(name);
    if (index != cCurvePlotDataSection::npos) {
        choice.curve = &section.getVariable(index);
        choice.index = index;
        return true;
    }
    const uint64_t sweep = section.findSweepVariableIndex(name);
    if (sweep != cCurvePlotDataSection::npos) {
        choice.curve = &section.getSweepVariable(sweep);
        choice.index = sweep;
        choice.isSweep = true;
        return true;
    }
    err << "zelwave-cli " << subcommand << ": no curve \"" << name << "\" in section " << sectionIndex << '\n';
    return false;
}

bool loadValues(cCurvePlotDataSection& section, const cCurvePlotVariable& curve, uint64_t index, bool isSweep,
                const std::string& subcommand, std::ostream& err, bool* loaded)
{
    cVxLogger logger;
    cCurvePlotVariable& values = const_cast<cCurvePlotVariable&>(curve);
    const bool load = !isSweep && !values.checkHasStorage();
    if (section.loadSweepVariablesFromDb(logger) != ok || (load && values.loadDataFromDb(logger, &section, index) != ok)) {
        err << "zelwave-cli " << subcommand << ": the values of \"" << curve.name() << "\" can't be loaded\n";
        return false;
    }
    if (loaded)
        *loaded = load && values.checkHasStorage();
    return true;
}

bool openFile(cCurvePlotDataFile& store, const cFileOptions& options, std::ostream& err)
{
    const returnCode code = readFile(store, options.positional[0], options, err);
    return code == ok || code == partly_parsed;
}

bool openCurve(cCurvePlotDataFile& store, const cFileOptions& options, const std::string& subcommand,
               std::ostream& err, cCurveChoice& choice)
{
    if (!openFile(store, options, err))
        return false;
    return findCurve(store, options, options.positional[1], subcommand, err, choice);
}

bool curveVectors(const std::string& subcommand, std::ostream& err, cCurveChoice& choice,
                  curvePlotFunctionArgs::cDataVectors& vectors, std::vector<double>& indices)
{
    const cCurvePlotVariable& curve = *choice.curve;
    if (!loadValues(*choice.section, curve, choice.index, choice.isSweep, subcommand, err))
        return false;
    if (!curve.computeDataVectors(*choice.section, vectors) || !vectors.count) {
        err << "zelwave-cli " << subcommand << ": \"" << curve.name() << "\" has no real or complex values\n";
        return false;
    }
    if (choice.isSweep || !vectors.checkHasX()) {
        indices.resize(vectors.count);
        for (uint64_t i = 0; i < vectors.count; ++i)
            indices[i] = static_cast<double>(i);
        vectors.xDouble = indices.data();
        vectors.xFloat = nullptr;
        vectors.xUint64 = nullptr;
        vectors.monotony = derivedCurveFunction::monotony_strictly_rising;
    }
    return true;
}

std::string csvField(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (char c : text) {
        if (c == '"')
            quoted.push_back('"');
        quoted.push_back(c);
    }
    return quoted + "\"";
}

bool readNumber(const std::string& text, double& value)
{
    cParserBaseStringIteratorHandler handler;
    handler.useStringData(text);
    using scanner = cParserBase<cParserBaseStringIterator>;
    cParserBaseStringIterator begin = handler.begin(), end = handler.end();
    return scanner::parseDoubleWithUnits(begin, end, value) && begin == end;
}

std::string number(double value)
{
    // A NaN's sign bit means nothing to a reader of the CSV: always "nan".
    if (std::isnan(value))
        return "nan";
    char buffer[40];
    std::snprintf(buffer, sizeof(buffer), "%.17g", value);
    return buffer;
}

}  // namespace vx3::cliFiles
