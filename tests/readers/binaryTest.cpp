// Binary primitives: fixed and variable-length fields, bit streams, byte planes, and column
// extraction through both file access classes.
#include <cmath>
#include <cstring>
#include <fstream>
#include <random>
#include <sstream>

#include <gtest/gtest.h>

#include "../base/testSupport.h"
#include "readers/scan/byteUnpermute.h"
#include "readers/scan/cBinaryBitwiseParser.h"
#include "readers/scan/cBitWiseParser.h"
#include "readers/scan/cVxBinFile.h"
#include "readers/scan/cVxMemoryFile.h"
#include "readers/scan/stridedColumns.h"

using namespace vx3;

TEST(CurvePlotParserBin, StreamFieldsBothByteOrders)
{
    std::ostringstream out;
    ASSERT_TRUE(cCurvePlotParserBin::putUnsignedReverseAtStreamPosition(out, 0, 0x01020304u));
    ASSERT_TRUE(cCurvePlotParserBin::putDoubleReverseAtStreamPosition(out, 4, -2.5));
    ASSERT_TRUE(cCurvePlotParserBin::putDoubleAtStreamPosition(out, 12, 1e-300));
    ASSERT_TRUE(cCurvePlotParserBin::putDoubleCastedIntegerAtStreamPosition(out, 20, -7.9));
    ASSERT_TRUE(cCurvePlotParserBin::putString(out, "abcde", true));
    ASSERT_TRUE(cCurvePlotParserBin::putPairOfUnsigned(out, 5, 6, false));
    const std::string bytes = out.str();
    ASSERT_EQ(bytes.size(), 24u + 4 + 8 + 8) << "string padded to a multiple of 4";
    EXPECT_EQ(bytes.substr(0, 4), std::string("\x01\x02\x03\x04", 4)) << "most significant byte first";

    std::istringstream in(bytes);
    cCurvePlotParserBin bin;
    unsigned u = 0;
    double d = 0;
    int i = 0;
    ASSERT_TRUE(bin.getUnsignedReverse(in, u));
    EXPECT_EQ(u, 0x01020304u);
    ASSERT_TRUE(bin.getDoubleReverse(in, d));
    EXPECT_EQ(d, -2.5);
    ASSERT_TRUE(bin.getDouble(in, d));
    EXPECT_EQ(d, 1e-300);
    ASSERT_TRUE(bin.getInt(in, i));
    EXPECT_EQ(i, -7);
    ASSERT_TRUE(bin.getUnsignedReverse(in, u));
    EXPECT_EQ(u, 5u);
    std::string text;
    ASSERT_TRUE(bin.getCharacters(in, text, 8));
    EXPECT_EQ(text, std::string("abcde\0\0\0", 8));
    bin.setFlagDataIsBigEndian(false);
    unsigned a = 0, b = 0;
    ASSERT_TRUE(bin.getPairOfUnsignedEventuallyReverse(in, a, b));
    EXPECT_EQ(a + 10 * b, 65u);
    EXPECT_EQ(bin.getBytesRead(), bytes.size());
    EXPECT_FALSE(bin.getUnsigned(in, u)) << "end of stream";

    std::istringstream three(std::string("\x01\x02\x03\x01\x02\x03name\0rest", 15));
    ASSERT_TRUE(bin.getUnsigned3Bit(three, u));
    EXPECT_EQ(u, 0x030201u);
    ASSERT_TRUE(bin.getUnsigned3BitReverse(three, u));
    EXPECT_EQ(u, 0x010203u);
    ASSERT_TRUE(bin.parseNullTerminatedString(three, text));
    EXPECT_EQ(text, "name");
    EXPECT_FALSE(bin.parseNullTerminatedString(three, text)) << "no terminator before the end";

    float f = 1.5f;
    cCurvePlotParserBin::convertEndianType(f);
    cCurvePlotParserBin::convertEndianType(f);
    EXPECT_EQ(f, 1.5f);
}

TEST(CurvePlotParserBin, CursorAndVariableLengthFields)
{
    // 17: one byte, 20: four bytes, 25..30: the constants 1..6, others 0.
    const unsigned char raw[] = {0x7F, 0x01, 0x02, 0x03, 0x04, 0x00, 0x03, 'x', 'y', 'z'};
    const char* cursor = reinterpret_cast<const char*>(raw);
    EXPECT_EQ(cCurvePlotParserBin::readVariableLengthUnsigned(&cursor, 17), 0x7Fu);
    EXPECT_EQ(cCurvePlotParserBin::readVariableLengthUnsigned(&cursor, 20), 0x01020304u);
    EXPECT_EQ(cCurvePlotParserBin::readVariableLengthUnsigned(&cursor, 27), 3u);
    EXPECT_EQ(cCurvePlotParserBin::readVariableLengthUnsigned(&cursor, 99), 0u);
    EXPECT_EQ(cCurvePlotParserBin::readVariableLengthString(&cursor, 18), "xyz");
    EXPECT_EQ(cursor, reinterpret_cast<const char*>(raw) + sizeof(raw));

    std::istringstream stream(std::string("\xFF\xFE", 2));
    cCurvePlotParserBin bin;
    int64_t signedValue = 0;
    ASSERT_TRUE(bin.getVariableLengthInt(stream, 18, signedValue));
    EXPECT_EQ(signedValue, -2);
    double d = 0;
    std::istringstream constants("");
    ASSERT_TRUE(bin.getVariableLengthDouble(constants, 30, d));
    EXPECT_EQ(d, 6.0) << "a constant reads nothing";

    // Doubles stored big-endian, whole or by their first or second half.
    const double value = -1234.5;
    uint64_t bits;
    std::memcpy(&bits, &value, 8);
    unsigned char big[8];
    for (int k = 0; k < 8; ++k)
        big[k] = static_cast<unsigned char>(bits >> (56 - 8 * k));
    cursor = reinterpret_cast<const char*>(big);
    double whole[1];
    cCurvePlotParserBin::getDoublesAndReverse(&cursor, whole, 1);
    EXPECT_EQ(whole[0], value);
    cursor = reinterpret_cast<const char*>(big);
    EXPECT_EQ(cCurvePlotParserBin::readCompressedReverseVariableSizeFirst4BytesDouble(&cursor, 8), value);
    cursor = reinterpret_cast<const char*>(big);
    const double high = cCurvePlotParserBin::readReverseFirst4BytesDouble(&cursor);
    EXPECT_EQ(high, value) << "-1234.5 has an empty low half";
    cursor = reinterpret_cast<const char*>(big) + 4;
    EXPECT_EQ(cCurvePlotParserBin::readReverseSecond4BytesDouble(&cursor), 0.0);
}

TEST(BinaryBitwiseParser, BitsAndSizeCorrectionCodes)
{
    // 0 | 1010 | 1101 | 11110 | 111110 | 111111 | 1000  then bits 1011 0011 for an integer
    const std::string bits = "0" "1010" "1101" "11110" "111110" "111111" "1000" "10110011";
    std::string bytes((bits.size() + 7) / 8, '\0');
    for (size_t i = 0; i < bits.size(); ++i)
        if (bits[i] == '1')
            bytes[i / 8] = static_cast<char>(bytes[i / 8] | (0x80 >> (i % 8)));
    std::istringstream stream(bytes);
    cBinaryBitwiseParser parser;
    std::vector<int> corrections;
    for (int k = 0; k < 7; ++k) {
        int c = 99;
        ASSERT_TRUE(parser.parseBitSizeCorrectionV1(stream, c));
        corrections.push_back(c);
    }
    EXPECT_EQ(corrections, (std::vector<int>{0, -3, 1, -4, -6, -5, 0}));
    unsigned char byte = 0;
    ASSERT_TRUE(parser.parseUnsignedChar(stream, byte, 8));
    EXPECT_EQ(byte, 0xB3);

    std::istringstream wide(std::string("\x12\x34\x56", 3));
    parser.clear();  // a new stream: the rest of the last byte is not its
    uint64_t value = 0;
    ASSERT_TRUE(parser.parseUnsignedIntegerReverse(wide, value, 16));
    EXPECT_EQ(value, 0x3412u);
    parser.setStreamPosition(wide, 1);
    ASSERT_TRUE(parser.parseUnsignedInteger(wide, value, 12));
    EXPECT_EQ(value, 0x345u);
    EXPECT_FALSE(parser.parseUnsignedInteger(wide, value, 20)) << "past the end";
}

TEST(ByteUnpermute, PlanesAndWidening)
{
    std::mt19937_64 random(3);
    const uint64_t count = 10001;
    std::vector<double> values(count);
    for (double& v : values)
        v = std::ldexp(static_cast<double>(random()), -40) - 1e6;
    std::vector<unsigned char> planes(count * 8);
    for (uint64_t i = 0; i < count; ++i)
        for (int b = 0; b < 8; ++b)
            planes[b * count + i] = reinterpret_cast<const unsigned char*>(&values[i])[b];
    std::vector<double> restored(count);
    byteUnpermute::unpermuteDoubleDataBuffer(planes.data(), count, restored.data());
    EXPECT_EQ(std::memcmp(restored.data(), values.data(), count * 8), 0);

    std::vector<double> buffer(5);
    const float floats[5] = {1.5f, -2.25f, 1e30f, 0.1f, -0.0f};
    std::memcpy(buffer.data(), floats, sizeof(floats));
    byteUnpermute::floatToDouble(buffer.data(), 5);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(buffer[i], static_cast<double>(floats[i]));
}

namespace {
// A table of rows of (double, float, int16) records with padding: 24 bytes per row.
std::string writeTable(const zwtest::cTempDir& dir, uint64_t rows, uint64_t header)
{
    std::string bytes(header + rows * 24, '\0');
    for (uint64_t r = 0; r < rows; ++r) {
        const double d = 0.5 * static_cast<double>(r);
        const float f = -static_cast<float>(r);
        const int16_t s = static_cast<int16_t>(r);
        std::memcpy(&bytes[header + r * 24], &d, 8);
        std::memcpy(&bytes[header + r * 24 + 8], &f, 4);
        std::memcpy(&bytes[header + r * 24 + 16], &s, 2);
    }
    return dir.write("table.bin", bytes);
}

template <class File>
void checkFileAccess(File& file, uint64_t rows)
{
    cBitWiseParser<File> parser(file);
    std::vector<double> ds(rows);
    ASSERT_TRUE(parser.readStrided(16, 24, 8, rows, ds.data()));
    for (uint64_t r = 0; r < rows; r += 997)
        ASSERT_EQ(ds[r], 0.5 * static_cast<double>(r));
    // Bits across bytes, then back to whole bytes.
    parser.setStreamPosition(16 + 24 * 3 + 16);  // the int16 of row 3: 03 00
    uint64_t bits = 0;
    ASSERT_TRUE(parser.readBitwise(4, bits));
    EXPECT_EQ(bits, 0u);
    ASSERT_TRUE(parser.readBitwise(8, bits));
    EXPECT_EQ(bits, 0x30u);
    EXPECT_EQ(parser.byteBufferOffset(), 4u);
    parser.setStreamPosition(16 + 24 * 5 + 8);
    float f = 0;
    ASSERT_TRUE(parser.readValue(f));
    EXPECT_EQ(f, -5.0f);
    EXPECT_FALSE(parser.readStrided(16, 24, 8, rows + 1, ds.data())) << "past the end";
    EXPECT_FALSE(parser.getErrorMessage().empty());

    std::vector<float> fs(rows);
    std::vector<int16_t> ss(rows);
    std::vector<double> d2(rows);
    const std::vector<stridedColumns::cColumn> columns = {{8, 4, reinterpret_cast<char*>(fs.data())},
                                                          {16, 2, reinterpret_cast<char*>(ss.data())},
                                                          {0, 8, reinterpret_cast<char*>(d2.data())}};
    for (unsigned threads : {1u, 2u, 3u}) {
        std::string error;
        std::fill(fs.begin(), fs.end(), 1.0f);
        ASSERT_TRUE(stridedColumns::extract(file, 16, 24, rows, columns, threads, error)) << error;
        for (uint64_t r = 0; r < rows; ++r) {
            ASSERT_EQ(fs[r], -static_cast<float>(r));
            ASSERT_EQ(ss[r], static_cast<int16_t>(r));
            ASSERT_EQ(d2[r], ds[r]);
        }
    }
    std::string error;
    EXPECT_FALSE(stridedColumns::extract(file, 16, 24, rows + 1, columns, 2, error));
    EXPECT_NE(error.find("past the end"), std::string::npos);
    const std::vector<stridedColumns::cColumn> wide = {{20, 8, reinterpret_cast<char*>(d2.data())}};
    EXPECT_FALSE(stridedColumns::extract(file, 16, 24, rows, wide, 1, error)) << "column beyond its record";
}
}  // namespace

TEST(FileAccess, ColumnsAndBitsThroughBothFileClasses)
{
    zwtest::cTempDir dir;
    const uint64_t rows = 100003;  // several blocks of the buffered paths
    const std::string name = writeTable(dir, rows, 16);
    cVxMemoryFile mapped;
    ASSERT_TRUE(mapped.openFile(name));
    EXPECT_TRUE(mapped.checkIsMapped());
    checkFileAccess(mapped, rows);
    cVxBinFile binary;
    ASSERT_TRUE(binary.openFile(name));
    checkFileAccess(binary, rows);

    cVxMemoryFile text;
    text.copyStringData("hello");
    char out[6] = {};
    EXPECT_TRUE(text.readBytes(1, out, 4));
    EXPECT_STREQ(out, "ello");
    EXPECT_FALSE(text.readBytes(3, out, 4));
}
