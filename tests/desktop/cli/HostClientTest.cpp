#include "desktop/cli/HostClient.h"

#include "platform/SocMiddleware.h"
#include "platform/SocMwEvents.h"

#include <gtest/gtest.h>

#include <poll.h>

#include <csignal>

namespace desktop {
namespace {

using WaitResult = HostClient::WaitResult;

constexpr const char* kChange = "storagemedia.folder.chgdir";
constexpr const char* kChanged = "storagemedia.folder.chgdir.complete";
constexpr std::chrono::seconds kTimeout(20);
constexpr std::chrono::seconds kAtOnce(0);

PublishNotificationCallback s_publish = nullptr;

/// A plugin that accepts every command, and answers with each event. A request with "stop" ends the change that runs.
const PluginEntryPoints kPlugin = {
    [] { return "answering"; },
    [](const char* /*name*/, Json::Value* request, Json::Value* /*reply*/) {
        if (request->isMember("stop")) {
            DesktopMiddleware::instance().requestDropped(BackgroundRequest::DirectoryChange);
        }
        return !request->isMember("refuse");
    },
    [] {},
    [](PublishNotificationCallback callback) { s_publish = callback; },
};

class HostClientTest : public testing::Test {
protected:
    HostClientTest()
    {
        host.start();
        SocMiddleware::getInstance()->getStorageUsbMgr()->setListener(
            [](int /*id*/, void* data) { s_publish("channel", kChanged, *static_cast<Json::Value*>(data)); });
    }

    static Json::Value request(const std::string& reqId)
    {
        Json::Value object;
        object["channelId"] = "channel";
        object["reqId"] = reqId;
        return object;
    }

    static void answer(const std::string& reqId)
    {
        DesktopMiddleware::instance().events().post(SOCMW_MM_EVENT_FB_CHANGE_DIR_COMPLETED,
                                                    std::make_shared<Json::Value>(request(reqId)));
    }

    WaitResult wait(std::chrono::milliseconds timeout)
    {
        return client.waitForAnswers(timeout, [this](const HostUpdate& update) {
            notifications += std::holds_alternative<Notification>(update) ? 1 : 0;
            if (const auto* end = std::get_if<RequestEnded>(&update)) {
                ends.push_back(*end);
            }
        });
    }

    std::string onlyPending() const
    {
        const auto& pending = client.pendingAnswers();
        return pending.size() == 1 ? pending.begin()->second.reqId.asString() : std::to_string(pending.size()) + " pending";
    }

    const Interrupts interrupts;
    Host host{kPlugin, {}};
    HostClient client{host, interrupts};
    int notifications = 0;
    std::vector<RequestEnded> ends;
};

TEST_F(HostClientTest, AnswerThatComes_EndsTheWaiting)
{
    EXPECT_TRUE(client.execute(kChange, request("1")).result);
    answer("1");
    EXPECT_EQ(wait(kTimeout), WaitResult::Answered);
    EXPECT_EQ(notifications, 1);
    ASSERT_EQ(ends.size(), 1U);
    EXPECT_EQ(ends[0].reqId, "1");
    EXPECT_TRUE(ends[0].answered);
}

TEST_F(HostClientTest, AnswerToAnEarlierRequestOfTheSameReqId_IsNotTakenForTheLaterOnes)
{
    client.execute(kChange, request("1"));
    answer("1");
    pollfd first = {client.fd(), POLLIN, 0};
    ASSERT_EQ(poll(&first, 1, static_cast<int>(std::chrono::milliseconds(kTimeout).count())), 1);
    client.execute(kChange, request("1"));
    EXPECT_EQ(wait(kAtOnce), WaitResult::TimedOut);
    answer("1");
    EXPECT_EQ(wait(kTimeout), WaitResult::Answered);
    EXPECT_EQ(notifications, 2);
}

TEST_F(HostClientTest, RequestThatAnotherCommandEnds_IsNotWaitedFor)
{
    client.execute(kChange, request("1"));
    Json::Value stop;
    stop["stop"] = true;
    stop["refuse"] = true;
    EXPECT_FALSE(client.execute("storagemedia.folder.user.cancel", stop).result);
    EXPECT_EQ(wait(kTimeout), WaitResult::Answered);
    ASSERT_EQ(ends.size(), 1U);
    EXPECT_EQ(ends[0].command, kChange);
    EXPECT_FALSE(ends[0].answered);
}

TEST_F(HostClientTest, RequestThatAnotherClientEnds_IsNotWaitedFor)
{
    client.execute(kChange, request("1"));
    HostClient other(host, interrupts);
    Json::Value stop = request("1");
    stop["stop"] = true;
    other.execute(kChange, stop);
    EXPECT_EQ(wait(kTimeout), WaitResult::Answered);
    EXPECT_EQ(other.pendingAnswers().size(), 1U);
}

TEST_F(HostClientTest, RefusedRequest_IsNotWaitedFor)
{
    Json::Value refused = request("1");
    refused["refuse"] = true;
    EXPECT_FALSE(client.execute(kChange, refused).result);
    EXPECT_EQ(wait(kTimeout), WaitResult::Answered);
}

TEST_F(HostClientTest, RequestThatCannotBeUsed_LeavesTheOneBefore)
{
    client.execute(kChange, request("1"));
    EXPECT_NE(client.execute(kChange, Json::Value("text")).error, "");
    EXPECT_EQ(onlyPending(), "1");
}

TEST_F(HostClientTest, NoSignOfWork_TimesOut)
{
    client.execute(kChange, request("1"));
    EXPECT_EQ(wait(kAtOnce), WaitResult::TimedOut);
    EXPECT_EQ(onlyPending(), "1");
}

TEST_F(HostClientTest, HostThatEnds_EndsTheWaiting)
{
    client.execute(kChange, request("1"));
    host.close();
    EXPECT_EQ(wait(kTimeout), WaitResult::CutOff);
}

// The signal is sent to this thread and stays blocked; it is taken back for the tests that follow.
TEST_F(HostClientTest, Interrupt_EndsTheWaiting)
{
    client.execute(kChange, request("1"));
    ASSERT_EQ(pthread_kill(pthread_self(), SIGTERM), 0);
    EXPECT_EQ(wait(kTimeout), WaitResult::Interrupted);
    sigset_t term;
    sigemptyset(&term);
    sigaddset(&term, SIGTERM);
    const timespec now = {};
    EXPECT_EQ(sigtimedwait(&term, nullptr, &now), SIGTERM);
}

} // namespace
} // namespace desktop
