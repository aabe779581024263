// Drawing on a qtVxBitmap with the few primitives the plots use. Coordinates are
// device-independent pixels. Pens are lazy: setPen only notes the wish, and a Qt pen is made at the
// next drawing call when it differs from the one in use, since the drawers set a pen per segment
// far more often than it changes. The inverted form flips y once, here, so that callers draw with
// y running upwards as the axes compute it.
#pragma once

#include <QFont>
#include <QPainter>
#include <QPointF>
#include <QRectF>
#include <string>
#include <vector>

#include "plot/wxAxisTextMetricsVirtual.h"
#include "plot/wxCurveStyle.h"
#include "widgets/qtVxBitmap.h"

namespace vx3 {

class qtVxBufferedDrawContext : public wxAxisTextMetricsVirtual {
public:
    // Where a text's box sits relative to its anchor, as the text reads.
    enum text_anchor : int {
        anchor_top_centre = 0,     // labels under an X tick
        anchor_centre_right = 1,   // labels left of a Y tick
        anchor_centre = 2,
        anchor_top_left = 3,
        anchor_bottom_centre = 4,
    };

    // Paints on the bitmap from construction to destruction; the bitmap must outlive the context.
    explicit qtVxBufferedDrawContext(qtVxBitmap& bitmap);
    ~qtVxBufferedDrawContext() override;
    qtVxBufferedDrawContext(const qtVxBufferedDrawContext&) = delete;
    qtVxBufferedDrawContext& operator=(const qtVxBufferedDrawContext&) = delete;

    int getWidth() const { return mWidth; }
    int getHeight() const { return mHeight; }

    void setPen(const vxDrawContext::cVxPen& pen) { mWantedPen = pen; }
    const vxDrawContext::cVxPen& getPen() const { return mWantedPen; }
    // Qt pens made so far: one per change of pen that was drawn with.
    int getPenCreations() const { return mPenCreations; }
    void setFont(const QFont& font);
    const QFont& getFont() const { return mFont; }

    void drawPoint(double x, double y);
    void drawLine(double x1, double y1, double x2, double y2);
    void drawPolyline(const std::vector<QPointF>& points);
    // One column of a reduced curve: the pixels y1 to y2 inclusive at column x. Integer
    // coordinates name pixels: a point at (x, y) fills that pixel.
    void drawVerticalStroke(double x, double y1, double y2);
    // Outline through the four corners.
    void drawRectangle(double x1, double y1, double x2, double y2);
    // Filling of the closed shapes below (symbols): a colour (0xrrggbb), or none.
    void setBrush(unsigned colour);
    void setTransparentBrush();
    // A circle of radius pixels around the pixel (x, y): outlined by the pen, filled by the brush.
    void drawEllipse(double x, double y, double radius);
    // A closed polygon through the pixels (xs[i], ys[i]), outlined and filled likewise.
    void drawPolygon(const double* xs, const double* ys, int count);
    // Fills the pixels [x1, x2) x [y1, y2) with colour (0xrrggbb), whatever the pen.
    void fillRectangle(double x1, double y1, double x2, double y2, unsigned colour);
    // Draws text in the pen's colour, turned angle degrees counter-clockwise about the anchor.
    // Returns the box the text covers, in the caller's coordinates.
    QRectF drawText(const std::string& text, double x, double y, int anchor, double angle = 0.0);
    // The box drawText would cover, without drawing.
    QRectF measureText(const std::string& text, double x, double y, int anchor, double angle = 0.0) const;

    // Limits drawing to [x1, x2) x [y1, y2); resetClip lifts it.
    void setClipRectangle(double x1, double y1, double x2, double y2);
    void resetClip();

    double getTextWidth(const std::string& text) const override;
    double getTextHeight(const std::string& text) const override;

protected:
    // A pixel's row on the bitmap from the caller's y.
    virtual double mapPixelY(double y) const { return y; }
    // An edge between rows (areas, text anchors) from the caller's y.
    virtual double mapEdgeY(double y) const { return y; }

private:
    void applyPen();
    QRectF textBox(const std::string& text, double x, double y, int anchor, double angle, QTransform& transform) const;

    QPainter mPainter;
    int mWidth = 0;
    int mHeight = 0;
    QFont mFont;
    vxDrawContext::cVxPen mWantedPen;
    vxDrawContext::cVxPen mAppliedPen;
    bool mPenApplied = false;
    int mPenCreations = 0;
    std::vector<QPointF> mScratch;
    int mBrushColour = -1;  // -1: no filling
};

class qtVxBufferedDrawContextInverted : public qtVxBufferedDrawContext {
public:
    using qtVxBufferedDrawContext::qtVxBufferedDrawContext;

protected:
    // Row y counted from the bottom is row height - 1 - y from the top; an edge y is height - y.
    double mapPixelY(double y) const override { return getHeight() - 1 - y; }
    double mapEdgeY(double y) const override { return getHeight() - y; }
};

}  // namespace vx3
