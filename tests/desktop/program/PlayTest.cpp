#include "tests/desktop/support/DemoStick.h"
#include "tests/desktop/support/Films.h"
#include "tests/desktop/support/Jpeg.h"
#include "tests/desktop/support/Songs.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

// desktop-tv play, with players that play.

namespace {

using testing::HasSubstr;
using testing::Not;
using testsupport::demoFile;
using testsupport::Ends;
using testsupport::jsonLines;
using testsupport::Program;
using testsupport::writeFile;

constexpr const char* kFilm = "Films/Half a minute.mp4";
constexpr const char* kCtrlC = "\x03";
constexpr const char* kCtrlZ = "\x1a";

using Words = std::vector<std::string>;

Words joined(Words words, const Words& more)
{
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

/// The command that plays what @p words say of @p stick, without a window and without sound.
Words playing(const std::string& stick, const Words& words, const std::string& cache = "none")
{
    return joined({DESKTOP_TV, "--stick", stick, "--cache", cache, "play", "--silent", "--no-window"}, words);
}

/// A stick of music, a second each.
class MusicStickTest : public testing::Test {
protected:
    MusicStickTest()
    {
        writeFile(stick.path("1.wav"), testsupport::waveFile("", 1));
        writeFile(stick.path("2.wav"), "no sound");
        writeFile(stick.path("3.wav"), testsupport::waveFile("", 1));
    }

    testsupport::TemporaryDirectory stick;
};

TEST_F(MusicStickTest, File_IsPlayedToItsEnd)
{
    Program program(playing(stick.path(), {"3.wav"}));
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.output(), "3 of 3: " + stick.path("3.wav") + " (0:01)\n");
    EXPECT_EQ(program.errors(), "");
}

TEST_F(MusicStickTest, Folder_IsPlayedPastWhatCannotBePlayed)
{
    Program program(playing(stick.path(), {stick.path()}));
    EXPECT_EQ(program.wait(), 1);
    EXPECT_EQ(program.output(), "1 of 3: " + stick.path("1.wav") + " (0:01)\n3 of 3: " + stick.path("3.wav") + " (0:01)\n");
    EXPECT_THAT(program.errors(), HasSubstr("desktop-tv: " + stick.path("2.wav") + ": "));
    EXPECT_EQ(std::count(program.errors().begin(), program.errors().end(), '\n'), 1) << program.errors();
}

TEST(Play, IncompleteFilm_DoesNotEndTheRun)
{
    const testsupport::Films films;
    const testsupport::TemporaryDirectory stick;
    const std::string film = testsupport::readFile(films.video("film.mkv", 10));
    writeFile(stick.path("2.mkv"), film.substr(0, film.size() / 5));
    for (const char* const name : {"1.mkv", "3.mkv"}) {
        std::filesystem::copy(films.video("short.mkv", 1), stick.path(name));
    }
    Program program(playing(stick.path(), {stick.path()}));
    EXPECT_EQ(program.wait(), 1);
    EXPECT_EQ(program.output(), "1 of 3: " + stick.path("1.mkv") + " (0:01)\n2 of 3: " + stick.path("2.mkv") +
                                    " (0:10)\n3 of 3: " + stick.path("3.mkv") + " (0:01)\n");
    EXPECT_EQ(program.errors(), "desktop-tv: " + stick.path("2.mkv") + ": It could not be played to its end\n");
}

TEST_F(MusicStickTest, Json_IsTheNotifications)
{
    Program program(playing(stick.path(), {"1.wav", "--json"}));
    EXPECT_EQ(program.wait(), 0);
    const std::vector<Json::Value> lines = jsonLines(program.output());
    EXPECT_EQ(lines.back()["notification"], "storagemedia.video.music.playend");
    for (const Json::Value& line : lines) {
        EXPECT_TRUE(line.isMember("body") && line.isMember("source")) << line;
    }
}

TEST(Play, Start_IsTheSecondThatIsAskedFor)
{
    Program program(playing(demoFile(""), {kFilm, "--at", "28.5", "--json"}));
    EXPECT_EQ(program.wait(), 0);
    std::vector<unsigned int> seconds;
    for (const Json::Value& line : jsonLines(program.output())) {
        if (line["notification"] == "storagemedia.media.process") {
            seconds.push_back(line["body"]["time"].asUInt());
        }
    }
    ASSERT_FALSE(seconds.empty());
    EXPECT_GE(seconds.front(), 28U);
}

TEST(Play, StartBehindTheEnd_IsToldAndPlaysFromTheStart)
{
    const testsupport::TemporaryDirectory stick;
    writeFile(stick.path("short.wav"), testsupport::waveFile("", 1));
    Program program(playing(stick.path(), {"short.wav", "--at", "1"}));
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.errors(),
              "desktop-tv: " + stick.path("short.wav") + ": It is not that long; it plays from its start\n");
}

TEST(Play, PhotoWithAStart_IsRefused)
{
    Program program(playing(demoFile(""), {"Photos/2023/winter.jpg", "--at", "3"}));
    EXPECT_EQ(program.wait(), 1);
    EXPECT_EQ(program.errors(), "desktop-tv: Photos/2023/winter.jpg: A photo has no time to begin at\n");
    EXPECT_EQ(program.output(), "");
}

TEST(Play, StickThatIsPulled_IsOneError)
{
    const testsupport::TemporaryDirectory folder;
    const std::string stick = folder.path("stick");
    std::filesystem::create_directory(stick);
    writeFile(stick + "/long.wav", testsupport::waveFile("", 600));
    Program program(playing(stick, {"long.wav"}));
    EXPECT_TRUE(program.readUntil([&] { return !program.output().empty(); }));
    std::filesystem::rename(stick, folder.path("away"));
    EXPECT_EQ(program.wait(), 1);
    EXPECT_EQ(program.errors(), "desktop-tv: " + stick + ": The stick has been pulled\n");
}

TEST(Play, Interrupt_EndsIt)
{
    Program program(playing(demoFile(""), {kFilm}));
    EXPECT_TRUE(program.readUntil([&] { return !program.output().empty(); }));
    program.signal(SIGINT);
    EXPECT_EQ(program.wait(), 130);
    EXPECT_EQ(program.errors(), "desktop-tv: Cancelled\n");
}

/// Somebody plays the film of the demo stick on a terminal, from a shell that tells afterwards how it finds the terminal.
class PlayOnTerminalTest : public testing::Test {
protected:
    /// @p script runs the command as "$@".
    void start(const Words& words, const std::string& script = "trap : INT; \"$@\"; echo status $?; stty -a")
    {
        const Words shell = {"sh", "-c", "cd " + folder.path() + " && { " + script + "; }", "sh"};
        program =
            std::make_unique<Program>(joined(shell, playing(demoFile(""), words, folder.path("cache"))), Ends::Terminal);
        m_seen = 0;
    }

    /// Whether @p text comes to the terminal, after what has been looked for before.
    bool shows(const std::string& text)
    {
        const bool found = program->readUntil([&] { return program->output().find(text, m_seen) != std::string::npos; });
        m_seen = found ? program->output().find(text, m_seen) + text.size() : m_seen;
        return found;
    }

    void type(const std::string& keys) { program->send(keys); }

    /// Types @p keys, which end the command with @p status and leave the terminal as it was.
    void expectEnd(const std::string& keys, int status)
    {
        type(keys);
        EXPECT_TRUE(shows("status " + std::to_string(status) + "\r\n")) << program->output();
        EXPECT_EQ(program->wait(), 0);
        EXPECT_THAT(program->output(), HasSubstr(" icanon"));
        EXPECT_THAT(program->output(), HasSubstr(" echo "));
        EXPECT_THAT(program->output(), Not(HasSubstr("-icanon")));
        EXPECT_THAT(program->output(), Not(HasSubstr("-echo ")));
    }

    testsupport::TemporaryDirectory folder;
    std::unique_ptr<Program> program;

private:
    std::size_t m_seen = 0;
};

TEST_F(PlayOnTerminalTest, Progress_IsOneLineThatChanges)
{
    start({kFilm});
    EXPECT_TRUE(shows("\r\x1b[KHalf a minute  playing  0:00 / 0:30  "));
    EXPECT_TRUE(shows("\r\x1b[KHalf a minute  playing  0:01 / 0:30  "));
    expectEnd("q", 0);
}

TEST_F(PlayOnTerminalTest, Keys_AreTheRemoteControl)
{
    start({kFilm});
    EXPECT_TRUE(shows("playing  0:01"));
    type(" ");
    EXPECT_TRUE(shows("paused"));
    type(" ");
    EXPECT_TRUE(shows("playing"));
    type("\x1b[C");
    EXPECT_TRUE(shows("x2"));
    type("\x1b[C");
    EXPECT_TRUE(shows("x4"));
    type("\x1b[D");
    EXPECT_TRUE(shows("x-2"));
    type(" ");
    EXPECT_TRUE(shows("playing"));
    type("]");
    EXPECT_TRUE(shows("Speed 110 %"));
    type("?");
    EXPECT_TRUE(shows("q quit"));
    expectEnd("q", 0);
}

TEST_F(PlayOnTerminalTest, Subtitles_CanBeChosen)
{
    start({kFilm});
    EXPECT_TRUE(shows("playing  0:01"));
    type("j");
    EXPECT_TRUE(shows("Subtitles: "));
    type("j");
    EXPECT_TRUE(shows("Subtitles: off"));
    expectEnd("q", 0);
}

TEST_F(PlayOnTerminalTest, PictureOfTheScreen_IsWrittenIntoTheWorkingFolder)
{
    folder.makeFile("screen-0001.jpg");
    start({kFilm});
    EXPECT_TRUE(shows("playing  0:01"));
    type("s");
    EXPECT_TRUE(shows("screen-0002.jpg"));
    const testsupport::Picture picture = testsupport::readJpeg(folder.path("screen-0002.jpg"));
    EXPECT_EQ(picture.width, 1280);
    EXPECT_EQ(picture.colourAt(0.44, 0.3), "blue");
    EXPECT_EQ(picture.colourAt(0.69, 0.3), "green");
    EXPECT_EQ(testsupport::readFile(folder.path("screen-0001.jpg")), "content");
    expectEnd("q", 0);
}

TEST_F(PlayOnTerminalTest, CtrlC_LeavesTheTerminalAsItWas)
{
    start({kFilm});
    EXPECT_TRUE(shows("playing  0:00"));
    expectEnd(kCtrlC, 130);
    EXPECT_THAT(program->output(), HasSubstr("desktop-tv: Cancelled"));
}

TEST_F(PlayOnTerminalTest, CtrlZ_LendsTheTerminalToOthers)
{
    start({kFilm}, "set -m; \"$@\"; stty -a; echo resumes; fg; echo status $?; stty -a");
    EXPECT_TRUE(shows("playing  0:00"));
    type(kCtrlZ);
    EXPECT_TRUE(shows(" icanon"));
    EXPECT_TRUE(shows("resumes"));
    EXPECT_TRUE(shows("playing"));
    expectEnd("q", 0);
}

// One of these shells does not say that it gives the terminal to a program that runs.
TEST_F(PlayOnTerminalTest, BackgroundThatComesToTheForeground_TakesTheKeys)
{
    start({kFilm, "--json"}, "bash -c 'set -m; \"$@\" & read line; stty -a; fg; echo status $?; stty -a' bash \"$@\"");
    EXPECT_TRUE(shows("storagemedia.media.process"));
    EXPECT_THAT(program->output(), Not(HasSubstr("playing"))) << "shown in the background";
    type("\n");
    EXPECT_TRUE(shows("playing"));
    type(" ");
    EXPECT_TRUE(shows("paused"));
    expectEnd("q", 0);
}

TEST_F(PlayOnTerminalTest, TerminalWithoutCursor_GetsLines)
{
    start({kFilm}, "TERM=dumb \"$@\"; echo status $?; stty -a");
    EXPECT_TRUE(shows("1 of 1: " + demoFile(kFilm)));
    expectEnd("q", 0);
    EXPECT_THAT(program->output(), Not(HasSubstr("\x1b")));
}

TEST_F(PlayOnTerminalTest, VideoThatWasLeft_GoesOnWhenThePersonWantsIt)
{
    start({kFilm, "--at", "12"});
    EXPECT_TRUE(shows("playing  0:13"));
    expectEnd("q", 0);
    start({kFilm});
    EXPECT_TRUE(shows("Go on where it was left? [Y/n] "));
    type("y");
    EXPECT_TRUE(shows("playing  0:1"));
    expectEnd("q", 0);
    start({kFilm});
    EXPECT_TRUE(shows("Go on where it was left? [Y/n] "));
    type("n");
    EXPECT_TRUE(shows("playing  0:00 / 0:30"));
    EXPECT_TRUE(shows("playing  0:01"));
    expectEnd("q", 0);
}

TEST_F(PlayOnTerminalTest, QuestionThatIsAnsweredByQuitting_PlaysNothing)
{
    start({kFilm, "--at", "12"});
    EXPECT_TRUE(shows("playing  0:13"));
    expectEnd("q", 0);
    start({kFilm});
    EXPECT_TRUE(shows("Go on where it was left? [Y/n] "));
    expectEnd("q", 0);
    EXPECT_THAT(program->output(), Not(HasSubstr("playing")));
}

} // namespace
