#include "treegrid/wxTreeGridGeometry.h"

#include <algorithm>
#include <numeric>

#include "base/cLoggedException.h"

namespace vx3 {

using namespace treeGridGeometry;

wxTreeGridGeometry::wxTreeGridGeometry(wxTreeGridVirtual& owner)
    : mOwner(owner), mTransposer(owner), mModel(&owner), mLogger(vxLogger::debug, true)
{
}

void wxTreeGridGeometry::checkColIndex(unsigned col, const char* function) const
{
    if (col >= mNbCols)
        throw cLoggedException(std::string(function) + " : column " + std::to_string(col) + " out of range (" +
                               std::to_string(mNbCols) + " columns)");
}

void wxTreeGridGeometry::checkRowIndex(unsigned totalRow, const char* function) const
{
    if (totalRow >= mNbRows)
        throw cLoggedException(std::string(function) + " : row " + std::to_string(totalRow) + " out of range (" +
                               std::to_string(mNbRows) + " rows)");
}

unsigned wxTreeGridGeometry::colFlags(unsigned col) const
{
    checkColIndex(col, "wxTreeGridGeometry::colFlags");
    return mColFlags[col];
}

void wxTreeGridGeometry::clearGeometry()
{
    mNbCols = mNbRows = 0;
    mEffectiveToCol.clear();
    mColToEffective.clear();
    mColFlags.clear();
    mColWidths.clear();
    mColXStart.clear();
    mSortedRows.clear();
    mRowSuppressed.clear();
    mEffectiveToTotal.clear();
    mTotalToEffective.clear();
    mRowSelected.clear();
    mSelectedRowCount = 0;
    mSelectedCells.clear();
    mSelectedCols.clear();
    resizeFilters(0);
    clearExpanders();
}

void wxTreeGridGeometry::dataChanged(bool rebuild, bool keepSelection)
{
    const unsigned cols = mModel->treeGridVirtualGetNumberOfColumns();
    const unsigned rows = mModel->treeGridVirtualGetNumberOfRows();
    if (!keepSelection) {
        clearRowSelection();
        clearCellSelection();
        clearColSelection();
    }
    if (!rebuild && cols == mNbCols && rows == mNbRows)
        return;  // same shape: the next paint reads the new texts

    if (cols != mNbCols) {
        // Kept columns keep their flags and place; new ones join at the end of the view.
        mColFlags.resize(cols, 0);
        mColWidths.resize(cols, 80);
        std::erase_if(mEffectiveToCol, [cols](unsigned c) { return c >= cols; });
        for (unsigned c = mNbCols; c < cols; ++c)
            mEffectiveToCol.push_back(c);
        mColToEffective.assign(cols, 0);
        for (unsigned e = 0; e < cols; ++e)
            mColToEffective[mEffectiveToCol[e]] = e;
        std::erase_if(mSelectedCols, [cols](unsigned c) { return c >= cols; });
        std::erase_if(mSelectedCells, [cols](const auto& cell) { return cell.second >= cols; });
        resizeFilters(cols);
        mNbCols = cols;
    }
    if (rows != mNbRows) {
        mSortedRows.resize(rows);
        std::iota(mSortedRows.begin(), mSortedRows.end(), 0u);
        mRowSuppressed.resize(rows, 0);
        mRowSelected.resize(rows, 0);
        mSelectedRowCount = unsigned(std::count(mRowSelected.begin(), mRowSelected.end(), 1));
        std::erase_if(mSelectedCells, [rows](const auto& cell) { return cell.first >= rows; });
        mNbRows = rows;
    }
    mUsesExpanders = mModel->treeGridVirtualGetGridUsesExpanders();
    if (!mExpanderLevelsSetByUser)
        setEffectiveColExpanderLevel(mUsesExpanders && cols > 1 ? cols - 1 : 0);
    else if (getEffectiveColExpandersLevel() > cols)
        setEffectiveColExpanderLevel(cols);
    mColXStart.clear();
    // sort() applies the filters and builds the tree after it.
    sort();
}

// ---- Rows

unsigned wxTreeGridGeometry::getTotalRow(unsigned effectiveRow) const
{
    if (effectiveRow >= mEffectiveToTotal.size())
        throw cLoggedException("wxTreeGridGeometry::getTotalRow : row " + std::to_string(effectiveRow) +
                               " out of range (" + std::to_string(mEffectiveToTotal.size()) + " rows)");
    return mEffectiveToTotal[effectiveRow];
}

unsigned wxTreeGridGeometry::getEffectiveRow(unsigned totalRow) const
{
    checkRowIndex(totalRow, "wxTreeGridGeometry::getEffectiveRow");
    return mTotalToEffective[totalRow];
}

unsigned wxTreeGridGeometry::getEffectiveRowFromVisible(unsigned visibleRow)
{
    return usesExpanders() ? initExpanders(visibleRow) : visibleRow;
}

unsigned wxTreeGridGeometry::getVisibleRowFromEffective(unsigned effectiveRow)
{
    return usesExpanders() ? getVisibleRowFromEffectiveRow(effectiveRow) : effectiveRow;
}

void wxTreeGridGeometry::rebuildEffectiveRows()
{
    mEffectiveToTotal.clear();
    mEffectiveToTotal.reserve(mNbRows);
    mTotalToEffective.assign(mNbRows, npos);
    for (unsigned row : mSortedRows)
        if (!mRowSuppressed[row]) {
            mTotalToEffective[row] = unsigned(mEffectiveToTotal.size());
            mEffectiveToTotal.push_back(row);
        }
}

void wxTreeGridGeometry::rebuildTree()
{
    if (usesExpanders())
        buildExpanders(getNumberOfEffectiveRows(), {});
    else
        clearExpanders();
}

std::string wxTreeGridGeometry::getExpanderText(unsigned effectiveRow, unsigned level)
{
    return mModel->treeGridVirtualGetValue(mEffectiveToTotal[effectiveRow], mEffectiveToCol[level]);
}

bool wxTreeGridGeometry::getModelDefaultExpanded(unsigned effectiveRow, unsigned level)
{
    return mModel->treeGridVirtualGetDefaultExpanded(mEffectiveToTotal[effectiveRow], level);
}

bool wxTreeGridGeometry::checkExpanderMayChange(unsigned index, bool expanded)
{
    const wxTreeGridExpander& e = getExpander(index);
    return mModel->treeGridVirtualExpanding(mEffectiveToTotal[e.firstRow], e.level, expanded);
}

// ---- Columns

unsigned wxTreeGridGeometry::getColFromEffectiveCol(unsigned effectiveCol) const
{
    checkColIndex(effectiveCol, "wxTreeGridGeometry::getColFromEffectiveCol");
    return mEffectiveToCol[effectiveCol];
}

unsigned wxTreeGridGeometry::getEffectiveColFromCol(unsigned col) const
{
    checkColIndex(col, "wxTreeGridGeometry::getEffectiveColFromCol");
    return mColToEffective[col];
}

void wxTreeGridGeometry::moveColumn(unsigned col, unsigned newEffectiveCol)
{
    checkColIndex(col, "wxTreeGridGeometry::moveColumn");
    checkColIndex(newEffectiveCol, "wxTreeGridGeometry::moveColumn");
    mEffectiveToCol.erase(mEffectiveToCol.begin() + mColToEffective[col]);
    mEffectiveToCol.insert(mEffectiveToCol.begin() + newEffectiveCol, col);
    for (unsigned e = 0; e < mNbCols; ++e)
        mColToEffective[mEffectiveToCol[e]] = e;
    mColXStart.clear();
    // Another order of columns is another tree, and the leftmost sort column may have changed.
    clearRememberedExpanderStates();
    sort();
}

void wxTreeGridGeometry::restoreDefaultColumnOrder()
{
    std::iota(mEffectiveToCol.begin(), mEffectiveToCol.end(), 0u);
    std::iota(mColToEffective.begin(), mColToEffective.end(), 0u);
    mColXStart.clear();
    clearRememberedExpanderStates();
    sort();
}

void wxTreeGridGeometry::setColHidden(unsigned col, bool hidden)
{
    checkColIndex(col, "wxTreeGridGeometry::setColHidden");
    if (hidden)
        mColFlags[col] |= flag_hidden;
    else
        mColFlags[col] &= ~unsigned(flag_hidden);
    mColXStart.clear();
}

void wxTreeGridGeometry::showAllColumns()
{
    for (auto& flags : mColFlags)
        flags &= ~unsigned(flag_hidden);
    mColXStart.clear();
}

void wxTreeGridGeometry::setNumberOfExpanderColumns(unsigned levels)
{
    mExpanderLevelsSetByUser = true;
    setEffectiveColExpanderLevel(std::min(levels, mNbCols));
    rebuildTree();
}

// ---- Filters

bool wxTreeGridGeometry::addFilterRule(unsigned col, const std::string& text)
{
    checkColIndex(col, "wxTreeGridGeometry::addFilterRule");
    if (!mModel->treeGridVirtualCheckIfColumnAcceptsFilters(col))
        return false;
    addDiscreteFilterText(col, text);
    return true;
}

bool wxTreeGridGeometry::addNumericalFilterRule(unsigned col, const wxNumericalFilter& bounds)
{
    checkColIndex(col, "wxTreeGridGeometry::addNumericalFilterRule");
    if (!mModel->treeGridVirtualCheckIfColumnAcceptsFilters(col))
        return false;
    setNumericalFilter(col, bounds);
    return true;
}

void wxTreeGridGeometry::filterRulesChanged()
{
    std::vector<unsigned> discrete, numerical;
    for (unsigned c = 0; c < mNbCols; ++c) {
        if (getFilter(c).discreteActive)
            discrete.push_back(c);
        if (getFilter(c).numericalActive)
            numerical.push_back(c);
    }
    for (unsigned row = 0; row < mNbRows; ++row) {
        bool out = false;
        for (unsigned c : discrete)
            if ((out = checkFilteredByDiscreteFilter(c, mModel->treeGridVirtualGetValue(row, c))))
                break;
        if (!out)
            for (unsigned c : numerical)
                if ((out = checkFilteredByNumericalFilter(c, mModel->treeGridVirtualGetDoubleValue(row, c))))
                    break;
        if (out)
            mRowSuppressed[row] |= suppressed_by_filter;
        else
            mRowSuppressed[row] &= uint8_t(~suppressed_by_filter);
    }
    rebuildEffectiveRows();
    rebuildTree();
}

// ---- Rows suppressed by hand

void wxTreeGridGeometry::suppressRows(const std::vector<unsigned>& totalRows)
{
    for (unsigned row : totalRows) {
        checkRowIndex(row, "wxTreeGridGeometry::suppressRows");
        mRowSuppressed[row] |= suppressed_by_hand;
        // A row out of sight cannot stay selected: actions on the selection would reach it.
        selectRow(row, false);
    }
    rebuildEffectiveRows();
    rebuildTree();
}

void wxTreeGridGeometry::suppressSelectedRows()
{
    suppressRows(getSelectedRows());
}

void wxTreeGridGeometry::showAllSuppressedRows()
{
    for (auto& flags : mRowSuppressed)
        flags &= uint8_t(~suppressed_by_hand);
    rebuildEffectiveRows();
    rebuildTree();
}

bool wxTreeGridGeometry::checkRowIsSuppressed(unsigned totalRow) const
{
    checkRowIndex(totalRow, "wxTreeGridGeometry::checkRowIsSuppressed");
    return mRowSuppressed[totalRow] != 0;
}

unsigned wxTreeGridGeometry::getNumberOfRowsSuppressedByHand() const
{
    return unsigned(std::count_if(mRowSuppressed.begin(), mRowSuppressed.end(),
                                  [](uint8_t f) { return f & suppressed_by_hand; }));
}

// ---- Selection

void wxTreeGridGeometry::selectRow(unsigned totalRow, bool selected)
{
    checkRowIndex(totalRow, "wxTreeGridGeometry::selectRow");
    if (bool(mRowSelected[totalRow]) == selected)
        return;
    mRowSelected[totalRow] = selected;
    if (selected) {
        ++mSelectedRowCount;
        mModel->treeGridVirtualRowSelected(totalRow);
    } else {
        --mSelectedRowCount;
        mModel->treeGridVirtualRowDeselected(totalRow);
    }
}

bool wxTreeGridGeometry::checkRowIsSelected(unsigned totalRow) const
{
    return totalRow < mNbRows && mRowSelected[totalRow];
}

void wxTreeGridGeometry::selectVisibleRowRange(unsigned firstVisibleRow, unsigned lastVisibleRow, bool selected)
{
    if (firstVisibleRow > lastVisibleRow)
        std::swap(firstVisibleRow, lastVisibleRow);
    const unsigned visible = getNumberOfVisibleRows();
    for (unsigned v = firstVisibleRow; v <= lastVisibleRow && v < visible; ++v)
        selectRow(getTotalRow(getEffectiveRowFromVisible(v)), selected);
}

std::vector<unsigned> wxTreeGridGeometry::getSelectedRows() const
{
    std::vector<unsigned> rows;
    if (mSelectedRowCount == 0)
        return rows;
    rows.reserve(mSelectedRowCount);
    for (unsigned row : mEffectiveToTotal)
        if (mRowSelected[row])
            rows.push_back(row);
    return rows;
}

void wxTreeGridGeometry::selectCell(unsigned totalRow, unsigned col, bool selected)
{
    checkRowIndex(totalRow, "wxTreeGridGeometry::selectCell");
    checkColIndex(col, "wxTreeGridGeometry::selectCell");
    if (selected ? mSelectedCells.insert({totalRow, col}).second : mSelectedCells.erase({totalRow, col}) != 0) {
        if (selected)
            mModel->treeGridVirtualElementSelected(totalRow, col);
        else
            mModel->treeGridVirtualElementDeselected(totalRow, col);
    }
}

void wxTreeGridGeometry::selectCol(unsigned col, bool selected)
{
    checkColIndex(col, "wxTreeGridGeometry::selectCol");
    if (selected ? mSelectedCols.insert(col).second : mSelectedCols.erase(col) != 0) {
        if (selected)
            mModel->treeGridVirtualColSelected(col);
        else
            mModel->treeGridVirtualColDeselected(col);
    }
}

void wxTreeGridGeometry::clearRowSelection()
{
    if (mSelectedRowCount == 0)
        return;
    for (unsigned row = 0; row < mNbRows; ++row)
        if (mRowSelected[row])
            selectRow(row, false);
}

void wxTreeGridGeometry::clearCellSelection()
{
    while (!mSelectedCells.empty()) {
        const auto cell = *mSelectedCells.begin();
        selectCell(cell.first, cell.second, false);
    }
}

void wxTreeGridGeometry::clearColSelection()
{
    while (!mSelectedCols.empty())
        selectCol(*mSelectedCols.begin(), false);
}

// ---- Transpose

void wxTreeGridGeometry::transpose()
{
    // Selections and rules name rows and columns of the old axes: they cannot carry over.
    clearRowSelection();
    clearCellSelection();
    clearColSelection();
    clearGeometry();
    clearRememberedExpanderStates();
    mExpanderLevelsSetByUser = false;
    mTransposed = !mTransposed;
    mModel = mTransposed ? static_cast<wxTreeGridVirtual*>(&mTransposer) : &mOwner;
    dataChanged(true, false);
    mOwner.treeGridVirtualRowAndColWereInverted(mTransposed);
}

// ---- Sizes

void wxTreeGridGeometry::setColWidth(unsigned col, int width)
{
    checkColIndex(col, "wxTreeGridGeometry::setColWidth");
    mColWidths[col] = std::max(width, 4);
    mColXStart.clear();
}

int wxTreeGridGeometry::getColWidth(unsigned col) const
{
    checkColIndex(col, "wxTreeGridGeometry::getColWidth");
    return (mColFlags[col] & flag_hidden) ? 0 : mColWidths[col];
}

const std::vector<int>& wxTreeGridGeometry::computeEffectiveColXStartPositions()
{
    if (mColXStart.size() != mNbCols + 1) {
        mColXStart.assign(mNbCols + 1, 0);
        for (unsigned e = 0; e < mNbCols; ++e)
            mColXStart[e + 1] = mColXStart[e] + getColWidth(mEffectiveToCol[e]);
    }
    return mColXStart;
}

int wxTreeGridGeometry::getTotalColumnsWidth()
{
    return computeEffectiveColXStartPositions().back();
}

size_t wxTreeGridGeometry::getMemoryBytes() const
{
    return mSortedRows.capacity() * sizeof(unsigned) + mRowSuppressed.capacity() +
           mEffectiveToTotal.capacity() * sizeof(unsigned) + mTotalToEffective.capacity() * sizeof(unsigned) +
           mRowSelected.capacity() + getExpanderMemoryBytes() +
           (mEffectiveToCol.capacity() + mColToEffective.capacity() + mColFlags.capacity()) * sizeof(unsigned) +
           (mColWidths.capacity() + mColXStart.capacity()) * sizeof(int);
}

}  // namespace vx3
