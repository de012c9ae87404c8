#include "desktop/host/CommandNames.h"

#include "plugin/CommandTable.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace desktop {
namespace {

TEST(CommandNames_Table, EveryRow_IsThePluginsOwn)
{
    ASSERT_EQ(kCommandNameCount, kCommandCount);
    for (std::size_t i = 0; i < kCommandNameCount; ++i) {
        EXPECT_STREQ(kCommandNames[i].name, gCmdStringMap[i].name);
    }
}

TEST(CommandNames_Table, EveryPurpose_IsItsOwn)
{
    std::set<std::string> purposes;
    for (const CommandName& command : kCommandNames) {
        EXPECT_TRUE(purposes.insert(command.purpose).second) << command.purpose;
    }
}

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
