#include "support/Scenario.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

Scenario enter(const std::string& request)
{
    return Scenario("enterGroupFolder", &CStorageMediaPlugin::enterGroupFolder).request(request);
}

std::string requestFor(int group)
{
    return R"({"channelId":"c1","reqId":"r1","Group":)" + std::to_string(group) + R"(,"dirpath":"/mnt/a"})";
}

const Happening kChannelStored = slotChanged(2, "channel", "c1");

Journal readingIds(const std::string& reqId = "r1")
{
    return {readString("channelId"), kChannelStored, readString("reqId"), slotChanged(2, "reqId", reqId)};
}

Journal reading(const std::string& reqId = "r1")
{
    return readingIds(reqId) + Journal{readInt("Group"), readString("dirpath")};
}

Journal grouping(int group, const std::string& name, const std::string& reqId = "r1")
{
    const std::string number = std::to_string(group);
    return reading(reqId) + Journal{dbg("Path:/mnt/a, Channleid:c1, gIdx: " + number),
                                    dbg(" Select Group: " + name),
                                    manager(),
                                    did("stopThumbnail()"),
                                    dbg("Path:/mnt/a, Tyep:" + number),
                                    manager(),
                                    did(R"(groupFiles("/mnt/a", )" + number + ")")};
}

struct Group {
    int type;
    std::string name;
};

class GroupType : public testing::TestWithParam<Group> {};

TEST_P(GroupType, Accepted_IsNamedAndGrouped)
{
    enter(requestFor(GetParam().type)).happens(grouping(GetParam().type, GetParam().name)).succeeds().check();
}

INSTANTIATE_TEST_SUITE_P(Types, GroupType,
                         testing::Values(Group{0, "GROUP_TYPE_NONE"}, Group{1, "GROUP_TYPE_MUSIC"},
                                         Group{2, "GROUP_TYPE_GENRE"}, Group{3, "GROUP_TYPE_ARTIST"},
                                         Group{4, "GROUP_TYPE_ALBUM"}, Group{5, "GROUP_TYPE_DATE"},
                                         Group{6, "GROUP_TYPE_MONTH"}, Group{7, "GROUP_TYPE_MONTH"},
                                         Group{8, "GROUP_TYPE_YEAR"}, Group{9, "GROUP_TYPE_MAX"}, Group{10, ""},
                                         Group{11, ""}),
                         [](const auto& row) { return "Type" + std::to_string(row.param.type); });

TEST(EnterGroupFolder, GroupOutOfRange_FailsAfterStoringTheIds)
{
    for (const int group : {12, -1, 2147483647, -2147483647}) {
        const std::string number = std::to_string(group);
        enter(requestFor(group))
            .happens(reading() +
                     Journal{dbg("Path:/mnt/a, Channleid:c1, gIdx: " + number), err("Invailed Group Type:" + number)})
            .fails()
            .check();
    }
}

TEST(EnterGroupFolder, NullReply_IsAccepted)
{
    enter(requestFor(3)).nullReply().happens(grouping(3, "GROUP_TYPE_ARTIST")).succeeds().check();
}

TEST(EnterGroupFolder, EmptyRequestId_IsAccepted)
{
    enter(R"({"channelId":"c1","reqId":"","Group":1,"dirpath":"/mnt/a"})")
        .happens(grouping(1, "GROUP_TYPE_MUSIC", ""))
        .succeeds()
        .check();
}

TEST(EnterGroupFolder, BrowserRefuses_LogsItsResultAndKeepsTheIds)
{
    enter(requestFor(1))
        .refusedBy("groupFiles")
        .happens(grouping(1, "GROUP_TYPE_MUSIC") + Journal{err("Failed!!! ret:<status>")})
        .fails()
        .check();
}

TEST(EnterGroupFolder, ThumbnailsCannotBeStopped_GoesOn)
{
    enter(requestFor(1)).refusedBy("stopThumbnail").happens(grouping(1, "GROUP_TYPE_MUSIC")).succeeds().check();
}

TEST(EnterGroupFolder, ChannelUnreadableOrEmpty_StoresNothing)
{
    for (const char* request : {R"({"reqId":"r1"})", R"({"channelId":1})", R"({"channelId":"","reqId":"r1"})"}) {
        enter(request).happens({readString("channelId"), err("unknown channelId")}).fails().check();
    }
}

TEST(EnterGroupFolder, RequestIdUnreadable_HasAlreadyReplacedTheChannel)
{
    for (const char* request : {R"({"channelId":"c1"})", R"({"channelId":"c1","reqId":1})"}) {
        enter(request)
            .happens({readString("channelId"), kChannelStored, readString("reqId"), err("unknown reqId")})
            .fails()
            .check();
    }
}

TEST(EnterGroupFolder, GroupUnreadable_Fails)
{
    for (const char* request : {R"({"channelId":"c1","reqId":"r1","dirpath":"/a"})",
                                R"({"channelId":"c1","reqId":"r1","Group":"1","dirpath":"/a"})"}) {
        enter(request).happens(readingIds() + Journal{readInt("Group"), err("unknown Group id")}).fails().check();
    }
}

TEST(EnterGroupFolder, DirectoryUnreadableOrEmpty_Fails)
{
    for (const char* directory : {"", R"(,"dirpath":1)", R"(,"dirpath":"")"}) {
        enter(R"({"channelId":"c1","reqId":"r1","Group":99)" + std::string(directory) + "}")
            .happens(reading() + Journal{err("unknown dirPath")})
            .fails()
            .check();
    }
}

TEST(EnterGroupFolder, NullRequest_Fails)
{
    enter("{}").nullRequest().happens({err("Params is NULL!!!")}).fails().check();
}

} // namespace
