#include "wxWaveExplorerBrowserTreeGrid.h"

#include <QApplication>
#include <QDrag>
#include <QMenu>
#include <QMimeData>

#include <algorithm>
#include <set>
#include <tuple>

namespace vx3 {

using namespace waveExplorerBrowser;

wxWaveExplorerBrowserTreeGrid::wxWaveExplorerBrowserTreeGrid(QWidget* parent, wxBrowserConfiguration* configuration)
    : cRowsHolder(configuration), wxTreeGridImpl(*mRowsPtr, parent)
{
    setObjectName("browser_treegrid");
    wxTreeGridImpl::dataChanged(true, false);
}

std::string wxWaveExplorerBrowserTreeGrid::expanderLevelKey(unsigned index)
{
    const wxTreeGridExpander& expander = getExpander(index);
    const unsigned col = getColFromEffectiveCol(expander.level);
    const auto& columns = rows().columns();
    if (col >= columns.size())
        return {};
    const unsigned row = getTotalRow(expander.firstRow);
    return std::to_string(columns[col].kind) + ":" + std::to_string(columns[col].priority) + "=" +
           rows().treeGridVirtualGetValue(row, col);
}

std::string wxWaveExplorerBrowserTreeGrid::expanderNameKey(unsigned index)
{
    std::vector<std::string> parts;
    for (unsigned e = index; e != wxTreeGridExpander::npos; e = getExpander(e).parent)
        parts.push_back(expanderLevelKey(e));
    std::sort(parts.begin(), parts.end());
    std::string key;
    for (const auto& part : parts)
        key += part + '\x1f';
    return key;
}

void wxWaveExplorerBrowserTreeGrid::refresh(cCurvePlotDataFile& store)
{
    // The open state by the names along each path, and the selected curves by identity: row
    // numbers and the order of levels may both change.
    std::map<std::string, bool> states;
    for (unsigned e = 0; e < getNumberOfExpanders(); ++e)
        states[expanderNameKey(e)] = getExpander(e).expanded;
    std::set<std::tuple<uint64_t, uint64_t, uint32_t>> selected;
    for (unsigned row : getSelectedRows())
        if (row < rows().getNumberOfCurveRows()) {
            const wxBrowserRow& r = rows().getRow(row);
            selected.emplace(r.sectionId, r.curveIndex, r.cut);
        }

    rows().rebuild(store);
    clearRowSelection();
    wxTreeGridImpl::dataChanged(true, false);
    setNumberOfExpanderColumns(rows().getNumberOfExpanderColumns());
    for (unsigned e = 0; e < getNumberOfExpanders(); ++e) {
        const auto found = states.find(expanderNameKey(e));
        if (found != states.end() && found->second != getExpander(e).expanded)
            setExpanded(e, found->second);
    }
    if (!selected.empty())
        for (size_t row = 0; row < rows().getNumberOfCurveRows(); ++row) {
            const wxBrowserRow& r = rows().getRow(row);
            if (selected.count({r.sectionId, r.curveIndex, r.cut}))
                selectRow(unsigned(row), true);
        }
    fitColumnsToView();
    redraw();
    update();
    reportSelection();
}

void wxWaveExplorerBrowserTreeGrid::resizeEvent(QResizeEvent* event)
{
    wxTreeGridImpl::resizeEvent(event);
    if (getNumberOfColumns() == 0)
        return;
    updateColWidth(0, getNumberOfColumns() - 1);
    fitColumnsToView();
}

void wxWaveExplorerBrowserTreeGrid::fitColumnsToView()
{
    constexpr int kFloor = 60;         // a level keeps room for a few characters and its box
    constexpr int kScrollBarRoom = 18;
    const int available = width() - getRowHeaderWidth() - kScrollBarRoom;
    const auto& columns = rows().columns();
    std::vector<unsigned> shrinkable;
    int total = 0, widest = 0;
    for (unsigned col = 0; col < getNumberOfColumns() && col < columns.size(); ++col) {
        const int w = getColWidth(col);
        total += w;
        const bool level = columns[col].kind == kind_level && columns[col].priority != browserConfiguration::curve_name;
        if ((level || columns[col].kind == kind_instance) && w > kFloor) {
            shrinkable.push_back(col);
            widest = std::max(widest, w);
        }
    }
    const int excess = total - available;
    if (excess <= 0 || shrinkable.empty() || available <= 0)
        return;
    // The highest cap that frees enough: the widest columns give first.
    auto freed = [&](int cap) {
        int sum = 0;
        for (unsigned col : shrinkable)
            sum += std::max(0, getColWidth(col) - cap);
        return sum;
    };
    int cap = widest;
    while (cap > kFloor && freed(cap) < excess)
        --cap;
    for (unsigned col : shrinkable)
        setColWidth(col, std::min(getColWidth(col), cap));
    viewChanged();
}

void wxWaveExplorerBrowserTreeGrid::reportSelection()
{
    const size_t count = getNumberOfSelectedRows();
    if (count == mReportedSelection)
        return;
    mReportedSelection = count;
    if (mActions.selectionChanged)
        mActions.selectionChanged(count);
}

bool wxWaveExplorerBrowserTreeGrid::onKeyDown(int key, int modifiers, const QString& text)
{
    const bool used = wxTreeGridImpl::onKeyDown(key, modifiers, text);
    reportSelection();
    return used;
}

void wxWaveExplorerBrowserTreeGrid::showRow(size_t row)
{
    if (row >= rows().getNumberOfCurveRows())
        return;
    ensureVisible(unsigned(row));
    clearRowSelection();
    selectRow(unsigned(row), true);
    update();
    reportSelection();
}

size_t wxWaveExplorerBrowserTreeGrid::getCurrentRow()
{
    const unsigned line = getCurrentVisibleRow();
    if (line == npos || line >= getNumberOfVisibleRows())
        return size_t(-1);
    const unsigned effective = getEffectiveRowFromVisible(line);
    return effective == npos ? size_t(-1) : getTotalRow(effective);
}

bool wxWaveExplorerBrowserTreeGrid::getSelectedInstanceRows(size_t& first, size_t& end)
{
    const unsigned line = getCurrentVisibleRow();
    if (line == npos || line >= getNumberOfVisibleRows() || !usesExpanders())
        return false;
    const unsigned effective = getEffectiveRowFromVisible(line);
    const unsigned e = findDeepestExpanderContainingRow(effective);
    if (e == npos)
        return false;
    const wxTreeGridExpander& expander = getExpander(e);
    // The rows of an expander are adjacent in the model as long as the view is not sorted.
    size_t low = size_t(-1), high = 0;
    for (unsigned r = expander.firstRow; r < expander.firstRow + expander.nbOfRows; ++r) {
        const size_t total = getTotalRow(r);
        low = std::min(low, total);
        high = std::max(high, total + 1);
    }
    first = low;
    end = high;
    return high > low;
}

std::vector<size_t> wxWaveExplorerBrowserTreeGrid::getSelectedCurveRows()
{
    std::vector<size_t> result;
    for (unsigned row : getSelectedRows())
        result.push_back(row);
    if (result.empty()) {
        const size_t current = getCurrentRow();
        if (current != size_t(-1))
            result.push_back(current);
    }
    return result;
}

void wxWaveExplorerBrowserTreeGrid::setAllExpanded(bool expanded)
{
    expandAll(expanded);
    redraw();
    update();
}

void wxWaveExplorerBrowserTreeGrid::handleRowContextMenu(unsigned visibleRow, int x, int y)
{
    // A right click on a row outside the selection selects that row alone, as item views do.
    const unsigned effective = getEffectiveRowFromVisible(visibleRow);
    if (effective != npos && !checkRowIsSelected(getTotalRow(effective))) {
        clearRowSelection();
        selectRow(getTotalRow(effective), true);
    }
    setCurrentVisibleRow(visibleRow);
    update();
    reportSelection();
    const std::vector<size_t> selection = getSelectedCurveRows();
    auto withSelection = [this, selection](auto action) {
        return [this, selection, action] {
            if (selection.empty()) {
                if (mActions.message)
                    mActions.message("No valid selection.");
                return;
            }
            action(selection);
        };
    };
    QMenu menu(this);
    menu.addAction("Plot Curve", withSelection([this](const std::vector<size_t>& rows) {
        if (mActions.plot)
            mActions.plot({rows.front()}, false);
    }));
    menu.addAction("Plot All Curves", [this] {
        size_t first = 0, end = 0;
        if (!getSelectedInstanceRows(first, end)) {
            first = 0;
            end = rows().getNumberOfCurveRows();
        }
        std::vector<size_t> all;
        for (size_t r = first; r < end; ++r)
            all.push_back(r);
        if (all.empty() && mActions.message)
            mActions.message("No valid selection.");
        else if (mActions.plot)
            mActions.plot(all, false);
    });
    menu.addAction("Plot Selection Of Curves", withSelection([this](const std::vector<size_t>& rows) {
        if (mActions.plot)
            mActions.plot(rows, false);
    }));
    menu.addAction("Plot Over Matching Curve", withSelection([this](const std::vector<size_t>& rows) {
        if (mActions.plotOverMatching)
            mActions.plotOverMatching({rows.front()});
    }));
    menu.addAction("Plot Over Matching Curves", withSelection([this](const std::vector<size_t>& rows) {
        if (mActions.plotOverMatching)
            mActions.plotOverMatching(rows);
    }));
    menu.addAction("Plot Multiple Runs ...")->setEnabled(false);
    menu.addSeparator();
    menu.addAction("Expand", [this, visibleRow] {
        const unsigned row = getEffectiveRowFromVisible(visibleRow);
        for (unsigned e = findDeepestExpanderContainingRow(row); e != npos; e = getExpander(e).parent)
            if (!getExpander(e).expanded)
                setExpanded(e, true);
        redraw();
        update();
    });
    menu.addAction("Collapse All", [this] { setAllExpanded(false); });
    menu.addAction("Expand All", [this] { setAllExpanded(true); });
    menu.addSeparator();
    // Aliases and the link to a schematic come with the netlist's tie to curves.
    menu.addAction("Define Alias")->setEnabled(false);
    menu.addAction("Define Mapping To Schematic")->setEnabled(false);
    menu.addAction("Use For Link To Schematic")->setEnabled(false);
    menu.addSeparator();
    menu.addAction("Reload File", withSelection([this](const std::vector<size_t>& rows) {
        if (mActions.reload)
            mActions.reload(rows);
    }));
    menu.addAction("Reload All Files", [this] {
        if (mActions.reloadAll)
            mActions.reloadAll();
    });
    menu.addAction("Open File", [this] {
        if (mActions.openFile)
            mActions.openFile();
    });
    menu.addAction("Close File", withSelection([this](const std::vector<size_t>& rows) {
        if (mActions.close)
            mActions.close(rows);
    }));
    menu.addAction("Close All Files", [this] {
        if (mActions.closeAll)
            mActions.closeAll();
    });
    menu.addSeparator();
    menu.addAction("Apply Changes To Existing Plots")->setEnabled(false);
    menu.addAction("Line Color")->setEnabled(false);
    menu.addAction("Line Color (imag)")->setEnabled(false);
    menu.exec(mapToGlobal(QPoint(x, y)));
}

void wxWaveExplorerBrowserTreeGrid::onMouseDown(double x, double y, int button, int modifiers)
{
    mDragArmed = false;
    mPressHeldBack = false;
    if (button == button_left && modifiers == 0 && y > getHeaderHeight() && x > getRowHeaderWidth() &&
        getRowHeight() > 0) {
        const unsigned line = getTopVisibleRow() + unsigned((y - getHeaderHeight()) / getRowHeight());
        if (line < getNumberOfVisibleRows()) {
            const unsigned effective = getEffectiveRowFromVisible(line);
            // A press on a selection of several rows may start a drag of all of them: the
            // selection changes only if the button comes up without a drag.
            if (effective != npos && checkRowIsSelected(getTotalRow(effective)) && getNumberOfSelectedRows() > 1) {
                mDragArmed = true;
                mPressHeldBack = true;
                mPressX = x;
                mPressY = y;
                return;
            }
        }
    }
    wxTreeGridImpl::onMouseDown(x, y, button, modifiers);
    if (button == button_left && getNumberOfSelectedRows() > 0) {
        mDragArmed = true;
        mPressX = x;
        mPressY = y;
    }
}

void wxWaveExplorerBrowserTreeGrid::onMouseMove(double x, double y, int buttons, int modifiers)
{
    if (mDragArmed && (buttons & button_left) &&
        std::abs(x - mPressX) + std::abs(y - mPressY) >= QApplication::startDragDistance()) {
        mDragArmed = false;
        mPressHeldBack = false;
        const std::vector<size_t> selection = getSelectedCurveRows();
        QMimeData* data = mActions.mimeData && !selection.empty() ? mActions.mimeData(selection) : nullptr;
        if (data) {
            auto* drag = new QDrag(this);
            drag->setMimeData(data);
            drag->exec(Qt::CopyAction);
        }
        return;
    }
    wxTreeGridImpl::onMouseMove(x, y, buttons, modifiers);
}

void wxWaveExplorerBrowserTreeGrid::onMouseUp(double x, double y, int button, int modifiers)
{
    if (mPressHeldBack && button == button_left) {
        // The press that was held back for a drag selects after all.
        wxTreeGridImpl::onMouseDown(mPressX, mPressY, button, modifiers);
    }
    mPressHeldBack = false;
    mDragArmed = false;
    wxTreeGridImpl::onMouseUp(x, y, button, modifiers);
    reportSelection();
}

}  // namespace vx3
