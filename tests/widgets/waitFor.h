// Runs the event loop until a condition holds or a generous deadline passes; never a fixed sleep.
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>

namespace zwwidgets {

template <typename Condition>
bool waitFor(Condition condition, int milliseconds = 30000)
{
    QDeadlineTimer deadline(milliseconds);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
    }
    return true;
}

}  // namespace zwwidgets
