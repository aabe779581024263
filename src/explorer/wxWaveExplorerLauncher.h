// The explorer's launcher: one worker thread that reads files into the store and reloads changed
// ones, so that the window stays responsive while a large file loads. The thread never touches a
// widget: it posts one event to the explorer when its task has ended.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "base/cVxLogger.h"
#include "base/cVxThread.h"
#include "base/returnCode.h"

class QObject;

namespace vx3 {

class cCurvePlotDataFile;

namespace waveExplorerLauncher {
enum task_type : int {
    parse_file = 0,
    load_clipboard = 3,
    reload_marked_in_thread = 4,
    reload_one_file = 5,
    parse_spice_equivalent_nodes = 7,
    reload_marked = 8
};
// Events posted to the explorer when a task has ended.
enum event_id : int { parse_done = 2262, auto_reload_done_in_thread = 2272 };
}  // namespace waveExplorerLauncher

// One entry of the list of files to open.
struct cOpenFileWithOptionsConfiguration {
    std::string readerOptions;
    int readerType = 0;  // 0: the file's name and content decide
    std::string fileName;
    double tolerance = 5.0;
};

class wxWaveExplorerLauncher : public cVxThread, public cVxLoggerCallBack {
public:
    struct cResult {
        int task = waveExplorerLauncher::parse_file;
        returnCode code = ok;
        std::string fileName;
        bool alreadyOpened = false;
        uint64_t sectionsAdded = 0;
        // reloads: the files reloaded in full, in part, and those that failed
        std::vector<std::string> reloaded, partlyReloaded, failed;
    };

    // Messages of the readers go to messages (which must accept them from any thread); the end of
    // a task is posted to target.
    wxWaveExplorerLauncher(cCurvePlotDataFile& store, cVxLoggerCallBack& messages, QObject* target);
    ~wxWaveExplorerLauncher() override;

    // False when a task is still running or the thread could not be made.
    bool startParse(const cOpenFileWithOptionsConfiguration& options);
    bool startReload(const std::vector<std::string>& fileNames);
    // Asks the running reader to stop; it keeps what it has read.
    void interrupt() { mInterrupted.store(true); }
    bool checkTaskIsRunning() const { return mRunning.load(); }
    // Waits for the end of the thread and hands over what the task found.
    cResult takeResult();

    void executeThread() override;
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override;
    bool loggerCallBackVirtualCheckActionIsInterrupted() override { return mInterrupted.load(); }
    void loggerCallBackVirtualSetActionIsInterrupted(bool flag) override { mInterrupted.store(flag); }

private:
    bool start(int task);
    void parseFileInThreadImpl();
    void reloadFilesInThreadImpl();

    cCurvePlotDataFile& mStore;
    cVxLoggerCallBack& mMessages;
    QObject* mTarget;
    cVxMutex mTaskMutex;  // held for the length of a task
    int mTask = waveExplorerLauncher::parse_file;
    cOpenFileWithOptionsConfiguration mOptions;
    std::vector<std::string> mReloadFiles;
    cResult mResult;
    std::atomic<bool> mInterrupted{false};
    std::atomic<bool> mRunning{false};
};

}  // namespace vx3
