#include "tests/desktop/support/DemoStick.h"
#include "tests/desktop/support/MediaReading.h"
#include "tests/desktop/support/Songs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

namespace desktop {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testsupport::demoFile;

class MediaMetadataTest : public testsupport::MediaFileTest {};

TEST_F(MediaMetadataTest, Music_TellsItsTagsAndLength)
{
    for (const char* song :
         {"Music/The Sines/01 First.mp3", "Music/The Sines/02 Second.flac", "Music/The Sines/03 Third.ogg"}) {
        const MediaMetadata metadata = media.metadata(demoFile(song), FILE_TYPE_MUSIC);
        EXPECT_EQ(metadata.error, "") << song;
        EXPECT_TRUE(metadata.title == "First" || metadata.title == "Second" || metadata.title == "Third") << metadata.title;
        EXPECT_THAT(metadata.artists, ElementsAre("The Sines")) << song;
        EXPECT_EQ(metadata.album, "Pure Tones") << song;
        EXPECT_THAT(metadata.genres, ElementsAre("Electronic")) << song;
        EXPECT_EQ(metadata.year, "2024") << song;
        EXPECT_EQ(metadata.duration, 5) << song;
    }
    EXPECT_EQ(media.metadata(demoFile("موسيقى/أغنية.mp3"), FILE_TYPE_MUSIC).title, "أغنية");
}

using testsupport::textFrame;

/// An MP3 file with a tag of these frames.
std::string songWithFrames(const std::string& frames)
{
    return testsupport::id3Tag(frames) + testsupport::silentMp3();
}

/// An MP3 file whose title and artist frames hold these texts in ID3's encoding @p encoding.
std::string songWithTags(char encoding, const std::string& title, const std::string& artist = "")
{
    return songWithFrames(textFrame("TIT2", encoding, title) + textFrame("TPE1", encoding, artist));
}

TEST_F(MediaMetadataTest, TagBehindMuchElse_IsReadTheSame)
{
    for (const int before : {78, 79, 80, 500}) { // of 112 bytes each: about 8 KiB at a time are read
        std::string frames;
        for (int i = 0; i < before; ++i) {
            frames += textFrame("TXXX", 0, std::string(101, 'x'));
        }
        const std::string song = songWithFrames(frames + textFrame("TIT2", 0, "Behind") + textFrame("TPE1", 0, "Much"));
        const MediaMetadata metadata = media.metadata(made("song.mp3", song), FILE_TYPE_MUSIC);
        EXPECT_EQ(metadata.title, "Behind") << before;
        EXPECT_THAT(metadata.artists, ElementsAre("Much")) << before;
        EXPECT_EQ(metadata.duration, 1) << before;
    }
}

TEST_F(MediaMetadataTest, TagsInOtherCharacterSets_AreMadeUtf8)
{
    const struct {
        char encoding;
        std::string stored;
        std::string shown;
    } cases[] = {
        {0, "Caf\xE9", "Café"},     // Latin
        {0, "Caf\xC3\xA9", "Café"}, // UTF-8 that says it is Latin
        {3, "Caf\xC3\xA9", "Café"}, // UTF-8
        {1,
         "\xFF\xFE"
         "C\0a\0f\0\xE9\0"s,
         "Café"},                            // UTF-16
        {0, "two\nlines \x01", "two lines"}, // on one line
    };
    for (const auto& sample : cases) {
        const MediaMetadata metadata =
            media.metadata(made("song.mp3", songWithTags(sample.encoding, sample.stored)), FILE_TYPE_MUSIC);
        EXPECT_EQ(metadata.error, "");
        EXPECT_EQ(metadata.title, sample.shown);
    }
}

constexpr char kGroup[] = "\xCA\xE8\xED\xEE";                             // "Кино" in Windows-1251
constexpr char kSong[] = "\xC3\xF0\xF3\xEF\xEF\xE0 \xEA\xF0\xEE\xE2\xE8"; // "Группа крови"

TEST_F(MediaMetadataTest, TagsThatOnlySayTheyAreLatin_AreReadInTheCharsetTheySpeakFor)
{
    const MediaMetadata metadata = media.metadata(made("song.mp3", songWithTags(0, kSong, kGroup)), FILE_TYPE_MUSIC);
    EXPECT_EQ(metadata.title, "Группа крови");
    EXPECT_THAT(metadata.artists, ElementsAre("Кино"));
    const MediaMetadata western =
        media.metadata(made("song.mp3", songWithTags(0, "L\x92\xE9t\xE9", "No\xEBl")), FILE_TYPE_MUSIC);
    EXPECT_EQ(western.title, "L’été");
    EXPECT_THAT(western.artists, ElementsAre("Noël"));
}

TEST_F(MediaMetadataTest, TagsThatSayTheirCharset_AreBelieved)
{
    const std::string marked = "\xFF\xFE\xCA\0\xE8\0\xED\0\xEE\0\xCA\0\xE8\0\xED\0\xEE\0"s;
    const MediaMetadata metadata = media.metadata(made("song.mp3", songWithTags(1, marked, marked)), FILE_TYPE_MUSIC);
    EXPECT_EQ(metadata.title, "ÊèíîÊèíî");
    EXPECT_THAT(metadata.artists, ElementsAre("ÊèíîÊèíî"));
}

std::string padded(std::string text, std::size_t size)
{
    text.resize(size, '\0');
    return text;
}

TEST_F(MediaMetadataTest, OldestTagsOfMusic_AreReadLikewise)
{
    const std::string tag = "TAG" + padded(kSong, 30) + padded(kGroup, 30) + padded("Blood", 30) + "1988" + padded("", 30);
    const MediaMetadata metadata =
        media.metadata(made("song.mp3", testsupport::silentMp3() + tag + '\x11'), FILE_TYPE_MUSIC);
    EXPECT_EQ(metadata.title, "Группа крови");
    EXPECT_THAT(metadata.artists, ElementsAre("Кино"));
    EXPECT_EQ(metadata.album, "Blood");
    EXPECT_THAT(metadata.genres, ElementsAre("Rock"));
    EXPECT_EQ(metadata.year, "1988");
}

TEST_F(MediaMetadataTest, OldVideoWithTagsOfNoCharset_IsReadLikewise)
{
    constexpr const char* kPlaceholder = "------------"; // as long as the song's name
    testsupport::Program make({"ffmpeg", "-nostdin", "-v", "error", "-f", "lavfi", "-i", "color=red:duration=1", "-metadata",
                               std::string("title=") + kPlaceholder, folder.path("old.avi")});
    ASSERT_EQ(make.wait(), 0) << make.errors();
    std::string bytes = testsupport::readFile(folder.path("old.avi"));
    bytes.replace(bytes.find(kPlaceholder), std::strlen(kPlaceholder), kSong);
    EXPECT_EQ(media.metadata(made("old.avi", bytes), FILE_TYPE_VIDEO).title, "Группа крови");
}

TEST_F(MediaMetadataTest, VeryLongTag_IsCutBetweenCharacters)
{
    std::string title;
    for (int i = 0; i < 60; ++i) {
        title += "é";
    }
    const std::string file = demoFile("Music/The Sines/03 Third.ogg");
    std::string long_title;
    for (int i = 0; i < 20; ++i) {
        long_title += title;
    }
    testsupport::Program tag({"ffmpeg", "-nostdin", "-v", "error", "-i", file, "-c", "copy", "-metadata:s:a:0",
                              "title=x" + long_title, folder.path("long.ogg")});
    ASSERT_EQ(tag.wait(), 0) << tag.errors();
    const MediaMetadata metadata = media.metadata(folder.path("long.ogg"), FILE_TYPE_MUSIC);
    EXPECT_EQ(metadata.title, "x" + long_title.substr(0, 998));
}

TEST_F(MediaMetadataTest, Photo_TellsWhenItWasTakenAndItsSizeAsShown)
{
    const MediaMetadata upright = media.metadata(demoFile("Photos/2023/upright.jpg"), FILE_TYPE_PHOTO);
    EXPECT_EQ(upright.error, "");
    EXPECT_EQ(upright.taken, "2023-07-02 18:00:00");
    EXPECT_EQ(upright.rotation, 90);
    EXPECT_EQ(upright.width, 720);
    EXPECT_EQ(upright.height, 1280);
    EXPECT_FALSE(upright.panorama);
    EXPECT_EQ(media.metadata(demoFile("Photos/2024/upside down.jpg"), FILE_TYPE_PHOTO).rotation, 180);
}

TEST_F(MediaMetadataTest, PhotoOfAllAround_IsAPanorama)
{
    EXPECT_TRUE(media.metadata(demoFile("Photos/2024/all around.jpg"), FILE_TYPE_PHOTO).panorama);
}

TEST_F(MediaMetadataTest, PhotoOfAFormatWithoutMetadata_HasItsSize)
{
    testsupport::Program convert({"ffmpeg", "-nostdin", "-v", "error", "-i", demoFile("Photos/2023/winter.jpg"), "-frames:v",
                                  "1", folder.path("winter.bmp")});
    ASSERT_EQ(convert.wait(), 0) << convert.errors();
    const MediaMetadata metadata = media.metadata(folder.path("winter.bmp"), FILE_TYPE_PHOTO);
    EXPECT_EQ(metadata.error, "");
    EXPECT_EQ(metadata.width, 1280);
    EXPECT_EQ(metadata.height, 720);
}

TEST_F(MediaMetadataTest, Video_TellsItsLengthAndSize)
{
    for (const char* video : {"Movies/counter.mp4", "Movies/two subtitle tracks.mkv", "电影/短片.mkv"}) {
        const MediaMetadata metadata = media.metadata(demoFile(video), FILE_TYPE_VIDEO);
        EXPECT_EQ(metadata.error, "") << video;
        EXPECT_EQ(metadata.duration, 4) << video;
        EXPECT_EQ(metadata.width, 640) << video;
        EXPECT_EQ(metadata.height, 360) << video;
        EXPECT_EQ(metadata.rotation, 0) << video;
    }
    EXPECT_EQ(media.metadata(demoFile("Movies/two subtitle tracks.mkv"), FILE_TYPE_VIDEO).title, "Embedded subtitles");
}

TEST_F(MediaMetadataTest, VideoWithoutALength_IsAsLongAsItsLastTimes)
{
    for (const char* form : {"matroska", "asf"}) {
        testsupport::Program make({"sh", "-c",
                                   "ffmpeg -nostdin -v error -f lavfi -i color=red:size=64x64:duration=17 -f "s + form +
                                       " - >'" + folder.path("recording") + "'"});
        ASSERT_EQ(make.wait(), 0) << make.errors();
        const std::string bytes = testsupport::readFile(folder.path("recording"));
        EXPECT_EQ(media.metadata(folder.path("recording"), FILE_TYPE_VIDEO).duration, 17) << form;
        // Bytes that look like a cluster, and an end within a block, are no reason to give up.
        const MediaMetadata cut =
            media.metadata(made("cut", bytes + "\x1F\x43\xB6\x75\x81?" + "\x1F\x43\xB6\x75"), FILE_TYPE_VIDEO);
        EXPECT_EQ(cut.duration, 17) << form;
        const int half = media.metadata(made("cut", bytes.substr(0, bytes.size() / 2)), FILE_TYPE_VIDEO).duration;
        EXPECT_GT(half, 3) << form;
        EXPECT_LT(half, 15) << form;
    }
}

TEST_F(MediaMetadataTest, OggVideo_TellsTheTagsOfItsStreams)
{
    testsupport::Program make({"ffmpeg", "-nostdin", "-v", "error", "-f", "lavfi", "-i", "color=red:size=64x64:duration=1",
                               "-c:v", "libtheora", "-metadata", "title=The Title", "-metadata", "date=2011",
                               folder.path("video.ogv")});
    ASSERT_EQ(make.wait(), 0) << make.errors();
    const MediaMetadata metadata = media.metadata(folder.path("video.ogv"), FILE_TYPE_VIDEO);
    EXPECT_EQ(metadata.title, "The Title");
    EXPECT_EQ(metadata.year, "2011");
}

TEST_F(MediaMetadataTest, VideoHeldUpright_HasItsSizeAsShown)
{
    testsupport::Program turn({"ffmpeg", "-nostdin", "-v", "error", "-i", demoFile("Movies/counter.mp4"), "-c", "copy",
                               "-metadata:s:v:0", "rotate=90", folder.path("upright.mp4")});
    ASSERT_EQ(turn.wait(), 0) << turn.errors();
    const MediaMetadata metadata = media.metadata(folder.path("upright.mp4"), FILE_TYPE_VIDEO);
    EXPECT_EQ(metadata.rotation, 270);
    EXPECT_EQ(metadata.width, 360);
    EXPECT_EQ(metadata.height, 640);
    const testsupport::Thumbnail thumbnail = media.thumbnail(folder.path("upright.mp4"), FILE_TYPE_VIDEO);
    EXPECT_EQ(thumbnail.picture.width, 135);
    EXPECT_EQ(thumbnail.picture.height, 240);
}

TEST_F(MediaMetadataTest, FileOfAnotherKind_HasOnlyAnError)
{
    for (const FileType type : {FILE_TYPE_PHOTO, FILE_TYPE_VIDEO, FILE_TYPE_MUSIC}) {
        for (const char* file : {"read me.txt", "empty.mp4", "Movies/broken.mp4"}) {
            const MediaMetadata metadata = media.metadata(demoFile(file), type);
            EXPECT_NE(metadata.error, "") << file << type;
            EXPECT_EQ(metadata.title + metadata.taken, "");
            EXPECT_EQ(metadata.duration + metadata.width + metadata.height, 0);
        }
    }
}

} // namespace
} // namespace desktop
