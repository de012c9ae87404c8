#include "tests/desktop/support/Heic.h"
#include "tests/desktop/support/MediaReading.h"
#include "tests/desktop/support/Photos.h"
#include "tests/desktop/support/Program.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

using namespace std::string_literals;
using namespace testsupport;

class PhotoMetadataTest : public MediaFileTest {
protected:
    MediaMetadata read(const std::string& bytes) { return media.metadata(made("photo", bytes), FILE_TYPE_PHOTO); }
};

constexpr const char* kExif = "2020:02:29 01:02:03";
constexpr const char* kXmp = R"(xmp:CreateDate="2021-03-04T05:06:07")";

TEST_F(PhotoMetadataTest, DateOfIptc_CountsWhereExifAndXmpHaveNone)
{
    const std::string iptc = iptcSegment({{55, "20240501"}, {60, "120002+0200"}});
    EXPECT_EQ(read(jpegWith(iptc)).taken, "2024-05-01 12:00:02");
    EXPECT_EQ(read(jpegWith(iptcSegment({{55, "20240501"}}))).taken, "2024-05-01 00:00:00");
    EXPECT_EQ(read(jpegWith(iptcSegment({{60, "120002+0200"}}))).taken, "");
    EXPECT_EQ(read(jpegWith(xmpSegment(kXmp) + iptc)).taken, "2021-03-04 05:06:07");
    EXPECT_EQ(read(jpegWith(exifSegment("", kExif) + iptc)).taken, "2020-02-29 01:02:03");
}

TEST_F(PhotoMetadataTest, DayThatHasNeverBeen_IsNoDate)
{
    for (const char* day :
         {"2024:02:31", "2023:02:29", "1900:02:29", "2024:04:31", "2024:00:01", "2024:01:00", "2024:13:01"}) {
        EXPECT_EQ(read(jpegWith(exifSegment(std::string(day) + " 10:00:00", kExif))).taken, "2020-02-29 01:02:03") << day;
    }
    const std::string never = exifSegment("2024:02:31 10:00:00", "2023:02:29 10:00:00");
    EXPECT_EQ(read(jpegWith(never)).taken, "");
    EXPECT_EQ(read(jpegWith(never + xmpSegment(kXmp))).taken, "2021-03-04 05:06:07");
    EXPECT_EQ(read(jpegWith(never + xmpSegment(R"(xmp:CreateDate="2021-02-30")") + iptcSegment({{55, "20200229"}}))).taken,
              "2020-02-29 00:00:00");
}

struct PanoramaForm {
    const char* name;
    const char* attributes;
    bool isPanorama;
};

class EveryPanoramaForm : public testing::TestWithParam<PanoramaForm> {};

TEST_P(EveryPanoramaForm, IsTakenForWhatItIs)
{
    MediaReading media;
    TemporaryDirectory folder;
    writeFile(folder.path("photo.jpg"), jpegWith(xmpSegment(GetParam().attributes)));
    EXPECT_EQ(media.metadata(folder.path("photo.jpg"), FILE_TYPE_PHOTO).panorama, GetParam().isPanorama);
}

INSTANTIATE_TEST_SUITE_P(
    Xmp, EveryPanoramaForm,
    testing::Values(
        PanoramaForm{"AllAround", R"(GPano:ProjectionType="equirectangular")", true},
        PanoramaForm{"AllAroundInCapitals", R"(GPano:ProjectionType="Equirectangular")", true},
        PanoramaForm{"AllAroundForAViewer", R"(GPano:ProjectionType="equirectangular" GPano:UsePanoramaViewer="True")",
                     true},
        PanoramaForm{"NotForAViewer", R"(GPano:ProjectionType="equirectangular" GPano:UsePanoramaViewer="False")", false},
        PanoramaForm{"NotForAViewerInSmallLetters",
                     R"(GPano:ProjectionType="equirectangular" GPano:UsePanoramaViewer="false")", false},
        PanoramaForm{"Cylinder", R"(GPano:ProjectionType="cylindrical")", false},
        PanoramaForm{"CylinderForAViewer", R"(GPano:ProjectionType="cylindrical" GPano:UsePanoramaViewer="True")", false},
        PanoramaForm{"NoProjection", R"(GPano:UsePanoramaViewer="True")", false},
        PanoramaForm{"AnotherNamespace", R"(xmlns:Other="http://example.org/" Other:ProjectionType="equirectangular")",
                     false}),
    [](const auto& row) { return row.param.name; });

TEST_F(PhotoMetadataTest, XmpOfOtherContainers_IsReadLikewise)
{
    const std::string packet = xmpPacket(R"(GPano:ProjectionType="equirectangular" xmp:CreateDate="2021-03-04T05:06:07")");
    HeicForm heic;
    heic.xmp = packet;
    EXPECT_TRUE(read(gridHeic(heic)).panorama);
    for (const std::string& bytes : {pngWithXmp(packet), webpWithXmp(packet)}) {
        const MediaMetadata metadata = read(bytes);
        EXPECT_EQ(metadata.error, "");
        EXPECT_TRUE(metadata.panorama);
        EXPECT_EQ(metadata.taken, "2021-03-04 05:06:07");
        EXPECT_EQ(metadata.width, 64);
    }
}

TEST_F(PhotoMetadataTest, JpegXl_IsNotTurnedAsExifSays)
{
    Program convert({"ffmpeg", "-nostdin", "-v", "error", "-i", made("a.jpg", fourFieldsJpeg(64, 32, 1)), "-c:v", "libjxl",
                     "-pix_fmt", "rgb24", folder.path("a.jxl")});
    ASSERT_EQ(convert.wait(), 0) << convert.errors();
    const auto box = [](const std::string& name, const std::string& content) {
        return bigEndian(content.size() + 8) + name + content;
    };
    // A TIFF with the orientation 6 and the date.
    const std::string exif = bigEndian(0) + "MM\0*"s + bigEndian(8) + bigEndian(2, 2) + bigEndian(0x01120003) +
                             bigEndian(1) + bigEndian(6, 2) + bigEndian(0, 2) + bigEndian(0x01320002) + bigEndian(20) +
                             bigEndian(38) + bigEndian(0) + kExif + '\0';
    const std::string photo = box("JXL ", "\r\n\x87\n") + box("ftyp", "jxl " + bigEndian(0) + "jxl ") + box("Exif", exif) +
                              box("jxlc", readFile(folder.path("a.jxl")));
    const MediaMetadata metadata = read(photo);
    EXPECT_EQ(metadata.taken, "2020-02-29 01:02:03");
    EXPECT_EQ(metadata.width, 64);
    EXPECT_EQ(metadata.height, 32);
    EXPECT_EQ(metadata.rotation, 0);
    const Thumbnail thumbnail = media.thumbnail(made("photo", photo), FILE_TYPE_PHOTO, 100, 100);
    EXPECT_EQ(thumbnail.error, "");
    EXPECT_EQ(thumbnail.picture.width, 64);
}

} // namespace
} // namespace desktop
