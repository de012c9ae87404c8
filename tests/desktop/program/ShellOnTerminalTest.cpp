// The shell with a person at it.

#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

namespace {

using testing::HasSubstr;
using testing::Not;
using testsupport::Ends;
using testsupport::Program;

constexpr const char* kPrompt = "desktop-tv> ";

class ShellOnTerminalTest : public testing::Test {
protected:
    ShellOnTerminalTest()
    {
        folder.makeDirectory("stick");
        EXPECT_TRUE(shows("storagemedia.usb.mount"));
        EXPECT_TRUE(shows(kPrompt));
    }

    /// Whether @p text comes to the terminal, after what has been looked for before.
    bool shows(const std::string& text)
    {
        const bool found = program.readUntil([&] { return program.output().find(text, m_seen) != std::string::npos; });
        m_seen = found ? program.output().find(text, m_seen) + text.size() : m_seen;
        return found;
    }

    void type(const std::string& keys) { program.send(keys); }

    /// Ends the input where the next line would be typed; the exit status.
    int endOfShell()
    {
        EXPECT_TRUE(shows(kPrompt));
        return program.wait();
    }

    testsupport::TemporaryDirectory folder;
    Program program{{DESKTOP_TV, "--stick", folder.path("stick"), "--cache", "none", "--log-level", "warning", "shell"},
                    Ends::Terminal};

private:
    std::size_t m_seen = 0;
};

TEST_F(ShellOnTerminalTest, NameOfACommand_RunsIt)
{
    type("storagemedia.check.usb.device\n");
    EXPECT_TRUE(shows("{\"command\":\"storagemedia.check.usb.device\",\"reply\":{\"plugin\":"));
    EXPECT_TRUE(shows(kPrompt));
    type("{\"command\":\"storagemedia.set.itemperpage\",\"request\":{\"number\":5}}\n");
    EXPECT_TRUE(shows("\"result\":true}"));
    EXPECT_EQ(endOfShell(), 0);
}

TEST_F(ShellOnTerminalTest, Help_ExplainsTheCommands)
{
    type("help\n");
    EXPECT_TRUE(shows("storagemedia.video.clear.resume"));
    type("help storagemedia.photo.sort\n");
    EXPECT_TRUE(shows("\"order\": integer, required; zero or not zero"));
    type("help storagemedia.media.stopfile\n");
    EXPECT_TRUE(shows("On the desktop: Fails when nothing of that type plays."));
    type("help nonsense\n");
    EXPECT_TRUE(shows("Unknown command \\\"nonsense\\\"; help lists them."));
    type("storagemedia.chek.usb.device\n");
    EXPECT_TRUE(shows("did you mean \\\"storagemedia.check.usb.device\\\"?"));
    type("storagemedia.set.itemperpage 5\n");
    EXPECT_TRUE(shows("A request is typed as"));
    EXPECT_EQ(endOfShell(), 0);
}

TEST_F(ShellOnTerminalTest, LineThatIsTyped_CanBeEditedAndCalledBack)
{
    type("storagemedia.check.usb.devicex\x7f\n"); // the last letter is deleted
    EXPECT_TRUE(shows("\"result\":true}"));
    EXPECT_TRUE(shows(kPrompt));
    type("\x1b[A\n"); // the key with the arrow that points up
    EXPECT_TRUE(shows("storagemedia.check.usb.device"));
    EXPECT_TRUE(shows("\"result\":true}"));
    EXPECT_EQ(endOfShell(), 0);
}

TEST_F(ShellOnTerminalTest, TabulatorKey_CompletesNamesAndKeys)
{
    type("storagemedia.ch\t\n");
    EXPECT_TRUE(shows("{\"command\":\"storagemedia.check.usb.device\""));
    EXPECT_TRUE(shows(kPrompt));
    type("{\"c\t\"storagemedia.set.i\t,\"request\":{\"n\t5}}\n");
    EXPECT_TRUE(shows("{\"command\":\"storagemedia.set.itemperpage\",\"reply\":{},\"result\":true}"));
    EXPECT_TRUE(shows(kPrompt));
    type("storagemedia.photo.\t");
    EXPECT_TRUE(shows("storagemedia.photo.sort\r\nstoragemedia.photo.rotate\r\n"));
    EXPECT_TRUE(shows("storagemedia.photo."));
    type("\x15"); // the line is deleted
    EXPECT_EQ(program.wait(), 0);
}

TEST_F(ShellOnTerminalTest, WhatComesWhileALineIsTyped_StandsAboveIt)
{
    type("storagemedia.check.");
    EXPECT_TRUE(shows("storagemedia.check."));
    std::filesystem::rename(folder.path("stick"), folder.path("away"));
    EXPECT_TRUE(shows("\r\x1b[J{\"body\":")); // where the line was
    EXPECT_TRUE(shows("storagemedia.usb.unmount"));
    EXPECT_TRUE(shows("\"storagemedia.usb.mount\",\"source\":\"storagemedia\"}\r\n"));
    EXPECT_TRUE(shows("storagemedia.check.")); // again
    type("usb.device\n");
    EXPECT_TRUE(shows("{\"command\":\"storagemedia.check.usb.device\""));
    EXPECT_EQ(endOfShell(), 0);
}

TEST_F(ShellOnTerminalTest, Log_IsMadeSafe)
{
    type("{\"command\":\"storagemedia.media.getinfo\",\"request\":{\"dirpath\":\"/\\u001b]0;x\"}}\n");
    EXPECT_TRUE(shows("cannot read /<U+001B>]0;x: Not on a stick")); // before the reply or after it
    EXPECT_EQ(endOfShell(), 0);
    EXPECT_THAT(program.output(), Not(HasSubstr("\x1b]0;x")));
}

TEST_F(ShellOnTerminalTest, LineOfBlanks_IsSkipped)
{
    type(" \x16\x0b\x16\x0c\n"); // a vertical tab and a form feed, quoted
    EXPECT_TRUE(shows(kPrompt));
    type("storagemedia.check.usb.device\n");
    EXPECT_TRUE(shows("\"result\":true}"));
    EXPECT_EQ(endOfShell(), 0);
    EXPECT_THAT(program.output(), Not(HasSubstr("\"error\"")));
}

TEST_F(ShellOnTerminalTest, CtrlC_EndsIt)
{
    type("storagemedia.ch\x03");
    EXPECT_FALSE(shows("never"));
    EXPECT_EQ(program.wait(), 128 + SIGINT);
}

} // namespace
