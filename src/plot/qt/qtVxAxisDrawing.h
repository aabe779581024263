// Drawing of the axes and their grids on a draw context whose y runs upwards (the inverted
// context), from the ticks the axis computed. Kept apart from the axis arithmetic so that the
// arithmetic builds and tests without a toolkit.
#pragma once

#include <QRectF>
#include <string>
#include <vector>

#include "plot/wxCurveStyle.h"
#include "plot/wxSinglePlotWidgetXAxis.h"
#include "plot/wxSinglePlotWidgetYAxis.h"
#include "widgets/qtVxBufferedDrawContext.h"

namespace vx3 {
namespace qtVxAxisDrawing {

// The plot area in the context's pixels, y upwards: the X axis runs along its bottom edge, the
// Y axis along its left edge.
struct cAxisFrame {
    double left = 0.0;
    double bottom = 0.0;
    double right = 0.0;
    double top = 0.0;
};

constexpr double labelled_tick_length = 6.0;
constexpr double subdivision_tick_length = 3.0;
constexpr double label_gap = 2.0;

// The axis line, its tick marks outside the frame and the labels centred under (X) or left of (Y)
// the ticks, then the title (the Y title turned upright). Returns the boxes of the labels drawn.
// A label is left out when it would leave the bitmap or touch one already drawn.
std::vector<QRectF> draw(const wxSinglePlotWidgetXAxis& axis, qtVxBufferedDrawContext& context,
                         const cAxisFrame& frame, const std::string& title = std::string());
std::vector<QRectF> draw(const wxSinglePlotWidgetYAxis& axis, qtVxBufferedDrawContext& context,
                         const cAxisFrame& frame, const std::string& title = std::string());

// The room left of the frame that the Y axis needs for its tick marks, the widest label among its
// computed ticks and the title turned upright: the frame's left edge, so that no label is cut.
// Compute the ticks first; their precision does not depend on this room.
double computeLeftMargin(const wxSinglePlotWidgetYAxis& axis, const wxAxisTextMetricsVirtual& metrics,
                         const std::string& title = std::string());

// Grid lines across the frame through the ticks of one kind: fine through subdivisions, coarse
// through labelled ticks, zero through the tick on zero. Drawn in that order, coarser lines lie on top.
void drawGridFine(const wxSinglePlotWidgetAxis& axis, bool vertical, qtVxBufferedDrawContext& context,
                  const cAxisFrame& frame, const vxDrawContext::cVxPen& pen);
void drawGridCoarse(const wxSinglePlotWidgetAxis& axis, bool vertical, qtVxBufferedDrawContext& context,
                    const cAxisFrame& frame, const vxDrawContext::cVxPen& pen);
void drawGridZero(const wxSinglePlotWidgetAxis& axis, bool vertical, qtVxBufferedDrawContext& context,
                  const cAxisFrame& frame, const vxDrawContext::cVxPen& pen);

}  // namespace qtVxAxisDrawing
}  // namespace vx3
