// The explorer's log target: console and log file as any file logger, plus the status bar and
// the log pane. Messages from other threads are queued and shown by the main thread.
#pragma once

#include <QObject>

#include <atomic>

#include <string>
#include <vector>

#include "base/cVxLogger.h"
#include "base/cVxThread.h"

namespace vx3 {

class wxLogSink : public QObject, public cVxFileLogger {
    Q_OBJECT
public:
    wxLogSink();
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override;
    void loggerCallBackVirtualLogProgress(const std::string& label, const std::string& text, int percent,
                                          bool flag) override;
    // Opens the log file and writes into it what was logged before it was known (start-up lines).
    bool attachLogFile(unsigned severity, const std::string& fileName);
    // No file will come: forget the early lines.
    void dropBacklog();
    // The status bar and the log pane show messages up to this severity (warnings by default).
    void setWindowMaxSeverity(unsigned severity) { mWindowMaxSeverity = severity; }

signals:
    void messageLogged(unsigned severity, QString text);
    void progressLogged(QString text, int percent);

private:
    cVxMutex mWriteMutex;  // the file stream is shared by the threads that log
    std::vector<vxLogger::cBufferedMessages> mBacklog;
    bool mKeepBacklog = true;
    std::atomic<unsigned> mWindowMaxSeverity{vxLogger::warning};
};

}  // namespace vx3
