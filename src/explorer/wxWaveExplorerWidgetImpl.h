// The explorer: owns the store of curves and performs every command that reaches it. This
// first form shows the store in a simple tree and a log pane; plots join it later.
#pragma once

#include <QWidget>

#include <atomic>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/core/wxWaveExplorerCommand.h"
#include "base/cVxLogger.h"
#include "base/cVxThread.h"

class QLabel;
class QPlainTextEdit;
class QProgressBar;
class QStackedWidget;
class QStatusBar;
class QTimer;

namespace vx3 {

class cCurvePlotDataFile;
class cCurvePlotDataSection;
class wxWaveExplorerBrowserWidget;
class wxLogSink;
class wxWaveExplorerConfiguration;
class wxWaveExplorerConfigurationDialog;
class wxWaveExplorerWidgetVirtual;
class wxSinglePlotWidgetImpl;
class wxExplorerPlotPage;

namespace waveExplorerEvent {
enum : int {
    execute_command = 2274  // a background thread hands over a command
};
enum timer_id : int {
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

private:
    void serveBridge();
    int performCommand(wxWaveExplorerCommand& command, bool useThread);
    int performOption(wxWaveExplorerCommand& command);
    int performSetFirstSectionIdentifier(wxWaveExplorerCommand& command);
    int performToolWindowCommand(wxWaveExplorerCommand& command);
    void startWait(double seconds);
    void emptyCommandQueue();
    void buildWidgets();
    void refreshBrowser();
    void appendLogLine(unsigned severity, const QString& text);
    void saveConfigurationAfterQuiet();
    void retryLoadingConfiguration();
    // The commands that act on plots; not_a_plot_command for the others.
    int performPlotCommand(wxWaveExplorerCommand& command);
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
    QLabel* mPlotArea = nullptr;
    // The plots by name, in the order they were made; the stack shows one of them (or the label).
    QStackedWidget* mPlotStack = nullptr;
    std::vector<std::pair<std::string, wxSinglePlotWidgetImpl*>> mPlots;
    // What the plots ask of their page (messages, the command log of user actions).
    std::unique_ptr<wxExplorerPlotPage> mPlotPage;
    wxExplorerPlotPage& plotPage();
    QTimer* mNotificationTimer = nullptr;
    wxWaveExplorerConfigurationDialog* mConfigurationDialog = nullptr;
    QTimer* mSaveConfigTimer = nullptr;
    QTimer* mLoadConfigTimer = nullptr;
    int mLoadConfigAttempts = 0;
    bool mToldSaveRefused = false;
};

}  // namespace vx3
