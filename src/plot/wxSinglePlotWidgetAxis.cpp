#include "plot/wxSinglePlotWidgetAxis.h"

#include <algorithm>
#include <cmath>

namespace vx3 {

using namespace singlePlotWidgetAxis;

wxSinglePlotWidgetAxis::wxSinglePlotWidgetAxis(const cAxisSettings& settings) : mSettings(settings) {}

void wxSinglePlotWidgetAxis::setScale(double scale)
{
    mScale = scale;
    mInverseScale = scale == 0.0 ? 1.0 : 1.0 / scale;
    mPixelCacheStale = true;
}

int wxSinglePlotWidgetAxis::getTickCrossSize() const
{
    return static_cast<int>(std::lround(mSettings.tickCrossSize * 6.0));
}

bool wxSinglePlotWidgetAxis::setView(double min, double max, double pixelLow, double pixelHigh)
{
    if (mIsLog)
        return updateScaleForLogAxis(min, max, pixelLow, pixelHigh);
    if (!(max > min) || !checkValuesWithinLimits(min, max, max - min) || !(pixelHigh > pixelLow))
        return false;
    mMin = min;
    mMax = max;
    mPixelOfMin = pixelLow;
    setScale((pixelHigh - pixelLow) / (max - min));
    return true;
}

void wxSinglePlotWidgetAxis::setLabelScaleFactor(double factor, const std::string& prefix)
{
    if (!(factor > 0.0) || !std::isfinite(factor))
        return;
    mLabelScaleFactor = 1.0 / factor;
    mScaleFactorPrefix = prefix;
}

bool wxSinglePlotWidgetAxis::checkIsTimeStampAxis() const
{
    return mDataUnitIdentifier == time_stamp_unit_identifier;
}

bool wxSinglePlotWidgetAxis::setBoundingBox(double min, double max)
{
    if (std::isnan(min) || std::isnan(max))
        return false;
    if (min > max)
        std::swap(min, max);
    const bool changed = !mBoundingBoxInitialised || min != mBoundingBoxMin || max != mBoundingBoxMax;
    mBoundingBoxMin = min;
    mBoundingBoxMax = max;
    mBoundingBoxInitialised = true;
    if (changed && checkIsTimeStampAxis())
        mTimeStampAsDate = true;  // a box of epoch seconds reads best as dates and clock times
    return changed;
}

void wxSinglePlotWidgetAxis::fixBBoxValues(double& min, double& max)
{
    if (!std::isfinite(min))
        min = std::isfinite(max) ? max - 1.0 : 0.0;
    if (!std::isfinite(max))
        max = min + 1.0;
    if (min > max)
        std::swap(min, max);
    if (max - min < smallest_range) {
        // A constant curve: a window around its value that keeps the value readable.
        const double half = min == 0.0 ? 0.5 : std::fabs(min) * 0.5;
        min -= half;
        max += half;
    }
}

// --- mapping ------------------------------------------------------------------------------------

double wxSinglePlotWidgetAxis::toInt(double value) const
{
    if (mIsLog)
        return std::log10(value) * mScale + mLogOffset;
    return (value - mMin) * mScale + mPixelOfMin;
}

double wxSinglePlotWidgetAxis::toInt(double value, cDoubleDouble& exact) const
{
    exact = mIsLog ? toIntLog(cDoubleDouble(value)) : toIntLin(cDoubleDouble(value));
    return exact.toDouble();
}

double wxSinglePlotWidgetAxis::toDouble(double pixel) const
{
    if (mIsLog)
        return std::pow(10.0, (pixel - mLogOffset) * mInverseScale);
    return (pixel - mPixelOfMin) * mInverseScale + mMin;
}

cDoubleDouble wxSinglePlotWidgetAxis::toDoubleExact(double pixel) const
{
    if (mIsLog)
        return cDoubleDouble(toDouble(pixel));
    return cDoubleDouble::twoProduct(pixel - mPixelOfMin, mInverseScale) + mMin;
}

cDoubleDouble wxSinglePlotWidgetAxis::toIntLin(const cDoubleDouble& value) const
{
    return (value - mMin) * mScale + mPixelOfMin;
}

cDoubleDouble wxSinglePlotWidgetAxis::toIntLog(const cDoubleDouble& value) const
{
    return cDoubleDouble::twoProduct(std::log10(value.toDouble()), mScale) + mLogOffset;
}

double wxSinglePlotWidgetAxis::toDoubleDistanceLog(double pixels) const
{
    return std::pow(10.0, pixels * mInverseScale);
}

double wxSinglePlotWidgetAxis::pixelPositionOf(const cDoubleDouble& value) const
{
    return (mIsLog ? toIntLog(value) : toIntLin(value)).toDouble();
}

// --- zoom and scroll ----------------------------------------------------------------------------

wxSinglePlotWidgetAxis::cSavedView wxSinglePlotWidgetAxis::saveView() const
{
    return cSavedView{mScale, mInverseScale, mMin, mMax, mLogOffset, mPixelOfMin};
}

void wxSinglePlotWidgetAxis::restoreView(const cSavedView& saved)
{
    mScale = saved.scale;
    mInverseScale = saved.inverse;
    mMin = saved.min;
    mMax = saved.max;
    mLogOffset = saved.logOffset;
    mPixelOfMin = saved.pixelOfMin;
}

bool wxSinglePlotWidgetAxis::checkValuesWithinLimits(double min, double max, double range) const
{
    if (!std::isfinite(min) || !std::isfinite(max) || !std::isfinite(range))
        return false;
    if (range < smallest_range)
        return false;
    if (std::fabs(min) >= largest_value || std::fabs(max) >= largest_value)
        return false;
    if (mIsLog && (min <= smallest_log_value || max <= smallest_log_value))
        return false;
    return true;
}

void wxSinglePlotWidgetAxis::recomputeScaleFromPixels(double pixelLow, double pixelHigh)
{
    if (mIsLog) {
        setScale((pixelHigh - pixelLow) / (std::log10(mMax) - std::log10(mMin)));
        mLogOffset = pixelLow - std::log10(mMin) * mScale;
    } else {
        setScale((pixelHigh - mPixelOfMin) / (mMax - mMin));
    }
}

bool wxSinglePlotWidgetAxis::zoomFactor(double factor, double centre, double pixelLow, double pixelHigh)
{
    if (!(factor > 0.0) || !std::isfinite(factor) || !std::isfinite(centre))
        return false;
    if (mIsLog && !(centre > 0.0))
        return false;
    const double dataLow = toDouble(pixelLow);
    const double dataHigh = toDouble(pixelHigh);
    const cSavedView saved = saveView();
    if (mIsLog) {
        // Keep the pixel of the centre where it is.
        const double logCentre = std::log10(centre);
        const double pixelOfCentre = logCentre * mScale + mLogOffset;
        setScale(factor * mScale);
        mLogOffset = pixelOfCentre - logCentre * mScale;
        mMin = toDouble(pixelLow);
    } else {
        setScale(factor * mScale);
        mMin = ((factor - 1.0) * centre + mMin) / factor;
    }
    mMax = toDouble(pixelHigh);
    if (mSettings.zoomLimit) {
        double allowedMin = 0.0, allowedMax = 0.0;
        getZoomRangeMinMax(allowedMin, allowedMax, mMax - mMin);
        const double min = std::max(mMin, allowedMin);
        const double max = std::min(mMax, allowedMax);
        if ((min != mMin || max != mMax) && max > min) {
            mMin = min;
            mMax = max;
            recomputeScaleFromPixels(pixelLow, pixelHigh);
        }
    }
    const bool refused = !checkValuesWithinLimits(mMin, mMax, mMax - mMin) || mScale == saved.scale ||
                         (toDouble(pixelLow) == dataLow && toDouble(pixelHigh) == dataHigh);
    if (refused) {
        restoreView(saved);
        return false;
    }
    mPixelCacheStale = true;
    return true;
}

bool wxSinglePlotWidgetAxis::checkAxisMaxZoomExceeded(double factor) const
{
    if (!(factor > 0.0) || !std::isfinite(factor))
        return true;
    if (mIsLog) {
        if (!(mMin > 0.0) || !(mMax > 0.0))
            return true;
        const double low = std::log10(mMin), high = std::log10(mMax);
        const double middle = 0.5 * (low + high), half = 0.5 * (high - low) / factor;
        const double min = std::pow(10.0, middle - half), max = std::pow(10.0, middle + half);
        return !checkValuesWithinLimits(min, max, max - min);
    }
    const double middle = 0.5 * (mMin + mMax), half = 0.5 * (mMax - mMin) / factor;
    return !checkValuesWithinLimits(middle - half, middle + half, 2.0 * half);
}

bool wxSinglePlotWidgetAxis::checkAxisMaxZoomExceeded(double factor, double centre, double pixelLow,
                                                      double pixelHigh) const
{
    // Try the zoom on a copy of the view and put everything back.
    auto& self = const_cast<wxSinglePlotWidgetAxis&>(*this);
    const cSavedView saved = saveView();
    const bool stale = mPixelCacheStale;
    const bool changed = self.zoomFactor(factor, centre, pixelLow, pixelHigh);
    self.restoreView(saved);
    self.mPixelCacheStale = stale;
    return !changed;
}

void wxSinglePlotWidgetAxis::getZoomRangeMinMax(double& min, double& max) const
{
    getZoomRangeMinMax(min, max, mMax - mMin);
}

void wxSinglePlotWidgetAxis::getZoomRangeMinMax(double& min, double& max, double range) const
{
    double boxMin = mBoundingBoxMin, boxMax = mBoundingBoxMax;
    fixBBoxValues(boxMin, boxMax);
    if (mIsLog && boxMin > 0.0 && mMin > 0.0 && mMax > 0.0) {
        // On a log axis the margin is a share of the decades.
        const double logMin = std::log10(boxMin), logMax = std::log10(boxMax);
        const double viewDecades = std::log10(mMax) - std::log10(mMin);
        const double margin = mZoomLimitMargin * std::min(viewDecades, logMax - logMin);
        min = std::pow(10.0, logMin - margin);
        max = std::pow(10.0, logMax + margin);
        return;
    }
    const double margin = mZoomLimitMargin * std::min(std::fabs(range), boxMax - boxMin);
    min = boxMin - margin;
    max = boxMax + margin;
}

void wxSinglePlotWidgetAxis::limitZoomRange(double& min, double& max) const
{
    if (!mSettings.zoomLimit || !(max >= min))
        return;
    double boxMin = mBoundingBoxMin, boxMax = mBoundingBoxMax;
    fixBBoxValues(boxMin, boxMax);
    // Twice: shifting the view changes how much of the box it shows, and with it the margin.
    for (int pass = 0; pass < 2; ++pass) {
        const double visible = std::max(0.0, std::min(max, boxMax) - std::max(min, boxMin));
        const double margin = mZoomLimitMargin * std::min(visible, boxMax - boxMin);
        const double allowedMin = boxMin - margin, allowedMax = boxMax + margin;
        const double width = max - min;
        if (width >= allowedMax - allowedMin) {
            min = allowedMin;
            max = allowedMax;
        } else if (min < allowedMin) {
            min = allowedMin;
            max = allowedMin + width;
        } else if (max > allowedMax) {
            max = allowedMax;
            min = allowedMax - width;
        }
    }
}

bool wxSinglePlotWidgetAxis::scrollLinear(double distance)
{
    if (!std::isfinite(distance) || distance == 0.0)
        return false;
    if (mSettings.zoomLimit) {
        double allowedMin = 0.0, allowedMax = 0.0;
        getZoomRangeMinMax(allowedMin, allowedMax);
        if (distance < 0.0 && mMin + distance < allowedMin)
            distance = std::min(0.0, allowedMin - mMin);
        if (distance > 0.0 && mMax + distance > allowedMax)
            distance = std::max(0.0, allowedMax - mMax);
        if (distance == 0.0)
            return false;
    }
    const double min = mMin + distance, max = mMax + distance;
    if (!checkValuesWithinLimits(min, max, max - min) || (min == mMin && max == mMax))
        return false;
    mMin = min;
    mMax = max;
    mPixelCacheStale = true;
    return true;
}

bool wxSinglePlotWidgetAxis::scroll(double pixels)
{
    if (!mIsLog)
        return scrollLinear(pixels * mInverseScale);
    if (!std::isfinite(pixels) || pixels == 0.0)
        return false;
    const double newMin = toDouble(toInt(mMin) + pixels);
    if (!(newMin > smallest_log_value))
        return false;
    const double factor = newMin / mMin;
    const double newMax = mMax * factor;
    if (!checkValuesWithinLimits(newMin, newMax, newMax - newMin))
        return false;
    mLogOffset -= pixels;
    mMin = newMin;
    mMax = newMax;
    mPixelCacheStale = true;
    return true;
}

bool wxSinglePlotWidgetAxis::updateScaleForLogAxis(double min, double max, double pixelLow, double pixelHigh)
{
    if (!mIsLog)
        return false;
    if (!(min > 0.0)) {
        min = 1e-15;
        if (mBoundingBoxMin != min)
            mBoundingBoxMin = min;
    }
    if (!(max > min) || !(pixelHigh > pixelLow) || !std::isfinite(max))
        return false;
    const cSavedView saved = saveView();
    mMin = min;
    mMax = max;
    mPixelOfMin = pixelLow;
    recomputeScaleFromPixels(pixelLow, pixelHigh);
    if (!checkValuesWithinLimits(mMin, mMax, mMax - mMin) || !std::isfinite(mScale)) {
        restoreView(saved);
        return false;
    }
    return true;
}

void wxSinglePlotWidgetAxis::computeMinMaxUpdate(double pixelLow, double pixelHigh)
{
    // The drawers take this range as their window; 5 pixels more on each side let curves run
    // on past the edge of the strip instead of stopping short of it.
    mUpdatePixelLow = pixelLow;
    mUpdatePixelHigh = pixelHigh;
    mUpdateMin = toDouble(pixelLow - 5.0);
    mUpdateMax = toDouble(pixelHigh + 5.0);
    const double range = std::fabs(mUpdateMax - mUpdateMin);
    mLabelPrecision = std::max(6, computeRequiredPrecision(mUpdateMin, mUpdateMax, 0.01 * range));
}

}  // namespace vx3
