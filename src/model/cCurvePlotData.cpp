#include "model/cCurvePlotData.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "model/curveMemory.h"

namespace vx3 {

void cCurvePlotData::cFree::operator()(char* p) const { curveMemory::release(p); }

namespace {
char* allocateBytes(uint64_t bytes)
{
    if (bytes > std::numeric_limits<size_t>::max())
        return nullptr;
    return curveMemory::allocate(bytes ? bytes : 1);
}

// a * b, or false on overflow.
bool multiply(uint64_t a, uint64_t b, uint64_t& result) { return !__builtin_mul_overflow(a, b, &result); }

// The growth rule: at least wanted, at least twice the old size, a multiple of the element size.
uint64_t grownSize(uint64_t wanted, uint64_t allocated, uint64_t elementSize)
{
    uint64_t size = std::max(wanted, allocated > UINT64_MAX / 2 ? wanted : allocated * 2);
    if (elementSize > 1 && size % elementSize)
        size += elementSize - size % elementSize;
    return size;
}
}  // namespace

cCurvePlotData::cCurvePlotData(const cCurvePlotData& other) : cDerivedCurveFunction(other) { *this = other; }

cCurvePlotData& cCurvePlotData::operator=(const cCurvePlotData& other)
{
    if (this == &other)
        return *this;
    cDerivedCurveFunction::operator=(other);
    mStorage.reset();
    if (other.mStorage) {
        // The whole block: the parameterized gap and the vector part depend on its size.
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
    mVectorWidth = other.mVectorWidth;
    mStringPool = other.mStringPool;
    resetWritePositions();
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
    mVectorWidth = other.mVectorWidth;
    mStringPool = std::move(other.mStringPool);
    mXWrite = other.mXWrite;
    mYWrite = other.mYWrite;
    other.mUsedSize = other.mAllocatedSize = other.mValueCount = other.mPairCapacity = 0;
    other.mXWrite = other.mYWrite = nullptr;
    return *this;
}

uint64_t cCurvePlotData::getVectorSize() const
{
    if (mValueCount)
        return mValueCount;
    return mElementSize ? mUsedSize / mElementSize : 0;
}

void cCurvePlotData::setUsedValueCount(uint64_t count)
{
    if (checkIsParameterizedLayout()) {
        mValueCount = std::min(count, mPairCapacity);
        mUsedSize = mValueCount * (mXSize + mYSize);
    } else if (mVectorWidth) {
        mValueCount = std::min(count, mAllocatedSize / (mVectorWidth + 8));
        mUsedSize = mValueCount * (mVectorWidth + 8);
    } else {
        mUsedSize = mElementSize ? std::min(count * mElementSize, mAllocatedSize - mAllocatedSize % mElementSize) : 0;
        mValueCount = 0;  // derived from the used size
    }
    resetWritePositions();
}

void cCurvePlotData::resetWritePositions()
{
    if (mXSize && mStorage) {
        mXWrite = mStorage.get() + mValueCount * mXSize;
        mYWrite = mStorage.get() + mPairCapacity * mXSize + mValueCount * mYSize;
    } else {
        mXWrite = mYWrite = nullptr;
    }
}

void cCurvePlotData::resetWriteState()
{
    mUsedSize = 0;
    mValueCount = 0;
    mXSize = mYSize = mPairCapacity = 0;
    mVectorWidth = 0;
    mXWrite = mYWrite = nullptr;
}

void cCurvePlotData::freeStorage()
{
    mStorage.reset();
    mAllocatedSize = 0;
    resetWriteState();
}

void cCurvePlotData::clearValues()
{
    mUsedSize = 0;
    mValueCount = 0;
    resetWritePositions();
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

bool cCurvePlotData::reallocate(uint64_t bytes)
{
    if (bytes > std::numeric_limits<size_t>::max())
        return false;
    char* grown = curveMemory::reallocate(mStorage.get(), bytes ? bytes : 1);
    if (!grown)
        return false;
    (void)mStorage.release();
    mStorage.reset(grown);
    mAllocatedSize = bytes;
    return true;
}

bool cCurvePlotData::resizeStorageVariableSize(uint64_t wanted)
{
    if (wanted <= mAllocatedSize && mStorage)
        return true;
    if (!reallocate(grownSize(wanted, mAllocatedSize, mElementSize)))
        return false;
    resetWritePositions();
    return true;
}

bool cCurvePlotData::reserveForPush(uint64_t bytes)
{
    if (mStorage && mUsedSize + bytes <= mAllocatedSize)
        return true;
    if (!mGrowth)
        return false;
    // 1024 elements more at a time (1024 bytes for single characters) keeps pushing amortised.
    const uint64_t step = mElementSize > 1 ? (mElementSize << 10) : 1024;
    return resizeStorageVariableSize(std::max(mAllocatedSize + step, mUsedSize + bytes));
}

bool cCurvePlotData::repeatPreviousValue()
{
    const uint64_t count = getVectorSize();
    if (!mStorage || checkIsParameterizedLayout() || mVectorWidth || count == 0 || mElementSize == 0)
        return false;
    const bool growth = mGrowth;
    mGrowth = true;
    const bool room = reserveForPush(mElementSize);
    mGrowth = growth;
    if (!room)
        return false;
    std::memcpy(mStorage.get() + mUsedSize, mStorage.get() + (count - 1) * mElementSize, mElementSize);
    mUsedSize += mElementSize;
    if (mValueCount)
        ++mValueCount;
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

// ---------------------------------------------------------------- strings

bool cCurvePlotData::pushBackStringValue(std::string_view text)
{
    if (!reserveForPush(text.size() + 1))
        return false;
    std::memcpy(mStorage.get() + mUsedSize, text.data(), text.size());
    mStorage.get()[mUsedSize + text.size()] = '\0';
    mUsedSize += text.size() + 1;
    ++mValueCount;  // strings have no element size: the count is always explicit
    return true;
}

bool cCurvePlotData::pushBackConstantSizeString(std::string_view text, uint64_t size)
{
    if (!reserveForPush(size))
        return false;
    char* target = mStorage.get() + mUsedSize;
    const uint64_t copied = std::min<uint64_t>(text.size(), size);
    std::memcpy(target, text.data(), copied);
    std::memset(target + copied, 0, size - copied);
    mUsedSize += size;
    if (mValueCount)
        ++mValueCount;
    return true;
}

const char* cCurvePlotData::getStringValue(uint64_t index) const
{
    const char* text = mStorage.get();
    const char* end = text + mUsedSize;
    for (uint64_t i = 0; text && text < end; ++i) {
        if (i == index)
            return text;
        text += std::strlen(text) + 1;
    }
    return nullptr;
}

bool cCurvePlotData::pushBackUint32StringValue(std::string_view text)
{
    if (!mStringPool)
        mStringPool = std::make_shared<cStringPool>();
    const uint32_t offset = mStringPool->add(text);
    return offset != cStringPool::npos && pushBackValue(offset);
}

const char* cCurvePlotData::getUint32StringValue(uint64_t index) const
{
    if (!mStringPool || mElementSize != sizeof(uint32_t) || index >= getVectorSize() || checkIsParameterizedLayout())
        return nullptr;
    uint32_t offset;
    std::memcpy(&offset, mStorage.get() + index * sizeof(uint32_t), sizeof offset);
    return mStringPool->at(offset);
}

// ---------------------------------------------------------------- parameterized

bool cCurvePlotData::setParameterizedSize(uint64_t count, uint64_t xSize, uint64_t ySize)
{
    if (!xSize || !ySize || !setSize(count, xSize + ySize))
        return false;
    mXSize = xSize;
    mYSize = ySize;
    mPairCapacity = count;
    resetWritePositions();
    return true;
}

bool cCurvePlotData::growPairs()
{
    const uint64_t pairSize = mXSize + mYSize;
    uint64_t capacity = mAllocatedSize / pairSize;
    const uint64_t oldCapacity = mPairCapacity;
    if (capacity <= mValueCount) {
        // No room left at the end of the block (a balanced block may still have some).
        if (!reallocate(grownSize(mAllocatedSize + (pairSize << 10), mAllocatedSize, pairSize)))
            return false;
        capacity = mAllocatedSize / pairSize;
    }
    char* base = mStorage.get();
    std::memmove(base + capacity * mXSize, base + oldCapacity * mXSize, mValueCount * mYSize);
    mPairCapacity = capacity;
    resetWritePositions();
    return true;
}

void cCurvePlotData::balanceParameterizedCurve()
{
    if (!mXSize || !mStorage || mPairCapacity == mValueCount)
        return;
    std::memmove(mStorage.get() + mValueCount * mXSize, mStorage.get() + mPairCapacity * mXSize,
                 mValueCount * mYSize);
    mPairCapacity = mValueCount;
    resetWritePositions();
}

bool cCurvePlotData::unbalanceParameterizedValues(uint64_t extra)
{
    if (!mXSize)
        return false;
    const uint64_t pairSize = mXSize + mYSize;
    uint64_t wanted = 0, bytes = 0;
    if (__builtin_add_overflow(mValueCount, extra, &wanted) || !multiply(wanted, pairSize, bytes))
        return false;
    if (wanted <= mPairCapacity)
        return true;
    const uint64_t oldCapacity = mPairCapacity;
    if (bytes > mAllocatedSize && !reallocate(bytes))
        return false;
    char* base = mStorage.get();
    const uint64_t capacity = mAllocatedSize / pairSize;
    std::memmove(base + capacity * mXSize, base + oldCapacity * mXSize, mValueCount * mYSize);
    mPairCapacity = capacity;
    resetWritePositions();
    return true;
}

// ---------------------------------------------------------------- interleaved sparse

bool cCurvePlotData::pushInterleavedRecord(const void* position, uint64_t positionSize, const char* value,
                                           uint64_t width)
{
    if (mElementSize <= positionSize)
        mElementSize = positionSize + width;
    if (!reserveForPush(mElementSize))
        return false;
    char* record = mStorage.get() + mUsedSize;
    const uint64_t room = mElementSize - positionSize;
    const uint64_t copied = std::min(room, width);
    std::memcpy(record, position, positionSize);
    std::memcpy(record + positionSize, value, copied);
    std::memset(record + positionSize + copied, 0, room - copied);
    mUsedSize += mElementSize;
    if (mValueCount)
        ++mValueCount;
    return true;
}

// ---------------------------------------------------------------- sparse with vectors

bool cCurvePlotData::setValueVectorPairSize(uint64_t count, uint64_t width)
{
    if (!width || !setSize(count, width + 8))
        return false;
    mVectorWidth = width;
    return true;
}

bool cCurvePlotData::growValueVectors()
{
    const uint64_t recordSize = mVectorWidth + 8;
    const uint64_t oldOffset = vectorPartOffset(mVectorWidth);
    if (!reallocate(grownSize(mAllocatedSize + (recordSize << 10), mAllocatedSize, recordSize)))
        return false;
    char* base = mStorage.get();
    std::memmove(base + vectorPartOffset(mVectorWidth), base + oldOffset, mValueCount * mVectorWidth);
    return true;
}

bool cCurvePlotData::pushBackValueVectorPair(uint64_t position, const char* vector, uint64_t width)
{
    if (!mVectorWidth || width != mVectorWidth)
        return false;
    if (!mStorage || mValueCount >= mAllocatedSize / (mVectorWidth + 8)) {
        if (!mGrowth || !growValueVectors())
            return false;
    }
    char* base = mStorage.get();
    std::memcpy(base + mValueCount * 8, &position, 8);
    std::memcpy(base + vectorPartOffset(width) + mValueCount * width, vector, width);
    ++mValueCount;
    mUsedSize += width + 8;
    return true;
}

bool cCurvePlotData::pushValueVectorPairLeftExtend(uint64_t position, const char* bits, uint64_t nbBits, char fill,
                                                   uint64_t targetWidth)
{
    if (targetWidth != mVectorWidth || !targetWidth)
        return false;
    if (nbBits >= targetWidth)
        return pushBackValueVectorPair(position, bits + (nbBits - targetWidth), targetWidth);
    // Logic vectors are short; longer ones take a heap buffer.
    char small[256];
    std::unique_ptr<char[]> large;
    char* vector = small;
    if (targetWidth > sizeof(small)) {
        large.reset(new char[targetWidth]);
        vector = large.get();
    }
    std::memset(vector, fill, targetWidth - nbBits);
    std::memcpy(vector + (targetWidth - nbBits), bits, nbBits);
    return pushBackValueVectorPair(position, vector, targetWidth);
}

bool cCurvePlotData::reserveValueVectorPairs(uint64_t count)
{
    if (!mVectorWidth)
        return false;
    const uint64_t recordSize = mVectorWidth + 8;
    if (mStorage && count <= mAllocatedSize / recordSize)
        return true;
    uint64_t bytes = 0;
    if (!multiply(count, recordSize, bytes))
        return false;
    const uint64_t oldOffset = mStorage ? vectorPartOffset(mVectorWidth) : 0;
    if (!reallocate(bytes))
        return false;
    char* base = mStorage.get();
    std::memmove(base + vectorPartOffset(mVectorWidth), base + oldOffset, mValueCount * mVectorWidth);
    return true;
}

bool cCurvePlotData::shrinkValueVectorPairs()
{
    if (!mVectorWidth || !mStorage)
        return false;
    const uint64_t count = mValueCount ? mValueCount : 1;
    if (count >= mAllocatedSize / (mVectorWidth + 8))
        return true;
    char* base = mStorage.get();
    std::memmove(base + count * 8, base + vectorPartOffset(mVectorWidth), mValueCount * mVectorWidth);
    return reallocate(count * (mVectorWidth + 8));
}

bool cCurvePlotData::getValueVectorPair(uint64_t index, uint64_t& position, char* buffer, uint64_t width) const
{
    if (!mStorage || width != mVectorWidth || index >= mValueCount)
        return false;
    std::memcpy(&position, mStorage.get() + index * 8, 8);
    std::memcpy(buffer, mStorage.get() + vectorPartOffset(width) + index * width, width);
    return true;
}

}  // namespace vx3
