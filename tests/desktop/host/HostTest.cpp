#include "desktop/host/Host.h"

#include "desktop/host/CommandNames.h"

#include "platform/SocMiddleware.h"

#include "tests/desktop/support/FakePlayers.h"
#include "tests/desktop/support/Waiting.h"

#include <gtest/gtest.h>

#include <poll.h>

#include <algorithm>
#include <atomic>
#include <iterator>
#include <thread>

namespace desktop {
namespace {

using testsupport::Door;
using testsupport::kDeadline;

constexpr std::size_t kLimit = 1000;
constexpr int kEvent = 5;

/// A plugin of one function for each thing that a host has to cope with.
class ScriptedPlugin {
public:
    ScriptedPlugin() { s_current = this; }
    ~ScriptedPlugin() { s_current = nullptr; }

    static PluginEntryPoints entryPoints() { return {&load, &execute, &unload, &setCallback}; }

    std::vector<std::string> calls; ///< of the entry points, in order
    Door commandRuns;
    Door commandMayEnd;
    std::atomic<int> eventsDuringCommands{0};

private:
    static const char* load()
    {
        s_current->calls.emplace_back("load");
        SocMiddleware::getInstance()->getStorageUsbMgr()->setListener(&onEvent);
        return "scripted";
    }

    static void unload() { s_current->calls.emplace_back("unload"); }

    static void setCallback(PublishNotificationCallback callback)
    {
        s_current->calls.emplace_back("setCallback");
        s_current->m_publish = callback;
    }

    static bool execute(const char* name, Json::Value* request, Json::Value* reply)
    {
        s_current->m_inCommand = true;
        const bool result = run(name, request, reply);
        s_current->m_inCommand = false;
        return result;
    }

    static bool run(const char* name, Json::Value* request, Json::Value* reply)
    {
        const std::string command = name;
        s_current->calls.push_back(command);
        if (command == "throw") {
            s_current->m_inCommand = false;
            throw std::runtime_error("no such member");
        }
        if (command == "wait") {
            s_current->commandRuns.open();
            return s_current->commandMayEnd.wait();
        }
        if (command == "publish") {
            s_current->publish("by the command", *request);
        }
        if (command == "publish" || command == "raise") {
            DesktopMiddleware::instance().events().post(kEvent, std::make_shared<Json::Value>(*request));
            for (int i = 0; i < 100; ++i) {
                std::this_thread::yield(); // the event thread has its chance to be wrong
            }
        }
        *reply = *request;
        return command != "refuse";
    }

    static void onEvent(int /*id*/, void* data)
    {
        s_current->eventsDuringCommands += s_current->m_inCommand ? 1 : 0;
        s_current->publish("by the event", data != nullptr ? *static_cast<Json::Value*>(data) : Json::Value());
    }

    void publish(const char* name, Json::Value body) { m_publish("storagemedia", name, body); }

    static ScriptedPlugin* s_current;

    PublishNotificationCallback m_publish = nullptr;
    std::atomic<bool> m_inCommand{false};
};

ScriptedPlugin* ScriptedPlugin::s_current = nullptr;

/// The next update of the kind; null when none comes.
template <typename Update>
std::shared_ptr<const Update> next(Subscription& subscription)
{
    pollfd wait = {subscription.fd(), POLLIN, 0};
    const auto deadline = std::chrono::milliseconds(kDeadline).count();
    while (poll(&wait, 1, static_cast<int>(deadline)) > 0) {
        const HostUpdatePointer update = subscription.take();
        if (update == nullptr) {
            return nullptr;
        }
        if (const auto* wanted = std::get_if<Update>(update.get())) {
            return {update, wanted};
        }
    }
    return nullptr;
}

Json::Value numbered(int number)
{
    Json::Value request;
    request["number"] = number;
    return request;
}

class HostTest : public testing::Test {
protected:
    HostTest() { host.start(); }

    DesktopSettings settings()
    {
        DesktopSettings settings;
        settings.players = players.factory();
        return settings;
    }

    ScriptedPlugin plugin;
    testsupport::FakePlayers players;
    Host host{ScriptedPlugin::entryPoints(), settings()};
};

TEST_F(HostTest, Plugin_IsLoadedFedAndUnloadedInOrder)
{
    EXPECT_TRUE(host.execute("echo").get().result);
    host.close();
    EXPECT_EQ(plugin.calls, (std::vector<std::string>{"load", "setCallback", "echo", "unload"}));
}

TEST_F(HostTest, Command_IsGivenItsHashAndAnswered)
{
    const CommandReply reply = host.execute("echo", numbered(1)).get();
    EXPECT_TRUE(reply.result);
    EXPECT_EQ(reply.body["number"], 1);
    EXPECT_EQ(reply.body["CmdHash"], commandHash("echo"));
    EXPECT_EQ(reply.error, "");
    EXPECT_FALSE(host.execute("refuse").get().result);
}

TEST_F(HostTest, RequestThatCannotBeUsed_IsAnsweredWithAnErrorAndTheHostGoesOn)
{
    EXPECT_EQ(host.execute("throw").get().error, "The request cannot be used: no such member");
    EXPECT_NE(host.execute("echo", Json::Value("text")).get().error, "");
    EXPECT_TRUE(host.execute("echo").get().result);
}

TEST_F(HostTest, Reply_IsThereBeforeAnyNotificationOfItsCommand)
{
    const auto subscription = host.subscribe(kLimit);
    for (int i = 0; i < 200; ++i) {
        const auto reply = host.execute("publish", numbered(i));
        for (const char* name : {"by the command", "by the event"}) {
            const auto notification = next<Notification>(*subscription);
            ASSERT_NE(notification, nullptr);
            EXPECT_EQ(notification->name, name);
            EXPECT_EQ(notification->source, "storagemedia");
            EXPECT_EQ(notification->body["number"], i);
            EXPECT_EQ(reply.wait_for(std::chrono::seconds(0)), std::future_status::ready);
        }
    }
    EXPECT_EQ(plugin.eventsDuringCommands, 0);
}

TEST_F(HostTest, WhileACommandRuns_NoEventIsDelivered)
{
    const auto subscription = host.subscribe(kLimit);
    auto reply = host.execute("wait");
    ASSERT_TRUE(plugin.commandRuns.wait());
    host.switchScreen(true); // no event: it is published at once
    DesktopMiddleware::instance().events().post(kEvent);
    EXPECT_TRUE(next<ScreenSwitched>(*subscription)->off);
    EXPECT_EQ(subscription->take(), nullptr);
    plugin.commandMayEnd.open();
    EXPECT_TRUE(reply.get().result);
    EXPECT_EQ(next<Notification>(*subscription)->name, "by the event");
    host.switchScreen(false);
}

TEST_F(HostTest, ManyClients_EachGetTheirOwnRepliesAndAllNotifications)
{
    constexpr int kClients = 4;
    constexpr int kCommands = 50;
    std::vector<SubscriptionPointer> subscriptions;
    std::generate_n(std::back_inserter(subscriptions), kClients, [this] { return host.subscribe(kLimit); });
    std::vector<std::thread> clients;
    for (int client = 0; client < kClients; ++client) {
        clients.emplace_back([this, client, subscription = subscriptions[static_cast<std::size_t>(client)]] {
            for (int i = 0; i < kCommands; ++i) {
                const int number = client * kCommands + i;
                EXPECT_EQ(host.execute("raise", numbered(number)).get().body["number"], number);
            }
            std::vector<bool> seen(kClients * kCommands, false);
            for (std::size_t i = 0; i < seen.size(); ++i) {
                const auto notification = next<Notification>(*subscription);
                ASSERT_NE(notification, nullptr);
                seen[notification->body["number"].asUInt()] = true;
            }
            EXPECT_EQ(std::count(seen.begin(), seen.end(), true), kClients * kCommands);
        });
    }
    for (std::thread& client : clients) {
        client.join();
    }
}

TEST_F(HostTest, FolderThatCannotBeRead_IsToldToSubscribers)
{
    const auto subscription = host.subscribe(kLimit);
    FolderBrowser& browser = SocMiddleware::getInstance()->getStorageUsbMgr()->m_folderBrowser;
    EXPECT_NE(browser.chdir("/nowhere", 9), 0);
    const auto failure = next<ReadFailure>(*subscription);
    ASSERT_NE(failure, nullptr);
    EXPECT_EQ(failure->path, "/nowhere");
    EXPECT_EQ(failure->reason, "Not on a stick");
}

TEST_F(HostTest, Screen_IsSwitchedAndToldOf)
{
    const auto subscription = host.subscribe(kLimit);
    host.switchScreen(true);
    EXPECT_TRUE(host.isScreenOff());
    EXPECT_TRUE(next<ScreenSwitched>(*subscription)->off);
    host.switchScreen(false);
    EXPECT_FALSE(host.isScreenOff());
    EXPECT_FALSE(next<ScreenSwitched>(*subscription)->off);
}

TEST_F(HostTest, KeyOfAPlayersWindow_IsToldToSubscribers)
{
    const auto subscription = host.subscribe(kLimit);
    FolderFileInfo_s film;
    film.type = FILE_TYPE_VIDEO;
    const EntryList list = std::make_shared<std::vector<FolderFileInfo_s>>(1, film);
    ASSERT_TRUE(DesktopMiddleware::instance().playback().play({list, FILE_TYPE_VIDEO}));
    players.video().press("SPACE");
    const auto pressed = next<KeyPressed>(*subscription);
    ASSERT_NE(pressed, nullptr);
    EXPECT_EQ(pressed->key, "SPACE");
}

TEST_F(HostTest, Close_RefusesQueuedCommandsAndEndsSubscriptions)
{
    const auto subscription = host.subscribe(kLimit);
    auto running = host.execute("wait");
    auto queued = host.execute("echo");
    ASSERT_TRUE(plugin.commandRuns.wait());
    std::thread closing([this] { host.close(); });
    EXPECT_EQ(queued.get().error, "The host is closing: the command has not been run.");
    plugin.commandMayEnd.open();
    closing.join();
    EXPECT_TRUE(running.get().result);
    EXPECT_EQ(plugin.calls.back(), "unload");
    EXPECT_EQ(next<Notification>(*subscription), nullptr);
    EXPECT_EQ(subscription->state(), Subscription::State::Ended);
    EXPECT_EQ(host.subscribe(kLimit)->state(), Subscription::State::Ended);
    EXPECT_NE(host.execute("echo").get().error, "");
}

TEST_F(HostTest, EventsThatAreDueAtTheEnd_ReachTheSubscribers)
{
    const auto subscription = host.subscribe(kLimit);
    auto reply = host.execute("raise", numbered(1));
    reply.wait();
    host.close();
    ASSERT_NE(next<Notification>(*subscription), nullptr);
    EXPECT_EQ(next<Notification>(*subscription), nullptr);
}

TEST_F(HostTest, EventsBeforeTheStart_WaitForTheFirstSubscribers)
{
    host.close();
    Host second(ScriptedPlugin::entryPoints(), {});
    second.execute("raise", numbered(1)).wait();
    const auto subscription = second.subscribe(kLimit);
    second.start();
    const auto notification = next<Notification>(*subscription);
    ASSERT_NE(notification, nullptr);
    EXPECT_EQ(notification->body["number"], 1);
}

TEST_F(HostTest, SubscriptionKeptLongerThanTheHost_IsUsable)
{
    SubscriptionPointer subscription;
    host.close();
    {
        Host second(ScriptedPlugin::entryPoints(), {});
        second.start();
        subscription = second.subscribe(kLimit);
        second.execute("raise", numbered(1)).wait();
    }
    EXPECT_EQ(next<Notification>(*subscription)->body["number"], 1);
    EXPECT_EQ(subscription->state(), Subscription::State::Ended);
}

} // namespace
} // namespace desktop
