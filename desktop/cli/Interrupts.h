#pragma once

#include "desktop/base/UniqueFd.h"

namespace desktop {

/// Ctrl-C and its like as something to poll for. Made before any thread starts: threads inherit the blocked signals.
class Interrupts {
public:
    Interrupts();

    /// Readable, and it stays so, once the user wants the program to end.
    int fd() const { return m_signals.get(); }
    bool pending() const;
    /// The exit status that tells of the pending signal.
    int exitStatus() const;

private:
    UniqueFd m_signals;
};

} // namespace desktop
