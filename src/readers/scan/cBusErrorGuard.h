// Turns the SIGBUS of a mapped file that shrank under us into a failed read instead of a crash.
//
// runGuarded(body) arms a thread-local jump buffer around body. Only plain data may live inside
// body: on a bus error the stack is unwound by siglongjmp, so no destructor there would run.
// A SIGBUS raised while no guard of the faulting thread is armed is not ours: the previous
// disposition is restored and the signal raised again.
#pragma once

#include <csetjmp>
#include <csignal>
#include <cstring>

namespace vx3::busErrorGuard {

struct cState {
    sigjmp_buf jump;
    volatile sig_atomic_t armed;
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
    cState saved;
    std::memcpy(&saved, &state, sizeof(cState));
    // The signal mask needn't be saved: the handler runs with SA_NODEFER and leaves it unchanged.
    if (sigsetjmp(state.jump, 0) != 0) {
        std::memcpy(&state, &saved, sizeof(cState));
        countCaught();
        return false;
    }
    state.armed = 1;
    body();
    std::memcpy(&state, &saved, sizeof(cState));
    return true;
}

}  // namespace vx3::busErrorGuard
