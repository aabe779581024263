#include "model/cStringPool.h"

#include <cstring>
#include <functional>

namespace vx3 {

uint32_t cStringPool::add(std::string_view text)
{
    // A text holding a zero would read back cut short: it is stored up to its first zero.
    text = text.substr(0, text.find('\0'));
    const uint64_t hash = std::hash<std::string_view>()(text);
    const auto [first, last] = mIndex.equal_range(hash);
    for (auto it = first; it != last; ++it) {
        const char* stored = mBytes.data() + it->second;
        if (std::strlen(stored) == text.size() && std::memcmp(stored, text.data(), text.size()) == 0)
            return it->second;
    }
    const uint64_t offset = mBytes.size();
    if (offset + text.size() + 1 >= npos)
        return npos;
    mBytes.insert(mBytes.end(), text.begin(), text.end());
    mBytes.push_back('\0');
    mIndex.emplace(hash, static_cast<uint32_t>(offset));
    ++mCount;
    return static_cast<uint32_t>(offset);
}

}  // namespace vx3
