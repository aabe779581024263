// A grid whose rows arrive while it is shown (the log, a file browser that lists as it scans):
// items of type T are appended, from any thread, and shown in batches. A batch costs one pass over
// the rows to rebuild the order; a paint still asks only for the rows on screen. When the view
// stood at the last row it follows the new rows.
#pragma once

#include <QMetaObject>
#include <algorithm>
#include <deque>
#include <mutex>
#include <string>
#include <vector>

#include "treegrid/qt/wxTreeGridImpl.h"

namespace vx3 {

namespace incrementalTreeGrid {
// The rows of an incremental grid: the items shown and those waiting for the next batch.
template <typename T>
class cRows : public wxTreeGridVirtual {
public:
    std::deque<T> items;

protected:
    std::mutex mPendingMutex;
    std::vector<T> mPending;
    bool mFlushPosted = false;
};
}  // namespace incrementalTreeGrid

// A concrete grid gives the texts of an item's columns and the other required callbacks.
template <typename T>
class wxIncrementalTreeGrid : public incrementalTreeGrid::cRows<T>, public wxTreeGridImpl {
public:
    explicit wxIncrementalTreeGrid(QWidget* parent = nullptr)
        : incrementalTreeGrid::cRows<T>(), wxTreeGridImpl(static_cast<wxTreeGridVirtual&>(*this), parent)
    {
    }

    // Appends on the grid's thread and shows the new rows at once.
    void appendItems(std::vector<T> newItems)
    {
        {
            std::lock_guard<std::mutex> lock(this->mPendingMutex);
            for (T& item : newItems)
                this->mPending.push_back(std::move(item));
        }
        flushAppendedItems();
    }
    // From any thread: the items wait, and one batch shows all that came before the event loop
    // got to it.
    void appendItemFromThread(T item)
    {
        bool post = false;
        {
            std::lock_guard<std::mutex> lock(this->mPendingMutex);
            this->mPending.push_back(std::move(item));
            post = !this->mFlushPosted;
            this->mFlushPosted = true;
        }
        if (post)
            QMetaObject::invokeMethod(this, [this] { flushAppendedItems(); }, Qt::QueuedConnection);
    }
    // Shows what waits; answers how many rows came.
    size_t flushAppendedItems()
    {
        std::vector<T> batch;
        {
            std::lock_guard<std::mutex> lock(this->mPendingMutex);
            batch.swap(this->mPending);
            this->mFlushPosted = false;
        }
        if (batch.empty())
            return 0;
        const unsigned visibleBefore = getNumberOfVisibleRows();
        const bool follow = visibleBefore == 0 || getTopVisibleRow() + getPageLines() >= visibleBefore;
        const bool firstRows = this->items.empty();
        for (T& item : batch)
            this->items.push_back(std::move(item));
        size_t dropped = 0;
        if (mMaximumRows && this->items.size() > mMaximumRows) {
            dropped = this->items.size() - mMaximumRows;
            this->items.erase(this->items.begin(), this->items.begin() + long(dropped));
        }
        if (dropped) {
            // Rows marked by their number would now mark others.
            clearRowSelection();
            clearCellSelection();
            showAllSuppressedRows();
        }
        wxTreeGridGeometry::dataChanged(true, true);
        if (follow)
            scrollToVisibleRow(getNumberOfVisibleRows());
        // The columns and the row numbers widen for new rows on screen but never narrow, so the
        // table does not jump at every batch; only the rows on screen are measured.
        std::vector<int> widths;
        for (unsigned c = 0; c < getNumberOfColumns() && !firstRows; ++c)
            widths.push_back(getColWidth(c));
        updateHeaderAndColWidth();
        for (unsigned c = 0; c < widths.size(); ++c)
            setColWidth(c, std::max(widths[c], getColWidth(c)));
        viewChanged();
        return batch.size();
    }
    void clearItems()
    {
        this->items.clear();
        dataChanged(true, false);
    }
    // 0: no limit; else the oldest rows go when there are more.
    void setMaximumRows(size_t rows) { mMaximumRows = rows; }

    unsigned treeGridVirtualGetNumberOfRows() override { return unsigned(this->items.size()); }
    std::string treeGridVirtualGetValue(unsigned row, unsigned col) override
    {
        return row < this->items.size() ? getItemText(this->items[row], col) : std::string();
    }

protected:
    virtual std::string getItemText(const T& item, unsigned col) = 0;

private:
    size_t mMaximumRows = 0;
};

}  // namespace vx3
