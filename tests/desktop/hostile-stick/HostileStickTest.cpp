#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include "desktop/text/NameEncoding.h"

#include "platform/SocMwTypes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <atomic>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <thread>

namespace {

using testsupport::jsonLines;
using testsupport::Program;
using testsupport::Shell;

/// Whether the tests run on the whole stick, which takes half a minute, and not on the small one.
const bool kWhole = std::getenv("HOSTILE_STICK_WHOLE") != nullptr;
const std::string kStick = kWhole ? HOSTILE_STICK "-whole" : HOSTILE_STICK;

/// The most memory that the program may have taken in the end, in KB; on the whole stick with an answer of 17 MB.
#ifdef __SANITIZE_ADDRESS__
const long kMemoryBound = kWhole ? 2'000'000 : 400'000; // with the sanitizer's own shadow and its store of freed blocks
#else
const long kMemoryBound = kWhole ? 450'000 : 100'000;
#endif

constexpr const char* kPlay = "storagemedia.media.playfile";

const std::map<int, std::string> kTypeNames = {{0, "closed"}, {1, "folder"}, {2, "file"},
                                               {3, "photo"},  {4, "video"},  {5, "music"}};

/// The most memory that process @p pid has had so far, in KB.
long peakMemory(pid_t pid)
{
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmHWM:", 0) == 0) {
            return std::stol(line.substr(6));
        }
    }
    return -1;
}

/// The stick of everything that goes wrong, and what must be found on it.
class HostileStickTest : public testing::Test {
protected:
    HostileStickTest()
    {
        std::vector<std::string> words = {MAKE_HOSTILE_STICK, kStick};
        if (!kWhole) {
            words.emplace_back("--small");
        }
        Program make(words);
        EXPECT_EQ(make.wait(), 0) << make.errors();
        std::ifstream(kStick + ".golden.json") >> golden;
    }

    static std::vector<std::string> command(const std::vector<std::string>& words)
    {
        std::vector<std::string> all = {DESKTOP_TV, "--stick", kStick, "--cache", "none"};
        all.insert(all.end(), words.begin(), words.end());
        return all;
    }

    /// The JSON lines that @p words write; they must end with @p status.
    static std::vector<Json::Value> lines(const std::vector<std::string>& words, int status = 0)
    {
        Program program(command(words));
        EXPECT_EQ(program.wait(), status) << program.errors();
        return jsonLines(program.output());
    }

    Json::UInt64 numberOf(const std::string& kind) const { return golden[kind].asUInt64(); }

    /// The paths of the files of the stick's folder @p folder that are of one of @p kinds.
    std::vector<std::string> filesIn(const std::string& folder, const std::set<std::string>& kinds) const
    {
        std::vector<std::string> paths;
        const Json::Value& entries = golden["folders"][folder];
        for (const std::string& name : entries.getMemberNames()) {
            if (kinds.count(entries[name].asString()) > 0) {
                paths.push_back(kStick + "/" + folder + "/" + name);
            }
        }
        return paths;
    }

    Json::Value golden;
};

TEST_F(HostileStickTest, EveryFolder_IsListedWholeAndInBoundedMemory)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "root alone can read the closed folder whose entries the answers name";
    }
    Shell shell({"--stick", kStick, "--cache", "none"});
    for (const std::string& folder : golden["folders"].getMemberNames()) {
        const std::string path = folder.empty() ? kStick : kStick + "/" + folder;
        shell.send("storagemedia.folder.chgdir", testsupport::changeRequest(path));
        Json::Value listed(Json::objectValue);
        const Json::Value entries = shell.notification("storagemedia.folder.chgdir.complete")["body"]["filelst"];
        for (const Json::Value& entry : entries) {
            listed[entry["name"].asString()] = kTypeNames.at(entry["type"].asInt());
        }
        EXPECT_EQ(listed, golden["folders"][folder]) << folder;
    }
    EXPECT_LT(peakMemory(shell.program.pid()), kMemoryBound);
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST_F(HostileStickTest, EveryDamagedFile_PlaysOrSaysWhyNot)
{
    const std::set<std::string> ends = {"storagemedia.media.loadsuccess", "storagemedia.media.photo.loadsuccess",
                                        "storagemedia.media.loadfailed"};
    Shell shell({"--stick", kStick, "--cache", "none", "--log-level", "off"});
    std::size_t played = 0;
    for (const char* folder : {"mutations", "bombs", "sparse", "specials", "links"}) {
        const std::string path = kStick + "/" + folder;
        shell.send("storagemedia.folder.chgdir", testsupport::changeRequest(path));
        const Json::Value entries = shell.notification("storagemedia.folder.chgdir.complete")["body"]["filelst"];
        for (Json::ArrayIndex i = 0; i < entries.size(); ++i) {
            Json::Value request;
            request["dirpath"] = path;
            request["index"] = i;
            request["type"] = entries[i]["type"] == FILE_TYPE_PANORAMA ? Json::Value(FILE_TYPE_PHOTO) : entries[i]["type"];
            request["playall"] = false;
            if (request["type"].asInt() < FILE_TYPE_PHOTO || request["type"].asInt() > FILE_TYPE_MUSIC) {
                continue;
            }
            ++played;
            shell.send(kPlay, request);
            const Json::Value reply = shell.next([](const Json::Value& line) { return line["command"] == kPlay; });
            ASSERT_EQ(reply["reply"]["count"].asUInt(), i) << entries[i]["name"];
            const Json::Value end =
                shell.next([&ends](const Json::Value& line) { return ends.count(line["notification"].asString()) > 0; });
            ASSERT_EQ(end["body"]["path"], entries[i]["path"]) << entries[i]["name"];
            shell.send("storagemedia.media.stopfile", request);
        }
    }
    EXPECT_GT(played, kWhole ? 400U : 20U);
    shell.send("storagemedia.close.mmbroswer");
    EXPECT_EQ(shell.program.wait(), 0) << shell.program.errors();
}

TEST_F(HostileStickTest, Search_FindsEveryVideoOnce)
{
    std::multiset<std::string> expected;
    for (const Json::Value& path : golden["video"]) {
        expected.insert(kStick + "/" + path.asString());
    }
    std::vector<Json::Value> found = lines({"search", "--json"});
    ASSERT_FALSE(found.empty());
    EXPECT_EQ(found.back()["total"].asUInt64(), expected.size());
    EXPECT_EQ(found.back()["folders"].asUInt64(), golden["folders"].size());
    found.pop_back();
    std::multiset<std::string> paths;
    for (const Json::Value& file : found) {
        paths.insert(file["path"].asString());
    }
    EXPECT_EQ(paths, expected);
}

TEST_F(HostileStickTest, Groups_HoldEveryFileOnce)
{
    for (const auto& [way, kind] : std::map<std::string, std::string>{{"artist", "music"}, {"month", "photo"}}) {
        Json::UInt64 files = 0;
        for (const Json::Value& group : lines({"groups", "--by", way, "--json"})) {
            files += group["files"].asUInt64();
        }
        EXPECT_EQ(files, numberOf(kind)) << way;
    }
}

TEST_F(HostileStickTest, Info_TellsOfEveryFile)
{
    for (const char* folder : {"mutations", "bombs", "sparse", "names"}) {
        const std::vector<std::string> files = filesIn(folder, {"music", "photo", "video"});
        ASSERT_FALSE(files.empty());
        std::vector<std::string> words = {"info", "--json", "--"};
        words.insert(words.end(), files.begin(), files.end());
        const std::vector<Json::Value> reported = lines(words);
        ASSERT_EQ(reported.size(), files.size()) << folder;
        for (std::size_t i = 0; i < files.size(); ++i) {
            EXPECT_EQ(reported[i]["path"], files[i]);
        }
    }
}

TEST_F(HostileStickTest, Thumbnails_AreMadeOrRefusedForEveryFile)
{
    const testsupport::TemporaryDirectory out;
    for (const char* folder : {"mutations", "bombs", "sparse", "names", "specials", "links"}) {
        const std::vector<std::string> files = filesIn(folder, {"music", "photo", "video"});
        const std::vector<Json::Value> reported = lines({"thumbnails", folder, "--json", "--out", out.path()});
        std::set<std::string> paths;
        for (const Json::Value& picture : reported) {
            paths.insert(picture["path"].asString());
            if (picture.isMember("picture")) {
                EXPECT_TRUE(std::filesystem::exists(desktop::decodeName(picture["picture"].asString()))) << picture;
            }
        }
        EXPECT_EQ(paths, std::set<std::string>(files.begin(), files.end())) << folder;
    }
}

TEST_F(HostileStickTest, PathsOutOfTheStick_AreRefused)
{
    for (const char* link :
         {"links/out.mp4", "links/process/etc/passwd", "links/above/etc", "links/one", "links/nowhere.mp4"}) {
        const std::vector<Json::Value> reported = lines({"info", "--json", link}, 1);
        EXPECT_TRUE(reported.empty()) << link;
    }
}

TEST_F(HostileStickTest, FileThatChangesWhileItIsRead_HasFactsOrNone)
{
    const testsupport::TemporaryDirectory stick;
    std::ostringstream original;
    original << std::ifstream(kStick + ".demo/Music/The Sines/01 First.mp3", std::ios::binary).rdbuf();
    const std::string song = original.str();
    ASSERT_FALSE(song.empty());
    std::ofstream(stick.path("song.mp3"), std::ios::binary) << song;
    std::atomic<bool> stop{false};
    std::thread changer([&] {
        for (std::size_t length = 0; !stop; length = (length + 4096) % song.size()) {
            std::ofstream(stick.path("song.mp3"), std::ios::binary) << song.substr(0, length); // shorter for a moment, too
        }
    });
    for (int round = 0; round < 20; ++round) {
        Program program({DESKTOP_TV, "--stick", stick.path(), "--cache", stick.path("cache"), "info", "--json", "song.mp3"});
        EXPECT_EQ(program.wait(), 0) << program.errors();
    }
    stop = true;
    changer.join();
    std::ofstream(stick.path("song.mp3"), std::ios::binary) << song;
    Program settled({DESKTOP_TV, "--stick", stick.path(), "--cache", stick.path("cache"), "info", "--json", "song.mp3"});
    EXPECT_EQ(settled.wait(), 0) << settled.errors();
    EXPECT_EQ(jsonLines(settled.output())[0]["artist"], "The Sines");
}

} // namespace
