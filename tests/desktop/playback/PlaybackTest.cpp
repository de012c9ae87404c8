#include "desktop/playback/Playback.h"

#include "tests/desktop/support/DeadFileSystem.h"
#include "tests/desktop/support/FakePlayers.h"
#include "tests/desktop/support/PlayedEvents.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using testsupport::FakePlayer;

PlayerLoaded filmOf(double duration, bool hdr = false)
{
    PlayerLoaded loaded;
    loaded.facts.duration = duration;
    loaded.facts.video.hdr = hdr;
    return loaded;
}

PlayerEnded endBy(PlayerEnded::Reason reason, const std::string& text = "")
{
    return {reason, text, 0};
}

constexpr auto kFinished = PlayerEnded::Reason::Finished;
constexpr auto kIncomplete = PlayerEnded::Reason::Incomplete;

class PlaybackTest : public testing::Test {
protected:
    PlaybackTest()
    {
        for (const char* name : {"a.mp4", "b.mp4", "c.mp4", "d.mp3", "e.mp3", "f.jpg", "g.jpg"}) {
            stick.makeFile(name);
            FolderFileInfo_s entry;
            entry.type = typeOf(name);
            entry.path = stick.path(name);
            entry.title = std::string(name, 1);
            list->push_back(entry);
        }
    }

    static FileType typeOf(const std::string& name)
    {
        return name.ends_with("mp4") ? FILE_TYPE_VIDEO : name.ends_with("mp3") ? FILE_TYPE_MUSIC : FILE_TYPE_PHOTO;
    }

    std::optional<std::uint32_t> play(FileType kind, std::size_t index, bool playAll = false, bool second = false)
    {
        return playback.play({list, kind, index, playAll, false, second});
    }

    // Plays and lets the player load what it is given; its events are taken.
    void playLoaded(FileType kind, std::size_t index, bool playAll = false, const PlayerLoaded& loaded = filmOf(100))
    {
        ASSERT_TRUE(play(kind, index, playAll));
        load(kind, loaded);
    }

    void load(FileType kind, const PlayerLoaded& loaded = filmOf(100))
    {
        FakePlayer& player = players.of(kind);
        player.tell(++loads[kind], loaded);
        events.next(kind == FILE_TYPE_PHOTO ? 2 : 3);
    }

    std::string place(const std::string& name)
    {
        return R"({"index":)" + std::to_string(indexOf(name)) + R"(,"path":")" + stick.path(name) + R"("})";
    }
    std::size_t indexOf(const std::string& name)
    {
        const auto found =
            std::find_if(list->begin(), list->end(), [&](const auto& entry) { return entry.path == stick.path(name); });
        return static_cast<std::size_t>(found - list->begin());
    }
    Location locate(const std::string& name) { return opener.locate(stick.path(name)); }

    testsupport::TemporaryDirectory stick;
    std::shared_ptr<std::vector<FolderFileInfo_s>> list = std::make_shared<std::vector<FolderFileInfo_s>>();
    LocationOpener opener{PathResolver({stick.path()}), std::make_shared<ReadReporter>()};
    EventQueue queue;
    testsupport::PlayedEvents events{queue};
    std::shared_ptr<PlayPositions> positions = std::make_shared<PlayPositions>("");
    testsupport::FakePlayers players;
    testsupport::Gathered<std::string> keys;
    PlayTimes times{std::chrono::seconds(30), std::chrono::seconds(30)};
    std::map<FileType, std::size_t> loads;
    Playback playback{opener, queue, positions, players.factory(), [this](const std::string& key) { keys.add(key); }, times};
};

TEST_F(PlaybackTest, Play_OpensTheEntryAndTellsWhenItIsLoaded)
{
    EXPECT_EQ(play(FILE_TYPE_VIDEO, 1), 1U);
    const PlayerMedium& medium = players.video().loaded(1);
    EXPECT_EQ(medium.type, FILE_TYPE_VIDEO);
    EXPECT_EQ(medium.start, 0);
    EXPECT_TRUE(medium.fd);
    EXPECT_TRUE(events.none());
    EXPECT_FALSE(playback.current(FILE_TYPE_VIDEO));

    PlayerLoaded loaded = filmOf(61.6, true);
    loaded.facts.title = "The Film";
    loaded.facts.artist = "Somebody";
    loaded.facts.album = "Films";
    players.video().tell(1, loaded);
    const std::string path = stick.path("b.mp4");
    EXPECT_THAT(events.next(3),
                ElementsAre("12 {\"duration\":62,\"index\":1,\"path\":\"" + path + "\",\"title\":\"The Film\",\"type\":4}",
                            "21 {\"album\":\"Films\",\"artist\":\"Somebody\",\"duration\":62,\"index\":1,\"path\":\"" +
                                path + "\",\"title\":\"The Film\"}",
                            "13 speed 1, hdr"));
    EXPECT_EQ(playback.current(FILE_TYPE_VIDEO)->facts.title, "The Film");
}

TEST_F(PlaybackTest, Untitled_HasTheTitleOfItsEntry)
{
    ASSERT_TRUE(play(FILE_TYPE_MUSIC, 0));
    players.music().tell(1, filmOf(1));
    EXPECT_THAT(events.next(1).front(), testing::HasSubstr(R"("title":"d")"));
}

TEST_F(PlaybackTest, EntryOfAnotherKind_TheNextOfTheKindPlays)
{
    EXPECT_EQ(play(FILE_TYPE_MUSIC, 0), 3U);
    EXPECT_EQ(play(FILE_TYPE_PHOTO, 4), 5U);
    EXPECT_EQ(play(FILE_TYPE_VIDEO, 3), std::nullopt);
    EXPECT_EQ(play(FILE_TYPE_FOLDER, 0), std::nullopt);
}

TEST_F(PlaybackTest, SecondBrowser_HasEventsOfItsOwn)
{
    ASSERT_TRUE(play(FILE_TYPE_VIDEO, 0, false, true));
    players.video().tell(1, filmOf(10));
    EXPECT_THAT(events.next(3), ElementsAre(StartsWith("12 "), StartsWith("26 "), StartsWith("23 speed 1")));
    players.video().tell(1, endBy(PlayerEnded::Reason::PlayerLost));
    EXPECT_THAT(events.next(1), ElementsAre("32"));
    ASSERT_TRUE(play(FILE_TYPE_VIDEO, 0, false, true));
    players.video().tell(2, endBy(PlayerEnded::Reason::LoadFailed, "it is empty"));
    EXPECT_THAT(events.next(1), ElementsAre(StartsWith("31 ")));
}

TEST_F(PlaybackTest, Photo_IsLoadedAndItsTitleTold)
{
    ASSERT_TRUE(play(FILE_TYPE_PHOTO, 5));
    players.photo().tell(1, PlayerLoaded());
    EXPECT_THAT(events.next(2), ElementsAre("29 {\"duration\":0,\"index\":5,\"path\":\"" + stick.path("f.jpg") +
                                                "\",\"title\":\"f\",\"type\":3}",
                                            "33 f"));
    EXPECT_TRUE(events.none());
}

TEST_F(PlaybackTest, OneFile_EndsAfterIt)
{
    playLoaded(FILE_TYPE_VIDEO, 0);
    players.video().tell(1, endBy(kFinished));
    EXPECT_THAT(events.next(1), ElementsAre("16"));
    EXPECT_FALSE(playback.current(FILE_TYPE_VIDEO));
    EXPECT_FALSE(playback.next(FILE_TYPE_VIDEO));
}

TEST_F(PlaybackTest, PlayAll_GoesOnAndEndsAfterTheLast)
{
    playLoaded(FILE_TYPE_VIDEO, 1, true);
    players.video().tell(1, endBy(kFinished));
    load(FILE_TYPE_VIDEO);
    EXPECT_EQ(playback.current(FILE_TYPE_VIDEO)->item.index, 2U);
    players.video().tell(2, endBy(kFinished));
    EXPECT_THAT(events.next(1), ElementsAre("16"));
}

TEST_F(PlaybackTest, PlayAll_KeepsToThePlayerMode)
{
    EXPECT_TRUE(playback.setMode(FILE_TYPE_VIDEO, PLAYER_MODE_REPEAT_ONE));
    playLoaded(FILE_TYPE_VIDEO, 1, true);
    players.video().tell(1, endBy(kFinished));
    load(FILE_TYPE_VIDEO);
    EXPECT_EQ(playback.current(FILE_TYPE_VIDEO)->item.index, 1U);
    EXPECT_TRUE(playback.setMode(FILE_TYPE_VIDEO, PLAYER_MODE_REPEAT_ALL));
    EXPECT_TRUE(playback.next(FILE_TYPE_VIDEO));
    load(FILE_TYPE_VIDEO);
    players.video().tell(3, endBy(kFinished));
    load(FILE_TYPE_VIDEO);
    EXPECT_EQ(playback.current(FILE_TYPE_VIDEO)->item.index, 0U);
}

TEST_F(PlaybackTest, Modes_AreEachPlayersOwnAndChecked)
{
    EXPECT_TRUE(playback.setMode(FILE_TYPE_MUSIC, PLAYER_MODE_SHUFFLE));
    EXPECT_EQ(playback.mode(FILE_TYPE_MUSIC), PLAYER_MODE_SHUFFLE);
    EXPECT_EQ(playback.mode(FILE_TYPE_VIDEO), PLAYER_MODE_SEQUENCE);
    EXPECT_EQ(playback.mode(FILE_TYPE_FOLDER), std::nullopt);
    EXPECT_FALSE(playback.setMode(FILE_TYPE_MUSIC, 4));
    EXPECT_FALSE(playback.setMode(FILE_TYPE_MUSIC, -1));
    EXPECT_FALSE(playback.setMode(FILE_TYPE_OTHER, PLAYER_MODE_SHUFFLE));
    EXPECT_EQ(playback.mode(FILE_TYPE_MUSIC), PLAYER_MODE_SHUFFLE);
}

TEST_F(PlaybackTest, Keys_StepThroughTheList)
{
    playLoaded(FILE_TYPE_VIDEO, 0);
    EXPECT_TRUE(playback.next(FILE_TYPE_VIDEO));
    load(FILE_TYPE_VIDEO);
    EXPECT_EQ(playback.current(FILE_TYPE_VIDEO)->item.index, 1U);
    EXPECT_TRUE(playback.previous(FILE_TYPE_VIDEO));
    load(FILE_TYPE_VIDEO);
    EXPECT_EQ(playback.current(FILE_TYPE_VIDEO)->item.index, 0U);
    EXPECT_FALSE(playback.previous(FILE_TYPE_VIDEO));
    EXPECT_FALSE(playback.next(FILE_TYPE_MUSIC));
    EXPECT_TRUE(events.none());
}

TEST_F(PlaybackTest, StopOfEachKind_TellsWhatPlayed)
{
    playLoaded(FILE_TYPE_VIDEO, 0);
    EXPECT_EQ(playback.stop(FILE_TYPE_VIDEO), 0U);
    EXPECT_THAT(events.next(1), ElementsAre("22 " + place("a.mp4")));
    playLoaded(FILE_TYPE_MUSIC, 4);
    EXPECT_EQ(playback.stop(FILE_TYPE_MUSIC), 4U);
    EXPECT_THAT(events.next(1), ElementsAre("27 4 " + stick.path("e.mp3")));
    playLoaded(FILE_TYPE_PHOTO, 6);
    EXPECT_EQ(playback.stop(FILE_TYPE_PHOTO), 6U);
    EXPECT_THAT(events.next(1), ElementsAre("35 " + place("g.jpg")));
    EXPECT_EQ(playback.stop(FILE_TYPE_PHOTO), std::nullopt);
    EXPECT_TRUE(events.none());
}

TEST_F(PlaybackTest, StopWhileItLoads_EndsItWithoutMore)
{
    ASSERT_TRUE(play(FILE_TYPE_VIDEO, 0));
    const auto number = players.video().loaded(1).number;
    EXPECT_EQ(playback.stop(FILE_TYPE_VIDEO), 0U);
    EXPECT_THAT(events.next(1), ElementsAre(StartsWith("22 ")));
    players.video().tell(1, filmOf(1));
    EXPECT_TRUE(events.none());
    EXPECT_EQ(players.callsOf(FILE_TYPE_VIDEO).back(), "unload");
    EXPECT_GT(number, 0U);
}

TEST_F(PlaybackTest, Video_StopsTheOthers)
{
    playLoaded(FILE_TYPE_MUSIC, 3);
    playLoaded(FILE_TYPE_PHOTO, 5);
    EXPECT_TRUE(events.none()); // music goes on behind photos
    ASSERT_TRUE(play(FILE_TYPE_VIDEO, 0));
    EXPECT_THAT(events.next(2), testing::UnorderedElementsAre(StartsWith("27 "), StartsWith("35 ")));
    for (const FileType kind : {FILE_TYPE_MUSIC, FILE_TYPE_PHOTO}) {
        ASSERT_TRUE(play(FILE_TYPE_VIDEO, 0));
        ASSERT_TRUE(play(kind, 0));
        EXPECT_THAT(events.next(1), ElementsAre(StartsWith("22 ")));
        playback.stop(kind);
        events.next(1);
    }
}

TEST_F(PlaybackTest, StopAll_LeavesTheMusicWhenAsked)
{
    playLoaded(FILE_TYPE_MUSIC, 3);
    playLoaded(FILE_TYPE_PHOTO, 5);
    playback.stopAll(true);
    EXPECT_THAT(events.next(1), ElementsAre(StartsWith("35 ")));
    EXPECT_TRUE(playback.current(FILE_TYPE_MUSIC));
    playback.stopAll(false);
    EXPECT_THAT(events.next(1), ElementsAre(StartsWith("27 ")));
}

TEST_F(PlaybackTest, PlayAndPause_TellTheSpeed)
{
    EXPECT_FALSE(playback.playOrPause(FILE_TYPE_VIDEO, true));
    playLoaded(FILE_TYPE_VIDEO, 0);
    EXPECT_TRUE(playback.playOrPause(FILE_TYPE_VIDEO, false));
    EXPECT_TRUE(playback.playOrPause(FILE_TYPE_VIDEO, true));
    EXPECT_THAT(events.next(2), ElementsAre("13 speed 0, no hdr", "13 speed 1, no hdr"));
    EXPECT_THAT(players.callsOf(FILE_TYPE_VIDEO), ElementsAre("unload", "load from 0 with 0 subtitles", "pause", "unpause"));
}

TEST_F(PlaybackTest, Winding_StepsTo16AndBackByPlay)
{
    playLoaded(FILE_TYPE_MUSIC, 3);
    for (const int speed : {2, 4, 8, 16, 2}) {
        EXPECT_TRUE(playback.wind(FILE_TYPE_MUSIC, true));
        EXPECT_THAT(events.next(1), ElementsAre("13 speed " + std::to_string(speed) + ", no hdr"));
    }
    for (const int speed : {-2, -4, -8, -16, -2}) {
        EXPECT_TRUE(playback.wind(FILE_TYPE_MUSIC, false));
        EXPECT_THAT(events.next(1), ElementsAre("13 speed " + std::to_string(speed) + ", no hdr"));
    }
    EXPECT_TRUE(playback.playOrPause(FILE_TYPE_MUSIC, true));
    EXPECT_THAT(events.next(1), ElementsAre("13 speed 1, no hdr"));
    EXPECT_EQ(players.callsOf(FILE_TYPE_MUSIC).at(12), "wind 1");
}

TEST_F(PlaybackTest, WindingWhatIsPaused_PlaysIt)
{
    playLoaded(FILE_TYPE_VIDEO, 0);
    playback.playOrPause(FILE_TYPE_VIDEO, false);
    EXPECT_TRUE(playback.wind(FILE_TYPE_VIDEO, false));
    EXPECT_THAT(events.next(2), ElementsAre("13 speed 0, no hdr", "13 speed -2, no hdr"));
    const std::vector<std::string> calls = players.callsOf(FILE_TYPE_VIDEO);
    EXPECT_THAT(std::vector<std::string>(calls.end() - 2, calls.end()), ElementsAre("unpause", "wind -2"));
}

TEST_F(PlaybackTest, Photos_AreNotWound)
{
    playLoaded(FILE_TYPE_PHOTO, 5);
    EXPECT_FALSE(playback.wind(FILE_TYPE_PHOTO, true));
    EXPECT_TRUE(events.none());
}

TEST_F(PlaybackTest, RewindingToTheStart_PlaysOnAndSaysSo)
{
    playLoaded(FILE_TYPE_VIDEO, 0);
    playback.wind(FILE_TYPE_VIDEO, false);
    players.video().tell(1, PlayerAtStart());
    EXPECT_THAT(events.next(2), ElementsAre("13 speed -2, no hdr", "13 speed 1, no hdr"));
    playback.wind(FILE_TYPE_VIDEO, false);
    EXPECT_THAT(events.next(1), ElementsAre("13 speed -2, no hdr"));
}

TEST_F(PlaybackTest, Progress_IsToldInWholeSeconds)
{
    playLoaded(FILE_TYPE_VIDEO, 0);
    players.video().tell(1, PlayerPosition{7.9});
    EXPECT_THAT(events.next(1), ElementsAre("37 7"));
}

TEST_F(PlaybackTest, Subtitles_AreTold)
{
    playLoaded(FILE_TYPE_VIDEO, 0);
    players.video().tell(1, PlayerSubtitleText{"Hello\nyou"});
    players.video().tell(1, PlayerSubtitlePicture{"PNG", 10, 400, 320, 40});
    players.video().tell(1, PlayerSubtitlePicture{});
    EXPECT_THAT(events.next(3),
                ElementsAre("38 text Hello\nyou", "38 picture 1 at 10,400 of 320x40 format 1 size 4 UE5H", "38 text "));
}

TEST_F(PlaybackTest, UnsupportedTracks_AreToldAndTheRestPlays)
{
    ASSERT_TRUE(play(FILE_TYPE_VIDEO, 0));
    PlayerLoaded loaded = filmOf(10);
    loaded.facts.audioUnsupported = true;
    loaded.facts.videoUnsupported = true;
    loaded.facts.audio.codec = "odd";
    players.video().tell(1, loaded);
    EXPECT_THAT(events.next(5),
                ElementsAre(StartsWith("12 "), StartsWith("21 "), "19",
                            "15 {\"codec\":\"odd\",\"path\":\"" + stick.path("a.mp4") + "\"}", StartsWith("13 ")));
    EXPECT_TRUE(playback.current(FILE_TYPE_VIDEO));
}

TEST_F(PlaybackTest, NothingSupported_IsToldAndFails)
{
    ASSERT_TRUE(play(FILE_TYPE_VIDEO, 0));
    players.video().tell(1, endBy(PlayerEnded::Reason::Unsupported, "no decoder"));
    EXPECT_THAT(events.next(2), ElementsAre("19", StartsWith("14 ")));
    ASSERT_TRUE(play(FILE_TYPE_MUSIC, 3));
    players.music().tell(1, endBy(PlayerEnded::Reason::Unsupported, "no decoder"));
    EXPECT_THAT(events.next(2), ElementsAre(StartsWith("15 "), StartsWith("14 ")));
}

TEST_F(PlaybackTest, FailureToLoad_IsToldWithItsReason)
{
    ASSERT_TRUE(play(FILE_TYPE_VIDEO, 0));
    players.video().tell(1, endBy(PlayerEnded::Reason::LoadFailed, "The file is empty."));
    EXPECT_THAT(events.next(1), ElementsAre("14 {\"index\":0,\"path\":\"" + stick.path("a.mp4") +
                                            "\",\"reason\":\"The file is empty.\",\"type\":4}"));
    EXPECT_TRUE(events.none());
}

TEST_F(PlaybackTest, MissingFile_FailsToLoad)
{
    std::filesystem::remove(stick.path("a.mp4"));
    ASSERT_TRUE(play(FILE_TYPE_VIDEO, 0));
    EXPECT_THAT(events.next(1), ElementsAre(testing::HasSubstr("No such file")));
    EXPECT_EQ(players.video().loads(), 0U);
}

TEST_F(PlaybackTest, PlayAll_SkipsWhatCannotBeLoaded)
{
    ASSERT_TRUE(play(FILE_TYPE_VIDEO, 0, true));
    players.video().tell(1, endBy(PlayerEnded::Reason::LoadFailed));
    players.video().tell(2, filmOf(1));
    EXPECT_THAT(events.next(2), ElementsAre(StartsWith("14 "), StartsWith("12 ")));
    EXPECT_EQ(playback.current(FILE_TYPE_VIDEO)->item.index, 1U);
}

TEST_F(PlaybackTest, GoingBackOverWhatCannotBeLoaded_GoesOnBackwards)
{
    playLoaded(FILE_TYPE_VIDEO, 2, true);
    EXPECT_TRUE(playback.previous(FILE_TYPE_VIDEO));
    players.video().tell(2, endBy(PlayerEnded::Reason::LoadFailed));
    players.video().tell(3, filmOf(1));
    EXPECT_THAT(events.next(2), ElementsAre(StartsWith("14 "), StartsWith("12 ")));
    EXPECT_EQ(playback.current(FILE_TYPE_VIDEO)->item.index, 0U);
}

TEST_F(PlaybackTest, GoingBackOntoAFirstThatCannotBeLoaded_GoesOnForwards)
{
    playLoaded(FILE_TYPE_VIDEO, 1, true);
    EXPECT_TRUE(playback.previous(FILE_TYPE_VIDEO));
    players.video().tell(2, endBy(PlayerEnded::Reason::LoadFailed));
    players.video().tell(3, filmOf(1));
    EXPECT_THAT(events.next(2), ElementsAre(StartsWith("14 "), StartsWith("12 ")));
    EXPECT_EQ(playback.current(FILE_TYPE_VIDEO)->item.index, 1U);
}

TEST_F(PlaybackTest, PlayAllOfWhatCannotBeLoaded_EndsAfterEachHasBeenTried)
{
    for (const int mode : {PLAYER_MODE_REPEAT_ALL, PLAYER_MODE_SHUFFLE, PLAYER_MODE_REPEAT_ONE}) {
        std::filesystem::remove(stick.path("a.mp4"));
        std::filesystem::remove(stick.path("b.mp4"));
        std::filesystem::remove(stick.path("c.mp4"));
        playback.setMode(FILE_TYPE_VIDEO, mode);
        ASSERT_TRUE(play(FILE_TYPE_VIDEO, 0, true));
        EXPECT_THAT(events.next(4), ElementsAre(StartsWith("14 "), StartsWith("14 "), StartsWith("14 "), "16"));
    }
}

TEST_F(PlaybackTest, LostPlayer_FailsAndTheNextPlayWorks)
{
    playLoaded(FILE_TYPE_VIDEO, 0, true);
    players.video().tell(1, endBy(PlayerEnded::Reason::PlayerLost));
    EXPECT_THAT(events.next(2), ElementsAre("25", "16"));
    EXPECT_TRUE(events.none());
    playLoaded(FILE_TYPE_VIDEO, 0);
    EXPECT_TRUE(playback.current(FILE_TYPE_VIDEO));
}

TEST_F(PlaybackTest, StorageThatFails_EndsTheRun)
{
    playLoaded(FILE_TYPE_VIDEO, 0, true);
    players.video().tell(1, endBy(PlayerEnded::Reason::ReadFailed));
    EXPECT_THAT(events.next(2), ElementsAre("25", "16"));
    playLoaded(FILE_TYPE_VIDEO, 0);
    players.video().tell(2, endBy(PlayerEnded::Reason::ReadFailed));
    EXPECT_THAT(events.next(1), ElementsAre("25"));
    EXPECT_TRUE(events.none());
    EXPECT_EQ(players.video().loads(), 2U);
}

TEST_F(PlaybackTest, IncompleteFile_IsFollowedByTheNext)
{
    playLoaded(FILE_TYPE_VIDEO, 1, true);
    players.video().tell(1, endBy(kIncomplete));
    EXPECT_THAT(events.next(1), ElementsAre("25"));
    load(FILE_TYPE_VIDEO);
    EXPECT_EQ(playback.current(FILE_TYPE_VIDEO)->item.index, 2U);
    players.video().tell(2, endBy(kIncomplete));
    EXPECT_THAT(events.next(2), ElementsAre("25", "16"));
    EXPECT_TRUE(events.none());
}

TEST_F(PlaybackTest, IncompleteFileOfTheSecondBrowser_HasTheEventOfThat)
{
    ASSERT_TRUE(play(FILE_TYPE_VIDEO, 0, true, true));
    load(FILE_TYPE_VIDEO);
    players.video().tell(1, endBy(kIncomplete));
    EXPECT_THAT(events.next(1), ElementsAre("32"));
    EXPECT_TRUE(players.video().loaded(2).fd);
}

TEST_F(PlaybackTest, IncompleteFileByItself_EndsAsItFails)
{
    playLoaded(FILE_TYPE_VIDEO, 0);
    players.video().tell(1, endBy(kIncomplete));
    EXPECT_THAT(events.next(1), ElementsAre("25"));
    EXPECT_TRUE(events.none());
    EXPECT_FALSE(playback.next(FILE_TYPE_VIDEO));
}

TEST_F(PlaybackTest, IncompleteBeforeItIsLoaded_FailsToLoad)
{
    ASSERT_TRUE(play(FILE_TYPE_VIDEO, 0));
    players.video().tell(1, endBy(kIncomplete, "The file is incomplete."));
    EXPECT_THAT(events.next(1), ElementsAre(testing::HasSubstr("The file is incomplete.")));
    EXPECT_TRUE(events.none());
}

TEST_F(PlaybackTest, IncompleteFileThatWasGoneBackTo_IsFollowedByTheNext)
{
    playLoaded(FILE_TYPE_VIDEO, 2, true);
    EXPECT_TRUE(playback.previous(FILE_TYPE_VIDEO));
    load(FILE_TYPE_VIDEO);
    players.video().tell(2, endBy(kIncomplete));
    EXPECT_THAT(events.next(1), ElementsAre("25"));
    load(FILE_TYPE_VIDEO);
    EXPECT_EQ(playback.current(FILE_TYPE_VIDEO)->item.index, 2U);
}

TEST_F(PlaybackTest, PlayAllOfIncompleteFiles_EndsAfterEachHasBeenTried)
{
    for (const int mode : {PLAYER_MODE_REPEAT_ALL, PLAYER_MODE_SHUFFLE, PLAYER_MODE_REPEAT_ONE}) {
        playback.setMode(FILE_TYPE_VIDEO, mode);
        ASSERT_TRUE(play(FILE_TYPE_VIDEO, 0, true));
        for (int i = 0; i < 3; ++i) {
            load(FILE_TYPE_VIDEO);
            players.video().tell(loads[FILE_TYPE_VIDEO], endBy(kIncomplete));
            EXPECT_THAT(events.next(1), ElementsAre("25"));
        }
        EXPECT_THAT(events.next(1), ElementsAre("16"));
        EXPECT_TRUE(events.none());
    }
}

TEST_F(PlaybackTest, IncompleteFiles_CountTogetherWithThoseThatCannotBeLoaded)
{
    std::filesystem::remove(stick.path("b.mp4"));
    std::filesystem::remove(stick.path("c.mp4"));
    playback.setMode(FILE_TYPE_VIDEO, PLAYER_MODE_REPEAT_ALL);
    playLoaded(FILE_TYPE_VIDEO, 0, true);
    players.video().tell(1, endBy(kIncomplete));
    EXPECT_THAT(events.next(4), ElementsAre("25", StartsWith("14 "), StartsWith("14 "), "16"));
}

TEST_F(PlaybackTest, OneThatPlaysToItsEnd_KeepsTheRunGoing)
{
    playback.setMode(FILE_TYPE_VIDEO, PLAYER_MODE_REPEAT_ALL);
    playLoaded(FILE_TYPE_VIDEO, 0, true);
    for (std::size_t film = 1; film < 12; ++film) {
        const bool isComplete = film % 3 == 0;
        players.video().tell(film, endBy(isComplete ? kFinished : kIncomplete));
        events.next(isComplete ? 0 : 1);
        load(FILE_TYPE_VIDEO);
    }
    EXPECT_TRUE(playback.current(FILE_TYPE_VIDEO));
    EXPECT_TRUE(events.none());
}

TEST_F(PlaybackTest, PersonWhoStepsOn_MayTryEachAgain)
{
    playback.setMode(FILE_TYPE_VIDEO, PLAYER_MODE_REPEAT_ALL);
    playLoaded(FILE_TYPE_VIDEO, 0, true);
    for (std::size_t film = 1; film < 6; film += 2) {
        players.video().tell(film, endBy(kIncomplete));
        events.next(1);
        load(FILE_TYPE_VIDEO);
        EXPECT_TRUE(playback.next(FILE_TYPE_VIDEO));
        load(FILE_TYPE_VIDEO);
    }
    EXPECT_TRUE(playback.current(FILE_TYPE_VIDEO));
}

TEST_F(PlaybackTest, RemovedVolume_FailsWhatPlaysFromIt)
{
    playLoaded(FILE_TYPE_MUSIC, 3, true);
    playLoaded(FILE_TYPE_PHOTO, 5, true);
    playback.volumeRemoved("/elsewhere");
    EXPECT_TRUE(events.none());
    playback.volumeRemoved(stick.path());
    EXPECT_THAT(events.next(2), ElementsAre("25", "25"));
    EXPECT_FALSE(playback.current());
}

TEST_F(PlaybackTest, VolumeRemovedWhileItLoads_FailsToLoad)
{
    ASSERT_TRUE(play(FILE_TYPE_VIDEO, 0, true));
    playback.volumeRemoved(stick.path());
    EXPECT_THAT(events.next(1), ElementsAre(StartsWith("14 ")));
    EXPECT_TRUE(events.none());
}

TEST_F(PlaybackTest, Position_IsKeptAtStopAndResumed)
{
    playLoaded(FILE_TYPE_VIDEO, 0);
    players.video().tell(1, PlayerPosition{42.5});
    playback.stop(FILE_TYPE_VIDEO);
    EXPECT_EQ(positions->find(locate("a.mp4")), 42.5);
    EXPECT_TRUE(playback.firstOf({list, FILE_TYPE_VIDEO, 0})->resumes);
    EXPECT_FALSE(playback.firstOf({list, FILE_TYPE_VIDEO, 1})->resumes);
    EXPECT_EQ(playback.firstOf({list, FILE_TYPE_MUSIC, 0})->index, 3U);
    EXPECT_FALSE(playback.firstOf({list, FILE_TYPE_VIDEO, 4}));
    playback.play({list, FILE_TYPE_VIDEO, 0, false, true});
    EXPECT_EQ(players.video().loaded(2).start, 42.5);
    playback.play({list, FILE_TYPE_VIDEO, 0, false, false});
    EXPECT_EQ(players.video().loaded(3).start, 0);
}

TEST_F(PlaybackTest, Position_IsKeptWhateverEndsThePlaying)
{
    const auto expectKept = [this](double seconds, const std::function<void()>& end) {
        playLoaded(FILE_TYPE_VIDEO, 0);
        players.video().tell(loads[FILE_TYPE_VIDEO], PlayerPosition{seconds});
        end();
        EXPECT_EQ(positions->find(locate("a.mp4")), seconds);
        events.next(events.none() ? 0 : 2);
    };
    expectKept(20, [this] { playback.volumeRemoved(stick.path()); });
    expectKept(21, [this] { players.video().tell(loads[FILE_TYPE_VIDEO], endBy(PlayerEnded::Reason::ReadFailed)); });
    expectKept(22, [this] { players.video().tell(loads[FILE_TYPE_VIDEO], endBy(PlayerEnded::Reason::PlayerLost)); });
    expectKept(23, [this] { players.video().tell(loads[FILE_TYPE_VIDEO], endBy(kIncomplete)); });
}

TEST_F(PlaybackTest, Position_IsKeptWhenAnotherFollows)
{
    playLoaded(FILE_TYPE_VIDEO, 0);
    players.video().tell(1, PlayerPosition{23});
    playback.next(FILE_TYPE_VIDEO);
    EXPECT_EQ(positions->find(locate("a.mp4")), 23);
    load(FILE_TYPE_VIDEO);
    players.video().tell(2, PlayerPosition{24});
    play(FILE_TYPE_VIDEO, 2);
    EXPECT_EQ(positions->find(locate("b.mp4")), 24);
    EXPECT_FALSE(positions->find(locate("c.mp4")));
}

TEST_F(PlaybackTest, PositionOfWhatPlays_IsThatOfNow)
{
    playLoaded(FILE_TYPE_VIDEO, 0);
    players.video().tell(1, PlayerPosition{42});
    EXPECT_TRUE(playback.firstOf({list, FILE_TYPE_VIDEO, 0})->resumes);
    players.video().tell(1, PlayerPosition{44});
    playback.play({list, FILE_TYPE_VIDEO, 0, false, true});
    EXPECT_EQ(players.video().loaded(2).start, 44);
}

TEST_F(PlaybackTest, Pause_KeepsThePosition)
{
    playLoaded(FILE_TYPE_VIDEO, 0);
    players.video().tell(1, PlayerPosition{42});
    playback.playOrPause(FILE_TYPE_VIDEO, false);
    EXPECT_EQ(positions->find(locate("a.mp4")), 42);
}

TEST_F(PlaybackTest, EndOfTheFilm_ForgetsItsPosition)
{
    positions->note(locate("a.mp4"), 50, 100);
    playLoaded(FILE_TYPE_VIDEO, 0);
    players.video().tell(1, endBy(kFinished));
    EXPECT_THAT(events.next(1), ElementsAre("16"));
    EXPECT_FALSE(positions->find(locate("a.mp4")));
}

TEST_F(PlaybackTest, ForgetPositions_ForgetsAll)
{
    positions->note(locate("a.mp4"), 50, 100);
    playback.forgetPositions();
    EXPECT_FALSE(positions->find(locate("a.mp4")));
}

TEST_F(PlaybackTest, Music_HasNoPosition)
{
    playLoaded(FILE_TYPE_MUSIC, 3);
    players.music().tell(1, PlayerPosition{42});
    playback.stop(FILE_TYPE_MUSIC);
    EXPECT_FALSE(positions->find(locate("d.mp3")));
}

TEST_F(PlaybackTest, Options_AreTakenForWhatPlaysAndWhatFollows)
{
    PlayerOptions options;
    options.subtitleScale = 1.5;
    options.turn = 90;
    options.audioTrack = 2;
    EXPECT_TRUE(playback.changeOptions(FILE_TYPE_VIDEO, [&options](PlayerOptions& changed, const MediaFacts* facts) {
        changed = options;
        return facts == nullptr;
    }));
    EXPECT_EQ(playback.options(FILE_TYPE_VIDEO), options);
    EXPECT_FALSE(players.made(FILE_TYPE_VIDEO));
    ASSERT_TRUE(play(FILE_TYPE_VIDEO, 0));
    EXPECT_EQ(players.video().loaded(1).options.subtitleScale, 1.5);
    EXPECT_EQ(players.video().loaded(1).options.turn, 0); // was meant for another medium
    EXPECT_EQ(players.video().loaded(1).options.audioTrack, 0);
    playback.changeOptions(FILE_TYPE_VIDEO, [](PlayerOptions& changed, const MediaFacts*) {
        changed.subtitlePosition = 7;
        return true;
    });
    EXPECT_EQ(players.video().options().back().subtitlePosition, 7);
}

TEST_F(PlaybackTest, FactsThatChange_AreKnown)
{
    playLoaded(FILE_TYPE_VIDEO, 0);
    PlayerFactsChanged changed;
    changed.facts.audioTrack = 2;
    players.video().tell(1, changed);
    EXPECT_EQ(playback.current(FILE_TYPE_VIDEO)->facts.audioTrack, 2);
    EXPECT_TRUE(events.none());
    changed.facts.audioUnsupported = true;
    changed.facts.audio.codec = "odd";
    players.video().tell(1, changed);
    players.video().tell(1, changed);
    EXPECT_THAT(events.next(1), ElementsAre("15 {\"codec\":\"odd\",\"path\":\"" + stick.path("a.mp4") + "\"}"));
    EXPECT_TRUE(events.none());
}

TEST_F(PlaybackTest, Current_IsWhatBeganLast)
{
    EXPECT_FALSE(playback.current());
    playLoaded(FILE_TYPE_MUSIC, 3);
    EXPECT_EQ(playback.current()->item.kind, FILE_TYPE_MUSIC);
    playLoaded(FILE_TYPE_PHOTO, 5);
    EXPECT_EQ(playback.current()->item.kind, FILE_TYPE_PHOTO);
    playback.stop(FILE_TYPE_PHOTO);
    EXPECT_EQ(playback.current()->item.kind, FILE_TYPE_MUSIC);
}

TEST_F(PlaybackTest, Frame_IsOfWhatTheScreenShows)
{
    const auto frameIsThere = [this] {
        bool there = false;
        playback.takeFrame(64, 36, [&there](const ScreenFrame& frame) { there = frame.pixels != nullptr; });
        return there;
    };
    EXPECT_FALSE(frameIsThere());
    playLoaded(FILE_TYPE_PHOTO, 5);
    EXPECT_TRUE(frameIsThere());
}

TEST_F(PlaybackTest, Frame_IsTheVideosThenThePhotosThenTheMusics)
{
    const auto frameComesFrom = [this](FileType kind) {
        playback.takeFrame(160, 90, [](ScreenFrame) {});
        return players.callsOf(kind).back() == "frame";
    };
    playLoaded(FILE_TYPE_MUSIC, 3);
    EXPECT_TRUE(frameComesFrom(FILE_TYPE_MUSIC));
    playLoaded(FILE_TYPE_PHOTO, 5); // with the music behind it
    EXPECT_TRUE(frameComesFrom(FILE_TYPE_PHOTO));
    EXPECT_EQ(players.callsOf(FILE_TYPE_MUSIC).size(), 3U);
    playback.stop(FILE_TYPE_PHOTO);
    events.next(1);
    EXPECT_TRUE(frameComesFrom(FILE_TYPE_MUSIC));
    playback.play({list, FILE_TYPE_VIDEO, 0}); // which stops the music
    events.next(1);
    load(FILE_TYPE_VIDEO);
    EXPECT_TRUE(frameComesFrom(FILE_TYPE_VIDEO));
}

TEST_F(PlaybackTest, KeyOfAWindow_IsPassedOn)
{
    ASSERT_TRUE(play(FILE_TYPE_VIDEO, 0));
    players.video().tell(1, PlayerKey{"SPACE"});
    EXPECT_THAT(keys.sofar(), ElementsAre("SPACE"));
}

class ImpatientPlaybackTest : public PlaybackTest {
protected:
    Playback impatient{
        opener, queue, positions, players.factory(), nullptr, {std::chrono::seconds(30), std::chrono::milliseconds(1)}};
};

TEST_F(ImpatientPlaybackTest, Position_IsKeptWhileItPlays)
{
    impatient.play({list, FILE_TYPE_VIDEO, 0});
    players.video().tell(1, filmOf(100));
    players.video().tell(1, PlayerPosition{33});
    EXPECT_TRUE(testsupport::becomes([this] { return positions->find(locate("a.mp4")) == 33; }));
}

TEST_F(ImpatientPlaybackTest, WoundOutOfAPause_IsKeptWhileItPlaysOn)
{
    impatient.play({list, FILE_TYPE_VIDEO, 0});
    players.video().tell(1, filmOf(100));
    impatient.playOrPause(FILE_TYPE_VIDEO, false);
    impatient.wind(FILE_TYPE_VIDEO, true);
    players.video().tell(1, PlayerPosition{33});
    EXPECT_TRUE(testsupport::becomes([this] { return positions->find(locate("a.mp4")) == 33; }));
}

TEST_F(ImpatientPlaybackTest, SlideShow_GoesOnByItselfAndEnds)
{
    impatient.setSlideInterval(std::chrono::seconds(0));
    impatient.play({list, FILE_TYPE_PHOTO, 5, true});
    players.photo().tell(1, PlayerLoaded());
    players.photo().tell(2, PlayerLoaded());
    EXPECT_THAT(events.next(5), ElementsAre(StartsWith("29 "), "33 f", StartsWith("29 "), "33 g", "34 6"));
}

TEST_F(ImpatientPlaybackTest, PausedSlideShow_Stays)
{
    impatient.setSlideInterval(std::chrono::seconds(3600));
    impatient.play({list, FILE_TYPE_PHOTO, 5, true});
    players.photo().tell(1, PlayerLoaded());
    EXPECT_TRUE(impatient.playOrPause(FILE_TYPE_PHOTO, false));
    impatient.setSlideInterval(std::chrono::seconds(0));
    EXPECT_THAT(events.next(3), ElementsAre(StartsWith("29 "), "33 f", "13 speed 0, no hdr"));
    EXPECT_TRUE(events.none());
    EXPECT_TRUE(impatient.playOrPause(FILE_TYPE_PHOTO, true));
    EXPECT_EQ(players.photo().loaded(2).type, FILE_TYPE_PHOTO);
}

TEST_F(ImpatientPlaybackTest, OtherInterval_CountsForThePhotoThatIsShown)
{
    impatient.setSlideInterval(std::chrono::seconds(3600));
    impatient.play({list, FILE_TYPE_PHOTO, 5, true});
    players.photo().tell(1, PlayerLoaded());
    impatient.setSlideInterval(std::chrono::seconds(0));
    EXPECT_EQ(players.photo().loaded(2).type, FILE_TYPE_PHOTO);
}

TEST_F(PlaybackTest, ManyInARow_WaitForTheirTurnAndTheLastPlays)
{
    constexpr std::uint64_t kPlays = 300;
    for (std::uint64_t i = 0; i < kPlays; ++i) {
        play(FILE_TYPE_VIDEO, i % 3);
    }
    EXPECT_TRUE(testsupport::becomes([this] { return players.video().lastLoaded() == kPlays; }));
    EXPECT_TRUE(events.none());
}

TEST_F(PlaybackTest, StickThatDoesNotAnswer_HoldsUpNobodyAndFailsToLoad)
{
    const testsupport::DeadFileSystem dead(stick.path());
    if (!dead.works()) {
        GTEST_SKIP() << "this machine mounts no file system of a test's own";
    }
    Playback impatient(opener, queue, positions, players.factory(), nullptr, {std::chrono::milliseconds(50), times.keep});
    for (int i = 0; i < 30; ++i) { // more than are opened at a time
        impatient.play({list, FILE_TYPE_VIDEO, 0});
        EXPECT_THAT(events.next(1), ElementsAre(testing::HasSubstr("does not answer")));
    }
    EXPECT_EQ(players.video().loads(), 0U);
}

TEST_F(PlaybackTest, StickThatDoesNotAnswer_LeavesOthersToPlayFrom)
{
    const testsupport::DeadFileSystem dead(stick.path());
    if (!dead.works()) {
        GTEST_SKIP() << "this machine mounts no file system of a test's own";
    }
    const testsupport::TemporaryDirectory healthy;
    healthy.makeFile("a.mp4");
    auto films = std::make_shared<std::vector<FolderFileInfo_s>>(1, list->front());
    films->front().path = healthy.path("a.mp4");
    const LocationOpener both{PathResolver({stick.path(), healthy.path()}), std::make_shared<ReadReporter>()};
    Playback two(both, queue, positions, players.factory(), nullptr, {std::chrono::milliseconds(50), times.keep});
    for (int i = 0; i < 5; ++i) { // one more than are opened at a time
        two.play({list, FILE_TYPE_VIDEO, 0});
        EXPECT_THAT(events.next(1), ElementsAre(testing::HasSubstr("does not answer")));
    }
    two.play({films, FILE_TYPE_VIDEO, 0});
    EXPECT_TRUE(players.video().loaded(1).fd);
}

} // namespace
} // namespace desktop
