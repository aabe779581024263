// A thin layer over POSIX threads: named mutexes and threads that register themselves,
// scoped locks, a condition, and a thread with a small state machine and a timed join.
#pragma once

#include <pthread.h>

#include <atomic>

#include <string>

namespace vx3 {

class cVxMutex {
public:
    explicit cVxMutex(const std::string& name = std::string(), bool recursive = false);
    ~cVxMutex();
    cVxMutex(const cVxMutex&) = delete;
    cVxMutex& operator=(const cVxMutex&) = delete;

    void lock();
    bool tryLock();
    void unlock();
    bool checkIsLocked() const { return mLocked != 0; }
    const std::string& name() const { return mName; }
    pthread_mutex_t* handle() { return &mMutex; }

private:
    friend class cVxCondition;
    pthread_mutex_t mMutex;
    std::string mName;
    std::atomic<int> mLocked{0};  // for the status print only
};

class cVxScopedLock {
public:
    explicit cVxScopedLock(cVxMutex& mutex) : mMutex(mutex) { mMutex.lock(); }
    ~cVxScopedLock() { mMutex.unlock(); }
    cVxScopedLock(const cVxScopedLock&) = delete;
    cVxScopedLock& operator=(const cVxScopedLock&) = delete;
    cVxMutex& mutex() { return mMutex; }

private:
    cVxMutex& mMutex;
};

class cVxScopedTryLock {
public:
    explicit cVxScopedTryLock(cVxMutex& mutex) : mMutex(mutex), mLocked(mutex.tryLock()) {}
    ~cVxScopedTryLock()
    {
        if (mLocked)
            mMutex.unlock();
    }
    cVxScopedTryLock(const cVxScopedTryLock&) = delete;
    cVxScopedTryLock& operator=(const cVxScopedTryLock&) = delete;
    bool checkIsLocked() const { return mLocked; }
    cVxMutex& mutex() { return mMutex; }

private:
    cVxMutex& mMutex;
    bool mLocked;
};

class cVxCondition {
public:
    cVxCondition();
    ~cVxCondition();
    void waitForCondition(cVxScopedLock& lock);
    void waitForCondition(cVxScopedTryLock& lock);  // only when the try-lock succeeded
    // False when the time ran out.
    bool waitForCondition(cVxScopedLock& lock, unsigned milliseconds);
    void notifyOne();
    void notifyAll();

private:
    pthread_cond_t mCondition;
};

class cVxThreadIdentifier {
public:
    cVxThreadIdentifier() : mThread(pthread_self()) {}
    bool compareThreadId() const { return pthread_equal(mThread, pthread_self()) != 0; }
    void reset() { mThread = pthread_self(); }

private:
    pthread_t mThread;
};

namespace vxThread {
enum thread_state : int { not_started = 0, running = 1, finished = 3, joined = 4, interrupted = 5 };

// Process-wide record of threads and mutexes, for a debug print of who holds what.
class cVxThreadInformation {
public:
    static void registerMutex(const cVxMutex* mutex);
    static void unregisterMutex(const cVxMutex* mutex);
    static void registerThread(const std::string& name, const void* thread);
    static void unregisterThread(const void* thread);
    static std::string printMutexStatus();
};
}  // namespace vxThread

class cVxThread {
public:
    explicit cVxThread(const std::string& name = std::string());
    virtual ~cVxThread();
    cVxThread(const cVxThread&) = delete;
    cVxThread& operator=(const cVxThread&) = delete;

    virtual void executeThread() = 0;

    void initThread(const std::string& name) { mName = name; }
    const std::string& name() const { return mName; }
    // False when the thread is still running.
    bool createThread();
    bool createThreadDetached();
    bool joinThread();
    // Waits at most the given time; a thread still running then is cancelled.
    bool joinThread(unsigned milliseconds);
    bool joinOrInterruptThread(unsigned milliseconds) { return joinThread(milliseconds); }
    void interruptThread(bool cancel);
    bool checkInterruptRequested() const { return mInterruptRequested; }
    int getState() const;
    bool checkIsRunning() const { return getState() == vxThread::running; }
    pthread_t getThreadId() const { return mThread; }

private:
    static void* startRoutine(void* self);
    bool start(bool detached);

    std::string mName;
    int mState = vxThread::not_started;
    std::atomic<bool> mInterruptRequested{false};
    bool mDetached = false;
    pthread_t mThread{};
    mutable cVxMutex mStateMutex;
};

// Runs T::executeTaskInThread(task) on its own thread.
template <class T>
class cVxThreadLauncher : public cVxThread {
public:
    explicit cVxThreadLauncher(T* object = nullptr, const std::string& name = std::string())
        : cVxThread(name), mObject(object) {}
    void setObject(T* object) { mObject = object; }
    void setTask(int task) { mTask = task; }
    int getTask() const { return mTask; }
    void executeThread() override
    {
        if (mObject)
            mObject->executeTaskInThread(mTask);
    }

private:
    T* mObject;
    int mTask = 0;
};

}  // namespace vx3
