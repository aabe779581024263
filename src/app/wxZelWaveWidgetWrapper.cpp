#include "wxZelWaveWidgetWrapper.h"

#include <dlfcn.h>
#include <limits.h>
#include <unistd.h>

#include <exception>

#include "app/core/cCsvFileComparison.h"
#include "app/core/cZelWaveXmlParser.h"
#include "base/cVxFilePath.h"
#include "base/cVxString.h"
#include "explorer/wxLogSink.h"
#include "explorer/wxWaveExplorerWidgetImpl.h"
#include "wxZelWaveCommandLogger.h"
#include "zelwaveBuildInfo.h"

namespace vx3 {

using namespace waveExplorerAction;
using namespace zelWaveWidgetWrapper;

int zelWaveControlPanel::cControlPanelVirtual::controlPanelVirtualExecuteCommandInt(const std::string& command,
                                                                                   long& result)
{
    int code = controlPanelVirtualExecuteCommand(command);
    const auto& results = controlPanelVirtualGetCommandResults();
    long value = -1;
    if (results.empty() || !cVxString(results.front()).toLong(value))
        value = -1;
    result = value;
    return code;
}

int zelWaveControlPanel::cControlPanelVirtual::controlPanelVirtualExecuteCommandStr(const std::string& command,
                                                                                   std::string& result)
{
    int code = controlPanelVirtualExecuteCommand(command);
    const auto& results = controlPanelVirtualGetCommandResults();
    result = results.empty() ? std::string() : results.front();
    return code;
}

// ---------------------------------------------------------------------------------------------
wxZelWaveWidgetWrapper::wxZelWaveWidgetWrapper(int x, int y, int width, int height)
    : mLogger(vxLogger::debug, true),
      mCommandMutex("zelwrapper"),
      mThread(this, "zelWaveWidgetWrapper"),
      mSecondThread(this, "zelWaveWidgetWrapper2"),
      mSecondThreadMutex("zelwrapper second thread"),
      mExitMutex("zelwrapper exit"),
      mX(x),
      mY(y),
      mWidth(width),
      mHeight(height),
      mCallbackMutex("zelwrapper callbacks"),
      mNotificationMutex("zelwrapper notifications")
{
}

wxZelWaveWidgetWrapper::~wxZelWaveWidgetWrapper()
{
    mClosing = true;
    shutDownSocket();
    mThread.joinThread();
    mSecondThread.joinThread();
    mLogger.setLoggerCallBack(nullptr);
    detachToolWindows();
    // The explorer is a child of the Qt window and goes with it.
    mExplorer = nullptr;
}

void wxZelWaveWidgetWrapper::defineStyle(int style)
{
    mStyle = style;
    mConfiguration.nocliMode = (style & style_nocli) != 0;
    mConfiguration.toolBarStyle = (style & style_tool_bar_permanent) ? waveExplorerConfiguration::tool_bar_permanent
                                                                     : waveExplorerConfiguration::tool_bar_none;
    mConfiguration.guiFlagBit4 = (style & style_gui_flag) != 0;
    mConfiguration.sideBarStyle = (style & style_side_bar) ? 2 : 4;
    mConfiguration.showMenuBar = (style & style_menu_bar) != 0;
    mConfiguration.guiFlagBit32 = (style & style_further_flag) != 0;
    mConfiguration.loadAndSaveConfigFile = (style & style_load_save_config) != 0;
    if (mConfiguration.loadAndSaveConfigFile) {
        mConfiguration.setConfigFileName(getConfigFileName());
        mConfiguration.loadFromConfig(mLogger);
    }
}

bool wxZelWaveWidgetWrapper::create(QWidget* parent)
{
    if (mCreated) {
        mLogger.errorMsg("ZelWave Widget has already been created.");
        return false;
    }
    mCreated = true;
    try {
        mExplorer = new wxWaveExplorerWidgetImpl(parent, mConfiguration, this, mX, mY, mWidth, mHeight);
        mLogger.setLoggerCallBack(&mExplorer->logSink());

        Dl_info info{};
        std::string library;
        if (dladdr(reinterpret_cast<void*>(&convert_vx_return_code_to_string), &info) && info.dli_fname)
            library = info.dli_fname;
        char executable[PATH_MAX] = {0};
        ssize_t length = readlink("/proc/self/exe", executable, sizeof(executable) - 1);
        if (length > 0)
            executable[length] = 0;
        mExecutablePath = library.empty() ? std::string(executable) : library;

        mLogger.infoMsg(std::string("ZelWave Widget starts (") + ZW_BUILD_NUMBER + "-" + ZW_BUILD_TIMESTAMP +
                        " svn " + ZW_BUILD_REVISION + " toolkit " + mToolKitName + " level " + ZW_BUILD_LEVEL + ")");
        mExplorer->setBusy(true);
        mExplorer->setFlagEnableReload(false);
        mExplorer->startup();
        mExplorer->setBusy(false);
        mExplorer->setFlagEnableReload(true);
        mLogger.disableBuffer();
        return true;
    } catch (const std::exception& exception) {
        mLogger.setLoggerCallBack(nullptr);
        delete mExplorer;
        mExplorer = nullptr;
        mLogger.errorMsg("ZelWave Widget creation failed.");
        mLogger.errorMsg(exception.what());
        return false;
    }
}

bool wxZelWaveWidgetWrapper::checkIfWeAreInTheMainThread() const
{
    return mExplorer && mExplorer->mainThreadIdentifier().compareThreadId();
}

bool wxZelWaveWidgetWrapper::checkTopWindowWH(int& width, int& height) const
{
    int oldWidth = width, oldHeight = height;
    if (width == -1 && height == -1) {
        width = mConfiguration.windowWidth;
        height = mConfiguration.windowHeight;
    }
    width = std::max(width, 100);
    height = std::max(height, 100);
    return width != oldWidth || height != oldHeight;
}

void wxZelWaveWidgetWrapper::saveTopLevelWindowDimensions(int width, int height)
{
    mConfiguration.setWindowSize(width, height);
}

// ---------------------------------------------------------------------------------------------
int wxZelWaveWidgetWrapper::lockAndExecuteCommand(const std::string& command)
{
    cVxScopedTryLock lock(mCommandMutex);
    if (!lock.checkIsLocked()) {
        // A background task owns the door: only a few commands may pass.
        wxWaveExplorerCommand local;
        cVxLogger scratch;
        if (!local.parseCommandString(command, scratch))
            return vx_code_error;
        if (local.actionType == cmd_get_status)
            return vx_code_queued;
        if (local.actionType == cmd_show_control_panel || local.actionType == cmd_show_command_logger) {
            if (!checkIfWeAreInTheMainThread())
                return vx_code_error;
            wxWaveExplorerAction action;
            action.actionType = local.actionType == cmd_show_control_panel ? explorerCallBack::show_control_panel
                                                                           : explorerCallBack::show_command_logger;
            action.pushDoubleArg(local.getDoubleArgAsBool(0, true) ? 1.0 : 0.0);
            waveExplorerVirtualCallBackAction(action);
            return vx_code_ok;
        }
        return vx_code_error;
    }
    if (mClosing)
        return vx_code_error;
    if (mTaskRunning)
        return vx_code_queued;
    if (mResultPending) {
        mResultPending = false;
        if (vxString::to_lower(vxString::trim(command)) == "get_status")
            return mTaskResult;
    }
    mPluginContext.clear();
    try {
        return executeCommand(command, true);
    } catch (...) {
        return vx_code_error;
    }
}

int wxZelWaveWidgetWrapper::executeCommand(const std::string& text, bool useThread)
{
    mResults.clear();
    if (!mExplorer || mClosing)
        return vx_code_error;
    std::string_view rest = text;
    size_t first = rest.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos)
        return vx_code_ok;
    rest.remove_prefix(first);
    int result = vx_code_ok;
    while (!rest.empty()) {
        bool parsed = mCommand.parseCommandString(rest, mLogger);
        std::string line = mCommand.text();
        rest.remove_prefix(std::min(mCommand.consumed(), rest.size()));
        if (!parsed) {
            if (!vxString::trim(line).empty() && !mInComment) {
                mLogger.errorMsg("Interactive Mode: parsing of the command \"" + line + "\" failed.");
                result = vx_code_error;
            }
            continue;
        }
        if (mDebugMode && !mInComment)
            mLogger.infoMsg("Interactive Mode: processing the command \"" + line + "\".");
        // Lines inside a comment block do nothing and are not shown; its two ends are.
        wxZelWaveCommandLogger* commandLogger =
            mInComment && mCommand.actionType != cmd_comment_end ? nullptr : commandLoggerForCommand(mCommand);
        if (commandLogger)
            commandLogger->addCommand(line);
        result = executeCommandImpl(rest.empty() ? useThread : false);
        if (mDebugMode) {
            if (result == vx_code_ok)
                mLogger.infoMsg("Interactive Mode: execution succeeded.");
            else if (result == vx_code_queued)
                mLogger.infoMsg("Interactive Mode: command was queued.");
            else
                mLogger.errorMsg("Interactive Mode: execution failed.");
        }
        if (commandLogger)
            logCommandResult(commandLogger, result);
    }
    return result;
}

int wxZelWaveWidgetWrapper::translateExplorerResult(int code)
{
    switch (code) {
    case 0:
        mResults = mCommand.returnValues();
        return vx_code_ok;
    case 4: return vx_code_file_not_found;
    case 27: return vx_code_queued;
    default: return vx_code_error;
    }
}

int wxZelWaveWidgetWrapper::executeCommandImpl(bool useThread)
{
    mResults.clear();
    if (mClosing)
        return vx_code_error;
    if (mInComment && mCommand.actionType != cmd_comment_end)
        return vx_code_ok;
    switch (mCommand.actionType) {
    case cmd_execute_command_file:
        // Its lines are recorded one by one as they run, the file command itself is not.
        return performCommand(useThread);
    case cmd_reading_command_file_start:
    case cmd_reading_command_file_end:
    case cmd_register_command_file:
    case cmd_unregister_command_file:
        break;
    default:
        mRecorder.printCommand(mCommand.text());
    }
    // What this command performs by further commands is not recorded again.
    bool recording = mRecorder.getRecordingFlag();
    mRecorder.setRecording(false);
    int result = performCommand(useThread);
    mRecorder.setRecording(recording);
    return result;
}

int wxZelWaveWidgetWrapper::performCommand(bool useThread)
{
    int result = vx_code_ok;
    if (handleWrapperCommand(mCommand, useThread, result))
        return result;
    if (mCommand.actionType == cmd_save_curve_style_file)
        mCommand.setStringArgument(1, getToolName());
    return translateExplorerResult(mExplorer->executeCommandFromThread(mCommand, useThread));
}

bool wxZelWaveWidgetWrapper::handleWrapperCommand(wxWaveExplorerCommand& command, bool useThread, int& result)
{
    result = vx_code_ok;
    switch (command.actionType) {
    case cmd_comment_start: mInComment = true; return true;
    case cmd_comment_end: mInComment = false; return true;
    case cmd_debug_mode_on:
        mDebugMode = true;
        mExplorer->logSink().setWindowMaxSeverity(vxLogger::debug);
        return true;
    case cmd_debug_mode_off:
        mDebugMode = false;
        mExplorer->logSink().setWindowMaxSeverity(vxLogger::warning);
        return true;
    case cmd_help:
        result = wxWaveExplorerCommand::generateHelpStrings(mResults, command.getStringArgument(0)) ? vx_code_ok
                                                                                                   : vx_code_error;
        return true;
    case cmd_generate_documentation_from_help:
        if (!wxWaveExplorerCommand::generateDocumentationFromHelpStrings(command.getStringArgument(0))) {
            mLogger.errorMsg("Could not write the file \"" + command.getStringArgument(0) + "\".");
            result = vx_code_error;
        }
        return true;
    case cmd_compare_csv_files:
        result = cCsvFileComparison().compare(command.getStringArgument(0), command.getStringArgument(1), mLogger)
                     ? vx_code_ok
                     : vx_code_error;
        return true;
    case cmd_execute_command_file:
    case cmd_restore_session_file:
        result = executeCommandFileStartThread(command.getStringArgument(0), useThread);
        return true;
    case cmd_start_interactive_socket: {
        double port = command.getDoubleArg(0, -1.0);
        if (port < 0 || port > 65535) {
            mLogger.warnMsg("Interactive Mode: bad 2nd argument.");
            result = vx_code_error;
            return true;
        }
        result = executeSocketStartThread(command.getStringArgument(0), static_cast<unsigned>(port), useThread);
        return true;
    }
    case cmd_shut_down_interactive_socket: shutDownSocket(); return true;
    case cmd_register_command_file: {
        const std::string& file = command.getStringArgument(0);
        cVxFilePath path(file);
        path.convertToAbsolutePath();
        for (const auto& open : mFilesBeingRead) {
            if (open == path.name()) {
                mLogger.errorMsg("The command file \"" + file + "\" can't be registered as it is currently read.");
                result = vx_code_error;
                return true;
            }
        }
        result = mRecorder.openExportCommandFile(file, mLogger) == 0 ? vx_code_ok : vx_code_error;
        return true;
    }
    case cmd_unregister_command_file:
        result = mRecorder.closeExportCommandFile(command.getStringArgument(0), mLogger) == 0 ? vx_code_ok
                                                                                            : vx_code_error;
        return true;
    case cmd_check_instance_identifier: {
        double identifier = command.getDoubleArg(0, -1.0);
        result = identifier == static_cast<double>(mConfiguration.getInstanceIdentifier()) ? vx_code_ok : vx_code_error;
        return true;
    }
    case cmd_set_flag_is_top_window: mIsTopWindow = command.getDoubleArgAsBool(0, false); return true;
    case cmd_set_working_directory: {
        std::string directory = cVxFilePath::evaluateSystemVariables(command.getStringArgument(0), &mLogger);
        if (directory.empty() || chdir(directory.c_str()) != 0) {
            mLogger.errorMsg("Could not change the working directory to \"" + directory + "\".");
            result = vx_code_error;
        }
        return true;
    }
    case cmd_understood_without_action: result = vx_code_error; return true;
    default: return false;
    }
}

int wxZelWaveWidgetWrapper::executeXmlCommand(const std::string& xml, const std::string& plotName)
{
    cZelWaveXmlParser parser;
    if (!parser.parseXmlString(xml) || parser.commands().empty())
        return vx_code_parse_failed;
    std::string text;
    for (const auto& command : parser.commands()) {
        if (!text.empty())
            text += '\n';
        text += wxWaveExplorerCommand::substitutePlotName(command, plotName);
    }
    return lockAndExecuteCommand(text);
}

std::string wxZelWaveWidgetWrapper::getCommandResultsAsString() const
{
    return mResults.empty() ? std::string() : mResults.front();
}

long wxZelWaveWidgetWrapper::getCommandResultsAsInteger() const
{
    long value = -1;
    if (mResults.empty() || !cVxString(mResults.front()).toLong(value))
        return -1;
    return value;
}

const char** wxZelWaveWidgetWrapper::getCommandResultsAsCStrings()
{
    if (mResults.empty())
        return nullptr;
    mResultPointers.clear();
    for (const auto& result : mResults)
        mResultPointers.push_back(result.c_str());
    mResultPointers.push_back(nullptr);
    return mResultPointers.data();
}

int wxZelWaveWidgetWrapper::waveExplorerVirtualCallBackAction(wxWaveExplorerAction& action)
{
    switch (action.actionType) {
    case explorerCallBack::close_requested:
        return closeRequested(action.getDoubleArgAsBool(0, false));
    case explorerCallBack::record_user_command:
        mRecorder.printUserCommand(action.getStringArgument(0));
        return 0;
    case cmd_show: showTopLevel(true); return 0;
    case cmd_hide: showTopLevel(false); return 0;
    case explorerCallBack::file_opened:
        pushNotification({vx_notification_file_opened, action.getStringArgument(0), std::string(), 0});
        return 0;
    case explorerCallBack::file_closed:
        pushNotification({vx_notification_file_closed, action.getStringArgument(0), std::string(), 0});
        return 0;
    case explorerCallBack::all_files_closed:
        pushNotification({vx_notification_all_files_closed, std::string(), std::string(), 0});
        return 0;
    case explorerCallBack::show_control_panel:
    case explorerCallBack::show_command_logger:
    case explorerCallBack::clear_command_logger:
    case explorerCallBack::enable_command_logger:
        return performToolWindowAction(action);
    case explorerCallBack::application_busy:
    case explorerCallBack::application_not_busy:
        return 0;
    case explorerCallBack::file_open_allowed:
        return mClosing ? 3 : 0;
    default:
        return 3;
    }
}

void wxZelWaveWidgetWrapper::applicationCloses()
{
    mConfiguration.setFlagApplicationCloses(true);
    if (mConfiguration.loadAndSaveConfigFile && mConfiguration.getFlagConfigChanged()) {
        if (mConfiguration.checkAutomaticSaveAllowed())
            mConfiguration.saveToConfig(mLogger);
        else
            mLogger.warnMsg("The configuration file was not loaded at startup: it is not overwritten. "
                            "save_configuration_file writes it nevertheless.");
    }
    mLogger.setLoggerCallBack(nullptr);
    if (mExplorer)
        mExplorer->applicationCloses();
}

bool wxZelWaveWidgetWrapper::checkIfApplicationCanExit()
{
    // Nothing can be unsaved yet: computed curves and sessions come with the plot pages.
    return true;
}

}  // namespace vx3
