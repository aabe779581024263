// The storage layouts of a value block with their growth, and the logic value conversions.
#include <cmath>

#include <gtest/gtest.h>

#include "base/cLoggedException.h"
#include "model/cCurvePlotData.h"

using namespace vx3;
using namespace vx3::derivedCurveFunction;

TEST(CurvePlotDataLayouts, ParameterizedGrowthAndGaps)
{
    cCurvePlotData data;
    ASSERT_TRUE(data.setParameterizedSize(4, sizeof(double), sizeof(float)));
    EXPECT_FALSE(data.pushBackValuePair(1.0, 2.0)) << "y is a float here";
    for (int i = 0; i < 4; ++i)
        ASSERT_TRUE(data.pushBackValuePair(double(i), float(-i)));
    EXPECT_FALSE(data.pushBackValuePair(9.0, 9.0f)) << "full and no growth: dropped";
    data.setGrowthFlag(true);
    for (int i = 4; i < 5000; ++i)
        ASSERT_TRUE(data.pushBackValuePair(double(i), float(-i)));
    EXPECT_GE(data.getParameterizedCapacity(), 5000u);
    auto check = [&data](uint64_t count) {
        ASSERT_EQ(data.getVectorSize(), count);
        const double* xs = reinterpret_cast<const double*>(data.parameterizedXData());
        const float* ys = reinterpret_cast<const float*>(data.parameterizedYData());
        for (uint64_t i = 0; i < count; i += 333) {
            ASSERT_EQ(xs[i], double(i));
            ASSERT_EQ(ys[i], -float(i));
        }
    };
    check(5000);
    data.balanceParameterizedCurve();
    EXPECT_EQ(data.getParameterizedCapacity(), 5000u);
    check(5000);
    data.setGrowthFlag(false);
    ASSERT_TRUE(data.unbalanceParameterizedValues(10)) << "the gap opens inside the block that is there";
    EXPECT_GE(data.getParameterizedCapacity(), 5010u);
    for (int i = 5000; i < 5010; ++i)
        ASSERT_TRUE(data.pushBackValuePair(double(i), float(-i)));
    check(5010);
    data.clearValues();
    EXPECT_EQ(data.getVectorSize(), 0u);
    EXPECT_TRUE(data.checkIsParameterizedLayout()) << "the layout stays";
}

TEST(CurvePlotDataLayouts, FlatInsertStringsAndRecords)
{
    cCurvePlotData data;
    ASSERT_TRUE(data.setSize(3, sizeof(double)));
    const double values[] = {1, 3};
    ASSERT_TRUE(data.pushBackValueVector(values, 2));
    data.insertValue(1, 2.0);
    data.insertValue(3, 4.0);  // appending grows even without the flag
    ASSERT_EQ(data.getVectorSize(), 4u);
    EXPECT_EQ(data.doubleValues()[1], 2.0);
    EXPECT_EQ(data.doubleValues()[3], 4.0);
    EXPECT_THROW(data.insertValue(9, 1.0), cLoggedException);
    try {
        data.insertValue(1, 1.0f);
    } catch (const cLoggedException& e) {
        EXPECT_STREQ(e.what(), "EXCEPTION : cCurvePlotData::insertValue");
    }
    ASSERT_TRUE(data.setSize(4, sizeof(double)));
    data.setUsedValueCount(3);
    EXPECT_EQ(data.getVectorSize(), 3u) << "a loader filled the block directly";

    cCurvePlotData strings;
    strings.setGrowthFlag(true);
    strings.setElementSize(1);
    for (const char* text : {"alpha", "", "gamma"})
        ASSERT_TRUE(strings.pushBackStringValue(text));
    EXPECT_EQ(strings.getVectorSize(), 3u);
    EXPECT_STREQ(strings.getStringValue(2), "gamma");
    EXPECT_STREQ(strings.getStringValue(1), "");
    EXPECT_EQ(strings.getStringValue(3), nullptr);
    cCurvePlotData fixed;
    ASSERT_TRUE(fixed.setSize(2, 4));
    ASSERT_TRUE(fixed.pushBackConstantSizeString("abcdef", 4));
    ASSERT_TRUE(fixed.pushBackConstantSizeString("x", 4));
    EXPECT_EQ(std::string(fixed.data(), 8), std::string("abcdx\0\0\0", 8)) << "cut or padded to 4";

    // Interleaved records: position, then the value or logic characters.
    cCurvePlotData records;
    records.setGrowthFlag(true);
    records.setElementSize(sizeof(uint32_t) + 4);
    for (uint32_t t = 0; t < 3000; ++t)
        ASSERT_TRUE(records.pushBackInterleavedSparse4StateValueLogicPair(t * 10, "01xz", 3));
    ASSERT_EQ(records.getVectorSize(), 3000u);
    uint32_t position = 0;
    std::memcpy(&position, records.data() + 2999 * 8, 4);
    EXPECT_EQ(position, 29990u);
    EXPECT_EQ(std::string(records.data() + 2999 * 8 + 4, 4), std::string("01x\0", 4)) << "zero past the width";
    cCurvePlotData pairs;
    pairs.setGrowthFlag(true);
    pairs.setElementSize(16);
    ASSERT_TRUE(pairs.pushBackInterleavedValuePair(2.5, 7.0));
    EXPECT_EQ(pairs.doubleValues()[1], 7.0);
}

TEST(CurvePlotDataLayouts, ValueVectorsWithLeftExtension)
{
    cCurvePlotData data;
    ASSERT_TRUE(data.setValueVectorPairSize(2, 4));
    ASSERT_TRUE(data.pushBackValueVectorPair(5, "0101", 4));
    ASSERT_TRUE(data.pushValueVectorPairLeftExtend(7, "1", 1, '0', 4));
    EXPECT_FALSE(data.pushValueVectorPairLeftExtend(8, "z1", 2, 'z', 4)) << "full, no growth";
    data.setGrowthFlag(true);
    ASSERT_TRUE(data.pushValueVectorPairLeftExtend(8, "z1", 2, 'z', 4));
    ASSERT_TRUE(data.pushValueVectorPairLeftExtend(9, "110011", 6, '0', 4)) << "wider: the right bits";
    for (uint64_t i = 10; i < 3000; ++i)
        ASSERT_TRUE(data.pushBackValueVectorPair(i, "1111", 4));
    EXPECT_FALSE(data.pushBackValueVectorPair(1, "11", 2)) << "other width";
    char vector[4];
    uint64_t position = 0;
    const std::pair<uint64_t, std::string> expected[] = {{5, "0101"}, {7, "0001"}, {8, "zzz1"}, {9, "0011"}};
    for (uint64_t i = 0; i < 4; ++i) {
        ASSERT_TRUE(data.getValueVectorPair(i, position, vector, 4));
        EXPECT_EQ(position, expected[i].first);
        EXPECT_EQ(std::string(vector, 4), expected[i].second);
    }
    ASSERT_TRUE(data.getValueVectorPair(2999 - 6, position, vector, 4));
    EXPECT_EQ(position, 2999u - 6 + 6);
    EXPECT_FALSE(data.getValueVectorPair(3000, position, vector, 4));
    // The vector part starts at (allocated / (width + 8)) * 8.
    EXPECT_EQ(data.valueVectorData() - data.data(), int64_t(data.getAllocatedSize() / 12 * 8));
    EXPECT_EQ(data.valueVectorPositions()[0], 5u);
}

TEST(DerivedCurveFunction, ConversionsAndLogicValues)
{
    const std::complex<double> z(3, 4);
    EXPECT_EQ(cDerivedCurveFunction::convertComplexValue(z, real_part), 3.0);
    EXPECT_EQ(cDerivedCurveFunction::convertComplexValue(z, imaginary_part), 4.0);
    EXPECT_EQ(cDerivedCurveFunction::convertComplexValue(z, magnitude), 5.0);
    EXPECT_NEAR(cDerivedCurveFunction::convertComplexValue(z, magnitude_in_db), 20 * std::log10(5.0), 1e-12);
    EXPECT_NEAR(cDerivedCurveFunction::convertComplexValue({0, 1}, angle), 90.0, 1e-12);
    EXPECT_NEAR(cDerivedCurveFunction::convertComplexValue(z, magnitude_and_angle, true), 53.13010235415598, 1e-9);

    std::string simplified;
    for (unsigned char c : std::string("0DLdl1HhFTZfzUuX?w"))
        simplified.push_back(static_cast<char>(cDerivedCurveFunction::simplifyDigitalValue(c)));
    EXPECT_EQ(simplified, "00000111zzzzzuuxxx");
    EXPECT_EQ(cDerivedCurveFunction::simplifyDigitalValue(4), 10);
    EXPECT_EQ(cDerivedCurveFunction::simplifyDigitalValue(29), 11);
    EXPECT_EQ(cDerivedCurveFunction::simplifyDigitalValue(135), 12);
    EXPECT_EQ(cDerivedCurveFunction::convertSparseLogicValueToDouble('H'), 1.0);
    EXPECT_EQ(cDerivedCurveFunction::convertSparseLogicValueToDouble('u'), 0.0);
    EXPECT_EQ(cDerivedCurveFunction::convertSparseLogicValueToDouble('Z'), 0.5);
    EXPECT_EQ(cDerivedCurveFunction::convertSparseLogicValueToDouble('x'), 0.5);
    EXPECT_EQ(cDerivedCurveFunction::convertSparseLogicValueToDouble(133), 0.0);
    EXPECT_EQ(cDerivedCurveFunction::convertSparseLogicValueToDouble(134), 0.5);
    EXPECT_EQ(cDerivedCurveFunction::convertSparseLogicVectorToDouble("xx1", 3), 1.0) << "leftmost significant bit";
    EXPECT_FALSE(cDerivedCurveFunction::checkDigitalvalueMeansUndef('U'));
    EXPECT_TRUE(cDerivedCurveFunction::checkDigitalvalueMeansUndef('z'));

    auto text = [](const char* bits, unsigned type) {
        return cDerivedCurveFunction::convertDigitalVectorToString(bits, std::strlen(bits), type);
    };
    EXPECT_EQ(text("11111111", decimal), "255");
    EXPECT_EQ(text("11111111", signed_decimal), "-1");
    EXPECT_EQ(text("10000000", signed_decimal_with_base), "-128 signed");
    EXPECT_EQ(text("1x01", decimal), "x dec");
    EXPECT_EQ(text("1z01", decimal), "z dec");
    EXPECT_EQ(text("HL01", decimal_with_base), "9 dec");
    EXPECT_EQ(text("110101111", hexadecimal), "1AF");
    EXPECT_EQ(text("xxxx0101", hexadecimal), "x5");
    EXPECT_EQ(text("1x000101", hexadecimal_with_base), "X5 hex");
    EXPECT_EQ(text("zzuu", hexadecimal), "Z") << "mixed undefined kinds";
    EXPECT_EQ(text("111000", octal_with_base), "70 oct");
    EXPECT_EQ(text("10z", binary_with_base), "10z bin");
    // 2^100 needs more than 64 bits.
    EXPECT_EQ(text(("1" + std::string(100, '0')).c_str(), decimal), "1267650600228229401496703205376");
    EXPECT_GE(cDerivedCurveFunction::estimateMaximulLogicStringSize(101, decimal), 31u);
    EXPECT_EQ(cDerivedCurveFunction::estimateMaximulLogicStringSize(9, hexadecimal), 3u);
    EXPECT_EQ(cDerivedCurveFunction::estimateMaximulLogicStringSize(9, octal_with_base), 3u + 7u);
}
