// Scrolling with the middle button: the press sets an anchor, and while it runs every tick moves
// the view by a tenth of the mouse's distance from the anchor, along the axis of the larger
// distance only. A run in one direction is one view in the history; a turn records again.
#pragma once

namespace vx3 {

class wxPlotAutoScroll {
public:
    static constexpr int tick_ms = 30;

    // One tick's step in pixels; one of dx, dy is zero. The direction counts upwards in y.
    struct cStep {
        double dx = 0.0, dy = 0.0;
        bool recordViewPort = false;  // first step of a direction
    };

    void enable(double anchorX, double anchorY);
    void disable() { mEnabled = false; }
    bool checkIsEnabled() const { return mEnabled; }
    void setInverted(bool inverted) { mInverted = inverted; }
    double anchorX() const { return mAnchorX; }
    double anchorY() const { return mAnchorY; }

    // The step for the mouse at (x, y); remembers the direction for the view history.
    cStep computeStep(double x, double y);

private:
    bool mEnabled = false;
    bool mInverted = false;
    double mAnchorX = 0.0, mAnchorY = 0.0;
    int mLastDirection = 0;  // 0 none, +-1 along x, +-2 along y
};

}  // namespace vx3
