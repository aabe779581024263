#include "readers/tabulated/cCurvePlotTabulatedParserFast.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "base/cVxString.h"
#include "readers/cCurvePlotParserOptions.h"
#include "readers/scan/cParserBase.h"
#include "readers/tabulated/cTabulatedTextSource.h"
#include "readers/tabulated/csvSeparator.h"

namespace vx3 {

using namespace tabulatedParser;
using namespace tabulatedParserFast;

namespace {

constexpr uint64_t kHeadSize = 256u << 10;
constexpr uint64_t kBlockSize = 1u << 20;
// Longer lines are not what this reader is for; the slow reader says why.
constexpr uint64_t kMaxLineSize = 64u << 20;
// Lines of the head that must agree with the header.
constexpr size_t kDataLinesChecked = 8;

std::string_view trimView(std::string_view text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t' || text.front() == '\r'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r'))
        text.remove_suffix(1);
    return text;
}

// from_chars reads no "+"; out-of-range values get what strtod gives (infinity, zero).
inline const char* parseValue(const char* p, const char* e, double& value)
{
    if (p < e && *p == '+')
        ++p;
    const std::from_chars_result result = std::from_chars(p, e, value);
    if (result.ec == std::errc())
        return result.ptr;
    if (result.ec == std::errc::result_out_of_range) {
        const std::string copy(p, result.ptr);
        value = vxString::strtod_replacement(copy.c_str(), nullptr);
        return result.ptr;
    }
    return nullptr;
}

// A decimal comma: the token is copied with "." in its place.
inline const char* parseValueComma(const char* p, const char* e, double& value, char separator)
{
    const char* end = p;
    while (end < e && *end != separator && *end != '\n' && *end != '\r' && *end != ' ' && *end != '\t')
        ++end;
    char buffer[96];
    const size_t size = static_cast<size_t>(end - p);
    if (size == 0 || size >= sizeof(buffer))
        return nullptr;
    for (size_t i = 0; i < size; ++i)
        buffer[i] = p[i] == ',' ? '.' : p[i];
    const char* used = parseValue(buffer, buffer + size, value);
    return used ? p + (used - buffer) : nullptr;
}

bool isCommentLine(std::string_view line)
{
    line = trimView(line);
    return !line.empty() && line.front() == '#';
}

bool checkIsEndOfData(std::string_view line)
{
    line = trimView(line);
    return line.rfind("End of Xyce(TM)", 0) == 0;
}

}  // namespace

// ---------------------------------------------------------------- the head

void tabulatedParserFast::splitLine(std::string_view line, char separator, std::vector<std::string>& cells)
{
    cells.clear();
    line = trimView(line);
    if (line.empty())
        return;
    size_t i = 0;
    while (true) {
        std::string cell;
        if (separator == ' ')
            while (i < line.size() && (line[i] == ' ' || line[i] == '\t'))
                ++i;
        else
            while (i < line.size() && line[i] == ' ')
                ++i;
        if (i < line.size() && line[i] == '"') {
            csvSeparator::readQuotedCell(line, i, cell);
            while (i < line.size() && line[i] != separator && !(separator == ' ' && line[i] == '\t'))
                ++i;
        } else {
            const size_t start = i;
            while (i < line.size() && line[i] != separator && !(separator == ' ' && line[i] == '\t'))
                ++i;
            cell = std::string(trimView(line.substr(start, i - start)));
        }
        cells.push_back(cell);
        if (i >= line.size())
            break;
        ++i;  // the separator
        if (separator == ' ') {
            while (i < line.size() && (line[i] == ' ' || line[i] == '\t'))
                ++i;
            if (i >= line.size())
                break;
        }
    }
}

bool tabulatedParserFast::parseNumber(std::string_view cell, bool decimalComma, double& value)
{
    cell = trimView(cell);
    if (cell.empty())
        return false;
    const char* begin = cell.data();
    const char* end = begin + cell.size();
    const char* used = decimalComma ? parseValueComma(begin, end, value, ';') : parseValue(begin, end, value);
    return used == end;
}

bool tabulatedParserFast::parseStepParameters(std::string_view line, std::vector<std::pair<std::string, double>>& parameters)
{
    parameters.clear();
    line = trimView(line);
    std::string lower = vxString::to_lower(line);
    size_t start = std::string::npos;
    if (lower.rfind("step information:", 0) == 0)
        start = 17;
    else if (lower.rfind("step", 0) == 0 && lower.find("information:") != std::string::npos)
        start = lower.find("information:") + 12;
    if (start == std::string::npos)
        return false;
    size_t stop = lower.find("(run:", start);
    std::string body(line.substr(start, stop == std::string::npos ? std::string::npos : stop - start));
    // "name=value" pairs separated by blanks or commas; values may carry suffixes ("1k").
    std::vector<cVxString> words;
    cVxString(vxString::replace_string_all(body, ",", " ")).splitString(words, ' ');
    std::string pending;
    for (cVxString word : words) {
        word.trim();
        if (word.empty())
            continue;
        const size_t equal = word.find('=');
        if (equal == std::string::npos)
            continue;
        const std::string name = vxString::trim(word.substr(0, equal));
        const std::string text = vxString::trim(word.substr(equal + 1));
        double value = 0;
        cParserBaseStringIteratorHandler handler;
        handler.useStringData(text);
        cParserBaseStringIterator begin = handler.begin(), end = handler.end();
        if (!name.empty() && cParserBase<cParserBaseStringIterator>::parseDoubleWithUnits(begin, end, value))
            parameters.emplace_back(name, value);
    }
    return true;
}

bool tabulatedParserFast::findSeparator(std::string_view head, cLayout& layout)
{
    struct cLine {
        std::string_view text;
        uint64_t end;  // offset after its line feed
    };
    std::vector<cLine> lines;
    std::string_view lastComment;
    uint64_t offset = 0;
    while (offset < head.size() && lines.size() < kDataLinesChecked + 1) {
        const size_t feed = head.find('\n', offset);
        const uint64_t next = feed == std::string_view::npos ? head.size() : feed + 1;
        const std::string_view line = head.substr(offset, (feed == std::string_view::npos ? head.size() : feed) - offset);
        offset = next;
        std::vector<std::pair<std::string, double>> step;
        // The lines that end the data (or a run) are no rows to cut columns by.
        if (checkIsEndOfData(line))
            break;
        if (trimView(line).empty() || trimView(line) == "End" || parseStepParameters(line, step))
            continue;
        if (isCommentLine(line)) {
            if (lines.empty())
                lastComment = trimView(line).substr(1);
            continue;
        }
        lines.push_back({line, next});
    }
    if (lines.empty())
        return false;

    std::vector<std::string> header, cells;
    // Decimal commas only when no separator reads the rows with points.
    for (bool comma : {false, true}) {
        for (char separator : {'\t', ';', ',', ' '}) {
            if (comma && separator == ',')
                continue;
            splitLine(lines[0].text, separator, header);
            bool headerIsData = true;
            double value = 0;
            for (const std::string& cell : header)
                headerIsData = headerIsData && parseNumber(cell, comma, value);
            const size_t columns = header.size();
            bool fits = columns > 0;
            size_t dataLines = headerIsData ? 1 : 0;
            for (size_t i = 1; fits && i < lines.size(); ++i, ++dataLines) {
                splitLine(lines[i].text, separator, cells);
                // The last line of a head may be cut short; the reader decides about it.
                if (i + 1 == lines.size() && cells.size() < columns && lines[i].end == head.size())
                    break;
                fits = cells.size() == columns;
                for (const std::string& cell : cells)
                    fits = fits && parseNumber(cell, comma, value);
            }
            if (!fits || dataLines == 0)
                continue;
            layout.separator = separator;
            layout.decimalComma = comma;
            layout.hasHeader = !headerIsData;
            layout.names.clear();
            if (layout.hasHeader) {
                layout.names = header;
                layout.dataStart = lines[0].end;
            } else {
                layout.dataStart = 0;
                std::vector<std::string> commentNames;
                if (!lastComment.empty())
                    splitLine(lastComment, separator, commentNames);
                if (commentNames.size() == columns) {
                    layout.names = commentNames;
                } else {
                    // x, y, z for small tables; x and y_1, y_2, ... for wider ones.
                    layout.names.push_back("x");
                    for (size_t k = 1; k < columns; ++k)
                        layout.names.push_back(columns <= 3 ? std::string(1, "xyz"[k]) : "y_" + std::to_string(k));
                }
            }
            return true;
        }
    }
    return false;
}

// ---------------------------------------------------------------- the rows

namespace {

struct cRun {
    uint64_t firstRow = 0;
    std::vector<std::pair<std::string, double>> parameters;
};

enum class block_result { ok, full, end_of_data, bad_row };

// Reads the complete lines of [p, e) into the columns. Rows that don't parse end the attempt;
// a row with too few cells ends the data.
block_result parseBlock(const char*& p, const char* e, char separator, bool comma, const std::vector<double*>& columns,
                        uint64_t& row, uint64_t capacity, std::vector<cRun>& runs)
{
    const size_t count = columns.size();
    while (p < e) {
        if (*p == '\n' || *p == '\r') {
            ++p;
            continue;
        }
        if (row >= capacity)
            return block_result::full;
        const char* line = p;
        size_t column = 0;
        bool ok = true;
        for (; column < count; ++column) {
            if (separator == '\t')
                while (p < e && *p == ' ')
                    ++p;
            else
                while (p < e && (*p == ' ' || *p == '\t'))
                    ++p;
            double value;
            const char* next = comma ? parseValueComma(p, e, value, separator) : parseValue(p, e, value);
            if (!next) {
                ok = false;
                break;
            }
            columns[column][row] = value;
            p = next;
            if (column + 1 == count)
                break;
            if (separator == ' ') {
                const char* start = p;
                while (p < e && (*p == ' ' || *p == '\t'))
                    ++p;
                if (p == start) {
                    ok = false;
                    break;
                }
            } else {
                while (p < e && *p == ' ')
                    ++p;
                if (p < e && *p == separator) {
                    ++p;
                } else {
                    ok = false;
                    break;
                }
            }
        }
        if (ok) {
            while (p < e && (*p == ' ' || *p == '\t' || *p == '\r'))
                ++p;
            if (p < e && *p == separator && separator != ' ') {  // one trailing separator
                ++p;
                while (p < e && (*p == ' ' || *p == '\r'))
                    ++p;
            }
            if (p >= e || *p == '\n') {
                if (p < e)
                    ++p;
                ++row;
                continue;
            }
        }
        // Not a row: the line is looked at whole.
        const char* failedAt = p;
        const char* feed = static_cast<const char*>(std::memchr(line, '\n', static_cast<size_t>(e - line)));
        const char* lineEnd = feed ? feed : e;
        p = feed ? feed + 1 : e;
        const std::string_view text = trimView(std::string_view(line, static_cast<size_t>(lineEnd - line)));
        std::vector<std::pair<std::string, double>> parameters;
        if (text.empty() || text.front() == '#' || text == "End")
            continue;
        if (checkIsEndOfData(text))
            return block_result::end_of_data;
        if (tabulatedParserFast::parseStepParameters(text, parameters)) {
            if (runs.back().firstRow == row)
                runs.back().parameters = parameters;
            else
                runs.push_back({row, parameters});
            continue;
        }
        // Fewer cells than columns: the row is incomplete and the data end here.
        bool atLineEnd = failedAt >= lineEnd;
        for (const char* c = failedAt; c < lineEnd && !atLineEnd; ++c)
            if (*c != ' ' && *c != '\t' && *c != '\r' && *c != separator)
                break;
            else if (c + 1 == lineEnd)
                atLineEnd = true;
        if (!ok && column > 0 && atLineEnd)
            return block_result::end_of_data;
        return block_result::bad_row;
    }
    return block_result::ok;
}

}  // namespace

returnCode cCurvePlotTabulatedParserFast::parseImpl(cTabulatedTextSource& source, const std::string& name,
                                                   bool detectOnly)
{
    if (source.checkLooksBinary())
        return failed;
    // The head: enough lines for the header and the first rows, however long they are.
    std::string head;
    uint64_t headSize = std::min<uint64_t>(kHeadSize, source.size());
    while (true) {
        head.resize(headSize);
        head.resize(source.read(0, head.data(), headSize));
        if (head.size() >= source.size() ||
            static_cast<size_t>(std::count(head.begin(), head.end(), '\n')) > kDataLinesChecked + 2)
            break;
        if (headSize >= kMaxLineSize)
            return failed;
        headSize = std::min<uint64_t>(headSize * 4, source.size());
    }
    if (head.size() < source.size()) {
        const size_t feed = head.rfind('\n');
        head.resize(feed == std::string::npos ? 0 : feed + 1);
    }
    cLayout layout;
    const uint64_t start = source.getTextStart();
    if (!findSeparator(std::string_view(head).substr(std::min<uint64_t>(start, head.size())), layout))
        return failed;
    layout.dataStart += start;
    for (const std::string& column : layout.names)
        if (checkNameDefinesSweepVariable(column))
            return failed;  // a sweep matrix: the slow reader's work
    if (detectOnly)
        return ok;

    uint64_t lineFeeds = 0;
    if (!source.countLineFeeds(layout.dataStart, lineFeeds, options().logger()))
        return action_interrupted;
    const uint64_t capacity = lineFeeds + 1;
    const size_t count = layout.names.size();
    std::vector<cCurvePlotData> blocks(count);
    std::vector<double*> columns(count);
    for (size_t i = 0; i < count; ++i) {
        if (!blocks[i].setSize(capacity, sizeof(double))) {
            errorMsg("Not enough memory to read the file \"" + name + "\".");
            return failed;
        }
        columns[i] = blocks[i].doubleValues();
    }

    std::vector<cRun> runs(1);
    uint64_t row = 0;
    std::vector<char> buffer(std::min<uint64_t>(kBlockSize, std::max<uint64_t>(source.size(), 1)));
    uint64_t position = layout.dataStart, carry = 0;
    bool done = false;
    while (!done) {
        const uint64_t wanted = buffer.size() - carry;
        const uint64_t got = source.read(position, buffer.data() + carry, wanted);
        position += got;
        const uint64_t total = carry + got;
        const bool atEnd = got < wanted;
        if (total == 0)
            break;
        const char* begin = buffer.data();
        const char* end = begin + total;
        if (!atEnd) {
            const char* feed = static_cast<const char*>(::memrchr(begin, '\n', total));
            if (!feed) {
                if (buffer.size() >= kMaxLineSize)
                    return failed;
                carry = total;
                buffer.resize(buffer.size() * 2);
                continue;
            }
            end = feed + 1;
        }
        const char* p = begin;
        switch (parseBlock(p, end, layout.separator, layout.decimalComma, columns, row, capacity, runs)) {
        case block_result::bad_row:
            return failed;
        case block_result::full:
        case block_result::end_of_data:
            done = true;
            break;
        case block_result::ok:
            break;
        }
        carry = static_cast<uint64_t>(begin + total - end);
        std::memmove(buffer.data(), end, carry);
        if (atEnd)
            done = true;
        if (checkIsInterrupted())
            return action_interrupted;
    }
    if (row == 0)
        return failed;

    // Nested sweeps and restarting x axes are the slow reader's (sweep matrices, several runs).
    if (count > 1 && runs.size() == 1) {
        const double* x = columns[0];
        if (row > 2 && x[0] == x[1])
            return failed;
        uint64_t backwards = 0;
        for (uint64_t i = 1; i < row; ++i) {
            if (x[i] < x[i - 1] && x[i] <= x[0])
                return failed;
            backwards += x[i] < x[i - 1] ? 1 : 0;
        }
        // An axis that goes back in a few rows only is cleaned by the slow reader; with more it
        // is data of its own, read as it stands.
        if (backwards != 0 && backwards <= std::max<uint64_t>(1, row / 100))
            return failed;
    }

    std::vector<cTable> tables;
    const std::string sectionName = sectionNameFromFileName(getSourceName().empty() ? name : getSourceName());
    for (size_t r = 0; r < runs.size(); ++r) {
        const uint64_t first = runs[r].firstRow;
        const uint64_t last = r + 1 < runs.size() ? runs[r + 1].firstRow : row;
        if (last <= first)
            continue;
        cTable table;
        table.sectionName = sectionName;
        table.rowCount = last - first;
        if (runs.size() > 1 || !runs[r].parameters.empty()) {
            table.stepIndex = getOrCreateStepIndex(runs[r].parameters);
            table.runParameters = runs[r].parameters;
        }
        for (size_t i = 0; i < count; ++i) {
            cColumn column;
            defineColumnName(column, layout.names[i], i + 1);
            if (runs.size() == 1) {
                blocks[i].setUsedValueCount(row);
                column.values = std::move(blocks[i]);
            } else if (!column.values.assignValues(columns[i] + first, last - first, sizeof(double))) {
                errorMsg("Not enough memory to read the file \"" + name + "\".");
                return failed;
            }
            (i == 0 && count > 1 ? table.sweeps : table.curves).push_back(std::move(column));
        }
        shapeTable(table);
        restrictToXInterval(table, options().openFileOptions());
        tables.push_back(std::move(table));
    }
    if (tables.empty())
        return failed;
    cFileDbSupport& file = initDbSupport(name, fileDbSupport::csv);
    if (!commitTables(tables, file))
        return failed;
    file.setProperty(curvePlotProperties::cProperty::makeInteger(curvePlotProperties::file_table_separator,
                                                                 csvSeparator::fromCharacter(layout.separator)));
    file.setProperty(curvePlotProperties::cProperty::makeInteger(curvePlotProperties::file_table_analysis_2,
                                                                 layout.decimalComma ? 1 : 0));
    return ok;
}

returnCode cCurvePlotTabulatedParserFast::parseFile(const std::string& name)
{
    cTabulatedTextSource source;
    if (!source.openFile(name))
        return failed;
    return parseImpl(source, name, false);
}

returnCode cCurvePlotTabulatedParserFast::parseString(const std::string& text)
{
    cTabulatedTextSource source;
    source.useString(text);
    if (text.empty())
        return failed;
    return parseImpl(source, getSourceName(), false);
}

returnCode cCurvePlotTabulatedParserFast::reloadFile(const std::string& name,
                                                     const std::vector<cCurvePlotDataSection*>& sections)
{
    setReloadSections(sections);
    return parseFile(name);
}

returnCode cCurvePlotTabulatedParserFast::detectFileType(const std::string& name, cCurvePlotParserOpenFileOptions&)
{
    cTabulatedTextSource source;
    if (!source.openFile(name))
        return failed;
    return parseImpl(source, name, true);
}

}  // namespace vx3
