// The texts of string curves stored once: a curve of data_uint32_string keeps a uint32 offset
// per value into a pool of zero-terminated strings, which the curves of one file may share.
// The pool only grows, so an offset handed out stays valid.
#pragma once

#include <cstdint>
#include <limits>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vx3 {

class cStringPool {
public:
    static constexpr uint32_t npos = std::numeric_limits<uint32_t>::max();

    // The offset of text, added if it's new; npos when the pool would pass 4 GB.
    uint32_t add(std::string_view text);
    // Zero-terminated text at offset; "" for an offset past the end.
    const char* at(uint32_t offset) const { return offset < mBytes.size() ? mBytes.data() + offset : ""; }
    uint64_t getSizeInBytes() const { return mBytes.size(); }
    uint64_t getNbOfStrings() const { return mCount; }

private:
    std::vector<char> mBytes;
    // Hash of a text to the offsets of the texts with that hash.
    std::unordered_multimap<uint64_t, uint32_t> mIndex;
    uint64_t mCount = 0;
};

}  // namespace vx3
