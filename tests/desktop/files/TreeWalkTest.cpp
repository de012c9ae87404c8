#include "desktop/files/TreeWalk.h"

#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

namespace desktop {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class TreeWalkTest : public testing::Test {
protected:
    /// Walks the tree from @p below; every file met is gathered as its path beneath the stick.
    int walk(const std::string& below = "")
    {
        TreeWalk walk(
            {stick.path(), below.empty() ? "." : "./" + below}, cancelled.get_token(),
            [](std::string_view name) { return name != "no"; },
            [this](const WalkedFolder& folder, const WalkTotals& sofar) {
                for (const std::string& file : folder.files) {
                    files.push_back(folder.location.relative + "/" + file);
                }
                if (visited) {
                    visited(folder, sofar);
                }
            });
        const int error = walk.run();
        totals = walk.totals();
        return error;
    }

    testsupport::TemporaryDirectory stick;
    std::stop_source cancelled;
    std::function<void(const WalkedFolder&, const WalkTotals&)> visited;
    std::vector<std::string> files;
    WalkTotals totals;
};

TEST_F(TreeWalkTest, Files_ComeFolderByFolderInNaturalOrder)
{
    for (const char* folder : {"b 10/deep", "b 9/deep/deeper", "a"}) {
        stick.makeDirectory(folder);
    }
    for (const char* file : {"z.mp3", "10.mp3", "9.mp3", "no", "a/1", "b 9/deep/deeper/1", "b 9/deep/1", "b 10/deep/1"}) {
        stick.makeFile(file);
    }
    EXPECT_EQ(walk(), 0);
    EXPECT_THAT(files, ElementsAre("./9.mp3", "./10.mp3", "./z.mp3", "./a/1", "./b 9/deep/1", "./b 9/deep/deeper/1",
                                   "./b 10/deep/1"));
    EXPECT_EQ(totals.folders, 7U);
    EXPECT_EQ(totals.entries, 14U);
    EXPECT_EQ(totals.unreadable, 0U);
}

TEST_F(TreeWalkTest, FolderBelow_IsWalkedAlone)
{
    stick.makeDirectory("a/b");
    stick.makeFile("a/b/1");
    stick.makeFile("2");
    EXPECT_EQ(walk("a"), 0);
    EXPECT_THAT(files, ElementsAre("./a/b/1"));
}

TEST_F(TreeWalkTest, LinksAndWhatIsNoFile_AreLeftOut)
{
    stick.makeDirectory("folder");
    stick.makeFile("folder/file");
    fs::create_symlink("..", stick.path("folder/loop"));
    fs::create_symlink("file", stick.path("folder/link"));
    fs::create_symlink("/etc", stick.path("out"));
    ASSERT_EQ(mkfifo(stick.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(walk(), 0);
    EXPECT_THAT(files, ElementsAre("./folder/file"));
    EXPECT_EQ(totals.folders, 2U);
    EXPECT_EQ(totals.unreadable, 0U);
}

TEST_F(TreeWalkTest, TreeDeeperThanAnyPathOrDescriptorTable_IsWalkedToItsEnd)
{
    constexpr int kDepth = 3000;
    const std::string name(100, 'd');
    int folder = open(stick.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int i = 0; i < kDepth; ++i) {
        ASSERT_EQ(mkdirat(folder, name.c_str(), 0700), 0);
        const int below = openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        close(openat(folder, "file", O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
        close(folder);
        folder = below;
    }
    close(folder);
    EXPECT_EQ(walk(), 0);
    EXPECT_EQ(totals.folders, kDepth + 1U);
    EXPECT_EQ(files.size(), static_cast<std::size_t>(kDepth));
}

TEST_F(TreeWalkTest, FolderThatMovesAway_CostsOnlyWhatIsInIt)
{
    stick.makeDirectory("a/b/c/d");
    stick.makeDirectory("a/b/z");
    stick.makeDirectory("y");
    stick.makeFile("y/1");
    stick.makeFile("a/b/z/2");
    visited = [this](const WalkedFolder& folder, const WalkTotals&) {
        if (folder.location.relative == "./a/b/c") {
            fs::rename(stick.path("a/b/c"), stick.path("moved")); // its ".." is the stick from now on
            fs::rename(stick.path("a/b"), stick.path("moved b"));
        }
    };
    testing::internal::CaptureStdout();
    EXPECT_EQ(walk(), 0);
    EXPECT_THAT(testing::internal::GetCapturedStdout(), testing::HasSubstr("cannot read " + stick.path("a/b")));
    EXPECT_THAT(files, ElementsAre("./y/1"));
    EXPECT_EQ(totals.unreadable, 1U);
}

TEST_F(TreeWalkTest, FolderThatBecomesALink_IsNotFollowed)
{
    stick.makeDirectory("a");
    stick.makeDirectory("b");
    visited = [this](const WalkedFolder& folder, const WalkTotals&) {
        if (folder.location.relative == "./a") {
            fs::remove(stick.path("b"));
            fs::create_symlink("/etc", stick.path("b"));
        }
    };
    EXPECT_EQ(walk(), 0);
    EXPECT_THAT(files, IsEmpty());
    EXPECT_EQ(totals.folders, 2U);
}

TEST_F(TreeWalkTest, Cancelled_EndsAtOnce)
{
    stick.makeDirectory("a/b");
    stick.makeFile("a/b/1");
    visited = [this](const WalkedFolder&, const WalkTotals&) { cancelled.request_stop(); };
    EXPECT_EQ(walk(), ECANCELED);
    EXPECT_EQ(totals.folders, 1U);
    EXPECT_THAT(files, IsEmpty());
}

TEST_F(TreeWalkTest, StickThatGoes_EndsTheWalkAsGone)
{
    stick.makeDirectory("usb/a/b");
    stick.makeFile("usb/a/b/1");
    const std::stop_token goOn = cancelled.get_token();
    TreeWalk walk(
        {stick.path("usb"), "."}, goOn, [](std::string_view) { return true; },
        [this](const WalkedFolder& folder, const WalkTotals&) {
            if (folder.location.relative == ".") {
                fs::rename(stick.path("usb"), stick.path("pulled"));
            }
        });
    EXPECT_EQ(walk.run(), ENODEV);
}

TEST_F(TreeWalkTest, NoFolder_FailsWithItsReason)
{
    stick.makeFile("file");
    EXPECT_EQ(walk("missing"), ENOENT);
    EXPECT_EQ(walk("file"), ENOTDIR);
}

} // namespace
} // namespace desktop
