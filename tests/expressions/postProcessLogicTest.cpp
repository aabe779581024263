// Logic curves of a dump that iverilog writes at test time, read by the store's reader: turned
// into numbers, a bit taken out, a bus made and two vectors compared, against the dump as a
// few lines of Python read it. The corners (rise times, levels, enumerations) by hand.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "../base/testSupport.h"
#include "expressions/cPostProcessCurveDescription.h"
#include "expressions/postProcessLogic.h"
#include "readers/cCurvePlotParser.h"

using namespace vx3;
using namespace vx3::postProcess;

namespace {

// "tick:state" words of one line of the oracle.
std::vector<std::pair<uint64_t, std::string>> parseRecords(const std::string& words)
{
    std::vector<std::pair<uint64_t, std::string>> records;
    std::istringstream in(words);
    for (std::string word; in >> word;) {
        const auto colon = word.find(':');
        records.emplace_back(std::stoull(word.substr(0, colon)), word.substr(colon + 1));
    }
    return records;
}

std::vector<std::pair<uint64_t, std::string>> recordsOf(const cSparseLogic& curve)
{
    std::vector<std::pair<uint64_t, std::string>> records;
    for (uint64_t i = 0; i < curve.count; ++i)
        records.emplace_back(curve.positions[i], std::string(curve.states + i * curve.width, curve.width));
    return records;
}

}  // namespace

TEST(CurveLogic, DumpOfASimulationAgainstPython)
{
    zwtest::cTempDir folder("zw_logic_test_");
    const std::string script = std::string(ZW_SOURCE_DIR) + "/tests/expressions/oracles/logic.py";
    ASSERT_EQ(std::system(("/usr/bin/python3 '" + script + "' '" + folder.path() + "'").c_str()), 0);
    std::map<std::string, std::string> expected;
    {
        std::ifstream file(folder.path() + "/expected.txt");
        for (std::string line; std::getline(file, line);) {
            std::istringstream in(line);
            std::string kind, rest;
            in >> kind;
            if (kind == "staircase" || kind == "records") {
                std::string name;
                in >> name;
                kind += " " + name;
            }
            std::getline(in >> std::ws, rest);
            expected[kind] = rest;
        }
    }
    ASSERT_TRUE(expected.count("bus")) << "the oracle wrote nothing";

    cCurvePlotDataFile store;
    cCurvePlotParser parser;
    ASSERT_EQ(parser.parse(store, folder.path() + "/design.vcd"), ok);
    cCurvePlotDataSection* section = store.getDataSectionFromIndex(0);
    ASSERT_TRUE(section);
    EXPECT_NEAR(section->getTimeScaleFactor(), std::stod(expected["scale"]), 1e-25);
    std::map<std::string, cSparseLogic> curves;
    for (const char* name : {"clk", "count", "en", "other"}) {
        uint64_t index = section->findVariableIndex(std::string("top.") + name);
        if (index == cCurvePlotDataSection::npos)
            index = section->findVariableIndex(std::string("top.") + name + "[3:0]");
        ASSERT_NE(index, cCurvePlotDataSection::npos) << name;
        const cPostProcessCurveDescription description(section, index);
        std::string error;
        ASSERT_TRUE(description.load(false, error)) << name << ": " << error;
        ASSERT_TRUE(makeSparseLogic(*description.getCurvePtr(), *section, curves[name])) << name;
        EXPECT_EQ(recordsOf(curves[name]), parseRecords(expected["records " + std::string(name)])) << name;

        // The staircase of numbers: x and z undefined, steps as two samples at one x.
        std::vector<double> xs, ys;
        convertLogicToDouble(curves[name], cLogicLevels(), 0, xs, ys);
        std::istringstream in(expected["staircase " + std::string(name)]);
        size_t i = 0;
        for (std::string pair; in >> pair; ++i) {
            const auto colon = pair.find(':');
            const double x = std::stod(pair.substr(0, colon));
            const std::string y = pair.substr(colon + 1);
            ASSERT_LT(i, xs.size()) << name;
            EXPECT_NEAR(xs[i], x, 1e-15 * std::fabs(x)) << name << " at " << i;
            if (y == "nan")
                EXPECT_TRUE(std::isnan(ys[i])) << name << " at " << i;
            else
                EXPECT_EQ(ys[i], std::stod(y)) << name << " at " << i;
        }
        EXPECT_EQ(i, xs.size()) << name;
    }

    // The same through the store: a new real curve in a result section; an analog curve is refused.
    cCurvePlotDataSection* results = store.addDataSection("post-process");
    uint64_t converted = 0;
    std::string error;
    const cPostProcessCurveDescription count(section, section->findVariableIndex("top.count[3:0]"));
    ASSERT_TRUE(convertLogicToDouble(store, *results, "count", count, cLogicLevels(), 0, converted, error)) << error;
    curvePlotFunctionArgs::cDataVectors vectors;
    ASSERT_TRUE(results->getVariable(converted).computeDataVectors(*results, vectors));
    ASSERT_TRUE(vectors.xDouble && vectors.yDouble);
    std::vector<double> xs, ys;
    convertLogicToDouble(curves["count"], cLogicLevels(), 0, xs, ys);
    EXPECT_EQ(std::vector<double>(vectors.yDouble, vectors.yDouble + vectors.count), ys);
    EXPECT_EQ(std::vector<double>(vectors.xDouble, vectors.xDouble + vectors.count), xs);
    EXPECT_FALSE(convertLogicToDouble(store, *results, "again", cPostProcessCurveDescription(results, converted),
                                      cLogicLevels(), 0, converted, error));
    EXPECT_EQ(error, "Incompatible data type.");

    cSparseLogicResult result;
    ASSERT_TRUE(computeBit(curves["count"], 1, result, error)) << error;
    EXPECT_EQ(recordsOf(result.view()), parseRecords(expected["bit1"]));
    EXPECT_FALSE(computeBit(curves["count"], 4, result, error));
    EXPECT_EQ(error, "Bit 4 lies beyond the vector's 4 bits.");
    ASSERT_TRUE(createDigitalBus({curves["clk"], curves["count"]}, result, error)) << error;
    EXPECT_EQ(result.width, 5u);
    EXPECT_EQ(recordsOf(result.view()), parseRecords(expected["bus"]));
    ASSERT_TRUE(compareDigitalSignals(curves["count"], curves["other"], result, error)) << error;
    EXPECT_EQ(recordsOf(result.view()), parseRecords(expected["compare"]));
    EXPECT_FALSE(compareDigitalSignals(curves["count"], curves["clk"], result, error));
    EXPECT_EQ(error, "Digital curves of 4 and 1 bits can't be compared.");
}

TEST(CurveLogic, LevelsRiseTimesScalesAndEnumerations)
{
    // 1 at tick 0, 0 at 10, x at 12, 1 at 30; ticks of 1 ns.
    const uint64_t positions[] = {0, 10, 12, 30};
    const char states[] = "10x1";
    const cSparseLogic curve{positions, states, 1, 4, 1e-9};
    std::vector<double> xs, ys;
    // A rise time of 4 ns ramps; the ramp into 0 is cut short by the change 2 ns later.
    cLogicLevels levels;
    levels.zero = -1;
    levels.one = 3.3;
    levels.x = 1.5;
    convertLogicToDouble(curve, levels, 4e-9, xs, ys);
    const std::vector<double> ex = {0, 10e-9, 12e-9, 12e-9, 16e-9, 30e-9, 34e-9};
    const std::vector<double> ey = {3.3, 3.3, -1, -1, 1.5, 1.5, 3.3};
    ASSERT_EQ(xs.size(), ex.size());
    for (size_t i = 0; i < ex.size(); ++i) {
        EXPECT_NEAR(xs[i], ex[i], 1e-20) << i;
        EXPECT_EQ(ys[i], ey[i]) << i;
    }
    // The iterator finds the state in force at a time.
    cXIterUint64SparseLogic iter(curve);
    iter.gotoValue(11.5e-9);
    EXPECT_EQ(iter.logicValue()[0], '0');
    iter.gotoValue(-1);
    EXPECT_EQ(iter.logicValue()[0], '1');
    EXPECT_EQ(iter.computeDigitalValue(), 1.0);

    // Vectors: the unsigned number, undefined with an unknown bit, the z level with a floating one.
    EXPECT_EQ(convertLogicStateToDouble("1011", 4, cLogicLevels()), 11.0);
    EXPECT_TRUE(std::isnan(convertLogicStateToDouble("10x1", 4, cLogicLevels())));
    levels.z = -7;
    EXPECT_EQ(convertLogicStateToDouble("10z1", 4, levels), -7.0);
    EXPECT_EQ(convertLogicStateToDouble("1xz1", 4, levels), 1.5);

    // Time scales of whole ratios compare in the finer ticks; others are refused.
    const uint64_t coarse[] = {0, 2};
    const uint64_t fine[] = {0, 15, 20};
    const cSparseLogic a{coarse, "01", 1, 2, 10e-9}, b{fine, "011", 1, 3, 1e-9};
    cSparseLogicResult result;
    std::string error;
    ASSERT_TRUE(compareDigitalSignals(a, b, result, error)) << error;
    EXPECT_EQ(result.positions, (std::vector<uint64_t>{0, 15, 20}));
    EXPECT_EQ(result.states, "010");
    EXPECT_EQ(result.timeScale, 1e-9);
    const cSparseLogic odd{fine, "001", 1, 3, 3e-9};
    EXPECT_FALSE(compareDigitalSignals(a, odd, result, error));
    EXPECT_FALSE(createDigitalBus({a, b}, result, error));
    EXPECT_EQ(error, "Curves of different time scales can't form a bus.");

    // Enumerations: through the table, or by first appearance without one.
    std::vector<double> values;
    convertEnumToDouble({"idle", "run", "idle", "stop"}, {}, values);
    EXPECT_EQ(values, (std::vector<double>{0, 1, 0, 2}));
    convertEnumToDouble({"idle", "run", "stop"}, {{"idle", 0.5}, {"run", 2}}, values);
    EXPECT_EQ(values[0], 0.5);
    EXPECT_EQ(values[1], 2);
    EXPECT_TRUE(std::isnan(values[2]));
}
