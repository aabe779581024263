// The axis's unit, label and scale factor, taken from the curves it shows, and the taking over of
// another axis.
#include <cmath>
#include <ctime>

#include "model/cCurvePlotDataSection.h"
#include "model/cCurvePlotDataType.h"
#include "model/cCurvePlotVariable.h"
#include "model/dataUnit.h"
#include "plot/plotWindowType.h"
#include "plot/wxCurveDescription.h"
#include "plot/wxSinglePlotWidgetAxis.h"

namespace vx3 {

using namespace singlePlotWidgetAxis;

namespace {

// Polar and Smith grids show magnitudes and normalised values without a unit.
constexpr unsigned no_unit = 2;

// The symbol a label shows for a unit. Seconds have no short text in the unit table (a time
// axis is named by its variable), but a scaled time axis must read "ns", not "n".
std::string unitSymbol(unsigned unit)
{
    const char* text = curvePlotDataType::unitToShortString(unit);
    if (*text)
        return text;
    return unit == curvePlotDataType::second ? "s" : std::string();
}

std::string unitTextOf(unsigned unit, const cCurvePlotVariable* variable, bool typeNameAsUnit)
{
    std::string text = unitSymbol(unit);
    if (!text.empty())
        return text;
    // Units outside the vocabulary read as the file spelled them; values without a unit by
    // their type's name, on a value axis.
    if (variable && variable->getType()) {
        if (!variable->getType()->getUnitString().empty())
            return variable->getType()->getUnitString();
        if (typeNameAsUnit)
            return variable->getType()->name();
    }
    return std::string();
}

// The conversion of complex values changes what the unit means (V(mag), degree); real values
// are shown as they are.
unsigned convertedUnit(const wxCurveDescriptionBase& description, unsigned conversion)
{
    const cCurvePlotVariable* variable = description.curvePlotVariableOrIdentical();
    const unsigned unit = description.getVariableUnitIdentifier();
    if (!variable || !variable->getType() || !variable->getType()->checkIsComplex())
        return unit;
    return curvePlotDataType::applyConversionToUnit(unit, conversion);
}

}  // namespace

void wxSinglePlotWidgetAxis::init(const wxCurveDescriptionBase& description, unsigned conversion)
{
    const cCurvePlotVariable* variable = description.curvePlotVariableOrIdentical();
    if (!variable)
        return;
    const unsigned unit = convertedUnit(description, conversion);
    mDataUnitIdentifier = waveExplorerWidgetVirtual::checkIsPolarOrSmithGrid(mGridType) ? no_unit : unit;
    mUnitText = unitTextOf(unit, variable, true);
    mAxisName.clear();
    mEnumerationTexts.clear();
    if (variable->getType() && variable->getType()->checkIsEnum())
        mEnumerationTexts = variable->getType()->getStrings();
    mCacheValid = false;
    adjustScaleFactor(description, conversion);
}

void wxSinglePlotWidgetAxis::initSweep(const wxCurveDescriptionBase& description, bool resetLabel)
{
    if (!description.checkIsVariable())
        return;
    if (resetLabel) {
        mLabelSetByUser = false;
        mScaleSetByUser = false;
    }
    const unsigned unit = description.getSweepVariableUnitIdentifier();
    mDataUnitIdentifier = waveExplorerWidgetVirtual::checkIsPolarOrSmithGrid(mGridType) ? no_unit : unit;
    mAxisName = description.getSweepVariableName();
    const cCurvePlotDataSection* section = description.getSection();
    mUnitText = unitTextOf(unit, section->getNbOfSweepVariables() ? &section->getSweepVariable(section->getNbOfSweepVariables() - 1)
                                                                   : nullptr,
                           false);
    mEnumerationTexts.clear();
    mTimeStampAsDate = checkIsTimeStampAxis();
    mCacheValid = false;
    adjustScaleFactor(description, 0);
}

void wxSinglePlotWidgetAxis::adjustScaleFactor(const wxCurveDescriptionBase& description, unsigned conversion)
{
    if (waveExplorerWidgetVirtual::checkIsPolarOrSmithGrid(mGridType)) {
        mDataUnitIdentifier = no_unit;
        resetPolarOrSmithLabelAndScaleFactor(checkIsVerticalAxis());
        return;
    }
    if (mUnitText.empty() && description.checkIsVariable())
        mUnitText = unitTextOf(convertedUnit(description, conversion), description.curvePlotVariableOrIdentical(), true);
    if (!mScaleSetByUser) {
        std::string label;
        double multiplier = 1.0;
        if (!checkIsTimeStampAxis())
            curvePlotDataType::getLabelAndScaleFactor(mDataUnitIdentifier, mUnitText, mMin, mMax, label, multiplier);
        const int exponent = static_cast<int>(std::lround(-std::log10(multiplier)));
        mLabelScaleFactor = multiplier;
        mScaleFactorPrefix = multiplier == 1.0 ? std::string() : curvePlotDataType::exponentToUnit(exponent);
        mCacheValid = false;
    }
    updateLabel();
}

void wxSinglePlotWidgetAxis::updateLabel()
{
    if (mLabelSetByUser || waveExplorerWidgetVirtual::checkIsPolarOrSmithGrid(mGridType))
        return;
    std::string unit = mScaleFactorPrefix + mUnitText;
    if (checkIsTimeStampAxis() && mTimeStampAsDate)
        unit = getTimeZoneText();
    if (mAxisName.empty())
        mLabel = unit;
    else
        mLabel = unit.empty() ? mAxisName : mAxisName + " [" + unit + "]";
}

std::string wxSinglePlotWidgetAxis::getTimeZoneText() const
{
    if (!mSettings.timeZoneText.empty())
        return mSettings.timeZoneText;
    if (!mSettings.timeStampLocalTime)
        return "UTC";
    const time_t now = static_cast<time_t>(std::isfinite(mMin) && std::fabs(mMin) < 1e15 ? mMin : 0.0);
    struct tm parts {};
    localtime_r(&now, &parts);
    char buffer[32];
    const size_t length = std::strftime(buffer, sizeof buffer, "%Z", &parts);
    return length ? std::string(buffer, length) : std::string("local time");
}

void wxSinglePlotWidgetAxis::resetLabel(const std::string& label)
{
    mLabelSetByUser = !label.empty();
    if (mLabelSetByUser)
        mLabel = label;
    else
        updateLabel();
}

void wxSinglePlotWidgetAxis::setScaleFactorByUser(double factor, const std::string& prefix)
{
    if (!(factor > 0.0) || !std::isfinite(factor))
        return;
    setLabelScaleFactor(factor, prefix);
    mScaleSetByUser = true;
    mCacheValid = false;
    updateLabel();
}

void wxSinglePlotWidgetAxis::resetLabelAndScaleFactor()
{
    mLabelSetByUser = false;
    mScaleSetByUser = false;
    mLabelScaleFactor = 1.0;
    mScaleFactorPrefix.clear();
    mCacheValid = false;
    updateLabel();
}

unsigned wxSinglePlotWidgetAxis::getCorrespondingColor(bool enabled) const
{
    const bool delta = mDeltaReferenceIndex >= 0;
    if (enabled)
        return delta ? mSettings.deltaAxisColour : mSettings.axisColour;
    return delta ? mSettings.disabledDeltaAxisColour : mSettings.disabledAxisColour;
}

bool wxSinglePlotWidgetAxis::replaceByEnumStringValue(double value, std::string& text) const
{
    if (mEnumerationTexts.empty() || !std::isfinite(value) || value < 0.0 || value != std::floor(value) ||
        value >= static_cast<double>(mEnumerationTexts.size()))
        return false;
    text = mEnumerationTexts[static_cast<size_t>(value)];
    return true;
}

void wxSinglePlotWidgetAxis::synchronizeAxis(const wxSinglePlotWidgetAxis& other)
{
    if (&other == this)
        return;
    mIsLog = other.mIsLog;
    mScale = other.mScale;
    mInverseScale = other.mInverseScale;
    mMin = other.mMin;
    mMax = other.mMax;
    mLogOffset = other.mLogOffset;
    mPixelOfMin = other.mPixelOfMin;
    mDataUnitIdentifier = other.mDataUnitIdentifier;
    mLabel = other.mLabel;
    mAxisName = other.mAxisName;
    mUnitText = other.mUnitText;
    mScaleFactorPrefix = other.mScaleFactorPrefix;
    mLabelScaleFactor = other.mLabelScaleFactor;
    mLabelSetByUser = other.mLabelSetByUser;
    mScaleSetByUser = other.mScaleSetByUser;
    mBoundingBoxMin = other.mBoundingBoxMin;
    mBoundingBoxMax = other.mBoundingBoxMax;
    mBoundingBoxInitialised = other.mBoundingBoxInitialised;
    mEnumerationTexts = other.mEnumerationTexts;
    mTimeStampConversion = other.mTimeStampConversion;
    mTimeStampAsDate = other.mTimeStampAsDate;
    mPixelCacheStale = true;
    mCacheValid = false;
}

bool wxSinglePlotWidgetAxis::synchronizeAxis(const wxSinglePlotWidgetAxis& other, double pixelLow, double pixelHigh)
{
    if (&other == this)
        return setView(mMin, mMax, pixelLow, pixelHigh);
    const cSavedView saved = saveView();
    const bool wasLog = mIsLog;
    mIsLog = other.mIsLog;
    if (!setView(other.mMin, other.mMax, pixelLow, pixelHigh)) {
        mIsLog = wasLog;
        restoreView(saved);
        return false;
    }
    const double min = mMin, max = mMax, scale = mScale, inverse = mInverseScale, offset = mLogOffset,
                 pixelOfMin = mPixelOfMin;
    synchronizeAxis(other);
    mMin = min;
    mMax = max;
    mScale = scale;
    mInverseScale = inverse;
    mLogOffset = offset;
    mPixelOfMin = pixelOfMin;
    return true;
}

bool wxSinglePlotWidgetAxis::synchronizeAxis(double min, double max, double pixelLow, double pixelHigh)
{
    const cSavedView saved = saveView();
    if (setView(min, max, pixelLow, pixelHigh)) {
        mCacheValid = false;
        return true;
    }
    restoreView(saved);
    return false;
}

}  // namespace vx3
