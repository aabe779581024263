// Background tasks of the top object: command files and the interactive socket.
#include <fstream>

#include "base/cVxFilePath.h"
#include "base/cVxString.h"
#include "explorer/wxLogSink.h"
#include "explorer/wxWaveExplorerWidgetImpl.h"
#include "wxZelWaveWidgetWrapper.h"

namespace vx3 {

using namespace zelWaveWidgetWrapper;

void wxZelWaveWidgetWrapper::executeTaskInThread(int task)
{
    switch (task) {
    case task_command_file_locked:
        lockAndExecuteCommandFile(mTaskFile);
        break;
    case task_command_file:
        executeCommandFileImpl(mTaskFile);
        mTaskRunning = false;
        break;
    case task_socket:
        lockAndListenToSocket(mSocketAddress, mSocketPort);
        break;
    default:
        break;
    }
}

void wxZelWaveWidgetWrapper::storeTaskResult(int result)
{
    mTaskResult = result;
    mTaskRunning = false;
    mResultPending = true;
}

int wxZelWaveWidgetWrapper::executeCommandFileStartThread(const std::string& file, bool useThread)
{
    if (!useThread)
        return executeCommandFileImpl(file);
    if (mThread.checkIsRunning())
        return vx_code_error;
    mThread.joinThread();
    mTaskRunning = true;
    mTaskFile = file;
    mFilesBeingRead.clear();
    mThread.setTask(task_command_file_locked);
    if (!mThread.createThread()) {
        mTaskRunning = false;
        return vx_code_error;
    }
    return vx_code_queued;
}

int wxZelWaveWidgetWrapper::lockAndExecuteCommandFile(const std::string& file)
{
    cVxScopedLock lock(mCommandMutex);
    mFilesBeingRead.clear();
    mTaskRunning = true;
    int result = executeCommandFileImpl(file);
    storeTaskResult(result);
    return result;
}

int wxZelWaveWidgetWrapper::tryLockAndExecuteCommandFile(const std::string& file)
{
    cVxScopedTryLock lock(mCommandMutex);
    if (!lock.checkIsLocked()) {
        mLogger.highWarnMsg("Command file execution is disabled as another command is currently executed.");
        return vx_code_error;
    }
    mFilesBeingRead.clear();
    mTaskRunning = true;
    int result = executeCommandFileImpl(file);
    storeTaskResult(result);
    return result;
}

int wxZelWaveWidgetWrapper::executeCommandFileImpl(const std::string& file)
{
    if (!mExplorer)
        return vx_code_error;
    if (file.empty()) {
        mLogger.errorMsg("The command file name is empty.");
        return vx_code_file_not_found;
    }
    cVxFilePath path(file);
    if (!path.exists()) {
        mLogger.errorMsg("The file \"" + file + "\" was not found.");
        return vx_code_file_not_found;
    }
    path.convertToAbsolutePath();
    path.resolveSymbolicLinks();
    const std::string name = path.name();
    for (const auto& open : mFilesBeingRead) {
        if (open == name) {
            mLogger.errorMsg("Command File Execution: the file \"" + name + "\" has already been executed.");
            return vx_code_error;
        }
    }
    std::ifstream in(name, std::ios::binary);
    if (!in || path.isDirectory()) {
        mLogger.errorMsg("Command File Execution: could not open file \"" + name + "\".");
        return vx_code_file_not_found;
    }
    mLogger.infoMsg("Reading command file \"" + name + "\".");
    const std::string oldBase = mCommand.baseDirectory();
    const std::string base = path.getParentPath().name();
    mCommand.setBaseDirectory(base);
    mFilesBeingRead.push_back(name);
    executeCommand("reading_command_file_start", false);

    int fileResult = vx_code_ok;
    std::string line;
    size_t lineNumber = 0;
    while (std::getline(in, line)) {
        ++lineNumber;
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        mCommand.setBaseDirectory(base);  // a nested file changed it
        int result = executeCommand(line, false);
        if (result == vx_code_error) {
            fileResult = vx_code_error;
            mLogger.debugMsg("Line " + std::to_string(lineNumber) + " : the interactive command \"" + line +
                             "\" failed.");
        } else if (result == vx_code_queued && fileResult != vx_code_error) {
            fileResult = vx_code_queued;
        }
        if (mClosing)
            break;
    }
    executeCommand("reading_command_file_end", false);
    for (auto it = mFilesBeingRead.begin(); it != mFilesBeingRead.end(); ++it) {
        if (*it == name) {
            mFilesBeingRead.erase(it);
            break;
        }
    }
    mLogger.infoMsg("Read command file \"" + name + "\".");
    mCommand.setBaseDirectory(oldBase);
    return fileResult;
}

// ---------------------------------------------------------------------------------------------
int wxZelWaveWidgetWrapper::executeSocketStartThread(const std::string& address, unsigned port, bool useThread)
{
    // A socket is never opened from inside another socket or a command file.
    if (!mExplorer || !useThread)
        return vx_code_error;
    if (mThread.checkIsRunning())
        return vx_code_error;
    mThread.joinThread();
    mTaskRunning = true;
    {
        cVxScopedLock lock(mExitMutex);
        mExitInteractiveMode = false;
    }
    mSocketAddress = address;
    mSocketPort = port;
    mThread.setTask(task_socket);
    if (!mThread.createThread()) {
        mTaskRunning = false;
        return vx_code_error;
    }
    return vx_code_queued;
}

int wxZelWaveWidgetWrapper::lockAndListenToSocket(const std::string& address, unsigned port)
{
    cVxScopedLock lock(mCommandMutex);
    mTaskRunning = true;
    int result = listenToSocketImpl(address, port);
    storeTaskResult(result);
    return result;
}

int wxZelWaveWidgetWrapper::listenToSocketImpl(const std::string& address, unsigned port)
{
    // The socket session arrives with the command transport; until then say so plainly.
    mLogger.errorMsg("The interactive socket " + address + ":" + std::to_string(port) +
                     " is not supported by this build.");
    return vx_code_error;
}

void wxZelWaveWidgetWrapper::shutDownSocket()
{
    cVxScopedLock lock(mExitMutex);
    mExitInteractiveMode = true;
}

// ---------------------------------------------------------------------------------------------
void wxZelWaveWidgetWrapper::attachLogFile(const cCommandLineParser& parser)
{
    wxLogSink& sink = mExplorer->logSink();
    if (parser.silentFlagPresent())
        sink.setConsoleOn(false);
    else if (parser.debugFlagPresent())
        sink.setConsoleMaxSeverity(vxLogger::debug);
    else if (parser.verboseFlagPresent())
        sink.setConsoleMaxSeverity(vxLogger::warning);

    std::string file = parser.logFileName();
    unsigned severity = parser.logSeverity();
    if (file.empty()) {
        file = cVxLogger::getDefaultLogFileName("HarlanTessel", "ZelkoraWave", &mLogger);
        severity = vxLogger::warning;
        if (file.empty()) {
            sink.dropBacklog();
            return;
        }
    } else {
        file = cVxFilePath(file).name();
    }
    if (!sink.attachLogFile(severity, file)) {
        // The program goes on without a log file.
        mLogger.errorMsg("Could not open the log file \"" + file + "\".");
    }
}

void wxZelWaveWidgetWrapper::processCommandLineArguments(const cCommandLineParser& parser)
{
    if (!mExplorer)
        return;
    attachLogFile(parser);
    if (parser.nocliFlagPresent())
        mConfiguration.nocliMode = true;
    for (const auto& file : parser.stringArguments())
        lockAndExecuteCommand("open_file \"" + file + "\"");
    std::string commandFile = parser.commandFileName();
    if (!commandFile.empty()) {
        cVxFilePath absolute(commandFile);
        absolute.convertToAbsolutePath();
        std::string directory = absolute.getParentPath().name();
        lockAndExecuteCommand("set_last_command_file_directory \"" + directory + "\"");
        lockAndExecuteCommand("execute_command_file \"" + commandFile + "\"");
    } else if (parser.socketPresent()) {
        executeSocketStartThread(parser.socketAddress(), parser.socketPort(), true);
    }
}

void wxZelWaveWidgetWrapper::processCommandLineArguments(const std::string& text)
{
    cCommandLineParser parser;
    parser.parseCommandLine(text);
    processCommandLineArguments(parser);
}

void wxZelWaveWidgetWrapper::processCommandLineArguments(int argc, const char* const* argv)
{
    cCommandLineParser parser(argc, argv);
    processCommandLineArguments(parser);
}

}  // namespace vx3
