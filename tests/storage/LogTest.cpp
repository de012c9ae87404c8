#include "storage/Log.h"

#include "support/Scenario.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <optional>

namespace {

void logAllLevels()
{
    LOG_DBG("debug %d", 1);
    LOG_INFO("info %s", "two");
    LOG_WAR("warning");
    LOG_ERR("error %c", 'x');
}

/// What one line of each level prints at @p level.
std::string linesAt(int level)
{
    FakePlatform platform;
    platform.logLevel = level;
    logAllLevels();
    return normalised(platform.takeJournal());
}

const std::string kDebug = "[DBG][logAllLevels]debug 1\r\n";
const std::string kInfo = "[INFO][logAllLevels]info two\r\n";
const std::string kWarning = "[WAR][logAllLevels]warning\r\n";
const std::string kError = "[ERR][logAllLevels]error x\r\n";

TEST(Log, EachLevel_PrintsWhatStandsAboveIt)
{
    EXPECT_EQ(linesAt(-1), kDebug + kInfo + kWarning + kError);
    EXPECT_EQ(linesAt(0), kDebug + kInfo + kWarning + kError);
    EXPECT_EQ(linesAt(1), kInfo + kWarning + kError);
    EXPECT_EQ(linesAt(2), kWarning + kError);
    EXPECT_EQ(linesAt(3), kError);
    EXPECT_EQ(linesAt(4), "");
}

TEST(Log, LevelThatChangesBetweenLines_IsReadBeforeEachLine)
{
    FakePlatform platform;
    platform.logLevels = {1, 1, 3, 3};
    logAllLevels();
    EXPECT_EQ(normalised(platform.takeJournal()), kInfo + kError);
    EXPECT_TRUE(platform.logLevels.empty()) << "one level for each line";
}

TEST(Log, EveryLine_StoresTheLevelForThePlatform)
{
    FakePlatform platform;
    platform.logLevels = {4, 2, 7};
    LOG_DBG("suppressed");
    EXPECT_EQ(gSocMwStorageLogLevel, 4);
    LOG_WAR("printed");
    EXPECT_EQ(gSocMwStorageLogLevel, 2);
    LOG_ERR("suppressed");
    EXPECT_EQ(gSocMwStorageLogLevel, 7);
}

TEST(Log, Prefix_IsTimeModuleLevelFunctionAndLine)
{
    FakePlatform platform;
    platform.logLevel = 0;
    const std::time_t before = std::time(nullptr);
    const int line = __LINE__ + 1;
    LOG_WAR("text");
    const std::time_t after = std::time(nullptr);
    const std::string printedLine = platform.takeJournal();

    char time[26] = {};
    std::string possible[2];
    possible[0] = std::string(ctime_r(&before, time)).substr(0, 24);
    possible[1] = std::string(ctime_r(&after, time)).substr(0, 24);
    const std::string rest = "][DAEMON-STORAGEMEDIAMGR][WAR][TestBody-" + std::to_string(line) + "]text\r\n";
    EXPECT_TRUE(printedLine == "[" + possible[0] + rest || printedLine == "[" + possible[1] + rest) << printedLine;
}

/// Another time zone while it lives.
class TimeZone {
public:
    explicit TimeZone(const char* zone)
    {
        const char* before = std::getenv("TZ");
        m_before = before != nullptr ? std::optional<std::string>(before) : std::nullopt;
        setenv("TZ", zone, 1);
        tzset();
    }
    ~TimeZone()
    {
        m_before.has_value() ? setenv("TZ", m_before->c_str(), 1) : unsetenv("TZ");
        tzset();
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

private:
    std::optional<std::string> m_before;
};

TEST(Log, Time_IsTheLocalOne)
{
    const TimeZone zone("EAST-9:30"); // nine and a half hours ahead
    FakePlatform platform;
    platform.logLevel = 0;
    const auto inZone = [](std::time_t time) {
        const std::time_t shifted = time + 9 * 3600 + 30 * 60;
        char text[26] = {};
        return std::string(asctime_r(gmtime(&shifted), text)).substr(0, 24);
    };
    const std::string before = inZone(std::time(nullptr));
    LOG_ERR("text");
    const std::string after = inZone(std::time(nullptr));
    const std::string time = platform.takeJournal().substr(1, 24);
    EXPECT_TRUE(time == before || time == after) << time;
}

TEST(Log, MessageThatEndsALine_GetsItsOwnLineEndToo)
{
    FakePlatform platform;
    platform.logLevel = 0;
    LOG_ERR("text\r\n");
    EXPECT_EQ(normalised(platform.takeJournal()), "[ERR][TestBody]text\r\n\r\n");
}

TEST(Log, TextFromOutside_IsNeverAFormat)
{
    FakePlatform platform;
    platform.logLevel = 0;
    LOG_ERR("%s", "%s%n%d");
    EXPECT_EQ(normalised(platform.takeJournal()), "[ERR][TestBody]%s%n%d\r\n");
}

TEST(Log, SuppressedLine_DoesNotEvaluateItsArguments)
{
    FakePlatform platform;
    platform.logLevel = 1;
    int evaluated = 0;
    LOG_DBG("%d", ++evaluated);
    EXPECT_EQ(evaluated, 0);
    platform.logLevel = 0;
    LOG_DBG("%d", ++evaluated);
    EXPECT_EQ(evaluated, 1);
}

} // namespace
