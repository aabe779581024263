#include "plot/wxPlotDrawerColBuffer.h"

#include <algorithm>
#include <cstdint>

namespace vx3 {

void wxPlotDrawerColBuffer::resize(int lowest, int highest)
{
    if (lowest > highest)
        std::swap(lowest, highest);
    const size_t size = size_t(int64_t(highest) - lowest) + 2 * kMargin + 1;
    // Growing only: a plot's buffer settles at its height after the first curve.
    if (mRows.size() < size)
        mRows.resize(size);
    mOffset = kMargin - lowest;
    clear();
}

void wxPlotDrawerColBuffer::clear()
{
    std::fill(mRows.begin(), mRows.end(), false);
    mEmpty = true;
    mLowest = mHighest = 0;
    mColumn = kNoColumn;
}

}  // namespace vx3
