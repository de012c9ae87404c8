#include "tests/desktop/support/DemoStick.h"
#include "tests/desktop/support/MediaReading.h"
#include "tests/desktop/support/Photos.h"

#include <gtest/gtest.h>

#include <sstream>

namespace desktop {
namespace {

using testsupport::demoFile;
using testsupport::Thumbnail;

class ThumbnailPictureTest : public testsupport::MediaFileTest {};

struct Bounds {
    int width;
    int height;
    int expectedWidth;
    int expectedHeight;
};

TEST_F(ThumbnailPictureTest, Photo_FitsIntoTheBoundsAndKeepsItsShape)
{
    for (const Bounds& bounds : {Bounds{240, 240, 240, 135}, Bounds{100, 20, 36, 20}, Bounds{4000, 4000, 1280, 720},
                                 Bounds{1, 1, 1, 1}, Bounds{240, 360, 240, 135}}) {
        const Thumbnail thumbnail =
            media.thumbnail(demoFile("Photos/2023/winter.jpg"), FILE_TYPE_PHOTO, bounds.width, bounds.height);
        EXPECT_EQ(thumbnail.error, "");
        EXPECT_EQ(thumbnail.picture.width, bounds.expectedWidth);
        EXPECT_EQ(thumbnail.picture.height, bounds.expectedHeight);
    }
}

struct Orientation {
    int value;          ///< EXIF's
    const char* matrix; ///< a video's, of the same meaning: where x and y of a point go
    const char* fields; ///< as shown: left, right above left, right below
};

class EveryOrientation : public testing::TestWithParam<Orientation> {
protected:
    /// The fields of @p file, which is twice as wide as high before it is turned.
    void expectTurned(const std::string& file, FileType type)
    {
        testsupport::MediaReading media;
        const Thumbnail thumbnail = media.thumbnail(file, type, 100, 100);
        ASSERT_EQ(thumbnail.error, "");
        const testsupport::Picture& picture = thumbnail.picture;
        const bool lies = GetParam().value <= 4;
        EXPECT_EQ(picture.width, lies ? 100 : 50);
        EXPECT_EQ(picture.height, lies ? 50 : 100);
        EXPECT_EQ(picture.colourAt(.25, .25) + " " + picture.colourAt(.75, .25) + " " + picture.colourAt(.25, .75) + " " +
                      picture.colourAt(.75, .75),
                  GetParam().fields);
    }

    testsupport::TemporaryDirectory folder;
};

TEST_P(EveryOrientation, Photo_IsTurnedAsItIsToBeShown)
{
    testsupport::writeFile(folder.path("fields.jpg"), testsupport::fourFieldsJpeg(640, 320, GetParam().value));
    expectTurned(folder.path("fields.jpg"), FILE_TYPE_PHOTO);
}

TEST_P(EveryOrientation, TiffPhoto_IsTurnedAsItIsToBeShown)
{
    for (const bool isBigEndian : {false, true}) {
        const std::string file = folder.path("fields.tiff");
        testsupport::writeFile(file, testsupport::fourFieldsTiff(640, 320, GetParam().value, isBigEndian));
        expectTurned(file, FILE_TYPE_PHOTO);
        testsupport::MediaReading media;
        const MediaMetadata metadata = media.metadata(file, FILE_TYPE_PHOTO);
        EXPECT_EQ(metadata.width, GetParam().value <= 4 ? 640 : 320);
        EXPECT_EQ(metadata.height, GetParam().value <= 4 ? 320 : 640);
    }
}

/// Replaces the display matrix of the track in the MP4 file @p bytes: @p matrix is "x to x, x to y, y to x, y to y".
void setMatrix(std::string& bytes, const std::string& matrix)
{
    constexpr std::size_t kMatrix = 44; // bytes from the track header's name on
    constexpr std::size_t kPlaces[] = {0, 4, 12, 16};
    const std::size_t begin = bytes.find("tkhd") + kMatrix;
    std::istringstream numbers(matrix);
    for (const std::size_t place : kPlaces) {
        int number = 0;
        numbers >> number;
        const char sign = number < 0 ? '\xFF' : '\0';
        bytes.replace(begin + place, 4, {sign, static_cast<char>(number), '\0', '\0'}); // 16 bits of it are a fraction
    }
}

TEST_P(EveryOrientation, Video_IsTurnedAsItIsToBeShown)
{
    const std::string video = folder.path("fields.mp4");
    testsupport::writeFile(folder.path("fields.jpg"), testsupport::fourFieldsJpeg(640, 320, 1));
    testsupport::Program make({"ffmpeg", "-nostdin", "-v", "error", "-i", folder.path("fields.jpg"), "-c:v", "libx264",
                               "-pix_fmt", "yuv420p", video});
    ASSERT_EQ(make.wait(), 0) << make.errors();
    std::string bytes = testsupport::readFile(video);
    setMatrix(bytes, GetParam().matrix);
    testsupport::writeFile(video, bytes);
    expectTurned(video, FILE_TYPE_VIDEO);
}

INSTANTIATE_TEST_SUITE_P(
    All, EveryOrientation,
    testing::Values(Orientation{1, "1 0 0 1", "red green blue white"}, Orientation{2, "-1 0 0 1", "green red white blue"},
                    Orientation{3, "-1 0 0 -1", "white blue green red"}, Orientation{4, "1 0 0 -1", "blue white red green"},
                    Orientation{5, "0 1 1 0", "red blue green white"}, Orientation{6, "0 1 -1 0", "blue red white green"},
                    Orientation{7, "0 -1 -1 0", "white green blue red"}, Orientation{8, "0 -1 1 0", "green white red blue"}),
    [](const auto& orientation) { return "Orientation" + std::to_string(orientation.param.value); });

TEST_F(ThumbnailPictureTest, MusicWithACover_ShowsIt)
{
    for (const char* song : {"Music/The Sines/01 First.mp3", "Music/The Sines/02 Second.flac"}) {
        const Thumbnail thumbnail = media.thumbnail(demoFile(song), FILE_TYPE_MUSIC, 100, 100);
        EXPECT_EQ(thumbnail.error, "") << song;
        EXPECT_EQ(thumbnail.picture.width, 100) << song;
        EXPECT_EQ(thumbnail.picture.height, 100) << song;
    }
}

TEST_F(ThumbnailPictureTest, MusicWithoutACover_HasNone)
{
    const Thumbnail thumbnail = media.thumbnail(demoFile("Music/The Sines/03 Third.ogg"), FILE_TYPE_MUSIC);
    EXPECT_EQ(thumbnail.error, "The file holds no picture.");
    EXPECT_EQ(thumbnail.bytes, "");
}

TEST_F(ThumbnailPictureTest, Video_ShowsAFrameALittleWayIn)
{
    // One second of red, then nine of green, a key frame each second.
    testsupport::Program make({"ffmpeg",
                               "-nostdin",
                               "-v",
                               "error",
                               "-f",
                               "lavfi",
                               "-i",
                               "color=red:size=320x240:duration=1",
                               "-f",
                               "lavfi",
                               "-i",
                               "color=0x00ff00:size=320x240:duration=9",
                               "-filter_complex",
                               "[0][1]concat=n=2",
                               "-c:v",
                               "libx264",
                               "-g",
                               "25",
                               "-pix_fmt",
                               "yuv420p",
                               folder.path("two colours.mp4")});
    ASSERT_EQ(make.wait(), 0) << make.errors();
    const Thumbnail thumbnail = media.thumbnail(folder.path("two colours.mp4"), FILE_TYPE_VIDEO, 100, 100);
    EXPECT_EQ(thumbnail.error, "");
    EXPECT_EQ(thumbnail.picture.width, 100);
    EXPECT_EQ(thumbnail.picture.height, 75);
    EXPECT_EQ(thumbnail.picture.colourAt(.5, .5), "green");
}

TEST_F(ThumbnailPictureTest, VideoWithPointsThatAreNotSquare_IsShownInItsShape)
{
    testsupport::Program make({"ffmpeg", "-nostdin", "-v", "error", "-f", "lavfi", "-i",
                               "color=red:size=360x288:duration=1,setsar=2", "-c:v", "libx264", folder.path("wide.mp4")});
    ASSERT_EQ(make.wait(), 0) << make.errors();
    const Thumbnail thumbnail = media.thumbnail(folder.path("wide.mp4"), FILE_TYPE_VIDEO, 100, 100);
    EXPECT_EQ(thumbnail.picture.width, 100);
    EXPECT_EQ(thumbnail.picture.height, 40);
}

TEST_F(ThumbnailPictureTest, AnimatedWebp_ShowsItsFirstFrame)
{
    testsupport::Program convert({"ffmpeg", "-nostdin", "-v", "error", "-i",
                                  made("a.jpg", testsupport::fourFieldsJpeg(64, 32, 1)), "-c:v", "libwebp", "-quality",
                                  "100", folder.path("a.webp")});
    ASSERT_EQ(convert.wait(), 0) << convert.errors();
    const std::string picture = testsupport::readFile(folder.path("a.webp"));
    const std::string whole = testsupport::animatedWebp(picture, 64, 32, 0, 0, 64, 32, 2);
    const std::string within = testsupport::animatedWebp(picture, 64, 32, 64, 96, 128, 128, 2);
    const MediaMetadata metadata = media.metadata(made("b.webp", within), FILE_TYPE_PHOTO);
    EXPECT_EQ(metadata.width, 128);
    EXPECT_EQ(metadata.height, 128);
    for (const std::string& bytes : {whole, whole.substr(0, whole.size() - 40)}) { // or cut within the second frame
        const Thumbnail thumbnail = media.thumbnail(made("b.webp", bytes), FILE_TYPE_PHOTO, 100, 100);
        ASSERT_EQ(thumbnail.error, "");
        EXPECT_EQ(thumbnail.picture.width, 64);
        EXPECT_EQ(thumbnail.picture.colourAt(.25, .25), "red");
        EXPECT_EQ(thumbnail.picture.colourAt(.75, .25), "green");
        EXPECT_EQ(thumbnail.picture.colourAt(.75, .75), "white");
    }
    const Thumbnail corner = media.thumbnail(made("b.webp", within), FILE_TYPE_PHOTO, 128, 128);
    ASSERT_EQ(corner.error, "");
    EXPECT_EQ(corner.picture.colourAt(.625, .8125), "red");
    EXPECT_EQ(corner.picture.colourAt(.875, .9375), "white");
}

TEST_F(ThumbnailPictureTest, AnimatedWebpThatClaimsTooMuch_IsRefused)
{
    testsupport::Program convert({"ffmpeg", "-nostdin", "-v", "error", "-i",
                                  made("a.jpg", testsupport::fourFieldsJpeg(64, 32, 1)), "-c:v", "libwebp",
                                  folder.path("a.webp")});
    ASSERT_EQ(convert.wait(), 0) << convert.errors();
    const std::string picture = testsupport::readFile(folder.path("a.webp"));
    const std::string huge = testsupport::animatedWebp(picture, 64, 32, 0, 0, 16'000, 16'000, 2);
    EXPECT_EQ(media.thumbnail(made("b.webp", huge), FILE_TYPE_PHOTO).error, "The picture is too large.");
    for (const std::string& bytes : {testsupport::animatedWebp(picture, 64, 32, 2, 0, 64, 32, 2),
                                     testsupport::animatedWebp(picture, 64, 32, 0, 0, 64, 32, 0), huge.substr(0, 60)}) {
        EXPECT_NE(media.thumbnail(made("b.webp", bytes), FILE_TYPE_PHOTO).error, "");
    }
}

TEST_F(ThumbnailPictureTest, PhotosOfOtherFormats_AreDecodedToo)
{
    for (const char* name : {"a.png", "a.bmp", "a.gif", "a.tiff", "a.webp"}) {
        testsupport::Program convert({"ffmpeg", "-nostdin", "-v", "error", "-i",
                                      made("a.jpg", testsupport::fourFieldsJpeg(640, 320, 1)), "-frames:v", "1",
                                      folder.path(name)});
        ASSERT_EQ(convert.wait(), 0) << convert.errors();
        const Thumbnail thumbnail = media.thumbnail(folder.path(name), FILE_TYPE_PHOTO, 100, 100);
        EXPECT_EQ(thumbnail.error, "") << name;
        EXPECT_EQ(thumbnail.picture.width, 100) << name;
        EXPECT_EQ(thumbnail.picture.colourAt(.25, .25), "red") << name;
        EXPECT_EQ(thumbnail.picture.colourAt(.75, .75), "white") << name;
    }
}

} // namespace
} // namespace desktop
