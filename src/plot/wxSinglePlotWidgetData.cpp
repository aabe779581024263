#include "plot/wxSinglePlotWidgetData.h"

#include <cmath>
#include <complex>

#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotVariable.h"
#include "model/dataUnit.h"
#include "model/derivedCurveFunction.h"

namespace vx3 {

using namespace singlePlotWidgetData;

namespace {

struct cExtremes {
    double min = NAN, max = NAN;
    uint64_t minIndex = 0, maxIndex = 0;
    void take(double value, uint64_t index)
    {
        if (!std::isfinite(value))
            return;  // NaN breaks a curve and infinities have no place on an axis
        if (std::isnan(min) || value < min) {
            min = value;
            minIndex = index;
        }
        if (std::isnan(max) || value > max) {
            max = value;
            maxIndex = index;
        }
    }
};

}  // namespace

wxSinglePlotWidgetData::wxSinglePlotWidgetData(const wxCurveDescription& description, unsigned realConversion,
                                               unsigned imagConversion)
    : mDescription(description), mRealConversion(realConversion), mImagConversion(imagConversion)
{
    if (!checkIsComplex()) {
        mRealConversion = derivedCurveFunction::real_part;
        mImagConversion = part_hidden;
    }
}

bool wxSinglePlotWidgetData::checkIsComplex() const
{
    if (!mDescription.checkIsVariable())
        return false;
    return curvePlotProperties::checkIsComplexDataType(mDescription.curvePlotVariable().getDataType());
}

unsigned wxSinglePlotWidgetData::unitOfConversion(unsigned conversion, bool imaginary) const
{
    using namespace derivedCurveFunction;
    const unsigned unit = mDescription.getVariableUnitIdentifier();
    if (!checkIsComplex())
        return unit;
    const bool angleShown = conversion == angle || (imaginary && (conversion == magnitude_and_angle ||
                                                                  conversion == magnitude_in_db_and_angle));
    if (angleShown)
        return curvePlotDataType::degree;
    if (conversion == magnitude_in_db || conversion == magnitude_in_db_and_angle)
        return curvePlotDataType::decibel;
    return unit;
}

bool wxSinglePlotWidgetData::computeDerivedMinMaxValuesIfNecessary(bool force)
{
    if (mMinMaxInitialized && !force)
        return true;
    mMinX = mMaxX = mRealMinY = mRealMaxY = mImagMinY = mImagMaxY = NAN;
    mMinXIndex = mMaxXIndex = mRealMinYIndex = mRealMaxYIndex = mImagMinYIndex = mImagMaxYIndex = 0;
    if (!mDescription.checkIsVariable())
        return false;
    const cCurvePlotDataSection& section = *mDescription.getSection();
    if (const cCurvePlotDataType* type = mDescription.curvePlotVariable().getType(); type && type->checkIsDigital())
        return computeDigitalMinMaxValues(section);
    curvePlotFunctionArgs::cDataVectors vectors;
    if (!mDescription.curvePlotVariable().computeDataVectors(section, vectors) || !vectors.count)
        return false;
    const uint64_t count = vectors.count;
    cExtremes x, real, imag;
    for (uint64_t i = 0; i < count; ++i) {
        const uint64_t xi = i * vectors.xStride;
        if (vectors.xDouble)
            x.take(vectors.xDouble[xi], i);
        else if (vectors.xFloat)
            x.take(vectors.xFloat[xi], i);
        else if (vectors.xUint64)
            x.take(static_cast<double>(vectors.xUint64[xi]) * static_cast<double>(vectors.timeScaleFactor), i);
        else
            x.take(static_cast<double>(i), i);  // no x vector: the sample index
    }
    const bool complex = vectors.yDoubleComplex || vectors.yFloatComplex;
    for (uint64_t i = 0; i < count; ++i) {
        const uint64_t yi = i * vectors.yStride;
        if (!complex) {
            real.take(vectors.yDouble ? vectors.yDouble[yi] : vectors.yFloat ? double(vectors.yFloat[yi]) : NAN, i);
            continue;
        }
        const std::complex<double> value = vectors.yDoubleComplex
                                               ? vectors.yDoubleComplex[yi]
                                               : std::complex<double>(vectors.yFloatComplex[yi].real(),
                                                                      vectors.yFloatComplex[yi].imag());
        if (checkRealPartShown())
            real.take(cDerivedCurveFunction::convertComplexValue(value, mRealConversion, false), i);
        if (mImagConversion != part_hidden) {
            // A conversion that shows two values shows its second one in this slot.
            const bool second = derivedCurveFunction::checkConversionHasTwoValues(mImagConversion);
            imag.take(cDerivedCurveFunction::convertComplexValue(value, mImagConversion, second), i);
        }
    }
    mMinX = x.min, mMaxX = x.max, mMinXIndex = x.minIndex, mMaxXIndex = x.maxIndex;
    mRealMinY = real.min, mRealMaxY = real.max, mRealMinYIndex = real.minIndex, mRealMaxYIndex = real.maxIndex;
    mImagMinY = imag.min, mImagMaxY = imag.max, mImagMinYIndex = imag.minIndex, mImagMaxYIndex = imag.maxIndex;
    mMinMaxInitialized = true;
    return true;
}

// Logic states keep their changes as sparse records: the curve spans the section's time axis (the
// whole dump, so that the last state shows up to its end) and its levels run from 0 to 1.
bool wxSinglePlotWidgetData::computeDigitalMinMaxValues(const cCurvePlotDataSection& section)
{
    const uint64_t last = section.getNbOfSweepVariables() - 1;
    const uint64_t count = section.getNbOfSweepVariables() ? section.getSweepVariableSize(last) : 0;
    if (!count)
        return false;
    mMinX = section.getSweepValue(last, 0);
    mMaxX = section.getSweepValue(last, count - 1);
    mMaxXIndex = count - 1;
    if (!(mMinX <= mMaxX))
        return false;
    mRealMinY = 0.0;
    mRealMaxY = 1.0;
    mMinMaxInitialized = true;
    return true;
}

bool wxSinglePlotWidgetData::checkIfPlotIsIdentical(const wxCurveDescription& other) const
{
    return mDescription.getSection() == other.getSection() && mDescription.getCurveIndex() == other.getCurveIndex() &&
           mDescription.postProcessState().sweepIndex == other.postProcessState().sweepIndex &&
           mDescription.postProcessState().cutIndex == other.postProcessState().cutIndex;
}

bool wxSinglePlotWidgetData::checkIfPlotIsIdentical(const wxSinglePlotWidgetData& other) const
{
    return checkIfPlotIsIdentical(other.mDescription);
}

bool wxSinglePlotWidgetData::checkVariableWasReloaded() const
{
    return mDescription.checkIsVariable() && mDescription.curvePlotVariable().checkWasReloaded();
}

bool wxSinglePlotWidgetData::checkIsMarkedForClosing() const
{
    return mDescription.checkIsVariable() && mDescription.curvePlotVariable().checkMustClose();
}

}  // namespace vx3
