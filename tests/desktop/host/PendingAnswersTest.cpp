#include "desktop/host/PendingAnswers.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

constexpr const char* kChange = "storagemedia.folder.chgdir";
constexpr const char* kChanged = "storagemedia.folder.chgdir.complete";

class PendingAnswersTest : public testing::Test {
protected:
    static Json::Value reqId(const std::string& id)
    {
        Json::Value object;
        object["reqId"] = id;
        return object;
    }

    PendingAnswers answers;
};

TEST_F(PendingAnswersTest, RequestAnswered_IsNoLongerPending)
{
    answers.accepted(kChange, reqId("1"));
    EXPECT_EQ(answers.pending().at(kChange), "1");
    answers.notified("storagemedia.usb.mount", Json::Value());
    answers.notified(kChanged, reqId("0"));
    answers.notified("storagemedia.video.searchFiles.complete", reqId("1"));
    EXPECT_EQ(answers.pending().size(), 1U);
    answers.notified(kChanged, reqId("1"));
    EXPECT_TRUE(answers.pending().empty());
}

TEST_F(PendingAnswersTest, NewerRequest_TakesTheOldersPlace)
{
    answers.accepted(kChange, reqId("1"));
    answers.accepted(kChange, reqId("2"));
    EXPECT_EQ(answers.pending().at(kChange), "2");
}

TEST_F(PendingAnswersTest, RefusedRequest_IsNotPendingNorIsTheOneBefore)
{
    answers.accepted(kChange, reqId("1"));
    answers.refused(kChange);
    EXPECT_TRUE(answers.pending().empty());
}

TEST_F(PendingAnswersTest, CommandThatAnswersAtOnce_IsNeverPending)
{
    answers.accepted("storagemedia.get.pagefiles", reqId("1"));
    EXPECT_TRUE(answers.pending().empty());
}

TEST_F(PendingAnswersTest, CancelledChange_IsNoLongerPending)
{
    answers.accepted(kChange, reqId("1"));
    answers.accepted("storagemedia.video.searchFiles", reqId("2"));
    answers.accepted("storagemedia.folder.user.cancel", Json::Value());
    EXPECT_EQ(answers.pending().size(), 1U);
    EXPECT_EQ(answers.pending().count(kChange), 0U);
}

} // namespace
} // namespace desktop
