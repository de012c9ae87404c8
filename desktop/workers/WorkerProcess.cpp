#include "desktop/workers/WorkerProcess.h"

#include "desktop/workers/WorkerChannel.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <cerrno>
#include <system_error>
#include <thread>

namespace desktop {

namespace {

constexpr int kTimeoutMs = 200; // for the end of a killed process, which a dead file system may delay

void check(int error, const std::string& what)
{
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), what);
    }
}

/// How a worker's descriptors are laid out: nothing to read or write but the channel.
class FileActions {
public:
    explicit FileActions(int channel)
    {
        check(posix_spawn_file_actions_init(&m_actions), "file actions");
        for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            check(posix_spawn_file_actions_addopen(&m_actions, standard, "/dev/null", O_RDWR, 0), "file actions");
        }
        check(posix_spawn_file_actions_adddup2(&m_actions, channel, kWorkerChannel), "file actions");
    }
    ~FileActions() { posix_spawn_file_actions_destroy(&m_actions); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    const posix_spawn_file_actions_t* get() const { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions;
};

/// No signal is blocked in a worker, and an interrupt of the terminal is none of its business.
class Attributes {
public:
    Attributes()
    {
        check(posix_spawnattr_init(&m_attributes), "attributes");
        sigset_t none;
        sigemptyset(&none);
        sigset_t all;
        sigfillset(&all);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        posix_spawnattr_setsigdefault(&m_attributes, &all);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
    }
    ~Attributes() { posix_spawnattr_destroy(&m_attributes); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    const posix_spawnattr_t* get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes;
};

} // namespace

WorkerProcess::WorkerProcess(const std::string& program, const std::vector<std::string>& arguments)
{
    int ends[2] = {-1, -1};
    check(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) == 0 ? 0 : errno, "a worker's channel");
    m_channel = UniqueFd(ends[0]);
    const UniqueFd theirs(ends[1]);
    const FileActions actions(theirs.get());
    const Attributes attributes;
    std::vector<std::string> words = {program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    check(posix_spawn(&m_pid, program.c_str(), actions.get(), attributes.get(), pointers.data(), environ), program);
}

WorkerProcess::~WorkerProcess()
{
    const UniqueFd process(static_cast<int>(syscall(SYS_pidfd_open, m_pid, 0)));
    kill(m_pid, SIGKILL);
    pollfd end = {process.get(), POLLIN, 0};
    if (poll(&end, 1, kTimeoutMs) > 0) {
        waitpid(m_pid, nullptr, WNOHANG);
        return;
    }
    std::thread([pid = m_pid] { waitpid(pid, nullptr, 0); }).detach(); // the kernel still keeps it
}

} // namespace desktop
