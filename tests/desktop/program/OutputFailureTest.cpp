// What becomes of output that cannot be written.

#include "tests/desktop/support/DemoStick.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <fstream>

namespace {

using testsupport::demoFile;
using testsupport::Program;

/// desktop-tv with @p words, its output sent where @p redirection says.
std::vector<std::string> redirected(const std::string& redirection, const std::vector<std::string>& words)
{
    std::vector<std::string> command = {"sh", "-c", "exec \"$0\" \"$@\" " + redirection, DESKTOP_TV};
    command.insert(command.end(), words.begin(), words.end());
    return command;
}

std::vector<std::string> onDemoStick(const std::vector<std::string>& words)
{
    std::vector<std::string> all = {"--stick", demoFile(""), "--cache", "none"};
    all.insert(all.end(), words.begin(), words.end());
    return all;
}

/// A command, and a name for it.
struct OutputRow {
    const char* name;
    std::vector<std::string> words;
};

class EveryOutput : public testing::TestWithParam<OutputRow> {};

TEST_P(EveryOutput, OnAFullDevice_IsToldAndGives1)
{
    Program program(redirected("> /dev/full", onDemoStick(GetParam().words)));
    EXPECT_EQ(program.wait(), 1);
    EXPECT_EQ(program.errors(), "desktop-tv: standard output: No space left on device\n");
}

INSTANTIATE_TEST_SUITE_P(OutputFailure, EveryOutput,
                         testing::Values(OutputRow{"Help", {"--help"}}, OutputRow{"HelpOfACommand", {"browse", "--help"}},
                                         OutputRow{"Version", {"--version"}}, OutputRow{"Commands", {"commands"}},
                                         OutputRow{"Browse", {"browse"}}, OutputRow{"Search", {"search"}},
                                         OutputRow{"Groups", {"groups", "--by", "artist"}},
                                         OutputRow{"Info", {"info", "Movies/counter.mp4"}},
                                         OutputRow{"Thumbnails", {"thumbnails", "Photos/2023", "--json"}}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(OutputFailure, ShellOnAFullDevice_IsToldAndGives1)
{
    Program program(redirected("> /dev/full", {"shell"}));
    program.send("{\"command\":\"storagemedia.check.usb.device\"}\n");
    EXPECT_EQ(program.wait(), 1);
    EXPECT_EQ(program.errors(), "desktop-tv: standard output: No space left on device\n");
}

TEST(OutputFailure, NoStandardOutput_IsToldAndGives1)
{
    for (const std::vector<std::string>& words : {std::vector<std::string>{"--version"}, onDemoStick({"browse"})}) {
        Program program(redirected(">&-", words));
        EXPECT_EQ(program.wait(), 1);
        EXPECT_EQ(program.errors(), "desktop-tv: standard output: Bad file descriptor\n");
    }
}

TEST(OutputFailure, NoStandardInputNorErrors_IsNoMatter)
{
    Program program(redirected("<&- 2>&-", onDemoStick({"browse"})));
    EXPECT_EQ(program.wait(), 0);
    EXPECT_THAT(program.output(), testing::HasSubstr("Movies\n"));
}

TEST(OutputFailure, LogFileOnAFullDevice_IsToldAndGives1)
{
    Program program({DESKTOP_TV, "--stick", demoFile(""), "--log", "/dev/full", "--log-level", "debug", "browse"});
    EXPECT_EQ(program.wait(), 1);
    EXPECT_EQ(program.errors(), "desktop-tv: /dev/full: No space left on device\n");
    EXPECT_THAT(program.output(), testing::HasSubstr("Movies\n"));
}

TEST(OutputFailure, LogThatHasFailedForAWhile_IsToldAndNothingIsAddedToIt)
{
    const testsupport::TemporaryDirectory folder;
    folder.makeDirectory("stick");
    folder.makeFile("stick/a.jpg");
    const std::string log = folder.path("log");
    ASSERT_EQ(mkfifo(log.c_str(), 0600), 0);
    desktop::UniqueFd reader(open(log.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    testsupport::Shell shell({"--stick", folder.path("stick"), "--cache", "none", "--log", log, "--log-level", "debug"});
    shell.notification("storagemedia.usb.mount");
    reader = desktop::UniqueFd();
    Json::Value usage;
    usage["path"] = folder.path("stick");
    shell.send("storagemedia.get.device.usage", usage); // which is logged
    EXPECT_TRUE(shell.reply().isMember("result"));
    reader = desktop::UniqueFd(open(log.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    EXPECT_EQ(shell.program.wait(), 1);
    EXPECT_EQ(shell.program.errors(), "desktop-tv: " + log + ": Not all of the log could be written\n");
    std::string logged(65536, '\0'); // all that a pipe holds
    const ssize_t length = read(reader.get(), logged.data(), logged.size());
    ASSERT_GT(length, 0);
    logged.resize(static_cast<std::size_t>(length));
    EXPECT_THAT(logged, testing::Not(testing::EndsWith("\n\n")));
}

TEST(OutputFailure, FolderForPicturesThatIsNone_IsToldWithItsReason)
{
    const testsupport::TemporaryDirectory out;
    out.makeFile("file");
    Program program({DESKTOP_TV, "--stick", demoFile(""), "thumbnails", "Photos/2023", "--out", out.path("file")});
    EXPECT_EQ(program.wait(), 1);
    EXPECT_EQ(program.errors(), "desktop-tv: " + out.path("file") + ": Not a directory\n");
}

} // namespace
