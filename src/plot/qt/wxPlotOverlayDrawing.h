// Drawing of what lies over a single plot's curves: annotation marks, the rulers with their
// boxes, and the legend, from the layout the overlay computed. Drawn on the widget's picture,
// never into the curves' bitmap.
#pragma once

#include <QFont>

#include "plot/wxAxisTextMetricsVirtual.h"
#include "widgets/qtVxBufferedDrawContext.h"

namespace vx3 {

class cPlotWidgetCommon;
class wxSinglePlotOverlay;

// Text sizes of a font without a painter: for layouts that must be known before painting (the
// band a side legend takes).
class wxPlotOverlayTextMetrics : public wxAxisTextMetricsVirtual {
public:
    explicit wxPlotOverlayTextMetrics(const QFont& font = QFont()) : mFont(font) {}
    double getTextWidth(const std::string& text) const override;
    double getTextHeight(const std::string& text) const override;

private:
    QFont mFont;
};

namespace wxPlotOverlayDrawing {

// Lays the overlay out for the present view and draws it. canvas and widget in pixels, y upwards.
void layoutAndDraw(wxSinglePlotOverlay& overlay, const cPlotWidgetCommon& plot, qtVxBufferedDrawContextInverted& context,
                   double widgetWidth, double widgetHeight);

// The parts, in drawing order.
void drawAnnotationMarks(const wxSinglePlotOverlay& overlay, const cPlotWidgetCommon& plot,
                         qtVxBufferedDrawContextInverted& context);
void drawRulerLines(const wxSinglePlotOverlay& overlay, qtVxBufferedDrawContextInverted& context);
void drawBoxes(const wxSinglePlotOverlay& overlay, qtVxBufferedDrawContextInverted& context);
void drawLegend(const wxSinglePlotOverlay& overlay, qtVxBufferedDrawContextInverted& context);

}  // namespace wxPlotOverlayDrawing

}  // namespace vx3
