#include "support/Scenario.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

Scenario stop(const std::string& request)
{
    return Scenario("stopMediaFile", &CStorageMediaPlugin::stopMediaFile)
        .request(request)
        .given([](FakePlatform& platform, ExposedPlugin&) { platform.currentIndex = 4000000000U; });
}

TEST(StopMediaFile, PlayableType_RepliesTheIndexThatPlayed)
{
    for (const std::string type : {"3", "4", "5"}) {
        stop(R"({"type":)" + type + "}")
            .happens({readUInt("type"), dbg("file type:" + type + ", index:0"), manager(),
                      did("stopMediaFile(" + type + ", 0u)"), dbg("stop file type:" + type + ", index:-294967296")})
            .succeeds()
            .leavesReply(R"({"index":4000000000u,"kept":"as it was"})")
            .check();
    }
}

TEST(StopMediaFile, OtherType_IsRefusedBeforeTheManager)
{
    for (const std::string type : {"0", "1", "2", "6"}) {
        stop(R"({"type":)" + type + "}")
            .happens({readUInt("type"), dbg("file type:" + type + ", index:0"), err("unknown unPlayable Type:" + type)})
            .fails()
            .check();
    }
}

TEST(StopMediaFile, ManagerRefuses_LeavesTheReply)
{
    stop(R"({"type":4})")
        .given([](FakePlatform& platform, ExposedPlugin&) { platform.currentIndex = 3; })
        .refusedBy("stopMediaFile")
        .happens({readUInt("type"), dbg("file type:4, index:0"), manager(), did("stopMediaFile(4, 0u)"),
                  err("Failed!!! ret:<status>")})
        .fails()
        .check();
}

TEST(StopMediaFile, TypeUnreadable_Fails)
{
    for (const char* request : {"{}", R"({"type":-1})", R"({"type":"4"})"}) {
        stop(request).happens({readUInt("type"), err("unknown File Type")}).fails().check();
    }
}

TEST(StopMediaFile, NullPointers_Fail)
{
    stop("{}").nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    stop("{}").nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

Scenario stopMusic()
{
    return Scenario("stopBackGroundMusic", &CStorageMediaPlugin::stopBackGroundMusic)
        .given([](FakePlatform& platform, ExposedPlugin&) { platform.currentIndex = 12; });
}

TEST(StopBackGroundMusic, AnyRequest_RepliesTheIndexThatPlayed)
{
    const Journal stopping = {manager(), did("stopBackGroundMusicFile(0u)"), dbg("curIdx:12")};
    stopMusic().happens(stopping).succeeds().leavesReply(R"({"index":12u,"kept":"as it was"})").check();
    stopMusic().nullRequest().happens(stopping).succeeds().leavesReply(R"({"index":12u,"kept":"as it was"})").check();
}

TEST(StopBackGroundMusic, ManagerRefuses_LeavesTheReply)
{
    stopMusic()
        .refusedBy("stopBackGroundMusicFile")
        .happens({manager(), did("stopBackGroundMusicFile(0u)"), err("stopBackGroundMusicFile failed!!!ret:<status>")})
        .fails()
        .check();
}

TEST(StopBackGroundMusic, NullReply_Fails)
{
    stopMusic().nullReply().happens({err("jsonRsp is NULL!!!")}).fails().check();
}

} // namespace
