#include "tests/desktop/support/MediaReading.h"
#include "tests/desktop/support/Program.h"
#include "tests/desktop/support/Songs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace desktop {
namespace {

using namespace std::string_literals;
using namespace testsupport;
using testing::ElementsAre;

using Texts = std::vector<std::string>;

class MusicMetadataTest : public MediaFileTest {
protected:
    MediaMetadata read(const std::string& bytes) { return media.metadata(made("music", bytes), FILE_TYPE_MUSIC); }

    MediaMetadata readFrames(const std::string& frames, char version = 3, char flags = 0)
    {
        return read(id3Tag(frames, version, flags) + silentMp3());
    }

    /// The metadata of @p seconds of a tone with tags, which ffmpeg writes into @p name with @p options.
    MediaMetadata readTone(const std::string& name, const Texts& options, int seconds = 3)
    {
        Texts command = {"ffmpeg", "-nostdin", "-v", "error", "-f", "lavfi", "-i"};
        command.push_back("sine=duration=" + std::to_string(seconds));
        for (const char* tag : {"title=Títle", "artist=Ärtist", "album=Älbum", "genre=Jazz", "date=2011-05-01"}) {
            command.insert(command.end(), {"-metadata", tag});
        }
        command.insert(command.end(), options.begin(), options.end());
        command.push_back(folder.path(name));
        Program make(command);
        EXPECT_EQ(make.wait(), 0) << make.errors();
        return media.metadata(folder.path(name), FILE_TYPE_MUSIC);
    }
};

void expectTheTags(const MediaMetadata& metadata)
{
    EXPECT_EQ(metadata.error, "");
    EXPECT_EQ(metadata.title, "Títle");
    EXPECT_THAT(metadata.artists, ElementsAre("Ärtist"));
    EXPECT_EQ(metadata.album, "Älbum");
    EXPECT_THAT(metadata.genres, ElementsAre("Jazz"));
    EXPECT_EQ(metadata.year, "2011");
}

std::string infoList(const std::string& title, const std::string& artist)
{
    return riffChunk("LIST", "INFO" + riffChunk("INAM", title) + riffChunk("IART", artist) + riffChunk("IPRD", "Album\0"s) +
                                 riffChunk("IGNR", "Rock") + riffChunk("ICRD", "1999-01-02"));
}

TEST_F(MusicMetadataTest, Wave_TellsWhatItsInfoListSays)
{
    for (const bool inFront : {true, false}) {
        const std::string list = infoList("Caf\xC3\xA9\0"s, "The Artist");
        const MediaMetadata metadata = read(inFront ? waveFile(list, 3) : waveFile("", 3, list));
        EXPECT_EQ(metadata.title, "Café");
        EXPECT_THAT(metadata.artists, ElementsAre("The Artist"));
        EXPECT_EQ(metadata.album, "Album");
        EXPECT_THAT(metadata.genres, ElementsAre("Rock"));
        EXPECT_EQ(metadata.year, "1999");
        EXPECT_EQ(metadata.duration, 3);
    }
}

TEST_F(MusicMetadataTest, InfoListOfNoCharset_IsReadInTheOneItSpeaksFor)
{
    const MediaMetadata metadata =
        read(waveFile(infoList("\xC3\xF0\xF3\xEF\xEF\xE0 \xEA\xF0\xEE\xE2\xE8", "\xCA\xE8\xED\xEE"), 1));
    EXPECT_EQ(metadata.title, "Группа крови");
    EXPECT_THAT(metadata.artists, ElementsAre("Кино"));
    EXPECT_EQ(read(waveFile(infoList("Caf\xE9", "x"), 1)).title, "Café");
}

TEST_F(MusicMetadataTest, WaveWithId3_IsToldByThatFirst)
{
    const std::string extended = bigEndian(6) + std::string(6, '\0');
    const std::string id3 = id3Tag(extended + textFrame("TIT2", 0, "From ID3") + textFrame("TCON", 0, "(RX)"), 3, 0x40);
    for (const char* name : {"id3 ", "ID3 "}) {
        const MediaMetadata metadata = read(waveFile(infoList("From INFO", "The Artist"), 1, riffChunk(name, id3)));
        EXPECT_EQ(metadata.title, "From ID3");
        EXPECT_THAT(metadata.artists, ElementsAre("The Artist"));
        EXPECT_THAT(metadata.genres, ElementsAre("Remix"));
    }
}

TEST_F(MusicMetadataTest, WaveThatWasNotFinished_IsAsLongAsTheFile)
{
    for (const std::size_t claimed : {std::size_t{0}, std::size_t{0xFFFFFFFF}, std::size_t{0x7FFFFFFF}}) {
        std::string bytes = waveFile(infoList("Title", "Artist"), 7);
        bytes.replace(4, 4, littleEndian(claimed));
        bytes.replace(bytes.find("data") + 4, 4, littleEndian(claimed));
        const MediaMetadata metadata = read(bytes);
        EXPECT_EQ(metadata.duration, 7) << claimed;
        EXPECT_EQ(metadata.title, "Title") << claimed;
    }
}

TEST_F(MusicMetadataTest, WaveOfAnotherCodec_KeepsItsTags)
{
    const MediaMetadata metadata = readTone("mp3.wav", {"-c:a", "libmp3lame"});
    expectTheTags(metadata);
    EXPECT_EQ(metadata.duration, 3);
}

TEST_F(MusicMetadataTest, FlacInAnotherContainer_HasItsLengthAndTags)
{
    for (const char* name : {"flac.mka", "flac.oga", "flac.ogg"}) {
        SCOPED_TRACE(name);
        const MediaMetadata metadata = readTone(name, {"-c:a", "flac"});
        expectTheTags(metadata);
        EXPECT_EQ(metadata.duration, 3);
    }
}

TEST_F(MusicMetadataTest, FragmentedM4a_IsAsLongAsItsFragments)
{
    for (const char* how : {"frag_keyframe+empty_moov", "frag_keyframe+skip_trailer", "dash+delay_moov"}) {
        SCOPED_TRACE(how);
        const MediaMetadata metadata =
            readTone("fragmented.m4a", {"-c:a", "aac", "-movflags", how, "-frag_duration", "2000000", "-y"}, 9);
        expectTheTags(metadata);
        EXPECT_EQ(metadata.duration, 9);
    }
}

std::string mp3Frames(char rate, std::size_t length, int count)
{
    std::string frames;
    for (int i = 0; i < count; ++i) {
        frames += "\xFF\xFB"s + rate + '\x64' + std::string(length - 4, '\0');
    }
    return frames;
}

TEST_F(MusicMetadataTest, Mp3WhoseRateChanges_IsAsLongAsItsFrames)
{
    const std::string fast = mp3Frames('\x90', 417, 400); // 10.4 seconds of 128 kbit/s
    const std::string slow = mp3Frames('\x10', 104, 400); // and of 32
    const std::string tag = id3Tag(textFrame("TIT2", 0, "Title"));
    EXPECT_EQ(read(tag + fast + slow).duration, 21);
    EXPECT_EQ(read(tag + slow + fast).duration, 21);
    EXPECT_EQ(read(tag + slow + "noise" + fast + "TAG" + std::string(125, 'x')).duration, 21);
    EXPECT_EQ(read(tag + fast).duration, 10);
}

TEST_F(MusicMetadataTest, AacWithoutAContainer_IsAsLongAsItsFrames)
{
    for (const char* loud : {"gte(t\\,15)", "lt(t\\,15)"}) {
        const std::string file = folder.path("loud.aac");
        Program make({"ffmpeg", "-nostdin", "-v", "error", "-y", "-f", "lavfi", "-i",
                      "aevalsrc=random(0)*0.9*"s + loud + ":duration=30", "-c:a", "aac", "-q:a", "2", file});
        ASSERT_EQ(make.wait(), 0) << make.errors();
        EXPECT_EQ(media.metadata(file, FILE_TYPE_MUSIC).duration, 30) << loud;
        // Of very many frames not all are read.
        std::string many;
        for (const std::string bytes = readFile(file); many.size() < (40U << 20);) {
            many += bytes;
        }
        const auto times = static_cast<double>(many.size() / readFile(file).size());
        EXPECT_NEAR(media.metadata(made("many.aac", many), FILE_TYPE_MUSIC).duration, 30 * times, 0.02 * 30 * times);
    }
}

TEST_F(MusicMetadataTest, RecordingWithoutALength_IsAsLongAsItsLastTimes)
{
    for (const char* form : {"flac -c:a flac", "wv -c:a wavpack", "matroska -c:a flac", "webm -c:a libopus"}) {
        SCOPED_TRACE(form);
        Program make({"sh", "-c",
                      "ffmpeg -nostdin -v error -f lavfi -i sine=duration=17 -f "s + form + " - >'" +
                          folder.path("recording") + "'"});
        ASSERT_EQ(make.wait(), 0) << make.errors();
        EXPECT_EQ(media.metadata(folder.path("recording"), FILE_TYPE_MUSIC).duration, 17);
    }
}

TEST_F(MusicMetadataTest, QuickTimeSound_TellsItsOwnTags)
{
    expectTheTags(readTone("sound.m4a", {"-c:a", "aac", "-f", "mov"}));
}

TEST_F(MusicMetadataTest, ExtendedHeaderOfId3_IsPassedOver)
{
    const std::string frames = textFrame("TIT2", 0, "Title") + textFrame("TPE1", 0, "Artist");
    const std::string checked = bigEndian(10) + "\x80\0"s + bigEndian(0) + bigEndian(0x12345678);
    const std::string unchecked = bigEndian(6) + bigEndian(0, 2) + bigEndian(0);
    for (const std::string& header : {checked, unchecked}) {
        const MediaMetadata metadata = readFrames(header + frames, 3, 0x40);
        EXPECT_EQ(metadata.title, "Title") << header.size();
        EXPECT_THAT(metadata.artists, ElementsAre("Artist")) << header.size();
    }
    EXPECT_EQ(readFrames(bigEndian(6) + "\1\0"s + frames, 4, 0x40).title, "Title"); // where the size counts itself
}

struct GenreFrame {
    const char* name;
    std::string value;
    Texts genres;
};

class EveryGenreFrame : public testing::TestWithParam<GenreFrame> {};

TEST_P(EveryGenreFrame, NamesItsGenres)
{
    MediaReading media;
    TemporaryDirectory folder;
    for (const char version : {'\3', '\4'}) {
        writeFile(folder.path("song.mp3"), id3Tag(textFrame("TCON", 0, GetParam().value), version) + silentMp3());
        EXPECT_EQ(media.metadata(folder.path("song.mp3"), FILE_TYPE_MUSIC).genres, GetParam().genres);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Id3, EveryGenreFrame,
    testing::Values(
        GenreFrame{"Text", "Polka", {"Polka"}}, GenreFrame{"TextOfSeveralKinds", "Pop/Rock; Folk", {"Pop/Rock; Folk"}},
        GenreFrame{"Number", "17", {"Rock"}}, GenreFrame{"Reference", "(17)", {"Rock"}},
        GenreFrame{"ReferenceAndItsText", "(17)Rock", {"Rock"}},
        GenreFrame{"ReferenceAndText", "(17)Slow", {"Rock", "Slow"}}, GenreFrame{"References", "(4)(17)", {"Disco", "Rock"}},
        GenreFrame{"ReferencesAndText", "(4)(17)Slow", {"Disco", "Rock", "Slow"}}, GenreFrame{"Remix", "RX", {"Remix"}},
        GenreFrame{"RemixReference", "(RX)", {"Remix"}}, GenreFrame{"Cover", "CR", {"Cover"}},
        GenreFrame{"CoverReference", "(CR)(8)", {"Cover", "Jazz"}}, GenreFrame{"TextInBrackets", "((text", {"(text"}},
        GenreFrame{"ReferenceAndTextInBrackets", "(17)((slow)", {"Rock", "(slow)"}},
        GenreFrame{"BracketsOfNoReference", "(Very) slow", {"(Very) slow"}},
        GenreFrame{"NumberOfNoGenre", "(250)", {"(250)"}}, GenreFrame{"Year", "1980", {"1980"}},
        GenreFrame{"List", "17\0Slow\0(4)"s, {"Rock", "Slow", "Disco"}},
        GenreFrame{"ListThatRepeats", "Rock\0rock\0\0Pop"s, {"Rock", "Pop"}}),
    [](const auto& row) { return row.param.name; });

TEST_F(MusicMetadataTest, TrueAudio_TellsItsApeTagWithAndWithoutId3)
{
    const MediaMetadata written = readTone("tone.tta", {"-c:a", "tta"});
    expectTheTags(written);
    EXPECT_EQ(written.duration, 3);
    const std::string bytes = readFile(folder.path("tone.tta"));
    const std::string sound = bytes.substr(0, bytes.rfind("APETAGEX", bytes.size() - 33)); // the tag's header
    const std::string ape = apeTag(apeItem("Title", "From APE") + apeItem("Artist", "One\0Two"s), 2);
    const std::string oldest = "TAG" + std::string(124, 'x') + '\x11';
    const MediaMetadata both = read(id3Tag(textFrame("TIT2", 0, "From ID3")) + sound + ape + oldest);
    EXPECT_EQ(both.title, "From ID3");
    EXPECT_THAT(both.artists, ElementsAre("One", "Two"));
    EXPECT_THAT(both.genres, ElementsAre("Rock"));
    EXPECT_EQ(read(sound + ape).title, "From APE");
}

TEST_F(MusicMetadataTest, Aiff_TellsItsNameAndAuthorWhereId3DoesNot)
{
    const std::string texts = aiffChunk("NAME", "Caf\xE9") + aiffChunk("AUTH", "The Author");
    const MediaMetadata metadata = read(aiffFile(texts, 3));
    EXPECT_EQ(metadata.title, "Café");
    EXPECT_THAT(metadata.artists, ElementsAre("The Author"));
    EXPECT_EQ(metadata.duration, 3);
    const MediaMetadata both = read(aiffFile(texts + aiffChunk("ID3 ", id3Tag(textFrame("TIT2", 0, "From ID3"))), 3));
    EXPECT_EQ(both.title, "From ID3");
    EXPECT_THAT(both.artists, ElementsAre("The Author"));
}

TEST_F(MusicMetadataTest, SeveralValuesOfId3_AreKeptApart)
{
    const MediaMetadata metadata =
        readFrames(textFrame("TPE1", 3, "AC/DC\0Simon; Garfunkel\0Björk"s) + textFrame("TCON", 3, "Rock\0Pop"s), 4);
    EXPECT_THAT(metadata.artists, ElementsAre("AC/DC", "Simon; Garfunkel", "Björk"));
    EXPECT_THAT(metadata.genres, ElementsAre("Rock", "Pop"));
}

TEST_F(MusicMetadataTest, SeveralValuesOfApe_AreKeptApart)
{
    const std::string ape = apeTag(apeItem("Artist", "One\0Two"s) + apeItem("Genre", "Rock\0Pop"s), 2);
    const MediaMetadata metadata = read(silentMp3() + ape);
    EXPECT_THAT(metadata.artists, ElementsAre("One", "Two"));
    EXPECT_THAT(metadata.genres, ElementsAre("Rock", "Pop"));
}

TEST_F(MusicMetadataTest, TagsOfSeveralKinds_CompleteEachOther)
{
    const std::string ape = apeTag(apeItem("Artist", "From APE") + apeItem("Title", "Not this"), 2);
    const MediaMetadata metadata = read(id3Tag(textFrame("TIT2", 0, "From ID3")) + silentMp3() + ape);
    EXPECT_EQ(metadata.title, "From ID3");
    EXPECT_THAT(metadata.artists, ElementsAre("From APE"));
}

/// A FLAC file without sound that says it is as long as @p seconds, with these Vorbis comments.
std::string flacFile(std::size_t seconds, const Texts& comments)
{
    std::string list = littleEndian(0) + littleEndian(comments.size());
    for (const std::string& comment : comments) {
        list += littleEndian(comment.size()) + comment;
    }
    const std::string rateAndBits = "\x01\xF4\x00\xF0"s; // 8000 Hz, one channel of 16 bits
    const std::string format = bigEndian(4096, 2) + bigEndian(4096, 2) + bigEndian(0, 3) + bigEndian(0, 3) + rateAndBits +
                               bigEndian(8000 * seconds) + std::string(16, '\0');
    return "fLaC\0"s + bigEndian(format.size(), 3) + format + '\x84' + bigEndian(list.size(), 3) + list;
}

TEST_F(MusicMetadataTest, SeveralVorbisComments_AreKeptApart)
{
    const MediaMetadata metadata =
        read(flacFile(5, {"ARTIST=One", "TITLE=Title", "artist=Two", "GENRE=Rock", "GENRE=Pop/Folk"}));
    EXPECT_THAT(metadata.artists, ElementsAre("One", "Two"));
    EXPECT_THAT(metadata.genres, ElementsAre("Rock", "Pop/Folk"));
    EXPECT_EQ(metadata.title, "Title");
    EXPECT_EQ(metadata.duration, 5);
}

TEST_F(MusicMetadataTest, TextThatIsNotInTheCharsetItClaims_IsReadInTheOneItSpeaksFor)
{
    constexpr const char* kSong = "\xC3\xF0\xF3\xEF\xEF\xE0 \xEA\xF0\xEE\xE2\xE8"; // "Группа крови" in Windows-1251
    for (const std::string& bytes : {flacFile(5, {std::string("TITLE=") + kSong, "ARTIST=Kino"}),
                                     id3Tag(textFrame("TIT2", 3, kSong) + textFrame("TPE1", 3, "Kino"), 4) + silentMp3()}) {
        const MediaMetadata metadata = read(bytes);
        EXPECT_EQ(metadata.title, "Группа крови");
        EXPECT_THAT(metadata.artists, ElementsAre("Kino"));
    }
}

std::string atom(const std::string& name, const std::string& content)
{
    return bigEndian(content.size() + 8) + name + content;
}

std::string textAtom(const std::string& name, const Texts& values)
{
    std::string data;
    for (const std::string& value : values) {
        data += atom("data", bigEndian(1) + bigEndian(0) + value);
    }
    return atom(name, data);
}

TEST_F(MusicMetadataTest, SeveralValuesOfMp4_AreKeptApart)
{
    readTone("plain.m4a", {"-c:a", "aac"});
    std::string bytes = readFile(folder.path("plain.m4a")); // the header stands at its end
    const std::string list = atom("ilst", textAtom("\xA9"
                                                   "ART",
                                                   {"One", "Two"}) +
                                              textAtom("\xA9gen", {"Rock", "Pop"}));
    const std::size_t header = bytes.rfind("moov") - 4;
    const std::size_t user = bytes.rfind("udta") - 4;
    const std::string handler = atom("hdlr", std::string(8, '\0') + "mdirappl" + std::string(9, '\0'));
    const std::string metadataAtom = atom("udta", atom("meta", bigEndian(0) + handler + list));
    bytes = bytes.substr(0, header) + atom("moov", bytes.substr(header + 8, user - header - 8) + metadataAtom);
    const MediaMetadata metadata = read(bytes);
    EXPECT_THAT(metadata.artists, ElementsAre("One", "Two"));
    EXPECT_THAT(metadata.genres, ElementsAre("Rock", "Pop"));
    EXPECT_EQ(metadata.duration, 3);
}

TEST_F(MusicMetadataTest, CountlessValues_AreCutToWhatAListCanShow)
{
    std::string artists;
    for (int i = 0; i < 60'000; ++i) {
        artists += "Artist " + std::to_string(i) + '\0';
    }
    const std::string frame = "TPE1" + bigEndian(artists.size() + 1) + bigEndian(0, 2) + '\3' + artists;
    const MediaMetadata metadata = readFrames(frame);
    EXPECT_EQ(metadata.error, "");
    EXPECT_EQ(metadata.artists.size(), 30U);
    const std::string shortest = std::string(900, 'x');
    const MediaMetadata longest = readFrames("TPE1" + bigEndian(9 * 901 + 1) + bigEndian(0, 2) + '\3' + shortest + "1\0"s +
                                             shortest + "2\0"s + shortest + "3\0"s + shortest + "4\0"s + shortest + "5\0"s +
                                             shortest + "6\0"s + shortest + "7\0"s + shortest + "8\0"s + shortest);
    EXPECT_EQ(longest.artists.size(), 4U);
}

} // namespace
} // namespace desktop
