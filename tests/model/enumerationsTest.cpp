// The model's enumerations: texts and the classes of data types, analyses and file formats.
#include <gtest/gtest.h>

#include "model/analysisType.h"
#include "model/dataType.h"
#include "model/derivedCurveFunction.h"
#include "model/fileDbType.h"

using namespace vx3;
using namespace vx3::curvePlotProperties;

TEST(DataType, Texts)
{
    EXPECT_STREQ(dataTypeToString(data_double), "double");
    EXPECT_STREQ(dataTypeToString(parameterized_discrete), "parameterized discrete");
    EXPECT_STREQ(dataTypeToString(103), "pointer");
    EXPECT_STREQ(dataTypeToString(104), "pointer");
    EXPECT_STREQ(dataTypeToString(117), dataTypeToString(35)) << "117 prints like 35";
    EXPECT_STREQ(dataTypeToString(2), "unclear");
    EXPECT_STREQ(dataTypeToString(126), "data_double_parameterized_logic_256_state");
    EXPECT_STREQ(dataTypeToString(127), "unclear");
    EXPECT_STREQ(dataTypeToString(100000), "unclear");
}

TEST(DataType, Classes)
{
    EXPECT_TRUE(checkIsParameterizedDataType(26));
    EXPECT_TRUE(checkIsParameterizedDataType(45));
    EXPECT_TRUE(checkIsParameterizedDataType(118));
    EXPECT_FALSE(checkIsParameterizedDataType(46));
    EXPECT_FALSE(checkIsParameterizedDataType(20));
    EXPECT_TRUE(checkCurveIsDigital(2));
    EXPECT_TRUE(checkCurveIsDigital(88));
    EXPECT_FALSE(checkCurveIsDigital(89));
    EXPECT_TRUE(checkIsDiscreteCurve(96));
    EXPECT_FALSE(checkIsDiscreteCurve(97));
    EXPECT_TRUE(checkIsSparseCurve(123));
    EXPECT_FALSE(checkIsSparseCurve(90));
    EXPECT_TRUE(checkIsScalarType(70));
    EXPECT_FALSE(checkIsScalarType(73));
    EXPECT_FALSE(checkHasConstantDataSize(data_string));
    EXPECT_FALSE(checkHasConstantDataSize(data_float)) << "as listed";
    EXPECT_TRUE(checkHasConstantDataSize(data_double));
    EXPECT_EQ(size(float_complex), 2u);
    EXPECT_EQ(size(parameterized_double), 2u);
    EXPECT_EQ(size(parameterized_double_complex), 3u);
    EXPECT_EQ(size(double_smith_chart), 3u);
    EXPECT_EQ(size(data_double), 1u);
    EXPECT_EQ(size(117), 2u);
    EXPECT_EQ(size(1000), 1u);
    // Every number has at most one of the size classes and the table covers all 127.
    unsigned parameterized = 0;
    for (unsigned type = 0; type < kNbOfDataTypes; ++type)
        parameterized += checkIsParameterizedDataType(type);
    EXPECT_EQ(parameterized, 1u + 12u + 3u + 3u + 2u + 3u) << "26, 34-45, 54-56, 113-115, 117, 118, 124-126";
}

TEST(DataType, CorrespondingTypes)
{
    EXPECT_EQ(getCorrespondingRealDataType(21), 19u);
    EXPECT_EQ(getCorrespondingRealDataType(31), 29u);
    EXPECT_EQ(getCorrespondingRealDataType(55), 37u);
    EXPECT_EQ(getCorrespondingRealDataType(20), 20u);
    EXPECT_EQ(getCorrespondingParameterizedDataType(19, true), 45u);
    EXPECT_EQ(getCorrespondingParameterizedDataType(27, false), 34u);
    EXPECT_EQ(getCorrespondingParameterizedDataType(5, false), 43u);
    EXPECT_EQ(getCorrespondingParameterizedDataType(96, false), 44u);
    EXPECT_EQ(getCorrespondingParameterizedDataType(25, true), 26u);
    EXPECT_EQ(getCorrespondingParameterizedDataType(15, true), 0u);
    EXPECT_EQ(getXAxisDataType(26), data_double);
    EXPECT_EQ(getXAxisDataType(40), data_double);
    EXPECT_EQ(getXAxisDataType(125), data_double);
    EXPECT_EQ(getXAxisDataType(117), uint_64);
    EXPECT_EQ(getXAxisDataType(121), uint_64);
    EXPECT_EQ(getXAxisDataType(43), data_empty) << "not in the list: the section's sweep applies";
    EXPECT_EQ(getXAxisDataType(20), data_empty);
}

TEST(AnalysisType, TextsAndSpellings)
{
    using namespace vx3::curvePlotDataSection;
    EXPECT_STREQ(typeToString(tran), "tran");
    EXPECT_STREQ(typeToString(post_process), "post process");
    EXPECT_STREQ(typeToString(fi_qpss), "fi.qpss");
    EXPECT_STREQ(typeToString(40), "");
    EXPECT_STREQ(typeToString(48), "ac_1");
    EXPECT_STREQ(typeToString(79), "ac_32");
    EXPECT_STREQ(typeToString(undefined_analysis), "") << "the initial value has no row";
    EXPECT_EQ(stringToType("TRAN"), tran);
    EXPECT_EQ(stringToType("transient"), tran);
    EXPECT_EQ(stringToType("small signal ac"), ac);
    EXPECT_EQ(stringToType("sp"), s_parameters);
    EXPECT_EQ(stringToType("tran_sp"), transient_s_parameters);
    EXPECT_EQ(stringToType("info.subckts"), info_subcircuits);
    EXPECT_EQ(stringToType("small signal transfer function"), transfer_function);
    EXPECT_EQ(stringToType("stability analysis"), stability_analysis);
    EXPECT_EQ(stringToType("ac_7"), 54u);
    EXPECT_EQ(stringToType("AC_32"), ac_32);
    EXPECT_EQ(stringToType("ac_33"), ac) << "past the numbered slots";
    EXPECT_EQ(stringToType("ac_x"), no_analysis);
    EXPECT_EQ(stringToType("something"), no_analysis);
    for (unsigned type = 1; type < 80; ++type) {
        if (*typeToString(type)) {
            EXPECT_EQ(stringToType(typeToString(type)), type) << typeToString(type);
        }
    }
}

TEST(FileDbType, TextsAndProperties)
{
    using namespace vx3::fileDbSupport;
    EXPECT_STREQ(getDbTypeAsSting(0), "undefined");
    EXPECT_STREQ(getDbTypeAsSting(3), "wdb");
    EXPECT_STREQ(getDbTypeAsSting(12), "nutmeg binary");
    EXPECT_STREQ(getDbTypeAsSting(52), "psfxl");
    EXPECT_STREQ(getDbTypeAsSting(86), "matlab v7.3");
    EXPECT_STREQ(getDbTypeAsSting(74), "tool box");
    EXPECT_STREQ(getDbTypeAsSting(101), "drop");
    EXPECT_STREQ(getDbTypeAsSting(500), "undefined");
    EXPECT_TRUE(checkIsBigEndian(55));
    EXPECT_FALSE(checkIsBigEndian(54));
    EXPECT_TRUE(checkIsToolbox(73));
    EXPECT_TRUE(checkSectionNamesAreUniqueByConstruction(75));
    EXPECT_TRUE(checkSupportsParallelCurveDataAccess(11));
    EXPECT_FALSE(checkSupportsParallelCurveDataAccess(12));
    EXPECT_FALSE(checkAllowsUndefinedValues(50));
    EXPECT_TRUE(checkXAxisIsAlwaysMonotoneRising(46));
    EXPECT_FALSE(checkDbSupportActive(22));
    EXPECT_FALSE(checkDbSupportActive(34));
    EXPECT_TRUE(checkDbSupportActive(35));
    EXPECT_FALSE(checkLocalDbSupportActive(19));
    EXPECT_FALSE(checkLocalDbSupportActive(100));
    EXPECT_TRUE(checkLocalDbSupportActive(0));
    EXPECT_TRUE(checkHandlesFailSaveReload(6, true));
    EXPECT_FALSE(checkHandlesFailSaveReload(6, false));
    EXPECT_FALSE(checkHandlesFailSaveReload(5, true));
    EXPECT_FALSE(checkHandlesFailSaveReload(15, true));
    EXPECT_FALSE(checkHandlesFailSaveReload(32, true));
    EXPECT_TRUE(checkHandlesFailSaveReload(22, true));
}

TEST(DerivedCurveFunction, TextsAndMonotony)
{
    using namespace vx3::derivedCurveFunction;
    EXPECT_STREQ(conversion_type_to_string(magnitude_in_db), "Magnitude in DB");
    EXPECT_STREQ(getFunctionAsString(magnitude_in_db_and_angle), "DB_Angle");
    EXPECT_STREQ(digital_data_type_to_string(binary_port_values), "binary port values ");
    EXPECT_STREQ(digital_data_type_to_string(default_digital), "default");
    EXPECT_STREQ(double_data_conversion_type_to_string(5), "time stamp (ms precision)");
    EXPECT_TRUE(check_monotony_increasing(1));
    EXPECT_TRUE(check_monotony_decreasing(1));
    EXPECT_TRUE(check_monotony_none(6));
    EXPECT_FALSE(check_monotony_none(3));
    EXPECT_EQ(merge_monotony(0, 5), 5u);
    EXPECT_EQ(merge_monotony(6, 5), 6u) << "a non-monotone half wins";
    EXPECT_EQ(merge_monotony(3, 5), 4u) << "constant and rising";
    EXPECT_EQ(merge_monotony(5, 8), 2u) << "rising and falling";
    EXPECT_EQ(merge_monotony(5, 5), 5u);
    EXPECT_EQ(merge_monotony(3, 8), 7u);
}
