// Real numbers of cParserBase (included by cParserBase.h): digits go to std::from_chars, which
// rounds correctly however long the digits are; suffixes and special fields are handled here.
#pragma once

#include <cmath>

#include "base/cVxString.h"

namespace vx3 {

namespace parserBaseNumbers {
// Bytes asked of a buffered source for one token; longer tokens take the character path.
constexpr size_t kTokenWindow = 128;

inline bool isDigit(char c) { return c >= '0' && c <= '9'; }

// The decimal at text (digits, optional fraction, optional exponent; an "e" without digits is
// not part of it). Returns the characters used, 0 when there is no number.
inline size_t convertDecimal(const char* text, size_t size, double& value)
{
    if (size == 0 || !(isDigit(text[0]) || (text[0] == '.' && size > 1 && isDigit(text[1]))))
        return 0;
    const std::from_chars_result result = std::from_chars(text, text + size, value, std::chars_format::general);
    if (result.ec == std::errc::invalid_argument)
        return 0;
    const size_t used = static_cast<size_t>(result.ptr - text);
    if (result.ec == std::errc::result_out_of_range) {
        // Overflow and underflow: the infinities and zeros (or subnormals) that strtod gives.
        const std::string copy(text, used);
        value = vxString::strtod_replacement(copy.c_str(), nullptr);
    }
    return used;
}
}  // namespace parserBaseNumbers

template <class It>
bool cParserBase<It>::scanDecimalSlow(It& begin, const It& end, double& value, bool allowComma, bool* usedComma)
{
    using parserBaseNumbers::isDigit;
    std::string token;
    It cursor = begin;
    unsigned digits = 0;
    while (cursor != end && isDigit(*cursor)) {
        token.push_back(*cursor);
        ++cursor;
        ++digits;
    }
    bool comma = false;
    if (cursor != end && (*cursor == '.' || (allowComma && *cursor == ','))) {
        comma = *cursor == ',';
        token.push_back('.');
        ++cursor;
        while (cursor != end && isDigit(*cursor)) {
            token.push_back(*cursor);
            ++cursor;
            ++digits;
        }
    }
    if (!digits)
        return false;
    if (cursor != end && (*cursor == 'e' || *cursor == 'E')) {
        It exponent = cursor;
        std::string part = "e";
        ++exponent;
        if (exponent != end && (*exponent == '+' || *exponent == '-')) {
            part.push_back(*exponent);
            ++exponent;
        }
        if (exponent != end && isDigit(*exponent)) {
            while (exponent != end && isDigit(*exponent)) {
                part.push_back(*exponent);
                ++exponent;
            }
            token += part;
            cursor = exponent;
        }
    }
    if (parserBaseNumbers::convertDecimal(token.data(), token.size(), value) != token.size())
        return false;
    if (usedComma)
        *usedComma = comma;
    begin = cursor;
    return true;
}

template <class It>
inline bool cParserBase<It>::parseDoubleNoUnits(It& begin, const It& end, double& value, bool allowBlanksAfterSign,
                                                bool allowComma, bool* usedComma)
{
    // The common case inline: an unsigned or "-" number that lies whole in the source's window
    // and isn't followed by a decimal comma.
    if (begin == end)
        return false;
    size_t available = 0;
    bool complete = false;
    const char* window = begin.window(end, parserBaseNumbers::kTokenWindow, available, complete);
    if (window && available > 1) {
        const size_t sign = window[0] == '-' ? 1 : 0;
        double result = 0;
        const size_t used = parserBaseNumbers::convertDecimal(window + sign, available - sign, result);
        if (used && !(used + sign == available && !complete) &&
            !(allowComma && used + sign < available && window[used + sign] == ',')) {
            begin.skip(used + sign);
            value = sign ? -result : result;
            if (usedComma)
                *usedComma = false;
            return true;
        }
    }
    return parseDoubleNoUnitsGeneral(begin, end, value, allowBlanksAfterSign, allowComma, usedComma);
}

template <class It>
bool cParserBase<It>::parseDoubleNoUnitsGeneral(It& begin, const It& end, double& value, bool allowBlanksAfterSign,
                                                bool allowComma, bool* usedComma)
{
    if (begin == end)
        return false;
    const It start = begin;
    bool negative = false;
    if (*begin == '-' || *begin == '+') {
        negative = *begin == '-';
        ++begin;
        if (allowBlanksAfterSign)
            while (begin != end && checkIsWhiteSpace(*begin))
                ++begin;
        if (begin == end) {
            begin = start;
            return false;
        }
    }
    double result = 0;
    size_t available = 0;
    bool complete = false;
    const char* window = begin.window(end, parserBaseNumbers::kTokenWindow, available, complete);
    size_t used = window ? parserBaseNumbers::convertDecimal(window, available, result) : 0;
    // The block answer stands unless the token may go on past the window, or a decimal comma
    // follows the integer digits.
    bool slow = !window || (used == available && !complete);
    if (!slow && allowComma && used < available && window[used] == ',') {
        slow = true;
        for (size_t i = 0; i < used && slow; ++i)
            slow = parserBaseNumbers::isDigit(window[i]);
    }
    if (slow) {
        if (!scanDecimalSlow(begin, end, result, allowComma, usedComma)) {
            begin = start;
            return false;
        }
    } else {
        if (used == 0) {
            begin = start;
            return false;
        }
        begin.skip(used);
        if (usedComma)
            *usedComma = false;
    }
    value = negative ? -result : result;
    return true;
}

namespace parserBaseNumbers {
// The decimal text between two iterators, scaled by 10^power, correctly rounded: the power goes
// into the exponent of the text instead of a multiplication after rounding.
template <class It>
double convertScaled(It from, const It& to, int power)
{
    std::string mantissa;
    bool negative = false;
    long exponent = 0;
    for (; from != to; ++from) {
        const char c = *from;
        if (c == '-')
            negative = true;
        else if (c == ',' || c == '.')
            mantissa.push_back('.');
        else if (c == 'e' || c == 'E')
            break;
        else if (isDigit(c))
            mantissa.push_back(c);
    }
    if (from != to) {
        std::string digits;
        for (++from; from != to; ++from)
            digits.push_back(*from);
        // Any exponent beyond this gives zero or infinity already; the bound keeps the sum with
        // the suffix's power from overflowing.
        exponent = std::clamp(std::strtol(digits.c_str(), nullptr, 10), -100000L, 100000L);
    }
    mantissa += "e" + std::to_string(exponent + power);
    double value = 0;
    convertDecimal(mantissa.data(), mantissa.size(), value);
    return negative ? -value : value;
}
}  // namespace parserBaseNumbers

template <class It>
inline bool cParserBase<It>::parseDoubleWithUnits(It& begin, const It& end, double& value, bool allowBlanks,
                                                  bool allowComma, bool* usedComma, bool allowAtto)
{
    const It start = begin;
    if (!parseDoubleNoUnits(begin, end, value, allowBlanks, allowComma, usedComma))
        return false;
    if (begin == end)
        return true;
    // Bulk data: a separator follows. Only a letter or "%" can start a suffix.
    const char next = *begin;
    if (!isAlpha(next) && next != '%' && !(allowBlanks && checkIsWhiteSpace(next)))
        return true;
    return applySuffix(start, begin, end, value, allowBlanks, allowAtto);
}

template <class It>
bool cParserBase<It>::applySuffix(const It& start, It& begin, const It& end, double& value, bool allowBlanks,
                                  bool allowAtto)
{
    const It afterNumber = begin;
    if (allowBlanks)
        while (begin != end && checkIsWhiteSpace(*begin))
            ++begin;
    if (begin == end) {
        begin = afterNumber;
        return true;
    }
    int power = 0;
    const char suffix = *begin;
    switch (suffix) {
    case '%': power = -2; break;
    case 'A': case 'a': power = allowAtto ? -18 : 0; break;
    case 'F': case 'f': power = -15; break;
    case 'P': case 'p': power = -12; break;
    case 'N': case 'n': power = -9; break;
    case 'U': case 'u': power = -6; break;
    case 'K': case 'k': power = 3; break;
    case 'G': case 'g': power = 9; break;
    case 'T': case 't': power = 12; break;
    case 'm': power = -3; break;
    case 'M': power = 6; break;
    default: break;
    }
    if (power == 0) {
        begin = afterNumber;  // no suffix: blanks before a following token stay
        return true;
    }
    ++begin;
    if (suffix == 'm' || suffix == 'M') {
        // "meg" in any case is mega; "1.5me" is milli with the "e" left to the caller, and "M"
        // is mega with or without the "eg".
        It behindM = begin;
        if (begin != end && (*begin == 'e' || *begin == 'E')) {
            ++begin;
            if (begin != end && (*begin == 'g' || *begin == 'G')) {
                ++begin;
                power = 6;
            } else {
                begin = behindM;
            }
        }
    }
    // The suffix goes into the exponent of the digits: "1.5m" is the double nearest to 0.0015.
    value = parserBaseNumbers::convertScaled(start, afterNumber, power);
    // A degree sign right behind the suffix belongs to the number.
    if (begin != end && static_cast<unsigned char>(*begin) == 0xC2) {
        It behind = begin;
        std::string character;
        if (convertUTF8Character(behind, end, character) && character == "deg")
            begin = behind;
    }
    return true;
}

template <class It>
bool cParserBase<It>::parseDoubleInfNan(It& begin, const It& end, double& value)
{
    if (parseDoubleWithUnits(begin, end, value))
        return true;
    It cursor = begin;
    bool negative = false;
    if (cursor != end && (*cursor == '-' || *cursor == '+')) {
        negative = *cursor == '-';
        ++cursor;
    }
    std::string word;
    It wordEnd = cursor;
    while (wordEnd != end && isAlpha(*wordEnd) && word.size() < 9) {
        word.push_back(toLower(*wordEnd));
        ++wordEnd;
    }
    // The word must end there: "information" is no number.
    if (wordEnd != end && isAlpha(*wordEnd))
        return false;
    if (word == "inf" || word == "infinity")
        value = negative ? -INFINITY : INFINITY;
    else if (word == "nan")
        value = NAN;
    else
        return false;
    begin = wordEnd;
    return true;
}

template <class It>
bool cParserBase<It>::parseDoubleOtherInfNan(It& begin, const It& end, double& value, bool allowComma)
{
    It cursor = begin;
    bool dash = false;
    while (cursor != end && (*cursor == '-' || *cursor == '.' || (allowComma && *cursor == ','))) {
        dash = dash || *cursor == '-';
        ++cursor;
    }
    // The field must end here; "-5" is a number for the other parsers.
    if (!dash || (cursor != end && (isNum(*cursor) || isAlpha(*cursor))))
        return false;
    value = NAN;
    begin = cursor;
    return true;
}

template <class It>
bool cParserBase<It>::parseUnit(It& begin, const It& end, double& value)
{
    if (begin == end)
        return false;
    double multiply = 1, divide = 1;
    It cursor = begin;
    const char c = *cursor;
    ++cursor;
    switch (c) {
    case 'G': multiply = 1e9; break;
    case 'K': case 'k': multiply = 1e3; break;
    case 'T': multiply = 1e12; break;
    case 'f': divide = 1e15; break;
    case 'm': divide = 1e3; break;
    case 'n': divide = 1e9; break;
    case 'p': divide = 1e12; break;
    case 'u': divide = 1e6; break;
    case 'M': {
        multiply = 1e6;
        It behind = cursor;
        if (cursor != end && (*cursor == 'E' || *cursor == 'e')) {
            ++cursor;
            if (cursor != end && (*cursor == 'G' || *cursor == 'g'))
                ++cursor;
            else
                cursor = behind;
        }
        break;
    }
    default:
        return false;
    }
    value = value * multiply / divide;
    begin = cursor;
    return true;
}

}  // namespace vx3
