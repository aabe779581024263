// The callback interface from a tree grid to the owner of its contents. The grid stores no cells:
// it asks for every value when it needs it. Rows and columns here are always the model's own (the
// total row and the column); the grid keeps the order of the view to itself.
#pragma once

#include <string>
#include <vector>

namespace vx3 {

namespace treeGridVirtual {
// What a column holds; it decides how the column sorts and filters.
enum col_type : int {
    col_string = 0,
    col_number = 1,
    col_boolean = 2,
    col_vector = 3,
    col_enum = 4,
    col_colour = 5,
    col_complex_vector = 6,
    col_bitmap = 7,
};
// The columns whose sort compares value lists element by element.
inline bool checkIsVectorColType(int type) { return type == col_vector || type == col_complex_vector; }
}  // namespace treeGridVirtual

class wxTreeGridVirtual {
public:
    virtual ~wxTreeGridVirtual() = default;

    // ---- Required: every grid answers these.
    virtual unsigned treeGridVirtualGetNumberOfColumns() = 0;
    virtual unsigned treeGridVirtualGetNumberOfRows() = 0;
    virtual std::string treeGridVirtualGetColHeaderLabel(unsigned col) = 0;
    // The cell's text; a model that cannot answer returns an empty text.
    virtual std::string treeGridVirtualGetValue(unsigned row, unsigned col) = 0;
    virtual bool treeGridVirtualGetDefaultExpanded(unsigned row, unsigned level) = 0;
    virtual bool treeGridVirtualGetGridUsesExpanders() = 0;
    virtual int treeGridVirtualGetColType(unsigned col) = 0;

    // ---- Optional, with the behaviour of a plain table.
    // Row headers show the row number plus the offset (1 for tables counted from 1) unless a
    // model names its rows.
    virtual std::string treeGridVirtualGetRowHeaderLabel(unsigned row) { return {}; }
    virtual int treeGridVirtualGetRowHeaderLabelOffset() { return 1; }
    // Selection notices, for models that follow the selection.
    virtual void treeGridVirtualElementSelected(unsigned row, unsigned col) {}
    virtual void treeGridVirtualElementDeselected(unsigned row, unsigned col) {}
    virtual void treeGridVirtualRowSelected(unsigned row) {}
    virtual void treeGridVirtualRowDeselected(unsigned row) {}
    virtual void treeGridVirtualColSelected(unsigned col) {}
    virtual void treeGridVirtualColDeselected(unsigned col) {}
    // 0: measure the texts; a positive width wins over measuring.
    virtual int treeGridVirtualGetFixedColWidth(unsigned col) { return 0; }
    // A text as wide as the widest of the column, so that a large model spares the measuring of
    // every row; false: the grid measures the rows it shows.
    virtual bool treeGridVirtualGetValueForColWidthComputation(unsigned col, std::string& text) { return false; }
    virtual double treeGridVirtualGetDoubleValue(unsigned row, unsigned col);
    virtual bool treeGridVirtualGetBooleanValue(unsigned row, unsigned col) { return false; }
    virtual std::vector<double> treeGridVirtualGetDoubleVectorValue(unsigned row, unsigned col) { return {}; }
    virtual int treeGridVirtualGetCellDataType(unsigned row, unsigned col) { return treeGridVirtualGetColType(col); }
    virtual void treeGridVirtualElementActivated(unsigned row, unsigned col) {}
    virtual void treeGridVirtualElementClicked(unsigned row, unsigned col) {}
    virtual void treeGridVirtualColHeaderActivated(unsigned col) {}
    virtual void treeGridVirtualRowHeaderActivated(unsigned row) {}
    virtual void treeGridVirtualColumnsWereResized() {}
    virtual void treeGridVirtualColumnsWereResizedByUser() {}
    virtual std::string treeGridVirtualGetToolTip(unsigned row, unsigned col) { return {}; }
    virtual bool treeGridVirtualCheckColCanBeSorted(unsigned col) { return true; }
    // Lets a virtual model fetch the values of the sort columns in bulk before they are compared.
    virtual void treeGridVirtualPrepareColumnSorting(const std::vector<unsigned>& cols) {}
    // A model that knows the order of a single-level grid by itself hands it over here (the model
    // rows in the wanted order) and spares the comparisons; false: the grid compares.
    virtual bool treeGridVirtualCheckIfSimplifiedSortingIsPossible(unsigned col, bool ascending,
                                                                   std::vector<unsigned>& order)
    {
        return false;
    }
    // Whether the runs of the first expander column move as blocks when that column sorts.
    virtual bool treeGridVirtualCheckFirstExpanderCanBeSortedHigh(unsigned col) { return false; }
    virtual bool treeGridVirtualCheckIfColumnAcceptsFilters(unsigned col) { return true; }
    virtual void treeGridVirtualRowAndColWereInverted(bool transposed) {}
    // A column the user may remove by its menu; the model drops it in ColHasBeenRemoved and the
    // grid then reads the model anew.
    virtual bool treeGridVirtualCheckColCanBeRemoved(unsigned col) { return false; }
    virtual void treeGridVirtualColHasBeenRemoved(unsigned col) {}
    virtual int treeGridVirtualGetFloatingPointPrecision(unsigned col) { return 6; }
    virtual bool treeGridVirtualIsEnabled(unsigned row, unsigned col) { return true; }
    virtual bool treeGridVirtualIsEditable(unsigned row, unsigned col) { return false; }
    virtual bool treeGridVirtualToggleBooleanValue(unsigned row, unsigned col) { return false; }
    virtual bool treeGridVirtualSetStringValue(unsigned row, unsigned col, const std::string& text) { return false; }
    virtual std::vector<std::string> treeGridVirtualGetEnumValues(unsigned row, unsigned col) { return {}; }
    // Before an expander opens or closes; false keeps it as it is.
    virtual bool treeGridVirtualExpanding(unsigned row, unsigned level, bool expand) { return true; }
    // 0xrrggbb colours of a cell; false: the grid's own.
    virtual bool treeGridVirtualGetCellColours(unsigned row, unsigned col, unsigned& foreground, unsigned& background)
    {
        return false;
    }
};

}  // namespace vx3
