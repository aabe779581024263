#include "cInteractiveParser.h"

#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <locale.h>

#include "base/cVxString.h"

namespace vx3 {

namespace {
bool isBlankOrTab(char c) { return c == ' ' || c == '\t'; }
bool isLineEnd(char c) { return c == '\n' || c == '\r'; }
}  // namespace

size_t cInteractiveParser::readToken(const std::string& text, size_t position, std::string& token)
{
    token.clear();
    bool inQuote = false;
    bool firstIsQuote = false;  // an unescaped quote opened the token
    bool lastIsQuote = false;   // the last character appended was an unescaped quote
    size_t start = position;
    while (position < text.size()) {
        char c = text[position];
        if (isLineEnd(c))
            break;
        if (c == '\\' && position + 1 < text.size() && text[position + 1] == '"') {
            token += '"';
            lastIsQuote = false;
            position += 2;
            continue;
        }
        if (c == '"') {
            inQuote = !inQuote;
            if (position == start)
                firstIsQuote = true;
            token += c;
            lastIsQuote = true;
            ++position;
            continue;
        }
        if (isBlankOrTab(c) && !inQuote)
            break;
        token += c;
        lastIsQuote = false;
        ++position;
    }
    if (firstIsQuote && lastIsQuote && token.size() >= 2)
        token = token.substr(1, token.size() - 2);
    return position;
}

size_t cInteractiveParser::appendTokens(const std::string& text, size_t position, size_t maxTokens)
{
    for (size_t count = 0; count < maxTokens && position < text.size(); ++count) {
        while (position < text.size() && isBlankOrTab(text[position]))
            ++position;
        if (position >= text.size() || isLineEnd(text[position]))
            break;
        std::string token;
        position = readToken(text, position, token);
        mTokens.push_back(std::move(token));
    }
    return position;
}

size_t cInteractiveParser::parseImpl(const std::string& text, size_t position)
{
    mTokens.clear();
    return appendTokens(text, position, SIZE_MAX);
}

size_t cInteractiveParser::skipToRemainder(const std::string& text, size_t position)
{
    while (position < text.size() && (isBlankOrTab(text[position]) || isLineEnd(text[position])))
        ++position;
    return position;
}

bool cInteractiveParser::parse(const std::string& text)
{
    parseImpl(text, 0);
    return true;
}

bool cInteractiveParser::parse(std::string& command, std::string& rest)
{
    size_t end = parseImpl(command, 0);
    size_t remainder = skipToRemainder(command, end);
    mConsumed = remainder;
    rest = vxString::trim(std::string_view(command).substr(remainder));
    command = vxString::trim(std::string_view(command).substr(0, end));
    return true;
}

bool cInteractiveParser::parseCmdAndLengthAndString(std::string& command, std::string& rest)
{
    mTokens.clear();
    const std::string& text = command;
    size_t position = appendTokens(text, 0, 2);  // the command word and the length
    if (mTokens.size() == 2) {
        uint64_t length = 0;
        std::string payload;
        if (cVxString(mTokens[1]).toUint64(length)) {
            if (position < text.size() && isBlankOrTab(text[position]))
                ++position;  // the one separator before the bytes
            if (position + length <= text.size()) {
                payload = text.substr(position, length);
                position += length;
            }
        }
        mTokens.push_back(payload);
        position = appendTokens(text, position, SIZE_MAX);
    }
    size_t remainder = skipToRemainder(text, position);
    mConsumed = remainder;
    rest = vxString::trim(std::string_view(text).substr(remainder));
    command = vxString::trim(std::string_view(text).substr(0, position));
    return true;
}

bool cInteractiveParser::getAsString(size_t index, std::string& value, bool lower) const
{
    if (index >= mTokens.size())
        return false;
    value = lower ? vxString::to_lower(mTokens[index]) : mTokens[index];
    return true;
}

void cInteractiveParser::p() const
{
    for (size_t i = 0; i < mTokens.size(); ++i)
        std::cout << " token[" << i << "] = " << mTokens[i] << '\n';
    std::cout.flush();
}

}  // namespace vx3

// ---------------------------------------------------------------------------------------------
// Typed readers
namespace vx3 {

namespace {
// The whole text as a number, in the C locale, without units or a decimal comma.
bool parsePlainDouble(const std::string& text, double& value)
{
    if (text.empty() || text.front() == ' ' || text.front() == '\t')
        return false;
    static locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    char* end = nullptr;
    double result = strtod_l(text.c_str(), &end, cLocale);
    if (end != text.c_str() + text.size())
        return false;
    value = result;
    return true;
}
}  // namespace

int cInteractiveParser::getAsString(size_t index, std::string& a, std::string& b, std::string& c,
                                    std::string& d) const
{
    std::string* outputs[] = {&a, &b, &c, &d};
    int count = 0;
    for (int i = 0; i < 4 && index + i < mTokens.size(); ++i, ++count)
        *outputs[i] = vxString::trim(mTokens[index + i]);
    return count;
}

bool cInteractiveParser::getAsBool(size_t index, bool& value) const
{
    if (index >= mTokens.size())
        return false;
    const std::string& token = mTokens[index];
    if (token == "1" || token == "true" || token == "yes") {
        value = true;
        return true;
    }
    if (token == "0" || token == "false" || token == "no") {
        value = false;
        return true;
    }
    return false;
}

bool cInteractiveParser::getAsInt(size_t index, int64_t& value) const
{
    return index < mTokens.size() && cVxString(vxString::trim(mTokens[index])).toInt64(value);
}

bool cInteractiveParser::getAsInt(size_t index, uint64_t& value) const
{
    return index < mTokens.size() && cVxString(vxString::trim(mTokens[index])).toUint64(value);
}

bool cInteractiveParser::getAsIntNoSharp(size_t index, int64_t& value) const
{
    if (index >= mTokens.size() || vxString::trim(mTokens[index]).rfind('#', 0) == 0)
        return false;
    return getAsInt(index, value);
}

bool cInteractiveParser::getAsHexInt(size_t index, uint64_t& value) const
{
    if (index >= mTokens.size())
        return false;
    std::string token = vxString::trim(mTokens[index]);
    if (token.size() < 3 || token[0] != '0' || (token[1] != 'x' && token[1] != 'X'))
        return false;
    return cVxString(token).toUint64FromHexString(value);
}

bool cInteractiveParser::getAsDouble(size_t index, double& value) const
{
    return index < mTokens.size() && parsePlainDouble(mTokens[index], value);
}

bool cInteractiveParser::getAsPercentage(size_t index, double& value) const
{
    if (index >= mTokens.size())
        return false;
    const std::string& token = mTokens[index];
    if (token.size() < 2 || token.back() != '%')
        return false;
    return parsePlainDouble(token.substr(0, token.size() - 1), value);
}

bool cInteractiveParser::getAsDoubleOrPercentage(size_t index, double& value) const
{
    return getAsDouble(index, value) || getAsPercentage(index, value);
}

bool cInteractiveParser::getAsColor(size_t index, unsigned& value) const
{
    if (index >= mTokens.size())
        return false;
    std::string token = vxString::trim(mTokens[index]);
    uint64_t number = 0;
    if (!token.empty() && token.front() != '#' && cVxString(token).toUint64(number) && number <= 0xffffffffULL) {
        value = static_cast<unsigned>(number);
        return true;
    }
    if (getAsHexInt(index, number) && number <= 0xffffffffULL) {
        value = static_cast<unsigned>(number);
        return true;
    }
    cVxString named = cVxString(vxString::to_lower(token)).convertNamedColorString();
    if (named != vxString::to_lower(token))
        token = named;
    return cVxString(token).toColorCode(value);
}

bool cInteractiveParser::getAsIntArray(size_t index, std::vector<int64_t>& values) const
{
    std::vector<std::string> members;
    if (!getAsStringArray(index, members))
        return false;
    std::vector<int64_t> result;
    for (const auto& member : members) {
        int64_t number = 0;
        if (!cVxString(vxString::trim(member)).toInt64(number)) {
            values.clear();
            return false;
        }
        result.push_back(number);
    }
    values = std::move(result);
    return true;
}

bool cInteractiveParser::getAsStringArray(size_t index, std::vector<std::string>& values) const
{
    if (index >= mTokens.size())
        return false;
    const std::string& token = mTokens[index];
    if (token.size() < 2 || token.front() != '[' || token.back() != ']')
        return false;
    std::vector<std::string> result;
    std::string inner = token.substr(1, token.size() - 2);
    if (!vxString::trim(inner).empty()) {
        std::vector<cVxString> parts;
        cVxString(inner).splitString(parts, ',');
        for (auto& part : parts)
            result.push_back(vxString::trim_quotes(vxString::trim(part)));
    }
    values = std::move(result);
    return true;
}

bool cInteractiveParser::getAsStringEqualsString(size_t index, std::string& key, std::string& value, bool lower) const
{
    if (index >= mTokens.size())
        return false;
    std::string token = lower ? vxString::to_lower(mTokens[index]) : mTokens[index];
    size_t equals = token.find('=');
    if (equals == std::string::npos)
        return false;
    key = token.substr(0, equals);
    value = vxString::trim_quotes(token.substr(equals + 1));
    return true;
}

}  // namespace vx3
