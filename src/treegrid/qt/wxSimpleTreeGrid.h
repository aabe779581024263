// A grid over a table of texts held in the grid itself, for small lists (dialogs, reports): set
// the columns, append the rows, then call dataChanged once.
#pragma once

#include "treegrid/qt/wxTreeGridImpl.h"
#include "treegrid/wxSimpleTreeGridModel.h"

namespace vx3 {

// The model comes first so that it exists before the grid that reads it.
class wxSimpleTreeGrid : public wxSimpleTreeGridModel, public wxTreeGridImpl {
public:
    explicit wxSimpleTreeGrid(QWidget* parent = nullptr)
        : wxSimpleTreeGridModel(), wxTreeGridImpl(static_cast<wxSimpleTreeGridModel&>(*this), parent)
    {
    }
    // Rows and columns are set: the grid reads them, sizes its columns and repaints.
    void contentsChanged() { dataChanged(true, true); }
};

}  // namespace vx3
