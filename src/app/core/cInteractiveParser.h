// Splits one command line into tokens. Quotes group blanks and stay in the token unless they
// open and close it; \" is a literal quote; a line end ends the command in any state.
#pragma once

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

    size_t size() const { return mTokens.size(); }
    const std::vector<std::string>& tokens() const { return mTokens; }
    bool getAsString(size_t index, std::string& value, bool lower = false) const;
    void p() const;  // debug print of the tokens

private:
    // Reads the tokens of one line from position; returns where the line ended.
    size_t parseImpl(const std::string& text, size_t position);
    static size_t readToken(const std::string& text, size_t position, std::string& token);
    static size_t skipToRemainder(const std::string& text, size_t position);

    std::vector<std::string> mTokens;
};

}  // namespace vx3
