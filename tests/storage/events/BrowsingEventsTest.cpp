#include "support/Folders.h"
#include "support/Scenario.h"
#include "support/TypedJson.h"

#include <gtest/gtest.h>

namespace {

using testsupport::parsed;
using tvfirmware::CStorageMediaPlugin;

/// Slot 0 with directory @p pending, and the directory-change flag.
std::function<void(FakePlatform&, ExposedPlugin&)> changing(const std::string& pending, bool flag)
{
    return [=](FakePlatform&, ExposedPlugin& plugin) {
        plugin.m_requestSlots[0] = {"c1", "r1", "odd event", pending};
        plugin.m_directoryChanging = flag;
    };
}

std::string entry(const std::string& path, const std::string& type, const std::string& size, bool isPhoto360)
{
    return R"({"ctime":"time of )" + path + R"(","isPhoto360":)" + (isPhoto360 ? "true" : "false") + R"(,"name":"name of )" +
           path + R"(","path":")" + path + R"(","size":)" + size + R"(u,"title":"title of )" + path + R"(","type":)" + type +
           "}";
}

Happening complete(unsigned int count, const std::string& entries)
{
    return published("c1", "storagemedia.folder.chgdir.complete",
                     R"({"filecount":)" + std::to_string(count) + R"(u,"filelst":[)" + entries + R"(],"reqId":"r1"})");
}

Happening fileLine(const std::string& path, int isPhoto360)
{
    return dbg("File name:name of " + path + ", ctime:time of " + path + ", isPhoto:" + std::to_string(isPhoto360));
}

const Journal kAnswered = {info("chgdir.complete: reqId:r1, channelId:c1"), slotChanged(0, "extra", "")};

TEST(DirectoryChanged, Entries_ArePublishedToTheRequester)
{
    for (const int flag : {2, -1}) {
        std::vector<FolderFileInfo_s> files = {folderFile("/d/b", 4), folderFile("/d/a", -3, 0)};
        files[1].isPhoto360 = flag;
        Scenario(4, &files)
            .given(changing("/d", false))
            .happens(Journal{info("nEvt : 4"), manager(), did(R"(getFileDirPath("/d/b"))"), fileLine("/d/b", 0),
                             fileLine("/d/a", 1),
                             complete(2, entry("/d/b", "4", "5000000000", false) + "," + entry("/d/a", "-3", "0", true))} +
                     kAnswered)
            .check();
    }
}

TEST(DirectoryChanged, NoEntries_IsPublishedAndEmptiesTheDirectory)
{
    for (const bool flag : {false, true}) {
        std::vector<FolderFileInfo_s> files;
        Scenario(4, &files)
            .given(changing("/d", flag))
            .happens(Journal{info("nEvt : 4"), complete(0, "")} + kAnswered)
            .check();
    }
}

TEST(DirectoryChanged, NobodyWaits_IsPublishedWithEmptyIds)
{
    std::vector<FolderFileInfo_s> files;
    Scenario(4, &files)
        .given([](FakePlatform&, ExposedPlugin& plugin) { plugin.m_requestSlots[0].clear(); })
        .happens({info("nEvt : 4"),
                  published("", "storagemedia.folder.chgdir.complete", R"({"filecount":0u,"filelst":[],"reqId":""})"),
                  info("chgdir.complete: reqId:, channelId:")})
        .check();
}

TEST(DirectoryChanged, OvertakenByANewerChange_IsDropped)
{
    std::vector<FolderFileInfo_s> files = {folderFile("/a/x"), folderFile("/b/y")};
    Scenario(4, &files)
        .given(changing("/b", true))
        .happens({info("nEvt : 4"), manager(), did(R"(getFileDirPath("/a/x"))"), info("Fast Switch dir:/a to /b ")})
        .check();
}

TEST(DirectoryChanged, ResultOfTheNewerChange_IsPublished)
{
    std::vector<FolderFileInfo_s> files = {folderFile("/b/y")};
    Scenario(4, &files)
        .given(changing("/b", true))
        .happens(Journal{info("nEvt : 4"), manager(), did(R"(getFileDirPath("/b/y"))"), fileLine("/b/y", 0),
                         complete(1, entry("/b/y", "4", "5000000000", false))} +
                 kAnswered)
        .check();
}

TEST(DirectoryChanged, FlagClear_PublishesAnyDirectory)
{
    std::vector<FolderFileInfo_s> files = {folderFile("/a/x")};
    Scenario(4, &files)
        .given(changing("/b", false))
        .happens(Journal{info("nEvt : 4"), manager(), did(R"(getFileDirPath("/a/x"))"), fileLine("/a/x", 0),
                         complete(1, entry("/a/x", "4", "5000000000", false))} +
                 kAnswered)
        .check();
}

TEST(DirectoryChanged, DirectoryIsTheEntrysOwnPath_IsPublished)
{
    std::vector<FolderFileInfo_s> files = {folderFile("/a")};
    Scenario(4, &files)
        .given([](FakePlatform& platform, ExposedPlugin& plugin) {
            changing("/b", true)(platform, plugin);
            platform.directories = {{"/a", "/a"}};
        })
        .happens(Journal{info("nEvt : 4"), manager(), did(R"(getFileDirPath("/a"))"), fileLine("/a", 0),
                         complete(1, entry("/a", "4", "5000000000", false))} +
                 kAnswered)
        .check();
}

TEST(DirectoryChanged, EntriesWithoutDirectory_LeaveTheTestToTheNext)
{
    std::vector<FolderFileInfo_s> files = {folderFile("x"), folderFile("/a/y"), folderFile("/a/z")};
    Scenario(4, &files)
        .given([](FakePlatform& platform, ExposedPlugin& plugin) {
            changing("/b", true)(platform, plugin);
            platform.directories = {{"x", ""}};
        })
        .happens({info("nEvt : 4"), manager(), did(R"(getFileDirPath("x"))"), fileLine("x", 0), manager(),
                  did(R"(getFileDirPath("/a/y"))"), info("Fast Switch dir:/a to /b ")})
        .check();
}

TEST(DirectoryChanged, NoEntryHasADirectory_IsPublished)
{
    std::vector<FolderFileInfo_s> files = {folderFile("x")};
    Scenario(4, &files)
        .given([](FakePlatform& platform, ExposedPlugin& plugin) {
            changing("/b", true)(platform, plugin);
            platform.directories = {{"x", ""}};
        })
        .happens(Journal{info("nEvt : 4"), manager(), did(R"(getFileDirPath("x"))"), fileLine("x", 0),
                         complete(1, entry("x", "4", "5000000000", false))} +
                 kAnswered)
        .check();
}

TEST(DirectoryChanged, LaterEntries_AreNotTested)
{
    std::vector<FolderFileInfo_s> files = {folderFile("/b/x"), folderFile("/a/y")};
    Scenario(4, &files)
        .given(changing("/b", true))
        .happens(
            Journal{info("nEvt : 4"), manager(), did(R"(getFileDirPath("/b/x"))"), fileLine("/b/x", 0), fileLine("/a/y", 0),
                    complete(2, entry("/b/x", "4", "5000000000", false) + "," + entry("/a/y", "4", "5000000000", false))} +
            kAnswered)
        .check();
}

TEST(DirectoryChanged, NoVector_IsDroppedAndKeepsTheSlot)
{
    Scenario(4, kNoData).given(changing("/b", true)).happens({info("nEvt : 4"), dbg("Pointer is NULL!!!")}).check();
}

TEST(DirectoryChanged, NewRequestDuringTheWalk_DoesNotChangeTheAnswer)
{
    // The folder browser is asked on the event thread; a command may rewrite the slot meanwhile.
    static ExposedPlugin* rewritten = nullptr;
    std::vector<FolderFileInfo_s> files = {folderFile("/d/a")};
    Scenario(4, &files)
        .given([](FakePlatform& platform, ExposedPlugin& plugin) {
            changing("/d", false)(platform, plugin);
            rewritten = &plugin;
            platform.onDirectoryAsked = [] { rewritten->m_requestSlots[0] = {"c2", "r2", "odd event", "/e"}; };
        })
        .happens(Journal{info("nEvt : 4"), manager(), did(R"(getFileDirPath("/d/a"))"), slotChanged(0, "channel", "c2"),
                         slotChanged(0, "reqId", "r2"), slotChanged(0, "extra", "/e"), fileLine("/d/a", 0),
                         complete(1, entry("/d/a", "4", "5000000000", false))} +
                 kAnswered)
        .check();
}

TEST(DirectoryChanged, BrowserThatRewritesTheEntries_AnswersWithWhatWasCounted)
{
    static std::vector<FolderFileInfo_s> files;
    Scenario(4, &files)
        .given([](FakePlatform& platform, ExposedPlugin& plugin) {
            changing("/d", true)(platform, plugin);
            files.reserve(2);
            files = {folderFile("/d/a")};
            platform.onDirectoryAsked = [] {
                files.front() = folderFile("/x/rewritten");
                files.push_back(folderFile("/x/added")); // there is room: the walk goes on where it was
            };
        })
        .happens(Journal{info("nEvt : 4"), manager(), did(R"(getFileDirPath("/d/a"))"), fileLine("/d/a", 0),
                         complete(1, entry("/d/a", "4", "5000000000", false))} +
                 kAnswered)
        .check();
}

TEST(DirectoryChanged, HostThatChangesTheDirectoryAtOnce_HasItsNewOneForgotten)
{
    // Whoever publishes empties the slot's directory last, also when a command has come back meanwhile.
    static ExposedPlugin* reentered = nullptr;
    std::vector<FolderFileInfo_s> files;
    Scenario(4, &files)
        .given([](FakePlatform& platform, ExposedPlugin& plugin) {
            changing("/d", false)(platform, plugin);
            plugin.m_itemCountPerPage = 20;
            reentered = &plugin;
            plugin.m_pPublishCallback = [](const char* source, const char* name, Json::Value& body) {
                recordPublication(source, name, body);
                Json::Value request = parsed(R"({"channelId":"c2","reqId":"r2","number":20,"dirpath":"/e"})");
                Json::Value reply;
                EXPECT_TRUE(reentered->chgdir(&request, &reply));
            };
        })
        .happens({info("nEvt : 4"), complete(0, ""), readString("channelId"), readString("reqId"), readInt("number", 9),
                  in("chgdir", info("Channleid:c2, reqId:r2, itemPerPage:20")),
                  in("chgdir", info("Change to dir: /e, ItemPerPage:20")), changed("m_directoryChanging", true),
                  in("chgdir", war("fast ch dir: /d to : /e")), slotChanged(0, "channel", "c2"),
                  slotChanged(0, "reqId", "r2"), slotChanged(0, "extra", "/e"), manager(), did("stopThumbnail()"), manager(),
                  did(R"(chdir("/e", 20))"), changed("m_pagingPosition", 0), info("chgdir.complete: reqId:r1, channelId:c1"),
                  slotChanged(0, "extra", "")})
        .check();
}

TEST(DirectoryChanged, HostThatRaisesAnEvent_GetsItInBetween)
{
    std::vector<FolderFileInfo_s> files;
    Scenario(4, &files)
        .given([](FakePlatform& platform, ExposedPlugin& plugin) {
            changing("/d", false)(platform, plugin);
            plugin.m_pPublishCallback = [](const char* source, const char* name, Json::Value& body) {
                recordPublication(source, name, body);
                if (std::string(source) == "c1") {
                    CStorageMediaPlugin::onRecvEvent(52, nullptr);
                }
            };
        })
        .happens(
            Journal{info("nEvt : 4"), complete(0, ""), info("nEvt : 52"), broadcast("storagemedia.set.usb.source", "null")} +
            kAnswered)
        .check();
}

TEST(DirectoryChanged, ChangeToBBeforeAFinishes_AnswersBAlone)
{
    FakePlatform platform;
    ExposedPlugin plugin;
    plugin.setCallback(recordPublication);
    Json::Value reply;
    Json::Value first = parsed(R"({"channelId":"c1","reqId":"ra","dirpath":"/a"})");
    Json::Value second = parsed(R"({"channelId":"c1","reqId":"rb","dirpath":"/b"})");
    ASSERT_TRUE(plugin.chgdir(&first, &reply));
    ASSERT_TRUE(plugin.chgdir(&second, &reply));
    platform.takeJournal();

    std::vector<FolderFileInfo_s> resultOfA = {folderFile("/a/x")};
    std::vector<FolderFileInfo_s> resultOfB = {folderFile("/b/y")};
    platform.listener(4, &resultOfA);
    EXPECT_EQ(platform.takeJournal().find("<publish"), std::string::npos);
    platform.listener(4, &resultOfB);
    EXPECT_NE(platform.takeJournal().find(R"("reqId":"rb"})"), std::string::npos);
    EXPECT_EQ(plugin.m_requestSlots[0].extra, "");
}

struct SearchEvent {
    int id;
    std::string notification;
    std::string line;
};

class SearchEvents : public testing::TestWithParam<SearchEvent> {};

TEST_P(SearchEvents, Object_IsPublishedWithTheRequestId)
{
    const std::string frame = "nEvt : " + std::to_string(GetParam().id);
    for (const std::string given : {R"({"reqId":"theirs","total":2})", R"({"total":2})"}) {
        Json::Value object = parsed(given);
        Scenario(GetParam().id, &object)
            .happens({info(frame), dbg(GetParam().line),
                      published("odd channel of slot 1", GetParam().notification,
                                R"({"reqId":"odd request of slot 1","total":2})")})
            .check();
    }
}

TEST_P(SearchEvents, NobodyWaits_IsPublishedWithAnEmptyId)
{
    Json::Value object = parsed("{}");
    Scenario(GetParam().id, &object)
        .given([](FakePlatform&, ExposedPlugin& plugin) { plugin.m_requestSlots[1].clear(); })
        .happens({info("nEvt : " + std::to_string(GetParam().id)), dbg(GetParam().line),
                  published("", GetParam().notification, R"({"reqId":""})")})
        .check();
}

INSTANTIATE_TEST_SUITE_P(
    Events, SearchEvents,
    testing::Values(SearchEvent{5, "storagemedia.video.searchFiles.complete", "SOCMW_MM_EVENT_FB_FOLDER_UPDATE"},
                    SearchEvent{6, "storagemedia.video.searchFiles.fragment", "SOCMW_MM_EVENT_FILTER_DATA_READY_UPDATE"}),
    [](const auto& row) { return "Id" + std::to_string(row.param.id); });

TEST(GroupingFinished, Keys_ArePublishedInOrder)
{
    std::vector<std::string> keys = {"Zappa", "", "Abba"};
    Scenario(10, &keys)
        .happens({info("nEvt : 10"), dbg("====>>>>>group key:Zappa"), dbg("====>>>>>group key:"),
                  dbg("====>>>>>group key:Abba"),
                  published("odd channel of slot 2", "storagemedia.group.musicorphoto.complete",
                            R"({"keyNum":3u,"keylst":[{"keystr":"Zappa"},{"keystr":""},{"keystr":"Abba"}],)"
                            R"("reqId":"odd request of slot 2"})")})
        .check();
}

TEST(GroupingFinished, NoKeysAndNobodyWaits_IsPublishedEmpty)
{
    std::vector<std::string> keys;
    Scenario(10, &keys)
        .given([](FakePlatform&, ExposedPlugin& plugin) { plugin.m_requestSlots[2].clear(); })
        .happens({info("nEvt : 10"),
                  published("", "storagemedia.group.musicorphoto.complete", R"({"keyNum":0u,"keylst":[],"reqId":""})")})
        .check();
}

TEST(PhotoInfo, Title_IsBroadcast)
{
    for (const std::string name : {"Sunset", ""}) {
        std::string title = name;
        Scenario(33, &title)
            .happens({info("nEvt : 33"), broadcast("storagemedia.photo.infoupdate", R"({"strTitle":")" + name + R"("})")})
            .check();
    }
}

} // namespace
