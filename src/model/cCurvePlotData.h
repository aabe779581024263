// The values of one curve: one owned raw block with its fill state.
//
// Layouts of the block, chosen by the data type:
//  - flat: the samples in order (scalars, int128, complex pairs of floats or doubles);
//  - parameterized: all x values, then all y values, filled through two write positions; the
//    y half moves up when the block grows; balanceParameterizedCurve closes the gap at the end;
//  - interleaved sparse: records of an x index or x value followed by the value;
//  - sparse with vectors: all 64-bit positions, then the value vectors, the vector part starting
//    at (allocated size / (width + 8)) * 8;
//  - strings: zero-terminated strings one after the other, or fixed-size strings.
// Everybody who wants the number of values asks getVectorSize.
#pragma once

#include <complex>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

#include "base/cLoggedException.h"
#include "model/cStringPool.h"
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

    // ---- Sizes
    uint64_t getDataSize() const { return mUsedSize; }
    uint64_t getAllocatedSize() const { return mAllocatedSize; }
    uint64_t getElementSize() const { return mElementSize; }
    void setElementSize(uint64_t size) { mElementSize = size; }
    // The explicit value count, else used bytes / element size, else 0.
    uint64_t getVectorSize() const;
    uint64_t getValueCount() const { return mValueCount; }
    void setValueCount(uint64_t count) { mValueCount = count; }
    // Declares count samples as present after a loader wrote them straight into the block.
    void setUsedValueCount(uint64_t count);
    bool checkHasStorage() const { return mStorage != nullptr; }
    bool getGrowthFlag() const { return mGrowth; }
    void setGrowthFlag(bool flag) { mGrowth = flag; }

    // ---- Storage management
    void freeStorage();
    // Empties the values, keeps the block and its layout.
    void clearValues();
    // Room for count samples of elementSize bytes; the old values are dropped. False when out of memory.
    bool setSize(uint64_t count, uint64_t elementSize);
    // Grows to at least wanted bytes (twice the old size or more, a multiple of the element size),
    // keeping the used bytes; the write positions are reset.
    bool resizeStorageVariableSize(uint64_t wanted);
    // Replaces the values by a copy of count samples of elementSize bytes.
    bool assignValues(const void* data, uint64_t count, uint64_t elementSize);

    // ---- Flat
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
    template <typename T>
    bool pushBackValueVector(const T* values, uint64_t count)
    {
        if (!count)
            return true;
        if (!reserveForPush(count * sizeof(T)))
            return false;
        std::memcpy(mStorage.get() + mUsedSize, values, count * sizeof(T));
        mUsedSize += count * sizeof(T);
        if (mValueCount)
            mValueCount += count;
        return true;
    }
    // Appends a copy of the last sample of a flat block (the block grows if it must); false for
    // an empty or parameterized block.
    bool repeatPreviousValue();
    // Inserts a sample before index (index == count appends). Throws when index is past the end
    // or the sample's width isn't the block's element size.
    template <typename T>
    void insertValue(uint64_t index, const T& value)
    {
        const uint64_t count = getVectorSize();
        if (index > count || sizeof(T) != mElementSize || checkIsParameterizedLayout())
            throw cLoggedException("cCurvePlotData::insertValue");
        const bool growth = mGrowth;
        mGrowth = true;
        const bool ok = reserveForPush(sizeof(T));
        mGrowth = growth;
        if (!ok)
            throw cLoggedException("cCurvePlotData::insertValue");
        char* at = mStorage.get() + index * sizeof(T);
        std::memmove(at + sizeof(T), at, (count - index) * sizeof(T));
        std::memcpy(at, &value, sizeof(T));
        mUsedSize += sizeof(T);
        if (mValueCount)
            ++mValueCount;
    }

    // ---- Strings
    // data_string: appends text and its terminating zero.
    bool pushBackStringValue(std::string_view text);
    // Fixed-size strings: text cut or padded with zeros to size bytes.
    bool pushBackConstantSizeString(std::string_view text, uint64_t size);
    // The index-th zero-terminated string of a data_string block (a linear walk); null past the end.
    const char* getStringValue(uint64_t index) const;
    // data_uint32_string: one uint32 offset per value into a string pool, shared with the other
    // curves of the file when the reader hands one in (a pool of its own is made otherwise).
    void setStringPool(std::shared_ptr<cStringPool> pool) { mStringPool = std::move(pool); }
    const std::shared_ptr<cStringPool>& getStringPool() const { return mStringPool; }
    bool pushBackUint32StringValue(std::string_view text);
    // The text of value index; null past the end or without a pool.
    const char* getUint32StringValue(uint64_t index) const;

    // ---- Parameterized: all x values first, then all y values.
    bool setParameterizedSize(uint64_t count, uint64_t xSize, uint64_t ySize);
    template <typename X, typename Y>
    bool pushBackValuePair(const X& x, const Y& y)
    {
        if (mXSize != sizeof(X) || mYSize != sizeof(Y))
            return false;
        if (mValueCount >= mPairCapacity && (!mGrowth || !growPairs()))
            return false;
        std::memcpy(mXWrite, &x, sizeof(X));
        std::memcpy(mYWrite, &y, sizeof(Y));
        mXWrite += sizeof(X);
        mYWrite += sizeof(Y);
        ++mValueCount;
        mUsedSize += sizeof(X) + sizeof(Y);
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
        setUsedValueCount(count);
        return true;
    }
    // Closes the gap between the x and y halves once a reader is done.
    void balanceParameterizedCurve();
    // Opens room for extra more pairs behind the present ones (a reader that goes on filling).
    bool unbalanceParameterizedValues(uint64_t extra);
    bool checkIsParameterizedLayout() const { return mXSize != 0; }
    uint64_t getParameterizedCapacity() const { return mPairCapacity; }
    uint64_t getParameterizedXSize() const { return mXSize; }
    uint64_t getParameterizedYSize() const { return mYSize; }
    char* parameterizedXData() { return mStorage.get(); }
    char* parameterizedYData() { return mStorage ? mStorage.get() + mPairCapacity * mXSize : nullptr; }
    const char* parameterizedXData() const { return mStorage.get(); }
    const char* parameterizedYData() const { return mStorage ? mStorage.get() + mPairCapacity * mXSize : nullptr; }

    // ---- Interleaved sparse: records of position and value, element size = both together.
    template <typename X, typename Y>
    bool pushBackInterleavedValuePair(const X& x, const Y& y)
    {
        if (!reserveForPush(sizeof(X) + sizeof(Y)))
            return false;
        std::memcpy(mStorage.get() + mUsedSize, &x, sizeof(X));
        std::memcpy(mStorage.get() + mUsedSize + sizeof(X), &y, sizeof(Y));
        mUsedSize += sizeof(X) + sizeof(Y);
        if (mValueCount)
            ++mValueCount;
        return true;
    }
    // A position (uint32_t or uint64_t) and element size - position size bytes of logic
    // characters: the first width of them from logic, the rest zero.
    template <typename P>
    bool pushBackInterleavedSparse4StateValueLogicPair(P position, const char* logic, uint64_t width)
    {
        return pushInterleavedRecord(&position, sizeof(P), logic, width);
    }
    template <typename P>
    bool pushBackInterleavedSparseValueVectorPair(P position, const char* vector, uint64_t width)
    {
        return pushInterleavedRecord(&position, sizeof(P), vector, width);
    }

    // ---- Sparse with vectors: 64-bit positions first, then vectors of width bytes each.
    bool setValueVectorPairSize(uint64_t count, uint64_t width);
    bool pushBackValueVectorPair(uint64_t position, const char* vector, uint64_t width);
    // A vector of bits characters, extended on the left with fill up to the curve's width
    // (a narrower value of a wider logic vector).
    bool pushValueVectorPairLeftExtend(uint64_t position, const char* bits, uint64_t nbBits, char fill,
                                       uint64_t targetWidth);
    bool getValueVectorPair(uint64_t index, uint64_t& position, char* buffer, uint64_t width) const;
    // Records the block has room for; reserveValueVectorPairs grows it to at least count of
    // them and shrinkValueVectorPairs gives back what is unused, both keeping the values (a
    // reader that appends many short-lived blocks chooses its own growth).
    uint64_t getValueVectorPairCapacity() const { return mVectorWidth ? mAllocatedSize / (mVectorWidth + 8) : 0; }
    bool reserveValueVectorPairs(uint64_t count);
    bool shrinkValueVectorPairs();
    uint64_t getValueVectorWidth() const { return mVectorWidth; }
    const uint64_t* valueVectorPositions() const { return reinterpret_cast<const uint64_t*>(mStorage.get()); }
    const char* valueVectorData() const { return mStorage ? mStorage.get() + vectorPartOffset(mVectorWidth) : nullptr; }
    char* valueVectorData() { return mStorage ? mStorage.get() + vectorPartOffset(mVectorWidth) : nullptr; }

    // ---- Logic data (see cCurvePlotDataLogic.cpp): the bytes of the states, wherever the layout
    // of dataType keeps them.
    // The index range 0 to 8 of a 9-level enumeration becomes the letters "UX01ZWLH-".
    bool convertEnum9LevelLogicToLogic(unsigned dataType);
    // Writers differ in the case of the undefined and floating states: "X" and "Z" of 2- and
    // 4-state logic are stored as "x" and "z", the one form that comparisons and texts expect.
    void replaceDigitalXRepresentation(unsigned dataType);
    // The state in force at x (the last change at or before it): its bytes and width. xs and
    // count describe the section's x vector for flat logic; positions of sparse records count
    // in units of positionScale. False before the first change or without logic data.
    bool findLogicValueAt(unsigned dataType, double x, const double* xs, uint64_t count, double positionScale,
                          const char*& bits, uint64_t& width) const;
    // Drops the inner samples of runs of equal values in a parameterized block; what remains
    // draws the same line (the ends of each run stay; logic keeps each run's first sample and
    // the last sample). False for another layout.
    bool removeConstantRuns(bool logic);

    // ---- Typed views of the block (flat layout).
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
    bool growValueVectors();
    bool pushInterleavedRecord(const void* position, uint64_t positionSize, const char* value, uint64_t width);
    void resetWriteState();
    void resetWritePositions();
    static uint64_t vectorPartOffset(uint64_t width, uint64_t allocated) { return allocated / (width + 8) * 8; }
    uint64_t vectorPartOffset(uint64_t width) const { return vectorPartOffset(width, mAllocatedSize); }
    // The block keeps its bytes and may move.
    bool reallocate(uint64_t bytes);

    // From curveMemory: a failed allocation answers false instead of throwing mid-load, and a
    // released large block goes back to the system.
    struct cFree {
        void operator()(char* p) const;
    };
    std::unique_ptr<char, cFree> mStorage;
    uint64_t mUsedSize = 0;
    uint64_t mAllocatedSize = 0;
    uint64_t mElementSize = 8;
    uint64_t mValueCount = 0;
    bool mGrowth = false;
    // Parameterized layout: bytes of one x and one y, the pairs the block has room for, and the
    // places where the next pair goes.
    uint64_t mXSize = 0;
    uint64_t mYSize = 0;
    uint64_t mPairCapacity = 0;
    char* mXWrite = nullptr;
    char* mYWrite = nullptr;
    // Sparse with vectors: bytes of one vector (0: another layout).
    uint64_t mVectorWidth = 0;
    std::shared_ptr<cStringPool> mStringPool;
};

}  // namespace vx3
