// The undo history of a list of items (the curves of a plot, the rows of a tree grid): each entry
// says whether items were added or removed and holds copies of them with their positions.
#pragma once

#include <cstddef>
#include <vector>

namespace vx3 {

namespace singlePlotWidgetUndoBuffer {
enum undo_buffer_action_type : int { no_action = 0, curves_added = 1, curves_removed = 2 };
constexpr unsigned no_position = static_cast<unsigned>(-1);
constexpr size_t max_entries = 100;
}  // namespace singlePlotWidgetUndoBuffer

template <typename T>
struct wxSinglePlotWidgetUndoBufferEntry {
    int action = singlePlotWidgetUndoBuffer::no_action;
    std::vector<T> items;
    std::vector<unsigned> positions;  // in the list at the time; no_position where not known
};

template <typename T>
class wxSinglePlotWidgetUndoBuffer {
public:
    using cEntry = wxSinglePlotWidgetUndoBufferEntry<T>;

    void setUndoBufferEnabled(bool enabled) { mEnabled = enabled; }
    bool checkUndoBufferEnabled() const { return mEnabled; }

    // Open a new entry; the redo tail goes, and the oldest entry beyond the capacity.
    void addedCurvesStart() { startEntry(singlePlotWidgetUndoBuffer::curves_added); }
    void removedCurvesStart() { startEntry(singlePlotWidgetUndoBuffer::curves_removed); }
    // Put an item into the last entry, only if that entry records the same kind of step.
    void insertToAddedCurves(const T& item, unsigned position = singlePlotWidgetUndoBuffer::no_position)
    {
        insert(singlePlotWidgetUndoBuffer::curves_added, item, position);
    }
    void insertToRemovedCurves(const T& item, unsigned position = singlePlotWidgetUndoBuffer::no_position)
    {
        insert(singlePlotWidgetUndoBuffer::curves_removed, item, position);
    }
    // An entry that got no item is no step.
    void removeLastEntryIfEmpty()
    {
        if (!mEnabled || mEntries.empty() || !mEntries.back().items.empty())
            return;
        mEntries.pop_back();
        if (mPosition > mEntries.size())
            mPosition = mEntries.size();
    }

    bool checkCanUndo() const { return mEnabled && !mEntries.empty() && mPosition > 0; }
    bool checkCanRedo() const { return mEnabled && mPosition < mEntries.size(); }
    // The entry to play backwards: the position steps back. The empty entry when none.
    const cEntry& stepBackForUndo()
    {
        if (!checkCanUndo())
            return mEmpty;
        return mEntries[--mPosition];
    }
    // The entry to play forwards: the position steps on.
    const cEntry& stepForwardForRedo()
    {
        if (!checkCanRedo())
            return mEmpty;
        return mEntries[mPosition++];
    }

    // Drops every item for which drop(item) holds (curves of a closed section), and entries left empty.
    template <typename Predicate>
    void removeItemsIf(Predicate drop)
    {
        for (size_t i = mEntries.size(); i-- > 0;) {
            cEntry& entry = mEntries[i];
            for (size_t k = entry.items.size(); k-- > 0;) {
                if (drop(entry.items[k])) {
                    entry.items.erase(entry.items.begin() + k);
                    entry.positions.erase(entry.positions.begin() + k);
                }
            }
            if (entry.items.empty()) {
                mEntries.erase(mEntries.begin() + i);
                if (i < mPosition)
                    --mPosition;
            }
        }
    }

    void clearUndoBuffer()
    {
        mEntries.clear();
        mPosition = 0;
    }
    size_t getNbOfUndoEntries() const { return mEntries.size(); }
    size_t getUndoPosition() const { return mPosition; }
    const std::vector<cEntry>& getUndoEntries() const { return mEntries; }

    // Why the last insertion into a list failed.
    void setFlagIncompatX(bool flag) { mIncompatX = flag; }
    void setFlagIncompatY(bool flag) { mIncompatY = flag; }
    void setFlagIncompatDataType(bool flag) { mIncompatDataType = flag; }
    void setFlagIncompatNbSweepVariables(bool flag) { mIncompatNbSweeps = flag; }
    void setFlagNoCurveSelected(bool flag) { mNoCurveSelected = flag; }
    void setFlagTargetRefusedDnd(bool flag) { mTargetRefusedDnd = flag; }
    void setFlagOnlySingleSelection(bool flag) { mOnlySingleSelection = flag; }
    void setFlagBadDropPosition(bool flag) { mBadDropPosition = flag; }
    void clearDiagnosisFlags()
    {
        mIncompatX = mIncompatY = mIncompatDataType = mIncompatNbSweeps = false;
        mNoCurveSelected = mTargetRefusedDnd = mOnlySingleSelection = mBadDropPosition = false;
    }

protected:
    bool mIncompatX = false;
    bool mIncompatY = false;
    bool mIncompatDataType = false;
    bool mIncompatNbSweeps = false;
    bool mNoCurveSelected = false;
    bool mTargetRefusedDnd = false;
    bool mOnlySingleSelection = false;
    bool mBadDropPosition = false;

private:
    void checkMaxSize()
    {
        while (mEntries.size() >= singlePlotWidgetUndoBuffer::max_entries) {
            mEntries.erase(mEntries.begin());
            if (mPosition > 0)
                --mPosition;
        }
    }
    void startEntry(int action)
    {
        if (!mEnabled)
            return;
        checkMaxSize();
        mEntries.resize(mPosition < mEntries.size() ? mPosition : mEntries.size());
        mEntries.push_back(cEntry{action, {}, {}});
        mPosition = mEntries.size();
    }
    void insert(int action, const T& item, unsigned position)
    {
        if (!mEnabled || mEntries.empty() || mEntries.back().action != action)
            return;
        mEntries.back().items.push_back(item);
        mEntries.back().positions.push_back(position);
    }

    bool mEnabled = true;
    std::vector<cEntry> mEntries;
    size_t mPosition = 0;
    cEntry mEmpty;
};

}  // namespace vx3
