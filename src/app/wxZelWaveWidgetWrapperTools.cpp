// The tool windows of the top object: the command logger and the control panel.
#include "explorer/wxWaveExplorerWidgetImpl.h"
#include "wxZelWaveCommandLogger.h"
#include "wxZelWaveControlPanel.h"
#include "wxZelWaveWidgetWrapper.h"

namespace vx3 {

using namespace waveExplorerAction;

void wxZelWaveWidgetWrapper::showCommandLogger(QWidget* parent, bool show)
{
    wxZelWaveCommandLogger* logger = mCommandLogger;
    if (!logger) {
        if (!show)
            return;
        logger = new wxZelWaveCommandLogger(parent, this);
        logger->setLoggingEnabled(mCommandLoggerEnabled);
        mCommandLogger = logger;
    }
    if (show) {
        logger->show();
        logger->raise();
        logger->activateWindow();
    } else {
        logger->hide();
    }
}

void wxZelWaveWidgetWrapper::showControlPanel(QWidget* parent, bool show)
{
    if (!mControlPanel) {
        if (!show)
            return;
        mControlPanel = new wxZelWaveControlPanel(parent, this);
    }
    if (show) {
        mControlPanel->show();
        mControlPanel->raise();
        mControlPanel->activateWindow();
    } else {
        mControlPanel->hide();
    }
}

int wxZelWaveWidgetWrapper::performToolWindowAction(const wxWaveExplorerAction& action)
{
    const bool flag = action.getDoubleArgAsBool(0, true);
    switch (action.actionType) {
    case explorerCallBack::show_control_panel: showControlPanel(mExplorer, flag); return 0;
    case explorerCallBack::show_command_logger: showCommandLogger(mExplorer, flag); return 0;
    case explorerCallBack::clear_command_logger:
        if (flag && mCommandLogger)
            mCommandLogger.load()->clear();
        return 0;
    case explorerCallBack::enable_command_logger:
        // Kept for a logger that is made later as well.
        mCommandLoggerEnabled = flag;
        if (mCommandLogger)
            mCommandLogger.load()->setLoggingEnabled(flag);
        return 0;
    default: return 3;
    }
}

wxZelWaveCommandLogger* wxZelWaveWidgetWrapper::commandLoggerForCommand(const wxWaveExplorerCommand& command) const
{
    wxZelWaveCommandLogger* logger = mCommandLogger;
    if (!logger || !logger->checkIsShown() || !logger->checkLoggingEnabled())
        return nullptr;
    // The markers around a command file and its comment lines are not commands of the user; a
    // clear leaves the logger empty rather than holding the clear itself.
    switch (command.actionType) {
    case cmd_reading_command_file_start:
    case cmd_reading_command_file_end:
    case cmd_comment:
    case cmd_clear_command_logger:
        return nullptr;
    default:
        return logger;
    }
}

void wxZelWaveWidgetWrapper::logCommandResult(wxZelWaveCommandLogger* logger, int result) const
{
    if (result == vx_code_queued) {
        logger->addCommandResult("queued");
    } else if (result != vx_code_ok) {
        logger->addCommandResult("error");
    } else if (mResults.empty()) {
        logger->addCommandResult("ok");
    } else {
        for (const auto& value : mResults)
            logger->addCommandResult(value);
    }
}

void wxZelWaveWidgetWrapper::detachToolWindows()
{
    // Qt deletes the windows with their parent, after this object has gone.
    if (mCommandLogger)
        mCommandLogger.load()->detachExecutor();
    if (mControlPanel)
        mControlPanel->detachTarget();
    mCommandLogger = nullptr;
    mControlPanel = nullptr;
}

}  // namespace vx3
