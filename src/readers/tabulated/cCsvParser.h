// Cuts text into the cells of a cCsvParserTempData: one separator type at a time, or the best of
// all types by the statistics of the first rows.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/returnCode.h"
#include "readers/tabulated/cCsvParserTempData.h"
#include "readers/tabulated/csvSeparator.h"

namespace vx3 {

class cVxLogger;
class cTabulatedTextSource;

namespace csvParser {

// How well one separator cuts the first rows of a text.
struct cSeparatorStatistics {
    unsigned separator = csvSeparator::automatic;
    uint64_t errors = 0;
    uint64_t irregularRows = 0;  // data rows narrower or wider than the typical row
    double score = 0;  // columns less the incomplete ones
    double numericDensity = 0;
    double fillRatio = 0;
    bool decimalComma = false;
    bool plausible = false;
    bool parsed = false;
};

// Whether candidate replaces best (the rules of the automatic separator).
bool checkReplacesBest(const cSeparatorStatistics& candidate, const cSeparatorStatistics& best);

}  // namespace csvParser

class cCsvParser {
public:
    // Lines longer than this are refused: a table has no use for them, and their cells would
    // not fit in memory.
    static constexpr uint64_t kMaxLineSize = 64u << 20;

    explicit cCsvParser(const cVxLogger& logger) : mLogger(logger) {}

    void setSeparator(unsigned type, char other = 0)
    {
        mSeparator = type;
        mOther = other;
    }
    unsigned getSeparator() const { return mSeparator; }
    void setCommentChar(char c) { mComment = c; }
    // A candidate separator must give at least minimumRows data rows whose columns are filled in
    // firstThreshold of the rows, and numbers in secondThreshold of the filled cells.
    void setValidityCriteria(uint64_t minimumRows, double firstThreshold, double secondThreshold)
    {
        mMinimumRows = minimumRows;
        mFirstThreshold = firstThreshold;
        mSecondThreshold = secondThreshold;
    }

    // All rows of the source with the separator set (automatic: extractSeparator first).
    // Failed with a message for a line that is too long; interrupted when the user asked.
    returnCode parseCsvSource(cTabulatedTextSource& source, cCsvParserTempData& data, uint64_t maxRows = 0);
    returnCode parseCsvString(std::string_view text, cCsvParserTempData& data);
    // Tries every type in the fixed order and keeps the best; false when none fits, or when the
    // text can't be cut at all (then after the first candidate).
    bool extractSeparator(cTabulatedTextSource& source);
    // The statistics of the separator extractSeparator chose.
    const csvParser::cSeparatorStatistics& getBestStatistics() const { return mBest; }
    // The statistics of one candidate over the first rows.
    // code tells a text that no separator can read (a line too long, an interruption).
    csvParser::cSeparatorStatistics computeStatistics(cTabulatedTextSource& source, unsigned type, returnCode* code = nullptr);
    // The first data row (index into the rows), or -1 when the rows don't say it clearly.
    static int64_t autoDetectHeaderRows(const cCsvParserTempData& data);
    static bool checkIfRowIsHeaderOrCommentRow(const cCsvParserTempData& data, uint64_t row, uint64_t numericCells);
    bool checkDataFitsExpectations(const cCsvParserTempData& data, uint64_t firstDataRow) const;
    // One cell of text by the rules of a table: integer, number (with a decimal comma unless the
    // separator is a comma), number with a suffix, "-" for no value, or text. For readers that
    // find their cells themselves (HTML).
    void addCellText(std::string_view cell, cCsvParserTempData& data) const { addCell(cell, false, data); }

private:
    void tokenizeLine(std::string_view line, uint64_t lineNumber, cCsvParserTempData& data);
    // True when a quoted cell is still open at the end of the line: its line end is cell text.
    bool checkEndsInsideQuotedCell(std::string_view line) const;
    void addCell(std::string_view cell, bool quoted, cCsvParserTempData& data) const;
    bool isSeparator(char c) const;

    const cVxLogger& mLogger;
    unsigned mSeparator = csvSeparator::automatic;
    char mOther = 0;
    char mComment = '#';
    uint64_t mMinimumRows = 1;
    double mFirstThreshold = 0.5;
    double mSecondThreshold = 0.5;
    csvParser::cSeparatorStatistics mBest;
};

}  // namespace vx3
