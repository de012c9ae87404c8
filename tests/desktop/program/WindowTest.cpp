#include "tests/desktop/support/Display.h"
#include "tests/desktop/support/Waiting.h"

#include <gtest/gtest.h>

// The window of what plays, on a display that nobody sees.

namespace {

using testsupport::Display;
using testsupport::Picture;
using testsupport::Program;

class WindowTest : public testing::Test {
protected:
    WindowTest() { testsupport::writeFile(stick.path("fields.jpg"), testsupport::fourFieldsJpeg(640, 360, 1)); }

    /// Whether the four fields are on the display, now or soon.
    bool showsFields() const
    {
        return testsupport::becomes([this] {
            const Picture picture = display.picture();
            return picture.colourAt(0.25, 0.25) == "red" && picture.colourAt(0.75, 0.25) == "green" &&
                   picture.colourAt(0.25, 0.75) == "blue" && picture.colourAt(0.75, 0.75) == "white";
        });
    }

    std::vector<std::string> command(const std::vector<std::string>& words) const
    {
        std::vector<std::string> all = {"env", "DISPLAY=" + display.name(), DESKTOP_TV, "--stick", stick.path(), "--cache",
                                        "none"};
        all.insert(all.end(), words.begin(), words.end());
        return all;
    }

    Display display;
    testsupport::TemporaryDirectory stick;
};

TEST_F(WindowTest, Photo_FillsItUntilAKeyEndsIt)
{
    Program program(command({"play", "--silent", "--window", "fields.jpg"}));
    EXPECT_TRUE(showsFields());
    display.press("q");
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.errors(), "");
}

TEST_F(WindowTest, Shell_TellsItsKeysAndTakesItsPicture)
{
    Program program(command({"shell", "--window"}));
    program.send(R"({"command":"storagemedia.media.playfile","request":{"dirpath":")" + stick.path() +
                 R"(","index":0,"type":3,"playall":false}})" + "\n");
    EXPECT_TRUE(showsFields());
    display.press("space");
    EXPECT_TRUE(program.readUntil(
        [&] { return program.output().find(R"({"desktop":"window","key":"SPACE"})") != std::string::npos; }));
    program.send(R"({"desktop":"screen","picture":")" + stick.path("screen.jpg") + "\"}\n");
    EXPECT_TRUE(program.readUntil([&] { return program.output().find("screen.jpg") != std::string::npos; }));
    EXPECT_EQ(testsupport::readJpeg(stick.path("screen.jpg")).colourAt(0.75, 0.25), "green");
    EXPECT_EQ(program.wait(), 0);
}

} // namespace
