// Playing as the plugin asks for it: which list a request means, and what the operations answer.

#include "desktop/boundary/DesktopMiddleware.h"

#include "platform/SocMiddleware.h"
#include "platform/SocMwEvents.h"

#include "tests/desktop/support/DeadFileSystem.h"
#include "tests/desktop/support/FakePlayers.h"
#include "tests/desktop/support/ServedFileSystem.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace desktop {
namespace {

testsupport::Gathered<int>* s_events = nullptr;

void gather(int id, void* /*data*/)
{
    s_events->add(id);
}

class PlayingTest : public testing::Test {
protected:
    PlayingTest()
    {
        folder.makeDirectory("sub");
        for (const char* file : {"1.jpg", "2.mp4", "3.mp3", "4.mp4", "5.jpg", "sub/a.mp4", "sub/b.mp4"}) {
            folder.makeFile(file);
        }
        s_events = &events;
        DesktopSettings settings;
        settings.sticks = {folder.path()};
        settings.players = players.factory();
        DesktopMiddleware::instance().open(settings);
        manager->setListener(&gather);
        DesktopMiddleware::instance().startEvents();
    }
    ~PlayingTest() override { DesktopMiddleware::instance().close(); }

    // The entry that plays, or -1 when the request is refused.
    int play(FileType type, unsigned int index, const std::string& path, bool playAll = false)
    {
        unsigned int current = 77;
        return manager->playMediaFile(type, index, current, playAll, false, path) == 0 ? static_cast<int>(current) : -1;
    }

    bool waitForEvent(int id)
    {
        return testsupport::becomes([&] {
            const auto all = events.sofar();
            return std::find(all.begin(), all.end(), id) != all.end();
        });
    }

    void changeTo(const std::string& directory)
    {
        ASSERT_EQ(browser.chdir(directory, 2), 0);
        ASSERT_TRUE(waitForEvent(SOCMW_MM_EVENT_FB_CHANGE_DIR_COMPLETED));
    }

    void show(const std::string& list)
    {
        std::vector<FolderFileInfo_s> entries;
        page_option page;
        page.dirpath = list;
        ASSERT_EQ(browser.getOnePageFileInfo(entries, page), 0);
    }

    void group(const std::string& directory)
    {
        events.clear();
        ASSERT_EQ(browser.groupFiles(directory, GROUP_TYPE_NONE), 0);
        ASSERT_TRUE(waitForEvent(SOCMW_MM_EVENT_GROUP_COMPLETED));
    }

    std::string playing(FileType type) { return DesktopMiddleware::instance().playback().current(type)->item.entry.name; }

    void expectPlays(FileType type, const std::string& name)
    {
        players.of(type).tell(++m_loads, PlayerLoaded());
        EXPECT_EQ(playing(type), name);
    }

    testsupport::TemporaryDirectory folder;
    testsupport::Gathered<int> events;
    testsupport::FakePlayers players;
    std::shared_ptr<SocMwStorageUsbMgr> manager = SocMiddleware::getInstance()->getStorageUsbMgr();
    FolderBrowser& browser = manager->m_folderBrowser;

private:
    std::size_t m_loads = 0;
};

TEST_F(PlayingTest, Directory_IsReadAndItsEntriesCounted)
{
    EXPECT_EQ(play(FILE_TYPE_VIDEO, 0, folder.path()), 2); // after the folder and a photo
    expectPlays(FILE_TYPE_VIDEO, "2.mp4");
    EXPECT_EQ(play(FILE_TYPE_VIDEO, 3, folder.path() + "/"), 4);
    expectPlays(FILE_TYPE_VIDEO, "4.mp4");
    EXPECT_EQ(play(FILE_TYPE_VIDEO, 1, folder.path("sub")), 1);
    expectPlays(FILE_TYPE_VIDEO, "b.mp4");
}

TEST_F(PlayingTest, NoList_IsRefused)
{
    EXPECT_EQ(play(FILE_TYPE_VIDEO, 0, ""), -1); // none has been shown
    EXPECT_EQ(play(FILE_TYPE_VIDEO, 0, folder.path("missing")), -1);
    EXPECT_EQ(play(FILE_TYPE_VIDEO, 0, "/etc"), -1);
    EXPECT_EQ(play(FILE_TYPE_VIDEO, 0, "Nobody"), -1);
    EXPECT_EQ(play(FILE_TYPE_MUSIC, 5, folder.path()), -1); // nothing of the type follows
}

TEST_F(PlayingTest, NoPath_MeansTheListShownLast)
{
    changeTo(folder.path("sub"));
    EXPECT_EQ(play(FILE_TYPE_VIDEO, 1, ""), 1);
    expectPlays(FILE_TYPE_VIDEO, "b.mp4");
    show(folder.path());
    EXPECT_EQ(play(FILE_TYPE_VIDEO, 1, ""), 2);
    expectPlays(FILE_TYPE_VIDEO, "2.mp4");
    std::vector<FolderFileInfo_s> entries;
    page_option page;
    page.type = 1; // the current list
    ASSERT_EQ(browser.getOnePageFileInfo(entries, page), 0);
    EXPECT_EQ(play(FILE_TYPE_VIDEO, 1, ""), 1);
    expectPlays(FILE_TYPE_VIDEO, "b.mp4");
}

TEST_F(PlayingTest, ChangeThatFails_LeavesTheListBeforeShown)
{
    changeTo(folder.path("sub"));
    ASSERT_EQ(browser.chdir(folder.path("missing"), 2), -1);
    EXPECT_EQ(play(FILE_TYPE_VIDEO, 1, ""), 1);
    expectPlays(FILE_TYPE_VIDEO, "b.mp4");
}

TEST_F(PlayingTest, SortedPhotos_AreCountedInTheirOrderUntilAnotherListIsShown)
{
    changeTo(folder.path());
    std::vector<FolderFileInfo_s> photos;
    ASSERT_EQ(manager->photoSort(0, false, photos), 0);
    EXPECT_EQ(play(FILE_TYPE_PHOTO, 0, folder.path()), 0);
    expectPlays(FILE_TYPE_PHOTO, "5.jpg");
    EXPECT_EQ(play(FILE_TYPE_PHOTO, 1, ""), 1);
    expectPlays(FILE_TYPE_PHOTO, "1.jpg");
    std::vector<FolderFileInfo_s> entries;
    page_option page;
    page.type = 1;
    ASSERT_EQ(browser.getOnePageFileInfo(entries, page), 0);
    EXPECT_EQ(play(FILE_TYPE_PHOTO, 0, folder.path()), 1);
    expectPlays(FILE_TYPE_PHOTO, "1.jpg");
}

TEST_F(PlayingTest, Playlist_IsPlayedInItsOrder)
{
    std::ofstream(folder.path("sub/list.m3u")) << "b.mp4\n../2.mp4\na.mp4\n";
    EXPECT_EQ(play(FILE_TYPE_VIDEO, 1, folder.path("sub/list.m3u")), 1);
    expectPlays(FILE_TYPE_VIDEO, "2.mp4");
}

TEST_F(PlayingTest, Group_IsPlayedByItsKey)
{
    group(folder.path());
    EXPECT_EQ(play(FILE_TYPE_PHOTO, 1, "All"), 2);
    expectPlays(FILE_TYPE_PHOTO, "5.jpg");
    std::vector<FolderFileInfo_s> files;
    ASSERT_EQ(browser.getMediaFileInfo("All", files, 9, 0), 0); // the other way round
    EXPECT_EQ(play(FILE_TYPE_PHOTO, 0, ""), 0);
    expectPlays(FILE_TYPE_PHOTO, "5.jpg");
}

TEST_F(PlayingTest, GroupThatWasShown_KeepsItsOrderWhenAnotherIsAskedForTheOtherWayRound)
{
    group(folder.path());
    std::vector<FolderFileInfo_s> files;
    ASSERT_EQ(browser.getMediaFileInfo("All", files, 9, 1), 0);
    ASSERT_EQ(browser.getMediaFileInfo("another", files, 9, 0), -1);
    for (const char* const name : {"All", ""}) {
        EXPECT_EQ(play(FILE_TYPE_PHOTO, 0, name), 0);
        expectPlays(FILE_TYPE_PHOTO, "1.jpg");
    }
}

TEST_F(PlayingTest, GroupThatWasShown_IsThatOfTheLatestGrouping)
{
    group(folder.path());
    std::vector<FolderFileInfo_s> files;
    ASSERT_EQ(browser.getMediaFileInfo("All", files, 9, 1), 0);
    folder.makeFile("sub/z.jpg");
    group(folder.path("sub"));
    for (const char* const name : {"All", ""}) {
        EXPECT_EQ(play(FILE_TYPE_PHOTO, 0, name), 0);
        expectPlays(FILE_TYPE_PHOTO, "z.jpg");
    }
}

TEST_F(PlayingTest, SortedPhotos_KeepTheirOrderWhileAnotherFolderIsShown)
{
    changeTo(folder.path());
    std::vector<FolderFileInfo_s> photos;
    ASSERT_EQ(manager->photoSort(0, false, photos), 0);
    show(folder.path("sub"));
    EXPECT_EQ(play(FILE_TYPE_PHOTO, 0, folder.path()), 0);
    expectPlays(FILE_TYPE_PHOTO, "5.jpg");
    ASSERT_EQ(manager->clearMediaMap(folder.path()), 0);
    EXPECT_EQ(play(FILE_TYPE_PHOTO, 0, folder.path()), 1);
    expectPlays(FILE_TYPE_PHOTO, "1.jpg");
}

TEST_F(PlayingTest, Stop_TellsTheIndexOrRefuses)
{
    unsigned int index = 0;
    EXPECT_EQ(manager->stopMediaFile(FILE_TYPE_VIDEO, index), -1);
    ASSERT_EQ(play(FILE_TYPE_VIDEO, 0, folder.path()), 2);
    EXPECT_EQ(manager->stopMediaFile(FILE_TYPE_VIDEO, index), 0);
    EXPECT_EQ(index, 2U);
    EXPECT_EQ(manager->stopBackGroundMusicFile(index), -1);
    ASSERT_EQ(play(FILE_TYPE_MUSIC, 0, folder.path()), 3);
    EXPECT_EQ(manager->stopBackGroundMusicFile(index), 0);
    EXPECT_EQ(index, 3U);
}

TEST_F(PlayingTest, CloseAll_LeavesTheMusicWhenAsked)
{
    ASSERT_EQ(play(FILE_TYPE_MUSIC, 0, folder.path()), 3);
    unsigned int index = 0;
    EXPECT_EQ(manager->closeAllMMPlayer(true), 0);
    EXPECT_EQ(manager->stopBackGroundMusicFile(index), 0);
    ASSERT_EQ(play(FILE_TYPE_MUSIC, 0, folder.path()), 3);
    EXPECT_EQ(manager->closeAllMMPlayer(false), 0);
    EXPECT_EQ(manager->stopBackGroundMusicFile(index), -1);
}

TEST_F(PlayingTest, SecondBrowser_HasEventsOfItsOwn)
{
    unsigned int index = 0;
    EXPECT_EQ(manager->kiroPlayMediaFile(FILE_TYPE_VIDEO, 1, index, false, false, folder.path("sub")), 0);
    EXPECT_EQ(index, 1U);
    players.video().tell(1, PlayerLoaded());
    EXPECT_TRUE(waitForEvent(SOCMW_MM_EVENT_MOVIE_INFO_UPDATE_SECOND));
}

TEST_F(PlayingTest, Resume_IsToldAndUsedAndForgotten)
{
    ASSERT_EQ(play(FILE_TYPE_VIDEO, 0, folder.path()), 2);
    PlayerLoaded loaded;
    loaded.facts.duration = 100;
    players.video().tell(1, loaded);
    players.video().tell(1, PlayerPosition{50});
    unsigned int index = 0;
    bool resume = false;
    EXPECT_EQ(manager->closeAllMMPlayer(false), 0);
    EXPECT_EQ(manager->isresumePlayMediaFile(FILE_TYPE_VIDEO, 0, index, false, resume, folder.path()), 0);
    EXPECT_EQ(index, 2U);
    EXPECT_TRUE(resume);
    EXPECT_EQ(manager->playMediaFile(FILE_TYPE_VIDEO, 0, index, false, true, folder.path()), 0);
    EXPECT_EQ(players.video().loaded(2).start, 50);
    EXPECT_EQ(manager->videoClearResume(), 0);
    EXPECT_EQ(manager->isresumePlayMediaFile(FILE_TYPE_VIDEO, 0, index, false, resume, folder.path()), 0);
    EXPECT_FALSE(resume);
    EXPECT_EQ(manager->isresumePlayMediaFile(FILE_TYPE_VIDEO, 0, index, false, resume, folder.path("missing")), -1);
}

TEST_F(PlayingTest, Keys_WantSomethingThatPlays)
{
    EXPECT_EQ(manager->keyPlayPause(FILE_TYPE_VIDEO, true), -1);
    EXPECT_EQ(manager->keyPlayNext(FILE_TYPE_VIDEO), -1);
    EXPECT_EQ(manager->keyPlayPrev(FILE_TYPE_VIDEO), -1);
    EXPECT_EQ(manager->keyFastForward(FILE_TYPE_VIDEO), -1);
    EXPECT_EQ(manager->keyFastRewind(FILE_TYPE_VIDEO), -1);
    ASSERT_EQ(play(FILE_TYPE_VIDEO, 0, folder.path()), 2);
    players.video().tell(1, PlayerLoaded());
    EXPECT_EQ(manager->keyPlayPause(FILE_TYPE_VIDEO, false), 0);
    EXPECT_EQ(manager->keyFastForward(FILE_TYPE_VIDEO), 0);
    EXPECT_EQ(manager->keyFastRewind(FILE_TYPE_VIDEO), 0);
    EXPECT_THAT(players.callsOf(FILE_TYPE_VIDEO),
                testing::ElementsAre("unload", "load from 0 with 0 subtitles", "pause", "unpause", "wind 2", "wind -2"));
    EXPECT_EQ(manager->keyPlayNext(FILE_TYPE_VIDEO), 0);
    EXPECT_EQ(manager->keyPlayPrev(FILE_TYPE_VIDEO), 0);
    EXPECT_EQ(manager->keyPlayPrev(FILE_TYPE_VIDEO), -1);
}

TEST_F(PlayingTest, Modes_AreSetAndTold)
{
    EXPECT_EQ(manager->setPlayerMode(FILE_TYPE_MUSIC, PLAYER_MODE_SHUFFLE), 0);
    EXPECT_EQ(manager->setPlayerMode(FILE_TYPE_MUSIC, static_cast<PlayerModeE>(4)), -1);
    EXPECT_EQ(manager->setPlayerMode(FILE_TYPE_PHOTO, PLAYER_MODE_REPEAT_ALL), 0);
    Json::Value all;
    EXPECT_EQ(manager->getPlayMode(all, 0), 0);
    EXPECT_EQ(all["photo"], 1);
    EXPECT_EQ(all["video"], 0);
    EXPECT_EQ(all["music"], 3);
    Json::Value one;
    EXPECT_EQ(manager->getPlayMode(one, FILE_TYPE_MUSIC), 0);
    EXPECT_EQ(one["mode"], 3);
    EXPECT_EQ(manager->getPlayMode(one, 9), -1);
}

TEST_F(PlayingTest, RepeatMode_IsThatOfVideoAndMusic)
{
    Json::Value modes;
    for (const int mode : {0, 1, 2}) {
        EXPECT_EQ(manager->repeatModeSet(mode), 0);
        ASSERT_EQ(manager->getPlayMode(modes, 0), 0);
        EXPECT_EQ(modes["video"], mode);
        EXPECT_EQ(modes["music"], mode);
        EXPECT_EQ(modes["photo"], 0);
    }
    EXPECT_EQ(manager->repeatModeSet(3), -1);
    EXPECT_EQ(manager->repeatModeSet(-1), -1);
}

TEST_F(PlayingTest, RemovedStick_FailsWhatPlays)
{
    ASSERT_EQ(play(FILE_TYPE_VIDEO, 0, folder.path()), 2);
    players.video().tell(1, PlayerLoaded());
    std::filesystem::rename(folder.path(), folder.path() + ".away");
    EXPECT_TRUE(waitForEvent(SOCMW_MM_EVENT_PLAY_FAILED));
    std::filesystem::rename(folder.path() + ".away", folder.path());
}

TEST_F(PlayingTest, KnownListOnAStickThatDoesNotAnswer_IsPlayedFromAtOnce)
{
    changeTo(folder.path());
    const testsupport::DeadFileSystem dead(folder.path());
    if (!dead.works()) {
        GTEST_SKIP() << "this machine mounts no file system of a test's own";
    }
    for (const std::string& path : {std::string(), folder.path()}) {
        EXPECT_EQ(play(FILE_TYPE_VIDEO, 0, path), 2); // whereas a look at the stick fails after three seconds
    }
}

TEST_F(PlayingTest, PlaylistShownBefore_IsPlayedFromWithoutALookAtItsStick)
{
    folder.makeDirectory("other");
    testsupport::ServedFileSystem stick(folder.path("other"), "#EXTM3U\n../4.mp4\n../2.mp4\n");
    if (!stick.works()) {
        GTEST_SKIP() << "this machine mounts no file system of a test's own";
    }
    show(stick.file());
    show(folder.path("sub"));
    stick.fallSilent();
    const int opens = stick.opens();
    EXPECT_EQ(play(FILE_TYPE_VIDEO, 1, stick.file()), 1);
    expectPlays(FILE_TYPE_VIDEO, "2.mp4");
    EXPECT_EQ(stick.opens(), opens);
}

class PlayingFromATimeTest : public PlayingTest {
protected:
    PlayingFromATimeTest()
    {
        DesktopMiddleware::instance().close();
        DesktopSettings settings;
        settings.sticks = {folder.path()};
        settings.players = players.factory();
        settings.startAt = 12.5;
        DesktopMiddleware::instance().open(settings);
    }
};

TEST_F(PlayingFromATimeTest, FirstMedium_BeginsThere)
{
    ASSERT_EQ(play(FILE_TYPE_VIDEO, 9, folder.path()), -1);
    ASSERT_EQ(play(FILE_TYPE_VIDEO, 0, folder.path()), 2);
    EXPECT_EQ(players.video().loaded(1).start, 12.5);
    ASSERT_EQ(play(FILE_TYPE_VIDEO, 0, folder.path()), 2);
    EXPECT_EQ(players.video().loaded(2).start, 0);
}

} // namespace
} // namespace desktop
