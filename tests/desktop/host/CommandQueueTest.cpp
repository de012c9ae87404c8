#include "desktop/host/CommandQueue.h"

#include "tests/desktop/support/Waiting.h"

#include <gtest/gtest.h>

#include <atomic>

namespace desktop {
namespace {

using testsupport::Door;

constexpr int kThreads = 8;
constexpr int kCommandsPerThread = 50;

/// Answers a command with its own request.
void echo(QueuedCommand& command)
{
    command.reply.set_value({true, command.request, ""});
}

TEST(CommandQueue, CommandsOfManyThreads_RunOneAtATimeAndInTheOrderOfEachThread)
{
    std::atomic<int> running{0};
    std::vector<Json::Value> ran; // unguarded: the queue's thread alone writes it
    CommandQueue queue([&](QueuedCommand& command) {
        EXPECT_EQ(++running, 1);
        ran.push_back(command.request);
        --running;
        echo(command);
    });
    std::vector<std::thread> clients;
    for (int client = 0; client < kThreads; ++client) {
        clients.emplace_back([&queue, client] {
            for (int i = 0; i < kCommandsPerThread; ++i) {
                Json::Value request;
                request["client"] = client;
                request["number"] = i;
                EXPECT_EQ(queue.add("echo", request).get().body, request);
            }
        });
    }
    for (std::thread& client : clients) {
        client.join();
    }
    queue.close();
    ASSERT_EQ(ran.size(), static_cast<std::size_t>(kThreads * kCommandsPerThread));
    std::vector<int> next(kThreads, 0);
    for (const Json::Value& request : ran) {
        EXPECT_EQ(request["number"].asInt(), next[request["client"].asUInt()]++);
    }
}

TEST(CommandQueue, CommandsQueuedWhileOneRuns_FollowInTheirOrder)
{
    Door door;
    std::vector<std::string> ran;
    CommandQueue queue([&](QueuedCommand& command) {
        EXPECT_TRUE(door.wait());
        ran.push_back(command.name);
        echo(command);
    });
    std::vector<std::future<CommandReply>> replies;
    for (const char* name : {"first", "second", "third"}) {
        replies.push_back(queue.add(name, Json::Value()));
    }
    door.open();
    replies.back().wait();
    EXPECT_EQ(ran, (std::vector<std::string>{"first", "second", "third"}));
}

TEST(CommandQueue, Close_LetsTheRunningCommandEndAndRefusesTheOthers)
{
    Door running;
    Door goOn;
    CommandQueue queue([&](QueuedCommand& command) {
        running.open();
        EXPECT_TRUE(goOn.wait());
        echo(command);
    });
    auto first = queue.add("first", Json::Value());
    auto second = queue.add("second", Json::Value());
    ASSERT_TRUE(running.wait());
    std::thread closing([&queue] { queue.close(); });
    const CommandReply refused = second.get(); // while the first still runs
    EXPECT_FALSE(refused.result);
    EXPECT_EQ(refused.error, "The host is closing: the command has not been run.");
    goOn.open();
    closing.join();
    EXPECT_TRUE(first.get().result);
    EXPECT_EQ(queue.add("third", Json::Value()).get().error, refused.error);
}

} // namespace
} // namespace desktop
