#include "Opened.h"

#include <csignal>
#include <cstddef>
#include <cstdint>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zuv_test
{
namespace
{

constexpr int kNoPath = -1;

struct Call {
    unsigned number;
    int pathArgument; // which argument is the path
    const char *name; // what stands for a call without one
};
constexpr Call kCalls[] = {
    {SYS_open, 0, nullptr},          {SYS_openat, 1, nullptr},
    {SYS_openat2, 1, nullptr},       {SYS_creat, 0, nullptr},
    {SYS_stat, 0, nullptr},          {SYS_lstat, 0, nullptr},
    {SYS_newfstatat, 1, nullptr},    {SYS_statx, 1, nullptr},
    {SYS_access, 0, nullptr},        {SYS_faccessat, 1, nullptr},
    {SYS_readlink, 0, nullptr},      {SYS_execve, 0, nullptr},
    {SYS_socket, kNoPath, "socket"}, {SYS_connect, kNoPath, "socket"},
    {SYS_fork, kNoPath, "process"},  {SYS_vfork, kNoPath, "process"},
};

// Let the kernel stop this process for its parent at each of the calls.
bool letCallsBeSeen()
{
    std::vector<sock_filter> filter = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
    for (const Call &call : kCalls) {
        filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call.number, 0, 1));
        filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRACE));
    }
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    const sock_fprog program = {static_cast<unsigned short>(filter.size()), filter.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

std::string textAt(pid_t child, std::uint64_t address)
{
    std::string text;
    for (char character = 0;; ++address, text += character) {
        const iovec local = {&character, 1};
        const iovec remote = {reinterpret_cast<void *>(address), 1};
        if (process_vm_readv(child, &local, 1, &remote, 1, 0) != 1 || character == '\0') {
            return text;
        }
    }
}

void note(pid_t child, std::vector<std::string> &paths)
{
    __ptrace_syscall_info info{};
    ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof(info), &info);
    for (const Call &call : kCalls) {
        if (call.number != info.seccomp.nr) {
            continue;
        }
        const std::string path = call.pathArgument == kNoPath
                                     ? call.name
                                     : textAt(child, info.seccomp.args[call.pathArgument]);
        if (!path.empty()) { // that of a file that is open
            paths.push_back(path);
        }
    }
}

} // namespace

Opened whatIsOpenedBy(const std::function<void()> &body)
{
    constexpr int kCannotBeSeen = 7;
    const pid_t child = fork();
    if (child == 0) {
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
            _exit(kCannotBeSeen);
        }
        raise(SIGSTOP); // until the parent watches
        if (!letCallsBeSeen()) {
            _exit(kCannotBeSeen);
        }
        body();
        _exit(0);
    }
    Opened opened;
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFSTOPPED(status)) {
        ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESECCOMP | PTRACE_O_EXITKILL);
    }
    while (WIFSTOPPED(status)) {
        const bool isCall = status >> 8 == (SIGTRAP | (PTRACE_EVENT_SECCOMP << 8));
        if (isCall) {
            note(child, opened.paths);
        }
        const long signal = isCall || WSTOPSIG(status) == SIGSTOP ? 0 : WSTOPSIG(status);
        ptrace(PTRACE_CONT, child, nullptr, signal);
        waitpid(child, &status, 0);
    }
    opened.isWatchable = !(WIFEXITED(status) && WEXITSTATUS(status) == kCannotBeSeen);
    opened.isComplete = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return opened;
}

} // namespace zuv_test
