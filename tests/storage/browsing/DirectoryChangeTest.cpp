#include "support/Scenario.h"
#include "support/TypedJson.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

const char kRequest[] = R"({"channelId":"c1","reqId":"r1","number":20,"dirpath":"/mnt/a"})";

Scenario chgdir()
{
    return Scenario("chgdir", &CStorageMediaPlugin::chgdir).request(kRequest);
}

/// Slot 0 with directory @p directory as the current one, and the directory-change flag.
std::function<void(FakePlatform&, ExposedPlugin&)> current(const std::string& directory, bool changing)
{
    return [=](FakePlatform&, ExposedPlugin& plugin) {
        plugin.m_requestSlots[0] = {"old channel", "old request", "old event", directory};
        plugin.m_directoryChanging = changing;
    };
}

/// What happens up to the test for another change that still runs.
Journal reading(const std::string& directory)
{
    return {readString("channelId"),
            readString("reqId"),
            readInt("number", 9),
            changed("m_itemCountPerPage", 20),
            info("Channleid:c1, reqId:r1, itemPerPage:20"),
            info("Change to dir: " + directory + ", ItemPerPage:20")};
}

Journal recorded()
{
    return {slotChanged(0, "channel", "c1"), slotChanged(0, "reqId", "r1")};
}

Journal recorded(const std::string& directory)
{
    return recorded() + Journal{slotChanged(0, "extra", directory)};
}

Journal changing(const std::string& directory)
{
    return {manager(), did("stopThumbnail()"), manager(), did("chdir(\"" + directory + "\", 20)")};
}

const Happening kFlagSet = changed("m_directoryChanging", true);
const Happening kFlagCleared = changed("m_directoryChanging", false);
const Happening kPositionReset = changed("m_pagingPosition", 0);

TEST(ChangeDirectory, Accepted_StoresTheRequestAndStartsTheChange)
{
    chgdir()
        .given(current("", true))
        .happens(reading("/mnt/a") + Journal{kFlagCleared} + recorded("/mnt/a") + changing("/mnt/a") +
                 Journal{kPositionReset})
        .succeeds()
        .check();
}

TEST(ChangeDirectory, WithoutNumber_UsesNine)
{
    for (const char* number : {"", R"(,"number":"20")", R"(,"number":true)"}) {
        const std::string request = R"({"channelId":"c1","reqId":"r1","dirpath":"/a")" + std::string(number) + "}";
        chgdir()
            .request(request)
            .given(current("", false))
            .happens(Journal{readString("channelId"), readString("reqId"), readInt("number", 9),
                             war("unknown number, set default:9"), changed("m_itemCountPerPage", 9),
                             info("Channleid:c1, reqId:r1, itemPerPage:9"), info("Change to dir: /a, ItemPerPage:9")} +
                     recorded("/a") +
                     Journal{manager(), did("stopThumbnail()"), manager(), did(R"(chdir("/a", 9))"), kPositionReset})
            .succeeds()
            .check();
    }
}

TEST(ChangeDirectory, WithoutDirectory_ChangesToTheEmptyOneAndAddsItToTheRequest)
{
    chgdir()
        .request(R"({"channelId":"c1","reqId":"r1","number":20})")
        .given(current("", false))
        .happens(reading("") + recorded() + changing("") + Journal{kPositionReset})
        .succeeds()
        .leavesRequest(R"({"channelId":"c1","dirpath":null,"number":20,"reqId":"r1"})")
        .check();
}

TEST(ChangeDirectory, DirectoryOfAnotherType_IsTakenAsText)
{
    for (const std::string directory : {"12", "true"}) {
        chgdir()
            .request(R"({"channelId":"c1","reqId":"r1","number":20,"dirpath":)" + directory + "}")
            .given(current("", false))
            .happens(reading(directory) + recorded(directory) + changing(directory) + Journal{kPositionReset})
            .succeeds()
            .check();
    }
}

TEST(ChangeDirectory, DirectoryThatIsNoText_IsTheLibrarysErrorAndStoresNoRequest)
{
    for (const std::string directory : {"{}", "[]"}) {
        Scenario("chgdir",
                 [&](ExposedPlugin& plugin) {
                     Json::Value request =
                         testsupport::parsed(R"({"channelId":"c1","reqId":"r1","number":20,"dirpath":)" + directory + "}");
                     Json::Value reply;
                     EXPECT_THROW(plugin.chgdir(&request, &reply), Json::LogicError);
                 })
            .happens({readString("channelId"), readString("reqId"), readInt("number", 9), changed("m_itemCountPerPage", 20),
                      info("Channleid:c1, reqId:r1, itemPerPage:20")})
            .check();
    }
}

TEST(ChangeDirectory, AnotherDirectoryIsCurrent_SetsTheFlagAndLogsBoth)
{
    for (const std::string other : {"/mnt/old", "/mnt/a/"}) {
        const Journal fast = {war("fast ch dir: " + other + " to : /mnt/a")};
        chgdir()
            .given(current(other, false))
            .happens(reading("/mnt/a") + Journal{kFlagSet} + fast + recorded("/mnt/a") + changing("/mnt/a") +
                     Journal{kPositionReset})
            .succeeds()
            .check();
        chgdir()
            .given(current(other, true))
            .happens(reading("/mnt/a") + fast + recorded("/mnt/a") + changing("/mnt/a") + Journal{kPositionReset})
            .succeeds()
            .check();
    }
}

TEST(ChangeDirectory, SameDirectoryAgain_ClearsTheFlag)
{
    chgdir()
        .given(current("/mnt/a", true))
        .happens(reading("/mnt/a") + Journal{kFlagCleared} + recorded() + changing("/mnt/a") + Journal{kPositionReset})
        .succeeds()
        .check();
}

TEST(ChangeDirectory, BrowserRefuses_KeepsTheRequestAndThePagingPosition)
{
    chgdir()
        .given(current("", false))
        .refusedBy("chdir")
        .happens(reading("/mnt/a") + recorded("/mnt/a") + changing("/mnt/a") + Journal{err("Chg to dit:/mnt/a failed!!!")})
        .fails()
        .check();
}

TEST(ChangeDirectory, ThumbnailsCannotBeStopped_GoesOn)
{
    chgdir()
        .given(current("", false))
        .refusedBy("stopThumbnail")
        .happens(reading("/mnt/a") + recorded("/mnt/a") + changing("/mnt/a") + Journal{kPositionReset})
        .succeeds()
        .check();
}

TEST(ChangeDirectory, ChannelUnreadableOrEmpty_StoresNothing)
{
    for (const char* request :
         {R"({"reqId":"r1"})", R"({"channelId":1,"reqId":"r1"})", R"({"channelId":"","reqId":"r1"})"}) {
        chgdir().request(request).happens({readString("channelId"), err("unknown channelId")}).fails().check();
    }
}

TEST(ChangeDirectory, RequestIdUnreadableOrEmpty_StoresNothing)
{
    for (const char* reqId : {"", R"(,"reqId":1)", R"(,"reqId":"")"}) {
        chgdir()
            .request(R"({"channelId":"c1","number":20)" + std::string(reqId) + "}")
            .happens({readString("channelId"), readString("reqId"), err("unknown reqId")})
            .fails()
            .check();
    }
}

TEST(ChangeDirectory, NullPointers_Fail)
{
    chgdir().nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    chgdir().nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

} // namespace
