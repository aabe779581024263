#include <cstdlib>

#include <gtest/gtest.h>

#include "base/cVxTextEncoding.h"
#include "testSupport.h"

using vx3::cVxTextEncoding;
namespace enc = vx3::vxTextEncoding;

namespace {

// The first line is plain ASCII and long enough for the zero-byte statistics; the second has
// Latin-1, a three-byte character and one outside the basic plane (a surrogate pair in UTF-16).
const std::string sampleUtf8 =
    "* netlist of the output stage, version 2\r\n"
    "R1 a b 1k $ Widerstand \xC3\xA4\xC3\xB6\xC3\xBC \xE2\x82\xAC \xF0\x9D\x84\x9E \xCE\xA9\r\n"
    ".end\r\n";
const std::string byteOrderMarkUtf8 = "\xEF\xBB\xBF";

bool haveIconv() { return std::system("iconv --version >/dev/null 2>&1") == 0; }

// Runs the real iconv over a file written from "input"; empty with ok=false on failure.
std::string runIconv(const zwtest::cTempDir& temp, const std::string& input, const std::string& from,
                     const std::string& to, bool& ok)
{
    std::string in = temp.write("iconv_in", input);
    std::string out = temp.file("iconv_out");
    std::string command = "iconv -f " + from + " -t " + to + " '" + in + "' > '" + out + "'";
    ok = std::system(command.c_str()) == 0;
    return ok ? zwtest::readFile(out) : std::string();
}

struct cCase {
    const char* iconvName;
    bool withMark;
    int encoding;
    size_t markSize;
};

}  // namespace

TEST(cVxTextEncoding, DetectsAndReadsFilesMadeByIconv)
{
    if (!haveIconv())
        GTEST_SKIP() << "iconv not installed";
    zwtest::cTempDir temp;
    const cCase cases[] = {
        {"UTF-16LE", false, enc::utf16_le, 0}, {"UTF-16BE", false, enc::utf16_be, 0},
        {"UTF-32LE", false, enc::utf32_le, 0}, {"UTF-32BE", false, enc::utf32_be, 0},
        {"UTF-16LE", true, enc::utf16_le, 2},  {"UTF-16BE", true, enc::utf16_be, 2},
        {"UTF-32LE", true, enc::utf32_le, 4},  {"UTF-32BE", true, enc::utf32_be, 4},
        {"UTF-8", true, enc::utf8_bom, 3},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.iconvName) + (c.withMark ? " with mark" : " without mark"));
        // A leading U+FEFF becomes the mark in the target encoding, written by iconv itself.
        bool ok = false;
        std::string bytes = runIconv(temp, (c.withMark ? byteOrderMarkUtf8 : "") + sampleUtf8, "UTF-8", c.iconvName, ok);
        ASSERT_TRUE(ok);
        cVxTextEncoding encoding;
        EXPECT_EQ(encoding.detectEncoding(bytes.data(), bytes.size()), c.encoding);
        EXPECT_EQ(encoding.getBomSize(), c.markSize);
        EXPECT_EQ(encoding.detectEolMode(bytes.data(), bytes.size()), enc::eol_crlf);
        EXPECT_EQ(encoding.convertToUtf8(bytes.data(), bytes.size()), sampleUtf8);
    }

    // iconv's own "UTF-16" and "UTF-32" choose the byte order and write a mark.
    for (const char* name : {"UTF-16", "UTF-32"}) {
        bool ok = false;
        std::string bytes = runIconv(temp, sampleUtf8, "UTF-8", name, ok);
        ASSERT_TRUE(ok);
        cVxTextEncoding encoding;
        int detected = encoding.detectEncoding(bytes.data(), bytes.size());
        EXPECT_GE(detected, enc::utf16_be) << name;
        EXPECT_GT(encoding.getBomSize(), 0u) << name;
        EXPECT_EQ(encoding.convertToUtf8(bytes.data(), bytes.size()), sampleUtf8) << name;
    }

    cVxTextEncoding plain;
    EXPECT_EQ(plain.detectEncoding(sampleUtf8.data(), sampleUtf8.size()), enc::plain_8bit);
    EXPECT_EQ(plain.getBomSize(), 0u);
    EXPECT_EQ(plain.convertToUtf8(sampleUtf8.data(), sampleUtf8.size()), sampleUtf8);
}

TEST(cVxTextEncoding, WritesWhatIconvReadsBack)
{
    if (!haveIconv())
        GTEST_SKIP() << "iconv not installed";
    zwtest::cTempDir temp;
    const std::pair<int, const char*> targets[] = {{enc::utf16_le, "UTF-16LE"}, {enc::utf16_be, "UTF-16BE"},
                                                   {enc::utf32_le, "UTF-32LE"}, {enc::utf32_be, "UTF-32BE"}};
    for (const auto& [code, name] : targets) {
        SCOPED_TRACE(name);
        cVxTextEncoding encoding;
        encoding.setEncoding(code);
        std::string written = encoding.convertFromUtf8(sampleUtf8.data(), sampleUtf8.size());
        // The mark comes back from iconv as U+FEFF at the front.
        bool ok = false;
        EXPECT_EQ(runIconv(temp, written, name, "UTF-8", ok), byteOrderMarkUtf8 + sampleUtf8);
        EXPECT_TRUE(ok);
        // And this reader agrees.
        cVxTextEncoding reader;
        EXPECT_EQ(reader.detectEncoding(written.data(), written.size()), code);
        EXPECT_EQ(reader.convertToUtf8(written.data(), written.size()), sampleUtf8);
    }
    cVxTextEncoding utf8;
    utf8.setEncoding(enc::utf8_bom);
    EXPECT_EQ(utf8.convertFromUtf8(sampleUtf8.data(), sampleUtf8.size()), byteOrderMarkUtf8 + sampleUtf8);
    std::string marked = byteOrderMarkUtf8 + sampleUtf8;
    EXPECT_EQ(utf8.convertFromUtf8(marked.data(), marked.size()), marked) << "no second mark";
    cVxTextEncoding plain;
    plain.setEncoding(enc::plain_8bit);
    EXPECT_EQ(plain.convertFromUtf8(sampleUtf8.data(), sampleUtf8.size()), sampleUtf8);
}

TEST(cVxTextEncoding, MarksNeedMoreThanThreeBytesAndStatisticsTenGroups)
{
    cVxTextEncoding encoding;
    EXPECT_EQ(encoding.detectEncoding("\xFF\xFE\x41", 3), enc::plain_8bit) << "three bytes: no mark test";
    EXPECT_EQ(encoding.detectEncoding("\xEF\xBB\xBF", 3), enc::plain_8bit);
    EXPECT_EQ(encoding.detectEncoding("\xFF\xFE\x41\x00", 4), enc::utf16_le);
    EXPECT_EQ(encoding.detectEncoding("\xFF\xFE\x00\x00", 4), enc::utf32_le);
    EXPECT_EQ(encoding.detectEncoding("\x00\x00\xFE\xFF", 4), enc::utf32_be);
    EXPECT_EQ(encoding.detectEncoding("\xFE\xFF\x00\x41", 4), enc::utf16_be);
    EXPECT_EQ(encoding.detectEncoding("", 0), enc::plain_8bit);

    // 16-bit text without a mark: nine groups of four bytes are not enough to conclude, ten are.
    std::string nineGroups, tenGroups;
    for (int i = 0; i < 18; ++i)
        nineGroups += std::string(1, 'a') + '\0';
    tenGroups = nineGroups + std::string("b\0c\0", 4);
    EXPECT_EQ(encoding.detectEncoding(nineGroups.data(), nineGroups.size()), enc::plain_8bit);
    EXPECT_EQ(encoding.detectEncoding(tenGroups.data(), tenGroups.size()), enc::utf16_le);
    EXPECT_EQ(encoding.getBomSize(), 0u);

    // Zeros past the first 1,000 bytes are never looked at.
    std::string late(1000, 'x');
    for (int i = 0; i < 100; ++i)
        late += std::string("y\0", 2);
    EXPECT_EQ(encoding.detectEncoding(late.data(), late.size()), enc::plain_8bit);
}

TEST(cVxTextEncoding, EndOfLineModeIsTheMostFrequent)
{
    cVxTextEncoding encoding;
    encoding.setEncoding(enc::plain_8bit);
    const std::string lf = "a\nb\nc\r\n", crlf = "a\r\nb\r\nc\n", cr = "a\rb\rc\r\n", none = "abc";
    EXPECT_EQ(encoding.detectEolMode(lf.data(), lf.size()), enc::eol_lf);
    EXPECT_EQ(encoding.detectEolMode(crlf.data(), crlf.size()), enc::eol_crlf);
    EXPECT_EQ(encoding.detectEolMode(cr.data(), cr.size()), enc::eol_cr);
    EXPECT_EQ(encoding.getEolMode(), enc::eol_cr);
    EXPECT_EQ(encoding.detectEolMode(none.data(), none.size()), enc::eol_unknown);
    const std::string trailingCr = "a\r";
    EXPECT_EQ(encoding.detectEolMode(trailingCr.data(), trailingCr.size()), enc::eol_cr);
}

TEST(cVxTextEncoding, BrokenInputBecomesReplacementCharacters)
{
    const std::string replacement = "\xEF\xBF\xBD";
    cVxTextEncoding encoding;
    encoding.setEncoding(enc::utf16_le);
    // A lone high surrogate, then "A", then a byte left over.
    const std::string utf16 = std::string("\x3D\xD8\x41\x00\x42", 5);
    EXPECT_EQ(encoding.convertToUtf8(utf16.data(), utf16.size()), replacement + "A" + replacement);
    encoding.setEncoding(enc::utf32_be);
    const std::string utf32 = std::string("\x00\x11\x00\x00\x00\x00\x00\x41", 8);  // beyond U+10FFFF, "A"
    EXPECT_EQ(encoding.convertToUtf8(utf32.data(), utf32.size()), replacement + "A");
    encoding.setEncoding(enc::utf16_be);
    const std::string badUtf8 = "\xC3(";  // a lead byte without its follower
    EXPECT_EQ(encoding.convertFromUtf8(badUtf8.data(), badUtf8.size()), std::string("\xFE\xFF\xFF\xFD\x00(", 6));
}
