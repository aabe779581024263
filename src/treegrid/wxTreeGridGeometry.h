// Everything of a tree grid that is not drawing: the order of columns, the row permutation with
// its suppressed rows, sorting, filters, the tree of expanders, selection, sizes and the export of
// the table. Free of the toolkit, so that a grid's behaviour is tested without a screen; the
// widget adds painting and input on top.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/cVxLogger.h"
#include "treegrid/wxTreeGridExpanderHandler.h"
#include "treegrid/wxTreeGridFilters.h"
#include "treegrid/wxTreeGridTransposer.h"
#include "treegrid/wxTreeGridVirtual.h"

namespace vx3 {

namespace treeGridGeometry {
// Flags of a column.
enum col_flags : unsigned {
    flag_sort_ascending = 1,
    flag_sort_descending = 2,
    flag_hidden = 4,
    flag_fixed = 8,
};
enum sort_order : int { sort_none = 0, sort_ascending = 1, sort_descending = 2 };
// Why a row is not shown; a row may be both.
enum row_suppression : uint8_t { suppressed_by_filter = 1, suppressed_by_hand = 2 };
}  // namespace treeGridGeometry

class wxTreeGridGeometry : public wxTreeGridExpanderHandler, public wxTreeGridFilters {
public:
    explicit wxTreeGridGeometry(wxTreeGridVirtual& owner);
    ~wxTreeGridGeometry() override = default;
    wxTreeGridGeometry(const wxTreeGridGeometry&) = delete;
    wxTreeGridGeometry& operator=(const wxTreeGridGeometry&) = delete;

    // The model changed: caches go, sizes are read again, the sort and the filters are applied
    // anew and the tree is rebuilt, keeping open what was open where the texts are the same.
    // rebuild false: only the texts changed, the rows and columns are the same.
    void dataChanged(bool rebuild, bool keepSelection);
    void clearGeometry();

    // The model the grid shows: the owner, or the owner transposed.
    wxTreeGridVirtual& getModel() { return *mModel; }
    cVxLogger& getLogger() { return mLogger; }

    unsigned getNumberOfColumns() const { return mNbCols; }
    unsigned getNumberOfTotalRows() const { return mNbRows; }
    unsigned getNumberOfEffectiveRows() const { return unsigned(mEffectiveToTotal.size()); }
    unsigned getNumberOfVisibleRows() { return usesExpanders() ? computeVisibleNbOfRows() : getNumberOfEffectiveRows(); }

    // ---- Rows
    unsigned getTotalRow(unsigned effectiveRow) const;
    // The effective row of a model row; npos while it is suppressed.
    unsigned getEffectiveRow(unsigned totalRow) const;
    unsigned getEffectiveRowFromVisible(unsigned visibleRow);
    unsigned getVisibleRowFromEffective(unsigned effectiveRow);
    const std::vector<unsigned>& getEffectiveToTotalRows() const { return mEffectiveToTotal; }
    // The order of all model rows after sorting, suppressed ones included.
    const std::vector<unsigned>& getSortedRows() const { return mSortedRows; }

    // ---- Columns
    unsigned getColFromEffectiveCol(unsigned effectiveCol) const;
    unsigned getEffectiveColFromCol(unsigned col) const;
    // Moves a column to another place in the view; expanders follow the new order.
    void moveColumn(unsigned col, unsigned newEffectiveCol);
    void restoreDefaultColumnOrder();
    void setColHidden(unsigned col, bool hidden);
    bool checkColIsHidden(unsigned col) const { return colFlags(col) & treeGridGeometry::flag_hidden; }
    void showAllColumns();
    // How many leading effective columns form the tree; capped at the number of columns.
    void setNumberOfExpanderColumns(unsigned levels);
    bool usesExpanders() const { return mUsesExpanders && getEffectiveColExpandersLevel() > 0; }

    // ---- Sorting (the sort runs at sort())
    void setColSortOrder(unsigned col, int order);
    int getColSortOrder(unsigned col) const;
    void clearSortOrders();
    // Sorts by the sorting columns, leftmost first, and rebuilds the tree. False after a failure,
    // with the old order kept.
    bool sort();
    // The blocks of equal text in the first expander column move as wholes.
    bool sortHigh(unsigned col, bool ascending);
    void setCaseSensitive(bool flag) { mCaseSensitive = flag; }
    bool getCaseSensitive() const { return mCaseSensitive; }

    // ---- Filters
    // Adds text to the column's discrete filter if the model lets the column filter; answers
    // whether it did. filterRulesChanged applies the rules.
    bool addFilterRule(unsigned col, const std::string& text);
    bool addNumericalFilterRule(unsigned col, const wxNumericalFilter& bounds);
    void filterRulesChanged();

    // ---- Rows suppressed by hand
    void suppressRows(const std::vector<unsigned>& totalRows);
    void suppressSelectedRows();
    void showAllSuppressedRows();
    bool checkRowIsSuppressed(unsigned totalRow) const;
    unsigned getNumberOfRowsSuppressedByHand() const;

    // ---- Selection (model rows and columns)
    void selectRow(unsigned totalRow, bool selected);
    bool checkRowIsSelected(unsigned totalRow) const;
    // Visible rows first to last inclusive, in either direction.
    void selectVisibleRowRange(unsigned firstVisibleRow, unsigned lastVisibleRow, bool selected);
    std::vector<unsigned> getSelectedRows() const;  // in view order
    unsigned getNumberOfSelectedRows() const { return mSelectedRowCount; }
    void selectCell(unsigned totalRow, unsigned col, bool selected);
    bool checkCellIsSelected(unsigned totalRow, unsigned col) const { return mSelectedCells.count({totalRow, col}) != 0; }
    void selectCol(unsigned col, bool selected);
    bool checkColIsSelected(unsigned col) const { return mSelectedCols.count(col) != 0; }
    void clearRowSelection();
    void clearCellSelection();
    void clearColSelection();

    // ---- Transpose: rows become columns; sort, filters and selection start afresh.
    void transpose();
    bool checkIsTransposed() const { return mTransposed; }

    // ---- Export of what the view shows: the columns not hidden, in their order, and the selected
    // rows or else all rows that are not suppressed, in view order.
    std::vector<unsigned> exportColumnsComputeUsedRowIndices() const;
    std::string exportColumns(bool html);

    // ---- Sizes in pixels
    void setRowHeight(int height) { mRowHeight = height; }
    int getRowHeight() const { return mRowHeight; }
    void setColWidth(unsigned col, int width);
    int getColWidth(unsigned col) const;
    // Left edges of the effective columns (hidden ones have no width), and the total width.
    const std::vector<int>& computeEffectiveColXStartPositions();
    int getTotalColumnsWidth();

    // Bytes the grid holds for its rows and expanders, beyond the model.
    size_t getMemoryBytes() const;

protected:
    std::string getExpanderText(unsigned effectiveRow, unsigned level) override;
    bool getModelDefaultExpanded(unsigned effectiveRow, unsigned level) override;
    bool checkExpanderMayChange(unsigned index, bool expanded) override;
    // The sort columns in priority order (model columns), with their directions.
    std::vector<std::pair<unsigned, bool>> collectSortColumns();
    void rebuildEffectiveRows();
    void rebuildTree();
    unsigned colFlags(unsigned col) const;
    void checkColIndex(unsigned col, const char* function) const;
    void checkRowIndex(unsigned totalRow, const char* function) const;

private:
    bool sortByComparing(const std::vector<std::pair<unsigned, bool>>& sortCols);
    void inverseSortingWithExpanders(const std::vector<unsigned>& blockStarts);

    wxTreeGridVirtual& mOwner;
    wxTreeGridTransposer mTransposer;
    wxTreeGridVirtual* mModel;
    bool mTransposed = false;
    cVxLogger mLogger;

    unsigned mNbCols = 0;
    unsigned mNbRows = 0;
    bool mUsesExpanders = false;
    bool mCaseSensitive = false;
    bool mExpanderLevelsSetByUser = false;

    std::vector<unsigned> mEffectiveToCol;
    std::vector<unsigned> mColToEffective;
    std::vector<unsigned> mColFlags;
    std::vector<int> mColWidths;
    std::vector<int> mColXStart;
    int mRowHeight = 20;

    std::vector<unsigned> mSortedRows;        // all model rows in sorted order
    std::vector<uint8_t> mRowSuppressed;      // per model row, row_suppression bits
    std::vector<unsigned> mEffectiveToTotal;  // the rows that show, in order
    std::vector<unsigned> mTotalToEffective;  // npos for suppressed rows

    std::vector<uint8_t> mRowSelected;  // per model row
    unsigned mSelectedRowCount = 0;
    std::set<std::pair<unsigned, unsigned>> mSelectedCells;
    std::set<unsigned> mSelectedCols;
};

}  // namespace vx3
