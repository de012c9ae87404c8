#include "support/Scenario.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sys/stat.h>

namespace {

using testsupport::TemporaryDirectory;

TEST(ThumbnailDirectory, DoesNotExist_IsCreated)
{
    const std::string dir = "/mtd_rwarea/new";
    Scenario("thumbnailBUffDirInit", [&](ExposedPlugin& plugin) { EXPECT_EQ(plugin.thumbnailBUffDirInit(dir), 0); })
        .happens({info("Check dir first!"), did("access(\"" + dir + "\", 0)"), info("run: mkdir -p " + dir),
                  did("system(\"mkdir -p " + dir + "\")")})
        .check();
}

TEST(ThumbnailDirectory, Exists_IsRemovedFirst)
{
    const std::string dir = "/mtd_rwarea/old";
    Scenario("thumbnailBUffDirInit", [&](ExposedPlugin& plugin) { EXPECT_EQ(plugin.thumbnailBUffDirInit(dir), 0); })
        .given([](FakePlatform& platform, ExposedPlugin&) {
            platform.thumbnailDirectoriesExist = true;
            platform.statuses["system"] = 1; // not looked at
        })
        .happens({info("Check dir first!"), did("access(\"" + dir + "\", 0)"), info("dir: " + dir + " exist! remove first!"),
                  info("run: rm -rf " + dir), did("system(\"rm -rf " + dir + "\")"), info("run: mkdir -p " + dir),
                  did("system(\"mkdir -p " + dir + "\")")})
        .check();
}

TEST(ThumbnailDirectory, OnTheRealDisk_EndsUpEmpty)
{
    const TemporaryDirectory temporary;
    temporary.makeDirectory("thumbs/deep");
    temporary.makeFile("thumbs/deep/old.jpg");
    FakePlatform platform;
    ExposedPlugin plugin;
    platform.runShellCommands = true; // only from here on: the constructor's own directories stay untouched
    EXPECT_EQ(plugin.thumbnailBUffDirInit(temporary.path("thumbs")), 0);
    EXPECT_TRUE(std::filesystem::is_empty(temporary.path("thumbs")));
    EXPECT_EQ(plugin.thumbnailBUffDirInit(temporary.path("new/one")), 0);
    EXPECT_TRUE(std::filesystem::is_empty(temporary.path("new/one")));
}

std::ptrdiff_t openFiles()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator());
}

/// A plugin whose log is read after emptying a directory. Entries come in the file system's order, so lines are sorted.
class EmptyFiles : public testing::Test {
protected:
    int empty(const std::string& dir, int level = 0)
    {
        fillWithOddValues(plugin);
        plugin.m_pPublishCallback = recordPublication;
        platform.logLevel = level;
        platform.takeJournal();
        const StateWatch watch(plugin);
        const int ret = plugin.emptyFilesUnderdir(dir);
        platform.logLevel = 4;
        journal = normalised(platform.takeJournal());
        EXPECT_EQ(journal.find('{'), std::string::npos) << "a field has changed:\n" << journal;
        return ret;
    }

    std::string line(const std::string& message) const { return render({dbg(message)}, "emptyFilesUnderdir", 0); }

    bool logged(const std::string& message) const { return journal.find(line(message)) != std::string::npos; }

    long lines() const { return std::count(journal.begin(), journal.end(), '\n'); }

    TemporaryDirectory temporary;
    FakePlatform platform;
    ExposedPlugin plugin;
    std::string journal;
};

TEST_F(EmptyFiles, PlainFiles_AreRemovedAndEachIsLogged)
{
    temporary.makeFile("a");
    temporary.makeFile("b");
    EXPECT_EQ(empty(temporary.path()), 0);
    EXPECT_FALSE(temporary.has("a"));
    EXPECT_FALSE(temporary.has("b"));
    EXPECT_EQ(journal.find(line("Empty dir:" + temporary.path())), 0U) << "the first line";
    EXPECT_TRUE(logged("remove file:a, ret:0"));
    EXPECT_TRUE(logged("remove file:b, ret:0"));
    EXPECT_TRUE(logged("dir:., :" + temporary.path()));
    EXPECT_TRUE(logged("dir:.., :" + temporary.path()));
    EXPECT_EQ(lines(), 5);
}

TEST_F(EmptyFiles, WorkingDirectory_StaysInTheDirectory)
{
    EXPECT_EQ(empty(temporary.path()), 0);
    EXPECT_EQ(std::filesystem::current_path(), std::filesystem::canonical(temporary.path()));
}

TEST_F(EmptyFiles, RelativePath_IsTakenFromTheWorkingDirectory)
{
    temporary.makeDirectory("top/sub");
    temporary.makeFile("top/file");
    std::filesystem::current_path(temporary.path());
    EXPECT_EQ(empty("top"), 0);
    EXPECT_TRUE(std::filesystem::is_empty(temporary.path("top")));
    EXPECT_EQ(journal.find(line("Empty dir:top")), 0U) << "the first line";
    EXPECT_TRUE(logged("remove file:file, ret:0"));
    EXPECT_TRUE(logged("Clear dir:topsub"));
    EXPECT_EQ(std::filesystem::current_path(), std::filesystem::canonical(temporary.path("top")));
}

TEST_F(EmptyFiles, RelativePathThatEndsInASeparator_DoesNotFindItsSubdirectory)
{
    temporary.makeDirectory("top/sub");
    temporary.makeFile("top/sub/file");
    std::filesystem::current_path(temporary.path());
    EXPECT_EQ(empty("top/"), 0);
    // By then the working directory is "top", in which there is no "top/sub".
    EXPECT_TRUE(temporary.has("top/sub/file"));
    EXPECT_NE(journal.find(render({err("cannot open directory: top/sub")}, "emptyFilesUnderdir", 0)), std::string::npos);
    EXPECT_TRUE(logged("remove dir:sub, ret:-1"));
}

TEST_F(EmptyFiles, EmptySubdirectory_IsRemovedThoughItsPathCannotBeOpened)
{
    temporary.makeDirectory("top/sub");
    EXPECT_EQ(empty(temporary.path("top")), 0);
    EXPECT_FALSE(temporary.has("top/sub"));
    const std::string glued = temporary.path("top") + "sub";
    const std::string expected =
        line("dir:sub, :" + temporary.path("top")) + line("Clear dir:" + glued) + line("Empty dir:" + glued) +
        render({err("cannot open directory: " + glued)}, "emptyFilesUnderdir", 0) + line("remove dir:sub, ret:0");
    EXPECT_NE(journal.find(expected), std::string::npos) << journal;
}

TEST_F(EmptyFiles, FilledSubdirectory_StaysWithItsFiles)
{
    temporary.makeDirectory("top/sub");
    temporary.makeFile("top/sub/file");
    EXPECT_EQ(empty(temporary.path("top")), 0);
    EXPECT_TRUE(temporary.has("top/sub/file"));
    EXPECT_TRUE(logged("remove dir:sub, ret:-1"));
}

TEST_F(EmptyFiles, PathThatEndsInASeparator_ReachesTheSubdirectoryAndStaysThere)
{
    temporary.makeDirectory("top/sub");
    temporary.makeFile("top/sub/file");
    EXPECT_EQ(empty(temporary.path("top/")), 0);
    EXPECT_FALSE(temporary.has("top/sub/file")) << "emptied";
    EXPECT_TRUE(logged("remove file:file, ret:0"));
    // The working directory is now the subdirectory, in which there is no "sub" to remove.
    EXPECT_TRUE(temporary.has("top/sub"));
    EXPECT_TRUE(logged("remove dir:sub, ret:-1"));
    EXPECT_EQ(std::filesystem::current_path(), std::filesystem::canonical(temporary.path("top/sub")));
}

TEST_F(EmptyFiles, PathThatEndsInASeparator_LeavesAnEmptySubdirectory)
{
    temporary.makeDirectory("top/sub");
    EXPECT_EQ(empty(temporary.path("top/")), 0);
    EXPECT_TRUE(temporary.has("top/sub")) << "it is removed by its name, but from within";
    EXPECT_TRUE(logged("remove dir:sub, ret:-1"));
}

TEST_F(EmptyFiles, FirstLine_IsWrittenBeforeTheDirectoryIsOpened)
{
    std::vector<std::ptrdiff_t> openAtLines;
    platform.onJournal = [&openAtLines] {
        openAtLines.push_back(openFiles());
        return std::string();
    };
    EXPECT_EQ(plugin.emptyFilesUnderdir(temporary.path()), 0);
    platform.onJournal = nullptr;
    ASSERT_EQ(openAtLines.size(), 3U) << "the first line, and one for each of the dots";
    EXPECT_EQ(openAtLines[1], openAtLines[0] + 1);
}

TEST_F(EmptyFiles, SubdirectoriesNamedLikeTheDots_AreRemoved)
{
    for (const char* name : {"-", ".-", ".hidden", "...", "..-"}) {
        temporary.makeDirectory("top/" + std::string(name));
    }
    EXPECT_EQ(empty(temporary.path("top")), 0);
    EXPECT_TRUE(std::filesystem::is_empty(temporary.path("top")));
}

TEST_F(EmptyFiles, SeveralSubdirectories_KeepGrowingThePath)
{
    temporary.makeDirectory("top/one");
    temporary.makeDirectory("top/two");
    EXPECT_EQ(empty(temporary.path("top")), 0);
    EXPECT_FALSE(temporary.has("top/one"));
    EXPECT_FALSE(temporary.has("top/two"));
    const std::string top = temporary.path("top");
    EXPECT_TRUE(logged("Clear dir:" + top + "onetwo") || logged("Clear dir:" + top + "twoone")) << journal;
}

TEST_F(EmptyFiles, LinksAndOtherKinds_AreSkipped)
{
    temporary.makeDirectory("top");
    temporary.makeFile("kept");
    std::filesystem::create_symlink("../kept", temporary.path("top/link"));
    std::filesystem::create_directory_symlink("..", temporary.path("top/up"));
    ASSERT_EQ(mkfifo(temporary.path("top/fifo").c_str(), 0600), 0);
    EXPECT_EQ(empty(temporary.path("top")), 0);
    EXPECT_TRUE(temporary.has("top/link"));
    EXPECT_TRUE(temporary.has("top/up"));
    EXPECT_TRUE(temporary.has("top/fifo"));
    EXPECT_TRUE(temporary.has("kept"));
    EXPECT_EQ(lines(), 3) << journal;
}

TEST_F(EmptyFiles, MissingDirectory_IsAnError)
{
    const std::string missing = temporary.path("missing");
    EXPECT_EQ(empty(missing), -1);
    EXPECT_EQ(journal,
              line("Empty dir:" + missing) + render({err("cannot open directory: " + missing)}, "emptyFilesUnderdir", 0));
}

TEST_F(EmptyFiles, LinesSuppressed_EmptiesAllTheSame)
{
    for (int level = 1; level <= 4; ++level) {
        temporary.makeDirectory("top/sub");
        temporary.makeFile("top/file");
        EXPECT_EQ(empty(temporary.path("top"), level), 0);
        EXPECT_TRUE(std::filesystem::is_empty(temporary.path("top")));
        // Of all that happens, only the subdirectory that cannot be reached is an error.
        EXPECT_EQ(journal,
                  render({err("cannot open directory: " + temporary.path("top") + "sub")}, "emptyFilesUnderdir", level));
    }
}

TEST_F(EmptyFiles, Directory_IsClosedAgain)
{
    temporary.makeFile("a");
    const auto before = openFiles();
    EXPECT_EQ(empty(temporary.path()), 0);
    EXPECT_EQ(openFiles(), before);
}

} // namespace
