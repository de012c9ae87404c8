#include "desktop/player/Mailbox.h"

#include <utility>

namespace desktop {

void Mailbox::post(std::function<void()> work)
{
    const LockGuard lock(m_mutex);
    m_posted.push_back(std::move(work));
    m_wakeup.raise();
}

void Mailbox::work()
{
    m_wakeup.clear();
    std::vector<std::function<void()>> due;
    {
        const LockGuard lock(m_mutex);
        due.swap(m_posted);
    }
    for (const std::function<void()>& piece : due) {
        piece();
    }
}

} // namespace desktop
