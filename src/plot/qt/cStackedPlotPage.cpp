#include "plot/qt/cStackedPlotPage.h"

#include <QMouseEvent>
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

int cStackedPlotPage::edgeAt(size_t index, int y) const
{
    if (index >= getNbOfPlots())
        return -1;
    const int h = plot(index).height();
    if (y >= h - edge_grip_pixels && index + 1 < getNbOfPlots())
        return static_cast<int>(index);
    if (y < edge_grip_pixels && index > 0)
        return static_cast<int>(index) - 1;
    return -1;
}

void cStackedPlotPage::drawResizeIndicatorLine(int y)
{
    if (!mIndicator) {
        mIndicator = new QWidget(this);
        mIndicator->setAutoFillBackground(true);
        QPalette palette = mIndicator->palette();
        palette.setColor(QPalette::Window, QColor(60, 60, 60));
        mIndicator->setPalette(palette);
    }
    mIndicator->setGeometry(0, y - 1, width(), 2);
    mIndicator->show();
    mIndicator->raise();
}

bool cStackedPlotPage::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::MouseButtonPress && type != QEvent::MouseMove && type != QEvent::MouseButtonRelease)
        return wxSharedXPlotPage::eventFilter(watched, event);
    size_t index = getNbOfPlots();
    for (size_t i = 0; i < getNbOfPlots(); ++i)
        if (&plot(i) == watched)
            index = i;
    if (index == getNbOfPlots())
        return wxSharedXPlotPage::eventFilter(watched, event);
    auto* mouse = static_cast<QMouseEvent*>(event);
    wxSinglePlotWidgetImpl& over = plot(index);
    const int y = static_cast<int>(mouse->position().y());
    const int pageY = over.geometry().top() + y;
    if (mDraggedEdge >= 0) {
        const QRect above = plot(static_cast<size_t>(mDraggedEdge)).geometry();
        if (type == QEvent::MouseMove) {
            drawResizeIndicatorLine(pageY);
        } else if (type == QEvent::MouseButtonRelease && mouse->button() == Qt::LeftButton) {
            const int edgeY = above.top() + above.height();
            const int edge = mDraggedEdge;
            mDraggedEdge = -1;
            if (mIndicator)
                mIndicator->hide();
            if (height() > 0 && pageY != edgeY)
                moveEdgeBelow(static_cast<size_t>(edge), double(pageY - edgeY) / double(height()));
        }
        return true;
    }
    const int edge = edgeAt(index, y);
    if (type == QEvent::MouseButtonPress && mouse->button() == Qt::LeftButton && edge >= 0) {
        mDraggedEdge = edge;
        drawResizeIndicatorLine(pageY);
        return true;
    }
    if (type == QEvent::MouseMove && mouse->buttons() == Qt::NoButton) {
        // The cursor tells where a press would move the edge instead of acting in the plot.
        QWidget* wanted = edge >= 0 ? &over : nullptr;
        if (wanted != mEdgeCursorPlot) {
            if (mEdgeCursorPlot)
                mEdgeCursorPlot->unsetCursor();
            if (wanted)
                wanted->setCursor(Qt::SizeVerCursor);
            mEdgeCursorPlot = wanted;
        }
    }
    return wxSharedXPlotPage::eventFilter(watched, event);
}

void cStackedPlotPage::layoutChanged()
{
    restack();
    bool cursorPlotLives = false;
    for (size_t i = 0; i < getNbOfPlots(); ++i) {
        plot(i).installEventFilter(this);
        cursorPlotLives = cursorPlotLives || &plot(i) == mEdgeCursorPlot;
    }
    if (!cursorPlotLives)
        mEdgeCursorPlot = nullptr;  // closed
    if (mDraggedEdge + 1 >= static_cast<int>(getNbOfPlots()))
        mDraggedEdge = -1;
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
