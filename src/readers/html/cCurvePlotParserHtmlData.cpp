#include "readers/html/cCurvePlotParserHtmlData.h"

#include <cctype>
#include <cstring>

#include "base/cVxString.h"
#include "readers/tabulated/cCsvParser.h"
#include "readers/tabulated/cTabulatedTextSource.h"

namespace vx3 {

namespace {

// Pages larger than this are not tables that anyone reads into a viewer.
constexpr uint64_t kMaxHtmlSize = 1ull << 30;

std::string lowerName(std::string_view text)
{
    std::string name;
    for (char c : text)
        name.push_back(static_cast<char>(std::tolower(static_cast<unsigned char>(c))));
    return name;
}

void appendUtf8(std::string& text, unsigned long code)
{
    if (code < 0x80) {
        text.push_back(static_cast<char>(code));
    } else if (code < 0x800) {
        text.push_back(static_cast<char>(0xC0 | (code >> 6)));
        text.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else if (code < 0x10000) {
        text.push_back(static_cast<char>(0xE0 | (code >> 12)));
        text.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
        text.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else if (code < 0x110000) {
        text.push_back(static_cast<char>(0xF0 | (code >> 18)));
        text.push_back(static_cast<char>(0x80 | ((code >> 12) & 0x3F)));
        text.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
        text.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    }
}

}  // namespace

// ---------------------------------------------------------------- scanner

bool cHtmlParser::checkTagMustBeClosed(const std::string& tag)
{
    static const char* const voidTags[] = {"area", "base", "br",   "col",   "embed",  "hr",    "img",
                                           "input", "link", "meta", "param", "source", "track", "wbr"};
    for (const char* name : voidTags)
        if (tag == name)
            return false;
    return true;
}

std::string cHtmlParser::decodeEntities(std::string_view text)
{
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '&') {
            result.push_back(text[i]);
            continue;
        }
        const size_t end = text.find(';', i);
        if (end == std::string_view::npos || end - i > 10) {
            result.push_back('&');
            continue;
        }
        const std::string entity(text.substr(i + 1, end - i - 1));
        static const std::pair<const char*, const char*> named[] = {
            {"amp", "&"}, {"lt", "<"}, {"gt", ">"}, {"quot", "\""}, {"apos", "'"}, {"nbsp", " "},
            {"minus", "-"}, {"deg", "\xC2\xB0"}, {"micro", "\xC2\xB5"}, {"mu", "\xCE\xBC"}, {"Omega", "\xCE\xA9"}};
        bool done = false;
        for (const auto& [name, replacement] : named)
            if (entity == name) {
                result += replacement;
                done = true;
            }
        if (!done && entity.size() > 1 && entity[0] == '#') {
            const bool hex = entity[1] == 'x' || entity[1] == 'X';
            char* stop = nullptr;
            const unsigned long code = std::strtoul(entity.c_str() + (hex ? 2 : 1), &stop, hex ? 16 : 10);
            if (stop && *stop == 0) {
                appendUtf8(result, code == 0xA0 ? 0x20 : code);
                done = true;
            }
        }
        if (!done) {
            result.push_back('&');
            continue;
        }
        i = end;
    }
    return result;
}

bool cHtmlParser::parseTag(std::string_view text, size_t& position, std::string& name)
{
    if (text.compare(position, 4, "<!--") == 0) {
        const size_t end = text.find("-->", position + 4);
        position = end == std::string_view::npos ? text.size() : end + 3;
        name = "!--";
        return end != std::string_view::npos;
    }
    size_t i = position + 1;
    const size_t start = i;
    if (i < text.size() && (text[i] == '/' || text[i] == '!' || text[i] == '?'))
        ++i;
    while (i < text.size() && (std::isalnum(static_cast<unsigned char>(text[i])) || text[i] == '-' || text[i] == ':'))
        ++i;
    name = lowerName(text.substr(start, i - start));
    // Attributes: quoted values may hold ">".
    char quote = 0;
    for (; i < text.size(); ++i) {
        if (quote) {
            if (text[i] == quote)
                quote = 0;
        } else if (text[i] == '"' || text[i] == '\'') {
            quote = text[i];
        } else if (text[i] == '>') {
            position = i + 1;
            return true;
        }
    }
    position = text.size();
    return false;
}

void cHtmlParser::skipTagContents(std::string_view text, size_t& position, const std::string& name)
{
    // The contents of script and style are not markup.
    const std::string end = "</" + name;
    size_t i = position;
    while (i < text.size()) {
        const size_t found = text.find('<', i);
        if (found == std::string_view::npos)
            break;
        if (lowerName(text.substr(found, end.size())) == end) {
            std::string closing;
            size_t at = found;
            parseTag(text, at, closing);
            position = at;
            return;
        }
        i = found + 1;
    }
    position = text.size();
}

void cHtmlParser::endCell()
{
    if (!mInCell)
        return;
    std::string text = vxString::trim(vxString::trim_multiple_space(decodeEntities(mCell)));
    mCells.addCellText(text, mData);
    for (unsigned k = 1; k < mSpan; ++k)
        mData.addEmptyValue();
    mCell.clear();
    mInCell = false;
}

void cHtmlParser::parseHtmlTable(std::string_view text, size_t& position)
{
    unsigned depth = 0;  // tables inside cells are read as their text
    while (position < text.size()) {
        const size_t tag = text.find('<', position);
        const size_t stop = tag == std::string_view::npos ? text.size() : tag;
        if (mInCell)
            mCell.append(text.substr(position, stop - position));
        if (tag == std::string_view::npos) {
            position = text.size();
            break;
        }
        position = tag;
        std::string name;
        const size_t tagStart = position;
        if (!parseTag(text, position, name))
            break;
        if (name == "script" || name == "style") {
            skipTagContents(text, position, name);
        } else if (name == "table") {
            ++depth;
        } else if (name == "/table") {
            if (depth == 0) {
                endCell();
                return;
            }
            --depth;
        } else if (depth > 0) {
            if (mInCell)
                mCell.push_back(' ');
        } else if (name == "tr") {
            endCell();
            mData.startRow(csvParserTempData::row_data, mData.getNbOfRows() + 1);
            mInRow = true;
        } else if (name == "td" || name == "th") {
            endCell();
            if (!mInRow) {
                mData.startRow(csvParserTempData::row_data, mData.getNbOfRows() + 1);
                mInRow = true;
            }
            mInCell = true;
            mSpan = 1;
            const std::string_view inside = text.substr(tagStart, position - tagStart);
            const size_t span = lowerName(inside).find("colspan");
            if (span != std::string_view::npos) {
                size_t digit = inside.find_first_of("0123456789", span);
                if (digit != std::string_view::npos)
                    mSpan = std::max(1u, std::min(1000u, static_cast<unsigned>(std::atoi(std::string(inside.substr(digit, 4)).c_str()))));
            }
        } else if (name == "/td" || name == "/th") {
            endCell();
        } else if (name == "/tr") {
            endCell();
            mInRow = false;
        } else if (name == "br" || name == "p" || name == "/p" || name == "div") {
            if (mInCell)
                mCell.push_back(' ');
        }
    }
    endCell();
    mIncomplete = true;
}

bool cHtmlParser::parseHtmlString(std::string_view text)
{
    size_t position = 0;
    while (position < text.size()) {
        const size_t tag = text.find('<', position);
        if (tag == std::string_view::npos)
            return false;
        position = tag;
        std::string name;
        if (!parseTag(text, position, name))
            return false;
        if (name == "script" || name == "style") {
            skipTagContents(text, position, name);
        } else if (name == "table") {
            parseHtmlTable(text, position);
            return mData.getNbOfRows() > 0;
        }
    }
    return false;
}

// ---------------------------------------------------------------- reader

unsigned cCurvePlotParserHtmlData::getDbType() const { return fileDbSupport::html; }

returnCode cCurvePlotParserHtmlData::parseFileOrString(const std::string& text, bool isFile)
{
    mFileName = isFile ? text : getSourceName();
    std::fill(std::begin(mMessageCounts), std::end(mMessageCounts), 0u);
    mRemovedRows = 0;
    std::string content;
    if (isFile) {
        cTabulatedTextSource source;
        if (!source.openFile(text))
            return failed;
        if (source.checkLooksBinary() || !source.readAll(0, content, kMaxHtmlSize))
            return failed;
    }
    const std::string_view page = isFile ? std::string_view(content) : std::string_view(text);
    cCsvParser cells(options().logger());
    cells.setSeparator(csvSeparator::tab);  // a decimal comma is a decimal comma here
    cCsvParserTempData data;
    cHtmlParser parser(cells, data);
    if (!parser.parseHtmlString(page))
        return failed;
    std::vector<tabulatedParser::cTable> tables;
    returnCode code = copyTempCsvData(data, sectionNameFromFileName(mFileName), tables);
    if (code != ok && code != partly_parsed)
        return code;
    if (parser.checkIsIncomplete())
        code = partly_parsed;
    cFileDbSupport& file = initDbSupport(mFileName, getDbType());
    if (!commitTables(tables, file))
        return failed;
    return code;
}

returnCode cCurvePlotParserHtmlData::reloadFile(const std::string& name,
                                                const std::vector<cCurvePlotDataSection*>& sections)
{
    setReloadSections(sections);
    return parseFileOrString(name, true);
}

returnCode cCurvePlotParserHtmlData::detectFileType(const std::string& name, cCurvePlotParserOpenFileOptions&)
{
    cTabulatedTextSource source;
    std::string content;
    if (!source.openFile(name) || source.checkLooksBinary() || !source.readAll(0, content, kMaxHtmlSize))
        return failed;
    std::string lower = lowerName(content.substr(0, 1 << 20));
    return lower.find("<table") != std::string::npos ? ok : failed;
}

}  // namespace vx3
