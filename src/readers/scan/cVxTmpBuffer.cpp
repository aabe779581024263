#include "readers/scan/cVxTmpBuffer.h"

#include <cstring>

namespace vx3 {

char* cVxTmpBuffer::getTmpBuffer(uint64_t size)
{
    if (size <= mSize && mBuffer)
        return mBuffer.get();
    // 64-byte alignment suits both vector loads and every scalar type.
    const uint64_t rounded = (size + 63) & ~uint64_t(63);
    void* block = nullptr;
    if (rounded == 0 || posix_memalign(&block, 64, rounded) != 0)
        return nullptr;
    mBuffer.reset(static_cast<char*>(block));
    mSize = rounded;
    return mBuffer.get();
}

char* cVxTmpBuffer::copyToBuffer(const void* data, uint64_t size)
{
    char* buffer = getTmpBuffer(size ? size : 1);
    if (buffer && size)
        std::memcpy(buffer, data, size);
    return buffer;
}

}  // namespace vx3
