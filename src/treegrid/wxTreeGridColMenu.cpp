#include "treegrid/wxTreeGridColMenu.h"

namespace vx3 {

using namespace treeGridColMenu;
using namespace treeGridGeometry;

bool treeGridColMenu::checkActionNeedsDialog(int action)
{
    return action == act_define_filters || action == act_find_text || action == act_export_text ||
           action == act_export_html;
}

std::vector<cMenuItem> wxTreeGridColMenu::collectColMenuItems(wxTreeGridGeometry& grid, unsigned col)
{
    wxTreeGridVirtual& model = grid.getModel();
    const std::string label = model.treeGridVirtualGetColHeaderLabel(col);
    const bool sortable = model.treeGridVirtualCheckColCanBeSorted(col);
    const int order = grid.getColSortOrder(col);
    const unsigned effective = grid.getEffectiveColFromCol(col);
    std::vector<cMenuItem> items;
    auto add = [&items](int action, std::string text, std::string sub = {}, bool enabled = true) {
        cMenuItem item;
        item.action = action;
        item.label = std::move(text);
        item.subMenu = std::move(sub);
        item.enabled = enabled;
        items.push_back(std::move(item));
        return &items.back();
    };
    auto radio = [](cMenuItem* item, bool on) {
        item->checkable = true;
        item->checked = on;
    };
    radio(add(act_sort_ascending, "Sort Ascending", {}, sortable), order == sort_ascending);
    radio(add(act_sort_descending, "Sort Descending", {}, sortable), order == sort_descending);
    radio(add(act_dont_sort, "Don't Sort", {}, sortable), order == sort_none);
    add(act_separator, {});
    add(act_restore_default_order, "Restore Default Order");
    const std::string move = "Move " + label;
    add(act_move_left, "Left", move, effective > 0);
    add(act_move_right, "Right", move, effective + 1 < grid.getNumberOfColumns());
    // The last shown column stays: a grid without columns could not be given them back by menu.
    unsigned shown = 0, hidden = 0;
    for (unsigned c = 0; c < grid.getNumberOfColumns(); ++c)
        (grid.checkColIsHidden(c) ? hidden : shown)++;
    add(act_hide, "Hide " + label, {}, shown > 1);
    add(act_show_all, "Show All Columns", {}, hidden > 0);
    if (model.treeGridVirtualCheckColCanBeRemoved(col))
        add(act_remove, "Remove " + label);
    if (grid.usesExpanders() && effective < grid.getEffectiveColExpandersLevel()) {
        add(act_expand, "Expand", "Expanders");
        add(act_collapse, "Collapse", "Expanders");
    }
    const bool filters = model.treeGridVirtualCheckIfColumnAcceptsFilters(col);
    add(act_define_filters, "Define Filters", "Filters", filters);
    add(act_clear_filters, "Clear Filters", "Filters", grid.checkColumnIsFiltered(col));
    add(act_all_filters, "All Filters", "Filters", grid.checkAnyColumnIsFiltered());
    add(act_separator, {});
    add(act_find_text, "Find Text");
    add(act_export_text, "Export As Text", "Export");
    add(act_export_html, "Export As HTML", "Export");
    add(act_transpose, "Transpose");
    return items;
}

bool wxTreeGridColMenu::executeColMenuAction(wxTreeGridGeometry& grid, int action, unsigned col)
{
    wxTreeGridVirtual& model = grid.getModel();
    const unsigned effective = grid.getEffectiveColFromCol(col);
    switch (action) {
    case act_sort_ascending:
    case act_sort_descending:
        if (!model.treeGridVirtualCheckColCanBeSorted(col))
            return false;
        grid.clearSortOrders();
        grid.setColSortOrder(col, action == act_sort_ascending ? sort_ascending : sort_descending);
        return grid.sort();
    case act_dont_sort:
        grid.setColSortOrder(col, sort_none);
        return grid.sort();
    case act_restore_default_order: grid.restoreDefaultColumnOrder(); return true;
    case act_move_left:
        if (effective == 0)
            return false;
        grid.moveColumn(col, effective - 1);
        return true;
    case act_move_right:
        if (effective + 1 >= grid.getNumberOfColumns())
            return false;
        grid.moveColumn(col, effective + 1);
        return true;
    case act_hide: {
        unsigned shown = 0;
        for (unsigned c = 0; c < grid.getNumberOfColumns(); ++c)
            shown += !grid.checkColIsHidden(c);
        if (shown <= 1)
            return false;
        grid.setColHidden(col, true);
        return true;
    }
    case act_show_all: grid.showAllColumns(); return true;
    case act_remove:
        if (!model.treeGridVirtualCheckColCanBeRemoved(col))
            return false;
        model.treeGridVirtualColHasBeenRemoved(col);
        grid.dataChanged(true, false);
        return true;
    case act_expand:
    case act_collapse:
        if (!grid.usesExpanders() || effective >= grid.getEffectiveColExpandersLevel())
            return false;
        grid.expandEffectiveColumn(effective, action == act_expand);
        return true;
    case act_clear_filters:
        grid.clearFilters(col);
        grid.filterRulesChanged();
        return true;
    case act_all_filters:
        grid.clearAllFilters();
        grid.filterRulesChanged();
        return true;
    case act_transpose: grid.transpose(); return true;
    default: return false;
    }
}

}  // namespace vx3
