#include "plot/wxPlotBoxLayout.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vx3::plotBoxLayout {

namespace {

bool isFree(const cBox& box, const cBox& area, const std::vector<cBox>& taken, double gap)
{
    if (!box.inside(area))
        return false;
    const cBox grown{box.x0 - gap, box.y0 - gap, box.x1 + gap, box.y1 + gap};
    return std::none_of(taken.begin(), taken.end(), [&](const cBox& other) { return grown.intersects(other); });
}

// The positions worth trying for a box: where it was wished, and just above or below each box
// already there, clamped into the area. The nearest free one wins.
bool placeVertically(const cBox& wished, const cBox& area, const std::vector<cBox>& taken, double gap, cBox& out)
{
    std::vector<double> shifts{0.0};
    const double h = wished.height();
    shifts.push_back(area.y0 - wished.y0);
    shifts.push_back(area.y1 - wished.y1);
    for (const cBox& other : taken) {
        shifts.push_back(other.y1 + gap - wished.y0);          // just above
        shifts.push_back(other.y0 - gap - h - wished.y0);      // just below
    }
    std::sort(shifts.begin(), shifts.end(), [](double a, double b) { return std::fabs(a) < std::fabs(b); });
    for (double dy : shifts) {
        const cBox candidate = wished.moved(0.0, dy);
        if (isFree(candidate, area, taken, gap)) {
            out = candidate;
            return true;
        }
    }
    return false;
}

}  // namespace

void layoutNonOverlapping(std::vector<cItem>& items, const cBox& area, const std::vector<cBox>& obstacles, double gap)
{
    std::vector<size_t> order(items.size());
    std::iota(order.begin(), order.end(), size_t{0});
    // From the top down, so that boxes keep the vertical order of their points.
    std::stable_sort(order.begin(), order.end(),
                     [&](size_t a, size_t b) { return items[a].wished.y1 > items[b].wished.y1; });
    std::vector<cBox> taken = obstacles;
    for (size_t index : order) {
        cItem& item = items[index];
        item.shown = false;
        item.moved = false;
        cBox wished = item.wished;
        // A box wider than the area can't be placed anywhere.
        if (wished.width() > area.width() || wished.height() > area.height())
            continue;
        // Pulled into the area horizontally first: a box at the right edge goes left of its anchor.
        if (wished.x1 > area.x1 && item.mayMirror) {
            const double width = wished.width();
            const double mirroredX0 = 2.0 * item.anchorX - wished.x1;
            wished.x0 = mirroredX0;
            wished.x1 = mirroredX0 + width;
        }
        if (wished.x1 > area.x1)
            wished = wished.moved(area.x1 - wished.x1, 0.0);
        if (wished.x0 < area.x0)
            wished = wished.moved(area.x0 - wished.x0, 0.0);
        cBox placed;
        bool found = placeVertically(wished, area, taken, gap, placed);
        if (!found && item.mayMirror) {
            // The other side of the anchor.
            const double width = wished.width();
            cBox mirrored = wished;
            mirrored.x0 = wished.x0 >= item.anchorX ? item.anchorX - (wished.x0 - item.anchorX) - width
                                                     : item.anchorX + (item.anchorX - wished.x1);
            mirrored.x1 = mirrored.x0 + width;
            found = placeVertically(mirrored, area, taken, gap, placed);
        }
        if (!found)
            continue;
        item.placed = placed;
        item.shown = true;
        item.moved = placed.x0 != item.wished.x0 || placed.y0 != item.wished.y0;
        taken.push_back(placed);
    }
}

bool checkAnyOverlap(const std::vector<cItem>& items, const std::vector<cBox>& obstacles)
{
    for (size_t i = 0; i < items.size(); ++i) {
        if (!items[i].shown)
            continue;
        for (const cBox& obstacle : obstacles)
            if (items[i].placed.intersects(obstacle))
                return true;
        for (size_t j = i + 1; j < items.size(); ++j)
            if (items[j].shown && items[i].placed.intersects(items[j].placed))
                return true;
    }
    return false;
}

}  // namespace vx3::plotBoxLayout
