#include "desktop/player/PlayerConfinement.h"

#include "desktop/base/UniqueFd.h"
#include "desktop/workers/WorkerChannel.h"

#include "tests/support/CaseName.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <thread>

namespace desktop {
namespace {

constexpr int kYes = 40;
constexpr int kNo = 41;
constexpr int kNotConfined = 42;

pid_t s_other = 0;        ///< a process that is none of the confined one's business
std::string s_userFile;   ///< a file that everybody may read
std::string s_userFolder; ///< a folder that everybody may write to

int yesIf(bool asItShould)
{
    return asItShould ? kYes : kNo;
}

bool isForbidden(long result)
{
    return result == -1 && (errno == EPERM || errno == EACCES || errno == ENOSYS);
}

bool opens(const char* path, int flags = O_RDONLY)
{
    return UniqueFd(open(path, flags | O_CLOEXEC)) ? true : false;
}

bool isClosed(const std::string& path, int flags = O_RDONLY)
{
    return isForbidden(open(path.c_str(), flags | O_CLOEXEC, 0600));
}

/// Something that a confined process may or may not do.
struct Attempt {
    const char* name;
    int (*work)(); ///< kYes when it turns out as it should
    PlayerOutput output{};
};

const Attempt kAttempts[] = {
    {"SystemsFiles",
     [] { return yesIf(opens("/etc/ld.so.cache") && opens("/usr/share", O_DIRECTORY) && opens("/proc/self/maps")); }},
    {"NullDevice", [] { return yesIf(opens("/dev/null", O_RDWR)); }},
    {"UsersFile", [] { return yesIf(isClosed(s_userFile)); }},
    {"UsersFileThroughItsProcess", [] { return yesIf(isClosed("/proc/self/root" + s_userFile)); }},
    {"UsersFolder", [] { return yesIf(isClosed(s_userFolder, O_DIRECTORY)); }},
    {"NewFile", [] { return yesIf(isClosed(s_userFolder + "/new", O_CREAT | O_WRONLY)); }},
    {"RemovedFile", [] { return yesIf(isForbidden(unlink(s_userFile.c_str()))); }},
    {"RenamedFile", [] { return yesIf(isForbidden(rename(s_userFile.c_str(), (s_userFolder + "/x").c_str()))); }},
    {"CutFile", [] { return yesIf(isForbidden(truncate(s_userFile.c_str(), 0))); }},
    {"ModeOfAFile", [] { return yesIf(isForbidden(chmod(s_userFile.c_str(), 0777))); }},
    {"Passwords", [] { return yesIf(isClosed("/etc/passwd") && isClosed("/etc/shadow")); }},
    {"OtherProcessesMemory", [] { return yesIf(isClosed("/proc/" + std::to_string(s_other) + "/maps")); }},
    {"SignalAnother",
     [] { return yesIf(isForbidden(kill(s_other, 0)) && isForbidden(syscall(SYS_tgkill, s_other, s_other, 0))); }},
    {"SignalItself", [] { return yesIf(syscall(SYS_tgkill, getpid(), gettid(), 0) == 0); }},
    {"Trace", [] { return yesIf(isForbidden(ptrace(PTRACE_ATTACH, s_other, nullptr, nullptr))); }},
    {"LimitsOfAnother",
     [] {
         rlimit limit = {};
         return yesIf(isForbidden(prlimit(s_other, RLIMIT_NOFILE, nullptr, &limit)));
     }},
    {"LimitsOfItself",
     [] {
         rlimit limit = {};
         return yesIf(getrlimit(RLIMIT_NOFILE, &limit) == 0);
     }},
    {"Program",
     [] {
         char name[] = "/bin/true";
         char* const words[] = {name, nullptr};
         return yesIf(isForbidden(execv(name, words)));
     }},
    {"Fork", [] { return yesIf(isForbidden(syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0))); }},
    {"Thread",
     [] {
         int done = kNo;
         std::thread([&done] { done = kYes; }).join();
         return done;
     }},
    {"Mount", [] { return yesIf(isForbidden(mount("none", "/tmp", "tmpfs", 0, nullptr))); }},
    {"Namespace", [] { return yesIf(isForbidden(unshare(CLONE_NEWUSER))); }},
    {"Network",
     [] { return yesIf(isForbidden(socket(AF_INET, SOCK_STREAM, 0)) && isForbidden(socket(AF_INET6, SOCK_DGRAM, 0))); }},
    {"Connect", [] { return yesIf(isForbidden(socket(AF_UNIX, SOCK_STREAM, 0))); }},
    {"DisplaysSocket", [] { return yesIf(UniqueFd(socket(AF_UNIX, SOCK_STREAM, 0)) ? true : false); }, {true, false}},
    {"SoundsSocket", [] { return yesIf(UniqueFd(socket(AF_UNIX, SOCK_STREAM, 0)) ? true : false); }, {false, true}},
    {"NetworkWithWindow", [] { return yesIf(isForbidden(socket(AF_INET, SOCK_STREAM, 0))); }, {true, true}},
    {"UsersFileWithWindow", [] { return yesIf(isClosed(s_userFile)); }, {true, true}},
    {"OpenFiles", [] { return yesIf(fcntl(kWorkerChannel + 1, F_GETFD) == -1); }},
    {"CoreDump",
     [] {
         rlimit limit = {};
         return yesIf(getrlimit(RLIMIT_CORE, &limit) == 0 && limit.rlim_max == 0);
     }},
};

class ConfinedPlayer : public testing::TestWithParam<Attempt> {
protected:
    ConfinedPlayer()
    {
        s_other = getpid();
        s_userFolder = folder.path();
        s_userFile = folder.path("diary");
        std::fclose(std::fopen(s_userFile.c_str(), "w"));
        chmod(s_userFolder.c_str(), 0777);
        chmod(s_userFile.c_str(), 0666);
    }

    /// What the attempt comes to in a process that confines itself before.
    static int attempted(const Attempt& attempt)
    {
        int ends[2] = {-1, -1};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
        const UniqueFd ours(ends[0]);
        const UniqueFd theirs(ends[1]);
        const pid_t pid = fork();
        if (pid == 0) {
            dup2(theirs.get(), kWorkerChannel);
            _exit(confinePlayer(attempt.output).empty() ? attempt.work() : kNotConfined);
        }
        int status = 0;
        EXPECT_EQ(waitpid(pid, &status, 0), pid);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

    testsupport::TemporaryDirectory folder;
};

TEST_P(ConfinedPlayer, Attempt_TurnsOutAsItShould)
{
    EXPECT_EQ(attempted(GetParam()), kYes);
}

INSTANTIATE_TEST_SUITE_P(Process, ConfinedPlayer, testing::ValuesIn(kAttempts),
                         [](const auto& row) { return testsupport::caseName(row.index, row.param.name); });

} // namespace
} // namespace desktop
