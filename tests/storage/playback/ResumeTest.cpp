#include "support/Scenario.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

Scenario resumeable(const std::string& request)
{
    return Scenario("isVideoFileResumeable", &CStorageMediaPlugin::isVideoFileResumeable)
        .request(request)
        .given([](FakePlatform& platform, ExposedPlugin&) {
            platform.currentIndex = 4000000000U;
            platform.resume = true;
        });
}

const Journal kReads = {readString("dirpath"), dbg("dirpath :/mnt/a"), readUInt("index"), readUInt("type"),
                        readBool("playall")};

Journal reading(const Journal& afterwards)
{
    Journal journal = kReads;
    journal.insert(journal.end(), afterwards.begin(), afterwards.end());
    return journal;
}

TEST(IsVideoFileResumeable, PlayableType_RepliesIndexAndFlag)
{
    for (const std::string type : {"3", "4", "5"}) {
        resumeable(R"({"dirpath":"/mnt/a","index":2,"playall":true,"type":)" + type + "}")
            .happens(reading({manager(), did("isresumePlayMediaFile(" + type + R"(, 2u, 0u, true, false, "/mnt/a"))")}))
            .succeeds()
            .leavesReply(R"({"count":4000000000u,"kept":"as it was","resume":true})")
            .check();
    }
}

TEST(IsVideoFileResumeable, NoPositionKept_RepliesFalse)
{
    resumeable(R"({"dirpath":"/mnt/a","index":2,"playall":false,"type":4})")
        .given([](FakePlatform&, ExposedPlugin&) {})
        .happens(reading({manager(), did(R"(isresumePlayMediaFile(4, 2u, 0u, false, false, "/mnt/a"))")}))
        .succeeds()
        .leavesReply(R"({"count":0u,"kept":"as it was","resume":false})")
        .check();
}

TEST(IsVideoFileResumeable, WithoutDirectory_WarnsAndPassesAnEmptyPath)
{
    for (const char* directory : {"", R"(,"dirpath":9)"}) {
        resumeable(R"({"index":2,"playall":true,"type":4)" + std::string(directory) + "}")
            .happens({readString("dirpath"), war("unknown file dirpath"), dbg("dirpath :"), readUInt("index"),
                      readUInt("type"), readBool("playall"), manager(),
                      did(R"(isresumePlayMediaFile(4, 2u, 0u, true, false, ""))")})
            .succeeds()
            .leavesReply(R"({"count":4000000000u,"kept":"as it was","resume":true})")
            .check();
    }
}

TEST(IsVideoFileResumeable, OtherType_IsRefusedBeforeTheManager)
{
    for (const std::string type : {"0", "1", "2", "6"}) {
        resumeable(R"({"dirpath":"/mnt/a","index":2,"playall":true,"type":)" + type + "}")
            .happens(reading({err("unknown unPlayable Type:" + type)}))
            .fails()
            .check();
    }
}

TEST(IsVideoFileResumeable, ManagerRefuses_LeavesTheReply)
{
    resumeable(R"({"dirpath":"/mnt/a","index":2,"playall":true,"type":4})")
        .refusedBy("isresumePlayMediaFile")
        .happens(reading(
            {manager(), did(R"(isresumePlayMediaFile(4, 2u, 0u, true, false, "/mnt/a"))"), err("Failed!!! ret:<status>")}))
        .fails()
        .check();
}

TEST(IsVideoFileResumeable, RequiredKeyUnreadable_Fails)
{
    for (const char* index : {"", R"(,"index":-1)"}) {
        resumeable(R"({"dirpath":"/mnt/a","type":4,"playall":true)" + std::string(index) + "}")
            .happens({readString("dirpath"), dbg("dirpath :/mnt/a"), readUInt("index"), err("unknown file index")})
            .fails()
            .check();
    }
    for (const char* type : {"", R"(,"type":"4")"}) {
        resumeable(R"({"dirpath":"/mnt/a","index":0,"playall":true)" + std::string(type) + "}")
            .happens({readString("dirpath"), dbg("dirpath :/mnt/a"), readUInt("index"), readUInt("type"),
                      err("unknown File Type")})
            .fails()
            .check();
    }
    for (const char* playAll : {"", R"(,"playall":"true")"}) {
        resumeable(R"({"dirpath":"/mnt/a","index":0,"type":4)" + std::string(playAll) + "}")
            .happens(reading({err("unknown Play mode")}))
            .fails()
            .check();
    }
}

TEST(IsVideoFileResumeable, NullPointers_Fail)
{
    resumeable("{}").nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    resumeable("{}").nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

TEST(VideoClearResume, AnyPointers_ForgetsAndIsSilent)
{
    const Scenario clear("videoClearResume", &CStorageMediaPlugin::videoClearResume);
    const Journal clearing = {manager(), did("videoClearResume()")};
    Scenario(clear).happens(clearing).succeeds().check();
    Scenario(clear).nullRequest().nullReply().happens(clearing).succeeds().check();
    Scenario(clear).refusedBy("videoClearResume").happens(clearing).fails().check();
}

} // namespace
