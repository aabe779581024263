// The horizontal axis: linear, logarithmic or time stamps; labels side by side.
#pragma once

#include "plot/wxSinglePlotWidgetAxis.h"

namespace vx3 {

class wxSinglePlotWidgetXAxis : public wxSinglePlotWidgetAxis {
public:
    using wxSinglePlotWidgetAxis::wxSinglePlotWidgetAxis;

    // Replaces the ticks by those of the present view; pixelHigh is the right end of the axis.
    void computeAxesTicks(const wxAxisTextMetricsVirtual& metrics, double pixelHigh) override;

protected:
    double computeLabelSpace(double textWidth, double textHeight, double charHeight) const override;
    double computeLabelExtent(const wxAxisTextMetricsVirtual& metrics, const std::string& text) const override;
};

}  // namespace vx3
