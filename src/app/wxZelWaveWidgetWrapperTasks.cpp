// Background tasks of the top object: command files and the interactive socket.
#include <unistd.h>

#include <fstream>

#include "base/cVxFilePath.h"
#include "base/cVxString.h"
#include "explorer/wxLogSink.h"
#include "explorer/wxWaveExplorerWidgetImpl.h"
#include "wxZelWaveWidgetWrapper.h"

namespace vx3 {

using namespace zelWaveWidgetWrapper;

void wxZelWaveWidgetWrapper::logAndRecordError(const std::string& text)
{
    mLogger.errorMsg(text);
    mRecorder.printComment(text);
}

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
        logAndRecordError("The command file name is empty.");
        return vx_code_file_not_found;
    }
    cVxFilePath path(file);
    if (!path.exists()) {
        logAndRecordError("The file \"" + file + "\" was not found.");
        return vx_code_file_not_found;
    }
    path.convertToAbsolutePath();
    path.resolveSymbolicLinks();
    const std::string name = path.name();
    for (const auto& open : mFilesBeingRead) {
        if (open == name) {
            logAndRecordError("Command File Execution: the file \"" + name + "\" has already been executed.");
            return vx_code_error;
        }
    }
    std::ifstream in(name, std::ios::binary);
    if (!in || path.isDirectory()) {
        logAndRecordError("Command File Execution: could not open file \"" + name + "\".");
        return vx_code_file_not_found;
    }
    mLogger.infoMsg("Reading command file \"" + name + "\".");
    mRecorder.printComment("Reading command file \"" + name + "\".");
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
    mRecorder.printComment("Read command file \"" + name + "\".");
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
    mSocket.closeSocket(true);
    storeTaskResult(result);
    return result;
}

bool wxZelWaveWidgetWrapper::checkExitInteractiveMode()
{
    cVxScopedLock lock(mExitMutex);
    return mExitInteractiveMode;
}

std::string wxZelWaveWidgetWrapper::formatSocketReply(int result) const
{
    switch (result) {
    case vx_code_ok: {
        std::string reply = "0";
        for (const auto& value : mResults) {
            // One reply stays one line: quotes and line ends inside a value are escaped.
            std::string escaped;
            for (char c : value) {
                if (c == '"')
                    escaped += "\\\"";
                else if (c == '\n')
                    escaped += "\\n";
                else if (c == '\r')
                    escaped += "\\r";
                else
                    escaped += c;
            }
            reply += " \"" + escaped + "\"";
        }
        return reply + "\n";
    }
    case vx_code_queued: return "2\n";
    default: return "1\n";
    }
}

int wxZelWaveWidgetWrapper::listenToSocketImpl(const std::string& address, unsigned port)
{
    const std::string where = "( ip = " + address + " port = " + std::to_string(port) + " )";
    mSocket.setTimeout(0, 200000);  // the exit flag is seen within this time
    mSocket.setLogger(&mLogger);
    for (unsigned attempt = 0;; ++attempt) {
        if (checkExitInteractiveMode())
            return vx_code_error;
        if (mSocket.connectToStreamSocket(address, port) == 0)
            break;
        // Retried five times a second until the peer listens: the log tells it once as an error.
        mLogger.sendMsg(attempt == 0 ? vxLogger::error : vxLogger::debug,
                        "Interactive Mode: Failed to connect to socket " + where + ".");
        usleep(200000);
    }
    mLogger.infoMsg("Interactive Mode: connected to socket " + where + ".");
    mLogger.infoMsg("The interactive mode is enabled.");
    if (mSocket.transmit("0\n", 2) != 0) {
        mLogger.errorMsg("Interactive Mode: Socket write error.");
        mLogger.infoMsg("Exitting interactive socket mode.");
        return vx_code_error;
    }
    // A line may arrive in pieces over several reads; it is kept until its line end comes, up to a
    // bound beyond which it is dropped (and answered with a failure once its end arrives).
    constexpr size_t kMaxLineLength = 16u << 20;
    std::string text;
    std::string pending;
    bool dropping = false;
    while (true) {
        if (checkExitInteractiveMode())
            return vx_code_ok;
        int received = mSocket.receiveText(text, true);
        if (received == 19)
            continue;
        if (received != 0) {
            mLogger.errorMsg("Interactive Mode: Socket read error.");
            mLogger.infoMsg("Exitting interactive socket mode.");
            return vx_code_error;
        }
        pending += text;
        size_t start = 0;
        size_t end;
        while ((end = pending.find('\n', start)) != std::string::npos) {
            const bool tooLong = end - start > kMaxLineLength;
            std::string command =
                tooLong ? std::string() : vxString::trim(std::string_view(pending).substr(start, end - start));
            start = end + 1;
            int result = vx_code_error;
            if (tooLong && !dropping)
                mLogger.errorMsg("Interactive Mode: a command line longer than " + std::to_string(kMaxLineLength) +
                                 " bytes was dropped.");
            if (dropping || tooLong) {
                dropping = false;
            } else {
                mLogger.debugMsg("interactive socket : received command \"" + command + "\".");
                result = executeCommand(command, false);
            }
            std::string reply = checkExitInteractiveMode() ? std::string("0\n") : formatSocketReply(result);
            if (mSocket.transmit(reply) != 0) {
                mLogger.errorMsg("Interactive Mode: Socket write error.");
                if (!checkExitInteractiveMode())
                    mLogger.infoMsg("Exitting interactive socket mode.");
                return vx_code_error;
            }
            if (checkExitInteractiveMode())
                return vx_code_ok;
        }
        pending.erase(0, start);
        if (pending.size() > kMaxLineLength) {
            mLogger.errorMsg("Interactive Mode: a command line longer than " + std::to_string(kMaxLineLength) +
                             " bytes was dropped.");
            pending.clear();
            dropping = true;
        }
    }
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
