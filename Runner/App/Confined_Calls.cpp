// System calls by a filter that the kernel runs before each. What is not in the list fails with EPERM, so that a
// library that only tries something goes on without it.

#include "Runner/App/Process_Limits.h"

#include <cerrno>
#include <cstring>

#if defined(__linux__) && (defined(__x86_64__) || defined(__aarch64__))

#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <initializer_list>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Runner
{
namespace
{
#ifdef __x86_64__
constexpr uint32_t MACHINE = AUDIT_ARCH_X86_64;
#else
constexpr uint32_t MACHINE = AUDIT_ARCH_AARCH64;
#endif

constexpr uint32_t FIRST_OF_ANOTHER_TABLE = 0x40000000; // calls of x32, which the same processor takes

// Nothing of these reaches another process, the network, or the rights of a file. Which files are opened is Landlock's
// matter.
constexpr uint32_t ALLOWED[] = {
    // ---- files that are open, and names of files ----
    __NR_read, __NR_write, __NR_readv, __NR_writev, __NR_pread64, __NR_pwrite64, __NR_lseek, __NR_close, __NR_fstat,
    __NR_newfstatat, __NR_statx, __NR_faccessat, __NR_faccessat2, __NR_readlinkat, __NR_getdents64, __NR_getcwd,
    __NR_mkdirat, __NR_unlinkat, __NR_renameat, __NR_renameat2, __NR_ftruncate, __NR_fsync, __NR_fdatasync, __NR_fcntl,
    __NR_dup, __NR_dup3, __NR_statfs, __NR_fstatfs, __NR_fadvise64, __NR_umask,
#ifdef __x86_64__
    __NR_stat, __NR_lstat, __NR_access, __NR_readlink, __NR_mkdir, __NR_rmdir, __NR_unlink, __NR_rename, __NR_poll,
    __NR_select, __NR_time, __NR_dup2, __NR_getdents, __NR_arch_prctl,
#endif
    // ---- memory ----
    __NR_munmap, __NR_mremap, __NR_madvise, __NR_brk, __NR_membarrier, __NR_mincore, __NR_get_mempolicy,
    // ---- this process ----
    __NR_futex, __NR_set_robust_list, __NR_get_robust_list, __NR_rseq, __NR_set_tid_address, __NR_exit, __NR_exit_group,
    __NR_rt_sigaction, __NR_rt_sigprocmask, __NR_rt_sigreturn, __NR_sigaltstack, __NR_restart_syscall, __NR_getpid,
    __NR_gettid, __NR_getppid, __NR_getuid, __NR_geteuid, __NR_getgid, __NR_getegid, __NR_getrusage, __NR_times,
    __NR_sched_yield, __NR_sched_getaffinity, __NR_sched_getparam, __NR_sched_getscheduler, __NR_getcpu,
    // ---- the machine ----
    __NR_clock_gettime, __NR_clock_getres, __NR_clock_nanosleep, __NR_nanosleep, __NR_gettimeofday, __NR_getrandom,
    __NR_uname, __NR_sysinfo, __NR_ppoll, __NR_pselect6, __NR_pipe2, __NR_eventfd2, __NR_memfd_create};

class Filter
{
public:
    Filter()
    {
        Load(offsetof(seccomp_data, arch));
        Add({BPF_JMP | BPF_JEQ | BPF_K, 1, 0, MACHINE});
        Answer(SECCOMP_RET_KILL_PROCESS);
        Load(offsetof(seccomp_data, nr));
        Add({BPF_JMP | BPF_JGE | BPF_K, 0, 1, FIRST_OF_ANOTHER_TABLE});
        Answer(Error(EPERM));
    }

    void Allow(uint32_t call) { When(call, {}, SECCOMP_RET_ALLOW); }
    void Fail(uint32_t call, int error) { When(call, {}, Error(error)); }

    // Allows the call where this argument, and the mask, gives the value; it fails where it gives another one.
    void AllowWhere(uint32_t call, unsigned argument, uint32_t mask, uint32_t value)
    {
        AllowAfter(call, argument, mask, {BPF_JMP | BPF_JEQ | BPF_K, 1, 0, value});
    }

    // Lets the call fail there, and allows it elsewhere.
    void FailWhere(uint32_t call, unsigned argument, uint32_t mask, uint32_t value)
    {
        AllowAfter(call, argument, mask, {BPF_JMP | BPF_JEQ | BPF_K, 0, 1, value});
    }

    bool Install()
    {
        Answer(Error(EPERM));
        const sock_fprog program = {static_cast<unsigned short>(m_steps.size()), m_steps.data()};
        return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
               syscall(__NR_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_TSYNC, &program) == 0;
    }

private:
    static uint32_t Error(int error) { return SECCOMP_RET_ERRNO | (static_cast<uint32_t>(error) & SECCOMP_RET_DATA); }
    static sock_filter Loading(size_t offset)
    {
        return {BPF_LD | BPF_W | BPF_ABS, 0, 0, static_cast<uint32_t>(offset)};
    }

    void Add(const sock_filter& step) { m_steps.push_back(step); }
    void Load(size_t offset) { Add(Loading(offset)); }
    void Answer(uint32_t answer) { Add({BPF_RET | BPF_K, 0, 0, answer}); }

    // The steps are run for this call alone, and the answer given if they come to their end.
    void When(uint32_t call, std::initializer_list<sock_filter> steps, uint32_t answer)
    {
        Add({BPF_JMP | BPF_JEQ | BPF_K, 0, static_cast<uint8_t>(steps.size() + 1), call});
        m_steps.insert(m_steps.end(), steps.begin(), steps.end());
        Answer(answer);
    }

    // Allows the call where the comparison of this argument, and the mask, skips a step: the one that lets it fail.
    void AllowAfter(uint32_t call, unsigned argument, uint32_t mask, const sock_filter& comparison)
    {
        When(call,
             {Loading(offsetof(seccomp_data, args) + argument * sizeof(uint64_t)),
              {BPF_ALU | BPF_AND | BPF_K, 0, 0, mask},
              comparison,
              {BPF_RET | BPF_K, 0, 0, Error(EPERM)}},
             SECCOMP_RET_ALLOW);
    }

    std::vector<sock_filter> m_steps;
};

void AllowMemory(Filter& filter, bool mayMakeCode)
{
    for (const uint32_t call : {uint32_t{__NR_mmap}, uint32_t{__NR_mprotect}})
    {
        if (mayMakeCode)
            filter.Allow(call);
        else
            filter.AllowWhere(call, 2, PROT_EXEC, 0);
    }
}

// A thread shares all with its process. The C library tries clone3 first, whose arguments no filter can read.
void AllowThreads(Filter& filter)
{
    filter.Fail(__NR_clone3, ENOSYS);
    filter.AllowWhere(__NR_clone, 0, CLONE_THREAD, CLONE_THREAD);
    filter.AllowWhere(__NR_sched_setaffinity, 0, 0, 0);
    filter.AllowWhere(__NR_sched_setscheduler, 0, 0, 0);
}

// Older kernels let a file be emptied that may only be read: then the call that opens it must not ask for it. TIOCSTI
// types into the terminal.
void AllowWithCare(Filter& filter)
{
    constexpr uint32_t EMPTIES_WHAT_IT_READS = O_TRUNC | O_ACCMODE;
    filter.FailWhere(__NR_openat, 2, EMPTIES_WHAT_IT_READS, O_TRUNC | O_RDONLY);
#ifdef __NR_open
    filter.FailWhere(__NR_open, 1, EMPTIES_WHAT_IT_READS, O_TRUNC | O_RDONLY);
#endif
    filter.FailWhere(__NR_ioctl, 1, ~uint32_t{0}, TIOCSTI);
    filter.AllowWhere(__NR_prlimit64, 2, ~uint32_t{0}, 0); // asks, and sets nothing
    filter.AllowWhere(__NR_tgkill, 0, ~uint32_t{0}, static_cast<uint32_t>(getpid()));
    filter.AllowWhere(__NR_prctl, 0, ~uint32_t{0}, PR_SET_NAME);
}
} // namespace

bool ConfineCalls(bool mayMakeCode, std::string& why)
{
    Filter filter;
    for (const uint32_t call : ALLOWED)
        filter.Allow(call);
    AllowMemory(filter, mayMakeCode);
    if (mayMakeCode)
        AllowThreads(filter);
    AllowWithCare(filter);
    if (filter.Install())
        return true;
    why = std::string("--confined: this system does not allow it (seccomp: ") + std::strerror(errno) +
          "), nothing was played";
    return false;
}
} // namespace Runner

#else

namespace Runner
{
bool ConfineCalls(bool, std::string& why)
{
    why = "--confined: this build has no filter for system calls, nothing was played";
    return false;
}
} // namespace Runner

#endif
