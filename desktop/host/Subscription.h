#pragma once

#include "desktop/host/HostUpdate.h"

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/base/Wakeup.h"

#include <deque>
#include <memory>
#include <vector>

namespace desktop {

/// One subscriber's queue of updates, the oldest first. The subscriber takes them when and where it likes: nothing waits for
/// it. It may keep the object longer than the host. Safe on any thread.
class Subscription {
public:
    enum class State {
        Open,
        Overflowed, ///< cut off: the queue was full; what was in it has been dropped
        Ended,      ///< by end(), or because the host has closed
    };

    /// An open subscription whose queue holds at most @p limit updates.
    explicit Subscription(std::size_t limit);
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;

    /// The next update; null when there is none. Unless the state is Open, none will come any more.
    HostUpdatePointer take();
    State state() const;
    /// For poll(2): readable while there is an update to take, and once the state is no longer Open.
    int fd() const { return m_wakeup.fd(); }
    /// Unsubscribes: from now on there is nothing to take. Letting go of the subscription does the same.
    void end();

private:
    friend class SubscriberList;

    /// False when the subscription is, or becomes, closed.
    bool add(const HostUpdatePointer& update);
    /// Ends the subscription, but leaves what is in the queue.
    void endAfterQueue();
    void close(State state) REQUIRES(m_mutex);

    const std::size_t m_limit;
    mutable Mutex m_mutex;
    State m_state GUARDED_BY(m_mutex) = State::Open;
    std::deque<HostUpdatePointer> m_queue GUARDED_BY(m_mutex);
    Wakeup m_wakeup;
};

using SubscriptionPointer = std::shared_ptr<Subscription>;

/// Hands each update to all subscribers, to each of them in the order in which they are published. Safe on any thread.
class SubscriberList {
public:
    /// Subscribes to what is published from now on; see Subscription. Once the list is closed, the subscription has ended.
    SubscriptionPointer subscribe(std::size_t limit);
    /// Never waits for a subscriber: one whose queue is full is cut off.
    void publish(HostUpdate update);
    /// Ends all subscriptions; their subscribers can still take what is queued.
    void close();

private:
    Mutex m_mutex;
    std::vector<std::weak_ptr<Subscription>> m_subscriptions GUARDED_BY(m_mutex);
    bool m_closed GUARDED_BY(m_mutex) = false;
};

} // namespace desktop
