#include "desktop/cli/ShellCompletion.h"
#include "desktop/cli/ShellHelp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace desktop {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(ShellCompletion, PlainWords_AreCommandsAndHelp)
{
    EXPECT_THAT(completionOf("storagemedia.photo.").words,
                ElementsAre("storagemedia.photo.sort", "storagemedia.photo.rotate"));
    EXPECT_THAT(completionOf("  hel").words, ElementsAre("help"));
    EXPECT_EQ(completionOf("  hel").begin, 2U);
    EXPECT_THAT(completionOf("help storagemedia.photo.s").words, ElementsAre("storagemedia.photo.sort"));
    EXPECT_EQ(completionOf("help storagemedia.photo.s").begin, 5U);
    EXPECT_THAT(completionOf("").words, Contains("help"));
    EXPECT_THAT(completionOf("help ").words, testing::SizeIs(46));
    EXPECT_THAT(completionOf("storagemedia.photo.sort st").words, IsEmpty());
}

TEST(ShellCompletion, ObjectsMembers_AreCommandAndRequest)
{
    EXPECT_THAT(completionOf(R"({"c)").words, ElementsAre("command"));
    EXPECT_THAT(completionOf(R"({ "command": "storagemedia.photo.sort", ")").words, ElementsAre("command", "request"));
    EXPECT_EQ(completionOf(R"({"c)").end, "\":");
    EXPECT_THAT(completionOf(R"({")").words, ElementsAre("command", "desktop", "request"));
    EXPECT_THAT(completionOf(R"({)").words, IsEmpty());
    EXPECT_THAT(completionOf(R"({"command":"storagemedia.photo.sort",)").words, IsEmpty());
}

TEST(ShellCompletion, CommandsName_IsOneOfThem)
{
    const Completion completion = completionOf(R"({"command" : "storagemedia.photo.s)");
    EXPECT_THAT(completion.words, ElementsAre("storagemedia.photo.sort"));
    EXPECT_EQ(completion.begin, 14U);
    EXPECT_EQ(completion.end, "\"");
    EXPECT_THAT(completionOf(R"({"request":{"command":"storagemedia.photo.s)").words, IsEmpty());
}

TEST(ShellCompletion, RequestsKeys_AreThoseOfTheCommand)
{
    const std::string start = R"({"command":"storagemedia.folder.chgdir","request":{)";
    EXPECT_THAT(completionOf(start + "\"").words, ElementsAre("channelId", "reqId", "number", "dirpath"));
    EXPECT_THAT(completionOf(start + R"("channelId":"a \"quoted\" {name","d)").words, ElementsAre("dirpath"));
    EXPECT_THAT(completionOf(start + R"("channelId":"d)").words, IsEmpty());
    EXPECT_THAT(completionOf(R"({"command":"nonsense","request":{"d)").words, IsEmpty());
}

TEST(ShellCompletion, LineForTheDesktop_HasMembersOfItsOwn)
{
    EXPECT_THAT(completionOf(R"({"desktop":")").words, ElementsAre("key", "screen"));
    EXPECT_THAT(completionOf(R"({"desktop":"screen",")").words, ElementsAre("height", "off", "picture", "width"));
    EXPECT_THAT(completionOf(R"({"desktop":"key",")").words, ElementsAre("name"));
    EXPECT_THAT(completionOf(R"({"desktop":"key","name":"u)").words, ElementsAre("usb-source"));
}

TEST(ShellCompletion, CommonBeginning_IsWhatAllBeginWith)
{
    EXPECT_EQ(commonBeginning({}), "");
    EXPECT_EQ(commonBeginning({"page"}), "page");
    EXPECT_EQ(commonBeginning({"pages", "page", "pair"}), "pa");
    EXPECT_EQ(commonBeginning({"a", "b"}), "");
}

TEST(ShellHelp, Command_IsExplainedWithItsKeys)
{
    EXPECT_EQ(commandHelp("storagemedia.get.playlistfile"),
              "storagemedia.get.playlistfile\n  Lists the playlist files under a directory.\n"
              "  \"dirpath\": string, required; where to look\n");
    EXPECT_THAT(commandHelp("storagemedia.folder.chgdir"),
                HasSubstr("  Answered by storagemedia.folder.chgdir.complete.\n"));
    EXPECT_THAT(commandHelp("storagemedia.media.stopfile"),
                HasSubstr("\n  On the desktop: Fails when nothing of that type plays. A video's position is remembered.\n"));
    EXPECT_THAT(commandHelp("storagemedia.media.playfile"), HasSubstr(" playback ends after the one.\n  \"resume\" begins"));
    EXPECT_EQ(commandHelp("nonsense"), "");
    EXPECT_THAT(shellHelp(), HasSubstr("storagemedia.video.clear.resume"));
}

} // namespace
} // namespace desktop
