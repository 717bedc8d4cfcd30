#include "SystemCallTrap.h"

#include <sys/prctl.h>
#include <ucontext.h>

#include <csignal>

#include "RenderWatchRecord.h"

#if defined(PR_SET_SYSCALL_USER_DISPATCH) && (defined(__x86_64__) || defined(__aarch64__))

namespace {

constexpr char kThrough = 0;  // the kernel's names: SYSCALL_DISPATCH_FILTER_ALLOW, _BLOCK
constexpr char kTrapped = 1;

thread_local volatile char selector = kThrough;
thread_local bool ready = false;

// Puts the thread back in front of the instruction that called the system.
void repeatCall(ucontext_t& context) {
#if defined(__x86_64__)
    context.uc_mcontext.gregs[REG_RIP] -= 2;
#else
    context.uc_mcontext.pc -= 4;
#endif
}

void onSystemCall(int, siginfo_t* info, void* context) {
    selector = kThrough;  // for the call itself, and for the return from this handler
    if (renderwatch::watching())
        renderwatch::record("system call", info->si_syscall);
    repeatCall(*static_cast<ucontext_t*>(context));
}

bool installHandler() {
    struct sigaction action {};
    action.sa_sigaction = onSystemCall;
    action.sa_flags = SA_SIGINFO;
    return sigaction(SIGSYS, &action, nullptr) == 0;
}

// Threads of sound libraries block every signal, and a blocked one would end the process.
void unblockSignal() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGSYS);
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

}  // namespace

bool systemcalltrap::prepareThread() noexcept {
    static const bool installed = installHandler();
    if (ready || !installed)
        return ready;
    unblockSignal();
    ready = prctl(PR_SET_SYSCALL_USER_DISPATCH, PR_SYS_DISPATCH_ON, 0ul, 0ul, &selector) == 0;
    return ready;
}

void systemcalltrap::close() noexcept {
    if (ready)
        selector = kTrapped;
}

void systemcalltrap::open() noexcept {
    selector = kThrough;
}

#else

bool systemcalltrap::prepareThread() noexcept {
    return false;
}
void systemcalltrap::close() noexcept {}
void systemcalltrap::open() noexcept {}

#endif
