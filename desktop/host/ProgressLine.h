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

    void show(const std::string& directory, std::size_t entries);
    /// Removes the line, if there is one, before other text is written.
    void clear();

private:
    const bool m_terminal;
    std::mutex m_mutex;
    bool m_shown = false;
};

} // namespace desktop
