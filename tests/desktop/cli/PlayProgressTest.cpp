#include "desktop/cli/PlayProgress.h"

#include <gtest/gtest.h>

#include <sstream>

namespace desktop {
namespace {

class PlayProgressTest : public testing::Test {
protected:
    PlayProgressTest()
    {
        target.kind = FILE_TYPE_VIDEO;
        target.indices = {1, 4, 7};
    }

    void take(const std::string& name, const std::string& body)
    {
        Notification notification{"storagemedia", "storagemedia." + name, {}};
        std::istringstream(body) >> notification.body;
        progress.take(notification);
    }

    void load()
    {
        take("media.loadsuccess", R"({"type":4,"index":4,"path":"/stick/a film.mp4","title":"A film","duration":125})");
    }

    PlayTarget target;
    PlayProgress progress{target};
};

TEST_F(PlayProgressTest, BeforeAnythingHasLoaded_NothingPlays)
{
    EXPECT_FALSE(progress.isLoaded());
    take("media.loadfailed", R"({"type":4,"index":1,"path":"/stick/x","reason":"It is empty"})");
    EXPECT_FALSE(progress.isLoaded());
}

TEST_F(PlayProgressTest, Line_HasTitleStateTimeAndPlace)
{
    load();
    EXPECT_TRUE(progress.isLoaded());
    EXPECT_EQ(progress.path(), "/stick/a film.mp4");
    EXPECT_EQ(progress.line(true), "A film  playing  0:00 / 2:05  2 of 3");
    take("media.process", R"({"time":64})");
    take("media.curplayspeed", R"({"speed":0,"hdrvideo":false})");
    EXPECT_EQ(progress.line(true), "A film  paused  1:04 / 2:05  2 of 3");
    take("media.curplayspeed", R"({"speed":-2,"hdrvideo":false})");
    EXPECT_EQ(progress.speed(), -2);
    EXPECT_EQ(progress.line(true), "A film  x-2  1:04 / 2:05  2 of 3");
}

TEST_F(PlayProgressTest, Subtitle_IsShownOnOneLineUntilItGoes)
{
    load();
    take("media.titleinfo", R"({"type":0,"strtitle":"Good\nmorning"})");
    EXPECT_EQ(progress.line(true), "A film  playing  0:00 / 2:05  2 of 3  Good / morning");
    take("media.titleinfo", R"({"type":1,"pictitle":"iVBOR","width":10,"height":10})");
    EXPECT_EQ(progress.line(true), "A film  playing  0:00 / 2:05  2 of 3  [picture]");
    EXPECT_EQ(progress.line(false), "A film  playing  0:00 / 2:05  2 of 3");
    take("media.titleinfo", R"({"type":0,"strtitle":""})");
    EXPECT_EQ(progress.line(true), "A film  playing  0:00 / 2:05  2 of 3");
}

TEST_F(PlayProgressTest, NextMedium_BeginsAnew)
{
    load();
    take("media.process", R"({"time":64})");
    take("media.titleinfo", R"({"type":0,"strtitle":"Good morning"})");
    take("media.curplayspeed", R"({"speed":4,"hdrvideo":false})");
    take("media.loadsuccess", R"({"type":4,"index":7,"path":"/stick/b.mp4","title":"b","duration":0})");
    EXPECT_EQ(progress.line(true), "b  playing  0:00 / ?  3 of 3");
}

TEST_F(PlayProgressTest, Music_IsShownWithWhoPlaysIt)
{
    load();
    take("media.infoupdate",
         R"({"title":"First","path":"/stick/a film.mp4","artist":"The Sines","album":"","duration":5,"index":4})");
    EXPECT_EQ(progress.line(true), "The Sines - First  playing  0:00 / 0:05  2 of 3");
}

TEST_F(PlayProgressTest, Photo_HasNoTime)
{
    target.kind = FILE_TYPE_PHOTO;
    take("media.photo.loadsuccess", R"({"type":3,"index":1,"path":"/stick/a.jpg","title":"a","duration":0})");
    EXPECT_EQ(progress.line(true), "a  playing  1 of 3");
    EXPECT_EQ(progress.report(), "1 of 3: /stick/a.jpg\n");
}

TEST_F(PlayProgressTest, TextsOfTheStick_AreMadeSafeAndCut)
{
    load();
    take("media.infoupdate", R"({"title":"\u001b[2J","artist":"","duration":125})");
    take("media.titleinfo", R"({"type":0,"strtitle":"\u001b[2J"})");
    EXPECT_EQ(progress.line(true), "<U+001B>[2J  playing  0:00 / 2:05  2 of 3  <U+001B>[2J");
    take("media.infoupdate", R"({"title":")" + std::string(200, 'x') + R"(","artist":"","duration":125})");
    EXPECT_EQ(progress.line(true).find("  playing"), 40U);
    EXPECT_EQ(progress.report(), "2 of 3: /stick/a film.mp4 (2:05)\n");
}

} // namespace
} // namespace desktop
