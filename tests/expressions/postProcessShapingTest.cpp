// Shift, resampling, staircase and thinning of one curve: against numpy on a random grid, and
// the corners (gaps, complex values, bad grids) by hand.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <unistd.h>

#include "expressions/postProcessShaping.h"

#include "expressionTestSupport.h"

using namespace vx3;
using namespace vx3::postProcess;

namespace {

using zwexpressions::readDoubles;

void writeDoubles(const std::string& path, const std::vector<double>& values)
{
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(values.data()), static_cast<std::streamsize>(values.size() * 8));
}

void expectClose(const std::vector<double>& got, const std::vector<double>& expected, const std::string& what)
{
    ASSERT_EQ(got.size(), expected.size()) << what;
    for (size_t i = 0; i < got.size(); ++i) {
        if (std::isnan(expected[i])) {
            ASSERT_TRUE(std::isnan(got[i])) << what << " at " << i;
            continue;
        }
        ASSERT_NEAR(got[i], expected[i], 1e-12 * (1 + std::fabs(expected[i]))) << what << " at " << i;
    }
}

}  // namespace

TEST(CurveShaping, AgainstNumpy)
{
    std::string pattern = "/tmp/zw_shaping_test_XXXXXX";
    ASSERT_TRUE(::mkdtemp(pattern.data()));
    const std::string folder = pattern;
    const std::string script = "/usr/bin/python3 '" + std::string(ZW_SOURCE_DIR) + "/tests/expressions/oracles/shaping.py'";
    const int made = std::system((script + " make '" + folder + "' 3").c_str());
    auto file = [&](const char* name) { return readDoubles(folder + "/" + name); };
    const auto x = file("x"), y = file("y"), bounds = file("resample_bounds");
    const auto smoothX = file("smooth_x"), smoothY = file("smooth_y");
    std::vector<std::vector<double>> expected;
    for (const char* name : {"shift_x", "shift_y", "resample_x", "resample_y", "step_x", "step_y"})
        expected.push_back(file(name));

    // The thinning, checked by numpy reading the thinned curve at every original sample.
    const double epsY = 1e-3;
    std::vector<double> rx = smoothX, ry = smoothY;
    reduceNumberOfPoints(rx, ry, 0, epsY);
    writeDoubles(folder + "/reduced_x", rx);
    writeDoubles(folder + "/reduced_y", ry);
    const int checked = std::system((script + " check '" + folder + "' " + std::to_string(epsY)).c_str());
    std::error_code error;
    std::filesystem::remove_all(folder, error);
    ASSERT_EQ(made, 0);
    ASSERT_EQ(x.size(), 3000u);
    EXPECT_EQ(checked, 0);
    // A smooth sine thins a lot at this tolerance; the ends stay.
    EXPECT_LT(rx.size(), smoothX.size() / 10);
    EXPECT_EQ(rx.front(), smoothX.front());
    EXPECT_EQ(rx.back(), smoothX.back());

    // Falling copies give the same results: they are walked in rising x.
    for (const bool reversed : {false, true}) {
        std::vector<double> fx(x.rbegin(), x.rend()), fy(y.rbegin(), y.rend());
        const auto s = reversed ? makeCurveSamples(fx.data(), fy.data(), fx.size())
                                : makeCurveSamples(x.data(), y.data(), x.size());
        std::vector<double> xs, ys;
        std::string message;
        shiftCurve(s, 2.5, -1, -0.5, 3, xs, ys);
        expectClose(xs, expected[0], "shifted x");
        expectClose(ys, expected[1], "shifted y");
        ASSERT_TRUE(resampleCurve(s, bounds[0], bounds[1], bounds[2], xs, ys, message)) << message;
        expectClose(xs, expected[2], "resampled x");
        expectClose(ys, expected[3], "resampled y");
        convertCurveToStepFunction(s, 0, xs, ys);
        expectClose(xs, expected[4], "staircase x");
        expectClose(ys, expected[5], "staircase y");
    }
}

TEST(CurveShaping, Corners)
{
    std::string message;
    std::vector<double> xs, ys;
    const std::vector<double> x = {0, 1, 2, 3}, y = {0, 2, 2, 5};
    const auto s = makeCurveSamples(x.data(), y.data(), x.size());

    // Bad grids are refused with their reason, never allocated.
    EXPECT_FALSE(resampleCurve(s, 0, 1, 0, xs, ys, message));
    EXPECT_EQ(message, "Resampling needs a positive step and finite bounds.");
    EXPECT_FALSE(resampleCurve(s, 1, 0, 0.1, xs, ys, message));
    EXPECT_EQ(message, "Resampling needs an end at or above its start.");
    EXPECT_FALSE(resampleCurve(s, 0, 1e300, 1e-300, xs, ys, message));
    EXPECT_NE(message.find("more than"), std::string::npos);
    EXPECT_FALSE(resampleCurve(s, std::vector<double>{1, 0.5}, ys, message));
    EXPECT_EQ(message, "Resampling needs rising x values.");
    const std::vector<double> zigzag = {0, 2, 1, 3};
    EXPECT_FALSE(resampleCurve(makeCurveSamples(zigzag.data(), y.data(), 4), std::vector<double>{1}, ys, message));
    EXPECT_EQ(message, "Can't post process curves with non-monotone x-axis data.");

    // The staircase leaves out steps that don't change the value beyond the threshold.
    convertCurveToStepFunction(s, 0, xs, ys);
    EXPECT_EQ(xs, (std::vector<double>{0, 1, 1, 2, 3, 3}));
    EXPECT_EQ(ys, (std::vector<double>{0, 0, 2, 2, 2, 5}));
    convertCurveToStepFunction(s, 2.5, xs, ys);
    EXPECT_EQ(xs, (std::vector<double>{0, 1, 2, 3, 3}));

    // Complex values: the scale on both parts, the offset on the real part; the staircase and the
    // resampling keep them complex.
    using tComplex = std::complex<double>;
    const std::vector<tComplex> cy = {{1, 1}, {3, -1}, {NAN, 0}, {0, 2}};
    const auto c = makeCurveSamples(x.data(), cy.data(), cy.size());
    std::vector<tComplex> cys;
    shiftCurve(c, 1, 10, 2, 0.5, xs, cys);
    EXPECT_EQ(xs, (std::vector<double>{10, 11, 12, 13}));
    EXPECT_EQ(cys[1], tComplex(6.5, -2));
    EXPECT_TRUE(std::isnan(cys[2].real()));
    ASSERT_TRUE(resampleCurve(c, std::vector<double>{0.5, 1.5, 3}, cys, message));
    EXPECT_EQ(cys[0], tComplex(2, 0));
    EXPECT_TRUE(std::isnan(cys[1].real()));  // the undefined sample reached
    EXPECT_EQ(cys[2], tComplex(0, 2));

    // Thinning keeps gaps and jumps and both parts of a complex curve within the band.
    std::vector<double> lx = {0, 1, 2, 3, 4, 5, 6, 7, 8}, ly = {0, 1, 2, 3, NAN, 5, 6, 7, 8};
    reduceNumberOfPoints(lx, ly, 0, 1e-6);
    EXPECT_EQ(lx, (std::vector<double>{0, 3, 4, 5, 8}));
    std::vector<double> jx = {0, 1, 2, 2, 3, 4}, jy = {0, 0, 0, 1, 1, 1};
    reduceNumberOfPoints(jx, jy, 0, 1e-6);
    EXPECT_EQ(jx, (std::vector<double>{0, 2, 2, 4}));
    std::vector<double> kx = {0, 1, 2, 3, 4};
    std::vector<tComplex> ky = {{0, 0}, {1, 0}, {2, 1}, {3, 0}, {4, 0}};
    reduceNumberOfPoints(kx, ky, 0, 0.4);
    EXPECT_EQ(kx, (std::vector<double>{0, 1, 2, 3, 4}));  // the imaginary bump stays
    reduceNumberOfPoints(kx, ky, 0, 1.5);
    EXPECT_EQ(kx, (std::vector<double>{0, 4}));
    // A limit in x keeps a sample at least every epsX.
    std::vector<double> mx = {0, 1, 2, 3, 4, 5, 6}, my = {0, 0, 0, 0, 0, 0, 0};
    reduceNumberOfPoints(mx, my, 2.5, 1e-6);
    EXPECT_EQ(mx, (std::vector<double>{0, 2, 4, 6}));
}

TEST(CurveShaping, CurvesOfTheStore)
{
    // A complex curve of a section, resampled and shifted into a result section.
    cCurvePlotDataFile store;
    cCurvePlotDataSection* source = store.addDataSection("ac");
    const std::vector<double> x = {1, 2, 4};
    const std::vector<std::complex<double>> y = {{0, 1}, {2, 3}, {6, -1}};
    const uint64_t sweep = source->addSweepVariable(
        store.addType("frequency", curvePlotProperties::data_double, curvePlotDataType::no_unit), "frequency", 0);
    source->getSweepVariable(sweep).setDoubleValues(x.data(), x.size());
    const uint64_t index = source->addVariable(
        store.addType("v", curvePlotProperties::double_complex, curvePlotDataType::no_unit), "v");
    source->getVariable(index).setDoubleComplexValues(y.data(), y.size());
    cCurvePlotDataSection* results = store.addDataSection("post-process");
    const cPostProcessCurveDescription curve(source, index);

    uint64_t resampled = 0, shifted = 0;
    std::string error;
    ASSERT_TRUE(resampleCurve(store, *results, "resampled", curve, 1.5, 4, 1, resampled, error)) << error;
    ASSERT_TRUE(shiftCurve(store, *results, "shifted", curve, 1, 1, 1, 0, shifted, error)) << error;
    curvePlotFunctionArgs::cDataVectors vectors;
    ASSERT_TRUE(results->getVariable(resampled).computeDataVectors(*results, vectors));
    ASSERT_TRUE(vectors.xDouble && vectors.yDoubleComplex);
    ASSERT_EQ(vectors.count, 3u);
    EXPECT_EQ(vectors.xDouble[2], 3.5);
    EXPECT_EQ(vectors.yDoubleComplex[0], std::complex<double>(1, 2));
    EXPECT_EQ(vectors.yDoubleComplex[2], std::complex<double>(5, 0));
    ASSERT_TRUE(results->getVariable(shifted).computeDataVectors(*results, vectors));
    EXPECT_EQ(vectors.xDouble[0], 2.0);

    // A refused shaping adds nothing to the result section.
    EXPECT_FALSE(resampleCurve(store, *results, "bad", curve, 4, 1, 1, resampled, error));
    EXPECT_EQ(error, "Resampling needs an end at or above its start.");
    EXPECT_EQ(results->getNbOfVariables(), 2u);
}
