#include "desktop/playlists/PlaylistFormats.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>

namespace desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

/// The entries as "target|title".
Lines parsed(const std::string& name, const std::string& content)
{
    Lines lines;
    for (const PlaylistEntry& entry : parsePlaylist(name, content)) {
        lines.push_back(entry.target + "|" + entry.title);
    }
    return lines;
}

TEST(PlaylistFormatsTest, AtTheProgramsEnd_NamesAreStillKnown)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // in a new process, which has not used the names before
    const auto endWithTheNames = [] {
        // Runs after the destructors of what is made later than this call.
        std::atexit([] { _exit(isPlaylistName("a.m3u") ? 0 : 1); });
        isPlaylistName("a.m3u");
        std::exit(2);
    };
    EXPECT_EXIT(endWithTheNames(), testing::ExitedWithCode(0), "");
}

TEST(PlaylistFormatsTest, Names_AreKnownByTheirExtension)
{
    for (const char* name : {"a.m3u", "a.M3U8", "a.pls", "a.xspf", ".cue", "a.b.Cue"}) {
        EXPECT_TRUE(isPlaylistName(name)) << name;
    }
    for (const char* name : {"a.mp3", "m3u", "a.m3u.txt", "", "."}) {
        EXPECT_FALSE(isPlaylistName(name)) << name;
    }
}

TEST(PlaylistFormatsTest, M3u_HasPathsAndTitles)
{
    EXPECT_THAT(parsed("a.m3u", "#EXTM3U\r\n#EXTINF:185,Artist - Title, again\r\nMusic/a.mp3\r\n\r\n# a comment\r\n"
                                "  /Music/b.mp3  \r\n..\\c.mp3"),
                ElementsAre("Music/a.mp3|Artist - Title, again", "/Music/b.mp3|", "..\\c.mp3|"));
}

TEST(PlaylistFormatsTest, WebAddresses_AreLeftOut)
{
    EXPECT_THAT(parsed("a.m3u", "http://example.org/a.mp3\na.mp3\nfile:///Music/b%20c.mp3\nFILE://host/d.mp3\nfile://x"),
                ElementsAre("a.mp3|", "/Music/b c.mp3|", "/d.mp3|"));
}

TEST(PlaylistFormatsTest, Charsets_AreToldApart)
{
    EXPECT_THAT(parsed("a.m3u", "\xEF\xBB\xBF"
                                "a.mp3"),
                ElementsAre("a.mp3|"));
    EXPECT_THAT(parsed("a.m3u", "#EXTINF:1,Caf\xE9 \x80\ncaf\xE9.mp3"), ElementsAre("caf\xE9.mp3|Caf\u00e9 \u20ac"));
    EXPECT_THAT(parsed("a.m3u8", "#EXTINF:1,Caf\u00e9\ncaf\u00e9.mp3"), ElementsAre("caf\u00e9.mp3|Caf\u00e9"));
    EXPECT_THAT(parsed("a.m3u", std::string("\xFF\xFE"
                                            "a\0.\0m\0p\0"
                                            "3\0\n\0",
                                            14)),
                ElementsAre("a.mp3|"));
}

TEST(PlaylistFormatsTest, Charset_IsThatOfAllEntriesTogether)
{
    // Its second entry alone could be western.
    const auto entries = parsePlaylist("a.m3u", "#EXTINF:1,\xC3\xF0\xF3\xEF\xEF\xE0 \xEA\xF0\xEE\xE2\xE8\n"
                                                "\xC3\xF0\xF3\xEF\xEF\xE0 \xEA\xF0\xEE\xE2\xE8.mp3\n\xC4\xC4\xD2.mp3\n"
                                                "caf\u00e9.mp3\n");
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[0].title, "Группа крови");
    EXPECT_EQ(entries[0].path, "Группа крови.mp3");
    EXPECT_EQ(entries[1].target, "\xC4\xC4\xD2.mp3");
    EXPECT_EQ(entries[1].path, "ДДТ.mp3");
    EXPECT_EQ(entries[2].path, "caf\u00e9.mp3");
}

TEST(PlaylistFormatsTest, Pls_IsInTheOrderOfItsNumbers)
{
    EXPECT_THAT(parsed("a.pls", "[playlist]\nFile10=c.mp3\nFile2=b.mp3\nTitle2=The second\nfile1=a=b.mp3\nLength1=5\n"
                                "File3=http://example.org/\nNumberOfEntries=4\nVersion=2\n"),
                ElementsAre("a=b.mp3|", "b.mp3|The second", "c.mp3|"));
}

TEST(PlaylistFormatsTest, Xspf_HasItsTracks)
{
    EXPECT_THAT(parsed("a.xspf", "<?xml version=\"1.0\" encoding=\"UTF-8\"?><playlist version=\"1\"><title>List</title>"
                                 "<location>no.mp3</location><trackList>"
                                 "<track><location>Music/a%20b%C3%A9.mp3</location><title>A &amp; B</title></track>"
                                 "<track><title>Second</title><location>file:///x/100%25.mp3</location>"
                                 "<location>other.mp3</location></track>"
                                 "<track><location>https://example.org/x</location></track>"
                                 "<track><title>Nothing</title></track></trackList></playlist>"),
                ElementsAre("Music/a b\u00e9.mp3|A & B", "/x/100%.mp3|Second"));
}

TEST(PlaylistFormatsTest, XspfThatBreaksOff_KeepsWhatCameBefore)
{
    EXPECT_THAT(parsed("a.xspf", "<playlist><trackList><track><location>a.mp3</location></track><track><location>b"),
                ElementsAre("a.mp3|"));
}

TEST(PlaylistFormatsTest, XspfFullOfEntities_EndsQuickly)
{
    std::string bomb = "<!DOCTYPE p [<!ENTITY a0 \"aaaaaaaaaaaaaaaaaaaa\">";
    for (int i = 1; i < 20; ++i) {
        const std::string before = "&a" + std::to_string(i - 1) + ";";
        bomb += "<!ENTITY a" + std::to_string(i) + " \"";
        for (int j = 0; j < 10; ++j) {
            bomb += before;
        }
        bomb += "\">";
    }
    EXPECT_THAT(parsed("a.xspf", bomb + "]><p><track><location>&a19;</location></track></p>"), IsEmpty());
}

TEST(PlaylistFormatsTest, Cue_HasItsFiles)
{
    EXPECT_THAT(parsed("a.cue", "REM DATE 2001\nTITLE \"Disc\"\nFILE \"Disc one.flac\" WAVE\n  TRACK 01 AUDIO\n"
                                "    TITLE \"First\"\n  TRACK 02 AUDIO\nfile two.wav WAVE\n"),
                ElementsAre("Disc one.flac|", "two.wav|"));
}

TEST(PlaylistFormatsTest, Nonsense_HasNoEntries)
{
    for (const char* name : {"a.pls", "a.xspf", "a.cue"}) {
        EXPECT_THAT(parsed(name, std::string("\x00\xFF%%% FILE= \"", 12)), IsEmpty()) << name;
        EXPECT_THAT(parsed(name, ""), IsEmpty()) << name;
    }
    EXPECT_THAT(parsed("a.txt", "a.mp3"), IsEmpty());
}

} // namespace
} // namespace desktop
