// Named timers for any object of the GUI: a plot restarts its redraw timer on every zoom step and
// gets one call when the user pauses. Delivery is always on the thread that owns the handler (the
// main thread), whichever thread started the timer.
#pragma once

#include <map>
#include <memory>

class QObject;
class QTimer;

namespace vx3 {

class cVxEventHandler {
public:
    cVxEventHandler();
    virtual ~cVxEventHandler();
    cVxEventHandler(const cVxEventHandler&) = delete;
    cVxEventHandler& operator=(const cVxEventHandler&) = delete;

    // Starts timer id; a running timer of that id restarts with the new interval and mode.
    void startEventTimer(int id, int milliseconds, bool singleShot);
    void stopEventTimer(int id);
    bool checkEventTimerIsActive(int id) const;

protected:
    // Called on the owning thread when timer id expires.
    virtual void onEventTimer(int id) = 0;

private:
    void startOnOwnerThread(int id, int milliseconds, bool singleShot);
    void stopOnOwnerThread(int id);

    // Not a QObject itself, so that a QWidget can derive from both.
    std::unique_ptr<QObject> mTimerHost;
    std::map<int, QTimer*> mTimers;  // owned by mTimerHost
};

}  // namespace vx3
