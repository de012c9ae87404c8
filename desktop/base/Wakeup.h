#pragma once

#include "desktop/base/UniqueFd.h"

namespace desktop {

/// A descriptor that poll(2) finds readable once raise() has been called; for threads that wait for several things.
class Wakeup {
public:
    Wakeup();

    int fd() const { return m_event.get(); }
    /// Safe on any thread.
    void raise();
    /// Makes the descriptor wait for the next raise().
    void clear();

private:
    UniqueFd m_event;
};

} // namespace desktop
