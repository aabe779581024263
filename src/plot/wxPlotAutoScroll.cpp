#include "plot/wxPlotAutoScroll.h"

#include <cmath>

namespace vx3 {

void wxPlotAutoScroll::enable(double anchorX, double anchorY)
{
    mEnabled = true;
    mAnchorX = anchorX;
    mAnchorY = anchorY;
    mLastDirection = 0;
}

wxPlotAutoScroll::cStep wxPlotAutoScroll::computeStep(double x, double y)
{
    cStep step;
    const double sign = mInverted ? -1.0 : 1.0;
    const double dx = sign * (mAnchorX - x) / 10.0, dy = sign * (mAnchorY - y) / 10.0;
    // Whole pixels, so that the bitmap shifts instead of being drawn again.
    if (std::fabs(dx) >= std::fabs(dy))
        step.dx = std::trunc(dx);
    else
        step.dy = std::trunc(dy);
    int direction = 0;
    if (step.dx != 0.0)
        direction = step.dx > 0.0 ? 1 : -1;
    else if (step.dy != 0.0)
        direction = step.dy > 0.0 ? 2 : -2;
    step.recordViewPort = direction != 0 && direction != mLastDirection;
    if (direction != 0)
        mLastDirection = direction;
    return step;
}

}  // namespace vx3
