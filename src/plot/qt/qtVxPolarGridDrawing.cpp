#include "plot/qt/qtVxPolarGridDrawing.h"

#include <algorithm>
#include <cmath>

#include "plot/plotWindowType.h"

namespace vx3 {
namespace qtVxPolarGridDrawing {

namespace {

using singlePlotWidgetAxis::cSmithCircle;
using singlePlotWidgetAxis::cTickLabel;
using singlePlotWidgetAxis::cTickLabelAngle;

constexpr double pi = 3.14159265358979323846;
// Segments of about this many pixels look round and keep a large circle below a few thousand calls.
constexpr double segment_pixels = 2.0;
constexpr int max_segments = 4096;

bool checkFits(const QRectF& box, const qtVxBufferedDrawContext& context, const std::vector<QRectF>& drawn)
{
    if (box.left() < 0.0 || box.top() < 0.0 || box.right() > context.getWidth() ||
        box.bottom() > context.getHeight())
        return false;
    return std::none_of(drawn.begin(), drawn.end(), [&](const QRectF& other) { return box.intersects(other); });
}

void drawCircle(qtVxBufferedDrawContext& context, double cx, double cy, double r)
{
    if (r > 0.0 && std::isfinite(r))
        context.drawPolyline(circlePoints(cx, cy, r));
}

void drawRadiusCircles(const wxSinglePlotWidgetAxis& axis, int kind, qtVxBufferedDrawContext& context,
                       const cPolarFrame& frame, const vxDrawContext::cVxPen& pen)
{
    context.setPen(pen);
    for (const cTickLabel& tick : axis.getTicks())
        // The outermost circle is the axis itself, drawn with the labels.
        if (tick.kind == kind && tick.position > 0.0 && tick.position < frame.radius - 0.5)
            drawCircle(context, frame.centreX, frame.centreY, tick.position);
}

// The angle labels the axis placed, their rectangles counted in image rows from the top.
void drawAngleLabels(const wxSinglePlotWidgetAxis& axis, qtVxBufferedDrawContext& context,
                     std::vector<QRectF>& drawn)
{
    for (const cTickLabelAngle& tick : axis.getAngleTicks()) {
        const double y = context.getHeight() - tick.y0;
        const QRectF box = context.measureText(tick.text, tick.x0, y, qtVxBufferedDrawContext::anchor_top_left);
        if (checkFits(box, context, drawn))
            drawn.push_back(context.drawText(tick.text, tick.x0, y, qtVxBufferedDrawContext::anchor_top_left));
    }
}

void drawSmithChart(const wxSinglePlotWidgetAxis& axis, bool admittance, qtVxBufferedDrawContext& context,
                    const cPolarFrame& frame, const vxDrawContext::cVxPen& pen)
{
    context.setPen(pen);
    for (const cSmithCircle& circle : axis.getSmithCircles()) {
        if (circle.admittance != admittance || (!circle.reactance && circle.value == 0.0))
            continue;  // resistance 0 is the rim, drawn as the axis
        double cx = 0.0, cy = 0.0, r = 0.0, a0 = 0.0, a1 = 0.0;
        smithCircleInPixels(circle, frame, cx, cy, r, a0, a1);
        context.drawPolyline(arcPoints(cx, cy, r, a0, a1));
    }
}

// Which chart a Smith grid shows first: the admittance chart on the grids named after it first.
bool checkAdmittanceFirst(const wxSinglePlotWidgetAxis& axis)
{
    return axis.getGridType() == waveExplorerWidgetVirtual::smith_admittance_grid ||
           axis.getGridType() == waveExplorerWidgetVirtual::smith_admittance_and_impedance_grid;
}

}  // namespace

cPolarFrame fitPolarFrame(const qtVxAxisDrawing::cAxisFrame& area, const wxAxisTextMetricsVirtual& metrics)
{
    // The widest angle label beside the circle, a line of text above and below it.
    const double sideRoom = metrics.getTextWidth("360.00") + label_gap + 4.0;
    const double verticalRoom = metrics.getTextHeight("0") + label_gap + 4.0;
    cPolarFrame frame;
    frame.centreX = (area.left + area.right) / 2;
    frame.centreY = (area.bottom + area.top) / 2;
    const double r = std::min((area.right - area.left) / 2 - sideRoom, (area.top - area.bottom) / 2 - verticalRoom);
    frame.radius = std::max(0.0, std::floor(r));
    return frame;
}

void computeTicks(wxSinglePlotWidgetAxis& axis, const qtVxBufferedDrawContextInverted& context,
                  const cPolarFrame& frame)
{
    // Angle labels are placed in image rows, which run downwards.
    const double rowCentre = context.getHeight() - frame.centreY;
    if (waveExplorerWidgetVirtual::checkIsSmithGrid(axis.getGridType()))
        axis.computeSmithAxesTicks(context, frame.centreX, rowCentre, frame.radius);
    else
        axis.computePolarAxesTicks(context, frame.centreX, rowCentre, frame.radius);
}

std::vector<QPointF> arcPoints(double centreX, double centreY, double radius, double a0, double a1)
{
    std::vector<QPointF> points;
    if (!(radius > 0.0) || !std::isfinite(radius) || !std::isfinite(a0) || !std::isfinite(a1))
        return points;
    const double length = std::fabs(a1 - a0) * radius;
    const int segments = std::clamp(static_cast<int>(std::ceil(length / segment_pixels)), 4, max_segments);
    points.reserve(segments + 1);
    for (int i = 0; i <= segments; ++i) {
        const double a = a0 + (a1 - a0) * i / segments;
        points.emplace_back(centreX + radius * std::cos(a), centreY + radius * std::sin(a));
    }
    return points;
}

std::vector<QPointF> circlePoints(double centreX, double centreY, double radius)
{
    std::vector<QPointF> points = arcPoints(centreX, centreY, radius, 0.0, 2 * pi);
    if (!points.empty())
        points.back() = points.front();  // closed exactly, whatever the rounding of the last angle
    return points;
}

void smithCircleInPixels(const cSmithCircle& circle, const cPolarFrame& frame, double& centreX, double& centreY,
                         double& radius, double& a0, double& a1)
{
    const double R = frame.radius;
    centreX = frame.centreX + circle.centreX * R;
    centreY = frame.centreY + circle.centreY * R;
    radius = circle.radius * R;
    a0 = 0.0;
    a1 = 2 * pi;
    if (!circle.reactance)
        return;
    // An arc of constant reactance x runs inside the chart from the rim at infinite resistance,
    // G = 1, to the rim at resistance 0, G = (jx - 1) / (jx + 1). The circles cross at right
    // angles, so the part inside is the shorter arc between the two.
    const double x = circle.value;
    const double sign = circle.admittance ? -1.0 : 1.0;
    const double endX = sign * (x * x - 1.0) / (x * x + 1.0), endY = sign * 2.0 * x / (x * x + 1.0);
    a0 = std::atan2(0.0 - circle.centreY, sign - circle.centreX);
    a1 = std::atan2(endY - circle.centreY, endX - circle.centreX);
    a1 = a0 + std::remainder(a1 - a0, 2 * pi);
}

void drawPolarGridFine(const wxSinglePlotWidgetAxis& axis, qtVxBufferedDrawContext& context,
                       const cPolarFrame& frame, const vxDrawContext::cVxPen& pen)
{
    drawRadiusCircles(axis, singlePlotWidgetAxis::tick_subdivision, context, frame, pen);
}

void drawPolarGridCoarse(const wxSinglePlotWidgetAxis& axis, qtVxBufferedDrawContext& context,
                         const cPolarFrame& frame, const vxDrawContext::cVxPen& pen)
{
    drawRadiusCircles(axis, singlePlotWidgetAxis::tick_labelled, context, frame, pen);
    for (int degrees = 30; degrees < 360; degrees += 30) {
        if (degrees % 90 == 0)
            continue;  // on the axes: zero lines
        const double a = degrees * pi / 180.0;
        context.drawLine(frame.centreX, frame.centreY, frame.centreX + frame.radius * std::cos(a),
                         frame.centreY + frame.radius * std::sin(a));
    }
}

void drawPolarGridZero(const wxSinglePlotWidgetAxis& axis, qtVxBufferedDrawContext& context,
                       const cPolarFrame& frame, const vxDrawContext::cVxPen& pen)
{
    context.setPen(pen);
    context.drawLine(frame.centreX - frame.radius, frame.centreY, frame.centreX + frame.radius, frame.centreY);
    context.drawLine(frame.centreX, frame.centreY - frame.radius, frame.centreX, frame.centreY + frame.radius);
}

std::vector<QRectF> drawPolarAxis(const wxSinglePlotWidgetAxis& axis, qtVxBufferedDrawContext& context,
                                  const cPolarFrame& frame)
{
    std::vector<QRectF> drawn;
    drawCircle(context, frame.centreX, frame.centreY, frame.radius);
    drawAngleLabels(axis, context, drawn);
    const double y = frame.centreY - label_gap;
    for (const cTickLabel& tick : axis.getTicks()) {
        // The centre needs no "0.0": its label would sit on the vertical zero line.
        if (tick.text.empty() || !std::isfinite(tick.position) || tick.position < 0.5 ||
            tick.position > frame.radius + 0.5)
            continue;
        const double x = frame.centreX + tick.position;
        const QRectF box = context.measureText(tick.text, x, y, qtVxBufferedDrawContext::anchor_top_centre);
        if (checkFits(box, context, drawn))
            drawn.push_back(context.drawText(tick.text, x, y, qtVxBufferedDrawContext::anchor_top_centre));
    }
    return drawn;
}

void drawSmithGridFine(const wxSinglePlotWidgetAxis& axis, qtVxBufferedDrawContext& context,
                       const cPolarFrame& frame, const vxDrawContext::cVxPen& pen)
{
    drawSmithChart(axis, !checkAdmittanceFirst(axis), context, frame, pen);
}

void drawSmithGridCoarse(const wxSinglePlotWidgetAxis& axis, qtVxBufferedDrawContext& context,
                         const cPolarFrame& frame, const vxDrawContext::cVxPen& pen)
{
    drawSmithChart(axis, checkAdmittanceFirst(axis), context, frame, pen);
}

void drawSmithGridZero(const wxSinglePlotWidgetAxis& axis, qtVxBufferedDrawContext& context,
                       const cPolarFrame& frame, const vxDrawContext::cVxPen& pen)
{
    context.setPen(pen);
    context.drawLine(frame.centreX - frame.radius, frame.centreY, frame.centreX + frame.radius, frame.centreY);
}

std::vector<QRectF> drawSmithAxis(const wxSinglePlotWidgetAxis& axis, qtVxBufferedDrawContext& context,
                                  const cPolarFrame& frame)
{
    std::vector<QRectF> drawn;
    drawCircle(context, frame.centreX, frame.centreY, frame.radius);
    drawAngleLabels(axis, context, drawn);
    const bool admittance = checkAdmittanceFirst(axis);
    for (const cSmithCircle& circle : axis.getSmithCircles()) {
        if (circle.admittance != admittance || circle.text.empty())
            continue;
        double x = 0.0, y = 0.0;
        int anchor = qtVxBufferedDrawContext::anchor_bottom_centre;
        if (!circle.reactance) {
            // Where the circle crosses the real axis towards the chart's centre.
            const double g = (circle.value - 1.0) / (circle.value + 1.0) * (admittance ? -1.0 : 1.0);
            x = frame.centreX + g * frame.radius;
            y = frame.centreY + label_gap;
        } else {
            // Just inside the rim where the arc ends, pulled in by the text's half diagonal.
            double cx = 0.0, cy = 0.0, r = 0.0, a0 = 0.0, a1 = 0.0;
            smithCircleInPixels(circle, frame, cx, cy, r, a0, a1);
            const double ex = cx + r * std::cos(a1) - frame.centreX, ey = cy + r * std::sin(a1) - frame.centreY;
            const double w = context.getTextWidth(circle.text), h = context.getTextHeight(circle.text);
            const double inward = 1.0 - (0.5 * std::hypot(w, h) + label_gap) / std::max(frame.radius, 1.0);
            x = frame.centreX + ex * inward;
            y = frame.centreY + ey * inward;
            anchor = qtVxBufferedDrawContext::anchor_centre;
        }
        const QRectF box = context.measureText(circle.text, x, y, anchor);
        if (checkFits(box, context, drawn))
            drawn.push_back(context.drawText(circle.text, x, y, anchor));
    }
    return drawn;
}

}  // namespace qtVxPolarGridDrawing
}  // namespace vx3
