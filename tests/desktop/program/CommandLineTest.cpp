#include "tests/desktop/support/Program.h"

#include "protocol/ProtocolTable.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using testsupport::Program;

bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

TEST(CommandLine, Commands_ListsHashNameAndPurpose)
{
    Program program({DESKTOP_TV, "commands"});
    EXPECT_EQ(program.wait(), 0);
    EXPECT_TRUE(contains(program.output(), "3414262598  storagemedia.folder.chgdir  ")) << program.output();
    for (const protocol::CommandDescription& command : protocol::kCommands) {
        EXPECT_TRUE(contains(program.output(), command.purpose)) << command.name;
    }
}

TEST(CommandLine, Help_ShowsExamples)
{
    Program program({DESKTOP_TV, "--help"});
    EXPECT_EQ(program.wait(), 0);
    EXPECT_TRUE(contains(program.output(), "desktop-tv --stick ~/Videos browse\n")) << program.output();
    EXPECT_EQ(program.errors(), "");
}

TEST(CommandLine, Version_IsThatOfTheProject)
{
    Program program({DESKTOP_TV, "--version"});
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.output(), "desktop-tv " DESKTOP_TV_VERSION "\n");
}

TEST(CommandLine, Mistake_IsToldAndGives2)
{
    const std::vector<std::vector<std::string>> mistakes = {{},
                                                            {"no-such-command"},
                                                            {"browse"},
                                                            {"--stick", "/tmp", "browse", "--page", "2"},
                                                            {"--stick", "/tmp", "browse", "--page-size", "0"},
                                                            {"search"},
                                                            {"--stick", "/tmp", "groups"},
                                                            {"--stick", "/tmp", "groups", "--by", "colour"},
                                                            {"--stick", "/tmp", "info"},
                                                            {"--stick", "/tmp", "thumbnails", "--size", "0x90"},
                                                            {"--stick", "/tmp", "thumbnails", "--size", "160x90x3"},
                                                            {"--stick", "/tmp", "thumbnails", "a", "--file", "b"},
                                                            {"--log-level", "loud", "shell"}};
    for (const auto& mistake : mistakes) {
        std::vector<std::string> command = {DESKTOP_TV};
        command.insert(command.end(), mistake.begin(), mistake.end());
        Program program(command);
        EXPECT_EQ(program.wait(), 2) << testing::PrintToString(mistake);
        EXPECT_NE(program.errors(), "") << testing::PrintToString(mistake);
        EXPECT_EQ(program.output(), "");
    }
}

TEST(CommandLine, PluginThatCannotBeLoaded_IsTold)
{
    Program missing({DESKTOP_TV, "--plugin", "/nowhere/plugin.so", "shell"});
    EXPECT_EQ(missing.wait(), 1);
    EXPECT_TRUE(contains(missing.errors(), "desktop-tv: cannot load the plugin: /nowhere/plugin.so")) << missing.errors();
    Program other({DESKTOP_TV, "--plugin", "libjsoncpp.so.25", "shell"});
    EXPECT_EQ(other.wait(), 1);
    EXPECT_TRUE(contains(other.errors(), "desktop-tv: this is no plugin: ")) << other.errors();
}

TEST(CommandLine, LogFileThatCannotBeOpened_IsTold)
{
    Program program({DESKTOP_TV, "--log", "/nowhere/log", "shell"});
    EXPECT_EQ(program.wait(), 1);
    EXPECT_TRUE(contains(program.errors(), "/nowhere/log")) << program.errors();
}

} // namespace
