#include "support/CaseName.h"
#include "support/Scenario.h"
#include "support/TypedJson.h"

#include <gtest/gtest.h>

namespace {

using testsupport::caseName;
using tvfirmware::CStorageMediaPlugin;

Scenario search(const std::string& request)
{
    return Scenario("searchFiles", &CStorageMediaPlugin::searchFiles)
        .request(request)
        .given([](FakePlatform&, ExposedPlugin& plugin) { plugin.m_itemCountPerPage = 20; });
}

const Happening kChannelStored = slotChanged(1, "channel", "c1");
const Happening kRequestStored = slotChanged(1, "reqId", "r1");

Journal searching(const std::string& line, const std::string& call, const std::string& reqId = "r1")
{
    return {readString("channelId"),
            kChannelStored,
            readString("reqId"),
            slotChanged(1, "reqId", reqId),
            readInt("number", 20),
            readString("dirpath"),
            dbg(line),
            changed("m_itemCountPerPage", 5),
            manager(),
            did("stopThumbnail()"),
            manager(),
            did(call)};
}

TEST(SearchFiles, Accepted_SearchesVideosAndSetsThePageSize)
{
    search(R"({"channelId":"c1","reqId":"r1","number":5,"dirpath":"/mnt/a"})")
        .happens(searching("Path:/mnt/a, Channleid:c1, itemPerNum:5, reqId:r1", R"(searchFileType("/mnt/a", 4, 5))"))
        .succeeds()
        .check();
}

TEST(SearchFiles, WithoutNumber_UsesTheCurrentPageSize)
{
    for (const char* number : {"", R"(,"number":"5")"}) {
        search(R"({"channelId":"c1","reqId":"r1","dirpath":"/mnt/a")" + std::string(number) + "}")
            .happens({readString("channelId"), kChannelStored, readString("reqId"), kRequestStored, readInt("number", 20),
                      dbg("unknown iterPerNum, Set default:20"), readString("dirpath"),
                      dbg("Path:/mnt/a, Channleid:c1, itemPerNum:20, reqId:r1"), manager(), did("stopThumbnail()"),
                      manager(), did(R"(searchFileType("/mnt/a", 4, 20))")})
            .succeeds()
            .check();
    }
}

TEST(SearchFiles, EmptyRequestIdAndDirectory_AreAccepted)
{
    search(R"({"channelId":"c1","reqId":"","number":5,"dirpath":""})")
        .happens(searching("Path:, Channleid:c1, itemPerNum:5, reqId:", R"(searchFileType("", 4, 5))", ""))
        .succeeds()
        .check();
}

TEST(SearchFiles, ChannelUnreadableOrEmpty_StoresNothing)
{
    for (const char* request :
         {R"({"reqId":"r1"})", R"({"channelId":1,"reqId":"r1"})", R"({"channelId":"","reqId":"r1"})"}) {
        search(request).happens({readString("channelId"), err("unknown channelId")}).fails().check();
    }
}

TEST(SearchFiles, RequestIdUnreadable_HasAlreadyReplacedTheChannel)
{
    for (const char* request : {R"({"channelId":"c1","number":5})", R"({"channelId":"c1","number":5,"reqId":7})"}) {
        search(request)
            .happens({readString("channelId"), kChannelStored, readString("reqId"), err("unknown reqId")})
            .fails()
            .check();
    }
}

TEST(SearchFiles, DirectoryUnreadable_KeepsThePageSize)
{
    for (const char* request : {R"({"channelId":"c1","reqId":"r1","number":5})",
                                R"({"channelId":"c1","reqId":"r1","number":5,"dirpath":false})"}) {
        search(request)
            .happens({readString("channelId"), kChannelStored, readString("reqId"), kRequestStored, readInt("number", 20),
                      readString("dirpath"), err("unknown dirpath")})
            .fails()
            .check();
    }
}

TEST(SearchFiles, ManagerRefuses_IsSilent)
{
    search(R"({"channelId":"c1","reqId":"r1","number":5,"dirpath":"/mnt/a"})")
        .refusedBy("searchFileType")
        .happens(searching("Path:/mnt/a, Channleid:c1, itemPerNum:5, reqId:r1", R"(searchFileType("/mnt/a", 4, 5))"))
        .fails()
        .check();
}

TEST(SearchFiles, ThumbnailsCannotBeStopped_GoesOn)
{
    search(R"({"channelId":"c1","reqId":"r1","number":5,"dirpath":"/mnt/a"})")
        .refusedBy("stopThumbnail")
        .happens(searching("Path:/mnt/a, Channleid:c1, itemPerNum:5, reqId:r1", R"(searchFileType("/mnt/a", 4, 5))"))
        .succeeds()
        .check();
}

TEST(SearchFiles, NullPointers_Fail)
{
    search("{}").nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    search("{}").nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

Scenario videoList(const std::string& request, int listLength = 0)
{
    return Scenario("GetVideoList", &CStorageMediaPlugin::GetVideoList)
        .request(request)
        .given([listLength](FakePlatform&, ExposedPlugin& plugin) {
            plugin.m_intList.assign(static_cast<std::size_t>(listLength), 0);
        });
}

const Journal kVideoListReads = {readString("path"), readInt("pageIndex"), readInt("pageSize"), readInt("sortType")};

std::string videoListReply(int pages, unsigned int records)
{
    return R"({"kept":"as it was","outlineData":[],"pageNum":)" + std::to_string(pages) + R"(,"recordNum":)" +
           std::to_string(records) + "u}";
}

struct PageCount {
    int listLength;
    std::string pageSize; ///< a member of the request, or empty
    int pages;
};

class VideoListPages : public testing::TestWithParam<PageCount> {};

TEST_P(VideoListPages, Counted_RoundsUpAndKeepsOtherReplyKeys)
{
    const PageCount& count = GetParam();
    videoList(R"({"path":"/v","pageIndex":5,"sortType":2)" + count.pageSize + "}", count.listLength)
        .happens(kVideoListReads)
        .succeeds()
        .leavesReply(videoListReply(count.pages, static_cast<unsigned int>(count.listLength)))
        .check();
}

INSTANTIATE_TEST_SUITE_P(Counts, VideoListPages,
                         testing::Values(PageCount{0, "", 0}, PageCount{101, "", 2}, PageCount{100, "", 1},
                                         PageCount{101, R"(,"pageSize":0)", 2}, PageCount{101, R"(,"pageSize":100)", 2},
                                         PageCount{1, "", 1}, PageCount{7, R"(,"pageSize":2)", 4},
                                         PageCount{8, R"(,"pageSize":2)", 4}, PageCount{7, R"(,"pageSize":-2)", -3},
                                         PageCount{1, R"(,"pageSize":-2)", 0}, PageCount{0, R"(,"pageSize":-1)", 0}),
                         [](const auto& row) {
                             return caseName(row.index, std::to_string(row.param.listLength) + row.param.pageSize);
                         });

TEST(GetVideoList, PathUnreadableOrEmpty_FailsSilently)
{
    for (const char* request : {"{}", R"({"path":5})", R"({"path":""})"}) {
        videoList(request).happens({readString("path")}).fails().check();
    }
}

TEST(GetVideoList, NullPointers_FailSilently)
{
    videoList(R"({"path":"/v"})").nullRequest().happens({}).fails().check();
    videoList(R"({"path":"/v"})").nullReply().happens({}).fails().check();
}

Scenario scanFinished(int count)
{
    return Scenario("NotifyScanFinished", [count](ExposedPlugin& plugin) { plugin.NotifyScanFinished(count); });
}

void scanPending(FakePlatform& /*platform*/, ExposedPlugin& plugin)
{
    plugin.m_scanChannel = {"c1", "r1", "storage.fileScan.complete", "video", "more"};
}

Journal disarmed()
{
    return {dbg("[TVFW::CStoragePlugin] NotifyScanFinished, clear reqId: r1"), changed("m_scanChannel.reqId", ""),
            changed("m_scanChannel.filterType", ""), changed("m_scanChannel.extra", "")};
}

TEST(NotifyScanFinished, ScanPending_PublishesOnItsChannelAndDisarms)
{
    for (const int count : {12, -1}) {
        scanFinished(count)
            .given(scanPending)
            .happens(Journal{dbg("[TVFW::CStoragePlugin] notify ScanFinished reqId:r1"),
                             published("c1", "storage.fileScan.complete",
                                       R"({"count":)" + std::to_string(count) + R"(,"filterType":"video","reqId":"r1"})")} +
                     disarmed())
            .check();
    }
}

TEST(NotifyScanFinished, RecordWithItsOwnEvent_PublishesThat)
{
    scanFinished(1)
        .given([](FakePlatform& platform, ExposedPlugin& plugin) {
            scanPending(platform, plugin);
            plugin.m_scanChannel.event = ".own event";
        })
        .happens(Journal{dbg("[TVFW::CStoragePlugin] notify ScanFinished reqId:r1"),
                         published("c1", ".own event", R"({"count":1,"filterType":"video","reqId":"r1"})")} +
                 disarmed())
        .check();
}

TEST(NotifyScanFinished, NoScanPending_PublishesNothingAndKeepsTheRecord)
{
    scanFinished(12)
        .given([](FakePlatform&, ExposedPlugin& plugin) { plugin.m_scanChannel.reqId = ""; })
        .happens({dbg("[TVFW::CStoragePlugin] notify ScanFinished reqId:")})
        .check();
}

TEST(NotifyScanFinished, CalledTwice_PublishesOnce)
{
    Scenario("NotifyScanFinished",
             [](ExposedPlugin& plugin) {
                 plugin.NotifyScanFinished(1);
                 plugin.NotifyScanFinished(2);
             })
        .given(scanPending)
        .happens(Journal{dbg("[TVFW::CStoragePlugin] notify ScanFinished reqId:r1"),
                         published("c1", "storage.fileScan.complete", R"({"count":1,"filterType":"video","reqId":"r1"})")} +
                 disarmed() + Journal{dbg("[TVFW::CStoragePlugin] notify ScanFinished reqId:")})
        .check();
}

TEST(NotifyScanFinished, NoCallback_DisarmsAllTheSame)
{
    scanFinished(12)
        .given([](FakePlatform& platform, ExposedPlugin& plugin) {
            scanPending(platform, plugin);
            plugin.setCallback(nullptr);
        })
        .happens(Journal{dbg("[TVFW::CStoragePlugin] notify ScanFinished reqId:r1")} + disarmed())
        .check();
}

} // namespace
