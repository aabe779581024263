// Character tests, skipping, text and integers of cParserBase (included by cParserBase.h).
#pragma once

namespace vx3 {

template <class It>
bool cParserBase<It>::checkMatchesCase(It& begin, const It& end, std::string_view text)
{
    It cursor = begin;
    for (char c : text) {
        if (cursor == end || *cursor != c)
            return false;
        ++cursor;
    }
    begin = cursor;
    return true;
}

template <class It>
bool cParserBase<It>::checkStringHoldsUi32Bin(std::string_view text, unsigned& value)
{
    if (text.empty() || text.size() > 32)
        return false;
    unsigned result = 0;
    for (char c : text) {
        if (c != '0' && c != '1')
            return false;
        result = (result << 1) | static_cast<unsigned>(c - '0');
    }
    value = result;
    return true;
}

template <class It>
bool cParserBase<It>::skipWhiteSpace(It& begin, const It& end)
{
    while (begin != end && checkIsWhiteSpace(*begin))
        ++begin;
    return begin != end;
}

template <class It>
bool cParserBase<It>::skipNewLine(It& begin, const It& end)
{
    if (begin == end)
        return false;
    if (*begin == '\n') {
        ++begin;
        return true;
    }
    if (*begin == '\r') {
        ++begin;
        if (begin != end && *begin == '\n')
            ++begin;
        return true;
    }
    return false;
}

template <class It>
bool cParserBase<It>::skipNewLineAndWhiteSpace(It& begin, const It& end)
{
    while (begin != end && (checkIsWhiteSpace(*begin) || isNewLine(*begin)))
        ++begin;
    return begin != end;
}

template <class It>
bool cParserBase<It>::skipContinuedWhiteSpace(It& begin, const It& end)
{
    while (begin != end) {
        if (checkIsWhiteSpace(*begin)) {
            ++begin;
            continue;
        }
        if (*begin != '\\')
            break;
        It next = begin;
        ++next;
        if (!skipNewLine(next, end))
            break;
        begin = next;
    }
    return begin != end;
}

template <class It>
bool cParserBase<It>::skipAndCountWhiteSpace(It& begin, const It& end, uint64_t& count)
{
    count = 0;
    while (begin != end && checkIsWhiteSpace(*begin)) {
        ++begin;
        ++count;
    }
    return begin != end;
}

template <class It>
bool cParserBase<It>::skipCurrentLine(It& begin, const It& end)
{
    while (begin != end && !isNewLine(*begin))
        ++begin;
    skipNewLine(begin, end);
    begin.advanceBuffer();
    return begin != end;
}

template <class It>
bool cParserBase<It>::skipCurrentContinuedLine(It& begin, const It& end)
{
    skipCurrentLine(begin, end);
    while (begin != end && *begin == '+')
        skipCurrentLine(begin, end);
    return begin != end;
}

template <class It>
bool cParserBase<It>::skipUntil(It& begin, const It& end, char c)
{
    while (begin != end && *begin != c)
        ++begin;
    return begin != end;
}

template <class It>
bool cParserBase<It>::skipPotentialCsvSeparator(It& begin, const It& end)
{
    It cursor = begin;
    while (cursor != end && *cursor == ' ')
        ++cursor;
    bool found = false;
    if (cursor != end && (*cursor == ',' || *cursor == ';' || *cursor == '\t')) {
        found = true;
        ++cursor;
    }
    while (cursor != end && checkIsWhiteSpace(*cursor))
        ++cursor;
    begin = cursor;
    return found;
}

template <class It>
bool cParserBase<It>::skipNewLineWhiteSpaceAndNonAscii(It& begin, const It& end)
{
    while (begin != end && (checkIsWhiteSpace(*begin) || isNewLine(*begin) || !isAsciiCharacter(*begin)))
        ++begin;
    return begin != end;
}

template <class It>
bool cParserBase<It>::skipBinaryData(It& begin, const It& end, uint64_t count)
{
    if (end.position() < begin.position() || end.position() - begin.position() < count)
        return false;
    It cursor = begin;
    for (uint64_t i = 0; i < count; ++i)
        ++cursor;
    begin = cursor;
    return true;
}

template <class It>
bool cParserBase<It>::parseAnyString(It& begin, const It& end, std::string& text)
{
    text.clear();
    while (begin != end && !checkIsWhiteSpace(*begin) && !isNewLine(*begin)) {
        text.push_back(*begin);
        ++begin;
    }
    return !text.empty();
}

template <class It>
bool cParserBase<It>::parseStringWithQuotes(It& begin, const It& end, std::string& text)
{
    if (begin == end || *begin != '"')
        return parseAnyString(begin, end, text);
    It cursor = begin;
    ++cursor;
    text.clear();
    while (cursor != end && *cursor != '"' && !isNewLine(*cursor)) {
        char c = *cursor;
        ++cursor;
        if (c == '\\' && cursor != end && *cursor == '"') {
            c = '"';
            ++cursor;
        }
        text.push_back(c);
    }
    if (cursor == end || *cursor != '"') {
        text.clear();
        return false;
    }
    ++cursor;
    begin = cursor;
    return true;
}

template <class It>
bool cParserBase<It>::parseLine(It& begin, const It& end, std::string& line)
{
    return parseLineMaxSize(begin, end, line, UINT64_MAX);
}

template <class It>
bool cParserBase<It>::parseLineMaxSize(It& begin, const It& end, std::string& line, uint64_t maximum)
{
    line.clear();
    if (begin == end)
        return false;
    while (begin != end && !isNewLine(*begin)) {
        if (line.size() < maximum)
            line.push_back(*begin);
        ++begin;
    }
    skipNewLine(begin, end);
    return true;
}

template <class It>
bool cParserBase<It>::convertUTF8Character(It& begin, const It& end, std::string& text)
{
    if (begin == end)
        return false;
    const unsigned char lead = static_cast<unsigned char>(*begin);
    const unsigned length = lead < 0x80 ? 1 : (lead >> 5) == 6 ? 2 : (lead >> 4) == 14 ? 3 : (lead >> 3) == 30 ? 4 : 0;
    It cursor = begin;
    std::string bytes;
    for (unsigned i = 0; i < std::max(length, 1u); ++i) {
        if (cursor == end || (i > 0 && (static_cast<unsigned char>(*cursor) >> 6) != 2)) {
            ++begin;  // a broken sequence costs its first byte
            text = "?";
            return true;
        }
        bytes.push_back(*cursor);
        ++cursor;
    }
    begin = cursor;
    if (length == 0)
        text = "?";
    else if (bytes == "\xE2\x80\x98" || bytes == "\xE2\x80\x99" || bytes == "\xC2\xB4")
        text = "'";
    else if (bytes == "\xE2\x80\x9C" || bytes == "\xE2\x80\x9D")
        text = "\"";
    else if (bytes == "\xC2\xB0")
        text = "deg";
    else
        text = bytes;
    return true;
}

template <class It>
bool cParserBase<It>::convertExtendedAsciiCharacter(It& begin, const It& end, std::string& text)
{
    if (begin == end)
        return false;
    const unsigned char c = static_cast<unsigned char>(*begin);
    ++begin;
    if (c < 0x80) {
        text.assign(1, static_cast<char>(c));
    } else {
        text.clear();
        text.push_back(static_cast<char>(0xC0 | (c >> 6)));
        text.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    }
    return true;
}

// ---- Integers

template <class It>
template <typename T>
bool cParserBase<It>::parseUInt(It& begin, const It& end, T& value)
{
    It cursor = begin;
    T result = 0;
    bool any = false;
    while (cursor != end && isNum(*cursor)) {
        if (__builtin_mul_overflow(result, T(10), &result) ||
            __builtin_add_overflow(result, T(*cursor - '0'), &result))
            return false;
        any = true;
        ++cursor;
    }
    if (!any)
        return false;
    value = result;
    begin = cursor;
    return true;
}

template <class It>
bool cParserBase<It>::parseUnsignedInteger(It& begin, const It& end, uint64_t& value)
{
    return parseUInt(begin, end, value);
}

template <class It>
bool cParserBase<It>::parseInteger(It& begin, const It& end, int64_t& value)
{
    It cursor = begin;
    bool negative = false;
    if (cursor != end && (*cursor == '-' || *cursor == '+')) {
        negative = *cursor == '-';
        ++cursor;
    }
    uint64_t magnitude = 0;
    if (!parseUInt(cursor, end, magnitude))
        return false;
    if (magnitude > static_cast<uint64_t>(INT64_MAX) + (negative ? 1u : 0u))
        return false;
    value = negative ? static_cast<int64_t>(0 - magnitude) : static_cast<int64_t>(magnitude);
    begin = cursor;
    return true;
}

template <class It>
bool cParserBase<It>::parseInt(It& begin, const It& end, int& value)
{
    It cursor = begin;
    int64_t wide = 0;
    if (!parseInteger(cursor, end, wide) || wide < INT32_MIN || wide > INT32_MAX)
        return false;
    value = static_cast<int>(wide);
    begin = cursor;
    return true;
}

template <class It>
bool cParserBase<It>::parseFixedSizeUInt(It& begin, const It& end, unsigned digits, uint64_t& value)
{
    It cursor = begin;
    uint64_t result = 0;
    for (unsigned i = 0; i < digits; ++i) {
        if (cursor == end || !isNum(*cursor))
            return false;
        result = result * 10 + static_cast<uint64_t>(*cursor - '0');
        ++cursor;
    }
    value = result;
    begin = cursor;
    return true;
}

template <class It>
bool cParserBase<It>::hexDigit(char c, unsigned& digit)
{
    if (c >= '0' && c <= '9')
        digit = static_cast<unsigned>(c - '0');
    else if (c >= 'a' && c <= 'f')
        digit = static_cast<unsigned>(c - 'a' + 10);
    else if (c >= 'A' && c <= 'F')
        digit = static_cast<unsigned>(c - 'A' + 10);
    else
        return false;
    return true;
}

template <class It>
template <typename T>
bool cParserBase<It>::parseHexUnsignedInteger(It& begin, const It& end, T& value)
{
    It cursor = begin;
    T result = 0;
    unsigned digit = 0, count = 0;
    while (cursor != end && hexDigit(*cursor, digit)) {
        if (++count > sizeof(T) * 2)
            return false;
        result = static_cast<T>((result << 4) | digit);
        ++cursor;
    }
    if (!count)
        return false;
    value = result;
    begin = cursor;
    return true;
}

template <class It>
bool cParserBase<It>::parseUnsignedHexadecimalInteger(It& begin, const It& end, uint64_t& value)
{
    return parseHexUnsignedInteger(begin, end, value);
}

template <class It>
bool cParserBase<It>::parseUnsignedHexadecimalIntegerBigEndian(It& begin, const It& end, uint64_t& value)
{
    It cursor = begin;
    uint64_t result = 0;
    unsigned bytes = 0, high = 0, low = 0;
    while (cursor != end && hexDigit(*cursor, high)) {
        It next = cursor;
        ++next;
        if (next == end || !hexDigit(*next, low) || bytes == 8)
            return false;
        result |= static_cast<uint64_t>(high << 4 | low) << (8 * bytes++);
        cursor = ++next;
    }
    if (!bytes)
        return false;
    value = result;
    begin = cursor;
    return true;
}

}  // namespace vx3
