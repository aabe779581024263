// Where the overlay's boxes go: no two boxes cover each other or the legend, across random plots;
// the legend's names, rows, truncation and scrolling.
#include <gtest/gtest.h>

#include <random>

#include "overlayTestSupport.h"
#include "plot/wxSinglePlotOverlay.h"
#include "singlePlotTestSupport.h"

using namespace vx3;
using namespace vx3::plotBoxLayout;
using namespace zwplot;
using namespace zwoverlay;

namespace {

// Every shown box inside the canvas and apart from every other and from a legend in the canvas.
void expectApart(const wxSinglePlotOverlay& overlay, const cBox& canvas, const std::string& where)
{
    const auto& boxes = overlay.getBoxes();
    for (size_t i = 0; i < boxes.size(); ++i) {
        if (!boxes[i].item.shown)
            continue;
        const cBox& a = boxes[i].item.placed;
        EXPECT_TRUE(a.inside(canvas)) << where << " box " << i;
        if (overlay.legend().checkIfLegendIsShown()) {
            EXPECT_FALSE(a.intersects(overlay.legend().getRectangle())) << where << " box " << i << " on the legend";
        }
        for (size_t j = i + 1; j < boxes.size(); ++j) {
            if (boxes[j].item.shown) {
                EXPECT_FALSE(a.intersects(boxes[j].item.placed))
                    << where << " boxes " << i << " (" << boxes[i].lines[0] << ") and " << j << " ("
                    << boxes[j].lines[0] << ")";
            }
        }
    }
}

}  // namespace

TEST(PlotBoxLayout, RandomBoxesNeverOverlapAndStayInTheArea)
{
    std::mt19937 random(5);
    const cBox area{0.0, 0.0, 500.0, 300.0};
    std::uniform_real_distribution<double> x(-50.0, 550.0), y(-20.0, 320.0), w(20.0, 160.0), h(12.0, 40.0);
    size_t shown = 0, total = 0;
    for (int round = 0; round < 300; ++round) {
        std::vector<cItem> items(1 + round % 25);
        for (cItem& item : items) {
            item.anchorX = x(random);
            item.anchorY = y(random);
            const double width = w(random), height = h(random);
            item.wished = {item.anchorX + 6.0, item.anchorY - height / 2, item.anchorX + 6.0 + width,
                           item.anchorY + height / 2};
            item.mayMirror = round % 3 != 0;
        }
        const std::vector<cBox> obstacles{{380.0, 200.0, 495.0, 295.0}};
        layoutNonOverlapping(items, area, obstacles);
        EXPECT_FALSE(checkAnyOverlap(items, obstacles)) << "round " << round;
        for (const cItem& item : items) {
            ++total;
            if (!item.shown)
                continue;
            ++shown;
            EXPECT_TRUE(item.placed.inside(area));
            EXPECT_NEAR(item.placed.width(), item.wished.width(), 1e-9);
        }
    }
    // Crowded rounds drop some, but most boxes find a place.
    EXPECT_GT(shown, total * 8 / 10);

    // Two boxes wished at one place are moved apart, keeping their order from the top.
    std::vector<cItem> two(2);
    two[0].wished = {100, 100, 160, 116};
    two[1].wished = {100, 100, 160, 116};
    two[0].anchorX = two[1].anchorX = 94;
    layoutNonOverlapping(two, area, {});
    ASSERT_TRUE(two[0].shown && two[1].shown);
    EXPECT_FALSE(two[0].placed.intersects(two[1].placed));
    EXPECT_TRUE(two[0].moved != two[1].moved);
    EXPECT_EQ(two[0].placed.x0, 100.0);
}

TEST(PlotBoxLayout, RulerAndAnnotationBoxesOfRandomPlotsNeverOverlap)
{
    std::mt19937 random(21);
    cFixedMetrics metrics;
    const cBox widget{0.0, 0.0, 720.0, 480.0}, canvas{60.0, 40.0, 660.0, 440.0};
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    for (int round = 0; round < 40; ++round) {
        cCapturingLogger capture;
        cCurvePlotDataFile store;
        std::vector<double> x(200);
        for (size_t i = 0; i < x.size(); ++i)
            x[i] = 1e-3 * static_cast<double>(i);
        cTestSection section(store, "tran", x);
        cOverlayTestPlot plot(capture.logger);
        const int curves = 1 + round % 9;
        for (int c = 0; c < curves; ++c) {
            std::vector<double> y(x.size());
            const double phase = 6.0 * unit(random), offset = unit(random) * 0.2;
            for (size_t i = 0; i < x.size(); ++i)
                y[i] = std::sin(phase + 40.0 * x[i]) * 0.1 + offset;  // crowded: curves close together
            ASSERT_TRUE(plot.addToPlot(section.describe(section.addReal("v(n" + std::to_string(c) + ")", y))));
        }
        ASSERT_TRUE(plot.unzoom(false));  // every curve in view
        wxSinglePlotOverlay overlay(plot, capture.logger);
        overlay.settings.rulerStyle = round % 2 ? waveExplorerConfiguration::ruler_values_in_non_overlapping_annotations
                                                : waveExplorerConfiguration::ruler_values_and_names_in_non_overlapping_annotations;
        ASSERT_TRUE(overlay.legend().setType(round % 3 == 0 ? singlePlotWidgetLegend::on_the_right
                                                            : singlePlotWidgetLegend::in_plot_window));
        ASSERT_TRUE(overlay.setCursor(0.199 * unit(random), "M1"));
        ASSERT_TRUE(overlay.setCursor(0.199 * unit(random), "C1"));
        for (int a = 0; a < round % 6; ++a) {
            const double ax = 0.199 * unit(random);
            ASSERT_TRUE(overlay.addCurveAnnotation(a % curves, a % 2 ? "Point" : "Delta", "",
                                                   {ax, 0.1, ax + 0.02, -0.05}));
        }
        if (round % 4 == 0) {
            ASSERT_TRUE(overlay.addTextAnnotation("Corner case\\nsecond line", NAN, NAN));
        }
        overlay.layout(metrics, widget, canvas);
        expectApart(overlay, canvas, "round " + std::to_string(round));
        // Both heads are always shown, and every curve's value under the rulers has a box in a
        // sparse plot.
        size_t heads = 0, values = 0;
        for (const auto& box : overlay.getBoxes()) {
            heads += box.kind == singlePlotOverlay::ruler_head_box && box.item.shown;
            values += box.kind == singlePlotOverlay::ruler_value_box && box.item.shown;
        }
        EXPECT_EQ(heads, 2u) << round;
        if (curves <= 3) {
            EXPECT_EQ(values, static_cast<size_t>(2 * curves)) << round;
        }
    }
}

TEST(PlotLegend, NamesStayShortWhileUniqueAndRowsFitTheirBox)
{
    cCapturingLogger capture;
    cCurvePlotDataFile store;
    cTestSection tran(store, "tran", {0.0, 1.0}), ac(store, "ac", {0.0, 1.0});
    cOverlayTestPlot plot(capture.logger);
    ASSERT_TRUE(plot.addToPlot(tran.describe(tran.addReal("v(out)", {0.0, 1.0}))));
    ASSERT_TRUE(plot.addToPlot(tran.describe(tran.addReal("v(in)", {1.0, 0.0}))));
    ASSERT_TRUE(plot.addToPlot(ac.describe(ac.addReal("v(out)", {0.5, 0.5}))));
    const std::vector<std::string> names = wxSinglePlotWidgetLegend::computeCurveNames(plot.getCurves());
    ASSERT_EQ(names.size(), 3u);
    EXPECT_EQ(names[1], "v(in)");
    EXPECT_NE(names[0], names[2]);
    EXPECT_NE(names[0].find("tran"), std::string::npos);
    EXPECT_NE(names[2].find("ac"), std::string::npos);

    cFixedMetrics metrics;
    EXPECT_EQ(wxSinglePlotWidgetLegend::truncateText(metrics, "abcdefghij", 70.0), "abcdefghij");
    EXPECT_EQ(wxSinglePlotWidgetLegend::truncateText(metrics, "abcdefghij", 69.0), "abcdef...");
    EXPECT_EQ(wxSinglePlotWidgetLegend::truncateText(metrics, "abcdefghij", 22.0), "...");
    EXPECT_EQ(wxSinglePlotWidgetLegend::truncateText(metrics, "abcdefghij", 5.0), "");

    for (int kind = 0; kind < singlePlotWidgetLegend::get_nb_legend_types(); ++kind)
        EXPECT_EQ(singlePlotWidgetLegend::get_legend_type_from_string(singlePlotWidgetLegend::get_legend_type_as_string(kind)),
                  kind);
    EXPECT_EQ(singlePlotWidgetLegend::get_legend_type_as_string(4), "On the Right");
    EXPECT_EQ(singlePlotWidgetLegend::get_legend_type_from_string("in_plot_window"), 2);
    EXPECT_EQ(singlePlotWidgetLegend::get_legend_type_from_string("5"), -1);

    wxSinglePlotWidgetLegend legend;
    EXPECT_FALSE(legend.setType(5));
    legend.update(plot.getCurves());
    const cBox widget{0, 0, 720, 480}, canvas0{60, 40, 660, 440}, canvas{60, 40, 660, 440};
    for (int kind : {2, 3, 4}) {
        ASSERT_TRUE(legend.setType(kind));
        // The widget gives a side legend its band beside the canvas.
        const double band = legend.computeSideWidth(metrics, widget.x1);
        EXPECT_EQ(band > 0.0, kind != 2);
        cBox canvas = canvas0;
        if (kind == 3)
            canvas.x0 += band;
        if (kind == 4)
            canvas.x1 -= band;
        legend.layout(metrics, widget, canvas);
        const cBox& r = legend.getRectangle();
        ASSERT_EQ(legend.getRows().size(), 3u);
        for (size_t i = 0; i < legend.getRows().size(); ++i) {
            EXPECT_TRUE(legend.getRows()[i].box.inside(r));
            if (i) {
                EXPECT_LE(legend.getRows()[i].box.y1, legend.getRows()[i - 1].box.y0);
            }
        }
        if (kind == 2) {
            EXPECT_TRUE(r.inside(canvas));
        } else {
            EXPECT_FALSE(r.intersects(canvas)) << kind;
            EXPECT_TRUE(r.inside(widget)) << kind;
        }
        EXPECT_EQ(legend.legendHitTest(0.5 * (r.x0 + r.x1), legend.getRows()[1].box.y0 + 1.0), 1);
    }
    // Dragged, a small legend goes where it was put.
    ASSERT_TRUE(legend.setType(2));
    legend.layout(metrics, widget, canvas);
    const cBox before = legend.getRectangle();
    legend.moveLegend(-100.0, -30.0);
    legend.layout(metrics, widget, canvas);
    EXPECT_NEAR(legend.getRectangle().x0, before.x0 - 100.0, 1e-9);
    EXPECT_NEAR(legend.getRectangle().y1, before.y1 - 30.0, 1e-9);
    // Kind 1 shows only while the mouse is over it; no legend takes no room.
    ASSERT_TRUE(legend.setType(1));
    EXPECT_FALSE(legend.checkIfLegendIsShown());
    legend.setAutoShown(true);
    EXPECT_TRUE(legend.checkIfLegendIsShown());
    ASSERT_TRUE(legend.setType(0));
    legend.layout(metrics, widget, canvas);
    EXPECT_TRUE(legend.getRows().empty());
    EXPECT_EQ(legend.computeSideWidth(metrics, 720.0), 0.0);
}

TEST(PlotLegend, ManyCurvesScrollAndLongNamesAreCut)
{
    cCapturingLogger capture;
    cCurvePlotDataFile store;
    cTestSection section(store, "s", {0.0, 1.0});
    cOverlayTestPlot plot(capture.logger);
    for (int i = 0; i < 40; ++i)
        ASSERT_TRUE(plot.addToPlot(section.describe(
            section.addReal((i == 3 ? std::string(200, 'w') : "v") + std::to_string(i), {0.0, 1.0 * i}))));
    wxSinglePlotWidgetLegend legend;
    legend.update(plot.getCurves());
    cFixedMetrics metrics;
    const cBox widget{0, 0, 720, 480}, canvas{60, 40, 660, 440};
    legend.layout(metrics, widget, canvas);
    ASSERT_TRUE(legend.checkCanScroll());
    const size_t visible = legend.getRows().size();
    EXPECT_LT(visible, 40u);
    EXPECT_GE(visible, 10u);
    EXPECT_TRUE(legend.getRectangle().inside(canvas));
    EXPECT_LE(legend.getRectangle().width(), canvas.width() * 0.6 + 1.0);
    // The long name ends in dots and fits its row.
    const auto& long3 = legend.getRows()[3];
    EXPECT_EQ(long3.text.substr(long3.text.size() - 3), "...");
    EXPECT_LE(metrics.getTextWidth(long3.text) + legend.geometry.sampleWidth + legend.geometry.sampleGap,
              long3.box.width());
    // Scrolling stops at both ends.
    EXPECT_FALSE(legend.scroll(false));
    size_t steps = 0;
    while (legend.scroll(true))
        ++steps;
    EXPECT_EQ(steps, 40u - visible);
    legend.layout(metrics, widget, canvas);
    EXPECT_EQ(legend.getRows().back().entry, 39u);
    EXPECT_TRUE(legend.scrollToPosition(0));
    // Dragged, it stays where it was put, inside the canvas.
    legend.layout(metrics, widget, canvas);
    const cBox before = legend.getRectangle();
    legend.moveLegend(-200.0, -30.0);
    legend.layout(metrics, widget, canvas);
    EXPECT_NEAR(legend.getRectangle().x0, before.x0 - 200.0, 1e-9);
    EXPECT_TRUE(legend.getRectangle().inside(canvas));  // as tall as the canvas: it can't go down
    legend.moveLegend(-5000.0, 0.0);
    legend.layout(metrics, widget, canvas);
    EXPECT_EQ(legend.getRectangle().x0, canvas.x0);
}
