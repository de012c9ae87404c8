#include "desktop/playback/CodecDescription.h"

#include "protocol/CodecTable.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <set>
#include <utility>

namespace desktop {
namespace {

/// Facts of everything, so that fields which belong to another kind would show.
MediaFacts allFacts()
{
    MediaFacts facts;
    facts.duration = 90;
    facts.title = "Own title";
    facts.artist = "Artist";
    facts.album = "Album";
    facts.video = {"h264", "High", "4.1", 1920, 1080, 23.976, true};
    facts.audio = {"ac3", "Profile", "2", 6, 48000, 448000};
    facts.subtitle = "subrip";
    facts.audioTracks = {{1, "", "en", "ac3"}};
    facts.subtitleTracks = {{1, "", "en", "subrip"}};
    facts.audioTrack = 1;
    facts.subtitleTrack = 1;
    return facts;
}

FolderFileInfo_s file()
{
    FolderFileInfo_s entry;
    entry.size = 5'000'000'000;
    entry.ctime = "2024-02-29 12:34:56";
    entry.name = "film.mkv";
    entry.title = "film";
    return entry;
}

/// All fields of @p codec that say something, as text.
std::map<std::string, std::string> saying(const browser_codec& codec)
{
    std::map<std::string, std::string> fields = {
        {"strTitle", codec.strTitle},     {"strVCodec", codec.strVCodec},       {"strResolu", codec.strResolu},
        {"strACodec", codec.strACodec},   {"strSubFormat", codec.strSubFormat}, {"strAprofile", codec.strAprofile},
        {"strAlevels", codec.strAlevels}, {"strMcodec", codec.strMcodec},       {"strMfrequen", codec.strMfrequen},
        {"strMbirate", codec.strMbirate}, {"strMaprofile", codec.strMaprofile}, {"strMalevels", codec.strMalevels},
        {"strPcodec", codec.strPcodec},   {"strPresolu", codec.strPresolu},     {"strPJepg", codec.strPJepg},
    };
    const std::map<std::string, std::int64_t> numbers = {
        {"FrameRate", codec.FrameRate}, {"Achannel", codec.Achannel},           {"Afrequen", codec.Afrequen},
        {"Abitrate", codec.Abitrate},   {"culVideoCodec", codec.culVideoCodec}, {"culAudioCodec", codec.culAudioCodec},
        {"Mchanel", codec.Mchanel},
    };
    for (const auto& [name, number] : numbers) {
        fields[name] = number == 0 ? "" : std::to_string(number);
    }
    std::erase_if(fields, [](const auto& field) { return field.second.empty(); });
    return fields;
}

using Fields = std::map<std::string, std::string>;

TEST(CodecDescription, Video_HasItsOwnFieldsOnly)
{
    EXPECT_EQ(saying(describeCodecs(FILE_TYPE_VIDEO, "The Film", allFacts())), (Fields{
                                                                                   {"strTitle", "The Film"},
                                                                                   {"strVCodec", "H.264"},
                                                                                   {"strResolu", "1920x1080"},
                                                                                   {"FrameRate", "24"},
                                                                                   {"strACodec", "AC-3"},
                                                                                   {"Achannel", "6"},
                                                                                   {"Afrequen", "48000"},
                                                                                   {"Abitrate", "448000"},
                                                                                   {"strSubFormat", "SubRip"},
                                                                                   {"strAprofile", "Profile"},
                                                                                   {"strAlevels", "2"},
                                                                                   {"culVideoCodec", "5"},
                                                                                   {"culAudioCodec", "5"},
                                                                               }));
}

TEST(CodecDescription, Music_HasItsOwnFieldsOnly)
{
    EXPECT_EQ(saying(describeCodecs(FILE_TYPE_MUSIC, "The Song", allFacts())), (Fields{
                                                                                   {"strTitle", "The Song"},
                                                                                   {"Mchanel", "6"},
                                                                                   {"strMcodec", "AC-3"},
                                                                                   {"strMfrequen", "48000 Hz"},
                                                                                   {"strMbirate", "448 kbit/s"},
                                                                                   {"strMaprofile", "Profile"},
                                                                                   {"strMalevels", "2"},
                                                                                   {"culAudioCodec", "5"},
                                                                               }));
}

TEST(CodecDescription, Photo_HasItsOwnFieldsOnly)
{
    MediaFacts facts = allFacts();
    facts.video = {"mjpeg", "Progressive", "", 4000, 3000, 25, false};
    EXPECT_EQ(saying(describeCodecs(FILE_TYPE_PHOTO, "The Photo", facts)), (Fields{
                                                                               {"strTitle", "The Photo"},
                                                                               {"strPcodec", "JPEG"},
                                                                               {"strPresolu", "4000x3000"},
                                                                               {"strPJepg", "Progressive"},
                                                                           }));
}

TEST(CodecDescription, PhotoThatIsNoJpeg_DoesNotSayHowAJpegIsCoded)
{
    MediaFacts facts;
    facts.video = {"hevc", "Main Still Picture", "", 4000, 3000, 0, false};
    EXPECT_EQ(saying(describeCodecs(FILE_TYPE_PHOTO, "", facts)),
              (Fields{{"strPcodec", "HEIF"}, {"strPresolu", "4000x3000"}}));
}

class CodecDescriptionKindTest : public testing::TestWithParam<FileType> {};

TEST_P(CodecDescriptionKindTest, UnknownFacts_LeaveFieldsEmpty)
{
    EXPECT_EQ(saying(describeCodecs(GetParam(), "", {})), Fields());
    const meta_data_t medium = describeMedium(GetParam(), "", {}, {});
    EXPECT_EQ(medium.title, "");
    EXPECT_EQ(medium.date, "");
    EXPECT_EQ(medium.codec, "");
    EXPECT_EQ(medium.dolby, 0);
}

TEST_P(CodecDescriptionKindTest, Medium_HasTitleAndSizeAndDate)
{
    const meta_data_t medium = describeMedium(GetParam(), "The title", file(), {});
    EXPECT_EQ(medium.title, "The title");
    EXPECT_EQ(medium.size, "4.7 GB");
    EXPECT_EQ(medium.date, "2024-02-29 12:34:56");
}

INSTANTIATE_TEST_SUITE_P(Kinds, CodecDescriptionKindTest, testing::Values(FILE_TYPE_VIDEO, FILE_TYPE_MUSIC, FILE_TYPE_PHOTO),
                         [](const auto& row) {
                             return row.param == FILE_TYPE_VIDEO   ? "Video"
                                    : row.param == FILE_TYPE_MUSIC ? "Music"
                                                                   : "Photo";
                         });

TEST(CodecDescription, CodecsOfAMedium_AreThoseOfItsKind)
{
    MediaFacts facts = allFacts();
    EXPECT_EQ(describeMedium(FILE_TYPE_VIDEO, "", {}, facts).codec, "H.264 / AC-3");
    facts.video.codec = "mjpeg"; // the picture of a song
    EXPECT_EQ(describeMedium(FILE_TYPE_MUSIC, "", {}, facts).codec, "AC-3");
    facts.audio.codec = "";
    EXPECT_EQ(describeMedium(FILE_TYPE_PHOTO, "", {}, facts).codec, "JPEG");
    EXPECT_EQ(describeMedium(FILE_TYPE_VIDEO, "", {}, facts).codec, "Motion JPEG");
    facts.video.codec = "";
    facts.audio.codec = "mp3";
    EXPECT_EQ(describeMedium(FILE_TYPE_VIDEO, "", {}, facts).codec, "MP3");
}

struct NameRow {
    const char* title;
    const char* codec; ///< as libavcodec names it
    const char* name;
    int number;
};

class CodecDescriptionNameTest : public testing::TestWithParam<NameRow> {};

TEST_P(CodecDescriptionNameTest, AudioCodec_HasItsNameAndNumber)
{
    MediaFacts facts;
    facts.audio.codec = GetParam().codec;
    const browser_codec codec = describeCodecs(FILE_TYPE_MUSIC, "", facts);
    EXPECT_EQ(codec.strMcodec, GetParam().name);
    EXPECT_EQ(codec.culAudioCodec, GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(Codecs, CodecDescriptionNameTest,
                         testing::Values(NameRow{"Mp3", "mp3", "MP3", 3}, NameRow{"Flac", "flac", "FLAC", 10},
                                         NameRow{"AnyPcm", "pcm_s24le", "PCM", 1}, NameRow{"Unnamed", "qoa", "qoa", 0},
                                         NameRow{"BeginsLikeOne", "mp3adu", "mp3adu", 0},
                                         NameRow{"VideoCodec", "h264", "h264", 0}),
                         [](const auto& row) { return row.param.title; });

struct DolbyRow {
    const char* title;
    const char* codec;
    int dolby;
};

class CodecDescriptionDolbyTest : public testing::TestWithParam<DolbyRow> {};

TEST_P(CodecDescriptionDolbyTest, Sound_TellsItsDolby)
{
    MediaFacts facts = allFacts();
    facts.audio.codec = GetParam().codec;
    EXPECT_EQ(describeMedium(FILE_TYPE_VIDEO, "", {}, facts).dolby, GetParam().dolby);
}

INSTANTIATE_TEST_SUITE_P(Codecs, CodecDescriptionDolbyTest,
                         testing::Values(DolbyRow{"Aac", "aac", 0}, DolbyRow{"Ac3", "ac3", 1}, DolbyRow{"Eac3", "eac3", 2},
                                         DolbyRow{"TrueHd", "truehd", 3}, DolbyRow{"SoundThatIsNotKnown", "", 4}),
                         [](const auto& row) { return row.param.title; });

struct DateRow {
    const char* title;
    const char* date;
    const char* shown;
};

class CodecDescriptionDateTest : public testing::TestWithParam<DateRow> {};

TEST_P(CodecDescriptionDateTest, DateOfTheTags_GoesBeforeTheFiles)
{
    MediaFacts facts;
    facts.date = GetParam().date;
    EXPECT_EQ(describeMedium(FILE_TYPE_VIDEO, "", file(), facts).date, GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(Dates, CodecDescriptionDateTest,
                         testing::Values(DateRow{"None", "", "2024-02-29 12:34:56"}, DateRow{"Year", "2001", "2001"},
                                         DateRow{"Month", "2001-05", "2001-05"}, DateRow{"Day", "2001-05-17", "2001-05-17"},
                                         DateRow{"Time", "2001-05-17 08:09:10", "2001-05-17 08:09:10"},
                                         DateRow{"IsoTime", "2001-05-17T08:09:10.000000Z", "2001-05-17 08:09:10"},
                                         DateRow{"ExifTime", "2001:05:17 08:09:10", "2001-05-17 08:09:10"},
                                         DateRow{"NoSeconds", "2001-05-17T08:09", "2001-05-17"},
                                         DateRow{"Digits", "20010517080910", "20010517080910"},
                                         DateRow{"Words", "May the fourth", "May the fourth"}),
                         [](const auto& row) { return row.param.title; });

TEST(CodecDescription, ImpossibleNumbers_AreLeftOut)
{
    MediaFacts facts;
    facts.video.width = 1920;
    for (const double rate :
         {-25.0, 1e300, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        facts.video.frameRate = rate;
        EXPECT_EQ(saying(describeCodecs(FILE_TYPE_VIDEO, "", facts)), Fields()) << rate;
    }
    facts.audio.channels = -1;
    facts.audio.sampleRate = -1;
    facts.audio.bitRate = -1;
    EXPECT_EQ(saying(describeCodecs(FILE_TYPE_MUSIC, "", facts)), Fields());
}

TEST(CodecTable, NumbersAndNames_BelongTogether)
{
    std::map<std::pair<protocol::CodecKind, std::string>, int> byName;
    std::set<std::pair<protocol::CodecKind, std::string>> codecs;
    for (const protocol::CodecDescription& codec : protocol::kCodecs) {
        SCOPED_TRACE(codec.codec);
        EXPECT_TRUE(codecs.insert({codec.kind, codec.codec}).second);
        EXPECT_EQ(byName.insert({{codec.kind, codec.name}, codec.number}).first->second, codec.number);
        const bool isNumbered = codec.kind == protocol::CodecKind::Video || codec.kind == protocol::CodecKind::Audio;
        EXPECT_EQ(codec.number > 0, isNumbered);
    }
    std::set<std::pair<protocol::CodecKind, int>> numbers;
    for (const auto& [name, number] : byName) {
        EXPECT_TRUE(number == 0 || numbers.insert({name.first, number}).second) << name.second;
    }
}

} // namespace
} // namespace desktop
