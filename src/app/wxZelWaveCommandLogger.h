// The command logger: a small window that shows every command with its result, as it runs.
// Commands come from any thread (a command file or the socket run on the background thread), so
// lines are queued under a mutex and moved into the text on the main thread.
#pragma once

#include <atomic>
#include <list>
#include <string>

#include "base/cVxThread.h"
#include "widgets/qtVxWidget.h"

class QPlainTextEdit;
class QPushButton;

namespace vx3 {

namespace zelWaveControlPanel {
class cControlPanelVirtual;
}

namespace zelWaveCommandLogger {
enum : int {
    thread_event = 10679,  // posted when the queue got its first line
    max_lines = 100000     // older lines go, so that a long session does not grow without end
};
}

class wxZelWaveCommandLogger : public qtVxWidget {
    Q_OBJECT
public:
    // executor performs the command of the Close button; it may be null.
    wxZelWaveCommandLogger(QWidget* parent, zelWaveControlPanel::cControlPanelVirtual* executor);
    ~wxZelWaveCommandLogger() override;

    // Safe from any thread. Whether a command is to be logged at all is the caller's decision
    // (shown and enabled), taken once so that a command and its result stay together.
    void addCommand(const std::string& text);
    void addCommandResult(const std::string& text);
    bool checkIsShown() const { return mShown; }
    void setLoggingEnabled(bool enabled) { mEnabled = enabled; }
    bool checkLoggingEnabled() const { return mEnabled; }

    // Main thread only.
    void emptyMessageQueue();
    void clear();
    QString getText() const;
    // The owner goes before its Qt children: it cuts the way back first.
    void detachExecutor() { mExecutor = nullptr; }
    QSize sizeHint() const override { return QSize(640, 420); }
    QSize minimumSizeHint() const override { return QSize(240, 160); }

protected:
    void customEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void queueLine(std::string line);
    void closeButtonPressed();

    zelWaveControlPanel::cControlPanelVirtual* mExecutor;
    QPlainTextEdit* mText = nullptr;
    QPushButton* mClearButton = nullptr;
    QPushButton* mCloseButton = nullptr;
    cVxMutex mMutex;
    std::list<std::string> mQueue;  // guarded by mMutex
    bool mEventPosted = false;      // guarded by mMutex
    std::atomic<bool> mShown{false};
    std::atomic<bool> mEnabled{true};
};

}  // namespace vx3
