#include "desktop/browsing/PhotoSort.h"

#include "tests/desktop/support/MediaStick.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace desktop {
namespace {

using testing::ElementsAre;

class PhotoSortTest : public testing::Test {
protected:
    PhotoSortTest()
    {
        stick.write("10.jpg", "taken=2020-01-01 00:00:00");
        stick.write("9.PNG", "taken=2024-05-17 12:30:00 ");
        stick.write("a.gif", "taken=1999-01-01 00:00:00   ");
        stick.write("b.jpg", "none");
        stick.write("film.mkv", "x");
        stick.folder.makeDirectory("folder.jpg");
    }

    std::vector<std::string> sorted(PhotoOrder order, bool ascending)
    {
        const ListingPointer listing = stick.listings.of(stick.folder.path());
        std::vector<FolderFileInfo_s> photos(1);
        EXPECT_TRUE(sortPhotos(*listing, {stick.opener, stick.catalog}, order, ascending, photos));
        std::vector<std::string> names;
        for (const FolderFileInfo_s& photo : photos) {
            names.push_back(photo.name);
        }
        return names;
    }

    testsupport::MediaStick stick;
};

TEST_F(PhotoSortTest, ByName_IsNatural)
{
    EXPECT_THAT(sorted(PhotoOrder::Name, true), ElementsAre("9.PNG", "10.jpg", "a.gif", "b.jpg"));
    EXPECT_THAT(sorted(PhotoOrder::Name, false), ElementsAre("b.jpg", "a.gif", "10.jpg", "9.PNG"));
}

TEST_F(PhotoSortTest, Panorama_IsSortedAmongThePhotos)
{
    stick.write("9b.jpg", "around");
    EXPECT_THAT(sorted(PhotoOrder::Name, true), ElementsAre("9.PNG", "9b.jpg", "10.jpg", "a.gif", "b.jpg"));
}

TEST_F(PhotoSortTest, ByDate_TakesWhenTheFileWasMadeForPhotosThatDoNotTell)
{
    EXPECT_THAT(sorted(PhotoOrder::Taken, true), ElementsAre("a.gif", "10.jpg", "9.PNG", "b.jpg"));
    EXPECT_THAT(sorted(PhotoOrder::Taken, false), ElementsAre("b.jpg", "9.PNG", "10.jpg", "a.gif"));
    EXPECT_EQ(stick.reader->reads(), 4);
}

TEST_F(PhotoSortTest, BySize_IsByNumber)
{
    EXPECT_THAT(sorted(PhotoOrder::Size, true), ElementsAre("b.jpg", "10.jpg", "9.PNG", "a.gif"));
}

TEST_F(PhotoSortTest, ByType_IsByExtensionThenName)
{
    EXPECT_THAT(sorted(PhotoOrder::Type, true), ElementsAre("a.gif", "10.jpg", "b.jpg", "9.PNG"));
}

TEST_F(PhotoSortTest, FolderThatHasGone_FailsWhenItMustBeRead)
{
    const ListingPointer listing = stick.listings.of(stick.folder.path());
    std::filesystem::remove_all(stick.folder.path());
    std::vector<FolderFileInfo_s> photos;
    EXPECT_FALSE(sortPhotos(*listing, {stick.opener, stick.catalog}, PhotoOrder::Taken, true, photos));
    EXPECT_TRUE(sortPhotos(*listing, {stick.opener, stick.catalog}, PhotoOrder::Size, true, photos));
}

} // namespace
} // namespace desktop
