// Spice raw files ("nutmeg" format), ascii and binary, with any number of plots per file.
// Binary curves stay in the file and are loaded on demand through the strided loader: opening
// reads the headers and a sample of rows only. A file that a simulator is still writing can be
// reloaded: the row count follows the file's size and a half-written last row is left out.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/returnCode.h"
#include "readers/cCurveParserIntermediate.h"
#include "readers/nutmeg/nutmegPlot.h"

namespace vx3 {

namespace curvePlotParserNutmeg {

// One run of a plot: a slice of its rows.
struct cRun {
    uint64_t firstRow = 0;
    uint64_t rows = 0;
};

// One plot as found in the file, before it enters the store.
struct cPlot {
    cPlotHeader header;
    bool complete = true;
    uint64_t end = 0;  // first byte after the plot
    // Binary: where the rows lie.
    uint64_t rowPosition = 0;
    uint64_t stride = 0;
    uint64_t firstRow = 0;  // after the x interval was applied
    uint64_t rows = 0;
    // Ascii: one vector per variable, complex values as (re, im) pairs.
    std::vector<std::vector<double>> values;
    std::vector<cRun> runs;
    // A sweep that repeats with this period (rows) makes a two-dimensional section; the curve
    // that stays constant over each period names the outer sweep (none: its index does).
    uint64_t period = 0;
    uint64_t outerCurve = 0;  // variable index, 0 for none
};

}  // namespace curvePlotParserNutmeg

class cCurvePlotParserNutmeg : public cCurveParserIntermediate {
public:
    using cCurveParserIntermediate::cCurveParserIntermediate;

    returnCode parseFile(const std::string& name);
    returnCode parseString(const std::string&) { return failed; }
    returnCode reloadFile(const std::string& name, const std::vector<cCurvePlotDataSection*>& sections);
    returnCode detectFileType(const std::string& name, cCurvePlotParserOpenFileOptions& openFileOptions);

    // The strided loader for db types 7 to 12 (once per process; later calls change nothing).
    static void registerLoaders();
    // The unit that a variable's type word names; unitText keeps words without a unit of their own.
    static curvePlotDataType::dataUnit unitFromTypeWord(const std::string& word, std::string& unitText);

private:
    returnCode parseFileImpl(bool isReload, const std::string& name);
    // The file's text, mapped by parseFileImpl.
    returnCode parseMapped(bool isReload, const std::string& name, const char* text, uint64_t size);
    cCurvePlotDataSection* openSection(cFileDbSupport& file, const curvePlotParserNutmeg::cPlotHeader& header,
                                       unsigned stepIndex);
    // The rows of an ascii block from plot.header.dataPosition on.
    void parseAsciiValues(const char* text, uint64_t size, curvePlotParserNutmeg::cPlot& plot);
    // The layout of a binary block: from the old sections on a reload, else guessed.
    unsigned chooseBinaryDbType(bool isReload, const curvePlotParserNutmeg::cPlot& plot, const char* text,
                                uint64_t size);
    // Rows, their position and stride, the x interval of the open options.
    void readBinaryPlot(const char* text, uint64_t size, unsigned dbType, curvePlotParserNutmeg::cPlot& plot);
    // Where the x values restart (several runs written as one plot).
    void findRuns(const char* text, unsigned dbType, curvePlotParserNutmeg::cPlot& plot);
    bool commitPlot(cFileDbSupport& file, unsigned dbType, const curvePlotParserNutmeg::cPlot& plot,
                    const curvePlotParserNutmeg::cRun& run, unsigned stepIndex);
    // ---- Sweep matrices (nutmegSweepMatrix.cpp)
    // The values of variable index over the plot's rows; complex ones as (re, im) pairs.
    std::vector<double> readColumn(const char* text, unsigned dbType, const curvePlotParserNutmeg::cPlot& plot,
                                   uint64_t index) const;
    // A sweep of another unit than time or frequency that repeats: sets plot.period.
    void checkDefinesSweepMatix(const char* text, unsigned dbType, curvePlotParserNutmeg::cPlot& plot);
    bool defineSweepMatrix(cFileDbSupport& file, const char* text, unsigned dbType,
                           const curvePlotParserNutmeg::cPlot& plot, unsigned stepIndex);
    const cCurvePlotDataType* typeFor(const curvePlotParserNutmeg::cTmpVar& variable, unsigned dataType);
    void reportInconsistentEntries();
    void setSectionProperties(cCurvePlotDataSection& section, const curvePlotParserNutmeg::cPlotHeader& header);

    unsigned mInconsistentMessages = 0;
};

}  // namespace vx3
