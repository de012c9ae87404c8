// Where videos were left, from one run of the program to the next.

#include "tests/desktop/support/DemoStick.h"
#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace {

using testsupport::Shell;

constexpr unsigned int kLeftAt = 8; // seconds, or somewhat later

class ResumeTest : public testing::Test {
protected:
    std::vector<std::string> options() const { return {"--stick", testsupport::demoFile("Films"), "--cache", cache.path()}; }

    /// The request to play the film of the demo stick.
    static Json::Value film(bool resume = false)
    {
        Json::Value request;
        request["dirpath"] = testsupport::demoFile("Films");
        request["index"] = 0;
        request["type"] = 4;
        request["playall"] = false;
        request["resume"] = resume;
        return request;
    }

    static bool send(Shell& shell, const std::string& command, const Json::Value& request)
    {
        shell.send(command, request);
        return shell.reply()["result"].asBool();
    }

    /// Plays the film, four times as fast, up to kLeftAt.
    static void playIntoTheFilm(Shell& shell)
    {
        ASSERT_TRUE(send(shell, "storagemedia.media.playfile", film()));
        ASSERT_FALSE(shell.notification("storagemedia.media.loadsuccess").isNull());
        ASSERT_TRUE(send(shell, "storagemedia.button.fastforward", film()));
        ASSERT_TRUE(send(shell, "storagemedia.button.fastforward", film()));
        ASSERT_FALSE(shell
                         .next([](const Json::Value& line) {
                             return line["notification"] == "storagemedia.media.process" &&
                                    line["body"]["time"].asUInt() >= kLeftAt;
                         })
                         .isNull());
    }

    bool isResumeable() const
    {
        Shell shell(options());
        shell.send("storagemedia.video.resumeable", film());
        const bool resumeable = shell.reply()["reply"]["resume"].asBool();
        EXPECT_EQ(shell.program.wait(), 0);
        return resumeable;
    }

    testsupport::TemporaryDirectory cache;
};

TEST_F(ResumeTest, FilmThatWasStopped_GoesOnThereInTheNextProgram)
{
    {
        Shell shell(options());
        playIntoTheFilm(shell);
        EXPECT_TRUE(send(shell, "storagemedia.media.stopfile", film()));
        EXPECT_EQ(shell.program.wait(), 0);
    }
    EXPECT_TRUE(isResumeable());
    Shell shell(options());
    EXPECT_TRUE(send(shell, "storagemedia.media.playfile", film(true)));
    EXPECT_GE(shell.notification("storagemedia.media.process")["body"]["time"].asUInt(), kLeftAt);
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST_F(ResumeTest, ProgramThatEndsWhileTheFilmPlays_HasRememberedWhere)
{
    {
        Shell shell(options());
        playIntoTheFilm(shell);
        EXPECT_EQ(shell.program.wait(), 0);
    }
    EXPECT_TRUE(isResumeable());
}

TEST_F(ResumeTest, PositionsThatWereCleared_AreGone)
{
    {
        Shell shell(options());
        playIntoTheFilm(shell);
        EXPECT_TRUE(send(shell, "storagemedia.media.stopfile", film()));
        shell.send("storagemedia.video.resumeable", film());
        EXPECT_EQ(shell.reply()["reply"]["resume"], true);
        EXPECT_TRUE(send(shell, "storagemedia.video.clear.resume", Json::Value(Json::objectValue)));
        EXPECT_EQ(shell.program.wait(), 0);
    }
    EXPECT_FALSE(isResumeable());
}

TEST_F(ResumeTest, ClearedMediaMap_LeavesThePositions)
{
    {
        Shell shell(options());
        playIntoTheFilm(shell);
        Json::Value folder;
        folder["dirpath"] = testsupport::demoFile("Films");
        EXPECT_TRUE(send(shell, "storagemedia.media.stopfile", film()));
        EXPECT_TRUE(send(shell, "storagemedia.clear.mediamap", folder));
        EXPECT_EQ(shell.program.wait(), 0);
    }
    EXPECT_TRUE(isResumeable());
}

} // namespace
