#include "desktop/host/Subscription.h"

#include "tests/desktop/support/Waiting.h"

#include <gtest/gtest.h>

#include <poll.h>

#include <thread>

namespace desktop {
namespace {

using State = Subscription::State;

bool isReadable(const Subscription& subscription, std::chrono::milliseconds deadline = std::chrono::milliseconds(0))
{
    pollfd wait = {subscription.fd(), POLLIN, 0};
    return poll(&wait, 1, static_cast<int>(deadline.count())) > 0;
}

FolderProgress numbered(std::size_t number)
{
    return {"/stick", number};
}

/// The number of the next update; 0 when there is none.
std::size_t takeNumber(Subscription& subscription)
{
    const HostUpdatePointer update = subscription.take();
    return update != nullptr ? std::get<FolderProgress>(*update).entries : 0;
}

/// Takes numbers until the subscription has no more to come, as a subscriber's thread does.
std::vector<std::size_t> takeToTheEnd(Subscription& subscription)
{
    std::vector<std::size_t> numbers;
    while (isReadable(subscription, testsupport::kDeadline)) {
        const std::size_t number = takeNumber(subscription);
        if (number == 0 && subscription.state() != State::Open) {
            return numbers;
        }
        if (number != 0) {
            numbers.push_back(number);
        }
    }
    ADD_FAILURE() << "the subscription does not end";
    return numbers;
}

TEST(Subscription, EveryUpdate_ReachesEverySubscriberInOrder)
{
    SubscriberList list;
    const auto first = list.subscribe(2);
    list.publish(numbered(1));
    const auto second = list.subscribe(2);
    list.publish(numbered(2));
    EXPECT_EQ(takeNumber(*first), 1U);
    EXPECT_EQ(takeNumber(*first), 2U);
    EXPECT_EQ(takeNumber(*second), 2U); // what came before it subscribed is not for it
    EXPECT_EQ(second->take(), nullptr);
    EXPECT_EQ(second->state(), State::Open);
}

TEST(Subscription, Descriptor_IsReadableWhileThereIsSomethingToTake)
{
    SubscriberList list;
    const auto subscription = list.subscribe(10);
    EXPECT_FALSE(isReadable(*subscription));
    list.publish(numbered(1));
    list.publish(numbered(2));
    subscription->take();
    EXPECT_TRUE(isReadable(*subscription));
    subscription->take();
    EXPECT_FALSE(isReadable(*subscription));
}

TEST(Subscription, FullQueue_CutsOffThatSubscriberAlone)
{
    SubscriberList list;
    const auto slow = list.subscribe(2);
    const auto quick = list.subscribe(2);
    for (std::size_t number = 1; number <= 3; ++number) {
        list.publish(numbered(number));
        EXPECT_EQ(takeNumber(*quick), number);
    }
    EXPECT_EQ(slow->state(), State::Overflowed);
    EXPECT_EQ(slow->take(), nullptr);
    EXPECT_TRUE(isReadable(*slow));
    EXPECT_EQ(quick->state(), State::Open);
    list.publish(numbered(4));
    EXPECT_EQ(slow->take(), nullptr);
    EXPECT_EQ(takeNumber(*quick), 4U);
}

TEST(Subscription, AfterUnsubscribing_NothingIsDelivered)
{
    SubscriberList list;
    const auto subscription = list.subscribe(10);
    list.publish(numbered(1));
    subscription->end();
    EXPECT_EQ(subscription->state(), State::Ended);
    EXPECT_TRUE(isReadable(*subscription));
    list.publish(numbered(2));
    EXPECT_EQ(subscription->take(), nullptr);
}

TEST(Subscription, SubscriptionLetGo_IsNotKept)
{
    SubscriberList list;
    const std::weak_ptr<Subscription> subscription = list.subscribe(10);
    EXPECT_TRUE(subscription.expired());
    list.publish(numbered(1));
}

TEST(Subscription, ListClosed_EndsItAfterWhatIsQueued)
{
    SubscriberList list;
    const auto subscription = list.subscribe(10);
    list.publish(numbered(1));
    list.close();
    list.publish(numbered(2));
    EXPECT_EQ(subscription->state(), State::Ended);
    EXPECT_EQ(takeNumber(*subscription), 1U);
    EXPECT_EQ(subscription->take(), nullptr);
    EXPECT_EQ(list.subscribe(10)->state(), State::Ended);
}

TEST(Subscription, SubscribersOnThreadsOfTheirOwn_TakeEveryUpdateInOrder)
{
    constexpr std::size_t kUpdates = 1000;
    std::vector<std::size_t> all(kUpdates);
    for (std::size_t i = 0; i < kUpdates; ++i) {
        all[i] = i + 1;
    }
    SubscriberList list;
    std::vector<std::thread> subscribers;
    for (int i = 0; i < 4; ++i) {
        subscribers.emplace_back(
            [subscription = list.subscribe(kUpdates), &all] { EXPECT_EQ(takeToTheEnd(*subscription), all); });
    }
    for (const std::size_t number : all) {
        list.publish(numbered(number));
    }
    list.close();
    for (std::thread& subscriber : subscribers) {
        subscriber.join();
    }
}

// Whatever comes and goes meanwhile, a subscriber that stays misses nothing and gets nothing twice.
TEST(Subscription, SubscribersThatComeAndGoWhileManyPublish_DisturbNobody)
{
    constexpr std::size_t kUpdatesPerThread = 500;
    constexpr std::size_t kPublishers = 3;
    SubscriberList list;
    const auto steady = list.subscribe(kPublishers * kUpdatesPerThread);
    std::vector<std::thread> threads;
    for (std::size_t publisher = 0; publisher < kPublishers; ++publisher) {
        threads.emplace_back([&list, publisher] {
            for (std::size_t i = 1; i <= kUpdatesPerThread; ++i) {
                list.publish(numbered(publisher * kUpdatesPerThread + i));
            }
        });
    }
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back([&list] {
            for (int round = 0; round < 200; ++round) {
                const auto brief = list.subscribe(1 + static_cast<std::size_t>(round) % 3);
                brief->take();
                brief->end();
                EXPECT_EQ(brief->take(), nullptr);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::vector<std::size_t> last(kPublishers, 0);
    for (std::size_t i = 0; i < kPublishers * kUpdatesPerThread; ++i) {
        const std::size_t number = takeNumber(*steady);
        ASSERT_NE(number, 0U);
        std::size_t& before = last[(number - 1) / kUpdatesPerThread];
        EXPECT_GT(number, before);
        before = number;
    }
    EXPECT_EQ(steady->take(), nullptr);
}

TEST(Subscription, EndedByAnotherThread_WakesTheOneThatWaits)
{
    SubscriberList list;
    const auto subscription = list.subscribe(10);
    std::thread waiting([&subscription] { EXPECT_TRUE(takeToTheEnd(*subscription).empty()); });
    subscription->end();
    waiting.join();
}

} // namespace
} // namespace desktop
