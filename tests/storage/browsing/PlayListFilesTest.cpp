#include "support/CaseName.h"
#include "support/Scenario.h"

#include <gtest/gtest.h>

namespace {

using testsupport::caseName;
using tvfirmware::CStorageMediaPlugin;

Scenario playLists()
{
    return Scenario("getPlayListFile", &CStorageMediaPlugin::getPlayListFile).request(R"({"dirpath":"/usb"})");
}

Journal naming(const std::string& path, const std::string& type)
{
    return {dbg("file path:" + path + ", type:" + type), manager(), did("splitFileName(\"" + path + "\")"), manager(),
            did("getFileDirPath(\"" + path + "\")")};
}

Journal listing(std::vector<Journal> files)
{
    Journal journal = {readString("dirpath"), dbg("Path:/usb"), manager(), did(R"(getPlayListFiles("/usb", [0 elements]))")};
    for (const auto& file : files) {
        journal.insert(journal.end(), file.begin(), file.end());
    }
    return journal;
}

TEST(GetPlayListFile, FilesFound_AreNamedAndListedInOrder)
{
    playLists()
        .given([](FakePlatform& platform, ExposedPlugin&) {
            platform.playlists = {{"/usb/b.m3u", 6}, {"/usb/a.pls", 4294967295U}};
            platform.names = {{"/usb/b.m3u", "Best"}, {"/usb/a.pls", "Also"}};
        })
        .happens(listing({naming("/usb/b.m3u", "6"), naming("/usb/a.pls", "-1")}))
        .succeeds()
        .leavesReply(R"({"list":[{"name":"Best","path":"/usb/b.m3u","type":6u},)"
                     R"({"name":"Also","path":"/usb/a.pls","type":4294967295u}]})")
        .check();
}

struct DirectoryName {
    std::string directory;
    std::string name;
};

class FileWithoutName : public testing::TestWithParam<DirectoryName> {};

TEST_P(FileWithoutName, Listed_GoesByItsDirectory)
{
    playLists()
        .given([](FakePlatform& platform, ExposedPlugin&) {
            platform.playlists = {{"/p", 6}};
            platform.directories = {{"/p", GetParam().directory}};
        })
        .happens(listing({naming("/p", "6")}))
        .succeeds()
        .leavesReply(R"({"list":[{"name":")" + GetParam().name + R"(","path":"/p","type":6u}]})")
        .check();
}

INSTANTIATE_TEST_SUITE_P(Directories, FileWithoutName,
                         testing::Values(DirectoryName{"/usb/sda1/Music", "Music"}, DirectoryName{"Music", "Music"},
                                         DirectoryName{"C:\\Media\\Jazz", "Jazz"}, DirectoryName{"/usb\\Mixed/Last", "Last"},
                                         DirectoryName{"/usb/Mixed\\Last", "Last"},
                                         DirectoryName{"/usb/My~Music", "My~Music"}, DirectoryName{"/usb/", ""},
                                         DirectoryName{"", ""}),
                         [](const auto& row) { return caseName(row.index, row.param.directory); });

TEST(GetPlayListFile, NothingFound_HasAnEmptyList)
{
    playLists().happens(listing({})).succeeds().leavesReply(R"({"list":[]})").check();
}

TEST(GetPlayListFile, EmptyDirectory_IsPassedOn)
{
    playLists()
        .request(R"({"dirpath":""})")
        .happens({readString("dirpath"), dbg("Path:"), manager(), did(R"(getPlayListFiles("", [0 elements]))")})
        .succeeds()
        .leavesReply(R"({"list":[]})")
        .check();
}

TEST(GetPlayListFile, ManagerRefuses_LogsItsStatus)
{
    Journal journal = listing({});
    journal.push_back(err("Failed!!! ret:<status>"));
    playLists()
        .given([](FakePlatform& platform, ExposedPlugin&) {
            platform.playlists = {{"/p", 6}};
        })
        .refusedBy("getPlayListFiles")
        .happens(journal)
        .fails()
        .check();
}

TEST(GetPlayListFile, DirectoryUnreadable_Fails)
{
    for (const char* request : {"{}", R"({"dirpath":5})"}) {
        playLists().request(request).happens({readString("dirpath"), err("unknown path")}).fails().check();
    }
}

TEST(GetPlayListFile, NullPointers_Fail)
{
    playLists().nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    playLists().nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

} // namespace
