#include "TracedChild.h"

#include <elf.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

// By number: on arm64 the older forms of some calls do not exist.
constexpr std::array<long, 16> kFileCalls = {
    SYS_openat, SYS_write,   SYS_pwrite64, SYS_fsync,     SYS_renameat, SYS_linkat,
    SYS_flock,  SYS_mkdirat, SYS_unlinkat, SYS_renameat2, SYS_read,
#ifdef __x86_64__
    SYS_rename, SYS_link,    SYS_open,     SYS_mkdir,     SYS_chmod,
#endif
};

bool changesFiles(long number) {
    return number > 0 && std::ranges::count(kFileCalls, number) > 0;
}

#ifdef __x86_64__
void makeNoCall(pid_t child) {
    ptrace(PTRACE_POKEUSER, child, offsetof(user, regs.orig_rax), -1L);
}
void setResult(pid_t child, long result) {
    ptrace(PTRACE_POKEUSER, child, offsetof(user, regs.rax), result);
}
#else
void makeNoCall(pid_t child) {
    int none = -1;
    iovec value{&none, sizeof none};
    ptrace(PTRACE_SETREGSET, child, NT_ARM_SYSTEM_CALL, &value);
}
void setResult(pid_t child, long result) {
    user_regs_struct registers{};
    iovec value{&registers, sizeof registers};
    ptrace(PTRACE_GETREGSET, child, NT_PRSTATUS, &value);
    registers.regs[0] = static_cast<unsigned long long>(result);
    ptrace(PTRACE_SETREGSET, child, NT_PRSTATUS, &value);
}
#endif

/// Lets it run to its next stop; false at its end, with the status.
bool resume(pid_t child, int& status) {
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    return waitpid(child, &status, 0) == child && WIFSTOPPED(status);
}

/// The call that it is about to make; none when it has just made one.
long entered(pid_t child) {
    __ptrace_syscall_info info{};
    ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info);
    return info.op == PTRACE_SYSCALL_INFO_ENTRY ? static_cast<long>(info.entry.nr) : -1;
}

}  // namespace

pid_t TracedChild::start() {
    const pid_t child = fork();
    if (child == 0) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        raise(SIGSTOP);
        _exit(m_work());
    }
    waitpid(child, nullptr, 0);
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    return child;
}

/// `atEntry` sees each call before it is made; what it answers, unless 0, is the call's result in
/// place of making it.
template <typename AtEntry>
int TracedChild::run(AtEntry atEntry) {
    const pid_t child = start();
    int status = 0;
    while (resume(child, status)) {
        const long number = entered(child);
        const long result = number < 0 ? 0 : atEntry(child, number);
        if (result == 0)
            continue;
        makeNoCall(child);
        if (!resume(child, status))
            break;
        setResult(child, result);
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TracedChild::Outcome TracedChild::killAt(int index) {
    int seen = 0;
    Outcome outcome;
    outcome.exitCode = run([&](pid_t child, long) {
        if (seen++ == index)
            outcome.reached = kill(child, SIGKILL) == 0;
        return 0;
    });
    return outcome;
}

TracedChild::Outcome TracedChild::failAt(int index, int failure) {
    int seen = 0;
    Outcome outcome;
    outcome.exitCode = run([&](pid_t, long number) {
        const bool isIt = changesFiles(number) && seen++ == index;
        outcome.reached = outcome.reached || isIt;
        return isIt ? -failure : 0;
    });
    return outcome;
}

bool TracedChild::isPermitted() {
    TracedChild probe([] { return 7; });
    return probe.killAt(1 << 20).exitCode == 7;
}
