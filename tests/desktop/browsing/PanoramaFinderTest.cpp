#include "desktop/browsing/PanoramaFinder.h"

#include "desktop/browsing/ListingReader.h"

#include "tests/desktop/support/MediaStick.h"
#include "tests/desktop/support/Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What lists show of a file.
struct Shown {
    std::string title;
    int type = 0;
    int isPhoto360 = 0;
};

bool operator==(const Shown& a, const Shown& b)
{
    return a.title == b.title && a.type == b.type && a.isPhoto360 == b.isPhoto360;
}

void PrintTo(const Shown& shown, std::ostream* out)
{
    *out << shown.title << " " << shown.type << " " << shown.isPhoto360;
}

class PanoramaFinderTest : public testing::Test {
protected:
    PanoramaFinderTest()
    {
        stick.write("1 song.mp3", "title=The Title");
        stick.write("2 around.jpg", "around\ntitle=Another title");
        stick.write("3 plain.jpg", "title=Another title");
        stick.write("4 empty.jpg", "");
    }

    std::vector<Shown> shown(PanoramaFinder& finder, const std::stop_token& cancelled = {})
    {
        OpenedFolder folder = stick.opener.folderAt(stick.folder.path());
        EXPECT_EQ(LocationOpener::open(folder), 0);
        listing = {};
        EXPECT_EQ(readListing(
                      std::move(folder), &finder, cancelled, [](std::size_t) {}, listing),
                  0);
        std::vector<Shown> entries;
        for (const FolderFileInfo_s& entry : listing.entries) {
            entries.push_back({entry.title, entry.type, entry.isPhoto360});
        }
        return entries;
    }

    /// Makes the reader wait for letRead.
    void holdReader()
    {
        stick.reader = std::make_shared<testsupport::FakeReader>([this](const std::string& content, FileType) {
            reading.open();
            letRead.wait();
            return testsupport::MediaStick::metadataIn(content);
        });
        stick.catalog = std::make_shared<MetadataCatalog>(stick.reader, "");
    }

    const std::vector<Shown> withPanorama = {{"1 song", FILE_TYPE_MUSIC, 0},
                                             {"2 around", FILE_TYPE_PANORAMA, 1},
                                             {"3 plain", FILE_TYPE_PHOTO, 0},
                                             {"4 empty", FILE_TYPE_PHOTO, 0}};
    const std::vector<Shown> withoutPanorama = {{"1 song", FILE_TYPE_MUSIC, 0},
                                                {"2 around", FILE_TYPE_PHOTO, 0},
                                                {"3 plain", FILE_TYPE_PHOTO, 0},
                                                {"4 empty", FILE_TYPE_PHOTO, 0}};
    testsupport::MediaStick stick;
    testsupport::Door reading;
    testsupport::Door letRead;
    Listing listing;
};

TEST_F(PanoramaFinderTest, FirstListing_ShowsPanoramasAndReadsPhotosAlone)
{
    PanoramaFinder finder(stick.catalog, testsupport::kDeadline);
    EXPECT_EQ(shown(finder), withPanorama);
    EXPECT_EQ(stick.reader->reads(), 2);
    EXPECT_EQ(listing.outdated, nullptr);
}

TEST_F(PanoramaFinderTest, SecondListing_IsTheSameAndReadsNothing)
{
    PanoramaFinder finder(stick.catalog, testsupport::kDeadline);
    shown(finder);
    EXPECT_EQ(shown(finder), withPanorama);
    EXPECT_EQ(stick.reader->reads(), 2);
}

TEST_F(PanoramaFinderTest, ListingAfterItsFilesWereDescribed_IsTheSame)
{
    PanoramaFinder finder(stick.catalog, testsupport::kDeadline);
    for (const char* name : {"1 song.mp3", "2 around.jpg", "3 plain.jpg"}) {
        media_file_info_s info;
        ASSERT_TRUE(stick.listings.describe(stick.folder.path(name), info));
    }
    EXPECT_EQ(shown(finder), withPanorama);
}

TEST_F(PanoramaFinderTest, PhotosThatTakeTooLong_AreReadInTheBackgroundForTheNextListing)
{
    holdReader();
    PanoramaFinder finder(stick.catalog, std::chrono::milliseconds(0));
    EXPECT_EQ(shown(finder), withoutPanorama);
    ASSERT_NE(listing.outdated, nullptr);
    EXPECT_FALSE(*listing.outdated);
    letRead.open();
    EXPECT_TRUE(testsupport::becomes([this] { return listing.outdated->load(); }));
    EXPECT_EQ(shown(finder), withPanorama);
    EXPECT_EQ(listing.outdated, nullptr);
    EXPECT_EQ(stick.reader->reads(), 2);
}

TEST_F(PanoramaFinderTest, ListingThatIsNotWantedAnyMore_WaitsForNoPhoto)
{
    holdReader();
    PanoramaFinder finder(stick.catalog, testsupport::kDeadline * 100);
    std::stop_source cancelled;
    std::thread user([&] {
        reading.wait();
        cancelled.request_stop();
    });
    EXPECT_EQ(shown(finder, cancelled.get_token()), withoutPanorama);
    letRead.open();
    user.join();
}

TEST_F(PanoramaFinderTest, Cancelled_ReadsNoMoreInTheBackground)
{
    for (int i = 0; i < 200; ++i) {
        stick.write("photo " + std::to_string(i) + ".jpg", "title=x");
    }
    holdReader();
    PanoramaFinder finder(stick.catalog, std::chrono::milliseconds(0));
    shown(finder);
    ASSERT_TRUE(reading.wait());
    finder.cancel();
    letRead.open();
    EXPECT_TRUE(testsupport::becomes([this] { return listing.outdated->load(); }));
    EXPECT_LT(stick.reader->reads(), 200);
}

TEST_F(PanoramaFinderTest, WithoutCatalog_NoPhotoIsOne)
{
    PanoramaFinder finder(nullptr, testsupport::kDeadline);
    EXPECT_EQ(shown(finder), withoutPanorama);
}

} // namespace
} // namespace desktop
