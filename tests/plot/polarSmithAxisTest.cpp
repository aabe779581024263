#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <string>
#include <vector>

#include "axisTestSupport.h"
#include "plot/plotWindowType.h"
#include "plot/wxSinglePlotWidgetXAxis.h"

using namespace vx3;
using namespace vx3::singlePlotWidgetAxis;
using zwplot::cFixedWidthMetrics;

namespace {

// Closed rectangles: sharing an edge counts as touching.
bool rectanglesTouch(const cTickLabelAngle& a, const cTickLabelAngle& b)
{
    return a.x0 <= b.x1 && b.x0 <= a.x1 && a.y0 <= b.y1 && b.y0 <= a.y1;
}

cTickLabelAngle box(double x0, double y0, double x1, double y1)
{
    cTickLabelAngle t;
    t.x0 = x0;
    t.y0 = y0;
    t.x1 = x1;
    t.y1 = y1;
    return t;
}

const std::vector<std::string> all_angle_labels = {"0",     "30.0",  "60.0",  "120.0", "150.0",
                                                   "210.0", "240.0", "300.0", "330.0", "360.00"};

}  // namespace

TEST(polarSmithAxis, TextRectangleChecks)
{
    const cTickLabelAngle a = box(0, 0, 10, 10);
    EXPECT_TRUE(a.checkTextDoesntIntersect(box(11, 0, 20, 10)));
    EXPECT_FALSE(a.checkTextDoesntIntersect(box(10, 0, 20, 10)));  // shared edge touches
    EXPECT_FALSE(a.checkTextDoesntIntersect(box(5, 5, 15, 15)));
    EXPECT_TRUE(a.checkTextDoesntIntersect(box(5, 11, 15, 20)));   // apart in y only
    EXPECT_FALSE(a.checkTextDoesntIntersectX(box(5, 11, 15, 20)));
    EXPECT_TRUE(a.checkTextDoesntIntersectY(box(5, 11, 15, 20)));
    EXPECT_TRUE(a.checkTextIsVisible(0, 0, 10, 10));
    EXPECT_FALSE(a.checkTextIsVisible(1, 0, 100, 100));
}

TEST(polarSmithAxis, AngleLabelsAroundTheCircleNeverTouch)
{
    const cFixedWidthMetrics metrics;
    wxSinglePlotWidgetXAxis axis;
    axis.setGridType(waveExplorerWidgetVirtual::polar_grid);
    const double cx = 640.0, cy = 600.0;
    for (double radius = 50.0; radius <= 500.0; radius += 2.5) {
        axis.computeAngleTicksForPolarPlot(metrics, cx, cy, radius);
        const auto& ticks = axis.getAngleTicks();
        ASSERT_FALSE(ticks.empty());
        // Kept labels are the listed ones, in the listed order around the circle.
        size_t next = 0;
        for (const auto& t : ticks) {
            while (next < all_angle_labels.size() && all_angle_labels[next] != t.text)
                ++next;
            ASSERT_LT(next, all_angle_labels.size()) << "unexpected or out-of-order label " << t.text;
            ++next;
        }
        EXPECT_EQ(ticks.front().text, "0");
        for (size_t i = 0; i < ticks.size(); ++i) {
            const auto& t = ticks[i];
            EXPECT_NEAR(t.x1 - t.x0, metrics.getTextWidth(t.text), 1e-9);
            EXPECT_NEAR(t.y1 - t.y0, cFixedWidthMetrics::line_height, 1e-9);
            // The text lies wholly outside the circle.
            const double nx = std::clamp(cx, t.x0, t.x1), ny = std::clamp(cy, t.y0, t.y1);
            EXPECT_GT(std::hypot(nx - cx, ny - cy), radius - 1e-9) << t.text << " at radius " << radius;
            for (size_t j = i + 1; j < ticks.size(); ++j)
                EXPECT_FALSE(rectanglesTouch(t, ticks[j]))
                    << t.text << " and " << ticks[j].text << " touch at radius " << radius;
        }
        // 360 falls on 0, so it always yields; at these radii every other label has room.
        EXPECT_EQ(ticks.size(), 9u) << "radius " << radius;
        EXPECT_NE(ticks.back().text, "360.00");
    }
    // On a tiny circle labels crowd and some are dropped, never leaving touching ones.
    axis.computeAngleTicksForPolarPlot(metrics, cx, cy, 5.0);
    const auto& crowded = axis.getAngleTicks();
    EXPECT_LT(crowded.size(), 9u);
    for (size_t i = 0; i < crowded.size(); ++i)
        for (size_t j = i + 1; j < crowded.size(); ++j)
            EXPECT_FALSE(rectanglesTouch(crowded[i], crowded[j]));
}

TEST(polarSmithAxis, SortByTextPositionIsStable)
{
    std::vector<cTickLabelAngle> ticks = {box(30, 0, 40, 1), box(10, 0, 20, 1), box(10, 5, 20, 6)};
    ticks[0].text = "c";
    ticks[1].text = "a";
    ticks[2].text = "b";
    wxSinglePlotWidgetAxis::sortAngleTicksIncreasingTextPositionX0(ticks);
    EXPECT_EQ(ticks[0].text + ticks[1].text + ticks[2].text, "abc");
}

TEST(polarSmithAxis, RadiusTicksFollowTheLinearRules)
{
    const cFixedWidthMetrics metrics;
    wxSinglePlotWidgetXAxis axis;
    axis.setGridType(waveExplorerWidgetVirtual::polar_grid);
    axis.setView(-2.5, 1.0, 0.0, 400.0);  // magnitudes up to 2.5 whatever the sign
    double lo = -1.0, hi = -1.0;
    axis.computeMinMaxRadiusForPolarPlot(lo, hi);
    EXPECT_EQ(lo, 0.0);
    EXPECT_EQ(hi, 2.5);
    const double radius = 200.0;
    axis.computePolarAxesTicks(metrics, 300.0, 300.0, radius);
    const auto& ticks = axis.getTicks();
    ASSERT_GE(ticks.size(), 3u);
    EXPECT_EQ(ticks.front().kind, tick_on_zero);
    EXPECT_EQ(ticks.front().position, 0.0);
    // Range 2.5: a power of ten fitting three times is 0.1; range >= 10 * 0.1 keeps it.
    const double distance = ticks[1].value - ticks[0].value;
    EXPECT_NEAR(distance, 0.1, 1e-12);
    double lastLabelPixel = -1e9;
    for (const auto& t : ticks) {
        EXPECT_LE(t.value, 2.5 + 1e-9);
        EXPECT_NEAR(t.exactPosition, t.value * radius / 2.5, 1e-9);
        if (t.text.empty())
            continue;
        EXPECT_NEAR(std::stod(t.text), t.value, 1e-9) << t.text;
        // Labels along the radius have room for their text.
        EXPECT_GE(t.position - lastLabelPixel, metrics.getTextWidth(t.text)) << t.text;
        lastLabelPixel = t.position;
    }
    EXPECT_GE(axis.getAngleTicks().size(), 1u);
    // Magnitudes and angles carry no sign on these grids.
    EXPECT_EQ(axis.doubleToStr(3, -2.5), "2.5");
    axis.setGridType(waveExplorerWidgetVirtual::analog_plot);
    EXPECT_EQ(axis.doubleToStr(3, -2.5), "-2.5");
    // A Smith grid always spans the unit circle of the reflection coefficient.
    axis.setGridType(waveExplorerWidgetVirtual::smith_impedance_grid);
    axis.computeMinMaxRadiusForPolarPlot(lo, hi);
    EXPECT_EQ(hi, 1.0);
}

TEST(polarSmithAxis, SmithCirclesMatchTheBilinearMap)
{
    const cFixedWidthMetrics metrics;
    wxSinglePlotWidgetXAxis axis;
    axis.setGridType(waveExplorerWidgetVirtual::smith_impedance_grid);
    axis.computeSmithAxesTicks(metrics, 300.0, 300.0, 200.0);
    const auto& circles = axis.getSmithCircles();
    int resistanceCircles = 0, reactanceArcs = 0;
    for (const auto& c : circles) {
        if (!c.reactance) {
            ++resistanceCircles;
            const double r = c.value;
            EXPECT_NEAR(c.centreX, r / (1.0 + r), 1e-12);
            EXPECT_NEAR(c.centreY, 0.0, 1e-12);
            EXPECT_NEAR(c.radius, 1.0 / (1.0 + r), 1e-12);
        } else {
            ++reactanceArcs;
            const double x = c.value;
            EXPECT_NEAR(c.centreX, 1.0, 1e-12);
            EXPECT_NEAR(c.centreY, 1.0 / x, 1e-12);
            EXPECT_NEAR(c.radius, 1.0 / std::fabs(x), 1e-12);
        }
        // Every point of the circle inside the chart maps back to the circle's own value
        // through z = (1 + G) / (1 - G).
        for (int k = 0; k < 36; ++k) {
            const double phi = k * 3.14159265358979323846 / 18.0;
            const std::complex<double> g(c.centreX + c.radius * std::cos(phi),
                                         c.centreY + c.radius * std::sin(phi));
            if (std::abs(g) > 1.0 - 1e-9 || std::abs(1.0 - g) < 1e-6)
                continue;
            const std::complex<double> z = (1.0 + g) / (1.0 - g);
            EXPECT_NEAR(c.reactance ? z.imag() : z.real(), c.value, 1e-9);
        }
    }
    EXPECT_EQ(resistanceCircles, 6);
    EXPECT_EQ(reactanceArcs, 10);

    // The admittance chart: y = (1 - G) / (1 + G) is constant on the turned circles.
    axis.setGridType(waveExplorerWidgetVirtual::smith_admittance_grid);
    axis.computeSmithAxesTicks(metrics, 300.0, 300.0, 200.0);
    for (const auto& c : axis.getSmithCircles()) {
        for (int k = 0; k < 36; ++k) {
            const double phi = k * 3.14159265358979323846 / 18.0;
            const std::complex<double> g(c.centreX + c.radius * std::cos(phi),
                                         c.centreY + c.radius * std::sin(phi));
            if (std::abs(g) > 1.0 - 1e-9 || std::abs(1.0 + g) < 1e-6)
                continue;
            const std::complex<double> y = (1.0 - g) / (1.0 + g);
            EXPECT_NEAR(c.reactance ? y.imag() : y.real(), c.value, 1e-9);
        }
    }
    // Nothing to draw for reactance 0 (the real axis) or a resistance of -1.
    const size_t before = axis.getSmithCircles().size();
    axis.pushAxisTickSmith(0.0, true, false);
    axis.pushAxisTickSmith(-1.0, false, false);
    EXPECT_EQ(axis.getSmithCircles().size(), before);
}

TEST(polarSmithAxis, LabelsAndScaleFactors)
{
    wxSinglePlotWidgetXAxis axis;
    axis.setGridType(waveExplorerWidgetVirtual::polar_grid);
    axis.resetPolarOrSmithLabelAndScaleFactor(false);
    EXPECT_EQ(axis.getLabel(), "Mag");

    axis.setGridType(waveExplorerWidgetVirtual::smith_impedance_grid);
    axis.resetPolarOrSmithLabelAndScaleFactor(false);
    EXPECT_EQ(axis.getLabel(), "Re(Z) [50.0]");
    axis.resetPolarOrSmithLabelAndScaleFactor(true);
    EXPECT_EQ(axis.getLabel(), "Im(Z) [50.0]");
    EXPECT_EQ(axis.getLabelScaleFactor(), 1.0);
    axis.setNormalizingImpedance(75.5);
    axis.setNormalizingImpedance(-3.0);  // refused
    axis.setNormalizingImpedance(std::nan(""));
    axis.resetPolarOrSmithLabelAndScaleFactor(false);
    EXPECT_EQ(axis.getLabel(), "Re(Z) [75.5]");

    axis.setGridType(waveExplorerWidgetVirtual::smith_admittance_grid);
    axis.setNormalizingImpedance(50.0);
    axis.resetPolarOrSmithLabelAndScaleFactor(false);
    EXPECT_EQ(axis.getLabel(), "Re(Y) [mS]");
    EXPECT_DOUBLE_EQ(axis.getLabelScaleFactor(), 1.0 / 50.0);
    EXPECT_EQ(axis.getScaleFactorPrefix(), "m");
    axis.setGridType(waveExplorerWidgetVirtual::smith_admittance_and_impedance_grid);
    axis.setNormalizingImpedance(0.5);
    axis.resetPolarOrSmithLabelAndScaleFactor(true);
    EXPECT_EQ(axis.getLabel(), "Im(Y) [mS]");
    EXPECT_DOUBLE_EQ(axis.getLabelScaleFactor(), 1000.0 / 0.5);
    EXPECT_EQ(axis.getScaleFactorPrefix(), "");
    // Impedance first on the mixed grid.
    axis.setGridType(waveExplorerWidgetVirtual::smith_impedance_and_admittance_grid);
    axis.resetPolarOrSmithLabelAndScaleFactor(false);
    EXPECT_EQ(axis.getLabel(), "Re(Z) [0.5]");

    // Other grids keep their own label.
    wxSinglePlotWidgetXAxis plain;
    plain.resetPolarOrSmithLabelAndScaleFactor(false);
    EXPECT_EQ(plain.getLabel(), "");
}
