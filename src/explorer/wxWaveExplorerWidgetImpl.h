// The explorer: owns the store of curves and performs every command that reaches it. This
// first form shows the store in a simple tree and a log pane; plots join it later.
#pragma once

#include <QWidget>

#include <atomic>
#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "app/core/wxWaveExplorerCommand.h"
#include "base/cVxLogger.h"
#include "base/cVxThread.h"
#include "wxWaveExplorerLauncher.h"

class QLabel;
class QPlainTextEdit;
class QProgressBar;
class QStatusBar;
class QTimer;
class QToolButton;

namespace vx3 {

class cCurvePlotDataFile;
class cCurvePlotDataSection;
class wxWaveExplorerBrowserWidget;
class wxLogSink;
class wxWaveExplorerConfiguration;
class wxWaveExplorerConfigurationDialog;
class wxWaveExplorerWidgetVirtual;
class wxSinglePlotWidgetImpl;
class wxWaveExplorerNotebook;
class wxTreeGridTableWidgetImpl;

namespace waveExplorerEvent {
enum : int {
    execute_command = 2274  // a background thread hands over a command
};
enum timer_id : int {
    TIMER_ID_AUTO_RELOAD = 11107,  // look for changed files
    timer_wait = 11108,         // the hold of a running wait
    TIMER_ID_LOAD_CONFIG = 11109,  // try again to load the configuration
    TIMER_ID_SAVE_CONFIG = 11110   // write the configuration after a second without changes
};
}

class wxWaveExplorerWidgetImpl : public QWidget {
    Q_OBJECT
public:
    wxWaveExplorerWidgetImpl(QWidget* parent, wxWaveExplorerConfiguration& configuration,
                             wxWaveExplorerWidgetVirtual* owner, int x, int y, int width, int height);
    ~wxWaveExplorerWidgetImpl() override;

    cCurvePlotDataFile& store() { return *mStore; }
    wxLogSink& logSink() { return *mLogSink; }
    cVxLogger& logger() { return mLogger; }
    const cVxThreadIdentifier& mainThreadIdentifier() const { return mMainThread; }

    void startup();
    void applicationCloses();
    void setBusy(bool busy) { mBusy = busy; }
    bool checkIsBusy() const { return mBusy; }
    // Reload and the command queue are off while a launcher task works on the store.
    void setFlagEnableReload(bool flag);
    bool checkQueueHold() const { return mHold; }
    size_t getQueueLength() const { return mQueue.size(); }

    // Files load on the launcher thread, one after the other, from this list.
    void addToFilesToOpen(const std::string& name);
    // 27 when a file started to load, else the result of the attempt.
    int checkForToFilesToOpen(bool first);
    int openSingleFile(const cOpenFileWithOptionsConfiguration& options);
    bool checkLauncherIsWorking() const { return mLauncher && mLauncher->checkTaskIsRunning(); }
    // The stop button of the status bar: the reader stops and keeps what it has read.
    void interruptLauncher();
    // Tool bars and browser disabled, wait cursor, the owner told.
    void setApplicationBusy(bool flag);
    bool checkApplicationIsBusy() const { return mApplicationBusy; }
    // Changed files are looked for at the interval of the configuration (off at 0).
    void timerNotification();

    // The door for commands from any thread: another thread's command crosses to the main thread.
    int executeCommandFromThread(wxWaveExplorerCommand& command, bool useThread);
    int executeCommandFromThreadImpl(wxWaveExplorerCommand& command, bool useThread);

    // Safe from any thread: the owner's notifications are handled on the main thread soon.
    void startNotificationTimer();
    // Every change of the configuration restarts this one-second timer; the file is written when it fires.
    void startSaveToConfigurationTimer();
    // The configuration dialog, made on first use and kept; it shows options set meanwhile.
    wxWaveExplorerConfigurationDialog* showConfigurationDialog();
    void updateConfigurationGrid();
    void showStatusBarMessage(unsigned severity, const std::string& text);
    // The parts that a host may place itself: 1 side bar, 2 tool bar, 3 tool bar size,
    // 6 side bar command, 7 status bar, 8..10 the three panes.
    bool getWidgetInfo(unsigned request, void* argument, void*& result, int& result1, int& result2);

protected:
    bool event(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void serveBridge();
    int openFileCommand(wxWaveExplorerCommand& command);
    bool handleLauncherEvent(QEvent* event);
    void parseDone();
    void reloadDone();
    void startReloadTimer();
    void showStatusText(const std::string& text);
    // Commands that may read the store (all but a known few) wait in the queue while the launcher
    // writes it.
    static bool checkCommandReadsStore(int actionType);
    int performCommand(wxWaveExplorerCommand& command, bool useThread);
    int performOption(wxWaveExplorerCommand& command);
    int performSetFirstSectionIdentifier(wxWaveExplorerCommand& command);
    int performToolWindowCommand(wxWaveExplorerCommand& command);
    void startWait(double seconds);
    void emptyCommandQueue();
    void buildWidgets();
    void refreshBrowser();
    // The browser's rules from the configuration (after a load), and back after each change.
    void takeBrowserRulesFromConfiguration();
    void storeBrowserRules();
    void appendLogLine(unsigned severity, const QString& text);
    void saveConfigurationAfterQuiet();
    void retryLoadingConfiguration();
    // The commands that act on plots; not_a_plot_command for the others.
    int performPlotCommand(wxWaveExplorerCommand& command);
    // Rulers, legend, annotations, highlighting and grid lines (wxWaveExplorerWidgetImplOverlay.cpp);
    // -1 for the other commands.
    int executeOverlayCommand(wxWaveExplorerCommand& command);
    void applyOverlayOptions(wxSinglePlotWidgetImpl& plot) const;
    int findCurveInPlot(const wxSinglePlotWidgetImpl& plot, const cCurvePlotDataSection* section, uint64_t curveIndex) const;
    int findCommandCurveInPlot(const wxWaveExplorerCommand& command, const wxSinglePlotWidgetImpl& plot, bool byId) const;
    // Store commands that close or reload files: plots let go of the curves before, and find
    // them again after.
    void preparePlotsForStoreCommand(const wxWaveExplorerCommand& command);
    void updatePlotsAfterStoreCommand(const wxWaveExplorerCommand& command);
    wxSinglePlotWidgetImpl* findPlot(const std::string& name) const;
    // The named plot, or the shown one for an empty name; logs when there is none.
    wxSinglePlotWidgetImpl* findPlotOrLog(const std::string& name) const;
    int addCurveToPlot(wxSinglePlotWidgetImpl& plot, const std::string& sectionName, const std::string& curveName,
                       bool clear);
    int addCurveToPlotById(wxSinglePlotWidgetImpl& plot, uint64_t sectionId, uint64_t curveIndex, bool clear);
    int addDescriptionToPlot(wxSinglePlotWidgetImpl& plot, cCurvePlotDataSection* section, uint64_t curveIndex,
                             bool clear);
    // The page commands: split, maximize, close, tabs, image export.
    int performPageCommand(wxWaveExplorerCommand& command);
    int definePagePlotNames(wxWaveExplorerCommand& command);
    // Group headings, separators, buses and groups opened by name; -1 for other commands.
    int performRowCommand(wxWaveExplorerCommand& command);
    // Table pages and the spreadsheet commands (wxWaveExplorerWidgetImplTable.cpp); -1 for a
    // command that is not for a table.
    int performTableCommand(wxWaveExplorerCommand& command);
    void applyTableOptions(wxTreeGridTableWidgetImpl& table) const;
    wxTreeGridTableWidgetImpl* findTableOrLog(const std::string& name) const;
    cCurvePlotDataSection* findSectionOrLog(const std::string& name) const;
    int addCurveToTable(wxTreeGridTableWidgetImpl& table, cCurvePlotDataSection& section, uint64_t curveIndex,
                        bool clear);
    void recordUserCommand(const std::string& text);

    wxWaveExplorerConfiguration& mConfiguration;
    wxWaveExplorerWidgetVirtual* mOwner;
    std::unique_ptr<cCurvePlotDataFile> mStore;
    std::unique_ptr<wxLogSink> mLogSink;
    cVxLogger mLogger;
    cVxThreadIdentifier mMainThread;

    // the bridge of threads
    cVxMutex mBridgeMutex;
    cVxCondition mBridgeCondition;
    wxWaveExplorerCommand mBridgeCommand;
    std::atomic<int> mBridgeResult{0};
    std::atomic<bool> mBridgeRequest{false};
    bool mBridgeUseThread = false;

    int mLastResult = 0;
    bool mBusy = false;
    bool mReloadEnabled = true;
    bool mQueueEnabled = true;
    bool mHold = false;
    bool mEmptying = false;
    std::deque<wxWaveExplorerCommand> mQueue;
    QTimer* mWaitTimer = nullptr;
    // Section numbers of a session file and the identifiers the sections have now.
    std::map<uint64_t, uint64_t> mSessionSectionIds;
    bool mStoreChanged = true;

    wxWaveExplorerBrowserWidget* mBrowser = nullptr;
    QPlainTextEdit* mLogPane = nullptr;
    QStatusBar* mStatusBar = nullptr;
    QProgressBar* mProgress = nullptr;
    // The tabs of plot pages.
    wxWaveExplorerNotebook* mNotebook = nullptr;
    QTimer* mNotificationTimer = nullptr;
    wxWaveExplorerConfigurationDialog* mConfigurationDialog = nullptr;
    std::unique_ptr<wxWaveExplorerLauncher> mLauncher;
    std::deque<cOpenFileWithOptionsConfiguration> mFilesToOpen;
    size_t mFilesToOpenTotal = 0;
    bool mApplicationBusy = false;
    QToolButton* mStopButton = nullptr;
    QTimer* mReloadTimer = nullptr;
    // Changed files that could not be reloaded, told once until they can be again.
    std::set<std::string> mToldUnreloadable;
    QTimer* mSaveConfigTimer = nullptr;
    QTimer* mLoadConfigTimer = nullptr;
    int mLoadConfigAttempts = 0;
    bool mToldSaveRefused = false;
    // The browser's rules as last taken or stored: only a real change marks the configuration.
    std::string mBrowserRulesRecord;
};

}  // namespace vx3
