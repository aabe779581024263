#include "plot/wxPlotZoomBox.h"

#include <algorithm>
#include <cmath>

#include "plot/cPlotWidgetCommon.h"

namespace vx3 {

using namespace singlePlotWidgetImpl;

const char* wxPlotZoomBox::label(int style)
{
    switch (style) {
    case click_box: return "click to draw zoom box";
    case zoom_in_box: return "zoom in";
    case zoom_out_box: return "zoom out";
    case zoom_x_box: return "zoom x";
    case zoom_out_x_box: return "zoom out x";
    case zoom_y_box: return "zoom y";
    case zoom_out_y_box: return "zoom out y";
    case zoom_y1_box: return "zoom y1";
    case zoom_out_y1_box: return "zoom out y1";
    case zoom_y2_box: return "zoom y2";
    case zoom_out_y2_box: return "zoom out y2";
    default: return "";
    }
}

bool wxPlotZoomBox::checkActsOnX(int style)
{
    return style != zoom_y_box && style != zoom_out_y_box && style < zoom_y1_box && style != no_zoom_box;
}

bool wxPlotZoomBox::checkActsOnY0(int style)
{
    return style != no_zoom_box && style != zoom_x_box && style != zoom_out_x_box && style != zoom_y2_box &&
           style != zoom_out_y2_box;
}

bool wxPlotZoomBox::checkActsOnY1(int style)
{
    return style != no_zoom_box && style != zoom_x_box && style != zoom_out_x_box && style != zoom_y1_box &&
           style != zoom_out_y1_box;
}

int wxPlotZoomBox::nextStyle(int style, bool y1Active, bool belowCanvas, bool leftOfY0, bool pastY1)
{
    switch (style) {
    case zoom_in_box: return zoom_x_box;
    case zoom_out_box: return zoom_out_x_box;
    case zoom_x_box: return belowCanvas ? zoom_out_x_box : (y1Active ? zoom_y_box : zoom_y1_box);
    case zoom_out_x_box: return belowCanvas ? zoom_x_box : (y1Active ? zoom_out_y_box : zoom_out_y1_box);
    case zoom_y_box: return y1Active ? zoom_y1_box : zoom_out_box;
    case zoom_out_y_box: return y1Active ? zoom_out_y1_box : zoom_in_box;
    case zoom_y1_box: return leftOfY0 ? zoom_out_y1_box : (y1Active ? zoom_y2_box : zoom_out_box);
    case zoom_out_y1_box: return leftOfY0 ? zoom_y1_box : (y1Active ? zoom_out_y2_box : zoom_in_box);
    case zoom_y2_box: return pastY1 ? zoom_out_box : zoom_out_y2_box;
    case zoom_out_y2_box: return !pastY1 ? zoom_y2_box : zoom_in_box;
    default: return style;
    }
}

void wxPlotZoomBox::start(int style, double x, double y)
{
    mStyle = style;
    mStarted = true;
    mX0 = mX1 = x;
    mY0 = mY1 = y;
}

namespace {
// The new range of one axis: the box's range, or for an unzoom the range in which the present
// view takes the place of the box.
bool targetRange(const wxSinglePlotWidgetAxis& axis, double p0, double p1, bool zoomOut, double& min, double& max)
{
    if (p0 > p1)
        std::swap(p0, p1);
    if (p1 - p0 < wxPlotZoomBox::minimum_size)
        return false;
    const double b0 = axis.toDouble(p0), b1 = axis.toDouble(p1);
    if (!zoomOut) {
        min = b0, max = b1;
        return std::isfinite(min) && std::isfinite(max) && max > min;
    }
    const double v0 = axis.getMin(), v1 = axis.getMax();
    const double width = (v1 - v0) * (v1 - v0) / (b1 - b0);
    min = v0 - (b0 - v0) * width / (v1 - v0);
    max = min + width;
    return std::isfinite(min) && std::isfinite(max) && max > min;
}
}  // namespace

bool wxPlotZoomBox::computeTargetView(const cPlotWidgetCommon& plot, wxSinglePlotViewPort& view) const
{
    view = plot.getCurrentView();
    if (view.size() < 6)
        view.resize(6, plot.yAxis(1).getMin());
    view[4] = plot.yAxis(1).getMin();
    view[5] = plot.yAxis(1).getMax();
    const bool out = checkIsZoomOut(mStyle);
    bool any = false;
    if (checkActsOnX(mStyle)) {
        if (!targetRange(plot.xAxis(), mX0, mX1, out, view[0], view[1]))
            return false;
        any = true;
    }
    // A box that acts on Y needs height; the axes it doesn't act on keep their ranges.
    const bool y0 = checkActsOnY0(mStyle), y1 = checkActsOnY1(mStyle) && plot.checkY1Active();
    if (y0 && !targetRange(plot.yAxis(0), mY0, mY1, out, view[2], view[3]))
        return false;
    if (y1 && !targetRange(plot.yAxis(1), mY0, mY1, out, view[4], view[5]))
        return false;
    return any || y0 || y1;
}

}  // namespace vx3
