#include "plot/cMultiPlot.h"

#include <algorithm>

namespace vx3 {

cMultiPlot::cMultiPlot(const cVxLogger& logger, int width, int height)
    : cMultiPlotCommon<cPlotWidgetCommon>(logger), mWidth(width), mHeight(height)
{
    createFirstPlot();
    layoutChanged();
}

void cMultiPlot::setPageSize(int width, int height)
{
    mWidth = std::max(width, 1), mHeight = std::max(height, 1);
    layoutChanged();
}

std::unique_ptr<cPlotWidgetCommon> cMultiPlot::createPlot()
{
    return std::make_unique<cPlotWidgetCommon>(logger(), this);
}

void cMultiPlot::layoutChanged()
{
    for (size_t i = 0; i < getNbOfPlots(); ++i) {
        const plotPageLayout::cPixelRect rect = getLayout().computeScreenPosition(i, mWidth, mHeight);
        if (rect.w <= 0 || rect.h <= 0)
            continue;  // hidden behind a maximized plot: keeps its last pixels
        // A canvas always keeps a few pixels, however small the plot.
        const double xLow = rect.x + axis_margin_left;
        const double xHigh = std::max(xLow + 8.0, double(rect.x + rect.w - axis_margin_right));
        const double yLow = rect.y + axis_margin_top;
        const double yHigh = std::max(yLow + 8.0, double(rect.y + rect.h - axis_margin_bottom));
        plot(i).setCanvasLayout(plotWidgetCommon::cCanvasLayout{xLow, xHigh, yLow, yHigh});
    }
}

}  // namespace vx3
