#include <QImage>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "plot/qt/qtVxAxisDrawing.h"
#include "widgets/qtVxBitmap.h"
#include "widgets/qtVxBufferedDrawContext.h"

namespace {

using namespace vx3;
using qtVxAxisDrawing::cAxisFrame;
using vxDrawContext::cVxPen;

constexpr unsigned background = 0xffffff;
constexpr unsigned axis_colour = 0x000000;
constexpr int width = 640;
constexpr int height = 400;
// Room on the left for the widest label of a deep zoom (a delta with a sign and an exponent).
const cAxisFrame frame{100.0, 50.0, 620.0, 390.0};

struct cDrawnFrame {
    std::vector<QRectF> xLabels;
    std::vector<QRectF> yLabels;
};

// Grids first (fine, coarse, zero), then both axes with their titles, as a plot draws them.
cDrawnFrame drawFrame(qtVxBitmap& bitmap, wxSinglePlotWidgetXAxis& x, wxSinglePlotWidgetYAxis& y)
{
    bitmap.fill(background);
    qtVxBufferedDrawContextInverted context(bitmap);
    x.computeAxesTicks(context, frame.right);
    y.setMaxTextWidth(frame.left - 40.0);
    y.computeAxesTicks(context, frame.top);
    qtVxAxisDrawing::drawGridFine(x, true, context, frame, cVxPen{0xe8e8e8, 1, vxDrawContext::dotted_pen});
    qtVxAxisDrawing::drawGridFine(y, false, context, frame, cVxPen{0xe8e8e8, 1, vxDrawContext::dotted_pen});
    qtVxAxisDrawing::drawGridCoarse(x, true, context, frame, cVxPen{0xb0b0b0, 1, vxDrawContext::solid_pen});
    qtVxAxisDrawing::drawGridCoarse(y, false, context, frame, cVxPen{0xb0b0b0, 1, vxDrawContext::solid_pen});
    qtVxAxisDrawing::drawGridZero(y, false, context, frame, cVxPen{0x4060c0, 1, vxDrawContext::solid_pen});
    context.setPen(cVxPen{axis_colour, 1, vxDrawContext::solid_pen});
    cDrawnFrame drawn;
    drawn.xLabels = qtVxAxisDrawing::draw(x, context, frame, x.checkIsLog() ? "frequency [Hz]" : "time [us]");
    drawn.yLabels = qtVxAxisDrawing::draw(y, context, frame, "voltage [V]");
    return drawn;
}

unsigned rgbAt(const qtVxBitmap& bitmap, double x, double y)
{
    const double ratio = bitmap.getDevicePixelRatio();
    return bitmap.getImage().pixel(int(x * ratio), int(y * ratio)) & 0xffffffu;
}

size_t countLabelled(const wxSinglePlotWidgetAxis& axis)
{
    size_t count = 0;
    for (const auto& tick : axis.getTicks())
        count += tick.text.empty() ? 0 : 1;
    return count;
}

void checkFrame(const qtVxBitmap& bitmap, const wxSinglePlotWidgetXAxis& x, const wxSinglePlotWidgetYAxis& y,
                const cDrawnFrame& drawn)
{
    // Tick marks stand in the columns (rows) the axes computed, just outside the frame; y of the
    // axes runs upwards, so row r from the bottom is image row height - 1 - r.
    int xTicks = 0;
    for (const auto& tick : x.getTicks()) {
        if (tick.position < frame.left || tick.position > frame.right)
            continue;
        ++xTicks;
        EXPECT_EQ(rgbAt(bitmap, tick.position, height - 1 - (frame.bottom - 2)), axis_colour) << tick.position;
        EXPECT_EQ(rgbAt(bitmap, tick.position, height - 1 - (frame.bottom - 7)), background) << tick.position;
    }
    int yTicks = 0;
    for (const auto& tick : y.getTicks()) {
        if (tick.position < frame.bottom || tick.position > frame.top)
            continue;
        ++yTicks;
        EXPECT_EQ(rgbAt(bitmap, frame.left - 2, height - 1 - tick.position), axis_colour) << tick.position;
    }
    EXPECT_GE(xTicks, 5);
    EXPECT_GE(yTicks, 5);

    // Every label the axes computed is drawn, centred on its tick, inside the image, and no two touch.
    EXPECT_EQ(drawn.xLabels.size(), countLabelled(x));
    EXPECT_EQ(drawn.yLabels.size(), countLabelled(y));
    EXPECT_GE(drawn.xLabels.size(), 3u);
    EXPECT_GE(drawn.yLabels.size(), 3u);
    std::vector<QRectF> all = drawn.xLabels;
    all.insert(all.end(), drawn.yLabels.begin(), drawn.yLabels.end());
    for (size_t i = 0; i < all.size(); ++i) {
        EXPECT_GE(all[i].left(), 0.0);
        EXPECT_GE(all[i].top(), 0.0);
        EXPECT_LE(all[i].right(), width);
        EXPECT_LE(all[i].bottom(), height);
        EXPECT_GT(all[i].width(), 0.0);
        for (size_t j = i + 1; j < all.size(); ++j)
            EXPECT_FALSE(all[i].intersects(all[j])) << i << " " << j;
    }
    size_t label = 0;
    for (const auto& tick : x.getTicks())
        if (!tick.text.empty() && label < drawn.xLabels.size()) {
            EXPECT_NEAR(drawn.xLabels[label++].center().x(), tick.position, 0.5);
        }
    label = 0;
    for (const auto& tick : y.getTicks())
        if (!tick.text.empty() && label < drawn.yLabels.size()) {
            EXPECT_NEAR(drawn.yLabels[label].center().y(), tick.position, 1.0);
            EXPECT_LE(drawn.yLabels[label++].right(), frame.left);
        }
    // Some label pixels are ink: the texts were really drawn.
    const QRectF first = drawn.xLabels.front();
    int ink = 0;
    for (double px = first.left(); px < first.right(); px += 1.0)
        for (double py = first.top(); py < first.bottom(); py += 1.0)
            ink += rgbAt(bitmap, px, height - py - 0.5) != background ? 1 : 0;
    EXPECT_GT(ink, 3);
}

TEST(qtVxAxisDrawing, LinearFrameAtOneAndTwoDevicePixelsPerPixel)
{
    for (double ratio : {1.0, 2.0}) {
        SCOPED_TRACE(ratio);
        qtVxBitmap bitmap(width, height, ratio);
        wxSinglePlotWidgetXAxis x;
        wxSinglePlotWidgetYAxis y;
        ASSERT_TRUE(x.setView(0.0, 2.5e-6, frame.left, frame.right));
        x.setLabelScaleFactor(1e-6, "u");
        ASSERT_TRUE(y.setView(-1.25, 3.5, frame.bottom, frame.top));
        const cDrawnFrame drawn = drawFrame(bitmap, x, y);
        checkFrame(bitmap, x, y, drawn);
        if (ratio == 1.0) {
            QTemporaryDir folder;
            ASSERT_TRUE(folder.isValid());
            const QString path = folder.filePath("axes.png");
            ASSERT_TRUE(bitmap.getImage().save(path));
            EXPECT_EQ(QImage(path).size(), QSize(width, height));
            // For looking at by hand: ZW_AXES_PNG=/tmp/zw-axes.png keeps a copy.
            if (const char* keep = std::getenv("ZW_AXES_PNG"))
                bitmap.getImage().save(QString::fromLocal8Bit(keep));
        }
    }
}

TEST(qtVxAxisDrawing, LogFrameAndDeepZoom)
{
    for (double ratio : {1.0, 2.0}) {
        SCOPED_TRACE(ratio);
        qtVxBitmap bitmap(width, height, ratio);
        wxSinglePlotWidgetXAxis x;
        x.setLog(true);
        ASSERT_TRUE(x.setView(1e-2, 1e5, frame.left, frame.right));
        wxSinglePlotWidgetYAxis y;
        // A view 1e-12 wide around 1000: one full label and offsets from it.
        ASSERT_TRUE(y.setView(1000.0 - 5e-13, 1000.0 + 5e-13, frame.bottom, frame.top));
        const cDrawnFrame drawn = drawFrame(bitmap, x, y);
        checkFrame(bitmap, x, y, drawn);
        if (ratio == 2.0 && std::getenv("ZW_AXES_LOG_PNG"))
            bitmap.getImage().save(QString::fromLocal8Bit(std::getenv("ZW_AXES_LOG_PNG")));
    }
}

TEST(qtVxAxisDrawing, LeftMarginFitsTheWidestYLabel)
{
    // At deep zoom the labels are deltas with signs and exponents, far wider than plain numbers;
    // a margin from the drawn labels keeps every one of them, a fixed narrow one cuts some off.
    struct cCase {
        double min, max;
    };
    for (const cCase& view : {cCase{1000.0 - 5e-13, 1000.0 + 5e-13}, cCase{-1.25, 3.5}, cCase{-7.5e-9, 2.5e-8}}) {
        SCOPED_TRACE(view.min);
        qtVxBitmap bitmap(width, height);
        qtVxBufferedDrawContextInverted context(bitmap);
        wxSinglePlotWidgetYAxis y;
        y.setMaxTextWidth(width / 3.0);
        ASSERT_TRUE(y.setView(view.min, view.max, frame.bottom, frame.top));
        y.computeAxesTicks(context, frame.top);
        const std::string title = "voltage [V]";
        const double margin = qtVxAxisDrawing::computeLeftMargin(y, context, title);
        double widest = 0.0;
        for (const auto& tick : y.getTicks())
            widest = std::max(widest, tick.text.empty() ? 0.0 : context.getTextWidth(tick.text));
        EXPECT_GT(margin, widest + qtVxAxisDrawing::labelled_tick_length);
        EXPECT_LT(margin, widest + 60.0);

        cAxisFrame fitted = frame;
        fitted.left = margin;
        context.setPen(cVxPen{axis_colour, 1, vxDrawContext::solid_pen});
        const auto drawn = qtVxAxisDrawing::draw(y, context, fitted, title);
        EXPECT_EQ(drawn.size(), countLabelled(y));
        for (const QRectF& box : drawn)
            EXPECT_GE(box.left(), 0.0);
        // The title was drawn too: ink left of the widest label, in the middle of the height.
        int ink = 0;
        const QImage& image = bitmap.getImage();
        for (int x = 0; x < int(margin - widest - qtVxAxisDrawing::labelled_tick_length - 2.0); ++x)
            for (int row = height / 2 - 20; row < height / 2 + 20; ++row)
                ink += (image.pixel(x, row) & 0xffffffu) != 0xffffffu ? 1 : 0;
        EXPECT_GT(ink, 5);
        if (view.min > 999.0) {
            EXPECT_GT(widest, 40.0);  // really the wide case
            // A margin sized for short numbers loses labels.
            bitmap.fill(background);
            cAxisFrame narrow = frame;
            narrow.left = 40.0;
            EXPECT_LT(qtVxAxisDrawing::draw(y, context, narrow).size(), countLabelled(y));
        }
    }
}

}  // namespace
