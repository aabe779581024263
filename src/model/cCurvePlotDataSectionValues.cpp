// Values of a section's curves as a whole: the vectors of one cut of a sweep matrix, closing the
// gaps readers leave, and the extremes of what is loaded.
#include "model/cCurvePlotDataSection.h"
#include "model/cDataVectors.h"

namespace vx3 {

using namespace curvePlotProperties;

const double* cCurvePlotDataSection::getXAxisDoubleValues(uint64_t& count) const
{
    count = 0;
    if (mSweepVariables.empty())
        return nullptr;
    const cCurvePlotSweepVariable& sweep = mSweepVariables.back();
    const unsigned type = sweep.getDataType();
    // Integer time axes are 8 bytes too, but no doubles.
    if (!sweep.checkHasStorage() || sweep.checkIsParameterizedLayout() || sweep.getElementSize() != sizeof(double) ||
        type == uint_64 || type == int_64)
        return nullptr;
    count = sweep.getVectorSize();
    return sweep.doubleValues();
}

double cCurvePlotDataSection::getTimeScaleFactor() const
{
    if (mSweepVariables.empty())
        return 1.0;
    const cCurvePlotProperties* properties = getSweepVariableProperties(mSweepVariables.size() - 1);
    if (!properties)
        return 1.0;
    const size_t index = properties->findProperty(curvePlotProperties::scale);
    double factor = 1.0;
    if (index >= properties->getNbOfProperties() || !properties->getProperty(index).getAsDouble(factor) ||
        !(factor > 0))
        return 1.0;
    return factor;
}

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
        if (count + 1 == points && curve.repeatPreviousValue())
            ++extended;
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
