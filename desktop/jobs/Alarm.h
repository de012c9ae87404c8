#pragma once

#include "desktop/base/ThreadAnnotations.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <optional>
#include <thread>
#include <utility>

namespace desktop {

/// Calls a function at a given time, on a thread of its own, which starts with the first time that is set. Operations are
/// safe on any thread but the alarm's.
class Alarm {
public:
    using Clock = std::chrono::steady_clock;

    /// @p ring is called when the time has come, and says when it is to be called next; nothing: when set() says so.
    explicit Alarm(std::function<std::optional<Clock::time_point>()> ring)
        : m_ring(std::move(ring))
    {
    }
    ~Alarm() { stop(); }
    Alarm(const Alarm&) = delete;
    Alarm& operator=(const Alarm&) = delete;

    /// Rings at @p time, or earlier when it was set to ring earlier.
    void set(Clock::time_point time);
    /// Waits for the call that runs; none comes after it. The last call.
    void stop();

private:
    void run();

    const std::function<std::optional<Clock::time_point>()> m_ring;
    Mutex m_mutex;
    std::condition_variable m_changed;
    std::optional<Clock::time_point> m_time GUARDED_BY(m_mutex);
    bool m_stopping GUARDED_BY(m_mutex) = false;
    std::thread m_thread GUARDED_BY(m_mutex);
};

} // namespace desktop
