#include "support/Scenario.h"
#include "support/TypedJson.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

Scenario set(const std::string& request)
{
    return Scenario("setOptions", &CStorageMediaPlugin::setOptions).request(request);
}

const char kAllKeys[] = R"({"option":"sound","suboption":"track","value":2,"flags":3,"playall":4})";

Journal settingAll()
{
    return {readString("option"),
            readString("suboption"),
            readInt("value"),
            readInt("flags"),
            readInt("playall"),
            dbg("option:sound, suboptions:track, value:2, flags:3, playall:4"),
            manager(),
            did(R"(setOptions("sound", "track", 2, 3, 4))")};
}

TEST(SetOptions, AllKeys_ArePassedOn)
{
    set(kAllKeys).happens(settingAll()).succeeds().check();
}

TEST(SetOptions, OptionAndValueAlone_TakesDefaultsForTheRest)
{
    for (const char* others : {"", R"(,"suboption":1,"flags":"3","playall":true)"}) {
        set(R"({"option":"sound","value":-2)" + std::string(others) + "}")
            .happens({readString("option"), readString("suboption"), err("not subtitle set option"), readInt("value"),
                      readInt("flags"), war("unknown flags, set default"), readInt("playall"),
                      war("unknown playall, set default"), dbg("option:sound, suboptions:, value:-2, flags:0, playall:0"),
                      manager(), did(R"(setOptions("sound", "", -2, 0, 0))")})
            .succeeds()
            .check();
    }
}

TEST(SetOptions, EmptyTexts_ArePassedOn)
{
    set(R"({"option":"","suboption":"","value":0,"flags":0,"playall":0})")
        .happens({readString("option"), readString("suboption"), readInt("value"), readInt("flags"), readInt("playall"),
                  dbg("option:, suboptions:, value:0, flags:0, playall:0"), manager(),
                  did(R"(setOptions("", "", 0, 0, 0))")})
        .succeeds()
        .check();
}

TEST(SetOptions, ManagerRefuses_LogsItsStatus)
{
    Journal journal = settingAll();
    journal.push_back(err("Failed!!! ret:<status>"));
    set(kAllKeys).refusedBy("setOptions").happens(journal).fails().check();
}

TEST(SetOptions, OptionUnreadable_Fails)
{
    for (const char* request : {R"({"value":2})", R"({"option":1,"value":2})"}) {
        set(request).happens({readString("option"), err("unknown option")}).fails().check();
    }
}

TEST(SetOptions, ValueUnreadable_Fails)
{
    for (const char* request :
         {R"({"option":"sound","suboption":"track"})", R"({"option":"sound","suboption":"track","value":"2"})"}) {
        set(request)
            .happens({readString("option"), readString("suboption"), readInt("value"), err("unknown option value")})
            .fails()
            .check();
    }
}

TEST(SetOptions, NullPointers_Fail)
{
    set("{}").nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    set("{}").nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

const char kOptions[] = R"({"sound":{"track":1}})";

Scenario getAll()
{
    return Scenario("getCurAllOptions", &CStorageMediaPlugin::getCurAllOptions)
        .given([](FakePlatform& platform, ExposedPlugin&) { platform.json = testsupport::parsed(kOptions); });
}

TEST(GetCurAllOptions, Asked_RepliesTheManagersObject)
{
    getAll().happens({manager(), did("getCurAllOptions(null)")}).succeeds().leavesReply(kOptions).check();
}

TEST(GetCurAllOptions, ManagerRefuses_KeepsTheReply)
{
    getAll()
        .given([](FakePlatform& platform, ExposedPlugin&) { platform.json = testsupport::parsed(kOptions); })
        .refusedBy("getCurAllOptions")
        .happens({manager(), did("getCurAllOptions(null)"), err("Failed!!! ret:<status>")})
        .fails()
        .check();
}

TEST(GetCurAllOptions, NullPointers_Fail)
{
    getAll().nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    getAll().nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

} // namespace
