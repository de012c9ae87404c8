#include "tests/desktop/support/DemoStick.h"
#include "tests/desktop/support/MediaReading.h"
#include "tests/desktop/support/Songs.h"

#include "desktop/text/NameEncoding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <random>

namespace desktop {
namespace {

using namespace std::string_literals;
using testsupport::demoFile;
using testsupport::Thumbnail;

constexpr std::chrono::seconds kTimeout(5); // of the workers, for one file

class HostileMediaTest : public testsupport::MediaFileTest {
protected:
    std::string made(const std::string& bytes) const { return MediaFileTest::made("hostile", bytes); }

    /// Reads the file both ways, and holds what comes of it against what every answer keeps to.
    void read(const std::string& file, FileType type)
    {
        const auto begin = std::chrono::steady_clock::now();
        const MediaMetadata metadata = media.metadata(file, type);
        EXPECT_GE(metadata.duration, 0);
        EXPECT_GE(metadata.width, 0);
        EXPECT_GE(metadata.height, 0);
        EXPECT_EQ(metadata.rotation % 90, 0);
        std::vector<std::string> texts = {metadata.title, metadata.album};
        texts.insert(texts.end(), metadata.artists.begin(), metadata.artists.end());
        texts.insert(texts.end(), metadata.genres.begin(), metadata.genres.end());
        for (const std::string& text : texts) {
            EXPECT_EQ(escapeBadBytes(text), text);
        }
        const Thumbnail thumbnail = media.thumbnail(file, type);
        if (thumbnail.error.empty()) {
            EXPECT_GT(thumbnail.picture.width, 0);
            EXPECT_LE(thumbnail.picture.width, 240);
            EXPECT_LE(thumbnail.picture.height, 240);
        }
        EXPECT_LT(std::chrono::steady_clock::now() - begin, 3 * kTimeout);
    }

    void expectThatWorkGoesOn()
    {
        EXPECT_EQ(media.metadata(demoFile("Movies/counter.mp4"), FILE_TYPE_VIDEO).duration, 4);
        EXPECT_EQ(media.thumbnail(demoFile("Photos/2023/winter.jpg"), FILE_TYPE_PHOTO).picture.width, 240);
    }
};

struct Sample {
    const char* file;
    FileType type;
};

constexpr Sample kSamples[] = {
    {"Music/The Sines/01 First.mp3", FILE_TYPE_MUSIC},  {"Music/The Sines/02 Second.flac", FILE_TYPE_MUSIC},
    {"Music/The Sines/03 Third.ogg", FILE_TYPE_MUSIC},  {"Photos/2023/upright.jpg", FILE_TYPE_PHOTO},
    {"Photos/2024/all around.jpg", FILE_TYPE_PHOTO},    {"Movies/Holiday/beach 10.mp4", FILE_TYPE_VIDEO},
    {"Movies/Holiday/old camera.avi", FILE_TYPE_VIDEO}, {"Movies/two subtitle tracks.mkv", FILE_TYPE_VIDEO},
};

std::string damaged(std::string bytes, std::mt19937& random)
{
    const auto below = [&random](std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random); };
    // Headers are hit as often as all the rest.
    const std::size_t reach = below(2) == 0 ? std::min<std::size_t>(bytes.size(), 1024) : bytes.size();
    for (std::size_t flips = 1 + below(40); flips > 0; --flips) {
        bytes[below(reach)] = static_cast<char>(below(256));
    }
    if (below(4) == 0) {
        bytes.resize(below(bytes.size()));
    }
    return bytes;
}

TEST_F(HostileMediaTest, TwoHundredDamagedFiles_HarmNothingElse)
{
    std::mt19937 random(20'241'231);
    for (int round = 0; round < 25; ++round) {
        for (const Sample& sample : kSamples) {
            SCOPED_TRACE(sample.file + ", round "s + std::to_string(round));
            read(made(damaged(testsupport::readFile(demoFile(sample.file)), random)), sample.type);
        }
    }
    expectThatWorkGoesOn();
}

TEST_F(HostileMediaTest, FilesCutShort_GiveWhatIsThereOrAnError)
{
    for (const Sample& sample : kSamples) {
        const std::string bytes = testsupport::readFile(demoFile(sample.file));
        for (const std::size_t size : {std::size_t{1}, std::size_t{12}, std::size_t{200}, bytes.size() / 2}) {
            SCOPED_TRACE(sample.file + ", "s + std::to_string(size));
            read(made(bytes.substr(0, size)), sample.type);
        }
    }
    expectThatWorkGoesOn();
}

TEST_F(HostileMediaTest, JpegCutInTheMiddle_StillHasItsUpperHalf)
{
    const std::string bytes = testsupport::fourFieldsJpeg(640, 320, 1);
    const Thumbnail thumbnail = media.thumbnail(made(bytes.substr(0, bytes.size() * 3 / 5)), FILE_TYPE_PHOTO, 100, 100);
    EXPECT_EQ(thumbnail.error, "");
    EXPECT_EQ(thumbnail.picture.colourAt(.25, .05), "red");
}

/// A PNG file that claims @p side x @p side points of eight bytes.
std::string hugePng(int side)
{
    std::string size;
    for (int shift = 24; shift >= 0; shift -= 8) {
        size += static_cast<char>(side >> shift);
    }
    const std::string header = "\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR"s + size + size + "\x10\x06\0\0\0CRC!"s;
    return header + "\0\0\0\x0CIDAT\x78\x9C\x63\0\0\0\x01\0\x01\0\0\0CRC!"s + "\0\0\0\0IENDCRC!"s;
}

TEST_F(HostileMediaTest, PictureThatClaimsGigabytes_IsRefusedWithinTheWorkersMemory)
{
    testsupport::StandIn counting("echo started >> $0.log; exec '" MEDIA_WORKER "'");
    testsupport::MediaReading counted({counting.program()});
    for (const int side : {16'000, 30'000, 0x7FFFFFFF}) {
        EXPECT_NE(counted.thumbnail(made(hugePng(side)), FILE_TYPE_PHOTO).error, "") << side;
    }
    EXPECT_EQ(counted.thumbnail(demoFile("Photos/2023/winter.jpg"), FILE_TYPE_PHOTO).picture.width, 240);
    EXPECT_EQ(counting.log(), "started\n"); // refused, not killed
}

TEST_F(HostileMediaTest, TagThatClaimsToBeHuge_IsNotAllocated)
{
    const std::string head = "ID3\x04\0\0\x7F\x7F\x7F\x7F"s + "APIC\x7F\x7F\x7F\x7F\0\0"s;
    read(made(head + std::string(5000, 'x')), FILE_TYPE_MUSIC);
    expectThatWorkGoesOn();
}

TEST_F(HostileMediaTest, ExifThatCountsToBillions_CostsOnlyItself)
{
    std::string photo = testsupport::fourFieldsJpeg(64, 64, 6);
    const std::size_t count = photo.find("\x01\x12\0\x03"s) + 4;
    photo.replace(count, 4, "\xFF\xFF\xFF\xFF");
    read(made(photo), FILE_TYPE_PHOTO);
    expectThatWorkGoesOn();
}

TEST_F(HostileMediaTest, VideoNamedLikeAPhoto_IsNotReadAsOne)
{
    testsupport::StandIn counting("echo started >> $0.log; exec '" MEDIA_WORKER "'");
    testsupport::MediaReading counted({counting.program()});
    const std::string title = testsupport::riffChunk("INAM", std::string(400'000, 'x'));
    for (const char* kind : {"AVI ", "WAVE"}) {
        const std::string bytes = testsupport::riffChunk("RIFF", kind + testsupport::riffChunk("LIST", "INFO" + title));
        EXPECT_NE(counted.metadata(made(bytes), FILE_TYPE_PHOTO).error, "") << kind;
        EXPECT_NE(counted.thumbnail(made(bytes), FILE_TYPE_PHOTO).error, "") << kind;
    }
    EXPECT_EQ(counted.metadata(demoFile("Photos/2023/winter.jpg"), FILE_TYPE_PHOTO).width, 1280);
    EXPECT_EQ(counting.log(), "started\n"); // refused, not killed
}

TEST_F(HostileMediaTest, FileFullOfNothing_IsAnErrorSoon)
{
    const std::string file = made("x");
    ASSERT_EQ(truncate(file.c_str(), off_t{6} << 30), 0);
    for (const FileType type : {FILE_TYPE_PHOTO, FILE_TYPE_VIDEO, FILE_TYPE_MUSIC}) {
        SCOPED_TRACE(type);
        read(file, type);
        EXPECT_NE(media.thumbnail(file, type).error, "");
    }
    expectThatWorkGoesOn();
}

TEST_F(HostileMediaTest, DescriptorThatIsNoFile_IsAnError)
{
    EXPECT_NE(media.workers.read(-1, FILE_TYPE_MUSIC).error, "");
    EXPECT_NE(media.metadata("/dev/zero", FILE_TYPE_PHOTO).error, "");
    expectThatWorkGoesOn();
}

TEST_F(HostileMediaTest, Playlist_OpensNothingElse)
{
    const std::string picture = demoFile("Photos/2023/winter.jpg");
    for (const std::string& text : {"ffconcat version 1.0\nfile '" + picture + "'\n",
                                    "#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXTINF:9,\n" + picture + "\n"}) {
        EXPECT_NE(media.thumbnail(made(text), FILE_TYPE_VIDEO).error, "") << text;
    }
}

} // namespace
} // namespace desktop
