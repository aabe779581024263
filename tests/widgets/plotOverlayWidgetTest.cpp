// Legend, rulers and annotations painted offscreen over a real plot: they appear where the
// layout put them, a ruler move repaints without drawing any curve again, and the picture is kept
// for a look by hand (ZW_PLOT_PNG_DIR).
#include <QImage>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "../base/testSupport.h"
#include "../plot/singlePlotTestSupport.h"
#include "base/cVxThread.h"
#include "plot/qt/wxSinglePlotWidgetImpl.h"

using namespace vx3;
using namespace zwplot;

namespace {

constexpr int kWidth = 900;
constexpr int kHeight = 540;
constexpr unsigned kMarker = 0x1f6fd0;
constexpr unsigned kCursor = 0xd03a1f;

size_t countColourIn(const QImage& image, unsigned colour, int x0, int y0, int x1, int y1)
{
    size_t count = 0;
    for (int y = std::max(0, y0); y < std::min(image.height(), y1); ++y)
        for (int x = std::max(0, x0); x < std::min(image.width(), x1); ++x)
            count += (image.pixel(x, y) & 0xffffffu) == colour ? 1 : 0;
    return count;
}

// Widget rows count from the top; the overlay's y runs upwards.
int row(double y) { return kHeight - 1 - static_cast<int>(std::lround(y)); }

struct cScene {
    cScene()
    {
        std::vector<double> x = ramp(3000, 0.0, 1e-6), a(3000), b(3000), c(3000);
        for (size_t i = 0; i < x.size(); ++i) {
            a[i] = std::exp(-x[i] / 1.2e-3) * std::sin(2.0 * M_PI * x[i] / 4e-4);
            b[i] = 0.6 * std::cos(2.0 * M_PI * x[i] / 1.5e-3);
            c[i] = 0.8 * std::tanh((x[i] - 1.5e-3) / 2e-4);
        }
        curves = {tran.addReal("v(out)", a), tran.addReal("v(in)", b), tran.addReal("v(ctrl_signal_long_name)", c)};
    }
    wxCurveDescription describe(size_t i) const
    {
        static const unsigned colours[] = {0xc02020, 0x208040, 0x7a3db8};
        wxCurveDescription description = tran.describe(curves[i]);
        description.style().realColour = colours[i];
        description.style().realLineWidth = 2;
        return description;
    }
    cCurvePlotDataFile store;
    cTestSection tran{store, "tran", ramp(3000, 0.0, 1e-6)};
    std::vector<uint64_t> curves;
};

}  // namespace

TEST(PlotOverlayWidget, LegendRulersAndAnnotationsArePaintedWithoutRedrawingCurves)
{
    cScene scene;
    cCapturingLogger logger;
    cVxMutex dataMutex;
    wxSinglePlotWidgetImpl plot(nullptr, dataMutex, logger.logger);
    for (size_t i = 0; i < 3; ++i)
        ASSERT_TRUE(plot.addToPlot(scene.describe(i)));
    ASSERT_TRUE(plot.unzoom(false));
    plot.setAxisTitles("time (s)", "voltage (V)");
    wxSinglePlotOverlay& overlay = plot.overlay();
    ASSERT_TRUE(plot.paint(kWidth, kHeight));
    ASSERT_TRUE(overlay.setCursor(0.6e-3, "M1"));
    ASSERT_TRUE(overlay.setCursor(1.9e-3, "C1"));
    ASSERT_TRUE(overlay.addTextAnnotation("Step response\\nload 10 kOhm", 0.05e-3, 0.95));
    ASSERT_TRUE(overlay.addCurveAnnotation(0, "Point", "peak <XY Value>", {0.1e-3, std::sin(M_PI / 2) * std::exp(-0.1 / 1.2)}));
    ASSERT_TRUE(overlay.addCurveAnnotation(1, "Delta X", "period <Delta X Value>", {0.0, 0.6, 1.5e-3, 0.6}));
    ASSERT_TRUE(overlay.addCurveAnnotation(2, "Tangent Line", "", {1.5e-3, 0.0}));
    ASSERT_TRUE(overlay.addCurveAnnotation(2, "Spline Interpolation", "fit", {2.2e-3, 0.7, 2.5e-3, 0.3, 2.8e-3, 0.5}));
    const uint64_t curveDraws = plot.getCurveDrawCount();
    ASSERT_TRUE(plot.paint(kWidth, kHeight));
    EXPECT_EQ(plot.getCurveDrawCount(), curveDraws) << "rulers and annotations must not redraw curves";
    const QImage& picture = plot.getPicture();

    // The ruler lines run dashed down their column, in their colours.
    const plotBoxLayout::cBox& canvas = overlay.getCanvas();
    for (const wxSinglePlotWidgetRuler* ruler : {&overlay.marker(), &overlay.cursor()}) {
        const int x = static_cast<int>(std::lround(ruler->getPixelX()));
        const unsigned colour = ruler == &overlay.marker() ? kMarker : kCursor;
        EXPECT_GT(countColourIn(picture, colour, x, row(canvas.y1), x + 1, row(canvas.y0)), 60u) << ruler->getName();
    }
    // Every box was shown and drawn: its frame's colour is on its edge, and none covers another.
    size_t boxes = 0;
    for (const auto& box : overlay.getBoxes()) {
        EXPECT_TRUE(box.item.shown) << box.lines[0];
        if (!box.item.shown || box.kind == singlePlotOverlay::text_annotation_box)
            continue;
        ++boxes;
        const plotBoxLayout::cBox& b = box.item.placed;
        EXPECT_GT(countColourIn(picture, box.colour, static_cast<int>(b.x0), row(b.y1 - 1), static_cast<int>(b.x1),
                                row(b.y1 - 1) + 1),
                  static_cast<size_t>(b.width() / 2))
            << box.lines[0];
    }
    EXPECT_EQ(boxes, 2u + 6u + 4u);  // two heads, three values per ruler, four annotation boxes
    // The legend lists the three curves with their pens.
    const plotBoxLayout::cBox& legend = overlay.legend().getRectangle();
    ASSERT_EQ(overlay.legend().getRows().size(), 3u);
    for (size_t i = 0; i < 3; ++i)
        EXPECT_GT(countColourIn(picture, scene.describe(i).style().realColour, static_cast<int>(legend.x0),
                                row(legend.y1), static_cast<int>(legend.x1), row(legend.y0) + 1),
                  20u);

    // Moving the cursor repaints the picture, still without drawing a curve.
    ASSERT_TRUE(overlay.setCursor(2.4e-3, "C1"));
    ASSERT_TRUE(plot.paint(kWidth, kHeight));
    EXPECT_EQ(plot.getCurveDrawCount(), curveDraws);

    zwtest::cTempDir folder("zw_overlay_png_");
    const std::string file = folder.file("overlay.png");
    ASSERT_TRUE(plot.getPicture().save(QString::fromStdString(file)));
    EXPECT_TRUE(QImage(QString::fromStdString(file)).size() == plot.getPicture().size());
    if (const char* keep = std::getenv("ZW_PLOT_PNG_DIR"))
        plot.getPicture().save(QString::fromStdString(std::string(keep) + "/overlay.png"));
}

TEST(PlotOverlayWidget, SideLegendsNarrowTheCanvas)
{
    cScene scene;
    cCapturingLogger logger;
    cVxMutex dataMutex;
    wxSinglePlotWidgetImpl plot(nullptr, dataMutex, logger.logger);
    ASSERT_TRUE(plot.addToPlot(scene.describe(0)));
    ASSERT_TRUE(plot.addToPlot(scene.describe(2)));
    ASSERT_TRUE(plot.paint(kWidth, kHeight));
    const double inside = plot.getCanvasLayout().xHigh - plot.getCanvasLayout().xLow;
    for (int kind : {singlePlotWidgetLegend::on_the_right, singlePlotWidgetLegend::on_the_left}) {
        ASSERT_TRUE(plot.overlay().legend().setType(kind));
        plot.plotWidgetRedrawAll();
        ASSERT_TRUE(plot.paint(kWidth, kHeight));
        const plotWidgetCommon::cCanvasLayout& layout = plot.getCanvasLayout();
        const plotBoxLayout::cBox& legend = plot.overlay().legend().getRectangle();
        EXPECT_LT(layout.xHigh - layout.xLow, inside - 50.0) << kind;
        if (kind == singlePlotWidgetLegend::on_the_right)
            EXPECT_GT(legend.x0, layout.xHigh);
        else
            EXPECT_LT(legend.x1, layout.xLow);
        EXPECT_GE(legend.x0, 0.0);
        EXPECT_LE(legend.x1, kWidth);
        if (std::getenv("ZW_PLOT_PNG_DIR"))
            plot.getPicture().save(QString::fromStdString(std::string(std::getenv("ZW_PLOT_PNG_DIR")) + "/legend_" +
                                                          std::to_string(kind) + ".png"));
    }
}
