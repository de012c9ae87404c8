#include "desktop/base/Log.h"

#include "platform/SocMwLog.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

class SocMwLogTest : public testing::Test {
protected:
    ~SocMwLogTest() override { setLogLevel(LogLevel::Warning); }

    static std::string printed(int level)
    {
        testing::internal::CaptureStdout();
        SocMwLogPrintEx("TAG", level, const_cast<char*>("%s and %d"), "text", 5);
        return testing::internal::GetCapturedStdout();
    }
};

TEST_F(SocMwLogTest, AtFirst_WarningsAndErrorsAreShown)
{
    EXPECT_EQ(SocMwLogLevelGet(), 2);
    EXPECT_EQ(printed(1), "");
    EXPECT_EQ(printed(2), "[TAG] text and 5\r\n");
    EXPECT_EQ(printed(3), "[TAG] text and 5\r\n");
}

TEST_F(SocMwLogTest, LevelSet_DecidesWhatIsShown)
{
    setLogLevel(LogLevel::Debug);
    EXPECT_EQ(SocMwLogLevelGet(), 0);
    EXPECT_NE(printed(0), "");
    setLogLevel(LogLevel::Off);
    EXPECT_EQ(SocMwLogLevelGet(), 4);
    EXPECT_EQ(printed(3), "");
}

TEST_F(SocMwLogTest, OwnLine_IsPrintedAsItIs)
{
    testing::internal::CaptureStdout();
    logLine(LogLevel::Warning, "100% of %s");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "[DESKTOP] 100% of %s\r\n");
}

} // namespace
} // namespace desktop
