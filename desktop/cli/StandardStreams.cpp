#include "desktop/cli/StandardStreams.h"

#include "desktop/cli/ErrorMessage.h"

#include <fcntl.h>
#include <sys/statvfs.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace desktop {

namespace {

constexpr const char* kNowhere = "/dev/null";

UniqueFd copyOf(int descriptor)
{
    return UniqueFd(fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

UniqueFd openTarget(const std::string& file, LogOutput::Target target)
{
    if (!file.empty()) {
        return UniqueFd(open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666));
    }
    return target == LogOutput::Target::Errors ? copyOf(STDERR_FILENO) : UniqueFd(open(kNowhere, O_WRONLY | O_CLOEXEC));
}

/// Why standard output has failed, as an errno value; 0 when that cannot be told. The stream has kept no reason: one that
/// lasts shows without anything being written.
int failureOfStandardOutput()
{
    if (::write(STDOUT_FILENO, "", 0) < 0) {
        return errno;
    }
    struct statvfs room = {};
    const bool full = fstatvfs(STDOUT_FILENO, &room) == 0 && room.f_blocks > 0 && room.f_bavail == 0;
    return full ? ENOSPC : 0;
}

} // namespace

void openMissingStreams()
{
    // The lowest number is taken, so each of these gets the one that is missing.
    for (const auto& [descriptor, mode] :
         {std::pair{STDIN_FILENO, O_RDONLY}, {STDOUT_FILENO, O_RDONLY}, {STDERR_FILENO, O_WRONLY}}) {
        if (fcntl(descriptor, F_GETFD) < 0) {
            UniqueFd(open(kNowhere, mode)).release();
        }
    }
}

UniqueFd copyOfStandardOutput()
{
    UniqueFd output = copyOf(STDOUT_FILENO);
    if (!output) {
        throw std::system_error(errno, std::generic_category(), "standard output");
    }
    return output;
}

LogOutput::LogOutput(std::string file, Target target)
    : m_file(std::move(file))
{
    UniqueFd log = openTarget(m_file, target);
    if (!log) {
        throw std::system_error(errno, std::generic_category(), m_file.empty() ? "log" : m_file);
    }
    if (isatty(log.get()) == 1) {
        m_pump.emplace(std::move(log));
        dup2(m_pump->inlet(), STDOUT_FILENO);
    } else {
        dup2(log.get(), STDOUT_FILENO);
    }
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
}

LogOutput::~LogOutput()
{
    std::fflush(stdout);
    const UniqueFd nowhere(open(kNowhere, O_WRONLY | O_CLOEXEC));
    dup2(nowhere.get(), STDOUT_FILENO);
}

void LogOutput::start()
{
    if (m_pump) {
        m_pump->start();
    }
}

void LogOutput::showOnTerminal(std::function<void(const std::string& text)> show)
{
    if (m_pump) {
        m_pump->setShow(std::move(show));
    }
}

std::string LogOutput::finish()
{
    std::fflush(stdout);
    if (m_file.empty() || std::ferror(stdout) == 0) {
        return "";
    }
    const int error = failureOfStandardOutput();
    return m_file + ": " + (error != 0 ? systemErrorText(error) : "Not all of the log could be written");
}

} // namespace desktop
