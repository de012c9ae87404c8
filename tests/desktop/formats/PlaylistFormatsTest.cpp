#include "desktop/formats/PlaylistFormats.h"

#include "tests/desktop/support/LegacyBytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

/// The entries as "target|title".
Lines parsed(const std::string& extension, const std::string& content)
{
    Lines lines;
    for (const PlaylistEntry& entry : parsePlaylist(extension, content).value_or(PlaylistEntries())) {
        lines.push_back(entry.target + "|" + entry.title);
    }
    return lines;
}

TEST(PlaylistFormatsTest, M3u_HasPathsAndTitles)
{
    EXPECT_THAT(parsed("m3u", "#EXTM3U\r\n#EXTINF:185,Artist - Title, again\r\nMusic/a.mp3\r\n\r\n# a comment\r\n"
                              "  /Music/b.mp3  \r\n..\\c.mp3"),
                ElementsAre("Music/a.mp3|Artist - Title, again", "/Music/b.mp3|", "..\\c.mp3|"));
}

TEST(PlaylistFormatsTest, WebAddresses_AreLeftOut)
{
    EXPECT_THAT(parsed("m3u", "http://example.org/a.mp3\na.mp3\nfile:///Music/b%20c.mp3\nFILE://host/d.mp3\nfile://x"),
                ElementsAre("a.mp3|", "/Music/b c.mp3|", "/d.mp3|"));
}

TEST(PlaylistFormatsTest, Charsets_AreToldApart)
{
    EXPECT_THAT(parsed("m3u", "\xEF\xBB\xBF"
                              "a.mp3"),
                ElementsAre("a.mp3|"));
    EXPECT_THAT(parsed("m3u", "#EXTINF:1,Caf\xE9 \x80\ncaf\xE9.mp3"), ElementsAre("caf\xE9.mp3|Caf\u00e9 \u20ac"));
    EXPECT_THAT(parsed("m3u8", "#EXTINF:1,Caf\u00e9\ncaf\u00e9.mp3"), ElementsAre("caf\u00e9.mp3|Caf\u00e9"));
    EXPECT_THAT(parsed("m3u", std::string("\xFF\xFE"
                                          "a\0.\0m\0p\0"
                                          "3\0\n\0",
                                          14)),
                ElementsAre("a.mp3|"));
}

TEST(PlaylistFormatsTest, Charset_IsThatOfAllEntriesTogether)
{
    // Its second entry alone could be western.
    const auto entries = *parsePlaylist("m3u", "#EXTINF:1,\xC3\xF0\xF3\xEF\xEF\xE0 \xEA\xF0\xEE\xE2\xE8\n"
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
    EXPECT_THAT(parsed("pls", "[playlist]\nFile10=c.mp3\nFile2=b.mp3\nTitle2=The second\nfile1=a=b.mp3\nLength1=5\n"
                              "File3=http://example.org/\nNumberOfEntries=4\nVersion=2\n"),
                ElementsAre("a=b.mp3|", "b.mp3|The second", "c.mp3|"));
}

TEST(PlaylistFormatsTest, Xspf_HasItsTracks)
{
    EXPECT_THAT(parsed("xspf", "<?xml version=\"1.0\" encoding=\"UTF-8\"?><playlist version=\"1\"><title>List</title>"
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
    EXPECT_THAT(parsed("xspf", "<playlist><trackList><track><location>a.mp3</location></track><track><location>b"),
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
    EXPECT_THAT(parsed("xspf", bomb + "]><p><track><location>&a19;</location></track></p>"), IsEmpty());
}

TEST(PlaylistFormatsTest, Cue_HasItsFiles)
{
    EXPECT_THAT(parsed("cue", "REM DATE 2001\nTITLE \"Disc\"\nFILE \"Disc one.flac\" WAVE\n  TRACK 01 AUDIO\n"
                              "    TITLE \"First\"\n  TRACK 02 AUDIO\nfile two.wav WAVE\n"),
                ElementsAre("Disc one.flac|", "two.wav|"));
}

TEST(PlaylistFormatsTest, Nonsense_HasNoEntries)
{
    for (const char* extension : {"pls", "xspf", "cue", "asx", "wpl"}) {
        EXPECT_THAT(parsed(extension, std::string("\x00\xFF%%% FILE= \"", 12)), IsEmpty()) << extension;
        EXPECT_THAT(parsed(extension, ""), IsEmpty()) << extension;
    }
}

TEST(PlaylistFormatsTest, WithoutExtension_TheContentSaysTheFormat)
{
    EXPECT_THAT(parsed("", "#EXTM3U\na.mp3"), ElementsAre("a.mp3|"));
    EXPECT_THAT(parsed("", "[playlist]\nFile1=a.mp3"), ElementsAre("a.mp3|"));
    EXPECT_FALSE(parsePlaylist("", "a.mp3"));
    EXPECT_FALSE(parsePlaylist("txt", "a.mp3"));
}

TEST(PlaylistFormatsTest, LineEndsOfAnyKind_EndALine)
{
    EXPECT_THAT(parsed("m3u", "#EXTM3U\r#EXTINF:1,A\ra.mp3\rb.mp3\r\n#EXTINF:1,C\nc.mp3\n\r"),
                ElementsAre("a.mp3|A", "b.mp3|", "c.mp3|C"));
    EXPECT_THAT(parsed("pls", "[playlist]\rFile1=a.mp3\rTitle1=A\r"), ElementsAre("a.mp3|A"));
    EXPECT_THAT(parsed("cue", "TITLE \"Disc\"\rFILE \"a.wav\" WAVE\r"), ElementsAre("a.wav|"));
}

TEST(PlaylistFormatsTest, M3uAttributes_AreNotPartOfTheTitle)
{
    EXPECT_THAT(parsed("m3u", "#EXTINF:-1 tvg-name=\"a, b\" group=\"c, d\",Title, again\na.mp3\n"
                              "#EXTINF:12,The \"quoted\", title\nb.mp3\n#EXTINF:-1 name=\"never closed,Title\nc.mp3\n"),
                ElementsAre("a.mp3|Title, again", "b.mp3|The \"quoted\", title", "c.mp3|Title"));
}

TEST(PlaylistFormatsTest, Titles_StandOnOneLineOfBoundedLength)
{
    EXPECT_THAT(parsed("xspf", "<playlist><track><location>a</location><title> one\n\ttwo </title></track></playlist>"),
                ElementsAre("a|one  two"));
    const auto entries = *parsePlaylist("m3u", "#EXTINF:1," + std::string(999, 'x') + "\u00e9\u00e9\na.mp3\n");
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].title, std::string(999, 'x')); // no half of a letter
}

TEST(PlaylistFormatsTest, PathsOfOtherComputersUris_AreKept)
{
    EXPECT_THAT(parsed("m3u", "file:///C:/Music/a.mp3\nfile://C:\\Music\\b.mp3\nfile:/Music/c.mp3\nFile: d.mp3\n"),
                ElementsAre("/C:/Music/a.mp3|", "\\Music\\b.mp3|", "/Music/c.mp3|", "File: d.mp3|"));
}

TEST(PlaylistFormatsTest, PlsWithNumbersBeyondReason_HasItsOtherEntries)
{
    EXPECT_THAT(parsed("pls", "File99999999999999999999=z.mp3\nFile1=a.mp3\nFiles=x.mp3\n"), testing::Contains("a.mp3|"));
}

constexpr const char* kCyrillicXspf =
    "<playlist version=\"1\" xmlns=\"http://xspf.org/ns/0/\"><trackList><track>"
    "<location>Кино.mp3</location><title>Группа крови</title></track></trackList></playlist>";

TEST(PlaylistFormatsTest, XspfThatSaysItsCharset_IsReadInItWhateverTheTextsLookLike)
{
    EXPECT_THAT(parsed("xspf", "<?xml version=\"1.0\" encoding=\"windows-1251\"?><playlist><track><location>\xC4\xC4\xD2.mp3"
                               "</location></track></playlist>"),
                ElementsAre("ДДТ.mp3|"));
}

TEST(PlaylistFormatsTest, XspfInAnyCharset_IsRead)
{
    const std::string document = kCyrillicXspf;
    for (const char* charset : {"windows-1251", "KOI8-R", "UTF-8"}) {
        const std::string declaration = "<?xml version='1.0' encoding='" + std::string(charset) + "'?>";
        EXPECT_THAT(parsed("xspf", testsupport::writtenIn(declaration + document, charset)),
                    ElementsAre("Кино.mp3|Группа крови"))
            << charset;
    }
    for (const char* charset : {"UTF-16LE", "UTF-16BE"}) { // marked
        const std::string text = "\uFEFF<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + document;
        EXPECT_THAT(parsed("xspf", testsupport::writtenIn(text, charset)), ElementsAre("Кино.mp3|Группа крови")) << charset;
    }
    EXPECT_THAT(parsed("xspf", "\uFEFF" + document), ElementsAre("Кино.mp3|Группа крови"));
}

TEST(PlaylistFormatsTest, XspfThatLiesAboutItsCharset_IsRead)
{
    const std::string legacy = testsupport::writtenIn(kCyrillicXspf, "windows-1251");
    for (const char* declaration : {"", "<?xml version='1.0' encoding='UTF-8'?>", "<?xml version='1.0' encoding='none'?>",
                                    "<?xml version='1.0' encoding='UTF-16'?>"}) {
        EXPECT_THAT(parsed("xspf", declaration + legacy), ElementsAre("Кино.mp3|Группа крови")) << declaration;
    }
}

TEST(PlaylistFormatsTest, XspfElements_AreKnownByTheirNamespace)
{
    EXPECT_THAT(parsed("xspf", "<x:playlist xmlns:x=\"http://xspf.org/ns/0/\" xmlns:y=\"http://example.org/\"><x:trackList>"
                               "<x:track><y:location>no.mp3</y:location><x:location>a.mp3</x:location><y:title>No</y:title>"
                               "<x:title>A</x:title></x:track><y:track><x:location>no.mp3</x:location></y:track>"
                               "</x:trackList></x:playlist>"),
                ElementsAre("a.mp3|A"));
}

TEST(PlaylistFormatsTest, XspfWithAPrefixOfUnknownMeaning_IsRead)
{
    EXPECT_THAT(parsed("xspf", "<playlist><trackList><track><location>a.mp3</location></track><track>"
                               "<extension><other:id>1</other:id></extension><location>b.mp3</location></track></trackList>"
                               "</playlist>"),
                ElementsAre("a.mp3|", "b.mp3|"));
}

TEST(PlaylistFormatsTest, XspfExtensions_AreNoPartOfTheTrack)
{
    EXPECT_THAT(parsed("xspf", "<playlist><track><extension><title>No</title><location>no</location><track/></extension>"
                               "<location>a.mp3</location></track></playlist>"),
                ElementsAre("a.mp3|"));
}

TEST(PlaylistFormatsTest, XspfBase_IsThatOfTheElementOrAroundIt)
{
    EXPECT_THAT(
        parsed("xspf", "<playlist xml:base=\"Music/\"><track><location>a%20b.mp3</location></track>"
                       "<track xml:base=\"Old/list.xspf\"><location xml:base=\"deep/\">b.mp3</location></track>"
                       "<track><location>../c.mp3</location></track><track><location>/d.mp3</location></track>"
                       "<track xml:base=\"file:///x/\"><location>e%25.mp3</location></track>"
                       "<track xml:base=\"http://example.org/\"><location>f.mp3</location></track>"
                       "<track xml:base=\"http://example.org\"><location>file:///g.mp3</location></track></playlist>"),
        ElementsAre("Music/a b.mp3|", "Music/Old/deep/b.mp3|", "Music/../c.mp3|", "/d.mp3|", "/x/e%.mp3|", "/g.mp3|"));
}

TEST(PlaylistFormatsTest, Asx_IsReadHoweverItIsWritten)
{
    EXPECT_THAT(parsed("asx", "<ASX Version = \"3.0\">\n<Title>List</Title>\n"
                              "<Entry><Ref HREF=\"Music\\a & b.wma\"/><Title>A & B &amp; C &#233;&#x20AC;</Title></Entry>\n"
                              "<entry><title>Second < first</title><ref href='b\"c.wma' /><REF href=\"other.wma\"></entry>\n"
                              "<!-- <entry><ref href=\"no.wma\"/></entry> -->"
                              "<entry ><ref  href = c/d.wma/></entry><entry><ref href=\"http://example.org/\"/></entry>\n"
                              "<ref href=\"no.wma\"/><entry><title>Nothing</title></entry>"
                              "<entry><title>Not ended</title><ref href=\"no.wma\"/></asx>"),
                ElementsAre("Music\\a & b.wma|A & B & C \u00e9\u20ac", "b\"c.wma|Second < first", "c/d.wma|"));
}

TEST(PlaylistFormatsTest, AsxComments_LeaveNothingBehind)
{
    EXPECT_THAT(parsed("asx",
                       "<asx><entry><title>a<!-- x -->b<!----> &amp; <!-- <i> -- > -->c</title><ref href=a.wma></entry>"
                       "<!-- not ended <entry><ref href=no.wma></entry>"),
                ElementsAre("a.wma|ab & c"));
}

TEST(PlaylistFormatsTest, AsxWithABase_IsSeenFromThere)
{
    EXPECT_THAT(parsed("asx", "<asx><base href=\"Music/\"><entry><ref href=a.wma></entry><entry><ref href=\"C:\\b.wma\"/>"
                              "</entry></asx>"),
                ElementsAre("Music/a.wma|", "C:\\b.wma|"));
}

TEST(PlaylistFormatsTest, AsxOfAnOldCharset_IsReadInIt)
{
    const std::string title = testsupport::writtenIn("Группа крови", "windows-1251");
    const auto entries = *parsePlaylist("asx", "<asx><entry><ref href=\"" + title + ".wma\"/></entry></asx>");
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].target, title + ".wma");
    EXPECT_EQ(entries[0].path, "Группа крови.wma");
}

TEST(PlaylistFormatsTest, AsxBrokenInAnyPlace_KeepsItsOtherEntries)
{
    EXPECT_THAT(parsed("asx",
                       "<asx><entry><ref href=\"a.wma\"/></entry><entry><ref href='b.wma></entry><entry>"
                       "<ref href=\"c.wma\"/></entry><entry foo=><=><ref href=\"d.wma\"/>&#xFFFFFFFF;&#0;&;&</entry><"),
                ElementsAre("a.wma|", "'b.wma|", "c.wma|", "d.wma|"));
}

TEST(PlaylistFormatsTest, Wpl_HasItsMedia)
{
    EXPECT_THAT(
        parsed("wpl",
               "<?wpl version=\"1.0\"?>\r\n<smil><head><meta name=\"Generator\" content=\"x\"/><title>T</title>"
               "</head><body><seq><media src=\"..\\Music\\A &amp; B.wma\" cid=\"{1}\"/>"
               "<media src=\"http://example.org/a\"/><media/><media src=\"caf\u00e9.mp3\"></media></seq></body></smil>"),
        ElementsAre("..\\Music\\A & B.wma|", "caf\u00e9.mp3|"));
    EXPECT_THAT(
        parsed("wpl", testsupport::writtenIn("<?xml version=\"1.0\" encoding=\"iso-8859-2\"?><smil><media src=\"žluť.mp3\"/>"
                                             "</smil>",
                                             "iso-8859-2")),
        ElementsAre("žluť.mp3|"));
}

} // namespace
} // namespace desktop
