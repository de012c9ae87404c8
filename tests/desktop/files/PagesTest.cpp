#include "desktop/files/Pages.h"

#include <gtest/gtest.h>

#include <limits>

namespace desktop {
namespace {

std::vector<FolderFileInfo_s> entriesWithIds(int count)
{
    std::vector<FolderFileInfo_s> entries(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        entries[static_cast<std::size_t>(i)].id = i;
    }
    return entries;
}

std::vector<int> idsOf(const std::vector<FolderFileInfo_s>& entries)
{
    std::vector<int> ids;
    for (const FolderFileInfo_s& entry : entries) {
        ids.push_back(entry.id);
    }
    return ids;
}

TEST(Pages_CutPage, PagesOfThree_FollowOneAnother)
{
    const std::vector<FolderFileInfo_s> list = entriesWithIds(7);
    EXPECT_EQ(idsOf(cutPage(list, 0, 3)), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(idsOf(cutPage(list, 2, 3)), (std::vector<int>{6}));
}

TEST(Pages_CutPage, BeyondTheEnd_IsEmpty)
{
    EXPECT_TRUE(cutPage(entriesWithIds(7), 3, 3).empty());
    EXPECT_TRUE(cutPage(entriesWithIds(7), std::numeric_limits<int>::max(), std::numeric_limits<int>::max()).empty());
    EXPECT_TRUE(cutPage(entriesWithIds(0), 0, 3).empty());
}

TEST(Pages_CutPage, PageSizeBelowOne_PutsAllOnOnePage)
{
    EXPECT_EQ(cutPage(entriesWithIds(7), 0, 0).size(), 7U);
    EXPECT_EQ(cutPage(entriesWithIds(7), 0, -5).size(), 7U);
    EXPECT_TRUE(cutPage(entriesWithIds(7), 1, 0).empty());
}

} // namespace
} // namespace desktop
