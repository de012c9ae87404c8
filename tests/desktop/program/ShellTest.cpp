#include "tests/desktop/support/ManyFiles.h"
#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include "desktop/text/NameEncoding.h"

#include "platform/SocMwTypes.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

namespace fs = std::filesystem;
using testsupport::changeRequest;
using testsupport::Program;
using testsupport::Shell;

constexpr const char* kChange = "storagemedia.folder.chgdir";
constexpr const char* kChanged = "storagemedia.folder.chgdir.complete";

class ShellTest : public testing::Test {
protected:
    ShellTest()
    {
        stick.makeDirectory("Films");
        stick.makeFile("Films/clip 10.mkv");
        stick.makeFile("Films/clip 9.mkv");
    }

    std::vector<std::string> options() const { return {"--stick", stick.path()}; }

    testsupport::TemporaryDirectory stick;
};

TEST_F(ShellTest, Start_AnnouncesTheStick)
{
    Shell shell(options());
    EXPECT_TRUE(shell.notification("storagemedia.usb.plugin").isMember("body"));
    const Json::Value mounted = shell.notification("storagemedia.usb.mount");
    EXPECT_EQ(mounted["source"], "storagemedia");
    EXPECT_EQ(mounted["body"]["devlist"][0]["path"], stick.path());
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST_F(ShellTest, ChangeDirectory_IsAnsweredOnItsChannel)
{
    Shell shell(options());
    shell.send(kChange, changeRequest(stick.path("Films"), "42"));
    const Json::Value reply = shell.reply();
    EXPECT_EQ(reply["command"], kChange);
    EXPECT_TRUE(reply["result"].asBool());
    const Json::Value answer = shell.notification(kChanged);
    EXPECT_EQ(answer["source"], "channel");
    EXPECT_EQ(answer["body"]["reqId"], "42");
    ASSERT_EQ(answer["body"]["filecount"], 2);
    EXPECT_EQ(answer["body"]["filelst"][0]["path"], stick.path("Films/clip 9.mkv"));
    EXPECT_EQ(answer["body"]["filelst"][0]["type"], FILE_TYPE_VIDEO);
    EXPECT_EQ(answer["body"]["filelst"][0]["isPhoto360"], false);
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST_F(ShellTest, EndOfInput_WaitsForTheAnswer)
{
    testsupport::makeManyFiles(stick.path("Films"), 3000);
    Shell shell(options());
    shell.send(kChange, changeRequest(stick.path("Films")));
    EXPECT_EQ(shell.program.wait(), 0);
    EXPECT_EQ(shell.notification(kChanged)["body"]["filecount"], 3002);
}

TEST_F(ShellTest, PagesOfTheCurrentFolder_AreCutAsAsked)
{
    Shell shell(options());
    Json::Value change = changeRequest(stick.path("Films"));
    change["number"] = 1;
    shell.send(kChange, change);
    EXPECT_TRUE(shell.reply()["result"].asBool());
    EXPECT_EQ(shell.notification(kChanged)["body"]["filecount"], 2);
    Json::Value page;
    page["pageid"] = 1;
    page["type"] = 1;
    shell.send("storagemedia.get.pagefiles", page);
    const Json::Value reply = shell.reply()["reply"];
    ASSERT_EQ(reply["filecount"], 1);
    EXPECT_EQ(reply["filelst"][0]["name"], "clip 10.mkv");
}

TEST_F(ShellTest, SecondChange_IsTheOneThatIsAnsweredLast)
{
    for (int round = 0; round < 20; ++round) {
        Shell shell(options());
        shell.send(kChange, changeRequest(stick.path(), "first"));
        shell.send(kChange, changeRequest(stick.path("Films"), "second"));
        ASSERT_EQ(shell.program.wait(), 0);
        const Json::Value last = shell.lines().back();
        EXPECT_EQ(last["notification"], kChanged);
        EXPECT_EQ(last["body"]["reqId"], "second");
        EXPECT_EQ(last["body"]["filecount"], 2);
    }
}

TEST_F(ShellTest, RequestThatAnotherCommandEnds_IsToldAndNotWaitedFor)
{
    struct Row {
        const char* command;
        const char* ending;
    };
    constexpr Row kRows[] = {{"storagemedia.folder.chgdir", "storagemedia.folder.user.cancel"},
                             {"storagemedia.video.searchFiles", "storagemedia.folder.user.cancel"},
                             {"storagemedia.group.musicorphoto", "storagemedia.folder.user.cancel"},
                             {"storagemedia.start.thumbnail", "storagemedia.stop.thumbnail"},
                             {"storagemedia.start.thumbnail", "storagemedia.folder.chgdir"},
                             {"storagemedia.video.searchFiles", "storagemedia.video.searchFiles"}};
    testsupport::makeManyFiles(stick.path("Films"), 20'000);
    for (const Row& row : kRows) {
        Shell shell(options());
        Json::Value request = changeRequest(stick.path("Films"), "overtaken");
        request["path"] = stick.path("Films/1.jpg");
        request["Group"] = GROUP_TYPE_DATE;
        request["type"] = FILE_TYPE_UNKNOWN;
        shell.send(row.command, request);
        shell.send(row.ending, changeRequest(stick.path("nothing")));
        EXPECT_EQ(shell.program.wait(), 0) << row.command;
        int answers = 0;
        for (const Json::Value& line : shell.lines()) {
            const bool isEnd = line["ended"] == row.command;
            EXPECT_EQ(isEnd, line.isMember("ended"));
            EXPECT_FALSE(line.isMember("error")) << line;
            answers += isEnd && line["reqId"] == "overtaken" && line["channelId"] == "channel" ? 1 : 0;
            answers += line["notification"].asString().ends_with(".complete") ? 1 : 0;
        }
        EXPECT_EQ(answers, 1) << row.command << " ended by " << row.ending;
    }
}

TEST_F(ShellTest, ThumbnailsThatARefusedRequestReplaces_AreEnded)
{
    Shell shell(options());
    Json::Value single = changeRequest("", "1");
    single["type"] = FILE_TYPE_UNKNOWN;
    single["path"] = stick.path("Films/clip 9.mkv");
    Json::Value range = changeRequest("", "2");
    range["type"] = FILE_TYPE_UNKNOWN;
    shell.send("storagemedia.start.thumbnail", single);
    shell.send("storagemedia.start.thumbnail", range); // of no folder
    EXPECT_EQ(shell.program.wait(), 0);
    int ends = 0;
    for (const Json::Value& line : shell.lines()) {
        ends += line.isMember("ended") || line["notification"] == "startThumbnail.complete" ? 1 : 0;
    }
    EXPECT_EQ(ends, 1);
}

TEST_F(ShellTest, LineThatIsNoJson_IsToldWithItsPlaceAndTheShellGoesOn)
{
    Shell shell(options());
    shell.sendLine("");
    shell.sendLine(R"({"command":"storagemedia.check.usb.device")");
    const Json::Value error = shell.reply();
    EXPECT_NE(error["error"].asString(), "");
    EXPECT_EQ(error["line"], 2);
    EXPECT_EQ(error["column"], 43);
    shell.send("storagemedia.check.usb.device");
    EXPECT_TRUE(shell.reply()["result"].asBool());
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST_F(ShellTest, LineThatIsNoCommand_IsToldAndTheShellGoesOn)
{
    Shell shell(options());
    for (const char* line :
         {R"({"command":"storagemedia.no.such"})", R"({"comand":"x"})", R"({"command":5})", "[]",
          R"({"command":"storagemedia.folder.chgdir","request":[]})", R"({"desktop":"sceen"})",
          R"({"desktop":"screen","off":1})", R"({"desktop":"screen","command":"x"})",
          R"({"command":"storagemedia.folder.chgdir","request":{"channelId":"c","reqId":"1","dirpath":{}}})"}) {
        shell.sendLine(line);
        EXPECT_NE(shell.reply()["error"].asString(), "") << line;
    }
    shell.send(kChange, changeRequest(stick.path("Films")));
    EXPECT_EQ(shell.notification(kChanged)["body"]["filecount"], 2);
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST_F(ShellTest, LineOfBlanks_IsSkipped)
{
    Shell shell(options());
    shell.sendLine(" \t\v\f\r");
    shell.send("storagemedia.check.usb.device");
    EXPECT_TRUE(shell.reply()["result"].asBool());
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST_F(ShellTest, CommandThatIsNearlyOne_IsToldWithWhatMayBeMeant)
{
    Shell shell(options());
    shell.send("storagemedia.folder.chdir");
    EXPECT_EQ(shell.reply()["error"],
              "Unknown command \"storagemedia.folder.chdir\"; did you mean \"storagemedia.folder.chgdir\"?");
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST_F(ShellTest, Screen_CanBeSwitchedAndAskedFor)
{
    Shell shell(options());
    shell.notification("storagemedia.usb.mount"); // the stick has switched the screen on, and will not again
    const auto screen = [&shell](const std::string& line) {
        shell.sendLine(line);
        return shell.next([](const Json::Value& answer) { return answer["desktop"] == "screen"; })["off"];
    };
    EXPECT_EQ(screen(R"({"desktop":"screen"})"), false);
    EXPECT_EQ(screen(R"({"desktop":"screen","off":true})"), true);
    EXPECT_EQ(screen(R"({"desktop":"screen"})"), true);
    EXPECT_EQ(screen(R"({"desktop":"screen","off":false})"), false);
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST_F(ShellTest, FolderThatIsNoneOrNotOnAStick_IsRefused)
{
    Shell shell(options());
    for (const std::string& directory :
         {stick.path("missing"), stick.path("Films/clip 9.mkv"), std::string("/etc"), stick.path("../.."), std::string()}) {
        shell.send(kChange, changeRequest(directory));
        EXPECT_FALSE(shell.reply()["result"].asBool()) << directory;
    }
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST_F(ShellTest, WhatTheDesktopDoesNotOffer_IsRefused)
{
    Shell shell(options());
    Json::Value request;
    request["type"] = 4;
    shell.send("storagemedia.dmr.playfile", request);
    EXPECT_EQ(shell.reply()["result"], false);
    EXPECT_EQ(shell.program.wait(), 0);
    EXPECT_NE(shell.program.errors().find("no controller has given the renderer anything to play"), std::string::npos);
}

TEST_F(ShellTest, StickThatGoesAndComes_IsAnnounced)
{
    testsupport::TemporaryDirectory parent;
    parent.makeDirectory("usb/a");
    Shell shell({"--stick", parent.path("usb")});
    shell.notification("storagemedia.usb.mount");
    fs::rename(parent.path("usb"), parent.path("away"));
    EXPECT_EQ(shell.notification("storagemedia.usb.unmount")["body"]["path"], parent.path("usb"));
    EXPECT_EQ(shell.notification("storagemedia.usb.mount")["body"]["devcount"], 0);
    shell.send(kChange, changeRequest(parent.path("usb")));
    EXPECT_FALSE(shell.reply()["result"].asBool());
    fs::rename(parent.path("away"), parent.path("usb"));
    EXPECT_TRUE(shell.notification("storagemedia.usb.plugin").isMember("body"));
    EXPECT_EQ(shell.notification("storagemedia.usb.mount")["body"]["devcount"], 1);
    shell.send(kChange, changeRequest(parent.path("usb")));
    EXPECT_EQ(shell.notification(kChanged)["body"]["filecount"], 1);
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST_F(ShellTest, BytesThatAreNoUtf8_NeverReachTheLines)
{
    stick.makeDirectory("caf\xE9");
    stick.makeFile("caf\xE9/\xFF.mp3");
    Shell shell(options());
    shell.send(kChange, changeRequest(stick.path("caf\\xE9"), "escaped"));
    const Json::Value escaped = shell.notification(kChanged)["body"]["filelst"];
    ASSERT_EQ(escaped.size(), 1U);
    EXPECT_EQ(escaped[0]["path"], stick.path("caf\\xE9/\\xFF.mp3"));
    shell.sendLine("{\"command\":\"storagemedia.folder.chgdir\",\"request\":{\"channelId\":\"c\xE9\",\"reqId\":\"raw\"," +
                   ("\"dirpath\":\"" + stick.path("caf\xE9") + "\"}}"));
    EXPECT_EQ(shell.notification(kChanged)["body"]["filelst"][0]["path"], stick.path("caf\\xE9/\\xFF.mp3"));
    EXPECT_EQ(shell.program.wait(), 0);
    EXPECT_EQ(desktop::escapeBadBytes(shell.program.output()), shell.program.output());
}

TEST_F(ShellTest, LogAtItsLoudest_StaysOutOfTheLines)
{
    std::vector<std::string> loud = options();
    loud.insert(loud.end(), {"--log-level", "debug"});
    Shell shell(loud);
    shell.send("storagemedia.get.device.usage", changeRequest("/"));
    Json::Value usage;
    usage["path"] = stick.path();
    shell.send("storagemedia.get.device.usage", usage);
    shell.send(kChange, changeRequest(stick.path("Films")));
    EXPECT_EQ(shell.program.wait(), 0);
    EXPECT_EQ(shell.lines().size(), 6U); // two announcements, three replies, one answer
    for (const Json::Value& line : shell.lines()) {
        EXPECT_TRUE(line.isObject());
    }
    EXPECT_NE(shell.program.errors().find("[DBG][getDeviceUsage-"), std::string::npos);
    EXPECT_NE(shell.program.errors().find("[FRAMEWORK] [TVFW::StoragePlugin] Plugin_Load"), std::string::npos);
}

TEST_F(ShellTest, LogFile_IsAppendedTo)
{
    testsupport::TemporaryDirectory logs;
    std::ofstream(logs.path("log")) << "before\n";
    std::vector<std::string> logged = options();
    logged.insert(logged.end(), {"--log", logs.path("log"), "--log-level", "info"});
    Shell shell(logged);
    EXPECT_EQ(shell.program.wait(), 0);
    std::ostringstream text;
    text << std::ifstream(logs.path("log")).rdbuf();
    EXPECT_EQ(text.str().rfind("before\n", 0), 0U);
    EXPECT_NE(text.str().find("Plugin_Load"), std::string::npos);
    EXPECT_EQ(shell.program.errors(), "");
}

TEST_F(ShellTest, InterruptWhileItWaitsForInput_EndsItCleanly)
{
    for (const int number : {SIGINT, SIGTERM}) {
        Shell shell(options());
        shell.notification("storagemedia.usb.mount");
        shell.program.signal(number);
        EXPECT_TRUE(shell.next([](const Json::Value&) { return false; }).isNull()); // its output ends
        EXPECT_EQ(shell.program.wait(), 128 + number);
    }
}

TEST_F(ShellTest, ReaderThatGoesAway_EndsIt)
{
    Shell shell(options());
    shell.notification("storagemedia.usb.mount");
    shell.program.closeOutput();
    shell.send("storagemedia.check.usb.device"); // no more: there may soon be nobody to send to
    EXPECT_EQ(shell.program.wait(), 1);
    EXPECT_EQ(shell.program.errors(), "");
}

TEST_F(ShellTest, EndOfTheInput_ComesAfterWhatIsDue)
{
    for (int i = 0; i < 5; ++i) {
        Shell shell(options());
        EXPECT_EQ(shell.program.wait(), 0);
        EXPECT_NE(shell.program.output().find("storagemedia.usb.mount"), std::string::npos);
    }
}

using LargeFolderTest = ShellTest;

TEST_F(LargeFolderTest, Of100000Files_ComesWholeAndInOrder)
{
    stick.makeDirectory("many");
    testsupport::makeManyFiles(stick.path("many"), 100'000, "photo ");
    Shell shell(options());
    shell.send(kChange, changeRequest(stick.path("many")));
    EXPECT_TRUE(shell.reply()["result"].asBool());
    const Json::Value body = shell.notification(kChanged)["body"];
    ASSERT_EQ(body["filecount"], 100'000);
    for (const Json::ArrayIndex i : {0U, 9U, 10U, 99'999U}) {
        EXPECT_EQ(body["filelst"][i]["title"], "photo " + std::to_string(i));
    }
    Json::Value page;
    page["pageid"] = 9'999;
    page["type"] = 0;
    page["dirpath"] = stick.path("many");
    shell.send("storagemedia.get.pagefiles", page);
    EXPECT_EQ(shell.reply()["reply"]["filelst"][9]["title"], "photo 99999");
    EXPECT_EQ(shell.program.wait(), 0);
}

} // namespace
