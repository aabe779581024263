// Views of a plot: bounding boxes, fit and unzoom, zoom by factor and box, view history, scroll,
// the sliding window and the wheel steps gathered by a timer.
#include <algorithm>
#include <cmath>

#include "base/cVxLogger.h"
#include "plot/cPlotWidgetCommon.h"

namespace vx3 {

using namespace plotWidgetCommon;

namespace {

struct cRange {
    double min = NAN, max = NAN;
    bool checkIsSet() const { return !std::isnan(min); }
    void merge(double low, double high)
    {
        if (std::isnan(low) || std::isnan(high))
            return;  // a part without finite values contributes nothing
        if (!checkIsSet() || low < min)
            min = low;
        if (!checkIsSet() || std::isnan(max) || high > max)
            max = high;
    }
};

// Widens the boxes by the parts of a curve that are shown and have values.
void mergeShownParts(const wxSinglePlotWidgetData& curve, cRange& x, cRange (&y)[2])
{
    if (curve.checkRealPartShown() && !std::isnan(curve.getRealMinY())) {
        x.merge(curve.getMinX(), curve.getMaxX());
        y[curve.getRealAxis()].merge(curve.getRealMinY(), curve.getRealMaxY());
    }
    if (curve.checkImagPartShown() && !std::isnan(curve.getImagMinY())) {
        x.merge(curve.getMinX(), curve.getMaxX());
        y[curve.getImagAxis()].merge(curve.getImagMinY(), curve.getImagMaxY());
    }
}

// The zoom limit of a log axis, on decades: the view may leave the box by a share of its decades.
void limitLogZoomRange(const wxSinglePlotWidgetAxis& axis, double& min, double& max)
{
    if (!axis.getSettings().zoomLimit || !(min > 0.0) || !(max >= min) || !(axis.getBoundingBoxMin() > 0.0) ||
        !(axis.getBoundingBoxMax() >= axis.getBoundingBoxMin()))
        return;
    const double boxMin = std::log10(axis.getBoundingBoxMin()), boxMax = std::log10(axis.getBoundingBoxMax());
    double low = std::log10(min), high = std::log10(max);
    const double margin = axis.getZoomLimitMargin() * (boxMax - boxMin);
    const double allowedMin = boxMin - margin, allowedMax = boxMax + margin;
    const double width = high - low;
    if (width >= allowedMax - allowedMin) {
        low = allowedMin;
        high = allowedMax;
    } else if (low < allowedMin) {
        low = allowedMin;
        high = allowedMin + width;
    } else if (high > allowedMax) {
        high = allowedMax;
        low = allowedMax - width;
    } else {
        return;  // inside: the values stay exactly as given
    }
    min = std::pow(10.0, low);
    max = std::pow(10.0, high);
}

bool checkDiffers(const wxSinglePlotWidgetAxis& axis, double min, double max)
{
    return axis.getMin() != min || axis.getMax() != max;
}

}  // namespace

void cPlotWidgetCommon::printMessage(const std::string& text) const
{
    mLogger.warnMsg(text);
    if (mPage)
        mPage->analogPlotVirtualStatusBarMessage(vxLogger::warning, text);
}

void cPlotWidgetCommon::printMaxZoomReached() const
{
    printMessage("Maximum zoom range reached.");
}

void cPlotWidgetCommon::setSettings(const cPlotSettings& settings)
{
    mSettings = settings;
    if (!(mSettings.zoomStep > 0.0 && mSettings.zoomStep < 1.0))
        mSettings.zoomStep = 0.9;
    if (!(mSettings.margin >= 0.0 && mSettings.margin < 0.5))
        mSettings.margin = 0.01;
    for (wxSinglePlotWidgetAxis* axis : {static_cast<wxSinglePlotWidgetAxis*>(&mXAxis),
                                         static_cast<wxSinglePlotWidgetAxis*>(&mY0Axis),
                                         static_cast<wxSinglePlotWidgetAxis*>(&mY1Axis)}) {
        singlePlotWidgetAxis::cAxisSettings axisSettings = axis->getSettings();
        axisSettings.zoomLimit = mSettings.zoomLimit;
        axis->setSettings(axisSettings);
        // The unzoomed view has a lower margin of margin and an upper one of margin * (1 + margin):
        // the limit allows the larger on both sides so that it never clips an unzoom.
        axis->setZoomLimitMargin(mSettings.margin * (1.0 + mSettings.margin));
    }
}

void cPlotWidgetCommon::setCanvasLayout(const cCanvasLayout& layout)
{
    if (!(layout.xHigh > layout.xLow) || !(layout.yHigh > layout.yLow))
        return;  // no room: keep the last usable pixels
    if (layout == mLayout)
        return;
    mLayout = layout;
    applyAxisPixels();
    plotRequestFullRedraw();
}

void cPlotWidgetCommon::applyAxisPixels()
{
    mXAxis.setView(mXAxis.getMin(), mXAxis.getMax(), mLayout.xLow, mLayout.xHigh);
    mY0Axis.setView(mY0Axis.getMin(), mY0Axis.getMax(), mLayout.yLow, mLayout.yHigh);
    mY1Axis.setView(mY1Axis.getMin(), mY1Axis.getMax(), mLayout.yLow, mLayout.yHigh);
}

void cPlotWidgetCommon::setAxesToBitmapOrigin(bool toBitmap)
{
    if (!toBitmap) {
        applyAxisPixels();
        return;
    }
    const double width = mLayout.xHigh - mLayout.xLow, height = mLayout.yHigh - mLayout.yLow;
    mXAxis.setView(mXAxis.getMin(), mXAxis.getMax(), 0.0, width);
    mY0Axis.setView(mY0Axis.getMin(), mY0Axis.getMax(), 0.0, height);
    mY1Axis.setView(mY1Axis.getMin(), mY1Axis.getMax(), 0.0, height);
}

wxSinglePlotViewPort cPlotWidgetCommon::getCurrentView() const
{
    wxSinglePlotViewPort view{mXAxis.getMin(), mXAxis.getMax(), mY0Axis.getMin(), mY0Axis.getMax()};
    if (mY1Active) {
        view.push_back(mY1Axis.getMin());
        view.push_back(mY1Axis.getMax());
    }
    return view;
}

// --- bounding boxes -------------------------------------------------------------------------------

void cPlotWidgetCommon::fixBBoxValues(double& min, double& max, int windowType)
{
    if (min == max) {
        max = max * 1.001;
        min = min * 0.999;
        if (min == 0.0) {
            const bool digital = windowType == waveExplorerWidgetVirtual::digital_plot ||
                                 windowType == waveExplorerWidgetVirtual::mixed_signal_plot;
            max = 0.001;
            min = digital ? 0.0 : -0.001;
        }
    } else if (std::fabs(max - min) < smallest_zoom_range) {
        const double centre = (min + max) * 0.5;
        min = centre - 1e-10;
        max = centre + 1e-10;
        if (max - min < 1e-10) {
            min = 0.9999999999 * centre;
            max = 1.0000000001 * centre;
        }
    }
    if (min > max)
        std::swap(min, max);
}

bool cPlotWidgetCommon::setBoundingBoxes(double xmin, double xmax, double y0min, double y0max, double y1min,
                                         double y1max)
{
    bool changed = false;
    auto store = [&](wxSinglePlotWidgetAxis& axis, double min, double max) {
        fixBBoxValues(min, max);
        changed = axis.setBoundingBox(min, max) || changed;
    };
    store(mXAxis, xmin, xmax);
    store(mY0Axis, y0min, y0max);
    store(mY1Axis, y1min, y1max);
    if (changed && mPage)
        mPage->analogPlotVirtualComputeDefaultBoundingBox(this);
    return changed;
}

bool cPlotWidgetCommon::computeBoundingBox()
{
    cRange x, y[2];
    for (wxSinglePlotWidgetData& curve : mCurves) {
        curve.computeDerivedMinMaxValuesIfNecessary(false);
        mergeShownParts(curve, x, y);
    }
    if (!x.checkIsSet() || !y[0].checkIsSet() || !y[1].checkIsSet()) {
        if (mPage)
            mPage->analogPlotVirtualComputeDefaultBoundingBox(this);
        double min = 0.0, max = 1.0;
        if (!x.checkIsSet()) {
            if (mPage && mPage->analogPlotVirtualGetDefaultBoundingBoxX(this, min, max))
                x.merge(min, max);
            else
                x.merge(mXAxis.checkIsLog() ? 0.1 : 0.0, 1.0);
        }
        for (int axis = 0; axis < 2; ++axis) {
            if (y[axis].checkIsSet())
                continue;
            if (mPage && mPage->analogPlotVirtualGetDefaultBoundingBoxY(this, min, max))
                y[axis].merge(min, max);
            else
                y[axis].merge(0.0, 1.0);
        }
    }
    return setBoundingBoxes(x.min, x.max, y[0].min, y[0].max, y[1].min, y[1].max);
}

bool cPlotWidgetCommon::incrementBoundingBox(const wxSinglePlotWidgetData& curve)
{
    if (mCurves.size() < 2)
        return computeBoundingBox();
    cRange x{mXAxis.getBoundingBoxMin(), mXAxis.getBoundingBoxMax()};
    cRange y[2] = {{mY0Axis.getBoundingBoxMin(), mY0Axis.getBoundingBoxMax()},
                   {mY1Axis.getBoundingBoxMin(), mY1Axis.getBoundingBoxMax()}};
    bool y1Seen = false;
    for (const wxSinglePlotWidgetData& other : mCurves)
        y1Seen = y1Seen || (&other != &curve && ((other.checkRealPartShown() && other.getRealAxis() == 1) ||
                                                 (other.checkImagPartShown() && other.getImagAxis() == 1)));
    if (!y1Seen)
        y[1] = cRange();  // the box of y1 is still the default: the new curve replaces it
    mergeShownParts(curve, x, y);
    if (!y[1].checkIsSet())
        y[1].merge(0.0, 1.0);
    return setBoundingBoxes(x.min, x.max, y[0].min, y[0].max, y[1].min, y[1].max);
}

// --- fit and unzoom -------------------------------------------------------------------------------

void cPlotWidgetCommon::computeUnzoomRange(const wxSinglePlotWidgetAxis& axisConst, double& min, double& max,
                                           bool log) const
{
    min = axisConst.getBoundingBoxMin();
    max = axisConst.getBoundingBoxMax();
    fixBBoxValues(min, max);
    const double margin = mSettings.margin;
    if (!log) {
        // The upper step uses the widened minimum: the upper margin comes out a little larger.
        min = min - (max - min) * margin;
        max = max + (max - min) * margin;
        return;
    }
    if (!(min > 0.0))
        min = 1e-15;
    if (!(max > 0.0))
        max = min + 1e-15;
    // The repaired range becomes the axis's box, so that the zoom limit works on decades too.
    const_cast<wxSinglePlotWidgetAxis&>(axisConst).setBoundingBox(min, max);
    double l0 = std::log10(min), l1 = std::log10(max);
    l0 = l0 + (l1 - l0) / -100.0;
    l1 = l1 + (l1 - l0) / 100.0;
    min = std::pow(10.0, l0);
    max = std::pow(10.0, l1);
}

bool cPlotWidgetCommon::unzoom(bool print)
{
    double x0, x1, a0, a1, b0, b1;
    computeUnzoomRange(mXAxis, x0, x1, mXAxis.checkIsLog());
    computeUnzoomRange(mY0Axis, a0, a1, false);
    computeUnzoomRange(mY1Axis, b0, b1, false);
    if (a1 - a0 < smallest_zoom_range)
        a1 = a0 + 1.0;
    if (b1 - b0 < smallest_zoom_range)
        b1 = b0 + 1.0;
    const bool done = fitImpl(x0, x1, a0, a1, b0, b1, true, print, true);
    if (done)
        mUnzoomed = true;
    return done;
}

bool cPlotWidgetCommon::unzoomX()
{
    double x0, x1;
    computeUnzoomRange(mXAxis, x0, x1, mXAxis.checkIsLog());
    return fitImpl(x0, x1, mY0Axis.getMin(), mY0Axis.getMax(), mY1Axis.getMin(), mY1Axis.getMax(), true, true, true);
}

bool cPlotWidgetCommon::unzoomY(bool print)
{
    return unzoomY(mXAxis.getMin(), mXAxis.getMax(), print);
}

bool cPlotWidgetCommon::unzoomY(double xMin, double xMax, bool print)
{
    double a0, a1, b0, b1;
    computeUnzoomRange(mY0Axis, a0, a1, false);
    computeUnzoomRange(mY1Axis, b0, b1, false);
    // The sliding window may run beyond the curves: X is not held inside the box here.
    return fitImpl(xMin, xMax, a0, a1, b0, b1, false, print, false);
}

bool cPlotWidgetCommon::unzoomY0()
{
    double a0, a1;
    computeUnzoomRange(mY0Axis, a0, a1, false);
    return fitImpl(mXAxis.getMin(), mXAxis.getMax(), a0, a1, mY1Axis.getMin(), mY1Axis.getMax(), true, true, true);
}

bool cPlotWidgetCommon::unzoomY1()
{
    double b0, b1;
    computeUnzoomRange(mY1Axis, b0, b1, false);
    return fitImpl(mXAxis.getMin(), mXAxis.getMax(), mY0Axis.getMin(), mY0Axis.getMax(), b0, b1, true, true, true);
}

bool cPlotWidgetCommon::fitPrintMessage(double x0, double x1, double y0Min, double y0Max, double y1Min, double y1Max,
                                        bool addViewPort, bool print)
{
    return fitImpl(x0, x1, y0Min, y0Max, y1Min, y1Max, addViewPort, print, true);
}

bool cPlotWidgetCommon::fitImpl(double x0, double x1, double y0Min, double y0Max, double y1Min, double y1Max,
                                bool addViewPort, bool print, bool limit)
{
    auto refuse = [&]() {
        if (print)
            printMaxZoomReached();
        return false;
    };
    // Bad bounds (NaN, infinite, reversed) are refused whole: a view is never half applied.
    const bool y1Checked = mY1Active;
    for (double value : {x0, x1, y0Min, y0Max})
        if (!std::isfinite(value))
            return refuse();
    if (y1Checked && (!std::isfinite(y1Min) || !std::isfinite(y1Max)))
        return refuse();
    if (x1 < x0 || y0Max < y0Min || (y1Checked && y1Max < y1Min))
        return refuse();
    // A bound of the largest value is refused as asked, before the limit could pull it in.
    auto checkTooLarge = [&]() {
        for (double value : {x0, x1, y0Min, y0Max})
            if (std::fabs(value) >= largest_zoom_value)
                return true;
        return y1Checked && (std::fabs(y1Min) >= largest_zoom_value || std::fabs(y1Max) >= largest_zoom_value);
    };
    if (checkTooLarge())
        return refuse();
    if (limit) {
        if (mXAxis.checkIsLog())
            limitLogZoomRange(mXAxis, x0, x1);
        else
            mXAxis.limitZoomRange(x0, x1);
        mY0Axis.limitZoomRange(y0Min, y0Max);
        if (y1Checked)
            mY1Axis.limitZoomRange(y1Min, y1Max);
    }
    if (checkTooLarge())
        return refuse();
    if (y0Max - y0Min < smallest_zoom_range || (y1Checked && y1Max - y1Min < smallest_zoom_range))
        return refuse();

    const double oldX0 = mXAxis.getMin(), oldX1 = mXAxis.getMax();
    bool changed = false;
    if (!mXAxis.checkIsLog()) {
        // A range too narrow for X leaves X as it is; Y still follows.
        if (x1 - x0 >= smallest_zoom_range && checkDiffers(mXAxis, x0, x1)) {
            if (!mXAxis.setView(x0, x1, mLayout.xLow, mLayout.xHigh))
                return refuse();
            changed = true;
        }
    } else {
        if (std::fabs(x0) <= singlePlotWidgetAxis::smallest_log_value ||
            std::fabs(x1) <= singlePlotWidgetAxis::smallest_log_value || x1 - x0 < smallest_zoom_range || !(x0 > 0.0))
            return refuse();
        if (checkDiffers(mXAxis, x0, x1)) {
            if (!mXAxis.setView(x0, x1, mLayout.xLow, mLayout.xHigh)) {
                mXAxis.setView(oldX0, oldX1, mLayout.xLow, mLayout.xHigh);
                return refuse();
            }
            changed = true;
        }
    }
    if (checkDiffers(mY0Axis, y0Min, y0Max)) {
        if (!mY0Axis.setView(y0Min, y0Max, mLayout.yLow, mLayout.yHigh)) {
            mXAxis.setView(oldX0, oldX1, mLayout.xLow, mLayout.xHigh);
            return refuse();
        }
        changed = true;
    }
    if (y1Checked && checkDiffers(mY1Axis, y1Min, y1Max)) {
        if (mY1Axis.setView(y1Min, y1Max, mLayout.yLow, mLayout.yHigh))
            changed = true;
    } else if (!y1Checked && checkDiffers(mY1Axis, y1Min, y1Max) && std::isfinite(y1Min) && std::isfinite(y1Max) &&
               y1Max - y1Min >= smallest_zoom_range) {
        // The hidden second axis keeps its box view, ready for the first curve that opens it.
        mY1Axis.setView(y1Min, y1Max, mLayout.yLow, mLayout.yHigh);
    }
    if (!changed) {
        if (print)
            printMaxZoomReached();
        return true;
    }
    viewChanged(addViewPort);
    return true;
}

void cPlotWidgetCommon::viewChanged(bool addViewPortFlag)
{
    mUnzoomed = false;
    // Every shown view is a function of its ranges and the pixels alone, so that a view taken
    // back from the history draws exactly as it did.
    applyAxisPixels();
    plotRequestFullRedraw();
    if (addViewPortFlag)
        addViewPort(getCurrentView());
    syncAfterScrolling(addViewPortFlag);
}

void cPlotWidgetCommon::syncAfterScrolling(bool addViewPortFlag)
{
    if (!mPage)
        return;
    analogPlotVirtual::cScrollInfo info;
    info.xMin = mXAxis.getMin(), info.xMax = mXAxis.getMax();
    info.y0Min = mY0Axis.getMin(), info.y0Max = mY0Axis.getMax();
    info.y1Min = mY1Axis.getMin(), info.y1Max = mY1Axis.getMax();
    info.y1Active = mY1Active;
    info.xIsLog = mXAxis.checkIsLog();
    mPage->analogPlotVirtualPlotWasScrolled(this, info, addViewPortFlag);
}

// --- zoom -----------------------------------------------------------------------------------------

bool cPlotWidgetCommon::enableLogXAxis(bool log)
{
    if (log == mXAxis.checkIsLog())
        return true;
    if (log && !mCurves.empty()) {
        bool positive = false;
        for (const wxSinglePlotWidgetData& curve : mCurves)
            positive = positive || curve.getMaxX() > 0.0;
        if (!positive)
            return false;
    }
    const double x0 = mXAxis.getMin(), x1 = mXAxis.getMax();
    mXAxis.setLog(log);
    computeBoundingBox();
    double min, max;
    computeUnzoomRange(mXAxis, min, max, log);
    if (!fitImpl(min, max, mY0Axis.getMin(), mY0Axis.getMax(), mY1Axis.getMin(), mY1Axis.getMax(), true, true,
                 true)) {
        mXAxis.setLog(!log);
        mXAxis.setView(x0, x1, mLayout.xLow, mLayout.xHigh);
        computeBoundingBox();
        return false;
    }
    plotRequestFullRedraw();
    return true;
}

void cPlotWidgetCommon::setMousePosition(int kind, double x, double y)
{
    mMouseKind = kind;
    mMouseX = x;
    mMouseY = y;
}

double cPlotWidgetCommon::fixedPointPixel(int axis) const
{
    if (axis < 0)
        return mMouseKind != 0 ? mMouseX : 0.5 * (mLayout.xLow + mLayout.xHigh);
    return mMouseKind != 0 ? mMouseY : 0.5 * (mLayout.yLow + mLayout.yHigh);
}

bool cPlotWidgetCommon::zoomAxis(wxSinglePlotWidgetAxis& axis, double factor, double centre, double pixelLow,
                                 double pixelHigh)
{
    if (!(factor > 0.0) || !std::isfinite(factor))
        return false;
    if (factor > 1.0) {
        if (axis.checkAxisMaxZoomExceeded(std::sqrt(1.0 / mSettings.zoomStep)))
            return false;
        return axis.zoomFactor(factor, centre, pixelLow, pixelHigh);
    }
    // Out: a step clipped by the zoom limit to no change is tried again larger, a few times.
    double power = factor;
    for (int tries = 0; tries < 10; ++tries, power *= factor)
        if (axis.zoomFactor(power, centre, pixelLow, pixelHigh))
            return true;
    return false;
}

bool cPlotWidgetCommon::zoomFactor(double fx, double fy0, double fy1)
{
    bool changed = false;
    if (fx != 1.0)
        changed = zoomAxis(mXAxis, fx, mXAxis.toDouble(fixedPointPixel(-1)), mLayout.xLow, mLayout.xHigh) || changed;
    if (fy0 != 1.0)
        changed = zoomAxis(mY0Axis, fy0, mY0Axis.toDouble(fixedPointPixel(0)), mLayout.yLow, mLayout.yHigh) || changed;
    if (mY1Active && fy1 != 1.0)
        changed = zoomAxis(mY1Axis, fy1, mY1Axis.toDouble(fixedPointPixel(1)), mLayout.yLow, mLayout.yHigh) || changed;
    if (!changed) {
        printMaxZoomReached();
        return false;
    }
    zoomUserActionPerformed();
    viewChanged(true);
    return true;
}

bool cPlotWidgetCommon::zoomIn(int steps)
{
    const double f = std::pow(1.0 / mSettings.zoomStep, steps);
    return zoomFactor(f, f, f);
}

bool cPlotWidgetCommon::zoomOut(int steps)
{
    const double f = std::pow(mSettings.zoomStep, steps);
    return zoomFactor(f, f, f);
}

bool cPlotWidgetCommon::zoomX(int steps) { return zoomFactor(std::pow(1.0 / mSettings.zoomStep, steps), 1.0, 1.0); }
bool cPlotWidgetCommon::zoomOutX(int steps) { return zoomFactor(std::pow(mSettings.zoomStep, steps), 1.0, 1.0); }
bool cPlotWidgetCommon::zoomY0(int steps) { return zoomFactor(1.0, std::pow(1.0 / mSettings.zoomStep, steps), 1.0); }
bool cPlotWidgetCommon::zoomOutY0(int steps) { return zoomFactor(1.0, std::pow(mSettings.zoomStep, steps), 1.0); }
bool cPlotWidgetCommon::zoomY1(int steps) { return zoomFactor(1.0, 1.0, std::pow(1.0 / mSettings.zoomStep, steps)); }
bool cPlotWidgetCommon::zoomOutY1(int steps) { return zoomFactor(1.0, 1.0, std::pow(mSettings.zoomStep, steps)); }

bool cPlotWidgetCommon::zoomToBoxCmd(double x0, double x1, double y0, double y1)
{
    const bool done = fitImpl(x0, x1, y0, y1, mY1Axis.getMin(), mY1Axis.getMax(), true, true, true);
    if (done)
        zoomUserActionPerformed();
    return done;
}

bool cPlotWidgetCommon::zoomToBox(double px0, double py0, double px1, double py1)
{
    if (px0 > px1)
        std::swap(px0, px1);
    if (py0 > py1)
        std::swap(py0, py1);
    if (!(px1 > px0) || !(py1 > py0))
        return false;
    const double x0 = mXAxis.toDouble(px0), x1 = mXAxis.toDouble(px1);
    const double a0 = mY0Axis.toDouble(py0), a1 = mY0Axis.toDouble(py1);
    const double b0 = mY1Axis.toDouble(py0), b1 = mY1Axis.toDouble(py1);
    const bool done = fitImpl(x0, x1, a0, a1, b0, b1, true, true, true);
    if (done)
        zoomUserActionPerformed();
    return done;
}

bool cPlotWidgetCommon::switchViewPorts(int direction)
{
    const bool moved = direction > 0 ? moveToNextViewPort() : moveToPreviousViewPort();
    if (!moved)
        return false;
    const wxSinglePlotViewPort& view = currentViewPort();
    // Parts a view doesn't know (a connected plot's X range, a second axis opened since) stay.
    auto pick = [&](size_t index, double present) {
        return index < view.size() && !std::isnan(view[index]) ? view[index] : present;
    };
    fitImpl(pick(0, mXAxis.getMin()), pick(1, mXAxis.getMax()), pick(2, mY0Axis.getMin()), pick(3, mY0Axis.getMax()),
            pick(4, mY1Axis.getMin()), pick(5, mY1Axis.getMax()), false, false, true);
    zoomUserActionPerformed();
    return true;
}

// --- scroll ---------------------------------------------------------------------------------------

bool cPlotWidgetCommon::scrollXPixels(double pixels, bool recordViewPort)
{
    const double oldMin = mXAxis.getMin();
    if (!mXAxis.scroll(pixels))
        return false;
    // How far the curves really moved (the zoom limit may have shortened the step).
    const double moved = mXAxis.checkIsLog() ? pixels : (mXAxis.getMin() - oldMin) * mXAxis.getScale();
    mUnzoomed = false;
    applyAxisPixels();
    const double whole = std::round(moved);
    if (std::fabs(moved - whole) < 1e-6)
        plotRequestScroll(-whole, 0.0);
    else
        plotRequestFullRedraw();
    if (recordViewPort)
        addViewPort(getCurrentView());
    zoomUserActionPerformed();
    syncAfterScrolling(recordViewPort);
    return true;
}

bool cPlotWidgetCommon::scrollYPixels(int axisIndex, double pixels, bool recordViewPort)
{
    if (axisIndex == 1 && !mY1Active)
        return false;
    wxSinglePlotWidgetYAxis& axis = yAxis(axisIndex);
    const double oldMin = axis.getMin();
    if (!axis.scroll(pixels))
        return false;
    const double moved = (axis.getMin() - oldMin) * axis.getScale();
    mUnzoomed = false;
    applyAxisPixels();
    const double whole = std::round(moved);
    // Both Y axes share the bitmap: only one of them moving can't be a shift of it.
    if (std::fabs(moved - whole) < 1e-6 && !mY1Active)
        plotRequestScroll(0.0, -whole);
    else
        plotRequestFullRedraw();
    if (recordViewPort)
        addViewPort(getCurrentView());
    zoomUserActionPerformed();
    syncAfterScrolling(recordViewPort);
    return true;
}

// --- sliding window -------------------------------------------------------------------------------

void cPlotWidgetCommon::defineSlidingWindow(double width, double pauseSeconds)
{
    if (!(width > 0.0) || !std::isfinite(width))
        return;
    mSlidingWindowDefined = true;
    mSlidingWindowWidth = width;
    mSlidingWindowPause = std::isfinite(pauseSeconds) && pauseSeconds > 0.0 ? pauseSeconds : 0.0;
    mSlidingWindowUserZoom = false;
}

void cPlotWidgetCommon::zoomUserActionPerformed()
{
    if (!mSlidingWindowDefined)
        return;
    mSlidingWindowUserZoom = true;
    if (mPage)
        mPage->analogPlotVirtualSlidingWindowSetUserZoomAction(this, true);
    plotStartTimer(timer_sliding_window_pause, static_cast<int>(mSlidingWindowPause * 1000.0));
}

void cPlotWidgetCommon::slidingWindowPauseEnded()
{
    mSlidingWindowUserZoom = false;
    if (mPage)
        mPage->analogPlotVirtualSlidingWindowSetUserZoomAction(this, false);
    zoomToSlidingWindow(false);
}

bool cPlotWidgetCommon::zoomToSlidingWindow(bool force)
{
    if (!mSlidingWindowDefined)
        return false;
    if (plotCheckUserIsBusy()) {
        plotStartTimer(timer_sliding_window_pause, static_cast<int>(mSlidingWindowPause * 1000.0));
        return false;
    }
    if (mSlidingWindowUserZoom)
        return false;
    if (mXAxis.checkIsLog())
        return unzoom(false);
    double x0 = mXAxis.getBoundingBoxMin(), x1 = mXAxis.getBoundingBoxMax();
    fixBBoxValues(x0, x1);
    double a0, a1, b0, b1;
    computeUnzoomRange(mY0Axis, a0, a1, false);
    computeUnzoomRange(mY1Axis, b0, b1, false);
    const bool yOutside = mY0Axis.getBoundingBoxMin() < mY0Axis.getMin() ||
                          mY0Axis.getBoundingBoxMax() > mY0Axis.getMax() ||
                          (mY1Active && (mY1Axis.getBoundingBoxMin() < mY1Axis.getMin() ||
                                         mY1Axis.getBoundingBoxMax() > mY1Axis.getMax()));
    if (!(x1 > mXAxis.getMax() || yOutside || force))
        return false;
    // The newest values sit in the middle of the window, so that it moves on by half a window.
    const double newMin = std::max(x1 - 0.5 * mSlidingWindowWidth, x0);
    return unzoomY(newMin, newMin + mSlidingWindowWidth, false);
}

// --- wheel steps ----------------------------------------------------------------------------------

void cPlotWidgetCommon::setScheduledOperation(int operation, int steps)
{
    if (operation != mScheduledOperation)
        mScheduledSteps = 0;
    mScheduledOperation = operation;
    mScheduledSteps += steps;
    plotStartTimer(timer_scheduled_operation, scheduled_operation_delay_ms);
}

void cPlotWidgetCommon::timerEventForScheduledOperation()
{
    const int operation = mScheduledOperation;
    const int count = mScheduledSteps;
    mScheduledOperation = no_operation;
    mScheduledSteps = 0;
    if (count == 0)
        return;
    const double in = std::pow(1.0 / mSettings.zoomStep, count);
    const double out = std::pow(mSettings.zoomStep, count);
    switch (operation) {
    case scroll_x: scrollXPixels(count); break;
    case scroll_y0: scrollYPixels(0, count); break;
    case scroll_y1: scrollYPixels(1, count); break;
    case zoom_x_in: zoomFactor(in, 1.0, 1.0); break;
    case zoom_x_out: zoomFactor(out, 1.0, 1.0); break;
    case zoom_y0_in: zoomFactor(1.0, in, 1.0); break;
    case zoom_y0_out: zoomFactor(1.0, out, 1.0); break;
    case zoom_y1_in: zoomFactor(1.0, 1.0, in); break;
    case zoom_y1_out: zoomFactor(1.0, 1.0, out); break;
    case zoom_in: zoomFactor(in, in, in); break;
    case zoom_out: zoomFactor(out, out, out); break;
    default: break;  // box starts and clicks are the mouse's business; 11, 16, 17 do nothing
    }
}

}  // namespace vx3
