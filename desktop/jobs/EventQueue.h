#pragma once

#include "desktop/base/ThreadAnnotations.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <thread>

namespace desktop {

/// Delivers events to the listener, one at a time and in order, on a thread of its own. Operations are safe on any thread
/// but the event thread.
class EventQueue {
public:
    using Listener = void (*)(int event, void* data);

    EventQueue() = default;
    ~EventQueue() { stop(); }

    /// Replaces the listener, also while events are delivered.
    void setListener(Listener listener);

    /// Appends event @p id, a SocMwEventId, with its data. When @p wanted is given and says no at the event's turn, the
    /// event is dropped. Before start() events only gather.
    void post(int id, std::shared_ptr<void> data = nullptr, std::function<bool()> wanted = nullptr);

    /// Holds events back as long as the lock lives; waits for the one that is being delivered. The plugin takes no lock of
    /// its own, so its host takes turns: commands run under this one. May be held more than once.
    std::unique_lock<std::recursive_mutex> holdDelivery();

    void start();
    /// Delivers what has been posted so far and ends the thread; drops it when there was none. Later events gather for the
    /// next start().
    void stop();

private:
    struct Event {
        int id;
        std::shared_ptr<void> data;
        std::function<bool()> wanted;
    };

    void run();
    void deliver(Event event, Listener listener);
    std::deque<Event> takeAll();

    std::recursive_mutex m_turn; ///< held while an event is delivered
    Mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Event> m_events GUARDED_BY(m_mutex);
    Listener m_listener GUARDED_BY(m_mutex) = nullptr;
    bool m_stopping GUARDED_BY(m_mutex) = false;
    std::thread m_thread;
};

} // namespace desktop
