#include "cInteractiveParser.h"

#include <iostream>

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

size_t cInteractiveParser::parseImpl(const std::string& text, size_t position)
{
    mTokens.clear();
    while (position < text.size()) {
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
    rest = vxString::trim(std::string_view(command).substr(remainder));
    command = vxString::trim(std::string_view(command).substr(0, end));
    return true;
}

bool cInteractiveParser::parseCmdAndLengthAndString(std::string& command, std::string& rest)
{
    mTokens.clear();
    const std::string& text = command;
    size_t position = 0;
    std::string token;
    // the command word and the length
    for (int i = 0; i < 2; ++i) {
        while (position < text.size() && isBlankOrTab(text[position]))
            ++position;
        if (position >= text.size() || isLineEnd(text[position]))
            break;
        position = readToken(text, position, token);
        mTokens.push_back(token);
    }
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
        while (position < text.size()) {
            while (position < text.size() && isBlankOrTab(text[position]))
                ++position;
            if (position >= text.size() || isLineEnd(text[position]))
                break;
            position = readToken(text, position, token);
            mTokens.push_back(token);
        }
    }
    size_t remainder = skipToRemainder(text, position);
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
