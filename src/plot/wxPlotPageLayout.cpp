#include "plot/wxPlotPageLayout.h"

#include <algorithm>
#include <cmath>

namespace vx3 {

using plotPageLayout::cCell;
using plotPageLayout::cPixelRect;

namespace {
bool near(double a, double b) { return std::fabs(a - b) < 1e-9; }
}  // namespace

bool wxPlotPageLayout::split(size_t index, bool vertically)
{
    if (index >= mCells.size())
        return false;
    cCell first = mCells[index];
    cCell second = first;
    if (vertically) {
        first.h /= 2.0;
        second.h = first.h, second.y = first.y + first.h;
    } else {
        first.w /= 2.0;
        second.w = first.w, second.x = first.x + first.w;
    }
    mCells[index] = first;
    mCells.insert(mCells.begin() + static_cast<std::ptrdiff_t>(index) + 1, second);
    mMaximized = -1;
    return true;
}

bool wxPlotPageLayout::remove(size_t index)
{
    if (index >= mCells.size())
        return false;
    if (mCells.size() == 1) {
        reset();
        return true;
    }
    const cCell gone = mCells[index];
    mCells.erase(mCells.begin() + static_cast<std::ptrdiff_t>(index));
    // A neighbour sharing a whole edge grows over the freed room; without one (a cross of cells)
    // the room stays empty rather than overlap.
    for (cCell& other : mCells) {
        if (near(other.y, gone.y) && near(other.h, gone.h)) {
            if (near(other.x + other.w, gone.x)) {
                other.w += gone.w;
                break;
            }
            if (near(gone.x + gone.w, other.x)) {
                other.x = gone.x, other.w += gone.w;
                break;
            }
        }
        if (near(other.x, gone.x) && near(other.w, gone.w)) {
            if (near(other.y + other.h, gone.y)) {
                other.h += gone.h;
                break;
            }
            if (near(gone.y + gone.h, other.y)) {
                other.y = gone.y, other.h += gone.h;
                break;
            }
        }
    }
    if (mMaximized >= 0 && static_cast<size_t>(mMaximized) >= index)
        mMaximized = static_cast<size_t>(mMaximized) == index ? -1 : mMaximized - 1;
    return true;
}

void wxPlotPageLayout::stack(const std::vector<double>& shares)
{
    if (shares.empty()) {
        reset();
        return;
    }
    double total = 0.0;
    for (double share : shares)
        total += share > 0.0 ? share : 1.0;
    mCells.clear();
    double y = 0.0;
    for (double share : shares) {
        const double h = (share > 0.0 ? share : 1.0) / total;
        mCells.push_back(cCell{0.0, y, 1.0, h});
        y += h;
    }
    if (mMaximized >= static_cast<int>(mCells.size()))
        mMaximized = -1;
}

bool wxPlotPageLayout::maximize(size_t index)
{
    if (index >= mCells.size())
        return false;
    mMaximized = static_cast<int>(index);
    return true;
}

cPixelRect wxPlotPageLayout::computeScreenPosition(size_t index, int width, int height) const
{
    if (index >= mCells.size() || !checkIsShown(index))
        return {};
    const cCell cell = mMaximized >= 0 ? cCell{} : mCells[index];
    // Edges are rounded, not sizes, so that neighbours meet without a gap or an overlap.
    const int x0 = static_cast<int>(std::lround(cell.x * width));
    const int x1 = static_cast<int>(std::lround((cell.x + cell.w) * width));
    const int y0 = static_cast<int>(std::lround(cell.y * height));
    const int y1 = static_cast<int>(std::lround((cell.y + cell.h) * height));
    return {x0, y0, x1 - x0, y1 - y0};
}

int wxPlotPageLayout::getPlotIndex(int x, int y, int width, int height) const
{
    for (size_t index = 0; index < mCells.size(); ++index) {
        const cPixelRect rect = computeScreenPosition(index, width, height);
        if (x >= rect.x && x < rect.x + rect.w && y >= rect.y && y < rect.y + rect.h)
            return static_cast<int>(index);
    }
    return -1;
}

}  // namespace vx3
