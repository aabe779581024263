// The zoom box of a plot: drawn by dragging on the canvas, or chosen from the context menu in one
// of its twelve forms (zoom or unzoom; X and Y, X only, Y only, one Y axis only), then finished by
// the next click. The box knows its corners in the plot's pixels (y upwards) and what it does to
// the view; the widget draws it and feeds it the mouse.
#pragma once

#include <string>

#include "plot/wxSinglePlotViewPortList.h"

namespace vx3 {

class cPlotWidgetCommon;

namespace singlePlotWidgetImpl {
enum zoom_box_type : int {
    no_zoom_box = 0,
    drag_box = 1,
    drag_box_ctrl = 2,
    click_box = 3,  // starts at the next click, ends at the click after it
    zoom_in_box = 4,
    zoom_out_box = 5,
    zoom_x_box = 6,
    zoom_out_x_box = 7,
    zoom_y_box = 8,
    zoom_out_y_box = 9,
    zoom_y1_box = 10,
    zoom_out_y1_box = 11,
    zoom_y2_box = 12,
    zoom_out_y2_box = 13,
};
}  // namespace singlePlotWidgetImpl

class wxPlotZoomBox {
public:
    // The label written at the box; empty for the plain styles.
    static const char* label(int style);
    // Odd styles from 5 on shrink the present view into the box; they draw with a dashed pen.
    static bool checkIsZoomOut(int style) { return style >= 5 && (style % 2) == 1; }
    // Which ranges a style changes.
    static bool checkActsOnX(int style);
    static bool checkActsOnY0(int style);
    static bool checkActsOnY1(int style);
    // The next form in the cycle of the zoom forms (4..13), given where the moving corner lies:
    // below the canvas, left of the first Y axis, at or past the second Y axis.
    static int nextStyle(int style, bool y1Active, bool belowCanvas, bool leftOfY0, bool pastY1);

    void start(int style, double x, double y);
    void moveTo(double x, double y) { mX1 = x, mY1 = y; }
    void hide() { mStyle = singlePlotWidgetImpl::no_zoom_box; }
    // A box is shown for every style but none; click_box shows nothing before its first click.
    bool checkIsShown() const { return mStyle != singlePlotWidgetImpl::no_zoom_box && mStarted; }
    int getStyle() const { return mStyle; }
    void setStyle(int style) { mStyle = style; }
    // Waits for its first click (click_box before the click).
    bool checkWaitsForFirstClick() const { return mStyle == singlePlotWidgetImpl::click_box && !mStarted; }
    void armClickBox() { mStyle = singlePlotWidgetImpl::click_box, mStarted = false; }
    double x0() const { return mX0; }
    double y0() const { return mY0; }
    double x1() const { return mX1; }
    double y1() const { return mY1; }

    // The view the box asks for, from the plot's present view and axes; false when the box is too
    // small to mean anything (a click without a drag).
    bool computeTargetView(const cPlotWidgetCommon& plot, wxSinglePlotViewPort& view) const;

    // Boxes narrower than this (pixels) in a direction they act on are taken as clicks.
    static constexpr double minimum_size = 3.0;

private:
    int mStyle = singlePlotWidgetImpl::no_zoom_box;
    bool mStarted = false;
    double mX0 = 0.0, mY0 = 0.0, mX1 = 0.0, mY1 = 0.0;
};

}  // namespace vx3
