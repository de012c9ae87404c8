#include "support/Folders.h"
#include "support/Scenario.h"

#include <gtest/gtest.h>

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

void twoFiles(FakePlatform& platform, ExposedPlugin& /*plugin*/)
{
    platform.files = {folderFile("/b"), folderFile("/a", 5, 7)};
    platform.media.resize(3); // one more than files, which bound the list
    platform.media[0].duration = 61;
    platform.media[0].music.artist = "First";
    platform.media[1].duration = -1;
    platform.media[1].music.artist = "Second";
}

Journal generalQuery(int number, int asc, const Journal& warning = {})
{
    const std::string sorted = asc == -1 ? "" : ", " + std::to_string(asc);
    return Journal{readString("keystr"), readInt("number", 9)} + warning +
           Journal{readInt("asc"),
                   changed("m_itemCountPerPage", number),
                   manager(),
                   did("stopThumbnail()"),
                   dbg("Get Key:Jazz, asc:" + std::to_string(asc)),
                   manager(),
                   did(R"(getMediaFileInfo("Jazz", [0 elements], )" + std::to_string(number) + sorted + ")")};
}

TEST(GroupList, AnySortDirection_IsPassedThrough)
{
    for (const int asc : {0, 1, 2, -2}) {
        general(R"({"keystr":"Jazz","number":20,"asc":)" + std::to_string(asc) + "}")
            .given(twoFiles)
            .happens(generalQuery(20, asc))
            .succeeds()
            .leavesReply(R"({"filelst":[{"ctime":"time of /b","name":"name of /b","path":"/b","size":5000000000u},)"
                         R"({"ctime":"time of /a","name":"name of /a","path":"/a","size":7u}],"filenum":2u})")
            .check();
    }
}

TEST(GroupList, MinusOne_QueriesWithoutSortDirection)
{
    general(R"({"keystr":"Jazz","number":20,"asc":-1})")
        .happens(generalQuery(20, -1))
        .succeeds()
        .leavesReply(R"({"filelst":[],"filenum":0u})")
        .check();
}

TEST(GroupList, QueryFails_SucceedsAllTheSameAndKeepsTheReply)
{
    for (const int asc : {1, -1}) {
        general(R"({"keystr":"Jazz","number":20,"asc":)" + std::to_string(asc) + "}")
            .given(twoFiles)
            .refusedBy("getMediaFileInfo")
            .happens(generalQuery(20, asc) + Journal{err("Failed but success!!! ret:<status>")})
            .succeeds()
            .check();
    }
}

TEST(GroupList, ThumbnailsCannotBeStopped_GoesOn)
{
    general(R"({"keystr":"Jazz","number":20,"asc":-1})")
        .refusedBy("stopThumbnail")
        .happens(generalQuery(20, -1))
        .succeeds()
        .leavesReply(R"({"filelst":[],"filenum":0u})")
        .check();
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

TEST(GroupList, NumberUnreadable_QueriesWithNine)
{
    for (const char* number : {"", R"(,"number":"4")"}) {
        general(R"({"keystr":"Jazz","asc":-1)" + std::string(number) + "}")
            .happens(generalQuery(9, -1, {war("getGroupListInfo-#, unknown number, set default:9")}))
            .succeeds()
            .leavesReply(R"({"filelst":[],"filenum":0u})")
            .check();
    }
}

TEST(GroupList, SortDirectionUnreadable_FailsAndKeepsThePageSize)
{
    for (const char* asc : {"", R"(,"asc":"1")"}) {
        general(R"({"keystr":"Jazz","number":20)" + std::string(asc) + "}")
            .happens({readString("keystr"), readInt("number", 9), readInt("asc"),
                      err("getGroupListInfo-#, unknown asc number, check your asc value ")})
            .fails()
            .check();
    }
}

Journal kiroQuery(int number, const Journal& warning = {})
{
    return Journal{readString("keystr"), readInt("number", 9)} + warning +
           Journal{changed("m_itemCountPerPage", number),
                   manager(),
                   did("stopThumbnail()"),
                   dbg("Get Key:Jazz"),
                   manager(),
                   did(R"(getMediaFileInfo("Jazz", [0 elements], [0 elements], )" + std::to_string(number) + ")")};
}

TEST(KiroGroupList, Queried_AddsDurationAndArtist)
{
    kiro(R"({"keystr":"Jazz","number":20,"asc":1})")
        .given(twoFiles)
        .happens(kiroQuery(20))
        .succeeds()
        .leavesReply(R"({"filelst":[{"artist":"First","ctime":"time of /b","duration":61u,"name":"name of /b","path":"/b",)"
                     R"("size":5000000000u},{"artist":"Second","ctime":"time of /a","duration":4294967295u,)"
                     R"("name":"name of /a","path":"/a","size":7u}],"filenum":2u})")
        .check();
}

TEST(KiroGroupList, EmptyGroup_HasAnEmptyList)
{
    kiro(R"({"keystr":"Jazz","number":20})")
        .happens(kiroQuery(20))
        .succeeds()
        .leavesReply(R"({"filelst":[],"filenum":0u})")
        .check();
}

TEST(KiroGroupList, NumberUnreadable_QueriesWithNine)
{
    for (const char* number : {"", R"(,"number":"4")"}) {
        kiro(R"({"keystr":"Jazz")" + std::string(number) + "}")
            .happens(kiroQuery(9, {war("kiroGetGroupListInfo-#, unknown number, set default:9")}))
            .succeeds()
            .leavesReply(R"({"filelst":[],"filenum":0u})")
            .check();
    }
}

TEST(KiroGroupList, QueryFails_SucceedsAllTheSameAndKeepsTheReply)
{
    kiro(R"({"keystr":"Jazz","number":20})")
        .given(twoFiles)
        .refusedBy("getMediaFileInfo")
        .happens(kiroQuery(20) + Journal{err("Failed!!! ret:<status>")})
        .succeeds()
        .check();
}

TEST(KiroGroupList, ThumbnailsCannotBeStopped_GoesOn)
{
    kiro(R"({"keystr":"Jazz","number":20})")
        .refusedBy("stopThumbnail")
        .happens(kiroQuery(20))
        .succeeds()
        .leavesReply(R"({"filelst":[],"filenum":0u})")
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
