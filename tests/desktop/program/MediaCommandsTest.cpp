#include "tests/desktop/support/DemoStick.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using testsupport::jsonLines;
using testsupport::Program;

/// desktop-tv on the demo stick, which remembers nothing.
class MediaCommandsTest : public testing::Test {
protected:
    static std::vector<std::string> command(const std::vector<std::string>& words)
    {
        std::vector<std::string> all = {DESKTOP_TV, "--stick", testsupport::demoFile(""), "--cache", "none"};
        all.insert(all.end(), words.begin(), words.end());
        return all;
    }

    /// What @p words write; they must succeed.
    static std::string written(const std::vector<std::string>& words)
    {
        Program program(command(words));
        EXPECT_EQ(program.wait(), 0) << program.errors();
        EXPECT_EQ(program.errors(), "");
        return program.output();
    }

    /// What @p words complain of; they must fail with 1.
    static std::string complaint(const std::vector<std::string>& words)
    {
        Program program(command(words));
        EXPECT_EQ(program.wait(), 1) << program.output();
        return program.errors();
    }

    testsupport::TemporaryDirectory out;
};

bool isJpeg(const std::string& file)
{
    char start[3] = {};
    std::ifstream(file).read(start, sizeof start);
    return std::string(start, sizeof start) == "\xFF\xD8\xFF";
}

TEST_F(MediaCommandsTest, Search_ListsTheVideosBelowAndTheTotals)
{
    const std::string text = written({"search"});
    EXPECT_THAT(text, StartsWith("TYPE           SIZE  TIME                 NAME\nvideo"));
    EXPECT_THAT(text, HasSubstr("  " + testsupport::demoFile("Movies/Holiday/beach 10.mp4") + "\n"));
    EXPECT_THAT(text, HasSubstr("  " + testsupport::demoFile("电影/短片.mkv") + "\n"));
    EXPECT_THAT(text, Not(HasSubstr(".mp3")));
    EXPECT_THAT(text, HasSubstr("\n9 videos in 12 folders\n"));
}

TEST_F(MediaCommandsTest, SearchAsJson_EndsWithTheTotals)
{
    const std::vector<Json::Value> lines = jsonLines(written({"search", "Movies", "--json"}));
    ASSERT_EQ(lines.size(), 7U);
    EXPECT_EQ(lines.front()["type"], 4);
    EXPECT_EQ(lines.back()["total"], 6);
    EXPECT_EQ(lines.back()["folders"], 2);
    EXPECT_FALSE(lines.back().isMember("reqId"));
}

TEST_F(MediaCommandsTest, Groups_AreCountedInOrder)
{
    EXPECT_EQ(written({"groups", "--by", "artist"}), "      5  The Sines\n1 group, 5 files\n");
    EXPECT_EQ(
        written({"groups", "Photos", "--by", "month"}),
        "      1  2023-01\n      1  2023-07\n      1  2024-03\n      2  2024-05\n      1  2024-06\n5 groups, 6 files\n");
    EXPECT_EQ(written({"groups", "Photos", "--by", "year", "--descending", "--json"}),
              "{\"files\":4,\"key\":\"2024\"}\n{\"files\":2,\"key\":\"2023\"}\n");
}

TEST_F(MediaCommandsTest, FilesOfAGroup_AreListedWithDurationAndArtistEitherWay)
{
    const auto row = [](const std::string& song) {
        return "    0:05  The Sines                 " + testsupport::demoFile("Music/The Sines/" + song) + "\n";
    };
    const std::string first = row("01 First.mp3");
    const std::string second = row("02 Second.flac");
    const std::string third = row("03 Third.ogg");
    const std::vector<std::string> list = {"groups", "Music/The Sines", "--by", "album", "--key", "Pure Tones"};
    EXPECT_EQ(written(list), first + second + third + "3 files\n");
    std::vector<std::string> reversed = list;
    reversed.emplace_back("--descending");
    EXPECT_EQ(written(reversed), third + second + first + "3 files\n");
}

TEST_F(MediaCommandsTest, KeyInAnotherSpelling_MeansTheSameGroup)
{
    const std::vector<std::string> list = {"groups", "Music/The Sines", "--by", "album", "--key"};
    const auto filesOf = [&list](const std::string& key) {
        std::vector<std::string> words = list;
        words.push_back(key);
        return written(words);
    };
    const std::string files = filesOf("Pure Tones");
    EXPECT_THAT(files, testing::EndsWith("\n3 files\n"));
    EXPECT_EQ(filesOf("pure TONES"), files);
    EXPECT_EQ(filesOf(" Pure Tones "), files);
}

TEST_F(MediaCommandsTest, Info_DescribesEveryFileByItsKind)
{
    const std::string text =
        written({"info", "Music/The Sines/02 Second.flac", "Photos/2023/upright.jpg", "Movies/counter.mp4"});
    EXPECT_EQ(text, testsupport::demoFile("Music/The Sines/02 Second.flac") +
                        "\n  type      music\n  duration  0:05\n  title     Second\n  artist    The Sines\n"
                        "  album     Pure Tones\n  genre     Electronic\n  year      2024\n" +
                        testsupport::demoFile("Photos/2023/upright.jpg") +
                        "\n  type      photo\n  taken     2023-07-02 18:00:00\n  size      720 x 1280\n" +
                        testsupport::demoFile("Movies/counter.mp4") + "\n  type      video\n  duration  0:04\n");
    const std::vector<Json::Value> lines = jsonLines(written({"info", "--json", "Movies/counter.mp4"}));
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0]["duration"], 4);
    EXPECT_EQ(lines[0]["path"], testsupport::demoFile("Movies/counter.mp4"));
}

TEST_F(MediaCommandsTest, ThumbnailsOfAFolder_AreCopiedOut)
{
    const std::string text = written({"thumbnails", "Movies", "--out", out.path("pictures"), "--size", "160x90"});
    EXPECT_THAT(text, testing::MatchesRegex("no picture of " + testsupport::demoFile("Movies/broken.mp4") +
                                            ": [^\n]+\n2 pictures, 1 media file without\n"));
    EXPECT_TRUE(isJpeg(out.path("pictures/counter.mp4.jpg")));
    EXPECT_TRUE(isJpeg(out.path("pictures/two subtitle tracks.mkv.jpg")));
}

TEST_F(MediaCommandsTest, FileThatCannotBeDecoded_IsShownWithTheReason)
{
    const std::string broken = testsupport::demoFile("Movies/broken.mp4");
    EXPECT_THAT(written({"info", "Movies/broken.mp4"}),
                testing::MatchesRegex(broken + "\n  type      video\n  duration  -  [^\n-]+\n"));
    EXPECT_NE(jsonLines(written({"info", "Movies/broken.mp4", "--json"}))[0]["error"].asString(), "");
    const Json::Value picture = jsonLines(written({"thumbnails", "Movies", "--json"}))[0];
    EXPECT_EQ(picture["path"], broken);
    EXPECT_NE(picture["error"].asString(), "");
}

TEST_F(MediaCommandsTest, ThumbnailOfOneFileWithout_IsAnError)
{
    const std::string expected = "desktop-tv: " + testsupport::demoFile("missing") + ": No such file or directory\n";
    EXPECT_EQ(complaint({"thumbnails", "--file", "missing"}), expected);
    const std::string broken = testsupport::demoFile("Movies/broken.mp4");
    EXPECT_THAT(complaint({"thumbnails", "--file", "Movies/broken.mp4"}),
                testing::MatchesRegex("desktop-tv: " + broken + ": [^\n]+\n"));
    EXPECT_EQ(complaint({"thumbnails", "--file", "Movies"}),
              "desktop-tv: " + testsupport::demoFile("Movies") + ": It is no photo, video or music\n");
}

TEST_F(MediaCommandsTest, ThumbnailOfOneFile_IsCopiedOut)
{
    const std::vector<Json::Value> lines =
        jsonLines(written({"thumbnails", "--file", "Music/The Sines/01 First.mp3", "--out", out.path(), "--json"}));
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0]["picture"], out.path("01 First.mp3.jpg"));
    EXPECT_TRUE(isJpeg(out.path("01 First.mp3.jpg")));
}

TEST_F(MediaCommandsTest, ThumbnailsOnATerminal_ShowHowFarTheyAre)
{
    const std::string stick = testsupport::demoFile("");
    Program program(
        {"script", "-qec", DESKTOP_TV " --stick '" + stick + "' --cache none thumbnails Photos/2023", "/dev/null"});
    EXPECT_EQ(program.wait(), 0);
    EXPECT_THAT(program.output(), HasSubstr("\r\x1b[K[###############               ] 1 of 2"));
    EXPECT_THAT(program.output(), HasSubstr("\r\x1b[K[##############################] 2 of 2"));
}

TEST_F(MediaCommandsTest, Playlists_AreListedBelowAFolder)
{
    const std::string all = testsupport::demoFile("Music/All.m3u");
    EXPECT_EQ(written({"playlists"}), all + "\n1 playlist\n");
    EXPECT_EQ(written({"playlists", "Movies"}), "0 playlists\n");
    EXPECT_EQ(jsonLines(written({"playlists", "Music", "--json"}))[0]["path"], all);
}

TEST_F(MediaCommandsTest, EntriesOfAPlaylist_AreListed)
{
    const std::string text = written({"playlists", "Music/All.m3u"});
    EXPECT_THAT(text, HasSubstr("  " + testsupport::demoFile("Music/The Sines/01 First.mp3") + "\n"));
    EXPECT_THAT(text, testing::EndsWith("\n2 files\n"));
    const std::vector<Json::Value> lines = jsonLines(written({"playlists", "Music/All.m3u", "--json"}));
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[1]["title"], "Second");
}

TEST_F(MediaCommandsTest, PlaylistWithoutExtension_IsListedAsOne)
{
    std::ofstream(out.path("Favourites")) << "#EXTM3U\nsong.mp3\n";
    fs::copy_file(testsupport::demoFile("Music/The Sines/01 First.mp3"), out.path("song.mp3"));
    Program program({DESKTOP_TV, "--stick", out.path(), "--cache", "none", "playlists", "Favourites"});
    EXPECT_EQ(program.wait(), 0) << program.errors();
    EXPECT_THAT(program.output(), HasSubstr("  " + out.path("song.mp3") + "\n1 file\n"));
}

TEST_F(MediaCommandsTest, FolderNamedLikeAPlaylist_IsListedAsAFolder)
{
    out.makeDirectory("Lists.m3u");
    std::ofstream(out.path("Lists.m3u/all.m3u")) << "#EXTM3U\n";
    Program program({DESKTOP_TV, "--stick", out.path(), "--cache", "none", "playlists", "Lists.m3u"});
    EXPECT_EQ(program.wait(), 0) << program.errors();
    EXPECT_EQ(program.output(), out.path("Lists.m3u/all.m3u") + "\n1 playlist\n");
}

TEST_F(MediaCommandsTest, Photos_AreListedInTheOrderAskedFor)
{
    const std::string text = written({"photos", "Photos/2023", "--sort", "date", "--descending"});
    EXPECT_THAT(text, testing::MatchesRegex("TAKEN +PIXELS +SIZE  NAME\n"
                                            "2023-07-02 18:00:00 +720 x 1280 +[0-9.]+ KB  upright.jpg\n"
                                            "2023-01-15 10:20:30 +1280 x 720 +[0-9.]+ KB  winter.jpg\n2 photos\n"));
    const auto names = [](const std::vector<std::string>& options) {
        std::vector<std::string> words = {"photos", "Photos/2024", "--json"};
        words.insert(words.end(), options.begin(), options.end());
        std::string all;
        for (const Json::Value& photo : jsonLines(written(words))) {
            all += photo["name"].asString() + "|";
        }
        return all;
    };
    EXPECT_EQ(names({}), "all around.jpg|photo 2.jpg|photo 10.jpg|upside down.jpg|");
    EXPECT_EQ(names({"--sort", "date"}), "upside down.jpg|photo 2.jpg|photo 10.jpg|all around.jpg|");
    EXPECT_EQ(names({"--sort", "name", "--descending"}), "upside down.jpg|photo 10.jpg|photo 2.jpg|all around.jpg|");
}

TEST_F(MediaCommandsTest, WhatIsNotThere_IsToldWithItsReason)
{
    const std::string missing = testsupport::demoFile("missing");
    const std::string expected = "desktop-tv: " + missing + ": No such file or directory\n";
    EXPECT_EQ(complaint({"search", "missing"}), expected);
    EXPECT_EQ(complaint({"groups", "missing", "--by", "genre"}), expected);
    EXPECT_EQ(complaint({"info", "missing"}), expected);
    EXPECT_EQ(complaint({"playlists", "missing"}), expected);
    EXPECT_EQ(complaint({"photos", "missing"}), expected);
    EXPECT_EQ(complaint({"playlists", "missing.m3u"}), "desktop-tv: " + missing + ".m3u: No such file or directory\n");
    EXPECT_EQ(complaint({"thumbnails", "missing"}), expected);
    EXPECT_EQ(complaint({"groups", "--by", "genre", "--key", "Polka"}), "desktop-tv: Polka: There is no such group\n");
    EXPECT_EQ(complaint({"info", "/etc/passwd"}), "desktop-tv: /etc/passwd: Not on a stick\n");
}

TEST_F(MediaCommandsTest, InterruptWhileItWorks_EndsItCleanly)
{
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"search"}, {"groups", "--by", "artist"}, {"thumbnails", "Movies"}}) {
        std::vector<std::string> debugged = command(words);
        debugged.insert(debugged.end(), {"--log-level", "debug"});
        Program program(debugged);
        ASSERT_TRUE(
            program.readUntil([&program] { return program.errors().find("Enter MM Browser") != std::string::npos; }));
        program.signal(SIGINT);
        EXPECT_EQ(program.wait(), 128 + SIGINT) << words[0];
        EXPECT_THAT(program.errors(), HasSubstr("Plugin_Unload"));
        EXPECT_THAT(program.errors(), testing::EndsWith("desktop-tv: Cancelled\n"));
    }
}

} // namespace
