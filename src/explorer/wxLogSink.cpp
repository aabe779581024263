#include "wxLogSink.h"

namespace vx3 {

wxLogSink::wxLogSink() : cVxFileLogger(vxLogger::error, true), mWriteMutex("log sink") {}

void wxLogSink::loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text)
{
    {
        cVxScopedLock lock(mWriteMutex);
        cVxFileLogger::loggerCallBackVirtualLogMessage(severity, text);
        if (mKeepBacklog && mBacklog.size() < 1000)
            mBacklog.push_back({severity, text});
    }
    // Queued connection: the receiver lives on the main thread.
    if (severity <= mWindowMaxSeverity)
        emit messageLogged(severity, QString::fromStdString(text));
}

bool wxLogSink::attachLogFile(unsigned severity, const std::string& fileName)
{
    cVxScopedLock lock(mWriteMutex);
    mKeepBacklog = false;
    std::vector<vxLogger::cBufferedMessages> backlog;
    backlog.swap(mBacklog);
    if (!enableFileLogger(severity, fileName) || !clearFileLogger())
        return false;
    // Console lines were printed already: the early lines go to the file only.
    bool console = mConsoleOn;
    mConsoleOn = false;
    for (const auto& message : backlog)
        cVxFileLogger::loggerCallBackVirtualLogMessage(message.severity, message.text);
    mConsoleOn = console;
    return true;
}

void wxLogSink::dropBacklog()
{
    cVxScopedLock lock(mWriteMutex);
    mKeepBacklog = false;
    mBacklog.clear();
}

void wxLogSink::loggerCallBackVirtualLogProgress(const std::string& label, const std::string& text, int percent,
                                                 bool)
{
    emit progressLogged(QString::fromStdString(label.empty() ? text : label + " " + text), percent);
}

}  // namespace vx3
