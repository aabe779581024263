// Copies every stride-th value of width bytes into a packed target: the inner loop of all column
// extractions. Plain data only, so that it may run inside a bus-error guard.
#pragma once

#include <cstdint>
#include <cstring>

namespace vx3::stridedCopy {

template <unsigned W>
inline void copyFixed(const char* source, uint64_t stride, uint64_t count, char* target)
{
    for (uint64_t i = 0; i < count; ++i, source += stride, target += W)
        std::memcpy(target, source, W);
}

inline void copy(const char* source, uint64_t stride, unsigned width, uint64_t count, char* target)
{
    if (stride == width) {
        std::memcpy(target, source, count * width);
        return;
    }
    switch (width) {
    case 1: copyFixed<1>(source, stride, count, target); break;
    case 2: copyFixed<2>(source, stride, count, target); break;
    case 4: copyFixed<4>(source, stride, count, target); break;
    case 8: copyFixed<8>(source, stride, count, target); break;
    case 16: copyFixed<16>(source, stride, count, target); break;
    default:
        for (uint64_t i = 0; i < count; ++i, source += stride, target += width)
            std::memcpy(target, source, width);
    }
}

// Bytes spanned by count values: the last one starts at (count - 1) * stride.
inline bool spanFits(uint64_t position, uint64_t stride, unsigned width, uint64_t count, uint64_t size)
{
    if (count == 0)
        return position <= size;
    uint64_t span = 0;
    if (__builtin_mul_overflow(count - 1, stride, &span) || __builtin_add_overflow(span, width, &span) ||
        __builtin_add_overflow(span, position, &span))
        return false;
    return span <= size;
}

}  // namespace vx3::stridedCopy
