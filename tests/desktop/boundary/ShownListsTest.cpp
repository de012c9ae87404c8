#include "desktop/boundary/ShownLists.h"

#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

class ShownListsTest : public testing::Test {
protected:
    static EntryList listOf(std::size_t entries) { return std::make_shared<std::vector<FolderFileInfo_s>>(entries); }

    /// A folder that is there, and empty.
    std::string numbered(int number)
    {
        const std::string name = std::to_string(number);
        stick.makeDirectory(name);
        return stick.path(name);
    }

    std::size_t sizeToPlay(const std::string& name)
    {
        const EntryList list = lists.toPlay(name);
        return list != nullptr ? list->size() : 0;
    }

    testsupport::TemporaryDirectory stick;
    PathResolver resolver{{}};
    LocationOpener volumes{resolver, std::make_shared<ReadReporter>()};
    EventQueue events;
    std::shared_ptr<MetadataCatalog> catalog;
    FolderListings listings{volumes, events};
    Grouping grouping{volumes, catalog, events};
    Playlists playlists{volumes, nullptr, nullptr};
    ShownLists lists{volumes, listings, grouping, playlists};
};

TEST_F(ShownListsTest, ListsShownBefore_AreKnown)
{
    lists.show("/stick/a/", listOf(1));
    lists.show("/stick/b", listOf(2));
    EXPECT_EQ(sizeToPlay("/stick/a"), 1);
    EXPECT_EQ(sizeToPlay("/stick/b/"), 2);
    EXPECT_EQ(sizeToPlay(""), 2);
    lists.show("/stick/a", listOf(3));
    EXPECT_EQ(sizeToPlay("/stick/a"), 3);
    EXPECT_EQ(sizeToPlay("/stick/b"), 2);
    EXPECT_EQ(sizeToPlay(""), 3);
}

TEST_F(ShownListsTest, TooManyLists_ForgetTheOneShownLongestAgo)
{
    resolver.setVolumes({{stick.path(), "id"}});
    for (int i = 0; i < 33; ++i) {
        lists.show(numbered(i), listOf(7));
    }
    EXPECT_EQ(sizeToPlay(stick.path("0")), 0); // it has been read anew
    EXPECT_EQ(sizeToPlay(stick.path("1")), 7);
}

TEST_F(ShownListsTest, TooManyEntries_ForgetTheListShownLongestAgo)
{
    resolver.setVolumes({{stick.path(), "id"}});
    lists.show(numbered(0), listOf(1));
    lists.show(numbered(1), listOf(2));
    lists.show(numbered(2), listOf(200'000 - 2));
    EXPECT_EQ(sizeToPlay(stick.path("0")), 0);
    EXPECT_EQ(sizeToPlay(stick.path("1")), 2);
    lists.show(numbered(3), listOf(200'001));
    EXPECT_EQ(sizeToPlay(stick.path("2")), 0);
    EXPECT_EQ(sizeToPlay(stick.path("3")), 200'001);
}

TEST_F(ShownListsTest, AnotherStickInItsPlace_HasNoneOfItsLists)
{
    resolver.setVolumes({{stick.path(), "one"}});
    lists.show(numbered(0), listOf(7));
    resolver.setVolumes({});
    EXPECT_EQ(sizeToPlay(stick.path("0")), 7); // which tells better what has happened than a list that is not there
    resolver.setVolumes({{stick.path(), "two"}});
    EXPECT_EQ(sizeToPlay(stick.path("0")), 0);
    EXPECT_EQ(sizeToPlay(""), 0);
    resolver.setVolumes({{stick.path(), "one"}});
    EXPECT_EQ(sizeToPlay(stick.path("0")), 7);
}

TEST_F(ShownListsTest, AnotherStickWithSuchADirectory_IsRead)
{
    resolver.setVolumes({{stick.path(), "one"}});
    const std::string directory = numbered(0);
    stick.makeFile("0/a.mp4");
    lists.read(directory);
    lists.showCurrent(directory);
    stick.makeFile("0/b.mp4");
    EXPECT_EQ(sizeToPlay(directory), 1); // as it was shown
    resolver.setVolumes({{stick.path(), "two"}});
    EXPECT_EQ(sizeToPlay(directory), 2);
}

TEST_F(ShownListsTest, ForgottenFolder_TakesTheListsBelowButTheOneShownLast)
{
    resolver.setVolumes({{stick.path(), "id"}});
    lists.forgetBelow(stick.path());
    lists.show(numbered(0), listOf(7));
    lists.show(numbered(10), listOf(8));
    lists.show(numbered(1), listOf(9));
    lists.forgetBelow(stick.path("1") + "/");
    EXPECT_EQ(sizeToPlay(stick.path("10")), 8);
    lists.forgetBelow(stick.path());
    EXPECT_EQ(sizeToPlay(stick.path("0")), 0);
    EXPECT_EQ(sizeToPlay(stick.path("10")), 0);
    EXPECT_EQ(sizeToPlay(""), 9);
}

} // namespace
} // namespace desktop
