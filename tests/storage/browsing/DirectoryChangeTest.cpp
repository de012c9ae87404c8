#include "support/Scenario.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

const char kRequest[] = R"({"channelId":"c1","reqId":"r1","number":20,"dirpath":"/mnt/a"})";

Scenario chgdir()
{
    return Scenario("chgdir", &CStorageMediaPlugin::chgdir).request(kRequest);
}

/// What happens from the first read to the change itself, with @p between before the thumbnails are stopped.
std::vector<Happening> changing(const std::string& directory, const std::vector<Happening>& between = {})
{
    std::vector<Happening> journal = {readString("channelId"), readString("reqId"), readInt("number", 9),
                                      info("Channleid:c1, reqId:r1, itemPerPage:20"),
                                      info("Change to dir: " + directory + ", ItemPerPage:20")};
    journal.insert(journal.end(), between.begin(), between.end());
    journal.insert(journal.end(), {manager(), did("stopThumbnail()"), manager(), did("chdir(\"" + directory + "\", 20)")});
    return journal;
}

void expectSlot(const ExposedPlugin& plugin, const std::string& channel, const std::string& reqId, const std::string& extra)
{
    EXPECT_EQ(plugin.m_requestSlots[0].channel, channel);
    EXPECT_EQ(plugin.m_requestSlots[0].reqId, reqId);
    EXPECT_EQ(plugin.m_requestSlots[0].event, "");
    EXPECT_EQ(plugin.m_requestSlots[0].extra, extra);
}

std::function<void(FakePlatform&, ExposedPlugin&)> current(const std::string& directory, bool changing)
{
    return [=](FakePlatform&, ExposedPlugin& plugin) {
        plugin.m_requestSlots[0].extra = directory;
        plugin.m_directoryChanging = changing;
        plugin.m_pagingPosition = 4;
    };
}

TEST(ChangeDirectory, Accepted_StoresTheRequestAndStartsTheChange)
{
    chgdir()
        .given(current("", true))
        .happens(changing("/mnt/a"))
        .succeeds()
        .afterwards([](const ExposedPlugin& plugin) {
            expectSlot(plugin, "c1", "r1", "/mnt/a");
            EXPECT_EQ(plugin.m_itemCountPerPage, 20);
            EXPECT_EQ(plugin.m_pagingPosition, 0);
            EXPECT_FALSE(plugin.m_directoryChanging);
        })
        .check();
}

TEST(ChangeDirectory, WithoutNumber_UsesNine)
{
    for (const char* number : {"", R"(,"number":"20")", R"(,"number":true)"}) {
        const std::string request = R"({"channelId":"c1","reqId":"r1","dirpath":"/a")" + std::string(number) + "}";
        chgdir()
            .request(request)
            .given([](FakePlatform&, ExposedPlugin& plugin) { plugin.m_itemCountPerPage = 30; })
            .happens({readString("channelId"), readString("reqId"), readInt("number", 9),
                      war("unknown number, set default:9"), info("Channleid:c1, reqId:r1, itemPerPage:9"),
                      info("Change to dir: /a, ItemPerPage:9"), manager(), did("stopThumbnail()"), manager(),
                      did(R"(chdir("/a", 9))")})
            .succeeds()
            .afterwards([](const ExposedPlugin& plugin) { EXPECT_EQ(plugin.m_itemCountPerPage, 9); })
            .check();
    }
}

TEST(ChangeDirectory, WithoutDirectory_ChangesToTheEmptyOneAndAddsItToTheRequest)
{
    chgdir()
        .request(R"({"channelId":"c1","reqId":"r1","number":20})")
        .happens(changing(""))
        .succeeds()
        .leavesRequest(R"({"channelId":"c1","dirpath":null,"number":20,"reqId":"r1"})")
        .afterwards([](const ExposedPlugin& plugin) { expectSlot(plugin, "c1", "r1", ""); })
        .check();
}

TEST(ChangeDirectory, DirectoryOfAnotherType_IsTakenAsText)
{
    chgdir()
        .request(R"({"channelId":"c1","reqId":"r1","number":20,"dirpath":12})")
        .happens(changing("12"))
        .succeeds()
        .check();
    chgdir()
        .request(R"({"channelId":"c1","reqId":"r1","number":20,"dirpath":true})")
        .happens(changing("true"))
        .succeeds()
        .check();
}

TEST(ChangeDirectory, DirectoryThatIsNoText_IsTheLibrarysError)
{
    FakePlatform platform;
    ExposedPlugin plugin;
    Json::Value request;
    Json::Value reply;
    request["channelId"] = "c1";
    request["reqId"] = "r1";
    request["dirpath"] = Json::Value(Json::objectValue);
    EXPECT_THROW(plugin.chgdir(&request, &reply), Json::LogicError);
    expectSlot(plugin, "", "", "");
}

TEST(ChangeDirectory, AnotherDirectoryIsCurrent_SetsTheFlagAndLogsBoth)
{
    chgdir()
        .given(current("/mnt/old", false))
        .happens(changing("/mnt/a", {war("fast ch dir: /mnt/old to : /mnt/a")}))
        .succeeds()
        .afterwards([](const ExposedPlugin& plugin) {
            expectSlot(plugin, "c1", "r1", "/mnt/a");
            EXPECT_TRUE(plugin.m_directoryChanging);
        })
        .check();
}

TEST(ChangeDirectory, CurrentWithTrailingSlash_IsAnother)
{
    chgdir()
        .given(current("/mnt/a/", false))
        .happens(changing("/mnt/a", {war("fast ch dir: /mnt/a/ to : /mnt/a")}))
        .succeeds()
        .afterwards([](const ExposedPlugin& plugin) { EXPECT_TRUE(plugin.m_directoryChanging); })
        .check();
}

TEST(ChangeDirectory, SameDirectoryAgain_ClearsTheFlag)
{
    chgdir()
        .given(current("/mnt/a", true))
        .happens(changing("/mnt/a"))
        .succeeds()
        .afterwards([](const ExposedPlugin& plugin) { EXPECT_FALSE(plugin.m_directoryChanging); })
        .check();
}

TEST(ChangeDirectory, BrowserRefuses_KeepsTheRequestAndThePagingPosition)
{
    for (const int status : {1, -1}) {
        std::vector<Happening> journal = changing("/mnt/a");
        journal.push_back(err("Chg to dit:/mnt/a failed!!!"));
        chgdir()
            .given([status](FakePlatform& platform, ExposedPlugin& plugin) {
                current("", false)(platform, plugin);
                platform.statuses["chdir"] = status;
            })
            .happens(journal)
            .fails()
            .afterwards([](const ExposedPlugin& plugin) {
                expectSlot(plugin, "c1", "r1", "/mnt/a");
                EXPECT_EQ(plugin.m_itemCountPerPage, 20);
                EXPECT_EQ(plugin.m_pagingPosition, 4);
            })
            .check();
    }
}

TEST(ChangeDirectory, ThumbnailsCannotBeStopped_GoesOn)
{
    chgdir()
        .given([](FakePlatform& platform, ExposedPlugin&) { platform.statuses["stopThumbnail"] = -1; })
        .happens(changing("/mnt/a"))
        .succeeds()
        .check();
}

TEST(ChangeDirectory, ChannelUnreadableOrEmpty_StoresNothing)
{
    for (const char* request :
         {R"({"reqId":"r1"})", R"({"channelId":1,"reqId":"r1"})", R"({"channelId":"","reqId":"r1"})"}) {
        chgdir()
            .request(request)
            .happens({readString("channelId"), err("unknown channelId")})
            .fails()
            .afterwards([](const ExposedPlugin& plugin) { expectSlot(plugin, "", "", ""); })
            .check();
    }
}

TEST(ChangeDirectory, RequestIdUnreadableOrEmpty_StoresNothing)
{
    for (const char* reqId : {"", R"(,"reqId":1)", R"(,"reqId":"")"}) {
        chgdir()
            .request(R"({"channelId":"c1","number":20)" + std::string(reqId) + "}")
            .given([](FakePlatform&, ExposedPlugin& plugin) {
                plugin.m_requestSlots[0] = {"old channel", "old request", "", "/old"};
            })
            .happens({readString("channelId"), readString("reqId"), err("unknown reqId")})
            .fails()
            .afterwards([](const ExposedPlugin& plugin) {
                expectSlot(plugin, "old channel", "old request", "/old");
                EXPECT_EQ(plugin.m_itemCountPerPage, 9);
            })
            .check();
    }
}

TEST(ChangeDirectory, NullPointers_Fail)
{
    chgdir().nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    chgdir().nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

} // namespace
