#include "plot/wxSinglePlotWidgetYAxis.h"

namespace vx3 {

void wxSinglePlotWidgetYAxis::computeAxesTicks(const wxAxisTextMetricsVirtual& metrics, double pixelHigh)
{
    clearTicks();
    computeAxesTicksLinearView(metrics, pixelHigh);
}

double wxSinglePlotWidgetYAxis::computeLabelSpace(double textWidth, double textHeight, double charHeight) const
{
    return 2.0 * charHeight < textHeight ? textHeight + 2.0 * charHeight : 2.0 * textHeight;
}

double wxSinglePlotWidgetYAxis::computeLabelExtent(const wxAxisTextMetricsVirtual& metrics,
                                                   const std::string& text) const
{
    return metrics.getTextHeight(text);
}

}  // namespace vx3
