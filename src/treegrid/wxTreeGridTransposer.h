// The model of a transposed grid: rows and columns of another model swapped. The grid talks to
// this instead of its owner while transposed, so that sorting, filters and export need no second
// form.
#pragma once

#include "treegrid/wxTreeGridVirtual.h"

namespace vx3 {

class wxTreeGridTransposer : public wxTreeGridVirtual {
public:
    explicit wxTreeGridTransposer(wxTreeGridVirtual& inner) : mInner(inner) {}

    unsigned treeGridVirtualGetNumberOfColumns() override { return mInner.treeGridVirtualGetNumberOfRows(); }
    unsigned treeGridVirtualGetNumberOfRows() override { return mInner.treeGridVirtualGetNumberOfColumns(); }
    std::string treeGridVirtualGetColHeaderLabel(unsigned col) override;
    std::string treeGridVirtualGetRowHeaderLabel(unsigned row) override
    {
        return mInner.treeGridVirtualGetColHeaderLabel(row);
    }
    int treeGridVirtualGetRowHeaderLabelOffset() override { return 0; }
    std::string treeGridVirtualGetValue(unsigned row, unsigned col) override
    {
        return mInner.treeGridVirtualGetValue(col, row);
    }
    bool treeGridVirtualGetDefaultExpanded(unsigned row, unsigned level) override { return true; }
    // A transposed tree would mix the levels with the data: it stays flat.
    bool treeGridVirtualGetGridUsesExpanders() override { return false; }
    void treeGridVirtualElementSelected(unsigned row, unsigned col) override
    {
        mInner.treeGridVirtualElementSelected(col, row);
    }
    void treeGridVirtualElementDeselected(unsigned row, unsigned col) override
    {
        mInner.treeGridVirtualElementDeselected(col, row);
    }
    void treeGridVirtualRowSelected(unsigned row) override { mInner.treeGridVirtualColSelected(row); }
    void treeGridVirtualRowDeselected(unsigned row) override { mInner.treeGridVirtualColDeselected(row); }
    void treeGridVirtualColSelected(unsigned col) override { mInner.treeGridVirtualRowSelected(col); }
    void treeGridVirtualColDeselected(unsigned col) override { mInner.treeGridVirtualRowDeselected(col); }
    // A transposed column holds one model row across columns of any kind: it compares as text.
    int treeGridVirtualGetColType(unsigned col) override { return treeGridVirtual::col_string; }
    int treeGridVirtualGetCellDataType(unsigned row, unsigned col) override
    {
        return mInner.treeGridVirtualGetCellDataType(col, row);
    }
    double treeGridVirtualGetDoubleValue(unsigned row, unsigned col) override
    {
        return mInner.treeGridVirtualGetDoubleValue(col, row);
    }
    bool treeGridVirtualGetBooleanValue(unsigned row, unsigned col) override
    {
        return mInner.treeGridVirtualGetBooleanValue(col, row);
    }
    std::vector<double> treeGridVirtualGetDoubleVectorValue(unsigned row, unsigned col) override
    {
        return mInner.treeGridVirtualGetDoubleVectorValue(col, row);
    }
    void treeGridVirtualElementActivated(unsigned row, unsigned col) override
    {
        mInner.treeGridVirtualElementActivated(col, row);
    }
    std::string treeGridVirtualGetToolTip(unsigned row, unsigned col) override
    {
        return mInner.treeGridVirtualGetToolTip(col, row);
    }
    bool treeGridVirtualGetCellColours(unsigned row, unsigned col, unsigned& fg, unsigned& bg) override
    {
        return mInner.treeGridVirtualGetCellColours(col, row, fg, bg);
    }

private:
    wxTreeGridVirtual& mInner;
};

}  // namespace vx3
