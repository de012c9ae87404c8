// A stick that is pulled while a command works on it.

#include "tests/desktop/support/DemoStick.h"
#include "tests/desktop/support/ManyFiles.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;
using testsupport::demoFile;
using testsupport::Program;

class PulledStickTest : public testing::Test {
protected:
    PulledStickTest() { folder.makeDirectory("stick"); }

    std::string stick(const std::string& below = "") const
    {
        return folder.path("stick" + (below.empty() ? "" : "/" + below));
    }
    std::string error() const { return "desktop-tv: " + stick() + ": The stick has been pulled\n"; }
    void pull() const { fs::rename(stick(), folder.path("away")); }

    std::vector<std::string> command(const std::vector<std::string>& words) const
    {
        std::vector<std::string> all = {DESKTOP_TV, "--stick", stick(), "--cache", "none"};
        all.insert(all.end(), words.begin(), words.end());
        return all;
    }

    testsupport::TemporaryDirectory folder;
};

// The list of the root fills the pipe, so the program is still at it when the stick goes.
TEST_F(PulledStickTest, FoldersThatAreStillToBeListed_AreOneError)
{
    for (int i = 0; i < 200; ++i) {
        folder.makeDirectory("stick/" + std::to_string(i));
    }
    testsupport::makeManyFiles(stick(), 3000, "a name that fills the pipe ");
    Program program(command({"browse", "-r"}));
    ASSERT_TRUE(program.readUntil([&program] { return program.output().find("TYPE") != std::string::npos; }));
    pull();
    EXPECT_EQ(program.wait(), 1);
    EXPECT_EQ(program.errors(), error());
}

TEST_F(PulledStickTest, FilesThatAreStillToBeDescribed_AreOneError)
{
    std::vector<std::string> words = {"info"};
    testsupport::makeManyFiles(stick(), 3000, "a name that fills the pipe ");
    for (int i = 0; i < 3000; ++i) {
        words.push_back("a name that fills the pipe " + std::to_string(i) + ".jpg");
    }
    Program program(command(words));
    ASSERT_TRUE(program.readUntil([&program] { return program.output().find("type") != std::string::npos; }));
    pull();
    EXPECT_EQ(program.wait(), 1);
    EXPECT_EQ(program.errors(), error());
}

class WorkOnAPulledStick : public PulledStickTest, public testing::WithParamInterface<std::vector<std::string>> {};

// On a terminal, where the progress tells that the work has begun.
TEST_P(WorkOnAPulledStick, EndsInOneErrorAndNoResult)
{
    fs::copy_file(demoFile("Music/The Sines/02 Second.flac"), stick("0.flac"));
    for (int i = 1; i < 4000; ++i) {
        fs::create_hard_link(stick("0.flac"), stick(std::to_string(i) + ".flac"));
    }
    std::string words;
    for (const std::string& word : GetParam()) {
        words += " " + word;
    }
    Program program({"script", "-qec", DESKTOP_TV " --stick " + stick() + " --cache none" + words, "/dev/null"});
    ASSERT_TRUE(program.readUntil([&program] { return program.output().find("\r\x1b[K") != std::string::npos; }));
    pull();
    EXPECT_EQ(program.wait(), 1) << program.output();
    EXPECT_THAT(program.output(), HasSubstr("desktop-tv: " + stick() + ": The stick has been pulled\r\n"));
    EXPECT_THAT(program.output(), Not(HasSubstr("0 groups")));
    EXPECT_THAT(program.output(), Not(HasSubstr("no picture of")));
}

INSTANTIATE_TEST_SUITE_P(PulledStick, WorkOnAPulledStick,
                         testing::Values(std::vector<std::string>{"groups", "--by", "artist"},
                                         std::vector<std::string>{"thumbnails"}),
                         [](const auto& command) { return command.param.front(); });

} // namespace
