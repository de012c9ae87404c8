// The managers as the plugin sees them.

#include "desktop/boundary/DesktopMiddleware.h"

#include "platform/SocMiddleware.h"
#include "platform/SocMwEvents.h"

#include "tests/desktop/support/Waiting.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace desktop {
namespace {

testsupport::Gathered<int>* s_events = nullptr;

void gather(int id, void* /*data*/)
{
    s_events->add(id);
}

class BoundaryTest : public testing::Test {
protected:
    BoundaryTest()
    {
        folder.makeDirectory("sub");
        for (const char* file : {"1.jpg", "2.mp4", "3.mp3", "4.txt"}) {
            folder.makeFile(file);
        }
        s_events = &events;
        DesktopSettings settings;
        settings.sticks = {folder.path() + "/"};
        DesktopMiddleware::instance().open(settings);
        manager->setListener(&gather);
    }
    ~BoundaryTest() override { DesktopMiddleware::instance().close(); }

    void changeAndWait(const std::string& directory, int itemsPerPage)
    {
        ASSERT_EQ(browser.chdir(directory, itemsPerPage), 0);
        DesktopMiddleware::instance().startEvents();
        ASSERT_EQ(events.waitFor(4).back(), SOCMW_MM_EVENT_FB_CHANGE_DIR_COMPLETED); // the stick's own three came before
    }

    int page(int type, int pageid, std::vector<FolderFileInfo_s>& entries, const std::string& directory = "")
    {
        page_option option;
        option.type = type;
        option.pageid = pageid;
        option.dirpath = directory;
        return browser.getOnePageFileInfo(entries, option);
    }

    testsupport::TemporaryDirectory folder;
    testsupport::Gathered<int> events;
    std::shared_ptr<SocMwStorageUsbMgr> manager = SocMiddleware::getInstance()->getStorageUsbMgr();
    FolderBrowser& browser = manager->m_folderBrowser;
};

TEST_F(BoundaryTest, Start_AnnouncesTheStickInOrder)
{
    DesktopMiddleware::instance().startEvents();
    EXPECT_THAT(events.waitFor(3), testing::ElementsAre(0, 1, 3));
}

TEST_F(BoundaryTest, EnterMmBrowser_TellsTheSticksOrNoServers)
{
    Json::Value session;
    EXPECT_EQ(manager->enterMmBrowser(session, 0), 0);
    EXPECT_EQ(session["source"], "USB");
    EXPECT_EQ(session["devcount"], 1);
    EXPECT_EQ(session["devlist"][0]["path"], folder.path());
    Json::Value servers;
    EXPECT_EQ(manager->enterMmBrowser(servers, 2), 0);
    EXPECT_EQ(servers["source"], "DLNA");
    EXPECT_EQ(servers["devcount"], 0);
    EXPECT_EQ(servers["devlist"], Json::Value(Json::arrayValue));
}

TEST_F(BoundaryTest, PageOfTheCurrentList_HasTheSizeOfTheLatestChange)
{
    std::vector<FolderFileInfo_s> entries;
    EXPECT_EQ(page(1, 0, entries), -1); // no folder has been read
    changeAndWait(folder.path(), 2);
    EXPECT_EQ(page(1, 2, entries), 0);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].name, "4.txt");
    EXPECT_EQ(page(1, 3, entries), 0);
    EXPECT_TRUE(entries.empty());
}

TEST_F(BoundaryTest, PageOfADirectory_IsReadOnTheSpot)
{
    std::vector<FolderFileInfo_s> entries;
    EXPECT_EQ(page(0, 0, entries, folder.path()), 0);
    EXPECT_EQ(entries.size(), 5U);
    EXPECT_EQ(page(0, 0, entries, folder.path("missing")), -1);
}

TEST_F(BoundaryTest, PageThatCannotBe_Fails)
{
    std::vector<FolderFileInfo_s> entries;
    EXPECT_EQ(page(0, -1, entries, folder.path()), -1);
    EXPECT_EQ(page(2, 0, entries, folder.path()), -1); // nothing has been grouped
    EXPECT_EQ(page(7, 0, entries, folder.path()), -1);
}

TEST_F(BoundaryTest, ChdirToNoFolder_Fails)
{
    EXPECT_EQ(browser.chdir(folder.path("1.jpg"), 9), -1);
    EXPECT_EQ(browser.chdir("/etc", 9), -1);
    EXPECT_EQ(browser.userCancel(), 0);
}

TEST_F(BoundaryTest, MediaFileInfo_TellsPathTypeAndTitle)
{
    media_file_info_s info;
    EXPECT_EQ(browser.getMediaFileInfo(folder.path("2.mp4"), info), 0);
    EXPECT_EQ(info.path, folder.path("2.mp4"));
    EXPECT_EQ(info.type, FILE_TYPE_VIDEO);
    EXPECT_EQ(info.title, "2");
    EXPECT_EQ(browser.getMediaFileInfo(folder.path("sub"), info), 0);
    EXPECT_EQ(info.type, FILE_TYPE_FOLDER);
    EXPECT_EQ(browser.getMediaFileInfo(folder.path("missing.mp4"), info), -1);
    EXPECT_EQ(browser.getMediaFileInfo("/etc/passwd", info), -1);
}

TEST_F(BoundaryTest, PathsTakenApart_GiveDirectoryAndName)
{
    EXPECT_EQ(browser.getFileDirPath("/usb/Music/a.m3u"), "/usb/Music");
    EXPECT_EQ(browser.splitFileName("/usb/Music/Road trip.2.m3u"), "Road trip.2");
    EXPECT_EQ(browser.splitFileName("/usb/Music/.m3u"), "");
    EXPECT_EQ(browser.splitFileName("/usb/Music/"), "");
}

TEST_F(BoundaryTest, ClearMediaMap_WantsAPathOnAStick)
{
    EXPECT_EQ(manager->clearMediaMap(folder.path("sub")), 0);
    EXPECT_NE(manager->clearMediaMap("/etc"), 0);
    EXPECT_EQ(manager->closeAllMMPlayer(false), 0);
}

TEST_F(BoundaryTest, Search_EndsInItsEvent)
{
    EXPECT_EQ(manager->searchFileType(folder.path(), FILE_TYPE_VIDEO, 9), 0);
    EXPECT_NE(manager->searchFileType("/etc", FILE_TYPE_VIDEO, 9), 0);
    EXPECT_EQ(manager->searchFileType(folder.path(), FILE_TYPE_VIDEO, 9), 0);
    DesktopMiddleware::instance().startEvents();
    EXPECT_THAT(events.waitFor(5), testing::ElementsAre(0, 1, 3, 6, 5));
}

TEST_F(BoundaryTest, Groups_AreListedOnceTheyAreMade)
{
    std::vector<FolderFileInfo_s> files;
    std::vector<media_file_info_s> media;
    EXPECT_NE(browser.getMediaFileInfo("All", files, 9), 0);
    EXPECT_NE(browser.groupFiles(folder.path(), GROUP_TYPE_MAX), 0);
    EXPECT_EQ(browser.groupFiles(folder.path(), GROUP_TYPE_NONE), 0);
    DesktopMiddleware::instance().startEvents();
    ASSERT_EQ(events.waitFor(4).back(), SOCMW_MM_EVENT_GROUP_COMPLETED);
    EXPECT_EQ(browser.getMediaFileInfo("All", files, 9), 0);
    EXPECT_EQ(files.size(), 2U);
    files.clear();
    EXPECT_EQ(browser.getMediaFileInfo("All", files, 1, 0), 0);
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(files[0].name, "3.mp3");
    files.clear();
    EXPECT_EQ(browser.getMediaFileInfo("All", files, media, 0), 0);
    ASSERT_EQ(media.size(), 2U);
    EXPECT_EQ(media[0].path, folder.path("1.jpg"));
    EXPECT_EQ(page(2, 0, files), -1); // of no key
}

TEST_F(BoundaryTest, PhotosOfTheCurrentFolder_AreSorted)
{
    std::vector<FolderFileInfo_s> photos;
    EXPECT_NE(manager->photoSort(0, true, photos), 0); // no folder has been read
    changeAndWait(folder.path(), 9);
    EXPECT_EQ(manager->photoSort(0, true, photos), 0);
    EXPECT_EQ(photos.size(), 1U);
    EXPECT_NE(manager->photoSort(4, true, photos), 0);
    EXPECT_NE(manager->photoSort(-1, true, photos), 0);
}

TEST_F(BoundaryTest, PageOfWhatIsNotThere_IsReportedOnce)
{
    for (const char* name : {"missing", "missing.m3u"}) {
        const std::string path = folder.path(name);
        std::vector<FolderFileInfo_s> entries;
        testing::internal::CaptureStdout();
        EXPECT_EQ(page(0, 0, entries, path), -1);
        const std::string log = testing::internal::GetCapturedStdout();
        const std::size_t first = log.find(path);
        ASSERT_NE(first, std::string::npos) << log;
        EXPECT_EQ(log.find(path, first + 1), std::string::npos) << log;
    }
}

TEST_F(BoundaryTest, Playlists_AreFoundAndPagedLikeFolders)
{
    std::ofstream(folder.path("sub/list.m3u")) << "../3.mp3\n../2.mp4\n";
    std::vector<std::pair<std::string, unsigned int>> lists;
    EXPECT_EQ(manager->getPlayListFiles(folder.path(), lists), 0);
    EXPECT_THAT(lists, testing::ElementsAre(testing::Pair(folder.path("sub/list.m3u"), FILE_TYPE_PLAYLIST)));
    EXPECT_NE(manager->getPlayListFiles("/etc", lists), 0);
    std::vector<FolderFileInfo_s> entries;
    EXPECT_EQ(page(0, 0, entries, folder.path("sub/list.m3u")), 0);
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].path, folder.path("3.mp3"));
    std::ofstream(folder.path("sub/list")) << "#EXTM3U\n../2.mp4\n"; // which its content alone shows
    EXPECT_EQ(page(0, 0, entries, folder.path("sub/list")), 0);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].path, folder.path("2.mp4"));
}

TEST_F(BoundaryTest, ScreenOff_IsRemembered)
{
    const auto system = SocMiddleware::getInstance()->getSystemMgr();
    int status = -1;
    EXPECT_EQ(system->ScreenOff(1), 0);
    EXPECT_EQ(system->getScreenStatus(&status), 0);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(system->ScreenOff(0), 0);
    EXPECT_EQ(system->getScreenStatus(&status), 0);
    EXPECT_EQ(status, 0);
}

TEST_F(BoundaryTest, RendererThatNobodyHasGivenAnything_HasNothingToPlay)
{
    std::string title;
    testing::internal::CaptureStdout();
    EXPECT_EQ(manager->dmrPlayPrepare(FILE_TYPE_VIDEO, title), -1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "[DESKTOP] no controller has given the renderer anything to play\r\n");
    EXPECT_EQ(title, "");
}

} // namespace
} // namespace desktop
