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
        EXPECT_TRUE(contains(program.output(), std::string("  ") + command.purpose + "\n")) << command.name;
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
                                                            {"--stick", "/tmp", "photos", "--sort", "colour"},
                                                            {"--stick", "/tmp", "info"},
                                                            {"--stick", "/tmp", "thumbnails", "--size", "0x90"},
                                                            {"--stick", "/tmp", "thumbnails", "--size", "160x90x3"},
                                                            {"--stick", "/tmp", "play"},
                                                            {"--stick", "/tmp", "play", "a", "--mode", "backwards"},
                                                            {"--stick", "/tmp", "play", "a", "--resume", "--at", "3"},
                                                            {"--stick", "/tmp", "play", "a", "--at", "-1"},
                                                            {"--stick", "/tmp", "play", "a", "--at", "nan"},
                                                            {"--stick", "/tmp", "play", "a", "--at", "0x3"},
                                                            {"--stick", "/tmp", "play", "a", "--window", "--no-window"},
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

/// What desktop-tv complains of, given @p words; it must end with @p status.
std::string complaint(const std::vector<std::string>& words, int status = 2)
{
    std::vector<std::string> command = {DESKTOP_TV};
    command.insert(command.end(), words.begin(), words.end());
    Program program(command);
    EXPECT_EQ(program.wait(), status) << testing::PrintToString(words);
    return program.errors();
}

TEST(CommandLine, SlipOfTheFingers_IsToldWithWhatMayBeMeant)
{
    EXPECT_EQ(complaint({"brwose"}), "desktop-tv: no command 'brwose'; did you mean 'browse'?\n");
    EXPECT_EQ(complaint({"thumb", "--json"}), "desktop-tv: no command 'thumb'; did you mean 'thumbnails'?\n");
    EXPECT_EQ(complaint({"teapot"}), "desktop-tv: no command 'teapot'\n");
    EXPECT_EQ(complaint({"--stik", "/tmp", "browse"}), "desktop-tv: no option '--stik'; did you mean '--stick'?\n");
    EXPECT_EQ(complaint({"--stick", "/tmp", "groups", "--bi=artist"}),
              "desktop-tv: no option '--bi'; did you mean '--by'?\n");
    EXPECT_EQ(complaint({"--stick", "/tmp", "browse", "a", "b"}), "desktop-tv: nothing takes 'b'\n");
    EXPECT_EQ(complaint({}), "desktop-tv: no command; desktop-tv --help lists them\n");
}

TEST(CommandLine, EveryMistake_IsOneSafeLineOfTheProgram)
{
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"\x1b[2J"},
                                               {"--\x1b[2J"},
                                               {"browse", "\x1b[2J", "\x1b[2J"},
                                               {"--log-level", "\x1b[2J\n", "shell"},
                                               {"--stick", "/etc/passwd", "browse"},
                                               {"--stick", "/tmp", "browse", "--page-size", "\x1b[2J"},
                                               {"--stick", "/tmp", "groups"}}) {
        const std::string told = complaint(words);
        EXPECT_EQ(told.rfind("desktop-tv: ", 0), 0U) << told;
        EXPECT_EQ(told.find('\n'), told.size() - 1) << told;
        EXPECT_FALSE(contains(told, "\x1b")) << told;
    }
}

TEST(CommandLine, CacheThatCannotBeUsed_IsTold)
{
    EXPECT_EQ(complaint({"--cache", "/dev/null/cache", "shell"}, 1), "desktop-tv: /dev/null/cache: Not a directory\n");
    EXPECT_EQ(complaint({"--cache", "/dev/null", "--stick", "/tmp", "browse"}, 1),
              "desktop-tv: /dev/null: Not a directory\n");
}

TEST(CommandLine, WorkingDirectoryThatHasGone_IsNoMatter)
{
    Program program({"sh", "-c", "cd $(mktemp -d) && rmdir \"$PWD\" && exec \"$0\" --stick /etc browse", DESKTOP_TV});
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.errors(), "");
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
    EXPECT_EQ(complaint({"--log", "/nowhere/log", "shell"}, 1), "desktop-tv: /nowhere/log: No such file or directory\n");
}

} // namespace
