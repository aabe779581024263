// Finding curves by name in a section.
#include <chrono>
#include <random>

#include <gtest/gtest.h>

#include "model/cCurvePlotDataFile.h"

using namespace vx3;
using curvePlotProperties::data_double;
using npos_t = uint64_t;

namespace {
constexpr npos_t npos = cCurvePlotDataSection::npos;

struct cLookupFixture : public ::testing::Test {
    cCurvePlotDataFile store;
    cCurvePlotDataSection* section = nullptr;
    const cCurvePlotDataType* voltType = nullptr;
    const cCurvePlotDataType* currentType = nullptr;

    void SetUp() override
    {
        section = store.addDataSection("tran");
        voltType = store.addType("V", data_double, curvePlotDataType::volt);
        currentType = store.addType("A", data_double, curvePlotDataType::ampere);
    }
    uint64_t add(const std::string& name, const cCurvePlotDataType* type = nullptr)
    {
        return section->addVariable(type ? type : voltType, name);
    }
};
}  // namespace

TEST_F(cLookupFixture, PassesInOrderFirstHitWins)
{
    add("x1.out");          // 0
    add("v(mid)");          // 1
    add("vsrc#branch");     // 2
    add("top/sub:net");     // 3
    add("Mid");             // 4
    add("mid");             // 5
    add("v(top/a)");        // 6

    EXPECT_EQ(section->findVariableIndex("mid"), 5u) << "pass 1, the exact name, beats the stripped v(mid)";
    EXPECT_EQ(section->findVariableIndex(0, "mid", true), 4u) << "case-insensitive: Mid comes first";
    EXPECT_EQ(section->findVariableIndex(0, "MID", true), 4u);
    EXPECT_EQ(section->findVariableIndex("MID"), npos) << "case-sensitive: no hit in any pass";
    EXPECT_EQ(section->findVariableIndex("vsrc"), 2u) << "pass 2 strips #branch";
    EXPECT_EQ(section->findVariableIndex("top.sub.net"), 3u) << "pass 3: / and : become .";
    EXPECT_EQ(section->findVariableIndex("top:sub/net"), 3u) << "normalised on both sides";
    EXPECT_EQ(section->findVariableIndex("x1/out"), 0u);
    EXPECT_EQ(section->findVariableIndex("top.a"), 6u) << "pass 3 against the stripped name";
    EXPECT_EQ(section->findVariableIndex(0, "TOP.A", true), 6u);
    EXPECT_EQ(section->findVariableIndex(2, "mid"), 5u) << "from a start index";
    EXPECT_EQ(section->findVariableIndex(6, "mid"), npos) << "nothing at or after the start";
    EXPECT_EQ(section->findVariableIndex(1, "mid", true), 4u);
    EXPECT_EQ(section->findVariableIndex(5, "mid", true), 5u);
    EXPECT_EQ(section->findVariableIndex(100, "mid"), npos);
    EXPECT_EQ(section->findVariableIndex(""), npos);
}

TEST_F(cLookupFixture, StrippedNames)
{
    EXPECT_EQ(cCurvePlotVariable::stripName("v(out)"), "out");
    EXPECT_EQ(cCurvePlotVariable::stripName("I(R1)"), "R1");
    EXPECT_EQ(cCurvePlotVariable::stripName("vsrc#branch"), "vsrc");
    EXPECT_EQ(cCurvePlotVariable::stripName("i(vsrc#branch)"), "vsrc");
    EXPECT_EQ(cCurvePlotVariable::stripName("v(a)+v(b)"), "v(a)+v(b)") << "not one wrapper";
    EXPECT_EQ(cCurvePlotVariable::stripName("vdb(out)"), "vdb(out)") << "only the access functions";
    EXPECT_EQ(cCurvePlotVariable::stripName("#branch"), "#branch");
    const uint64_t index = add("V(OUT)");
    EXPECT_EQ(section->getVariable(index).getStrippedNameCaseSensitive(), "OUT");
    EXPECT_EQ(section->getVariable(index).getStrippedNameLowerCase(), "out");
}

TEST_F(cLookupFixture, ReaderFormsCheckTypeAndSeeClosingCurves)
{
    add("out", voltType);     // 0
    add("out", currentType);  // 1
    add("bus[7:0]");          // 2
    add("data<3>");           // 3
    EXPECT_EQ(section->findVariableCheckType(currentType, "out"), 1u);
    EXPECT_EQ(section->findNextVariableCheckType(1, voltType, "out"), npos);
    EXPECT_EQ(section->findVariableDontCheckType("out"), 0u);
    EXPECT_EQ(section->findNextVariableDontCheckType(1, "out"), 1u);
    EXPECT_EQ(section->findClosingVariableIndex("bus"), 2u);
    EXPECT_EQ(section->findClosingVariableIndex("data"), 3u);
    EXPECT_EQ(section->findClosingVariableIndex("bus[7:0]"), 2u);
    uint64_t start = 0;
    EXPECT_EQ(section->findClosingNextVariableUpdateStart(start, "out"), 0u);
    EXPECT_EQ(start, 1u);
    EXPECT_EQ(section->findClosingNextVariableUpdateStart(start, "out"), 1u);
    EXPECT_EQ(section->findClosingNextVariableUpdateStart(start, "out"), npos);

    section->getVariable(0).setFlagMustClose(true);
    EXPECT_EQ(section->findVariableIndex("out"), 1u) << "users don't see curves that must close";
    EXPECT_EQ(section->findVariableDontCheckType("out"), 0u) << "readers do, to match them on reload";
    EXPECT_EQ(section->findAllVariableIndices("out"), (std::vector<uint64_t>{1}));
}

TEST_F(cLookupFixture, VoltageAndCurrentForms)
{
    add("v(n1)", voltType);          // 0
    add("n2", voltType);             // 1
    add("i(r1)", currentType);       // 2
    add("v1#branch", currentType);   // 3
    add("q", voltType);              // 4
    add("q", currentType);           // 5
    EXPECT_EQ(section->findVoltageVariableIndex("n1"), 0u);
    EXPECT_EQ(section->findVoltageVariableIndex("n2"), 1u);
    EXPECT_EQ(section->findCurrentVariableIndex("r1"), 2u);
    EXPECT_EQ(section->findCurrentVariableIndex("v1"), 3u);
    EXPECT_EQ(section->findCurrentVariableIndex("q"), 5u) << "a plain name needs a current unit";
    EXPECT_EQ(section->findVoltageVariableIndex("r1"), npos);
}

TEST_F(cLookupFixture, RenameAndRemoveKeepTheIndexRight)
{
    add("a");
    add("b");
    add("c");
    EXPECT_EQ(section->findVariableIndex("b"), 1u);  // builds the index
    ASSERT_TRUE(section->renameVariable(1, "z"));
    EXPECT_EQ(section->findVariableIndex("b"), npos);
    EXPECT_EQ(section->findVariableIndex("z"), 1u);
    ASSERT_TRUE(section->removeVariable(0));
    EXPECT_EQ(section->findVariableIndex("z"), 0u);
    EXPECT_EQ(section->findVariableIndex("c"), 1u);
    EXPECT_EQ(section->findVariableIndex("a"), npos);
    add("late");
    EXPECT_EQ(section->findVariableIndex("late"), 2u) << "appended after the build";
}

TEST_F(cLookupFixture, UniqueCurveNames)
{
    add("sig");
    add("sig_1");
    EXPECT_EQ(section->generateUniqueCurveName("new"), "new");
    EXPECT_EQ(section->generateUniqueCurveName("sig"), "sig_2");
}

TEST_F(cLookupFixture, SweepMatrixCutNamesRoundTrip)
{
    const cCurvePlotDataType* param = store.addType("p", data_double, curvePlotDataType::no_unit);
    section->addSweepVariable(param, "temp", 0);
    section->addSweepVariable(param, "vdd", 1);
    section->addSweepVariable(store.addType("s", data_double, curvePlotDataType::second), "time", 2);
    const double temps[] = {-40.0, 27.0, 125.0};
    const double vdds[] = {1.0, 1.2};
    const double times[] = {0.0, 1e-9, 2e-9, 3e-9};
    section->getSweepVariable(0).setDoubleValues(temps, 3);
    section->getSweepVariable(1).setDoubleValues(vdds, 2);
    section->getSweepVariable(2).setDoubleValues(times, 4);
    add("v(a)");
    const uint64_t b = add("x - y");  // names may hold the separator
    EXPECT_EQ(section->computeNbOfCutsPerCurve(), 6u);

    const std::vector<uint64_t> indices = {2, 1, 0};
    const std::string name = section->getVariable(b).getCompleteName(*section, indices);
    EXPECT_EQ(name, "x - y - temp=125, vdd=1.2 vs time");
    std::vector<uint64_t> foundIndices, permutation;
    EXPECT_EQ(section->findVariableIndexForSweepMatrix(0, name, false, foundIndices, permutation), b);
    EXPECT_EQ(foundIndices, indices);
    EXPECT_EQ(permutation, (std::vector<uint64_t>{0, 1, 2}));
    EXPECT_EQ(section->findVariableIndex(name), b) << "pass 4 resolves cut names";

    // Another order of the sweeps names another permutation.
    const std::string swapped = "v(a) - vdd=1, temp=-40 vs time";
    EXPECT_EQ(section->findVariableIndexForSweepMatrix(0, swapped, false, foundIndices, permutation), 0u);
    EXPECT_EQ(foundIndices, (std::vector<uint64_t>{0, 0, 0}));
    EXPECT_EQ(permutation, (std::vector<uint64_t>{1, 0, 2}));
    EXPECT_EQ(section->getVariable(0).getSweepMatrixCutName(*section, permutation, foundIndices), swapped);
    EXPECT_EQ(section->findVariableIndex("v(a) - temp=99 vs time"), npos) << "no such sweep value";
    EXPECT_EQ(section->findVariableIndex("v(a) - temp=27 vs time"), npos) << "a sweep left out";

    const std::string info = section->getVariable(0).computeFullCurveInfoStr(*section, {1, 0, 0});
    EXPECT_NE(info.find("Variable : v(a) [V]"), std::string::npos) << info;
    EXPECT_NE(info.find("Plotted vs : time"), std::string::npos) << info;
    EXPECT_NE(info.find("Sweep Parameter : temp = 27"), std::string::npos) << info;
    EXPECT_NE(info.find("Sweep Parameter : vdd = 1"), std::string::npos) << info;
}

TEST(SectionLookupScale, MillionCurvesAnswerThousandLookups)
{
    cCurvePlotDataFile store;
    cCurvePlotDataSection* section = store.addDataSection("big");
    const cCurvePlotDataType* type = store.addType("V", data_double, curvePlotDataType::volt);
    constexpr uint64_t count = 1000000;
    section->reserveVariables(count);
    for (uint64_t i = 0; i < count; ++i)
        section->addVariableNoCapacityTest(type, "v(x" + std::to_string(i / 1000) + "/n" + std::to_string(i) + ")");
    std::mt19937_64 random(7);
    for (int k = 0; k < 1000; ++k) {
        const uint64_t i = random() % count;
        const std::string exact = "v(x" + std::to_string(i / 1000) + "/n" + std::to_string(i) + ")";
        const std::string stripped = "x" + std::to_string(i / 1000) + "/n" + std::to_string(i);
        const std::string dotted = "X" + std::to_string(i / 1000) + ".N" + std::to_string(i);
        ASSERT_EQ(section->findVariableIndex(exact), i);
        ASSERT_EQ(section->findVariableIndex(stripped), i);
        ASSERT_EQ(section->findVariableIndex(0, dotted, true), i);
        ASSERT_EQ(section->findVariableIndex(i + 1, exact), npos);
    }
    // Interleaved finds and appends, as a reader that matches a reload does.
    for (uint64_t i = 0; i < 5000; ++i) {
        const std::string name = "late" + std::to_string(i);
        ASSERT_EQ(section->findVariableIndex(name), npos);
        const uint64_t index = section->addVariable(type, name);
        ASSERT_EQ(section->findVariableIndex(name), index);
    }
    EXPECT_EQ(section->findVariableIndex("late0"), count);
}
