#include "plot/wxSinglePlotWidgetYAxis.h"

namespace vx3 {

void wxSinglePlotWidgetYAxis::computeTicksLinear(const wxAxisTextMetricsVirtual& metrics, double pixelHigh,
                                                 double min, double max, double& distance, int& precision,
                                                 unsigned& subdivisions, double& textWidth, double& textHeight)
{
    computeTicksLinearAll(metrics, pixelHigh, min, max, distance, precision, subdivisions, textWidth,
                          textHeight, mMaxTextWidth);
}

void wxSinglePlotWidgetYAxis::computeAxesTicks(const wxAxisTextMetricsVirtual& metrics, double pixelHigh)
{
    clearTicks();
    double distance = 0.0, textWidth = 0.0, textHeight = 0.0;
    int precision = 0;
    unsigned subdivisions = 1;
    computeTicksLinear(metrics, pixelHigh, mMin, mMax, distance, precision, subdivisions, textWidth, textHeight);
    computeAxesTicksLinear(metrics, pixelHigh, distance, subdivisions, precision);
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
