#include "analysis/cAnalysisOptions.h"

#include <algorithm>

namespace vx3 {

void cAnalysisOptions::resize(uint64_t doubles, uint64_t int64s, uint64_t ints, uint64_t flags)
{
    mDoubles.resize(std::max<uint64_t>(mDoubles.size(), doubles), 0.0);
    mInt64s.resize(std::max<uint64_t>(mInt64s.size(), int64s), 0);
    mInts.resize(std::max<uint64_t>(mInts.size(), ints), 0);
    mFlags.resize(std::max<uint64_t>(mFlags.size(), flags), false);
}

void cAnalysisOptions::setZero()
{
    std::fill(mDoubles.begin(), mDoubles.end(), 0.0);
    std::fill(mInt64s.begin(), mInt64s.end(), 0);
    std::fill(mInts.begin(), mInts.end(), 0);
    std::fill(mFlags.begin(), mFlags.end(), false);
}

void cAnalysisOptions::setDouble(uint64_t index, double value)
{
    if (index >= mDoubles.size())
        mDoubles.resize(index + 1, 0.0);
    mDoubles[index] = value;
}

void cAnalysisOptions::setInt64(uint64_t index, int64_t value)
{
    if (index >= mInt64s.size())
        mInt64s.resize(index + 1, 0);
    mInt64s[index] = value;
}

void cAnalysisOptions::setInt(uint64_t index, int value)
{
    if (index >= mInts.size())
        mInts.resize(index + 1, 0);
    mInts[index] = value;
}

void cAnalysisOptions::setFlag(uint64_t index, bool value)
{
    if (index >= mFlags.size())
        mFlags.resize(index + 1, false);
    mFlags[index] = value;
}

}  // namespace vx3
