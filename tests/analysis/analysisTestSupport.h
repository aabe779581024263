// Helpers of the analysis tests: the numpy oracle's arrays in a scratch folder, and curves made
// in a store.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "../base/testSupport.h"
#include "expressions/cPostProcessCurveDescription.h"
#include "model/cCurvePlotDataFile.h"
#include "model/cCurvePlotDataSection.h"

namespace zwanalysis {

// The oracle's arrays, written once into a folder of their own for the test.
class cOracle {
public:
    cOracle() : mFolder("zw_analysis_test_")
    {
        const std::string command = "/usr/bin/python3 '" + std::string(ZW_SOURCE_DIR) +
                                    "/tests/analysis/oracles/fft_oracle.py' make '" + mFolder.path() + "' 7";
        mMade = std::system(command.c_str()) == 0;
    }
    bool made() const { return mMade; }
    std::vector<double> read(const std::string& name) const
    {
        std::ifstream file(mFolder.file(name), std::ios::binary);
        std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        std::vector<double> values(bytes.size() / sizeof(double));
        std::memcpy(values.data(), bytes.data(), values.size() * sizeof(double));
        return values;
    }
    std::vector<std::complex<double>> readComplex(const std::string& re, const std::string& im) const
    {
        const auto r = read(re), i = read(im);
        std::vector<std::complex<double>> values(r.size());
        for (size_t k = 0; k < r.size() && k < i.size(); ++k)
            values[k] = {r[k], i[k]};
        return values;
    }

private:
    zwtest::cTempDir mFolder;
    bool mMade = false;
};

// A real or complex curve with its own x values, added to section; its index.
inline uint64_t addCurve(vx3::cCurvePlotDataFile& store, vx3::cCurvePlotDataSection& section, const std::string& name,
                         const std::vector<double>& x, const std::vector<double>& y)
{
    using namespace vx3;
    const uint64_t index =
        section.addVariable(store.addType(name, curvePlotProperties::parameterized_double, curvePlotDataType::volt), name);
    section.getVariable(index).setParameterizedDoubleValues(x.data(), y.data(), x.size());
    return index;
}

inline uint64_t addCurve(vx3::cCurvePlotDataFile& store, vx3::cCurvePlotDataSection& section, const std::string& name,
                         const std::vector<double>& x, const std::vector<std::complex<double>>& y)
{
    using namespace vx3;
    const uint64_t index = section.addVariable(
        store.addType(name, curvePlotProperties::parameterized_double_complex, curvePlotDataType::volt), name);
    section.getVariable(index).setParameterizedDoubleComplexValues(x.data(), y.data(), x.size());
    return index;
}

// The x values of a curve and its y values as complex numbers (real ones with no imaginary part).
struct cCurveValues {
    std::vector<double> x;
    std::vector<std::complex<double>> y;
};

// A test failure when the curve has no values or no x of its own.
inline cCurveValues readCurve(const vx3::cPostProcessCurveDescription& curve)
{
    cCurveValues values;
    vx3::curvePlotFunctionArgs::cDataVectors vectors;
    std::string message;
    EXPECT_TRUE(curve.computeDataVectors(vectors, message)) << message;
    EXPECT_TRUE(vectors.xDouble) << curve.getName() << " has no x values";
    if (!vectors.xDouble)
        return values;
    values.x.assign(vectors.xDouble, vectors.xDouble + vectors.count);
    values.y.resize(vectors.count);
    for (uint64_t i = 0; i < vectors.count; ++i)
        values.y[i] = vectors.yDoubleComplex ? vectors.yDoubleComplex[i] : std::complex<double>(vectors.yDouble[i], 0.0);
    return values;
}

// Both vectors alike within tolerance * (1 + |expected|) at every index.
template <class T>
void expectClose(const std::vector<T>& got, const std::vector<T>& expected, double tolerance, const std::string& what)
{
    ASSERT_EQ(got.size(), expected.size()) << what;
    for (size_t i = 0; i < got.size(); ++i)
        ASSERT_LE(std::abs(got[i] - expected[i]), tolerance * (1 + std::abs(expected[i])))
            << what << " at " << i << ": " << got[i] << " against " << expected[i];
}

}  // namespace zwanalysis
