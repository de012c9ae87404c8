#include "support/Scenario.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

Scenario start(const std::string& request)
{
    return Scenario("startThumbnail", &CStorageMediaPlugin::startThumbnail).request(request);
}

const Happening kChannelStored = slotChanged(3, "channel", "c1");

Journal readingIds(const std::string& reqId = "r1")
{
    return {readString("channelId"), kChannelStored, readString("reqId"), slotChanged(3, "reqId", reqId),
            slotChanged(3, "event", "startThumbnail")};
}

const Journal kReadingSizes = {readInt("type"), readUInt("width", 240), readUInt("height", 360), readUInt("startidx", 0),
                               readUInt("count", 9)};

/// All keys readable; @p warning stands behind the path's.
Journal reading(const std::string& reqId = "r1", const Journal& warning = {})
{
    return readingIds(reqId) + Journal{readString("path")} + warning + kReadingSizes;
}

Journal total(int value)
{
    return {manager(), changed("m_thumbnailTotal", value)};
}

const char kOneFile[] =
    R"({"channelId":"c1","reqId":"r1","path":"/a.jpg","type":3,"width":100,"height":50,"startidx":4,"count":6})";

Journal startingOneFile(const std::string& reqId = "r1")
{
    return reading(reqId) +
           Journal{dbg("channelId:c1, reqId:" + reqId), dbg("width:100, heigth:50, type:3, path:/a.jpg"),
                   dbg("startIdx:4, count:6")} +
           total(1) + Journal{did(R"(appendThumbnailList("/a.jpg"))")};
}

const Journal kStarted = {manager(), did("startThumbnail(100u, 50u, 3)")};

TEST(StartThumbnail, PathGiven_AsksForThatOneFile)
{
    start(kOneFile).nullReply().happens(startingOneFile() + kStarted).succeeds().check();
}

TEST(StartThumbnail, NoPath_AsksForTheRange)
{
    for (const char* path : {"", R"(,"path":"")", R"(,"path":5)"}) {
        start(R"({"channelId":"c1","reqId":"r1","type":-3,"width":100,"height":50,"startidx":4,"count":6)" +
              std::string(path) + "}")
            .happens(reading("r1", {war("unknown Path")}) +
                     Journal{dbg("channelId:c1, reqId:r1"), dbg("width:100, heigth:50, type:-3, path:"),
                             dbg("startIdx:4, count:6")} +
                     total(6) + Journal{did("appendThumbnailList(4, 6)"), manager(), did("startThumbnail(100u, 50u, -3)")})
            .succeeds()
            .check();
    }
}

TEST(StartThumbnail, NumbersUnreadable_TakesTheDefaults)
{
    for (const char* numbers : {"", R"(,"width":-1,"height":"50","startidx":-1,"count":-1)"}) {
        start(R"({"channelId":"c1","reqId":"r1","type":3)" + std::string(numbers) + "}")
            .happens(readingIds() +
                     Journal{readString("path"), war("unknown Path"), readInt("type"), readUInt("width", 240),
                             dbg("unknown width, Set default:240"), readUInt("height", 360),
                             dbg("unknown heigth, Set default:360"), readUInt("startidx", 0),
                             dbg("unknown startidx, Set default:0"), readUInt("count", 9),
                             dbg("unknown count, Set default:9"), dbg("channelId:c1, reqId:r1"),
                             dbg("width:240, heigth:360, type:3, path:"), dbg("startIdx:0, count:9")} +
                     total(9) + Journal{did("appendThumbnailList(0, 9)"), manager(), did("startThumbnail(240u, 360u, 3)")})
            .succeeds()
            .check();
    }
}

TEST(StartThumbnail, LargestNumbers_ArePassedAsTheyAre)
{
    start(R"({"channelId":"c1","reqId":"r1","type":3,"width":4294967295,"height":4294967294,)"
          R"("startidx":4294967293,"count":4294967292})")
        .happens(
            reading("r1", {war("unknown Path")}) +
            Journal{dbg("channelId:c1, reqId:r1"), dbg("width:-1, heigth:-2, type:3, path:"), dbg("startIdx:-3, count:-4")} +
            total(-4) +
            Journal{did("appendThumbnailList(-3, -4)"), manager(), did("startThumbnail(4294967295u, 4294967294u, 3)")})
        .succeeds()
        .check();
}

TEST(StartThumbnail, EmptyRequestId_IsAccepted)
{
    start(R"({"channelId":"c1","reqId":"","path":"/a.jpg","type":3,"width":100,"height":50,"startidx":4,"count":6})")
        .happens(startingOneFile("") + kStarted)
        .succeeds()
        .check();
}

TEST(StartThumbnail, ListRefused_KeepsTheNewTotalAndStartsNothing)
{
    start(kOneFile)
        .refusedBy("appendThumbnailList")
        .happens(startingOneFile() + Journal{err("add list failed!!!ret:<status>")})
        .fails()
        .check();
    start(R"({"channelId":"c1","reqId":"r1","type":3,"width":100,"height":50,"startidx":4,"count":6})")
        .refusedBy("appendThumbnailList")
        .happens(
            reading("r1", {war("unknown Path")}) +
            Journal{dbg("channelId:c1, reqId:r1"), dbg("width:100, heigth:50, type:3, path:"), dbg("startIdx:4, count:6")} +
            total(6) + Journal{did("appendThumbnailList(4, 6)"), err("add list failed!!!ret:<status>")})
        .fails()
        .check();
}

TEST(StartThumbnail, StartRefused_LogsItsStatus)
{
    start(kOneFile)
        .refusedBy("startThumbnail")
        .happens(startingOneFile() + kStarted + Journal{err("startThumbnail failed!!!ret:<status>")})
        .fails()
        .check();
}

TEST(StartThumbnail, ChannelUnreadableOrEmpty_StoresNothing)
{
    for (const char* request : {R"({"reqId":"r1","type":3})", R"({"channelId":1,"reqId":"r1"})", R"({"channelId":""})"}) {
        start(request).happens({readString("channelId"), err("unknown channelId")}).fails().check();
    }
}

TEST(StartThumbnail, RequestIdUnreadable_HasAlreadyReplacedTheChannel)
{
    for (const char* request : {R"({"channelId":"c1","type":3})", R"({"channelId":"c1","reqId":5,"type":3})"}) {
        start(request)
            .happens({readString("channelId"), kChannelStored, readString("reqId"), err("unknown reqId")})
            .fails()
            .check();
    }
}

TEST(StartThumbnail, TypeUnreadable_KeepsTheStoredIdsAndTheTotal)
{
    for (const char* type : {"", R"(,"type":"3")"}) {
        start(R"({"channelId":"c1","reqId":"r1","path":"/a.jpg")" + std::string(type) + "}")
            .happens(readingIds() + Journal{readString("path"), readInt("type"), err("unknown type")})
            .fails()
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
    const Journal stopping = {manager(), did("stopThumbnail()")};
    Scenario(stop).happens(stopping).succeeds().check();
    Scenario(stop).nullRequest().nullReply().happens(stopping).succeeds().check();
}

TEST(StopThumbnail, BrowserRefuses_LogsItsStatus)
{
    Scenario("stopThumbnail", &CStorageMediaPlugin::stopThumbnail)
        .refusedBy("stopThumbnail")
        .happens({manager(), did("stopThumbnail()"), err("stopThumbnail failed!!!ret:<status>")})
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

const Journal kDisarmed = {dbg("[TVFW::CStoragePlugin] NotifyThumbnailInfo, clear reqId: r1"),
                           changed("m_thumbnailChannel.reqId", ""), changed("m_thumbnailIndex", -1)};

TEST(NotifyThumbnailInfo, Success_PublishesAnEmptyPictureWithoutError)
{
    notify(true)
        .happens(Journal{dbg("[TVFW::CStoragePlugin] notify Thumbnail status:1, index:6, reqId:r1"),
                         dbg("[TVFW::CStoragePlugin] Calling getThumbnailDataByIndex:6, imageData.size:0"),
                         published("c1", "storage.media.thumbnail.complete",
                                   R"({"errorCode":0,"imageData":"","index":6,"reqId":"r1"})")} +
                 kDisarmed)
        .check();
}

TEST(NotifyThumbnailInfo, Failure_PublishesErrorOne)
{
    notify(false)
        .happens(Journal{dbg("[TVFW::CStoragePlugin] notify Thumbnail status:0, index:6, reqId:r1"),
                         published("c1", "storage.media.thumbnail.complete",
                                   R"({"errorCode":1,"imageData":"","index":6,"reqId":"r1"})")} +
                 kDisarmed)
        .check();
}

TEST(NotifyThumbnailInfo, NothingPending_PublishesNothingAndKeepsTheIndex)
{
    notify(true)
        .given([](FakePlatform&, ExposedPlugin& plugin) { plugin.m_thumbnailChannel.reqId = ""; })
        .happens({dbg("[TVFW::CStoragePlugin] notify Thumbnail status:1, index:-77, reqId:")})
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
        .happens(Journal{dbg("[TVFW::CStoragePlugin] notify Thumbnail status:0, index:6, reqId:r1")} + kDisarmed)
        .check();
}

} // namespace
