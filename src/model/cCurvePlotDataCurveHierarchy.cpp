#include "model/cCurvePlotDataCurveHierarchy.h"

#include <algorithm>
#include <cctype>

#include "model/cCurvePlotVariable.h"

namespace vx3 {

using namespace curvePlotProperties;
using namespace curvePlotDataCurveHierarchy;

namespace {
bool equalNames(std::string_view a, std::string_view b, bool caseInsensitive)
{
    if (!caseInsensitive)
        return a == b;
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
           });
}

const std::string& nameOf(const std::vector<cCurvePlotVariable>& variables, unsigned index)
{
    static const std::string none;
    return index < variables.size() ? variables[index].name() : none;
}

std::string pseudoName(uint64_t count, unsigned min, unsigned max)
{
    if (count == 0)
        return std::string();
    if (count == 1)
        return "curve " + std::to_string(min);
    if (count == uint64_t(max) - min + 1)
        return "curves " + std::to_string(min) + " .. " + std::to_string(max);
    return std::to_string(count) + " curves";
}
}  // namespace

bool cHierarchyCurveNameSorter::operator()(unsigned a, unsigned b) const
{
    const int order = (*keys)[a].compare((*keys)[b]);
    return order != 0 ? order < 0 : a < b;
}

bool cCurveNameSorter::operator()(unsigned a, unsigned b) const
{
    const int order = nameOf(*variables, a).compare(nameOf(*variables, b));
    return order != 0 ? order < 0 : a < b;
}

bool cCurveNameLengthSorter::operator()(unsigned a, unsigned b) const
{
    const std::string& x = nameOf(*variables, a);
    const std::string& y = nameOf(*variables, b);
    if (x.size() != y.size())
        return x.size() < y.size();
    const int order = x.compare(y);
    return order != 0 ? order < 0 : a < b;
}

// ---------------------------------------------------------------- fields

void cCurvePlotDataCurveHierarchy::addRangeOfCurveIndices(unsigned first, unsigned last)
{
    mRanges.emplace_back(std::min(first, last), std::max(first, last));
}

void cCurvePlotDataCurveHierarchy::clear() { *this = cCurvePlotDataCurveHierarchy(); }

// ---------------------------------------------------------------- building

void cCurvePlotDataCurveHierarchy::computeCurveHierarchy(const std::vector<cCurvePlotVariable>& variables, bool isRoot,
                                                         unsigned separatorType)
{
    size_t start = 0;
    unsigned type = separatorType;
    if (isRoot) {
        clear();
    } else {
        mChildren.clear();
        mCurveIndices.clear();
        mRanges.clear();
        start = mFullName.size();
        if (type == vote_separator && mSeparatorType != no_separator)
            type = mSeparatorType;
    }
    std::vector<std::string> keys(variables.size());
    std::vector<unsigned> indices;
    indices.reserve(variables.size());
    const unsigned memberType = type == vote_separator || type == no_separator ? unsigned(any_separator) : type;
    for (unsigned i = 0; i < variables.size(); ++i) {
        std::string key = removeParenthesesFromName(variables[i].name());
        size_t length = 0;
        if (start > 0 && (key.compare(0, start, mFullName) != 0 ||
                          findSeparatorPosition(key, start, memberType, length) != start))
            continue;
        keys[i] = std::move(key);
        indices.push_back(i);
    }
    if (type == vote_separator) {
        std::vector<std::string> parts;
        parts.reserve(indices.size());
        for (unsigned i : indices)
            parts.push_back(keys[i].substr(start));
        type = chooseSeparator(parts);
    }
    std::sort(indices.begin(), indices.end(), cHierarchyCurveNameSorter{&keys});
    computeCurveHierarchyRecursive(keys, indices.data(), indices.data() + indices.size(), start, type);
}

void cCurvePlotDataCurveHierarchy::computeCurveHierarchyRecursive(const std::vector<std::string>& keys,
                                                                  const unsigned* first, const unsigned* last,
                                                                  size_t start, unsigned separatorType)
{
    mSeparatorType = separatorType;
    for (const unsigned* p = first; p != last;) {
        const std::string_view key = keys[*p];
        size_t length = 0;
        // Searching from start + 1 skips the separator that opens the level (or the name).
        const size_t position = findSeparatorPosition(key, start + 1, separatorType, length);
        std::string simple;
        if (position != std::string::npos)
            simple = computeSimpleName(key.substr(start, position - start), separatorType);
        if (position == std::string::npos || !checkIsPossibleInstanceName(simple) ||
            !checkIsPossibleCurveName(key.substr(position + length))) {
            mCurveIndices.push_back(*p++);
            continue;
        }
        // Sorted keys that share the prefix up to and with the separator are neighbours.
        const std::string_view group = key.substr(0, position + length);
        const unsigned* q = p + 1;
        while (q != last && std::string_view(keys[*q]).substr(0, group.size()) == group)
            ++q;
        const std::string fullName(key.substr(0, position));
        // "a::x" and "a:y" cut by any separator meet again in one instance.
        cCurvePlotDataCurveHierarchy& child = !mChildren.empty() && mChildren.back().mFullName == fullName
                                                  ? mChildren.back()
                                                  : pushBackChild(simple, fullName);
        child.computeCurveHierarchyRecursive(keys, p, q, position, separatorType);
        mergeLastChild();
        p = q;
    }
}

cCurvePlotDataCurveHierarchy& cCurvePlotDataCurveHierarchy::pushBackChild(const std::string& simpleName,
                                                                          const std::string& fullName)
{
    mChildren.emplace_back(simpleName, fullName, mSeparatorType);
    return mChildren.back();
}

void cCurvePlotDataCurveHierarchy::mergeChild(const cCurvePlotDataCurveHierarchy& child)
{
    auto same = std::find_if(mChildren.begin(), mChildren.end(), [&child](const cCurvePlotDataCurveHierarchy& node) {
        return node.mSimpleName == child.mSimpleName;
    });
    if (same == mChildren.end()) {
        mChildren.push_back(child);
        return;
    }
    same->mCurveIndices.insert(same->mCurveIndices.end(), child.mCurveIndices.begin(), child.mCurveIndices.end());
    same->mRanges.insert(same->mRanges.end(), child.mRanges.begin(), child.mRanges.end());
    if (same->mSubcircuitName.empty())
        same->mSubcircuitName = child.mSubcircuitName;
    for (const cCurvePlotDataCurveHierarchy& grandChild : child.mChildren)
        same->mergeChild(grandChild);
}

bool cCurvePlotDataCurveHierarchy::mergeLastChild()
{
    if (mChildren.empty())
        return false;
    const cCurvePlotDataCurveHierarchy& last = mChildren.back();
    if (!last.mChildren.empty() || last.getNumberOfCurves(false) != 1)
        return false;
    if (!last.mCurveIndices.empty())
        mCurveIndices.push_back(last.mCurveIndices.front());
    else
        mRanges.push_back(last.mRanges.front());
    mChildren.pop_back();
    return true;
}

void cCurvePlotDataCurveHierarchy::fixHierarchicalNames()
{
    const std::string separator = getSeparatorAsString(mSeparatorType);
    for (cCurvePlotDataCurveHierarchy& child : mChildren) {
        if (!separator.empty())
            child.mFullName = mFullName.empty() ? child.mSimpleName : mFullName + separator + child.mSimpleName;
        child.fixHierarchicalNames();
    }
}

cCurvePlotDataCurveHierarchy& cCurvePlotDataCurveHierarchy::insertPath(const std::string& key)
{
    cCurvePlotDataCurveHierarchy* node = this;
    for (size_t start = 0;;) {
        size_t length = 0;
        const size_t position = findSeparatorPosition(key, start + 1, node->mSeparatorType, length);
        if (position == std::string::npos)
            return *node;
        const std::string simple = computeSimpleName(std::string_view(key).substr(start, position - start),
                                                     node->mSeparatorType);
        if (!checkIsPossibleInstanceName(simple) || !checkIsPossibleCurveName(std::string_view(key).substr(position + length)))
            return *node;
        const std::string fullName = key.substr(0, position);
        auto found = std::find_if(node->mChildren.begin(), node->mChildren.end(),
                                  [&](const cCurvePlotDataCurveHierarchy& child) { return child.mFullName == fullName; });
        node = found != node->mChildren.end() ? &*found : &node->pushBackChild(simple, fullName);
        start = position;
    }
}

void cCurvePlotDataCurveHierarchy::collectCurveIndices(std::vector<bool>& present) const
{
    for (unsigned index : mCurveIndices)
        if (index < present.size())
            present[index] = true;
    for (const auto& [first, last] : mRanges)
        for (uint64_t index = first; index <= last && index < present.size(); ++index)
            present[index] = true;
    for (const cCurvePlotDataCurveHierarchy& child : mChildren)
        child.collectCurveIndices(present);
}

uint64_t cCurvePlotDataCurveHierarchy::appendExpandedVariables(const std::vector<cCurvePlotVariable>& variables,
                                                               const std::vector<unsigned>& extraIndices)
{
    std::vector<bool> present(variables.size(), false);
    collectCurveIndices(present);
    unsigned min = 0, max = 0;
    const uint64_t firstNew = computeMinMaxCurveIndices(min, max) ? uint64_t(max) + 1 : 0;
    std::vector<unsigned> added;
    for (uint64_t index = firstNew; index < variables.size(); ++index)
        added.push_back(static_cast<unsigned>(index));
    for (unsigned index : extraIndices)
        if (index < firstNew && index < present.size() && !present[index])
            added.push_back(index);
    std::sort(added.begin(), added.end());
    added.erase(std::unique(added.begin(), added.end()), added.end());
    auto keyOf = [&variables](unsigned index) { return removeParenthesesFromName(nameOf(variables, index)); };
    for (unsigned index : added) {
        const std::string key = keyOf(index);
        std::vector<unsigned>& curves = insertPath(key).mCurveIndices;
        // In name order among the curves already there, as a rebuild would place it.
        auto where = std::lower_bound(curves.begin(), curves.end(), index, [&](unsigned a, unsigned b) {
            const std::string x = a == index ? key : keyOf(a);
            const std::string y = b == index ? key : keyOf(b);
            return x != y ? x < y : a < b;
        });
        curves.insert(where, index);
    }
    defineInstanceIndices(mInstanceIndex);
    return added.size();
}

void cCurvePlotDataCurveHierarchy::sortCurveIndices(const std::vector<cCurvePlotVariable>& variables, bool byLength)
{
    if (byLength)
        std::sort(mCurveIndices.begin(), mCurveIndices.end(), cCurveNameLengthSorter{&variables});
    else
        std::sort(mCurveIndices.begin(), mCurveIndices.end(), cCurveNameSorter{&variables});
    for (cCurvePlotDataCurveHierarchy& child : mChildren)
        child.sortCurveIndices(variables, byLength);
}

unsigned cCurvePlotDataCurveHierarchy::defineInstanceIndices(unsigned start)
{
    mInstanceIndex = start++;
    for (cCurvePlotDataCurveHierarchy& child : mChildren)
        start = child.defineInstanceIndices(start);
    return start;
}

// ---------------------------------------------------------------- finding

const cCurvePlotDataCurveHierarchy* cCurvePlotDataCurveHierarchy::findInstance(std::string_view name,
                                                                               bool caseInsensitive) const
{
    const std::string key = removeParenthesesFromName(name);
    const cCurvePlotDataCurveHierarchy* node = this;
    for (size_t start = 0;;) {
        size_t length = 0;
        const size_t position = findSeparatorPosition(key, start + 1, node->mSeparatorType, length);
        const size_t end = position == std::string::npos ? key.size() : position;
        const std::string simple =
            computeSimpleName(std::string_view(key).substr(start, end - start), node->mSeparatorType);
        const cCurvePlotDataCurveHierarchy* child = node->findChildInstanceSimple(simple, caseInsensitive);
        if (!child)
            child = node->findChildInstanceFull(std::string_view(key).substr(0, end), caseInsensitive);
        if (position == std::string::npos)
            return child ? child : node;  // without an instance of that name, the last part is a curve
        if (!child)
            return nullptr;
        node = child;
        start = position;
    }
}

const cCurvePlotDataCurveHierarchy* cCurvePlotDataCurveHierarchy::findChildInstance(unsigned instanceIndex) const
{
    if (instanceIndex == mInstanceIndex)
        return this;
    if (instanceIndex < mInstanceIndex)
        return nullptr;
    // Depth-first numbering: the last child that starts at or before the index holds it.
    auto after = std::upper_bound(mChildren.begin(), mChildren.end(), instanceIndex,
                                  [](unsigned index, const cCurvePlotDataCurveHierarchy& child) {
                                      return index < child.mInstanceIndex;
                                  });
    return after == mChildren.begin() ? nullptr : std::prev(after)->findChildInstance(instanceIndex);
}

const cCurvePlotDataCurveHierarchy* cCurvePlotDataCurveHierarchy::findChildInstanceSimple(std::string_view name,
                                                                                          bool caseInsensitive) const
{
    for (const cCurvePlotDataCurveHierarchy& child : mChildren)
        if (equalNames(child.mSimpleName, name, caseInsensitive))
            return &child;
    return nullptr;
}

const cCurvePlotDataCurveHierarchy* cCurvePlotDataCurveHierarchy::findChildInstanceFull(std::string_view name,
                                                                                        bool caseInsensitive) const
{
    for (const cCurvePlotDataCurveHierarchy& child : mChildren)
        if (equalNames(child.mFullName, name, caseInsensitive))
            return &child;
    return nullptr;
}

// ---------------------------------------------------------------- counting

uint64_t cCurvePlotDataCurveHierarchy::countInstances() const
{
    uint64_t count = mChildren.size();
    for (const cCurvePlotDataCurveHierarchy& child : mChildren)
        count += child.countInstances();
    return count;
}

uint64_t cCurvePlotDataCurveHierarchy::getHierachySize() const
{
    uint64_t size = getNumberOfCurves(false) + mChildren.size();
    for (const cCurvePlotDataCurveHierarchy& child : mChildren)
        size += child.getHierachySize();
    return size;
}

uint64_t cCurvePlotDataCurveHierarchy::getNumberOfCurves(bool recursive) const
{
    uint64_t count = mCurveIndices.size();
    for (const auto& [first, last] : mRanges)
        count += uint64_t(last) - first + 1;
    if (recursive)
        for (const cCurvePlotDataCurveHierarchy& child : mChildren)
            count += child.getNumberOfCurves(true);
    return count;
}

bool cCurvePlotDataCurveHierarchy::computeMinMaxCurveIndices(unsigned& min, unsigned& max) const
{
    bool found = false;
    auto take = [&](unsigned low, unsigned high) {
        min = found ? std::min(min, low) : low;
        max = found ? std::max(max, high) : high;
        found = true;
    };
    for (unsigned index : mCurveIndices)
        take(index, index);
    for (const auto& [first, last] : mRanges)
        take(first, last);
    for (const cCurvePlotDataCurveHierarchy& child : mChildren) {
        unsigned low = 0, high = 0;
        if (child.computeMinMaxCurveIndices(low, high))
            take(low, high);
    }
    return found;
}

uint64_t cCurvePlotDataCurveHierarchy::curveAt(uint64_t& remaining) const
{
    if (remaining < mCurveIndices.size())
        return mCurveIndices[remaining];
    remaining -= mCurveIndices.size();
    for (const auto& [first, last] : mRanges) {
        const uint64_t count = uint64_t(last) - first + 1;
        if (remaining < count)
            return first + remaining;
        remaining -= count;
    }
    for (const cCurvePlotDataCurveHierarchy& child : mChildren) {
        const uint64_t curve = child.curveAt(remaining);
        if (curve != npos)
            return curve;
    }
    return npos;
}

uint64_t cCurvePlotDataCurveHierarchy::getCurveIndexFromHierarchyIndexRecursive(uint64_t index) const
{
    return curveAt(index);
}

std::string cCurvePlotDataCurveHierarchy::getPseudoName() const
{
    unsigned min = 0, max = 0;
    bool found = false;
    for (unsigned index : mCurveIndices) {
        min = found ? std::min(min, index) : index;
        max = found ? std::max(max, index) : index;
        found = true;
    }
    for (const auto& [first, last] : mRanges) {
        min = found ? std::min(min, first) : first;
        max = found ? std::max(max, last) : last;
        found = true;
    }
    return pseudoName(getNumberOfCurves(false), min, max);
}

std::string cCurvePlotDataCurveHierarchy::getPseudoName(const std::vector<unsigned>& indices)
{
    if (indices.empty())
        return std::string();
    const auto [min, max] = std::minmax_element(indices.begin(), indices.end());
    return pseudoName(indices.size(), *min, *max);
}

bool cCurvePlotDataCurveHierarchy::getInstanceProperty(unsigned instanceIndex, unsigned property,
                                                       std::string& value) const
{
    const cCurvePlotDataCurveHierarchy* node = findChildInstance(instanceIndex);
    if (!node)
        return false;
    switch (property) {
    case prop_instance_simple_name: value = node->mSimpleName; return true;
    case prop_instance_full_name: value = node->mFullName; return true;
    case prop_instance_subcircuit_name: value = node->mSubcircuitName; return true;
    case prop_instance_separator: value = getSeparatorAsString(node->mSeparatorType); return true;
    case prop_instance_number_of_curves: value = std::to_string(node->getNumberOfCurves(true)); return true;
    case prop_instance_number_of_instances: value = std::to_string(node->countInstances()); return true;
    default: return false;
    }
}

}  // namespace vx3
