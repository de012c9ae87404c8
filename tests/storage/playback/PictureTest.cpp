#include "support/Scenario.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

Scenario setSize(const std::string& request)
{
    return Scenario("VideoPicSizeSet", &CStorageMediaPlugin::VideoPicSizeSet).request(request);
}

TEST(VideoPicSizeSet, AnyValue_IsPassedOn)
{
    for (const std::string value : {"2", "0", "-1"}) {
        setSize(R"({"value":)" + value + "}")
            .happens({readInt("value"), dbg("videopicsize:" + value), manager(), did("videoPicSizeSet(" + value + ")")})
            .succeeds()
            .check();
    }
}

TEST(VideoPicSizeSet, NullReply_IsNotUsed)
{
    setSize(R"({"value":2})")
        .nullReply()
        .happens({readInt("value"), dbg("videopicsize:2"), manager(), did("videoPicSizeSet(2)")})
        .succeeds()
        .check();
}

TEST(VideoPicSizeSet, ManagerRefuses_IsSilent)
{
    setSize(R"({"value":2})")
        .refusedBy("videoPicSizeSet")
        .happens({readInt("value"), dbg("videopicsize:2"), manager(), did("videoPicSizeSet(2)")})
        .fails()
        .check();
}

TEST(VideoPicSizeSet, ValueUnreadable_Fails)
{
    for (const char* request : {"{}", R"({"value":"2"})"}) {
        setSize(request).happens({readInt("value"), err("unknown videopicsize option")}).fails().check();
    }
}

TEST(VideoPicSizeSet, NullRequest_Fails)
{
    setSize("{}").nullRequest().happens({err("jsonParams is NULL!!!")}).fails().check();
}

Scenario getSize()
{
    return Scenario("VideoPicSizeGet", &CStorageMediaPlugin::VideoPicSizeGet)
        .given([](FakePlatform& platform, ExposedPlugin&) { platform.pictureSize = -3; });
}

TEST(VideoPicSizeGet, Asked_ReplacesTheWholeReply)
{
    getSize()
        .happens({manager(), did("videoPicSizeGet(0)"), dbg("Videopicsize:-3")})
        .succeeds()
        .leavesReply(R"({"videopicsize":-3})")
        .check();
}

TEST(VideoPicSizeGet, PositiveSize_IsSignedInTheReply)
{
    getSize()
        .given([](FakePlatform& platform, ExposedPlugin&) { platform.pictureSize = 2; })
        .happens({manager(), did("videoPicSizeGet(0)"), dbg("Videopicsize:2")})
        .succeeds()
        .leavesReply(R"({"videopicsize":2})")
        .check();
}

TEST(VideoPicSizeGet, ManagerRefuses_IsSilentAndKeepsTheReply)
{
    getSize().refusedBy("videoPicSizeGet").happens({manager(), did("videoPicSizeGet(0)")}).fails().check();
}

TEST(VideoPicSizeGet, NullPointers_Fail)
{
    getSize().nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    getSize().nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

Scenario rotate(const std::string& request)
{
    return Scenario("photoRotateSet", &CStorageMediaPlugin::photoRotateSet).request(request);
}

TEST(PhotoRotateSet, Direction_IsPassedOn)
{
    rotate(R"({"rotate":true})")
        .happens({readBool("rotate"), dbg("Set rotate dir:Right"), manager(), did("photoRotateSet(true)")})
        .succeeds()
        .check();
    rotate(R"({"rotate":false})")
        .nullReply()
        .happens({readBool("rotate"), dbg("Set rotate dir:Left"), manager(), did("photoRotateSet(false)")})
        .succeeds()
        .check();
}

TEST(PhotoRotateSet, ManagerRefuses_IsSilent)
{
    rotate(R"({"rotate":true})")
        .refusedBy("photoRotateSet")
        .happens({readBool("rotate"), dbg("Set rotate dir:Right"), manager(), did("photoRotateSet(true)")})
        .fails()
        .check();
}

TEST(PhotoRotateSet, DirectionUnreadable_Fails)
{
    for (const char* request : {"{}", R"({"rotate":1})"}) {
        rotate(request).happens({readBool("rotate"), err("unknown rotate option")}).fails().check();
    }
}

TEST(PhotoRotateSet, NullRequest_Fails)
{
    rotate("{}").nullRequest().happens({err("jsonParams is NULL!!!")}).fails().check();
}

} // namespace
