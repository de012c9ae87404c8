#include "desktop/host/RunningRequests.h"

#include "tests/support/CaseName.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

constexpr const char* kSearch = "storagemedia.video.searchFiles";
constexpr const char* kFound = "storagemedia.video.searchFiles.complete";

Json::Value request(const std::string& channel, const std::string& reqId)
{
    Json::Value object;
    object["channelId"] = channel;
    object["reqId"] = reqId;
    return object;
}

struct Kind {
    BackgroundRequest kind;
    const char* command;
    const char* answer;
};

class EachKind : public testing::TestWithParam<Kind> {
protected:
    RunningRequests requests;
};

TEST_P(EachKind, Answered_EndsOnce)
{
    EXPECT_EQ(requests.accepted(GetParam().command, request("c", "7")), 1U);
    const auto ended = requests.published("c", GetParam().answer, request("c", "7"));
    ASSERT_TRUE(ended.has_value());
    EXPECT_EQ(ended->number, 1U);
    EXPECT_EQ(ended->command, GetParam().command);
    EXPECT_EQ(ended->channel, "c");
    EXPECT_EQ(ended->reqId, "7");
    EXPECT_TRUE(ended->answered);
    EXPECT_FALSE(requests.published("c", GetParam().answer, request("c", "7")).has_value());
    EXPECT_FALSE(requests.dropped(GetParam().kind).has_value());
}

TEST_P(EachKind, Dropped_EndsUnanswered)
{
    requests.accepted(GetParam().command, request("c", "7"));
    const auto ended = requests.dropped(GetParam().kind);
    ASSERT_TRUE(ended.has_value());
    EXPECT_EQ(ended->command, GetParam().command);
    EXPECT_FALSE(ended->answered);
    EXPECT_FALSE(requests.published("c", GetParam().answer, request("c", "7")).has_value());
}

INSTANTIATE_TEST_SUITE_P(Kinds, EachKind,
                         testing::Values(Kind{BackgroundRequest::DirectoryChange, "storagemedia.folder.chgdir",
                                              "storagemedia.folder.chgdir.complete"},
                                         Kind{BackgroundRequest::Search, kSearch, kFound},
                                         Kind{BackgroundRequest::Grouping, "storagemedia.group.musicorphoto",
                                              "storagemedia.group.musicorphoto.complete"},
                                         Kind{BackgroundRequest::Thumbnails, "storagemedia.start.thumbnail",
                                              "startThumbnail.complete"}),
                         [](const auto& row) { return testsupport::caseName(row.index, row.param.command); });

TEST(RunningRequests, OneOfEachKind_RunIndependently)
{
    RunningRequests requests;
    EXPECT_EQ(requests.accepted(kSearch, request("c", "1")), 1U);
    EXPECT_EQ(requests.accepted("storagemedia.folder.chgdir", request("c", "1")), 2U);
    EXPECT_EQ(requests.published("c", kFound, request("c", "1"))->number, 1U);
    EXPECT_EQ(requests.dropped(BackgroundRequest::DirectoryChange)->number, 2U);
}

TEST(RunningRequests, AnswerWithAnotherRequestsMarks_IsNoAnswer)
{
    RunningRequests requests;
    requests.accepted(kSearch, request("c", "1"));
    const auto ended = requests.published("c", kFound, request("c", "refused"));
    ASSERT_TRUE(ended.has_value());
    EXPECT_EQ(ended->reqId, "1");
    EXPECT_FALSE(ended->answered);
    requests.accepted(kSearch, request("c", "1"));
    EXPECT_FALSE(requests.published("other", kFound, request("c", "1"))->answered);
}

TEST(RunningRequests, OtherNotifications_EndNothing)
{
    RunningRequests requests;
    requests.accepted(kSearch, request("c", "1"));
    EXPECT_FALSE(requests.published("c", "storagemedia.video.searchFiles.fragment", request("c", "1")).has_value());
    EXPECT_FALSE(requests.published("storagemedia", "storagemedia.usb.mount", Json::Value()).has_value());
    EXPECT_FALSE(requests.published("c", "storagemedia.folder.chgdir.complete", request("c", "1")).has_value());
    EXPECT_TRUE(requests.published("c", kFound, request("c", "1")).has_value());
}

TEST(RunningRequests, CommandThatAnswersAtOnce_HasNoNumber)
{
    RunningRequests requests;
    EXPECT_EQ(requests.accepted("storagemedia.get.pagefiles", request("c", "1")), 0U);
    EXPECT_EQ(requests.accepted(kSearch, Json::Value()), 1U);
    EXPECT_EQ(requests.published("", kFound, request("c", ""))->reqId, "");
}

} // namespace
} // namespace desktop
