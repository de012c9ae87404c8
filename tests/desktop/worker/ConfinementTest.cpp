#include "desktop/worker/Confinement.h"

#include "desktop/base/UniqueFd.h"
#include "desktop/workers/WorkerChannel.h"

#include "tests/support/CaseName.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <fstream>
#include <sstream>

namespace desktop {
namespace {

constexpr int kYes = 40;
constexpr int kNo = 41;
constexpr int kNotConfined = 42;

pid_t s_other = 0; ///< a process that is none of the confined one's business

/// A process that confines itself and then does @p work; ends with what that returns.
class ConfinedProcess {
public:
    explicit ConfinedProcess(int (*work)())
    {
        int ends[2] = {-1, -1};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
        m_channel = UniqueFd(ends[0]);
        const UniqueFd theirs(ends[1]);
        s_other = getpid();
        m_pid = fork();
        if (m_pid == 0) {
            dup2(theirs.get(), kWorkerChannel);
            _exit(confine().empty() ? work() : kNotConfined);
        }
    }

    int wait() const
    {
        int status = 0;
        EXPECT_EQ(waitpid(m_pid, &status, 0), m_pid);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

    pid_t pid() const { return m_pid; }
    int channel() const { return m_channel.get(); }

private:
    UniqueFd m_channel;
    pid_t m_pid = -1;
};

bool isForbidden(long result)
{
    return result == -1 && (errno == EPERM || errno == ENOSYS);
}

/// Something that a confined process may or may not do.
struct Attempt {
    const char* name;
    int (*work)(); ///< kYes when it turns out as it should
};

int yesIf(bool asItShould)
{
    return asItShould ? kYes : kNo;
}

clockid_t processorClockOf(pid_t process)
{
    return static_cast<clockid_t>((~static_cast<unsigned int>(process) << 3) | 2U); // as clock_getcpuclockid(3) makes it
}

const Attempt kAttempts[] = {
    {"SignalAnother", [] { return yesIf(isForbidden(syscall(SYS_tgkill, s_other, s_other, 0))); }},
    {"KillAnother", [] { return yesIf(isForbidden(kill(s_other, 0))); }},
    {"SignalItself", [] { return yesIf(syscall(SYS_tgkill, getpid(), gettid(), 0) == 0); }},
    {"LimitsOfAnother",
     [] {
         rlimit limit = {};
         return yesIf(isForbidden(prlimit(s_other, RLIMIT_NOFILE, nullptr, &limit)));
     }},
    {"LimitsOfItself",
     [] {
         rlimit limit = {};
         return yesIf(getrlimit(RLIMIT_NOFILE, &limit) == 0 && prlimit(getpid(), RLIMIT_NOFILE, nullptr, &limit) == 0);
     }},
    {"ProcessorsOfAnother",
     [] {
         cpu_set_t processors;
         return yesIf(isForbidden(sched_getaffinity(s_other, sizeof processors, &processors)));
     }},
    {"ProcessorTimeOfAnother",
     [] {
         timespec time = {};
         return yesIf(isForbidden(syscall(SYS_clock_gettime, processorClockOf(s_other), &time)));
     }},
    {"ProcessorTimeOfItself",
     [] {
         timespec time = {};
         return yesIf(clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time) == 0 &&
                      clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time) == 0);
     }},
    {"StatusByPath",
     [] {
         struct stat status = {};
         return yesIf(isForbidden(stat("/", &status)) && isForbidden(lstat("/", &status)) &&
                      isForbidden(fstatat(AT_FDCWD, "/", &status, AT_EMPTY_PATH)));
     }},
    {"StatxByPath",
     [] {
         struct statx status = {};
         return yesIf(isForbidden(statx(AT_FDCWD, "/", AT_EMPTY_PATH, STATX_TYPE, &status)));
     }},
    {"Access", [] { return yesIf(isForbidden(access("/", F_OK))); }},
    {"Open", [] { return yesIf(isForbidden(open("/dev/null", O_RDONLY))); }},
    {"Connect", [] { return yesIf(isForbidden(socket(AF_UNIX, SOCK_STREAM, 0))); }},
    {"Fork", [] { return yesIf(isForbidden(syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0))); }},
};

class Confined : public testing::TestWithParam<Attempt> {};

TEST_P(Confined, Attempt_TurnsOutAsItShould)
{
    EXPECT_EQ(ConfinedProcess(GetParam().work).wait(), kYes);
}

INSTANTIATE_TEST_SUITE_P(Process, Confined, testing::ValuesIn(kAttempts),
                         [](const auto& row) { return testsupport::caseName(row.index, row.param.name); });

/// The words of the line @p key of the status of process @p pid.
std::string statusLine(pid_t pid, const std::string& key)
{
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(key + ":\t", 0) == 0) {
            return line.substr(key.size() + 2);
        }
    }
    return "";
}

TEST(ConfinedProcess, Rights_AreNone)
{
    const ConfinedProcess process([] {
        const char ready = 'x';
        char end = 0;
        return yesIf(write(kWorkerChannel, &ready, 1) == 1 && read(kWorkerChannel, &end, 1) == 1);
    });
    char message = 0;
    ASSERT_EQ(read(process.channel(), &message, 1), 1);
    for (const char* set : {"CapInh", "CapPrm", "CapEff", "CapAmb"}) {
        EXPECT_EQ(statusLine(process.pid(), set), "0000000000000000") << set;
    }
    EXPECT_EQ(statusLine(process.pid(), "NoNewPrivs"), "1");
    if (geteuid() == 0) {
        EXPECT_EQ(statusLine(process.pid(), "CapBnd"), "0000000000000000");
        EXPECT_EQ(statusLine(process.pid(), "Uid"), "65534\t65534\t65534\t65534");
        EXPECT_EQ(statusLine(process.pid(), "Gid"), "65534\t65534\t65534\t65534");
        EXPECT_EQ(statusLine(process.pid(), "Groups"), " ");
    }
    EXPECT_EQ(write(process.channel(), &message, 1), 1);
    EXPECT_EQ(process.wait(), kYes);
}

} // namespace
} // namespace desktop
