#include "tests/desktop/support/Display.h"
#include "tests/desktop/support/Films.h"
#include "tests/desktop/support/Playing.h"

#include <gtest/gtest.h>

// Players with a window on the computer's display.

namespace desktop {
namespace {

using testsupport::Display;
using testsupport::Films;
using testsupport::Picture;
using testsupport::Playing;

PlayerSettings withWindow()
{
    PlayerSettings settings;
    settings.program = MEDIA_PLAYER;
    settings.output.window = true;
    return settings;
}

class PlayerWindow : public testing::Test {
protected:
    PlayerWindow() { setenv("DISPLAY", display.name().c_str(), 1); }
    ~PlayerWindow() override { unsetenv("DISPLAY"); }

    /// A video of four fields that waits, and is shown.
    void showFilm(Playing& playing) const
    {
        PlayerMedium medium = Playing::medium(films.video("film.mp4", 5), FILE_TYPE_VIDEO);
        medium.paused = true;
        ASSERT_TRUE(playing.load(std::move(medium)));
    }
    // The window stands in the display's middle and is three quarters as large.
    static std::string colourInWindow(const Picture& picture, double x, double y)
    {
        return picture.colourAt(0.125 + 0.75 * x, 0.125 + 0.75 * y);
    }

    Display display;
    Films films;
};

TEST_F(PlayerWindow, Video_IsShownThere)
{
    Playing playing(withWindow());
    showFilm(playing);
    EXPECT_TRUE(testsupport::becomes([this] {
        const Picture picture = display.picture();
        return colourInWindow(picture, 0.25, 0.25) == "red" && colourInWindow(picture, 0.75, 0.25) == "green" &&
               colourInWindow(picture, 0.25, 0.75) == "blue" && colourInWindow(picture, 0.75, 0.75) == "white";
    }));
    const Picture frame = playing.frame();
    ASSERT_EQ(frame.width, 320);
    EXPECT_EQ(frame.colourAt(0.25, 0.25), "red");
    EXPECT_EQ(frame.colourAt(0.75, 0.75), "white");
}

TEST_F(PlayerWindow, Photo_IsMadeToFit)
{
    Playing playing(withWindow());
    ASSERT_TRUE(playing.load(films.write("photo.jpg", testsupport::fourFieldsJpeg(3200, 1800, 1)), FILE_TYPE_PHOTO));
    EXPECT_TRUE(testsupport::becomes([this] {
        const Picture picture = display.picture();
        return colourInWindow(picture, 0.02, 0.02) == "red" && colourInWindow(picture, 0.98, 0.98) == "white";
    }));
}

TEST_F(PlayerWindow, Keys_AreTold)
{
    Playing playing(withWindow());
    showFilm(playing);
    for (const char* const key : {"space", "Left", "Up", "bracketleft", "bracketright", "comma", "period", "j", "numbersign",
                                  "less", "greater", "shift+r", "q", "Escape"}) {
        display.press(key);
    }
    EXPECT_TRUE(playing.wait<PlayerKey>([](const PlayerKey& key) { return key.name == "ESC"; }));
    std::string keys;
    for (const PlayerKey& key : playing.all<PlayerKey>()) {
        keys += key.name + ' ';
    }
    EXPECT_EQ(keys, "SPACE LEFT UP [ ] , . j # < > R q ESC ");
    EXPECT_TRUE(playing.all<PlayerEnded>().empty()) << "none of them does anything by itself";
    EXPECT_TRUE(playing.frame().width > 0);
}

TEST(PlayerWithoutDisplay, Video_FailsToLoad)
{
    unsetenv("DISPLAY");
    const Films films;
    Playing playing(withWindow());
    EXPECT_FALSE(playing.load(films.video("film.mp4", 1), FILE_TYPE_VIDEO));
    const auto end = playing.end();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->reason, PlayerEnded::Reason::LoadFailed);
    EXPECT_EQ(end->text, "There is no display to show it on.");
}

} // namespace
} // namespace desktop
