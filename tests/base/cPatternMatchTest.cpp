#include <fnmatch.h>

#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "base/cPatternMatch.h"

using vx3::cRegularExpressionPatternMatch;
using vx3::cWildCardPatternMatch;

TEST(cWildCardPatternMatch, WholeTextCaseSensitive)
{
    EXPECT_TRUE(cWildCardPatternMatch::checkMatches("*.csv", "a.csv"));
    EXPECT_FALSE(cWildCardPatternMatch::checkMatches("*.csv", "a.csv.bak"));
    EXPECT_FALSE(cWildCardPatternMatch::checkMatches("*.CSV", "a.csv"));
    EXPECT_TRUE(cWildCardPatternMatch::checkMatches("a?c", "abc"));
    EXPECT_FALSE(cWildCardPatternMatch::checkMatches("a?c", "ac"));
    EXPECT_TRUE(cWildCardPatternMatch::checkMatches("*", ""));
    EXPECT_TRUE(cWildCardPatternMatch::checkMatches("", ""));
    EXPECT_FALSE(cWildCardPatternMatch::checkMatches("", "a"));
    EXPECT_FALSE(cWildCardPatternMatch::checkMatches("?*", ""));
    EXPECT_TRUE(cWildCardPatternMatch::checkMatches("v(*)", "v(out)"));
    // Needs the star to give back characters it took too early.
    EXPECT_TRUE(cWildCardPatternMatch::checkMatches("*ab", "aab"));
    EXPECT_TRUE(cWildCardPatternMatch::checkMatches("a*b*c", "aXbYbZc"));
    EXPECT_FALSE(cWildCardPatternMatch::checkMatches("a*b*c", "aXbYcZ"));
}

TEST(cWildCardPatternMatch, AgreesWithTheCLibrary)
{
    // Without flags and without "[" or "\" fnmatch has the same rules: a reference to test against.
    std::mt19937 random(12345);
    auto make = [&](const char* alphabet, size_t letters, size_t maxLength) {
        std::string text(random() % (maxLength + 1), ' ');
        for (char& c : text)
            c = alphabet[random() % letters];
        return text;
    };
    for (int i = 0; i < 20000; ++i) {
        std::string pattern = make("ab*?.", 5, 7);
        std::string text = make("ab.", 3, 9);
        bool expected = fnmatch(pattern.c_str(), text.c_str(), 0) == 0;
        ASSERT_EQ(cWildCardPatternMatch::checkMatches(pattern, text), expected)
            << "pattern \"" << pattern << "\" text \"" << text << "\"";
    }
}

TEST(cRegularExpressionPatternMatch, MatchMustSpanTheWholeText)
{
    EXPECT_FALSE(cRegularExpressionPatternMatch::checkMatches("a", "ab"));
    EXPECT_FALSE(cRegularExpressionPatternMatch::checkMatches("b", "ab")) << "a match must start at 0";
    EXPECT_TRUE(cRegularExpressionPatternMatch::checkMatches("a.*", "ab"));
    EXPECT_TRUE(cRegularExpressionPatternMatch::checkMatches("v\\((net|out)[0-9]+\\)", "v(net12)"));
    EXPECT_FALSE(cRegularExpressionPatternMatch::checkMatches("v\\((net|out)[0-9]+\\)", "v(net12)x"));
    EXPECT_FALSE(cRegularExpressionPatternMatch::checkMatches("A.*", "ab")) << "case-sensitive";
    EXPECT_TRUE(cRegularExpressionPatternMatch::checkMatches("", ""));
    EXPECT_TRUE(cRegularExpressionPatternMatch::checkIsRegularExpression("a(b)"));
}

TEST(cRegularExpressionPatternMatch, BadPatternIsReportedOnStandardOutput)
{
    testing::internal::CaptureStdout();
    bool matched = cRegularExpressionPatternMatch::checkMatches("a(b", "ab");
    std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_FALSE(matched);
    EXPECT_EQ(printed.rfind("PCRE2 compilation failed at offset 3: ", 0), 0u) << printed;
    EXPECT_EQ(printed.back(), '\n');
    EXPECT_GT(printed.size(), std::string("PCRE2 compilation failed at offset 3: \n").size()) << "reason missing";

    // Asking whether text is a pattern is not an error: nothing printed.
    testing::internal::CaptureStdout();
    EXPECT_FALSE(cRegularExpressionPatternMatch::checkIsRegularExpression("a(b"));
    EXPECT_FALSE(cRegularExpressionPatternMatch::checkIsRegularExpression("*x"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(cRegularExpressionPatternMatch, ManyPatternsAndThreadsKeepTheirAnswers)
{
    // More patterns than the per-thread cache holds, each asked repeatedly, from two threads:
    // an answer must never come from another pattern's compiled code.
    auto work = [](int offset, bool& allRight) {
        allRight = true;
        for (int round = 0; round < 50; ++round) {
            for (int k = 0; k < 20; ++k) {
                int n = (k + offset) % 20;
                std::string pattern = "x" + std::to_string(n) + "_[a-z]+";
                allRight &= cRegularExpressionPatternMatch::checkMatches(pattern, "x" + std::to_string(n) + "_abc");
                allRight &= !cRegularExpressionPatternMatch::checkMatches(pattern, "x" + std::to_string(n + 1) + "_abc");
            }
        }
    };
    bool first = false, second = false;
    std::thread other(work, 7, std::ref(second));
    work(0, first);
    other.join();
    EXPECT_TRUE(first);
    EXPECT_TRUE(second);
}
