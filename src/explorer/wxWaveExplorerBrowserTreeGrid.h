// The curve browser's tree: a tree grid over wxWaveExplorerBrowserRows. Expanders are the levels
// in the configured order; they keep their open state by the names along their path, so a
// rebuild, a reload or a new order of levels leaves the tree open where it was.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "treegrid/qt/wxTreeGridImpl.h"
#include "wxWaveExplorerBrowserRows.h"

class QMimeData;

namespace vx3 {

class cCurvePlotDataFile;

namespace waveExplorerBrowser {
// The rows must exist before the grid that refers to them.
struct cRowsHolder {
    explicit cRowsHolder(wxBrowserConfiguration* configuration)
        : mRowsPtr(configuration ? std::make_unique<wxWaveExplorerBrowserRows>(*configuration)
                                 : std::make_unique<wxWaveExplorerBrowserRows>())
    {
    }
    std::unique_ptr<wxWaveExplorerBrowserRows> mRowsPtr;
};
}  // namespace waveExplorerBrowser

class wxWaveExplorerBrowserTreeGrid : private waveExplorerBrowser::cRowsHolder, public wxTreeGridImpl {
public:
    explicit wxWaveExplorerBrowserTreeGrid(QWidget* parent = nullptr, wxBrowserConfiguration* configuration = nullptr);

    // Takes every curve of the store again; open expanders and the selected curves stay.
    void refresh(cCurvePlotDataFile& store);
    wxWaveExplorerBrowserRows& rows() { return *mRowsPtr; }

    // Shows and selects a model row, opening the expanders above it.
    void showRow(size_t row);
    // The model row of the cursor line, or npos.
    size_t getCurrentRow();
    // The rows of the expander of the cursor line, [first, end); false when the line is no
    // instance or group.
    bool getSelectedInstanceRows(size_t& first, size_t& end);
    // Selected model rows in view order; with none selected, the cursor's row.
    std::vector<size_t> getSelectedCurveRows();
    void setAllExpanded(bool expanded);

    // What the context menu and drags ask of the owner.
    struct cActions {
        std::function<void(const std::vector<size_t>& rows, bool clear)> plot;
        std::function<void(const std::vector<size_t>& rows)> plotOverMatching;
        std::function<void(const std::vector<size_t>& rows)> reload;
        std::function<void()> reloadAll;
        std::function<void()> openFile;
        std::function<void(const std::vector<size_t>& rows)> close;
        std::function<void()> closeAll;
        std::function<void(const std::string& text)> message;
        // Mime data for a drag of these rows; null when there is nothing to drag.
        std::function<QMimeData*(const std::vector<size_t>& rows)> mimeData;
        // The number of selected curves, told when it changes.
        std::function<void(size_t count)> selectionChanged;
    };
    void setActions(cActions actions) { mActions = std::move(actions); }

protected:
    void handleRowContextMenu(unsigned visibleRow, int x, int y) override;
    void onMouseDown(double x, double y, int button, int modifiers) override;
    void onMouseMove(double x, double y, int buttons, int modifiers) override;
    void onMouseUp(double x, double y, int button, int modifiers) override;
    bool onKeyDown(int key, int modifiers, const QString& text) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    // The key of an expander: the names along its path with the kind of each level, in a
    // canonical order, so that a new order of levels finds the same group again.
    std::string expanderNameKey(unsigned expander);
    std::string expanderLevelKey(unsigned expander);

    void reportSelection();
    // Level and instance columns give up width (their texts are elided) so that the curve's column stays in
    // view; they never go below a floor, and take their measured widths back when there is room.
    void fitColumnsToView();

    cActions mActions;
    size_t mReportedSelection = 0;
    bool mDragArmed = false;
    bool mPressHeldBack = false;  // a press on a selection of rows, applied on release without a drag
    double mPressX = 0, mPressY = 0;
};

}  // namespace vx3
