#include "support/CaseName.h"
#include "support/Scenario.h"

#include <gtest/gtest.h>

namespace {

using testsupport::caseName;
using tvfirmware::CStorageMediaPlugin;

Scenario fileInfo()
{
    return Scenario("getMediaFileInfo", &CStorageMediaPlugin::getMediaFileInfo).request(R"({"dirpath":"/mnt/a.mp3"})");
}

media_file_info_s everything(int type)
{
    media_file_info_s info;
    info.path = "/mnt/a.mp3";
    info.type = static_cast<FileType>(type);
    info.title = "Title";
    info.year = "1999";
    info.duration = 61;
    info.width = 640;
    info.height = 480;
    info.music = {"Artist", "Album", "Genre"};
    return info;
}

struct Description {
    int type;
    std::string reply;
};

class DescribedType : public testing::TestWithParam<Description> {};

TEST_P(DescribedType, Known_RepliesTheKeysOfItsType)
{
    const int type = GetParam().type;
    fileInfo()
        .given([type](FakePlatform& platform, ExposedPlugin&) { platform.fileInfo = everything(type); })
        .happens({readString("dirpath"), dbg("Path:/mnt/a.mp3"), manager(), did(R"(getMediaFileInfo("/mnt/a.mp3", fresh))"),
                  dbg("Type:" + std::to_string(type) + ", dura:61"), dbg("album:Album, artist:Artist"),
                  dbg("height:480, width:640")})
        .succeeds()
        .leavesReply(GetParam().reply)
        .check();
}

INSTANTIATE_TEST_SUITE_P(
    Types, DescribedType,
    testing::Values(Description{5, R"({"album":"Album","artist":"Artist","duration":61u,"genre":"Genre","type":5u})"},
                    Description{4, R"({"duration":61u,"type":4u})"},
                    Description{3, R"({"height":480u,"type":3u,"width":640u})"},
                    Description{7, R"({"height":480u,"type":7u,"width":640u})"}, Description{6, R"({"type":6u})"},
                    Description{0, R"({"type":0u})"}, Description{2, R"({"type":2u})"}, Description{8, R"({"type":8u})"},
                    Description{-1, R"({"type":4294967295u})"}),
    [](const auto& row) { return caseName(row.index, "Type" + std::to_string(row.param.type)); });

TEST(GetMediaFileInfo, NegativeNumbers_AreUnsignedInTheReply)
{
    fileInfo()
        .given([](FakePlatform& platform, ExposedPlugin&) {
            platform.fileInfo.type = FILE_TYPE_PHOTO;
            platform.fileInfo.duration = -3;
            platform.fileInfo.height = -1;
            platform.fileInfo.width = -2;
        })
        .happens({readString("dirpath"), dbg("Path:/mnt/a.mp3"), manager(), did(R"(getMediaFileInfo("/mnt/a.mp3", fresh))"),
                  dbg("Type:3, dura:-3"), dbg("album:, artist:"), dbg("height:-1, width:-2")})
        .succeeds()
        .leavesReply(R"({"height":4294967295u,"type":3u,"width":4294967294u})")
        .check();
}

TEST(GetMediaFileInfo, UnknownFile_FailsSilently)
{
    fileInfo()
        .given([](FakePlatform& platform, ExposedPlugin&) { platform.fileInfo = everything(5); })
        .refusedBy("getMediaFileInfo")
        .happens({readString("dirpath"), dbg("Path:/mnt/a.mp3"), manager(), did(R"(getMediaFileInfo("/mnt/a.mp3", fresh))")})
        .fails()
        .check();
}

TEST(GetMediaFileInfo, EmptyPath_IsPassedOn)
{
    fileInfo()
        .request(R"({"dirpath":""})")
        .happens({readString("dirpath"), dbg("Path:"), manager(), did(R"(getMediaFileInfo("", fresh))"),
                  dbg("Type:0, dura:0"), dbg("album:, artist:"), dbg("height:0, width:0")})
        .succeeds()
        .leavesReply(R"({"type":0u})")
        .check();
}

TEST(GetMediaFileInfo, PathUnreadable_Fails)
{
    for (const char* request : {"{}", R"({"dirpath":5})"}) {
        fileInfo().request(request).happens({readString("dirpath"), err("unknown path, set cd up!!!")}).fails().check();
    }
}

TEST(GetMediaFileInfo, NullPointers_Fail)
{
    fileInfo().nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    fileInfo().nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

} // namespace
