#include "desktop/browsing/ListingCache.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

Listing listingOf(int entries)
{
    Listing listing;
    for (int i = 0; i < entries; ++i) {
        FolderFileInfo_s entry;
        entry.id = i;
        listing.entries.push_back(entry);
    }
    return listing;
}

ListingPointer listingAt(const std::string& directory, std::int64_t modified, std::size_t entries = 1)
{
    auto listing = std::make_shared<Listing>(listingOf(static_cast<int>(entries)));
    listing->directory = directory;
    listing->stamp.modified = modified;
    return listing;
}

FolderStamp modifiedAt(std::int64_t modified)
{
    FolderStamp stamp;
    stamp.modified = modified;
    return stamp;
}

TEST(ListingCache_Find, Outdated_FindsNothing)
{
    ListingCache cache;
    const ListingPointer listing = listingAt("/s/a", 1);
    const auto outdated = std::make_shared<std::atomic<bool>>(false);
    listing->outdated = outdated;
    cache.keep(listing);
    EXPECT_EQ(cache.find("/s/a", modifiedAt(1)), listing);
    *outdated = true;
    EXPECT_EQ(cache.find("/s/a", modifiedAt(1)), nullptr);
}

TEST(ListingCache_Find, FolderChangedSince_FindsNothing)
{
    ListingCache cache;
    cache.keep(listingAt("/s/a", 1));
    EXPECT_NE(cache.find("/s/a", modifiedAt(1)), nullptr);
    EXPECT_EQ(cache.find("/s/a", modifiedAt(2)), nullptr);
    EXPECT_EQ(cache.find("/s", modifiedAt(1)), nullptr);
}

TEST(ListingCache_Keep, SameDirectoryAgain_ReplacesTheOlder)
{
    ListingCache cache;
    cache.keep(listingAt("/s/a", 1));
    cache.keep(listingAt("/s/a", 2));
    EXPECT_EQ(cache.find("/s/a", modifiedAt(1)), nullptr);
    EXPECT_NE(cache.find("/s/a", modifiedAt(2)), nullptr);
}

TEST(ListingCache_Keep, MoreEntriesThanTheBound_DropsTheOldestButNeverTheNewest)
{
    ListingCache cache;
    cache.keep(listingAt("/s/old", 1, 150'000));
    cache.keep(listingAt("/s/new", 1, 150'000));
    EXPECT_EQ(cache.find("/s/old", modifiedAt(1)), nullptr);
    EXPECT_NE(cache.find("/s/new", modifiedAt(1)), nullptr);
    cache.keep(listingAt("/s/huge", 1, 300'000));
    EXPECT_NE(cache.find("/s/huge", modifiedAt(1)), nullptr);
}

TEST(ListingCache_DropBelow, Folder_TakesWhatIsBelowAndNotItsNamesake)
{
    ListingCache cache;
    for (const char* directory : {"/s/a", "/s/a/b", "/s/ab", "/s/caf\\xE9"}) {
        cache.keep(listingAt(directory, 1));
    }
    cache.dropBelow("/s/a");
    EXPECT_EQ(cache.find("/s/a", modifiedAt(1)), nullptr);
    EXPECT_EQ(cache.find("/s/a/b", modifiedAt(1)), nullptr);
    EXPECT_NE(cache.find("/s/ab", modifiedAt(1)), nullptr);
    cache.dropBelow("/s/caf\xE9");
    EXPECT_EQ(cache.find("/s/caf\\xE9", modifiedAt(1)), nullptr);
}

} // namespace
} // namespace desktop
