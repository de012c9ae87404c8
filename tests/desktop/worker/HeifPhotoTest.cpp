#include "tests/desktop/support/DemoStick.h"
#include "tests/desktop/support/Heic.h"
#include "tests/desktop/support/MediaReading.h"

#include <gtest/gtest.h>

#include <random>

namespace desktop {
namespace {

using testsupport::HeicForm;
using testsupport::Thumbnail;

class HeifPhotoTest : public testsupport::MediaFileTest {
protected:
    std::string written(const std::string& bytes) const { return MediaFileTest::made("photo.heic", bytes); }

    std::string made(const HeicForm& form) { return written(gridHeic(form)); }

    static std::string fieldsOf(const testsupport::Picture& picture)
    {
        return picture.colourAt(.25, .25) + " " + picture.colourAt(.75, .25) + " " + picture.colourAt(.25, .75) + " " +
               picture.colourAt(.75, .75);
    }
};

TEST_F(HeifPhotoTest, GridOfTiles_IsOnePicture)
{
    const Thumbnail thumbnail = media.thumbnail(made({500, 400}), FILE_TYPE_PHOTO, 100, 100);
    EXPECT_EQ(thumbnail.error, "");
    EXPECT_EQ(thumbnail.picture.width, 100);
    EXPECT_EQ(thumbnail.picture.height, 80);
    EXPECT_EQ(fieldsOf(thumbnail.picture), "red green blue white");
}

TEST_F(HeifPhotoTest, Picture_IsTurnedAsTheFileSaysAndNotByExifAgain)
{
    const struct {
        int anticlockwise;
        bool mirrored;
        const char* fields;
    } cases[] = {{0, false, "red green blue white"}, {1, false, "green white red blue"}, {2, false, "white blue green red"},
                 {3, false, "blue red white green"}, {0, true, "green red white blue"},  {1, true, "red blue green white"}};
    for (const auto& turn : cases) {
        const std::string file = made({500, 400, turn.anticlockwise, turn.mirrored});
        const Thumbnail thumbnail = media.thumbnail(file, FILE_TYPE_PHOTO, 100, 100);
        EXPECT_EQ(fieldsOf(thumbnail.picture), turn.fields) << turn.anticlockwise << turn.mirrored;
        EXPECT_EQ(thumbnail.picture.width, turn.anticlockwise % 2 == 0 ? 100 : 80);
        const MediaMetadata metadata = media.metadata(file, FILE_TYPE_PHOTO);
        EXPECT_EQ(metadata.width, turn.anticlockwise % 2 == 0 ? 500 : 400);
        EXPECT_EQ(metadata.height, turn.anticlockwise % 2 == 0 ? 400 : 500);
        EXPECT_EQ(metadata.rotation, 0);
    }
}

TEST_F(HeifPhotoTest, Photo_TellsWhenItWasTaken)
{
    const MediaMetadata metadata = media.metadata(made(HeicForm()), FILE_TYPE_PHOTO);
    EXPECT_EQ(metadata.error, "");
    EXPECT_EQ(metadata.taken, "2024-05-01 12:00:02");
}

TEST_F(HeifPhotoTest, SmallerVersion_IsShownWhereItIsEnough)
{
    HeicForm form;
    form.smaller = true;
    EXPECT_EQ(fieldsOf(media.thumbnail(made(form), FILE_TYPE_PHOTO, 256, 256).picture), "white white white white");
    const Thumbnail larger = media.thumbnail(made(form), FILE_TYPE_PHOTO, 257, 257);
    EXPECT_EQ(fieldsOf(larger.picture), "red green blue white");
    EXPECT_EQ(larger.picture.width, 257);
}

TEST_F(HeifPhotoTest, Avif_IsDecodedToo)
{
    testsupport::writeFile(folder.path("fields.jpg"), testsupport::fourFieldsJpeg(640, 320, 1));
    testsupport::Program make({"ffmpeg", "-nostdin", "-v", "error", "-i", folder.path("fields.jpg"), "-c:v", "libaom-av1",
                               "-cpu-used", "8", "-still-picture", "1", folder.path("fields.avif")});
    ASSERT_EQ(make.wait(), 0) << make.errors();
    const Thumbnail thumbnail = media.thumbnail(folder.path("fields.avif"), FILE_TYPE_PHOTO, 100, 100);
    EXPECT_EQ(thumbnail.error, "");
    EXPECT_EQ(fieldsOf(thumbnail.picture), "red green blue white");
    EXPECT_EQ(media.metadata(folder.path("fields.avif"), FILE_TYPE_PHOTO).width, 640);
}

TEST_F(HeifPhotoTest, PhotoThatClaimsGigabytes_IsRefusedByItsClaim)
{
    testsupport::StandIn counting("echo started >> $0.log; exec '" MEDIA_WORKER "'");
    testsupport::MediaReading counted({counting.program()});
    for (const unsigned int side : {30'000U, 0x7FFFFFFFU}) {
        EXPECT_NE(counted.thumbnail(made({side, side}), FILE_TYPE_PHOTO).error, "") << side;
        EXPECT_NE(counted.thumbnail(made({512, 512, 0, false, false, side}), FILE_TYPE_PHOTO).error, "") << side;
    }
    EXPECT_EQ(counted.thumbnail(made({10'000, 10'000}), FILE_TYPE_PHOTO).error, "The picture is too large.");
    EXPECT_EQ(counted.metadata(made({10'000, 10'000}), FILE_TYPE_PHOTO).width, 10'000); // which takes nothing
    EXPECT_EQ(counted.thumbnail(made(HeicForm()), FILE_TYPE_PHOTO).picture.width, 240);
    EXPECT_EQ(counting.log(), "started\n"); // refused, not killed
}

TEST_F(HeifPhotoTest, FileTooShortToTell_IsNoSuchPhoto)
{
    for (const std::string bytes : {"content", "\xFF\xD8\xFF", ""}) {
        EXPECT_EQ(media.thumbnail(written(bytes), FILE_TYPE_PHOTO).error.find("ftyp"), std::string::npos);
    }
}

TEST_F(HeifPhotoTest, DamagedPhotos_HarmNothingElse)
{
    const std::string whole = testsupport::gridHeic({500, 400, 1, true, true});
    std::mt19937 random(20'240'501);
    for (int round = 0; round < 60; ++round) {
        std::string bytes = whole;
        for (int i = 0; i < 8; ++i) {
            bytes[random() % (round % 2 == 0 ? 800 : bytes.size())] = static_cast<char>(random());
        }
        const Thumbnail thumbnail = media.thumbnail(written(bytes), FILE_TYPE_PHOTO);
        EXPECT_TRUE(!thumbnail.error.empty() || thumbnail.picture.width > 0) << round;
        EXPECT_GE(media.metadata(written(bytes), FILE_TYPE_PHOTO).width, 0) << round;
    }
    EXPECT_EQ(media.metadata(made(HeicForm()), FILE_TYPE_PHOTO).width, 512);
}

} // namespace
} // namespace desktop
