// The menu of a column header as data: which items it offers for a column and what the items that
// need no dialog do. The widget turns the list into a menu and serves the items that open a
// dialog (filters, find, export); the choice of items is tested without a screen.
#pragma once

#include <string>
#include <vector>

#include "treegrid/wxTreeGridGeometry.h"

namespace vx3 {

namespace treeGridColMenu {
enum menu_action : int {
    act_separator = 0,
    act_sort_ascending,
    act_sort_descending,
    act_dont_sort,
    act_restore_default_order,
    act_move_left,
    act_move_right,
    act_hide,
    act_show_all,
    act_remove,
    act_expand,
    act_collapse,
    act_define_filters,  // dialog
    act_clear_filters,
    act_all_filters,
    act_find_text,  // dialog
    act_transpose,
    act_export_text,  // file dialog
    act_export_html,  // file dialog
};
struct cMenuItem {
    int action = act_separator;
    std::string label;
    std::string subMenu;  // empty: on the menu itself
    bool enabled = true;
    bool checked = false;
    bool checkable = false;
};
// Whether the widget must open a dialog for the action.
bool checkActionNeedsDialog(int action);
}  // namespace treeGridColMenu

class wxTreeGridColMenu {
public:
    // The items for the menu of a model column, in their order.
    static std::vector<treeGridColMenu::cMenuItem> collectColMenuItems(wxTreeGridGeometry& grid, unsigned col);
    // Does an action that needs no dialog (sorting runs too); false for dialog actions and for an
    // action the column refuses.
    static bool executeColMenuAction(wxTreeGridGeometry& grid, int action, unsigned col);
};

}  // namespace vx3
