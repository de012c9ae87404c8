#pragma once

#include "desktop/base/ThreadAnnotations.h"

#include <cstddef>
#include <string>

namespace desktop {

/// One line on standard error, rewritten in place, that shows the progress of work; nothing when standard error is not a
/// terminal. Safe on any thread.
class ProgressLine {
public:
    ProgressLine();
    ~ProgressLine() { clear(); }

    void show(const std::string& text);
    /// Writes @p text as a line of its own that stays.
    void showAbove(const std::string& text);
    /// Whether standard error is a terminal.
    bool isTerminal() const { return m_terminal; }
    /// Removes the line, if there is one, before other text is written.
    void clear();

private:
    const bool m_terminal;
    Mutex m_mutex;
    bool m_shown GUARDED_BY(m_mutex) = false;
};

/// A bar for @p done of @p total: "[######              ] 30 of 100".
std::string progressBar(std::size_t done, std::size_t total);

} // namespace desktop
