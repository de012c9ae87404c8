#include "desktop/jobs/BoundedWorkQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <numeric>
#include <stdexcept>
#include <vector>

namespace desktop {
namespace {

TEST(BoundedWorkQueue, Items_AreAllWorkedOnInTheirOrder)
{
    std::vector<int> done;
    BoundedWorkQueue<int> queue(2, [&done](int& item) { done.push_back(item); });
    std::vector<int> items(1000);
    std::iota(items.begin(), items.end(), 0);
    for (const int item : items) {
        queue.put(item);
    }
    queue.finish();
    EXPECT_EQ(done, items);
}

TEST(BoundedWorkQueue, Work_IsDoneOnAnotherThread)
{
    std::thread::id worker;
    BoundedWorkQueue<int> queue(1, [&worker](int&) { worker = std::this_thread::get_id(); });
    queue.put(1);
    queue.finish();
    EXPECT_NE(worker, std::thread::id());
    EXPECT_NE(worker, std::this_thread::get_id());
}

TEST(BoundedWorkQueue, WorkThatFails_EndsAndTellsAtTheEnd)
{
    std::vector<int> done;
    BoundedWorkQueue<int> queue(1, [&done](int& item) {
        if (item == 2) {
            throw std::runtime_error("no more");
        }
        done.push_back(item);
    });
    for (const int item : {1, 2, 3}) {
        queue.put(item);
    }
    EXPECT_THROW(queue.finish(), std::runtime_error);
    EXPECT_EQ(done, std::vector<int>{1});
}

TEST(BoundedWorkQueue, WaitUntilIdle_WaitsForTheWorkAndForItsItemsToGo)
{
    std::atomic<int> alive{0};
    const auto makeItem = [&alive] {
        ++alive;
        return std::shared_ptr<void>(nullptr, [&alive](void*) { --alive; });
    };
    BoundedWorkQueue<std::shared_ptr<void>> queue(2, [](std::shared_ptr<void>&) { std::this_thread::yield(); });
    for (int round = 0; round < 200; ++round) {
        for (int i = 0; i < 3; ++i) {
            queue.put(makeItem());
        }
        queue.waitUntilIdle();
        ASSERT_EQ(alive, 0);
    }
    queue.finish();
}

TEST(BoundedWorkQueue, WithoutItems_Ends)
{
    BoundedWorkQueue<int> queue(1, [](int&) { FAIL(); });
    queue.finish();
}

} // namespace
} // namespace desktop
