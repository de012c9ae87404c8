#include "protocol/ProtocolTable.h"

#include "plugin/CommandTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

namespace protocol {
namespace {

TEST(ProtocolTable, EveryCommand_IsThePluginsOwn)
{
    ASSERT_EQ(kCommands.size(), kCommandCount);
    for (std::size_t i = 0; i < kCommands.size(); ++i) {
        EXPECT_STREQ(kCommands[i].name, gCmdStringMap[i].name);
    }
}

TEST(ProtocolTable, EveryPurpose_IsItsOwn)
{
    std::set<std::string> purposes;
    for (const CommandDescription& command : kCommands) {
        EXPECT_TRUE(purposes.insert(command.purpose).second) << command.purpose;
    }
}

TEST(ProtocolTable, EveryAnswer_IsANotificationOnTheRequestsChannel)
{
    std::set<std::string> commands;
    for (const CommandDescription& command : kCommands) {
        if (command.answer == nullptr) {
            continue;
        }
        commands.insert(command.name);
        EXPECT_TRUE(std::any_of(kNotifications.begin(), kNotifications.end(), [&command](const auto& notification) {
            return std::string(notification.name) == command.answer && !notification.isBroadcast && notification.isFromEvent;
        })) << command.answer;
    }
    EXPECT_EQ(commands, (std::set<std::string>{"storagemedia.folder.chgdir", "storagemedia.group.musicorphoto",
                                               "storagemedia.start.thumbnail", "storagemedia.video.searchFiles"}));
}

} // namespace
} // namespace protocol
