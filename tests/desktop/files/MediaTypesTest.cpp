#include "desktop/files/MediaTypes.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <string>

namespace desktop {
namespace {

using namespace std::string_literals;

TEST(MediaTypes_ByExtension, KnownExtension_GivesItsType)
{
    EXPECT_EQ(typeByExtension("a.jpg"), FILE_TYPE_PHOTO);
    EXPECT_EQ(typeByExtension("a.MKV"), FILE_TYPE_VIDEO);
    EXPECT_EQ(typeByExtension("a.b.Flac"), FILE_TYPE_MUSIC);
    EXPECT_EQ(typeByExtension("a.m3u8"), FILE_TYPE_PLAYLIST);
    EXPECT_EQ(typeByExtension("a.srt"), FILE_TYPE_OTHER);
}

TEST(MediaTypes_ByExtension, NoOrSharedOrUnknownExtension_SaysNothing)
{
    for (const char* name : {"video", ".jpg", "a.", "a.ts", "a.DAT", "a.unheard", ""}) {
        EXPECT_EQ(typeByExtension(name), FILE_TYPE_UNKNOWN) << name;
    }
}

TEST(MediaTypes_ByExtension, AtTheProgramsEnd_StillGivesItsType)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // in a new process, which has not used the types before
    const auto endWithTheTypes = [] {
        // Runs after the destructors of what is made later than this call.
        std::atexit([] { _exit(typeByExtension("a.mp4") == FILE_TYPE_VIDEO ? 0 : 1); });
        typeByExtension("a.mp4");
        std::exit(2);
    };
    EXPECT_EXIT(endWithTheTypes(), testing::ExitedWithCode(0), "");
}

TEST(MediaTypes_NameWithoutExtension, LeadingDot_BeginsNoExtension)
{
    EXPECT_EQ(nameWithoutExtension("song.live.mp3"), "song.live");
    EXPECT_EQ(nameWithoutExtension(".hidden"), ".hidden");
    EXPECT_EQ(nameWithoutExtension("plain"), "plain");
}

struct Content {
    const char* name;
    std::string bytes;
    FileType type;
};

std::string packets(std::size_t length, std::size_t sync)
{
    std::string bytes(kContentBytes, 'x');
    for (std::size_t at = sync; at < bytes.size(); at += length) {
        bytes[at] = 'G';
    }
    return bytes;
}

class ByContent : public testing::TestWithParam<Content> {};

TEST_P(ByContent, FirstBytes_GiveTheType)
{
    EXPECT_EQ(typeByContent(GetParam().bytes), GetParam().type);
}

INSTANTIATE_TEST_SUITE_P(
    MediaTypes, ByContent,
    testing::Values(
        Content{"Jpeg", "\xFF\xD8\xFF\xE0", FILE_TYPE_PHOTO}, Content{"Png", "\x89PNG\r\n\x1A\n\0"s, FILE_TYPE_PHOTO},
        Content{"Heif", "\0\0\0\x18"s + "ftypheic", FILE_TYPE_PHOTO},
        Content{"Webp", "RIFF\0\0\0\0WEBPVP8 "s, FILE_TYPE_PHOTO},
        Content{"Bitmap", "BM\x10\x20\0\0\0\0\0\0\x36\0"s, FILE_TYPE_PHOTO},
        Content{"TextThatBeginsAsABitmap", "BMW drives on, and on", FILE_TYPE_OTHER},
        Content{"Mp4", "\0\0\0\x20"s + "ftypisom", FILE_TYPE_VIDEO},
        Content{"M4a", "\0\0\0\x20"s + "ftypM4A ", FILE_TYPE_MUSIC},
        Content{"Matroska", "\x1A\x45\xDF\xA3", FILE_TYPE_VIDEO}, Content{"Avi", "RIFF\0\0\0\0AVI LIST"s, FILE_TYPE_VIDEO},
        Content{"TransportStream", packets(188, 0), FILE_TYPE_VIDEO},
        Content{"TimedTransportStream", packets(192, 4), FILE_TYPE_VIDEO},
        Content{"TextWithTwoSyncBytes", packets(188, 0).substr(0, 200), FILE_TYPE_OTHER},
        Content{"Id3", "ID3\x03", FILE_TYPE_MUSIC}, Content{"MpegAudioFrame", "\xFF\xFB\x90\x64", FILE_TYPE_MUSIC},
        Content{"AdtsFrame", "\xFF\xF1\x50\x80", FILE_TYPE_MUSIC},
        Content{"BytesThatAreNoFrame", "\xFF\xFF\xFF\xFF", FILE_TYPE_OTHER},
        Content{"OggMusic", "OggS\0\2"s + std::string(22, '\0') + "\x01vorbis", FILE_TYPE_MUSIC},
        Content{"OggVideo", "OggS\0\2"s + std::string(22, '\0') + "\x80theora", FILE_TYPE_VIDEO},
        Content{"Wave", "RIFF\0\0\0\0WAVEfmt "s, FILE_TYPE_MUSIC}, Content{"M3u", "#EXTM3U\n", FILE_TYPE_PLAYLIST},
        Content{"Text", "hello", FILE_TYPE_OTHER}, Content{"Nothing", "", FILE_TYPE_OTHER}),
    [](const auto& content) { return content.param.name; });

} // namespace
} // namespace desktop
