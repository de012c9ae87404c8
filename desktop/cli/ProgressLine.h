#pragma once

#include <cstddef>
#include <mutex>
#include <string>

namespace desktop {

/// One line on standard error, rewritten in place, that shows the progress of work; nothing when standard error is not a
/// terminal. Safe on any thread.
class ProgressLine {
public:
    ProgressLine();
    ~ProgressLine() { clear(); }

    void show(const std::string& text);
    /// Removes the line, if there is one, before other text is written.
    void clear();

private:
    const bool m_terminal;
    std::mutex m_mutex;
    bool m_shown = false;
};

/// A bar for @p done of @p total: "[######              ] 30 of 100".
std::string progressBar(std::size_t done, std::size_t total);

} // namespace desktop
