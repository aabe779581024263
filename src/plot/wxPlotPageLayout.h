// Where the plots of a page sit: each plot owns a rectangle in fractions of the page. Splitting a
// plot halves its rectangle; closing one gives its room back to the plot it was split from, or
// to its neighbour. Maximizing shows one plot over the whole page until it is restored.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace vx3 {

namespace plotPageLayout {
struct cCell {
    double x = 0.0, y = 0.0, w = 1.0, h = 1.0;
};
struct cPixelRect {
    int x = 0, y = 0, w = 0, h = 0;
};
}  // namespace plotPageLayout

class wxPlotPageLayout {
public:
    wxPlotPageLayout() { mCells.emplace_back(); }

    size_t size() const { return mCells.size(); }
    const plotPageLayout::cCell& cell(size_t index) const { return mCells.at(index); }
    // Vertical: the two halves one above the other; horizontal: side by side. The new plot takes
    // the lower (right) half and comes right after the split one. False for an unknown index.
    bool split(size_t index, bool vertically);
    // Removes a plot's cell and gives its room to a neighbour that shares a whole edge with it.
    bool remove(size_t index);
    // One full-width row per share, top to bottom, each as high as its share of the total
    // (stacked pages); shares that are not positive count as 1.
    void stack(const std::vector<double>& shares);
    // Back to one cell.
    void reset() { mCells.assign(1, plotPageLayout::cCell{}); mMaximized = -1; }
    bool maximize(size_t index);
    void minimize() { mMaximized = -1; }
    int getMaximized() const { return mMaximized; }
    bool checkIsShown(size_t index) const { return mMaximized < 0 || static_cast<size_t>(mMaximized) == index; }
    // The pixels of a plot on a page of width x height, or an empty rectangle when hidden.
    plotPageLayout::cPixelRect computeScreenPosition(size_t index, int width, int height) const;
    // The plot under a point of the page, -1 for none.
    int getPlotIndex(int x, int y, int width, int height) const;

private:
    std::vector<plotPageLayout::cCell> mCells;
    int mMaximized = -1;
};

}  // namespace vx3
