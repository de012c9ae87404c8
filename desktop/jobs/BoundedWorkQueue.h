#pragma once

#include "desktop/base/ThreadAnnotations.h"

#include <condition_variable>
#include <exception>
#include <functional>
#include <thread>
#include <utility>
#include <vector>

namespace desktop {

/// Works on items in their order, on a thread of its own, while the calling thread fetches the next ones. Operations are
/// called on one thread.
template <typename Item>
class BoundedWorkQueue {
public:
    /// @p work is done on each item; so many as @p limit may wait, besides those that have been taken together.
    BoundedWorkQueue(std::size_t limit, std::function<void(Item& item)> work)
        : m_limit(limit)
        , m_work(std::move(work))
        , m_thread([this] { run(); })
    {
    }
    ~BoundedWorkQueue() { join(); }
    BoundedWorkQueue(const BoundedWorkQueue&) = delete;
    BoundedWorkQueue& operator=(const BoundedWorkQueue&) = delete;

    /// Waits while too many others wait.
    void put(Item item)
    {
        UniqueLock lock(m_mutex);
        m_changed.wait(lock.native(), [this]() REQUIRES(m_mutex) { return m_items.size() < m_limit; });
        m_items.push_back(std::move(item));
        if (m_items.size() == 1) {
            m_changed.notify_all();
        }
    }

    /// Waits until all that was put has been worked on and let go.
    void waitUntilIdle()
    {
        UniqueLock lock(m_mutex);
        m_changed.wait(lock.native(), [this]() REQUIRES(m_mutex) { return m_items.empty() && !m_working; });
    }

    /// Waits until all has been done; throws what the work has thrown, after which nothing more was done. The last call.
    void finish()
    {
        join();
        if (m_failure != nullptr) {
            std::rethrow_exception(m_failure);
        }
    }

private:
    void join()
    {
        {
            const LockGuard lock(m_mutex);
            m_finishing = true;
            m_changed.notify_all();
        }
        if (m_thread.joinable()) {
            m_thread.join();
        }
    }

    void run()
    {
        for (std::vector<Item> items = takeAll(); !items.empty(); items = takeAll()) {
            workOn(std::move(items));
        }
    }

    // All at once: waking the other side for each would take longer than many an item does.
    std::vector<Item> takeAll()
    {
        UniqueLock lock(m_mutex);
        m_working = false;
        m_changed.notify_all();
        m_changed.wait(lock.native(), [this]() REQUIRES(m_mutex) { return m_finishing || !m_items.empty(); });
        m_working = !m_items.empty();
        m_changed.notify_all();
        return std::exchange(m_items, {});
    }

    void workOn(std::vector<Item> items)
    try {
        for (auto item = items.begin(); m_failure == nullptr && item != items.end(); ++item) {
            Item taken = std::move(*item); // let go before the next one: it may hold a descriptor
            m_work(taken);
        }
    } catch (...) {
        m_failure = std::current_exception();
    }

    const std::size_t m_limit;
    const std::function<void(Item&)> m_work;
    std::exception_ptr m_failure; ///< of the thread's, until it has ended
    Mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<Item> m_items GUARDED_BY(m_mutex);
    bool m_working GUARDED_BY(m_mutex) = false; ///< on items that have been taken
    bool m_finishing GUARDED_BY(m_mutex) = false;
    std::thread m_thread; // last: it uses all the others
};

} // namespace desktop
