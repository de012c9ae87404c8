#pragma once

#include "desktop/cli/Interrupts.h"

#include "desktop/base/Wakeup.h"

#include <functional>
#include <thread>

namespace desktop {

/// Ends the process when an interrupt has not ended the program within a limit: a file system that does not answer may keep
/// threads in the kernel for as long as it likes. What has been written stays written.
class InterruptLimit {
public:
    /// From now on an interrupt ends the process after 800 ms at the latest, unless the object goes before. @p beforeTheEnd
    /// is called first, on a thread of its own. Both must outlive the object.
    InterruptLimit(const Interrupts& interrupts, std::function<void(int status)> beforeTheEnd);
    ~InterruptLimit();
    InterruptLimit(const InterruptLimit&) = delete;
    InterruptLimit& operator=(const InterruptLimit&) = delete;

private:
    void watch();

    const Interrupts& m_interrupts;
    const std::function<void(int status)> m_beforeTheEnd;
    Wakeup m_done;
    std::thread m_thread; ///< last: it uses the others
};

} // namespace desktop
