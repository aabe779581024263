// Waits for an event of the program under test while serving its event loop. Every wait is for
// its event; the deadline only turns a hang into a failure, so a loaded machine makes a test
// slower, never red.
#pragma once

#include <QApplication>
#include <QElapsedTimer>

namespace zwtest {

constexpr qint64 kDeadlineMs = 60000;

// Processes events until condition holds or the deadline passes; returns the condition.
template <typename F>
bool pumpUntil(F condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > kDeadlineMs)
            return condition();
        QApplication::processEvents(QEventLoop::AllEvents, 10);
        // Outside an event loop a deleteLater is only carried out on request.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

}  // namespace zwtest
