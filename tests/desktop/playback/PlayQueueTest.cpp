#include "desktop/playback/PlayQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace desktop {
namespace {

using testing::ElementsAre;

EntryList listOf(const std::vector<int>& types)
{
    auto list = std::make_shared<std::vector<FolderFileInfo_s>>();
    for (const int type : types) {
        FolderFileInfo_s entry;
        entry.type = type;
        list->push_back(entry);
    }
    return list;
}

// A folder, three videos with other kinds among them, and a song at the end.
EntryList mixedList()
{
    return listOf({FILE_TYPE_FOLDER, FILE_TYPE_VIDEO, FILE_TYPE_MUSIC, FILE_TYPE_VIDEO, FILE_TYPE_PHOTO, FILE_TYPE_VIDEO,
                   FILE_TYPE_MUSIC});
}

PlayQueue queueFrom(std::size_t index, FileType kind = FILE_TYPE_VIDEO)
{
    return PlayQueue::from(mixedList(), kind, index).value();
}

std::vector<std::size_t> playOn(PlayQueue queue, PlayerModeE mode, int count)
{
    std::vector<std::size_t> played = {queue.index()};
    for (int i = 0; i < count && queue.advance(mode); ++i) {
        played.push_back(queue.index());
    }
    return played;
}

TEST(PlayQueue, EntryOfAnotherKind_GivesTheNextOfTheKind)
{
    EXPECT_EQ(queueFrom(1).index(), 1U);
    EXPECT_EQ(queueFrom(0).index(), 1U);
    EXPECT_EQ(queueFrom(2).index(), 3U);
    EXPECT_EQ(queueFrom(3).entry().type, FILE_TYPE_VIDEO);
    EXPECT_EQ(queueFrom(0).size(), 3U);
}

TEST(PlayQueue, NothingOfTheKindFromThereOn_IsNoQueue)
{
    EXPECT_FALSE(PlayQueue::from(mixedList(), FILE_TYPE_VIDEO, 6));
    EXPECT_FALSE(PlayQueue::from(mixedList(), FILE_TYPE_VIDEO, 4294967295U));
    EXPECT_FALSE(PlayQueue::from(listOf({}), FILE_TYPE_PHOTO, 0));
}

TEST(PlayQueue, PanoramasArePhotos)
{
    const auto queue = PlayQueue::from(listOf({FILE_TYPE_PANORAMA, FILE_TYPE_PHOTO}), FILE_TYPE_PHOTO, 0);
    ASSERT_TRUE(queue);
    EXPECT_EQ(queue->size(), 2U);
}

TEST(PlayQueue, Advance_GoesOnByTheMode)
{
    EXPECT_THAT(playOn(queueFrom(3), PLAYER_MODE_SEQUENCE, 9), ElementsAre(3, 5));
    EXPECT_THAT(playOn(queueFrom(3), PLAYER_MODE_REPEAT_ALL, 4), ElementsAre(3, 5, 1, 3, 5));
    EXPECT_THAT(playOn(queueFrom(3), PLAYER_MODE_REPEAT_ONE, 3), ElementsAre(3, 3, 3, 3));
}

TEST(PlayQueue, Keys_LeaveWhatIsRepeated)
{
    PlayQueue queue = queueFrom(5);
    EXPECT_TRUE(queue.next(PLAYER_MODE_REPEAT_ONE));
    EXPECT_EQ(queue.index(), 1U);
    EXPECT_TRUE(queue.previous(PLAYER_MODE_REPEAT_ONE));
    EXPECT_EQ(queue.index(), 5U);
}

TEST(PlayQueue, KeysAtTheEndsOfASequence_StayAndSaySo)
{
    PlayQueue queue = queueFrom(5);
    EXPECT_FALSE(queue.next(PLAYER_MODE_SEQUENCE));
    EXPECT_EQ(queue.index(), 5U);
    queue = queueFrom(1);
    EXPECT_FALSE(queue.previous(PLAYER_MODE_SEQUENCE));
    EXPECT_EQ(queue.index(), 1U);
    EXPECT_TRUE(queue.previous(PLAYER_MODE_REPEAT_ALL));
    EXPECT_EQ(queue.index(), 5U);
}

TEST(PlayQueue, Shuffle_PlaysEachOnceBeforeAnyComesTwice)
{
    constexpr int kEntries = 10;
    for (unsigned int seed = 0; seed < 20; ++seed) {
        PlayQueue queue =
            PlayQueue::from(listOf(std::vector<int>(kEntries, FILE_TYPE_PHOTO)), FILE_TYPE_PHOTO, 4, seed).value();
        const auto played = playOn(queue, PLAYER_MODE_SHUFFLE, 3 * kEntries - 1);
        ASSERT_EQ(played.size(), 3U * kEntries);
        EXPECT_EQ(played.front(), 4U);
        for (auto round = played.begin(); round != played.end(); round += kEntries) {
            EXPECT_EQ(std::set<std::size_t>(round, round + kEntries).size(), static_cast<std::size_t>(kEntries));
        }
        EXPECT_EQ(std::adjacent_find(played.begin(), played.end()), played.end());
    }
}

TEST(PlayQueue, Shuffle_HasManyOrders)
{
    std::set<std::vector<std::size_t>> orders;
    for (unsigned int seed = 0; seed < 20; ++seed) {
        const auto list = listOf(std::vector<int>(10, FILE_TYPE_MUSIC));
        orders.insert(playOn(PlayQueue::from(list, FILE_TYPE_MUSIC, 0, seed).value(), PLAYER_MODE_SHUFFLE, 9));
    }
    EXPECT_GT(orders.size(), 10U);
}

TEST(PlayQueue, PreviousWhileShuffling_GoesBackTheWayItCameAndForwardsAgain)
{
    PlayQueue queue = PlayQueue::from(listOf(std::vector<int>(10, FILE_TYPE_MUSIC)), FILE_TYPE_MUSIC, 2, 7).value();
    std::vector<std::size_t> way = {queue.index()};
    for (int i = 0; i < 5; ++i) {
        ASSERT_TRUE(queue.next(PLAYER_MODE_SHUFFLE));
        way.push_back(queue.index());
    }
    for (auto back = way.rbegin() + 1; back != way.rend(); ++back) {
        ASSERT_TRUE(queue.previous(PLAYER_MODE_SHUFFLE));
        EXPECT_EQ(queue.index(), *back);
    }
    EXPECT_FALSE(queue.previous(PLAYER_MODE_SHUFFLE));
    for (auto on = way.begin() + 1; on != way.end(); ++on) {
        ASSERT_TRUE(queue.next(PLAYER_MODE_SHUFFLE));
        EXPECT_EQ(queue.index(), *on);
    }
}

TEST(PlayQueue, ShuffleOfOne_PlaysItAgain)
{
    EXPECT_THAT(playOn(queueFrom(0, FILE_TYPE_PHOTO), PLAYER_MODE_SHUFFLE, 2), ElementsAre(4, 4, 4));
}

} // namespace
} // namespace desktop
