// A page of plots without any toolkit: the page arithmetic of the widget page, for headless use
// and tests. The plots are laid out on a page of a given pixel size.
#pragma once

#include "plot/cMultiPlotCommon.h"

namespace vx3 {

class cMultiPlot : public cMultiPlotCommon<cPlotWidgetCommon> {
public:
    explicit cMultiPlot(const cVxLogger& logger, int width = 800, int height = 600);
    void setPageSize(int width, int height);
    int getWidth() const { return mWidth; }
    int getHeight() const { return mHeight; }
    // Room around each plot's canvas for its axes, in pixels.
    static constexpr int axis_margin_left = 72, axis_margin_bottom = 44, axis_margin_top = 12, axis_margin_right = 20;

protected:
    std::unique_ptr<cPlotWidgetCommon> createPlot() override;
    void layoutChanged() override;

private:
    int mWidth, mHeight;
};

}  // namespace vx3
