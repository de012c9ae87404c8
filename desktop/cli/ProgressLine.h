#pragma once

#include <cstddef>
#include <mutex>
#include <string>

namespace desktop {

/// One line on standard error, rewritten in place, that tells how long work goes; nothing when that is no terminal. Safe on
/// any thread.
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

/// How far @p done of @p total is: "[######              ] 30 of 100".
std::string progressBar(std::size_t done, std::size_t total);

} // namespace desktop
