#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace testsupport {

/// After this long a test has waited in vain.
constexpr std::chrono::seconds kDeadline(20);

/// Gathers what other threads report, for a test that waits for it.
template <typename T>
class Gathered {
public:
    void add(T item)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_items.push_back(std::move(item));
        m_changed.notify_all();
    }

    /// The items once there are @p count of them, or those that have come at the deadline.
    std::vector<T> waitFor(std::size_t count)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait_for(lock, kDeadline, [&] { return m_items.size() >= count; });
        return m_items;
    }

    /// Whether @p condition holds for the items, now or before the deadline.
    template <typename Condition>
    bool waitUntil(const Condition& condition)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        return m_changed.wait_for(lock, kDeadline, [&] { return condition(m_items); });
    }

    std::vector<T> sofar()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_items;
    }

    void clear()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_items.clear();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<T> m_items;
};

/// Whether @p condition holds, now or before the deadline; for what nothing can be waited on.
template <typename Condition>
bool becomes(const Condition& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + kDeadline;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

/// A door that threads wait at until a test opens it.
class Door {
public:
    void open()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_open = true;
        m_changed.notify_all();
    }

    bool wait()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        return m_changed.wait_for(lock, kDeadline, [this] { return m_open; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_open = false;
};

} // namespace testsupport
