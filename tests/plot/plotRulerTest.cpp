// The rulers M1 and C1: values read at their X against numpy, snapping to samples, dx and dy
// against the marker, refusals that leave the plot as it was, and the closest-curve hit test.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "overlayTestSupport.h"
#include "plot/wxSinglePlotOverlay.h"
#include "singlePlotTestSupport.h"

using namespace vx3;
using namespace zwplot;
using namespace zwoverlay;

namespace {

// Sorted, unevenly spaced x: a cursor must interpolate, not pick samples.
std::vector<double> unevenX(std::mt19937& random, size_t count, double start)
{
    std::uniform_real_distribution<double> step(0.01, 1.0);
    std::vector<double> x{start};
    while (x.size() < count)
        x.push_back(x.back() + step(random));
    return x;
}

}  // namespace

TEST(PlotRuler, ValuesAtTheRulerAreWhatNumpyInterpolates)
{
    std::mt19937 random(1234);
    cCapturingLogger capture;
    cCurvePlotDataFile store;
    // Two sections on different x grids, so that each curve is read on its own grid.
    const std::vector<double> x1 = unevenX(random, 400, 0.0), x2 = unevenX(random, 250, 3.0);
    cTestSection first(store, "tran", x1), second(store, "tran2", x2);
    std::vector<double> y1(x1.size()), y2(x2.size());
    std::normal_distribution<double> noise(0.0, 0.05);
    for (size_t i = 0; i < x1.size(); ++i)
        y1[i] = std::sin(0.3 * x1[i]) + noise(random);
    for (size_t i = 0; i < x2.size(); ++i)
        y2[i] = 2.0 * std::cos(0.1 * x2[i]) - 1.0;
    cOverlayTestPlot plot(capture.logger);
    ASSERT_TRUE(plot.addToPlot(first.describe(first.addReal("v(a)", y1))));
    ASSERT_TRUE(plot.addToPlot(second.describe(second.addReal("v(b)", y2))));
    wxSinglePlotOverlay overlay(plot, capture.logger);

    // Queries inside, at samples, and beyond both ends (numpy carries the end values there).
    std::uniform_real_distribution<double> where(-5.0, x1.back() + 5.0);
    std::vector<double> queries{x1[0], x1[17], x2[0], x2.back(), -3.0, x1.back() + 2.0};
    for (int i = 0; i < 300; ++i)
        queries.push_back(where(random));
    std::vector<std::pair<double, double>> points1, points2;
    for (size_t i = 0; i < x1.size(); ++i)
        points1.emplace_back(x1[i], y1[i]);
    for (size_t i = 0; i < x2.size(); ++i)
        points2.emplace_back(x2[i], y2[i]);
    const std::vector<double> expected1 = oracleValues("linear", points1, queries);
    const std::vector<double> expected2 = oracleValues("linear", points2, queries);
    ASSERT_EQ(expected1.size(), queries.size()) << "numpy oracle failed";
    ASSERT_EQ(expected2.size(), queries.size());
    for (size_t q = 0; q < queries.size(); ++q) {
        const std::string name = q % 2 ? "M1" : "C1";
        ASSERT_TRUE(overlay.setCursor(queries[q], name));
        const wxSinglePlotWidgetRuler& ruler = q % 2 ? overlay.marker() : overlay.cursor();
        EXPECT_EQ(ruler.getX(), queries[q]);
        ASSERT_EQ(ruler.getValues().size(), 2u);
        for (size_t c = 0; c < 2; ++c) {
            const double want = c == 0 ? expected1[q] : expected2[q];
            EXPECT_TRUE(ruler.getValues()[c].valid);
            EXPECT_NEAR(ruler.getValues()[c].y, want, 1e-12 * std::max(1.0, std::fabs(want)))
                << "curve " << c << " at x=" << queries[q];
        }
    }

    // dx and dy of the cursor refer to the marker, per curve.
    ASSERT_TRUE(overlay.setCursor(10.0, "m1"));
    ASSERT_TRUE(overlay.setCursor(20.0, "C1"));
    const wxSinglePlotWidgetRuler& c1 = overlay.cursor();
    EXPECT_EQ(c1.createAnnotationLabel(), "C1 x=" + c1.formatX(20.0) + " dx=" + c1.formatX(10.0));
    EXPECT_EQ(overlay.marker().createAnnotationLabel(), "M1 x=" + c1.formatX(10.0));
    const auto& value = c1.getValues()[0];
    const double dy = value.y - overlay.marker().getValues()[0].y;
    EXPECT_EQ(c1.createValueLabel(value, false, ""), "y=" + c1.formatY(value.y, 0) + " dy=" + c1.formatY(dy, 0));
    EXPECT_EQ(c1.createValueLabel(value, true, "v(a)").rfind("v(a): y=", 0), 0u);
    EXPECT_EQ(overlay.getRulerState(), singlePlotOverlay::both_rulers_set);
}

TEST(PlotRuler, FollowingTheMouseSnapsToTheNearestSampleOfAnyCurve)
{
    std::mt19937 random(77);
    cCapturingLogger capture;
    cCurvePlotDataFile store;
    const std::vector<double> xa = unevenX(random, 60, 0.0), xb = unevenX(random, 45, 0.5);
    cTestSection a(store, "a", xa), b(store, "b", xb);
    cOverlayTestPlot plot(capture.logger);
    ASSERT_TRUE(plot.addToPlot(a.describe(a.addReal("x", std::vector<double>(xa.size(), 1.0)))));
    ASSERT_TRUE(plot.addToPlot(b.describe(b.addReal("y", std::vector<double>(xb.size(), 2.0)))));
    wxSinglePlotOverlay overlay(plot, capture.logger);
    ASSERT_TRUE(overlay.activateRulers(300.0, 200.0));
    const wxSinglePlotWidgetXAxis& axis = plot.xAxis();
    std::uniform_real_distribution<double> pixel(60.0, 660.0);
    for (int i = 0; i < 200; ++i) {
        const double px = pixel(random);
        overlay.mouseMoved(px, 200.0);
        // Brute force over both grids, in pixels.
        double best = 0.0, bestDistance = INFINITY;
        for (const auto* grid : {&xa, &xb})
            for (double x : *grid)
                if (std::fabs(axis.toInt(x) - px) < bestDistance)
                    bestDistance = std::fabs(axis.toInt(x) - px), best = x;
        EXPECT_EQ(overlay.cursor().getX(), best) << "pixel " << px;
    }
    // With snapping off the ruler stands at the pixel's X.
    overlay.settings.snapToGrid = false;
    overlay.mouseMoved(333.0, 200.0);
    EXPECT_DOUBLE_EQ(overlay.cursor().getX(), axis.toDouble(333.0));
    // Clicks fix the marker, then the cursor.
    overlay.settings.snapToGrid = true;
    EXPECT_TRUE(overlay.leftClick(200.0, 100.0));
    EXPECT_EQ(overlay.getRulerState(), singlePlotOverlay::waiting_for_cursor);
    EXPECT_TRUE(overlay.marker().checkIsEnabled());
    EXPECT_TRUE(overlay.leftClick(400.0, 100.0));
    EXPECT_EQ(overlay.getRulerState(), singlePlotOverlay::both_rulers_set);
    EXPECT_FALSE(overlay.leftClick(500.0, 100.0));
    // Arrow keys walk from sample to sample.
    const double before = overlay.cursor().getX();
    ASSERT_TRUE(overlay.cursor().incrementPosition(1));
    double next = INFINITY;
    for (const auto* grid : {&xa, &xb})
        for (double x : *grid)
            if (x > before)
                next = std::min(next, x);
    EXPECT_EQ(overlay.cursor().getX(), next);
}

TEST(PlotRuler, BadRulerCommandsAreRefusedAndChangeNothing)
{
    cCapturingLogger capture;
    cCurvePlotDataFile store;
    cOverlayTestPlot plot(capture.logger);
    cRecordingPage page;
    wxSinglePlotOverlay overlay(plot, capture.logger);
    overlay.setPage(&page);
    // An empty plot has nothing to read.
    EXPECT_FALSE(overlay.setCursor(1.0, "C1"));
    EXPECT_TRUE(capture.log.contains("Cannot set cursor C1: the plot holds no curve."));
    ASSERT_FALSE(page.statusMessages.empty());
    EXPECT_EQ(page.statusMessages.back(), "Cannot set cursor C1: the plot holds no curve.");
    EXPECT_FALSE(overlay.activateRulers(100.0, 100.0));
    EXPECT_EQ(overlay.getRulerState(), singlePlotOverlay::no_ruler);
    EXPECT_FALSE(overlay.cursor().checkIsEnabled());

    cTestSection section(store, "s", {0.0, 1.0, 2.0});
    ASSERT_TRUE(plot.addToPlot(section.describe(section.addReal("v", {0.0, 1.0, 4.0}))));
    ASSERT_TRUE(overlay.setCursor(1.5, ""));  // no name: the cursor
    EXPECT_DOUBLE_EQ(overlay.cursor().getValues()[0].y, 2.5);
    capture.log.clear();
    for (double bad : {double(NAN), double(INFINITY), -double(INFINITY), 1e300}) {
        EXPECT_FALSE(overlay.setCursor(bad, "C1"));
        EXPECT_EQ(overlay.cursor().getX(), 1.5);
        EXPECT_DOUBLE_EQ(overlay.cursor().getValues()[0].y, 2.5);
    }
    EXPECT_TRUE(capture.log.contains("the X value is not a finite number"));
    EXPECT_FALSE(overlay.setCursor(1.0, "C2"));
    EXPECT_TRUE(capture.log.contains("Unknown cursor name \"C2\" (M1 or C1)."));
    EXPECT_FALSE(overlay.marker().checkIsEnabled());
    EXPECT_FALSE(overlay.clearRuler("X9"));
    EXPECT_TRUE(overlay.cursor().checkIsEnabled());
    EXPECT_TRUE(overlay.clearRuler("c1"));
    EXPECT_FALSE(overlay.cursor().checkIsEnabled());
    // The last curve leaving takes the rulers with it.
    ASSERT_TRUE(overlay.setCursor(0.5, "M1"));
    ASSERT_TRUE(plot.clearCurves());
    overlay.curvesChanged();
    EXPECT_FALSE(overlay.marker().checkIsEnabled());
}

TEST(PlotRuler, ClosestCurveIsTheNearestWithinToleranceTopmostFirst)
{
    cCapturingLogger capture;
    cCurvePlotDataFile store;
    std::vector<double> x(101);
    for (size_t i = 0; i < x.size(); ++i)
        x[i] = 0.1 * static_cast<double>(i);
    cTestSection section(store, "s", x);
    cOverlayTestPlot plot(capture.logger);
    // Three flat lines and a ramp; the fourth is a copy of the first, drawn on top of it.
    std::vector<double> ramp(x.size());
    for (size_t i = 0; i < x.size(); ++i)
        ramp[i] = 0.3 * x[i];
    const uint64_t low = section.addReal("low", std::vector<double>(x.size(), 0.0));
    ASSERT_TRUE(plot.addToPlot(section.describe(low)));
    ASSERT_TRUE(plot.addToPlot(section.describe(section.addReal("mid", std::vector<double>(x.size(), 1.0)))));
    ASSERT_TRUE(plot.addToPlot(section.describe(section.addReal("ramp", ramp))));
    ASSERT_TRUE(plot.addToPlot(section.describe(section.addReal("low2", std::vector<double>(x.size(), 0.0)))));
    wxSinglePlotOverlay overlay(plot, capture.logger);
    const wxSinglePlotWidgetXAxis& xAxis = plot.xAxis();
    const wxSinglePlotWidgetYAxis& yAxis = plot.yAxis(0);
    size_t index = 99;
    bool imaginary = true;
    // 3 pixels above the middle line.
    ASSERT_TRUE(overlay.getClosestCurveIndex(xAxis.toInt(2.0), yAxis.toInt(1.0) + 3.0, index, imaginary));
    EXPECT_EQ(index, 1u);
    EXPECT_FALSE(imaginary);
    // On the ramp at x = 7 (y = 2.1), away from the flat lines.
    ASSERT_TRUE(overlay.getClosestCurveIndex(xAxis.toInt(7.0), yAxis.toInt(2.1) - 2.0, index, imaginary));
    EXPECT_EQ(index, 2u);
    // Two curves on the same line: the one drawn last, on top.
    ASSERT_TRUE(overlay.getClosestCurveIndex(xAxis.toInt(5.0), yAxis.toInt(0.0) + 1.0, index, imaginary));
    EXPECT_EQ(index, 3u);
    // Out of tolerance: between the lines, far from all.
    EXPECT_FALSE(overlay.getClosestCurveIndex(xAxis.toInt(1.0), yAxis.toInt(0.5), index, imaginary));
    // Hit testing off.
    overlay.settings.hitTest = false;
    EXPECT_FALSE(overlay.getClosestCurveIndex(xAxis.toInt(2.0), yAxis.toInt(1.0), index, imaginary));
}
