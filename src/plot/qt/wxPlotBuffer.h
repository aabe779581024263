// The off-screen bitmap of a plot's curves and the state of its drawing: what is in it, how many
// curves are painted, and which strip a scroll left to draw.
#pragma once

#include <cstddef>

#include "widgets/qtVxBitmap.h"

namespace vx3 {

namespace plotBuffer {
enum draw_status_type : int {
    status_none = 0,        // nothing valid: clear and draw everything
    status_bg = 1,          // cleared (and gridded), curves to come
    status_add_curve = 2,   // curves to add onto what is there (new curves, or a scrolled strip)
    status_drawing = 3,
    status_only_axes = 4,   // curves valid, the frame around them to redraw
    status_complete = 5,
    status_anti_aliasing = 6,
};
const char* getBufferSatus(int status);
}  // namespace plotBuffer

class wxPlotBuffer {
public:
    qtVxBitmap& bitmap() { return mBitmap; }
    const qtVxBitmap& bitmap() const { return mBitmap; }
    int getStatus() const { return mStatus; }
    int getCompleteStatus() const { return mCompleteStatus; }
    void setStatus(int status) { mStatus = status; }
    size_t getCurvesPainted() const { return mCurvesPainted; }
    void setCurvesPainted(size_t count) { mCurvesPainted = count; }
    // Bitmaps are drawn with this colour where nothing else is (0xrrggbb).
    void setBackgroundColour(unsigned colour) { mBackground = colour; }
    unsigned getBackgroundColour() const { return mBackground; }

    // Matches the bitmap to the canvas; a change of size starts everything anew. True when resized.
    bool resizeBuffer(int width, int height, double devicePixelRatio);
    // Everything anew: both statuses "none", no curve painted, no scroll pending.
    void setFullRedrawRequired();
    // Only the widget's picture around the curves is to be made again.
    void setCompleteBufferFullRedrawRequired() { mCompleteStatus = plotBuffer::status_none; }
    void setCompleteBufferAxesRedrawRequired()
    {
        if (mCompleteStatus == plotBuffer::status_complete)
            mCompleteStatus = plotBuffer::status_only_axes;
    }
    // A curve was appended: a complete bitmap only needs it painted on top.
    void setAddedCurve();
    void setDrawingComplete();
    // A paint could not finish (data locked): the next one tries again.
    void setChangedSomething() { mCompleteStatus = plotBuffer::status_none; }
    bool checkNeedsCurves() const
    {
        return mStatus == plotBuffer::status_none || mStatus == plotBuffer::status_bg ||
               mStatus == plotBuffer::status_add_curve;
    }

    // Shift a complete bitmap by whole pixels (dx > 0: right, dy > 0: up) and note the strip
    // uncovered; false (and a full redraw) when the bitmap isn't complete or the shift is too large.
    bool scrollX(int dx);
    bool scrollY(int dy);
    // The area to draw in bitmap pixels, y upwards: the scrolled strip, else the whole bitmap.
    void adjustForScrolledBuffer(double& x0, double& x1, double& y0, double& y1) const;
    bool checkIsScrolled() const { return mScrollX != 0 || mScrollY != 0; }

private:
    bool shift(int dx, int dy);

    qtVxBitmap mBitmap;
    int mStatus = plotBuffer::status_none;
    int mCompleteStatus = plotBuffer::status_none;
    size_t mCurvesPainted = 0;
    int mScrollX = 0;
    int mScrollY = 0;
    unsigned mBackground = 0xffffff;
};

}  // namespace vx3
