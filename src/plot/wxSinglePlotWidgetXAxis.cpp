#include "plot/wxSinglePlotWidgetXAxis.h"

namespace vx3 {

void wxSinglePlotWidgetXAxis::computeTicksLinear(const wxAxisTextMetricsVirtual& metrics, double pixelHigh,
                                                 double min, double max, double& distance, int& precision,
                                                 unsigned& subdivisions, double& textWidth, double& textHeight)
{
    computeTicksLinearAll(metrics, pixelHigh, min, max, distance, precision, subdivisions, textWidth,
                          textHeight, -1.0);
}

void wxSinglePlotWidgetXAxis::computeAxesTicks(const wxAxisTextMetricsVirtual& metrics, double pixelHigh)
{
    clearTicks();
    if (mIsLog) {
        computeAxesTicksLog(metrics, pixelHigh);
        return;
    }
    if (checkIsTimeStampAxis() && mTimeStampAsDate) {
        computeAxesTicksTimeStamp(metrics, pixelHigh);
        return;
    }
    double distance = 0.0, textWidth = 0.0, textHeight = 0.0;
    int precision = 0;
    unsigned subdivisions = 1;
    computeTicksLinear(metrics, pixelHigh, mMin, mMax, distance, precision, subdivisions, textWidth, textHeight);
    computeAxesTicksLinear(metrics, pixelHigh, distance, subdivisions, precision);
}

double wxSinglePlotWidgetXAxis::computeLabelSpace(double textWidth, double textHeight, double charHeight) const
{
    // A gap of two character heights between labels, unless the labels are short: then one label's width.
    return 2.0 * charHeight < textWidth ? textWidth + 2.0 * charHeight : 2.0 * textWidth;
}

double wxSinglePlotWidgetXAxis::computeLabelExtent(const wxAxisTextMetricsVirtual& metrics,
                                                   const std::string& text) const
{
    return metrics.getTextWidth(text);
}

}  // namespace vx3
