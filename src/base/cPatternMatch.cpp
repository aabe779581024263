#include "cPatternMatch.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <cstdio>
#include <memory>
#include <vector>

namespace vx3 {

bool cWildCardPatternMatch::checkMatches(const std::string& pattern, const std::string& text)
{
    size_t p = 0, t = 0;
    // Where the last "*" stood and where the text stood when it was taken: on a mismatch the
    // "*" swallows one more character. Earlier stars never need revisiting.
    size_t starPattern = std::string::npos, starText = 0;
    while (t < text.size()) {
        if (p < pattern.size() && (pattern[p] == '?' || (pattern[p] != '*' && pattern[p] == text[t]))) {
            ++p;
            ++t;
        } else if (p < pattern.size() && pattern[p] == '*') {
            starPattern = p++;
            starText = t;
        } else if (starPattern != std::string::npos) {
            p = starPattern + 1;
            t = ++starText;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

namespace {

struct cCodeDeleter {
    void operator()(pcre2_code* code) const { pcre2_code_free(code); }
};
struct cMatchDataDeleter {
    void operator()(pcre2_match_data* data) const { pcre2_match_data_free(data); }
};

struct cCompiledPattern {
    std::string pattern;
    std::unique_ptr<pcre2_code, cCodeDeleter> code;
    std::unique_ptr<pcre2_match_data, cMatchDataDeleter> matchData;
};

// Filters test one pattern against every curve name: a few compiled patterns per thread save
// compiling it thousands of times. The most recently used entry sits at the end.
class cPatternCache {
public:
    static constexpr size_t capacity = 8;

    cCompiledPattern* find(const std::string& pattern)
    {
        for (size_t i = 0; i < mEntries.size(); ++i) {
            if (mEntries[i]->pattern == pattern) {
                if (i + 1 != mEntries.size()) {
                    auto entry = std::move(mEntries[i]);
                    mEntries.erase(mEntries.begin() + static_cast<std::ptrdiff_t>(i));
                    mEntries.push_back(std::move(entry));
                }
                return mEntries.back().get();
            }
        }
        return nullptr;
    }

    cCompiledPattern* insert(std::unique_ptr<cCompiledPattern> entry)
    {
        if (mEntries.size() >= capacity)
            mEntries.erase(mEntries.begin());
        mEntries.push_back(std::move(entry));
        return mEntries.back().get();
    }

private:
    std::vector<std::unique_ptr<cCompiledPattern>> mEntries;
};

thread_local cPatternCache patternCache;

pcre2_code* compile(const std::string& pattern, int& errorCode, PCRE2_SIZE& errorOffset)
{
    return pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(), 0, &errorCode,
                         &errorOffset, nullptr);
}

// Null when the pattern does not compile; the reason is then printed.
cCompiledPattern* getCompiledPattern(const std::string& pattern)
{
    if (cCompiledPattern* cached = patternCache.find(pattern))
        return cached;
    int errorCode = 0;
    PCRE2_SIZE errorOffset = 0;
    pcre2_code* code = compile(pattern, errorCode, errorOffset);
    if (!code) {
        PCRE2_UCHAR buffer[256];
        pcre2_get_error_message(errorCode, buffer, sizeof(buffer));
        std::printf("PCRE2 compilation failed at offset %d: %s\n", static_cast<int>(errorOffset),
                    reinterpret_cast<const char*>(buffer));
        std::fflush(stdout);
        return nullptr;
    }
    auto entry = std::make_unique<cCompiledPattern>();
    entry->pattern = pattern;
    entry->code.reset(code);
    entry->matchData.reset(pcre2_match_data_create_from_pattern(code, nullptr));
    if (!entry->matchData)
        return nullptr;
    return patternCache.insert(std::move(entry));
}

}  // namespace

bool cRegularExpressionPatternMatch::checkMatches(const std::string& pattern, const std::string& text)
{
    cCompiledPattern* compiled = getCompiledPattern(pattern);
    if (!compiled)
        return false;
    int result = pcre2_match(compiled->code.get(), reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), 0, 0,
                             compiled->matchData.get(), nullptr);
    if (result < 0)
        return false;
    // One match only, and it has to be the whole text: "a" does not match "ab".
    const PCRE2_SIZE* ovector = pcre2_get_ovector_pointer(compiled->matchData.get());
    return ovector[0] == 0 && ovector[1] == text.size();
}

bool cRegularExpressionPatternMatch::checkIsRegularExpression(const std::string& pattern)
{
    // Asked of user input to decide how to treat it: a failure here is an answer, not an error.
    if (patternCache.find(pattern))
        return true;
    int errorCode = 0;
    PCRE2_SIZE errorOffset = 0;
    pcre2_code* code = compile(pattern, errorCode, errorOffset);
    if (!code)
        return false;
    pcre2_code_free(code);
    return true;
}

}  // namespace vx3
