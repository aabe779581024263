// The heart of curve drawing: turns a stream of points into painter calls, merging all segments
// that fall into one pixel column into one vertical stroke. Free of any toolkit: the draw context
// is a template parameter, so that the same code paints into a bitmap and into test contexts.
//
// Values are drawn in axis space: the value itself on a linear axis, its decade (log10) on a log
// axis. Lines are straight on screen in that space, so clipping there is exact on log axes too,
// and every clip happens before a value becomes an integer pixel.
#pragma once

#include <cmath>
#include <cstdint>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "plot/wxCurveStyle.h"
#include "plot/wxPlotDrawerColBuffer.h"
#include "plot/wxSinglePlotWidgetAxis.h"

namespace vx3 {
namespace plotDrawer {

// Round to nearest (ties to even) by the processor's conversion; the argument must be finite and
// within the int range, which the clipping guarantees.
inline int roundToPixel(double value)
{
#if defined(__SSE2__)
    return _mm_cvtsd_si32(_mm_set_sd(value));
#else
    return int(std::nearbyint(value));
#endif
}

// For values that were not clipped (window edges): bounded first.
inline int roundToPixelBounded(double value)
{
    if (!(value > -1e9))
        return -1000000000;
    if (value > 1e9)
        return 1000000000;
    return roundToPixel(value);
}

// One axis as the drawers use it: plain numbers, no calls.
struct cAxisMap {
    bool log = false;
    double scale = 1.0;
    double min = 0.0;
    double offset = 0.0;  // pixel of min (linear) or the log offset

    static cAxisMap fromAxis(const wxSinglePlotWidgetAxis& axis)
    {
        cAxisMap map;
        map.log = axis.checkIsLog();
        map.scale = axis.getScale();
        map.min = axis.getMin();
        map.offset = map.log ? axis.getLogOffset() : axis.getPixelOfMin();
        return map;
    }
    // Axis space of a value; on a log axis values at or below 1e-100 (zero and negatives too)
    // count as 1e-100, far below any view, and NaN stays NaN.
    double toU(double value) const
    {
        if (!log)
            return value;
        if (value > singlePlotWidgetAxis::smallest_log_value)
            return std::log10(value);
        return value == value ? -100.0 : value;
    }
    double fromU(double u) const { return log ? std::pow(10.0, u) : u; }
    double toPixel(double u) const { return log ? u * scale + offset : (u - min) * scale + offset; }
    // Data units (axis space) per pixel.
    double unitsPerPixel() const { return scale != 0.0 ? std::fabs(1.0 / scale) : 0.0; }
};

// The visible windows in data values.
struct cDrawWindow {
    double xmin = 0.0, xmax = 1.0, ymin = 0.0, ymax = 1.0;
};

}  // namespace plotDrawer

template <class Context>
class wxPlotDrawerBase {
public:
    wxPlotDrawerBase(Context& context, const plotDrawer::cAxisMap& xAxis, const plotDrawer::cAxisMap& yAxis,
                     const plotDrawer::cDrawWindow& window, wxPlotDrawerColBuffer* colBuffer)
        : mContext(context), mXAxis(xAxis), mYAxis(yAxis), mColBuffer(colBuffer)
    {
        setWindow(window);
    }

    void setWindow(const plotDrawer::cDrawWindow& window)
    {
        mXmin = mXAxis.toU(window.xmin);
        mXmax = mXAxis.toU(window.xmax);
        mYmin = mYAxis.toU(window.ymin);
        mYmax = mYAxis.toU(window.ymax);
        if (mXmin > mXmax)
            std::swap(mXmin, mXmax);
        if (mYmin > mYmax)
            std::swap(mYmin, mYmax);
    }
    double getXminU() const { return mXmin; }
    double getXmaxU() const { return mXmax; }
    double getYminU() const { return mYmin; }
    double getYmaxU() const { return mYmax; }
    const plotDrawer::cAxisMap& xAxis() const { return mXAxis; }
    const plotDrawer::cAxisMap& yAxis() const { return mYAxis; }
    Context& context() { return mContext; }
    wxPlotDrawerColBuffer* colBuffer() const { return mColBuffer; }

    // --- the line --------------------------------------------------------------------------
    // A new run of the line begins at (ux, uy) in axis space.
    void startRun(double ux, double uy)
    {
        mPrevX = ux;
        mPrevY = uy;
        mLastValid = false;
    }
    double getPrevX() const { return mPrevX; }
    double getPrevY() const { return mPrevY; }

    // The fast path: both points lie inside the windows.
    void drawLineImpl(double ux, double uy)
    {
        if (mLastValid) {
            mPx0 = mPx1;
            mPy0 = mPy1;
        } else {
            mPx0 = plotDrawer::roundToPixel(mXAxis.toPixel(mPrevX));
            mPy0 = plotDrawer::roundToPixel(mYAxis.toPixel(mPrevY));
        }
        mPx1 = plotDrawer::roundToPixel(mXAxis.toPixel(ux));
        mPy1 = plotDrawer::roundToPixel(mYAxis.toPixel(uy));
        mLastValid = true;
        mPrevX = ux;
        mPrevY = uy;
        emitSegment();
    }

    // Any segment: clipped to the windows in axis space first.
    void safeDrawLineImpl(double ux, double uy)
    {
        double px = mPrevX, py = mPrevY;
        double cx = ux, cy = uy;
        mPrevX = ux;
        mPrevY = uy;
        bool currentClipped = false, previousClipped = !mLastValid;
        // Y bounds: the current point, then the previous one.
        if (cy < mYmin || cy > mYmax) {
            const double bound = cy < mYmin ? mYmin : mYmax;
            if ((cy < mYmin && py < mYmin) || (cy > mYmax && py > mYmax))
                return leaveSegment();
            if (!computeIntersectionY(cx, cy, px, py, bound))
                return leaveSegment();
            currentClipped = true;
        }
        if (py < mYmin || py > mYmax) {
            const double bound = py < mYmin ? mYmin : mYmax;
            if (!computeIntersectionY(px, py, cx, cy, bound))
                return leaveSegment();
            previousClipped = true;
        }
        // X bounds likewise.
        if (cx < mXmin || cx > mXmax) {
            const double bound = cx < mXmin ? mXmin : mXmax;
            if ((cx < mXmin && px < mXmin) || (cx > mXmax && px > mXmax) || !(cx != px))
                return leaveSegment();
            if (!computeIntersectionX(cx, cy, px, py, bound))
                return leaveSegment();
            currentClipped = true;
        }
        if (px < mXmin || px > mXmax) {
            const double bound = px < mXmin ? mXmin : mXmax;
            if (!computeIntersectionX(px, py, cx, cy, bound))
                return leaveSegment();
            previousClipped = true;
        }
        if (!(px == px && py == py && cx == cx && cy == cy))
            return leaveSegment();  // infinities that interpolate to nothing
        if (previousClipped) {
            mPx0 = plotDrawer::roundToPixel(mXAxis.toPixel(px));
            mPy0 = plotDrawer::roundToPixel(mYAxis.toPixel(py));
        } else {
            mPx0 = mPx1;
            mPy0 = mPy1;
        }
        mPx1 = plotDrawer::roundToPixel(mXAxis.toPixel(cx));
        mPy1 = plotDrawer::roundToPixel(mYAxis.toPixel(cy));
        mLastValid = !currentClipped;
        emitSegment();
    }

    // Moves (x, y) along the segment to (x1, y1) to where it crosses y = yb. False when the
    // segment runs parallel to the bound or the crossing is not a number.
    static bool computeIntersectionY(double& x, double& y, double x1, double y1, double yb)
    {
        if (y == y1)
            return false;
        const double f = (yb - y) / (y1 - y);
        const double nx = x + f * (x1 - x);
        if (!(nx == nx))
            return false;
        x = x == x1 ? x : nx;
        y = yb;
        return true;
    }
    // The same for a bound of X, y interpolated linearly; equal X (though not identical as
    // numbers) meet at the middle.
    static bool computeIntersectionX(double& x, double& y, double x1, double y1, double xb)
    {
        if (x == x1)
            y = (y + y1) * 0.5;
        else
            y = y1 + (xb - x1) * (y - y1) / (x - x1);
        x = xb;
        return y == y;
    }

    // Ends a run of the line: the open stroke is painted, and the last point as a dot so that a
    // lone value between NaN still shows.
    void endRun()
    {
        flushStroke();
        drawLastLinePoint();
        mLastValid = false;
    }
    void drawLastLinePoint()
    {
        if (!(mPrevX >= mXmin && mPrevX <= mXmax && mPrevY >= mYmin && mPrevY <= mYmax))
            return;
        mContext.drawPoint(plotDrawer::roundToPixel(mXAxis.toPixel(mPrevX)),
                           plotDrawer::roundToPixel(mYAxis.toPixel(mPrevY)));
    }
    void flushStroke()
    {
        if (!mStrokeOpen)
            return;
        mStrokeOpen = false;
        mContext.drawVerticalStroke(mStrokeColumn, mStrokeLow, mStrokeHigh);
    }

    // --- histograms: bars from the base row up (or down) to each point ------------------------
    int computeBaseRow() const
    {
        double base = mYAxis.log ? mYmin : 0.0;
        base = base < mYmin ? mYmin : base > mYmax ? mYmax : base;
        return plotDrawer::roundToPixelBounded(mYAxis.toPixel(base));
    }
    // A point above or below the window still has its bar, cut at the window's edge.
    void safeDrawHistogramImpl(double ux, double uy, int baseRow)
    {
        if (!(ux >= mXmin && ux <= mXmax) || uy != uy)
            return;
        const double clamped = uy < mYmin ? mYmin : uy > mYmax ? mYmax : uy;
        const int column = plotDrawer::roundToPixel(mXAxis.toPixel(ux));
        const int row = plotDrawer::roundToPixel(mYAxis.toPixel(clamped));
        if (mStrokeOpen && column == mStrokeColumn) {
            widenStroke(row);
            return;
        }
        flushStroke();
        openStroke(column, baseRow, row);
    }

    // --- symbols through the column buffer ----------------------------------------------------
    // Prepares the buffer for the window's rows, widens the Y window by margin pixels so that a
    // symbol at the border still shows, and resets the line state.
    void beginSymbols(double marginPixels)
    {
        mStrokeOpen = false;
        mLastValid = false;
        const double margin = marginPixels * mYAxis.unitsPerPixel();
        mSymbolYmin = mYmin - margin;
        mSymbolYmax = mYmax + margin;
        const double xMargin = marginPixels * mXAxis.unitsPerPixel();
        mSymbolXmin = mXmin - xMargin;
        mSymbolXmax = mXmax + xMargin;
        if (mColBuffer) {
            mColBuffer->resize(plotDrawer::roundToPixelBounded(mYAxis.toPixel(mYmin)),
                               plotDrawer::roundToPixelBounded(mYAxis.toPixel(mYmax)));
            mColBuffer->setColumn(plotDrawer::roundToPixelBounded(mXAxis.toPixel(mXmin)) - 100);
        }
    }
    // Puts the symbol of one point in the buffer; paint(buffer) paints a full column when the
    // point falls into another one. clampY keeps points beyond the Y window (histogram bars).
    template <class Paint>
    void safeDrawSymbol(double ux, double uy, bool clampY, Paint& paint)
    {
        if (!mColBuffer || ux != ux || uy != uy || ux < mSymbolXmin || ux > mSymbolXmax)
            return;
        if (clampY)
            uy = uy < mYmin ? mYmin : uy > mYmax ? mYmax : uy;
        else if (uy < mSymbolYmin || uy > mSymbolYmax)
            return;
        const int column = plotDrawer::roundToPixel(mXAxis.toPixel(ux));
        if (column != mColBuffer->getColumn()) {
            paint(*mColBuffer);
            mColBuffer->setColumn(column);
        }
        mColBuffer->insert(plotDrawer::roundToPixel(mYAxis.toPixel(uy)));
    }

private:
    void leaveSegment()
    {
        mLastValid = false;
        flushStroke();
    }
    void openStroke(int column, int a, int b)
    {
        mStrokeOpen = true;
        mStrokeColumn = column;
        mStrokeLow = a < b ? a : b;
        mStrokeHigh = a < b ? b : a;
    }
    void widenStroke(int row)
    {
        if (row < mStrokeLow)
            mStrokeLow = row;
        else if (row > mStrokeHigh)
            mStrokeHigh = row;
    }
    // Steps of the reduction for the segment (mPx0, mPy0) to (mPx1, mPy1).
    void emitSegment()
    {
        if (mStrokeOpen) {
            if (mPx1 == mStrokeColumn && mPx0 == mStrokeColumn) {
                widenStroke(mPy0);
                widenStroke(mPy1);
                return;
            }
            flushStroke();
        }
        if (mPx0 == mPx1) {
            openStroke(mPx0, mPy0, mPy1);
            return;
        }
        mContext.drawLine(mPx0, mPy0, mPx1, mPy1);
    }

    Context& mContext;
    plotDrawer::cAxisMap mXAxis;
    plotDrawer::cAxisMap mYAxis;
    double mYmin = 0.0, mYmax = 1.0;
    wxPlotDrawerColBuffer* mColBuffer = nullptr;
    bool mStrokeOpen = false;
    int mStrokeColumn = 0, mStrokeLow = 0, mStrokeHigh = 0;
    bool mLastValid = false;
    double mXmin = 0.0, mXmax = 1.0;
    int mPx0 = 0, mPx1 = 0, mPy0 = 0, mPy1 = 0;
    double mPrevX = 0.0, mPrevY = 0.0;
    double mSymbolXmin = 0.0, mSymbolXmax = 1.0, mSymbolYmin = 0.0, mSymbolYmax = 1.0;
};

}  // namespace vx3
