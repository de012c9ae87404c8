// The commands that are marked as not on the desktop yet, against the program.

#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include "protocol/ProtocolTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace {

using testing::HasSubstr;
using testing::Not;
using testsupport::Shell;

/// The requests of the examples in the description of the protocol, by command.
Json::Value exampleRequests()
{
    Json::Value description;
    std::ifstream(PROTOCOL_DESCRIPTION) >> description;
    Json::Value requests;
    for (const Json::Value& command : description["commands"]) {
        requests[command["name"].asString()] = command["example"]["request"];
    }
    return requests;
}

TEST(NotOnDesktop, EveryCommand_IsMarkedAsTheProgramAnswersIt)
{
    const testsupport::TemporaryDirectory stick;
    const Json::Value requests = exampleRequests();
    for (const protocol::CommandDescription& command : protocol::kCommands) {
        SCOPED_TRACE(command.name);
        Shell shell({"--stick", stick.path(), "--cache", "none"});
        shell.send(command.name, requests[command.name]);
        const Json::Value reply = shell.reply();
        EXPECT_EQ(reply["command"], command.name);
        EXPECT_EQ(shell.program.wait(), 0);
        if (command.onDesktop) {
            EXPECT_THAT(shell.program.errors(), Not(HasSubstr("the desktop does not offer")));
        } else {
            EXPECT_EQ(reply["result"], false);
        }
    }
}

} // namespace
