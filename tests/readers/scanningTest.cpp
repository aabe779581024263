// The text scanner over its three sources: the same answers from a mapped file, a buffered
// FILE and a string, for characters, lines, numbers with suffixes and file sniffing.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>

#include <gtest/gtest.h>

#include "../base/testSupport.h"
#include "readers/scan/cAsciiParserBase.h"

using namespace vx3;

namespace {

// One source of each kind over the same text; the file sources read a temporary file.
template <class It>
struct cSource;

template <>
struct cSource<cParserBaseStringIterator> {
    cParserBaseStringIteratorHandler handler;
    bool open(const std::string& text, const zwtest::cTempDir&)
    {
        handler.copyStringData(text);
        return true;
    }
};

template <>
struct cSource<cParserBaseMappedIterator> {
    cParserBaseMappedIteratorHandler handler;
    bool open(const std::string& text, const zwtest::cTempDir& dir)
    {
        return handler.openFile(dir.write("mapped.txt", text));
    }
};

template <>
struct cSource<cParserBaseFileIterator> {
    cParserBaseFileIteratorHandler handler;
    bool open(const std::string& text, const zwtest::cTempDir& dir)
    {
        return handler.openBinaryFile(dir.write("buffered.txt", text), 0) == 0;
    }
};

template <class It>
class ScannerTest : public ::testing::Test {
protected:
    using parser = cParserBase<It>;
    // Opens text; begin and end span it.
    void open(const std::string& text)
    {
        source = std::make_unique<cSource<It>>();
        ASSERT_TRUE(source->open(text, dir));
        begin = source->handler.begin();
        end = source->handler.end();
    }
    // The value of text as a number with units, and what is left behind it.
    std::pair<double, std::string> withUnits(const std::string& text, bool blanks = false, bool atto = false)
    {
        open(text);
        double value = NAN;
        if (!parser::parseDoubleWithUnits(begin, end, value, blanks, false, nullptr, atto))
            return {NAN, "<fail>"};
        std::string rest;
        while (begin != end) {
            rest.push_back(*begin);
            ++begin;
        }
        return {value, rest};
    }

    zwtest::cTempDir dir;
    std::unique_ptr<cSource<It>> source;
    It begin, end;
};

using Iterators = ::testing::Types<cParserBaseStringIterator, cParserBaseMappedIterator, cParserBaseFileIterator>;
TYPED_TEST_SUITE(ScannerTest, Iterators);

TYPED_TEST(ScannerTest, CharactersPositionsAndLines)
{
    using parser = typename TestFixture::parser;
    this->open("ab c\r\n  line2 \"q \\\" x\"\n\nlast");
    std::string token;
    EXPECT_TRUE(parser::parseAnyString(this->begin, this->end, token));
    EXPECT_EQ(token, "ab");
    auto saved = this->begin;  // remembering a position is a copy
    EXPECT_TRUE(parser::skipWhiteSpace(this->begin, this->end));
    EXPECT_FALSE(parser::checkMatchesCase(this->begin, this->end, "C")) << "case-sensitive";
    EXPECT_TRUE(parser::checkMatchesCase(this->begin, this->end, "c"));
    EXPECT_TRUE(parser::skipNewLine(this->begin, this->end)) << "CR LF is one newline";
    EXPECT_EQ(this->begin.line(), 2u);
    EXPECT_EQ(this->begin.position(), 6u);
    parser::skipWhiteSpace(this->begin, this->end);
    EXPECT_TRUE(parser::parseAnyString(this->begin, this->end, token));
    EXPECT_EQ(token, "line2");
    parser::skipWhiteSpace(this->begin, this->end);
    EXPECT_TRUE(parser::parseStringWithQuotes(this->begin, this->end, token));
    EXPECT_EQ(token, "q \" x");
    EXPECT_TRUE(parser::skipCurrentLine(this->begin, this->end));
    EXPECT_TRUE(parser::skipNewLineAndWhiteSpace(this->begin, this->end));
    EXPECT_EQ(this->begin.line(), 4u);
    EXPECT_TRUE(parser::parseLine(this->begin, this->end, token));
    EXPECT_EQ(token, "last");
    EXPECT_TRUE(this->begin == this->end);
    this->begin = saved;
    EXPECT_EQ(*this->begin, ' ') << "back to the remembered position";
    EXPECT_EQ(this->begin.line(), 1u);

    this->open("0123456789 tail of a long line\nnext");
    EXPECT_TRUE(parser::parseLineMaxSize(this->begin, this->end, token, 4));
    EXPECT_EQ(token, "0123") << "a long line is cut silently";
    EXPECT_EQ(*this->begin, 'n');
}

TYPED_TEST(ScannerTest, IntegersAndHex)
{
    using parser = typename TestFixture::parser;
    this->open("-42 18446744073709551615 18446744073709551616 00123 ff10 0a0b");
    int i = 0;
    uint64_t u = 0;
    EXPECT_TRUE(parser::parseInt(this->begin, this->end, i));
    EXPECT_EQ(i, -42);
    parser::skipWhiteSpace(this->begin, this->end);
    EXPECT_TRUE(parser::parseUnsignedInteger(this->begin, this->end, u));
    EXPECT_EQ(u, UINT64_MAX);
    parser::skipWhiteSpace(this->begin, this->end);
    auto before = this->begin.position();
    EXPECT_FALSE(parser::parseUnsignedInteger(this->begin, this->end, u)) << "overflow";
    EXPECT_EQ(this->begin.position(), before) << "restored on failure";
    parser::skipAndCountWhiteSpace(this->begin, this->end, u);
    parser::skipUntil(this->begin, this->end, ' ');
    parser::skipWhiteSpace(this->begin, this->end);
    EXPECT_TRUE(parser::parseFixedSizeUInt(this->begin, this->end, 3, u));
    EXPECT_EQ(u, 1u);
    EXPECT_EQ(*this->begin, '2');
    parser::skipUntil(this->begin, this->end, ' ');
    parser::skipWhiteSpace(this->begin, this->end);
    EXPECT_TRUE(parser::parseUnsignedHexadecimalInteger(this->begin, this->end, u));
    EXPECT_EQ(u, 0xff10u);
    parser::skipWhiteSpace(this->begin, this->end);
    EXPECT_TRUE(parser::parseUnsignedHexadecimalIntegerBigEndian(this->begin, this->end, u));
    EXPECT_EQ(u, 0x0b0au) << "first byte least significant";
    unsigned bits = 0;
    EXPECT_TRUE(parser::checkStringHoldsUi32Bin("1011", bits));
    EXPECT_EQ(bits, 11u);
    EXPECT_FALSE(parser::checkStringHoldsUi32Bin("10x1", bits));
}

TYPED_TEST(ScannerTest, EngineeringSuffixes)
{
    EXPECT_EQ(this->withUnits("1.5meg"), std::make_pair(1.5e6, std::string()));
    EXPECT_EQ(this->withUnits("1.5Meg"), std::make_pair(1.5e6, std::string()));
    EXPECT_EQ(this->withUnits("1.5MEG"), std::make_pair(1.5e6, std::string()));
    EXPECT_EQ(this->withUnits("1.5M"), std::make_pair(1.5e6, std::string()));
    EXPECT_EQ(this->withUnits("1.5Me"), std::make_pair(1.5e6, std::string("e")));
    EXPECT_EQ(this->withUnits("1.5m"), std::make_pair(0.0015, std::string())) << "correctly rounded 0.0015";
    EXPECT_EQ(this->withUnits("1.5me"), std::make_pair(0.0015, std::string("e")));
    EXPECT_EQ(this->withUnits("1e"), std::make_pair(1.0, std::string("e")));
    EXPECT_EQ(this->withUnits("2e-3x"), std::make_pair(0.002, std::string("x")));
    EXPECT_EQ(this->withUnits("10uF"), std::make_pair(1e-5, std::string("F"))) << "the unit word is the caller's";
    EXPECT_EQ(this->withUnits("3k3"), std::make_pair(3000.0, std::string("3")));
    EXPECT_EQ(this->withUnits("4.7n"), std::make_pair(4.7e-9, std::string()));
    EXPECT_EQ(this->withUnits("12p"), std::make_pair(12e-12, std::string()));
    EXPECT_EQ(this->withUnits("5f"), std::make_pair(5e-15, std::string()));
    EXPECT_EQ(this->withUnits("2G"), std::make_pair(2e9, std::string()));
    EXPECT_EQ(this->withUnits("2t"), std::make_pair(2e12, std::string()));
    EXPECT_EQ(this->withUnits("50%"), std::make_pair(0.5, std::string()));
    EXPECT_EQ(this->withUnits("7a"), std::make_pair(7.0, std::string("a"))) << "atto only on request";
    EXPECT_EQ(this->withUnits("7a", false, true), std::make_pair(7e-18, std::string()));
    EXPECT_EQ(this->withUnits("90m\xC2\xB0 rest"), std::make_pair(0.09, std::string(" rest"))) << "degree sign";
    EXPECT_EQ(this->withUnits("5 k"), std::make_pair(5.0, std::string(" k"))) << "no blanks before a suffix";
    EXPECT_EQ(this->withUnits("5 k", true), std::make_pair(5000.0, std::string()));
    EXPECT_EQ(this->withUnits("5 7", true), std::make_pair(5.0, std::string(" 7"))) << "blanks stay without suffix";
    EXPECT_EQ(this->withUnits("-  5", true), std::make_pair(-5.0, std::string()));
    EXPECT_EQ(this->withUnits("-  5").second, "<fail>") << "no blanks after the sign without the option";
    EXPECT_EQ(this->withUnits("-").second, "<fail>");
    EXPECT_EQ(this->withUnits("+").second, "<fail>");
    EXPECT_EQ(this->withUnits(".").second, "<fail>");
    EXPECT_EQ(this->withUnits("--5").second, "<fail>");
    EXPECT_EQ(this->withUnits("inf").second, "<fail>") << "words are for parseDoubleInfNan";
    EXPECT_EQ(this->withUnits(".5e+2"), std::make_pair(50.0, std::string()));
    EXPECT_EQ(this->withUnits("5."), std::make_pair(5.0, std::string()));
    EXPECT_EQ(this->withUnits("0x10"), std::make_pair(0.0, std::string("x10"))) << "no hexadecimal floats";
}

TYPED_TEST(ScannerTest, SpecialFieldsCommaAndUnits)
{
    using parser = typename TestFixture::parser;
    double value = 0;
    bool comma = false;
    this->open("1,25;3,5e1");
    ASSERT_TRUE(parser::parseDoubleNoUnits(this->begin, this->end, value, false, true, &comma));
    EXPECT_EQ(value, 1.25);
    EXPECT_TRUE(comma);
    EXPECT_TRUE(parser::skipPotentialCsvSeparator(this->begin, this->end));
    ASSERT_TRUE(parser::parseDoubleNoUnitsFastComma(this->begin, this->end, value));
    EXPECT_EQ(value, 35.0);
    this->open("1.5,2");
    ASSERT_TRUE(parser::parseDoubleNoUnits(this->begin, this->end, value, false, true, &comma));
    EXPECT_EQ(value, 1.5) << "after a point a comma separates";
    EXPECT_FALSE(comma);
    this->open("1,5");
    ASSERT_TRUE(parser::parseDoubleNoUnitsFast(this->begin, this->end, value));
    EXPECT_EQ(value, 1.0) << "no decimal comma without the option";

    this->open("-INF nan Infinity information");
    ASSERT_TRUE(parser::parseDoubleInfNan(this->begin, this->end, value));
    EXPECT_EQ(value, -INFINITY);
    parser::skipWhiteSpace(this->begin, this->end);
    ASSERT_TRUE(parser::parseDoubleInfNan(this->begin, this->end, value));
    EXPECT_TRUE(std::isnan(value));
    parser::skipWhiteSpace(this->begin, this->end);
    ASSERT_TRUE(parser::parseDoubleInfNan(this->begin, this->end, value));
    EXPECT_EQ(value, INFINITY);
    parser::skipWhiteSpace(this->begin, this->end);
    EXPECT_FALSE(parser::parseDoubleInfNan(this->begin, this->end, value));

    this->open("--- -.- -5 .");
    ASSERT_TRUE(parser::parseDoubleOtherInfNan(this->begin, this->end, value));
    EXPECT_TRUE(std::isnan(value));
    parser::skipWhiteSpace(this->begin, this->end);
    ASSERT_TRUE(parser::parseDoubleOtherInfNan(this->begin, this->end, value));
    parser::skipWhiteSpace(this->begin, this->end);
    EXPECT_FALSE(parser::parseDoubleOtherInfNan(this->begin, this->end, value)) << "-5 is a number";
    parser::skipUntil(this->begin, this->end, '.');
    EXPECT_FALSE(parser::parseDoubleOtherInfNan(this->begin, this->end, value)) << "no dash, no field";

    this->open("MEGx");
    value = 2;
    ASSERT_TRUE(parser::parseUnit(this->begin, this->end, value));
    EXPECT_EQ(value, 2e6);
    EXPECT_EQ(*this->begin, 'x');
    this->open("V");
    EXPECT_FALSE(parser::parseUnit(this->begin, this->end, value));
    EXPECT_EQ(this->begin.position(), 0u);
    this->open("u");
    value = 3;
    ASSERT_TRUE(parser::parseUnit(this->begin, this->end, value));
    EXPECT_EQ(value, 3e-6);

    std::string text;
    this->open("\xE2\x80\x9Cq\xE2\x80\x9D\xC2\xB0\xC3\xA9\xFF");
    std::vector<std::string> characters;
    while (parser::convertUTF8Character(this->begin, this->end, text))
        characters.push_back(text);
    EXPECT_EQ(characters, (std::vector<std::string>{"\"", "q", "\"", "deg", "\xC3\xA9", "?"}));
    this->open("\xE9");
    ASSERT_TRUE(parser::convertExtendedAsciiCharacter(this->begin, this->end, text));
    EXPECT_EQ(text, "\xC3\xA9");
}

TYPED_TEST(ScannerTest, FileTypeFromFirstLines)
{
    using parser = typename TestFixture::parser;
    auto guess = [this](const std::string& text) {
        this->open(text);
        return parser::guessFileTypeFromBom(this->begin, this->end);
    };
    EXPECT_EQ(guess("\n\t <?XML version"), parserBase::bom_xml);
    EXPECT_EQ(guess("<!DOCTYPE html>"), parserBase::bom_html);
    EXPECT_EQ(guess("$date today"), parserBase::bom_vcd);
    EXPECT_EQ(guess("Synopsys Inc\nHSIM 2.0"), parserBase::bom_hsim);
    EXPECT_EQ(guess("Synopsys Inc\nother"), parserBase::bom_unknown);
    EXPECT_EQ(guess("CITIFILE A.01.01\n"), parserBase::bom_citi);
    EXPECT_EQ(guess("citifile A.01.01\n"), parserBase::bom_unknown) << "case-sensitive";
    EXPECT_EQ(guess("#H header\nSOURCE= x"), parserBase::bom_csdf);
    EXPECT_EQ(guess(std::string(7, '\xFF') + "\xF8" + "xy\n"), parserBase::bom_binary_ff);
    EXPECT_EQ(guess("!ngpsf-1.2\n"), parserBase::bom_ngpsf);
    EXPECT_EQ(guess("*cdn stuff"), parserBase::bom_cdn);
    EXPECT_EQ(guess("# comment\n# more\nVAR freq MAG 3"), parserBase::bom_citi);
    EXPECT_EQ(guess("# comment\n1.0 2e-3, 4;5\n"), parserBase::bom_numeric_table);
    EXPECT_EQ(guess("# comment\n1.0 2e-3 volts\n"), parserBase::bom_unknown) << "the row must end after numbers";
    EXPECT_EQ(guess("HEADER PSFversion 1.00"), parserBase::bom_psf_header);
    EXPECT_EQ(guess("x WSFversion"), parserBase::bom_wsf);
    EXPECT_EQ(guess(std::string(300, 'q') + " PSFversion"), parserBase::bom_unknown) << "beyond 200 characters";
    EXPECT_EQ(guess("labview measurement" + std::string(300, 'z')), parserBase::bom_labview)
        << "a long first line still matches a prefix";
    if (std::is_same_v<TypeParam, cParserBaseStringIterator>) {  // files may not be empty
        EXPECT_EQ(guess(""), parserBase::bom_unknown);
    }
}

// Random decimals of all shapes, scanned by each source, agree bit for bit with strtod.
TYPED_TEST(ScannerTest, RandomDecimalsMatchStrtod)
{
    using parser = typename TestFixture::parser;
    const size_t count = 1000000;  // per source; the benchmark scans ten million
    std::mt19937_64 random(7);
    std::string text;
    text.reserve(count * 24);
    std::uniform_int_distribution<int> digits(1, 25), exponent(-330, 330), shape(0, 5);
    for (size_t i = 0; i < count; ++i) {
        if (random() & 1)
            text.push_back('-');
        const int kind = shape(random);
        const int n = digits(random);
        for (int d = 0; d < n; ++d) {
            text.push_back(static_cast<char>('0' + random() % 10));
            if (kind < 3 && d == n / 2)
                text.push_back('.');
        }
        if (kind >= 2) {
            text.push_back((random() & 1) ? 'e' : 'E');
            const int e = kind == 5 ? exponent(random) : static_cast<int>(random() % 40) - 20;
            text += std::to_string(e);
        }
        text.push_back(i % 7 == 0 ? '\n' : ' ');
    }
    this->open(text);
    const char* cursor = text.c_str();
    size_t mismatches = 0, scanned = 0;
    while (this->begin != this->end) {
        double value = 0;
        ASSERT_TRUE(parser::parseDoubleWithUnits(this->begin, this->end, value)) << "at " << this->begin.position();
        char* next = nullptr;
        const double expected = std::strtod(cursor, &next);
        mismatches += std::memcmp(&value, &expected, sizeof(double)) != 0;
        ASSERT_EQ(this->begin.position(), static_cast<uint64_t>(next - text.c_str()));
        cursor = next + 1;
        ++this->begin;  // the separator
        ++scanned;
    }
    EXPECT_EQ(scanned, count);
    EXPECT_EQ(mismatches, 0u);
    EXPECT_EQ(this->begin.line(), 1 + (count + 6) / 7);
}

}  // namespace

// The sliding buffer: tokens across buffer ends, look-backs behind the forgotten part, jumps.
TEST(FileIteratorHandler, SlidingBufferKeepsTokensWhole)
{
    zwtest::cTempDir dir;
    std::string text;
    for (int i = 0; i < 20000; ++i)
        text += "1.00000000000000000000000000000000000000001 ";  // 44 characters, crosses every boundary
    text += std::string(3000, '7') + "e-2990";  // one token longer than the token window
    const std::string name = dir.write("long.txt", text);
    cParserBaseFileIteratorHandler handler;
    ASSERT_EQ(handler.openTextFile(name, 0), 0);
    EXPECT_EQ(handler.getBufferSize(), cParserBaseFileIteratorHandler::kInitialBufferSize);
    auto begin = handler.begin();
    const auto end = handler.end();
    using parser = cParserBase<cParserBaseFileIterator>;
    double value = 0;
    for (int i = 0; i < 20000; ++i) {
        ASSERT_TRUE(parser::parseDoubleNoUnits(begin, end, value));
        ASSERT_EQ(value, 1.0);
        ++begin;
        if (i % 100 == 0)
            begin.advanceBuffer();
    }
    ASSERT_TRUE(parser::parseDoubleNoUnits(begin, end, value));
    EXPECT_EQ(value, std::strtod((std::string(3000, '7') + "e-2990").c_str(), nullptr));
    EXPECT_TRUE(begin == end);
    auto back = handler.iteratorAt(44, 1);
    EXPECT_EQ(*back, '1') << "a jump back behind the forgotten part reads the file again";
    ASSERT_TRUE(parser::parseDoubleNoUnits(back, end, value));
    EXPECT_EQ(back.position(), 87u);
    char block[5] = {};
    ASSERT_TRUE(handler.readNBytes(44, block, 4));
    EXPECT_STREQ(block, "1.00");
    EXPECT_EQ(handler.skipNBytes(text.size() - 2, 10), text.size());
    EXPECT_EQ(handler.getCharAtPosition(text.size()), '\0') << "past the end";

    ASSERT_EQ(handler.openBinaryFile(name, 44), 0) << "a start position";
    begin = handler.begin();
    EXPECT_EQ(begin.position(), 44u);
}

TEST(FileIteratorHandler, BadFilesGiveMessages)
{
    zwtest::cTempDir dir;
    cParserBaseFileIteratorHandler file;
    cParserBaseMappedIteratorHandler mapped;
    cParserBaseStringIteratorHandler string;
    EXPECT_NE(file.openTextFile(dir.file("missing"), 0), 0);
    EXPECT_NE(file.getErrorMessage().find("does not exist"), std::string::npos);
    EXPECT_FALSE(mapped.openFile(dir.write("empty", "")));
    EXPECT_NE(mapped.getErrorMessage().find("is empty"), std::string::npos);
    EXPECT_NE(string.openImpl(dir.path()), 0);
    EXPECT_NE(string.getErrorMessage().find("not a regular file"), std::string::npos);
    const std::string fifo = dir.file("fifo");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_NE(file.openTextFile(fifo, 0), 0) << "a FIFO is refused without blocking";
    EXPECT_FALSE(mapped.openFile(fifo));
    ASSERT_EQ(string.openImpl(dir.write("text", "abc")), 0);
    EXPECT_EQ(std::string(string.data(), string.size()), "abc");
}

// The shared helpers of text readers: comments, Spice continuations, value groups.
TEST(AsciiParserBase, CommentsContinuationsAndGroups)
{
    cParserBaseStringIteratorHandler handler;
    using parser = cAsciiParserBase<cParserBaseStringIterator>;
    handler.copyStringData("  # note\n// more\n; last\nR1 a b 1k\n+ tc=1 $ tail\n* comment\n  + 2\nnext");
    auto begin = handler.begin();
    auto end = handler.end();
    ASSERT_TRUE(parser::skipCommentAndWhiteSpace(begin, end));
    std::string token;
    ASSERT_TRUE(parser::parseAnyString(begin, end, token));
    EXPECT_EQ(token, "R1");
    auto line = begin;
    ASSERT_TRUE(parser::skipCurrentSpiceLine(line, end));
    EXPECT_EQ(*line, 'n') << "continuations and comment lines between them are one line";
    for (int i = 0; i < 3; ++i) {
        parser::skipSpiceWhiteSpace(begin, end);
        ASSERT_TRUE(parser::parseAnyString(begin, end, token));
    }
    EXPECT_EQ(token, "1k");
    ASSERT_TRUE(parser::skipSpiceWhiteSpace(begin, end));
    ASSERT_TRUE(parser::parseAnyString(begin, end, token));
    EXPECT_EQ(token, "tc=1") << "the + line continues the statement";
    ASSERT_TRUE(parser::skipSpiceWhiteSpaceAndComments(begin, end));
    ASSERT_TRUE(parser::parseAnyString(begin, end, token));
    EXPECT_EQ(token, "2") << "past the $ comment and the * line";

    handler.copyStringData("(1.5, -2m) 3 (4 5 6) [12] <7> (8,");
    begin = handler.begin();
    end = handler.end();
    parser values;
    double a = 0, b = 0;
    ASSERT_TRUE(values.parseTwoValues(begin, end, a, b));
    EXPECT_EQ(a, 1.5);
    EXPECT_EQ(b, -0.002);
    std::vector<double> list;
    ASSERT_TRUE(values.parseOneOrSeveralValues(begin, end, list));
    EXPECT_EQ(list, std::vector<double>{3});
    ASSERT_TRUE(values.parseOneOrSeveralValues(begin, end, list));
    EXPECT_EQ(list, (std::vector<double>{4, 5, 6}));
    uint64_t size = 0;
    ASSERT_TRUE(values.parseArraySize(begin, end, size));
    EXPECT_EQ(size, 12u);
    EXPECT_FALSE(values.parseArraySize(begin, end, size));
    ASSERT_TRUE(values.parseStringSize(begin, end, size));
    EXPECT_EQ(size, 7u);
    EXPECT_FALSE(values.getFlagIncompleteOccurred());
    EXPECT_FALSE(values.parseTwoValues(begin, end, a, b));
    EXPECT_TRUE(values.getFlagIncompleteOccurred()) << "the pair ran into the end";

    handler.copyStringData("\n# a\n  # b\nx");
    begin = handler.begin();
    end = handler.end();
    ASSERT_TRUE(parser::skipPythonCommentLines(begin, end));
    parser::skipNewLineAndWhiteSpace(begin, end);
    EXPECT_EQ(*begin, 'x');
}
