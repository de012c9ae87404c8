#include "tests/desktop/support/Jpeg.h"
#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>

// What the shell is told for the desktop itself.

namespace {

namespace fs = std::filesystem;
using testsupport::Shell;

class DesktopLinesTest : public testing::Test {
protected:
    Json::Value answerTo(const std::string& line)
    {
        shell.sendLine(line);
        return shell.next([](const Json::Value& answer) { return answer.isMember("desktop") || answer.isMember("error"); });
    }

    std::string screenLine(const std::string& file, const std::string& more = "") const
    {
        return R"({"desktop":"screen","picture":")" + file + "\"" + more + "}";
    }

    testsupport::TemporaryDirectory stick;
    testsupport::TemporaryDirectory folder;
    Shell shell{{"--stick", stick.path()}};
};

TEST_F(DesktopLinesTest, KeysOfTheSet_BecomeTheirNotifications)
{
    EXPECT_EQ(answerTo(R"({"desktop":"key","name":"usb-source"})")["name"], "usb-source");
    EXPECT_TRUE(shell.notification("storagemedia.set.usb.source")["body"].isNull());
    EXPECT_EQ(answerTo(R"({"desktop":"key","name":"super-demo"})")["name"], "super-demo");
    EXPECT_EQ(shell.notification("storagemedia.fastboot.superdemo")["source"], "storagemedia");
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST_F(DesktopLinesTest, Mistakes_AreToldWithWhatMayBeMeant)
{
    struct Row {
        const char* line;
        const char* error;
    };
    const Row kRows[] = {
        {R"({"desktop":"teapot"})", R"(For the desktop itself there are "screen" and "key".)"},
        {R"({"desktop":7})", R"(For the desktop itself there are "screen" and "key".)"},
        {R"({"desktop":"key"})", R"("name" is missing or no string.)"},
        {R"({"desktop":"key","name":"usb-sorce"})", R"(Unknown key "usb-sorce"; did you mean "usb-source"?)"},
        {R"({"desktop":"key","name":"teapot"})", R"(Unknown key "teapot"; there are "super-demo" and "usb-source".)"},
        {R"({"desktop":"key","nam":"usb-source"})", R"(Unknown member "nam"; did you mean "name"?)"},
        {R"({"desktop":"screen","off":1})", R"("off" is neither true nor false.)"},
        {R"({"desktop":"screen","teapot":1})", R"(Unknown member "teapot".)"},
        {R"({"desktop":"screen","picture":""})", R"("picture" is no file name.)"},
        {R"({"desktop":"screen","picture":"a\u0000b.jpg"})", R"("picture" is no file name.)"},
        {R"({"desktop":"screen","picture":"a.jpg","off":true})", R"(Unknown member "off".)"},
        {R"({"desktop":"screen","picture":"a.jpg","width":15})", R"("width" is no number from 16 to 3840.)"},
        {R"({"desktop":"screen","picture":"a.jpg","width":"16"})", R"("width" is no number from 16 to 3840.)"},
        {R"({"desktop":"screen","picture":"a.jpg","height":2161})", R"("height" is no number from 16 to 2160.)"}};
    for (const Row& row : kRows) {
        EXPECT_EQ(answerTo(row.line)["error"].asString(), row.error) << row.line;
    }
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST_F(DesktopLinesTest, ScreenThatShowsNothing_IsABlackPicture)
{
    const std::string file = folder.path("screen.jpg");
    const Json::Value answer = answerTo(screenLine(file));
    EXPECT_EQ(answer["picture"], file);
    EXPECT_EQ(answer["width"], 1280);
    EXPECT_EQ(answer["height"], 720);
    EXPECT_EQ(answer["off"], false);
    const testsupport::Picture picture = testsupport::readJpeg(file);
    EXPECT_EQ(picture.width, 1280);
    EXPECT_EQ(picture.height, 720);
    EXPECT_EQ(picture.rgb, std::vector<unsigned char>(1280 * 720 * 3));
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST_F(DesktopLinesTest, PictureOfAnotherSize_TakesThePlaceOfTheOneBefore)
{
    const std::string file = folder.path("screen.jpg");
    answerTo(screenLine(file));
    answerTo(R"({"desktop":"screen","off":true})");
    const Json::Value answer = answerTo(screenLine(file, R"(,"width":320,"height":180)"));
    EXPECT_EQ(answer["off"], true);
    EXPECT_EQ(testsupport::readJpeg(file).width, 320);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 1);
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST_F(DesktopLinesTest, PictureThatCannotBeWritten_IsAnErrorAndLeavesNothing)
{
    folder.makeDirectory("taken.jpg");
    ASSERT_EQ(mkfifo(folder.path("pipe.jpg").c_str(), 0600), 0);
    for (const auto& [file, reason] : {std::pair{folder.path("taken.jpg"), "Is a directory"},
                                       {folder.path("nowhere/a.jpg"), "No such file or directory"},
                                       {folder.path("pipe.jpg"), "File exists"},
                                       {folder.path("pipe.jpg/a.jpg"), "Not a directory"}}) {
        EXPECT_EQ(answerTo(screenLine(file))["error"].asString(), file + ": " + reason);
    }
    EXPECT_TRUE(fs::is_fifo(folder.path("pipe.jpg")));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 2);
    EXPECT_EQ(shell.program.wait(), 0);
}

} // namespace
