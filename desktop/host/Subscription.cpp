#include "desktop/host/Subscription.h"

#include <algorithm>

namespace desktop {

Subscription::Subscription(std::size_t limit)
    : m_limit(limit)
{
}

HostUpdatePointer Subscription::take()
{
    const LockGuard lock(m_mutex);
    if (m_queue.empty()) {
        return nullptr;
    }
    HostUpdatePointer update = std::move(m_queue.front());
    m_queue.pop_front();
    if (m_queue.empty() && m_state == State::Open) {
        m_wakeup.clear();
    }
    return update;
}

Subscription::State Subscription::state() const
{
    const LockGuard lock(m_mutex);
    return m_state;
}

void Subscription::end()
{
    const LockGuard lock(m_mutex);
    close(State::Ended);
}

bool Subscription::add(const HostUpdatePointer& update)
{
    const LockGuard lock(m_mutex);
    if (m_state != State::Open) {
        return false;
    }
    if (m_queue.size() >= m_limit) {
        close(State::Overflowed);
        return false;
    }
    m_queue.push_back(update);
    m_wakeup.raise();
    return true;
}

void Subscription::endAfterQueue()
{
    const LockGuard lock(m_mutex);
    if (m_state == State::Open) {
        m_state = State::Ended;
        m_wakeup.raise();
    }
}

void Subscription::close(State state)
{
    m_state = state;
    m_queue.clear();
    m_wakeup.raise();
}

SubscriptionPointer SubscriberList::subscribe(std::size_t limit)
{
    auto subscription = std::make_shared<Subscription>(limit);
    const LockGuard lock(m_mutex);
    if (m_closed) {
        subscription->end();
    } else {
        m_subscriptions.push_back(subscription);
    }
    return subscription;
}

void SubscriberList::publish(HostUpdate update)
{
    const auto shared = std::make_shared<const HostUpdate>(std::move(update));
    const LockGuard lock(m_mutex);
    const auto closed = [&shared](const std::weak_ptr<Subscription>& subscription) {
        const SubscriptionPointer open = subscription.lock();
        return open == nullptr || !open->add(shared);
    };
    m_subscriptions.erase(std::remove_if(m_subscriptions.begin(), m_subscriptions.end(), closed), m_subscriptions.end());
}

void SubscriberList::close()
{
    const LockGuard lock(m_mutex);
    m_closed = true;
    for (const auto& subscription : m_subscriptions) {
        if (const SubscriptionPointer open = subscription.lock()) {
            open->endAfterQueue();
        }
    }
    m_subscriptions.clear();
}

} // namespace desktop
