// Values of a section's curves as a whole: the vectors of one cut of a sweep matrix, closing the
// gaps readers leave, and the extremes of what is loaded.
#include "model/cCurvePlotDataSection.h"
#include "model/cDataVectors.h"

#include <cstring>

namespace vx3 {

using namespace curvePlotProperties;

namespace sectionValues {
namespace {
// One sample of N bytes, whatever its type.
template <size_t N>
struct cBytes {
    char bytes[N];
    static cBytes from(const char* data)
    {
        cBytes value;
        std::memcpy(value.bytes, data, N);
        return value;
    }
};
}  // namespace
}  // namespace sectionValues

bool cCurvePlotDataSection::computeSweepDataVectors(uint64_t curveIndex, uint64_t cutIndex,
                                                    const std::vector<uint64_t>& permutation,
                                                    curvePlotFunctionArgs::cDataVectors& vectors) const
{
    if (curveIndex >= mVariables.size())
        return false;
    const cCurvePlotVariable& curve = mVariables[curveIndex];
    const uint64_t sweeps = mSweepVariables.size();
    if (sweeps < 2)
        return curve.computeDataVectors(*this, vectors);
    std::vector<uint64_t> order = permutation;
    if (order.size() != sweeps)
        getDefaultSweepPermutationArray(order);
    std::vector<uint64_t> sweepIndices;
    if (cutIndex >= computeNbOfCutsPerCurve() || !computeSweepIndicesForCut(cutIndex, order, sweepIndices))
        return false;
    // The whole block first; the cut is a strided window of it.
    static const cCurvePlotDataSection noSection(nullptr, std::string(), 0);
    curvePlotFunctionArgs::cDataVectors all;
    if (!curve.computeDataVectors(noSection, all) || all.checkHasX())
        return false;
    const uint64_t xSweep = order[sweeps - 1];
    const uint64_t points = getSweepVariableSize(xSweep);
    const uint64_t first = computeSweepMatrixCurveIndex(0, order, sweepIndices);
    const uint64_t stride = points > 1 ? computeSweepMatrixCurveIndex(1, order, sweepIndices) - first : 1;
    if (points == 0 || first + (points - 1) * stride >= all.count)
        return false;
    vectors = all;
    vectors.count = points;
    vectors.firstIndex = first;
    vectors.yStride = stride;
    if (all.yDouble)
        vectors.yDouble = all.yDouble + first;
    if (all.yFloat)
        vectors.yFloat = all.yFloat + first;
    if (all.yDoubleComplex)
        vectors.yDoubleComplex = all.yDoubleComplex + first;
    if (all.yFloatComplex)
        vectors.yFloatComplex = all.yFloatComplex + first;
    const cCurvePlotSweepVariable& x = mSweepVariables[xSweep];
    vectors.xType = x.getDataType();
    vectors.monotony = x.getMonotony();
    vectors.xStride = 1;
    if (x.checkHasStorage() && !x.checkIsParameterizedLayout() && x.getVectorSize() == points) {
        if (x.getElementSize() == sizeof(double) && x.getDataType() != uint_64 && x.getDataType() != int_64)
            vectors.xDouble = x.doubleValues();
        else if (x.getElementSize() == sizeof(float) && x.getDataType() == data_float)
            vectors.xFloat = x.floatValues();
    }
    return true;
}

uint64_t cCurvePlotDataSection::duplicateLastValueIfNecessary()
{
    if (mSweepVariables.empty())
        return 0;
    const uint64_t points = mSweepVariables.back().getVectorSize();
    uint64_t extended = 0;
    for (cCurvePlotVariable& curve : mVariables) {
        const uint64_t count = curve.getVectorSize();
        // A reader that stopped one value short of the x axis: the curve holds its last value.
        if (!curve.checkHasStorage() || curve.checkIsParameterizedLayout() || count == 0 || count + 1 != points)
            continue;
        const uint64_t size = curve.getElementSize();
        if (!size || size > 16)
            continue;
        char last[16];
        std::memcpy(last, curve.data() + (count - 1) * size, size);
        const bool growth = curve.getGrowthFlag();
        curve.setGrowthFlag(true);
        bool pushed = false;
        switch (size) {
        case 1: pushed = curve.pushBackValue(sectionValues::cBytes<1>::from(last)); break;
        case 2: pushed = curve.pushBackValue(sectionValues::cBytes<2>::from(last)); break;
        case 4: pushed = curve.pushBackValue(sectionValues::cBytes<4>::from(last)); break;
        case 8: pushed = curve.pushBackValue(sectionValues::cBytes<8>::from(last)); break;
        case 16: pushed = curve.pushBackValue(sectionValues::cBytes<16>::from(last)); break;
        default: break;
        }
        extended += pushed ? 1 : 0;
        curve.setGrowthFlag(growth);
    }
    return extended;
}

void cCurvePlotDataSection::balanceParameterizedCurves()
{
    for (cCurvePlotVariable& curve : mVariables)
        if (curve.checkIsParameterizedLayout())
            curve.balanceParameterizedCurve();
}

uint64_t cCurvePlotDataSection::computeMinMaxValuesOfLoadedCurves()
{
    uint64_t computed = 0;
    for (cCurvePlotVariable& curve : mVariables)
        if (curve.checkHasStorage() && !curve.getMinMax().initialized && curve.computeMinMaxValues())
            ++computed;
    return computed;
}

}  // namespace vx3
