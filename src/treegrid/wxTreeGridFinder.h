// Finding text in a grid: the cells of the columns that show, row by row in the view's order,
// from a cell onward or backward, wrapping once around the table. Plain text, whole words or a
// regular expression, with or without case. Free of the toolkit; the find dialog drives it.
#pragma once

#include <memory>
#include <string>

#include "treegrid/wxTreeGridGeometry.h"

namespace vx3 {

namespace treeGridFinder {
struct cFindOptions {
    std::string text;
    bool caseSensitive = false;
    bool wholeWord = false;
    bool regularExpression = false;
    bool backward = false;
    // Starts at the first cell (the last one going backward) instead of after the current one.
    bool fromTop = false;
};
// A found cell in the view's terms and in the model's.
struct cFindResult {
    bool found = false;
    bool wrapped = false;  // the search passed the end of the table and went on from the start
    unsigned effectiveRow = wxTreeGridExpanderHandler::npos;
    unsigned effectiveCol = wxTreeGridExpanderHandler::npos;
    unsigned totalRow = wxTreeGridExpanderHandler::npos;
    unsigned col = wxTreeGridExpanderHandler::npos;
};
}  // namespace treeGridFinder

class wxTreeGridFinder {
public:
    wxTreeGridFinder();
    ~wxTreeGridFinder();
    wxTreeGridFinder(const wxTreeGridFinder&) = delete;
    wxTreeGridFinder& operator=(const wxTreeGridFinder&) = delete;

    // False with a message when there is nothing to find or the expression does not compile.
    bool setOptions(const treeGridFinder::cFindOptions& options, std::string& message);
    const treeGridFinder::cFindOptions& getOptions() const { return mOptions; }
    // Whether text holds a match of the search.
    bool checkMatches(const std::string& text) const;
    // The next matching cell after (before, going backward) the given one; effectiveCol npos
    // searches the row's own cells first, effectiveRow npos starts at the table's edge. Hidden columns and suppressed rows are not searched; rows inside
    // collapsed expanders are.
    treeGridFinder::cFindResult find(wxTreeGridGeometry& grid, unsigned effectiveRow, unsigned effectiveCol) const;

private:
    struct cRegex;
    bool checkPlainMatches(const std::string& text) const;
    treeGridFinder::cFindOptions mOptions;
    std::string mFoldedText;  // the search text, lowered when the case does not count
    std::unique_ptr<cRegex> mRegex;
};

}  // namespace vx3
