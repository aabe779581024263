#include "treegrid/wxTreeGridExpanderHandler.h"

#include <algorithm>

#include "base/cLoggedException.h"

namespace vx3 {

const wxTreeGridExpander& wxTreeGridExpanderHandler::getExpander(unsigned index) const
{
    if (index >= mExpanders.size())
        throw cLoggedException("wxTreeGridExpanderHandler::getExpander : index " + std::to_string(index) +
                               " out of range");
    return mExpanders[index];
}

void wxTreeGridExpanderHandler::clearExpanders()
{
    mExpanders.clear();
    mSpans.clear();
    mSpansValid = false;
    mRowCount = 0;
    mCursorSpan = npos;
}

void wxTreeGridExpanderHandler::buildExpanders(unsigned rowCount, const std::vector<bool>& defaultStates)
{
    clearExpanders();
    mRowCount = rowCount;
    if (mExpanderLevels > 0 && rowCount > 1)
        createExpandersRecursive(0, 0, rowCount, npos, defaultStates);
}

std::string wxTreeGridExpanderHandler::makeStateKey(unsigned effectiveRow, unsigned level)
{
    std::string key;
    for (unsigned l = 0; l <= level; ++l) {
        key += getExpanderText(effectiveRow, l);
        key += '\x1f';
    }
    return key;
}

void wxTreeGridExpanderHandler::createExpandersRecursive(unsigned level, unsigned firstRow, unsigned lastRow,
                                                         unsigned parent, const std::vector<bool>& defaultStates)
{
    if (level >= mExpanderLevels || lastRow - firstRow < 2)
        return;
    const unsigned indent = parent == npos ? 0 : mExpanders[parent].indentLevel + 1;
    unsigned previousSibling = npos;
    unsigned runStart = firstRow;
    std::string runText = getExpanderText(firstRow, level);
    for (unsigned row = firstRow + 1; row <= lastRow; ++row) {
        std::string text;
        if (row < lastRow) {
            text = getExpanderText(row, level);
            if (text == runText)
                continue;
        }
        const unsigned runEnd = row;
        if (runStart == firstRow && runEnd == lastRow) {
            // The whole range is one run: a level with a single branch says nothing, so it is not
            // shown and its children hang from the parent directly.
            createExpandersRecursive(level + 1, runStart, runEnd, parent, defaultStates);
        } else if (runEnd - runStart >= 2) {
            wxTreeGridExpander expander;
            expander.firstRow = runStart;
            expander.level = level;
            expander.nbOfRows = runEnd - runStart;
            expander.indentLevel = indent;
            expander.parent = parent;
            expander.previousIdentical = previousSibling;
            if (level < mLevelStates.size() && mLevelStates[level] != 0)
                expander.expanded = mLevelStates[level] == 2;
            else if (level < defaultStates.size())
                expander.expanded = defaultStates[level];
            else
                expander.expanded = getModelDefaultExpanded(runStart, level);
            if (!mRememberedStates.empty()) {
                const auto found = mRememberedStates.find(makeStateKey(runStart, level));
                if (found != mRememberedStates.end())
                    expander.expanded = found->second;
            }
            const unsigned index = unsigned(mExpanders.size());
            if (previousSibling != npos)
                mExpanders[previousSibling].nextIdentical = index;
            previousSibling = index;
            mExpanders.push_back(expander);
            createExpandersRecursive(level + 1, runStart, runEnd, index, defaultStates);
        }
        runStart = row;
        runText = std::move(text);
    }
}

unsigned wxTreeGridExpanderHandler::findExpanderAt(unsigned effectiveRow, unsigned level) const
{
    auto it = std::lower_bound(mExpanders.begin(), mExpanders.end(), effectiveRow,
                               [](const wxTreeGridExpander& e, unsigned row) { return e.firstRow < row; });
    for (; it != mExpanders.end() && it->firstRow == effectiveRow; ++it)
        if (it->level == level)
            return unsigned(it - mExpanders.begin());
    return npos;
}

unsigned wxTreeGridExpanderHandler::findDeepestExpanderContainingRow(unsigned effectiveRow) const
{
    // The last expander starting at or before the row; its ancestors are the only candidates.
    auto it = std::upper_bound(mExpanders.begin(), mExpanders.end(), effectiveRow,
                               [](unsigned row, const wxTreeGridExpander& e) { return row < e.firstRow; });
    if (it == mExpanders.begin())
        return npos;
    return findExpanderIndexContainingRowBackward(effectiveRow, unsigned(it - mExpanders.begin()) - 1);
}

unsigned wxTreeGridExpanderHandler::findExpanderIndexContainingRowForward(unsigned effectiveRow,
                                                                          unsigned fromIndex) const
{
    unsigned found = npos;
    for (unsigned i = fromIndex; i < mExpanders.size() && mExpanders[i].firstRow <= effectiveRow; ++i)
        if (mExpanders[i].containsRow(effectiveRow))
            found = i;  // later ones that hold the row are deeper
    return found;
}

unsigned wxTreeGridExpanderHandler::findExpanderIndexContainingRowBackward(unsigned effectiveRow,
                                                                           unsigned fromIndex) const
{
    if (fromIndex >= mExpanders.size())
        return npos;
    // Walk from the expander up through its parents: the first that holds the row is the deepest.
    for (unsigned i = fromIndex; i != npos; i = mExpanders[i].parent)
        if (mExpanders[i].containsRow(effectiveRow))
            return i;
    return npos;
}

unsigned wxTreeGridExpanderHandler::getNextExpanderInColumn(unsigned index) const
{
    const unsigned level = getExpander(index).level;
    for (unsigned i = index + 1; i < mExpanders.size(); ++i)
        if (mExpanders[i].level == level)
            return i;
    return npos;
}

bool wxTreeGridExpanderHandler::checkIfParentIsCollapsed(unsigned index) const
{
    for (unsigned p = getExpander(index).parent; p != npos; p = mExpanders[p].parent)
        if (!mExpanders[p].expanded)
            return true;
    return false;
}

unsigned wxTreeGridExpanderHandler::getNextVisibleExpander(unsigned index) const
{
    const wxTreeGridExpander& current = getExpander(index);
    unsigned i = index + 1;
    if (!current.expanded) {
        // Its whole subtree is hidden: go on after its last row.
        const unsigned end = current.firstRow + current.nbOfRows;
        while (i < mExpanders.size() && mExpanders[i].firstRow < end)
            ++i;
    }
    for (; i < mExpanders.size(); ++i)
        if (!checkIfParentIsCollapsed(i))
            return i;
    return npos;
}

bool wxTreeGridExpanderHandler::setExpanded(unsigned index, bool expanded)
{
    wxTreeGridExpander& expander = mExpanders.at(index);
    if (expander.expanded == expanded || !checkExpanderMayChange(index, expanded))
        return false;
    expander.expanded = expanded;
    mRememberedStates[makeStateKey(expander.firstRow, expander.level)] = expanded;
    mSpansValid = false;
    return true;
}

void wxTreeGridExpanderHandler::expandEffectiveColumn(unsigned level, bool expanded)
{
    if (mLevelStates.size() <= level)
        mLevelStates.resize(level + 1, 0);
    mLevelStates[level] = expanded ? 2 : 1;
    // Single states of the level give way to the level's.
    std::erase_if(mRememberedStates, [level](const auto& entry) {
        return std::count(entry.first.begin(), entry.first.end(), '\x1f') == long(level) + 1;
    });
    for (auto& expander : mExpanders)
        if (expander.level == level)
            expander.expanded = expanded;
    mSpansValid = false;
}

void wxTreeGridExpanderHandler::expandAll(bool expanded)
{
    mRememberedStates.clear();
    mLevelStates.assign(mExpanderLevels, expanded ? 2 : 1);
    for (auto& expander : mExpanders)
        expander.expanded = expanded;
    mSpansValid = false;
}

void wxTreeGridExpanderHandler::rebuildHiddenSpans()
{
    mSpans.clear();
    mCursorSpan = npos;
    unsigned hiddenSoFar = 0;
    for (size_t i = 0; i < mExpanders.size();) {
        const wxTreeGridExpander& e = mExpanders[i];
        if (e.expanded) {
            ++i;
            continue;
        }
        mSpans.push_back({e.firstRow - hiddenSoFar, e.firstRow, e.nbOfRows - 1, hiddenSoFar});
        hiddenSoFar += e.nbOfRows - 1;
        // Skip the subtree: the siblings' link jumps it in one step, else search by first row.
        const unsigned end = e.firstRow + e.nbOfRows;
        if (e.nextIdentical != npos) {
            i = e.nextIdentical;
        } else {
            auto it = std::lower_bound(mExpanders.begin() + long(i) + 1, mExpanders.end(), end,
                                       [](const wxTreeGridExpander& x, unsigned row) { return x.firstRow < row; });
            i = size_t(it - mExpanders.begin());
        }
    }
    mSpansValid = true;
}

unsigned wxTreeGridExpanderHandler::computeVisibleNbOfRows()
{
    if (!mSpansValid)
        rebuildHiddenSpans();
    if (mSpans.empty())
        return mRowCount;
    return mRowCount - mSpans.back().hiddenBefore - mSpans.back().hidden;
}

unsigned wxTreeGridExpanderHandler::findSpanByVisibleRow(unsigned visibleRow)
{
    if (!mSpansValid)
        rebuildHiddenSpans();
    if (mSpans.empty() || mSpans.front().visibleRow > visibleRow)
        return npos;
    // The cursor first: drawing asks for consecutive lines.
    auto fits = [&](unsigned k) {
        return mSpans[k].visibleRow <= visibleRow && (k + 1 == mSpans.size() || mSpans[k + 1].visibleRow > visibleRow);
    };
    if (mCursorSpan != npos) {
        for (unsigned k = mCursorSpan; k < mSpans.size() && k <= mCursorSpan + 2; ++k)
            if (fits(k))
                return mCursorSpan = k;
        if (mCursorSpan > 0 && fits(mCursorSpan - 1))
            return --mCursorSpan;
    }
    auto it = std::upper_bound(mSpans.begin(), mSpans.end(), visibleRow,
                               [](unsigned row, const cHiddenSpan& s) { return row < s.visibleRow; });
    return mCursorSpan = unsigned(it - mSpans.begin()) - 1;
}

unsigned wxTreeGridExpanderHandler::initExpanders(unsigned visibleRow)
{
    const unsigned k = findSpanByVisibleRow(visibleRow);
    unsigned row;
    if (k == npos)
        row = visibleRow;
    else if (mSpans[k].visibleRow == visibleRow)
        row = mSpans[k].effectiveRow;
    else
        row = visibleRow + mSpans[k].hiddenBefore + mSpans[k].hidden;
    mCursorVisibleRow = visibleRow;
    mCursorEffectiveRow = row;
    return row;
}

unsigned wxTreeGridExpanderHandler::getVisibleRowFromEffectiveRow(unsigned effectiveRow)
{
    if (!mSpansValid)
        rebuildHiddenSpans();
    auto it = std::upper_bound(mSpans.begin(), mSpans.end(), effectiveRow,
                               [](unsigned row, const cHiddenSpan& s) { return row < s.effectiveRow; });
    if (it == mSpans.begin())
        return effectiveRow;
    const cHiddenSpan& s = *(it - 1);
    if (effectiveRow - s.effectiveRow <= s.hidden)
        return s.visibleRow;  // the span's own first row, or a row it hides
    return effectiveRow - s.hiddenBefore - s.hidden;
}

bool wxTreeGridExpanderHandler::checkEffectiveRowIsHidden(unsigned effectiveRow)
{
    const unsigned line = getVisibleRowFromEffectiveRow(effectiveRow);
    return initExpanders(line) != effectiveRow;
}

size_t wxTreeGridExpanderHandler::getExpanderMemoryBytes() const
{
    return mExpanders.capacity() * sizeof(wxTreeGridExpander) + mSpans.capacity() * sizeof(cHiddenSpan);
}

}  // namespace vx3
