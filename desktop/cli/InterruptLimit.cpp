#include "desktop/cli/InterruptLimit.h"

#include <poll.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>

namespace desktop {

namespace {

constexpr std::chrono::milliseconds kLimit(800);

} // namespace

InterruptLimit::InterruptLimit(const Interrupts& interrupts, std::function<void(int status)> beforeTheEnd)
    : m_interrupts(interrupts)
    , m_beforeTheEnd(std::move(beforeTheEnd))
    , m_thread(&InterruptLimit::watch, this)
{
}

InterruptLimit::~InterruptLimit()
{
    m_done.raise();
    m_thread.join();
}

void InterruptLimit::watch()
{
    std::array<pollfd, 2> waits = {{{m_done.fd(), POLLIN, 0}, {m_interrupts.fd(), POLLIN, 0}}};
    TEMP_FAILURE_RETRY(poll(waits.data(), waits.size(), -1));
    if (waits[0].revents == 0 && TEMP_FAILURE_RETRY(poll(waits.data(), 1, static_cast<int>(kLimit.count()))) == 0) {
        m_beforeTheEnd(m_interrupts.exitStatus());
        std::_Exit(m_interrupts.exitStatus());
    }
}

} // namespace desktop
