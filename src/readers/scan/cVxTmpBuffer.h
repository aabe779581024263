// A scratch area that grows on demand and is never shrunk, so that a loader allocates once for
// its largest block. Copying an object leaves the buffer behind.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace vx3 {

class cVxTmpBuffer {
public:
    cVxTmpBuffer() = default;
    cVxTmpBuffer(const cVxTmpBuffer&) {}
    cVxTmpBuffer& operator=(const cVxTmpBuffer&) { return *this; }
    cVxTmpBuffer(cVxTmpBuffer&&) noexcept = default;
    cVxTmpBuffer& operator=(cVxTmpBuffer&&) noexcept = default;

    // At least size bytes; null when the memory isn't there. The old content is not kept.
    char* getTmpBuffer(uint64_t size);
    unsigned* getTmpBufferUnsigned(uint64_t count)
    {
        return reinterpret_cast<unsigned*>(getTmpBuffer(count * sizeof(unsigned)));
    }
    // The buffer holding a copy of size bytes of data.
    char* copyToBuffer(const void* data, uint64_t size);
    uint64_t getTmpBufferSize() const { return mSize; }

private:
    struct cFree {
        void operator()(char* p) const { std::free(p); }
    };
    std::unique_ptr<char, cFree> mBuffer;
    uint64_t mSize = 0;
};

}  // namespace vx3
