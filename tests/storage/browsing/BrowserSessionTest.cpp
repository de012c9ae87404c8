#include "support/Scenario.h"
#include "support/TypedJson.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

const char kSession[] = R"({"devices":[],"source":3})";

void session(FakePlatform& platform, ExposedPlugin& /*plugin*/)
{
    platform.json = testsupport::parsed(kSession);
}

Scenario enter()
{
    return Scenario("enterMmBrowser", &CStorageMediaPlugin::enterMmBrowser).given(session);
}

Scenario dlnaEnter()
{
    return Scenario("dlnaEnterMmBrowser", &CStorageMediaPlugin::dlnaEnterMmBrowser).given(session);
}

Journal entering(int source, const std::string& name)
{
    return {dbg("Enter MM Browser"), readInt("srctype"), dbg("Enter MM Browser Source: " + name), manager(),
            did("enterMmBrowser(null, " + std::to_string(source) + ")")};
}

TEST(EnterMmBrowser, SourceGiven_IsPassedThroughUnchanged)
{
    enter().request(R"({"srctype":0})").happens(entering(0, "USB")).succeeds().leavesReply(kSession).check();
    for (const int source : {1, 2, -1}) {
        enter()
            .request(R"({"srctype":)" + std::to_string(source) + "}")
            .happens(entering(source, "DLNA"))
            .succeeds()
            .leavesReply(kSession)
            .check();
    }
}

TEST(EnterMmBrowser, SourceUnreadable_IsUsb)
{
    for (const char* request : {"{}", R"({"srctype":"1"})", R"({"srctype":true})", R"({"srctype":1.5})"}) {
        enter()
            .request(request)
            .happens({dbg("Enter MM Browser"), readInt("srctype"), war("unknown srctype, set default: 0"),
                      dbg("Enter MM Browser Source: USB"), manager(), did("enterMmBrowser(null, 0)")})
            .succeeds()
            .leavesReply(kSession)
            .check();
    }
}

TEST(EnterMmBrowser, ManagerRefuses_IsSilentAndKeepsTheReply)
{
    enter().request(R"({"srctype":1})").refusedBy("enterMmBrowser").happens(entering(1, "DLNA")).fails().check();
    dlnaEnter().refusedBy("enterMmBrowser").happens({manager(), did("enterMmBrowser(null, 1)")}).fails().check();
}

TEST(EnterMmBrowser, NullPointers_Fail)
{
    for (const Scenario& scenario : {enter(), dlnaEnter()}) {
        Scenario(scenario).nullRequest().happens({err("Params is NULL!!!")}).fails().check();
        Scenario(scenario).nullReply().happens({err("Params is NULL!!!")}).fails().check();
    }
}

TEST(DlnaEnterMmBrowser, AnyRequest_EntersSourceOneWithoutReading)
{
    dlnaEnter()
        .request(R"({"srctype":0})")
        .happens({manager(), did("enterMmBrowser(null, 1)")})
        .succeeds()
        .leavesReply(kSession)
        .check();
}

TEST(CloseMmBrowser, AnyPointers_ClosesEveryPlayer)
{
    const Scenario close("closeMMBroswer", &CStorageMediaPlugin::closeMMBroswer);
    Scenario(close).happens({manager(), did("closeAllMMPlayer(false)")}).succeeds().check();
    Scenario(close).nullRequest().nullReply().happens({manager(), did("closeAllMMPlayer(false)")}).succeeds().check();
}

TEST(CloseMmBrowser, ManagerRefuses_LogsItsStatus)
{
    Scenario("closeMMBroswer", &CStorageMediaPlugin::closeMMBroswer)
        .refusedBy("closeAllMMPlayer")
        .happens({manager(), did("closeAllMMPlayer(false)"), err("Failed!!! ret:<status>")})
        .fails()
        .check();
}

TEST(UserCancel, AnyPointers_CancelsTheFolderBrowser)
{
    const Scenario cancel("userCancel", &CStorageMediaPlugin::userCancel);
    Scenario(cancel).happens({manager(), did("userCancel()")}).succeeds().check();
    Scenario(cancel).nullRequest().nullReply().happens({manager(), did("userCancel()")}).succeeds().check();
}

TEST(UserCancel, BrowserRefuses_LogsItsResult)
{
    Scenario("userCancel", &CStorageMediaPlugin::userCancel)
        .refusedBy("userCancel")
        .happens({manager(), did("userCancel()"), err("user cancel failed , result=<status>")})
        .fails()
        .check();
}

Scenario clearMap()
{
    return {"clearMediaMap", &CStorageMediaPlugin::clearMediaMap};
}

TEST(ClearMediaMap, DirectoryGiven_IsCleared)
{
    clearMap()
        .request(R"({"dirpath":"/mnt/usb/a"})")
        .happens({readString("dirpath"), dbg("clear Media map: /mnt/usb/a ..."), manager(),
                  did(R"(clearMediaMap("/mnt/usb/a"))")})
        .succeeds()
        .check();
}

TEST(ClearMediaMap, EmptyDirectory_IsPassedOn)
{
    clearMap()
        .request(R"({"dirpath":""})")
        .happens({readString("dirpath"), dbg("clear Media map:  ..."), manager(), did(R"(clearMediaMap(""))")})
        .succeeds()
        .check();
}

TEST(ClearMediaMap, ManagerRefuses_LogsThePath)
{
    clearMap()
        .refusedBy("clearMediaMap")
        .request(R"({"dirpath":"/a"})")
        .happens({readString("dirpath"), dbg("clear Media map: /a ..."), manager(), did(R"(clearMediaMap("/a"))"),
                  err("clear Media map: /a failed!")})
        .fails()
        .check();
}

TEST(ClearMediaMap, DirectoryUnreadable_DoesNotReachTheManager)
{
    for (const char* request : {"{}", R"({"dirpath":7})"}) {
        clearMap().request(request).happens({readString("dirpath"), err("unknown dirpath")}).fails().check();
    }
}

TEST(ClearMediaMap, NullPointers_Fail)
{
    clearMap().nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    clearMap().nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

} // namespace
