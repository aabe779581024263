// What the subcommands that read waveform files share: their options, reading a file with the
// readers' messages on the error stream, and finding a section and a curve.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "model/cCurvePlotDataFile.h"
#include "model/cDataVectors.h"
#include "readers/cCurvePlotParser.h"

namespace vx3::cliFiles {

struct cFileOptions {
    unsigned reader = curvePlotParser::none;
    bool verbose = false;
    bool readAll = false;  // every value at once, also of files that keep them in the file
    std::string section = "0";
    std::vector<std::string> positional;
    // Flags a subcommand accepts besides the common ones (without value), and those found.
    std::vector<std::string> allowedFlags;
    std::vector<std::string> flags;
    bool hasFlag(const std::string& flag) const;
};

// A number as users write it on the command line, with an engineering suffix or not ("2.5u",
// "1e-6", "3k"); false unless the whole text is one.
bool readNumber(const std::string& text, double& value);

// Common options; false (with a message) for a bad one.
bool readOptions(const std::vector<std::string>& arguments, cFileOptions& options, std::ostream& err,
                 bool withSection);
// Reads one file into the store; messages go to err.
returnCode readFile(cCurvePlotDataFile& store, const std::string& name, const cFileOptions& options, std::ostream& err);
std::vector<cCurvePlotDataSection*> sectionsOf(cCurvePlotDataFile& store);

// The section of --section and the curve (or sweep) named by name; null with a message on err.
struct cCurveChoice {
    cCurvePlotDataSection* section = nullptr;
    const cCurvePlotVariable* curve = nullptr;
    uint64_t index = 0;
    bool isSweep = false;
};
bool findCurve(cCurvePlotDataFile& store, const cFileOptions& options, const std::string& name,
               const std::string& subcommand, std::ostream& err, cCurveChoice& choice);

// The section's x axes and, unless it is a sweep, the curve's values, for the values that a file
// keeps until they are used; values in memory stay as they are. loaded says whether the curve
// was loaded here. False with a message on err.
bool loadValues(cCurvePlotDataSection& section, const cCurvePlotVariable& curve, uint64_t index, bool isSweep,
                const std::string& subcommand, std::ostream& err, bool* loaded = nullptr);

// Reads the file named by the first positional argument; true when its curves can be used (also
// when only part of it could be read, its messages on err).
bool openFile(cCurvePlotDataFile& store, const cFileOptions& options, std::ostream& err);
// Reads the file named by the first positional argument and finds the curve named by the
// second; false with a message on err.
bool openCurve(cCurvePlotDataFile& store, const cFileOptions& options, const std::string& subcommand,
               std::ostream& err, cCurveChoice& choice);
// The loaded vectors of the curve that openCurve found. A sweep, or a curve without x, is taken
// over its index, which indices then holds. False with a message on err.
bool curveVectors(const std::string& subcommand, std::ostream& err, cCurveChoice& choice,
                  curvePlotFunctionArgs::cDataVectors& vectors, std::vector<double>& indices);

// Full precision that reads back to the same double.
std::string number(double value);
// A CSV cell: names with a separator, a quote or a line end are quoted, quotes doubled.
std::string csvField(const std::string& text);

// ---- Digital curves and instance trees (cliDigital.cpp)
// Curves whose values are logic states kept as changes (one record per change).
bool checkIsLogicChangeCurve(const cCurvePlotVariable& curve);
// One line per change: the time (seconds, or with ticks the file's integer time) and the state
// as text ("0", "1", "x", "z" for one bit; the states left to right for a vector).
void dumpLogicChanges(const cCurvePlotDataSection& section, const cCurvePlotVariable& curve, bool ticks,
                      std::ostream& out);
// The section's instance tree: one line per instance and curve, indented by depth.
void printInstanceTree(cCurvePlotDataSection& section, std::ostream& out);

}  // namespace vx3::cliFiles
