#include "plot/qt/wxPlotBuffer.h"

#include <QPainter>
#include <cstdlib>

namespace vx3 {

using namespace plotBuffer;

const char* plotBuffer::getBufferSatus(int status)
{
    switch (status) {
    case status_none: return "none";
    case status_bg: return "bg";
    case status_add_curve: return "add curve";
    case status_drawing: return "drawing";
    case status_only_axes: return "only axes";
    case status_complete: return "complete";
    case status_anti_aliasing: return "anti-aliasing";
    default: return "unknown";
    }
}

bool wxPlotBuffer::resizeBuffer(int width, int height, double devicePixelRatio)
{
    if (mBitmap.getWidth() == width && mBitmap.getHeight() == height && !mBitmap.checkIsNull() &&
        mBitmap.getDevicePixelRatio() == devicePixelRatio)
        return false;
    mBitmap.resize(width, height, devicePixelRatio);
    setFullRedrawRequired();
    return true;
}

void wxPlotBuffer::setFullRedrawRequired()
{
    mStatus = status_none;
    mCompleteStatus = status_none;
    mCurvesPainted = 0;
    mScrollX = mScrollY = 0;
}

void wxPlotBuffer::setAddedCurve()
{
    if (mStatus == status_complete)
        mStatus = status_add_curve;
    mCompleteStatus = status_none;
}

void wxPlotBuffer::setDrawingComplete()
{
    mStatus = status_complete;
    mScrollX = mScrollY = 0;
}

bool wxPlotBuffer::scrollX(int dx) { return shift(dx, 0); }
bool wxPlotBuffer::scrollY(int dy) { return shift(0, dy); }

bool wxPlotBuffer::shift(int dx, int dy)
{
    if (dx == 0 && dy == 0)
        return true;
    if (mStatus != status_complete || mBitmap.checkIsNull() || std::abs(dx) >= mBitmap.getWidth() ||
        std::abs(dy) >= mBitmap.getHeight()) {
        setFullRedrawRequired();
        return false;
    }
    // Copy, clear, draw the copy shifted: the uncovered strip is left in the background colour.
    const QImage copy = mBitmap.getImage().copy();
    mBitmap.fill(mBackground);
    {
        QPainter painter(&mBitmap.getImage());
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(QPointF(dx, -dy), copy);  // the image's rows run downwards
    }
    mScrollX = dx;
    mScrollY = dy;
    mStatus = status_add_curve;
    mCompleteStatus = status_none;
    mCurvesPainted = 0;
    return true;
}

void wxPlotBuffer::adjustForScrolledBuffer(double& x0, double& x1, double& y0, double& y1) const
{
    x0 = 0.0, x1 = mBitmap.getWidth();
    y0 = 0.0, y1 = mBitmap.getHeight();
    // One column (two rows) more than uncovered, so that lines meet the shifted part without a gap.
    if (mScrollX > 0)
        x1 = mScrollX + 1;
    else if (mScrollX < 0)
        x0 = x1 + mScrollX - 1;
    if (mScrollY > 0)
        y1 = mScrollY + 2;
    else if (mScrollY < 0)
        y0 = y1 + mScrollY - 2;
}

}  // namespace vx3
