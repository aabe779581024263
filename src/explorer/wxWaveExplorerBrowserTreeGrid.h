// The curve browser's tree: a tree grid over wxWaveExplorerBrowserRows. Expanders are grouped by
// file, section and instance and keep their open state by name when the rows are rebuilt.
#pragma once

#include "treegrid/qt/wxTreeGridImpl.h"
#include "wxWaveExplorerBrowserRows.h"

namespace vx3 {

class cCurvePlotDataFile;

namespace waveExplorerBrowser {
// The rows must exist before the grid that refers to them.
struct cRowsHolder {
    wxWaveExplorerBrowserRows mRows;
};
}  // namespace waveExplorerBrowser

class wxWaveExplorerBrowserTreeGrid : private waveExplorerBrowser::cRowsHolder, public wxTreeGridImpl {
public:
    explicit wxWaveExplorerBrowserTreeGrid(QWidget* parent = nullptr);

    // Takes every curve of the store again; open expanders stay open.
    void refresh(cCurvePlotDataFile& store);
    wxWaveExplorerBrowserRows& rows() { return mRows; }
};

}  // namespace vx3
