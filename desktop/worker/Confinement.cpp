#include "desktop/worker/Confinement.h"

#include "desktop/worker/ProcessRights.h"
#include "desktop/workers/WorkerChannel.h"

extern "C" {
#include <libavutil/mem.h>
}

#include <malloc.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <ctime>
#include <memory>

namespace desktop {

namespace {

// The libraries alone take 200 MiB of address space; what is left decodes 24 million points or a frame of 8K video, refuses
// what only claims to be huge, and two workers at their limit still leave a small computer its memory.
constexpr rlim_t kMemory = 512UL << 20;      // bytes of address space
constexpr std::size_t kOnePiece = 300 << 20; // bytes that a decoder may ask for at once, also where no such limit can be set
constexpr rlim_t kPictureFile = 16UL << 20;  // bytes
constexpr rlim_t kProcessorTime = 6;         // seconds: more than the other side waits

bool limitResources()
{
    av_max_alloc(kOnePiece);
    mallopt(M_ARENA_MAX, 1); // each further thread would reserve 64 MiB of addresses
    return limitMemoryAndFiles(kMemory, kPictureFile);
}

// Besides what reading and decoding need, what a thread begins with and what sanitizers look at memory with. Nothing that
// takes a path: not even the status of a file can be asked for by its name.
constexpr int kCalls[] = {SCMP_SYS(read),         SCMP_SYS(pread64),      SCMP_SYS(write),
                          SCMP_SYS(lseek),        SCMP_SYS(close),        SCMP_SYS(recvmsg),
                          SCMP_SYS(sendmsg),      SCMP_SYS(poll),         SCMP_SYS(ppoll),
                          SCMP_SYS(mmap),         SCMP_SYS(munmap),       SCMP_SYS(mremap),
                          SCMP_SYS(mprotect),     SCMP_SYS(madvise),      SCMP_SYS(brk),
                          SCMP_SYS(futex),        SCMP_SYS(sched_yield),  SCMP_SYS(gettimeofday),
                          SCMP_SYS(time),         SCMP_SYS(getrusage),    SCMP_SYS(setrlimit),
                          SCMP_SYS(getrandom),    SCMP_SYS(sysinfo),      SCMP_SYS(rt_sigprocmask),
                          SCMP_SYS(rt_sigreturn), SCMP_SYS(rt_sigaction), SCMP_SYS(restart_syscall),
                          SCMP_SYS(getpid),       SCMP_SYS(gettid),       SCMP_SYS(exit),
                          SCMP_SYS(exit_group),   SCMP_SYS(rseq),         SCMP_SYS(set_robust_list),
                          SCMP_SYS(pipe),         SCMP_SYS(pipe2),        SCMP_SYS(sigaltstack)};

// Decoders of HEIF start a thread and wait for it. It is confined as the rest is; these are the C library's flags for one.
constexpr unsigned int kThread = CLONE_VM | CLONE_FS | CLONE_FILES | CLONE_SIGHAND | CLONE_THREAD | CLONE_SYSVSEM |
                                 CLONE_SETTLS | CLONE_PARENT_SETTID | CLONE_CHILD_CLEARTID;

bool allowThreads(scmp_filter_ctx filter)
{
    // The newer call hides its flags from the filter; the C library goes back to the older one when it is missing.
    return seccomp_rule_add(filter, SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0) == 0 &&
           seccomp_rule_add(filter, SCMP_ACT_ALLOW, SCMP_SYS(clone), 1, SCMP_A0(SCMP_CMP_EQ, kThread, 0)) == 0;
}

// @p action on @p call when its first argument compares so with @p value.
bool addRule(scmp_filter_ctx filter, std::uint32_t action, int call, scmp_compare compare, scmp_datum_t value)
{
    const scmp_arg_cmp first = {0, compare, value, 0};
    return seccomp_rule_add_array(filter, action, call, 1, &first) == 0;
}

// Calls that could signal or inspect other processes may name this one alone.
bool allowForOurselves(scmp_filter_ctx filter)
{
    const auto self = static_cast<scmp_datum_t>(getpid());
    const auto allow = [filter](int call, scmp_compare compare, scmp_datum_t value) {
        return addRule(filter, SCMP_ACT_ALLOW, call, compare, value);
    };
    // The C library asks for the processors of a thread by its number, and does without when there is no such call. The
    // clocks of other processes have negative numbers.
    return allow(SCMP_SYS(sched_getaffinity), SCMP_CMP_EQ, 0) &&
           addRule(filter, SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(sched_getaffinity), SCMP_CMP_NE, 0) &&
           allow(SCMP_SYS(prlimit64), SCMP_CMP_EQ, 0) && allow(SCMP_SYS(prlimit64), SCMP_CMP_EQ, self) &&
           allow(SCMP_SYS(clock_gettime), SCMP_CMP_LE, CLOCK_TAI) &&
           allow(SCMP_SYS(clock_nanosleep), SCMP_CMP_LE, CLOCK_TAI) && allow(SCMP_SYS(tgkill), SCMP_CMP_EQ, self);
}

struct ReleaseFilter {
    void operator()(void* filter) const { seccomp_release(filter); }
};

bool allowOnlyOurCalls()
{
    // Anything else fails as if not permitted: a library that tries something optional goes on without.
    const std::unique_ptr<void, ReleaseFilter> filter(seccomp_init(SCMP_ACT_ERRNO(EPERM)));
    if (filter == nullptr || seccomp_attr_set(filter.get(), SCMP_FLTATR_CTL_TSYNC, 1) != 0) {
        return false;
    }
    for (const int call : kCalls) {
        if (seccomp_rule_add(filter.get(), SCMP_ACT_ALLOW, call, 0) != 0) {
            return false;
        }
    }
    return allowThreads(filter.get()) && allowForOurselves(filter.get()) && seccomp_load(filter.get()) == 0;
}

} // namespace

std::string confine()
{
    if (close_range(kWorkerChannel + 1, ~0U, 0) != 0) {
        return "No file is read: open ones could not be closed.";
    }
    if (!dropRights()) {
        return "No file is read: rights could not be given up.";
    }
    endWithTheOtherSide();
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) {
        return "No file is read: privileges could not be given up.";
    }
    if (!limitResources()) {
        return "No file is read: resources could not be limited.";
    }
    return allowOnlyOurCalls() ? "" : "No file is read: system calls could not be limited.";
}

void renewProcessorTime()
{
    rusage used = {};
    getrusage(RUSAGE_SELF, &used);
    const auto seconds = static_cast<rlim_t>(used.ru_utime.tv_sec + used.ru_stime.tv_sec);
    const rlimit allowance = {seconds + kProcessorTime, RLIM_INFINITY};
    setrlimit(RLIMIT_CPU, &allowance);
}

} // namespace desktop
