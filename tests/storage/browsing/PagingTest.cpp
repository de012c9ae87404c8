#include "support/CaseName.h"
#include "support/Folders.h"
#include "support/Scenario.h"
#include "support/TypedJson.h"

#include <gtest/gtest.h>

namespace {

using testsupport::caseName;
using tvfirmware::CStorageMediaPlugin;

Scenario setNumber()
{
    return {"setItemNumPerPage", &CStorageMediaPlugin::setItemNumPerPage};
}

TEST(SetItemNumPerPage, AnyNumber_IsStoredAsGivenAndResetsThePosition)
{
    for (const int number : {12, 0, -5, 9}) {
        setNumber()
            .request(R"({"number":)" + std::to_string(number) + "}")
            .happens({readInt("number"), dbg(std::to_string(number) + " Item per page!!!"),
                      changed("m_itemCountPerPage", number), changed("m_pagingPosition", 0)})
            .succeeds()
            .check();
    }
}

TEST(SetItemNumPerPage, SameNumberAgain_ResetsThePositionToo)
{
    setNumber()
        .request(R"({"number":12})")
        .given([](FakePlatform&, ExposedPlugin& plugin) { plugin.m_itemCountPerPage = 12; })
        .happens({readInt("number"), dbg("12 Item per page!!!"), changed("m_pagingPosition", 0)})
        .succeeds()
        .check();
}

TEST(SetItemNumPerPage, NumberUnreadable_ChangesNothing)
{
    for (const char* request : {"{}", R"({"number":"5"})"}) {
        setNumber().request(request).happens({readInt("number"), err("unknown number")}).fails().check();
    }
}

TEST(SetItemNumPerPage, NullPointers_Fail)
{
    setNumber().nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    setNumber().nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

Scenario page(const std::string& request)
{
    return Scenario("getOnePageFiles", &CStorageMediaPlugin::getOnePageFiles).request(request);
}

const Journal kReads = {readInt("pageid"), readInt("type"), readString("keystr"), readString("dirpath")};

Journal reading(const Journal& afterwards)
{
    return kReads + afterwards;
}

TEST(GetOnePageFiles, PageWithEntries_ReplacesTheReply)
{
    page(R"({"pageid":3,"type":0,"keystr":"k","dirpath":"/d"})")
        .given([](FakePlatform& platform, ExposedPlugin&) {
            platform.files = {folderFile("/d/b"), folderFile("/d/a", -2, 0)};
        })
        .happens(
            reading({info("page:3, type:0, strkey:k, dirpath:/d"), manager(),
                     did(R"(getOnePageFileInfo([0 elements], 3, 0, "k", "/d"))"),
                     dbg("File name:name of /d/b, ctime:time of /d/b"), dbg("File name:name of /d/a, ctime:time of /d/a")}))
        .succeeds()
        .leavesReply(R"({"filecount":2u,"filelst":[)"
                     R"({"ctime":"time of /d/b","name":"name of /d/b","path":"/d/b","size":5000000000u,)"
                     R"("title":"title of /d/b","type":4},)"
                     R"({"ctime":"time of /d/a","name":"name of /d/a","path":"/d/a","size":0u,)"
                     R"("title":"title of /d/a","type":-2}]})")
        .check();
}

TEST(GetOnePageFiles, EmptyPage_HasAnEmptyList)
{
    page(R"({"pageid":0,"type":1})")
        .happens(reading({info("page:0, type:1, strkey:, dirpath:"), manager(),
                          did(R"(getOnePageFileInfo([0 elements], 0, 1, "", ""))")}))
        .succeeds()
        .leavesReply(R"({"filecount":0u,"filelst":[]})")
        .check();
}

TEST(GetOnePageFiles, LargestSize_KeepsAllItsBits)
{
    FakePlatform platform;
    ExposedPlugin plugin;
    platform.files = {folderFile("/d/a", 4, ~0ULL)};
    Json::Value request = testsupport::parsed(R"({"pageid":0,"type":1})");
    Json::Value reply;
    ASSERT_TRUE(plugin.getOnePageFiles(&request, &reply));
    EXPECT_EQ(testsupport::typed(reply["filelst"][0]["size"]), "18446744073709551615u");
}

TEST(GetOnePageFiles, BrowserReturnsMinusOne_FailsAndKeepsTheReply)
{
    page(R"({"pageid":0,"type":1})")
        .given([](FakePlatform& platform, ExposedPlugin&) {
            platform.statuses["getOnePageFileInfo"] = -1;
            platform.files = {folderFile("/d/a")};
        })
        .happens(reading({info("page:0, type:1, strkey:, dirpath:"), manager(),
                          did(R"(getOnePageFileInfo([0 elements], 0, 1, "", ""))"), err("getOnePageFileInfo failed!!!:-1")}))
        .fails()
        .check();
}

TEST(GetOnePageFiles, AnyOtherStatus_IsSuccess)
{
    for (const int status : {-2, 1, 7}) {
        page(R"({"pageid":0,"type":1})")
            .given([status](FakePlatform& platform, ExposedPlugin&) { platform.statuses["getOnePageFileInfo"] = status; })
            .happens(reading({info("page:0, type:1, strkey:, dirpath:"), manager(),
                              did(R"(getOnePageFileInfo([0 elements], 0, 1, "", ""))")}))
            .succeeds()
            .leavesReply(R"({"filecount":0u,"filelst":[]})")
            .check();
    }
}

TEST(GetOnePageFiles, KeyListWithoutKey_Fails)
{
    for (const char* request : {R"({"pageid":0,"type":2,"dirpath":"/d"})", R"({"pageid":0,"type":2,"keystr":5})"}) {
        page(request)
            .happens({readInt("pageid"), readInt("type"), readString("keystr"), err("unknown keystr")})
            .fails()
            .check();
    }
}

TEST(GetOnePageFiles, KeyListWithKey_NeedsNoDirectory)
{
    page(R"({"pageid":0,"type":2,"keystr":"k"})")
        .happens(reading({info("page:0, type:2, strkey:k, dirpath:"), manager(),
                          did(R"(getOnePageFileInfo([0 elements], 0, 2, "k", ""))")}))
        .succeeds()
        .leavesReply(R"({"filecount":0u,"filelst":[]})")
        .check();
}

TEST(GetOnePageFiles, DirectoryListWithoutDirectory_WarnsAndGoesOn)
{
    for (const char* request : {R"({"pageid":0,"type":0})", R"({"pageid":0,"type":0,"dirpath":5})"}) {
        page(request)
            .happens(reading({war("unknown dirpath"), info("page:0, type:0, strkey:, dirpath:"), manager(),
                              did(R"(getOnePageFileInfo([0 elements], 0, 0, "", ""))")}))
            .succeeds()
            .leavesReply(R"({"filecount":0u,"filelst":[]})")
            .check();
    }
}

TEST(GetOnePageFiles, PageOrTypeUnreadable_Fails)
{
    for (const char* request : {R"({"type":1})", R"({"pageid":"0","type":1})"}) {
        page(request).happens({readInt("pageid"), err("unknown pageid")}).fails().check();
    }
    for (const char* request : {R"({"pageid":0})", R"({"pageid":0,"type":null})"}) {
        page(request).happens({readInt("pageid"), readInt("type"), err("unknown type")}).fails().check();
    }
}

TEST(GetOnePageFiles, NullPointers_Fail)
{
    page("{}").nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    page("{}").nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

PageData pageParams(const char* json)
{
    FakePlatform platform;
    ExposedPlugin plugin;
    Json::Value request = json != nullptr ? testsupport::parsed(json) : Json::Value();
    PageData page = {7, 7, 7};
    platform.logLevel = 0;
    platform.readersWriteJunk = true;
    platform.takeJournal();
    plugin.GetPageParams(json != nullptr ? &request : nullptr, page);
    const Journal reads = {readInt("pageIndex"), readInt("pageSize"), readInt("sortType")};
    EXPECT_EQ(platform.takeJournal(), json != nullptr ? render(reads, "", 0) : "");
    return page;
}

TEST(GetPageParams, KeysGiven_AreRead)
{
    const PageData page = pageParams(R"({"pageIndex":1,"pageSize":-2,"sortType":3})");
    EXPECT_EQ(page.pageIndex, 1);
    EXPECT_EQ(page.pageSize, -2);
    EXPECT_EQ(page.sortType, 3);
}

TEST(GetPageParams, KeysUnreadableOrNoRequest_AreZero)
{
    for (const char* json :
         {"{}", R"({"pageIndex":"1","pageSize":true,"sortType":[]})", static_cast<const char*>(nullptr)}) {
        const PageData page = pageParams(json);
        EXPECT_EQ(page.pageIndex, 0);
        EXPECT_EQ(page.pageSize, 0);
        EXPECT_EQ(page.sortType, 0);
    }
}

struct Parent {
    std::string path;
    std::string parent;
};

class ParentPath : public testing::TestWithParam<Parent> {};

TEST_P(ParentPath, Cut_IsTheParent)
{
    std::string parent;
    Scenario("", [&](ExposedPlugin& plugin) { parent = plugin.GetParentPath(GetParam().path); })
        .happens({})
        .afterwards([&] { EXPECT_EQ(parent, GetParam().parent); })
        .checkAt(0);
}

INSTANTIATE_TEST_SUITE_P(Paths, ParentPath,
                         testing::Values(Parent{"/mnt/usb/a/", "/mnt/usb"}, Parent{"/mnt/usb/a", "/mnt/usb"},
                                         Parent{"a", "a"}, Parent{"/", ""}, Parent{"", ""}, Parent{"a/", "a"},
                                         Parent{"/a", ""}, Parent{"/a/", ""}, Parent{"//", ""}, Parent{"a//", "a"},
                                         Parent{"/a//", "/a"}, Parent{"/mnt/usb//", "/mnt/usb"}, Parent{"a/b", "a"},
                                         // A backslash is a letter like any other.
                                         Parent{"\\mnt\\a", "\\mnt\\a"}, Parent{"/mnt/a\\b", "/mnt"},
                                         Parent{"/mnt/a\\", "/mnt"}),
                         [](const auto& row) { return caseName(row.index, row.param.path); });

} // namespace
