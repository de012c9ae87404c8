#include "support/Scenario.h"
#include "support/TypedJson.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

Scenario setMode(const std::string& request)
{
    return Scenario("setPlayerMode", &CStorageMediaPlugin::setPlayerMode).request(request);
}

TEST(SetPlayerMode, PlayableType_PassesAnyMode)
{
    for (const std::string type : {"3", "4", "5"}) {
        setMode(R"({"mode":2,"type":)" + type + "}")
            .happens({readUInt("type"), readUInt("mode"), dbg("file type:" + type + ", mode:2"), manager(),
                      did("setPlayerMode(" + type + ", 2)")})
            .succeeds()
            .check();
    }
    setMode(R"({"mode":4294967295,"type":4})")
        .happens({readUInt("type"), readUInt("mode"), dbg("file type:4, mode:-1"), manager(), did("setPlayerMode(4, -1)")})
        .succeeds()
        .check();
}

TEST(SetPlayerMode, OtherType_IsRefusedBeforeTheManager)
{
    for (const std::string type : {"0", "1", "2", "6"}) {
        setMode(R"({"mode":2,"type":)" + type + "}")
            .happens({readUInt("type"), readUInt("mode"), dbg("file type:" + type + ", mode:2"),
                      err("not a Playable Type:" + type)})
            .fails()
            .check();
    }
}

TEST(SetPlayerMode, ManagerRefuses_LogsItsStatus)
{
    setMode(R"({"mode":2,"type":4})")
        .refusedBy("setPlayerMode")
        .happens({readUInt("type"), readUInt("mode"), dbg("file type:4, mode:2"), manager(), did("setPlayerMode(4, 2)"),
                  err("Failed!!! ret:<status>")})
        .fails()
        .check();
}

TEST(SetPlayerMode, KeyUnreadable_Fails)
{
    for (const char* request : {R"({"mode":2})", R"({"mode":2,"type":-4})"}) {
        setMode(request).happens({readUInt("type"), err("unknown File Type")}).fails().check();
    }
    for (const char* request : {R"({"type":4})", R"({"type":4,"mode":-1})"}) {
        setMode(request).happens({readUInt("type"), readUInt("mode"), err("unknown mode")}).fails().check();
    }
}

TEST(SetPlayerMode, NullPointers_Fail)
{
    setMode("{}").nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    setMode("{}").nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

const char kMode[] = R"({"mode":1,"shuffle":true})";

Scenario getMode(const std::string& request)
{
    return Scenario("getPlayMode", &CStorageMediaPlugin::getPlayMode)
        .request(request)
        .given([](FakePlatform& platform, ExposedPlugin&) { platform.json = testsupport::parsed(kMode); });
}

TEST(GetPlayMode, MediaTypeGiven_RepliesTheManagersObject)
{
    for (const std::string type : {"4", "-1"}) {
        getMode(R"({"mediaType":)" + type + "}")
            .happens({dbg("Enter getPlayMode"), readInt("mediaType"), manager(), did("getPlayMode(null, " + type + ")")})
            .succeeds()
            .leavesReply(kMode)
            .check();
    }
}

TEST(GetPlayMode, MediaTypeUnreadable_AsksForZero)
{
    for (const char* request : {"{}", R"({"mediaType":"4"})"}) {
        getMode(request)
            .happens({dbg("Enter getPlayMode"), readInt("mediaType"), war("unknown mediaType, set to default: 0"), manager(),
                      did("getPlayMode(null, 0)")})
            .succeeds()
            .leavesReply(kMode)
            .check();
    }
}

TEST(GetPlayMode, ManagerRefuses_IsSilentAndKeepsTheReply)
{
    getMode(R"({"mediaType":4})")
        .given([](FakePlatform& platform, ExposedPlugin&) { platform.json = testsupport::parsed(kMode); })
        .refusedBy("getPlayMode")
        .happens({dbg("Enter getPlayMode"), readInt("mediaType"), manager(), did("getPlayMode(null, 4)")})
        .fails()
        .check();
}

TEST(GetPlayMode, NullPointers_FailAfterTheFirstLine)
{
    getMode("{}").nullRequest().happens({dbg("Enter getPlayMode"), err("Params is NULL!!!")}).fails().check();
    getMode("{}").nullReply().happens({dbg("Enter getPlayMode"), err("Params is NULL!!!")}).fails().check();
}

Scenario repeat(const std::string& request)
{
    return Scenario("kiroRepeatModeSet", &CStorageMediaPlugin::kiroRepeatModeSet).request(request);
}

TEST(KiroRepeatModeSet, AnyMode_IsPassedOn)
{
    for (const std::string mode : {"1", "0", "-1", "77"}) {
        repeat(R"({"mode":)" + mode + "}")
            .happens({readInt("mode"), manager(), did("repeatModeSet(" + mode + ")")})
            .succeeds()
            .check();
    }
}

TEST(KiroRepeatModeSet, ManagerRefuses_LogsItsStatus)
{
    repeat(R"({"mode":1})")
        .refusedBy("repeatModeSet")
        .happens({readInt("mode"), manager(), did("repeatModeSet(1)"), err("Failed!!! ret:<status>")})
        .fails()
        .check();
}

TEST(KiroRepeatModeSet, ModeUnreadable_Fails)
{
    for (const char* request : {"{}", R"({"mode":"1"})"}) {
        repeat(request).happens({readInt("mode"), err("unknown mode")}).fails().check();
    }
}

TEST(KiroRepeatModeSet, NullPointers_Fail)
{
    repeat("{}").nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    repeat("{}").nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

} // namespace
