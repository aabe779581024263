#include "readers/scan/cBusErrorGuard.h"

#include <sys/mman.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

#include <atomic>
#include <mutex>

namespace vx3::busErrorGuard {

namespace {
// Zero-initialised POD: no TLS constructor runs when the handler first touches it.
thread_local cState tState;
struct sigaction gPrevious;
std::atomic<unsigned long> gCaught{0};
uintptr_t gPageSize = 4096;  // set once, before the handler is installed

// Maps zero pages over [from the faulting page, the end of the scope's mapping): the rest of a
// file that shrank is gone for this read anyway, and one call spares a signal per page. The
// system call itself, not the library's mmap: that one may be intercepted (sanitizers).
bool replaceByZeroPages(const cState& state, const char* address)
{
    const uintptr_t first = reinterpret_cast<uintptr_t>(address) & ~(gPageSize - 1);
    const uintptr_t end = (reinterpret_cast<uintptr_t>(state.inPlaceEnd) + gPageSize - 1) & ~(gPageSize - 1);
    const long mapped = ::syscall(SYS_mmap, first, end - first, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED,
                                  -1, 0);
    return mapped == static_cast<long>(first);
}

void onBusError(int signal, siginfo_t* info, void* context)
{
    cState& state = tState;
    const char* address = info ? static_cast<const char*>(info->si_addr) : nullptr;
    if (address && state.inPlaceBegin && address >= state.inPlaceBegin && address < state.inPlaceEnd &&
        replaceByZeroPages(state, address)) {
        state.inPlaceCut = 1;
        countCaught();
        return;  // the faulting read runs again, on a zero page
    }
    if (state.armed) {
        state.armed = 0;
        if (context) {
            // The kernel writes only its own mask's bytes into the frame, fewer than a sigset_t.
            constexpr size_t kKernelMaskBytes = (_NSIG - 1 + 7) / 8;
            sigemptyset(&state.mask);
            std::memcpy(&state.mask, &static_cast<ucontext_t*>(context)->uc_sigmask, kKernelMaskBytes);
        } else {
            pthread_sigmask(SIG_SETMASK, nullptr, &state.mask);
        }
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
        gPageSize = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
        struct sigaction action;
        std::memset(&action, 0, sizeof(action));
        action.sa_sigaction = onBusError;
        action.sa_flags = SA_SIGINFO | SA_NODEFER;
        sigemptyset(&action.sa_mask);
        sigaction(SIGBUS, &action, &gPrevious);
    });
}

cInPlaceReadScope::cInPlaceReadScope(const char* begin, uint64_t size)
{
    installHandler();
    cState& state = tState;
    mPreviousBegin = state.inPlaceBegin;
    mPreviousEnd = state.inPlaceEnd;
    mPreviousCut = state.inPlaceCut;
    state.inPlaceCut = 0;
    state.inPlaceEnd = begin ? begin + size : nullptr;
    state.inPlaceBegin = begin && size ? begin : nullptr;
}

cInPlaceReadScope::~cInPlaceReadScope()
{
    cState& state = tState;
    state.inPlaceBegin = nullptr;
    state.inPlaceEnd = mPreviousEnd;
    state.inPlaceCut = mPreviousCut;
    state.inPlaceBegin = mPreviousBegin;
}

bool cInPlaceReadScope::checkWasCut() const { return tState.inPlaceCut != 0; }

unsigned long getCaughtCount() { return gCaught.load(); }
void countCaught() { gCaught.fetch_add(1); }

}  // namespace vx3::busErrorGuard
