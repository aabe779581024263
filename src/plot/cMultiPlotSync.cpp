#include "plot/cMultiPlotSync.h"

#include <algorithm>

#include "plot/cPlotWidgetCommon.h"

namespace vx3 {

namespace {
// Sets a flag for the lifetime of a scope, so that changes made to followers don't echo back.
class cSyncGuard {
public:
    explicit cSyncGuard(bool& flag) : mFlag(flag) { mFlag = true; }
    ~cSyncGuard() { mFlag = false; }
    cSyncGuard(const cSyncGuard&) = delete;
    cSyncGuard& operator=(const cSyncGuard&) = delete;

private:
    bool& mFlag;
};

// A follower takes the X range and keeps its own Y ranges.
void followX(cPlotWidgetCommon& plot, double x0, double x1, bool addViewPort)
{
    const double y0Min = plot.yAxis(0).getMin(), y0Max = plot.yAxis(0).getMax();
    const double y1Min = plot.yAxis(1).getMin(), y1Max = plot.yAxis(1).getMax();
    plot.fitPrintMessage(x0, x1, y0Min, y0Max, y1Min, y1Max, addViewPort, false);
}
}  // namespace

cMultiPlotSync::cConnection* cMultiPlotSync::connectionOf(const cPlotWidgetCommon* plot)
{
    for (cConnection& connection : mConnections)
        if (std::find(connection.plots.begin(), connection.plots.end(), plot) != connection.plots.end())
            return &connection;
    return nullptr;
}

const cMultiPlotSync::cConnection* cMultiPlotSync::findConnection(const cPlotWidgetCommon* plot) const
{
    return const_cast<cMultiPlotSync*>(this)->connectionOf(plot);
}

bool cMultiPlotSync::checkIfPlotIsConnected(const cPlotWidgetCommon* plot) const
{
    const cConnection* connection = findConnection(plot);
    return connection && connection->plots.size() > 1;
}

bool cMultiPlotSync::checkIfConnectionIsPossible(cPlotWidgetCommon* plot, unsigned unit)
{
    if (!mEnabled || unit == multiPlotSync::unconnectable_unit)
        return false;
    if (cConnection* own = connectionOf(plot)) {
        if (own->unit == unit)
            return own->plots.size() > 1;
        removePlot(plot);  // the plot changed its unit: it leaves its old group
    }
    for (cConnection& connection : mConnections) {
        if (connection.unit != unit)
            continue;
        connection.plots.push_back(plot);
        synchronizeNewPlot(plot, connection);
        return true;
    }
    cConnection connection;
    connection.unit = unit;
    connection.plots.push_back(plot);
    if (plot->getNbOfCurves() > 0) {
        connection.lockSet = true;
        connection.logX = plot->xAxis().checkIsLog();
    }
    mConnections.push_back(connection);
    return false;
}

void cMultiPlotSync::addToFirstConnection(cPlotWidgetCommon* plot)
{
    if (connectionOf(plot))
        return;
    if (mConnections.empty())
        mConnections.emplace_back();
    mConnections.front().plots.push_back(plot);
    synchronizeNewPlot(plot, mConnections.front());
}

void cMultiPlotSync::synchronizeNewPlot(cPlotWidgetCommon* plot, cConnection& connection)
{
    if (connection.lockSet && plot->xAxis().checkIsLog() != connection.logX) {
        cSyncGuard guard(mSynchronising);
        plot->enableLogXAxis(connection.logX);
    }
    computeDefaultBoundingBox(plot);
    synchronizeAllRulers(plot);
    if (connection.xRangeSet && plot->getNbOfCurves() > 0 && !checkIfXAxisShouldBeUnzoomed(plot)) {
        cSyncGuard guard(mSynchronising);
        followX(*plot, connection.xMin, connection.xMax, true);
    }
}

void cMultiPlotSync::bringIntoStep(cPlotWidgetCommon* plot)
{
    if (cConnection* connection = connectionOf(plot))
        synchronizeNewPlot(plot, *connection);
}

void cMultiPlotSync::removePlot(cPlotWidgetCommon* plot)
{
    for (cConnection& connection : mConnections)
        std::erase(connection.plots, plot);
    removeEmptyConnections();
}

void cMultiPlotSync::removeEmptyConnections()
{
    std::erase_if(mConnections, [](const cConnection& connection) { return connection.plots.empty(); });
}

void cMultiPlotSync::plotWasZoomed(cPlotWidgetCommon* plot, double x0, double x1, bool xIsLog, bool addViewPort)
{
    if (mSynchronising)
        return;
    cConnection* connection = connectionOf(plot);
    if (!connection)
        return;
    if (!connection->lockSet || connection->logX != xIsLog)
        switchToLogXAxis(plot, xIsLog);
    connection->xMin = x0, connection->xMax = x1, connection->xRangeSet = true;
    cSyncGuard guard(mSynchronising);
    for (cPlotWidgetCommon* other : connection->plots)
        if (other != plot && other->getNbOfCurves() > 0)
            followX(*other, x0, x1, addViewPort);
}

void cMultiPlotSync::switchViewPorts(cPlotWidgetCommon* plot, int step)
{
    if (mSynchronising)
        return;
    cConnection* connection = connectionOf(plot);
    if (!connection)
        return;
    cSyncGuard guard(mSynchronising);
    for (cPlotWidgetCommon* other : connection->plots)
        if (other != plot)
            other->switchViewPorts(step);
}

void cMultiPlotSync::unzoomAllConnected(cPlotWidgetCommon* plot)
{
    cConnection* connection = connectionOf(plot);
    if (!connection)
        return;
    connection->xRangeSet = false;
    cSyncGuard guard(mSynchronising);
    for (cPlotWidgetCommon* other : connection->plots)
        if (other != plot)
            other->unzoomX();
}

void cMultiPlotSync::switchToLogXAxis(cPlotWidgetCommon* plot, bool log)
{
    cConnection* connection = connectionOf(plot);
    if (!connection || mSynchronising)
        return;
    connection->lockSet = true;
    connection->logX = log;
    connection->xRangeSet = false;
    cSyncGuard guard(mSynchronising);
    for (cPlotWidgetCommon* other : connection->plots)
        if (other != plot)
            other->enableLogXAxis(log);
}

void cMultiPlotSync::computeDefaultBoundingBox(cPlotWidgetCommon* plot)
{
    cConnection* connection = connectionOf(plot);
    if (!connection)
        return;
    double min = 1e+300, max = -1e+300;
    for (const cPlotWidgetCommon* member : connection->plots) {
        if (member->getNbOfCurves() == 0)
            continue;
        min = std::min(min, member->xAxis().getBoundingBoxMin());
        max = std::max(max, member->xAxis().getBoundingBoxMax());
    }
    if (min > max)
        min = 0.0, max = 1.0;
    connection->bboxXMin = min, connection->bboxXMax = max, connection->bboxSet = true;
}

bool cMultiPlotSync::getDefaultBoundingBoxX(const cPlotWidgetCommon* plot, double& min, double& max) const
{
    const cConnection* connection = findConnection(plot);
    if (!connection || !connection->bboxSet)
        return false;
    min = connection->bboxXMin, max = connection->bboxXMax;
    return true;
}

bool cMultiPlotSync::checkIfXAxisShouldBeUnzoomed(const cPlotWidgetCommon* plot) const
{
    const cConnection* connection = findConnection(plot);
    if (!connection)
        return false;
    for (const cPlotWidgetCommon* other : connection->plots)
        if (other != plot && other->getNbOfCurves() > 0 && !other->checkIsUnzoomed())
            return false;
    return true;
}

bool cMultiPlotSync::checkIfXAxisTypeIsLocked(const cPlotWidgetCommon* plot, unsigned& unit) const
{
    const cConnection* connection = findConnection(plot);
    if (!connection || !connection->lockSet)
        return false;
    unit = connection->unit;
    return true;
}

void cMultiPlotSync::rulerWasSet(cPlotWidgetCommon* plot, int ruler, double x)
{
    if (mSynchronising || ruler < 0 || ruler > 1)
        return;
    cConnection* connection = connectionOf(plot);
    if (!connection)
        return;
    connection->rulers[ruler].set = true;
    connection->rulers[ruler].x = x;
    cSyncGuard guard(mSynchronising);
    for (cPlotWidgetCommon* other : connection->plots)
        if (other != plot && other->getNbOfCurves() > 0)
            other->setRulerImpl(ruler, x);
}

void cMultiPlotSync::rulerWasCleared(cPlotWidgetCommon* plot, int ruler)
{
    if (mSynchronising || ruler < 0 || ruler > 1)
        return;
    cConnection* connection = connectionOf(plot);
    if (!connection)
        return;
    connection->rulers[ruler].set = false;
    cSyncGuard guard(mSynchronising);
    for (cPlotWidgetCommon* other : connection->plots)
        if (other != plot)
            other->clearRulerImpl(ruler);
}

void cMultiPlotSync::synchronizeAllRulers(cPlotWidgetCommon* plot)
{
    cConnection* connection = connectionOf(plot);
    if (!connection || plot->getNbOfCurves() == 0)
        return;
    cSyncGuard guard(mSynchronising);
    for (int ruler = 0; ruler < 2; ++ruler)
        if (connection->rulers[ruler].set)
            plot->setRulerImpl(ruler, connection->rulers[ruler].x);
}

void cMultiPlotSync::curvesWereCleared(cPlotWidgetCommon* plot)
{
    if (plot->getNbOfCurves() > 0)
        return;
    removePlot(plot);
}

}  // namespace vx3
