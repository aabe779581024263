// The readers' side of the store: sections and fill order on a first parse and on a reload,
// and the rules for names found in files.
#include <gtest/gtest.h>

#include "readers/cCurveParserIntermediate.h"

using namespace vx3;
using namespace vx3::curvePlotProperties;

TEST(CurveParserIntermediate, FillOrderFindsCurvesAgainOnReload)
{
    cCurvePlotDataFile store;
    cCurvePlotParserOptions options;
    const cCurvePlotDataType* time = store.addType("s", data_double, curvePlotDataType::second);
    const cCurvePlotDataType* volt = store.addType("V", data_double, curvePlotDataType::volt);
    const cCurvePlotDataType* complexVolt = store.addType("V", double_complex, curvePlotDataType::volt);

    cCurveParserIntermediate first(store, options);
    cCurvePlotDataSection* tran = first.findExistingDataSectionOrCreateNewOne("/tmp/r.raw", "tran");
    ASSERT_NE(tran, nullptr);
    EXPECT_EQ(first.dbSupport(), store.findDbSupportPtr("/tmp/r.raw"));
    EXPECT_EQ(first.pushSweepVariableToFillOrder(time, "time", 0), 0u);
    EXPECT_EQ(first.pushVariableToFillOrder(volt, "v(a)"), 0u);
    EXPECT_EQ(first.pushVariableToFillOrder(complexVolt, "v(b)"), 1u);
    std::vector<cCurvePlotVariable*> columns;
    ASSERT_TRUE(first.createFillOrderFromReloadFillOrder(true, 0, 3, columns));
    ASSERT_EQ(columns.size(), 4u) << "the complex curve takes two columns";
    EXPECT_EQ(columns[0], &tran->getSweepVariable(0));
    EXPECT_EQ(columns[2], columns[3]);
    const uint64_t tranId = tran->getSectionId();
    cCurvePlotDataSection* ac = first.createNewDataSection("/tmp/r.raw", "ac", 2);
    EXPECT_EQ(ac->getStepIndex(), 2u);
    EXPECT_EQ(first.getOrCreateStepIndex("temp", 27.0), 1u);
    EXPECT_EQ(first.getOrCreateStepIndex("temp", 85.0), 2u);
    EXPECT_EQ(first.getOrCreateStepIndex({{"temp", 27.0}}), 1u);

    // The reload: old curves are marked to close; what the file still has is found again.
    for (uint64_t i = 0; i < tran->getNbOfVariables(); ++i)
        tran->getVariable(i).setFlagMustClose(true);
    tran->setFlagMustClose(true);
    cCurveParserIntermediate reload(store, options);
    reload.setReloadSections({tran, ac});
    cCurvePlotDataSection* again = reload.findExistingDataSectionOrCreateNewOne("/tmp/r.raw", "tran");
    EXPECT_EQ(again, tran);
    EXPECT_EQ(again->getSectionId(), tranId) << "views stay attached";
    EXPECT_FALSE(again->checkMustClose());
    reload.pushSweepVariableToFillOrder(time, "time", 0);
    EXPECT_EQ(reload.pushVariableToFillOrder(complexVolt, "v(b)"), 1u) << "found by name and type";
    EXPECT_EQ(reload.pushVariableToFillOrder(volt, "v(c)"), 2u) << "new in the file";
    EXPECT_TRUE(tran->getVariable(0).checkMustClose()) << "v(a) vanished";
    EXPECT_FALSE(tran->getVariable(1).checkMustClose());
    cCurvePlotDataSection* fresh = reload.findExistingDataSectionOrCreateNewOne("/tmp/r.raw", "noise");
    EXPECT_NE(fresh, ac);
    EXPECT_TRUE(fresh->getReloadFlags() & curvePlotDataSection::reload_new_section);
    EXPECT_EQ(reload.findExistingDataSection(1), ac);
    EXPECT_EQ(reload.findExistingDataSection(5), nullptr);

    // The sweep-matrix form checks the dimensions against the sweep variables.
    cVxStringLogger messages;
    options.logger().setLoggerCallBack(&messages);
    reload.findExistingDataSection(0);
    ASSERT_TRUE(reload.createFillOrderFromReloadFillOrderMatrix({7}, columns));
    EXPECT_EQ(columns.size(), 2u) << "the curves, not the sweep";
    EXPECT_FALSE(reload.createFillOrderFromReloadFillOrderMatrix({7, 3}, columns));
    EXPECT_NE(messages.getBufferAsString().find("waveform data parser : bad sweep variables sizes"),
              std::string::npos);
    reload.findExistingDataSection(1);
    EXPECT_FALSE(reload.createFillOrderFromReloadFillOrderMatrix({7}, columns));
    EXPECT_NE(messages.getBufferAsString().find("waveform data parser : no sweep variables"), std::string::npos);
    options.logger().setLoggerCallBack(nullptr);

    // Bus curves are found by the start of their name.
    cCurvePlotDataSection* lonely = reload.createNewDataSection("/tmp/other.raw", "x");
    reload.clearReloadFillOrder();
    reload.pushVariableToFillOrder(volt, "v");
    EXPECT_EQ(reload.findOrCreateClosingNextVariable(volt, "bus"), 1u);
    lonely->renameVariable(1, "bus[3:0]");
    EXPECT_EQ(reload.findOrCreateClosingNextVariable(volt, "bus"), 1u) << "a bus ending continues the name";
}

TEST(CurveParserIntermediate, NamesFromFiles)
{
    EXPECT_EQ(cCurveParserIntermediate::simplifyBranchName("v1#branch"), "i(v1)");
    EXPECT_EQ(cCurveParserIntermediate::simplifyBranchName("L2#BRANCH"), "i(L2)");
    EXPECT_EQ(cCurveParserIntermediate::simplifyBranchName("v.x1.vdd#branch"), "i(x1.vdd)");
    EXPECT_EQ(cCurveParserIntermediate::simplifyBranchName("x.y#branch"), "i(x.y)") << "no path behind a letter";
    EXPECT_EQ(cCurveParserIntermediate::simplifyBranchName("v(out)"), "v(out)");
    cCurvePlotDataFile store;
    cCurvePlotParserOptions options;
    cCurveParserIntermediate reader(store, options);
    EXPECT_EQ(reader.adaptVariableName("v1#branch"), "i(v1)");
    options.setFlagSimplifyInstanceNamesForCurrents(false);
    EXPECT_EQ(reader.adaptVariableName("v1#branch"), "v1#branch");

    using strings = std::vector<std::string>;
    EXPECT_EQ(cCurveParserIntermediate::getFoundHierarchySeparators({"x1.x2.n1", "I(top/sub)", "a::b", "c@d"}),
              (strings{".", "/", "::", "@"}));
    EXPECT_EQ(cCurveParserIntermediate::getFoundHierarchySeparators({"a:b|c", "v.x1.v1#branch.x"}),
              (strings{".", ":", "|"}));
    EXPECT_EQ(cCurveParserIntermediate::getFoundHierarchySeparators({"i(v1#branch:x)"}), strings{})
        << "nothing after #branch counts";

    std::string common;
    EXPECT_TRUE(cCurveParserIntermediate::checkNamesDefineRealAndImagPartOfSameCurve("re(S11)", "im(S11)", common));
    EXPECT_EQ(common, "S11");
    EXPECT_TRUE(cCurveParserIntermediate::checkNamesDefineRealAndImagPartOfSameCurve("vout_re", "vout_im", common));
    EXPECT_EQ(common, "vout");
    EXPECT_FALSE(cCurveParserIntermediate::checkNamesDefineRealAndImagPartOfSameCurve("a_re", "b_im", common));
    EXPECT_EQ(cCurveParserIntermediate::getUnitFromCitiVariableName("re(Z[1,1])"), "Ohm");
    EXPECT_EQ(cCurveParserIntermediate::getUnitFromCitiVariableName("y21"), "S");
    EXPECT_EQ(cCurveParserIntermediate::getUnitFromCitiVariableName("VOLTAGE"), "V");
    EXPECT_EQ(cCurveParserIntermediate::getUnitFromCitiVariableName("voltage_ratio"), "");
    EXPECT_TRUE(cCurveParserIntermediate::checkStringDefinesColour("#ff8000"));
    EXPECT_TRUE(cCurveParserIntermediate::checkStringDefinesColour("black blue"));
    EXPECT_FALSE(cCurveParserIntermediate::checkStringDefinesColour("no colour"));
    EXPECT_TRUE(cCurveParserIntermediate::checkStringDefinesLineStyle("dashed_line"));
    EXPECT_FALSE(cCurveParserIntermediate::checkStringDefinesLineSymbol("wiggly"));
}
