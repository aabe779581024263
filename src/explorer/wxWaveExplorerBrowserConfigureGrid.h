// The setup page of the curve browser: the order of the levels of the tree, of the run parameters
// and of the sweep variables, edited on a copy until applied.
#pragma once

#include <QWidget>

#include <functional>

#include "wxBrowserConfiguration.h"

class QListWidget;

namespace vx3 {

class wxWaveExplorerBrowserConfigureGrid : public QWidget {
    Q_OBJECT
public:
    wxWaveExplorerBrowserConfigureGrid(QWidget* parent, wxBrowserConfiguration& configuration);

    // Shows the present orders; edits go to a copy.
    void fill();
    void setAppliedHandler(std::function<void()> handler) { mApplied = std::move(handler); }
    void moveSelected(bool up);
    void applyChanges();
    void resetToDefault();
    QListWidget* itemOrder() { return mLists[0]; }

private:
    void showCopy();

    wxBrowserConfiguration& mConfiguration;
    wxBrowserConfiguration mCopy;
    QListWidget* mLists[3] = {nullptr, nullptr, nullptr};
    std::function<void()> mApplied;
};

}  // namespace vx3
