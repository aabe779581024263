#include "readers/scan/cBusErrorGuard.h"

#include <atomic>
#include <mutex>

namespace vx3::busErrorGuard {

namespace {
// Zero-initialised POD: no TLS constructor runs when the handler first touches it.
thread_local cState tState;
struct sigaction gPrevious;
std::atomic<unsigned long> gCaught{0};

void onBusError(int signal, siginfo_t*, void*)
{
    cState& state = tState;
    if (state.armed) {
        state.armed = 0;
        siglongjmp(state.jump, 1);
    }
    // Not ours: give the signal back to whoever had it before (by default this ends the process).
    sigaction(SIGBUS, &gPrevious, nullptr);
    raise(signal);
}
}  // namespace

cState& threadState() { return tState; }

void installHandler()
{
    static std::once_flag once;
    std::call_once(once, [] {
        struct sigaction action;
        std::memset(&action, 0, sizeof(action));
        action.sa_sigaction = onBusError;
        action.sa_flags = SA_SIGINFO | SA_NODEFER;
        sigemptyset(&action.sa_mask);
        sigaction(SIGBUS, &action, &gPrevious);
    });
}

unsigned long getCaughtCount() { return gCaught.load(); }
void countCaught() { gCaught.fetch_add(1); }

}  // namespace vx3::busErrorGuard
