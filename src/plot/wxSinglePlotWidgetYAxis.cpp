#include "plot/wxSinglePlotWidgetYAxis.h"

#include <algorithm>
#include <cmath>

namespace vx3 {

void wxSinglePlotWidgetYAxis::computeAxesTicks(const wxAxisTextMetricsVirtual& metrics, double pixelHigh)
{
    clearTicks();
    computeAxesTicksLinearView(metrics, pixelHigh);
    if (mEnumerationTexts.empty())
        return;
    // An enumerated curve reads its states: whole values by their texts, nothing between them.
    for (singlePlotWidgetAxis::cTickLabel& tick : mTicks) {
        if (tick.text.empty())
            continue;
        // Ticks stepped in binary fractions land a rounding off the whole values.
        const double value = tick.exactValue().toDouble(), whole = std::round(value);
        std::string text;
        const bool onState = std::fabs(value - whole) <= 1e-9 * std::max(1.0, std::fabs(whole));
        tick.text = onState && replaceByEnumStringValue(whole, text) ? text : std::string();
    }
    mDeltaReferenceIndex = -1;
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
