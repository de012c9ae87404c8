#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/base/Wakeup.h"

#include <functional>
#include <vector>

namespace desktop {

/// What other threads want done on the player's thread.
class Mailbox {
public:
    /// Readable for poll(2) when there is something to do.
    int fd() const { return m_wakeup.fd(); }
    /// Safe on any thread.
    void post(std::function<void()> work);
    /// Wakes the player's thread without anything to do. Safe on any thread.
    void wake() { m_wakeup.raise(); }
    /// Does what has been posted.
    void work();

private:
    Wakeup m_wakeup;
    Mutex m_mutex;
    std::vector<std::function<void()>> m_posted GUARDED_BY(m_mutex);
};

} // namespace desktop
