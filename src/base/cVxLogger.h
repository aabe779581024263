// Logging: a logger forwards one-line messages to a call-back (status bar, file, string,
// console) and buffers them until a call-back is attached.
#pragma once

#include <chrono>
#include <fstream>
#include <string>
#include <vector>

namespace vx3 {

namespace vxLogger {
enum severity : unsigned {
    info = 1,
    fatal_error = 2,
    error = 3,
    high_warning = 4,
    warning = 5,
    debug = 6,
    nocl = 7
};
// " - I - " and the like; " - X - " for numbers outside 1..7.
const char* severityTag(unsigned severity);

struct cBufferedMessages {
    unsigned severity;
    std::string text;
};
}  // namespace vxLogger

class cVxLoggerCallBack {
public:
    cVxLoggerCallBack();
    virtual ~cVxLoggerCallBack() = default;
    virtual void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) = 0;
    virtual void loggerCallBackVirtualCout(const std::string& text);
    virtual void loggerCallBackVirtualSetActionIsInterrupted(bool flag) { mInterrupted = flag; }
    virtual bool loggerCallBackVirtualCheckActionIsInterrupted() { return mInterrupted; }
    virtual void loggerCallBackVirtualLogProgress(const std::string& label, const std::string& text, int percent,
                                                  bool flag) {}

    // Tag, time, " - ", text. Absolute time of day, or the time elapsed since the call-back started.
    void printLogMessage(std::ostream& stream, unsigned severity, const std::string& text, bool absolute) const;
    double elapsedSeconds() const;

private:
    std::chrono::steady_clock::time_point mStart;
    bool mInterrupted = false;
};

class cVxLogger {
public:
    explicit cVxLogger(unsigned maxSeverity = vxLogger::debug, bool buffering = false)
        : mMaxSeverity(maxSeverity), mBuffering(buffering) {}

    void sendMsg(unsigned severity, const std::string& text) const;
    void infoMsg(const std::string& text) const { sendMsg(vxLogger::info, text); }
    void fatalErrorMsg(const std::string& text) const { sendMsg(vxLogger::fatal_error, text); }
    void errorMsg(const std::string& text) const { sendMsg(vxLogger::error, text); }
    void highWarnMsg(const std::string& text) const { sendMsg(vxLogger::high_warning, text); }
    void warnMsg(const std::string& text) const { sendMsg(vxLogger::warning, text); }
    void debugMsg(const std::string& text) const { sendMsg(vxLogger::debug, text); }
    void noclMsg(const std::string& text) const { sendMsg(vxLogger::nocl, text); }

    void stdOut(const std::string& text) const;
    void stdOutHex(const void* data, size_t size) const;
    cVxLogger& operator<<(const std::string& text);
    cVxLogger& operator<<(const char* text) { return *this << std::string(text ? text : ""); }
    cVxLogger& operator<<(long long value) { return *this << std::to_string(value); }
    cVxLogger& operator<<(unsigned long long value) { return *this << std::to_string(value); }
    cVxLogger& operator<<(int value) { return *this << std::to_string(value); }
    cVxLogger& operator<<(unsigned value) { return *this << std::to_string(value); }
    // int64_t and size_t are long and unsigned long here: without these they would be ambiguous.
    cVxLogger& operator<<(long value) { return *this << std::to_string(value); }
    cVxLogger& operator<<(unsigned long value) { return *this << std::to_string(value); }
    cVxLogger& operator<<(double value);

    void setLoggerCallBack(cVxLoggerCallBack* callBack);
    cVxLoggerCallBack* getLoggerCallBack() const { return mCallBack; }
    void enableBuffer() { mBuffering = true; }
    void disableBuffer();  // sends what is buffered, then stops buffering
    void handleBuffer() const;
    bool checkIsBuffering() const { return mBuffering; }
    size_t getNumberOfBufferedMessages() const { return mBuffer.size(); }

    void setMaxSeverity(unsigned severity) { mMaxSeverity = severity; }
    unsigned getMaxSeverity() const { return mMaxSeverity; }

    // Progress: forwarded only when the percentage changes.
    void initProgress(uint64_t maximum);
    void clearAndInitProgress(const std::string& label, const std::string& text, uint64_t maximum);
    void updateProgress(uint64_t value);
    void incrementProgress(uint64_t step);
    void completeProgress();
    void logProgress(int percent);

    void setActionIsInterrupted(bool flag) const;
    bool checkActionIsInterrupted() const;

    // Beside the configuration file: "<config dir>/<tool>.txt"; empty when the folder can't be made.
    static std::string getDefaultLogFileName(const std::string& vendor, const std::string& tool,
                                             const cVxLogger* logger = nullptr);

private:
    cVxLoggerCallBack* mCallBack = nullptr;
    unsigned mMaxSeverity;
    bool mBuffering;
    mutable std::vector<vxLogger::cBufferedMessages> mBuffer;
    uint64_t mProgressCurrent = 0;
    uint64_t mProgressMaximum = 0;
    int mProgressPercent = -1;
    std::string mProgressLabel;
    std::string mProgressText;
    std::string mPending;  // text collected by operator<< up to a line end
};

// Writes to standard output.
class cVxConsoleLogger : public cVxLoggerCallBack {
public:
    explicit cVxConsoleLogger(unsigned maxSeverity = vxLogger::warning, bool consoleOn = true)
        : mConsoleMaxSeverity(maxSeverity), mConsoleOn(consoleOn) {}
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override;
    void loggerCallBackVirtualCout(const std::string& text) override;
    void setConsoleMaxSeverity(unsigned severity) { mConsoleMaxSeverity = severity; }
    void setConsoleOn(bool flag) { mConsoleOn = flag; }

protected:
    unsigned mConsoleMaxSeverity;
    bool mConsoleOn;
};

// Console plus a log file written with absolute times.
class cVxFileLogger : public cVxConsoleLogger {
public:
    using cVxConsoleLogger::cVxConsoleLogger;
    ~cVxFileLogger() override;
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override;
    // False when the file can't be opened: the file logger then stays disabled.
    bool enableFileLogger(unsigned severity, const std::string& fileName);
    bool enableFileLoggerIfNecessary(unsigned severity, const std::string& fileName);
    void disableFileLogger();
    bool clearFileLogger();
    bool checkFileLoggerIsEnabled() const { return mFile.is_open(); }
    const std::string& getFileName() const { return mFileName; }
    unsigned getFileMaxSeverity() const { return mFileMaxSeverity; }

private:
    std::ofstream mFile;
    std::string mFileName;
    unsigned mFileMaxSeverity = vxLogger::warning;
};

// Keeps the messages for a later dump.
class cVxBufferedLogger : public cVxFileLogger {
public:
    using cVxFileLogger::cVxFileLogger;
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override;
    void dumpBufferedLogMessages();  // to the targets of the file logger, then forget
    void printBufferedMessages() const;
    const std::vector<vxLogger::cBufferedMessages>& getMessages() const { return mMessages; }

private:
    std::vector<vxLogger::cBufferedMessages> mMessages;
};

// Collects the lines into a string.
class cVxStringLogger : public cVxLoggerCallBack {
public:
    explicit cVxStringLogger(unsigned maxSeverity = vxLogger::nocl) : mMaxSeverity(maxSeverity) {}
    void loggerCallBackVirtualLogMessage(unsigned severity, const std::string& text) override;
    void loggerCallBackVirtualCout(const std::string& text) override { mBuffer += text; }
    const std::string& getBufferAsString() const { return mBuffer; }
    void clear() { mBuffer.clear(); }

private:
    unsigned mMaxSeverity;
    std::string mBuffer;
};

}  // namespace vx3
