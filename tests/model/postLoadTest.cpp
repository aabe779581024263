// What happens to a curve after its block is read: extremes from the file, 9-level and 4-state
// logic clean-up, the plug-in's own access, sparse conversion, data base handles; and the
// logic state lookup and string pool that readers and rulers use.
#include <cmath>
#include <functional>
#include <cstring>
#include <random>

#include <gtest/gtest.h>

#include "../base/testSupport.h"
#include "base/cVxLogger.h"
#include "model/cCurveDbLoader.h"
#include "model/cCurvePlotDataFile.h"
#include "model/curveValueDistance.h"
#include "model/curveValueLookup.h"

using namespace vx3;
using namespace vx3::curvePlotProperties;

namespace {

// Fills the prepared block from a script instead of a file, and records what the store asked.
class cScriptedLoader : public cCurveDbLoader {
public:
    std::function<int(cCurveLoadRequest&)> fill;
    bool haveMinMax = false;
    int pluginCode = 0;
    int pluginCalls = 0, sweepPluginCalls = 0, handleLoads = 0;

    int loadBlocks(cCurveLoadRequest& request, cBitWiseParser<cVxMemoryFile>&, std::string&) override
    {
        return fill(request);
    }
    int loadBlocks(cCurveLoadRequest& request, cBitWiseParser<cVxBinFile>&, std::string&) override
    {
        return fill(request);
    }
    int loadBlocks(cCurveLoadRequest& request, cFileDbHandle&, std::string&) override
    {
        ++handleLoads;
        return fill(request);
    }
    bool loadMinMaxValuesFromDb(const cCurveLoadRequest&, curvePlotVariable::cMinMaxCache& cache) override
    {
        cache.miny = -7;
        cache.maxy = 7;
        return haveMinMax;
    }
    int loadVariableDataDbAccess(cCurveLoadRequest&, std::string& error) override
    {
        ++pluginCalls;
        if (pluginCode)
            error = "plug-in refused";
        return pluginCode;
    }
    int loadSweepVariableDataDbAccess(cCurveLoadRequest&, std::string&) override
    {
        ++sweepPluginCalls;
        return 0;
    }
};

struct cRegistration {
    cRegistration(unsigned type, std::shared_ptr<cCurveDbLoader> loader) : type(type)
    {
        curveDbLoaders::registerLoader(type, std::move(loader));
    }
    ~cRegistration() { curveDbLoaders::unregisterLoader(type); }
    unsigned type;
};

struct cFixture {
    zwtest::cTempDir dir{"zw-postload"};
    cCurvePlotDataFile store;
    cVxLogger logger;
    cVxStringLogger messages;
    cCurvePlotDataSection* section = nullptr;
    cFileDbSupport* file = nullptr;

    explicit cFixture(unsigned dbType)
    {
        logger.setLoggerCallBack(&messages);
        file = &store.findDbSupport(dir.write("data.bin", std::string(64, '\1')), dbType);
        section = store.addDataSection(*file);
    }
    cCurvePlotVariable& add(unsigned dataType, const std::string& name, uint64_t count)
    {
        const uint64_t index = section->addVariable(store.addType(name + "_t", static_cast<data_type>(dataType), curvePlotDataType::no_unit), name);
        cCurvePlotVariable& variable = section->getVariable(index);
        variable.setFile(file);
        variable.setDbSize(count);
        variable.addDbEntry(0, count);
        return variable;
    }
    returnCode load(uint64_t index, bool forSweep = false)
    {
        return section->getVariable(index).loadDataFromDb(logger, section, index, forSweep);
    }
    std::string text() const { return messages.getBufferAsString(); }
};

class cFakeHandle : public cFileDbHandle {
public:
    explicit cFakeHandle(int* opens) : mOpens(opens) {}
    bool open(const std::string&, std::string&) override
    {
        ++*mOpens;
        return true;
    }
    void close() override {}
    bool checkIfReloadMakesSense() override { return true; }

private:
    int* mOpens;
};

}  // namespace

TEST(PostLoad, LogicCleanUpExtremesAndPluginAccess)
{
    const unsigned dbType = fileDbSupport::plugin_db_access;
    auto loader = std::make_shared<cScriptedLoader>();
    cRegistration registration(dbType, loader);
    cFixture f(dbType);
    f.add(parameterized_9_level_logic, "nine", 9);
    f.add(data_double_parameterized_logic_4_state, "four", 4);
    // Taken after both were added: adding moves the curves.
    cCurvePlotVariable& nine = f.section->getVariable(0);
    cCurvePlotVariable& four = f.section->getVariable(1);
    loader->fill = [](cCurveLoadRequest& request) {
        cCurvePlotVariable& v = request.variable;
        if (request.dataType == parameterized_9_level_logic) {
            for (unsigned char level = 0; level < 9; ++level)
                v.pushBackValuePair(static_cast<double>(level), level);
        } else {
            const char states[] = "0XZ1";
            for (int i = 0; i < 4; ++i)
                v.pushBackValuePair(static_cast<double>(i), states[i]);
        }
        return 0;
    };
    ASSERT_EQ(f.load(0), ok) << f.text();
    EXPECT_EQ(std::string(nine.parameterizedYData(), 9), "UX01ZWLH-");
    EXPECT_EQ(loader->pluginCalls, 1);
    EXPECT_FALSE(nine.getMinMax().initialized) << "the file gave no extremes";

    loader->haveMinMax = true;
    ASSERT_EQ(f.load(1, true), ok) << f.text();
    EXPECT_EQ(std::string(four.parameterizedYData(), 4), "0xz1");
    EXPECT_EQ(loader->sweepPluginCalls, 1);
    double min = 0, max = 0;
    ASSERT_TRUE(four.getMinMaxYValues(min, max));
    EXPECT_EQ(min, -7);
    EXPECT_EQ(max, 7);

    // The plug-in failing leaves the curve unloaded, with the load's message; a retry asks again.
    ASSERT_TRUE(four.releaseDb());
    loader->pluginCode = 3;
    EXPECT_EQ(f.load(1), failed);
    EXPECT_TRUE(four.checkNeedsLoading());
    EXPECT_FALSE(four.checkHasStorage());
    EXPECT_NE(f.text().find("cCurvePlotVariable::loadDataFromDb failed for curve four"), std::string::npos);
    loader->pluginCode = 0;
    EXPECT_EQ(f.load(1), ok);
    EXPECT_EQ(loader->pluginCalls, 3);
}

TEST(PostLoad, SparseConversionKeepsTheLine)
{
    auto loader = std::make_shared<cScriptedLoader>();
    const unsigned dbType = fileDbSupport::abf;
    cRegistration registration(dbType, loader);
    cFixture f(dbType);
    const uint64_t count = 5000;
    cCurvePlotVariable& curve = f.add(parameterized_double, "steps", count);
    std::vector<double> xs(count), ys(count);
    std::mt19937 random(3);
    double y = 0;
    for (uint64_t i = 0; i < count; ++i) {
        xs[i] = 0.5 * static_cast<double>(i);
        if (random() % 40 == 0)
            y = (random() % 7 == 0) ? NAN : static_cast<double>(random() % 5);
        ys[i] = y;
    }
    loader->fill = [&](cCurveLoadRequest& request) {
        for (uint64_t i = 0; i < count; ++i)
            request.variable.pushBackValuePair(xs[i], ys[i]);
        request.valuesAreSparse = true;
        return 0;
    };
    ASSERT_EQ(f.load(0), ok) << f.text();
    const uint64_t kept = curve.getVectorSize();
    EXPECT_LT(kept, count / 5);
    const double* kx = reinterpret_cast<const double*>(curve.parameterizedXData());
    const double* ky = reinterpret_cast<const double*>(curve.parameterizedYData());
    EXPECT_EQ(kx[0], xs[0]);
    EXPECT_EQ(kx[kept - 1], xs[count - 1]);
    // Interpolating the kept points gives what interpolating all of them gives, everywhere.
    const cDerivedCurveFunction plain;
    uint64_t c1 = 0, c2 = 0;
    for (double x = 0; x <= xs[count - 1]; x += 0.13) {
        double a = 0, b = 0;
        const bool da = curvePlotVariable::computeInterpolatedValueIncreasing(x, xs.data(), ys.data(), count, c1, a, plain);
        const bool db = curvePlotVariable::computeInterpolatedValueIncreasing(x, kx, ky, kept, c2, b, plain);
        ASSERT_EQ(da, db) << x;
        if (da && !std::isnan(a)) {
            ASSERT_DOUBLE_EQ(a, b) << x;
        } else if (da) {
            ASSERT_TRUE(std::isnan(b)) << x;
        }
    }

    // Logic keeps the first sample of each state and the last one.
    cCurvePlotData logic;
    ASSERT_TRUE(logic.setParameterizedSize(8, 8, 1));
    const char states[] = "00111000";
    for (int i = 0; i < 8; ++i)
        logic.pushBackValuePair(static_cast<double>(i), states[i]);
    ASSERT_TRUE(logic.removeConstantRuns(true));
    ASSERT_EQ(logic.getVectorSize(), 4u);
    EXPECT_EQ(std::string(logic.parameterizedYData(), 4), "0100") << "the last sample stays";
    const double* lx = reinterpret_cast<const double*>(logic.parameterizedXData());
    EXPECT_EQ((std::vector<double>(lx, lx + 4)), (std::vector<double>{0, 2, 5, 7}));
    cCurvePlotData flat;
    ASSERT_TRUE(flat.setSize(4, 8));
    EXPECT_FALSE(flat.removeConstantRuns(false)) << "only the parameterized layout";
}

TEST(PostLoad, DataBaseHandles)
{
    auto loader = std::make_shared<cScriptedLoader>();
    const unsigned pwf = fileDbSupport::pwf_66;
    cRegistration registration(pwf, loader);
    loader->fill = [](cCurveLoadRequest& request) {
        request.variable.pushBackValue(42.0);
        return 0;
    };
    {
        cFixture f(pwf);
        f.add(data_double, "v", 1);
        EXPECT_EQ(f.load(0), failed);
        EXPECT_NE(f.text().find("its data base access isn't available"), std::string::npos) << f.text();
    }
    int opens = 0;
    fileDbHandles::registerFactory(pwf, [&opens] { return std::make_unique<cFakeHandle>(&opens); });
    {
        cFixture f(pwf);
        cCurvePlotVariable& v = f.add(data_double, "v", 1);
        ASSERT_EQ(f.load(0), ok) << f.text();
        EXPECT_EQ(opens, 1);
        EXPECT_EQ(loader->handleLoads, 1);
        EXPECT_NE(f.file->dbHandle(), nullptr);
        EXPECT_EQ(f.file->memoryFileHandle(), nullptr) << "a PWF file isn't mapped";
        EXPECT_EQ(v.getDoubleValue(0), 42.0);
        EXPECT_TRUE(f.file->checkFileChanged()) << "the data base decides";
        f.file->closeFile();
        EXPECT_FALSE(f.file->checkFileIsOpen());
    }
    fileDbHandles::unregisterFactory(pwf);
}

TEST(LogicValues, StateAtXInEveryLayout)
{
    cCurvePlotDataFile store;
    cCurvePlotDataSection* section = store.addDataSection("logic");
    const cCurvePlotDataType* vectorType = store.addType("bus", interleaved_sparse_4_state_logic_vector, curvePlotDataType::no_unit);
    cCurvePlotVariable& bus = section->getVariable(section->addVariable(vectorType, "bus"));
    bus.setElementSize(8 + 4);
    bus.setGrowthFlag(true);
    bus.pushBackInterleavedSparse4StateValueLogicPair<uint64_t>(10, "0101", 4);
    bus.pushBackInterleavedSparse4StateValueLogicPair<uint64_t>(20, "1x11", 4);
    bus.pushBackInterleavedSparse4StateValueLogicPair<uint64_t>(30, "1111", 4);
    std::string value;
    EXPECT_FALSE(bus.getDigitalCurveValue(*section, 9.5, value)) << "before the first change";
    ASSERT_TRUE(bus.getDigitalCurveValue(*section, 10, value, derivedCurveFunction::hexadecimal));
    EXPECT_EQ(value, "5");
    ASSERT_TRUE(bus.getDigitalCurveValue(*section, 29.9, value, derivedCurveFunction::binary));
    EXPECT_EQ(value, "1x11");
    ASSERT_TRUE(bus.getDigitalCurveValue(*section, 1e9, value, derivedCurveFunction::decimal));
    EXPECT_EQ(value, "15");

    // Sparse with vectors: positions first, then the vectors.
    const cCurvePlotDataType* wideType = store.addType("wide", sparse_logic_vector_4_state, curvePlotDataType::no_unit);
    cCurvePlotVariable& wide = section->getVariable(section->addVariable(wideType, "wide"));
    ASSERT_TRUE(wide.setValueVectorPairSize(3, 8));
    wide.pushBackValueVectorPair(0, "00000000", 8);
    wide.pushBackValueVectorPair(5, "11111111", 8);
    wide.pushBackValueVectorPair(7, "0000z000", 8);
    ASSERT_TRUE(wide.getDigitalCurveValue(*section, 6, value, derivedCurveFunction::decimal));
    EXPECT_EQ(value, "255");
    ASSERT_TRUE(wide.getDigitalCurveValue(*section, 7, value, derivedCurveFunction::hexadecimal));
    EXPECT_EQ(value, "0Z");

    // Flat 9-level states along the section's x; a weak state reads as its level.
    const cCurvePlotDataType* timeType = store.addType("time", data_double, curvePlotDataType::no_unit);
    const uint64_t sweep = section->addSweepVariable(timeType, "time", 0);
    const double times[] = {0, 1, 2, 3};
    ASSERT_TRUE(section->getSweepVariable(sweep).setDoubleValues(times, 4));
    const cCurvePlotDataType* nineType = store.addType("nine", nine_level_logic, curvePlotDataType::no_unit);
    cCurvePlotVariable& nine = section->getVariable(section->addVariable(nineType, "n"));
    const unsigned char levels[] = {2, 3, 6, 1};
    ASSERT_TRUE(nine.assignValues(levels, 4, 1));
    ASSERT_TRUE(nine.convertEnum9LevelLogicToLogic(nine_level_logic));
    ASSERT_TRUE(nine.getDigitalCurveValue(*section, 2.5, value));
    EXPECT_EQ(value, "L");
    ASSERT_TRUE(nine.getDigitalCurveValue(*section, 3, value));
    EXPECT_EQ(value, "X");
    // The row under the mouse: "L" lies on the low level from x = 2 on, 0.25 of a 40-pixel row away.
    curvePlotVariable::cDistanceScale scale;
    scale.rowPixels = 40;
    uint64_t index = 0;
    double distance2 = 0;
    ASSERT_TRUE(nine.computeDistanceToValue(*section, 2.5, 0.25, scale, index, distance2));
    EXPECT_EQ(index, 2u);
    EXPECT_DOUBLE_EQ(distance2, 100.0);
    EXPECT_FALSE(nine.computeDistanceToValue(*section, 2.5, 1.5, scale, index, distance2)) << "outside the row";
    const unsigned char weak[] = {4, 8, 12, 4};
    ASSERT_TRUE(nine.assignValues(weak, 4, 1));
    ASSERT_TRUE(nine.getDigitalCurveValue(*section, 1, value));
    EXPECT_EQ(value, "W");
}

TEST(StringPool, SharedOffsetsAndCopies)
{
    auto pool = std::make_shared<cStringPool>();
    cCurvePlotData a, b;
    a.setElementSize(4);
    b.setElementSize(4);
    a.setGrowthFlag(true);
    b.setGrowthFlag(true);
    a.setStringPool(pool);
    b.setStringPool(pool);
    for (const char* text : {"idle", "run", "idle", "", "stop"})
        ASSERT_TRUE(a.pushBackUint32StringValue(text));
    ASSERT_TRUE(b.pushBackUint32StringValue("run"));
    ASSERT_TRUE(b.pushBackUint32StringValue(std::string_view("cut\0off", 7)));
    EXPECT_EQ(pool->getNbOfStrings(), 5u) << "idle, run, empty, stop, cut";
    EXPECT_EQ(a.getVectorSize(), 5u);
    EXPECT_STREQ(a.getUint32StringValue(2), "idle");
    EXPECT_STREQ(a.getUint32StringValue(3), "");
    EXPECT_STREQ(b.getUint32StringValue(0), "run");
    EXPECT_STREQ(b.getUint32StringValue(1), "cut");
    EXPECT_EQ(std::memcmp(a.data() + 4, b.data(), 4), 0) << "one offset for one text";
    EXPECT_EQ(a.getUint32StringValue(5), nullptr);
    const cCurvePlotData copy(a);
    EXPECT_EQ(copy.getStringPool(), pool);
    EXPECT_STREQ(copy.getUint32StringValue(4), "stop");
    EXPECT_STREQ(pool->at(1u << 30), "");
}
