#include "desktop/host/CommandNames.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

TEST(CommandNames_Hash, BytesFrom128_CountUnsigned)
{
    EXPECT_EQ(commandHash(""), 0U);
    EXPECT_EQ(commandHash("a"), 97U);
    EXPECT_EQ(commandHash("\xC3"), 195U);
    EXPECT_EQ(commandHash("storagemedia.folder.chgdir"), 3414262598U);
}

TEST(CommandNames_IsCommandName, OnlyWholeNames_Count)
{
    EXPECT_TRUE(isCommandName("storagemedia.get.pagefiles"));
    EXPECT_FALSE(isCommandName("storagemedia.get"));
    EXPECT_FALSE(isCommandName(""));
}

} // namespace
} // namespace desktop
