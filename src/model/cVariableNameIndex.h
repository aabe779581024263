// Hash lookup of curve names for the passes of the name search. Built lazily per kind of key;
// curves appended after a build are picked up incrementally, renames and removals need invalidate().
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace vx3 {

class cVariableNameIndex {
public:
    static constexpr uint64_t npos = std::numeric_limits<uint64_t>::max();

    enum key_kind : unsigned {
        exact,
        lower,
        stripped,
        stripped_lower,
        dotted,
        dotted_lower,
        dotted_stripped,
        dotted_stripped_lower,
        closing,  // name without a bus or hierarchy ending
        kNbOfKeyKinds
    };

    // The key under which a curve of that name is filed.
    static std::string makeKey(key_kind kind, std::string_view name);
    // The query side: the same case folding and separator normalisation, never stripping.
    static std::string makeQueryKey(key_kind kind, std::string_view query);
    static std::string toDotted(std::string_view name);
    static std::string removeClosing(std::string_view name);

    using cNameAt = std::function<const std::string&(uint64_t)>;
    using cAccept = std::function<bool(uint64_t)>;

    // First index at or after start whose key of this kind equals key and that accept allows;
    // npos when none. count is the current number of names, nameAt reads one.
    uint64_t findFirst(key_kind kind, const std::string& key, uint64_t start, uint64_t count, const cNameAt& nameAt,
                       const cAccept& accept);
    // All such indices in ascending order.
    std::vector<uint64_t> findAll(key_kind kind, const std::string& key, uint64_t count, const cNameAt& nameAt);

    void invalidate();
    bool checkIsBuilt(key_kind kind) const { return mTables[kind].covered != 0 || !mTables[kind].sorted.empty(); }

private:
    struct cTable {
        std::vector<std::pair<uint64_t, uint64_t>> sorted;  // (hash, index), sorted
        std::unordered_multimap<uint64_t, uint64_t> tail;   // hash -> index, appended since the last merge
        uint64_t covered = 0;                               // names 0 .. covered-1 are filed
    };
    void update(key_kind kind, uint64_t count, const cNameAt& nameAt);
    static uint64_t hashKey(std::string_view key) { return std::hash<std::string_view>()(key); }

    cTable mTables[kNbOfKeyKinds];
};

}  // namespace vx3
