#include "support/Folders.h"
#include "support/Scenario.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

Scenario sort(const std::string& request)
{
    return Scenario("photosort", &CStorageMediaPlugin::photosort).request(request);
}

TEST(PhotoSort, Sorted_RepliesTheEntriesAndPrintsThemWithoutLineEnd)
{
    sort(R"({"type":2,"order":1})")
        .given([](FakePlatform& platform, ExposedPlugin&) {
            platform.files = {folderFile("/b", 3), folderFile("/a", 7, 1)};
        })
        .happens({readInt("type"), readInt("order"), manager(), did("photoSort(2, true, [0 elements])"),
                  printed("File name:name of /b, ctime:time of /b"), printed("File name:name of /a, ctime:time of /a")})
        .succeeds()
        .leavesReply(
            R"({"filelst":[)"
            R"({"ctime":"time of /b","name":"name of /b","path":"/b","size":5000000000u,"title":"title of /b","type":3},)"
            R"({"ctime":"time of /a","name":"name of /a","path":"/a","size":1u,"title":"title of /a","type":7}]})")
        .check();
}

TEST(PhotoSort, AnyOrderButZero_IsTrue)
{
    for (const auto& [order, flag] : std::map<int, std::string>{{0, "false"}, {1, "true"}, {2, "true"}, {-1, "true"}}) {
        sort(R"({"type":-4,"order":)" + std::to_string(order) + "}")
            .happens({readInt("type"), readInt("order"), manager(), did("photoSort(-4, " + flag + ", [0 elements])")})
            .succeeds()
            .leavesReply(R"({"filelst":[]})")
            .check();
    }
}

TEST(PhotoSort, ManagerRefuses_LogsItsStatus)
{
    sort(R"({"type":2,"order":1})")
        .given([](FakePlatform& platform, ExposedPlugin&) { platform.files = {folderFile("/b", 3)}; })
        .refusedBy("photoSort")
        .happens({readInt("type"), readInt("order"), manager(), did("photoSort(2, true, [0 elements])"),
                  err("Failed!!! ret:<status>")})
        .fails()
        .check();
}

TEST(PhotoSort, TypeOrOrderUnreadable_Fails)
{
    for (const char* request : {R"({"order":1})", R"({"type":"2","order":1})"}) {
        sort(request).happens({readInt("type"), err("unknown sort type")}).fails().check();
    }
    for (const char* request : {R"({"type":2})", R"({"type":2,"order":true})"}) {
        sort(request).happens({readInt("type"), readInt("order"), err("unknown sort order")}).fails().check();
    }
}

TEST(PhotoSort, NullPointers_Fail)
{
    sort("{}").nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    sort("{}").nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

} // namespace
