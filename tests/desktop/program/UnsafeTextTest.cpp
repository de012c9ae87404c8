// Names and texts that would do something to a terminal.

#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;
using testing::Not;
using testsupport::Program;

constexpr const char* kTitle = "\x1b]0;title\x07"; // sets the title of a terminal's window
constexpr const char* kShownTitle = "<U+001B>]0;title<U+0007>";
constexpr const char* kTurn = "\xE2\x80\xAE"; // turns the direction of writing

class UnsafeTextTest : public testing::Test {
protected:
    UnsafeTextTest()
    {
        stick.makeFile(std::string(kTitle) + ".mp4");
        stick.makeFile(std::string("gpj") + kTurn + ".mp4");
    }

    std::vector<std::string> command(const std::vector<std::string>& words) const
    {
        std::vector<std::string> all = {DESKTOP_TV, "--stick", stick.path(), "--cache", "none"};
        all.insert(all.end(), words.begin(), words.end());
        return all;
    }

    testsupport::TemporaryDirectory stick;
};

TEST_F(UnsafeTextTest, LogOnATerminal_IsMadeSafe)
{
    Program program({"script", "-qec",
                     DESKTOP_TV " --stick " + stick.path() + " --cache none --log-level warning thumbnails", "/dev/null"});
    EXPECT_EQ(program.wait(), 0);
    EXPECT_THAT(program.output(), HasSubstr("[DESKTOP] no thumbnail of " + stick.path(kShownTitle) + ".mp4: "));
    EXPECT_THAT(program.output(), Not(HasSubstr("\x07")));
    EXPECT_THAT(program.output(), Not(HasSubstr(kTurn)));
}

TEST_F(UnsafeTextTest, LogInAPipe_IsAsThePluginPrintedIt)
{
    Program program(command({"--log-level", "warning", "thumbnails"}));
    EXPECT_EQ(program.wait(), 0);
    EXPECT_THAT(program.errors(), HasSubstr("[DESKTOP] no thumbnail of " + stick.path(kTitle) + ".mp4: "));
}

TEST_F(UnsafeTextTest, Lists_AreMadeSafe)
{
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"browse"}, {"search"}, {"search", "--json"}, {"thumbnails", "--json"}}) {
        Program program(command(words));
        EXPECT_EQ(program.wait(), 0);
        EXPECT_THAT(program.output(), HasSubstr("title"));
        EXPECT_THAT(program.output(), Not(HasSubstr("\x07"))) << words[0];
        EXPECT_THAT(program.output(), Not(HasSubstr(kTurn))) << words[0];
    }
}

TEST_F(UnsafeTextTest, Errors_AreMadeSafe)
{
    Program program(command({"browse", kTitle}));
    EXPECT_EQ(program.wait(), 1);
    EXPECT_EQ(program.errors(), "desktop-tv: " + stick.path(kShownTitle) + ": No such file or directory\n");
    const std::string plugin = std::string("/nowhere/") + kTitle;
    Program missing({DESKTOP_TV, "--plugin", plugin, "shell"});
    EXPECT_EQ(missing.wait(), 1);
    EXPECT_THAT(missing.errors(), HasSubstr("/nowhere/" + std::string(kShownTitle) + ": "));
}

} // namespace
