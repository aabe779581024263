#include "plot/qt/qtVxAxisDrawing.h"

#include <algorithm>
#include <cmath>

namespace vx3 {
namespace qtVxAxisDrawing {

namespace {

using singlePlotWidgetAxis::cTickLabel;

bool checkFits(const QRectF& box, const qtVxBufferedDrawContext& context, const std::vector<QRectF>& drawn)
{
    if (box.left() < 0.0 || box.top() < 0.0 || box.right() > context.getWidth() ||
        box.bottom() > context.getHeight())
        return false;
    for (const QRectF& other : drawn)
        if (box.intersects(other))
            return false;
    return true;
}

double tickLength(const cTickLabel& tick)
{
    return tick.kind == singlePlotWidgetAxis::tick_subdivision ? subdivision_tick_length : labelled_tick_length;
}

void drawGridKind(const wxSinglePlotWidgetAxis& axis, int kind, bool vertical, qtVxBufferedDrawContext& context,
                  const cAxisFrame& frame, const vxDrawContext::cVxPen& pen)
{
    context.setPen(pen);
    for (const cTickLabel& tick : axis.getTicks()) {
        if (tick.kind != kind || !std::isfinite(tick.position))
            continue;
        if (vertical) {
            if (tick.position >= frame.left && tick.position <= frame.right)
                context.drawVerticalStroke(tick.position, frame.bottom, frame.top);
        } else if (tick.position >= frame.bottom && tick.position <= frame.top) {
            context.drawLine(frame.left, tick.position, frame.right, tick.position);
        }
    }
}

}  // namespace

std::vector<QRectF> draw(const wxSinglePlotWidgetXAxis& axis, qtVxBufferedDrawContext& context,
                         const cAxisFrame& frame, const std::string& title)
{
    std::vector<QRectF> drawn;
    context.drawLine(frame.left, frame.bottom, frame.right, frame.bottom);
    double lowestLabel = frame.bottom - labelled_tick_length - label_gap;
    for (const cTickLabel& tick : axis.getTicks()) {
        // Ticks a rounding beyond the frame still belong to it; further out they are not drawn.
        if (!std::isfinite(tick.position) || tick.position < frame.left - 0.5 || tick.position > frame.right + 0.5)
            continue;
        context.drawVerticalStroke(tick.position, frame.bottom - 1.0, frame.bottom - tickLength(tick));
        if (tick.text.empty())
            continue;
        const double y = frame.bottom - labelled_tick_length - label_gap;
        const QRectF box = context.measureText(tick.text, tick.position, y, qtVxBufferedDrawContext::anchor_top_centre);
        if (!checkFits(box, context, drawn))
            continue;
        drawn.push_back(context.drawText(tick.text, tick.position, y, qtVxBufferedDrawContext::anchor_top_centre));
        lowestLabel = std::min(lowestLabel, drawn.back().top());
    }
    if (!title.empty()) {
        const double y = lowestLabel - label_gap;
        const QRectF box = context.measureText(title, (frame.left + frame.right) / 2, y,
                                               qtVxBufferedDrawContext::anchor_top_centre);
        if (checkFits(box, context, drawn))
            context.drawText(title, (frame.left + frame.right) / 2, y, qtVxBufferedDrawContext::anchor_top_centre);
    }
    return drawn;
}

std::vector<QRectF> draw(const wxSinglePlotWidgetYAxis& axis, qtVxBufferedDrawContext& context,
                         const cAxisFrame& frame, const std::string& title)
{
    std::vector<QRectF> drawn;
    context.drawLine(frame.left, frame.bottom, frame.left, frame.top);
    double leftmostLabel = frame.left - labelled_tick_length - label_gap;
    for (const cTickLabel& tick : axis.getTicks()) {
        if (!std::isfinite(tick.position) || tick.position < frame.bottom - 0.5 || tick.position > frame.top + 0.5)
            continue;
        context.drawLine(frame.left - 1.0, tick.position, frame.left - tickLength(tick), tick.position);
        if (tick.text.empty())
            continue;
        const double x = frame.left - labelled_tick_length - label_gap;
        const QRectF box =
            context.measureText(tick.text, x, tick.position, qtVxBufferedDrawContext::anchor_centre_right);
        if (!checkFits(box, context, drawn))
            continue;
        drawn.push_back(context.drawText(tick.text, x, tick.position, qtVxBufferedDrawContext::anchor_centre_right));
        leftmostLabel = std::min(leftmostLabel, drawn.back().left());
    }
    if (!title.empty()) {
        // Turned a quarter counter-clockwise, reading upwards, its baseline towards the labels.
        const double x = leftmostLabel - label_gap;
        const double y = (frame.bottom + frame.top) / 2;
        const QRectF box = context.measureText(title, x, y, qtVxBufferedDrawContext::anchor_bottom_centre, 90.0);
        if (checkFits(box, context, drawn))
            context.drawText(title, x, y, qtVxBufferedDrawContext::anchor_bottom_centre, 90.0);
    }
    return drawn;
}

double computeLeftMargin(const wxSinglePlotWidgetYAxis& axis, const wxAxisTextMetricsVirtual& metrics,
                         const std::string& title)
{
    double widest = 0.0;
    for (const cTickLabel& tick : axis.getTicks())
        if (!tick.text.empty())
            widest = std::max(widest, metrics.getTextWidth(tick.text));
    double margin = labelled_tick_length + label_gap + widest;
    if (!title.empty())
        margin += label_gap + metrics.getTextHeight(title);
    // A pixel to spare: text boxes are measured in fractions and must not touch the edge.
    return std::ceil(margin + 1.0);
}

void drawGridFine(const wxSinglePlotWidgetAxis& axis, bool vertical, qtVxBufferedDrawContext& context,
                  const cAxisFrame& frame, const vxDrawContext::cVxPen& pen)
{
    drawGridKind(axis, singlePlotWidgetAxis::tick_subdivision, vertical, context, frame, pen);
}

void drawGridCoarse(const wxSinglePlotWidgetAxis& axis, bool vertical, qtVxBufferedDrawContext& context,
                    const cAxisFrame& frame, const vxDrawContext::cVxPen& pen)
{
    drawGridKind(axis, singlePlotWidgetAxis::tick_labelled, vertical, context, frame, pen);
}

void drawGridZero(const wxSinglePlotWidgetAxis& axis, bool vertical, qtVxBufferedDrawContext& context,
                  const cAxisFrame& frame, const vxDrawContext::cVxPen& pen)
{
    drawGridKind(axis, singlePlotWidgetAxis::tick_on_zero, vertical, context, frame, pen);
}

}  // namespace qtVxAxisDrawing
}  // namespace vx3
