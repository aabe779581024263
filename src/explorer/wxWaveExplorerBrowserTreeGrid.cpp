#include "wxWaveExplorerBrowserTreeGrid.h"

namespace vx3 {

wxWaveExplorerBrowserTreeGrid::wxWaveExplorerBrowserTreeGrid(QWidget* parent) : wxTreeGridImpl(mRows, parent)
{
    setObjectName("browser_treegrid");
    wxTreeGridImpl::dataChanged(true, false);
    setNumberOfExpanderColumns(waveExplorerBrowser::kExpanderLevels);
}

void wxWaveExplorerBrowserTreeGrid::refresh(cCurvePlotDataFile& store)
{
    mRows.rebuild(store);
    dataChanged(true, true);
}

}  // namespace vx3
