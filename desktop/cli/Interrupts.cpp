#include "desktop/cli/Interrupts.h"

#include <poll.h>
#include <sys/signalfd.h>

#include <cerrno>
#include <csignal>
#include <system_error>

namespace desktop {

Interrupts::Interrupts()
{
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGINT);
    sigaddset(&ending, SIGTERM);
    sigaddset(&ending, SIGHUP);
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);
    std::signal(SIGPIPE, SIG_IGN); // a reader that leaves is seen by the write that fails
    m_signals = UniqueFd(signalfd(-1, &ending, SFD_CLOEXEC | SFD_NONBLOCK));
    if (!m_signals) {
        throw std::system_error(errno, std::generic_category(), "signalfd");
    }
}

bool Interrupts::pending() const
{
    pollfd wait = {m_signals.get(), POLLIN, 0};
    return poll(&wait, 1, 0) > 0;
}

int Interrupts::exitStatus() const
{
    constexpr int kSignalBase = 128; // as shells report that a signal ended a program
    sigset_t signals;
    sigpending(&signals);
    for (const int signal : {SIGTERM, SIGHUP}) {
        if (sigismember(&signals, signal) == 1) {
            return kSignalBase + signal;
        }
    }
    return kSignalBase + SIGINT;
}

} // namespace desktop
