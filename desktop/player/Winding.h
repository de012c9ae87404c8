#pragma once

#include <chrono>

namespace desktop {

/// The clock that winding runs along when it is done by jumps. One object serves one thread.
class Winding {
public:
    using Clock = std::chrono::steady_clock;

    /// From @p position, in seconds, on with @p speed, backwards when it is negative.
    Winding(int speed, double position, Clock::time_point now)
        : m_speed(speed)
        , m_start(position)
        , m_since(now)
    {
    }

    int speed() const { return m_speed; }
    bool isBackwards() const { return m_speed < 0; }
    /// Where it is, in seconds; not below 0.
    double position(Clock::time_point now) const
    {
        const auto time = m_holds ? Clock::duration::zero() : now - m_since;
        const double position = m_start + m_speed * std::chrono::duration<double>(time).count();
        return position > 0 ? position : 0;
    }
    /// Stays where it is, or goes on from there.
    void hold(bool holds, Clock::time_point now)
    {
        m_start = position(now);
        m_since = now;
        m_holds = holds;
    }

private:
    int m_speed;
    double m_start;
    Clock::time_point m_since;
    bool m_holds = false;
};

} // namespace desktop
