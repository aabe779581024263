#include "widgets/qtVxBufferedDrawContext.h"

#include <QFontMetricsF>
#include <QPen>
#include <QTransform>
#include <algorithm>
#include <cmath>

namespace vx3 {

namespace {

QColor toColour(unsigned colour)
{
    return QColor::fromRgb(colour | 0xff000000u);
}

Qt::PenStyle toPenStyle(int kind)
{
    switch (kind) {
    case vxDrawContext::dash_pen: return Qt::DashLine;
    case vxDrawContext::short_dash_pen: return Qt::DashDotLine;
    case vxDrawContext::dotted_pen: return Qt::DotLine;
    default: return Qt::SolidLine;
    }
}

}  // namespace

qtVxBufferedDrawContext::qtVxBufferedDrawContext(qtVxBitmap& bitmap)
    : mWidth(bitmap.getWidth()), mHeight(bitmap.getHeight())
{
    if (!bitmap.checkIsNull() && mWidth > 0 && mHeight > 0)
        mPainter.begin(&bitmap.getImage());
    // Curves and grids are drawn aliased: one-pixel lines stay one pixel and fast.
    if (mPainter.isActive())
        mPainter.setRenderHint(QPainter::TextAntialiasing, true);
    mFont = mPainter.isActive() ? mPainter.font() : QFont();
}

qtVxBufferedDrawContext::~qtVxBufferedDrawContext()
{
    if (mPainter.isActive())
        mPainter.end();
}

void qtVxBufferedDrawContext::setFont(const QFont& font)
{
    mFont = font;
    if (mPainter.isActive())
        mPainter.setFont(font);
}

void qtVxBufferedDrawContext::applyPen()
{
    if (mPenApplied && mAppliedPen == mWantedPen)
        return;
    QPen pen(toColour(mWantedPen.colour));
    pen.setWidth(std::max(mWantedPen.width, 1));
    pen.setStyle(toPenStyle(mWantedPen.kind));
    pen.setCapStyle(Qt::FlatCap);
    if (mPainter.isActive())
        mPainter.setPen(pen);
    mAppliedPen = mWantedPen;
    mPenApplied = true;
    ++mPenCreations;
}

void qtVxBufferedDrawContext::drawPoint(double x, double y)
{
    if (!mPainter.isActive())
        return;
    // Filled, so that the point is exactly its pixel at any device pixel ratio.
    const double size = std::max(mWantedPen.width, 1);
    const double low = y - std::floor((size - 1) / 2);
    const double top = std::min(mapEdgeY(low), mapEdgeY(low + size));
    mPainter.fillRect(QRectF(x - std::floor((size - 1) / 2), top, size, size), toColour(mWantedPen.colour));
}

void qtVxBufferedDrawContext::drawLine(double x1, double y1, double x2, double y2)
{
    if (!mPainter.isActive())
        return;
    applyPen();
    mPainter.drawLine(QLineF(x1 + 0.5, mapPixelY(y1) + 0.5, x2 + 0.5, mapPixelY(y2) + 0.5));
}

void qtVxBufferedDrawContext::drawPolyline(const std::vector<QPointF>& points)
{
    if (!mPainter.isActive() || points.empty())
        return;
    applyPen();
    mScratch.resize(points.size());
    for (size_t i = 0; i < points.size(); ++i)
        mScratch[i] = QPointF(points[i].x() + 0.5, mapPixelY(points[i].y()) + 0.5);
    mPainter.drawPolyline(mScratch.data(), int(mScratch.size()));
}

void qtVxBufferedDrawContext::drawVerticalStroke(double x, double y1, double y2)
{
    if (mWantedPen.kind != vxDrawContext::solid_pen) {
        drawLine(x, y1, x, y2);
        return;
    }
    // Solid strokes are filled: exactly the pixels y1..y2, at any device pixel ratio, and cheaper
    // than a line for the one-stroke-per-column drawers.
    if (!mPainter.isActive())
        return;
    const double low = std::min(y1, y2), high = std::max(y1, y2);
    const double top = std::min(mapEdgeY(low), mapEdgeY(high + 1.0));
    const double penWidth = std::max(mWantedPen.width, 1);
    const double left = x - std::floor((penWidth - 1) / 2);
    mPainter.fillRect(QRectF(left, top, penWidth, high - low + 1.0), toColour(mWantedPen.colour));
}

void qtVxBufferedDrawContext::drawRectangle(double x1, double y1, double x2, double y2)
{
    drawPolyline({QPointF(x1, y1), QPointF(x2, y1), QPointF(x2, y2), QPointF(x1, y2), QPointF(x1, y1)});
}

void qtVxBufferedDrawContext::setBrush(unsigned colour)
{
    mBrushColour = int(colour & 0xffffffu);
    if (mPainter.isActive())
        mPainter.setBrush(toColour(colour));
}

void qtVxBufferedDrawContext::setTransparentBrush()
{
    mBrushColour = -1;
    if (mPainter.isActive())
        mPainter.setBrush(Qt::NoBrush);
}

void qtVxBufferedDrawContext::drawEllipse(double x, double y, double radius)
{
    if (!mPainter.isActive())
        return;
    applyPen();
    mPainter.drawEllipse(QPointF(x + 0.5, mapPixelY(y) + 0.5), radius, radius);
}

void qtVxBufferedDrawContext::drawPolygon(const double* xs, const double* ys, int count)
{
    if (!mPainter.isActive() || count < 2)
        return;
    applyPen();
    mScratch.resize(size_t(count));
    for (int i = 0; i < count; ++i)
        mScratch[size_t(i)] = QPointF(xs[i] + 0.5, mapPixelY(ys[i]) + 0.5);
    mPainter.drawPolygon(mScratch.data(), count);
}

void qtVxBufferedDrawContext::fillRectangle(double x1, double y1, double x2, double y2, unsigned colour)
{
    if (!mPainter.isActive())
        return;
    const double top = std::min(mapEdgeY(y1), mapEdgeY(y2));
    const double bottom = std::max(mapEdgeY(y1), mapEdgeY(y2));
    mPainter.fillRect(QRectF(std::min(x1, x2), top, std::abs(x2 - x1), bottom - top), toColour(colour));
}

QRectF qtVxBufferedDrawContext::textBox(const std::string& text, double x, double y, int anchor, double angle,
                                        QTransform& transform) const
{
    const double width = getTextWidth(text);
    const double height = getTextHeight(text);
    double left = 0.0, top = 0.0;
    switch (anchor) {
    case anchor_top_centre: left = -width / 2; top = 0.0; break;
    case anchor_centre_right: left = -width; top = -height / 2; break;
    case anchor_centre: left = -width / 2; top = -height / 2; break;
    case anchor_bottom_centre: left = -width / 2; top = -height; break;
    default: break;
    }
    transform = QTransform();
    transform.translate(x, mapEdgeY(y));
    transform.rotate(-angle);
    return QRectF(left, top, width, height);
}

QRectF qtVxBufferedDrawContext::measureText(const std::string& text, double x, double y, int anchor,
                                            double angle) const
{
    QTransform transform;
    const QRectF box = transform.mapRect(textBox(text, x, y, anchor, angle, transform));
    const double y1 = mapEdgeY(box.top()), y2 = mapEdgeY(box.bottom());
    return QRectF(box.left(), std::min(y1, y2), box.width(), std::abs(y2 - y1));
}

QRectF qtVxBufferedDrawContext::drawText(const std::string& text, double x, double y, int anchor, double angle)
{
    QTransform transform;
    const QRectF box = textBox(text, x, y, anchor, angle, transform);
    if (mPainter.isActive() && !text.empty()) {
        mPainter.save();
        mPainter.setPen(toColour(mWantedPen.colour));
        mPainter.setTransform(transform, true);
        mPainter.drawText(box, Qt::AlignCenter | Qt::TextSingleLine, QString::fromStdString(text));
        mPainter.restore();
    }
    const QRectF screen = transform.mapRect(box);
    const double y1 = mapEdgeY(screen.top()), y2 = mapEdgeY(screen.bottom());
    return QRectF(screen.left(), std::min(y1, y2), screen.width(), std::abs(y2 - y1));
}

void qtVxBufferedDrawContext::setClipRectangle(double x1, double y1, double x2, double y2)
{
    if (!mPainter.isActive())
        return;
    const double top = std::min(mapEdgeY(y1), mapEdgeY(y2));
    const double bottom = std::max(mapEdgeY(y1), mapEdgeY(y2));
    mPainter.setClipRect(QRectF(std::min(x1, x2), top, std::abs(x2 - x1), bottom - top));
}

void qtVxBufferedDrawContext::resetClip()
{
    if (mPainter.isActive())
        mPainter.setClipping(false);
}

double qtVxBufferedDrawContext::getTextWidth(const std::string& text) const
{
    const QFontMetricsF metrics(mFont, mPainter.isActive() ? mPainter.device() : nullptr);
    return metrics.horizontalAdvance(QString::fromStdString(text));
}

double qtVxBufferedDrawContext::getTextHeight(const std::string& text) const
{
    const QFontMetricsF metrics(mFont, mPainter.isActive() ? mPainter.device() : nullptr);
    return metrics.height();
}

}  // namespace vx3
