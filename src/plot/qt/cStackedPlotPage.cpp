#include "plot/qt/cStackedPlotPage.h"

#include <algorithm>

namespace vx3 {

using namespace stackedPlotPage;

cStackedPlotPage::cStackedPlotPage(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger)
    : cStackedPlotPage(parent, dataMutex, logger, waveExplorerWidgetVirtual::analog_plot)
{
}

cStackedPlotPage::cStackedPlotPage(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger, int plotKind)
    : wxSharedXPlotPage(parent, dataMutex, logger, plotKind)
{
    layoutChanged();
}

size_t cStackedPlotPage::takeBottomPlot(int plotKind)
{
    const bool firstIsRows = rowsPlot(0) != nullptr;
    const bool wantRows = plotKind == waveExplorerWidgetVirtual::digital_plot;
    if (getNbOfPlots() == 1 && plot(0).getNbOfCurves() == 0 && firstIsRows == wantRows)
        return 0;
    appendPlotOfKind(plotKind);
    // The page's first plot is still empty: the new trace takes its place.
    if (getNbOfPlots() == 2 && plot(0).getNbOfCurves() == 0 && !(firstIsRows && rowsPlot(0)->rows().size()))
        closeWindow(0);
    layoutChanged();
    return getNbOfPlots() - 1;
}

bool cStackedPlotPage::addTrace(const std::vector<wxCurveDescription>& curves)
{
    const size_t index = takeBottomPlot(waveExplorerWidgetVirtual::analog_plot);
    const bool added = addCurves(index, curves);
    // A trace that could not be added leaves no empty plot behind, unless it is the page's only one.
    if (!added && getNbOfPlots() > 1 && plot(index).getNbOfCurves() == 0)
        closeWindow(index);
    return added;
}

bool cStackedPlotPage::moveEdgeBelow(size_t index, double share)
{
    restack();
    if (index + 1 >= mShares.size())
        return false;
    double total = 0.0;
    for (double s : mShares)
        total += s;
    const double least = smallest_share * total;
    share *= total;
    share = std::clamp(share, least - mShares[index], mShares[index + 1] - least);
    mShares[index] += share;
    mShares[index + 1] -= share;
    layoutChanged();
    return true;
}

void cStackedPlotPage::restack()
{
    // Plots added or closed by the page logic get or give back an equal share.
    if (mShares.size() != getNbOfPlots())
        mShares.assign(getNbOfPlots(), 1.0);
    pageLayout().stack(mShares);
}

void cStackedPlotPage::layoutChanged()
{
    restack();
    // One X axis with labels, under the lowest plot; the others end in a line.
    for (size_t i = 0; i < getNbOfPlots(); ++i) {
        singlePlotWidgetImpl::cPlotLook look = plot(i).getLook();
        const bool lowest = i + 1 == getNbOfPlots();
        const int bottom = lowest ? singlePlotWidgetImpl::cPlotLook().bottomMargin : bare_bottom_margin;
        if (look.xAxisLabels == lowest && look.bottomMargin == bottom)
            continue;
        look.xAxisLabels = lowest;
        look.bottomMargin = bottom;
        plot(i).setLook(look);
    }
    wxSharedXPlotPage::layoutChanged();
}

}  // namespace vx3
