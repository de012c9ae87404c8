#include "support/Scenario.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::AsyncReqNotify;
using tvfirmware::CStorageMediaPlugin;

Scenario start(const std::string& request)
{
    return Scenario("startThumbnail", &CStorageMediaPlugin::startThumbnail)
        .request(request)
        .given([](FakePlatform&, ExposedPlugin& plugin) {
            plugin.m_requestSlots[3] = {"old channel", "old request", "old event", "old extra"};
            plugin.m_thumbnailTotal = 77;
        });
}

std::function<void(const ExposedPlugin&)> leaves(const AsyncReqNotify& expected, int total)
{
    return [=](const ExposedPlugin& plugin) {
        const AsyncReqNotify& slot = plugin.m_requestSlots[3];
        EXPECT_EQ(slot.channel, expected.channel);
        EXPECT_EQ(slot.reqId, expected.reqId);
        EXPECT_EQ(slot.event, expected.event);
        EXPECT_EQ(slot.extra, "old extra");
        EXPECT_EQ(plugin.m_thumbnailTotal, total);
    };
}

const AsyncReqNotify kStored = {"c1", "r1", "startThumbnail", ""};

std::vector<Happening> readingAll()
{
    return {readString("channelId"), readString("reqId"),     readString("path"),      readInt("type"),
            readUInt("width", 240),  readUInt("height", 360), readUInt("startidx", 0), readUInt("count", 9)};
}

std::vector<Happening> after(std::vector<Happening> first, const std::vector<Happening>& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

const char kOneFile[] =
    R"({"channelId":"c1","reqId":"r1","path":"/a.jpg","type":3,"width":100,"height":50,"startidx":4,"count":6})";

std::vector<Happening> startingOneFile()
{
    return after(readingAll(), {dbg("channelId:c1, reqId:r1"), dbg("width:100, heigth:50, type:3, path:/a.jpg"),
                                dbg("startIdx:4, count:6"), manager(), did(R"(appendThumbnailList("/a.jpg"))")});
}

TEST(StartThumbnail, PathGiven_AsksForThatOneFile)
{
    start(kOneFile)
        .nullReply()
        .happens(after(startingOneFile(), {manager(), did("startThumbnail(100u, 50u, 3)")}))
        .succeeds()
        .afterwards(leaves(kStored, 1))
        .check();
}

TEST(StartThumbnail, NoPath_AsksForTheRange)
{
    for (const char* path : {"", R"(,"path":"")", R"(,"path":5)"}) {
        start(R"({"channelId":"c1","reqId":"r1","type":-3,"width":100,"height":50,"startidx":4,"count":6)" +
              std::string(path) + "}")
            .happens({readString("channelId"), readString("reqId"), readString("path"), war("unknown Path"), readInt("type"),
                      readUInt("width", 240), readUInt("height", 360), readUInt("startidx", 0), readUInt("count", 9),
                      dbg("channelId:c1, reqId:r1"), dbg("width:100, heigth:50, type:-3, path:"), dbg("startIdx:4, count:6"),
                      manager(), did("appendThumbnailList(4, 6)"), manager(), did("startThumbnail(100u, 50u, -3)")})
            .succeeds()
            .afterwards(leaves(kStored, 6))
            .check();
    }
}

TEST(StartThumbnail, NumbersUnreadable_TakesTheDefaults)
{
    for (const char* numbers : {"", R"(,"width":-1,"height":"50","startidx":-1,"count":-1)"}) {
        start(R"({"channelId":"c1","reqId":"r1","type":3)" + std::string(numbers) + "}")
            .happens({readString("channelId"),
                      readString("reqId"),
                      readString("path"),
                      war("unknown Path"),
                      readInt("type"),
                      readUInt("width", 240),
                      dbg("unknown width, Set default:240"),
                      readUInt("height", 360),
                      dbg("unknown heigth, Set default:360"),
                      readUInt("startidx", 0),
                      dbg("unknown startidx, Set default:0"),
                      readUInt("count", 9),
                      dbg("unknown count, Set default:9"),
                      dbg("channelId:c1, reqId:r1"),
                      dbg("width:240, heigth:360, type:3, path:"),
                      dbg("startIdx:0, count:9"),
                      manager(),
                      did("appendThumbnailList(0, 9)"),
                      manager(),
                      did("startThumbnail(240u, 360u, 3)")})
            .succeeds()
            .afterwards(leaves(kStored, 9))
            .check();
    }
}

TEST(StartThumbnail, LargestNumbers_ArePassedAsTheyAre)
{
    start(R"({"channelId":"c1","reqId":"r1","type":3,"width":4294967295,"height":4294967294,)"
          R"("startidx":4294967293,"count":4294967292})")
        .happens({readString("channelId"), readString("reqId"), readString("path"), war("unknown Path"), readInt("type"),
                  readUInt("width", 240), readUInt("height", 360), readUInt("startidx", 0), readUInt("count", 9),
                  dbg("channelId:c1, reqId:r1"), dbg("width:-1, heigth:-2, type:3, path:"), dbg("startIdx:-3, count:-4"),
                  manager(), did("appendThumbnailList(-3, -4)"), manager(),
                  did("startThumbnail(4294967295u, 4294967294u, 3)")})
        .succeeds()
        .afterwards(leaves(kStored, -4))
        .check();
}

TEST(StartThumbnail, EmptyRequestId_IsAccepted)
{
    start(R"({"channelId":"c1","reqId":"","path":"/a.jpg","type":3,"width":100,"height":50,"startidx":4,"count":6})")
        .happens(after(readingAll(), {dbg("channelId:c1, reqId:"), dbg("width:100, heigth:50, type:3, path:/a.jpg"),
                                      dbg("startIdx:4, count:6"), manager(), did(R"(appendThumbnailList("/a.jpg"))"),
                                      manager(), did("startThumbnail(100u, 50u, 3)")}))
        .succeeds()
        .afterwards(leaves({"c1", "", "startThumbnail", ""}, 1))
        .check();
}

TEST(StartThumbnail, ListRefused_KeepsTheNewTotalAndStartsNothing)
{
    start(kOneFile)
        .given([](FakePlatform& platform, ExposedPlugin& plugin) {
            plugin.m_requestSlots[3].extra = "old extra";
            platform.statuses["appendThumbnailList"] = -5;
        })
        .happens(after(startingOneFile(), {err("add list failed!!!ret:-5")}))
        .fails()
        .afterwards(leaves(kStored, 1))
        .check();
}

TEST(StartThumbnail, StartRefused_LogsItsStatus)
{
    start(kOneFile)
        .given([](FakePlatform& platform, ExposedPlugin& plugin) {
            plugin.m_requestSlots[3].extra = "old extra";
            platform.statuses["startThumbnail"] = 2;
        })
        .happens(
            after(startingOneFile(), {manager(), did("startThumbnail(100u, 50u, 3)"), err("startThumbnail failed!!!ret:2")}))
        .fails()
        .afterwards(leaves(kStored, 1))
        .check();
}

TEST(StartThumbnail, ChannelUnreadableOrEmpty_StoresNothing)
{
    for (const char* request : {R"({"reqId":"r1","type":3})", R"({"channelId":1,"reqId":"r1"})", R"({"channelId":""})"}) {
        start(request)
            .happens({readString("channelId"), err("unknown channelId")})
            .fails()
            .afterwards(leaves({"old channel", "old request", "old event", ""}, 77))
            .check();
    }
}

TEST(StartThumbnail, RequestIdUnreadable_HasAlreadyReplacedTheChannel)
{
    for (const char* request : {R"({"channelId":"c1","type":3})", R"({"channelId":"c1","reqId":5,"type":3})"}) {
        start(request)
            .happens({readString("channelId"), readString("reqId"), err("unknown reqId")})
            .fails()
            .afterwards(leaves({"c1", "old request", "old event", ""}, 77))
            .check();
    }
}

TEST(StartThumbnail, TypeUnreadable_KeepsTheStoredIdsAndTheTotal)
{
    for (const char* type : {"", R"(,"type":"3")"}) {
        start(R"({"channelId":"c1","reqId":"r1","path":"/a.jpg")" + std::string(type) + "}")
            .happens(
                {readString("channelId"), readString("reqId"), readString("path"), readInt("type"), err("unknown type")})
            .fails()
            .afterwards(leaves(kStored, 77))
            .check();
    }
}

TEST(StartThumbnail, NullRequest_Fails)
{
    start("{}").nullRequest().happens({err("jsonParams is NULL!!!")}).fails().check();
}

TEST(StopThumbnail, AnyPointers_StopsAndKeepsTheRequest)
{
    const Scenario stop("stopThumbnail", &CStorageMediaPlugin::stopThumbnail);
    const auto running = [](FakePlatform&, ExposedPlugin& plugin) {
        plugin.m_requestSlots[3] = {"c1", "r1", "startThumbnail", "old extra"};
        plugin.m_thumbnailTotal = 5;
    };
    const std::vector<Happening> stopping = {manager(), did("stopThumbnail()")};
    Scenario(stop).given(running).happens(stopping).succeeds().afterwards(leaves(kStored, 5)).check();
    Scenario(stop).given(running).nullRequest().nullReply().happens(stopping).succeeds().check();
}

TEST(StopThumbnail, BrowserRefuses_LogsItsStatus)
{
    Scenario("stopThumbnail", &CStorageMediaPlugin::stopThumbnail)
        .given([](FakePlatform& platform, ExposedPlugin&) { platform.statuses["stopThumbnail"] = -8; })
        .happens({manager(), did("stopThumbnail()"), err("stopThumbnail failed!!!ret:-8")})
        .fails()
        .check();
}

Scenario notify(bool success)
{
    return Scenario("NotifyThumbnailInfo", [success](ExposedPlugin& plugin) { plugin.NotifyThumbnailInfo(success); })
        .given([](FakePlatform&, ExposedPlugin& plugin) {
            plugin.m_thumbnailChannel = {"c1", "r1", "storage.media.thumbnail.complete", "extra"};
            plugin.m_thumbnailIndex = 6;
        });
}

void expectDisarmed(const ExposedPlugin& plugin)
{
    EXPECT_EQ(plugin.m_thumbnailChannel.channel, "c1");
    EXPECT_EQ(plugin.m_thumbnailChannel.reqId, "");
    EXPECT_EQ(plugin.m_thumbnailChannel.event, "storage.media.thumbnail.complete");
    EXPECT_EQ(plugin.m_thumbnailChannel.extra, "extra");
    EXPECT_EQ(plugin.m_thumbnailIndex, -1);
}

TEST(NotifyThumbnailInfo, Success_PublishesAnEmptyPictureWithoutError)
{
    notify(true)
        .happens(
            {dbg("[TVFW::CStoragePlugin] notify Thumbnail status:1, index:6, reqId:r1"),
             dbg("[TVFW::CStoragePlugin] Calling getThumbnailDataByIndex:6, imageData.size:0"),
             published("c1", "storage.media.thumbnail.complete", R"({"errorCode":0,"imageData":"","index":6,"reqId":"r1"})"),
             dbg("[TVFW::CStoragePlugin] NotifyThumbnailInfo, clear reqId: r1")})
        .afterwards(expectDisarmed)
        .check();
}

TEST(NotifyThumbnailInfo, Failure_PublishesErrorOne)
{
    notify(false)
        .happens(
            {dbg("[TVFW::CStoragePlugin] notify Thumbnail status:0, index:6, reqId:r1"),
             published("c1", "storage.media.thumbnail.complete", R"({"errorCode":1,"imageData":"","index":6,"reqId":"r1"})"),
             dbg("[TVFW::CStoragePlugin] NotifyThumbnailInfo, clear reqId: r1")})
        .afterwards(expectDisarmed)
        .check();
}

TEST(NotifyThumbnailInfo, NothingPending_PublishesNothingAndKeepsTheIndex)
{
    notify(true)
        .given([](FakePlatform&, ExposedPlugin& plugin) { plugin.m_thumbnailIndex = 6; })
        .happens({dbg("[TVFW::CStoragePlugin] notify Thumbnail status:1, index:6, reqId:")})
        .afterwards([](const ExposedPlugin& plugin) { EXPECT_EQ(plugin.m_thumbnailIndex, 6); })
        .check();
}

TEST(NotifyThumbnailInfo, NoCallback_DisarmsAllTheSame)
{
    notify(false)
        .given([](FakePlatform&, ExposedPlugin& plugin) {
            plugin.m_thumbnailChannel = {"c1", "r1", "storage.media.thumbnail.complete", "extra"};
            plugin.m_thumbnailIndex = 6;
            plugin.setCallback(nullptr);
        })
        .happens({dbg("[TVFW::CStoragePlugin] notify Thumbnail status:0, index:6, reqId:r1"),
                  dbg("[TVFW::CStoragePlugin] NotifyThumbnailInfo, clear reqId: r1")})
        .afterwards(expectDisarmed)
        .check();
}

} // namespace
