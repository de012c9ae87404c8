#include "desktop/jobs/EventQueue.h"

#include <utility>

namespace desktop {

void EventQueue::setListener(Listener listener)
{
    const LockGuard lock(m_mutex);
    m_listener = listener;
}

void EventQueue::post(int id, std::shared_ptr<void> data, std::function<bool()> wanted)
{
    {
        const LockGuard lock(m_mutex);
        m_events.push_back({id, std::move(data), std::move(wanted)});
    }
    m_changed.notify_one();
}

std::unique_lock<std::recursive_mutex> EventQueue::holdDelivery()
{
    return std::unique_lock<std::recursive_mutex>(m_turn);
}

void EventQueue::start()
{
    if (!m_thread.joinable()) {
        {
            const LockGuard lock(m_mutex);
            m_stopping = false;
        }
        m_thread = std::thread(&EventQueue::run, this);
    }
}

void EventQueue::stop()
{
    {
        const LockGuard lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_one();
    if (m_thread.joinable()) {
        m_thread.join();
    }
    const std::deque<Event> undelivered = takeAll(); // of a queue that was never started
}

// Their data is released by the caller without the lock: it may take locks of its own.
std::deque<EventQueue::Event> EventQueue::takeAll()
{
    const LockGuard lock(m_mutex);
    return std::exchange(m_events, {});
}

void EventQueue::run()
{
    UniqueLock lock(m_mutex);
    while (true) {
        m_changed.wait(lock.native(), [this]() REQUIRES(m_mutex) { return m_stopping || !m_events.empty(); });
        if (m_events.empty()) {
            return;
        }
        Event event = std::move(m_events.front());
        m_events.pop_front();
        const Listener listener = m_listener;
        lock.unlock();
        deliver(std::move(event), listener);
        lock.lock();
    }
}

void EventQueue::deliver(Event event, Listener listener)
{
    const std::lock_guard<std::recursive_mutex> turn(m_turn);
    if (listener != nullptr && (!event.wanted || event.wanted())) {
        listener(event.id, event.data.get());
    }
}

} // namespace desktop
