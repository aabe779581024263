#include "readers/tabulated/cCsvParser.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <map>
#include <vector>

#include "base/cVxLogger.h"
#include "base/cVxString.h"
#include "readers/scan/cParserBase.h"
#include "readers/tabulated/cCurvePlotTabulatedParserFast.h"
#include "readers/tabulated/cTabulatedTextSource.h"

namespace vx3 {

using namespace csvParserTempData;
using namespace csvSeparator;

namespace {

constexpr uint64_t kBlockSize = 4u << 20;

std::string_view trimView(std::string_view text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t' || text.front() == '\r'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r'))
        text.remove_suffix(1);
    return text;
}

bool isInteger(std::string_view text)
{
    size_t i = text[0] == '-' || text[0] == '+' ? 1 : 0;
    if (i == text.size() || text.size() - i > 15)
        return false;
    for (; i < text.size(); ++i)
        if (text[i] < '0' || text[i] > '9')
            return false;
    return true;
}

bool checkIsRunSeparator(unsigned type)
{
    return type == multiple_space || type == tab_or_multiple_space || type == tab_space_or_comma ||
           type == tab_space_or_comma_11;
}

bool checkIsBlankSeparator(unsigned type)
{
    return type == space || type == multiple_space || type == tab_or_space || type == tab_or_multiple_space ||
           type == tab_space_or_comma || type == tab_space_or_comma_11;
}

}  // namespace

bool cCsvParser::isSeparator(char c) const
{
    switch (mSeparator) {
    case comma: return c == ',';
    case tab: return c == '\t';
    case space:
    case multiple_space: return c == ' ';
    case semicolon: return c == ';';
    case colon: return c == ':';
    case tab_or_space:
    case tab_or_multiple_space: return c == ' ' || c == '\t';
    case other: return c == mOther;
    case tab_space_or_comma:
    case tab_space_or_comma_11: return c == ' ' || c == '\t' || c == ',';
    default: return c == ',';
    }
}

void cCsvParser::addCell(std::string_view raw, bool quoted, cCsvParserTempData& data) const
{
    const std::string_view text = trimView(raw);
    if (text.empty()) {
        data.addEmptyValue();
        return;
    }
    // A decimal comma can't be told from a separator that is a comma.
    const bool commaSeparator = mSeparator == comma || mSeparator == tab_space_or_comma ||
                                mSeparator == tab_space_or_comma_11 || (mSeparator == other && mOther == ',');
    const bool commaAllowed = quoted || !commaSeparator;
    if (isInteger(text)) {
        double value = 0;
        std::from_chars(text.data() + (text[0] == '+' ? 1 : 0), text.data() + text.size(), value);
        data.addIntegerValue(value);
        return;
    }
    double value = 0;
    const bool usesComma = commaAllowed && text.find(',') != std::string_view::npos && text.find('.') == std::string_view::npos;
    if (tabulatedParserFast::parseNumber(text, usesComma, value)) {
        data.addDoubleValue(value, usesComma);
        return;
    }
    // Engineering suffixes ("10u", "1.5meg") and tools' marks for "no value" ("-", "---").
    cParserBaseStringIteratorHandler handler;
    handler.useStringData(text);
    using scanner = cParserBase<cParserBaseStringIterator>;
    cParserBaseStringIterator begin = handler.begin(), end = handler.end();
    if (scanner::parseDoubleWithUnits(begin, end, value) && begin == end) {
        data.addDoubleValue(value);
        return;
    }
    begin = handler.begin();
    if (scanner::parseDoubleOtherInfNan(begin, end, value, commaAllowed) && begin == end) {
        data.addDoubleValue(value);
        return;
    }
    data.addStringValue(text);
}

void cCsvParser::tokenizeLine(std::string_view line, uint64_t lineNumber, cCsvParserTempData& data)
{
    if (!line.empty() && line.back() == '\r')
        line.remove_suffix(1);
    std::string_view trimmed = trimView(line);
    if (trimmed.empty())
        return;
    std::vector<std::pair<std::string, double>> parameters;
    if (tabulatedParserFast::parseStepParameters(trimmed, parameters)) {
        data.startRow(row_step, lineNumber);
        data.setStepParameters(std::move(parameters));
        return;
    }
    if (trimmed == "End" || trimmed.rfind("End of Xyce(TM)", 0) == 0) {
        data.startRow(row_end, lineNumber);
        return;
    }
    if (trimmed.front() == mComment) {
        data.startRow(row_comment, lineNumber);
        line = trimView(trimmed.substr(1));
    } else {
        data.startRow(row_data, lineNumber);
    }
    if (checkIsBlankSeparator(mSeparator))
        line = trimView(line);
    const bool runs = checkIsRunSeparator(mSeparator);
    size_t i = 0;
    while (true) {
        if (!checkIsBlankSeparator(mSeparator))
            while (i < line.size() && (line[i] == ' ' || line[i] == '\t') && !isSeparator(line[i]))
                ++i;
        if (i < line.size() && line[i] == '"') {
            std::string cell;
            csvSeparator::readQuotedCell(line, i, cell);
            while (i < line.size() && !isSeparator(line[i]))
                ++i;
            addCell(cell, true, data);
        } else {
            const size_t start = i;
            while (i < line.size() && !isSeparator(line[i]))
                ++i;
            addCell(line.substr(start, i - start), false, data);
        }
        if (i >= line.size())
            break;
        if (runs) {
            bool commaSeen = false;
            while (i < line.size() && isSeparator(line[i])) {
                if (line[i] == ',') {
                    if (commaSeen)
                        break;  // ",," leaves an empty cell between
                    commaSeen = true;
                }
                ++i;
            }
        } else {
            ++i;
        }
        if (i >= line.size()) {
            if (!runs)
                data.addEmptyValue();
            break;
        }
    }
}

bool cCsvParser::checkEndsInsideQuotedCell(std::string_view line) const
{
    // Cells start where tokenizeLine starts them; only a quote that opens a cell quotes.
    const std::string_view trimmed = trimView(line);
    if (trimmed.empty() || trimmed.front() == mComment)
        return false;
    size_t i = 0;
    while (i < line.size()) {
        while (i < line.size() && (line[i] == ' ' || line[i] == '\t') && !isSeparator(line[i]))
            ++i;
        if (i < line.size() && line[i] == '"') {
            for (++i;; ++i) {
                if (i >= line.size())
                    return true;
                if (line[i] == '"' && i + 1 < line.size() && line[i + 1] == '"')
                    ++i;
                else if (line[i] == '"')
                    break;
            }
        }
        while (i < line.size() && !isSeparator(line[i]))
            ++i;
        while (i < line.size() && isSeparator(line[i]))
            ++i;
    }
    return false;
}

returnCode cCsvParser::parseCsvSource(cTabulatedTextSource& source, cCsvParserTempData& data, uint64_t maxRows)
{
    std::vector<char> buffer(std::min<uint64_t>(kBlockSize, std::max<uint64_t>(source.size(), 1)));
    uint64_t position = source.getTextStart(), carry = 0, line = 1;
    // A row whose quoted cell holds line ends, gathered over its lines; recordLine is its first.
    std::string record;
    uint64_t recordLine = 0;
    auto flushRecord = [&] {
        if (!record.empty())
            tokenizeLine(record, recordLine, data);
        record.clear();
    };
    while (true) {
        const uint64_t wanted = buffer.size() - carry;
        const uint64_t got = source.read(position, buffer.data() + carry, wanted);
        position += got;
        const uint64_t total = carry + got;
        const bool atEnd = got < wanted;
        if (total == 0) {
            flushRecord();
            return ok;
        }
        const char* begin = buffer.data();
        const char* end = begin + total;
        if (!atEnd) {
            const char* feed = static_cast<const char*>(::memrchr(begin, '\n', total));
            if (!feed) {
                if (buffer.size() >= kMaxLineSize) {
                    mLogger.errorMsg("CSV Parser : the line " + std::to_string(line) + " is longer than " +
                                     std::to_string(kMaxLineSize) + " characters.");
                    return failed;
                }
                carry = total;
                buffer.resize(std::min<uint64_t>(buffer.size() * 2, kMaxLineSize));
                continue;
            }
            end = feed + 1;
        }
        const char* p = begin;
        while (p < end) {
            const char* feed = static_cast<const char*>(std::memchr(p, '\n', static_cast<size_t>(end - p)));
            const char* lineEnd = feed ? feed : end;
            std::string_view text(p, static_cast<size_t>(lineEnd - p));
            p = feed ? feed + 1 : end;
            const uint64_t number = line++;
            if (!record.empty()) {
                record += '\n';
                record.append(text);
                text = record;
            }
            if (feed && checkEndsInsideQuotedCell(text)) {
                if (record.empty()) {
                    record.assign(text);
                    recordLine = number;
                }
                if (record.size() > kMaxLineSize) {
                    mLogger.errorMsg("CSV Parser : the line " + std::to_string(recordLine) + " is longer than " +
                                     std::to_string(kMaxLineSize) + " characters.");
                    return failed;
                }
                continue;
            }
            if (record.empty())
                tokenizeLine(text, number, data);
            else
                flushRecord();
            if (maxRows && data.getNbOfRows() >= maxRows)
                return ok;
        }
        carry = static_cast<uint64_t>(begin + total - end);
        std::memmove(buffer.data(), end, carry);
        if (atEnd) {
            flushRecord();
            return ok;
        }
        if (mLogger.checkActionIsInterrupted())
            return action_interrupted;
    }
}

returnCode cCsvParser::parseCsvString(std::string_view text, cCsvParserTempData& data)
{
    cTabulatedTextSource source;
    source.useString(text);
    return parseCsvSource(source, data);
}

// ---------------------------------------------------------------- header rows

bool cCsvParser::checkIfRowIsHeaderOrCommentRow(const cCsvParserTempData& data, uint64_t row, uint64_t numericCells)
{
    if (data.getRowKind(row) != row_data)
        return true;
    uint64_t numbers = 0;
    for (uint64_t c = 0; c < data.getRowSize(row); ++c)
        numbers += data.getDataEntry(row, c).isNumber() ? 1 : 0;
    return numbers < numericCells;
}

int64_t cCsvParser::autoDetectHeaderRows(const cCsvParserTempData& data)
{
    std::vector<uint64_t> rows, numbers;
    for (uint64_t row = 0; row < data.getNbOfRows(); ++row) {
        if (data.getRowKind(row) != row_data)
            continue;
        uint64_t count = 0;
        for (uint64_t c = 0; c < data.getRowSize(row); ++c)
            count += data.getDataEntry(row, c).isNumber() ? 1 : 0;
        rows.push_back(row);
        numbers.push_back(count);
    }
    if (rows.empty())
        return -1;
    // The typical count of numbers in a row, from the second half of the rows.
    std::map<uint64_t, uint64_t> frequency;
    for (size_t i = rows.size() / 2; i < rows.size(); ++i)
        ++frequency[numbers[i]];
    uint64_t typical = 0, best = 0;
    for (const auto& [count, times] : frequency)
        if (times >= best) {
            best = times;
            typical = count;
        }
    if (typical == 0)
        return -1;
    size_t first = rows.size();
    for (size_t i = 0; i < rows.size(); ++i)
        if (numbers[i] >= typical && (i + 1 == rows.size() || numbers[i + 1] >= typical)) {
            first = i;
            break;
        }
    const size_t dataRows = rows.size() - first;
    if (first == rows.size() || dataRows < 4 || dataRows * 2 < rows.size())
        return -1;
    return static_cast<int64_t>(rows[first]);
}

bool cCsvParser::checkDataFitsExpectations(const cCsvParserTempData& data, uint64_t) const
{
    const uint64_t rows = data.getCountedRows();
    if (rows < mMinimumRows || data.getNbOfNumericCols() == 0)
        return false;
    for (const cCsvParserTempData::cCsvCol& column : data.columns()) {
        const uint64_t numbers = column.nbDouble + column.nbInteger;
        const uint64_t filled = numbers + column.nbString;
        if (filled * 2 < rows)
            continue;
        const uint64_t largest = std::max(numbers, column.nbString);
        const uint64_t odd = filled - largest;
        const uint64_t tolerated = filled < 10 ? 1 : 2;
        if (largest * 2 <= filled || (odd > tolerated && static_cast<double>(largest) < mSecondThreshold * 1.8 * static_cast<double>(filled)))
            return false;
    }
    return data.getFillRatio() >= mFirstThreshold;
}

// ---------------------------------------------------------------- automatic separator

csvParser::cSeparatorStatistics cCsvParser::computeStatistics(cTabulatedTextSource& source, unsigned type,
                                                              returnCode* code)
{
    if (code)
        *code = ok;
    csvParser::cSeparatorStatistics statistics;
    statistics.separator = type;
    setSeparator(type, mOther);
    cCsvParserTempData data;
    int64_t first = -1;
    for (uint64_t rows = 10; rows <= 30; rows += 10) {
        data.clear();
        const returnCode parsed = parseCsvSource(source, data, rows);
        if (parsed != ok) {
            if (code)
                *code = parsed;
            return statistics;
        }
        first = autoDetectHeaderRows(data);
        const bool more = data.getNbOfRows() >= rows;
        const uint64_t header = first < 0 ? data.getNbOfRows() : static_cast<uint64_t>(first);
        if (!more || (first >= 0 && header * 2 < data.getNbOfRows()))
            break;
    }
    if (data.getNbOfRows() == 0)
        return statistics;
    uint64_t firstRow = 0;
    if (first >= 0) {
        firstRow = static_cast<uint64_t>(first);
    } else {
        // Few rows: the data begin at the first row that is all numbers.
        for (uint64_t row = 0; row < data.getNbOfRows(); ++row)
            if (data.getRowKind(row) == row_data && !checkIfRowIsHeaderOrCommentRow(data, row, data.getRowSize(row))) {
                firstRow = row;
                break;
            }
    }
    data.countColumnEntries(firstRow, data.getNbOfRows());
    const uint64_t columns = data.columns().size();
    // Rows that don't have the typical width are errors of this separator.
    std::map<uint64_t, uint64_t> widths;
    for (uint64_t row = firstRow; row < data.getNbOfRows(); ++row)
        if (data.getRowKind(row) == row_data)
            ++widths[data.getRowSize(row)];
    uint64_t typical = 0, times = 0;
    for (const auto& [width, count] : widths)
        if (count >= times) {
            times = count;
            typical = width;
        }
    for (uint64_t row = firstRow; row < data.getNbOfRows(); ++row)
        if (data.getRowKind(row) == row_data && data.getRowSize(row) != typical) {
            ++statistics.irregularRows;
            statistics.errors += data.getRowSize(row) > typical ? 1 : 0;
        }
    // A header that this separator cuts into another number of names than the data rows: the
    // separator also cuts inside cells (a blank in a time stamp).
    for (uint64_t row = firstRow; row-- > 0;)
        if (data.getRowKind(row) == row_data) {
            if (data.getRowSize(row) != typical)
                ++statistics.errors;
            break;
        }
    const uint64_t rows = std::max<uint64_t>(data.getCountedRows(), 1);
    statistics.score = static_cast<double>(columns - data.getNumberOfIncompleteCols(0.7));
    double numbers = 0;
    for (const auto& column : data.columns()) {
        numbers += static_cast<double>(column.nbDouble + column.nbInteger);
        statistics.decimalComma = statistics.decimalComma || column.nbComma > 0;
    }
    statistics.numericDensity = numbers / static_cast<double>(rows);
    statistics.fillRatio = data.getFillRatio();
    statistics.plausible = statistics.errors == 0 && checkDataFitsExpectations(data, firstRow);
    statistics.parsed = data.getCountedRows() > 0;
    return statistics;
}

bool csvParser::checkReplacesBest(const cSeparatorStatistics& candidate, const cSeparatorStatistics& best)
{
    if (!candidate.parsed)
        return false;
    if (!best.parsed)
        return true;
    if (!candidate.plausible && best.plausible)
        return false;
    if (candidate.plausible && !best.plausible)
        return true;
    const bool denser = candidate.numericDensity >= best.numericDensity;
    // "1,5" in a table with another separator isn't a column border.
    if (best.separator == comma && candidate.decimalComma && candidate.score >= std::max(1.0, best.score / 2) && denser &&
        candidate.irregularRows <= best.irregularRows)
        return true;
    switch (candidate.separator) {
    case tab:
    case space:
        return candidate.score >= best.score;
    case multiple_space:
        if (best.separator == space)
            return candidate.score >= best.score && denser && candidate.errors <= best.errors;
        break;
    case tab_space_or_comma:
    case tab_space_or_comma_11:
        if (best.separator == tab_or_space || best.separator == tab_or_multiple_space)
            return candidate.score >= 1 && denser && candidate.errors <= best.errors;
        break;
    default:
        break;
    }
    return candidate.score > best.score && denser;
}

bool cCsvParser::extractSeparator(cTabulatedTextSource& source)
{
    static const unsigned order[] = {comma, tab, space, multiple_space, tab_or_multiple_space,
                                     semicolon, colon, tab_or_space, tab_space_or_comma};
    csvParser::cSeparatorStatistics best;
    for (unsigned type : order) {
        returnCode code = ok;
        const csvParser::cSeparatorStatistics candidate = computeStatistics(source, type, &code);
        if (code != ok) {
            mBest = csvParser::cSeparatorStatistics();
            setSeparator(automatic);
            return false;
        }
        if (csvParser::checkReplacesBest(candidate, best))
            best = candidate;
    }
    mBest = best;
    if (!best.parsed) {
        setSeparator(automatic);
        return false;
    }
    setSeparator(best.separator, mOther);
    return true;
}

}  // namespace vx3
