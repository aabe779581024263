#include <QColor>
#include <gtest/gtest.h>

#include "widgets/qtVxBitmap.h"
#include "widgets/qtVxBufferedDrawContext.h"

namespace {

using vx3::qtVxBitmap;
using vx3::qtVxBufferedDrawContext;
using vx3::qtVxBufferedDrawContextInverted;
using vx3::vxDrawContext::cVxPen;

constexpr unsigned white = 0xffffff;
constexpr unsigned red = 0xff0000;

unsigned rgbAt(const qtVxBitmap& bitmap, int x, int y)
{
    return bitmap.getImage().pixel(x, y) & 0xffffffu;
}

TEST(qtVxBufferedDrawContext, InvertedContextFlipsYOnce)
{
    for (double ratio : {1.0, 2.0}) {
        SCOPED_TRACE(ratio);
        qtVxBitmap bitmap(640, 400, ratio);
        ASSERT_EQ(bitmap.getImage().width(), int(640 * ratio));
        ASSERT_EQ(bitmap.getImage().height(), int(400 * ratio));
        bitmap.fill(white);
        {
            qtVxBufferedDrawContextInverted context(bitmap);
            EXPECT_EQ(context.getHeight(), 400);
            context.setPen(cVxPen{red, 1, vx3::vxDrawContext::solid_pen});
            context.drawPoint(10, 10);
            // Filled rows [0, 3) from the bottom: the three lowest rows of the image.
            context.fillRectangle(100, 0, 110, 3, 0x0000ff);
        }
        const int r = int(ratio);
        const int row = int((400 - 1 - 10) * ratio);
        EXPECT_EQ(rgbAt(bitmap, 10 * r, row), red);
        EXPECT_EQ(rgbAt(bitmap, 10 * r + r - 1, row + r - 1), red);
        EXPECT_EQ(rgbAt(bitmap, 10 * r, 10 * r), white);  // not where an unflipped point would be
        EXPECT_EQ(rgbAt(bitmap, 10 * r, row + r), white);
        EXPECT_EQ(rgbAt(bitmap, 10 * r, row - 1), white);
        EXPECT_EQ(rgbAt(bitmap, 105 * r, 400 * r - 1), 0x0000ffu);
        EXPECT_EQ(rgbAt(bitmap, 105 * r, 397 * r), 0x0000ffu);
        EXPECT_EQ(rgbAt(bitmap, 105 * r, 397 * r - 1), white);
    }

    qtVxBitmap plain(50, 40);
    plain.fill(white);
    {
        qtVxBufferedDrawContext context(plain);
        context.setPen(cVxPen{red, 1, vx3::vxDrawContext::solid_pen});
        context.drawPoint(10, 10);
    }
    EXPECT_EQ(rgbAt(plain, 10, 10), red);
    EXPECT_EQ(rgbAt(plain, 10, 29), white);
}

TEST(qtVxBufferedDrawContext, PensAreMadeOnlyWhenTheyChange)
{
    qtVxBitmap bitmap(100, 100);
    bitmap.fill(white);
    qtVxBufferedDrawContextInverted context(bitmap);
    const cVxPen a{red, 1, vx3::vxDrawContext::solid_pen};
    const cVxPen b{0x00ff00, 2, vx3::vxDrawContext::dash_pen};
    context.setPen(a);
    context.setPen(b);  // never drawn with: no pen made
    context.setPen(a);
    EXPECT_EQ(context.getPenCreations(), 0);
    for (int x = 0; x < 50; ++x) {
        context.setPen(a);
        context.drawLine(x, 0, x, 20);
    }
    EXPECT_EQ(context.getPenCreations(), 1);
    context.setPen(b);
    context.drawLine(0, 50, 99, 50);
    context.setPen(b);
    context.drawPolyline({QPointF(0, 60), QPointF(50, 70), QPointF(99, 60)});
    EXPECT_EQ(context.getPenCreations(), 2);
    context.setPen(a);
    context.drawRectangle(1, 1, 10, 10);
    EXPECT_EQ(context.getPenCreations(), 3);
}

TEST(qtVxBufferedDrawContext, ClipsStrokesAndTurnsText)
{
    qtVxBitmap bitmap(100, 100);
    bitmap.fill(white);
    {
        qtVxBufferedDrawContextInverted context(bitmap);
        context.setPen(cVxPen{red, 1, vx3::vxDrawContext::solid_pen});
        context.setClipRectangle(20, 0, 40, 100);
        context.drawLine(0, 30, 99, 30);
        context.resetClip();
        context.drawVerticalStroke(80, 0, 99);

        const QRectF flat = context.measureText("Voltage", 50, 50, qtVxBufferedDrawContext::anchor_centre);
        const QRectF upright = context.measureText("Voltage", 50, 50, qtVxBufferedDrawContext::anchor_centre, 90.0);
        EXPECT_GT(flat.width(), flat.height());
        EXPECT_NEAR(upright.width(), flat.height(), 1e-6);
        EXPECT_NEAR(upright.height(), flat.width(), 1e-6);
        EXPECT_NEAR(upright.center().x(), 50.0, 1e-6);
        EXPECT_NEAR(upright.center().y(), 50.0, 1e-6);
        EXPECT_NEAR(context.getTextWidth("Voltage"), flat.width(), 1e-6);
    }
    const int row = 100 - 1 - 30;
    EXPECT_EQ(rgbAt(bitmap, 19, row), white);
    EXPECT_EQ(rgbAt(bitmap, 20, row), red);
    EXPECT_EQ(rgbAt(bitmap, 39, row), red);
    EXPECT_EQ(rgbAt(bitmap, 40, row), white);
    for (int y = 0; y < 100; ++y)
        ASSERT_EQ(rgbAt(bitmap, 80, y), red) << y;
}

}  // namespace
