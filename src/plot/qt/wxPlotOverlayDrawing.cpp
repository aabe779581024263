#include "plot/qt/wxPlotOverlayDrawing.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

#include "model/curveStyleTypes.h"
#include "plot/cPlotWidgetCommon.h"
#include "plot/wxSinglePlotOverlay.h"

namespace vx3 {

using namespace singlePlotOverlay;
using namespace singlePlotWidgetAnnotations;
using plotBoxLayout::cBox;
using vxDrawContext::cVxPen;

double wxPlotOverlayTextMetrics::getTextWidth(const std::string& text) const
{
    return QFontMetricsF(mFont).horizontalAdvance(QString::fromStdString(text));
}

double wxPlotOverlayTextMetrics::getTextHeight(const std::string&) const
{
    return QFontMetricsF(mFont).height();
}

namespace wxPlotOverlayDrawing {

namespace {

constexpr unsigned kMarkerColour = 0x1f6fd0;
constexpr unsigned kCursorColour = 0xd03a1f;
constexpr unsigned kBoxFill = 0xfffff4;
constexpr unsigned kTextColour = 0x202020;
constexpr unsigned kLegendFill = 0xffffff;
constexpr unsigned kLegendFrame = 0xa0a0a0;

void mark(qtVxBufferedDrawContextInverted& context, double x, double y, unsigned colour)
{
    context.setPen(cVxPen{colour, 1, vxDrawContext::solid_pen});
    context.setBrush(0xffffff);
    context.drawEllipse(std::round(x), std::round(y), 3.0);
}

// The point of box nearest to (x, y): where a connector line ends.
void nearestOnBox(const cBox& box, double x, double y, double& bx, double& by)
{
    bx = std::clamp(x, box.x0, box.x1);
    by = std::clamp(y, box.y0, box.y1);
}

void drawInterpolation(const wxAnnotation& annotation, const cPlotWidgetCommon& plot, const wxSinglePlotWidgetAxis& yAxis,
                       qtVxBufferedDrawContextInverted& context, const cBox& canvas)
{
    const wxSinglePlotWidgetXAxis& xAxis = plot.xAxis();
    const size_t n = annotation.getNbPoints();
    double from = xAxis.toInt(annotation.getX(0)), to = xAxis.toInt(annotation.getX(n - 1));
    if (checkIsExtrapolationType(annotation.getType()))
        from = canvas.x0, to = canvas.x1;
    from = std::max(from, canvas.x0);
    to = std::min(to, canvas.x1);
    std::vector<QPointF> points;
    for (double px = from; px <= to + 0.5; px += 2.0) {
        const double x = xAxis.toDouble(std::min(px, to));
        const double y = annotation.evaluateInterpolation(x);
        if (std::isfinite(y))
            points.emplace_back(std::min(px, to), std::clamp(yAxis.toInt(y), canvas.y0 - 1000.0, canvas.y1 + 1000.0));
    }
    if (points.size() >= 2)
        context.drawPolyline(points);
}

}  // namespace

void drawAnnotationMarks(const wxSinglePlotOverlay& overlay, const cPlotWidgetCommon& plot,
                         qtVxBufferedDrawContextInverted& context)
{
    const cBox& canvas = overlay.getCanvas();
    const wxSinglePlotWidgetXAxis& xAxis = plot.xAxis();
    const std::vector<wxSinglePlotWidgetData>& curves = plot.getCurves();
    for (size_t c = 0; c < curves.size(); ++c) {
        for (bool imaginary : {false, true}) {
            const std::vector<wxAnnotation>* list = overlay.getCurveAnnotations(c, imaginary);
            if (!list)
                continue;
            const wxSinglePlotWidgetAxis& yAxis =
                plot.yAxis(imaginary ? curves[c].getImagAxis() : curves[c].getRealAxis());
            const wxCurveStyle& style = curves[c].description().style();
            const unsigned colour = imaginary ? style.imagColour : style.realColour;
            for (const wxAnnotation& annotation : *list) {
                const size_t n = annotation.getNbPoints();
                auto px = [&](size_t i) { return xAxis.toInt(annotation.getX(i)); };
                auto py = [&](size_t i) { return yAxis.toInt(annotation.getY(i)); };
                const cVxPen solid{colour, annotation.highlighted ? 2 : 1, vxDrawContext::solid_pen};
                const cVxPen dotted{colour, 1, vxDrawContext::dotted_pen};
                context.setPen(solid);
                switch (annotation.getType()) {
                case delta_annotation:
                case delta_same_curve_annotation: context.drawLine(px(0), py(0), px(1), py(1)); break;
                case delta_x_annotation:
                case delta_x_same_curve_annotation:
                case rise_time_annotation:
                case fall_time_annotation: {
                    // The x distance at the first point's level; the second point joins it dotted.
                    context.drawLine(px(0), py(0), px(1), py(0));
                    context.drawLine(px(1), py(0) - 4, px(1), py(0) + 4);
                    context.drawLine(px(0), py(0) - 4, px(0), py(0) + 4);
                    context.setPen(dotted);
                    context.drawLine(px(1), py(0), px(1), py(1));
                    if (annotation.getType() != delta_x_annotation &&
                        annotation.getType() != delta_x_same_curve_annotation) {
                        context.drawLine(canvas.x0, py(0), canvas.x1, py(0));
                        context.drawLine(canvas.x0, py(1), canvas.x1, py(1));
                    }
                    break;
                }
                case difference_annotation:
                case deviation_annotation:
                    context.drawLine(px(0), py(0), px(0), py(1));
                    context.drawLine(px(0) - 4, py(1), px(0) + 4, py(1));
                    context.drawLine(px(0) - 4, py(0), px(0) + 4, py(0));
                    break;
                case x_interval_annotation: {
                    const double middle = 0.5 * (canvas.y0 + canvas.y1);
                    context.setPen(cVxPen{colour, 1, vxDrawContext::dash_pen});
                    context.drawLine(px(0), canvas.y0, px(0), canvas.y1);
                    context.drawLine(px(1), canvas.y0, px(1), canvas.y1);
                    context.setPen(solid);
                    context.drawLine(px(0), middle, px(1), middle);
                    break;
                }
                case tangent_line_annotation: {
                    const double x0 = xAxis.toDouble(canvas.x0), x1 = xAxis.toDouble(canvas.x1);
                    const double g = annotation.getGradient();
                    const double y0 = annotation.getY(0) + g * (x0 - annotation.getX(0));
                    const double y1 = annotation.getY(0) + g * (x1 - annotation.getX(0));
                    context.drawLine(canvas.x0, yAxis.toInt(y0), canvas.x1, yAxis.toInt(y1));
                    break;
                }
                default:
                    if (checkIsInterpolationType(annotation.getType()) || checkIsExtrapolationType(annotation.getType()))
                        drawInterpolation(annotation, plot, yAxis, context, canvas);
                    break;
                }
                for (size_t i = 0; i < n; ++i)
                    if (annotation.getType() != x_interval_annotation)
                        mark(context, px(i), py(i), colour);
            }
        }
    }
}

void drawRulerLines(const wxSinglePlotOverlay& overlay, qtVxBufferedDrawContextInverted& context)
{
    const cBox& canvas = overlay.getCanvas();
    for (const wxSinglePlotWidgetRuler* ruler : {&overlay.marker(), &overlay.cursor()}) {
        if (!ruler->checkIsEnabled())
            continue;
        const double x = std::round(ruler->getPixelX());
        if (x < canvas.x0 || x > canvas.x1)
            continue;
        const unsigned colour =
            ruler->getType() == singlePlotWidgetRuler::marker_ruler ? kMarkerColour : kCursorColour;
        context.setPen(cVxPen{colour, 1, vxDrawContext::dash_pen});
        context.drawLine(x, canvas.y0, x, canvas.y1);
    }
}

void drawBoxes(const wxSinglePlotOverlay& overlay, qtVxBufferedDrawContextInverted& context)
{
    const double lineHeight = std::ceil(context.getTextHeight("Xg"));
    const double pad = overlay.settings.boxPadding;
    for (const cOverlayBox& box : overlay.getBoxes()) {
        if (!box.item.shown)
            continue;
        const cBox& b = box.item.placed;
        // The connector from the point to the box, and the point itself for value boxes.
        if (box.kind == ruler_value_box || box.kind == annotation_box) {
            double bx = 0.0, by = 0.0;
            nearestOnBox(b, box.item.anchorX, box.item.anchorY, bx, by);
            context.setPen(cVxPen{box.colour, 1, vxDrawContext::solid_pen});
            context.drawLine(box.item.anchorX, box.item.anchorY, bx, by);
            if (box.kind == ruler_value_box)
                mark(context, box.item.anchorX, box.item.anchorY, box.colour);
        }
        // Texts of the user have no frame, but a ground that keeps them readable over curves.
        context.fillRectangle(b.x0, b.y0, b.x1, b.y1, box.kind == ruler_head_box ? box.colour : kBoxFill);
        if (box.kind != text_annotation_box) {
            context.setPen(cVxPen{box.colour, 1, vxDrawContext::solid_pen});
            context.drawRectangle(b.x0, b.y0, b.x1 - 1, b.y1 - 1);
        }
        context.setPen(cVxPen{box.kind == ruler_head_box ? 0xffffffu : kTextColour, 1, vxDrawContext::solid_pen});
        double top = b.y1 - pad;
        for (const std::string& line : box.lines) {
            context.drawText(line, b.x0 + pad, top, qtVxBufferedDrawContext::anchor_top_left);
            top -= lineHeight;
        }
    }
}

void drawLegend(const wxSinglePlotOverlay& overlay, qtVxBufferedDrawContextInverted& context)
{
    const wxSinglePlotWidgetLegend& legend = overlay.legend();
    if (!legend.checkIfLegendIsShown())
        return;
    const cBox& r = legend.getRectangle();
    if (r.width() <= 0.0 || r.height() <= 0.0)
        return;
    context.fillRectangle(r.x0, r.y0, r.x1, r.y1, kLegendFill);
    context.setPen(cVxPen{kLegendFrame, 1, vxDrawContext::solid_pen});
    context.drawRectangle(r.x0, r.y0, r.x1 - 1, r.y1 - 1);
    const auto& geometry = legend.geometry;
    for (const wxSinglePlotWidgetLegend::cRow& row : legend.getRows()) {
        const singlePlotWidgetLegend::cLegendEntry& entry = legend.getEntries()[row.entry];
        const double middle = std::round(0.5 * (row.box.y0 + row.box.y1));
        cVxPen pen = entry.pen;
        if (entry.highlighted)
            pen.width += 1;
        context.setPen(pen);
        context.drawLine(row.box.x0, middle, row.box.x0 + geometry.sampleWidth, middle);
        if (entry.symbol != curvePlotProperties::no_symbol) {
            context.setBrush(pen.colour);
            context.drawEllipse(row.box.x0 + 0.5 * geometry.sampleWidth, middle, 2.5);
        }
        context.setPen(cVxPen{kTextColour, 1, vxDrawContext::solid_pen});
        context.drawText(row.text, row.box.x0 + geometry.sampleWidth + geometry.sampleGap, row.box.y1,
                         qtVxBufferedDrawContext::anchor_top_left);
    }
    if (legend.checkCanScroll()) {
        // A thin bar at the right edge: where the visible rows lie among all.
        const double total = static_cast<double>(legend.getEntries().size());
        const double shown = static_cast<double>(legend.getRows().size());
        const double height = r.height() - 4.0;
        const double top = r.y1 - 2.0 - height * static_cast<double>(legend.getFirstVisible()) / total;
        context.fillRectangle(r.x1 - 4.0, top - height * shown / total, r.x1 - 2.0, top, kLegendFrame);
    }
}

void layoutAndDraw(wxSinglePlotOverlay& overlay, const cPlotWidgetCommon& plot, qtVxBufferedDrawContextInverted& context,
                   double widgetWidth, double widgetHeight)
{
    const plotWidgetCommon::cCanvasLayout& layout = plot.getCanvasLayout();
    const cBox canvas{layout.xLow, layout.yLow, layout.xHigh, layout.yHigh};
    overlay.layout(context, cBox{0.0, 0.0, widgetWidth, widgetHeight}, canvas);
    context.setClipRectangle(canvas.x0, canvas.y0, canvas.x1 + 1, canvas.y1 + 1);
    drawAnnotationMarks(overlay, plot, context);
    drawRulerLines(overlay, context);
    drawBoxes(overlay, context);
    context.resetClip();
    drawLegend(overlay, context);
}

}  // namespace wxPlotOverlayDrawing

}  // namespace vx3
