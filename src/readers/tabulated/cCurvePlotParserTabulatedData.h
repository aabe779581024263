// The slow table reader: reads every cell first, then analyses the matrix: separator, header and
// unit rows, column types (numbers, dates, enumerations, text), several runs, sweep matrices,
// and rows that break a rising x axis. It explains what it could not read.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/returnCode.h"
#include "readers/tabulated/cCsvParserTempData.h"
#include "readers/tabulated/cCurvePlotTabulatedParserCommon.h"

namespace vx3 {

class cCurvePlotParserOpenFileOptions;
class cTabulatedTextSource;

namespace tabulatedData {

// Columns as the analysis leaves them: values per data row, NaN where a cell had none.
struct cAnalysedColumn {
    std::string name;
    std::string unit;
    double scale = 1.0;
    unsigned type = csvParserTempData::column_unknown;
    std::vector<double> values;
    std::vector<std::string> enumStrings;
};

struct cAnalysedTable {
    std::vector<cAnalysedColumn> columns;
    // Per kept row: the run it starts (from a "Step Information" line), or none.
    std::vector<uint64_t> rowLines;
    std::vector<std::pair<uint64_t, std::vector<std::pair<std::string, double>>>> runStarts;  // row, parameters
};

}  // namespace tabulatedData

class cCurvePlotParserTabulatedData : public cCurvePlotTabulatedParserCommon {
public:
    using cCurvePlotTabulatedParserCommon::cCurvePlotTabulatedParserCommon;

    returnCode parseFile(const std::string& name) { return parseFileOrString(name, true); }
    returnCode parseString(const std::string& text) { return parseFileOrString(text, false); }
    returnCode reloadFile(const std::string& name, const std::vector<cCurvePlotDataSection*>& sections);
    returnCode detectFileType(const std::string& name, cCurvePlotParserOpenFileOptions& openFileOptions);
    // text is a file name when isFile, else the table itself.
    returnCode parseFileOrString(const std::string& text, bool isFile);

    // ---- Steps of the analysis, open to the readers that fill a cell matrix of their own.
    // The first data row (an index into the rows) and the rows of names and units before it.
    uint64_t defineFirstDataRow(const cCsvParserTempData& data) const;
    void defineColNames(const cCsvParserTempData& data, uint64_t firstDataRow, uint64_t columns,
                        tabulatedData::cAnalysedTable& table) const;
    // Names of monitoring tools' files that carry none (NTP loopstats and peerstats).
    static bool defineColNamesForSpecialFiles(const std::string& fileName, uint64_t columns,
                                              std::vector<std::string>& names);
    // Numbers, dates, enumerations or text per column; the values of the data rows. Returns
    // the number of cell errors (NaN was used).
    uint64_t analyzeColumnTypes(const cCsvParserTempData& data, uint64_t firstDataRow,
                                tabulatedData::cAnalysedTable& table);
    // From the analysed columns to the tables of the store: runs, sweep matrices, cleaning.
    returnCode copyTempCsvData(cCsvParserTempData& data, const std::string& sectionName,
                               std::vector<tabulatedParser::cTable>& tables);
    // Rows that break a rising x axis go: single outliers first, then every row below the
    // last kept x. Returns the rows removed.
    uint64_t removeOutliers(tabulatedData::cAnalysedTable& table);
    uint64_t forceIncreasingValues(tabulatedData::cAnalysedTable& table, uint64_t maximum);
    static void handleModifiedJulianTimeColumns(tabulatedData::cAnalysedTable& table);

protected:
    // The file entry's db type; the HTML and TecPlot readers have their own.
    virtual unsigned getDbType() const;
    // One message per kind of cell error, then a note that the rest are not shown.
    void cellMessage(unsigned kind, const std::string& text);

    std::string mFileName;
    bool mSpicePrintMode = false;
    unsigned mMessageCounts[4] = {0, 0, 0, 0};
    uint64_t mRemovedRows = 0;

private:
    void splitIntoTables(tabulatedData::cAnalysedTable& table, const std::string& sectionName,
                         std::vector<tabulatedParser::cTable>& tables);
    bool copySweepMatrixTempCsvData(tabulatedData::cAnalysedTable& table, size_t xColumn,
                                    const std::string& sectionName, std::vector<tabulatedParser::cTable>& tables);
    tabulatedParser::cColumn makeColumn(tabulatedData::cAnalysedColumn& column, uint64_t first, uint64_t last) const;
};

}  // namespace vx3
