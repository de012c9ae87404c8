#include "tests/desktop/support/ManyFiles.h"
#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <sstream>

namespace {

namespace fs = std::filesystem;
using testsupport::Program;

class BrowseTest : public testing::Test {
protected:
    BrowseTest()
    {
        stick.makeDirectory("电影/deep");
        for (const char* file : {"a10.mp3", "a9.mp3", "b.jpg", "notes.txt", "电影/c.mkv", "电影/deep/d.mkv"}) {
            stick.makeFile(file);
        }
    }

    std::vector<std::string> browse(const std::vector<std::string>& more = {}) const
    {
        std::vector<std::string> command = {DESKTOP_TV, "--stick", stick.path(), "browse"};
        command.insert(command.end(), more.begin(), more.end());
        return command;
    }

    /// What browse with @p more writes; it must succeed.
    std::string listing(const std::vector<std::string>& more = {}) const
    {
        Program program(browse(more));
        EXPECT_EQ(program.wait(), 0) << program.errors();
        EXPECT_EQ(program.errors(), "");
        return program.output();
    }

    /// What browse with @p more complains of; it must fail with 1.
    std::string complaint(const std::vector<std::string>& more) const
    {
        Program program(browse(more));
        EXPECT_EQ(program.wait(), 1) << program.output();
        return program.errors();
    }

    testsupport::TemporaryDirectory stick;
};

// The lines of entries cut down to type and name: sizes and times are not the same everywhere.
std::string onlyNames(const std::string& listing)
{
    constexpr std::size_t kTime = 21; // columns before it
    constexpr std::size_t kName = 42;
    std::string names;
    std::istringstream lines(listing);
    for (std::string line; std::getline(lines, line);) {
        const bool isEntry = line.size() > kName && line[kTime + 4] == '-' && line[kTime + 7] == '-';
        names += (isEntry ? line.substr(0, line.find(' ')) + " " + line.substr(kName) : line) + "\n";
    }
    return names;
}

bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

TEST_F(BrowseTest, WithoutPath_ListsTheStick)
{
    const std::string text = listing();
    EXPECT_THAT(text, testing::ContainsRegex(" of [0-9.]+[KMG]B used \\([0-9]+%\\), [0-9.]+[KMG]B free\n"));
    EXPECT_TRUE(contains(text, "USB mass storage on this computer: ")) << text;
    const std::string expected = "\n" + stick.path() +
                                 "\nTYPE           SIZE  TIME                 NAME\n"
                                 "folder 电影\nmusic a9.mp3\nmusic a10.mp3\nphoto b.jpg\nfile notes.txt\n"
                                 "1 folder, 4 files, 28 B\n";
    EXPECT_TRUE(contains(onlyNames(text), expected)) << text;
    EXPECT_FALSE(contains(text, "\x1b")) << text;
}

TEST_F(BrowseTest, PathBelowTheFirstStickOrAbsolute_IsListed)
{
    EXPECT_TRUE(contains(onlyNames(listing({"电影"})), "folder deep\nvideo c.mkv\n"));
    EXPECT_TRUE(contains(onlyNames(listing({stick.path("电影/deep")})), "video d.mkv\n0 folders, 1 file, 7 B\n"));
}

TEST_F(BrowseTest, Recursive_ListsTheFoldersBelowInOrder)
{
    const std::string text = listing({"--recursive"});
    const std::size_t root = text.find("\n" + stick.path() + "\n");
    const std::size_t films = text.find("\n" + stick.path("电影") + "\n");
    const std::size_t deep = text.find("\n" + stick.path("电影/deep") + "\n");
    EXPECT_LT(root, films);
    EXPECT_LT(films, deep);
    EXPECT_NE(deep, std::string::npos);
}

TEST_F(BrowseTest, RecursiveWithLinksThatLeadBack_Ends)
{
    fs::create_symlink(".", stick.path("self"));
    fs::create_symlink("../..", stick.path("电影/deep/up"));
    EXPECT_TRUE(contains(onlyNames(listing({"-r"})), "closed self\n"));
}

TEST_F(BrowseTest, Pages_AreShownWhenAskedFor)
{
    const std::string all = onlyNames(listing({"--page-size", "2"}));
    EXPECT_TRUE(contains(all,
                         "page 1 of 3\nfolder 电影\nmusic a9.mp3\npage 2 of 3\nmusic a10.mp3\nphoto b.jpg\npage 3 of 3\n"
                         "file notes.txt\n1 folder, 4 files"))
        << all;
    const std::string second = onlyNames(listing({"--page-size", "2", "--page", "2"}));
    EXPECT_TRUE(contains(second, "page 2\nmusic a10.mp3\nphoto b.jpg\n0 folders, 2 files")) << second;
    EXPECT_EQ(complaint({"--page-size", "2", "--page", "4"}), "desktop-tv: " + stick.path() + ": It has no page 4\n");
    EXPECT_EQ(complaint({"b.jpg", "--page-size", "2", "--page", "1"}),
              "desktop-tv: " + stick.path("b.jpg") + ": Not a directory\n");
}

TEST_F(BrowseTest, PageOfALongFolder_ComesWithoutTheOthers)
{
    stick.makeDirectory("many");
    testsupport::makeManyFiles(stick.path("many"), 20'000);
    Program program(browse({"many", "--page-size", "3", "--page", "6000", "--log-level", "debug"}));
    EXPECT_EQ(program.wait(), 0);
    EXPECT_TRUE(contains(onlyNames(program.output()), "page 6000\nphoto 17997.jpg\nphoto 17998.jpg\nphoto 17999.jpg\n"));
    EXPECT_TRUE(contains(program.errors(), "17998.jpg"));
    EXPECT_FALSE(contains(program.errors(), "18001.jpg")); // the plugin logs every entry that it hands over
    EXPECT_TRUE(contains(onlyNames(listing({"电影/deep", "--page-size", "1", "--page", "1"})), "video d.mkv\n"));
}

TEST_F(BrowseTest, Json_IsALineForEachEntry)
{
    const std::vector<Json::Value> entries = testsupport::jsonLines(listing({"--json"}));
    ASSERT_EQ(entries.size(), 5U);
    EXPECT_EQ(entries[0]["path"], stick.path("电影"));
    EXPECT_EQ(entries[1]["name"], "a9.mp3");
    EXPECT_EQ(testsupport::jsonLines(listing({"--json", "-r"})).size(), 8U);
    EXPECT_EQ(testsupport::jsonLines(listing({"--json", "--page-size", "2", "--page", "3"})).size(), 1U);
}

TEST_F(BrowseTest, MoreEntriesThanAreFetchedAtATime_AreAllListed)
{
    stick.makeDirectory("many");
    testsupport::makeManyFiles(stick.path("many"), 2500);
    const std::string text = onlyNames(listing({"many"}));
    EXPECT_TRUE(contains(text, "photo 999.jpg\nphoto 1000.jpg\n"));
    EXPECT_TRUE(contains(text, "0 folders, 2500 files"));
}

TEST_F(BrowseTest, PathThatCannotBeListed_IsToldWithItsReason)
{
    EXPECT_EQ(complaint({"missing"}), "desktop-tv: " + stick.path("missing") + ": No such file or directory\n");
    EXPECT_EQ(complaint({"b.jpg"}), "desktop-tv: " + stick.path("b.jpg") + ": Not a directory\n");
    EXPECT_EQ(complaint({"/etc"}), "desktop-tv: /etc: Not on a stick\n");
    EXPECT_EQ(complaint({"../.."}), "desktop-tv: " + stick.path("../..") + ": Not on a stick\n");
}

TEST_F(BrowseTest, StickThatIsNotThere_IsTold)
{
    Program missing({DESKTOP_TV, "--stick", stick.path("nowhere"), "browse"});
    EXPECT_EQ(missing.wait(), 1);
    EXPECT_EQ(missing.errors(), "desktop-tv: no stick: None of the folders given exists\n");
    Program file({DESKTOP_TV, "--stick", stick.path("b.jpg"), "browse"});
    EXPECT_EQ(file.wait(), 2);
    EXPECT_TRUE(contains(file.errors(), "is no folder")) << file.errors();
}

TEST_F(BrowseTest, NameThatIsNoUtf8_CanBeTypedOrPasted)
{
    stick.makeDirectory("caf\xE9");
    stick.makeFile("caf\xE9/x.jpg");
    EXPECT_TRUE(contains(onlyNames(listing()), "folder caf\\xE9\n"));
    EXPECT_TRUE(contains(onlyNames(listing({"caf\xE9"})), "photo x.jpg\n"));
    EXPECT_TRUE(contains(onlyNames(listing({"caf\\xE9"})), "photo x.jpg\n"));
}

TEST_F(BrowseTest, InterruptWhileNobodyReadsTheListing_EndsIt)
{
    testsupport::makeManyFiles(stick.path(), 3000, "a name that fills the pipe "); // which holds less
    Program program(browse());
    ASSERT_TRUE(program.readUntil([&program] { return contains(program.output(), "TYPE"); }));
    program.signal(SIGINT);
    EXPECT_EQ(program.wait(), 128 + SIGINT);
    EXPECT_FALSE(contains(program.output(), "3004 files"));
}

// The debug log fills its pipe while the entries are delivered, so the answer cannot come before the interrupt does.
TEST_F(BrowseTest, InterruptWhileAFolderIsRead_CancelsIt)
{
    testsupport::makeManyFiles(stick.path(), 3000);
    Program program({DESKTOP_TV, "--log-level", "debug", "--stick", stick.path(), "browse"});
    ASSERT_TRUE(program.readUntil([&program] { return contains(program.errors(), "storagemedia.folder.chgdir"); }));
    program.leaveErrorsUnread();
    program.signal(SIGINT);
    EXPECT_EQ(program.wait(), 128 + SIGINT);
    EXPECT_TRUE(contains(program.errors(), "Plugin_Execute: storagemedia.folder.user.cancel"));
    EXPECT_TRUE(contains(program.errors(), "Plugin_Unload"));
    EXPECT_FALSE(contains(program.output(), "TYPE"));
}

TEST_F(BrowseTest, OnATerminal_ColoursAndProgressAreShown)
{
    testsupport::makeManyFiles(stick.path(), 600);
    const std::string command = std::string(DESKTOP_TV) + " --stick " + stick.path() + " browse";
    Program program({"script", "-qec", command, "/dev/null"});
    EXPECT_EQ(program.wait(), 0);
    EXPECT_TRUE(contains(program.output(), "\x1b[36mb.jpg\x1b[0m")) << program.output();
    EXPECT_TRUE(contains(program.output(), "\r\x1b[K512 entries read of " + stick.path())) << program.output();
}

} // namespace
