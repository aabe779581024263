#include "model/cCurvePlotData.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace vx3 {

void cCurvePlotData::cFree::operator()(char* p) const { std::free(p); }

namespace {
char* allocateBytes(uint64_t bytes)
{
    if (bytes > std::numeric_limits<size_t>::max())
        return nullptr;
    return static_cast<char*>(std::malloc(bytes ? static_cast<size_t>(bytes) : 1));
}

// a * b, or false on overflow.
bool multiply(uint64_t a, uint64_t b, uint64_t& result)
{
    return !__builtin_mul_overflow(a, b, &result);
}
}  // namespace

cCurvePlotData::cCurvePlotData(const cCurvePlotData& other) : cDerivedCurveFunction(other)
{
    *this = other;
}

cCurvePlotData& cCurvePlotData::operator=(const cCurvePlotData& other)
{
    if (this == &other)
        return *this;
    cDerivedCurveFunction::operator=(other);
    mStorage.reset();
    if (other.mStorage) {
        // Only the block size is kept: a copy needs the same room, including the parameterized gap.
        mStorage.reset(allocateBytes(other.mAllocatedSize));
        if (mStorage)
            std::memcpy(mStorage.get(), other.mStorage.get(), other.mAllocatedSize);
    }
    const bool copied = mStorage || !other.mStorage;
    mUsedSize = copied ? other.mUsedSize : 0;
    mAllocatedSize = copied ? other.mAllocatedSize : 0;
    mElementSize = other.mElementSize;
    mValueCount = copied ? other.mValueCount : 0;
    mGrowth = other.mGrowth;
    mXSize = other.mXSize;
    mYSize = other.mYSize;
    mPairCapacity = copied ? other.mPairCapacity : 0;
    return *this;
}

cCurvePlotData::cCurvePlotData(cCurvePlotData&& other) noexcept { *this = std::move(other); }

cCurvePlotData& cCurvePlotData::operator=(cCurvePlotData&& other) noexcept
{
    if (this == &other)
        return *this;
    cDerivedCurveFunction::operator=(other);
    mStorage = std::move(other.mStorage);
    mUsedSize = other.mUsedSize;
    mAllocatedSize = other.mAllocatedSize;
    mElementSize = other.mElementSize;
    mValueCount = other.mValueCount;
    mGrowth = other.mGrowth;
    mXSize = other.mXSize;
    mYSize = other.mYSize;
    mPairCapacity = other.mPairCapacity;
    other.mUsedSize = other.mAllocatedSize = other.mValueCount = other.mPairCapacity = 0;
    return *this;
}

uint64_t cCurvePlotData::getVectorSize() const
{
    if (mValueCount)
        return mValueCount;
    return mElementSize ? mUsedSize / mElementSize : 0;
}

void cCurvePlotData::resetWriteState()
{
    mUsedSize = 0;
    mValueCount = 0;
    mXSize = mYSize = mPairCapacity = 0;
}

void cCurvePlotData::freeStorage()
{
    mStorage.reset();
    mAllocatedSize = 0;
    resetWriteState();
}

void cCurvePlotData::clearValues()
{
    const uint64_t xSize = mXSize, ySize = mYSize, pairs = mPairCapacity;
    resetWriteState();
    // The parameterized layout stays: its block still has room for the same pairs.
    mXSize = xSize;
    mYSize = ySize;
    mPairCapacity = pairs;
}

bool cCurvePlotData::setSize(uint64_t count, uint64_t elementSize)
{
    uint64_t bytes = 0;
    if (!multiply(count, elementSize, bytes))
        return false;
    freeStorage();
    mStorage.reset(allocateBytes(bytes));
    if (!mStorage)
        return false;
    mAllocatedSize = bytes;
    mElementSize = elementSize;
    return true;
}

bool cCurvePlotData::resizeStorageVariableSize(uint64_t wanted)
{
    if (wanted <= mAllocatedSize)
        return true;
    uint64_t size = std::max(wanted, mAllocatedSize > UINT64_MAX / 2 ? wanted : mAllocatedSize * 2);
    if (mElementSize > 1 && size % mElementSize)
        size += mElementSize - size % mElementSize;
    std::unique_ptr<char, cFree> grown(allocateBytes(size));
    if (!grown)
        return false;
    if (mUsedSize)
        std::memcpy(grown.get(), mStorage.get(), mUsedSize);
    mStorage = std::move(grown);
    mAllocatedSize = size;
    return true;
}

bool cCurvePlotData::reserveForPush(uint64_t bytes)
{
    if (!mStorage || mUsedSize + bytes > mAllocatedSize) {
        if (!mGrowth)
            return false;
        // Grow by 1024 elements at a time so that pushing stays amortised.
        const uint64_t step = mElementSize > 1 ? (mElementSize << 10) : 1024;
        if (!resizeStorageVariableSize(std::max(mAllocatedSize + step, mUsedSize + bytes)))
            return false;
    }
    return true;
}

bool cCurvePlotData::assignValues(const void* values, uint64_t count, uint64_t elementSize)
{
    if (!setSize(count, elementSize))
        return false;
    mUsedSize = count * elementSize;
    if (mUsedSize)
        std::memcpy(mStorage.get(), values, mUsedSize);
    mValueCount = 0;  // derived from the used size
    return true;
}

bool cCurvePlotData::setParameterizedSize(uint64_t count, uint64_t xSize, uint64_t ySize)
{
    if (!xSize || !ySize || !setSize(count, xSize + ySize))
        return false;
    mXSize = xSize;
    mYSize = ySize;
    mPairCapacity = count;
    return true;
}

bool cCurvePlotData::growPairs()
{
    const uint64_t pairs = std::max<uint64_t>(mPairCapacity + 1024, mPairCapacity * 2);
    uint64_t bytes = 0;
    if (!multiply(pairs, mXSize + mYSize, bytes))
        return false;
    std::unique_ptr<char, cFree> grown(allocateBytes(bytes));
    if (!grown)
        return false;
    if (mValueCount) {
        std::memcpy(grown.get(), mStorage.get(), mValueCount * mXSize);
        std::memcpy(grown.get() + pairs * mXSize, mStorage.get() + mPairCapacity * mXSize, mValueCount * mYSize);
    }
    mStorage = std::move(grown);
    mAllocatedSize = bytes;
    mPairCapacity = pairs;
    return true;
}

void cCurvePlotData::balanceParameterizedCurve()
{
    if (!mXSize || !mStorage || mPairCapacity == mValueCount)
        return;
    std::memmove(mStorage.get() + mValueCount * mXSize, mStorage.get() + mPairCapacity * mXSize,
                 mValueCount * mYSize);
    mPairCapacity = mValueCount;
}

}  // namespace vx3
