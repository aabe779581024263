// The explorer's command rule: what is answered at once, what waits in the queue, and how a
// command is performed.
#include <QTimer>

#include <cmath>

#include "app/core/cConfigurationCommands.h"
#include "app/core/cStoreCommands.h"
#include "base/cVxFilePath.h"
#include "app/core/wxWaveExplorerConfiguration.h"
#include "model/cCurvePlotDataFile.h"
#include "wxWaveExplorerBrowserWidget.h"
#include "wxWaveExplorerWidgetImpl.h"
#include "wxWaveExplorerWidgetVirtual.h"

namespace vx3 {

using namespace waveExplorerAction;

namespace {
constexpr int kOk = 0;
constexpr int kFailed = 3;
constexpr int kQueued = 27;
}  // namespace

void wxWaveExplorerWidgetImpl::setFlagEnableReload(bool flag)
{
    mReloadEnabled = flag;
    mQueueEnabled = flag;
    if (flag)
        emptyCommandQueue();
}

int wxWaveExplorerWidgetImpl::executeCommandFromThreadImpl(wxWaveExplorerCommand& command, bool useThread)
{
    // Answered at once, whatever waits in the queue.
    switch (command.actionType) {
    case cmd_get_window_size_hint_width:
        command.pushReturnValue(static_cast<long>(mConfiguration.windowWidth));
        return kOk;
    case cmd_get_window_size_hint_height:
        command.pushReturnValue(static_cast<long>(mConfiguration.windowHeight));
        return kOk;
    case opt_toolbar_button_style:
    case opt_show_exit_button:
        return performOption(command);
    default:
        break;
    }
    const bool isStatus = command.actionType == cmd_get_status;
    if (!mQueueEnabled) {
        if (isStatus)
            return kQueued;
        if (command.checkCommandIsCritical() || !mQueue.empty() || checkCommandReadsStore(command.actionType)) {
            mQueue.push_back(command);
            return kQueued;
        }
    }
    if (mHold) {
        if (!isStatus)
            mQueue.push_back(command);
        return kQueued;
    }
    if (isStatus)
        return mLastResult;
    int result = performCommand(command, useThread);
    if (result != kQueued)
        mLastResult = result;
    if (mStoreChanged)
        refreshBrowser();
    return result;
}

void wxWaveExplorerWidgetImpl::emptyCommandQueue()
{
    if (mEmptying)
        return;
    mEmptying = true;
    while (!mQueue.empty() && mQueueEnabled && !mHold) {
        wxWaveExplorerCommand command = mQueue.front();
        mQueue.pop_front();
        int result = performCommand(command, false);
        if (result == kQueued)
            break;  // the command started a task; its end calls the queue again
        mLastResult = result;  // a wait sets the hold, which ends the loop as well
    }
    mEmptying = false;
    if (mStoreChanged)
        refreshBrowser();
}

void wxWaveExplorerWidgetImpl::startWait(double seconds)
{
    mHold = true;
    mWaitTimer->start(static_cast<int>(std::lround(seconds * 1000.0)));
}

int wxWaveExplorerWidgetImpl::performOption(wxWaveExplorerCommand& command)
{
    if (mConfiguration.setOption(command))
        updateConfigurationGrid();
    return kOk;
}

int wxWaveExplorerWidgetImpl::performSetFirstSectionIdentifier(wxWaveExplorerCommand& command)
{
    const std::string& fileName = command.getStringArgument(0);
    double first = command.getDoubleArg(0, -1.0);
    cCurvePlotDataFile& store = *mStore;
    cVxScopedLock lock(store.getMutex());
    const cFileDbSupport* file = store.findDbSupportPtr(fileName);
    if (!file || first < 0) {
        mLogger.errorMsg("The file \"" + fileName + "\" was not found in the list of open files.");
        return kFailed;
    }
    uint64_t number = static_cast<uint64_t>(first);
    bool any = false;
    for (uint64_t i = 0; i < store.getNbOfDataSections(); ++i) {
        const cCurvePlotDataSection* section = store.getDataSectionFromIndex(i);
        if (!section || section->getFile() != file)
            continue;
        mSessionSectionIds[number++] = section->getSectionId();
        any = true;
    }
    return any ? kOk : kFailed;
}

// The command logger and the control panel belong to the owner; the flag travels as argument 0.
int wxWaveExplorerWidgetImpl::performToolWindowCommand(wxWaveExplorerCommand& command)
{
    wxWaveExplorerAction action;
    switch (command.actionType) {
    case cmd_show_control_panel: action.actionType = explorerCallBack::show_control_panel; break;
    case cmd_show_command_logger: action.actionType = explorerCallBack::show_command_logger; break;
    case cmd_clear_command_logger: action.actionType = explorerCallBack::clear_command_logger; break;
    default: action.actionType = explorerCallBack::enable_command_logger; break;
    }
    action.pushDoubleArg(command.getDoubleArgAsBool(0, true) ? 1.0 : 0.0);
    return mOwner ? mOwner->waveExplorerVirtualCallBackAction(action) : kFailed;
}

int wxWaveExplorerWidgetImpl::performCommand(wxWaveExplorerCommand& command, bool)
{
    if (const int tableResult = performTableCommand(command); tableResult >= 0)
        return tableResult;
    if (const int overlay = executeOverlayCommand(command); overlay >= 0)
        return overlay;
    if (const int browserResult = mBrowser->performCommand(command); browserResult >= 0)
        return browserResult;
    if (cCommandTable::checkIsOption(command.actionType))
        return performOption(command);
    switch (command.actionType) {
    case cmd_comment:
    case cmd_reading_command_file_start:
    case cmd_reading_command_file_end:
        return kOk;
    case cmd_wait:
        // Returns at once; the hold queues what follows until the timer fires.
        if (command.time > 0)
            startWait(command.time);
        return kOk;
    case cmd_set_first_section_identifier:
        return performSetFirstSectionIdentifier(command);
    case cmd_open_file:
        return openFileCommand(command);
    case cmd_show_control_panel:
    case cmd_show_command_logger:
    case cmd_clear_command_logger:
    case cmd_enable_command_logger:
        return performToolWindowCommand(command);
    case cmd_close:
    case cmd_show:
    case cmd_hide: {
        wxWaveExplorerAction action;
        action.actionType = command.actionType == cmd_close ? explorerCallBack::close_requested : command.actionType;
        action.pushDoubleArg(command.getDoubleArg(0, 0.0));
        return mOwner ? mOwner->waveExplorerVirtualCallBackAction(action) : kFailed;
    }
    default:
        break;
    }
    int result = cConfigurationCommands::perform(command, mConfiguration, mLogger);
    if (result != cConfigurationCommands::not_a_configuration_command) {
        if (command.actionType == cmd_read_configuration_file && result == kOk)
            takeBrowserRulesFromConfiguration();
        return result;
    }
    const int plotResult = performPlotCommand(command);
    if (plotResult >= 0)
        return plotResult;
    preparePlotsForStoreCommand(command);
    result = cStoreCommands::perform(command, *mStore, mLogger);
    updatePlotsAfterStoreCommand(command);
    if (command.actionType == cmd_open_file && result == kOk) {
        cVxFilePath path(command.getStringArgument(0));
        path.convertToAbsolutePath();
        mConfiguration.addLastOpenedFiles(path.name());
    }
    if (result != cStoreCommands::not_a_store_command) {
        if (cStoreCommands::checkChangesStore(command.actionType))
            mStoreChanged = true;
        return result;
    }
    mLogger.warnMsg("The command \"" + command.word() + "\" was not performed: this version has no performer for it.");
    return kFailed;
}

}  // namespace vx3
