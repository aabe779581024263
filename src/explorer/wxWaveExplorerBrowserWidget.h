// The curve browser as the explorer shows it: three pages (the tree, its filters, the order of its
// levels) and the search row. It owns the browser's rules and performs the browser's commands.
#pragma once

#include <QWidget>

#include <functional>
#include <string>
#include <vector>

#include "wxBrowserConfiguration.h"
#include "wxWaveExplorerBrowserRows.h"

class QMimeData;
class QTabWidget;

namespace vx3 {

class cBrowserSearch;
class cCurvePlotDataFile;
class cVxLogger;
class wxWaveExplorerBrowserConfigureGrid;
class wxWaveExplorerBrowserFilterGrid;
class wxWaveExplorerBrowserTreeGrid;
class wxWaveExplorerCommand;
class wxWaveExplorerWidgetImpl;

class wxWaveExplorerBrowserWidget : public QWidget {
    Q_OBJECT
public:
    // explorer may be null (a browser on its own, for tests): commands to plots then do nothing.
    wxWaveExplorerBrowserWidget(QWidget* parent, wxWaveExplorerWidgetImpl* explorer, cCurvePlotDataFile& store,
                                cVxLogger& logger);

    // Takes the store's curves again (new, reloaded or closed sections).
    void refresh(cCurvePlotDataFile& store);
    void refresh();
    void appendNewSections() { refresh(); }
    void configurationChanged() { refresh(); }
    void switchToPage(int index);
    void clear() { refresh(); }

    // The browser's commands; -1 for a command that is not the browser's. Options the browser
    // follows are looked at and answered -1, so the explorer keeps them as well.
    int performCommand(wxWaveExplorerCommand& command);

    // The search, as the search row runs it; the message is shown in the row and returned.
    std::string startSearch(const std::string& text, const cBrowserSearchOptions& options, bool selectedInstance);
    std::string findNext();
    std::string findPrevious();
    void plotAllSearchResults();

    wxBrowserConfiguration& configuration() { return mConfiguration; }
    // Told after every rebuild of the tree, which follows every change of the rules: the owner
    // keeps them in the configuration.
    void setRulesChangedHandler(std::function<void()> handler) { mRulesChanged = std::move(handler); }
    // The line for the status bar when the number of selected curves changes (empty for none).
    void setStatusTextHandler(std::function<void(const std::string&)> handler) { mStatusText = std::move(handler); }
    wxWaveExplorerBrowserTreeGrid& treeGrid() { return *mTree; }
    cBrowserSearch& searchBar() { return *mSearch; }
    // Mime data of a drag of these rows: the curve list in the system's formats and the
    // calculator's text.
    QMimeData* createMimeData(const std::vector<size_t>& rows);

private:
    int performAction(wxWaveExplorerCommand& command);
    void onSearchRequest(int request);
    std::string searchStep(bool forward);
    void message(const std::string& text);
    int runCommand(const std::string& text);
    void plotRows(const std::vector<size_t>& rows, bool clear);
    void plotOverMatching(const std::vector<size_t>& rows);
    void forSectionsOf(const std::vector<size_t>& rows, const char* word);
    std::vector<std::string> stringArguments(const wxWaveExplorerCommand& command) const;

    wxWaveExplorerWidgetImpl* mExplorer;
    cCurvePlotDataFile& mStore;
    cVxLogger& mLogger;
    wxBrowserConfiguration mConfiguration;
    QTabWidget* mPages = nullptr;
    wxWaveExplorerBrowserTreeGrid* mTree = nullptr;
    wxWaveExplorerBrowserFilterGrid* mFilters = nullptr;
    wxWaveExplorerBrowserConfigureGrid* mSetup = nullptr;
    cBrowserSearch* mSearch = nullptr;
    std::string mSearchText;
    cBrowserSearchOptions mSearchOptions;
    bool mSearchSelected = false;
    bool mSearchStarted = false;
    std::function<void()> mRulesChanged;
    std::function<void(const std::string&)> mStatusText;
};

}  // namespace vx3
