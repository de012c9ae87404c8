#include "support/Scenario.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

Scenario enter(const std::string& request)
{
    return Scenario("enterGroupFolder", &CStorageMediaPlugin::enterGroupFolder)
        .request(request)
        .given([](FakePlatform&, ExposedPlugin& plugin) {
            plugin.m_requestSlots[2] = {"old channel", "old request", "", ""};
        });
}

std::string requestFor(int group)
{
    return R"({"channelId":"c1","reqId":"r1","Group":)" + std::to_string(group) + R"(,"dirpath":"/mnt/a"})";
}

std::vector<Happening> reads()
{
    return {readString("channelId"), readString("reqId"), readInt("Group"), readString("dirpath")};
}

std::vector<Happening> grouping(int group, const std::string& name)
{
    const std::string number = std::to_string(group);
    std::vector<Happening> journal = reads();
    journal.insert(journal.end(), {dbg("Path:/mnt/a, Channleid:c1, gIdx: " + number), dbg(" Select Group: " + name),
                                   manager(), did("stopThumbnail()"), dbg("Path:/mnt/a, Tyep:" + number), manager(),
                                   did(R"(groupFiles("/mnt/a", )" + number + ")")});
    return journal;
}

std::function<void(const ExposedPlugin&)> leaves(const std::string& channel, const std::string& reqId)
{
    return [=](const ExposedPlugin& plugin) {
        EXPECT_EQ(plugin.m_requestSlots[2].channel, channel);
        EXPECT_EQ(plugin.m_requestSlots[2].reqId, reqId);
        EXPECT_EQ(plugin.m_requestSlots[2].event, "");
        EXPECT_EQ(plugin.m_requestSlots[2].extra, "");
        EXPECT_EQ(plugin.m_itemCountPerPage, 9);
    };
}

struct Group {
    int type;
    std::string name;
};

class GroupType : public testing::TestWithParam<Group> {};

TEST_P(GroupType, Accepted_IsNamedAndGrouped)
{
    enter(requestFor(GetParam().type))
        .happens(grouping(GetParam().type, GetParam().name))
        .succeeds()
        .afterwards(leaves("c1", "r1"))
        .check();
}

INSTANTIATE_TEST_SUITE_P(Types, GroupType,
                         testing::Values(Group{0, "GROUP_TYPE_NONE"}, Group{1, "GROUP_TYPE_MUSIC"},
                                         Group{2, "GROUP_TYPE_GENRE"}, Group{3, "GROUP_TYPE_ARTIST"},
                                         Group{4, "GROUP_TYPE_ALBUM"}, Group{5, "GROUP_TYPE_DATE"},
                                         Group{6, "GROUP_TYPE_MONTH"}, Group{7, "GROUP_TYPE_MONTH"},
                                         Group{8, "GROUP_TYPE_YEAR"}, Group{9, "GROUP_TYPE_MAX"}, Group{10, ""},
                                         Group{11, ""}));

TEST(EnterGroupFolder, GroupOutOfRange_FailsAfterStoringTheIds)
{
    for (const int group : {12, -1, 2147483647, -2147483647}) {
        const std::string number = std::to_string(group);
        std::vector<Happening> journal = reads();
        journal.insert(journal.end(),
                       {dbg("Path:/mnt/a, Channleid:c1, gIdx: " + number), err("Invailed Group Type:" + number)});
        enter(requestFor(group)).happens(journal).fails().afterwards(leaves("c1", "r1")).check();
    }
}

TEST(EnterGroupFolder, NullReply_IsAccepted)
{
    enter(requestFor(3)).nullReply().happens(grouping(3, "GROUP_TYPE_ARTIST")).succeeds().check();
}

TEST(EnterGroupFolder, EmptyRequestId_IsAccepted)
{
    enter(R"({"channelId":"c1","reqId":"","Group":1,"dirpath":"/mnt/a"})")
        .happens(grouping(1, "GROUP_TYPE_MUSIC"))
        .succeeds()
        .afterwards(leaves("c1", ""))
        .check();
}

TEST(EnterGroupFolder, BrowserRefuses_LogsItsResultAndKeepsTheIds)
{
    std::vector<Happening> journal = grouping(1, "GROUP_TYPE_MUSIC");
    journal.push_back(err("Failed!!! ret:-7"));
    enter(requestFor(1))
        .given([](FakePlatform& platform, ExposedPlugin&) {
            platform.statuses = {{"groupFiles", -7}, {"stopThumbnail", -1}};
        })
        .happens(journal)
        .fails()
        .afterwards(leaves("c1", "r1"))
        .check();
}

TEST(EnterGroupFolder, ChannelUnreadableOrEmpty_StoresNothing)
{
    for (const char* request : {R"({"reqId":"r1"})", R"({"channelId":1})", R"({"channelId":"","reqId":"r1"})"}) {
        enter(request)
            .happens({readString("channelId"), err("unknown channelId")})
            .fails()
            .afterwards(leaves("old channel", "old request"))
            .check();
    }
}

TEST(EnterGroupFolder, RequestIdUnreadable_HasAlreadyReplacedTheChannel)
{
    for (const char* request : {R"({"channelId":"c1"})", R"({"channelId":"c1","reqId":1})"}) {
        enter(request)
            .happens({readString("channelId"), readString("reqId"), err("unknown reqId")})
            .fails()
            .afterwards(leaves("c1", "old request"))
            .check();
    }
}

TEST(EnterGroupFolder, GroupUnreadable_Fails)
{
    for (const char* request : {R"({"channelId":"c1","reqId":"r1","dirpath":"/a"})",
                                R"({"channelId":"c1","reqId":"r1","Group":"1","dirpath":"/a"})"}) {
        enter(request)
            .happens({readString("channelId"), readString("reqId"), readInt("Group"), err("unknown Group id")})
            .fails()
            .afterwards(leaves("c1", "r1"))
            .check();
    }
}

TEST(EnterGroupFolder, DirectoryUnreadableOrEmpty_Fails)
{
    for (const char* directory : {"", R"(,"dirpath":1)", R"(,"dirpath":"")"}) {
        std::vector<Happening> journal = reads();
        journal.push_back(err("unknown dirPath"));
        enter(R"({"channelId":"c1","reqId":"r1","Group":99)" + std::string(directory) + "}")
            .happens(journal)
            .fails()
            .afterwards(leaves("c1", "r1"))
            .check();
    }
}

TEST(EnterGroupFolder, NullRequest_Fails)
{
    enter("{}").nullRequest().happens({err("Params is NULL!!!")}).fails().check();
}

} // namespace
