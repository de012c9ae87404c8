#include "desktop/thumbnails/Thumbnails.h"

#include "desktop/text/NameEncoding.h"

#include "platform/SocMwEvents.h"

#include "tests/desktop/support/DeadFileSystem.h"
#include "tests/desktop/support/DemoStick.h"
#include "tests/desktop/support/MediaReading.h"
#include "tests/desktop/support/Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace desktop {
namespace {

namespace fs = std::filesystem;
using testsupport::demoFile;

struct Received {
    int event = 0;
    int index = 0;
    bool ok = false;
    std::string path;
    std::string picture;
};

testsupport::Gathered<Received>* s_received = nullptr;

void gather(int event, void* data)
{
    const auto& ready = *static_cast<thumbnail_ready_s*>(data);
    s_received->add({event, ready.index, ready.ok != 0, ready.path, ready.filepath});
}

class ThumbnailsTest : public testing::Test {
protected:
    ThumbnailsTest()
    {
        s_received = &received;
        folder.makeDirectory("Mass");
        folder.makeDirectory("Sing");
        folder.makeDirectory("stick/folder.jpg");
        fs::copy_file(demoFile("Photos/2023/winter.jpg"), stick("a photo.jpg"));
        fs::copy_file(demoFile("Movies/counter.mp4"), stick("b video.mp4"));
        fs::copy_file(demoFile("Music/The Sines/01 First.mp3"), stick("c music.mp3"));
        folder.makeFile("stick/d broken.jpg");
        folder.makeFile("stick/e text.txt");
        events.setListener(&gather);
        events.start();
    }
    ~ThumbnailsTest() override
    {
        workers->stop();
        events.stop();
        reporter->disconnect();
    }

    std::string stick(const std::string& name = "") const { return folder.path(name.empty() ? "stick" : "stick/" + name); }

    EntryList listing(const std::vector<std::string>& names) const
    {
        auto listed = std::make_shared<std::vector<FolderFileInfo_s>>();
        for (const std::string& name : names) {
            FolderFileInfo_s entry;
            entry.path = stick(name);
            listed->push_back(entry);
        }
        return listed;
    }

    std::unique_ptr<Thumbnails> make(std::shared_ptr<MediaWorkers> by, const std::string& cache = "")
    {
        return std::make_unique<Thumbnails>(std::make_shared<ThumbnailMaker>(PathResolver({stick()}), std::move(by), cache),
                                            events, reporter, ThumbnailFolders{folder.path("Mass"), folder.path("Sing")});
    }

    /// Workers of which each hangs forever on what it is given.
    std::shared_ptr<MediaWorkers> hangingWorkers() const
    {
        return std::make_shared<MediaWorkers>(MediaWorkerSettings{hanging.program(), std::chrono::minutes(10)});
    }

    testsupport::TemporaryDirectory folder;
    testsupport::StandIn hanging{"echo x >> $0.log; exec sleep 1000"};
    testsupport::Gathered<Received> received;
    testsupport::Gathered<std::string> failures;
    const std::shared_ptr<ReadReporter> reporter = std::make_shared<ReadReporter>(ReadObserver{
        nullptr, [this](const std::string& path, const std::string& reason) { failures.add(path + ": " + reason); }});
    EventQueue events;
    std::shared_ptr<MediaWorkers> workers = std::make_shared<MediaWorkers>(MediaWorkerSettings{MEDIA_WORKER});
    std::unique_ptr<Thumbnails> thumbnails = make(workers);
    const std::vector<std::string> everything = {"folder.jpg",  "a photo.jpg",  "b video.mp4",
                                                 "c music.mp3", "d broken.jpg", "e text.txt"};
};

TEST_F(ThumbnailsTest, Range_EndsInOneEventForEachEntryInOrder)
{
    ASSERT_TRUE(thumbnails->append(listing(everything), 0, 8));
    ASSERT_TRUE(thumbnails->start(100, 100, FILE_TYPE_UNKNOWN));
    const auto all = received.waitFor(8);
    ASSERT_EQ(all.size(), 8U);
    for (int i = 0; i < 8; ++i) {
        const Received& one = all[static_cast<std::size_t>(i)];
        EXPECT_EQ(one.event, SOCMW_MM_EVENT_THUMBNAIL_DATA_READY);
        EXPECT_EQ(one.index, i);
        EXPECT_EQ(one.ok, i >= 1 && i <= 3) << i;
        EXPECT_EQ(one.path, i < 6 ? stick(everything[static_cast<std::size_t>(i)]) : "");
        EXPECT_EQ(testsupport::readJpeg(one.picture).width, one.ok ? 100 : 0);
        EXPECT_EQ(one.picture.empty(), !one.ok);
    }
    EXPECT_EQ(fs::path(all[1].picture).parent_path(), folder.path("Mass"));
}

TEST_F(ThumbnailsTest, RangeFromTheMiddle_CountsFromNought)
{
    ASSERT_TRUE(thumbnails->append(listing(everything), 2, 2));
    ASSERT_TRUE(thumbnails->start(100, 100, FILE_TYPE_UNKNOWN));
    const auto all = received.waitFor(2);
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].index, 0);
    EXPECT_EQ(all[0].path, stick("b video.mp4"));
    EXPECT_EQ(all[1].path, stick("c music.mp3"));
}

TEST_F(ThumbnailsTest, SingleFile_ComesToTheSecondStore)
{
    thumbnails->append(stick("b video.mp4"));
    ASSERT_TRUE(thumbnails->start(240, 360, FILE_TYPE_VIDEO));
    const auto all = received.waitFor(1);
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].event, SOCMW_MM_EVENT_THUMBNAIL_DATA_READY_SECOND);
    EXPECT_EQ(all[0].index, 0);
    EXPECT_TRUE(all[0].ok);
    EXPECT_EQ(fs::path(all[0].picture).parent_path(), folder.path("Sing"));
    EXPECT_EQ(testsupport::readJpeg(all[0].picture).height, 135);
}

TEST_F(ThumbnailsTest, FilesOfOtherKindsThanWanted_HaveNone)
{
    const struct {
        FileType type;
        std::vector<int> ok;
    } cases[] = {{FILE_TYPE_PHOTO, {1}},
                 {FILE_TYPE_PANORAMA, {1}},
                 {FILE_TYPE_VIDEO, {2}},
                 {FILE_TYPE_MUSIC, {3}},
                 {FILE_TYPE_OTHER, {1, 2, 3}}};
    for (const auto& sample : cases) {
        received.clear();
        ASSERT_TRUE(thumbnails->append(listing(everything), 0, 6));
        ASSERT_TRUE(thumbnails->start(50, 50, sample.type));
        std::vector<int> ok;
        for (const Received& one : received.waitFor(6)) {
            if (one.ok) {
                ok.push_back(one.index);
            }
        }
        EXPECT_EQ(ok, sample.ok) << sample.type;
    }
}

TEST_F(ThumbnailsTest, FileThatCannotBeRead_IsReportedBeforeItsEvent)
{
    for (const char* name : {"d broken.jpg", "missing.jpg"}) {
        received.clear();
        failures.clear();
        thumbnails->append(stick(name));
        ASSERT_TRUE(thumbnails->start(50, 50, FILE_TYPE_UNKNOWN));
        ASSERT_EQ(received.waitFor(1).size(), 1U);
        ASSERT_EQ(failures.sofar().size(), 1U);
        EXPECT_THAT(failures.sofar()[0], testing::StartsWith(stick(name) + ": "));
    }
    EXPECT_EQ(failures.sofar()[0], stick("missing.jpg") + ": No such file or directory");
}

TEST_F(ThumbnailsTest, FileOffTheStick_HasNone)
{
    for (const std::string& path :
         {demoFile("Photos/2023/winter.jpg"), stick("../Mass"), std::string("/dev/zero"), std::string("x")}) {
        received.clear();
        thumbnails->append(path);
        ASSERT_TRUE(thumbnails->start(50, 50, FILE_TYPE_UNKNOWN));
        const auto all = received.waitFor(1);
        ASSERT_EQ(all.size(), 1U);
        EXPECT_FALSE(all[0].ok) << path;
    }
}

TEST_F(ThumbnailsTest, PipeNamedAsAVideo_IsNotOpened)
{
    ASSERT_EQ(mkfifo(stick("pipe.mp4").c_str(), 0600), 0);
    thumbnails->append(stick("pipe.mp4"));
    ASSERT_TRUE(thumbnails->start(50, 50, FILE_TYPE_UNKNOWN));
    ASSERT_EQ(received.waitFor(1).size(), 1U);
    EXPECT_FALSE(received.sofar()[0].ok);
}

TEST_F(ThumbnailsTest, NameThatIsNotUtf8_IsFoundByItsText)
{
    fs::copy_file(demoFile("Photos/2023/winter.jpg"), stick("caf\xE9.jpg"));
    thumbnails->append(stick("caf\\xE9.jpg"));
    ASSERT_TRUE(thumbnails->start(50, 50, FILE_TYPE_UNKNOWN));
    ASSERT_EQ(received.waitFor(1).size(), 1U);
    EXPECT_TRUE(received.sofar()[0].ok);
    EXPECT_EQ(received.sofar()[0].path, stick("caf\\xE9.jpg"));
}

TEST_F(ThumbnailsTest, RequestThatIsNone_IsRefused)
{
    EXPECT_FALSE(thumbnails->append(nullptr, 0, 9));
    EXPECT_FALSE(thumbnails->append(listing(everything), -1, 9));
    EXPECT_FALSE(thumbnails->append(listing(everything), 0, 0));
    EXPECT_FALSE(thumbnails->append(listing(everything), 0, 100'001));
    EXPECT_FALSE(thumbnails->start(50, 50, FILE_TYPE_UNKNOWN)); // nothing has been appended
    for (const auto& [width, height] : {std::pair(0U, 50U), std::pair(50U, 0U)}) {
        thumbnails->append(stick("a photo.jpg"));
        EXPECT_FALSE(thumbnails->start(width, height, FILE_TYPE_UNKNOWN));
    }
    thumbnails->append(stick("a photo.jpg"));
    EXPECT_TRUE(thumbnails->start(~0U, ~0U, FILE_TYPE_UNKNOWN));
    ASSERT_EQ(received.waitFor(1).size(), 1U);
    EXPECT_EQ(testsupport::readJpeg(received.sofar()[0].picture).width, 1280);
}

TEST_F(ThumbnailsTest, Stop_AbandonsWhatIsBeingMadeAndTellsNothing)
{
    const auto slow = hangingWorkers();
    const auto stopping = make(slow);
    ASSERT_TRUE(stopping->append(listing(everything), 0, 6));
    ASSERT_TRUE(stopping->start(50, 50, FILE_TYPE_UNKNOWN));
    received.waitFor(1); // the folder's; the photo hangs
    stopping->stop();
    stopping->close(); // ends only when the hanging workers have been cancelled
    EXPECT_EQ(received.sofar().size(), 1U);
    thumbnails->append(stick("a photo.jpg"));
    thumbnails->stop();
    EXPECT_FALSE(thumbnails->start(50, 50, FILE_TYPE_UNKNOWN)); // the list is empty
}

TEST_F(ThumbnailsTest, NewRequest_EndsTheOneBefore)
{
    const auto hung = make(hangingWorkers());
    ASSERT_TRUE(hung->append(listing({"a photo.jpg", "b video.mp4"}), 0, 9));
    ASSERT_TRUE(hung->start(50, 50, FILE_TYPE_UNKNOWN));
    ASSERT_TRUE(hung->append(listing({"e text.txt", "folder.jpg"}), 0, 2));
    ASSERT_TRUE(hung->start(50, 50, FILE_TYPE_UNKNOWN));
    const auto all = received.waitFor(2);
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].path, stick("e text.txt"));
    EXPECT_EQ(all[1].path, stick("folder.jpg"));
}

TEST_F(ThumbnailsTest, StickPulled_EndsTheRequestAtOnce)
{
    const auto hung = make(hangingWorkers());
    ASSERT_TRUE(hung->append(listing({"e text.txt", "a photo.jpg", "b video.mp4", "c music.mp3"}), 0, 9));
    ASSERT_TRUE(hung->start(50, 50, FILE_TYPE_UNKNOWN));
    received.waitFor(1);
    hung->volumeRemoved("/another/stick");
    EXPECT_EQ(received.sofar().size(), 1U);
    hung->volumeRemoved(stick());
    const auto all = received.waitFor(9);
    ASSERT_EQ(all.size(), 9U);
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(all[i].index, static_cast<int>(i));
        EXPECT_FALSE(all[i].ok);
    }
}

// Waited for one by one, they would take minutes.
TEST_F(ThumbnailsTest, StickThatStalls_IsNotWaitedForByEachEntry)
{
    const testsupport::DeadFileSystem dead(stick("folder.jpg"));
    if (!dead.works()) {
        GTEST_SKIP() << "this machine mounts no file system of a program";
    }
    const auto entries = listing(std::vector<std::string>(100, "folder.jpg/a.jpg"));
    ASSERT_TRUE(thumbnails->append(entries, 0, 100));
    ASSERT_TRUE(thumbnails->start(100, 100, FILE_TYPE_UNKNOWN));
    const auto all = received.waitFor(100);
    ASSERT_EQ(all.size(), 100U);
    EXPECT_FALSE(all.back().ok);
    EXPECT_EQ(failures.sofar().back(), stick("folder.jpg/a.jpg") + ": The stick does not answer");
}

TEST_F(ThumbnailsTest, FolderForPicturesThatIsNotThere_LeavesThemOut)
{
    fs::remove(folder.path("Mass"));
    ASSERT_TRUE(thumbnails->append(listing({"a photo.jpg"}), 0, 1));
    ASSERT_TRUE(thumbnails->start(50, 50, FILE_TYPE_UNKNOWN));
    ASSERT_EQ(received.waitFor(1).size(), 1U);
    EXPECT_FALSE(received.sofar()[0].ok);
    EXPECT_FALSE(folder.has("Mass"));
}

TEST_F(ThumbnailsTest, FileThatHasNoPicture_LeavesNoFileBehind)
{
    ASSERT_TRUE(thumbnails->append(listing({"d broken.jpg"}), 0, 1));
    ASSERT_TRUE(thumbnails->start(50, 50, FILE_TYPE_UNKNOWN));
    ASSERT_EQ(received.waitFor(1).size(), 1U);
    EXPECT_TRUE(fs::is_empty(folder.path("Mass")));
}

class ThumbnailCacheTest : public ThumbnailsTest {
protected:
    /// Whether @p name has a picture in this size though no worker can make one.
    bool isKept(const std::string& name, unsigned int size)
    {
        received.clear();
        const auto idle = make(std::make_shared<MediaWorkers>(MediaWorkerSettings{"/nowhere/worker"}), folder.path("cache"));
        idle->append(stick(name));
        EXPECT_TRUE(idle->start(size, size, FILE_TYPE_UNKNOWN));
        const auto all = received.waitFor(1);
        return !all.empty() && all[0].ok && testsupport::readJpeg(all[0].picture).width == static_cast<int>(size);
    }

    void makeOnce(const std::string& name, unsigned int size)
    {
        received.clear();
        const auto keeping = make(workers, folder.path("cache"));
        keeping->append(stick(name));
        ASSERT_TRUE(keeping->start(size, size, FILE_TYPE_UNKNOWN));
        ASSERT_EQ(received.waitFor(1).size(), 1U);
    }
};

TEST_F(ThumbnailCacheTest, SecondTime_NeedsNoWorker)
{
    EXPECT_FALSE(isKept("a photo.jpg", 50));
    makeOnce("a photo.jpg", 50);
    EXPECT_TRUE(isKept("a photo.jpg", 50));
    EXPECT_FALSE(isKept("a photo.jpg", 60));
}

TEST_F(ThumbnailCacheTest, FileThatHasChanged_IsMadeAnew)
{
    makeOnce("a photo.jpg", 50);
    fs::last_write_time(stick("a photo.jpg"), fs::last_write_time(stick("a photo.jpg")) + std::chrono::seconds(1));
    EXPECT_FALSE(isKept("a photo.jpg", 50));
}

TEST_F(ThumbnailCacheTest, StickUnderAnotherName_FindsItsPicturesAgain)
{
    makeOnce("a photo.jpg", 50);
    fs::rename(stick(), folder.path("other"));
    received.clear();
    const auto idle = std::make_shared<MediaWorkers>(MediaWorkerSettings{"/nowhere/worker"});
    Thumbnails elsewhere(std::make_shared<ThumbnailMaker>(PathResolver({folder.path("other")}), idle, folder.path("cache")),
                         events, reporter, ThumbnailFolders{folder.path("Mass"), folder.path("Sing")});
    elsewhere.append(folder.path("other/a photo.jpg"));
    ASSERT_TRUE(elsewhere.start(50, 50, FILE_TYPE_UNKNOWN));
    ASSERT_EQ(received.waitFor(1).size(), 1U);
    EXPECT_TRUE(received.sofar()[0].ok);
}

TEST_F(ThumbnailCacheTest, FileThatCannotBeRead_KeepsNothing)
{
    makeOnce("d broken.jpg", 50);
    EXPECT_FALSE(fs::exists(folder.path("cache/thumbnails")));
}

} // namespace
} // namespace desktop
