#include "desktop/thumbnails/PictureFiles.h"

#include "tests/desktop/support/Jpeg.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

namespace desktop {
namespace {

namespace fs = std::filesystem;

class PictureFilesTest : public testing::Test {
protected:
    UniqueFd picture(const std::string& content)
    {
        testsupport::writeFile(folder.path("source"), content);
        return UniqueFd(open(folder.path("source").c_str(), O_RDONLY | O_CLOEXEC));
    }

    std::size_t filesIn(const std::string& below) const
    {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder.path(below)), fs::directory_iterator()));
    }

    testsupport::TemporaryDirectory folder;
};

TEST_F(PictureFilesTest, PicturesHandedOver_HaveFilesOfTheirOwn)
{
    folder.makeDirectory("Mass");
    PictureFolder pictures(folder.path("Mass"));
    const std::string first = pictures.add(picture("one").get());
    const std::string second = pictures.add(picture("two").get());
    EXPECT_NE(first, second);
    EXPECT_EQ(testsupport::readFile(first), "one");
    EXPECT_EQ(testsupport::readFile(second), "two");
}

TEST_F(PictureFilesTest, FolderThatIsNotThere_IsNotMade)
{
    PictureFolder pictures(folder.path("Mass"));
    EXPECT_EQ(pictures.add(picture("one").get()), "");
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(folder.has("Mass"));
}

TEST_F(PictureFilesTest, Trim_RemovesTheOldestBeyondTwoThousand)
{
    folder.makeDirectory("Mass");
    PictureFolder pictures(folder.path("Mass"));
    const UniqueFd source = picture("one");
    std::vector<std::string> files;
    for (int i = 0; i < 2003; ++i) {
        files.push_back(pictures.add(source.get()));
    }
    EXPECT_EQ(filesIn("Mass"), 2003U);
    pictures.trim();
    EXPECT_EQ(filesIn("Mass"), 2000U);
    EXPECT_FALSE(fs::exists(files[2]));
    EXPECT_TRUE(fs::exists(files[3]));
}

TEST_F(PictureFilesTest, PictureKept_IsFoundByTheNextOne)
{
    EXPECT_FALSE(PictureCache(folder.path("cache")).find("key"));
    PictureCache(folder.path("cache")).keep("key", picture("one").get());
    const UniqueFd found = PictureCache(folder.path("cache")).find("key");
    ASSERT_TRUE(found);
    char bytes[4] = "";
    EXPECT_EQ(read(found.get(), bytes, sizeof bytes), 3);
    EXPECT_STREQ(bytes, "one");
    EXPECT_FALSE(PictureCache(folder.path("cache")).find("other"));
    EXPECT_EQ(filesIn("cache/thumbnails"), 1U);
}

TEST_F(PictureFilesTest, CacheWithoutAFolder_KeepsNothing)
{
    PictureCache cache("");
    cache.keep("key", picture("one").get());
    EXPECT_FALSE(cache.find("key"));
    EXPECT_FALSE(fs::exists("/thumbnails"));
}

TEST_F(PictureFilesTest, CacheThatCannotBeWrittenTo_IsDoneWithout)
{
    folder.makeFile("cache");
    PictureCache cache(folder.path("cache"));
    cache.keep("key", picture("one").get());
    EXPECT_FALSE(cache.find("key"));
}

TEST_F(PictureFilesTest, FullCache_LosesItsOldestPictures)
{
    folder.makeDirectory("cache/thumbnails");
    for (int i = 0; i < 20'001; ++i) {
        UniqueFd(open(folder.path("cache/thumbnails/" + std::to_string(i) + ".jpg").c_str(), O_CREAT | O_WRONLY, 0600));
    }
    const std::string oldest = folder.path("cache/thumbnails/12345.jpg");
    fs::last_write_time(oldest, fs::last_write_time(oldest) - std::chrono::hours(1));
    PictureCache(folder.path("cache")).keep("key", picture("one").get());
    EXPECT_EQ(filesIn("cache/thumbnails"), 20'001U); // 20,000 and the new one
    EXPECT_FALSE(fs::exists(oldest));
}

} // namespace
} // namespace desktop
