#pragma once

#include "desktop/cli/Interrupts.h"

#include "desktop/base/ThreadAnnotations.h"

#include <string_view>

namespace desktop {

/// The program's output, apart from the log. Safe on any thread.
class Output {
public:
    /// Writes to @p fd. @p interrupts end a write that waits for a slow reader.
    Output(UniqueFd fd, const Interrupts& interrupts);

    /// Writes all of @p text, not mixed with that of other threads. False once the reader has gone or an interrupt has come.
    bool write(std::string_view text);
    /// Whether every write has succeeded.
    bool good() const;
    bool isTerminal() const { return isatty(m_fd.get()) == 1; }
    /// For a terminal's own needs.
    int fd() const { return m_fd.get(); }
    /// Ends the output. Returns 0, or why not all of it could be written as an errno value; EPIPE says that the reader has
    /// gone. What an interrupt has cut off is no error.
    int close();
    /// Whether the reader is a person who wants colours.
    bool isColoured() const;

private:
    bool writeSome(std::string_view& text) REQUIRES(m_mutex);

    UniqueFd m_fd;
    const Interrupts& m_interrupts;
    mutable Mutex m_mutex;
    bool m_good GUARDED_BY(m_mutex) = true;
    int m_error GUARDED_BY(m_mutex) = 0; ///< errno value
};

} // namespace desktop
