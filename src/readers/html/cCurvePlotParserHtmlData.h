// Tables of HTML pages, as reporting tools write them: the first table of the page is read into
// a cell matrix and then analysed like a text table.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "readers/tabulated/cCurvePlotParserTabulatedData.h"

namespace vx3 {

class cCsvParser;

// The scanner: tags, attributes, entities, and the rows and cells of the first table.
class cHtmlParser {
public:
    cHtmlParser(const cCsvParser& cells, cCsvParserTempData& data) : mCells(cells), mData(data) {}

    // True when a table with at least one cell was found.
    bool parseHtmlString(std::string_view text);
    // Tags without an end tag of their own.
    static bool checkTagMustBeClosed(const std::string& tag);
    // "&amp;", "&lt;", "&#65;", "&#x41;", "&nbsp;" ... to text.
    static std::string decodeEntities(std::string_view text);
    // True when the table broke off before its end tag.
    bool checkIsIncomplete() const { return mIncomplete; }

private:
    // A tag at text[position] ("<"): its lower case name ("/td" for an end tag); position moves
    // behind it. False when the text ends inside the tag.
    static bool parseTag(std::string_view text, size_t& position, std::string& name);
    static void skipTagContents(std::string_view text, size_t& position, const std::string& name);
    void parseHtmlTable(std::string_view text, size_t& position);
    void endCell();

    const cCsvParser& mCells;
    cCsvParserTempData& mData;
    std::string mCell;
    bool mInCell = false;
    bool mInRow = false;
    unsigned mSpan = 1;
    bool mIncomplete = false;
};

class cCurvePlotParserHtmlData : public cCurvePlotParserTabulatedData {
public:
    using cCurvePlotParserTabulatedData::cCurvePlotParserTabulatedData;

    returnCode parseFile(const std::string& name) { return parseFileOrString(name, true); }
    returnCode parseString(const std::string& text) { return parseFileOrString(text, false); }
    returnCode reloadFile(const std::string& name, const std::vector<cCurvePlotDataSection*>& sections);
    returnCode detectFileType(const std::string& name, cCurvePlotParserOpenFileOptions& openFileOptions);
    returnCode parseFileOrString(const std::string& text, bool isFile);

protected:
    unsigned getDbType() const override;
};

}  // namespace vx3
