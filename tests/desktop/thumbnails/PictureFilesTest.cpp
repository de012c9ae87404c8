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

TEST_F(PictureFilesTest, NewPictures_HaveFilesOfTheirOwnThatCanBeReadBack)
{
    folder.makeDirectory("Mass");
    PictureFolder pictures(folder.path("Mass"));
    const NewPicture first = pictures.begin();
    const NewPicture second = pictures.begin();
    EXPECT_NE(first.path, second.path);
    ASSERT_EQ(write(first.fd.get(), "one", 3), 3);
    ASSERT_EQ(write(second.fd.get(), "two", 3), 3);
    EXPECT_EQ(testsupport::readFile(first.path), "one");
    char bytes[4] = "";
    EXPECT_EQ(pread(second.fd.get(), bytes, sizeof bytes, 0), 3);
    EXPECT_STREQ(bytes, "two");
}

TEST_F(PictureFilesTest, PictureDiscarded_LeavesNoFile)
{
    folder.makeDirectory("Mass");
    PictureFolder pictures(folder.path("Mass"));
    PictureFolder::discard(pictures.begin());
    EXPECT_EQ(filesIn("Mass"), 0U);
}

TEST_F(PictureFilesTest, FolderThatIsNotThere_IsNotMade)
{
    PictureFolder pictures(folder.path("Mass"));
    const NewPicture picture = pictures.begin();
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(picture.fd);
    EXPECT_EQ(picture.path, "");
    EXPECT_FALSE(folder.has("Mass"));
}

TEST_F(PictureFilesTest, Trim_RemovesTheOldestBeyondTwoThousand)
{
    folder.makeDirectory("Mass");
    PictureFolder pictures(folder.path("Mass"));
    std::vector<std::string> files;
    for (int i = 0; i < 2003; ++i) {
        const NewPicture picture = pictures.begin();
        pictures.keep(picture);
        files.push_back(picture.path);
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
