// The fast table reader: decides the separator and the columns from the head of the file, then
// streams the rows straight into one value block per column. It expects regular numeric tables
// and gives up (code 3) on anything else, so that the slow reader can take over and explain.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/returnCode.h"
#include "readers/tabulated/cCurvePlotTabulatedParserCommon.h"

namespace vx3 {

class cTabulatedTextSource;
class cCurvePlotParserOpenFileOptions;

namespace tabulatedParserFast {

// What the head of a file tells: how to cut the rows and what the columns are called.
struct cLayout {
    char separator = ',';  // ' ' stands for runs of blanks and tabs
    bool decimalComma = false;
    bool hasHeader = false;
    std::vector<std::string> names;
    uint64_t dataStart = 0;  // offset of the first line after the header
};

// Splits one line at the separator; quoted cells lose their quotes.
void splitLine(std::string_view line, char separator, std::vector<std::string>& cells);
// A whole cell as a number ("1.5", "-2e-3", "inf", "nan"; with decimalComma "1,5").
bool parseNumber(std::string_view cell, bool decimalComma, double& value);
// "Step Information: R=1k C=2p (Run: 3/5)" -> the name and value pairs; false for other lines.
bool parseStepParameters(std::string_view line, std::vector<std::pair<std::string, double>>& parameters);
// The separator and columns of a head of text (header line, then data lines). False when no
// candidate cuts the header and the first data lines into the same number of numeric cells.
bool findSeparator(std::string_view head, cLayout& layout);

}  // namespace tabulatedParserFast

class cCurvePlotTabulatedParserFast : public cCurvePlotTabulatedParserCommon {
public:
    using cCurvePlotTabulatedParserCommon::cCurvePlotTabulatedParserCommon;

    returnCode parseFile(const std::string& name);
    returnCode parseString(const std::string& text);
    returnCode reloadFile(const std::string& name, const std::vector<cCurvePlotDataSection*>& sections);
    returnCode detectFileType(const std::string& name, cCurvePlotParserOpenFileOptions& openFileOptions);

private:
    returnCode parseImpl(cTabulatedTextSource& source, const std::string& name, bool detectOnly);
};

}  // namespace vx3
