#include "desktop/browsing/ListingTask.h"

#include "tests/desktop/support/ManyFiles.h"
#include "tests/desktop/support/Waiting.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

namespace desktop {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

class ListingReaderTest : public testing::Test {
protected:
    OpenedFolder folderAt(const std::string& below = "") const { return opener.folderAt(folder.path(below)); }

    OpenedFolder open(const std::string& below = "") const
    {
        OpenedFolder opened = folderAt(below);
        EXPECT_EQ(LocationOpener::open(opened), 0);
        return opened;
    }

    int readInto(Listing& listing, OpenedFolder opened) const
    {
        return readListing(
            std::move(opened), nullptr, goOn, [](std::size_t) {}, listing);
    }

    Listing read(const std::string& below = "") const
    {
        Listing listing;
        EXPECT_EQ(readInto(listing, open(below)), 0);
        return listing;
    }

    FolderFileInfo_s entry(const std::string& name) const
    {
        for (const FolderFileInfo_s& found : read().entries) {
            if (found.name == name) {
                return found;
            }
        }
        ADD_FAILURE() << "no entry " << name;
        return {};
    }

    void write(const std::string& name, const std::string& bytes) const { std::ofstream(folder.path(name)) << bytes; }

    testsupport::TemporaryDirectory folder;
    const LocationOpener opener{PathResolver({folder.path()}), std::make_shared<ReadReporter>()};
    const std::stop_token goOn{};
};

std::vector<std::string> namesOf(const Listing& listing)
{
    std::vector<std::string> names;
    for (const FolderFileInfo_s& entry : listing.entries) {
        names.push_back(entry.name);
    }
    return names;
}

TEST_F(ListingReaderTest, Entries_AreFoldersFirstThenInNaturalOrder)
{
    for (const char* file : {"b10.jpg", "B2.jpg", "a.jpg", ".hidden"}) {
        folder.makeFile(file);
    }
    folder.makeDirectory("z");
    folder.makeDirectory("folder 10");
    folder.makeDirectory("folder 9");
    const Listing listing = read();
    EXPECT_THAT(namesOf(listing), ElementsAre("folder 9", "folder 10", "z", ".hidden", "a.jpg", "B2.jpg", "b10.jpg"));
    EXPECT_EQ(listing.entries[3].id, 3);
}

TEST_F(ListingReaderTest, File_IsDescribed)
{
    write("Song one.mp3", "12345");
    const FolderFileInfo_s song = entry("Song one.mp3");
    EXPECT_EQ(song.type, FILE_TYPE_MUSIC);
    EXPECT_EQ(song.size, 5U);
    EXPECT_EQ(song.path, folder.path("Song one.mp3"));
    EXPECT_EQ(song.title, "Song one");
    EXPECT_EQ(song.isPhoto360, 0);
    EXPECT_THAT(song.ctime, testing::MatchesRegex("20..-..-.. ..:..:.."));
}

TEST_F(ListingReaderTest, FileBeyond4Gigabytes_KeepsItsSize)
{
    write("long.mkv", "");
    fs::resize_file(folder.path("long.mkv"), 5'000'000'000);
    EXPECT_EQ(entry("long.mkv").size, 5'000'000'000U);
}

TEST_F(ListingReaderTest, ExtensionThatSaysNothing_LeavesTheTypeToTheContent)
{
    write("picture", "\xFF\xD8\xFF\xE0");
    write("notes", "hello");
    write("empty", "");
    write("lying.mp3", "\xFF\xD8\xFF\xE0");
    EXPECT_EQ(entry("picture").type, FILE_TYPE_PHOTO);
    EXPECT_EQ(entry("notes").type, FILE_TYPE_OTHER);
    EXPECT_EQ(entry("empty").type, FILE_TYPE_OTHER);
    EXPECT_EQ(entry("lying.mp3").type, FILE_TYPE_MUSIC);
}

TEST_F(ListingReaderTest, PipeAndDanglingLink_AreShownClosed)
{
    ASSERT_EQ(mkfifo(folder.path("pipe.mkv").c_str(), 0600), 0);
    fs::create_symlink("nowhere.mkv", folder.path("dangling.mkv"));
    for (const char* name : {"pipe.mkv", "dangling.mkv"}) {
        EXPECT_EQ(entry(name).type, FILE_TYPE_UNKNOWN) << name;
        EXPECT_EQ(entry(name).size, 0U) << name;
    }
}

TEST_F(ListingReaderTest, LinkThatLeavesTheStick_IsShownClosed)
{
    fs::create_symlink("/etc", folder.path("etc"));
    fs::create_symlink("../..", folder.path("up"));
    fs::create_symlink("/etc/passwd", folder.path("passwd.mp3"));
    for (const char* name : {"etc", "up", "passwd.mp3"}) {
        EXPECT_EQ(entry(name).type, FILE_TYPE_UNKNOWN) << name;
        EXPECT_EQ(entry(name).size, 0U) << name;
    }
}

TEST_F(ListingReaderTest, LinkWithinTheStick_IsShownAsItsTarget)
{
    write("song.mp3", "12345");
    folder.makeDirectory("folder");
    fs::create_symlink("song.mp3", folder.path("link.mp3"));
    fs::create_symlink("song.mp3", folder.path("link"));
    fs::create_symlink("folder", folder.path("to folder"));
    EXPECT_EQ(entry("link.mp3").type, FILE_TYPE_MUSIC);
    EXPECT_EQ(entry("link.mp3").size, 5U);
    EXPECT_EQ(entry("link").type, FILE_TYPE_OTHER); // "12345" is of no medium
    EXPECT_EQ(entry("to folder").type, FILE_TYPE_FOLDER);
}

TEST_F(ListingReaderTest, LinksThatLeadBack_AreShownClosed)
{
    folder.makeDirectory("a");
    folder.makeDirectory("b");
    fs::create_symlink(".", folder.path("self"));
    fs::create_symlink("../b", folder.path("a/to b"));
    fs::create_symlink("../a", folder.path("b/to a"));
    EXPECT_EQ(entry("self").type, FILE_TYPE_UNKNOWN);
    EXPECT_EQ(read("a").entries[0].type, FILE_TYPE_FOLDER);
    EXPECT_EQ(read("a/to b").entries[0].type, FILE_TYPE_UNKNOWN); // a lies on this path already
}

TEST_F(ListingReaderTest, NameThatIsNoUtf8_IsShownEncodedAndLeadsBackToTheFile)
{
    write("caf\xE9.mp3", "12345");
    const FolderFileInfo_s song = entry("caf\\xE9.mp3");
    EXPECT_EQ(song.path, folder.path("caf\\xE9.mp3"));
    EXPECT_EQ(song.title, "caf\\xE9");
    EXPECT_EQ(song.size, 5U);
}

TEST_F(ListingReaderTest, FolderRemovedWhileItIsOpen_FailsWithNoSuchFolder)
{
    folder.makeDirectory("gone");
    OpenedFolder opened = open("gone");
    fs::remove(folder.path("gone"));
    Listing listing;
    EXPECT_EQ(readInto(listing, std::move(opened)), ENOENT);
}

TEST_F(ListingReaderTest, FolderRemovedWhileItIsRead_FailsWithNoSuchFolder)
{
    testsupport::makeManyFiles(folder.path(), 600);
    const auto removeAll = [this](std::size_t) { fs::remove_all(folder.path()); };
    Listing listing;
    EXPECT_EQ(readListing(open(), nullptr, goOn, removeAll, listing), ENOENT);
}

TEST_F(ListingReaderTest, Cancelled_StopsAtTheNextEntry)
{
    testsupport::makeManyFiles(folder.path(), 1100);
    std::stop_source cancelled;
    std::vector<std::size_t> received;
    Listing listing;
    const auto cancel = [&](std::size_t entries) {
        received.push_back(entries);
        cancelled.request_stop();
    };
    EXPECT_EQ(readListing(open(), nullptr, cancelled.get_token(), cancel, listing), ECANCELED);
    EXPECT_THAT(received, ElementsAre(512U));
    EXPECT_EQ(listing.entries.size(), 512U);
}

TEST_F(ListingReaderTest, ReadTwice_GivesTheSameListing)
{
    testsupport::makeManyFiles(folder.path(), 10);
    const Listing first = read();
    const Listing second = read();
    EXPECT_EQ(namesOf(first), namesOf(second));
    EXPECT_TRUE(first.stamp == second.stamp);
    folder.makeFile("another.jpg");
    EXPECT_FALSE(read().stamp == first.stamp);
}

class ListingTaskTest : public ListingReaderTest {
protected:
    ListingTaskTest()
    {
        folder.makeDirectory("big");
        testsupport::makeManyFiles(folder.path("big"), 600);
        context.progress = [this](std::size_t) {
            reading.open();
            goOnReading.wait();
        };
        context.known = [this](const FolderStamp&) { return known; };
        context.done = [this](const ListingTask::Result&) { ++done; };
    }

    testsupport::Door reading;
    testsupport::Door goOnReading;
    ListingPointer known;
    std::atomic<int> done{0};
    ListingTask::Context context;
};

TEST_F(ListingTaskTest, CancelledRead_NeverTellsThatItIsDone)
{
    {
        ListingTask task(folderAt("big"), context);
        ASSERT_TRUE(reading.wait());
        EXPECT_FALSE(task.finished());
        task.cancel();
        goOnReading.open();
        EXPECT_TRUE(task.waitFor(testsupport::kDeadline));
        EXPECT_EQ(task.listing(), nullptr);
    }
    EXPECT_EQ(done, 0);
}

TEST_F(ListingTaskTest, FolderThatIsNotThere_IsRefusedWithItsReasonAndNotDone)
{
    const ListingTask task(folderAt("missing"), context);
    EXPECT_EQ(task.waitUntilOpened(testsupport::kDeadline), ENOENT);
    EXPECT_TRUE(task.waitFor(testsupport::kDeadline));
    EXPECT_EQ(done, 0);
}

TEST_F(ListingTaskTest, FolderThatIsKnown_IsNotReadAgain)
{
    known = std::make_shared<Listing>();
    const ListingTask task(folderAt("big"), context);
    EXPECT_EQ(task.waitUntilOpened(testsupport::kDeadline), 0);
    EXPECT_TRUE(task.waitFor(testsupport::kDeadline));
    EXPECT_EQ(task.listing(), known);
    EXPECT_EQ(done, 1);
}

TEST_F(ListingTaskTest, Failed_EndsAtOnceThoughItsThreadIsKept)
{
    ListingTask task(folderAt("big"), context);
    ASSERT_TRUE(reading.wait());
    task.fail(ENODEV);
    EXPECT_TRUE(task.finished());
    EXPECT_FALSE(task.threadEnded());
    EXPECT_EQ(done, 1);
    goOnReading.open();
}

} // namespace
} // namespace desktop
