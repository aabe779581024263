// The page logic shared by the widget page and the headless page: the list of plots, the active
// plot, the layout (split, close, maximize), plot names, the connections that keep plots with one
// X unit in step, and the command log of user actions. PlotT is the page's plot (a
// cPlotWidgetCommon); the derived page creates plots and places them on screen.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/cVxLogger.h"
#include "plot/cMultiPlotSync.h"
#include "plot/cPlotWidgetCommon.h"
#include "plot/wxAnalogPlotVirtual.h"
#include "plot/wxCurveDescription.h"
#include "plot/wxPlotPageLayout.h"

namespace vx3 {

template <class PlotT>
class cMultiPlotCommon : public wxAnalogPlotVirtual {
public:
    using cCommandRecorder = std::function<void(const std::string&)>;

    virtual ~cMultiPlotCommon() = default;

    // --- plots ---------------------------------------------------------------------------------
    size_t getNbOfPlots() const { return mPlots.size(); }
    PlotT& plot(size_t index) { return *mPlots.at(index); }
    const PlotT& plot(size_t index) const { return *mPlots.at(index); }
    int indexOf(const cPlotWidgetCommon* plot) const
    {
        for (size_t i = 0; i < mPlots.size(); ++i)
            if (mPlots[i].get() == plot)
                return static_cast<int>(i);
        return -1;
    }
    // A plot by its page name ("1", "2", ... unless named), -1 for none.
    int findPlot(const std::string& name) const
    {
        for (size_t i = 0; i < mPlots.size(); ++i)
            if (getPlotName(i) == name)
                return static_cast<int>(i);
        return -1;
    }
    std::string getPlotName(size_t index) const
    {
        return index < mNames.size() && !mNames[index].empty() ? mNames[index] : std::to_string(index + 1);
    }
    // Names in plot order; fewer names than plots leave the rest numbered.
    void definePlotPageNames(const std::vector<std::string>& names)
    {
        mNames = names;
        std::string text = "define_page_plot_names \"";
        for (size_t i = 0; i < names.size(); ++i)
            text += (i ? " " : "") + names[i];
        record(text + "\"");
    }
    // Names one plot without recording: the explorer keeps plot names unique over all pages.
    void setPlotName(size_t index, const std::string& name)
    {
        if (index >= mPlots.size())
            return;
        if (mNames.size() < mPlots.size())
            mNames.resize(mPlots.size());
        mNames[index] = name;
    }
    size_t getActiveIndex() const { return mActive; }
    PlotT& getActiveOrFirstWindow() { return *mPlots.at(mActive < mPlots.size() ? mActive : 0); }
    void setActiveWindow(size_t index)
    {
        if (index < mPlots.size())
            mActive = index;
    }
    const wxPlotPageLayout& getLayout() const { return mLayout; }
    const cMultiPlotSync& getSync() const { return mSync; }
    cMultiPlotSync& getSync() { return mSync; }
    void setCommandRecorder(cCommandRecorder recorder) { mRecorder = std::move(recorder); }
    // Where the mouse's position over a plot of the page is shown.
    void setCursorPositionTextHandler(std::function<void(const std::string&)> handler)
    {
        mCursorPositionText = std::move(handler);
    }
    // Told the index of each plot that a split made, so that its owner can name and equip it.
    void setPlotCreatedHandler(std::function<void(size_t)> handler) { mPlotCreated = std::move(handler); }

    // --- curves --------------------------------------------------------------------------------
    // Adds curves to a plot and brings it into step with its group (its X range follows a zoomed
    // group, a first curve of an unzoomed group widens the shared default box).
    virtual bool addCurves(size_t index, const std::vector<wxCurveDescription>& curves)
    {
        if (index >= mPlots.size())
            return reportNoPlot(std::to_string(index + 1));
        const bool added = mPlots[index]->addToPlot(curves);
        if (added)
            mSync.bringIntoStep(mPlots[index].get());
        return added;
    }

    // --- layout --------------------------------------------------------------------------------
    // The named plot is split in two; the new, empty plot becomes active.
    bool splitPlot(const std::string& name, bool vertically)
    {
        const int index = findPlot(name);
        if (index < 0)
            return reportNoPlot(name);
        mLayout.split(static_cast<size_t>(index), vertically);
        auto created = createPlot();
        mPlots.insert(mPlots.begin() + index + 1, std::move(created));
        if (mNames.size() > static_cast<size_t>(index) + 1)
            mNames.insert(mNames.begin() + index + 1, std::string());
        mActive = static_cast<size_t>(index) + 1;
        if (mPlotCreated)
            mPlotCreated(mActive);
        record(std::string(vertically ? "split_vertically \"" : "split_horizontally \"") + name + "\"");
        layoutChanged();
        return true;
    }
    // Shows the named plot alone; a second call on the same plot brings the others back.
    bool maximizePlot(const std::string& name)
    {
        const int index = findPlot(name);
        if (index < 0)
            return reportNoPlot(name);
        if (mLayout.getMaximized() == index)
            mLayout.minimize();
        else
            mLayout.maximize(static_cast<size_t>(index));
        record("maximize_plot \"" + name + "\"");
        layoutChanged();
        return true;
    }
    // Brings the plots back after a maximize; false (with no message) when nothing is maximized.
    bool minimizePlot(const std::string& name)
    {
        const int index = findPlot(name);
        if (index < 0)
            return reportNoPlot(name);
        if (mLayout.getMaximized() < 0)
            return false;
        mLayout.minimize();
        record("minimize_plot \"" + name + "\"");
        layoutChanged();
        return true;
    }
    // Closes a plot; the last plot of a page is emptied instead, as a page always holds one.
    bool closeWindow(size_t index)
    {
        if (index >= mPlots.size())
            return false;
        if (!analogPlotVirtualCheckIfPlotCanBeClosed(mPlots[index].get()))
            return false;
        mSync.removePlot(mPlots[index].get());
        if (mPlots.size() == 1) {
            mPlots[0]->clearCurves();
            mSync.removePlot(mPlots[0].get());
            return true;
        }
        mLayout.remove(index);
        mPlots.erase(mPlots.begin() + static_cast<std::ptrdiff_t>(index));
        if (index < mNames.size())
            mNames.erase(mNames.begin() + static_cast<std::ptrdiff_t>(index));
        if (mActive >= mPlots.size() || mActive > index)
            mActive = mActive > 0 ? mActive - 1 : 0;
        layoutChanged();
        return true;
    }

    // --- what plots ask of the page --------------------------------------------------------------
    unsigned analogPlotVirtualGetNumberOfPlotWindows() override { return static_cast<unsigned>(mPlots.size()); }
    void analogPlotVirtualSetActiveWindow(cPlotWidgetCommon* plot) override
    {
        if (const int index = indexOf(plot); index >= 0)
            mActive = static_cast<size_t>(index);
    }
    void analogPlotVirtualActivelySetActiveWindow(cPlotWidgetCommon* plot) override { analogPlotVirtualSetActiveWindow(plot); }
    void analogPlotVirtualMaximizeWindow(cPlotWidgetCommon* plot) override
    {
        if (const int index = indexOf(plot); index >= 0 && mLayout.getMaximized() != index)
            maximizePlot(getPlotName(static_cast<size_t>(index)));
    }
    void analogPlotVirtualMinimizeWindow(cPlotWidgetCommon* plot) override
    {
        if (const int index = indexOf(plot); index >= 0 && mLayout.getMaximized() == index)
            maximizePlot(getPlotName(static_cast<size_t>(index)));
    }
    void analogPlotVirtualMaximizeOrMinimizeWindow(cPlotWidgetCommon* plot) override
    {
        if (const int index = indexOf(plot); index >= 0)
            maximizePlot(getPlotName(static_cast<size_t>(index)));
    }
    void analogPlotVirtualSplitWindow(cPlotWidgetCommon* plot, bool vertically) override
    {
        if (const int index = indexOf(plot); index >= 0)
            splitPlot(getPlotName(static_cast<size_t>(index)), vertically);
    }
    bool analogPlotVirtualCheckIsMaximized(cPlotWidgetCommon* plot) override
    {
        return indexOf(plot) >= 0 && mLayout.getMaximized() == indexOf(plot);
    }
    void analogPlotVirtualCloseAllOtherChildWindows(cPlotWidgetCommon* plot) override
    {
        for (size_t i = mPlots.size(); i-- > 0;)
            if (mPlots[i].get() != plot && mPlots.size() > 1)
                closeWindow(i);
    }
    void analogPlotVirtualCloseChildWindow(cPlotWidgetCommon* plot) override
    {
        if (const int index = indexOf(plot); index >= 0)
            closeWindow(static_cast<size_t>(index));
    }
    void analogPlotVirtualPlotWasScrolled(cPlotWidgetCommon* plot, const analogPlotVirtual::cScrollInfo& info,
                                          bool addViewPort) override
    {
        mSync.plotWasZoomed(plot, info.xMin, info.xMax, info.xIsLog, addViewPort);
        plotsChanged();
    }
    void analogPlotVirtualRulerWasSet(cPlotWidgetCommon* plot, int ruler, double x) override
    {
        mSync.rulerWasSet(plot, ruler, x);
        plotsChanged();
    }
    void analogPlotVirtualRulerWasCleared(cPlotWidgetCommon* plot, int ruler) override
    {
        mSync.rulerWasCleared(plot, ruler);
        plotsChanged();
    }
    void analogPlotVirtualLockXAxisType(cPlotWidgetCommon* plot, unsigned unit) override
    {
        mSync.checkIfConnectionIsPossible(plot, unit);
    }
    bool analogPlotVirtualCheckIfXAxisTypeIsLocked(cPlotWidgetCommon* plot, unsigned& unit) override
    {
        return mSync.checkIfXAxisTypeIsLocked(plot, unit);
    }
    bool analogPlotVirtualCheckIfPlotIsConnected(cPlotWidgetCommon* plot) override
    {
        return mSync.checkIfPlotIsConnected(plot);
    }
    void analogPlotVirtualSwitchToLogXAxis(cPlotWidgetCommon* plot, bool log) override
    {
        mSync.switchToLogXAxis(plot, log);
    }
    void analogPlotVirtualCurvesWereCleared(cPlotWidgetCommon* plot) override { mSync.curvesWereCleared(plot); }
    void analogPlotVirtualComputeDefaultBoundingBox(cPlotWidgetCommon* plot) override
    {
        mSync.computeDefaultBoundingBox(plot);
    }
    bool analogPlotVirtualGetDefaultBoundingBoxX(cPlotWidgetCommon* plot, double& min, double& max) override
    {
        return mSync.getDefaultBoundingBoxX(plot, min, max);
    }
    bool analogPlotVirtualCheckIfXAxisShouldBeUnzoomed(cPlotWidgetCommon* plot) override
    {
        return mSync.checkIfXAxisShouldBeUnzoomed(plot);
    }
    // The plots share the page's logger and have logged their message already; the status bar
    // shows the log.
    void analogPlotVirtualStatusBarMessage(unsigned, const std::string&) override {}
    void analogPlotVirtualSetCursorPositionText(cPlotWidgetCommon*, const std::string& text) override
    {
        if (mCursorPositionText)
            mCursorPositionText(text);
    }
    void analogPlotVirtualRecordUserCommand(cPlotWidgetCommon*, const std::string& text) override { record(text); }

protected:
    explicit cMultiPlotCommon(const cVxLogger& logger) : mLogger(logger) {}
    // The derived page makes the first plot once it is itself complete.
    void createFirstPlot() { mPlots.push_back(createPlot()); }
    // A new plot after the last one, in a cell split from the last cell; pages that arrange their
    // cells themselves (stacked pages) rearrange them afterwards.
    PlotT& appendPlot()
    {
        mLayout.split(mPlots.size() - 1, true);
        mPlots.push_back(createPlot());
        return *mPlots.back();
    }
    wxPlotPageLayout& pageLayout() { return mLayout; }
    // Two plots trade places (and names); the cells stay where they are.
    bool swapPlots(size_t a, size_t b)
    {
        if (a >= mPlots.size() || b >= mPlots.size())
            return false;
        std::swap(mPlots[a], mPlots[b]);
        if (mNames.size() <= std::max(a, b))
            mNames.resize(std::max(a, b) + 1);
        std::swap(mNames[a], mNames[b]);
        if (mActive == a || mActive == b)
            mActive = mActive == a ? b : a;
        layoutChanged();
        return true;
    }
    virtual std::unique_ptr<PlotT> createPlot() = 0;
    // The plots' places changed (split, close, maximize).
    virtual void layoutChanged() {}
    // A synchronisation changed other plots' views: a widget page repaints them.
    virtual void plotsChanged() {}
    const cVxLogger& logger() const { return mLogger; }

private:
    void record(const std::string& text)
    {
        if (mRecorder)
            mRecorder(text);
    }
    bool reportNoPlot(const std::string& name)
    {
        mLogger.errorMsg("No plot \"" + name + "\" on this page.");
        return false;
    }

    const cVxLogger& mLogger;
    std::vector<std::unique_ptr<PlotT>> mPlots;
    std::vector<std::string> mNames;
    size_t mActive = 0;
    wxPlotPageLayout mLayout;
    cMultiPlotSync mSync;
    cCommandRecorder mRecorder;
    std::function<void(size_t)> mPlotCreated;
    std::function<void(const std::string&)> mCursorPositionText;
};

}  // namespace vx3
