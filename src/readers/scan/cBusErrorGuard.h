// Turns the SIGBUS of a mapped file that shrank under us into a failed read instead of a crash.
//
// Two ways, both per thread:
// - runGuarded(body) arms a jump buffer around body. Only plain data may live inside body: on a
//   bus error the stack is unwound by siglongjmp, so no destructor there would run. For short
//   copies and scanners whose buffers and sinks belong to the caller.
// - cInPlaceReadScope covers a whole reader that works on its own mapping in place (names,
//   vectors, the store: everything with a destructor). A fault inside that mapping is not jumped
//   from: the missing pages become zero pages, the reader runs to its end on them, and the scope
//   tells afterwards that the file was cut, so that the reader throws its result away.
// A SIGBUS raised while neither applies to the faulting thread is not ours: the previous
// disposition is restored and the signal raised again.
#pragma once

#include <csetjmp>
#include <csignal>
#include <cstdint>
#include <cstring>

namespace vx3::busErrorGuard {

struct cState {
    sigjmp_buf jump;
    // The mask the thread had when the fault came, put back after the jump: the handler may run
    // with more signals blocked than ours asks for (a sanitizer wraps it in a handler of its own
    // that blocks them all), and a jump, unlike a return, does not restore it.
    sigset_t mask;
    volatile sig_atomic_t armed;
    // The mapping of the innermost in-place scope, and whether a fault in it was replaced.
    const char* volatile inPlaceBegin;
    const char* volatile inPlaceEnd;
    volatile sig_atomic_t inPlaceCut;
};

// The calling thread's state; plain data, so that the signal handler may touch it.
cState& threadState();
// Installs the handler once per process (the disposition of a signal is process-wide).
void installHandler();
// Bus errors caught so far in this process (for diagnostics and tests).
unsigned long getCaughtCount();
void countCaught();

// True when body ran to its end, false when a SIGBUS interrupted it. Guards nest.
template <typename F>
bool runGuarded(F&& body)
{
    installHandler();
    cState& state = threadState();
    // Only the jump is saved and put back: an in-place scope around this guard keeps what the
    // body told it.
    sigjmp_buf savedJump;
    std::memcpy(&savedJump, &state.jump, sizeof(sigjmp_buf));
    const sig_atomic_t savedArmed = state.armed;
    if (sigsetjmp(state.jump, 0) != 0) {
        std::memcpy(&state.jump, &savedJump, sizeof(sigjmp_buf));
        state.armed = savedArmed;
        pthread_sigmask(SIG_SETMASK, &state.mask, nullptr);
        countCaught();
        return false;
    }
    state.armed = 1;
    body();
    std::memcpy(&state.jump, &savedJump, sizeof(sigjmp_buf));
    state.armed = savedArmed;
    return true;
}

// While it lives, faults of this thread inside [begin, begin + size) are replaced by zero pages
// (see above). Scopes nest; the innermost one counts.
class cInPlaceReadScope {
public:
    cInPlaceReadScope(const char* begin, uint64_t size);
    ~cInPlaceReadScope();
    cInPlaceReadScope(const cInPlaceReadScope&) = delete;
    cInPlaceReadScope& operator=(const cInPlaceReadScope&) = delete;

    // True once a fault inside the mapping was replaced: what was read since is not the file.
    bool checkWasCut() const;

private:
    const char* mPreviousBegin;
    const char* mPreviousEnd;
    sig_atomic_t mPreviousCut;
};

}  // namespace vx3::busErrorGuard
