#include "plot/wxSinglePlotWidgetXAxis.h"

namespace vx3 {

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
    computeAxesTicksLinearView(metrics, pixelHigh);
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
