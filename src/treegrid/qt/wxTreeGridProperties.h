// A property sheet on the grid widget: the rows of a wxTreeGridPropertyList, edited in place, with
// the groups as expanders.
#pragma once

#include "treegrid/qt/wxTreeGridImpl.h"
#include "treegrid/wxTreeGridPropertyList.h"

namespace vx3 {

// The list comes first so that it is built before the grid that reads it.
class wxTreeGridProperties : public wxTreeGridPropertyList, public wxTreeGridImpl {
public:
    explicit wxTreeGridProperties(QWidget* parent = nullptr);
    // Whether the row's group can open or close now.
    bool canBeExpanded(unsigned row);
    bool canBeCollapsed(unsigned row);
    // Call after the last adder: the sheet reads its rows and sizes its columns.
    void propertiesChanged() { dataChanged(true, true); }

private:
    unsigned findGroupExpander(unsigned row);
};

}  // namespace vx3
