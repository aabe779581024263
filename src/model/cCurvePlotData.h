// The values of one curve: one owned raw block with its fill state.
#pragma once

#include <complex>
#include <cstdint>
#include <cstring>
#include <memory>

#include "model/derivedCurveFunction.h"

namespace vx3 {

class cCurvePlotData : public cDerivedCurveFunction {
public:
    cCurvePlotData() = default;
    cCurvePlotData(const cCurvePlotData& other);
    cCurvePlotData& operator=(const cCurvePlotData& other);
    cCurvePlotData(cCurvePlotData&& other) noexcept;
    cCurvePlotData& operator=(cCurvePlotData&& other) noexcept;
    ~cCurvePlotData() = default;

    // Sizes
    uint64_t getDataSize() const { return mUsedSize; }
    uint64_t getAllocatedSize() const { return mAllocatedSize; }
    uint64_t getElementSize() const { return mElementSize; }
    void setElementSize(uint64_t size) { mElementSize = size; }
    // The explicit value count, else used bytes / element size, else 0.
    uint64_t getVectorSize() const;
    uint64_t getValueCount() const { return mValueCount; }
    void setValueCount(uint64_t count) { mValueCount = count; }
    bool checkHasStorage() const { return mStorage != nullptr; }
    bool getGrowthFlag() const { return mGrowth; }
    void setGrowthFlag(bool flag) { mGrowth = flag; }

    // Storage management
    void freeStorage();
    // Empties the values, keeps the block.
    void clearValues();
    // Room for count samples of elementSize bytes; the old values are dropped. False when out of memory.
    bool setSize(uint64_t count, uint64_t elementSize);
    // Grows to at least wanted bytes (twice the old size or more, a multiple of the element size),
    // keeping the used bytes.
    bool resizeStorageVariableSize(uint64_t wanted);
    // Replaces the values by a copy of count samples of elementSize bytes.
    bool assignValues(const void* data, uint64_t count, uint64_t elementSize);

    // Appends one sample; dropped silently when the block is full and the growth flag is off.
    template <typename T>
    bool pushBackValue(const T& value)
    {
        if (!reserveForPush(sizeof(T)))
            return false;
        std::memcpy(mStorage.get() + mUsedSize, &value, sizeof(T));
        mUsedSize += sizeof(T);
        if (mValueCount)
            ++mValueCount;
        return true;
    }

    // Parameterized curves: all x values first, then all y values. setParameterizedSize
    // prepares room for count pairs; pushBackValuePair fills both halves.
    bool setParameterizedSize(uint64_t count, uint64_t xSize, uint64_t ySize);
    template <typename X, typename Y>
    bool pushBackValuePair(const X& x, const Y& y)
    {
        if (mXSize != sizeof(X) || mYSize != sizeof(Y))
            return false;
        if (mValueCount >= mPairCapacity && (!mGrowth || !growPairs()))
            return false;
        std::memcpy(mStorage.get() + mValueCount * sizeof(X), &x, sizeof(X));
        std::memcpy(mStorage.get() + mPairCapacity * sizeof(X) + mValueCount * sizeof(Y), &y, sizeof(Y));
        ++mValueCount;
        mUsedSize = mValueCount * (sizeof(X) + sizeof(Y));
        return true;
    }
    template <typename X, typename Y>
    bool assignParameterizedValues(const X* xs, const Y* ys, uint64_t count)
    {
        if (!setParameterizedSize(count, sizeof(X), sizeof(Y)))
            return false;
        if (count) {
            std::memcpy(mStorage.get(), xs, count * sizeof(X));
            std::memcpy(mStorage.get() + count * sizeof(X), ys, count * sizeof(Y));
        }
        mValueCount = count;
        mUsedSize = count * (sizeof(X) + sizeof(Y));
        return true;
    }
    // Closes the gap between the x and y halves once a reader is done.
    void balanceParameterizedCurve();
    bool checkIsParameterizedLayout() const { return mXSize != 0; }
    const char* parameterizedXData() const { return mStorage.get(); }
    const char* parameterizedYData() const { return mStorage ? mStorage.get() + mPairCapacity * mXSize : nullptr; }

    // Typed views of the block (flat layout).
    char* data() { return mStorage.get(); }
    const char* data() const { return mStorage.get(); }
    double* doubleValues() { return reinterpret_cast<double*>(mStorage.get()); }
    const double* doubleValues() const { return reinterpret_cast<const double*>(mStorage.get()); }
    const float* floatValues() const { return reinterpret_cast<const float*>(mStorage.get()); }
    const std::complex<double>* doubleComplexValues() const
    {
        return reinterpret_cast<const std::complex<double>*>(mStorage.get());
    }
    const std::complex<float>* floatComplexValues() const
    {
        return reinterpret_cast<const std::complex<float>*>(mStorage.get());
    }
    const int8_t* int8Values() const { return reinterpret_cast<const int8_t*>(mStorage.get()); }
    const int16_t* int16Values() const { return reinterpret_cast<const int16_t*>(mStorage.get()); }
    const int32_t* int32Values() const { return reinterpret_cast<const int32_t*>(mStorage.get()); }
    const int64_t* int64Values() const { return reinterpret_cast<const int64_t*>(mStorage.get()); }
    const __int128* int128Values() const { return reinterpret_cast<const __int128*>(mStorage.get()); }
    const uint8_t* uint8Values() const { return reinterpret_cast<const uint8_t*>(mStorage.get()); }
    const uint16_t* uint16Values() const { return reinterpret_cast<const uint16_t*>(mStorage.get()); }
    const uint32_t* uint32Values() const { return reinterpret_cast<const uint32_t*>(mStorage.get()); }
    const uint64_t* uint64Values() const { return reinterpret_cast<const uint64_t*>(mStorage.get()); }
    const unsigned char* logicValues() const { return reinterpret_cast<const unsigned char*>(mStorage.get()); }
    const char* logicValuesChar() const { return mStorage.get(); }

private:
    bool reserveForPush(uint64_t bytes);
    bool growPairs();
    void resetWriteState();

    // malloc'ed so that a failed allocation answers false instead of throwing mid-load.
    struct cFree {
        void operator()(char* p) const;
    };
    std::unique_ptr<char, cFree> mStorage;
    uint64_t mUsedSize = 0;
    uint64_t mAllocatedSize = 0;
    uint64_t mElementSize = 8;
    uint64_t mValueCount = 0;
    bool mGrowth = false;
    // Parameterized layout: bytes of one x and one y, and the pairs the block has room for.
    uint64_t mXSize = 0;
    uint64_t mYSize = 0;
    uint64_t mPairCapacity = 0;
};

}  // namespace vx3
