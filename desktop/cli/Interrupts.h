#pragma once

#include "desktop/base/UniqueFd.h"

namespace desktop {

/// The signals that end the program (Ctrl-C, SIGTERM, SIGHUP) as a descriptor to poll. Made before any thread starts, since
/// threads inherit the blocked signals.
class Interrupts {
public:
    /// The exit status of a program that Ctrl-C has ended.
    static constexpr int kInterrupted = 130;

    Interrupts();

    /// Becomes readable with the first of the signals, and stays so.
    int fd() const { return m_signals.get(); }
    bool pending() const;
    /// The exit status of a program that the pending signal has ended.
    int exitStatus() const;

private:
    UniqueFd m_signals;
};

} // namespace desktop
