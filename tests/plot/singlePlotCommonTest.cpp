// The single plot without a widget: bounding boxes and their margins, zoom and its limits, the
// view history, undo and redo of curves, unit rules, reloads and the sliding window.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "base/cLoggedException.h"
#include "plot/cPlotWidgetCommon.h"
#include "singlePlotTestSupport.h"

using namespace vx3;
using namespace zwplot;
using namespace vx3::plotWidgetCommon;

namespace {

// A plot of 500 x 300 pixels that counts what it asks of its widget.
class cTestPlot : public cPlotWidgetCommon {
public:
    cTestPlot(const cVxLogger& logger, wxAnalogPlotVirtual* page = nullptr) : cPlotWidgetCommon(logger, page)
    {
        setCanvasLayout(cCanvasLayout{0.0, 500.0, 0.0, 300.0});
    }
    int fullRedraws = 0;
    int addedCurveRedraws = 0;
    std::vector<std::pair<double, double>> scrolls;
    std::vector<std::pair<int, int>> timers;

protected:
    void plotRequestFullRedraw() override { ++fullRedraws; }
    void plotRequestAddedCurve() override { ++addedCurveRedraws; }
    void plotRequestScroll(double dx, double dy) override { scrolls.emplace_back(dx, dy); }
    void plotStartTimer(int id, int milliseconds) override { timers.emplace_back(id, milliseconds); }
};

double range(const wxSinglePlotWidgetAxis& axis) { return axis.getMax() - axis.getMin(); }

}  // namespace

TEST(SinglePlotBoundingBox, RepairsDegenerateRangesAndWidensAsymmetrically)
{
    // A curve with all values equal gets 0.2% around its value; zero gets +-0.001, digital pages
    // keep zero as their floor; a range below 1e-40 is opened around its centre; order is restored.
    double min = 5.0, max = 5.0;
    cPlotWidgetCommon::fixBBoxValues(min, max, waveExplorerWidgetVirtual::analog_plot);
    EXPECT_DOUBLE_EQ(min, 4.995);
    EXPECT_DOUBLE_EQ(max, 5.005);
    min = max = -2.0;
    cPlotWidgetCommon::fixBBoxValues(min, max, waveExplorerWidgetVirtual::analog_plot);
    EXPECT_DOUBLE_EQ(min, -2.002);
    EXPECT_DOUBLE_EQ(max, -1.998);
    min = max = 0.0;
    cPlotWidgetCommon::fixBBoxValues(min, max, waveExplorerWidgetVirtual::analog_plot);
    EXPECT_EQ(min, -0.001);
    EXPECT_EQ(max, 0.001);
    min = max = 0.0;
    cPlotWidgetCommon::fixBBoxValues(min, max, waveExplorerWidgetVirtual::digital_plot);
    EXPECT_EQ(min, 0.0);
    EXPECT_EQ(max, 0.001);
    min = 1.0, max = 1.0 + 1e-45;  // equal in doubles: the 0.2% rule
    cPlotWidgetCommon::fixBBoxValues(min, max, waveExplorerWidgetVirtual::analog_plot);
    EXPECT_GT(max - min, 1e-3);
    min = 3e-41, max = 5e-41;
    cPlotWidgetCommon::fixBBoxValues(min, max, waveExplorerWidgetVirtual::analog_plot);
    EXPECT_NEAR(min, 4e-41 - 1e-10, 1e-20);
    EXPECT_NEAR(max, 4e-41 + 1e-10, 1e-20);
    min = 7.0, max = 2.0;
    cPlotWidgetCommon::fixBBoxValues(min, max, waveExplorerWidgetVirtual::analog_plot);
    EXPECT_EQ(min, 2.0);
    EXPECT_EQ(max, 7.0);

    // The unzoomed view: 1% below, and 1% of the already widened range above.
    cCurvePlotDataFile store;
    cTestSection tran(store, "tran", ramp(11, 0.0, 1.0));
    const uint64_t v = tran.addReal("v", {-2, -1, 0, 1, 2, 3, 2, 1, 0, -1, -2});
    cCapturingLogger logger;
    cTestPlot plot(logger.logger);
    ASSERT_TRUE(plot.addToPlot(tran.describe(v)));
    EXPECT_DOUBLE_EQ(plot.xAxis().getMin(), -0.1);
    EXPECT_DOUBLE_EQ(plot.xAxis().getMax(), 10.0 + 10.1 * 0.01);
    EXPECT_DOUBLE_EQ(plot.yAxis(0).getMin(), -2.05);
    EXPECT_DOUBLE_EQ(plot.yAxis(0).getMax(), 3.0 + 5.05 * 0.01);
    EXPECT_TRUE(plot.checkIsUnzoomed());
    // Scales map the view onto the canvas: X over 500 pixels, Y over 300.
    EXPECT_NEAR(plot.xAxis().toInt(-0.1), 0.0, 1e-9);
    EXPECT_NEAR(plot.xAxis().toInt(10.101), 500.0, 1e-9);
    EXPECT_NEAR(plot.yAxis(0).toInt(3.0505), 300.0, 1e-9);

    // A curve of one point is shown around that point, not as an empty or infinite range.
    cTestSection single(store, "single", {2.0});
    const uint64_t one = single.addReal("one", {0.0});
    cTestPlot lonely(logger.logger);
    ASSERT_TRUE(lonely.addToPlot(single.describe(one)));
    EXPECT_LT(lonely.yAxis(0).getMin(), 0.0);
    EXPECT_GT(lonely.yAxis(0).getMax(), 0.0);
    EXPECT_LT(range(lonely.yAxis(0)), 0.01);
    EXPECT_LT(lonely.xAxis().getMin(), 2.0);
    EXPECT_GT(lonely.xAxis().getMax(), 2.0);
    EXPECT_TRUE(logger.log.messages.empty()) << logger.log.messages.front();
}

TEST(SinglePlotZoom, FactorsFixedPointsLimitsAndBadBounds)
{
    cCurvePlotDataFile store;
    cTestSection tran(store, "tran", ramp(1001, 0.0, 1e-3));
    std::vector<double> sine(1001);
    for (size_t i = 0; i < sine.size(); ++i)
        sine[i] = std::sin(2.0 * M_PI * double(i) / 1000.0);
    const uint64_t v = tran.addReal("v", sine);
    cCapturingLogger logger;
    cRecordingPage page;
    cTestPlot plot(logger.logger, &page);
    ASSERT_TRUE(plot.addToPlot(tran.describe(v)));
    const wxSinglePlotViewPort unzoomed = plot.getCurrentView();

    // In by one step about the canvas centre: every range shrinks to 0.9 of itself, the centre stays.
    const double centre = plot.xAxis().toDouble(250.0);
    const double width = range(plot.xAxis());
    ASSERT_TRUE(plot.zoomIn(1));
    EXPECT_NEAR(range(plot.xAxis()), 0.9 * width, 1e-12);
    EXPECT_NEAR(plot.xAxis().toDouble(250.0), centre, 1e-12);
    EXPECT_FALSE(plot.checkIsUnzoomed());
    // About the mouse: the data under the pointer stays under it.
    plot.setMousePosition(1, 100.0, 50.0);
    const double underX = plot.xAxis().toDouble(100.0), underY = plot.yAxis(0).toDouble(50.0);
    ASSERT_TRUE(plot.zoomIn(3));
    EXPECT_NEAR(plot.xAxis().toDouble(100.0), underX, 1e-12);
    EXPECT_NEAR(plot.yAxis(0).toDouble(50.0), underY, 1e-12);
    plot.setMousePosition(0, 0.0, 0.0);
    // Out as far as it goes: never beyond the unzoomed view, the box with its margin.
    for (int i = 0; i < 40; ++i)
        plot.zoomOut(1);
    const double box = plot.xAxis().getBoundingBoxMax() - plot.xAxis().getBoundingBoxMin();
    EXPECT_GE(plot.xAxis().getMin(), plot.xAxis().getBoundingBoxMin() - 0.0101 * box - 1e-12);
    EXPECT_LE(plot.xAxis().getMax(), plot.xAxis().getBoundingBoxMax() + 0.0101 * box + 1e-12);
    EXPECT_LE(plot.xAxis().getMin(), unzoomed[0]);
    EXPECT_TRUE(logger.log.contains("Maximum zoom range reached."));
    EXPECT_EQ(page.statusMessages.back(), "Maximum zoom range reached.");

    // Deep in, a zoom step that would go below the smallest range is refused and changes nothing.
    logger.log.clear();
    ASSERT_TRUE(plot.zoomToBoxCmd(0.5, 0.5 + 1e-30, -1.0, 1.0));
    int refusedAt = -1;
    for (int i = 0; i < 400 && refusedAt < 0; ++i) {
        const wxSinglePlotViewPort before = plot.getCurrentView();
        if (!plot.zoomX(10)) {
            refusedAt = i;
            EXPECT_EQ(plot.getCurrentView(), before);
        }
    }
    ASSERT_GE(refusedAt, 0);
    EXPECT_GE(range(plot.xAxis()), smallest_zoom_range);
    EXPECT_TRUE(logger.log.contains("Maximum zoom range reached."));

    // Bad bounds give the message and leave everything as it was: NaN, infinite, reversed, huge.
    ASSERT_TRUE(plot.unzoom());
    const wxSinglePlotViewPort view = plot.getCurrentView();
    const size_t views = plot.getNbOfViewPorts();
    const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
    const double bad[][4] = {{nan, 0.5, -1, 1}, {0.1, 0.5, nan, 1}, {0.1, inf, -1, 1}, {-inf, 0.5, -1, 1},
                             {0.5, 0.1, -1, 1}, {0.1, 0.5, 1, -1},  {0.1, 0.5, -1e100, 1}};
    for (const auto& box : bad) {
        logger.log.clear();
        EXPECT_FALSE(plot.zoomToBoxCmd(box[0], box[1], box[2], box[3])) << box[0] << " " << box[1];
        EXPECT_TRUE(logger.log.contains("Maximum zoom range reached.")) << box[0] << " " << box[1];
        EXPECT_EQ(plot.getCurrentView(), view);
        EXPECT_EQ(plot.getNbOfViewPorts(), views);
    }
    // Without the zoom limit a bound of 1e100 is still refused by the largest value.
    cPlotSettings free = plot.getSettings();
    free.zoomLimit = false;
    plot.setSettings(free);
    logger.log.clear();
    EXPECT_FALSE(plot.fitPrintMessage(0.0, 1e100, -1.0, 1.0, 0.0, 1.0, true, true));
    EXPECT_TRUE(logger.log.contains("Maximum zoom range reached."));
    EXPECT_EQ(plot.getCurrentView(), view);
    // A Y range below the smallest range is refused whole, X included.
    EXPECT_FALSE(plot.fitPrintMessage(0.2, 0.4, 0.5, 0.5 + 1e-41, 0.0, 1.0, true, true));
    EXPECT_EQ(plot.getCurrentView(), view);
    // An X range below it leaves X alone while Y follows.
    EXPECT_TRUE(plot.fitPrintMessage(0.3, 0.3 + 1e-41, -0.5, 0.5, 0.0, 1.0, true, true));
    EXPECT_EQ(plot.xAxis().getMin(), view[0]);
    EXPECT_EQ(plot.yAxis(0).getMin(), -0.5);
    // A box of no size in pixels does nothing; a drawn box becomes the view.
    EXPECT_FALSE(plot.zoomToBox(100, 100, 100, 200));
    ASSERT_TRUE(plot.zoomToBox(300, 200, 100, 50));
    EXPECT_NEAR(plot.xAxis().toInt(plot.xAxis().getMin()), 0.0, 1e-9);
    EXPECT_NEAR(plot.xAxis().getMin(), plot.xAxis().getMin(), 0.0);
}

TEST(SinglePlotViewPorts, HistoryOfFiftyBackForwardAndExactRestore)
{
    // The list alone: equal views are one entry, the 51st pushes out the first, going back and
    // adding drops the forward views, an empty list has no current view.
    wxSinglePlotViewPortList list;
    EXPECT_THROW(list.currentViewPort(), cLoggedException);
    EXPECT_FALSE(list.moveToPreviousViewPort());
    for (int i = 0; i < 51; ++i) {
        list.addViewPort({double(i), double(i + 1), 0.0, 1.0});
        list.addViewPort({double(i), double(i + 1), 0.0, 1.0});
    }
    EXPECT_EQ(list.getNbOfViewPorts(), 50u);
    EXPECT_EQ(list.getViewPorts().front()[0], 1.0);
    EXPECT_EQ(list.currentViewPort()[0], 50.0);
    EXPECT_FALSE(list.moveToNextViewPort());
    ASSERT_TRUE(list.moveToPreviousViewPort());
    ASSERT_TRUE(list.moveToPreviousViewPort());
    list.addViewPort({100.0, 101.0, 0.0, 1.0});
    EXPECT_EQ(list.getNbOfViewPorts(), 49u);
    EXPECT_EQ(list.currentViewPort()[0], 100.0);
    // A connected plot's X range comes in with this plot's Y, or NaN when there is none.
    wxSinglePlotViewPortList connected;
    connected.addZoomBoxesXCoordinates(list);
    ASSERT_EQ(connected.getNbOfViewPorts(), 1u);
    EXPECT_EQ(connected.currentViewPort()[0], 100.0);
    EXPECT_TRUE(std::isnan(connected.currentViewPort()[2]));
    connected.addZoomBoxesXCoordinates(list);
    EXPECT_EQ(connected.getNbOfViewPorts(), 1u);

    // In a plot: every zoom records its view, switching brings back the very numbers.
    cCurvePlotDataFile store;
    cTestSection tran(store, "tran", ramp(101, 0.0, 0.01));
    const uint64_t v = tran.addReal("v", ramp(101, -1.0, 0.02));
    cCapturingLogger logger;
    cTestPlot plot(logger.logger);
    ASSERT_TRUE(plot.addToPlot(tran.describe(v)));
    const size_t first = plot.getNbOfViewPorts();
    const wxSinglePlotViewPort unzoomed = plot.getCurrentView();
    const double scale = plot.xAxis().getScale();
    ASSERT_TRUE(plot.zoomIn(2));
    const wxSinglePlotViewPort zoomed = plot.getCurrentView();
    ASSERT_TRUE(plot.scrollXPixels(-37));
    EXPECT_EQ(plot.getNbOfViewPorts(), first + 2);
    ASSERT_TRUE(plot.switchViewPorts(-1));
    EXPECT_EQ(plot.getCurrentView(), zoomed);
    ASSERT_TRUE(plot.switchViewPorts(-1));
    EXPECT_EQ(plot.getCurrentView(), unzoomed);
    EXPECT_EQ(plot.xAxis().getScale(), scale);
    EXPECT_EQ(plot.getNbOfViewPorts(), first + 2) << "switching records nothing";
    ASSERT_TRUE(plot.switchViewPorts(+1));
    EXPECT_EQ(plot.getCurrentView(), zoomed);
    // Zooming from a view in the middle drops the views after it.
    ASSERT_TRUE(plot.zoomOut(1));
    EXPECT_FALSE(plot.switchViewPorts(+1));
    EXPECT_EQ(plot.getNbOfViewPorts(), plot.getCurrentViewPortIndex() + 1);
    // Fifty-five zooms keep fifty views.
    for (int i = 0; i < 55; ++i)
        plot.zoomFactor(i % 2 ? 1.05 : 1.0 / 1.05, 1.0, 1.0);
    EXPECT_EQ(plot.getNbOfViewPorts(), wxSinglePlotViewPortList::kCapacity);
}

TEST(SinglePlotScroll, ScrollsByWholePixelsAskForAStripAndStopAtTheLimit)
{
    cCurvePlotDataFile store;
    cTestSection tran(store, "tran", ramp(101, 0.0, 0.01));
    const uint64_t v = tran.addReal("v", ramp(101, 0.0, 0.01));
    cCapturingLogger logger;
    cRecordingPage page;
    cTestPlot plot(logger.logger, &page);
    ASSERT_TRUE(plot.addToPlot(tran.describe(v)));
    // Unzoomed there is nowhere to go.
    EXPECT_FALSE(plot.scrollXPixels(10));
    ASSERT_TRUE(plot.zoomX(10));
    const double before = plot.xAxis().getMin();
    plot.scrolls.clear();
    const int scrollsBefore = page.scrolls;
    ASSERT_TRUE(plot.scrollXPixels(37));
    ASSERT_EQ(plot.scrolls.size(), 1u);
    EXPECT_EQ(plot.scrolls[0].first, -37.0) << "the curves move left by the pixels scrolled";
    EXPECT_NEAR(plot.xAxis().getMin() - before, 37.0 / plot.xAxis().getScale(), 1e-12);
    EXPECT_EQ(page.scrolls, scrollsBefore + 1);
    EXPECT_EQ(page.lastScroll.xMin, plot.xAxis().getMin());
    // At the end of the box the step shortens and the view stops at the limit.
    for (int i = 0; i < 200; ++i)
        plot.scrollXPixels(50);
    EXPECT_LE(plot.xAxis().getMax(), plot.xAxis().getBoundingBoxMax() + 0.0102 * 1.0 + 1e-12);
    EXPECT_FALSE(plot.scrollXPixels(50));
}

TEST(SinglePlotCurves, UndoRedoOfAddedAndRemovedCurvesKeepsPositionsAndStyles)
{
    cCurvePlotDataFile store;
    cTestSection tran(store, "tran", ramp(5, 0.0, 1.0));
    const uint64_t a = tran.addReal("a", {0, 1, 2, 3, 4});
    const uint64_t b = tran.addReal("b", {0, -1, -2, -3, -4});
    const uint64_t c = tran.addReal("c", {10, 10, 10, 10, 10});
    const uint64_t d = tran.addReal("d", {1, 1, 1, 1, 5});
    cCapturingLogger logger;
    cRecordingPage page;
    cTestPlot plot(logger.logger, &page);
    auto names = [&plot]() {
        std::string text;
        for (const wxSinglePlotWidgetData& curve : plot.getCurves())
            text += curve.description().getName();
        return text;
    };
    const wxSinglePlotViewPort emptyView = plot.getCurrentView();
    ASSERT_TRUE(plot.addToPlot({tran.describe(a), tran.describe(b), tran.describe(c)}));
    EXPECT_EQ(plot.getNbOfUndoEntries(), 1u) << "one call, one step";
    // The same curve again: still one curve, and no empty step.
    ASSERT_TRUE(plot.addToPlot(tran.describe(a)));
    EXPECT_EQ(names(), "abc");
    EXPECT_EQ(plot.getNbOfUndoEntries(), 1u);
    // A new curve on a plot that shows curves draws only itself.
    const int added = plot.addedCurveRedraws;
    wxCurveDescription styled = tran.describe(d);
    styled.style().realColour = 0x123456;
    ASSERT_TRUE(plot.addToPlot(styled));
    EXPECT_EQ(plot.addedCurveRedraws, added + 1);
    EXPECT_DOUBLE_EQ(plot.yAxis(0).getBoundingBoxMax(), 10.0);
    EXPECT_DOUBLE_EQ(plot.yAxis(0).getBoundingBoxMin(), -4.0);

    // Remove b and d in one step; the box shrinks; undo puts them back where they were, with
    // their style; redo takes them again.
    ASSERT_TRUE(plot.removeCurvesFromPlot({3, 1}));
    EXPECT_EQ(names(), "ac");
    EXPECT_DOUBLE_EQ(plot.yAxis(0).getBoundingBoxMin(), 0.0);
    EXPECT_EQ(page.removed, 1);
    ASSERT_TRUE(plot.performUndoAction());
    EXPECT_EQ(names(), "abcd");
    EXPECT_EQ(plot.getCurves()[3].description().style().realColour, 0x123456u);
    EXPECT_DOUBLE_EQ(plot.yAxis(0).getBoundingBoxMin(), -4.0);
    ASSERT_TRUE(plot.performRedoAction());
    EXPECT_EQ(names(), "ac");
    EXPECT_FALSE(plot.performRedoAction());
    // Undo everything: the plot empties, clears and shows the default view again.
    ASSERT_TRUE(plot.performUndoAction());
    ASSERT_TRUE(plot.performUndoAction());
    ASSERT_TRUE(plot.performUndoAction());
    EXPECT_EQ(plot.getNbOfCurves(), 0u);
    EXPECT_FALSE(plot.performUndoAction());
    EXPECT_GE(page.cleared, 1);
    EXPECT_EQ(plot.getCurrentView(), emptyView);
    // Redo brings the curves back, in order, unzoomed.
    ASSERT_TRUE(plot.performRedoAction());
    EXPECT_EQ(names(), "abc");
    EXPECT_TRUE(plot.checkIsUnzoomed());
    EXPECT_DOUBLE_EQ(plot.yAxis(0).getBoundingBoxMax(), 10.0);
    // A new step drops the redo tail.
    ASSERT_TRUE(plot.removeFromPlot(0));
    EXPECT_FALSE(plot.checkCanRedo());
    EXPECT_EQ(names(), "bc");

    // At most a hundred steps are kept; the oldest go without a word.
    cTestPlot busy(logger.logger);
    for (int i = 0; i < 59; ++i) {
        busy.addToPlot(tran.describe(a));
        busy.removeFromPlot(0);
    }
    busy.addToPlot(tran.describe(a));  // 119 steps
    EXPECT_EQ(busy.getNbOfUndoEntries(), 100u);
    int undone = 0;
    while (busy.performUndoAction())
        ++undone;
    EXPECT_EQ(undone, 100);
    EXPECT_EQ(busy.getNbOfCurves(), 1u) << "the 19 oldest steps are gone, the curve of the 19th stays";
    // A closed section takes its curves out of the plot and out of the history.
    busy.removeCurvesOfSection(tran.section);
    EXPECT_EQ(busy.getNbOfCurves(), 0u);
    EXPECT_FALSE(busy.checkCanRedo());
}

TEST(SinglePlotCurves, UnitsPlaceCurvesOnAxesOrRefuseThem)
{
    cCurvePlotDataFile store;
    cTestSection tran(store, "tran", ramp(4, 0.0, 1.0));
    const uint64_t volts = tran.addReal("v(out)", {0, 1, 2, 3});
    const uint64_t amps = tran.addReal("i(r1)", {0, 1e-3, 2e-3, 3e-3}, curvePlotDataType::ampere);
    const uint64_t ohms = tran.addReal("z", {50, 50, 51, 50}, curvePlotDataType::ohm);
    const uint64_t text = tran.addText("label");
    cTestSection ac(store, "ac", ramp(4, 1.0, 1.0), curvePlotDataType::hertz);
    const uint64_t gain = ac.addReal("gain", {1, 2, 3, 4});
    cCapturingLogger logger;
    cRecordingPage page;
    cTestPlot plot(logger.logger, &page);
    ASSERT_TRUE(plot.addToPlot(tran.describe(volts)));
    ASSERT_TRUE(plot.addToPlot(tran.describe(amps)));
    EXPECT_TRUE(plot.checkY1Active());
    EXPECT_EQ(plot.getCurves()[1].getRealAxis(), 1);
    EXPECT_DOUBLE_EQ(plot.yAxis(1).getBoundingBoxMax(), 3e-3);
    EXPECT_LT(plot.yAxis(1).getMin(), 0.0);
    EXPECT_GT(plot.yAxis(1).getMax(), 3e-3);

    // A third unit has no axis left; the message names the units.
    const wxSinglePlotViewPort view = plot.getCurrentView();
    EXPECT_FALSE(plot.addToPlot(tran.describe(ohms)));
    EXPECT_TRUE(logger.log.contains("Incompatible Y axis units (incompatible y axis units \""));
    EXPECT_TRUE(logger.log.contains("\", should be \"V\" or \"A\")"));
    EXPECT_TRUE(logger.log.contains("The curves could not be plotted."));
    // Another X unit is refused while the X unit check is on.
    logger.log.clear();
    EXPECT_FALSE(plot.addToPlot(ac.describe(gain)));
    EXPECT_TRUE(logger.log.contains("Incompatible X axis units."));
    // Text has no place on an axis.
    logger.log.clear();
    EXPECT_FALSE(plot.addToPlot(tran.describe(text)));
    EXPECT_TRUE(logger.log.contains("Incompatible curve data type."));
    EXPECT_FALSE(logger.log.debugMessages.empty());
    // Some of several: the message says so, and the good ones are there.
    logger.log.clear();
    ASSERT_TRUE(plot.addToPlot({tran.describe(ohms), tran.describe(volts)}));
    EXPECT_TRUE(logger.log.contains("Only a part of the curves were plotted."));
    EXPECT_EQ(plot.getNbOfCurves(), 2u);
    EXPECT_EQ(plot.getCurrentView(), view) << "refusals change no view";
    // The page may limit the number of curves.
    page.allowedCurves = 2;
    cCurvePlotDataFile more;
    cTestSection other(more, "other", ramp(4, 0.0, 1.0));
    const uint64_t extra = other.addReal("w", {3, 2, 1, 0});
    logger.log.clear();
    EXPECT_FALSE(plot.addToPlot(other.describe(extra)));
    EXPECT_TRUE(logger.log.contains("The maximum allowed number of curves has been reached."));
    // With the unit checks off, anything goes on y0.
    cPlotSettings lax = plot.getSettings();
    lax.checkXAxisUnit = lax.checkYAxisUnit = false;
    page.allowedCurves = static_cast<unsigned>(-1);
    plot.setSettings(lax);
    ASSERT_TRUE(plot.addToPlot({tran.describe(ohms), ac.describe(gain)}));
    EXPECT_EQ(plot.getCurves()[2].getRealAxis(), 0);
    EXPECT_EQ(plot.getNbOfCurves(), 4u);
    // Removing the only curve of y1 closes the second axis.
    ASSERT_TRUE(plot.removeFromPlot(1));
    EXPECT_FALSE(plot.checkY1Active());
}

TEST(SinglePlotCurves, ComplexCurvesShowTwoPartsRemovedAndRestoredOneByOne)
{
    cCurvePlotDataFile store;
    cTestSection ac(store, "ac", {1.0, 10.0, 100.0, 1000.0}, curvePlotDataType::hertz);
    const std::vector<std::complex<double>> h = {{1, 0}, {0.5, -0.5}, {0, -0.1}, {-0.01, 0}};
    const uint64_t curve = ac.addComplex("v(out)", h);
    cCapturingLogger logger;
    cTestPlot plot(logger.logger);
    // Magnitude in dB and angle: two parts, in decibels on y0 and degrees on y1.
    ASSERT_TRUE(plot.addToPlot(ac.describe(curve, derivedCurveFunction::magnitude_in_db_and_angle)));
    ASSERT_EQ(plot.getNbOfCurves(), 1u);
    const wxSinglePlotWidgetData& shown = plot.getCurves()[0];
    ASSERT_TRUE(shown.checkRealPartShown());
    ASSERT_TRUE(shown.checkImagPartShown());
    EXPECT_TRUE(plot.checkY1Active());
    EXPECT_EQ(shown.getImagAxis(), 1);
    EXPECT_NEAR(shown.getRealMaxY(), 0.0, 1e-12);          // |1| is 0 dB
    EXPECT_NEAR(shown.getRealMinY(), -40.0, 1e-9);         // |0.01| is -40 dB
    EXPECT_NEAR(shown.getImagMinY(), -90.0, 1e-9);         // -j0.1
    EXPECT_NEAR(shown.getImagMaxY(), 180.0, 1e-9);         // -0.01
    EXPECT_EQ(shown.getMaxXIndex(), 3u);
    EXPECT_DOUBLE_EQ(plot.yAxis(1).getBoundingBoxMax(), 180.0);

    // Removing the angle keeps the curve with its magnitude; undo brings the angle back.
    ASSERT_TRUE(plot.removeFromPlot(0, true));
    ASSERT_EQ(plot.getNbOfCurves(), 1u);
    EXPECT_FALSE(plot.getCurves()[0].checkImagPartShown());
    EXPECT_TRUE(plot.getCurves()[0].checkRealPartShown());
    EXPECT_FALSE(plot.checkY1Active());
    ASSERT_TRUE(plot.performUndoAction());
    ASSERT_EQ(plot.getNbOfCurves(), 1u);
    EXPECT_TRUE(plot.getCurves()[0].checkImagPartShown());
    EXPECT_TRUE(plot.checkY1Active());
    // Asking for a part that is there already adds nothing.
    ASSERT_TRUE(plot.addToPlot(ac.describe(curve, derivedCurveFunction::magnitude_in_db_and_angle)));
    EXPECT_EQ(plot.getNbOfCurves(), 1u);
    for (const auto& entry : plot.getUndoEntries())
        EXPECT_FALSE(entry.items.empty()) << "no empty step";
    // Adding only the magnitude where both parts show is no change either.
    ASSERT_TRUE(plot.removeFromPlot(0, false));
    EXPECT_FALSE(plot.getCurves()[0].checkRealPartShown());
    EXPECT_TRUE(plot.getCurves()[0].checkImagPartShown());
    ASSERT_TRUE(plot.performUndoAction());
    EXPECT_TRUE(plot.getCurves()[0].checkRealPartShown());
    EXPECT_NEAR(plot.getCurves()[0].getRealMinY(), -40.0, 1e-9);
}

TEST(SinglePlotReload, ZoomedViewsStayUnzoomedOnesFollowAndTheSlidingWindowMoves)
{
    cCurvePlotDataFile store;
    cTestSection tran(store, "tran", ramp(11, 0.0, 1.0));
    const uint64_t v = tran.addReal("v", ramp(11, 0.0, 1.0));
    cCapturingLogger logger;
    cRecordingPage page;
    cTestPlot plot(logger.logger, &page);
    ASSERT_TRUE(plot.addToPlot(tran.describe(v)));
    // Unzoomed: the view follows the grown curve.
    tran.grow(v, ramp(21, 0.0, 1.0), ramp(21, 0.0, 2.0));
    tran.section->getVariable(v).setFlagReloaded();
    plot.redrawAfterReload();
    EXPECT_DOUBLE_EQ(plot.xAxis().getBoundingBoxMax(), 20.0);
    EXPECT_DOUBLE_EQ(plot.yAxis(0).getBoundingBoxMax(), 40.0);
    EXPECT_NEAR(plot.xAxis().getMax(), 20.0 + 20.2 * 0.01, 1e-12);
    // Zoomed: the view stays as the user left it.
    ASSERT_TRUE(plot.zoomToBoxCmd(2.0, 4.0, 1.0, 3.0));
    const wxSinglePlotViewPort zoomed = plot.getCurrentView();
    tran.grow(v, ramp(31, 0.0, 1.0), ramp(31, 0.0, 3.0));
    plot.redrawAfterReload();
    EXPECT_DOUBLE_EQ(plot.xAxis().getBoundingBoxMax(), 30.0);
    EXPECT_EQ(plot.getCurrentView(), zoomed);

    // A sliding window of 4 shows the newest values in its middle and moves with them.
    cTestPlot live(logger.logger, &page);
    live.defineSlidingWindow(4.0, 2.5);
    ASSERT_TRUE(live.addToPlot(tran.describe(v)));
    EXPECT_DOUBLE_EQ(live.xAxis().getMin(), 28.0);
    EXPECT_DOUBLE_EQ(live.xAxis().getMax(), 32.0);
    tran.grow(v, ramp(41, 0.0, 1.0), ramp(41, 0.0, 1.0));
    live.redrawAfterReload(true);
    EXPECT_DOUBLE_EQ(live.xAxis().getMin(), 38.0);
    EXPECT_DOUBLE_EQ(live.xAxis().getMax(), 42.0);
    // Y shows the whole of the curve.
    EXPECT_LT(live.yAxis(0).getMin(), 0.0);
    EXPECT_GT(live.yAxis(0).getMax(), 40.0);
    // A user's zoom pauses it; the pause timer is asked for in milliseconds.
    live.timers.clear();
    ASSERT_TRUE(live.zoomX(2));
    EXPECT_TRUE(live.checkSlidingWindowUserZoom());
    EXPECT_TRUE(page.userZoom);
    ASSERT_FALSE(live.timers.empty());
    EXPECT_EQ(live.timers.back(), std::make_pair(int(timer_sliding_window_pause), 2500));
    const wxSinglePlotViewPort paused = live.getCurrentView();
    tran.grow(v, ramp(51, 0.0, 1.0), ramp(51, 0.0, 1.0));
    live.redrawAfterReload(true);
    EXPECT_EQ(live.getCurrentView(), paused);
    // The pause ends and the window catches up.
    live.slidingWindowPauseEnded();
    EXPECT_FALSE(page.userZoom);
    EXPECT_DOUBLE_EQ(live.xAxis().getMin(), 48.0);
    EXPECT_DOUBLE_EQ(live.xAxis().getMax(), 52.0);
}

TEST(SinglePlotScheduled, WheelStepsGatherIntoOneZoom)
{
    cCurvePlotDataFile store;
    cTestSection tran(store, "tran", ramp(101, 0.0, 0.01));
    const uint64_t v = tran.addReal("v", ramp(101, 0.0, 0.01));
    cCapturingLogger logger;
    cTestPlot plot(logger.logger);
    ASSERT_TRUE(plot.addToPlot(tran.describe(v)));
    const double width = range(plot.xAxis()), height = range(plot.yAxis(0));
    const size_t views = plot.getNbOfViewPorts();
    plot.setScheduledOperation(zoom_x_in);
    plot.setScheduledOperation(zoom_x_in);
    plot.setScheduledOperation(zoom_x_in);
    EXPECT_EQ(plot.getScheduledSteps(), 3);
    EXPECT_EQ(plot.timers.back(), std::make_pair(int(timer_scheduled_operation), 30));
    plot.timerEventForScheduledOperation();
    EXPECT_NEAR(range(plot.xAxis()), width * 0.9 * 0.9 * 0.9, 1e-12);
    EXPECT_DOUBLE_EQ(range(plot.yAxis(0)), height);
    EXPECT_EQ(plot.getNbOfViewPorts(), views + 1);
    EXPECT_EQ(plot.getScheduledOperation(), no_operation);
    // Another operation starts its own count.
    plot.setScheduledOperation(zoom_in, 2);
    plot.setScheduledOperation(scroll_x, 5);
    EXPECT_EQ(plot.getScheduledSteps(), 5);
    const double min = plot.xAxis().getMin();
    plot.timerEventForScheduledOperation();
    EXPECT_NEAR((plot.xAxis().getMin() - min) * plot.xAxis().getScale(), 5.0, 1e-9);
}

TEST(SinglePlotLogAxis, LogSpacedSweepsGoOnALogAxisWidenedInDecades)
{
    cCurvePlotDataFile store;
    std::vector<double> frequency(61);
    for (size_t i = 0; i < frequency.size(); ++i)
        frequency[i] = std::pow(10.0, 1.0 + double(i) / 12.0);  // 10 Hz to 1 MHz, 12 points a decade
    cTestSection ac(store, "ac", frequency, curvePlotDataType::hertz);
    const uint64_t gain = ac.addReal("gain", ramp(61, -60.0, 1.0), curvePlotDataType::decibel);
    cTestSection tran(store, "tran", ramp(61, 0.0, 1.0));
    const uint64_t v = tran.addReal("v", ramp(61, 0.0, 1.0));
    cCapturingLogger logger;
    cTestPlot plot(logger.logger);
    ASSERT_TRUE(plot.addToPlot(ac.describe(gain)));
    ASSERT_TRUE(plot.xAxis().checkIsLog());
    // One hundredth of the decades on each side, the upper step from the widened lower end.
    const double l0 = 1.0 - 5.0 / 100.0, l1 = 6.0 + (6.0 - l0) / 100.0;
    EXPECT_NEAR(std::log10(plot.xAxis().getMin()), l0, 1e-12);
    EXPECT_NEAR(std::log10(plot.xAxis().getMax()), l1, 1e-12);
    // Decades are equally wide on the canvas.
    EXPECT_NEAR(plot.xAxis().toInt(1e3) - plot.xAxis().toInt(1e2), plot.xAxis().toInt(1e5) - plot.xAxis().toInt(1e4),
                1e-9);
    // Zoom about the centre keeps the geometric middle; back and forth restore the view.
    const wxSinglePlotViewPort unzoomed = plot.getCurrentView();
    const double middle = plot.xAxis().toDouble(250.0);
    ASSERT_TRUE(plot.zoomX(5));
    EXPECT_NEAR(plot.xAxis().toDouble(250.0) / middle, 1.0, 1e-9);
    EXPECT_NEAR(std::log10(plot.xAxis().getMax() / plot.xAxis().getMin()), (l1 - l0) * std::pow(0.9, 5), 1e-9);
    ASSERT_TRUE(plot.switchViewPorts(-1));
    EXPECT_EQ(plot.getCurrentView(), unzoomed);
    // Linear and back: the linear unzoom of the box.
    ASSERT_TRUE(plot.enableLogXAxis(false));
    EXPECT_FALSE(plot.xAxis().checkIsLog());
    EXPECT_NEAR(plot.xAxis().getMin(), 10.0 - (1e6 - 10.0) * 0.01, 1e-6);
    ASSERT_TRUE(plot.enableLogXAxis(true));
    EXPECT_EQ(plot.getCurrentView()[0], unzoomed[0]);
    // A time axis from zero is linear, and an empty plot is linear again.
    cTestPlot linear(logger.logger);
    ASSERT_TRUE(linear.addToPlot(tran.describe(v)));
    EXPECT_FALSE(linear.xAxis().checkIsLog());
    ASSERT_TRUE(plot.clearCurves());
    EXPECT_FALSE(plot.xAxis().checkIsLog());
    EXPECT_TRUE(logger.log.messages.empty()) << logger.log.messages.front();
}

TEST(SinglePlotReload, CurvesFindTheirSectionAndNameAgainOrLeave)
{
    cCurvePlotDataFile store;
    cTestSection tran(store, "tran", ramp(11, 0.0, 1.0));
    const uint64_t a = tran.addReal("a", ramp(11, 0.0, 1.0));
    const uint64_t b = tran.addReal("b", ramp(11, 5.0, -1.0), curvePlotDataType::ampere);
    cCapturingLogger logger;
    cTestPlot plot(logger.logger);
    wxCurveDescription second = tran.describe(b);
    second.style().realColour = 0x00a000;
    ASSERT_TRUE(plot.addToPlot({tran.describe(a), second}));
    ASSERT_TRUE(plot.checkY1Active());
    ASSERT_TRUE(plot.zoomToBoxCmd(2.0, 4.0, 1.0, 3.0));
    const wxSinglePlotViewPort zoomed = plot.getCurrentView();

    // The reload keeps both: values anew, styles and the zoomed view as they were; the steps of
    // the file's curves are gone from the history.
    plot.releaseCurvesForReload(tran.section->getFile());
    EXPECT_FALSE(plot.getCurves()[0].description().checkIsVariable());
    EXPECT_EQ(plot.getNbOfUndoEntries(), 0u);
    tran.grow(a, ramp(21, 0.0, 1.0), ramp(21, 0.0, 2.0));
    tran.section->getVariable(b).setDoubleValues(ramp(21, 5.0, -1.0).data(), 21);
    plot.reattachCurvesAfterReload(store);
    ASSERT_EQ(plot.getNbOfCurves(), 2u);
    EXPECT_TRUE(plot.getCurves()[0].description().checkIsVariable());
    EXPECT_EQ(plot.getCurves()[1].description().style().realColour, 0x00a000u);
    EXPECT_DOUBLE_EQ(plot.getCurves()[0].getRealMaxY(), 40.0);
    EXPECT_DOUBLE_EQ(plot.xAxis().getBoundingBoxMax(), 20.0);
    EXPECT_EQ(plot.getCurrentView(), zoomed);

    // A curve whose name is gone after the reload leaves the plot, and the second axis with it.
    plot.releaseCurvesForReload(tran.section->getFile());
    ASSERT_TRUE(tran.section->renameVariable(b, "b_renamed"));
    plot.reattachCurvesAfterReload(store);
    ASSERT_EQ(plot.getNbOfCurves(), 1u);
    EXPECT_EQ(plot.getCurves()[0].description().getName(), "a");
    EXPECT_FALSE(plot.checkY1Active());
    // Nothing released: nothing happens.
    plot.reattachCurvesAfterReload(store);
    EXPECT_EQ(plot.getNbOfCurves(), 1u);
    EXPECT_TRUE(logger.log.messages.empty()) << logger.log.messages.front();
}
