#include "support/Folders.h"
#include "support/Scenario.h"
#include "support/TypedJson.h"

#include <gtest/gtest.h>

#include <regex>

namespace {

using tvfirmware::CStorageMediaPlugin;

Scenario general(const std::string& request)
{
    return Scenario("getGroupListInfo", &CStorageMediaPlugin::getGroupListInfo).request(request);
}

Scenario kiro(const std::string& request)
{
    return Scenario("kiroGetGroupListInfo", &CStorageMediaPlugin::kiroGetGroupListInfo).request(request);
}

std::function<void(const ExposedPlugin&)> itemCountIs(int count)
{
    return [count](const ExposedPlugin& plugin) { EXPECT_EQ(plugin.m_itemCountPerPage, count); };
}

void twoFiles(FakePlatform& platform, ExposedPlugin& /*plugin*/)
{
    platform.files = {folderFile("/b"), folderFile("/a", 5, 7)};
    platform.media.resize(3);
    platform.media[0].duration = 61;
    platform.media[0].music.artist = "First";
    platform.media[1].duration = -1;
    platform.media[1].music.artist = "Second";
}

std::vector<Happening> generalQuery(const std::string& key, int number, int asc)
{
    const std::string arguments = "\"" + key + "\", [0 elements], " + std::to_string(number);
    return {readString("keystr"),
            readInt("number", 9),
            readInt("asc"),
            manager(),
            did("stopThumbnail()"),
            dbg("Get Key:" + key + ", asc:" + std::to_string(asc)),
            manager(),
            did("getMediaFileInfo(" + arguments + (asc == -1 ? "" : ", " + std::to_string(asc)) + ")")};
}

TEST(GroupList, AnySortDirection_IsPassedThrough)
{
    for (const int asc : {0, 1, 2, -2}) {
        general(R"({"keystr":"Jazz","number":20,"asc":)" + std::to_string(asc) + "}")
            .given(twoFiles)
            .happens(generalQuery("Jazz", 20, asc))
            .succeeds()
            .leavesReply(R"({"filelst":[{"ctime":"time of /b","name":"name of /b","path":"/b","size":5000000000u},)"
                         R"({"ctime":"time of /a","name":"name of /a","path":"/a","size":7u}],"filenum":2u})")
            .afterwards(itemCountIs(20))
            .check();
    }
}

TEST(GroupList, MinusOne_QueriesWithoutSortDirection)
{
    general(R"({"keystr":"Jazz","number":20,"asc":-1})")
        .happens(generalQuery("Jazz", 20, -1))
        .succeeds()
        .leavesReply(R"({"filelst":[],"filenum":0u})")
        .afterwards(itemCountIs(20))
        .check();
}

TEST(GroupList, QueryFails_SucceedsAllTheSameAndKeepsTheReply)
{
    for (const int status : {5, -5}) {
        std::vector<Happening> journal = generalQuery("Jazz", 20, 1);
        journal.push_back(err("Failed but success!!! ret:" + std::to_string(status)));
        general(R"({"keystr":"Jazz","number":20,"asc":1})")
            .given([status](FakePlatform& platform, ExposedPlugin& plugin) {
                twoFiles(platform, plugin);
                platform.statuses = {{"getMediaFileInfo", status}, {"stopThumbnail", -1}};
            })
            .happens(journal)
            .succeeds()
            .afterwards(itemCountIs(20))
            .check();
    }
}

TEST(GroupList, KeyUnreadableOrEmpty_Fails)
{
    for (const char* request : {R"({"asc":1})", R"({"keystr":5,"asc":1})", R"({"keystr":"","asc":1})"}) {
        general(request).happens({readString("keystr"), err("unknown Key Str")}).fails().check();
        kiro(request).happens({readString("keystr"), err("unknown Key Str")}).fails().check();
    }
}

TEST(GroupList, NullPointers_Fail)
{
    general("{}").nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    general("{}").nullReply().happens({err("Params is NULL!!!")}).fails().check();
    kiro("{}").nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    kiro("{}").nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

struct TaggedLine {
    const char* name;
    Scenario::Command command;
    std::string function;
    std::string request;
    std::string level;   ///< word in the prefix
    int printedBelow;    ///< log level
    std::string message; ///< after the tag
    bool result;
    int itemCount; ///< that the plugin keeps
};

/// Lines whose text repeats handler name and line number of their prefix.
class TaggedGroupLine : public testing::TestWithParam<TaggedLine> {};

TEST_P(TaggedGroupLine, Logged_CarriesTheTagOfItsPrefix)
{
    const TaggedLine& expected = GetParam();
    for (int level = 0; level <= 4; ++level) {
        FakePlatform platform;
        ExposedPlugin plugin;
        plugin.m_itemCountPerPage = 33;
        platform.logLevel = level;
        platform.takeJournal();
        Json::Value request = testsupport::parsed(expected.request);
        Json::Value reply;
        EXPECT_EQ((plugin.*expected.command)(&request, &reply), expected.result);
        EXPECT_EQ(plugin.m_itemCountPerPage, expected.itemCount);

        const std::string journal = platform.takeJournal();
        const std::regex line("\\[" + expected.level + "\\]\\[(" + expected.function + "-\\d+)\\]\\1, " + expected.message +
                              "\r\n");
        EXPECT_EQ(std::regex_search(journal, line), level < expected.printedBelow) << journal;
        EXPECT_EQ(journal.find(expected.message) != std::string::npos, level < expected.printedBelow) << journal;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Lines, TaggedGroupLine,
    testing::Values(TaggedLine{"NumberOfTheGeneralList", &CStorageMediaPlugin::getGroupListInfo, "getGroupListInfo",
                               R"({"keystr":"k","asc":1})", "WAR", 3, "unknown number, set default:9", true, 9},
                    TaggedLine{"NumberOfTheKiroList", &CStorageMediaPlugin::kiroGetGroupListInfo, "kiroGetGroupListInfo",
                               R"({"keystr":"k","number":"4"})", "WAR", 3, "unknown number, set default:9", true, 9},
                    TaggedLine{"SortDirection", &CStorageMediaPlugin::getGroupListInfo, "getGroupListInfo",
                               R"({"keystr":"k","number":4})", "ERR", 4, "unknown asc number, check your asc value ", false,
                               33},
                    TaggedLine{"SortDirectionOfAnotherType", &CStorageMediaPlugin::getGroupListInfo, "getGroupListInfo",
                               R"({"keystr":"k","number":4,"asc":"1"})", "ERR", 4,
                               "unknown asc number, check your asc value ", false, 33}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(GroupList, WithoutSortDirection_ReadsInOrderAndQueriesNothing)
{
    FakePlatform platform;
    ExposedPlugin plugin;
    platform.takeJournal();
    Json::Value request = testsupport::parsed(R"({"keystr":"k"})");
    Json::Value reply;
    EXPECT_FALSE(plugin.getGroupListInfo(&request, &reply));
    EXPECT_EQ(platform.takeJournal(), render({readString("keystr"), readInt("number", 9), readInt("asc")}, "", 4));
    EXPECT_EQ(testsupport::typed(reply), "null");
}

TEST(GroupList, WithoutNumber_QueriesWithNine)
{
    FakePlatform platform;
    ExposedPlugin plugin;
    platform.takeJournal();
    Json::Value request = testsupport::parsed(R"({"keystr":"k","asc":-1})");
    Json::Value reply;
    EXPECT_TRUE(plugin.getGroupListInfo(&request, &reply));
    EXPECT_EQ(platform.takeJournal(), render(generalQuery("k", 9, -1), "", 4));
}

std::vector<Happening> kiroQuery(const std::string& key, int number)
{
    return {readString("keystr"),
            readInt("number", 9),
            manager(),
            did("stopThumbnail()"),
            dbg("Get Key:" + key),
            manager(),
            did("getMediaFileInfo(\"" + key + "\", [0 elements], [0 elements], " + std::to_string(number) + ")")};
}

TEST(KiroGroupList, Queried_AddsDurationAndArtist)
{
    kiro(R"({"keystr":"Jazz","number":20,"asc":1})")
        .given(twoFiles)
        .happens(kiroQuery("Jazz", 20))
        .succeeds()
        .leavesReply(R"({"filelst":[{"artist":"First","ctime":"time of /b","duration":61u,"name":"name of /b","path":"/b",)"
                     R"("size":5000000000u},{"artist":"Second","ctime":"time of /a","duration":4294967295u,)"
                     R"("name":"name of /a","path":"/a","size":7u}],"filenum":2u})")
        .afterwards(itemCountIs(20))
        .check();
}

TEST(KiroGroupList, EmptyGroup_HasAnEmptyList)
{
    kiro(R"({"keystr":"Jazz","number":20})")
        .happens(kiroQuery("Jazz", 20))
        .succeeds()
        .leavesReply(R"({"filelst":[],"filenum":0u})")
        .check();
}

TEST(KiroGroupList, WithoutNumber_QueriesWithNine)
{
    FakePlatform platform;
    ExposedPlugin plugin;
    platform.takeJournal();
    Json::Value request = testsupport::parsed(R"({"keystr":"k"})");
    Json::Value reply;
    EXPECT_TRUE(plugin.kiroGetGroupListInfo(&request, &reply));
    EXPECT_EQ(platform.takeJournal(), render(kiroQuery("k", 9), "", 4));
}

TEST(KiroGroupList, QueryFails_SucceedsAllTheSameAndKeepsTheReply)
{
    std::vector<Happening> journal = kiroQuery("Jazz", 20);
    journal.push_back(err("Failed!!! ret:-5"));
    kiro(R"({"keystr":"Jazz","number":20})")
        .given([](FakePlatform& platform, ExposedPlugin& plugin) {
            twoFiles(platform, plugin);
            platform.statuses = {{"getMediaFileInfo", -5}, {"stopThumbnail", -1}};
        })
        .happens(journal)
        .succeeds()
        .afterwards(itemCountIs(20))
        .check();
}

TEST(SuperdemoGroupList, Asked_IsAlwaysEmpty)
{
    const Scenario superdemo("getSuperdemoGroupListInfo", &CStorageMediaPlugin::getSuperdemoGroupListInfo);
    Scenario(superdemo)
        .request(R"({"keystr":"Jazz","number":20})")
        .given(twoFiles)
        .happens({})
        .succeeds()
        .leavesReply(R"({"filelst":[],"filenum":0u})")
        .afterwards(itemCountIs(9))
        .check();
    Scenario(superdemo).nullRequest().happens({}).succeeds().leavesReply(R"({"filelst":[],"filenum":0u})").check();
}

TEST(SuperdemoGroupList, NullReply_Fails)
{
    Scenario("getSuperdemoGroupListInfo", &CStorageMediaPlugin::getSuperdemoGroupListInfo)
        .nullReply()
        .happens({err("Params is NULL!!!")})
        .fails()
        .check();
}

} // namespace
