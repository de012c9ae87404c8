#include "desktop/cli/PictureExport.h"

#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <sstream>

namespace desktop {
namespace {

class PictureExportTest : public testing::Test {
protected:
    PictureExportTest() { std::ofstream(folder.path("picture")) << "a picture"; }

    std::string textOf(const std::string& file) const
    {
        std::ostringstream text;
        text << std::ifstream(file).rdbuf();
        return text.str();
    }

    std::size_t filesIn(const std::string& below) const
    {
        const std::filesystem::directory_iterator files(folder.path(below));
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    testsupport::TemporaryDirectory folder;
    PictureExport pictures{folder.path("out")};
    std::string target;
};

TEST_F(PictureExportTest, Picture_IsCopiedUnderTheNameOfTheMediaFile)
{
    ASSERT_EQ(pictures.prepare(), 0);
    EXPECT_EQ(pictures.copy(folder.path("picture"), "/stick/a film.mkv", target), 0);
    EXPECT_EQ(target, folder.path("out/a film.mkv.jpg"));
    EXPECT_EQ(textOf(target), "a picture");
    EXPECT_EQ(filesIn("out"), 1U);
}

TEST_F(PictureExportTest, NamesThatMeetOrAreTooLong_AreToldApart)
{
    ASSERT_EQ(pictures.prepare(), 0);
    const std::string longName(255, 'x');
    for (const std::string& media :
         {std::string("/one/a.jpg"), std::string("/other/a.jpg"), "/one/" + longName, "/other/" + longName}) {
        EXPECT_EQ(pictures.copy(folder.path("picture"), media, target), 0) << media;
    }
    EXPECT_EQ(filesIn("out"), 4U);
}

TEST_F(PictureExportTest, NameThatIsTooLong_IsCutBetweenTwoCharacters)
{
    ASSERT_EQ(pictures.prepare(), 0);
    std::string letters; // of three bytes each
    for (int letter = 0; letter < 82; ++letter) {
        letters += "片";
    }
    EXPECT_EQ(pictures.copy(folder.path("picture"), "/stick/x" + letters + "片片", target), 0);
    EXPECT_EQ(target, folder.path("out/x" + letters + "~0.jpg"));
}

TEST_F(PictureExportTest, NameThatIsTooLongAndNoUtf8_IsCutAnywhere)
{
    ASSERT_EQ(pictures.prepare(), 0);
    EXPECT_EQ(pictures.copy(folder.path("picture"), "/stick/" + std::string(255, '\xB1'), target), 0);
    EXPECT_EQ(target, folder.path("out/" + std::string(249, '\xB1') + "~0.jpg"));
}

TEST_F(PictureExportTest, CopyOfAnEarlierRun_IsReplaced)
{
    folder.makeFile("out.jpg");
    PictureExport into(folder.path());
    EXPECT_EQ(into.copy(folder.path("picture"), "out", target), 0);
    EXPECT_EQ(textOf(folder.path("out.jpg")), "a picture");
}

TEST_F(PictureExportTest, CopyThatFails_LeavesNothingBehindAndTheOldOneAlone)
{
    ASSERT_EQ(pictures.prepare(), 0);
    folder.makeFile("out/a.jpg.jpg");
    EXPECT_EQ(pictures.copy(folder.path(), "/stick/a.jpg", target), EINVAL); // a folder can be opened but not copied
    EXPECT_EQ(textOf(folder.path("out/a.jpg.jpg")), "content");
    EXPECT_EQ(filesIn("out"), 1U);
}

TEST_F(PictureExportTest, FolderThatCannotBeMade_IsAnError)
{
    EXPECT_EQ(PictureExport(folder.path("picture")).prepare(), ENOTDIR);
    EXPECT_EQ(PictureExport(folder.path("picture/out")).prepare(), ENOTDIR);
}

} // namespace
} // namespace desktop
