// What lies under the mouse on a plot. Every press, wheel step and motion first classifies the
// position, and the later decisions look only at the class.
#pragma once

#include "plot/cPlotWidgetCommon.h"

namespace vx3 {

namespace singlePlotWidgetImpl {
enum mouse_position_type : int {
    outside = 0,
    canvas = 1,
    x_axis = 3,
    y0_axis = 5,
    y1_axis = 6,
    legend = 7,
    legend_vertical_scroll_bar = 10,
    legend_horizontal_scroll_bar = 11,
    legend_close_button = 12,
    legend_move_handle = 13,
    x_scroll_bar = 20,
    y0_scroll_bar = 22,
    y1_scroll_bar = 23,
    button_bar_button = 29,
    clear_button = 30,
    maximize_button = 31,
    minimize_button = 32,
    legend_button = 33,
    unzoom_button = 34,
    fixed_ruler_button = 35,
    moving_ruler_button = 36,
    zoom_box_button = 37,
    curve_annotation = 38,
    fixed_ruler_annotation = 39,
    moving_ruler_annotation = 40,
    global_annotation = 41,
};
}  // namespace singlePlotWidgetImpl

namespace plotMousePosition {

// A mouse position in the plot's own pixels: y counts upwards from the widget's bottom edge.
struct cPlotPoint {
    double x = 0.0, y = 0.0;
};

// Qt's y runs downwards; the plot's arithmetic counts upwards, as its draw context does.
inline cPlotPoint fromWidget(double x, double y, int widgetHeight) { return {x, widgetHeight - y}; }

// The class of a point from the canvas layout alone: the canvas, the axes beside it (the second Y
// axis only when it is shown), or outside. Legend, buttons and annotations lie over these areas
// and are asked first by their owners.
int classify(const plotWidgetCommon::cCanvasLayout& layout, int widgetWidth, int widgetHeight, bool y1Active,
             cPlotPoint point);

// The wheel's operation at a position (plotWidgetCommon::scheduled_operation_type), or
// no_operation where the wheel does nothing. up: the wheel turned away from the user.
int wheelOperation(int position, bool up);

}  // namespace plotMousePosition
}  // namespace vx3
