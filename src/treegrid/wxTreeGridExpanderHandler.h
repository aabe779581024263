// The tree of a grid, derived from the flat rows: a run of two or more equal texts in an expander
// column becomes an expander. Rows are counted three ways throughout the grid:
//   total row      the model's own row;
//   effective row  a row in the view's order after sorting, filters and suppression;
//   visible row    a line on the screen: effective rows minus those that collapsed expanders hide.
// Expanders live in one flat vector in order of first row (a parent before its children), with
// links to the parent and to the neighbours of the same level under the same parent. A collapsed
// expander shows its first row only. The hidden spans (one per outermost collapsed expander) are
// derived on demand; a cursor over them makes successive lookups of nearby rows constant time.
#pragma once

#include <limits>
#include <string>
#include <unordered_map>
#include <vector>

namespace vx3 {

struct wxTreeGridExpander {
    static constexpr unsigned npos = std::numeric_limits<unsigned>::max();
    unsigned reserved = 0;
    unsigned userWord = 0;  // free for the owning grid
    bool expanded = false;
    unsigned firstRow = 0;  // effective row
    unsigned level = 0;     // effective column the expander stands in
    unsigned nbOfRows = 0;
    unsigned indentLevel = 0;  // number of expanders above it
    unsigned nextIdentical = npos;      // next expander of the same level under the same parent
    unsigned previousIdentical = npos;
    unsigned parent = npos;
    bool containsRow(unsigned row) const { return row >= firstRow && row - firstRow < nbOfRows; }
};

class wxTreeGridExpanderHandler {
public:
    static constexpr unsigned npos = wxTreeGridExpander::npos;

    wxTreeGridExpanderHandler() = default;
    virtual ~wxTreeGridExpanderHandler() = default;

    // ---- Levels: how many leading effective columns form the tree.
    void setEffectiveColExpanderLevel(unsigned levels) { mExpanderLevels = levels; }
    unsigned getEffectiveColExpandersLevel() const { return mExpanderLevels; }

    // ---- Building
    // Rebuilds all expanders over rowCount effective rows; defaultStates (per level, may be empty)
    // overrides the model's default state. States the user set and that still apply are kept.
    void buildExpanders(unsigned rowCount, const std::vector<bool>& defaultStates);
    void clearExpanders();
    // Forgets what the user opened and closed, so that the next build takes the defaults.
    void clearRememberedExpanderStates() { mRememberedStates.clear(); mLevelStates.clear(); }

    // ---- The expanders
    const std::vector<wxTreeGridExpander>& getExpanders() const { return mExpanders; }
    unsigned getNumberOfExpanders() const { return unsigned(mExpanders.size()); }
    const wxTreeGridExpander& getExpander(unsigned index) const;
    // The expander whose run starts at row in column level; npos if there is none.
    unsigned findExpanderAt(unsigned effectiveRow, unsigned level) const;
    // The deepest expander whose run holds row; npos if none does.
    unsigned findDeepestExpanderContainingRow(unsigned effectiveRow) const;
    unsigned findExpanderIndexContainingRowForward(unsigned effectiveRow, unsigned fromIndex) const;
    unsigned findExpanderIndexContainingRowBackward(unsigned effectiveRow, unsigned fromIndex) const;
    unsigned getNextEquivalentExpander(unsigned index) const { return getExpander(index).nextIdentical; }
    // The next expander of the same level in row order, under any parent; npos at the end.
    unsigned getNextExpanderInColumn(unsigned index) const;
    // The next expander after index that is on screen (no collapsed ancestor); npos at the end.
    unsigned getNextVisibleExpander(unsigned index) const;
    bool checkIfParentIsCollapsed(unsigned index) const;

    // ---- Opening and closing
    // Returns whether the state changed. The state is remembered by the texts of the run, so that
    // a rebuild (sort, filter, new data) keeps it.
    bool setExpanded(unsigned index, bool expanded);
    bool toggleExpanded(unsigned index) { return setExpanded(index, !getExpander(index).expanded); }
    // Opens or closes every expander of one level.
    void expandEffectiveColumn(unsigned level, bool expanded);
    void expandAll(bool expanded);

    // ---- Rows on the screen
    unsigned computeVisibleNbOfRows();
    // Moves the cursor to visible row and answers the effective row shown there.
    unsigned initExpanders(unsigned visibleRow);
    unsigned getEffectiveRowFromVisibleRow(unsigned visibleRow) { return initExpanders(visibleRow); }
    // The line that shows effectiveRow, or that of the collapsed expander that hides it.
    unsigned getVisibleRowFromEffectiveRow(unsigned effectiveRow);
    bool checkEffectiveRowIsHidden(unsigned effectiveRow);

    // Memory held per the current state, for the benchmark's account.
    size_t getExpanderMemoryBytes() const;

protected:
    // The text of an effective row in an effective column, for building.
    virtual std::string getExpanderText(unsigned effectiveRow, unsigned level) = 0;
    virtual bool getModelDefaultExpanded(unsigned effectiveRow, unsigned level) = 0;
    // Whether the owner allows the change; the grid asks its model.
    virtual bool checkExpanderMayChange(unsigned index, bool expanded) { return true; }

private:
    struct cHiddenSpan {
        unsigned visibleRow;    // line of the collapsed expander's first row
        unsigned effectiveRow;  // its first row
        unsigned hidden;        // rows it hides after the first
        unsigned hiddenBefore;  // rows hidden by all spans before it
    };
    void createExpandersRecursive(unsigned level, unsigned firstRow, unsigned lastRow, unsigned parent,
                                  const std::vector<bool>& defaultStates);
    void rebuildHiddenSpans();
    // Index of the last span whose visible row is at most visibleRow; npos if none.
    unsigned findSpanByVisibleRow(unsigned visibleRow);
    std::string makeStateKey(unsigned effectiveRow, unsigned level);

    unsigned mExpanderLevels = 0;
    std::vector<wxTreeGridExpander> mExpanders;
    std::vector<cHiddenSpan> mSpans;
    bool mSpansValid = false;
    unsigned mRowCount = 0;
    // The cursor: the span last found, with the visible and effective row it answered.
    unsigned mCursorSpan = npos;
    unsigned mCursorVisibleRow = 0;
    unsigned mCursorEffectiveRow = 0;
    // States set by the user, by the texts of the run's row from level 0 to its own level.
    std::unordered_map<std::string, bool> mRememberedStates;
    // States set for a whole level (expandEffectiveColumn), 0 none, 1 closed, 2 open.
    std::vector<unsigned char> mLevelStates;
};

}  // namespace vx3
