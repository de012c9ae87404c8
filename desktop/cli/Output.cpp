#include "desktop/cli/Output.h"

#include <poll.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

namespace desktop {

Output::Output(UniqueFd fd, const Interrupts& interrupts)
    : m_fd(std::move(fd))
    , m_interrupts(interrupts)
{
}

bool Output::write(std::string_view text)
{
    const LockGuard lock(m_mutex);
    while (m_good && !text.empty()) {
        m_good = writeSome(text);
    }
    return m_good;
}

bool Output::good() const
{
    const LockGuard lock(m_mutex);
    return m_good;
}

// Some file systems tell only now that there is no room.
int Output::close()
{
    const LockGuard lock(m_mutex);
    if (m_fd && ::close(m_fd.release()) != 0 && m_error == 0) {
        m_error = errno;
    }
    m_good = false;
    return m_error;
}

bool Output::isColoured() const
{
    return isatty(m_fd.get()) == 1 && std::getenv("NO_COLOR") == nullptr;
}

bool Output::writeSome(std::string_view& text)
{
    pollfd waits[] = {{m_fd.get(), POLLOUT, 0}, {m_interrupts.fd(), POLLIN, 0}};
    if (poll(waits, 2, -1) < 0) {
        return errno == EINTR;
    }
    if (waits[1].revents != 0) {
        return false;
    }
    // A pipe that polls as writable takes this much without blocking.
    const ssize_t written = ::write(m_fd.get(), text.data(), std::min<std::size_t>(text.size(), PIPE_BUF));
    if (written < 0) {
        const bool again = errno == EINTR || errno == EAGAIN;
        m_error = again ? 0 : errno;
        return again;
    }
    text.remove_prefix(static_cast<std::size_t>(written));
    return true;
}

} // namespace desktop
