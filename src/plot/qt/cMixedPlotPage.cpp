#include "plot/qt/cMixedPlotPage.h"

namespace vx3 {

cMixedPlotPage::cMixedPlotPage(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger)
    : cStackedPlotPage(parent, dataMutex, logger, waveExplorerWidgetVirtual::analog_plot)
{
}

int cMixedPlotPage::findRowsPlot()
{
    for (size_t i = 0; i < getNbOfPlots(); ++i)
        if (rowsPlot(i))
            return static_cast<int>(i);
    return -1;
}

bool cMixedPlotPage::addDigitalCurves(const std::vector<wxCurveDescription>& curves)
{
    int index = findRowsPlot();
    if (index < 0)
        index = static_cast<int>(takeBottomPlot(waveExplorerWidgetVirtual::digital_plot));
    return addCurves(static_cast<size_t>(index), curves);
}

bool cMixedPlotPage::addAnalogCurves(const std::vector<wxCurveDescription>& curves)
{
    const int rows = findRowsPlot();
    if (!addTrace(curves))
        return false;
    // The new trace went to the bottom: the rows stay the lowest plot.
    const size_t last = getNbOfPlots() - 1;
    if (rows >= 0 && rowsPlot(last) == nullptr && last > 0 && rowsPlot(last - 1))
        swapPlots(last - 1, last);
    return true;
}

bool cMixedPlotPage::addMixedCurves(const std::vector<wxCurveDescription>& curves)
{
    std::vector<wxCurveDescription> digital, analog;
    for (const wxCurveDescription& curve : curves)
        (wxDigitalRowsPlot::computeLogicWidth(curve) > 0 ? digital : analog).push_back(curve);
    bool added = false;
    if (!analog.empty())
        added = addAnalogCurves(analog) || added;
    if (!digital.empty())
        added = addDigitalCurves(digital) || added;
    return added;
}

}  // namespace vx3
