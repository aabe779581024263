// Splits one command line into tokens. Quotes group blanks and stay in the token unless they
// open and close it; \" is a literal quote; a line end ends the command in any state.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vx3 {

class cInteractiveParser {
public:
    // Tokenises the first line of a copy of text.
    bool parse(const std::string& text);
    // Tokenises the first line of command; command becomes that line, rest what follows, both trimmed.
    bool parse(std::string& command, std::string& rest);
    // As parse, but token 2 is a byte count L and token 3 exactly L bytes (blanks and line ends kept).
    bool parseCmdAndLengthAndString(std::string& command, std::string& rest);

    // Where the remainder began in the text of the last two-argument parse.
    size_t consumed() const { return mConsumed; }
    size_t size() const { return mTokens.size(); }
    const std::vector<std::string>& tokens() const { return mTokens; }
    // Typed readers: false when the index is past the last token or the token does not convert;
    // the output is then untouched.
    bool getAsString(size_t index, std::string& value, bool lower = false) const;
    // Up to four trimmed tokens from index on; returns how many were there.
    int getAsString(size_t index, std::string& a, std::string& b, std::string& c, std::string& d) const;
    bool getAsBool(size_t index, bool& value) const;           // 1/true/yes, 0/false/no
    bool getAsInt(size_t index, int64_t& value) const;         // decimal, or "#" hexadecimal
    bool getAsInt(size_t index, uint64_t& value) const;
    bool getAsIntNoSharp(size_t index, int64_t& value) const;  // refuses "#..."
    bool getAsHexInt(size_t index, uint64_t& value) const;     // "0x..."
    bool getAsDouble(size_t index, double& value) const;       // the whole token, no unit
    bool getAsPercentage(size_t index, double& value) const;   // "50%" gives 50
    bool getAsDoubleOrPercentage(size_t index, double& value) const;
    bool getAsColor(size_t index, unsigned& value) const;      // integer, 0x, a colour name, #rrggbb
    bool getAsIntArray(size_t index, std::vector<int64_t>& values) const;      // "[1,2,3]"
    bool getAsStringArray(size_t index, std::vector<std::string>& values) const;
    bool getAsStringEqualsString(size_t index, std::string& key, std::string& value, bool lower = false) const;
    void p() const;  // debug print of the tokens

private:
    // Reads the tokens of one line from position; returns where the line ended.
    size_t parseImpl(const std::string& text, size_t position);
    // Reads at most maxTokens more tokens of the line from position; returns where it stopped.
    size_t appendTokens(const std::string& text, size_t position, size_t maxTokens);
    static size_t readToken(const std::string& text, size_t position, std::string& token);
    static size_t skipToRemainder(const std::string& text, size_t position);

    std::vector<std::string> mTokens;
    size_t mConsumed = 0;
};

}  // namespace vx3
