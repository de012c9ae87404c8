#pragma once

#include <chrono>

namespace desktop {

/// Says when something that is done every so often is due again.
class IntervalTimer {
public:
    explicit IntervalTimer(std::chrono::milliseconds interval)
        : m_interval(interval)
    {
    }

    /// Whether the interval has passed since this was last true, or since the beginning.
    bool due()
    {
        const auto now = std::chrono::steady_clock::now();
        if (now - m_last < m_interval) {
            return false;
        }
        m_last = now;
        return true;
    }

private:
    std::chrono::milliseconds m_interval;
    std::chrono::steady_clock::time_point m_last = std::chrono::steady_clock::now();
};

} // namespace desktop
