// Placing text boxes on the plot so that none covers another: value boxes of the rulers, texts of
// annotations, and the legend as an obstacle that nothing may cover. Pixels, y upwards.
#pragma once

#include <cstddef>
#include <vector>

namespace vx3 {

namespace plotBoxLayout {

struct cBox {
    double x0 = 0.0, y0 = 0.0, x1 = 0.0, y1 = 0.0;  // x0 <= x1, y0 <= y1
    double width() const { return x1 - x0; }
    double height() const { return y1 - y0; }
    // Touching edges don't count: boxes laid out edge to edge are apart.
    bool intersects(const cBox& other) const
    {
        return x0 < other.x1 && other.x0 < x1 && y0 < other.y1 && other.y0 < y1;
    }
    bool contains(double x, double y) const { return x >= x0 && x <= x1 && y >= y0 && y <= y1; }
    bool inside(const cBox& area) const { return x0 >= area.x0 && x1 <= area.x1 && y0 >= area.y0 && y1 <= area.y1; }
    cBox moved(double dx, double dy) const { return {x0 + dx, y0 + dy, x1 + dx, y1 + dy}; }
};

// One box to place: its wished position, and the point it belongs to (a connector line is drawn
// from there when the box had to move).
struct cItem {
    cBox wished;
    double anchorX = 0.0, anchorY = 0.0;
    // May the box go to the mirror side of its anchor (left instead of right of a ruler line)?
    bool mayMirror = true;
    // Results.
    cBox placed;
    bool shown = false;
    bool moved = false;
};

// Places the items in the area, in the order of their wished y from the top down, each as near
// its wish as it can without covering an obstacle or a box placed before; gap pixels stay free
// between boxes. An item for which no place is left is not shown rather than drawn over another.
void layoutNonOverlapping(std::vector<cItem>& items, const cBox& area, const std::vector<cBox>& obstacles,
                          double gap = 2.0);

// Whether any two shown items (or a shown item and an obstacle) intersect: the check of tests and
// debug builds.
bool checkAnyOverlap(const std::vector<cItem>& items, const std::vector<cBox>& obstacles);

}  // namespace plotBoxLayout

}  // namespace vx3
