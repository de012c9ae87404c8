#include "desktop/cli/HostClient.h"

#include "platform/SocMiddleware.h"
#include "platform/SocMwEvents.h"

#include <gtest/gtest.h>

#include <csignal>

namespace desktop {
namespace {

using WaitResult = HostClient::WaitResult;

constexpr const char* kChange = "storagemedia.folder.chgdir";
constexpr const char* kChanged = "storagemedia.folder.chgdir.complete";
constexpr std::chrono::seconds kTimeout(20);
constexpr std::chrono::seconds kAtOnce(0);

PublishNotificationCallback s_publish = nullptr;

/// A plugin that accepts every command, and answers with each event.
const PluginEntryPoints kPlugin = {
    [] { return "answering"; },
    [](const char* /*name*/, Json::Value* request, Json::Value* /*reply*/) { return !request->isMember("refuse"); },
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
        });
    }

    const Interrupts interrupts;
    Host host{kPlugin, {}};
    HostClient client{host, interrupts};
    int notifications = 0;
};

TEST_F(HostClientTest, AnswerThatComes_EndsTheWaiting)
{
    EXPECT_TRUE(client.execute(kChange, request("1")).result);
    answer("0");
    answer("1");
    EXPECT_EQ(wait(kTimeout), WaitResult::Answered);
    EXPECT_EQ(notifications, 2);
}

TEST_F(HostClientTest, AnswerBeforeTheReplyIsTaken_Counts)
{
    answer("1");
    EXPECT_TRUE(client.execute(kChange, request("1")).result);
    EXPECT_EQ(wait(kTimeout), WaitResult::Answered);
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
    EXPECT_EQ(client.pendingAnswers().at(kChange), "1");
}

TEST_F(HostClientTest, NoSignOfWork_TimesOut)
{
    client.execute(kChange, request("1"));
    EXPECT_EQ(wait(kAtOnce), WaitResult::TimedOut);
    EXPECT_EQ(client.pendingAnswers().at(kChange), "1");
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
