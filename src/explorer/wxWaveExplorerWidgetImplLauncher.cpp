// Opening files on the launcher thread: the list of files to open, the busy state of the window,
// progress and the stop button, and the end of a reader's task back on the main thread.
#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QProgressBar>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QUrl>

#include <unistd.h>

#include <filesystem>

#include "app/core/cCommandTable.h"
#include "app/core/wxWaveExplorerConfiguration.h"
#include "base/cVxFilePath.h"
#include "model/cCurvePlotDataFile.h"
#include "wxLogSink.h"
#include "wxWaveExplorerNotebook.h"
#include "wxWaveExplorerBrowserTreeGrid.h"
#include "wxWaveExplorerBrowserWidget.h"
#include "wxWaveExplorerWidgetImpl.h"
#include "wxWaveExplorerWidgetVirtual.h"

namespace vx3 {

using namespace waveExplorerAction;

namespace {
constexpr int kOk = 0;
constexpr int kFailed = 3;
constexpr int kNotFound = 4;
constexpr int kQueued = 27;

std::string quoted(const std::string& format, const std::string& name)
{
    std::string text = format;
    const size_t at = text.find("%%");
    if (at != std::string::npos)
        text.replace(at, 2, name);
    return text;
}
}  // namespace

bool wxWaveExplorerWidgetImpl::checkCommandReadsStore(int actionType)
{
    // The reader holds the store's mutex for the whole read, so a command that touched the store
    // now would hang the window until the read ends. The list is of the commands known to leave
    // the store alone; anything else waits, which is never wrong, only later.
    switch (actionType) {
    case cmd_comment:
    case cmd_reading_command_file_start:
    case cmd_reading_command_file_end:
    case cmd_wait:
    case cmd_show:
    case cmd_hide:
    case cmd_show_control_panel:
    case cmd_show_command_logger:
    case cmd_clear_command_logger:
    case cmd_enable_command_logger:
    case cmd_read_configuration_file:
    case cmd_save_configuration_file:
    case cmd_get_configuration_file_name:
    // Plots and pages as widgets: made, arranged and counted without their curves' data.
    case cmd_add_plot:
    case cmd_split_vertically:
    case cmd_split_horizontally:
    case cmd_maximize_plot:
    case cmd_minimize_plot:
    case cmd_make_tab_visible:
    case cmd_make_plot_visible:
    case cmd_get_number_of_plots:
    case cmd_get_plot_name:
    case cmd_get_current_plot_name:
    // The browser's rows and search are its own copy of the names; plotting from them goes
    // through this rule again.
    case cmd_browser_action:
        return false;
    // The browser rebuilds its tree from the store when this one changes.
    case opt_browser_use_full_hierarchical_names:
        return true;
    default:
        // Options are settings; a plot that redraws for one only try-locks the store.
        return !cCommandTable::checkIsOption(actionType);
    }
}

void wxWaveExplorerWidgetImpl::showStatusText(const std::string& text)
{
    mStatusBar->showMessage(QString::fromStdString(text));
    mLogger.infoMsg(text);
}

int wxWaveExplorerWidgetImpl::openFileCommand(wxWaveExplorerCommand& command)
{
    const std::string& name = command.getStringArgument(0);
    if (name.empty()) {
        mLogger.warnMsg("Interactive Mode: bad 1st argument.");
        return kFailed;
    }
    // What can be told at once is told at once: the caller gets the failure, not "queued".
    std::error_code error;
    const std::filesystem::path path(name);
    if (!std::filesystem::exists(path, error)) {
        showStatusText(quoted("The file \"%%\" was not found.", name));
        return kNotFound;
    }
    if (std::filesystem::is_directory(path, error) || access(name.c_str(), R_OK) != 0) {
        mLogger.errorMsg(quoted("Could not open file \"%%\".", name));
        mStatusBar->showMessage(QString::fromStdString(quoted("Could not open file \"%%\".", name)));
        return kFailed;
    }
    addToFilesToOpen(name);
    return checkForToFilesToOpen(true);
}

void wxWaveExplorerWidgetImpl::addToFilesToOpen(const std::string& name)
{
    cOpenFileWithOptionsConfiguration entry;
    cVxFilePath path(name);
    path.convertToAbsolutePath();
    entry.fileName = path.name();
    mFilesToOpen.push_back(entry);
}

int wxWaveExplorerWidgetImpl::checkForToFilesToOpen(bool first)
{
    if (mFilesToOpen.empty()) {
        if (!first) {
            mProgress->setFormat("Parsing file \"\". %p%");
            mProgress->setVisible(false);
        }
        return kOk;
    }
    if (checkLauncherIsWorking())
        return kQueued;  // the running task's end takes the next file
    if (first) {
        mFilesToOpenTotal = mFilesToOpen.size();
        mLauncher->loggerCallBackVirtualSetActionIsInterrupted(false);
        mProgress->setValue(0);
    } else {
        const size_t done = mFilesToOpenTotal > mFilesToOpen.size() ? mFilesToOpenTotal - mFilesToOpen.size() : 0;
        const double total = static_cast<double>(std::max<size_t>(mFilesToOpenTotal, 1));
        mProgress->setValue(static_cast<int>(100.0 * static_cast<double>(done) / total));
    }
    // A file that can't start loading doesn't hold up the ones after it.
    int result = kOk;
    while (!mFilesToOpen.empty()) {
        cOpenFileWithOptionsConfiguration entry = mFilesToOpen.front();
        mFilesToOpen.pop_front();
        mProgress->setFormat(QString::fromStdString(quoted("Parsing file \"%%\".", entry.fileName)) + " %p%");
        mProgress->setVisible(true);
        result = openSingleFile(entry);
        if (result == kQueued)
            return result;
    }
    mProgress->setVisible(false);
    return result;
}

int wxWaveExplorerWidgetImpl::openSingleFile(const cOpenFileWithOptionsConfiguration& options)
{
    wxWaveExplorerAction allowed;
    allowed.actionType = explorerCallBack::file_open_allowed;
    allowed.pushStringArguments(options.fileName);
    if (mOwner && mOwner->waveExplorerVirtualCallBackAction(allowed) != 0) {
        mLogger.warnMsg(quoted("Could not open file \"%%\".", options.fileName));
        return kFailed;
    }
    setApplicationBusy(true);
    setFlagEnableReload(false);
    if (!mLauncher->startParse(options)) {
        mLogger.errorMsg(quoted("Could not open file \"%%\".", options.fileName));
        setApplicationBusy(false);
        setFlagEnableReload(true);
        return kFailed;
    }
    return kQueued;
}

void wxWaveExplorerWidgetImpl::interruptLauncher()
{
    if (mLauncher)
        mLauncher->interrupt();
}

void wxWaveExplorerWidgetImpl::setApplicationBusy(bool flag)
{
    if (flag == mApplicationBusy)
        return;
    mApplicationBusy = flag;
    for (QToolBar* bar : findChildren<QToolBar*>())
        bar->setEnabled(!flag);
    if (QWidget* sidebar = findChild<QWidget*>("sidebar"))
        sidebar->setEnabled(!flag);
    mBrowser->setEnabled(!flag);
    // A curve list dropped or pasted on a plot is looked up in the store: refused while a task
    // holds it, rather than hanging the window until the task ends.
    mNotebook->setDropsAllowed(!flag);
    mStopButton->setVisible(flag);
    if (flag)
        setCursor(Qt::WaitCursor);
    else
        unsetCursor();
    if (mOwner) {
        wxWaveExplorerAction action;
        action.actionType = flag ? explorerCallBack::application_busy : explorerCallBack::application_not_busy;
        mOwner->waveExplorerVirtualCallBackAction(action);
    }
}

bool wxWaveExplorerWidgetImpl::handleLauncherEvent(QEvent* event)
{
    switch (static_cast<int>(event->type())) {
    case waveExplorerLauncher::parse_done: parseDone(); return true;
    case waveExplorerLauncher::auto_reload_done_in_thread: reloadDone(); return true;
    default: return false;
    }
}

void wxWaveExplorerWidgetImpl::parseDone()
{
    const wxWaveExplorerLauncher::cResult result = mLauncher->takeResult();
    const std::string& name = result.fileName;
    int code = kFailed;
    bool stopList = false;
    if (result.alreadyOpened) {
        showStatusText(quoted("The file \"%%\" has already been opened.", name));
        code = kOk;
    } else {
        switch (result.code) {
        case ok: showStatusText(quoted("Successfully parsed file \"%%\".", name)); code = kOk; break;
        case partly_parsed:
            showStatusText(quoted("The file \"%%\" was only parsed partially.", name));
            code = kOk;
            break;
        case file_not_found: showStatusText(quoted("The file \"%%\" was not found.", name)); code = kNotFound; break;
        case action_interrupted: {
            const size_t left = mFilesToOpen.size();
            if (mFilesToOpenTotal > 1)
                showStatusText("Parsing interrupted, parsed " + std::to_string(mFilesToOpenTotal - left - 1) + " of " +
                               std::to_string(mFilesToOpenTotal) + " ...");
            else
                showStatusText("Parsing was interrupted.");
            code = action_interrupted;
            stopList = true;
            break;
        }
        default: showStatusText(quoted("Failed to parse file \"%%\".", name)); break;
        }
    }
    // Opened again is opened: the file moves to the front of the recent files.
    if (code == kOk)
        mConfiguration.addLastOpenedFiles(name);
    if (result.sectionsAdded > 0) {
        mStoreChanged = true;
        if (mOwner) {
            wxWaveExplorerAction opened;
            opened.actionType = explorerCallBack::file_opened;
            opened.pushStringArguments(name);
            mOwner->waveExplorerVirtualCallBackAction(opened);
        }
    }
    mLastResult = code;
    if (stopList)
        mFilesToOpen.clear();
    if (checkForToFilesToOpen(false) == kQueued)
        return;  // the next file of the list is loading
    setApplicationBusy(false);
    if (mStoreChanged)
        refreshBrowser();
    setFlagEnableReload(true);  // empties the queue
}

void wxWaveExplorerWidgetImpl::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void wxWaveExplorerWidgetImpl::dropEvent(QDropEvent* event)
{
    if (!event->mimeData()->hasUrls())
        return;
    event->acceptProposedAction();
    for (const QUrl& url : event->mimeData()->urls()) {
        if (!url.isLocalFile())
            continue;
        wxWaveExplorerCommand command;
        if (!command.parseCommandString("open_file \"" + url.toLocalFile().toStdString() + "\"", mLogger))
            continue;
        // Through the command rule, so that files dropped during a load wait their turn.
        executeCommandFromThreadImpl(command, false);
    }
}

}  // namespace vx3
