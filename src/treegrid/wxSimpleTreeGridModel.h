// The rows of a simple grid held as texts: columns with a label and a kind, rows appended or
// set cell by cell. Number columns keep their value beside the text so that they sort and filter
// as numbers. The leading columns may form the tree.
#pragma once

#include <string>
#include <vector>

#include "treegrid/wxTreeGridVirtual.h"

namespace vx3 {

class wxSimpleTreeGridModel : public wxTreeGridVirtual {
public:
    // Replaces the columns and drops the rows.
    void setColumns(const std::vector<std::string>& labels, const std::vector<int>& types = {});
    // A row of texts, one per column (missing ones empty, extra ones dropped); answers its index.
    unsigned appendRow(const std::vector<std::string>& texts);
    // False when the row or column does not exist.
    bool setCellText(unsigned row, unsigned col, const std::string& text);
    const std::string& getCellText(unsigned row, unsigned col) const;
    void clearRows() { mRows.clear(); }
    unsigned getNbRows() const { return unsigned(mRows.size()); }
    void setUsesExpanders(bool flag, bool expandedByDefault = true)
    {
        mExpanders = flag;
        mDefaultExpanded = expandedByDefault;
    }

    unsigned treeGridVirtualGetNumberOfColumns() override { return unsigned(mLabels.size()); }
    unsigned treeGridVirtualGetNumberOfRows() override { return unsigned(mRows.size()); }
    std::string treeGridVirtualGetColHeaderLabel(unsigned col) override;
    std::string treeGridVirtualGetValue(unsigned row, unsigned col) override;
    double treeGridVirtualGetDoubleValue(unsigned row, unsigned col) override;
    bool treeGridVirtualGetDefaultExpanded(unsigned, unsigned) override { return mDefaultExpanded; }
    bool treeGridVirtualGetGridUsesExpanders() override { return mExpanders; }
    int treeGridVirtualGetColType(unsigned col) override;

private:
    struct cCell {
        std::string text;
        double value;
    };
    cCell makeCell(unsigned col, const std::string& text) const;

    std::vector<std::string> mLabels;
    std::vector<int> mTypes;
    std::vector<std::vector<cCell>> mRows;
    bool mExpanders = false;
    bool mDefaultExpanded = true;
};

}  // namespace vx3
