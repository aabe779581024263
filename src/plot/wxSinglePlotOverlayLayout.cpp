// Where the overlay's text boxes go: the legend first, then the rulers' heads, the texts placed by
// the user, and last the value boxes and annotation texts, each kept clear of all before it.
#include <algorithm>
#include <cmath>

#include "plot/cPlotWidgetCommon.h"
#include "plot/wxSinglePlotOverlay.h"

namespace vx3 {

using namespace singlePlotOverlay;
using namespace singlePlotWidgetAnnotations;
using plotBoxLayout::cBox;

namespace {

constexpr unsigned kMarkerColour = 0x1f6fd0;
constexpr unsigned kCursorColour = 0xd03a1f;
constexpr unsigned kTextColour = 0x303030;
constexpr double kBoxOffset = 8.0;  // between a point and its box

std::vector<std::string> splitLines(const std::string& text)
{
    std::vector<std::string> lines;
    size_t start = 0;
    for (;;) {
        const size_t end = text.find('\n', start);
        lines.push_back(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
        if (end == std::string::npos)
            break;
        start = end + 1;
    }
    return lines;
}

bool nonOverlappingStyle(int style)
{
    using namespace waveExplorerConfiguration;
    return style != ruler_values_in_annotations && style != ruler_values_and_names_in_annotations;
}

void collect(std::vector<cOverlayBox>& into, std::vector<cOverlayBox>& from)
{
    for (cOverlayBox& box : from)
        into.push_back(std::move(box));
    from.clear();
}

// Lays the boxes out and adds the placed ones to the obstacles of the next group.
void place(std::vector<cOverlayBox>& boxes, const cBox& area, std::vector<cBox>& obstacles, bool avoid)
{
    std::vector<plotBoxLayout::cItem> items;
    for (const cOverlayBox& box : boxes)
        items.push_back(box.item);
    if (avoid) {
        plotBoxLayout::layoutNonOverlapping(items, area, obstacles);
    } else {
        for (plotBoxLayout::cItem& item : items) {
            // Only kept inside the canvas.
            cBox b = item.wished;
            b = b.moved(std::min(0.0, area.x1 - b.x1), std::min(0.0, area.y1 - b.y1));
            b = b.moved(std::max(0.0, area.x0 - b.x0), std::max(0.0, area.y0 - b.y0));
            item.placed = b;
            item.shown = b.inside(area);
            item.moved = false;
        }
    }
    for (size_t i = 0; i < boxes.size(); ++i) {
        boxes[i].item = items[i];
        if (items[i].shown)
            obstacles.push_back(items[i].placed);
    }
}

}  // namespace

cOverlayBox wxSinglePlotOverlay::makeBox(const wxAxisTextMetricsVirtual& metrics, const std::string& text, int kind,
                                         double anchorX, double anchorY, double dx, double dy) const
{
    cOverlayBox box;
    box.kind = kind;
    box.lines = splitLines(text);
    double width = 0.0;
    const double lineHeight = std::ceil(metrics.getTextHeight("Xg"));
    for (const std::string& line : box.lines)
        width = std::max(width, metrics.getTextWidth(line));
    const double pad = settings.boxPadding;
    const double w = std::ceil(width + 2.0 * pad), h = lineHeight * static_cast<double>(box.lines.size()) + 2.0 * pad;
    // dx, dy: where the box's left edge and vertical centre go from the anchor.
    const double left = anchorX + dx, centre = anchorY + dy;
    box.item.wished = {left, centre - 0.5 * h, left + w, centre + 0.5 * h};
    box.item.anchorX = anchorX;
    box.item.anchorY = anchorY;
    return box;
}

void wxSinglePlotOverlay::addRulerBoxes(const wxAxisTextMetricsVirtual& metrics, const wxSinglePlotWidgetRuler& ruler,
                                        std::vector<cOverlayBox>& heads, std::vector<cOverlayBox>& values) const
{
    using namespace waveExplorerConfiguration;
    if (!ruler.checkIsEnabled())
        return;
    const double x = ruler.getPixelX();
    if (x < mCanvas.x0 || x > mCanvas.x1)
        return;  // out of view: neither line nor boxes
    const unsigned colour = ruler.getType() == singlePlotWidgetRuler::marker_ruler ? kMarkerColour : kCursorColour;
    const bool onXAxis = settings.rulerStyle == ruler_annotations_on_x_axis;
    const std::string headText = ruler.createAnnotationLabel();
    const double lineHeight = std::ceil(metrics.getTextHeight("Xg")) + 2.0 * settings.boxPadding;
    const double headY = onXAxis ? mCanvas.y0 + 2.0 + 0.5 * lineHeight : mCanvas.y1 - 2.0 - 0.5 * lineHeight;
    cOverlayBox head = makeBox(metrics, headText, ruler_head_box, x, headY, 4.0, 0.0);
    head.owner = ruler.getType();
    head.colour = colour;
    heads.push_back(std::move(head));
    if (onXAxis || settings.rulerStyle == ruler_no_values)
        return;
    const bool withNames = settings.rulerStyle == ruler_values_and_names_in_annotations ||
                           settings.rulerStyle == ruler_values_and_names_in_non_overlapping_annotations;
    const std::vector<wxSinglePlotWidgetData>& curves = mPlot.getCurves();
    for (const singlePlotWidgetRuler::cRulerValue& value : ruler.getValues()) {
        if (!value.valid || value.curveIndex >= curves.size())
            continue;
        const double y = value.text.empty() || !std::isfinite(value.y) ? ruler.getPixelY()
                                                                         : mPlot.yAxis(value.axis).toInt(value.y);
        if (!(y >= mCanvas.y0 && y <= mCanvas.y1))
            continue;
        const wxCurveDescription& description = curves[value.curveIndex].description();
        cOverlayBox box = makeBox(metrics, ruler.createValueLabel(value, withNames, description.getName()),
                                  ruler_value_box, x, y, kBoxOffset, 0.0);
        box.owner = ruler.getType();
        box.curveIndex = value.curveIndex;
        box.imaginary = value.imaginary;
        box.colour = value.imaginary ? description.style().imagColour : description.style().realColour;
        values.push_back(std::move(box));
    }
}

void wxSinglePlotOverlay::addAnnotationBoxes(const wxAxisTextMetricsVirtual& metrics, std::vector<cOverlayBox>& texts,
                                             std::vector<cOverlayBox>& others) const
{
    const wxSinglePlotWidgetXAxis& xAxis = mPlot.xAxis();
    for (size_t i = 0; i < mGlobal.size(); ++i) {
        const wxAnnotation& annotation = mGlobal[i];
        const cCurveInformationContext context = makeInformationContext(-1, false);
        const double ax = xAxis.toInt(annotation.getX(0)) + annotation.getShiftX();
        const double ay = mPlot.yAxis(0).toInt(annotation.getY(0)) + annotation.getShiftY();
        cOverlayBox box = makeBox(metrics, annotation.replaceTextPlaceholders(context), text_annotation_box, ax, ay,
                                  0.0, 0.0);
        // A text's anchor is its top left corner.
        box.item.wished = box.item.wished.moved(0.0, -0.5 * box.item.wished.height());
        box.item.mayMirror = false;
        box.owner = static_cast<int>(i);
        box.global = true;
        box.colour = kTextColour;
        texts.push_back(std::move(box));
    }
    const std::vector<wxSinglePlotWidgetData>& curves = mPlot.getCurves();
    for (size_t c = 0; c < curves.size(); ++c) {
        for (bool imaginary : {false, true}) {
            const std::vector<wxAnnotation>* list = getCurveAnnotations(c, imaginary);
            if (!list || (imaginary ? !curves[c].checkImagPartShown() : !curves[c].checkRealPartShown()))
                continue;
            const wxSinglePlotWidgetYAxis& yAxis = mPlot.yAxis(imaginary ? curves[c].getImagAxis() : curves[c].getRealAxis());
            const cCurveInformationContext context = makeInformationContext(static_cast<int>(c), imaginary);
            for (size_t i = 0; i < list->size(); ++i) {
                const wxAnnotation& annotation = (*list)[i];
                const size_t n = annotation.getNbPoints();
                if (!annotation.checkIfAnnotationIsDrawn(xAxis.getMin(), xAxis.getMax(), yAxis.getMin(), yAxis.getMax(),
                                                         2.0 * std::fabs(xAxis.getInverseScale()),
                                                         2.0 * std::fabs(yAxis.getInverseScale())))
                    continue;
                // The box stands by the point, or by the middle of a distance.
                const size_t last = n - 1;
                double ax = xAxis.toInt(annotation.getX(0)), ay = yAxis.toInt(annotation.getY(0));
                if (n >= 2 && !checkIsInterpolationType(annotation.getType()) &&
                    !checkIsExtrapolationType(annotation.getType())) {
                    ax = 0.5 * (ax + xAxis.toInt(annotation.getX(1)));
                    ay = 0.5 * (ay + yAxis.toInt(annotation.getY(1)));
                } else if (n >= 2) {
                    ax = xAxis.toInt(annotation.getX(last));
                    ay = yAxis.toInt(annotation.getY(last));
                }
                if (annotation.getType() == x_interval_annotation)
                    ay = 0.5 * (mCanvas.y0 + mCanvas.y1);
                ax = std::clamp(ax, mCanvas.x0, mCanvas.x1);
                ay = std::clamp(ay, mCanvas.y0, mCanvas.y1);
                cOverlayBox box = makeBox(metrics, annotation.replaceTextPlaceholders(context), annotation_box,
                                          ax + annotation.getShiftX(), ay + annotation.getShiftY(), kBoxOffset,
                                          kBoxOffset + 6.0);
                box.item.anchorX = ax;
                box.item.anchorY = ay;
                box.owner = static_cast<int>(i);
                box.curveIndex = c;
                box.imaginary = imaginary;
                const wxCurveStyle& style = curves[c].description().style();
                box.colour = imaginary ? style.imagColour : style.realColour;
                others.push_back(std::move(box));
            }
        }
    }
}

void wxSinglePlotOverlay::layout(const wxAxisTextMetricsVirtual& metrics, const cBox& widget, const cBox& canvas)
{
    mCanvas = canvas;
    mBoxes.clear();
    mLegend.update(mPlot.getCurves());
    mLegend.layout(metrics, widget, canvas);
    mMarker.computeIntegerPosition();
    mCursor.computeIntegerPosition();
    std::vector<cBox> obstacles;
    if (mLegend.checkIfLegendIsShown() && mLegend.getRectangle().intersects(canvas))
        obstacles.push_back(mLegend.getRectangle());
    std::vector<cOverlayBox> heads, values, texts, others;
    addRulerBoxes(metrics, mMarker, heads, values);
    addRulerBoxes(metrics, mCursor, heads, values);
    addAnnotationBoxes(metrics, texts, others);
    place(heads, canvas, obstacles, true);
    place(texts, canvas, obstacles, true);
    // Value boxes and annotation texts share the room left; the styles that allow overlaps place
    // the value boxes where they are wished.
    const bool avoid = nonOverlappingStyle(settings.rulerStyle);
    if (!avoid)
        place(values, canvas, obstacles, false);
    for (cOverlayBox& box : others)
        values.push_back(std::move(box));
    others.clear();
    if (avoid)
        place(values, canvas, obstacles, true);
    else {
        std::vector<cOverlayBox> annotations;
        for (cOverlayBox& box : values)
            if (box.kind == annotation_box)
                annotations.push_back(box);
        std::erase_if(values, [](const cOverlayBox& box) { return box.kind == annotation_box; });
        place(annotations, canvas, obstacles, true);
        collect(values, annotations);
    }
    collect(mBoxes, heads);
    collect(mBoxes, texts);
    collect(mBoxes, values);
}

int wxSinglePlotOverlay::annotationHitTest(double x, double y) const
{
    for (size_t i = mBoxes.size(); i-- > 0;)
        if ((mBoxes[i].kind == annotation_box || mBoxes[i].kind == text_annotation_box) && mBoxes[i].item.shown &&
            mBoxes[i].item.placed.contains(x, y))
            return static_cast<int>(i);
    return -1;
}

}  // namespace vx3
