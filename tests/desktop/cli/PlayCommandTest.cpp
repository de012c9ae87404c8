#include "desktop/cli/PlayCommand.h"

#include "plugin/StorageMediaPlugin.h"

#include "tests/desktop/support/FakePlayers.h"
#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>

#include <filesystem>

// The play command with the plugin, and players that play nothing.

namespace desktop {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::StartsWith;
using testsupport::jsonLines;

constexpr PluginEntryPoints kPlugin = {&Plugin_Load, &Plugin_Execute, &Plugin_Unload, &Server_PublishNotification_Callback};

PlayerLoaded loaded(double duration = 0)
{
    PlayerLoaded told;
    told.facts.duration = duration;
    return told;
}

PlayerEnded ended(PlayerEnded::Reason reason, const std::string& text = "")
{
    return {reason, text, 0};
}

/// Standard input is no terminal as long as the object lives, whoever runs the tests.
class NoInput {
public:
    NoInput()
        : m_before(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1))
    {
        const UniqueFd nothing(open("/dev/null", O_RDONLY | O_CLOEXEC));
        dup2(nothing.get(), STDIN_FILENO);
    }
    ~NoInput() { dup2(m_before.get(), STDIN_FILENO); }
    NoInput(const NoInput&) = delete;
    NoInput& operator=(const NoInput&) = delete;

private:
    const UniqueFd m_before;
};

class PlayCommandTest : public testing::Test {
protected:
    PlayCommandTest()
    {
        for (const char* file : {"1.mp4", "2.mp3", "3.mp4", "4.txt", "Photos/a.jpg", "Photos/b.jpg", "Music/a.mp3"}) {
            std::filesystem::create_directories(std::filesystem::path(stick.path(file)).parent_path());
            stick.makeFile(file);
        }
    }

    DesktopSettings settings()
    {
        DesktopSettings settings;
        settings.sticks = {stick.path()};
        settings.players = players.factory();
        settings.startAt = options.startAt;
        settings.cacheFolder = cache.path();
        return settings;
    }

    /// Plays @p path while @p meanwhile runs on another thread; the exit status.
    int play(const std::string& path, const std::function<void()>& meanwhile)
    {
        int ends[2] = {-1, -1};
        EXPECT_EQ(pipe(ends), 0);
        const UniqueFd reader(ends[0]);
        options.path = path;
        testing::internal::CaptureStderr();
        int status = 0;
        {
            Output output(UniqueFd(ends[1]), interrupts);
            Host host(kPlugin, settings());
            HostClient client(host, interrupts);
            host.start();
            const FileDetails details;
            Session session(client, false, details, output, interrupts);
            std::thread other(meanwhile);
            runPlay(session, client, options, output, interrupts);
            other.join();
            status = session.exitStatus();
        }
        errors = testing::internal::GetCapturedStderr();
        written.resize(65536);
        written.resize(static_cast<std::size_t>(std::max<ssize_t>(read(reader.get(), written.data(), written.size()), 0)));
        return status;
    }

    /// What the player for videos has been asked to load, in all runs.
    std::vector<std::string> loads()
    {
        std::vector<std::string> calls = players.callsOf(FILE_TYPE_VIDEO);
        std::erase_if(calls, [](const std::string& call) { return call.rfind("load from", 0) != 0; });
        return calls;
    }

    const NoInput noInput;
    testsupport::TemporaryDirectory stick;
    testsupport::TemporaryDirectory cache;
    testsupport::FakePlayers players;
    const Interrupts interrupts;
    PlayArguments options;
    std::string written;
    std::string errors;
};

TEST_F(PlayCommandTest, File_PlaysToItsEndAndNothingAfterIt)
{
    const auto end = [this] {
        players.video().tell(1, loaded(125));
        players.video().tell(1, ended(PlayerEnded::Reason::Finished));
    };
    EXPECT_EQ(play("1.mp4", end), 0);
    EXPECT_EQ(written, "1 of 2: " + stick.path("1.mp4") + " (2:05)\n");
    EXPECT_EQ(errors, "");
    EXPECT_EQ(loads().size(), 1U);
}

TEST_F(PlayCommandTest, Folder_PlaysAllOfItsVideos)
{
    const auto end = [this] {
        players.video().tell(1, loaded());
        players.video().tell(1, ended(PlayerEnded::Reason::Finished));
        players.video().tell(2, loaded());
        players.video().tell(2, ended(PlayerEnded::Reason::Finished));
    };
    EXPECT_EQ(play(stick.path() + "/", end), 0);
    EXPECT_EQ(written, "1 of 2: " + stick.path("1.mp4") + "\n2 of 2: " + stick.path("3.mp4") + "\n");
}

TEST_F(PlayCommandTest, FolderWithoutVideos_PlaysItsMusic)
{
    const auto end = [this] {
        players.music().tell(1, loaded());
        players.music().tell(1, ended(PlayerEnded::Reason::Finished));
    };
    EXPECT_EQ(play("Photos/../Music", end), 0);
    EXPECT_EQ(written, "1 of 1: " + stick.path("Music/a.mp3") + "\n");
}

TEST_F(PlayCommandTest, Playlist_PlaysItsEntriesInTheirOrder)
{
    std::ofstream(stick.path("Party.m3u")) << "3.mp4\n1.mp4\n";
    const auto end = [this] {
        players.video().tell(1, loaded());
        players.video().tell(1, ended(PlayerEnded::Reason::Finished));
        players.video().tell(2, loaded());
        players.video().tell(2, ended(PlayerEnded::Reason::Finished));
    };
    EXPECT_EQ(play("Party.m3u", end), 0) << errors;
    EXPECT_EQ(written, "1 of 2: " + stick.path("3.mp4") + "\n2 of 2: " + stick.path("1.mp4") + "\n");
}

TEST_F(PlayCommandTest, Mode_PlaysAllInItsOrder)
{
    options.mode = PLAYER_MODE_REPEAT_ONE;
    const auto end = [this] {
        for (std::size_t round = 1; round <= 3; ++round) {
            players.video().tell(round, loaded());
            players.video().tell(round, ended(PlayerEnded::Reason::Finished));
        }
        players.video().tell(4, loaded());
        players.video().tell(4, PlayerKey{"CLOSE_WIN"});
    };
    EXPECT_EQ(play("1.mp4", end), 0);
    EXPECT_EQ(loads().size(), 4U);
}

TEST_F(PlayCommandTest, FileThatCannotBeLoaded_IsTheError)
{
    const auto end = [this] { players.video().tell(1, ended(PlayerEnded::Reason::LoadFailed, "It is empty")); };
    EXPECT_EQ(play("1.mp4", end), 1);
    EXPECT_EQ(errors, "desktop-tv: " + stick.path("1.mp4") + ": It is empty\n");
    EXPECT_EQ(written, "");
}

TEST_F(PlayCommandTest, FilesThatCannotBeLoaded_DoNotEndTheRun)
{
    options.all = true;
    const auto end = [this] {
        players.video().tell(1, ended(PlayerEnded::Reason::LoadFailed, "It is empty"));
        players.video().tell(2, loaded());
        players.video().tell(2, ended(PlayerEnded::Reason::Finished));
    };
    EXPECT_EQ(play("1.mp4", end), 1);
    EXPECT_EQ(errors, "desktop-tv: " + stick.path("1.mp4") + ": It is empty\n");
    EXPECT_EQ(written, "2 of 2: " + stick.path("3.mp4") + "\n");
}

TEST_F(PlayCommandTest, FileThatIsLostInTheMiddle_IsAnError)
{
    const auto end = [this] {
        players.video().tell(1, loaded());
        players.video().tell(1, ended(PlayerEnded::Reason::ReadFailed, "It cannot be read"));
    };
    EXPECT_EQ(play("1.mp4", end), 1);
    EXPECT_EQ(errors, "desktop-tv: " + stick.path("1.mp4") + ": It could not be played to its end\n");
}

TEST_F(PlayCommandTest, IncompleteFile_IsAnErrorAndDoesNotEndTheRun)
{
    options.all = true;
    const auto end = [this] {
        players.video().tell(1, loaded());
        players.video().tell(1, ended(PlayerEnded::Reason::Incomplete));
        players.video().tell(2, loaded());
        players.video().tell(2, ended(PlayerEnded::Reason::Finished));
    };
    EXPECT_EQ(play("1.mp4", end), 1);
    EXPECT_EQ(errors, "desktop-tv: " + stick.path("1.mp4") + ": It could not be played to its end\n");
    EXPECT_EQ(written, "1 of 2: " + stick.path("1.mp4") + "\n2 of 2: " + stick.path("3.mp4") + "\n");
}

TEST_F(PlayCommandTest, StorageThatFailsInTheMiddleOfARun_EndsIt)
{
    options.all = true;
    const auto end = [this] {
        players.video().tell(1, loaded());
        players.video().tell(1, ended(PlayerEnded::Reason::ReadFailed));
    };
    EXPECT_EQ(play("1.mp4", end), 1);
    EXPECT_EQ(errors, "desktop-tv: " + stick.path("1.mp4") + ": It could not be played to its end\n");
    EXPECT_EQ(loads().size(), 1U);
}

TEST_F(PlayCommandTest, StickThatIsPulled_IsOneErrorAndTheEnd)
{
    options.all = true;
    const auto end = [this] {
        players.video().tell(1, loaded());
        std::filesystem::rename(stick.path(), stick.path() + ".away");
    };
    EXPECT_EQ(play("1.mp4", end), 1);
    EXPECT_EQ(errors, "desktop-tv: " + stick.path() + ": The stick has been pulled\n");
    std::filesystem::rename(stick.path() + ".away", stick.path());
}

TEST_F(PlayCommandTest, StickThatIsPulledWhileAFileLoads_IsOneErrorAndTheEnd)
{
    options.all = true;
    const auto end = [this] {
        players.video().loaded(1);
        std::filesystem::rename(stick.path(), stick.path() + ".away");
    };
    EXPECT_EQ(play("1.mp4", end), 1);
    EXPECT_EQ(errors, "desktop-tv: " + stick.path() + ": The stick has been pulled\n");
    std::filesystem::rename(stick.path() + ".away", stick.path());
}

TEST_F(PlayCommandTest, PartThatCannotBeDecoded_IsToldAndIsNoError)
{
    const auto end = [this] {
        PlayerLoaded silent = loaded();
        silent.facts.audioUnsupported = true;
        silent.facts.audio.codec = "dts";
        players.video().tell(1, silent);
        players.video().tell(1, ended(PlayerEnded::Reason::Finished));
    };
    EXPECT_EQ(play("1.mp4", end), 0);
    EXPECT_EQ(errors, "desktop-tv: " + stick.path("1.mp4") + ": Its sound cannot be decoded (dts)\n");
}

TEST_F(PlayCommandTest, FileOfWhichNothingCanBeDecoded_IsOneError)
{
    const auto end = [this] { players.music().tell(1, ended(PlayerEnded::Reason::Unsupported, "It has no known codec")); };
    EXPECT_EQ(play("2.mp3", end), 1);
    EXPECT_EQ(errors, "desktop-tv: " + stick.path("2.mp3") + ": It has no known codec\n");
}

TEST_F(PlayCommandTest, KeysOfTheWindow_AreTheRemoteControl)
{
    const auto end = [this] {
        players.video().tell(1, loaded());
        for (const char* key : {"SPACE", "SPACE", "RIGHT", ">"}) {
            players.video().tell(1, PlayerKey{key});
        }
        players.video().tell(2, loaded());
        players.video().tell(2, PlayerKey{"CLOSE_WIN"});
    };
    EXPECT_EQ(play("1.mp4", end), 0);
    EXPECT_THAT(players.callsOf(FILE_TYPE_VIDEO), Contains("pause"));
    EXPECT_THAT(players.callsOf(FILE_TYPE_VIDEO), Contains("wind 2"));
    EXPECT_EQ(written, "1 of 2: " + stick.path("1.mp4") + "\n2 of 2: " + stick.path("3.mp4") + "\n");
    EXPECT_EQ(errors, "");
}

TEST_F(PlayCommandTest, Json_IsEveryNotificationAndNothingElse)
{
    options.json = true;
    const auto end = [this] {
        players.video().tell(1, loaded(4));
        players.video().tell(1, PlayerPosition{1});
        players.video().tell(1, PlayerKey{"q"});
    };
    EXPECT_EQ(play("1.mp4", end), 0);
    std::vector<std::string> names;
    for (const Json::Value& line : jsonLines(written)) {
        EXPECT_EQ(line["source"], "storagemedia");
        names.push_back(line["notification"].asString().substr(std::string("storagemedia.").size()));
    }
    std::erase_if(names, [](const std::string& name) { return name.rfind("usb.", 0) == 0; }); // of the start
    EXPECT_THAT(names, ElementsAre("media.loadsuccess", "media.infoupdate", "media.curplayspeed", "media.process",
                                   "movie.stopsucc"));
}

TEST_F(PlayCommandTest, Start_IsAsAskedFor)
{
    const auto leaveAt60 = [this] {
        players.video().tell(1, loaded(600));
        players.video().tell(1, PlayerPosition{60});
        players.video().tell(1, PlayerKey{"q"});
    };
    EXPECT_EQ(play("1.mp4", leaveAt60), 0);
    options.resume = true;
    EXPECT_EQ(play("1.mp4", leaveAt60), 0);
    options.resume = false;
    EXPECT_EQ(play("1.mp4", leaveAt60), 0);
    options.startAt = 90;
    EXPECT_EQ(play("1.mp4", leaveAt60), 0);
    EXPECT_THAT(loads(), ElementsAre(StartsWith("load from 0 "), StartsWith("load from 60 "), StartsWith("load from 0 "),
                                     StartsWith("load from 90 ")));
}

TEST_F(PlayCommandTest, PhotoThatNobodyWatches_EndsOnceItIsShown)
{
    EXPECT_EQ(play("Photos/a.jpg", [this] { players.photo().tell(1, loaded()); }), 0);
    EXPECT_EQ(written, "1 of 2: " + stick.path("Photos/a.jpg") + "\n");
}

TEST_F(PlayCommandTest, PhotoInAWindow_StaysUntilTheWindowIsClosed)
{
    options.window = true;
    const auto end = [this] {
        players.photo().tell(1, loaded());
        players.photo().tell(1, PlayerKey{"RIGHT"});
        players.photo().tell(2, loaded());
        players.photo().tell(2, PlayerKey{"CLOSE_WIN"});
    };
    EXPECT_EQ(play("Photos/a.jpg", end), 0);
    EXPECT_EQ(written, "1 of 2: " + stick.path("Photos/a.jpg") + "\n2 of 2: " + stick.path("Photos/b.jpg") + "\n");
}

TEST_F(PlayCommandTest, WhatCannotBePlayed_IsRefused)
{
    const auto nothing = [] {};
    stick.makeDirectory("Empty");
    for (const auto& [path, reason] : {std::pair{"4.txt", "It is no video, music or photo"},
                                       {"Empty", "It has no video, music or photo"},
                                       {"missing.mp4", "No such file or directory"}}) {
        EXPECT_EQ(play(path, nothing), 1);
        EXPECT_EQ(errors, "desktop-tv: " + stick.path(path) + ": " + reason + "\n");
    }
}

} // namespace
} // namespace desktop
