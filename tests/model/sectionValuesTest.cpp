// A section's curves as a whole: cuts of a sweep matrix, curves a value short, extremes.
#include <gtest/gtest.h>

#include "model/cCurvePlotDataFile.h"
#include "model/curveValueLookup.h"

using namespace vx3;
using namespace vx3::curvePlotProperties;

TEST(SectionValues, SweepMatrixCutsAndGaps)
{
    cCurvePlotDataFile store;
    cCurvePlotDataSection& section = *store.addDataSection("matrix");
    const cCurvePlotDataType* real = store.addType("v", data_double, curvePlotDataType::no_unit);
    const uint64_t runs = 3, points = 4;
    const double runValues[] = {1, 2, 3}, xs[] = {0, 10, 20, 30};
    section.getSweepVariable(section.addSweepVariable(real, "run", 0)).setDoubleValues(runValues, runs);
    section.getSweepVariable(section.addSweepVariable(real, "x", 1)).setDoubleValues(xs, points);
    // x is the slow index: value (run r, point i) lies at i * runs + r and reads 100 r + i.
    std::vector<double> values(runs * points);
    for (uint64_t r = 0; r < runs; ++r)
        for (uint64_t i = 0; i < points; ++i)
            values[i * runs + r] = 100.0 * r + i;
    const uint64_t matrix = section.addVariable(store.addType("m", data_double_sweep_matrix, curvePlotDataType::no_unit), "m");
    section.getVariable(matrix).setDoubleValues(values.data(), values.size());

    for (uint64_t r = 0; r < runs; ++r) {
        curvePlotFunctionArgs::cDataVectors cut;
        ASSERT_TRUE(section.computeSweepDataVectors(matrix, r, {}, cut));
        ASSERT_EQ(cut.count, points);
        ASSERT_EQ(cut.xDouble, section.getSweepVariable(1).doubleValues());
        for (uint64_t i = 0; i < points; ++i)
            EXPECT_EQ(cut.yDouble[i * cut.yStride], 100.0 * r + i);
        // The lookups read a cut through its stride.
        uint64_t cursor = 0;
        double value = 0;
        ASSERT_TRUE(curvePlotVariable::computeInterpolatedValueIncreasing(15.0, cut.xDouble, cut.yDouble, cut.count,
                                                                           cursor, value, cDerivedCurveFunction(),
                                                                           false, cut.yStride));
        EXPECT_DOUBLE_EQ(value, 100.0 * r + 1.5);
    }
    curvePlotFunctionArgs::cDataVectors none;
    EXPECT_FALSE(section.computeSweepDataVectors(matrix, runs, {}, none)) << "no such cut";
    EXPECT_FALSE(section.computeSweepDataVectors(99, 0, {}, none));

    // A flat section: a curve one value short of x gets its last value again, others stay.
    cCurvePlotDataSection& flat = *store.addDataSection("flat");
    flat.getSweepVariable(flat.addSweepVariable(real, "x", 0)).setDoubleValues(xs, points);
    const double shortValues[] = {5, 6, 7};
    const uint64_t shortCurve = flat.addVariable(real, "short");
    const uint64_t fullCurve = flat.addVariable(real, "full");
    flat.getVariable(shortCurve).setDoubleValues(shortValues, 3);
    flat.getVariable(fullCurve).setDoubleValues(xs, points);
    EXPECT_EQ(flat.duplicateLastValueIfNecessary(), 1u);
    ASSERT_EQ(flat.getVariable(shortCurve).getVectorSize(), points);
    EXPECT_EQ(flat.getVariable(shortCurve).doubleValues()[3], 7.0);
    EXPECT_EQ(flat.getVariable(fullCurve).getVectorSize(), points);
    EXPECT_EQ(flat.duplicateLastValueIfNecessary(), 0u) << "done once";

    EXPECT_EQ(flat.computeMinMaxValuesOfLoadedCurves(), 2u);
    double low = 0, high = 0;
    ASSERT_TRUE(flat.getVariable(shortCurve).getMinMaxYValues(low, high));
    EXPECT_EQ(low, 5.0);
    EXPECT_EQ(high, 7.0);
    EXPECT_EQ(flat.computeMinMaxValuesOfLoadedCurves(), 0u) << "only those without extremes";

    // Parameterized curves filled with room to spare are closed up.
    const uint64_t pairs = flat.addVariable(store.addType("p", parameterized_double, curvePlotDataType::no_unit), "p");
    cCurvePlotVariable& p = flat.getVariable(pairs);
    ASSERT_TRUE(p.setParameterizedSize(10, 8, 8));
    p.pushBackValuePair(1.0, 2.0);
    p.pushBackValuePair(3.0, 4.0);
    flat.balanceParameterizedCurves();
    EXPECT_EQ(p.getParameterizedCapacity(), 2u);
    EXPECT_EQ(reinterpret_cast<const double*>(p.parameterizedYData())[1], 4.0);
}
