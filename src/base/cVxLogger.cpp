#include "cVxLogger.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "cVxFilePath.h"
#include "cVxString.h"
#include "vxTime.h"

namespace vx3 {

const char* vxLogger::severityTag(unsigned severity)
{
    switch (severity) {
    case info: return " - I - ";
    case fatal_error: return " - F - ";
    case error: return " - E - ";
    case high_warning: return " - H - ";
    case warning: return " - W - ";
    case debug: return " - D - ";
    case nocl: return " - N - ";
    default: return " - X - ";
    }
}

// ---------------------------------------------------------------------------------------------
cVxLoggerCallBack::cVxLoggerCallBack() : mStart(std::chrono::steady_clock::now()) {}

void cVxLoggerCallBack::loggerCallBackVirtualCout(const std::string& text) { std::cout << text; }

double cVxLoggerCallBack::elapsedSeconds() const
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - mStart).count();
}

void cVxLoggerCallBack::printLogMessage(std::ostream& stream, unsigned severity, const std::string& text,
                                        bool absolute) const
{
    stream << vxLogger::severityTag(severity);
    if (absolute)
        stream << getCurrentDateReverse() << ' ' << getCurrentTime();
    else
        stream << cDateAndTime::formatElapsedTime(elapsedSeconds());
    stream << " - " << text;
}

// ---------------------------------------------------------------------------------------------
void cVxLogger::sendMsg(unsigned severity, const std::string& text) const
{
    if (severity > mMaxSeverity)
        return;
    // A message is one line of bounded length: a log must stay readable when a caller hands it
    // megabytes of bad input.
    constexpr size_t kMaxLength = 4096;
    cVxString line = text.size() > kMaxLength
                         ? cVxString(vxString::trim(std::string_view(text).substr(0, kMaxLength - 96)) + " ... (" +
                                     std::to_string(text.size()) + " characters)")
                         : cVxString(vxString::trim(text));
    line.replaceNewlineBySpace();
    if (mCallBack)
        mCallBack->loggerCallBackVirtualLogMessage(severity, line);
    else if (mBuffering)
        mBuffer.push_back({severity, std::move(line)});
}

void cVxLogger::stdOut(const std::string& text) const
{
    if (mCallBack)
        mCallBack->loggerCallBackVirtualCout(text);
    else
        std::cout << text;
}

void cVxLogger::stdOutHex(const void* data, size_t size) const
{
    std::ostringstream stream;
    const unsigned char* bytes = static_cast<const unsigned char*>(data);
    for (size_t i = 0; i < size; ++i) {
        stream << std::hex << std::setw(2) << std::setfill('0') << static_cast<unsigned>(bytes[i]);
        stream << ((i % 16 == 15 || i + 1 == size) ? '\n' : ' ');
    }
    stdOut(stream.str());
}

cVxLogger& cVxLogger::operator<<(const std::string& text)
{
    // Collected until a line end, then sent as one info line.
    mPending += text;
    size_t position;
    while ((position = mPending.find('\n')) != std::string::npos) {
        infoMsg(mPending.substr(0, position));
        mPending.erase(0, position + 1);
    }
    return *this;
}

cVxLogger& cVxLogger::operator<<(double value) { return *this << cVxString::createFromNumber(value); }

void cVxLogger::setLoggerCallBack(cVxLoggerCallBack* callBack)
{
    mCallBack = callBack;
    if (mBuffering && mCallBack)
        handleBuffer();
}

void cVxLogger::disableBuffer()
{
    handleBuffer();
    mBuffering = false;
}

void cVxLogger::handleBuffer() const
{
    if (!mCallBack)
        return;
    std::vector<vxLogger::cBufferedMessages> messages;
    messages.swap(mBuffer);
    for (const auto& message : messages)
        mCallBack->loggerCallBackVirtualLogMessage(message.severity, message.text);
}

void cVxLogger::initProgress(uint64_t maximum)
{
    mProgressCurrent = 0;
    mProgressMaximum = maximum;
    mProgressPercent = -1;
}

void cVxLogger::clearAndInitProgress(const std::string& label, const std::string& text, uint64_t maximum)
{
    mProgressLabel = label;
    mProgressText = text;
    initProgress(maximum);
}

void cVxLogger::updateProgress(uint64_t value)
{
    mProgressCurrent = value;
    if (mProgressMaximum == 0)
        return;
    double ratio = static_cast<double>(value) / static_cast<double>(mProgressMaximum);
    int percent = static_cast<int>(std::min(100.0, std::floor(ratio * 100.0)));
    if (percent != mProgressPercent)
        logProgress(percent);
}

void cVxLogger::incrementProgress(uint64_t step) { updateProgress(mProgressCurrent + step); }

void cVxLogger::completeProgress() { logProgress(100); }

void cVxLogger::logProgress(int percent)
{
    mProgressPercent = percent;
    if (mCallBack)
        mCallBack->loggerCallBackVirtualLogProgress(mProgressLabel, mProgressText, percent, percent >= 100);
}

void cVxLogger::setActionIsInterrupted(bool flag) const
{
    if (mCallBack)
        mCallBack->loggerCallBackVirtualSetActionIsInterrupted(flag);
}

bool cVxLogger::checkActionIsInterrupted() const
{
    return mCallBack && mCallBack->loggerCallBackVirtualCheckActionIsInterrupted();
}

std::string cVxLogger::getDefaultLogFileName(const std::string& vendor, const std::string& tool,
                                            const cVxLogger* logger)
{
    cVxFilePath config(getConfigFileName(tool, vendor));
    cVxFilePath directory = config.getParentPath();
    std::string toolWord = tool.empty() ? std::string("ZelkoraWave") : tool;
    std::string name = directory.name() + "/" + toolWord + ".txt";
    if (!directory.exists() && !directory.createDirectories()) {
        if (logger) {
            logger->errorMsg("Can't create directories for log file \"" + name + "\".");
            logger->errorMsg("Deactivating logs.");
        }
        return std::string();
    }
    return name;
}

// ---------------------------------------------------------------------------------------------
void cVxConsoleLogger::loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text)
{
    if (!mConsoleOn || severity > mConsoleMaxSeverity)
        return;
    printLogMessage(std::cout, severity, text, false);
    std::cout << std::endl;
}

void cVxConsoleLogger::loggerCallBackVirtualCout(const std::string& text) { std::cout << "++ " << text; }

cVxFileLogger::~cVxFileLogger() { disableFileLogger(); }

void cVxFileLogger::loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text)
{
    cVxConsoleLogger::loggerCallBackVirtualLogMessage(severity, text);
    if (mFile.is_open() && severity <= mFileMaxSeverity) {
        printLogMessage(mFile, severity, text, true);
        mFile << std::endl;
    }
}

bool cVxFileLogger::enableFileLogger(unsigned severity, const std::string& fileName)
{
    disableFileLogger();
    mFileMaxSeverity = severity;
    mFileName = fileName;
    if (fileName.empty())
        return false;
    mFile.open(fileName, std::ios::out | std::ios::app);
    return mFile.is_open();
}

bool cVxFileLogger::enableFileLoggerIfNecessary(unsigned severity, const std::string& fileName)
{
    if (mFile.is_open() && fileName == mFileName) {
        mFileMaxSeverity = severity;
        return true;
    }
    return enableFileLogger(severity, fileName);
}

void cVxFileLogger::disableFileLogger()
{
    if (mFile.is_open())
        mFile.close();
    mFile.clear();
}

bool cVxFileLogger::clearFileLogger()
{
    if (mFileName.empty())
        return false;
    disableFileLogger();
    mFile.open(mFileName, std::ios::out | std::ios::trunc);
    return mFile.is_open();
}

void cVxBufferedLogger::loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text)
{
    mMessages.push_back({severity, text});
}

void cVxBufferedLogger::dumpBufferedLogMessages()
{
    std::vector<vxLogger::cBufferedMessages> messages;
    messages.swap(mMessages);
    for (const auto& message : messages)
        cVxFileLogger::loggerCallBackVirtualLogMessage(message.severity, message.text);
}

void cVxBufferedLogger::printBufferedMessages() const
{
    for (const auto& message : mMessages) {
        printLogMessage(std::cout, message.severity, message.text, false);
        std::cout << '\n';
    }
    std::cout.flush();
}

void cVxStringLogger::loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text)
{
    if (severity > mMaxSeverity)
        return;
    std::ostringstream stream;
    printLogMessage(stream, severity, text, false);
    mBuffer += stream.str();
    mBuffer += '\n';
}

}  // namespace vx3
