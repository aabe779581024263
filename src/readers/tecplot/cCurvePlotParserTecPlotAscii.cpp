#include "readers/tecplot/cCurvePlotParserTecPlotAscii.h"

#include <cctype>
#include <charconv>
#include <map>

#include "base/cVxString.h"
#include "readers/tabulated/cTabulatedTextSource.h"

namespace vx3 {

using namespace curvePlotParserTecPlotAscii;

namespace {
constexpr uint64_t kMaxTecPlotSize = 1ull << 30;
// The words that start a record; anything else in front of the data is an error.
const char* const kKeywords[] = {"title", "filetype", "variables", "zone", "text", "geometry", "datasetauxdata",
                                 "auxdata", "varauxdata", "custom"};
}  // namespace

// ---------------------------------------------------------------- scanner

void cParser::parseSkip()
{
    while (mPosition < mText.size()) {
        const char c = mText[mPosition];
        // Every blank that ends a value ends it here too (a vertical tab stopped a variable
        // name without being skipped, and the variable list never ended).
        if (std::isspace(static_cast<unsigned char>(c)) || c == ',') {
            ++mPosition;
        } else if (c == '#') {
            const size_t end = mText.find('\n', mPosition);
            mPosition = end == std::string_view::npos ? mText.size() : end + 1;
        } else {
            break;
        }
    }
}

bool cParser::atKeyword(std::string_view keyword) const
{
    if (mPosition + keyword.size() > mText.size())
        return false;
    for (size_t i = 0; i < keyword.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(mText[mPosition + i])) != keyword[i])
            return false;
    const size_t next = mPosition + keyword.size();
    return next == mText.size() || !std::isalnum(static_cast<unsigned char>(mText[next]));
}

std::string cParser::parseValueText()
{
    while (mPosition < mText.size() && (mText[mPosition] == ' ' || mText[mPosition] == '\t'))
        ++mPosition;
    std::string value;
    if (mPosition < mText.size() && mText[mPosition] == '"') {
        const size_t end = mText.find('"', mPosition + 1);
        const size_t stop = end == std::string_view::npos ? mText.size() : end;
        value = std::string(mText.substr(mPosition + 1, stop - mPosition - 1));
        mPosition = end == std::string_view::npos ? mText.size() : end + 1;
        return value;
    }
    while (mPosition < mText.size() && !std::isspace(static_cast<unsigned char>(mText[mPosition])) &&
           mText[mPosition] != ',')
        value.push_back(mText[mPosition++]);
    return value;
}

bool cParser::parseEqualsString(std::string& keyword, std::string& value)
{
    parseSkip();
    const size_t start = mPosition;
    keyword.clear();
    while (mPosition < mText.size() && (std::isalnum(static_cast<unsigned char>(mText[mPosition])) || mText[mPosition] == '_'))
        keyword.push_back(static_cast<char>(std::tolower(static_cast<unsigned char>(mText[mPosition++]))));
    while (mPosition < mText.size() && (mText[mPosition] == ' ' || mText[mPosition] == '\t'))
        ++mPosition;
    if (keyword.empty() || mPosition >= mText.size() || mText[mPosition] != '=') {
        mPosition = start;
        return false;
    }
    ++mPosition;
    value = parseValueText();
    return true;
}

void cParser::parseTextRecord()
{
    // TEXT x=.., y=.., t="...": read and ignored, up to the end of its line.
    mPosition += 4;
    std::string keyword, value;
    while (mPosition < mText.size() && mText[mPosition] != '\n') {
        const size_t before = mPosition;
        while (mPosition < mText.size() && (mText[mPosition] == ' ' || mText[mPosition] == '\t' || mText[mPosition] == ','))
            ++mPosition;
        if (mPosition < mText.size() && mText[mPosition] == '\n')
            break;
        if (!parseEqualsString(keyword, value) || mPosition == before)
            ++mPosition;
    }
}

void cParser::parseVariables()
{
    mPosition += 9;
    while (mPosition < mText.size() && (mText[mPosition] == ' ' || mText[mPosition] == '\t' || mText[mPosition] == '='))
        ++mPosition;
    mVariables.clear();
    while (true) {
        parseSkip();
        if (mPosition >= mText.size())
            return;
        const char c = mText[mPosition];
        if (c == '"') {
            mVariables.push_back(vxString::trim(parseValueText()));
            continue;
        }
        if (std::isdigit(static_cast<unsigned char>(c)) || c == '-' || c == '+' || c == '.')
            return;
        for (const char* keyword : kKeywords)
            if (atKeyword(keyword))
                return;
        const size_t before = mPosition;
        std::string name = parseValueText();
        if (mPosition == before) {
            ++mPosition;  // a character no rule takes: skipped, so that the list always ends
            continue;
        }
        mVariables.push_back(std::move(name));
    }
}

bool cParser::parseHeader()
{
    std::string keyword, value;
    while (true) {
        parseSkip();
        if (mPosition >= mText.size())
            break;
        if (atKeyword("variables")) {
            parseVariables();
        } else if (atKeyword("text")) {
            parseTextRecord();
        } else if (atKeyword("datasetauxdata")) {
            mPosition += 14;
            parseSkip();
            std::string name;
            while (mPosition < mText.size() && mText[mPosition] != '=' && !std::isspace(static_cast<unsigned char>(mText[mPosition])))
                name.push_back(mText[mPosition++]);
            while (mPosition < mText.size() && (mText[mPosition] == ' ' || mText[mPosition] == '='))
                ++mPosition;
            mAuxData.emplace_back(name, parseValueText());
        } else if (atKeyword("zone")) {
            break;
        } else if (parseEqualsString(keyword, value)) {
            if (keyword == "title")
                mTitle = value;
        } else {
            break;
        }
    }
    return !mVariables.empty() || atKeyword("zone");
}

bool cParser::parseData(cZone& zone)
{
    const uint64_t expected = zone.points ? zone.points * mVariables.size() : 0;
    while (!expected || zone.values.size() < expected) {
        parseSkip();
        if (mPosition >= mText.size())
            break;
        const char c = mText[mPosition];
        if (std::isalpha(static_cast<unsigned char>(c)) && !(atKeyword("nan") || atKeyword("inf")))
            break;  // the next record
        size_t end = mPosition;
        while (end < mText.size() && !std::isspace(static_cast<unsigned char>(mText[end])) && mText[end] != ',')
            ++end;
        // Fortran writes "1.5D+00".
        std::string token(mText.substr(mPosition, end - mPosition));
        for (char& letter : token)
            if (letter == 'D' || letter == 'd')
                letter = 'e';
        double value = 0;
        const char* first = token.data() + (token[0] == '+' ? 1 : 0);
        const std::from_chars_result result = std::from_chars(first, token.data() + token.size(), value);
        if (result.ptr != token.data() + token.size() || (result.ec != std::errc() && result.ec != std::errc::result_out_of_range))
            return false;
        zone.values.push_back(value);
        mPosition = end;
    }
    zone.complete = !expected || zone.values.size() == expected;
    return true;
}

bool cParser::parseZone(cZone& zone)
{
    zone = cZone();
    std::string keyword, value;
    while (true) {
        parseSkip();
        if (mPosition >= mText.size() || atKeyword("end"))
            return false;
        if (atKeyword("text")) {
            parseTextRecord();
            continue;
        }
        if (atKeyword("datasetauxdata") || atKeyword("auxdata") || atKeyword("geometry")) {
            const size_t end = mText.find('\n', mPosition);
            mPosition = end == std::string_view::npos ? mText.size() : end + 1;
            continue;
        }
        break;
    }
    if (atKeyword("variables")) {
        parseVariables();
        return parseZone(zone);
    }
    if (atKeyword("zone")) {
        mPosition += 4;
        uint64_t i = 0, j = 1, k = 1;
        while (parseEqualsString(keyword, value)) {
            const std::string lower = vxString::to_lower(value);
            if (keyword == "t")
                zone.title = value;
            else if (keyword == "i")
                i = std::strtoull(value.c_str(), nullptr, 10);
            else if (keyword == "j")
                j = std::max<uint64_t>(1, std::strtoull(value.c_str(), nullptr, 10));
            else if (keyword == "k")
                k = std::max<uint64_t>(1, std::strtoull(value.c_str(), nullptr, 10));
            else if (keyword == "f" || keyword == "datapacking")
                zone.block = lower.find("block") != std::string::npos;
        }
        // Each value takes a digit and a separator at least: a size beyond what the text holds is
        // wrong or the file is cut, and padding the zone to it would only exhaust memory.
        uint64_t points = 0, values = 0;
        const bool overflow = __builtin_mul_overflow(i, j, &points) || __builtin_mul_overflow(points, k, &points) ||
                              __builtin_mul_overflow(points, std::max<size_t>(1, mVariables.size()), &values);
        zone.oversized = overflow || values > mText.size() / 2;
        zone.points = zone.oversized ? 0 : points;
    }
    if (mVariables.empty())
        return false;
    if (!parseData(zone))
        return false;
    if (zone.oversized)
        zone.complete = false;
    return !zone.values.empty();
}

// ---------------------------------------------------------------- reader

unsigned cCurvePlotParserTecPlotAscii::getDbType() const { return fileDbSupport::tecplot; }

void cCurvePlotParserTecPlotAscii::defineColumns(const std::vector<std::string>& variables, const cZone& zone,
                                                 cCsvParserTempData& data)
{
    const uint64_t count = variables.size();
    const uint64_t points = zone.points ? zone.points : (zone.values.size() + count - 1) / count;
    data.startRow();
    for (const std::string& name : variables)
        data.addStringValue(name);
    for (uint64_t p = 0; p < points; ++p) {
        data.startRow(csvParserTempData::row_data, p + 2);
        for (uint64_t v = 0; v < count; ++v) {
            const uint64_t index = zone.block ? v * points + p : p * count + v;
            if (index < zone.values.size())
                data.addDoubleValue(zone.values[index]);
            else
                data.addEmptyValue();
        }
    }
}

returnCode cCurvePlotParserTecPlotAscii::parseText(std::string_view text)
{
    std::fill(std::begin(mMessageCounts), std::end(mMessageCounts), 0u);
    mRemovedRows = 0;
    cParser parser(text);
    if (!parser.parseHeader())
        return failed;
    std::vector<tabulatedParser::cTable> tables;
    std::map<std::string, unsigned> names;
    cZone zone;
    bool partial = false;
    unsigned number = 0;
    while (parser.parseZone(zone)) {
        ++number;
        cCsvParserTempData data;
        defineColumns(parser.variables(), zone, data);
        std::string name = zone.title.empty() ? sectionNameFromFileName(mFileName) : zone.title;
        const size_t before = tables.size();
        const returnCode code = copyTempCsvData(data, name, tables);
        if (code != ok && code != partly_parsed)
            return code;
        partial = partial || code == partly_parsed || !zone.complete;
        // Zones of one name are runs of it.
        const unsigned seen = ++names[name];
        for (size_t t = before; t < tables.size(); ++t)
            if (seen > 1 || tables[t].stepIndex)
                tables[t].stepIndex = tables[t].stepIndex ? tables[t].stepIndex : seen;
        if (zone.oversized)
            warnMsg("TecPlot : the zone " + std::to_string(number) + " of \"" + mFileName +
                    "\" declares more points than the file holds; its values are read as far as they go.");
        if (!zone.complete) {
            warnMsg("TecPlot : the zone " + std::to_string(number) + " of \"" + mFileName + "\" breaks off.");
            break;
        }
        if (checkIsInterrupted())
            return action_interrupted;
    }
    if (tables.empty())
        return failed;
    cFileDbSupport& file = initDbSupport(mFileName, getDbType());
    if (!commitTables(tables, file))
        return failed;
    for (const auto& [name, value] : parser.auxiliaryData())
        file.setProperty(curvePlotProperties::cProperty::makeText(curvePlotProperties::user_defined, value, name));
    return partial ? partly_parsed : ok;
}

returnCode cCurvePlotParserTecPlotAscii::parseFile(const std::string& name)
{
    mFileName = name;
    cTabulatedTextSource source;
    std::string content;
    if (!source.openFile(name) || source.checkLooksBinary() || !source.readAll(0, content, kMaxTecPlotSize))
        return failed;
    return parseText(content);
}

returnCode cCurvePlotParserTecPlotAscii::parseString(const std::string& text)
{
    mFileName = getSourceName();
    return parseText(text);
}

returnCode cCurvePlotParserTecPlotAscii::reloadFile(const std::string& name,
                                                    const std::vector<cCurvePlotDataSection*>& sections)
{
    setReloadSections(sections);
    return parseFile(name);
}

returnCode cCurvePlotParserTecPlotAscii::detectFileType(const std::string& name, cCurvePlotParserOpenFileOptions&)
{
    cTabulatedTextSource source;
    std::string head(std::min<uint64_t>(64u << 10, 1u << 16), '\0');
    if (!source.openFile(name) || source.checkLooksBinary())
        return failed;
    head.resize(source.read(0, head.data(), head.size()));
    cParser parser(head);
    return parser.parseHeader() ? ok : failed;
}

}  // namespace vx3
