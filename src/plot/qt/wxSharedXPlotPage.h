// The base of pages whose plots all share one X: digital, stacked and mixed pages. Every plot
// joins the page's one group whatever its X unit, so zoom, scroll and rulers go to all; the
// synchronisation can be switched off and on. Plots are analog plots or plots of rows, and all
// canvases start at the same pixel, the widest left column winning, so that X pixels match.
#pragma once

#include "plot/qt/wxDigitalRowsPlot.h"
#include "plot/qt/wxMultiPlotWidget.h"

namespace vx3 {

class wxSharedXPlotPage : public wxMultiPlotWidget {
public:
    // Off: every plot goes its own way; on: all plots join one group again.
    void setSynchronized(bool synchronized);
    bool checkSynchronized() const { return getSync().checkConnectionsEnabled(); }
    // The plot of rows at index, null for an analog plot or an index past the plots.
    wxDigitalRowsPlot* rowsPlot(size_t index);
    // A plot of rows gets a row per curve; an analog plot takes the curves as any plot does.
    bool addCurves(size_t index, const std::vector<wxCurveDescription>& curves) override;
    void analogPlotVirtualLockXAxisType(cPlotWidgetCommon* plot, unsigned unit) override;
    // The widest left column of the plots becomes every plot's.
    void alignLeftMargins();

protected:
    // plotKind: waveExplorerWidgetVirtual::analog_plot or digital_plot (a plot of rows), the
    // kind of the first plot and of plots made by a split.
    wxSharedXPlotPage(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger, int plotKind);
    std::unique_ptr<wxSinglePlotWidgetImpl> createPlot() override;
    // A plot of the kind after the last one.
    wxSinglePlotWidgetImpl& appendPlotOfKind(int plotKind);
    void layoutChanged() override;

private:
    int mPlotKind;
    int mNextKind;
};

}  // namespace vx3
