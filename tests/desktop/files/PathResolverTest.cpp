#include "desktop/files/PathResolver.h"

#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fcntl.h>

#include <cerrno>
#include <filesystem>

namespace desktop {
namespace {

class PathResolverTest : public testing::Test {
protected:
    PathResolverTest()
    {
        folder.makeDirectory("stick/inner");
        folder.makeDirectory("stick2");
        folder.makeFile("stick/file");
        folder.makeFile("stick2/secret");
    }

    /// 0, or why @p path cannot be opened.
    int open(const std::string& path) const
    {
        errno = 0;
        return PathResolver::open(resolver.locate(path), O_PATH) ? 0 : errno;
    }

    testsupport::TemporaryDirectory folder;
    PathResolver resolver{{folder.path("stick")}};
};

TEST_F(PathResolverTest, PathBeneathTheStick_IsOpened)
{
    EXPECT_EQ(open(folder.path("stick")), 0);
    EXPECT_EQ(open(folder.path("stick/")), 0);
    EXPECT_EQ(open(folder.path("stick//.//inner/../file")), 0);
    EXPECT_EQ(open(folder.path("stick/missing")), ENOENT);
}

TEST_F(PathResolverTest, PathThatLeadsOut_IsRefused)
{
    EXPECT_EQ(open(folder.path("stick/../stick2/secret")), EXDEV);
    EXPECT_EQ(open(folder.path("stick/inner/../../stick2/secret")), EXDEV);
    EXPECT_EQ(open(folder.path("stick2/secret")), EXDEV);
    EXPECT_EQ(open("/etc/passwd"), EXDEV);
    EXPECT_EQ(open("stick/file"), EXDEV);
    EXPECT_EQ(open(""), EXDEV);
}

TEST_F(PathResolverTest, LinkThatLeadsOut_IsRefused)
{
    std::filesystem::create_symlink("../stick2/secret", folder.path("stick/relative"));
    std::filesystem::create_symlink(folder.path("stick2/secret"), folder.path("stick/absolute"));
    std::filesystem::create_symlink("/proc/self/root", folder.path("stick/magic"));
    std::filesystem::create_symlink("loop", folder.path("stick/loop"));
    EXPECT_EQ(open(folder.path("stick/relative")), EXDEV);
    EXPECT_EQ(open(folder.path("stick/absolute")), EXDEV);
    EXPECT_EQ(open(folder.path("stick/magic/etc")), EXDEV);
    EXPECT_EQ(open(folder.path("stick/loop/x")), ELOOP);
}

TEST_F(PathResolverTest, LinkWithinTheStick_IsFollowed)
{
    std::filesystem::create_symlink("../file", folder.path("stick/inner/link"));
    EXPECT_EQ(open(folder.path("stick/inner/link")), 0);
}

TEST_F(PathResolverTest, PathWithAZeroByte_IsRefused)
{
    EXPECT_EQ(open(folder.path("stick/file") + std::string("\0x", 2)), EXDEV);
}

TEST_F(PathResolverTest, StickWithinAStick_HasItsOwnFiles)
{
    const PathResolver both({folder.path("stick"), folder.path("stick/inner")});
    EXPECT_EQ(both.locate(folder.path("stick/inner/a")).volume, folder.path("stick/inner"));
    EXPECT_EQ(both.locate(folder.path("stick/inner2/a")).volume, folder.path("stick"));
}

TEST(PathResolver_LiesIn, Names_CountWhole)
{
    EXPECT_TRUE(liesIn("/a/b", "/a/b/"));
    EXPECT_TRUE(liesIn("/a/b/c", "/a//b"));
    EXPECT_FALSE(liesIn("/a/bc", "/a/b"));
    EXPECT_FALSE(liesIn("/a", "/a/b"));
}

TEST(PathResolver_DescribeError, PathOffTheSticks_IsToldInPlainWords)
{
    EXPECT_EQ(describeError(EXDEV), "Not on a stick");
    EXPECT_EQ(describeError(ENOENT), "No such file or directory");
}

} // namespace
} // namespace desktop
