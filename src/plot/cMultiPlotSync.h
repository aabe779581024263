// Keeps the plots of a page that share one X unit in step: one X range, one log state, one
// default bounding box in X. Knows plots only as cPlotWidgetCommon, so that the widget page and
// the headless page share it.
#pragma once

#include <limits>
#include <vector>

namespace vx3 {

class cPlotWidgetCommon;

namespace multiPlotSync {
// An X unit that compares with nothing (a sweep without a comparable unit) never connects.
constexpr unsigned unconnectable_unit = 3;
}  // namespace multiPlotSync

class cMultiPlotSync {
public:
    // One group of plots in step.
    struct cConnection {
        std::vector<cPlotWidgetCommon*> plots;
        unsigned unit = 0;
        double xMin = 0.0, xMax = 1.0;
        bool xRangeSet = false;
        bool lockSet = false;
        bool logX = false;
        double bboxXMin = 0.0, bboxXMax = 1.0;
        bool bboxSet = false;
        // The rulers in force in the group: marker (0) and cursor (1).
        struct cRulerData {
            bool set = false;
            double x = 0.0;
        } rulers[2];
    };

    void setConnectionsEnabled(bool enabled) { mEnabled = enabled; }
    bool checkConnectionsEnabled() const { return mEnabled; }

    // Joins the plot to the group of its unit (true: it followed an existing group) or starts one.
    bool checkIfConnectionIsPossible(cPlotWidgetCommon* plot, unsigned unit);
    // All plots of a page in one group whatever their unit (digital and stacked pages).
    void addToFirstConnection(cPlotWidgetCommon* plot);
    void removePlot(cPlotWidgetCommon* plot);
    void removeEmptyConnections();
    void deconnectAllPlots() { mConnections.clear(); }
    bool checkIfPlotIsConnected(const cPlotWidgetCommon* plot) const;
    const cConnection* findConnection(const cPlotWidgetCommon* plot) const;
    const std::vector<cConnection>& getConnections() const { return mConnections; }

    // The acting plot's new X range (and log state) goes to the others; each keeps its own Y.
    void plotWasZoomed(cPlotWidgetCommon* plot, double x0, double x1, bool xIsLog, bool addViewPort);
    void switchViewPorts(cPlotWidgetCommon* plot, int step);
    void unzoomAllConnected(cPlotWidgetCommon* plot);
    void switchToLogXAxis(cPlotWidgetCommon* plot, bool log);
    // The union of the X boxes of the group, the sentinels when nothing is known: 0 .. 1.
    void computeDefaultBoundingBox(cPlotWidgetCommon* plot);
    bool getDefaultBoundingBoxX(const cPlotWidgetCommon* plot, double& min, double& max) const;
    // True only while every other plot of the group is unzoomed, so that a new curve may widen all.
    bool checkIfXAxisShouldBeUnzoomed(const cPlotWidgetCommon* plot) const;
    bool checkIfXAxisTypeIsLocked(const cPlotWidgetCommon* plot, unsigned& unit) const;
    // A plot left without curves no longer holds the lock.
    void curvesWereCleared(cPlotWidgetCommon* plot);
    bool checkIsSynchronising() const { return mSynchronising; }
    // A ruler (0 marker, 1 cursor) set or cleared on one plot goes to the others of its group and
    // stays in the group's ruler data, so that a plot joining later shows it too.
    void rulerWasSet(cPlotWidgetCommon* plot, int ruler, double x);
    void rulerWasCleared(cPlotWidgetCommon* plot, int ruler);
    // Gives the plot the rulers in force in its group (a plot without curves can't show them yet).
    void synchronizeAllRulers(cPlotWidgetCommon* plot);
    // After curves went into a plot: it takes the group's log state and, while the group is
    // zoomed, its X range; the shared default box is merged anew.
    void bringIntoStep(cPlotWidgetCommon* plot);

private:
    cConnection* connectionOf(const cPlotWidgetCommon* plot);
    void synchronizeNewPlot(cPlotWidgetCommon* plot, cConnection& connection);

    std::vector<cConnection> mConnections;
    bool mEnabled = true;
    // Followers change with recording off and must not start a synchronisation of their own.
    bool mSynchronising = false;
};

}  // namespace vx3
