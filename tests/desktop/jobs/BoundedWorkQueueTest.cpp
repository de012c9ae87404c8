#include "desktop/jobs/BoundedWorkQueue.h"

#include <gtest/gtest.h>

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

TEST(BoundedWorkQueue, WithoutItems_Ends)
{
    BoundedWorkQueue<int> queue(1, [](int&) { FAIL(); });
    queue.finish();
}

} // namespace
} // namespace desktop
