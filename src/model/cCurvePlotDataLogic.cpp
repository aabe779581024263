// Logic states in the blocks of digital curves: where each layout keeps the state bytes, the
// clean-up after a load, the state in force at an x position, and dropping repeated samples.
#include <algorithm>
#include <cstring>

#include "model/cCurvePlotData.h"
#include "model/dataType.h"

namespace vx3 {

using namespace curvePlotProperties;

namespace {
enum class cLogicLayout { none, flat, parameterized, interleaved, vectors };

struct cLogicForm {
    cLogicLayout layout = cLogicLayout::none;
    uint64_t positionSize = 0;  // interleaved records
    bool fourState = false;     // states written as 0 1 x z (X and Z are folded to lower case)
    bool nineLevel = false;
};

cLogicForm logicFormOf(unsigned dataType)
{
    switch (dataType) {
    case nine_level_logic: return {cLogicLayout::flat, 0, false, true};
    case parameterized_9_level_logic: return {cLogicLayout::parameterized, 0, false, true};
    case data_double_parameterized_logic_2_state:
    case data_double_parameterized_logic_4_state:
        return {cLogicLayout::parameterized, 0, true, false};
    case data_double_parameterized_logic_256_state: return {cLogicLayout::parameterized, 0, false, false};
    case interleaved_sparse_logic:
    case interleaved_sparse_logic_vector:
    case interleaved_sparse_4_state_logic_vector:
        return {cLogicLayout::interleaved, 8, true, false};
    case interleaved_sparse_logic_with_strength: return {cLogicLayout::interleaved, 8, false, false};
    case interleaved_sparse_4_state_logic_vector_32b_index: return {cLogicLayout::interleaved, 4, true, false};
    case sparse_logic_vector_2_state: case sparse_logic_vector_4_state: return {cLogicLayout::vectors, 0, true, false};
    case sparse_logic_vector_256_state: return {cLogicLayout::vectors, 0, false, false};
    default: return {};
    }
}

uint64_t readPosition(const char* record, uint64_t size)
{
    if (size == 4) {
        uint32_t position;
        std::memcpy(&position, record, 4);
        return position;
    }
    uint64_t position;
    std::memcpy(&position, record, 8);
    return position;
}
}  // namespace

bool cCurvePlotData::convertEnum9LevelLogicToLogic(unsigned dataType)
{
    const cLogicForm form = logicFormOf(dataType);
    if (!form.nineLevel || !mStorage)
        return false;
    static const char kLevels[] = "UX01ZWLH-";
    const uint64_t count = getVectorSize();
    unsigned char* states = reinterpret_cast<unsigned char*>(
        form.layout == cLogicLayout::parameterized ? parameterizedYData() : mStorage.get());
    const uint64_t stride = form.layout == cLogicLayout::parameterized ? mYSize : 1;
    if (!stride)
        return false;
    // Bytes that already are characters stay: a reader may deliver either form.
    for (uint64_t i = 0; i < count; ++i)
        if (states[i * stride] < 9)
            states[i * stride] = static_cast<unsigned char>(kLevels[states[i * stride]]);
    return true;
}

void cCurvePlotData::replaceDigitalXRepresentation(unsigned dataType)
{
    const cLogicForm form = logicFormOf(dataType);
    if (!form.fourState || !mStorage)
        return;
    auto fold = [](char* bytes, uint64_t size) {
        for (uint64_t i = 0; i < size; ++i)
            if (bytes[i] == 'X' || bytes[i] == 'Z')
                bytes[i] = static_cast<char>(bytes[i] + 32);
    };
    const uint64_t count = getVectorSize();
    switch (form.layout) {
    case cLogicLayout::parameterized:
        fold(parameterizedYData(), count * mYSize);
        break;
    case cLogicLayout::interleaved:
        if (mElementSize > form.positionSize)
            for (uint64_t i = 0; i < count; ++i)
                fold(mStorage.get() + i * mElementSize + form.positionSize, mElementSize - form.positionSize);
        break;
    case cLogicLayout::vectors:
        fold(mStorage.get() + vectorPartOffset(mVectorWidth), count * mVectorWidth);
        break;
    default:
        break;
    }
}

bool cCurvePlotData::findLogicValueAt(unsigned dataType, double x, const double* xs, uint64_t xCount,
                                      double positionScale, const char*& bits, uint64_t& width) const
{
    const cLogicForm form = logicFormOf(dataType);
    const uint64_t count = getVectorSize();
    if (!mStorage || count == 0 || form.layout == cLogicLayout::none)
        return false;
    if (!(positionScale > 0))
        positionScale = 1;
    // Index of the last sample at or before x, or count when there is none.
    auto lastAtOrBefore = [count](auto&& positionAt, double target) {
        uint64_t low = 0, high = count;  // the answer + 1 lies in [low, high]
        while (low < high) {
            const uint64_t middle = low + (high - low) / 2;
            if (positionAt(middle) <= target)
                low = middle + 1;
            else
                high = middle;
        }
        return low == 0 ? count : low - 1;
    };
    uint64_t index = count;
    switch (form.layout) {
    case cLogicLayout::flat: {
        if (!xs)
            return false;
        const uint64_t n = std::min(count, xCount);
        index = lastAtOrBefore([xs](uint64_t i) { return xs[i]; }, x);
        if (index >= n)
            return false;
        bits = mStorage.get() + index;
        width = 1;
        return true;
    }
    case cLogicLayout::parameterized: {
        const double* px = reinterpret_cast<const double*>(parameterizedXData());
        if (mXSize != sizeof(double))
            return false;
        index = lastAtOrBefore([px](uint64_t i) { return px[i]; }, x);
        if (index >= count)
            return false;
        bits = parameterizedYData() + index * mYSize;
        width = mYSize;
        return true;
    }
    case cLogicLayout::interleaved: {
        if (mElementSize <= form.positionSize)
            return false;
        const char* base = mStorage.get();
        const uint64_t size = mElementSize, positionSize = form.positionSize;
        index = lastAtOrBefore(
            [=](uint64_t i) { return static_cast<double>(readPosition(base + i * size, positionSize)) * positionScale; },
            x);
        if (index >= count)
            return false;
        bits = base + index * size + positionSize;
        width = size - positionSize;
        // A single state padded with zeros is one character wide.
        while (width > 1 && bits[width - 1] == 0)
            --width;
        return true;
    }
    case cLogicLayout::vectors: {
        const uint64_t* positions = valueVectorPositions();
        index = lastAtOrBefore([=](uint64_t i) { return static_cast<double>(positions[i]) * positionScale; }, x);
        if (index >= count)
            return false;
        bits = valueVectorData() + index * mVectorWidth;
        width = mVectorWidth;
        return true;
    }
    default:
        return false;
    }
}

bool cCurvePlotData::removeConstantRuns(bool logic)
{
    if (!mXSize || !mStorage)
        return false;
    const uint64_t count = mValueCount;
    if (count < 3)
        return true;
    char* xs = parameterizedXData();
    char* ys = parameterizedYData();
    const uint64_t xSize = mXSize, ySize = mYSize;
    auto same = [ys, ySize](uint64_t a, uint64_t b) { return std::memcmp(ys + a * ySize, ys + b * ySize, ySize) == 0; };
    uint64_t kept = 0;
    for (uint64_t i = 0; i < count; ++i) {
        const bool first = i == 0, last = i + 1 == count;
        // Analog: the two ends of a run stay, so that the line between runs keeps its slope.
        // Logic: a state holds until the next change, so its first sample says everything.
        const bool keep = first || last || !same(i, i - 1) || (!logic && !same(i, i + 1));
        if (!keep)
            continue;
        if (kept != i) {
            std::memmove(xs + kept * xSize, xs + i * xSize, xSize);
            std::memmove(ys + kept * ySize, ys + i * ySize, ySize);
        }
        ++kept;
    }
    mValueCount = kept;
    mUsedSize = kept * (xSize + ySize);
    balanceParameterizedCurve();
    resetWritePositions();
    return true;
}

}  // namespace vx3
