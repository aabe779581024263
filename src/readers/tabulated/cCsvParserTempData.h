// The cell matrix of the slow table reader: every row of the text as cells (number, integer,
// text or empty), with per-column records that the analysis fills in.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vx3 {

namespace csvParserTempData {

enum entry_type : uint8_t { entry_empty = 0, entry_double, entry_integer, entry_string };
enum row_kind : uint8_t { row_data = 0, row_comment, row_step, row_end };
enum column_type : unsigned { column_unknown = 0, column_numeric, column_date, column_enum, column_text };

struct cCsvCol {
    std::string name;
    std::string unit;
    unsigned dataType = column_unknown;
    uint64_t nbDouble = 0;
    uint64_t nbInteger = 0;
    uint64_t nbString = 0;
    uint64_t nbEmpty = 0;
    uint64_t nbComma = 0;  // numbers written with a decimal comma
};

}  // namespace csvParserTempData

struct cCsvParserTempDataEntry {
    union {
        double value;
        uint64_t offset;  // of a string in the pool
    };
    uint32_t length = 0;
    uint8_t type = csvParserTempData::entry_empty;
    bool usedComma = false;

    cCsvParserTempDataEntry() : value(0) {}
    bool isNumber() const { return type == csvParserTempData::entry_double || type == csvParserTempData::entry_integer; }
};

class cCsvParserTempData {
public:
    using cCsvCol = csvParserTempData::cCsvCol;

    void clear();

    // ---- Filling, row by row
    void startRow(unsigned kind = csvParserTempData::row_data, uint64_t line = 0);
    void addDoubleValue(double value, bool usedComma = false);
    void addIntegerValue(double value);
    void addStringValue(std::string_view text);
    void addEmptyValue();
    // Pads the last row with empty cells up to count.
    void addEmptyValueToIncompleteRow(uint64_t count);
    void setStepParameters(std::vector<std::pair<std::string, double>> parameters);

    // ---- Reading
    uint64_t getNbOfRows() const { return mRowStart.size(); }
    uint64_t getRowSize(uint64_t row) const;
    unsigned getRowKind(uint64_t row) const { return mRowKind[row]; }
    uint64_t getRowLine(uint64_t row) const { return mRowLine[row]; }
    const cCsvParserTempDataEntry& getDataEntry(uint64_t row, uint64_t column) const;
    std::string_view getString(const cCsvParserTempDataEntry& entry) const;
    // The cell as text (numbers printed back), for names and messages.
    std::string getText(uint64_t row, uint64_t column) const;
    const std::vector<std::pair<std::string, double>>* getStepParameters(uint64_t row) const;

    uint64_t getMaxRowSize() const { return mMaxRowSize; }
    uint64_t getNumberOfNonCommentRows() const;
    uint64_t getNumberOfHeaderAndCommentRows(uint64_t firstDataRow) const;

    // ---- Columns, over the rows [first, end) of kind data
    std::vector<cCsvCol>& columns() { return mColumns; }
    const std::vector<cCsvCol>& columns() const { return mColumns; }
    void countColumnEntries(uint64_t first, uint64_t count);
    // Filled cells / all cells of the counted rows.
    double getFillRatio() const;
    uint64_t getNbOfNumericCols() const;
    // Columns filled in less than ratio of the counted rows.
    uint64_t getNumberOfIncompleteCols(double ratio) const;
    uint64_t getCountedRows() const { return mCountedRows; }
    uint64_t getMaxStringSize(uint64_t column) const;
    double computeAverage(uint64_t column) const;
    double computeStdDerivation(uint64_t column) const;

    uint64_t getNbOfErrors() const { return mErrors; }
    void addError() { ++mErrors; }

private:
    std::vector<cCsvParserTempDataEntry> mEntries;
    std::vector<uint64_t> mRowStart;
    std::vector<uint8_t> mRowKind;
    std::vector<uint64_t> mRowLine;
    std::map<uint64_t, std::vector<std::pair<std::string, double>>> mStepParameters;
    std::string mStrings;
    std::vector<cCsvCol> mColumns;
    uint64_t mMaxRowSize = 0;
    uint64_t mCountedRows = 0;
    uint64_t mCountedFirst = 0;
    uint64_t mErrors = 0;
};

}  // namespace vx3
