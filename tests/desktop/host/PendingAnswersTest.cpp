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

    void request(const std::string& command, const std::string& id)
    {
        answers.begin(command, reqId(id));
        answers.succeeded();
    }

    const Interrupts interrupts;
    PendingAnswers answers;
};

TEST_F(PendingAnswersTest, RequestAnswered_IsNoLongerPending)
{
    request(kChange, "1");
    EXPECT_EQ(answers.pending().at(kChange), "1");
    answers.notified("storagemedia.usb.mount", Json::Value());
    answers.notified(kChanged, reqId("0"));
    EXPECT_EQ(answers.pending().size(), 1U);
    answers.notified(kChanged, reqId("1"));
    EXPECT_EQ(answers.wait(interrupts, 0), PendingAnswers::Wait::Answered);
}

TEST_F(PendingAnswersTest, AnswerBeforeTheCommandReturns_Counts)
{
    answers.begin(kChange, reqId("1"));
    answers.notified(kChanged, reqId("1"));
    answers.succeeded();
    EXPECT_TRUE(answers.pending().empty());
}

TEST_F(PendingAnswersTest, NewerRequest_TakesTheOldersPlace)
{
    request(kChange, "1");
    request(kChange, "2");
    EXPECT_EQ(answers.pending().at(kChange), "2");
}

TEST_F(PendingAnswersTest, RefusedRequest_IsNotPendingNorIsTheOneBefore)
{
    request(kChange, "1");
    answers.begin(kChange, reqId("2"));
    answers.refused();
    EXPECT_TRUE(answers.pending().empty());
}

TEST_F(PendingAnswersTest, RequestThatCouldNotBeRead_LeavesTheOneBefore)
{
    request(kChange, "1");
    answers.begin(kChange, Json::Value());
    EXPECT_EQ(answers.pending().at(kChange), "1");
}

TEST_F(PendingAnswersTest, CommandThatAnswersAtOnce_IsNeverPending)
{
    request("storagemedia.get.pagefiles", "1");
    EXPECT_TRUE(answers.pending().empty());
}

TEST_F(PendingAnswersTest, NoSignOfLife_TimesOut)
{
    request(kChange, "1");
    EXPECT_EQ(answers.wait(interrupts, 0), PendingAnswers::Wait::TimedOut);
    answers.forget(kChange);
    EXPECT_EQ(answers.wait(interrupts, 0), PendingAnswers::Wait::Answered);
}

} // namespace
} // namespace desktop
