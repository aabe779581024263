#include "plot/wxPlotMousePosition.h"

namespace vx3::plotMousePosition {

using namespace singlePlotWidgetImpl;
using namespace plotWidgetCommon;

int classify(const cCanvasLayout& layout, int widgetWidth, int widgetHeight, bool y1Active, cPlotPoint point)
{
    if (point.x < 0.0 || point.y < 0.0 || point.x >= widgetWidth || point.y > widgetHeight)
        return outside;
    const bool inX = point.x >= layout.xLow && point.x <= layout.xHigh;
    const bool inY = point.y >= layout.yLow && point.y <= layout.yHigh;
    if (inX && inY)
        return canvas;
    if (inX && point.y < layout.yLow)
        return x_axis;
    if (inY && point.x < layout.xLow)
        return y0_axis;
    if (inY && point.x > layout.xHigh && y1Active)
        return y1_axis;
    return outside;
}

int wheelOperation(int position, bool up)
{
    switch (position) {
    case canvas:
    case curve_annotation: return up ? zoom_in : zoom_out;
    case x_axis: return up ? zoom_x_in : zoom_x_out;
    case y0_axis: return up ? zoom_y0_in : zoom_y0_out;
    case y1_axis: return up ? zoom_y1_in : zoom_y1_out;
    case x_scroll_bar: return scroll_x;
    case y0_scroll_bar: return scroll_y0;
    case y1_scroll_bar: return scroll_y1;
    default: return no_operation;
    }
}

}  // namespace vx3::plotMousePosition
