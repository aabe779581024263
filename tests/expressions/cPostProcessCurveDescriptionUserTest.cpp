// The curve engine's combination of two curves: against numpy on random unlike grids, and the
// corners (jumps, undefined samples, disjoint ranges, shared and falling x-axes) by hand.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <unistd.h>

#include "../base/testSupport.h"
#include "expressions/cPostProcessCurveDescriptionUser.h"
#include "expressions/postProcessOperators.h"

using namespace vx3;
using namespace vx3::postProcess;

namespace {

template <class T>
std::vector<T> readRaw(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    std::vector<T> values(bytes.size() / sizeof(T));
    std::memcpy(values.data(), bytes.data(), values.size() * sizeof(T));
    return values;
}

template <class Op, class XA, class YA, class XB, class YB>
void combine(const cCurveSamples<XA, YA>& a, const cCurveSamples<XB, YB>& b, bool unionMode, Op op,
             std::vector<double>& x, std::vector<double>& y)
{
    cPostProcessCurveDescriptionUser engine;
    cGrid grid;
    std::unique_ptr<double[]> values;
    ASSERT_TRUE(engine.applyOperatorToTwoCurves(a, b, unionMode, op, grid, values)) << engine.getErrorString();
    x.resize(grid.size);
    for (uint64_t i = 0; i < grid.size; ++i)
        x[i] = grid.sharedInput == 0 ? static_cast<double>(a.x[i]) : grid.values[i];
    y.assign(values.get(), values.get() + grid.size);
}

void expectClose(const std::vector<double>& got, const std::vector<double>& expected, const std::string& what)
{
    ASSERT_EQ(got.size(), expected.size()) << what;
    for (size_t i = 0; i < got.size(); ++i)
        ASSERT_NEAR(got[i], expected[i], 1e-12 * (1 + std::fabs(expected[i]))) << what << " at " << i;
}

template <class BX>
void checkCase(const std::string& folder, int number)
{
    const std::string prefix = folder + "/case" + std::to_string(number) + "_";
    const auto ax = readRaw<double>(prefix + "ax"), ay = readRaw<double>(prefix + "ay");
    const auto bx = readRaw<BX>(prefix + "bx"), by = readRaw<BX>(prefix + "by");
    ASSERT_FALSE(ax.empty());
    ASSERT_FALSE(bx.empty());
    std::vector<double> x, y;
    for (const bool reversed : {false, true}) {
        // A falling copy of a combines as the rising original.
        std::vector<double> rx(ax.rbegin(), ax.rend()), ry(ay.rbegin(), ay.rend());
        const auto a = reversed ? makeCurveSamples(rx.data(), ry.data(), rx.size())
                                : makeCurveSamples(ax.data(), ay.data(), ax.size());
        const auto b = makeCurveSamples(bx.data(), by.data(), bx.size());
        const std::string what = "case " + std::to_string(number) + (reversed ? " reversed" : "");
        combine(a, b, true, cAdd(), x, y);
        expectClose(x, readRaw<double>(prefix + "union_x"), what + " union grid");
        expectClose(y, readRaw<double>(prefix + "union_add"), what + " a+b");
        combine(a, b, false, cSubtract(), x, y);
        expectClose(x, readRaw<double>(prefix + "overlap_x"), what + " overlap grid");
        expectClose(y, readRaw<double>(prefix + "overlap_subtract"), what + " a-b");
        combine(a, b, false, cMultiply(), x, y);
        expectClose(y, readRaw<double>(prefix + "overlap_multiply"), what + " a*b");
        combine(a, b, false, cDivide(), x, y);
        expectClose(y, readRaw<double>(prefix + "overlap_divide"), what + " a/b");
        combine(a, b, false, cLess(), x, y);
        EXPECT_EQ(y, readRaw<double>(prefix + "overlap_less")) << what << " a<b";
    }
}

}  // namespace

TEST(CurveEngine, TwoCurvesOnUnlikeGridsAgainstNumpy)
{
    zwtest::cTempDir folder("zw_expressions_test_");
    ASSERT_FALSE(folder.path().empty());
    const std::string script = std::string(ZW_SOURCE_DIR) + "/tests/expressions/oracles/two_curves.py";
    const std::string command = "/usr/bin/python3 '" + script + "' '" + folder.path() + "' 7";
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
    checkCase<double>(folder.path(), 0);
    checkCase<double>(folder.path(), 1);
    checkCase<float>(folder.path(), 2);
}

TEST(CurveEngine, RealWithComplexAgainstNumpy)
{
    zwtest::cTempDir folder("zw_expressions_test_");
    ASSERT_FALSE(folder.path().empty());
    const std::string script = std::string(ZW_SOURCE_DIR) + "/tests/expressions/oracles/two_curves.py";
    const std::string command = "/usr/bin/python3 '" + script + "' '" + folder.path() + "' 11";
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
    using tComplex = std::complex<double>;
    const std::string prefix = folder.path() + "/complex_";
    const auto ax = readRaw<double>(prefix + "ax"), ay = readRaw<double>(prefix + "ay");
    const auto bx = readRaw<double>(prefix + "bx");
    const auto by = readRaw<tComplex>(prefix + "by");
    ASSERT_EQ(bx.size(), by.size());
    const auto a = makeCurveSamples(ax.data(), ay.data(), ax.size());
    const auto b = makeCurveSamples(bx.data(), by.data(), bx.size());
    cPostProcessCurveDescriptionUser engine;
    auto check = [&](const auto& first, const auto& second, bool unionMode, auto op, const char* gridName,
                     const char* valuesName) {
        cGrid grid;
        std::unique_ptr<tComplex[]> values;
        ASSERT_TRUE(engine.applyOperatorToTwoCurves(first, second, unionMode, op, grid, values))
            << engine.getErrorString();
        const auto expectedX = readRaw<double>(prefix + gridName);
        const auto expected = readRaw<tComplex>(prefix + valuesName);
        ASSERT_EQ(grid.size, expectedX.size()) << valuesName;
        ASSERT_EQ(expected.size(), expectedX.size()) << valuesName;
        for (uint64_t i = 0; i < grid.size; ++i) {
            ASSERT_EQ(grid.values[i], expectedX[i]) << valuesName << " at " << i;
            ASSERT_NEAR(values[i].real(), expected[i].real(), 1e-12 * (1 + std::abs(expected[i]))) << valuesName << i;
            ASSERT_NEAR(values[i].imag(), expected[i].imag(), 1e-12 * (1 + std::abs(expected[i]))) << valuesName << i;
        }
    };
    check(a, b, true, cAdd(), "union_x", "union_add");
    check(a, b, false, cDivide(), "overlap_x", "overlap_divide");
    // The complex curve on the right, the real one widened on the left of a commuted operator.
    check(a, b, false, cSubtractComm(), "overlap_x", "overlap_subtract_comm");

    // Ordering and logic have no meaning for complex values; a real result can't hold them.
    cGrid grid;
    std::unique_ptr<tComplex[]> complexValues;
    EXPECT_FALSE(engine.applyOperatorToTwoCurves(a, b, false, cLess(), grid, complexValues));
    EXPECT_EQ(engine.getErrorString(), "Incompatible data type.");
    std::unique_ptr<double[]> realValues;
    EXPECT_FALSE(engine.applyOperatorToTwoCurves(a, b, false, cAdd(), grid, realValues));
    // A complex curve with a real scalar: the scalar widens too; undefined samples stay so.
    const std::vector<double> cx = {0, 1, 2};
    const std::vector<tComplex> cy = {{1, 2}, {NAN, 0}, {-3, 4}};
    tComplex scaled[3];
    cPostProcessCurveDescriptionUser::applyOperatorToSingleCurve(makeCurveSamples(cx.data(), cy.data(), 3), 2.0,
                                                                 cDivideComm(), scaled);
    EXPECT_EQ(scaled[0], 2.0 / tComplex(1, 2));
    EXPECT_TRUE(std::isnan(scaled[1].real()));
    EXPECT_EQ(scaled[2], 2.0 / tComplex(-3, 4));
}

TEST(CurveEngine, CornersOfTheCombination)
{
    std::vector<double> x, y;
    // Disjoint ranges: the sum covers both, each curve adding 0 outside its own range; the
    // difference is empty.
    const std::vector<double> ax = {0, 1}, ay = {1, 3}, bx = {2, 3}, by = {10, 20};
    const auto a = makeCurveSamples(ax.data(), ay.data(), 2);
    const auto b = makeCurveSamples(bx.data(), by.data(), 2);
    combine(a, b, true, cAdd(), x, y);
    EXPECT_EQ(x, (std::vector<double>{0, 1, 2, 3}));
    EXPECT_EQ(y, (std::vector<double>{1, 3, 10, 20}));
    combine(a, b, false, cSubtract(), x, y);
    EXPECT_TRUE(x.empty());

    // A jump in c (two samples at x = 1) read at 1 gives the mean of both sides; around it the
    // values come from the side they lie on.
    const std::vector<double> cx = {0, 1, 1, 2}, cy = {0, 0, 4, 4}, dx = {0, 0.5, 1, 1.5, 2}, dy = {0, 0, 0, 0, 0};
    const auto c = makeCurveSamples(cx.data(), cy.data(), 4);
    const auto d = makeCurveSamples(dx.data(), dy.data(), 5);
    combine(d, c, false, cAdd(), x, y);
    EXPECT_EQ(x, (std::vector<double>{0, 0.5, 1, 1, 1.5, 2}));
    EXPECT_EQ(y, (std::vector<double>{0, 0, 2, 2, 4, 4}));

    // An undefined sample makes the result undefined where it is reached.
    const std::vector<double> ex = {0, 1, 2, 3}, ey = {1, NAN, 1, 1}, fx = {0.5, 1, 2.5}, fy = {1, 1, 1};
    const auto e = makeCurveSamples(ex.data(), ey.data(), 4);
    const auto f = makeCurveSamples(fx.data(), fy.data(), 3);
    combine(e, f, false, cMultiply(), x, y);
    EXPECT_EQ(x, (std::vector<double>{0.5, 1, 2, 2.5}));
    EXPECT_TRUE(std::isnan(y[0]) && std::isnan(y[1]));
    EXPECT_EQ(y[2], 1.0);
    EXPECT_EQ(y[3], 1.0);

    // Division by zero is undefined, not a crash and not infinite.
    const std::vector<double> zero = {0, 0};
    combine(a, makeCurveSamples(ax.data(), zero.data(), 2), false, cDivide(), x, y);
    ASSERT_EQ(y.size(), 2u);
    EXPECT_TRUE(std::isnan(y[0]) && std::isnan(y[1]));
}

TEST(CurveEngine, SharedAndNonMonotoneAxes)
{
    // One x-axis, shared or equal: the grid is that axis, not a copy, and samples pair directly.
    const std::vector<double> x = {0, 2, 1, 3}, copy = x, ya = {1, 2, 3, 4}, yb = {10, 20, 30, 40};
    const auto a = makeCurveSamples(x.data(), ya.data(), 4);
    EXPECT_FALSE(a.monotone);
    cPostProcessCurveDescriptionUser engine;
    cGrid grid;
    std::unique_ptr<double[]> y;
    for (const double* bx : {x.data(), copy.data()}) {
        ASSERT_TRUE(engine.applyOperatorToTwoCurves(a, makeCurveSamples(bx, yb.data(), 4), false, cSubtract(), grid, y));
        EXPECT_EQ(grid.sharedInput, 0);
        EXPECT_TRUE(grid.values.empty());
        EXPECT_EQ(std::vector<double>(y.get(), y.get() + 4), (std::vector<double>{-9, -18, -27, -36}));
    }
    // A non-monotone axis with another one: refused with the engine's message.
    const std::vector<double> other = {0, 1, 2, 3};
    EXPECT_FALSE(engine.applyOperatorToTwoCurves(a, makeCurveSamples(other.data(), yb.data(), 4), true, cAdd(), grid, y));
    EXPECT_EQ(engine.getErrorString(), "Can't post process curves with non-monotone x-axis data.");
    EXPECT_FALSE(engine.buildX(a, a, true, true, grid));
    // Interleaved samples of a sweep are read with their stride.
    const std::vector<double> interleaved = {0, 100, 1, 200, 2, 300};
    const auto strided = makeCurveSamples(interleaved.data(), interleaved.data() + 1, 3, 2, 2);
    const std::vector<double> half = {0.5, 1.5}, ones = {1, 1};
    ASSERT_TRUE(engine.applyOperatorToTwoCurves(strided, makeCurveSamples(half.data(), ones.data(), 2), false,
                                                cMultiply(), grid, y));
    EXPECT_EQ(grid.values, (std::vector<double>{0.5, 1, 1.5}));
    EXPECT_EQ(std::vector<double>(y.get(), y.get() + 3), (std::vector<double>{150, 200, 250}));
}

TEST(CurveEngine, CurvesOfTheStoreMakeANewCurve)
{
    // Two sections with their own x-axes, as two files give them; the numbers from numpy.
    zwtest::cTempDir folder("zw_expressions_test_");
    ASSERT_FALSE(folder.path().empty());
    const std::string script = std::string(ZW_SOURCE_DIR) + "/tests/expressions/oracles/two_curves.py";
    const std::string command = "/usr/bin/python3 '" + script + "' '" + folder.path() + "' 11";
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
    const std::string prefix = folder.path() + "/case0_";
    const auto ax = readRaw<double>(prefix + "ax"), ay = readRaw<double>(prefix + "ay");
    const auto bx = readRaw<double>(prefix + "bx"), by = readRaw<double>(prefix + "by");

    cCurvePlotDataFile store;
    auto section = [&](const std::string& name, const std::vector<double>& xs, const std::vector<double>& ys) {
        cCurvePlotDataSection* made = store.addDataSection(name);
        const uint64_t sweep =
            made->addSweepVariable(store.addType("time", curvePlotProperties::data_double, curvePlotDataType::no_unit),
                                   "time", 0);
        made->getSweepVariable(sweep).setDoubleValues(xs.data(), xs.size());
        const uint64_t index =
            made->addVariable(store.addType("v", curvePlotProperties::data_double, curvePlotDataType::no_unit), "v");
        made->getVariable(index).setDoubleValues(ys.data(), ys.size());
        return made;
    };
    cCurvePlotDataSection* first = section("first", ax, ay);
    cCurvePlotDataSection* second = section("second", bx, by);
    cCurvePlotDataSection* results = store.addDataSection("post-process");
    const cPostProcessCurveDescription a(first, 0), b(second, 0);
    EXPECT_EQ(a.getName(), "v");
    EXPECT_EQ(a.getNbOfValues(), ax.size());

    cPostProcessCurveDescriptionUser engine;
    uint64_t sum = 0, difference = 0;
    ASSERT_TRUE(engine.applyOperatorToTwoCurves(store, *results, "sum", a, b, true, cAdd(), sum))
        << engine.getErrorString();
    ASSERT_TRUE(engine.applyOperatorToTwoCurves(store, *results, "difference", a, b, false, cSubtract(), difference))
        << engine.getErrorString();
    auto values = [&](uint64_t index, std::vector<double>& xs, std::vector<double>& ys) {
        curvePlotFunctionArgs::cDataVectors vectors;
        ASSERT_TRUE(results->getVariable(index).computeDataVectors(*results, vectors));
        ASSERT_TRUE(vectors.xDouble && vectors.yDouble);
        xs.assign(vectors.xDouble, vectors.xDouble + vectors.count);
        ys.assign(vectors.yDouble, vectors.yDouble + vectors.count);
    };
    std::vector<double> xs, ys;
    values(sum, xs, ys);
    EXPECT_EQ(results->getVariable(sum).name(), "sum");
    expectClose(xs, readRaw<double>(prefix + "union_x"), "store union grid");
    expectClose(ys, readRaw<double>(prefix + "union_add"), "store a+b");
    values(difference, xs, ys);
    expectClose(xs, readRaw<double>(prefix + "overlap_x"), "store overlap grid");
    expectClose(ys, readRaw<double>(prefix + "overlap_subtract"), "store a-b");

    // A complex curve on b's axis, b * (1 + j): times a, both parts are a * b, and the result
    // curve is complex.
    std::vector<std::complex<double>> complexB(by.size());
    for (size_t i = 0; i < by.size(); ++i)
        complexB[i] = {by[i], by[i]};
    const uint64_t complexIndex = second->addVariable(
        store.addType("c", curvePlotProperties::double_complex, curvePlotDataType::no_unit), "c");
    second->getVariable(complexIndex).setDoubleComplexValues(complexB.data(), complexB.size());
    uint64_t product = 0;
    ASSERT_TRUE(engine.applyOperatorToTwoCurves(store, *results, "product", a,
                                                cPostProcessCurveDescription(second, complexIndex), false,
                                                cMultiply(), product))
        << engine.getErrorString();
    {
        curvePlotFunctionArgs::cDataVectors vectors;
        ASSERT_TRUE(results->getVariable(product).computeDataVectors(*results, vectors));
        ASSERT_TRUE(vectors.xDouble && vectors.yDoubleComplex);
        xs.assign(vectors.xDouble, vectors.xDouble + vectors.count);
        std::vector<double> re(vectors.count), im(vectors.count);
        for (uint64_t i = 0; i < vectors.count; ++i) {
            re[i] = vectors.yDoubleComplex[i].real();
            im[i] = vectors.yDoubleComplex[i].imag();
        }
        expectClose(xs, readRaw<double>(prefix + "overlap_x"), "store complex grid");
        expectClose(re, readRaw<double>(prefix + "overlap_multiply"), "store a*c real part");
        expectClose(im, readRaw<double>(prefix + "overlap_multiply"), "store a*c imaginary part");
    }
    EXPECT_FALSE(engine.applyOperatorToTwoCurves(store, *results, "bad", a,
                                                 cPostProcessCurveDescription(second, complexIndex), false, cLess(),
                                                 product));
    EXPECT_EQ(engine.getErrorString(), "Incompatible data type.");

    // Descriptions that name no curve.
    uint64_t index = 0;
    EXPECT_FALSE(engine.applyOperatorToTwoCurves(store, *results, "bad", cPostProcessCurveDescription(first, 7), b,
                                                 true, cAdd(), index));
    EXPECT_EQ(engine.getErrorString(), "Bad curve index.");
    EXPECT_FALSE(engine.applyOperatorToTwoCurves(store, *results, "bad", cPostProcessCurveDescription(), b, true,
                                                 cAdd(), index));
    EXPECT_EQ(engine.getErrorString(), "Bad curve definition.");
    EXPECT_EQ(results->getNbOfVariables(), 3u);
}

TEST(CurveEngine, CurveWithScalar)
{
    const std::vector<double> x = {3, 2, 1, 0}, y = {4, NAN, 0, -2};
    const auto a = makeCurveSamples(x.data(), y.data(), 4);  // walked from x = 0
    std::vector<double> result(4);
    cPostProcessCurveDescriptionUser::applyOperatorToSingleCurve(a, 2.0, cMultiply(), result.data());
    EXPECT_EQ(result[0], -4.0);
    EXPECT_EQ(result[1], 0.0);
    EXPECT_TRUE(std::isnan(result[2]));
    EXPECT_EQ(result[3], 8.0);
    // "1 - a" and "1 / a": the scalar at the left, through the commuted operators.
    cPostProcessCurveDescriptionUser::applyOperatorToSingleCurve(a, 1.0, cSubtractComm(), result.data());
    EXPECT_EQ(result[0], 3.0);
    EXPECT_EQ(result[3], -3.0);
    cPostProcessCurveDescriptionUser::applyOperatorToSingleCurve(a, 1.0, cDivideComm(), result.data());
    EXPECT_EQ(result[0], -0.5);
    EXPECT_TRUE(std::isnan(result[1]));  // 1 / 0
    EXPECT_EQ(result[3], 0.25);
    cPostProcessCurveDescriptionUser::applyOperatorToSingleCurve(a, 2.0, cPowerComm(), result.data());
    EXPECT_EQ(result[0], 0.25);
    EXPECT_EQ(result[3], 16.0);
    cPostProcessCurveDescriptionUser::applyOperatorToSingleCurve(a, NAN, cAdd(), result.data());
    EXPECT_TRUE(std::isnan(result[0]) && std::isnan(result[3]));
}
