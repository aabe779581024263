// TecPlot ascii files: a header (title, variables), then zones of points in POINT packing (one
// point after the other) or BLOCK packing (one variable after the other). Each zone becomes a
// section through the column logic of the table reader.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "readers/tabulated/cCurvePlotParserTabulatedData.h"

namespace vx3 {

namespace curvePlotParserTecPlotAscii {

struct cZone {
    std::string title;
    uint64_t points = 0;  // I * J * K; 0 when the zone doesn't say
    bool block = false;
    std::vector<double> values;  // in file order
    bool complete = true;
    bool oversized = false;  // I * J * K more than the text can hold: read what is there
};

// The scanner over the whole text; keywords are matched in lower case.
class cParser {
public:
    explicit cParser(std::string_view text) : mText(text) {}

    // Title and variables; false when the text has neither "variables" nor "zone".
    bool parseHeader();
    // The next zone; false at the end of the text.
    bool parseZone(cZone& zone);

    const std::string& title() const { return mTitle; }
    const std::vector<std::string>& variables() const { return mVariables; }
    const std::vector<std::pair<std::string, std::string>>& auxiliaryData() const { return mAuxData; }

private:
    void parseSkip();  // blanks, line ends, "#" comments
    bool atKeyword(std::string_view keyword) const;
    // "keyword = value" with value quoted or up to a blank, comma or line end.
    bool parseEqualsString(std::string& keyword, std::string& value);
    std::string parseValueText();
    void parseTextRecord();
    void parseVariables();
    // Numbers up to the next keyword (or count of them); false if a number is malformed.
    bool parseData(cZone& zone);

    std::string_view mText;
    size_t mPosition = 0;
    std::string mTitle;
    std::vector<std::string> mVariables;
    std::vector<std::pair<std::string, std::string>> mAuxData;
};

}  // namespace curvePlotParserTecPlotAscii

class cCurvePlotParserTecPlotAscii : public cCurvePlotParserTabulatedData {
public:
    using cCurvePlotParserTabulatedData::cCurvePlotParserTabulatedData;

    returnCode parseFile(const std::string& name);
    returnCode reloadFile(const std::string& name, const std::vector<cCurvePlotDataSection*>& sections);
    returnCode detectFileType(const std::string& name, cCurvePlotParserOpenFileOptions& openFileOptions);
    returnCode parseString(const std::string& text);

protected:
    unsigned getDbType() const override;

private:
    returnCode parseText(std::string_view text);
    // The cell matrix of one zone: a row of names, then the points.
    static void defineColumns(const std::vector<std::string>& variables, const curvePlotParserTecPlotAscii::cZone& zone,
                              cCsvParserTempData& data);
};

}  // namespace vx3
