#include "analysis/cAnalysisOptions.h"

#include <algorithm>

namespace vx3 {

namespace {

// Sets an entry, growing the vector with zeros up to it.
template <class T>
void setGrowing(std::vector<T>& values, uint64_t index, T value)
{
    if (index >= values.size())
        values.resize(index + 1, T());
    values[index] = value;
}

}  // namespace

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
    setGrowing(mDoubles, index, value);
}

void cAnalysisOptions::setInt64(uint64_t index, int64_t value)
{
    setGrowing(mInt64s, index, value);
}

void cAnalysisOptions::setInt(uint64_t index, int value)
{
    setGrowing(mInts, index, value);
}

void cAnalysisOptions::setFlag(uint64_t index, bool value)
{
    setGrowing(mFlags, index, value);
}

}  // namespace vx3
