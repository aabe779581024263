#include "cVxThread.h"

#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <exception>
#include <map>
#include <mutex>
#include <sstream>

namespace vx3 {

namespace {
struct cRegistry {
    std::mutex lock;
    std::map<const cVxMutex*, bool> mutexes;
    std::map<const void*, std::string> threads;
};
cRegistry& registry()
{
    static cRegistry* instance = new cRegistry;  // never destroyed: static mutexes outlive it otherwise
    return *instance;
}
}  // namespace

void vxThread::cVxThreadInformation::registerMutex(const cVxMutex* mutex)
{
    std::lock_guard<std::mutex> guard(registry().lock);
    registry().mutexes[mutex] = true;
}

void vxThread::cVxThreadInformation::unregisterMutex(const cVxMutex* mutex)
{
    std::lock_guard<std::mutex> guard(registry().lock);
    registry().mutexes.erase(mutex);
}

void vxThread::cVxThreadInformation::registerThread(const std::string& name, const void* thread)
{
    std::lock_guard<std::mutex> guard(registry().lock);
    registry().threads[thread] = name;
}

void vxThread::cVxThreadInformation::unregisterThread(const void* thread)
{
    std::lock_guard<std::mutex> guard(registry().lock);
    registry().threads.erase(thread);
}

std::string vxThread::cVxThreadInformation::printMutexStatus()
{
    std::lock_guard<std::mutex> guard(registry().lock);
    std::ostringstream stream;
    for (const auto& [mutex, unused] : registry().mutexes)
        if (!mutex->name().empty())
            stream << "mutex \"" << mutex->name() << "\" " << (mutex->checkIsLocked() ? "locked" : "free") << '\n';
    for (const auto& [thread, name] : registry().threads)
        stream << "thread \"" << name << "\"\n";
    return stream.str();
}

// ---------------------------------------------------------------------------------------------
cVxMutex::cVxMutex(const std::string& name, bool recursive) : mName(name)
{
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, recursive ? PTHREAD_MUTEX_RECURSIVE : PTHREAD_MUTEX_NORMAL);
    pthread_mutex_init(&mMutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
    vxThread::cVxThreadInformation::registerMutex(this);
}

cVxMutex::~cVxMutex()
{
    vxThread::cVxThreadInformation::unregisterMutex(this);
    pthread_mutex_destroy(&mMutex);
}

void cVxMutex::lock()
{
    pthread_mutex_lock(&mMutex);
    ++mLocked;
}

bool cVxMutex::tryLock()
{
    if (pthread_mutex_trylock(&mMutex) != 0)
        return false;
    ++mLocked;
    return true;
}

void cVxMutex::unlock()
{
    --mLocked;
    pthread_mutex_unlock(&mMutex);
}

// ---------------------------------------------------------------------------------------------
cVxCondition::cVxCondition()
{
    pthread_condattr_t attributes;
    pthread_condattr_init(&attributes);
    pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
    pthread_cond_init(&mCondition, &attributes);
    pthread_condattr_destroy(&attributes);
}

cVxCondition::~cVxCondition() { pthread_cond_destroy(&mCondition); }

void cVxCondition::waitForCondition(cVxScopedLock& lock)
{
    pthread_cond_wait(&mCondition, lock.mutex().handle());
}

void cVxCondition::waitForCondition(cVxScopedTryLock& lock)
{
    if (lock.checkIsLocked())
        pthread_cond_wait(&mCondition, lock.mutex().handle());
}

bool cVxCondition::waitForCondition(cVxScopedLock& lock, unsigned milliseconds)
{
    timespec deadline;
    clock_gettime(CLOCK_MONOTONIC, &deadline);
    deadline.tv_sec += milliseconds / 1000;
    deadline.tv_nsec += static_cast<long>(milliseconds % 1000) * 1000000L;
    if (deadline.tv_nsec >= 1000000000L) {
        deadline.tv_sec += 1;
        deadline.tv_nsec -= 1000000000L;
    }
    return pthread_cond_timedwait(&mCondition, lock.mutex().handle(), &deadline) != ETIMEDOUT;
}

void cVxCondition::notifyOne() { pthread_cond_signal(&mCondition); }
void cVxCondition::notifyAll() { pthread_cond_broadcast(&mCondition); }

// ---------------------------------------------------------------------------------------------
cVxThread::cVxThread(const std::string& name) : mName(name), mStateMutex(name + " state") {}

cVxThread::~cVxThread()
{
    // A derived object is gone by now: the body must not run on. Owners join first.
    int state = getState();
    if (state == vxThread::running || state == vxThread::finished) {
        if (mDetached)
            return;
        pthread_join(mThread, nullptr);
    }
}

int cVxThread::getState() const
{
    cVxScopedLock lock(mStateMutex);
    return mState;
}

void* cVxThread::startRoutine(void* self)
{
    cVxThread* thread = static_cast<cVxThread*>(self);
    vxThread::cVxThreadInformation::registerThread(thread->mName, thread);
    // A cancelled thread unwinds without returning here: the guard still takes it off the record.
    struct cRegistration {
        const cVxThread* thread;
        ~cRegistration() { vxThread::cVxThreadInformation::unregisterThread(thread); }
    };
    {
        cRegistration registration{thread};
        try {
            thread->executeThread();
        } catch (const std::exception&) {
            // swallowed: a thread body reports through its logger
        }
    }
    {
        cVxScopedLock lock(thread->mStateMutex);
        thread->mState = vxThread::finished;
    }
    return nullptr;
}

bool cVxThread::start(bool detached)
{
    // Only a finished run is joined here; joining a running one would block the caller until
    // it ends, where the answer has to be "still running".
    if (getState() == vxThread::finished)
        joinThread();
    cVxScopedLock lock(mStateMutex);
    if (mState != vxThread::not_started && mState != vxThread::finished && mState != vxThread::joined &&
        mState != vxThread::interrupted)
        return false;
    mInterruptRequested = false;
    mDetached = detached;
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    if (detached)
        pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    int error = pthread_create(&mThread, &attributes, &cVxThread::startRoutine, this);
    pthread_attr_destroy(&attributes);
    if (error != 0)
        return false;
    mState = vxThread::running;
    return true;
}

bool cVxThread::createThread() { return start(false); }
bool cVxThread::createThreadDetached() { return start(true); }

bool cVxThread::joinThread()
{
    int state = getState();
    if (state != vxThread::running && state != vxThread::finished)
        return true;
    if (mDetached)
        return false;
    pthread_join(mThread, nullptr);
    cVxScopedLock lock(mStateMutex);
    mState = vxThread::joined;
    return true;
}

bool cVxThread::joinThread(unsigned milliseconds)
{
    unsigned waited = 0;
    while (getState() == vxThread::running && waited < milliseconds) {
        unsigned step = std::min(100u, milliseconds - waited);
        usleep(step * 1000);
        waited += step;
    }
    if (getState() == vxThread::running) {
        interruptThread(true);
        return false;
    }
    return joinThread();
}

void cVxThread::interruptThread(bool cancel)
{
    mInterruptRequested = true;
    if (!cancel || getState() != vxThread::running)
        return;
    // Not under the state lock: the thread takes it on its way out.
    pthread_cancel(mThread);
    if (!mDetached)
        pthread_join(mThread, nullptr);
    cVxScopedLock lock(mStateMutex);
    mState = vxThread::interrupted;
}

}  // namespace vx3
