#include "desktop/cli/TextColumns.h"
#include "desktop/cli/EntryTable.h"
#include "desktop/cli/ProgressLine.h"

#include "platform/SocMwTypes.h"

#include <gtest/gtest.h>

#include <clocale>

namespace desktop {
namespace {

class TextColumnsTest : public testing::Test {
protected:
    TextColumnsTest() { std::setlocale(LC_CTYPE, "C.UTF-8"); }
};

TEST_F(TextColumnsTest, WideCharacters_TakeTwoColumnsAndMarksNone)
{
    EXPECT_EQ(displayWidth("plain"), 5U);
    EXPECT_EQ(displayWidth("电影"), 4U);
    EXPECT_EQ(displayWidth("🎂"), 2U);
    EXPECT_EQ(displayWidth("e\xCC\x81"), 1U); // e and a combining accent
    EXPECT_EQ(padRight("电影", 6), "电影  ");
    EXPECT_EQ(padLeft("电影", 6), "  电影");
    EXPECT_EQ(padRight("longer", 3), "longer");
}

TEST_F(TextColumnsTest, Truncated_NeverSplitsACharacter)
{
    EXPECT_EQ(truncated("电影院", 5), "电影");
    EXPECT_EQ(truncated("abc", 5), "abc");
    EXPECT_EQ(truncated("abc", 0), "");
}

TEST_F(TextColumnsTest, CharactersThatUpsetATerminal_AreMadeVisible)
{
    EXPECT_EQ(visibleText("a\x1b[31m\nb"), "a<U+001B>[31m<U+000A>b");
    EXPECT_EQ(visibleText("\x7f\xC2\x9B"), "<U+007F><U+009B>");
    EXPECT_EQ(visibleText("gpj.\xE2\x80\xAE\x65xe"), "gpj.<U+202E>exe");
    EXPECT_EQ(visibleText("caf\xE9 电影 موسيقى"), "caf\\xE9 电影 موسيقى");
}

Json::Value entry(int type, Json::UInt64 size, const std::string& name)
{
    Json::Value value;
    value["type"] = type;
    value["size"] = size;
    value["ctime"] = "2024-12-31 12:00:00";
    value["name"] = name;
    return value;
}

TEST_F(TextColumnsTest, EntryLine_ShowsTypeSizeTimeAndName)
{
    EXPECT_EQ(entryLine(entry(FILE_TYPE_VIDEO, 1536, "电影.mkv"), false),
              "video        1.5 KB  2024-12-31 12:00:00  电影.mkv\n");
    EXPECT_EQ(entryLine(entry(FILE_TYPE_FOLDER, 0, "a\tb"), false),
              "folder            -  2024-12-31 12:00:00  a<U+0009>b\n");
    EXPECT_EQ(entryLine(entry(FILE_TYPE_UNKNOWN, 0, "pipe"), false), "closed            -  2024-12-31 12:00:00  pipe\n");
    EXPECT_EQ(entryHeading(false), "TYPE           SIZE  TIME                 NAME\n");
}

TEST_F(TextColumnsTest, EntryLineColoured_HasTheColoursAroundTheName)
{
    const std::string line = entryLine(entry(FILE_TYPE_MUSIC, 1, "a.mp3"), true);
    EXPECT_NE(line.find("\x1b[32ma.mp3\x1b[0m\n"), std::string::npos) << line;
}

TEST_F(TextColumnsTest, Totals_CountFoldersFilesAndBytes)
{
    EntryTotals totals;
    totals.add(entry(FILE_TYPE_FOLDER, 0, "a"));
    totals.add(entry(FILE_TYPE_MUSIC, 1024, "b"));
    totals.add(entry(FILE_TYPE_UNKNOWN, 0, "c"));
    EXPECT_EQ(totals.text(), "1 folder, 2 files, 1.0 KB");
}

TEST(TextColumns, Duration_HasHoursWhenItNeedsThem)
{
    EXPECT_EQ(humanDuration(0), "-");
    EXPECT_EQ(humanDuration(5), "0:05");
    EXPECT_EQ(humanDuration(3599), "59:59");
    EXPECT_EQ(humanDuration(3600 + 2 * 60 + 3), "1:02:03");
}

TEST(ProgressBar, Text_FillsWithWhatIsDone)
{
    EXPECT_EQ(progressBar(0, 100), "[                              ] 0 of 100");
    EXPECT_EQ(progressBar(50, 100), "[###############               ] 50 of 100");
    EXPECT_EQ(progressBar(100, 100), "[##############################] 100 of 100");
    EXPECT_EQ(progressBar(0, 0), "[##############################] 0 of 0");
}

} // namespace
} // namespace desktop
