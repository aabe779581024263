// The sorting of wxTreeGridGeometry: the choice between the model's own order, blocks of the first
// expander column and comparing rows, and the reversal of blocks for a descending column.
#include <algorithm>
#include <functional>
#include <numeric>

#include "treegrid/wxTreeGridGeometry.h"
#include "treegrid/wxTreeGridImplSorter.h"

namespace vx3 {

using namespace treeGridGeometry;

void wxTreeGridGeometry::setColSortOrder(unsigned col, int order)
{
    checkColIndex(col, "wxTreeGridGeometry::setColSortOrder");
    mColFlags[col] &= ~unsigned(flag_sort_ascending | flag_sort_descending);
    if (order == sort_ascending)
        mColFlags[col] |= flag_sort_ascending;
    else if (order == sort_descending)
        mColFlags[col] |= flag_sort_descending;
}

int wxTreeGridGeometry::getColSortOrder(unsigned col) const
{
    const unsigned flags = colFlags(col);
    return (flags & flag_sort_ascending) ? sort_ascending : (flags & flag_sort_descending) ? sort_descending : sort_none;
}

void wxTreeGridGeometry::clearSortOrders()
{
    for (auto& flags : mColFlags)
        flags &= ~unsigned(flag_sort_ascending | flag_sort_descending);
}

std::vector<std::pair<unsigned, bool>> wxTreeGridGeometry::collectSortColumns()
{
    std::vector<std::pair<unsigned, bool>> cols;
    for (unsigned e = 0; e < mNbCols; ++e) {
        const unsigned col = mEffectiveToCol[e];
        const int order = getColSortOrder(col);
        if (order != sort_none && mModel->treeGridVirtualCheckColCanBeSorted(col))
            cols.emplace_back(col, order == sort_ascending);
    }
    return cols;
}

bool wxTreeGridGeometry::sort()
{
    const auto sortCols = collectSortColumns();
    bool ok = true;
    if (sortCols.empty()) {
        std::iota(mSortedRows.begin(), mSortedRows.end(), 0u);
    } else {
        std::vector<unsigned> cols;
        for (const auto& sc : sortCols)
            cols.push_back(sc.first);
        mModel->treeGridVirtualPrepareColumnSorting(cols);
        const unsigned primary = sortCols.front().first;
        const bool primaryIsFirst = mColToEffective[primary] == 0;
        std::vector<unsigned> order;
        if (sortCols.size() == 1 && primaryIsFirst && !usesExpanders() &&
            mModel->treeGridVirtualCheckIfSimplifiedSortingIsPossible(primary, sortCols.front().second, order)) {
            // The model knows the order: take it if it names every row once.
            std::vector<uint8_t> seen(mNbRows, 0);
            bool valid = order.size() == mNbRows;
            for (size_t i = 0; valid && i < order.size(); ++i)
                valid = order[i] < mNbRows && !seen[order[i]]++;
            if (valid)
                mSortedRows = std::move(order);
            else {
                mLogger.errorMsg("tree grid sort : the model's order is not one of its rows; sorting by values.");
                ok = sortByComparing(sortCols);
            }
        } else if (usesExpanders() && primaryIsFirst &&
                   mModel->treeGridVirtualCheckFirstExpanderCanBeSortedHigh(primary)) {
            ok = sortHigh(primary, sortCols.front().second);
        } else {
            ok = sortByComparing(sortCols);
        }
    }
    // Filters read the model by its rows and do not depend on the order; the tree does.
    filterRulesChanged();
    return ok;
}

bool wxTreeGridGeometry::sortByComparing(const std::vector<std::pair<unsigned, bool>>& sortCols)
{
    if (mModel->treeGridVirtualGetNumberOfRows() != mNbRows) {
        mLogger.errorMsg("tree grid sort : failed.");
        return false;
    }
    std::vector<unsigned> rows(mNbRows);
    std::iota(rows.begin(), rows.end(), 0u);
    if (sortCols.size() == 1 && !sortCols.front().second) {
        // One descending column: sort ascending and reverse the blocks of equal keys, which keeps
        // the model's order inside each block.
        const wxTreeGridImplSorter sorter(*mModel, {{sortCols.front().first, true}}, mCaseSensitive, mNbRows);
        std::sort(rows.begin(), rows.end(), std::cref(sorter));  // the keys are large: never copied
        std::vector<unsigned> blockStarts;
        size_t end = rows.size();
        while (end > 0 && sorter.checkFirstKeyIsUndefined(rows[end - 1]))
            --end;  // undefined values stay last
        for (size_t i = 0; i < end; ++i)
            if (i == 0 || sorter.compareKeys(rows[i - 1], rows[i]) != 0)
                blockStarts.push_back(unsigned(i));
        blockStarts.push_back(unsigned(end));
        mSortedRows = std::move(rows);
        inverseSortingWithExpanders(blockStarts);
        return true;
    }
    const wxTreeGridImplSorter sorter(*mModel, sortCols, mCaseSensitive, mNbRows);
    std::sort(rows.begin(), rows.end(), std::cref(sorter));  // the keys are large: never copied
    mSortedRows = std::move(rows);
    return true;
}

void wxTreeGridGeometry::inverseSortingWithExpanders(const std::vector<unsigned>& blockStarts)
{
    // blockStarts: the first index of each block, then the end of the reversed part.
    if (blockStarts.size() < 3)
        return;
    std::vector<unsigned> reversed;
    reversed.reserve(mSortedRows.size());
    for (size_t b = blockStarts.size() - 1; b-- > 0;)
        reversed.insert(reversed.end(), mSortedRows.begin() + blockStarts[b], mSortedRows.begin() + blockStarts[b + 1]);
    std::copy(reversed.begin(), reversed.end(), mSortedRows.begin());
}

bool wxTreeGridGeometry::sortHigh(unsigned col, bool ascending)
{
    if (mModel->treeGridVirtualGetNumberOfRows() != mNbRows || col >= mNbCols) {
        mLogger.errorMsg("tree grid sort high : failed.");
        return false;
    }
    // Blocks are the runs of equal text in the current order; they move whole, in their order.
    struct cBlock {
        unsigned begin, end;
    };
    std::vector<cBlock> blocks;
    std::string previous;
    for (unsigned i = 0; i < mNbRows; ++i) {
        std::string text = mModel->treeGridVirtualGetValue(mSortedRows[i], col);
        if (i == 0 || text != previous)
            blocks.push_back({i, i + 1});
        else
            blocks.back().end = i + 1;
        previous = std::move(text);
    }
    const wxTreeGridImplSorter sorter(*mModel, {{col, ascending}}, mCaseSensitive, mNbRows);
    std::stable_sort(blocks.begin(), blocks.end(), [&](const cBlock& a, const cBlock& b) {
        return sorter.compareKeys(mSortedRows[a.begin], mSortedRows[b.begin]) < 0;
    });
    std::vector<unsigned> rows;
    rows.reserve(mNbRows);
    for (const cBlock& block : blocks)
        rows.insert(rows.end(), mSortedRows.begin() + block.begin, mSortedRows.begin() + block.end);
    mSortedRows = std::move(rows);
    return true;
}

}  // namespace vx3
