// Whole-text matchers: wild cards ("*", "?") and PCRE2 regular expressions.
#pragma once

#include <string>

namespace vx3 {

class cWildCardPatternMatch {
public:
    // Case-sensitive; the pattern must cover the whole text.
    static bool checkMatches(const std::string& pattern, const std::string& text);
};

class cRegularExpressionPatternMatch {
public:
    // A match must start at 0 and span the whole text.
    static bool checkMatches(const std::string& pattern, const std::string& text);
    static bool checkIsRegularExpression(const std::string& pattern);
};

}  // namespace vx3
