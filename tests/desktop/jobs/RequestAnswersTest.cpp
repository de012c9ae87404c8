#include "desktop/jobs/RequestAnswers.h"

#include "tests/desktop/support/Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

testsupport::Gathered<int>* s_events = nullptr;

class RequestAnswersTest : public testing::Test {
protected:
    RequestAnswersTest()
    {
        s_events = &delivered;
        events.setListener([](int event, void*) { s_events->add(event); });
    }

    static std::shared_ptr<void> data() { return std::make_shared<int>(1); }

    testsupport::Gathered<int> delivered;
    EventQueue events;
    RequestAnswers answers{events};
};

TEST_F(RequestAnswersTest, AfterTheEnd_NothingMoreComes)
{
    answers.piece(6, data());
    answers.end(5, data());
    answers.piece(6, data());
    answers.end(5, data());
    events.start();
    events.stop();
    EXPECT_THAT(delivered.sofar(), ElementsAre(6, 5));
}

TEST_F(RequestAnswersTest, Dropped_DeliversNothingEvenOfWhatWasPosted)
{
    answers.piece(6, data());
    answers.end(5, data());
    answers.drop();
    events.start();
    events.stop();
    EXPECT_THAT(delivered.sofar(), IsEmpty());
}

TEST_F(RequestAnswersTest, MoreThanMayWait_WaitsForTheListenerAndLosesNothing)
{
    std::thread work([this] {
        for (int i = 0; i < 1000; ++i) {
            answers.piece(i, data());
        }
        answers.end(1000, data());
    });
    events.start();
    const std::vector<int> all = delivered.waitFor(1001);
    work.join();
    ASSERT_EQ(all.size(), 1001U);
    EXPECT_TRUE(std::is_sorted(all.begin(), all.end()));
}

TEST_F(RequestAnswersTest, WorkThatWaits_GoesOnWhenTheAnswersAreDropped)
{
    std::atomic<int> posted{0};
    std::thread work([&] {
        for (int i = 0; i < 1000; ++i) {
            answers.piece(6, data()); // nobody listens: the queue has not been started
            ++posted;
        }
    });
    const auto deadline = std::chrono::steady_clock::now() + testsupport::kDeadline;
    while (posted < 64 && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    EXPECT_GE(posted, 64);
    EXPECT_LT(posted, 1000);
    answers.drop();
    work.join();
    EXPECT_EQ(posted, 1000);
}

} // namespace
} // namespace desktop
