// A page of traces stacked one above the other, each plot with its own Y, all on one X whose
// axis is drawn once, under the lowest plot. Each plot's height is its share of the page; a
// share moves between neighbours when the edge between them is dragged.
#pragma once

#include <QWidget>
#include <vector>

#include "plot/qt/wxSharedXPlotPage.h"

namespace vx3 {

namespace stackedPlotPage {
// The room under a plot whose X axis is a line only.
constexpr int bare_bottom_margin = 6;
// No plot is moved below this share of the page by a drag.
constexpr double smallest_share = 0.1;
// How close, in pixels, a press must come to the edge between two plots to take hold of it.
constexpr int edge_grip_pixels = 4;
}  // namespace stackedPlotPage

class cStackedPlotPage : public wxSharedXPlotPage {
public:
    cStackedPlotPage(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger);
    static constexpr const char* class_label = "cStackedPlotPage";

    // The curves as a new trace at the bottom (the page's first plot while it is still empty);
    // false when none could be added.
    bool addTrace(const std::vector<wxCurveDescription>& curves);
    // Moves the edge under plot index by a share of the page's height: the plot grows by it and
    // the one below shrinks (a negative share the other way). False for the last plot or an
    // index past the plots; the move stops where a plot would get too small.
    bool moveEdgeBelow(size_t index, double share);
    const std::vector<double>& getShares() const { return mShares; }
    // The edge a press at widget row y of plot index takes hold of (the edge under plot edge),
    // -1 for none.
    int edgeAt(size_t index, int y) const;

protected:
    cStackedPlotPage(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger, int plotKind);
    // The index of a new plot of the kind at the bottom, or of the first plot while it is empty
    // and of that kind.
    size_t takeBottomPlot(int plotKind);
    void layoutChanged() override;
    // Presses near the edge between two plots drag that edge; the plots get everything else.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void restack();
    // The line that shows where a dragged edge will go, at page row y.
    void drawResizeIndicatorLine(int y);
    std::vector<double> mShares;
    QWidget* mIndicator = nullptr;
    int mDraggedEdge = -1;
    QWidget* mEdgeCursorPlot = nullptr;  // the plot showing the edge's cursor
};

}  // namespace vx3
