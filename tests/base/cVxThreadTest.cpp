#include <unistd.h>

#include <atomic>
#include <chrono>
#include <stdexcept>

#include <gtest/gtest.h>

#include "base/cVxThread.h"

using vx3::cVxThread;
namespace state = vx3::vxThread;

namespace {

// Waits for a condition with a generous limit: slow machines must not fail, only a hang would.
template <typename F>
bool waitUntil(F condition)
{
    for (int i = 0; i < 60000; ++i) {
        if (condition())
            return true;
        usleep(1000);
    }
    return condition();
}

// Runs until released; counts its runs.
class cGatedThread : public cVxThread {
public:
    cGatedThread() : cVxThread("gated") {}
    void executeThread() override
    {
        ++runs;
        started = true;
        while (!released)
            usleep(1000);
    }
    std::atomic<int> runs{0};
    std::atomic<bool> started{false};
    std::atomic<bool> released{false};
};

// Never ends by itself; usleep is where a cancel takes it.
class cStuckThread : public cVxThread {
public:
    cStuckThread() : cVxThread("stuck") {}
    void executeThread() override
    {
        started = true;
        for (;;)
            usleep(1000);
    }
    std::atomic<bool> started{false};
};

class cThrowingThread : public cVxThread {
public:
    void executeThread() override { throw std::runtime_error("body failed"); }
};

struct cTaskOwner {
    void executeTaskInThread(int task) { lastTask = task; }
    std::atomic<int> lastTask{-1};
};

}  // namespace

TEST(cVxThread, CreateWhileRunningIsRefusedAndJoinIsIdempotent)
{
    cGatedThread thread;
    EXPECT_EQ(thread.getState(), state::not_started);
    ASSERT_TRUE(thread.createThread());
    ASSERT_TRUE(waitUntil([&] { return thread.started.load(); }));
    // Refused at once: were it to wait for the thread, the test would hang here (the thread
    // runs until released below).
    EXPECT_FALSE(thread.createThread()) << "a running thread is not started twice";
    EXPECT_EQ(thread.getState(), state::running);

    thread.released = true;
    EXPECT_TRUE(thread.joinThread());
    EXPECT_EQ(thread.getState(), state::joined);
    EXPECT_TRUE(thread.joinThread()) << "a second join returns at once";
    EXPECT_EQ(thread.getState(), state::joined);
    EXPECT_EQ(thread.runs, 1);

    // A joined thread can run again.
    thread.started = false;
    ASSERT_TRUE(thread.createThread());
    ASSERT_TRUE(thread.joinThread(60000));
    EXPECT_EQ(thread.runs, 2);
    EXPECT_EQ(thread.getState(), state::joined);
}

TEST(cVxThread, TimedJoinInterruptsAStuckThread)
{
    cStuckThread thread;
    ASSERT_TRUE(thread.createThread());
    ASSERT_TRUE(waitUntil([&] { return thread.started.load(); }));
    EXPECT_FALSE(thread.joinOrInterruptThread(250));
    EXPECT_EQ(thread.getState(), state::interrupted);
    EXPECT_TRUE(thread.checkInterruptRequested());
    EXPECT_TRUE(thread.joinThread()) << "nothing left to join";
    EXPECT_EQ(vx3::vxThread::cVxThreadInformation::printMutexStatus().find("thread \"stuck\""), std::string::npos)
        << "a cancelled thread leaves the record";
}

TEST(cVxThread, ExceptionInTheBodyIsSwallowed)
{
    cThrowingThread thread;
    ASSERT_TRUE(thread.createThread());
    ASSERT_TRUE(waitUntil([&] { return thread.getState() == state::finished; }));
    EXPECT_TRUE(thread.joinThread());
    EXPECT_EQ(thread.getState(), state::joined);
    // A finished run is joined by the next start.
    ASSERT_TRUE(thread.createThread());
    ASSERT_TRUE(waitUntil([&] { return thread.getState() == state::finished; }));
    ASSERT_TRUE(thread.createThread());
    EXPECT_TRUE(thread.joinThread());
}

TEST(cVxThread, LauncherRunsTheTaskOfItsObject)
{
    cTaskOwner owner;
    vx3::cVxThreadLauncher<cTaskOwner> launcher(&owner, "launcher");
    launcher.setTask(7);
    ASSERT_TRUE(launcher.createThread());
    EXPECT_TRUE(launcher.joinThread());
    EXPECT_EQ(owner.lastTask, 7);
}

TEST(cVxThread, LocksTryLocksAndConditions)
{
    vx3::cVxMutex mutex("shared");
    vx3::cVxCondition condition;
    std::atomic<bool> otherGotLock{true};
    {
        vx3::cVxScopedLock lock(mutex);
        EXPECT_TRUE(mutex.checkIsLocked());
        EXPECT_NE(vx3::vxThread::cVxThreadInformation::printMutexStatus().find("mutex \"shared\" locked"),
                  std::string::npos);
        struct cTryer : cVxThread {
            vx3::cVxMutex* mutex;
            std::atomic<bool>* result;
            void executeThread() override
            {
                vx3::cVxScopedTryLock attempt(*mutex);
                *result = attempt.checkIsLocked();
            }
        } tryer;
        tryer.mutex = &mutex;
        tryer.result = &otherGotLock;
        ASSERT_TRUE(tryer.createThread());
        tryer.joinThread();
    }
    EXPECT_FALSE(otherGotLock) << "the try-lock must fail while another thread holds the mutex";
    EXPECT_FALSE(mutex.checkIsLocked());

    // A waiter wakes on notify; the flag guards against a wake-up before the wait.
    bool ready = false;
    struct cNotifier : cVxThread {
        vx3::cVxMutex* mutex;
        vx3::cVxCondition* condition;
        bool* ready;
        void executeThread() override
        {
            vx3::cVxScopedLock lock(*mutex);
            *ready = true;
            condition->notifyOne();
        }
    } notifier;
    notifier.mutex = &mutex;
    notifier.condition = &condition;
    notifier.ready = &ready;
    {
        vx3::cVxScopedLock lock(mutex);
        ASSERT_TRUE(notifier.createThread());
        // The timed wait says "woken" (true) for the notify; a minute is only a bound for a hang.
        while (!ready)
            ASSERT_TRUE(condition.waitForCondition(lock, 60000)) << "the notify wakes the waiter";
    }
    notifier.joinThread();
    {
        // Nobody notifies now: the timed wait must end by itself, and not before its time. A
        // spurious wake-up returns true early; the wait is then simply made again.
        vx3::cVxScopedLock lock(mutex);
        bool timedOut = false;
        for (int attempt = 0; attempt < 100 && !timedOut; ++attempt) {
            const auto start = std::chrono::steady_clock::now();
            timedOut = !condition.waitForCondition(lock, 20);
            if (timedOut) {
                EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(20))
                    << "timed out before its time";
            }
        }
        EXPECT_TRUE(timedOut) << "the timed wait ends without a notify";
    }

    vx3::cVxThreadIdentifier mainThread;
    EXPECT_TRUE(mainThread.compareThreadId());
}
