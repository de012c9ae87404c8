#include "tests/desktop/support/DemoStick.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testsupport::demoFile;
using testsupport::Program;

/// The bytes of the demo stick's song with @p artist, as long a name as its own.
std::string songBy(const std::string& artist)
{
    const std::string before = "The Sines";
    std::ostringstream bytes;
    bytes << std::ifstream(demoFile("Music/The Sines/02 Second.flac"), std::ios::binary).rdbuf();
    std::string song = bytes.str();
    for (std::size_t at = song.find(before); at != std::string::npos; at = song.find(before, at + before.size())) {
        song.replace(at, before.size(), artist);
    }
    return song;
}

/// desktop-tv on two sticks, each with a song and a film; one folder is on both.
class SeveralSticksTest : public testing::Test {
protected:
    SeveralSticksTest()
    {
        for (const std::string& stick : {one, other}) {
            fs::create_directories(stick + "/Both");
            fs::copy_file(demoFile("Music/The Sines/01 First.mp3"), stick + "/song.mp3");
        }
        fs::copy_file(demoFile("Movies/counter.mp4"), one + "/a.mp4");
        fs::create_directories(other + "/Far");
        fs::copy_file(demoFile("Movies/counter.mp4"), other + "/Far/b.mp4");
    }

    /// What @p words, after the options, write; they must succeed.
    std::string written(const std::vector<std::string>& words) const
    {
        std::vector<std::string> all = {DESKTOP_TV, "--cache", "none", "--stick", one, "--stick", other};
        all.insert(all.end(), words.begin(), words.end());
        Program program(all);
        EXPECT_EQ(program.wait(), 0) << program.errors();
        EXPECT_EQ(program.errors(), "");
        return program.output();
    }

    testsupport::TemporaryDirectory folder;
    const std::string one = folder.path("one");
    const std::string other = folder.path("other");
};

TEST_F(SeveralSticksTest, WithoutPath_AllAreListed)
{
    const std::string listing = written({"browse"});
    EXPECT_THAT(listing, HasSubstr("\n" + one + "\n"));
    EXPECT_THAT(listing, HasSubstr("\n" + other + "\n"));
    EXPECT_LT(listing.find("\n" + one + "\n"), listing.find("\n" + other + "\n"));
    const std::string videos = written({"search"});
    EXPECT_THAT(videos, HasSubstr("  " + one + "/a.mp4\n"));
    EXPECT_THAT(videos, HasSubstr("  " + other + "/Far/b.mp4\n2 videos in 5 folders\n"));
    EXPECT_EQ(written({"groups", "--by", "artist"}), "      2  The Sines\n1 group, 2 files\n");
    const std::string songs = written({"groups", "--by", "artist", "--key", "The Sines"});
    EXPECT_THAT(songs, HasSubstr(one + "/song.mp3\n"));
    EXPECT_THAT(songs, HasSubstr(other + "/song.mp3\n2 files\n"));
    EXPECT_EQ(written({"thumbnails", "--out", folder.path("out")}), "3 pictures, 0 media files without\n");
    EXPECT_TRUE(folder.has("out/song.mp3.jpg"));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path("out")), fs::directory_iterator()), 3);
}

TEST_F(SeveralSticksTest, GroupInTwoSpellings_IsOneInThatOfTheFirstStick)
{
    fs::remove(other + "/song.mp3");
    std::ofstream(other + "/loud.flac", std::ios::binary) << songBy("THE SINES");
    EXPECT_EQ(written({"groups", other, "--by", "artist"}), "      1  THE SINES\n1 group, 1 file\n");
    EXPECT_EQ(written({"groups", "--by", "artist"}), "      2  The Sines\n1 group, 2 files\n");
    const std::string songs = written({"groups", "--by", "artist", "--key", "the sines"});
    EXPECT_THAT(songs, HasSubstr(one + "/song.mp3\n"));
    EXPECT_THAT(songs, HasSubstr(other + "/loud.flac\n2 files\n"));
}

TEST_F(SeveralSticksTest, RelativePath_IsThatOfTheFirstStickThatHasIt)
{
    EXPECT_THAT(written({"browse", "Far"}), HasSubstr("\n" + other + "/Far\n"));
    EXPECT_THAT(written({"browse", "Both"}), HasSubstr("\n" + one + "/Both\n"));
    EXPECT_THAT(written({"info", "Far/b.mp4"}), HasSubstr(other + "/Far/b.mp4\n  type      video\n"));
    EXPECT_THAT(written({"search", "Far"}), HasSubstr("1 video in 1 folder\n"));
}

TEST_F(SeveralSticksTest, StickOption_TakesOneFolder)
{
    Program program({DESKTOP_TV, "browse", "--stick", other, "Far"});
    EXPECT_EQ(program.wait(), 0) << program.errors();
    EXPECT_THAT(program.output(), HasSubstr("\n" + other + "/Far\n"));
}

} // namespace
