#include "desktop/jobs/EventQueue.h"

#include "tests/desktop/support/Waiting.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

namespace desktop {
namespace {

struct Delivery {
    int id;
    std::string text;
    std::thread::id thread;
};

testsupport::Gathered<Delivery>* s_deliveries = nullptr;

void gather(int id, void* data)
{
    s_deliveries->add({id, data != nullptr ? *static_cast<std::string*>(data) : "", std::this_thread::get_id()});
}

class EventQueueTest : public testing::Test {
protected:
    EventQueueTest()
    {
        s_deliveries = &deliveries;
        queue.setListener(&gather);
    }

    static std::shared_ptr<void> text(const std::string& value) { return std::make_shared<std::string>(value); }

    testsupport::Gathered<Delivery> deliveries;
    EventQueue queue;
};

TEST_F(EventQueueTest, EventsPosted_ComeInOrderOnOneOtherThread)
{
    queue.start();
    for (int i = 0; i < 100; ++i) {
        queue.post(i, text(std::to_string(i)));
    }
    const auto all = deliveries.waitFor(100);
    ASSERT_EQ(all.size(), 100U);
    for (int i = 0; i < 100; ++i) {
        const Delivery& delivery = all[static_cast<std::size_t>(i)];
        EXPECT_EQ(delivery.id, i);
        EXPECT_EQ(delivery.text, std::to_string(i));
        EXPECT_EQ(delivery.thread, all[0].thread);
        EXPECT_NE(delivery.thread, std::this_thread::get_id());
    }
}

TEST_F(EventQueueTest, BeforeStart_EventsGather)
{
    queue.post(1);
    EXPECT_TRUE(deliveries.sofar().empty());
    queue.start();
    EXPECT_EQ(deliveries.waitFor(1).size(), 1U);
}

TEST_F(EventQueueTest, Stop_DeliversWhatIsDueAndNothingLater)
{
    for (int i = 0; i < 1000; ++i) {
        queue.post(i);
    }
    queue.start();
    queue.stop();
    EXPECT_EQ(deliveries.sofar().size(), 1000U);
    queue.post(7);
    EXPECT_EQ(deliveries.sofar().size(), 1000U);
    queue.start();
    EXPECT_EQ(deliveries.waitFor(1001).size(), 1001U);
}

TEST_F(EventQueueTest, StopWithoutStart_DropsWhatHasGathered)
{
    queue.post(1);
    queue.stop();
    queue.post(2);
    queue.start();
    queue.stop();
    ASSERT_EQ(deliveries.sofar().size(), 1U);
    EXPECT_EQ(deliveries.sofar()[0].id, 2);
}

TEST_F(EventQueueTest, PostedWhileWhatHasGatheredIsDropped_LeavesTheQueueWhole)
{
    constexpr int kEvents = 200'000;
    std::atomic<bool> posted{false};
    std::thread late([&] {
        for (int i = 0; i < kEvents; ++i) {
            queue.post(i, text("late"));
        }
        posted = true;
    });
    while (!posted) {
        queue.stop();
    }
    late.join();
    queue.stop();
    queue.post(kEvents);
    queue.start();
    queue.stop();
    ASSERT_EQ(deliveries.sofar().size(), 1U);
    EXPECT_EQ(deliveries.sofar()[0].id, kEvents);
}

TEST_F(EventQueueTest, EventNoLongerWanted_IsDropped)
{
    queue.post(1, nullptr, [] { return false; });
    queue.post(2, nullptr, [] { return true; });
    queue.start();
    queue.stop();
    ASSERT_EQ(deliveries.sofar().size(), 1U);
    EXPECT_EQ(deliveries.sofar()[0].id, 2);
}

TEST_F(EventQueueTest, WhileHeld_WantedIsNotEvenAsked)
{
    bool wanted = true;
    queue.start();
    {
        const auto turn = queue.holdDelivery();
        queue.post(1, nullptr, [&wanted] { return wanted; });
        wanted = false; // unguarded: only the turn keeps the event thread away
    }
    queue.stop();
    EXPECT_TRUE(deliveries.sofar().empty());
}

TEST_F(EventQueueTest, WithoutListener_EventsAreDropped)
{
    queue.setListener(nullptr);
    queue.post(1);
    queue.start();
    queue.stop();
    queue.setListener(&gather);
    EXPECT_TRUE(deliveries.sofar().empty());
}

} // namespace
} // namespace desktop
