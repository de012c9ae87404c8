#include "desktop/jobs/Alarm.h"

#include <algorithm>

namespace desktop {

void Alarm::set(Clock::time_point time)
{
    const LockGuard lock(m_mutex);
    if (m_stopping) {
        return;
    }
    m_time = m_time ? std::min(*m_time, time) : time;
    if (!m_thread.joinable()) {
        m_thread = std::thread(&Alarm::run, this);
    }
    m_changed.notify_all();
}

void Alarm::stop()
{
    std::thread thread;
    {
        const LockGuard lock(m_mutex);
        m_stopping = true;
        m_changed.notify_all();
        thread = std::move(m_thread);
    }
    if (thread.joinable()) {
        thread.join();
    }
}

void Alarm::run()
{
    UniqueLock lock(m_mutex);
    while (!m_stopping) {
        if (!m_time) {
            m_changed.wait(lock.native());
        } else if (Clock::now() < *m_time) {
            m_changed.wait_until(lock.native(), *m_time);
        } else {
            m_time.reset();
            lock.unlock();
            const auto next = m_ring();
            lock.lock();
            if (next) {
                m_time = m_time ? std::min(*m_time, *next) : *next;
            }
        }
    }
}

} // namespace desktop
