// The scroll bar of an axis: where the view lies within the curves' bounding box.
#include <algorithm>
#include <cmath>

#include "plot/wxSinglePlotWidgetAxis.h"

namespace vx3 {

namespace {

// Log axes scroll by decades: a bar that moved by pixels would crawl at the small end.
double scrollCoordinate(bool log, double value)
{
    return log ? std::log10(value) : value;
}

}  // namespace

bool wxSinglePlotWidgetAxis::checkIsUnzoomed() const
{
    double boxMin = mBoundingBoxMin, boxMax = mBoundingBoxMax;
    fixBBoxValues(boxMin, boxMax);
    if (mIsLog && !(boxMin > 0.0))
        boxMin = std::min(mMin, boxMax);
    const double lo = scrollCoordinate(mIsLog, boxMin), hi = scrollCoordinate(mIsLog, boxMax);
    const double tolerance = 1e-9 * std::max(std::fabs(hi - lo), 1e-300);
    return scrollCoordinate(mIsLog, mMin) <= lo + tolerance && scrollCoordinate(mIsLog, mMax) >= hi - tolerance;
}

bool wxSinglePlotWidgetAxis::checkNeedsScrollBar() const
{
    return !checkIsUnzoomed();
}

void wxSinglePlotWidgetAxis::getScrollBarSize(int& position, int& thumbSize) const
{
    position = 0;
    thumbSize = scroll_bar_range;
    double boxMin = mBoundingBoxMin, boxMax = mBoundingBoxMax;
    fixBBoxValues(boxMin, boxMax);
    if (mIsLog && !(boxMin > 0.0))
        boxMin = std::min(mMin, boxMax);
    const double viewLo = scrollCoordinate(mIsLog, mMin), viewHi = scrollCoordinate(mIsLog, mMax);
    const double lo = std::min(scrollCoordinate(mIsLog, boxMin), viewLo);
    const double hi = std::max(scrollCoordinate(mIsLog, boxMax), viewHi);
    const double span = hi - lo;
    if (!(span > 0.0) || !std::isfinite(span))
        return;
    // At least one step of thumb, so that a deep zoom still shows a bar to grab.
    thumbSize = std::clamp(static_cast<int>(std::lround((viewHi - viewLo) / span * scroll_bar_range)), 1,
                           scroll_bar_range);
    position = std::clamp(static_cast<int>(std::lround((viewLo - lo) / span * scroll_bar_range)), 0,
                          scroll_bar_range - thumbSize);
}

bool wxSinglePlotWidgetAxis::clickScrollToPosition(double value)
{
    if (!std::isfinite(value))
        return false;
    if (mIsLog) {
        if (!(value > 0.0))
            return false;
        const double centre = std::sqrt(mMin) * std::sqrt(mMax);
        return scroll(toInt(value) - toInt(centre));
    }
    return scrollLinear(value - 0.5 * (mMin + mMax));
}

}  // namespace vx3
