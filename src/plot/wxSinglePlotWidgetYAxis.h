// A vertical axis: always linear; labels stacked, their width bounded by the room beside the plot.
#pragma once

#include "plot/wxSinglePlotWidgetAxis.h"

namespace vx3 {

class wxSinglePlotWidgetYAxis : public wxSinglePlotWidgetAxis {
public:
    using wxSinglePlotWidgetAxis::wxSinglePlotWidgetAxis;

    // pixelHigh is the top end of the axis (pixels grow upwards until the draw context flips them).
    void computeAxesTicks(const wxAxisTextMetricsVirtual& metrics, double pixelHigh) override;
    // Vertical axes are never logarithmic.
    void computeAxesTicksLog(const wxAxisTextMetricsVirtual& metrics, double pixelHigh) override {}
    bool checkIsVerticalAxis() const override { return true; }
    // The widest label text allowed; not positive for no bound.
    void setMaxTextWidth(double width) { mMaxTextWidth = width; }

protected:
    double getMaxLabelTextWidth() const override { return mMaxTextWidth; }
    double computeLabelSpace(double textWidth, double textHeight, double charHeight) const override;
    double computeLabelExtent(const wxAxisTextMetricsVirtual& metrics, const std::string& text) const override;

private:
    double mMaxTextWidth = -1.0;
};

}  // namespace vx3
