// Drawing of polar and Smith grids on a draw context whose y runs upwards, from the ticks and
// circles the axis computed. Circles and arcs are drawn as polylines fine enough to look round.
#pragma once

#include <QPointF>
#include <QRectF>
#include <vector>

#include "plot/qt/qtVxAxisDrawing.h"
#include "plot/wxSinglePlotWidgetAxis.h"
#include "widgets/qtVxBufferedDrawContext.h"

namespace vx3 {
namespace qtVxPolarGridDrawing {

// The circle of the grid in the context's pixels, y upwards: magnitude 1 of a Smith chart, the
// largest magnitude of a polar grid, lies at radius pixels from the centre.
struct cPolarFrame {
    double centreX = 0.0;
    double centreY = 0.0;
    double radius = 0.0;
};

constexpr double label_gap = 3.0;

// The largest circle in the area that leaves room around it for the angle labels.
cPolarFrame fitPolarFrame(const qtVxAxisDrawing::cAxisFrame& area, const wxAxisTextMetricsVirtual& metrics);

// Fills the axis's radius ticks (polar) or circles (Smith) and the angle labels for the frame.
void computeTicks(wxSinglePlotWidgetAxis& axis, const qtVxBufferedDrawContextInverted& context,
                  const cPolarFrame& frame);

// Points of a circle (closed: the last point repeats the first), and of the arc from angle a0
// to a1 (radians, counter-clockwise when a1 > a0), spaced about two pixels apart.
std::vector<QPointF> circlePoints(double centreX, double centreY, double radius);
std::vector<QPointF> arcPoints(double centreX, double centreY, double radius, double a0, double a1);

// Polar grid: fine circles through the subdivision ticks of the radius, coarse circles through
// its labelled ticks with radial lines every 30 degrees, zero lines along both axes. Drawn in
// that order, coarser lines lie on top.
void drawPolarGridFine(const wxSinglePlotWidgetAxis& axis, qtVxBufferedDrawContext& context,
                       const cPolarFrame& frame, const vxDrawContext::cVxPen& pen);
void drawPolarGridCoarse(const wxSinglePlotWidgetAxis& axis, qtVxBufferedDrawContext& context,
                         const cPolarFrame& frame, const vxDrawContext::cVxPen& pen);
void drawPolarGridZero(const wxSinglePlotWidgetAxis& axis, qtVxBufferedDrawContext& context,
                       const cPolarFrame& frame, const vxDrawContext::cVxPen& pen);
// The outer circle, radius labels under the positive real axis (none at the centre) and the
// angle labels, in the pen set on the context. Returns the boxes of the labels drawn; touching ones are left out.
std::vector<QRectF> drawPolarAxis(const wxSinglePlotWidgetAxis& axis, qtVxBufferedDrawContext& context,
                                  const cPolarFrame& frame);

// Smith grid: fine lines are the second chart of a mixed grid, coarse ones the circles of
// constant resistance and the arcs of constant reactance of the first, zero the real axis.
void drawSmithGridFine(const wxSinglePlotWidgetAxis& axis, qtVxBufferedDrawContext& context,
                       const cPolarFrame& frame, const vxDrawContext::cVxPen& pen);
void drawSmithGridCoarse(const wxSinglePlotWidgetAxis& axis, qtVxBufferedDrawContext& context,
                         const cPolarFrame& frame, const vxDrawContext::cVxPen& pen);
void drawSmithGridZero(const wxSinglePlotWidgetAxis& axis, qtVxBufferedDrawContext& context,
                       const cPolarFrame& frame, const vxDrawContext::cVxPen& pen);
// The unit circle, the values of the first chart's circles (resistances above the real axis,
// reactances inside the rim where the arcs end) and the angle labels.
std::vector<QRectF> drawSmithAxis(const wxSinglePlotWidgetAxis& axis, qtVxBufferedDrawContext& context,
                                  const cPolarFrame& frame);

// Where a circle or arc of the chart lies in pixels, and for an arc the angles it spans.
void smithCircleInPixels(const singlePlotWidgetAxis::cSmithCircle& circle, const cPolarFrame& frame,
                         double& centreX, double& centreY, double& radius, double& a0, double& a1);

}  // namespace qtVxPolarGridDrawing
}  // namespace vx3
