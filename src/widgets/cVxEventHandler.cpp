#include "widgets/cVxEventHandler.h"

#include <QMetaObject>
#include <QObject>
#include <QThread>
#include <QTimer>
#include <algorithm>

namespace vx3 {

cVxEventHandler::cVxEventHandler() : mTimerHost(std::make_unique<QObject>()) {}

cVxEventHandler::~cVxEventHandler()
{
    // The timers die with their host; none may call into the derived object being destroyed.
    for (auto& [id, timer] : mTimers)
        timer->stop();
}

void cVxEventHandler::startEventTimer(int id, int milliseconds, bool singleShot)
{
    milliseconds = std::max(milliseconds, 0);
    if (QThread::currentThread() == mTimerHost->thread()) {
        startOnOwnerThread(id, milliseconds, singleShot);
        return;
    }
    // QTimer may only be touched from its own thread: hand the request over.
    QMetaObject::invokeMethod(
        mTimerHost.get(), [this, id, milliseconds, singleShot] { startOnOwnerThread(id, milliseconds, singleShot); },
        Qt::QueuedConnection);
}

void cVxEventHandler::stopEventTimer(int id)
{
    if (QThread::currentThread() == mTimerHost->thread()) {
        stopOnOwnerThread(id);
        return;
    }
    QMetaObject::invokeMethod(mTimerHost.get(), [this, id] { stopOnOwnerThread(id); }, Qt::QueuedConnection);
}

bool cVxEventHandler::checkEventTimerIsActive(int id) const
{
    auto found = mTimers.find(id);
    return found != mTimers.end() && found->second->isActive();
}

void cVxEventHandler::startOnOwnerThread(int id, int milliseconds, bool singleShot)
{
    QTimer*& timer = mTimers[id];
    if (!timer) {
        timer = new QTimer(mTimerHost.get());
        timer->setTimerType(Qt::PreciseTimer);
        QObject::connect(timer, &QTimer::timeout, mTimerHost.get(), [this, id] { onEventTimer(id); });
    }
    timer->setSingleShot(singleShot);
    timer->start(milliseconds);  // restarts a running timer
}

void cVxEventHandler::stopOnOwnerThread(int id)
{
    auto found = mTimers.find(id);
    if (found != mTimers.end())
        found->second->stop();
}

}  // namespace vx3
