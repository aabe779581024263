// What the text reader families share on top of the scanner: comments of the common kinds,
// Spice continuation lines, and small value groups in parentheses.
#pragma once

#include <vector>

#include "readers/scan/cParserBase.h"

namespace vx3 {

template <class Iterator>
class cAsciiParserBase : public cParserBase<Iterator> {
public:
    using It = Iterator;
    using base = cParserBase<Iterator>;

    // A comment from "#", ";" or "//" up to the end of the line (the newline stays); true if one was there.
    static bool skipComment(It& begin, const It& end);
    static bool skipCommentAndNewLine(It& begin, const It& end);
    // Blanks, newlines and comments in any order; true while characters remain.
    static bool skipCommentAndWhiteSpace(It& begin, const It& end);
    // Whole lines that start with "*" (Spice) or "#" (Python), blanks before them included.
    static bool skipSpiceCommentLines(It& begin, const It& end);
    static bool skipPythonCommentLines(It& begin, const It& end);
    // Blanks, and a newline when the next line continues this one with "+".
    static bool skipSpiceWhiteSpace(It& begin, const It& end);
    // The same, and "$" or ";" comments up to a line's end, and "*" comment lines in between.
    static bool skipSpiceWhiteSpaceAndComments(It& begin, const It& end);
    // The line with its continuation lines.
    static bool skipCurrentSpiceLine(It& begin, const It& end);

    // "(" and ")" after blanks.
    bool parseOpenParentheses(It& begin, const It& end);
    bool parseCloseParentheses(It& begin, const It& end);
    // A number with units after blanks.
    bool parseOneValue(It& begin, const It& end, double& value);
    // "a b", "a, b" or "(a, b)": a complex value or a pair.
    bool parseTwoValues(It& begin, const It& end, double& first, double& second);
    // One value, or several in parentheses: "(1 2 3)".
    bool parseOneOrSeveralValues(It& begin, const It& end, std::vector<double>& values);
    // "[n]" and "<n>".
    bool parseArraySize(It& begin, const It& end, uint64_t& size);
    bool parseStringSize(It& begin, const It& end, uint64_t& size);
    // Set when a group ended with the text, before its closing character.
    bool getFlagIncompleteOccurred() const { return mIncomplete; }
    void clearFlagIncompleteOccurred() { mIncomplete = false; }

private:
    bool parseEnclosedSize(It& begin, const It& end, char open, char close, uint64_t& size);
    bool mIncomplete = false;
};

template <class It>
bool cAsciiParserBase<It>::skipComment(It& begin, const It& end)
{
    if (begin == end)
        return false;
    const char c = *begin;
    if (c != '#' && c != ';' && c != '/')
        return false;
    if (c == '/') {
        It next = begin;
        ++next;
        if (next == end || *next != '/')
            return false;
    }
    while (begin != end && !base::isNewLine(*begin))
        ++begin;
    return true;
}

template <class It>
bool cAsciiParserBase<It>::skipCommentAndNewLine(It& begin, const It& end)
{
    if (!skipComment(begin, end))
        return false;
    base::skipNewLine(begin, end);
    return true;
}

template <class It>
bool cAsciiParserBase<It>::skipCommentAndWhiteSpace(It& begin, const It& end)
{
    while (base::skipNewLineAndWhiteSpace(begin, end) && skipComment(begin, end)) {
    }
    return begin != end;
}

namespace asciiParserBase {
template <class It>
bool skipLinesStartingWith(It& begin, const It& end, char mark)
{
    for (;;) {
        It cursor = begin;
        cParserBase<It>::skipNewLineAndWhiteSpace(cursor, end);
        if (cursor == end || *cursor != mark)
            break;
        begin = cursor;
        cParserBase<It>::skipCurrentLine(begin, end);
    }
    return begin != end;
}
}  // namespace asciiParserBase

template <class It>
bool cAsciiParserBase<It>::skipSpiceCommentLines(It& begin, const It& end)
{
    return asciiParserBase::skipLinesStartingWith(begin, end, '*');
}

template <class It>
bool cAsciiParserBase<It>::skipPythonCommentLines(It& begin, const It& end)
{
    return asciiParserBase::skipLinesStartingWith(begin, end, '#');
}

template <class It>
bool cAsciiParserBase<It>::skipSpiceWhiteSpace(It& begin, const It& end)
{
    for (;;) {
        base::skipWhiteSpace(begin, end);
        It cursor = begin;
        if (!base::skipNewLine(cursor, end))
            break;
        base::skipWhiteSpace(cursor, end);
        if (cursor == end || *cursor != '+')
            break;
        begin = ++cursor;
    }
    return begin != end;
}

template <class It>
bool cAsciiParserBase<It>::skipSpiceWhiteSpaceAndComments(It& begin, const It& end)
{
    for (;;) {
        base::skipWhiteSpace(begin, end);
        if (begin != end && (*begin == '$' || *begin == ';')) {
            while (begin != end && !base::isNewLine(*begin))
                ++begin;
        }
        It cursor = begin;
        if (!base::skipNewLine(cursor, end))
            break;
        skipSpiceCommentLines(cursor, end);
        base::skipWhiteSpace(cursor, end);
        if (cursor == end || *cursor != '+')
            break;
        begin = ++cursor;
    }
    return begin != end;
}

template <class It>
bool cAsciiParserBase<It>::skipCurrentSpiceLine(It& begin, const It& end)
{
    base::skipCurrentLine(begin, end);
    for (;;) {
        It cursor = begin;
        skipSpiceCommentLines(cursor, end);
        base::skipWhiteSpace(cursor, end);
        if (cursor == end || *cursor != '+')
            break;
        begin = cursor;
        base::skipCurrentLine(begin, end);
    }
    return begin != end;
}

template <class It>
bool cAsciiParserBase<It>::parseOpenParentheses(It& begin, const It& end)
{
    It cursor = begin;
    base::skipWhiteSpace(cursor, end);
    if (cursor == end || *cursor != '(')
        return false;
    begin = ++cursor;
    return true;
}

template <class It>
bool cAsciiParserBase<It>::parseCloseParentheses(It& begin, const It& end)
{
    It cursor = begin;
    base::skipWhiteSpace(cursor, end);
    if (cursor == end) {
        mIncomplete = true;
        return false;
    }
    if (*cursor != ')')
        return false;
    begin = ++cursor;
    return true;
}

template <class It>
bool cAsciiParserBase<It>::parseOneValue(It& begin, const It& end, double& value)
{
    It cursor = begin;
    base::skipWhiteSpace(cursor, end);
    if (!base::parseDoubleWithUnits(cursor, end, value) && !base::parseDoubleInfNan(cursor, end, value))
        return false;
    begin = cursor;
    return true;
}

template <class It>
bool cAsciiParserBase<It>::parseTwoValues(It& begin, const It& end, double& first, double& second)
{
    It cursor = begin;
    const bool enclosed = parseOpenParentheses(cursor, end);
    if (!parseOneValue(cursor, end, first))
        return false;
    base::skipWhiteSpace(cursor, end);
    if (cursor != end && *cursor == ',')
        ++cursor;
    if (!parseOneValue(cursor, end, second)) {
        mIncomplete = mIncomplete || cursor == end;
        return false;
    }
    if (enclosed && !parseCloseParentheses(cursor, end))
        return false;
    begin = cursor;
    return true;
}

template <class It>
bool cAsciiParserBase<It>::parseOneOrSeveralValues(It& begin, const It& end, std::vector<double>& values)
{
    values.clear();
    It cursor = begin;
    if (!parseOpenParentheses(cursor, end)) {
        double value;
        if (!parseOneValue(cursor, end, value))
            return false;
        values.push_back(value);
        begin = cursor;
        return true;
    }
    for (;;) {
        double value;
        if (parseCloseParentheses(cursor, end))
            break;
        base::skipWhiteSpace(cursor, end);
        if (cursor != end && *cursor == ',')
            ++cursor;
        if (!parseOneValue(cursor, end, value)) {
            values.clear();
            return false;
        }
        values.push_back(value);
    }
    begin = cursor;
    return true;
}

template <class It>
bool cAsciiParserBase<It>::parseEnclosedSize(It& begin, const It& end, char open, char close, uint64_t& size)
{
    It cursor = begin;
    base::skipWhiteSpace(cursor, end);
    if (cursor == end || *cursor != open)
        return false;
    ++cursor;
    base::skipWhiteSpace(cursor, end);
    if (!base::parseUnsignedInteger(cursor, end, size))
        return false;
    base::skipWhiteSpace(cursor, end);
    if (cursor == end || *cursor != close) {
        mIncomplete = mIncomplete || cursor == end;
        return false;
    }
    begin = ++cursor;
    return true;
}

template <class It>
bool cAsciiParserBase<It>::parseArraySize(It& begin, const It& end, uint64_t& size)
{
    return parseEnclosedSize(begin, end, '[', ']', size);
}

template <class It>
bool cAsciiParserBase<It>::parseStringSize(It& begin, const It& end, uint64_t& size)
{
    return parseEnclosedSize(begin, end, '<', '>', size);
}

}  // namespace vx3
