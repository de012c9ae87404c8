#include "support/Scenario.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

/// The two play commands differ in the manager's operation and in the name they log under.
struct PlayCommand {
    std::string name; ///< of the handler and of the manager's operation
    Scenario::Command handler;
};

class PlayFile : public testing::TestWithParam<PlayCommand> {
protected:
    Scenario play(const std::string& request) const
    {
        return Scenario(GetParam().name, GetParam().handler).request(request);
    }

    Happening call(const std::string& arguments) const { return did(GetParam().name + "(" + arguments + ")"); }
};

const Journal kReadsToPlayAll = {readString("dirpath"), dbg("dirpath :/mnt/a"), readUInt("index"), readUInt("type"),
                                 readBool("playall")};

TEST_P(PlayFile, PlayableType_RepliesTheIndexThatPlays)
{
    for (const std::string type : {"3", "4", "5"}) {
        play(R"({"dirpath":"/mnt/a","index":2,"playall":true,"resume":true,"type":)" + type + "}")
            .given([](FakePlatform& platform, ExposedPlugin&) { platform.currentIndex = 4000000000U; })
            .happens(kReadsToPlayAll + Journal{readBool("resume"), dbg("file type:" + type + ", index:2, bPlayAll:1"),
                                               manager(), call(type + R"(, 2u, 0u, true, true, "/mnt/a")")})
            .succeeds()
            .leavesReply(R"({"count":4000000000u,"kept":"as it was"})")
            .check();
    }
}

TEST_P(PlayFile, FlagsFalse_ArePassedOn)
{
    play(R"({"dirpath":"/mnt/a","index":4294967295,"playall":false,"resume":false,"type":4})")
        .happens(kReadsToPlayAll + Journal{readBool("resume"), dbg("file type:4, index:-1, bPlayAll:0"), manager(),
                                           call(R"(4, 4294967295u, 0u, false, false, "/mnt/a")")})
        .succeeds()
        .leavesReply(R"({"count":0u,"kept":"as it was"})")
        .check();
}

TEST_P(PlayFile, WithoutResume_PlaysFromTheStart)
{
    for (const char* resume : {"", R"(,"resume":1)"}) {
        play(R"({"dirpath":"/mnt/a","index":0,"type":4,"playall":true)" + std::string(resume) + "}")
            .happens(kReadsToPlayAll + Journal{readBool("resume"), err("unknown resume option, set restart!"),
                                               dbg("file type:4, index:0, bPlayAll:1"), manager(),
                                               call(R"(4, 0u, 0u, true, false, "/mnt/a")")})
            .succeeds()
            .leavesReply(R"({"count":0u,"kept":"as it was"})")
            .check();
    }
}

TEST_P(PlayFile, WithoutDirectory_PassesAnEmptyPath)
{
    for (const char* directory : {"", R"(,"dirpath":9)"}) {
        play(R"({"index":0,"type":4,"playall":true,"resume":true)" + std::string(directory) + "}")
            .happens({readString("dirpath"), dbg("dirpath :"), readUInt("index"), readUInt("type"), readBool("playall"),
                      readBool("resume"), dbg("file type:4, index:0, bPlayAll:1"), manager(),
                      call(R"(4, 0u, 0u, true, true, "")")})
            .succeeds()
            .leavesReply(R"({"count":0u,"kept":"as it was"})")
            .check();
    }
}

TEST_P(PlayFile, OtherType_IsRefusedBeforeTheManager)
{
    for (const std::string type : {"0", "1", "2", "6", "7"}) {
        play(R"({"dirpath":"/mnt/a","index":0,"playall":true,"resume":true,"type":)" + type + "}")
            .happens(kReadsToPlayAll + Journal{readBool("resume"), dbg("file type:" + type + ", index:0, bPlayAll:1"),
                                               err("unknown unPlayable Type:" + type)})
            .fails()
            .check();
    }
}

TEST_P(PlayFile, LargestType_IsLoggedSigned)
{
    play(R"({"dirpath":"/mnt/a","index":0,"playall":true,"resume":true,"type":4294967295})")
        .happens(kReadsToPlayAll +
                 Journal{readBool("resume"), dbg("file type:-1, index:0, bPlayAll:1"), err("unknown unPlayable Type:-1")})
        .fails()
        .check();
}

TEST_P(PlayFile, ManagerRefuses_LeavesTheReply)
{
    play(R"({"dirpath":"/mnt/a","index":0,"playall":true,"resume":true,"type":4})")
        .given([](FakePlatform& platform, ExposedPlugin&) { platform.currentIndex = 3; })
        .refusedBy(GetParam().name)
        .happens(kReadsToPlayAll + Journal{readBool("resume"), dbg("file type:4, index:0, bPlayAll:1"), manager(),
                                           call(R"(4, 0u, 0u, true, true, "/mnt/a")"), err("Failed!!! ret:<status>")})
        .fails()
        .check();
}

TEST_P(PlayFile, RequiredKeyUnreadable_Fails)
{
    for (const char* index : {"", R"(,"index":-1)", R"(,"index":"0")"}) {
        play(R"({"dirpath":"/mnt/a","type":4,"playall":true)" + std::string(index) + "}")
            .happens({readString("dirpath"), dbg("dirpath :/mnt/a"), readUInt("index"), err("unknown file index")})
            .fails()
            .check();
    }
    for (const char* type : {"", R"(,"type":-1)"}) {
        play(R"({"dirpath":"/mnt/a","index":0,"playall":true)" + std::string(type) + "}")
            .happens({readString("dirpath"), dbg("dirpath :/mnt/a"), readUInt("index"), readUInt("type"),
                      err("unknown File Type")})
            .fails()
            .check();
    }
    for (const char* playAll : {"", R"(,"playall":1)"}) {
        play(R"({"dirpath":"/mnt/a","index":0,"type":4)" + std::string(playAll) + "}")
            .happens(kReadsToPlayAll + Journal{err("unknown Play mode")})
            .fails()
            .check();
    }
}

TEST_P(PlayFile, NullPointers_Fail)
{
    play("{}").nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    play("{}").nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

INSTANTIATE_TEST_SUITE_P(Commands, PlayFile,
                         testing::Values(PlayCommand{"playMediaFile", &CStorageMediaPlugin::playMediaFile},
                                         PlayCommand{"kiroPlayMediaFile", &CStorageMediaPlugin::kiroPlayMediaFile}),
                         [](const auto& row) { return row.param.name; });

Scenario dmr(const std::string& request)
{
    return Scenario("dmrPlayFile", &CStorageMediaPlugin::dmrPlayFile).request(request);
}

TEST(DmrPlayFile, AnyInteger_PreparesPlaybackAndRepliesTheTitle)
{
    for (const std::string type : {"4", "0", "-3", "99"}) {
        dmr(R"({"type":)" + type + "}")
            .given([](FakePlatform& platform, ExposedPlugin&) { platform.title = "The Film"; })
            .happens({readInt("type"), info("File Type:" + type), manager(), did("dmrPlayPrepare(" + type + R"(, ""))"),
                      dbg("File Title:The Film")})
            .succeeds()
            .leavesReply(R"({"kept":"as it was","title":"The Film"})")
            .check();
    }
}

TEST(DmrPlayFile, ManagerRefuses_LogsItsStatus)
{
    dmr(R"({"type":4})")
        .given([](FakePlatform& platform, ExposedPlugin&) { platform.title = "The Film"; })
        .refusedBy("dmrPlayPrepare")
        .happens({readInt("type"), info("File Type:4"), manager(), did(R"(dmrPlayPrepare(4, ""))"),
                  err("Dmr Play fialed!!!ret:<status>")})
        .fails()
        .check();
}

TEST(DmrPlayFile, TypeUnreadable_Fails)
{
    for (const char* request : {"{}", R"({"type":"4"})", R"({"type":4294967295})"}) {
        dmr(request).happens({readInt("type"), err("unknown type")}).fails().check();
    }
}

TEST(DmrPlayFile, NullPointers_Fail)
{
    dmr("{}").nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    dmr("{}").nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

Scenario playList(const std::string& request)
{
    return Scenario("playPlayListFile", &CStorageMediaPlugin::playPlayListFile).request(request);
}

TEST(PlayPlayListFile, BothKeys_AreAcknowledgedOnly)
{
    playList(R"({"lstfile":"/a.m3u","file":"/b.mp3"})")
        .happens({readString("lstfile"), readString("file"), dbg("list:/a.m3u, play file:/b.mp3")})
        .succeeds()
        .check();
    playList(R"({"lstfile":"","file":""})")
        .happens({readString("lstfile"), readString("file"), dbg("list:, play file:")})
        .succeeds()
        .check();
}

TEST(PlayPlayListFile, KeyUnreadable_Fails)
{
    for (const char* request : {R"({"file":"/b.mp3"})", R"({"lstfile":1,"file":"/b.mp3"})"}) {
        playList(request).happens({readString("lstfile"), err("unknown file lstfile")}).fails().check();
    }
    for (const char* request : {R"({"lstfile":"/a.m3u"})", R"({"lstfile":"/a.m3u","file":1})"}) {
        playList(request).happens({readString("lstfile"), readString("file"), err("unknown file file")}).fails().check();
    }
}

TEST(PlayPlayListFile, NullPointers_Fail)
{
    playList("{}").nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    playList("{}").nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

TEST(FolderAppendPlayListAndPlay, AnyRequest_IsAcknowledged)
{
    const Scenario append("folderAppendPlayListAndPlay", &CStorageMediaPlugin::folderAppendPlayListAndPlay);
    Scenario(append).happens({}).succeeds().check();
    Scenario(append).nullReply().happens({}).succeeds().check();
    Scenario(append).nullRequest().happens({err("jsonParams is NULL!!!")}).fails().check();
}

} // namespace
