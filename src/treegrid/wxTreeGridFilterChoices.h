// What the filter dialog of a column offers and applies, without the dialog: the distinct texts
// of the column with a check mark each (the discrete filter), the bounds of the number filter as
// texts, and the inverting flag. Free of the toolkit, so that the filter logic is tested headless.
#pragma once

#include <string>
#include <vector>

#include "treegrid/wxTreeGridGeometry.h"

namespace vx3 {

class wxTreeGridFilterChoices {
public:
    // More distinct texts than this are not listed: a column of measured values would make a list
    // nobody ticks through; its number filter serves it.
    static constexpr size_t maxDistinctTexts = 5000;

    // Reads the column's texts over all model rows and the column's present filter.
    wxTreeGridFilterChoices(wxTreeGridGeometry& grid, unsigned col);

    unsigned getColumn() const { return mCol; }
    const std::string& getColumnLabel() const { return mLabel; }
    // The distinct texts in the column's order: numbers by value, texts by their bytes.
    const std::vector<std::string>& getTexts() const { return mTexts; }
    bool checkTextsAreComplete() const { return mComplete; }
    bool checkIsNumberColumn() const { return mNumberColumn; }
    bool checkColumnAcceptsFilters() const { return mAccepts; }

    std::vector<bool> checked;  // one per text; all set means no discrete filter
    std::string minimumReal, maximumReal, minimumImaginary, maximumImaginary;  // empty: open
    bool inverted = false;

    void setAllChecked(bool flag) { checked.assign(mTexts.size(), flag); }
    bool checkAllChecked() const;
    // Writes the choices into the grid's filter of the column and recomputes the rows. False with
    // a message, and the grid unchanged, when a bound is not a number or nothing is ticked.
    bool apply(std::string& message);

private:
    wxTreeGridGeometry& mGrid;
    unsigned mCol;
    std::string mLabel;
    std::vector<std::string> mTexts;
    bool mComplete = true;
    bool mNumberColumn = false;
    bool mAccepts = true;
};

}  // namespace vx3
