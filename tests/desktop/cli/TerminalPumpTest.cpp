#include "desktop/cli/TerminalPump.h"

#include <gtest/gtest.h>

#include <thread>

namespace desktop {
namespace {

/// What comes of @p text when every byte comes alone.
std::string byteByByte(const std::string& text)
{
    TerminalText safe;
    std::string out;
    for (const char byte : text) {
        out += safe.add({&byte, 1});
    }
    return out + safe.finish();
}

TEST(TerminalText, LinesAndTabs_StayAsTheyAre)
{
    EXPECT_EQ(byteByByte("[DBG]\tone\r\ntwo\n电影 🎂\r\n"), "[DBG]\tone\r\ntwo\n电影 🎂\r\n");
}

TEST(TerminalText, WhatWouldUpsetTheTerminal_IsMadeVisible)
{
    const std::string text = "a\x1b]0;b\x07\rc\xC2\x9B\xE2\x80\xAE\x7f\xE9\n";
    const std::string safe = "a<U+001B>]0;b<U+0007><U+000D>c<U+009B><U+202E><U+007F>\\xE9\n";
    EXPECT_EQ(byteByByte(text), safe);
    EXPECT_EQ(TerminalText().add(text), safe);
}

TEST(TerminalText, EndThatIsNone_IsShownAtTheLast)
{
    TerminalText text;
    EXPECT_EQ(text.add("a\xE7\x94"), "a");
    EXPECT_EQ(text.finish(), "\\xE7\\x94");
    EXPECT_EQ(text.add("b\r"), "b");
    EXPECT_EQ(text.finish(), "<U+000D>");
    EXPECT_EQ(text.add("\x94\x94"), "\\x94\\x94"); // bytes that no character begins with wait for nothing
}

class TerminalPumpTest : public testing::Test {
protected:
    TerminalPumpTest()
    {
        int ends[2] = {-1, -1};
        EXPECT_EQ(pipe(ends), 0);
        screen = UniqueFd(ends[0]);
        terminal = UniqueFd(ends[1]);
    }

    /// Everything that has been shown, once the pump has gone.
    std::string shown() const
    {
        std::string text;
        char bytes[4096];
        for (ssize_t got; (got = read(screen.get(), bytes, sizeof bytes)) > 0;) {
            text.append(bytes, static_cast<std::size_t>(got));
        }
        return text;
    }

    UniqueFd screen;
    UniqueFd terminal;
};

TEST_F(TerminalPumpTest, WhatIsWritten_ComesWholeAndInOrder)
{
    constexpr int kLines = 20'000; // more than pipes hold
    std::string expected;
    std::thread writer([this] {
        TerminalPump pump(std::move(terminal));
        pump.start();
        for (int i = 0; i < kLines; ++i) {
            dprintf(pump.inlet(), "line %d\r\n", i);
        }
    });
    const std::string text = shown();
    writer.join();
    for (int i = 0; i < kLines; ++i) {
        expected += "line " + std::to_string(i) + "\r\n";
    }
    EXPECT_EQ(text, expected);
}

TEST_F(TerminalPumpTest, NeverStarted_StillShowsWhatHasCome)
{
    {
        TerminalPump pump(std::move(terminal));
        dprintf(pump.inlet(), "a\x1b\n");
    }
    EXPECT_EQ(shown(), "a<U+001B>\n");
}

} // namespace
} // namespace desktop
