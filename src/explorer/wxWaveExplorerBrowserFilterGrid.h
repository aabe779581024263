// The filter page of the curve browser: per run parameter, sweep variable and for the analysis
// types, a check box per value ("All" for the group) and the four number bounds. Changes stay in
// the page until they are applied.
#pragma once

#include <QWidget>

#include <functional>

class QTreeWidget;
class QTreeWidgetItem;

namespace vx3 {

class wxBrowserConfiguration;
class wxWaveExplorerBrowserRows;

class wxWaveExplorerBrowserFilterGrid : public QWidget {
    Q_OBJECT
public:
    wxWaveExplorerBrowserFilterGrid(QWidget* parent, wxBrowserConfiguration& configuration);

    // Lists the names and values the rows met, checked as the rules say.
    void fill(const wxWaveExplorerBrowserRows& rows);
    void setAppliedHandler(std::function<void()> handler) { mApplied = std::move(handler); }
    // The buttons' actions.
    void applyChanges();
    void cancelChanges();
    void clearRules();
    QTreeWidget* grid() { return mGrid; }

private:
    void fillAgain();
    QTreeWidgetItem* addGroup(const QString& title, int kind, const std::string& name,
                              const std::vector<std::string>& values, bool numbers);

    wxBrowserConfiguration& mConfiguration;
    const wxWaveExplorerBrowserRows* mRows = nullptr;
    QTreeWidget* mGrid = nullptr;
    std::function<void()> mApplied;
    bool mFilling = false;
};

}  // namespace vx3
