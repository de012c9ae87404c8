#include "desktop/browsing/FolderListings.h"

#include "platform/SocMwEvents.h"

#include "tests/desktop/support/ManyFiles.h"
#include "tests/desktop/support/Waiting.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace desktop {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

using Names = std::vector<std::string>;

testsupport::Gathered<Names>* s_results = nullptr;

void gather(int id, void* data)
{
    EXPECT_EQ(id, SOCMW_MM_EVENT_FB_CHANGE_DIR_COMPLETED);
    Names names;
    for (const FolderFileInfo_s& entry : *static_cast<std::vector<FolderFileInfo_s>*>(data)) {
        names.push_back(entry.name);
    }
    s_results->add(names);
}

class FolderListingsTest : public testing::Test {
protected:
    FolderListingsTest()
    {
        s_results = &results;
        events.setListener(&gather);
        folder.makeDirectory("a");
        folder.makeFile("a/one.jpg");
        folder.makeDirectory("b");
        folder.makeFile("b/two.jpg");
        folder.makeDirectory("big"); // big enough to report progress
        testsupport::makeManyFiles(folder.path("big"), 600);
    }
    ~FolderListingsTest() override { events.stop(); }

    ReadObserver observer()
    {
        ReadObserver received;
        received.progress = [this](const std::string&, std::size_t) {
            ++reads;
            reading.open();
            if (holdReading) {
                goOnReading.wait();
            }
        };
        received.failed = [this](const std::string& path, const std::string& reason) { failures.add(path + ": " + reason); };
        return received;
    }

    testsupport::TemporaryDirectory folder;
    testsupport::Gathered<Names> results;
    testsupport::Gathered<std::string> failures;
    testsupport::Door reading;
    testsupport::Door goOnReading;
    std::atomic<bool> holdReading{false};
    std::atomic<int> reads{0}; ///< of the big folder, which reports progress once
    EventQueue events;
    const PathResolver resolver{{folder.path()}};
    FolderListings listings{LocationOpener(resolver, std::make_shared<ReadReporter>(observer())), events};
};

TEST_F(FolderListingsTest, Change_EndsInTheEntries)
{
    events.start();
    EXPECT_TRUE(listings.change(folder.path("a"), 4));
    EXPECT_THAT(results.waitFor(1), ElementsAre(Names{"one.jpg"}));
    EXPECT_EQ(listings.itemsPerPage(), 4);
    ASSERT_NE(listings.current(), nullptr);
    EXPECT_EQ(listings.current()->entries[0].path, folder.path("a/one.jpg"));
}

TEST_F(FolderListingsTest, ChangeToNoFolder_IsRefusedAtOnceWithItsReason)
{
    EXPECT_FALSE(listings.change(folder.path("missing"), 9));
    EXPECT_FALSE(listings.change(folder.path("a/one.jpg"), 9));
    EXPECT_FALSE(listings.change("/etc", 9));
    EXPECT_FALSE(listings.change("", 9));
    EXPECT_THAT(failures.sofar(),
                ElementsAre(folder.path("missing") + ": No such file or directory",
                            folder.path("a/one.jpg") + ": Not a directory", "/etc: Not on a stick", ": Not on a stick"));
    events.start();
    events.stop();
    EXPECT_TRUE(results.sofar().empty());
}

TEST_F(FolderListingsTest, FolderThatGoesWhileItIsRead_IsAnsweredEmptyAfterItsReason)
{
    events.start();
    holdReading = true;
    ASSERT_TRUE(listings.change(folder.path("big"), 9));
    ASSERT_TRUE(reading.wait());
    fs::remove_all(folder.path("big"));
    goOnReading.open();
    EXPECT_THAT(results.waitFor(1), ElementsAre(Names{}));
    EXPECT_THAT(failures.sofar(), ElementsAre(folder.path("big") + ": No such file or directory"));
    EXPECT_EQ(listings.current(), nullptr);
}

TEST_F(FolderListingsTest, NewerChange_StopsTheOlderWhichRaisesNothing)
{
    events.start();
    holdReading = true;
    ASSERT_TRUE(listings.change(folder.path("big"), 9));
    ASSERT_TRUE(reading.wait());
    ASSERT_TRUE(listings.change(folder.path("b"), 9));
    goOnReading.open();
    EXPECT_THAT(results.waitFor(1), ElementsAre(Names{"two.jpg"}));
    events.stop();
    EXPECT_EQ(results.sofar().size(), 1U);
}

TEST_F(FolderListingsTest, ChangeReadButOvertakenBeforeItsDelivery_RaisesNothing)
{
    ASSERT_TRUE(listings.change(folder.path("a"), 9));
    ASSERT_NE(listings.of(folder.path("a")), nullptr); // it has been read
    ASSERT_TRUE(listings.change(folder.path("b"), 9));
    events.start();
    EXPECT_THAT(results.waitFor(1), ElementsAre(Names{"two.jpg"}));
    events.stop();
    EXPECT_EQ(results.sofar().size(), 1U);
}

TEST_F(FolderListingsTest, Cancel_StopsTheRunningReadWhichRaisesNothing)
{
    events.start();
    holdReading = true;
    ASSERT_TRUE(listings.change(folder.path("big"), 9));
    ASSERT_TRUE(reading.wait());
    listings.cancel();
    goOnReading.open();
    holdReading = false;
    ASSERT_TRUE(listings.change(folder.path("a"), 9));
    EXPECT_THAT(results.waitFor(1), ElementsAre(Names{"one.jpg"}));
    events.stop();
    EXPECT_EQ(results.sofar().size(), 1U);
    EXPECT_TRUE(failures.sofar().empty());
}

TEST_F(FolderListingsTest, PageOfAFolderWhoseChangeHasBeenCancelled_IsReadAnew)
{
    holdReading = true;
    ASSERT_TRUE(listings.change(folder.path("big"), 9));
    ASSERT_TRUE(reading.wait());
    listings.cancel();
    holdReading = false;
    const ListingPointer page = listings.of(folder.path("big"));
    goOnReading.open(); // only now the cancelled read can end
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page->entries.size(), 600U);
}

TEST_F(FolderListingsTest, CancelOfAChangeThatIsReadButNotDelivered_RaisesNothing)
{
    EXPECT_TRUE(listings.change(folder.path("a"), 9));
    EXPECT_TRUE(testsupport::becomes([this] { return listings.current() != nullptr; }));
    listings.cancel();
    events.start();
    events.stop();
    EXPECT_TRUE(results.sofar().empty());
    EXPECT_NE(listings.current(), nullptr);
}

TEST_F(FolderListingsTest, Cancel_LeavesWhatHasBeenRead)
{
    ASSERT_TRUE(listings.change(folder.path("a"), 9));
    ASSERT_NE(listings.of(folder.path("a")), nullptr);
    listings.cancel();
    EXPECT_NE(listings.current(), nullptr);
}

TEST_F(FolderListingsTest, PageOfTheFolderThatIsBeingRead_WaitsForThatRead)
{
    ASSERT_TRUE(listings.change(folder.path("big"), 9));
    const ListingPointer page = listings.of(folder.path("big"));
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page, listings.current());
}

// The first page gives up after its timeout.
TEST_F(FolderListingsTest, PageOfAFolderThatAnotherPageStillReads_WaitsForThatRead)
{
    holdReading = true;
    EXPECT_EQ(listings.of(folder.path("big")), nullptr);
    goOnReading.open();
    ASSERT_NE(listings.of(folder.path("big")), nullptr);
    EXPECT_EQ(reads, 1);
}

TEST_F(FolderListingsTest, PageOfAnUnchangedFolder_ReadsNothingAnew)
{
    const ListingPointer first = listings.of(folder.path("a"));
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(listings.of(folder.path("a/")), first);
    folder.makeFile("a/three.jpg");
    const ListingPointer second = listings.of(folder.path("a"));
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->entries.size(), 2U);
}

TEST_F(FolderListingsTest, Forget_MakesTheNextPageReadAnew)
{
    const ListingPointer first = listings.of(folder.path("a"));
    EXPECT_TRUE(listings.forget(folder.path()));
    EXPECT_NE(listings.of(folder.path("a")), first);
    EXPECT_FALSE(listings.forget("/etc"));
}

TEST_F(FolderListingsTest, PageOfAFolderThatHasGone_FailsWithItsReason)
{
    ASSERT_NE(listings.of(folder.path("a")), nullptr);
    fs::remove_all(folder.path("a"));
    EXPECT_EQ(listings.of(folder.path("a")), nullptr);
    EXPECT_THAT(failures.sofar(), ElementsAre(folder.path("a") + ": No such file or directory"));
}

TEST_F(FolderListingsTest, DirectoryOf_IsSpelledAsTheChangeSpelledIt)
{
    const std::string spelling = folder.path("a") + "//";
    ASSERT_TRUE(listings.change(spelling, 9));
    ASSERT_NE(listings.of(spelling), nullptr);
    ASSERT_NE(listings.current(), nullptr);
    const std::string path = listings.current()->entries[0].path;
    EXPECT_EQ(path, folder.path("a/one.jpg"));
    EXPECT_EQ(listings.directoryOf(path), spelling);
    EXPECT_EQ(listings.directoryOf(folder.path("b/two.jpg")), folder.path("b"));
    EXPECT_EQ(listings.directoryOf("/top"), "/");
    EXPECT_EQ(listings.directoryOf("none"), "");
}

TEST_F(FolderListingsTest, EncodedPath_OpensTheFolderWithThoseBytes)
{
    folder.makeDirectory("caf\xE9");
    folder.makeFile("caf\xE9/x.jpg");
    const ListingPointer listing = listings.of(folder.path("caf\\xE9"));
    ASSERT_NE(listing, nullptr);
    EXPECT_EQ(listing->entries[0].path, folder.path("caf\\xE9/x.jpg"));
}

TEST_F(FolderListingsTest, StickPulledWhileAFolderIsRead_EndsTheReadAtOnceThoughItsThreadIsKept)
{
    events.start();
    holdReading = true;
    EXPECT_TRUE(listings.change(folder.path("big"), 9));
    ASSERT_TRUE(reading.wait());
    listings.volumeRemoved("/another stick");
    EXPECT_TRUE(results.sofar().empty());
    listings.volumeRemoved(folder.path());
    EXPECT_THAT(results.waitFor(1), ElementsAre(Names{}));
    EXPECT_THAT(failures.sofar(), ElementsAre(folder.path("big") + ": The stick has been pulled"));
    EXPECT_EQ(listings.current(), nullptr);
    goOnReading.open();
}

TEST_F(FolderListingsTest, StickThatHasGone_IsRefused)
{
    events.start();
    EXPECT_TRUE(listings.change(folder.path("a"), 9));
    results.waitFor(1);
    resolver.setVolumes({});
    EXPECT_FALSE(listings.change(folder.path("a"), 9));
    EXPECT_THAT(failures.sofar(), ElementsAre(folder.path("a") + ": Not on a stick"));
}

} // namespace
} // namespace desktop
