#include "tests/desktop/support/DemoStick.h"
#include "tests/desktop/support/MediaReading.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

using testsupport::demoFile;
using testsupport::Thumbnail;

class ThumbnailPictureTest : public testing::Test {
protected:
    std::string made(const std::string& name, const std::string& bytes)
    {
        testsupport::writeFile(folder.path(name), bytes);
        return folder.path(name);
    }

    testsupport::TemporaryDirectory folder;
    testsupport::MediaReading media;
};

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
    int value;
    const char* fields; ///< as shown: left, right above left, right below
};

class EveryOrientation : public testing::TestWithParam<Orientation> {};

TEST_P(EveryOrientation, Photo_IsTurnedAsItIsToBeShown)
{
    const testsupport::TemporaryDirectory folder;
    testsupport::writeFile(folder.path("fields.jpg"), testsupport::fourFieldsJpeg(640, 320, GetParam().value));
    testsupport::MediaReading media;
    const Thumbnail thumbnail = media.thumbnail(folder.path("fields.jpg"), FILE_TYPE_PHOTO, 100, 100);
    ASSERT_EQ(thumbnail.error, "");
    const testsupport::Picture& picture = thumbnail.picture;
    const bool lies = GetParam().value <= 4;
    EXPECT_EQ(picture.width, lies ? 100 : 50);
    EXPECT_EQ(picture.height, lies ? 50 : 100);
    EXPECT_EQ(picture.colourAt(.25, .25) + " " + picture.colourAt(.75, .25) + " " + picture.colourAt(.25, .75) + " " +
                  picture.colourAt(.75, .75),
              GetParam().fields);
}

INSTANTIATE_TEST_SUITE_P(Exif, EveryOrientation,
                         testing::Values(Orientation{1, "red green blue white"}, Orientation{2, "green red white blue"},
                                         Orientation{3, "white blue green red"}, Orientation{4, "blue white red green"},
                                         Orientation{5, "red blue green white"}, Orientation{6, "blue red white green"},
                                         Orientation{7, "white green blue red"}, Orientation{8, "green white red blue"}),
                         [](const auto& orientation) { return std::to_string(orientation.param.value); });

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
