#include "plot/qt/wxSharedXPlotPage.h"

#include <algorithm>

namespace vx3 {

wxSharedXPlotPage::wxSharedXPlotPage(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger, int plotKind)
    : wxMultiPlotWidget(parent, dataMutex, logger, cDeferFirstPlot{}), mPlotKind(plotKind), mNextKind(plotKind)
{
    createFirstPlot();
    layoutChanged();
}

std::unique_ptr<wxSinglePlotWidgetImpl> wxSharedXPlotPage::createPlot()
{
    const int kind = mNextKind;
    mNextKind = mPlotKind;
    std::unique_ptr<wxSinglePlotWidgetImpl> plot;
    if (kind == waveExplorerWidgetVirtual::digital_plot)
        plot = std::make_unique<wxDigitalRowsPlot>(this, dataMutex(), logger(), this);
    else
        plot = std::make_unique<wxSinglePlotWidgetImpl>(this, dataMutex(), logger(), this, kind);
    plot->show();
    return plot;
}

wxSinglePlotWidgetImpl& wxSharedXPlotPage::appendPlotOfKind(int plotKind)
{
    mNextKind = plotKind;
    wxSinglePlotWidgetImpl& plot = appendPlot();
    mNextKind = mPlotKind;
    return plot;
}

wxDigitalRowsPlot* wxSharedXPlotPage::rowsPlot(size_t index)
{
    return index < getNbOfPlots() ? dynamic_cast<wxDigitalRowsPlot*>(&plot(index)) : nullptr;
}

bool wxSharedXPlotPage::addCurves(size_t index, const std::vector<wxCurveDescription>& curves)
{
    wxDigitalRowsPlot* rows = rowsPlot(index);
    if (!rows)
        return wxMultiPlotWidget::addCurves(index, curves);
    const bool added = rows->addRowCurves(curves);
    if (added)
        getSync().bringIntoStep(rows);
    alignLeftMargins();
    return added;
}

void wxSharedXPlotPage::analogPlotVirtualLockXAxisType(cPlotWidgetCommon* plot, unsigned)
{
    if (getSync().checkConnectionsEnabled())
        getSync().addToFirstConnection(plot);
}

void wxSharedXPlotPage::setSynchronized(bool synchronized)
{
    cMultiPlotSync& sync = getSync();
    sync.deconnectAllPlots();
    sync.setConnectionsEnabled(synchronized);
    if (!synchronized)
        return;
    // Plots with curves join at once; an empty plot joins with its first curve.
    for (size_t i = 0; i < getNbOfPlots(); ++i)
        if (plot(i).getNbOfCurves() > 0)
            sync.addToFirstConnection(&plot(i));
}

void wxSharedXPlotPage::alignLeftMargins()
{
    int widest = singlePlotWidgetImpl::cPlotLook().leftMargin;
    for (size_t i = 0; i < getNbOfPlots(); ++i) {
        wxDigitalRowsPlot* rows = rowsPlot(i);
        widest = std::max(widest, rows ? rows->computeNamesWidth() : plot(i).getLook().leftMargin);
    }
    for (size_t i = 0; i < getNbOfPlots(); ++i) {
        singlePlotWidgetImpl::cPlotLook look = plot(i).getLook();
        if (look.leftMargin == widest)
            continue;
        look.leftMargin = widest;
        plot(i).setLook(look);
    }
}

void wxSharedXPlotPage::layoutChanged()
{
    alignLeftMargins();
    wxMultiPlotWidget::layoutChanged();
}

}  // namespace vx3
