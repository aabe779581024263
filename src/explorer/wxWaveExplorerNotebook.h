// The explorer's tabs of plot pages. Each tab holds one page; a page holds one or more plots.
// Plot names are unique over all pages, so that a command finds its plot by name alone; the
// empty name means the active plot of the page shown.
#pragma once

#include <QWidget>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/cVxLogger.h"
#include "base/cVxThread.h"

class QLabel;
class QTabWidget;

namespace vx3 {

class cCurvePlotDataFile;
class cPlotWidgetCommon;
class wxCurveDescription;
class wxMultiPlotWidget;
class wxSinglePlotWidgetImpl;
class wxTreeGridTableWidgetImpl;

class wxWaveExplorerNotebook : public QWidget {
    Q_OBJECT
public:
    // recordUserCommand: what the user did by hand on a page, as the command that repeats it.
    wxWaveExplorerNotebook(QWidget* parent, cVxMutex& dataMutex, const cVxLogger& logger,
                           std::function<void(const std::string&)> recordUserCommand);
    ~wxWaveExplorerNotebook() override;

    // Where the mouse's position over any plot is shown; pages made later get it too.
    void setCursorPositionTextHandler(std::function<void(const std::string&)> handler);
    // The store whose curves dropped curve lists name; plots made later get it too.
    void setStore(cCurvePlotDataFile* store);
    // While a file loads, plots refuse dropped and pasted curve lists; tables still open.
    void setDropsAllowed(bool allowed);
    // Plots refer to curves of the store: they let go of them before the store goes.
    void releaseCurvesBeforeStoreCloses();

    // A new plot named name: on a new page of the type (a page kind not built here, or an unknown
    // word, gives defaultType), or, with newPage false, split from the active plot of the page
    // shown. False with the message when the name is taken.
    bool addPlot(const std::string& name, const std::string& typeWord, bool newPage, bool makeVisible,
                 int defaultType);

    wxSinglePlotWidgetImpl* findPlot(const std::string& name) const;
    wxSinglePlotWidgetImpl* getActivePlot() const;
    std::string getActivePlotName() const;
    // All plots, page by page, in the order of the tabs.
    std::vector<wxSinglePlotWidgetImpl*> getAllPlots() const;
    size_t getNbOfPages() const;

    // Curves go through the page so that the plot joins its group and comes into step.
    bool addCurve(wxSinglePlotWidgetImpl& plot, const wxCurveDescription& description, bool clear);

    // The page commands by plot name; each logs its reason when it fails.
    bool splitPlot(const std::string& name, bool vertically);
    bool maximizePlot(const std::string& name);
    bool minimizePlot(const std::string& name);
    // Closes the plot; the only plot of a page takes its tab with it.
    bool closePlot(const std::string& name);
    bool deleteTab(const std::string& name);
    bool makePlotVisible(const std::string& name);
    // format: "png", "jpg", "bmp", "tif" or "svg"; a file name without a suffix gets the format's.
    bool exportPage(const std::string& name, const std::string& format, const std::string& fileName);
    // Asks for a file and writes the page of the named (or active) plot.
    bool showExportAsImageDialog(const std::string& name);

    // The page that holds the plot (nullptr for none) and the plot's index there.
    wxMultiPlotWidget* findPage(const cPlotWidgetCommon* plot, size_t* index = nullptr) const;

    // Table pages ("spreadsheet"): one table per tab, named like a plot and sharing the plots'
    // names, but without plots, so that the plot lookups above never answer one.
    wxTreeGridTableWidgetImpl* findTable(const std::string& name) const;
    std::vector<wxTreeGridTableWidgetImpl*> getAllTables() const;

private:
    struct cPage {
        QWidget* widget = nullptr;
        wxMultiPlotWidget* analog = nullptr;
        wxTreeGridTableWidgetImpl* table = nullptr;
        std::string tableName;
        int type = 0;
    };
    // The page kind of "spreadsheet", beyond the plot kinds of string_to_window_type.
    static constexpr int kTablePage = 1000;
    class cLogForward;
    // The page for a kind, nullptr for a kind this build has no page for (wxWaveExplorerNotebookPages.cpp).
    cPage createPage(int type);
    void preparePlot(wxSinglePlotWidgetImpl& plot, const std::string& name);
    // The name for a plot split from one named base: base_2, base_3, ... unused on any page.
    std::string generatePlotName(const std::string& base) const;
    wxSinglePlotWidgetImpl* findPlotOrLog(const std::string& name) const;
    void removePage(size_t index);
    void updatePlaceholder();
    int indexOfPage(const wxMultiPlotWidget* page) const;
    int indexOfTable(const std::string& name) const;
    // The page commands on a table page: true when name is a table and the command was done.
    bool performOnTable(const std::string& name, bool close, bool show);

    cVxMutex& mDataMutex;
    const cVxLogger& mLogger;
    std::function<void(const std::string&)> mRecordUserCommand;
    std::function<void(const std::string&)> mCursorPositionText;
    cCurvePlotDataFile* mStore = nullptr;
    bool mDropsAllowed = true;
    QTabWidget* mTabs = nullptr;
    QLabel* mPlaceholder = nullptr;
    std::vector<cPage> mPages;
    std::unique_ptr<cVxLoggerCallBack> mTableLog;  // a cLogForward
};

}  // namespace vx3
