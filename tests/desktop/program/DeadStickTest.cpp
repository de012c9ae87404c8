// A stick whose file system has stopped answering: whatever looks at it waits, as in the kernel's own calls.

#include "tests/desktop/support/Computer.h"
#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include "platform/SocMwTypes.h"

#include <gtest/gtest.h>

#include <csignal>
#include <optional>

namespace {

using testsupport::changeRequest;
using testsupport::Computer;
using testsupport::Program;
using testsupport::Shell;

// Mounts a file system that this process would have to serve, and serves it not, until its input ends.
constexpr const char* kMountDead = "mount -t tmpfs none /mnt && mkdir /mnt/dead && exec 3<>/dev/fuse && "
                                   "mount -i -t fuse -o fd=3,rootmode=40000,user_id=0,group_id=0 dead /mnt/dead && "
                                   "echo mounted && exec cat";

class DeadStickTest : public testing::Test {
protected:
    void SetUp() override
    {
        std::vector<std::string> command = computer.on();
        command.insert(command.end(), {"sh", "-c", kMountDead});
        server.emplace(command);
        if (!computer.works() || !server->readUntil([this] { return server->output() == "mounted\n"; })) {
            GTEST_SKIP() << "this machine mounts no file system of a program: " << server->errors();
        }
    }

    /// The words before a program that looks at the dead stick. A leak checker would wait for its threads, and one of them
    /// never comes back from the kernel.
    std::vector<std::string> on() const
    {
        std::vector<std::string> words = computer.on();
        words.insert(words.end(), {"env", "ASAN_OPTIONS=detect_leaks=0"});
        return words;
    }

    /// Runs desktop-tv on the dead stick; its status.
    int run(const std::vector<std::string>& arguments)
    {
        std::vector<std::string> command = on();
        command.insert(command.end(), {DESKTOP_TV, "--stick", "/mnt/dead", "--cache", "none"});
        command.insert(command.end(), arguments.begin(), arguments.end());
        Program program(command);
        const int status = program.wait();
        output = program.output();
        errors = program.errors();
        return status;
    }

    Computer computer;
    std::optional<Program> server; ///< goes first, and lets go of all that waits
    std::string output;
    std::string errors;
};

TEST_F(DeadStickTest, Browse_SaysSoAndEnds)
{
    EXPECT_EQ(run({"browse"}), 1);
    EXPECT_EQ(output.substr(0, output.find('\n')), "dead  does not answer");
    EXPECT_EQ(errors, "desktop-tv: /mnt/dead: The stick does not answer\n");
}

class EveryCommand : public DeadStickTest, public testing::WithParamInterface<std::vector<std::string>> {};

TEST_P(EveryCommand, OnAStickThatDoesNotAnswer_SaysSoAndEnds)
{
    EXPECT_EQ(run(GetParam()), 1);
    const std::string file = GetParam().front() == "info" ? "/a.jpg" : "";
    EXPECT_EQ(errors, "desktop-tv: /mnt/dead" + file + ": The stick does not answer\n");
}

INSTANTIATE_TEST_SUITE_P(DeadStick, EveryCommand,
                         testing::Values(std::vector<std::string>{"search"},
                                         std::vector<std::string>{"groups", "--by", "artist"},
                                         std::vector<std::string>{"photos"}, std::vector<std::string>{"playlists"},
                                         std::vector<std::string>{"thumbnails"}, std::vector<std::string>{"info", "a.jpg"}),
                         [](const auto& command) { return command.param.front(); });

TEST_F(DeadStickTest, Thumbnail_IsAnsweredWithout)
{
    Shell shell({"--stick", "/mnt/dead"}, on());
    Json::Value request = changeRequest("/mnt/dead");
    request["type"] = FILE_TYPE_UNKNOWN;
    request["path"] = "/mnt/dead/a.jpg";
    shell.send("storagemedia.start.thumbnail", request);
    const Json::Value answer = shell.notification("startThumbnail.complete");
    EXPECT_EQ(answer["body"]["reqId"], "1");
    EXPECT_EQ(answer["body"].get("filepath", "").asString(), "");
    EXPECT_EQ(shell.program.wait(), 0);
    EXPECT_NE(shell.program.errors().find("no thumbnail of /mnt/dead/a.jpg: The stick does not answer"), std::string::npos);
}

// The plugin itself asks the file system, and gets no answer until the file system ends.
TEST_F(DeadStickTest, InterruptOfACommandThatIsKept_EndsTheProgram)
{
    for (const int number : {SIGINT, SIGTERM}) {
        Shell shell({"--stick", "/mnt/dead", "--log-level", "debug"}, on());
        Json::Value request;
        request["path"] = "/mnt/dead";
        shell.send("storagemedia.get.device.usage", request);
        EXPECT_TRUE(shell.program.readUntil(
            [&shell] { return shell.program.errors().find("getDeviceUsage") != std::string::npos; }));
        shell.program.signal(number);
        EXPECT_TRUE(shell.next([](const Json::Value& line) { return line.isMember("result"); }).isNull());
        EXPECT_EQ(shell.program.wait(), 128 + number);
    }
}

// Before any of its own limits has passed, which it would complain of.
TEST_F(DeadStickTest, InterruptOfAListing_EndsItAsCancelled)
{
    std::vector<std::string> command = on();
    command.insert(command.end(), {DESKTOP_TV, "--stick", "/mnt/dead", "--log-level", "debug", "browse"});
    Program program(command);
    EXPECT_TRUE(program.readUntil([&program] { return program.errors().find("enterMmBrowser") != std::string::npos; }));
    program.signal(SIGINT);
    EXPECT_EQ(program.wait(), 128 + SIGINT);
    EXPECT_NE(program.errors().find("desktop-tv: Cancelled\n"), std::string::npos) << program.errors();
    EXPECT_EQ(program.errors().find("does not answer"), std::string::npos) << program.errors();
}

TEST_F(DeadStickTest, Shell_GoesOnWithAnotherStick)
{
    testsupport::TemporaryDirectory live;
    live.makeFile("a.jpg");
    Shell shell({"--stick", "/mnt/dead", "--stick", live.path()}, on());
    shell.send("storagemedia.folder.chgdir", changeRequest("/mnt/dead"));
    EXPECT_FALSE(shell.reply()["result"].asBool());
    shell.send("storagemedia.folder.chgdir", changeRequest(live.path()));
    EXPECT_TRUE(shell.reply()["result"].asBool());
    EXPECT_EQ(shell.notification("storagemedia.folder.chgdir.complete")["body"]["filelst"][0]["name"], "a.jpg");
    EXPECT_EQ(shell.program.wait(), 0);
}

} // namespace
