#include "desktop/base/Wakeup.h"

#include <sys/eventfd.h>

#include <cerrno>
#include <system_error>

namespace desktop {

Wakeup::Wakeup()
    : m_event(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (!m_event) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
}

void Wakeup::raise()
{
    eventfd_write(m_event.get(), 1);
}

void Wakeup::clear()
{
    eventfd_t count = 0;
    eventfd_read(m_event.get(), &count);
}

} // namespace desktop
