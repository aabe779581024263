#include "model/cVariableNameIndex.h"

#include <algorithm>

#include "base/cVxString.h"
#include "model/cCurvePlotVariable.h"

namespace vx3 {

std::string cVariableNameIndex::toDotted(std::string_view name)
{
    std::string result(name);
    for (char& c : result)
        if (c == '/' || c == ':')
            c = '.';
    return result;
}

std::string cVariableNameIndex::removeClosing(std::string_view name)
{
    std::string result(name);
    if (!result.empty() && (result.back() == ']' || result.back() == '>')) {
        const char open = result.back() == ']' ? '[' : '<';
        const size_t position = result.rfind(open);
        if (position != std::string::npos && position > 0)
            result.erase(position);
    }
    while (result.size() > 1 && (result.back() == '.' || result.back() == '/' || result.back() == ':'))
        result.pop_back();
    return result;
}

std::string cVariableNameIndex::makeKey(key_kind kind, std::string_view name)
{
    switch (kind) {
    case exact:
        return std::string(name);
    case lower:
        return vxString::to_lower(name);
    case stripped:
        return cCurvePlotVariable::stripName(name);
    case stripped_lower:
        return vxString::to_lower(cCurvePlotVariable::stripName(name));
    case dotted:
        return toDotted(name);
    case dotted_lower:
        return vxString::to_lower(toDotted(name));
    case dotted_stripped:
        return toDotted(cCurvePlotVariable::stripName(name));
    case dotted_stripped_lower:
        return vxString::to_lower(toDotted(cCurvePlotVariable::stripName(name)));
    case closing:
        return removeClosing(name);
    default:
        return std::string(name);
    }
}

std::string cVariableNameIndex::makeQueryKey(key_kind kind, std::string_view query)
{
    switch (kind) {
    case lower:
    case stripped_lower:
        return vxString::to_lower(query);
    case dotted:
    case dotted_stripped:
        return toDotted(query);
    case dotted_lower:
    case dotted_stripped_lower:
        return vxString::to_lower(toDotted(query));
    default:
        return std::string(query);
    }
}

void cVariableNameIndex::invalidate()
{
    for (cTable& table : mTables)
        table = cTable();
}

void cVariableNameIndex::update(key_kind kind, uint64_t count, const cNameAt& nameAt)
{
    cTable& table = mTables[kind];
    if (count < table.covered)  // names went away without an invalidate: start again
        table = cTable();
    if (table.covered == count)
        return;
    if (table.covered == 0) {
        table.sorted.reserve(count);
        for (uint64_t i = 0; i < count; ++i)
            table.sorted.emplace_back(hashKey(makeKey(kind, nameAt(i))), i);
        std::sort(table.sorted.begin(), table.sorted.end());
        table.covered = count;
        return;
    }
    // Names added since the build go to a hashed tail, merged once it is as large as the sorted
    // part: a reader that looks up and appends in turn stays amortised O(log n) per name.
    for (uint64_t i = table.covered; i < count; ++i)
        table.tail.emplace(hashKey(makeKey(kind, nameAt(i))), i);
    table.covered = count;
    if (table.tail.size() > 1024 && table.tail.size() > table.sorted.size()) {
        const size_t middle = table.sorted.size();
        table.sorted.insert(table.sorted.end(), table.tail.begin(), table.tail.end());
        std::sort(table.sorted.begin() + static_cast<std::ptrdiff_t>(middle), table.sorted.end());
        std::inplace_merge(table.sorted.begin(), table.sorted.begin() + static_cast<std::ptrdiff_t>(middle),
                           table.sorted.end());
        table.tail.clear();
    }
}

uint64_t cVariableNameIndex::findFirst(key_kind kind, const std::string& key, uint64_t start, uint64_t count,
                                       const cNameAt& nameAt, const cAccept& accept)
{
    if (start >= count)
        return npos;
    update(kind, count, nameAt);
    const cTable& table = mTables[kind];
    const uint64_t hash = hashKey(key);
    // Entries of one hash are in index order, so the first verified one is the first hit.
    auto it = std::lower_bound(table.sorted.begin(), table.sorted.end(), std::make_pair(hash, start));
    for (; it != table.sorted.end() && it->first == hash; ++it)
        if (makeKey(kind, nameAt(it->second)) == key && (!accept || accept(it->second)))
            return it->second;
    // The tail holds only indices above all of the sorted part; its order is arbitrary.
    uint64_t best = npos;
    const auto range = table.tail.equal_range(hash);
    for (auto entry = range.first; entry != range.second; ++entry)
        if (entry->second >= start && entry->second < best && makeKey(kind, nameAt(entry->second)) == key &&
            (!accept || accept(entry->second)))
            best = entry->second;
    return best;
}

std::vector<uint64_t> cVariableNameIndex::findAll(key_kind kind, const std::string& key, uint64_t count,
                                                  const cNameAt& nameAt)
{
    std::vector<uint64_t> result;
    if (!count)
        return result;
    update(kind, count, nameAt);
    const cTable& table = mTables[kind];
    const uint64_t hash = hashKey(key);
    auto it = std::lower_bound(table.sorted.begin(), table.sorted.end(), std::make_pair(hash, uint64_t(0)));
    for (; it != table.sorted.end() && it->first == hash; ++it)
        if (makeKey(kind, nameAt(it->second)) == key)
            result.push_back(it->second);
    const size_t sortedHits = result.size();
    const auto range = table.tail.equal_range(hash);
    for (auto entry = range.first; entry != range.second; ++entry)
        if (makeKey(kind, nameAt(entry->second)) == key)
            result.push_back(entry->second);
    std::sort(result.begin() + static_cast<std::ptrdiff_t>(sortedHits), result.end());
    return result;
}

}  // namespace vx3
