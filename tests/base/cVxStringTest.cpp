#include <clocale>

#include <gtest/gtest.h>

#include "base/cVxString.h"
#include "base/namedColors.h"
#include "testSupport.h"

using vx3::cVxString;

namespace {
// Restores the C locale however a test ends.
struct cLocaleGuard {
    explicit cLocaleGuard(const char* name) { active = std::setlocale(LC_ALL, name) != nullptr; }
    ~cLocaleGuard() { std::setlocale(LC_ALL, "C"); }
    bool active = false;
};

void expectLocaleIndependentConversions(const std::string& locale)
{
    double value = 0;
    ASSERT_TRUE(cVxString("1.5").toDouble(value)) << locale;
    EXPECT_EQ(value, 1.5);
    value = 0;
    ASSERT_TRUE(cVxString("1,5").toDouble(value)) << locale;
    EXPECT_EQ(value, 1.5);
    ASSERT_TRUE(cVxString("-2.25e-3").toDouble(value));
    EXPECT_EQ(value, -2.25e-3);
    ASSERT_TRUE(cVxString("-2,25e-3").toDouble(value));
    EXPECT_EQ(value, -2.25e-3);
    value = 7;
    EXPECT_FALSE(cVxString("1,5,6").toDouble(value));
    EXPECT_FALSE(cVxString("1.5.6").toDouble(value));
    EXPECT_FALSE(cVxString("1,").toDouble(value));
    EXPECT_EQ(value, 7) << "a failed conversion leaves the output alone";
    EXPECT_EQ(cVxString::createFromNumber(1.5), "1.5");
    EXPECT_EQ(cVxString::createFromNumber(1234567.0), "1.23457e+06");
    EXPECT_EQ(cVxString::toString(1000000), "1000000") << "no thousands separators";
    ASSERT_TRUE(cVxString("3,25").toDoubleCommaSep(value));
    EXPECT_EQ(value, 3.25);
    double re = 0, im = 0;
    ASSERT_TRUE(cVxString("1.5,-2.5").toDoubleComplexCommaSep(re, im));
    EXPECT_EQ(re, 1.5);
    EXPECT_EQ(im, -2.5);
}
}  // namespace

TEST(cVxString, NumberConversionsIgnoreTheLocale)
{
    // A German locale reads "1,5" natively and stops at "1.5"; the conversions must not care.
    {
        cLocaleGuard guard("C");
        expectLocaleIndependentConversions("C");
    }
    zwtest::cGermanLocale german;
    if (!german.active())
        GTEST_SKIP() << "no German locale on this machine and none could be built";
    // Proof that the locale is really in force: the C library itself now wants a comma.
    char buffer[16];
    std::snprintf(buffer, sizeof(buffer), "%.1f", 1.5);
    ASSERT_STREQ(buffer, "1,5");
    expectLocaleIndependentConversions("de_DE.UTF-8");
}

TEST(cVxString, IntegerConversions)
{
    int i = 0;
    EXPECT_TRUE(cVxString("#ff").toInt(i));
    EXPECT_EQ(i, 255);
    EXPECT_TRUE(cVxString("-42").toInt(i));
    EXPECT_EQ(i, -42);
    i = 3;
    EXPECT_FALSE(cVxString("12abc").toInt(i));
    EXPECT_FALSE(cVxString("").toInt(i));
    EXPECT_FALSE(cVxString(" 12").toInt(i));
    EXPECT_EQ(i, 3);
    uint64_t u = 0;
    EXPECT_TRUE(cVxString("18446744073709551615").toUint64(u));
    EXPECT_EQ(u, UINT64_MAX);
    EXPECT_FALSE(cVxString("-1").toUint64(u));
    EXPECT_FALSE(cVxString("18446744073709551616").toUint64(u));
    double d = 0;
    EXPECT_FALSE(cVxString("12abc").toDouble(d));
    unsigned colour = 0;
    EXPECT_TRUE(cVxString("#00ff80").toColorCode(colour));
    EXPECT_EQ(colour, 0x00ff80u);
    EXPECT_FALSE(cVxString("00ff80").toColorCode(colour));
    double bits = 0;
    EXPECT_TRUE(cVxString("3ff8000000000000").convertHexAsciiToDouble(bits));
    EXPECT_EQ(bits, 1.5);
}

TEST(cVxString, TrimSplitAndIndices)
{
    cVxString text(" \t\"a b\"\r\n");
    EXPECT_EQ(text.trim(), "\"a b\"");
    EXPECT_EQ(text.trimQuotes(), "a b");
    std::vector<cVxString> parts;
    cVxString("a,,b").splitString(parts, ',');
    ASSERT_EQ(parts.size(), 3u);
    EXPECT_EQ(parts[1], "");
    cVxString bus("data[7:0]");
    int first = 0, second = 0;
    EXPECT_TRUE(bus.removeIndices(first, second));
    EXPECT_EQ(bus, "data");
    EXPECT_EQ(first, 7);
    EXPECT_EQ(second, 0);
    cVxString expression("a+ab*a");
    EXPECT_EQ(expression.replaceInExpression("a", "x"), "x+ab*x");
}

TEST(cVxString, WideTextRoundTripsThroughUtf8)
{
    // Latin-1, a three-byte character and one outside the basic plane.
    const std::string utf8 = "A\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E";
    vx3::cVxWideString wide = vx3::cVxWideString::createFromUtf8(utf8);
    ASSERT_EQ(wide.size(), 4u);
    EXPECT_EQ(static_cast<uint32_t>(wide[3]), 0x1D11Eu);
    EXPECT_EQ(cVxString(std::wstring(wide)), utf8);
}

TEST(namedColors, LookUpByExactLowerCaseName)
{
    EXPECT_STREQ(vx3::findNamedColor("black"), "#000000");
    EXPECT_STREQ(vx3::findNamedColor("black blue"), "#040720");
    EXPECT_STREQ(vx3::findNamedColor("night"), "#0c090a");
    EXPECT_STREQ(vx3::findNamedColor("charcoal"), "#34282c");
    EXPECT_STREQ(vx3::findNamedColor("oil"), "#3b3131");
    EXPECT_STREQ(vx3::findNamedColor("stormy gray"), "#3a3b3c");
    // Web names with and without their blanks.
    EXPECT_STREQ(vx3::findNamedColor("dark slate gray"), "#2f4f4f");
    EXPECT_STREQ(vx3::findNamedColor("darkslategray"), "#2f4f4f");
    EXPECT_STREQ(vx3::findNamedColor("rebeccapurple"), "#663399");
    EXPECT_STREQ(vx3::findNamedColor("red"), "#ff0000");
    // Exact comparison only.
    EXPECT_EQ(vx3::findNamedColor("Black"), nullptr);
    EXPECT_EQ(vx3::findNamedColor("black "), nullptr);
    EXPECT_EQ(vx3::findNamedColor(""), nullptr);
    EXPECT_EQ(vx3::findNamedColor("zzz"), nullptr);
    EXPECT_GT(vx3::getNumberOfNamedColors(), 300u);

    EXPECT_EQ(cVxString("stormy gray").convertNamedColorString(), "#3a3b3c");
    EXPECT_EQ(cVxString("no such colour").convertNamedColorString(), "no such colour");
    unsigned code = 0;
    ASSERT_TRUE(cVxString("dark orange").convertNamedColorString().toColorCode(code));
    EXPECT_EQ(code, 0xff8c00u);
}

TEST(vxString, escapeMarkupKeepsTextAndQuotesOnlyWhenAsked)
{
    EXPECT_EQ(vx3::vxString::escape_markup("a<b & c>d"), "a&lt;b &amp; c&gt;d");
    EXPECT_EQ(vx3::vxString::escape_markup("say \"it's\""), "say &quot;it's&quot;");
    EXPECT_EQ(vx3::vxString::escape_markup("say \"it's\"", true, true), "say &quot;it&apos;s&quot;");
    EXPECT_EQ(vx3::vxString::escape_markup("say \"it's\"", false), "say \"it's\"");
    // Already escaped text is escaped again (the caller owns plain text), and UTF-8 passes through.
    EXPECT_EQ(vx3::vxString::escape_markup("&amp; µs"), "&amp;amp; µs");
    EXPECT_EQ(vx3::vxString::escape_markup(""), "");
}
