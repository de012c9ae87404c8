#include "support/Scenario.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

Scenario set(const std::string& request)
{
    return Scenario("SubtitlesetOptions", &CStorageMediaPlugin::SubtitlesetOptions).request(request);
}

TEST(SubtitleSetOptions, OptionAndValue_ArePassedOn)
{
    set(R"({"option":"size","value":-3})")
        .happens({readString("option"), readInt("value"), dbg("option:size, value:-3"), manager(),
                  did(R"(SubtitleSetOptions("size", -3))")})
        .succeeds()
        .check();
}

TEST(SubtitleSetOptions, ManagerRefuses_LogsItsStatus)
{
    set(R"({"option":"size","value":1})")
        .refusedBy("SubtitleSetOptions")
        .happens({readString("option"), readInt("value"), dbg("option:size, value:1"), manager(),
                  did(R"(SubtitleSetOptions("size", 1))"), err("Failed!!! ret:<status>")})
        .fails()
        .check();
}

TEST(SubtitleSetOptions, KeyUnreadable_Fails)
{
    for (const char* request : {R"({"value":1})", R"({"option":1,"value":1})"}) {
        set(request).happens({readString("option"), err("unknown option")}).fails().check();
    }
    for (const char* request : {R"({"option":"size"})", R"({"option":"size","value":"1"})"}) {
        set(request).happens({readString("option"), readInt("value"), err("unknown option value")}).fails().check();
    }
}

TEST(SubtitleSetOptions, NullPointers_Fail)
{
    set("{}").nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    set("{}").nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

Scenario switchTo(const std::string& request)
{
    return Scenario("optSubtitleStatusSwitch", &CStorageMediaPlugin::optSubtitleStatusSwitch)
        .request(request)
        .given([](FakePlatform& platform, ExposedPlugin&) { platform.switchWritesBack = 55; });
}

TEST(SubtitleSwitch, Value_IsPassedOnAndWhatComesBackIsNotReported)
{
    for (const std::string value : {"1", "0", "-2"}) {
        switchTo(R"({"value":)" + value + "}")
            .happens({readInt("value"), manager(), did("optSubtitleStatusSwitch(" + value + ")")})
            .succeeds()
            .check();
    }
}

TEST(SubtitleSwitch, ManagerRefuses_LogsItsStatus)
{
    switchTo(R"({"value":1})")
        .refusedBy("optSubtitleStatusSwitch")
        .happens({readInt("value"), manager(), did("optSubtitleStatusSwitch(1)"), err("Failed!!! ret:<status>")})
        .fails()
        .check();
}

TEST(SubtitleSwitch, ValueUnreadable_Fails)
{
    for (const char* request : {"{}", R"({"value":true})"}) {
        switchTo(request).happens({readInt("value"), err("unknown option value")}).fails().check();
    }
}

TEST(SubtitleSwitch, NullPointers_Fail)
{
    switchTo("{}").nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    switchTo("{}").nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

} // namespace
