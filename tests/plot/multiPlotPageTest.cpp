// The page of several plots without a widget: connections by X unit, zoom, scroll and view
// history kept in step with each plot's own Y, the shared default box, log X, the layout of
// split, closed and maximized plots, and the command log of page actions.
#include <gtest/gtest.h>

#include <cmath>

#include "plot/cMultiPlot.h"
#include "singlePlotTestSupport.h"

using namespace vx3;
using namespace zwplot;

namespace {

std::vector<double> scaled(const std::vector<double>& x, double factor)
{
    std::vector<double> y;
    for (double v : x)
        y.push_back(std::sin(v * 7.0) * factor);
    return y;
}

// Two plots split from one, one curve each over the same time axis but with Y ranges far apart.
struct cTwoPlotPage {
    cTwoPlotPage()
    {
        page.setCommandRecorder([this](const std::string& text) { commands.push_back(text); });
        const std::vector<double> x = ramp(1001, 0.0, 0.01);
        cTestSection tran(store, "tran", x);
        small = tran.describe(tran.addReal("small", scaled(x, 1.0)));
        large = tran.describe(tran.addReal("large", scaled(x, 100.0)));
        EXPECT_TRUE(page.splitPlot("1", true));
        EXPECT_TRUE(page.addCurves(0, {small}));
        EXPECT_TRUE(page.addCurves(1, {large}));
    }
    cCapturingLogger capture;
    cMultiPlot page{capture.logger, 800, 600};
    cCurvePlotDataFile store;
    wxCurveDescription small, large;
    std::vector<std::string> commands;
};

double xMin(cMultiPlot& page, size_t i) { return page.plot(i).xAxis().getMin(); }
double xMax(cMultiPlot& page, size_t i) { return page.plot(i).xAxis().getMax(); }

}  // namespace

TEST(MultiPlotSync, ZoomScrollAndHistoryFollowInXWhileEachPlotKeepsItsY)
{
    cTwoPlotPage t;
    cMultiPlot& page = t.page;
    ASSERT_EQ(page.getNbOfPlots(), 2u);
    EXPECT_TRUE(page.getSync().checkIfPlotIsConnected(&page.plot(0)));
    EXPECT_EQ(page.getSync().getConnections().size(), 1u);
    const double y1Min = page.plot(1).yAxis(0).getMin(), y1Max = page.plot(1).yAxis(0).getMax();
    EXPECT_LT(y1Min, -90.0);  // the second plot's own Y box, not the first's

    // Zoom the first plot in X and Y: the second takes X only.
    ASSERT_TRUE(page.plot(0).zoomToBoxCmd(2.0, 4.0, -0.5, 0.5));
    EXPECT_DOUBLE_EQ(xMin(page, 1), 2.0);
    EXPECT_DOUBLE_EQ(xMax(page, 1), 4.0);
    EXPECT_DOUBLE_EQ(page.plot(1).yAxis(0).getMin(), y1Min);
    EXPECT_DOUBLE_EQ(page.plot(1).yAxis(0).getMax(), y1Max);
    EXPECT_DOUBLE_EQ(page.plot(0).yAxis(0).getMin(), -0.5);

    // The follower acting leads in turn.
    ASSERT_TRUE(page.plot(1).zoomToBoxCmd(3.0, 3.5, -50.0, 50.0));
    EXPECT_DOUBLE_EQ(xMin(page, 0), 3.0);
    EXPECT_DOUBLE_EQ(xMax(page, 0), 3.5);
    EXPECT_DOUBLE_EQ(page.plot(0).yAxis(0).getMin(), -0.5);

    // A scroll by pixels moves both by the same data distance.
    ASSERT_TRUE(page.plot(0).scrollXPixels(40.0));
    EXPECT_NEAR(xMin(page, 1), xMin(page, 0), 1e-12);
    EXPECT_NEAR(xMax(page, 1), xMax(page, 0), 1e-12);
    EXPECT_GT(xMin(page, 1), 3.0);

    // Both recorded each step: going back on the follower returns both to the previous range.
    ASSERT_TRUE(page.plot(1).switchViewPorts(-1));
    EXPECT_DOUBLE_EQ(xMin(page, 1), 3.0);
    EXPECT_DOUBLE_EQ(xMin(page, 0), 3.0);

    // Unzoom of one gives the whole shared range to both.
    ASSERT_TRUE(page.plot(0).unzoom(false));
    EXPECT_DOUBLE_EQ(xMin(page, 1), xMin(page, 0));
    EXPECT_DOUBLE_EQ(xMax(page, 1), xMax(page, 0));
    EXPECT_LE(xMin(page, 1), 0.0);
    EXPECT_GE(xMax(page, 1), 10.0);
}

TEST(MultiPlotSync, OtherUnitsStartTheirOwnGroupAndEmptiedPlotsLeave)
{
    cTwoPlotPage t;
    cMultiPlot& page = t.page;
    // A third plot over a frequency axis makes a second group and follows nobody.
    const std::vector<double> f = ramp(101, 1.0, 1e4);
    cTestSection ac(t.store, "ac", f, curvePlotDataType::hertz);
    const wxCurveDescription gain = ac.describe(ac.addReal("gain", scaled(f, 2.0)));
    ASSERT_TRUE(page.splitPlot("2", false));
    ASSERT_TRUE(page.addCurves(2, {gain}));
    EXPECT_EQ(page.getSync().getConnections().size(), 2u);
    EXPECT_FALSE(page.getSync().checkIfPlotIsConnected(&page.plot(2)));
    const double fMin = xMin(page, 2), fMax = xMax(page, 2);
    ASSERT_TRUE(page.plot(0).zoomToBoxCmd(1.0, 2.0, -1.0, 1.0));
    EXPECT_DOUBLE_EQ(xMin(page, 2), fMin);
    EXPECT_DOUBLE_EQ(xMax(page, 2), fMax);
    EXPECT_DOUBLE_EQ(xMin(page, 1), 1.0);

    // A new curve in a plot of a zoomed group arrives in the group's range.
    ASSERT_TRUE(page.plot(1).clearCurves());
    EXPECT_FALSE(page.getSync().checkIfPlotIsConnected(&page.plot(0)));
    ASSERT_TRUE(page.addCurves(1, {t.large}));
    EXPECT_TRUE(page.getSync().checkIfPlotIsConnected(&page.plot(0)));

    // Closing the only plot of a group removes the group.
    ASSERT_TRUE(page.closeWindow(2));
    EXPECT_EQ(page.getSync().getConnections().size(), 1u);
    EXPECT_EQ(page.getNbOfPlots(), 2u);
}

TEST(MultiPlotSync, LogXGoesToTheWholeGroup)
{
    cTwoPlotPage t;
    ASSERT_TRUE(t.page.plot(0).unzoom(false));
    ASSERT_TRUE(t.page.plot(1).enableLogXAxis(true));
    EXPECT_TRUE(t.page.plot(0).xAxis().checkIsLog());
    EXPECT_DOUBLE_EQ(xMax(t.page, 0), xMax(t.page, 1));
}

TEST(MultiPlotLayout, SplitMaximizeCloseAndTheirCommands)
{
    cTwoPlotPage t;
    cMultiPlot& page = t.page;
    // Split vertically: one above the other, each half the height, meeting without a gap.
    plotPageLayout::cPixelRect top = page.getLayout().computeScreenPosition(0, 800, 600);
    plotPageLayout::cPixelRect bottom = page.getLayout().computeScreenPosition(1, 800, 600);
    EXPECT_EQ(top.h, 300);
    EXPECT_EQ(bottom.y, top.y + top.h);
    EXPECT_EQ(bottom.w, 800);
    EXPECT_EQ(page.getLayout().getPlotIndex(10, 450, 800, 600), 1);
    // Canvases follow: the second plot's canvas starts below the first.
    EXPECT_GT(page.plot(1).getCanvasLayout().yLow, page.plot(0).getCanvasLayout().yHigh);

    // Split the lower one side by side: three plots, the new one active, right of its parent.
    ASSERT_TRUE(page.splitPlot("2", false));
    EXPECT_EQ(page.getActiveIndex(), 2u);
    const plotPageLayout::cPixelRect right = page.getLayout().computeScreenPosition(2, 801, 600);
    const plotPageLayout::cPixelRect left = page.getLayout().computeScreenPosition(1, 801, 600);
    EXPECT_EQ(left.x + left.w, right.x);
    EXPECT_EQ(right.x + right.w, 801);

    // Maximize shows one plot over the page and hides the others; again restores.
    ASSERT_TRUE(page.maximizePlot("3"));
    EXPECT_EQ(page.getLayout().computeScreenPosition(2, 800, 600).w, 800);
    EXPECT_EQ(page.getLayout().computeScreenPosition(0, 800, 600).w, 0);
    ASSERT_TRUE(page.maximizePlot("3"));
    EXPECT_EQ(page.getLayout().computeScreenPosition(0, 800, 600).w, 800);

    // Closing the right one gives its room back to its left neighbour.
    ASSERT_TRUE(page.closeWindow(2));
    EXPECT_EQ(page.getLayout().computeScreenPosition(1, 800, 600).w, 800);

    // Unknown plots: a message, nothing changed.
    t.capture.log.clear();
    EXPECT_FALSE(page.splitPlot("7", true));
    EXPECT_FALSE(page.maximizePlot("nope"));
    EXPECT_TRUE(t.capture.log.contains("No plot \"7\" on this page."));
    EXPECT_EQ(page.getNbOfPlots(), 2u);

    page.definePlotPageNames({"top", "bottom"});
    EXPECT_EQ(page.findPlot("bottom"), 1);
    EXPECT_EQ(page.findPlot("2"), -1);
    const std::vector<std::string> expected = {"split_vertically \"1\"", "split_horizontally \"2\"",
                                               "maximize_plot \"3\"", "maximize_plot \"3\"",
                                               "define_page_plot_names \"top bottom\""};
    EXPECT_EQ(t.commands, expected);

    // The last plot is emptied, not removed.
    ASSERT_TRUE(page.closeWindow(1));
    ASSERT_TRUE(page.closeWindow(0));
    EXPECT_EQ(page.getNbOfPlots(), 1u);
    EXPECT_EQ(page.plot(0).getNbOfCurves(), 0u);
}
