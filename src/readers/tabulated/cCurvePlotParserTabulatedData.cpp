#include "readers/tabulated/cCurvePlotParserTabulatedData.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "base/cVxFilePath.h"
#include "base/cVxString.h"
#include "readers/cCurvePlotParserOptions.h"
#include "readers/tabulated/cCsvParser.h"
#include "readers/tabulated/cTabulatedTextSource.h"
#include "readers/tabulated/csvDates.h"

namespace vx3 {

using namespace csvParserTempData;
using namespace tabulatedData;

namespace {

enum message_kind : unsigned { text_in_numbers = 0, empty_entry = 1, exceeding_row = 2, invalid_date = 3 };
constexpr unsigned kShownMessages = 5;

uint64_t countNumbers(const cCsvParserTempData& data, uint64_t row)
{
    uint64_t count = 0;
    for (uint64_t c = 0; c < data.getRowSize(row); ++c)
        count += data.getDataEntry(row, c).isNumber() ? 1 : 0;
    return count;
}

// A row of unit texts: every filled cell a known unit, a bracketed text or "-".
bool checkIsUnitRow(const cCsvParserTempData& data, uint64_t row)
{
    uint64_t units = 0, filled = 0;
    for (uint64_t c = 0; c < data.getRowSize(row); ++c) {
        const cCsvParserTempDataEntry& entry = data.getDataEntry(row, c);
        if (entry.type == entry_empty)
            continue;
        ++filled;
        if (entry.type != entry_string)
            return false;
        std::string text = vxString::trim(std::string(data.getString(entry)));
        if (text.size() > 2 && ((text.front() == '[' && text.back() == ']') || (text.front() == '(' && text.back() == ')')))
            text = text.substr(1, text.size() - 2);
        double factor = 1.0;
        std::string unitText;
        if (text == "-" || curvePlotDataType::stringToUnit(text) != curvePlotDataType::undefined_unit ||
            cCurvePlotTabulatedParserCommon::guessUnitFromCsvVariableName("x [" + text + "]", factor, unitText) !=
                curvePlotDataType::undefined_unit)
            ++units;
    }
    return filled > 0 && units * 2 >= filled;
}

}  // namespace

unsigned cCurvePlotParserTabulatedData::getDbType() const { return fileDbSupport::tabulated_23; }

void cCurvePlotParserTabulatedData::cellMessage(unsigned kind, const std::string& text)
{
    const unsigned count = ++mMessageCounts[kind];
    if (count < kShownMessages)
        warnMsg(text);
    else if (count == kShownMessages)
        warnMsg(text + " Further, similar message will be supressed.");
}

// ---------------------------------------------------------------- entry points

returnCode cCurvePlotParserTabulatedData::parseFileOrString(const std::string& text, bool isFile)
{
    mFileName = isFile ? text : getSourceName();
    mSpicePrintMode = isFile && cVxFilePath(text).extensionLowerCase() == "prn";
    std::fill(std::begin(mMessageCounts), std::end(mMessageCounts), 0u);
    mRemovedRows = 0;
    cTabulatedTextSource source;
    if (isFile) {
        if (!source.openFile(text)) {
            errorMsg(source.getErrorMessage());
            return failed;
        }
    } else {
        source.useString(text);
    }
    if (source.size() == 0)
        return failed;
    if (source.checkLooksBinary()) {
        errorMsg("CSV Parser : the file \"" + mFileName + "\" holds binary data.");
        return failed;
    }
    cCsvParser parser(options().logger());
    parser.setCommentChar('#');
    parser.setValidityCriteria(1, 0.5, 0.5);
    unsigned separator = options().getSeparatorType();
    char other = options().getOtherSeparator();
    // A reload cuts the columns as the first parse did.
    if (checkIsReload() && dbSupport() &&
        (separator == csvSeparator::automatic || separator == csvSeparator::tab ||
         separator == csvSeparator::tab_space_or_comma))
        if (const auto* property = dbSupport()->getFileProperty(curvePlotProperties::file_table_separator)) {
            separator = static_cast<unsigned>(property->getInteger());
            if (const auto* character = dbSupport()->getFileProperty(curvePlotProperties::file_table_analysis_2))
                other = static_cast<char>(character->getInteger());
        }
    if (separator == csvSeparator::automatic) {
        if (!parser.extractSeparator(source)) {
            if (checkIsInterrupted())
                return action_interrupted;
            errorMsg("CSV Parser : no separator cuts \"" + mFileName + "\" into columns.");
            return failed;
        }
    } else {
        parser.setSeparator(separator, other);
    }
    cCsvParserTempData data;
    returnCode code = parser.parseCsvSource(source, data);
    if (code != ok)
        return code;
    std::vector<tabulatedParser::cTable> tables;
    code = copyTempCsvData(data, sectionNameFromFileName(mFileName), tables);
    if (code != ok && code != partly_parsed)
        return code;
    if (checkIsInterrupted())
        return action_interrupted;
    cFileDbSupport& file = initDbSupport(mFileName, getDbType());
    if (!commitTables(tables, file))
        return failed;
    using curvePlotProperties::cProperty;
    file.setProperty(cProperty::makeInteger(curvePlotProperties::file_table_separator, parser.getSeparator()));
    file.setProperty(cProperty::makeInteger(curvePlotProperties::file_table_analysis_1,
                                            static_cast<int64_t>(defineFirstDataRow(data))));
    file.setProperty(cProperty::makeInteger(curvePlotProperties::file_table_analysis_2, other));
    return code;
}

returnCode cCurvePlotParserTabulatedData::reloadFile(const std::string& name,
                                                     const std::vector<cCurvePlotDataSection*>& sections)
{
    setReloadSections(sections);
    return parseFileOrString(name, true);
}

returnCode cCurvePlotParserTabulatedData::detectFileType(const std::string& name, cCurvePlotParserOpenFileOptions&)
{
    cTabulatedTextSource source;
    if (!source.openFile(name) || source.checkLooksBinary())
        return failed;
    cCsvParser parser(options().logger());
    if (options().getSeparatorType() != csvSeparator::automatic) {
        const csvParser::cSeparatorStatistics statistics = parser.computeStatistics(source, options().getSeparatorType());
        return statistics.parsed && statistics.plausible ? ok : failed;
    }
    return parser.extractSeparator(source) && parser.getBestStatistics().plausible ? ok : failed;
}

// ---------------------------------------------------------------- header rows and names

uint64_t cCurvePlotParserTabulatedData::defineFirstDataRow(const cCsvParserTempData& data) const
{
    const int64_t detected = cCsvParser::autoDetectHeaderRows(data);
    if (detected >= 0)
        return static_cast<uint64_t>(detected);
    uint64_t most = 0;
    for (uint64_t row = 0; row < data.getNbOfRows(); ++row)
        if (data.getRowKind(row) == row_data)
            most = std::max(most, countNumbers(data, row));
    for (uint64_t row = 0; row < data.getNbOfRows(); ++row)
        if (data.getRowKind(row) == row_data && most > 0 && countNumbers(data, row) == most)
            return row;
    return 0;
}

bool cCurvePlotParserTabulatedData::defineColNamesForSpecialFiles(const std::string& fileName, uint64_t columns,
                                                                  std::vector<std::string>& names)
{
    const std::string base = vxString::to_lower(sectionNameFromFileName(fileName));
    if (base.find("loopstats") != std::string::npos && columns == 7) {
        names = {"date [mjd]", "time [s]", "offset", "drift compensation", "estimated error [s]", "stability",
                 "polling interval"};
        return true;
    }
    if (base.find("peerstats") != std::string::npos && columns == 8) {
        names = {"date [mjd]", "time [s]", "address", "status", "clock offset [s]", "delay [s]", "dispersion",
                 "skew [s]"};
        return true;
    }
    return false;
}

void cCurvePlotParserTabulatedData::defineColNames(const cCsvParserTempData& data, uint64_t firstDataRow,
                                                   uint64_t columns, cAnalysedTable& table) const
{
    std::vector<uint64_t> headerRows, commentRows;
    for (uint64_t row = 0; row < firstDataRow && row < data.getNbOfRows(); ++row) {
        if (data.getRowKind(row) == row_data)
            headerRows.push_back(row);
        else if (data.getRowKind(row) == row_comment)
            commentRows.push_back(row);
    }
    std::vector<std::string> names(columns), units(columns);
    int64_t namesRow = -1, unitsRow = -1;
    if (!headerRows.empty()) {
        // Names stand right above the data, or above a row of units; lines before them are titles.
        namesRow = static_cast<int64_t>(headerRows.back());
        if (headerRows.size() >= 2 && checkIsUnitRow(data, headerRows.back())) {
            unitsRow = namesRow;
            namesRow = static_cast<int64_t>(headerRows[headerRows.size() - 2]);
        }
    } else if (!commentRows.empty() && data.getRowSize(commentRows.back()) == columns) {
        namesRow = static_cast<int64_t>(commentRows.back());
    }
    bool named = false;
    if (namesRow >= 0)
        for (uint64_t c = 0; c < columns; ++c) {
            names[c] = vxString::trim(data.getText(static_cast<uint64_t>(namesRow), c));
            named = named || !names[c].empty();
        }
    if (unitsRow >= 0)
        for (uint64_t c = 0; c < columns; ++c) {
            std::string unit = vxString::trim(data.getText(static_cast<uint64_t>(unitsRow), c));
            if (unit.size() > 2 && (unit.front() == '[' || unit.front() == '('))
                unit = unit.substr(1, unit.size() - 2);
            units[c] = unit == "-" ? std::string() : unit;
        }
    if (!named && !defineColNamesForSpecialFiles(mFileName, columns, names)) {
        // completeColNames: x, y, z for small tables, otherwise a number after "_".
        for (uint64_t c = 0; c < columns; ++c)
            names[c] = c == 0 ? "x" : columns <= 3 ? std::string(1, "xyz"[c]) : "y_" + std::to_string(c);
    }
    table.columns.resize(columns);
    for (uint64_t c = 0; c < columns; ++c) {
        tabulatedParser::cColumn column;
        defineColumnName(column, names[c], c + 1);
        cAnalysedColumn& target = table.columns[c];
        target.name = column.name;
        target.unit = column.unitText;
        target.scale = column.scale;
        if (target.unit.empty() && !units[c].empty()) {
            tabulatedParser::cColumn withUnit;
            defineColumnName(withUnit, "x [" + units[c] + "]", c + 1);
            target.unit = withUnit.unitText;
            target.scale = withUnit.scale;
        }
    }
}

// ---------------------------------------------------------------- column types and values

uint64_t cCurvePlotParserTabulatedData::analyzeColumnTypes(const cCsvParserTempData& constData, uint64_t firstDataRow,
                                                           cAnalysedTable& table)
{
    cCsvParserTempData& data = const_cast<cCsvParserTempData&>(constData);
    data.countColumnEntries(firstDataRow, data.getNbOfRows());
    const uint64_t columns = table.columns.size();
    const double enumLimit = options().getEnumeratedLevel();
    for (uint64_t c = 0; c < columns; ++c) {
        cAnalysedColumn& column = table.columns[c];
        const cCsvParserTempData::cCsvCol counts = c < data.columns().size() ? data.columns()[c] : cCsvParserTempData::cCsvCol();
        const uint64_t numbers = counts.nbDouble + counts.nbInteger;
        if (numbers == 0 && counts.nbString == 0) {
            column.type = column_unknown;  // empty: left out
            continue;
        }
        if (numbers >= counts.nbString) {
            column.type = column_numeric;
            continue;
        }
        // Mostly text: time stamps, a few distinct words, or free text.
        uint64_t dates = 0, texts = 0;
        std::map<std::string, uint64_t> distinct;
        for (uint64_t row = firstDataRow; row < data.getNbOfRows(); ++row) {
            const cCsvParserTempDataEntry& entry = data.getDataEntry(row, c);
            if (data.getRowKind(row) != row_data || entry.type != entry_string)
                continue;
            ++texts;
            const std::string_view text = data.getString(entry);
            dates += csvDates::checkMightBeTimeStampColumn(text) ? 1 : 0;
            if (distinct.size() <= enumLimit)
                distinct.emplace(vxString::trim(text), distinct.size());
        }
        if (dates * 10 >= texts * 8) {
            column.type = column_date;
            column.unit = "date";
        } else if (static_cast<double>(distinct.size()) <= enumLimit) {
            column.type = column_enum;
            for (const auto& entry : distinct)
                column.enumStrings.push_back(entry.first);
        } else {
            column.type = column_text;
            infoMsg("CSV File : the column \"" + column.name + "\" holds text and is left out.");
        }
    }

    // The values, row by row.
    uint64_t errors = 0;
    const auto& levels = options().getEnumReductionLevels();
    for (uint64_t row = firstDataRow; row < data.getNbOfRows(); ++row) {
        const unsigned kind = data.getRowKind(row);
        if (kind == row_step || kind == row_end) {
            const auto* parameters = data.getStepParameters(row);
            table.runStarts.emplace_back(table.rowLines.size(),
                                         parameters ? *parameters : std::vector<std::pair<std::string, double>>());
            continue;
        }
        if (kind != row_data)
            continue;
        const uint64_t line = data.getRowLine(row);
        const uint64_t size = data.getRowSize(row);
        if (size > columns) {
            ++errors;
            cellMessage(exceeding_row, "CSV Parser : The row " + std::to_string(line) +
                                           " exceeds the number of defined columns.");
        }
        const bool incomplete = size < columns;
        bool validDate = true;
        for (uint64_t c = 0; c < columns && validDate; ++c) {
            cAnalysedColumn& column = table.columns[c];
            const cCsvParserTempDataEntry& entry = data.getDataEntry(row, c);
            double value = NAN;
            switch (column.type) {
            case column_numeric:
                if (entry.isNumber()) {
                    value = entry.value;
                } else if (entry.type == entry_string) {
                    ++errors;
                    cellMessage(text_in_numbers, "CSV Parser : The entry \"" + std::string(data.getString(entry)) +
                                                     "\" (column " + std::to_string(c + 1) + ") in row " +
                                                     std::to_string(line) + " isn't a number; NaN is used.");
                } else {
                    cellMessage(empty_entry, std::string("CSV Parser : ") +
                                                 (incomplete ? "The empty entry in incomplete row " : "The empty entry in row ") +
                                                 std::to_string(line) + " (column " + std::to_string(c + 1) +
                                                 ") is read as NaN.");
                }
                break;
            case column_date:
                if (entry.isNumber()) {
                    value = entry.value;
                } else if (entry.type == entry_string && !csvDates::parseTimeStamp(data.getString(entry), value)) {
                    validDate = false;
                    cellMessage(invalid_date, "CSV Parser : The entry (column " + std::to_string(c + 1) + ") in row " +
                                                  std::to_string(line) + " (\"" + std::string(data.getString(entry)) +
                                                  "\") isn't a valid date.");
                    cellMessage(invalid_date, "CSV File : the row " + std::to_string(line) +
                                                  " was removed due to an invalid date.");
                }
                break;
            case column_enum:
                if (entry.type == entry_string) {
                    const std::string text = vxString::trim(std::string(data.getString(entry)));
                    const auto found = std::find(column.enumStrings.begin(), column.enumStrings.end(), text);
                    const auto level = levels.find(text);
                    value = level != levels.end() ? level->second
                                                  : static_cast<double>(found - column.enumStrings.begin());
                } else if (entry.isNumber()) {
                    value = entry.value;
                }
                break;
            default:
                break;
            }
            column.values.push_back(value);
        }
        if (!validDate) {
            ++mRemovedRows;
            for (cAnalysedColumn& column : table.columns)
                column.values.resize(table.rowLines.size());
            continue;
        }
        table.rowLines.push_back(line);
    }
    return errors;
}

void cCurvePlotParserTabulatedData::handleModifiedJulianTimeColumns(cAnalysedTable& table)
{
    for (size_t c = 0; c + 1 < table.columns.size(); ++c) {
        cAnalysedColumn& day = table.columns[c];
        cAnalysedColumn& time = table.columns[c + 1];
        if (vxString::to_lower(day.name) != "date" || vxString::to_lower(day.unit) != "mjd" ||
            vxString::to_lower(time.name) != "time" || day.type != column_numeric || time.type != column_numeric)
            continue;
        for (size_t row = 0; row < day.values.size() && row < time.values.size(); ++row)
            time.values[row] = csvDates::convertModifiedJulianDay(day.values[row], time.values[row]);
        time.unit = "date";
        table.columns.erase(table.columns.begin() + static_cast<std::ptrdiff_t>(c));
        return;
    }
}

}  // namespace vx3
