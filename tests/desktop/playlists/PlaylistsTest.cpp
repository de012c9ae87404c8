#include "desktop/playlists/Playlists.h"

#include "desktop/files/MediaTypes.h"

#include "tests/desktop/support/MediaReading.h"
#include "tests/desktop/support/MediaStick.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

namespace desktop {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

class PlaylistsTest : public testing::Test {
protected:
    /// The paths of the entries of playlist @p name beneath the stick.
    std::vector<std::string> entriesOf(const std::string& name)
    {
        const EntryList entries = playlists.entriesOf(stick.folder.path(name));
        if (entries == nullptr) {
            return {"no list"};
        }
        std::vector<std::string> paths;
        for (const FolderFileInfo_s& entry : *entries) {
            paths.push_back(fs::path(entry.path).lexically_relative(stick.folder.path()));
        }
        return paths;
    }

    /// Which of @p entries are shown as 360-degree photos.
    static std::vector<int> areAround(const EntryList& entries)
    {
        std::vector<int> around;
        for (const FolderFileInfo_s& entry : entries != nullptr ? *entries : std::vector<FolderFileInfo_s>()) {
            around.push_back(entry.isPhoto360);
        }
        return around;
    }

    testsupport::MediaStick stick;
    std::shared_ptr<MediaWorkers> workers = std::make_shared<MediaWorkers>(MediaWorkerSettings{MEDIA_WORKER});
    Playlists playlists{stick.opener, workers, stick.catalog};
};

TEST_F(PlaylistsTest, FilesBelow_AreFoundInTheOrderOfAWalk)
{
    for (const char* file : {"10.m3u", "9.PLS", "b/disc.cue", "a/list.xspf", "a/deep/list.m3u8", "a/song.mp3"}) {
        stick.write(file, "");
    }
    fs::create_symlink("a", stick.folder.path("link"));
    const auto files = playlists.filesBelow(stick.folder.path() + "/");
    ASSERT_TRUE(files);
    EXPECT_THAT(*files,
                ElementsAre(stick.folder.path("9.PLS"), stick.folder.path("10.m3u"), stick.folder.path("a/list.xspf"),
                            stick.folder.path("a/deep/list.m3u8"), stick.folder.path("b/disc.cue")));
    EXPECT_FALSE(playlists.filesBelow(stick.folder.path("missing")));
}

TEST_F(PlaylistsTest, Entries_AreRelativeToThePlaylistOrTheStick)
{
    stick.write("Music/a.mp3", "x");
    stick.write("b.mp3", "x");
    stick.write("Lists/c.mp3", "x");
    stick.write("Lists/all.m3u", "c.mp3\n../Music/a.mp3\n/Music/a.mp3\n" + stick.folder.path("b.mp3") +
                                     "\nE:\\Music\\a.mp3\n.\\c.mp3\n..\\b.mp3\n");
    EXPECT_THAT(entriesOf("Lists/all.m3u"),
                ElementsAre("Lists/c.mp3", "Music/a.mp3", "Music/a.mp3", "b.mp3", "Music/a.mp3", "Lists/c.mp3", "b.mp3"));
}

TEST_F(PlaylistsTest, WhatIsNotOnTheStick_IsLeftOutAndLogged)
{
    stick.write("a.mp3", "x");
    stick.folder.makeDirectory("folder");
    fs::create_symlink("/etc/passwd", stick.folder.path("passwd.mp3"));
    stick.write("all.m3u", "missing.mp3\na.mp3\n../../../../etc/passwd\n/etc/passwd\npasswd.mp3\nfolder\n..\n/\n");
    testing::internal::CaptureStdout();
    EXPECT_THAT(entriesOf("all.m3u"), ElementsAre("a.mp3"));
    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("7 entries of " + stick.folder.path("all.m3u")));
}

TEST_F(PlaylistsTest, Names_AreFoundInWhicheverCharsetTheyWereWritten)
{
    stick.write("caf\u00e9.mp3", "x");
    stick.write("na\xEFve.mp3", "x");
    stick.write("all.m3u", "caf\xE9.mp3\nna\xEFve.mp3\ncaf\u00e9.mp3\n");
    EXPECT_THAT(entriesOf("all.m3u"), ElementsAre("caf\u00e9.mp3", "na\\xEFve.mp3", "caf\u00e9.mp3"));
}

TEST_F(PlaylistsTest, NamesOfAnotherCharset_LeadToTheFileThatIsThere)
{
    stick.write("Кино/Группа крови.mp3", "x");
    stick.write("ДДТ.mp3", "x");
    stick.write("\xC4\xC4\xD2 2.mp3", "x"); // on the stick as in the list
    stick.write("all.m3u", "\xCA\xE8\xED\xEE\\\xC3\xF0\xF3\xEF\xEF\xE0 \xEA\xF0\xEE\xE2\xE8.mp3\n\xC4\xC4\xD2.mp3\n"
                           "\xC4\xC4\xD2 2.mp3\n");
    EXPECT_THAT(entriesOf("all.m3u"), ElementsAre("Кино/Группа крови.mp3", "ДДТ.mp3", "\\xC4\\xC4\\xD2 2.mp3"));
}

TEST_F(PlaylistsTest, LettersWithMarks_LeadToTheFileInEitherForm)
{
    stick.write("Caf\u00e9/\u00fcber.mp3", "x");
    stick.write("Cre\u0300me/na\u0131\u0308ve.mp3", "x");
    stick.write("all.m3u", "Cafe\u0301/u\u0308ber.mp3\nCr\u00e8me/na\u0131\u0308ve.mp3\nCafe\u0301\\u\u0308ber.mp3\n");
    EXPECT_THAT(entriesOf("all.m3u"),
                ElementsAre("Caf\u00e9/\u00fcber.mp3", "Cre\u0300me/na\u0131\u0308ve.mp3", "Caf\u00e9/\u00fcber.mp3"));
}

TEST_F(PlaylistsTest, EscapedPaths_LeadToTheFile)
{
    stick.write("Music/a b.mp3", "x");
    stick.write("c%20d.mp3", "x");
    stick.write("all.m3u", "Music/a%20b.mp3\nc%20d.mp3\nfile:///C:/Music/a%20b.mp3\nfile://C:\\Music\\a%20b.mp3\n"
                           "Music%2F..%2F..%2F..%2Fetc%2Fpasswd\n");
    EXPECT_THAT(entriesOf("all.m3u"), ElementsAre("Music/a b.mp3", "c%20d.mp3", "Music/a b.mp3", "Music/a b.mp3"));
}

TEST_F(PlaylistsTest, EntryWithANulByte_IsMissing)
{
    stick.write("a.mp3", "x");
    stick.write("all.m3u", std::string("a.mp3\0b\na.mp3%00\n\0\na.mp3\n", 25));
    testing::internal::CaptureStdout();
    EXPECT_THAT(entriesOf("all.m3u"), ElementsAre("a.mp3"));
    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("3 entries of " + stick.folder.path("all.m3u")));
}

TEST_F(PlaylistsTest, WhateverIsTypedAsAPlaylist_IsRead)
{
    const std::map<std::string, std::string> lists = {
        {"list.m3u", "a.mp3"},
        {"list.M3U8", "a.mp3"},
        {"list.pls", "File1=a.mp3"},
        {"list.cue", "FILE a.mp3 MP3"},
        {"list.xspf", "<playlist><track><location>a.mp3</location></track></playlist>"},
        {"list.asx", "<asx><entry><ref href=a.mp3></entry></asx>"},
        {"list.wpl", "<smil><media src='a.mp3'/></smil>"},
        {"list", "#EXTM3U\na.mp3"},
        {".list", "[playlist]\nFile1=a.mp3"},
    };
    stick.write("a.mp3", "x");
    for (const auto& [name, content] : lists) {
        stick.write(name, content);
        media_file_info_s info;
        ASSERT_TRUE(stick.listings.describe(stick.folder.path(name), info)) << name;
        EXPECT_EQ(info.type, FILE_TYPE_PLAYLIST) << name;
        EXPECT_THAT(entriesOf(name), ElementsAre("a.mp3")) << name;
    }
}

TEST_F(PlaylistsTest, PlaylistThatKillsItsParser_CostsOnlyItself)
{
    const testsupport::StandIn dying("[ -e $0.log ] && exec '" MEDIA_WORKER "'; touch $0.log; sleep 0.1; kill -SEGV $$");
    workers = std::make_shared<MediaWorkers>(MediaWorkerSettings{dying.program()});
    playlists = Playlists(stick.opener, workers, stick.catalog);
    stick.write("a.mp3", "x");
    stick.write("all.m3u", "a.mp3");
    testing::internal::CaptureStdout();
    EXPECT_EQ(playlists.entriesOf(stick.folder.path("all.m3u")), nullptr);
    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("all.m3u: The file stopped the process that read it."));
    EXPECT_THAT(entriesOf("all.m3u"), ElementsAre("a.mp3"));
}

TEST_F(PlaylistsTest, WorkerThatLies_LeadsNowhere)
{
    stick.write("a.mp3", "x");
    stick.write("all.m3u", "a.mp3");
    // It writes what it likes in place of the entries: one without a path, one with a NUL, one that leads off the stick.
    const testsupport::StandIn lying("exec python3 -c \"\n"
                                     "import array, os, socket, struct\n"
                                     "s = socket.socket(fileno=3)\n"
                                     "data, control, flags, address = s.recvmsg(65536, 1024)\n"
                                     "fds = array.array('i', control[0][2])\n"
                                     "for text in [b'', b'a.mp3\\0', b'../../../../etc/passwd', b'/etc/passwd', b'a.mp3']:\n"
                                     "    for part in [text, text, b'\\xff']:\n"
                                     "        os.write(fds[1], struct.pack('=I', len(part)) + part)\n"
                                     "os.write(fds[1], bytes([255] * 1000))\n"
                                     "s.send(b'{\\\"entries\\\": 4000000000}')\n"
                                     "s.recv(1)\n"
                                     "\"");
    workers = std::make_shared<MediaWorkers>(MediaWorkerSettings{lying.program()});
    playlists = Playlists(stick.opener, workers, stick.catalog);
    testing::internal::CaptureStdout();
    const EntryList entries = playlists.entriesOf(stick.folder.path("all.m3u"));
    testing::internal::GetCapturedStdout();
    ASSERT_NE(entries, nullptr);
    ASSERT_EQ(entries->size(), 1U);
    EXPECT_EQ(entries->front().name, "a.mp3");
    EXPECT_EQ(entries->front().title, "a");
}

TEST_F(PlaylistsTest, Entry_IsDescribedAsInAList)
{
    stick.write("Music/a.mp3", "12345");
    stick.write("Music/b.mp3", "title=The Title");
    media_file_info_s info;
    ASSERT_TRUE(stick.listings.describe(stick.folder.path("Music/b.mp3"), info));
    stick.write("around.jpg", "around");
    stick.write("all.m3u", "#EXTINF:1,From the list\nMusic/a.mp3\nMusic/b.mp3\nMusic/a.mp3\naround.jpg\n");
    const EntryList entries = playlists.entriesOf(stick.folder.path("all.m3u"));
    ASSERT_NE(entries, nullptr);
    ASSERT_EQ(entries->size(), 4U);
    EXPECT_EQ((*entries)[0].title, "From the list");
    EXPECT_EQ((*entries)[0].size, 5U);
    EXPECT_EQ((*entries)[0].type, FILE_TYPE_MUSIC);
    EXPECT_EQ((*entries)[0].name, "a.mp3");
    EXPECT_EQ((*entries)[1].title, "b"); // whatever is known of it
    EXPECT_EQ((*entries)[2].title, "a");
    EXPECT_EQ((*entries)[2].id, 2);
    EXPECT_EQ((*entries)[3].type, FILE_TYPE_PANORAMA);
    EXPECT_EQ((*entries)[3].isPhoto360, 1);
}

TEST_F(PlaylistsTest, PhotosBeyondTheTimeForThem_AreShownAsTheIndexKnowsThem)
{
    for (const char* photo : {"known.jpg", "unknown.jpg"}) {
        stick.write(photo, "around");
    }
    stick.write("all.m3u", "unknown.jpg\nknown.jpg\n");
    media_file_info_s info;
    ASSERT_TRUE(stick.listings.describe(stick.folder.path("known.jpg"), info));
    Playlists withoutTime(stick.opener, workers, stick.catalog, std::chrono::milliseconds(0));
    EXPECT_THAT(areAround(withoutTime.entriesOf(stick.folder.path("all.m3u"))), ElementsAre(0, 1));
    EXPECT_EQ(stick.reader->reads(), 1);
}

TEST_F(PlaylistsTest, Photos_AreKnownByTheirOwnFolder)
{
    stick.write("a/1.jpg", "around");
    stick.write("b/1.jpg", "a plain one");
    stick.write("1.jpg", "around");
    stick.write("all.m3u", "a/1.jpg\nb/1.jpg\n1.jpg\nb/1.jpg\na/1.jpg\n");
    for (int visit = 0; visit < 2; ++visit) {
        EXPECT_THAT(areAround(playlists.entriesOf(stick.folder.path("all.m3u"))), ElementsAre(1, 0, 1, 0, 1));
    }
    EXPECT_EQ(stick.reader->reads(), 3);
}

TEST_F(PlaylistsTest, IsPlaylist_TellsByNameAndContent)
{
    stick.write("list.m3u", "");
    stick.write("list", "#EXTM3U\n");
    stick.write("text", "Some text.");
    stick.write("a.mp3", "#EXTM3U\n");
    stick.folder.makeDirectory("folder.m3u");
    for (const char* name : {"list.m3u", "list"}) {
        EXPECT_EQ(playlists.isPlaylist(stick.folder.path(name)), true) << name;
    }
    for (const char* name : {"text", "a.mp3", "folder.m3u", "missing.m3u", ""}) {
        EXPECT_EQ(playlists.isPlaylist(stick.folder.path(name)), false) << name;
    }
    EXPECT_EQ(playlists.isPlaylist("/etc/list.m3u"), false);
    EXPECT_TRUE(stick.failures().empty());
}

TEST_F(PlaylistsTest, PlaylistThatCannotBeRead_IsReportedOnce)
{
    stick.write("huge.m3u", std::string(5 << 20, '\n'));
    EXPECT_EQ(playlists.entriesOf(stick.folder.path("huge.m3u")), nullptr);
    EXPECT_THAT(stick.failures(), ElementsAre(stick.folder.path("huge.m3u") + ": File too large"));
}

TEST_F(PlaylistsTest, PagesOfOneList_ReadItOnceUnlessItChanges)
{
    stick.write("a.mp3", "x");
    stick.write("all.m3u", "a.mp3\n");
    const EntryList first = playlists.entriesOf(stick.folder.path("all.m3u"));
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(playlists.entriesOf(stick.folder.path("all.m3u")), first);
    stick.write("all.m3u", "a.mp3\na.mp3\n");
    const EntryList changed = playlists.entriesOf(stick.folder.path("all.m3u"));
    ASSERT_NE(changed, nullptr);
    EXPECT_EQ(changed->size(), 2U);
}

TEST_F(PlaylistsTest, WhatIsNoPlaylist_HasNoEntries)
{
    stick.write("a.mp3", "x");
    stick.write("huge.m3u", std::string(5 << 20, '\n'));
    stick.folder.makeDirectory("folder.m3u");
    testing::internal::CaptureStdout();
    for (const char* name : {"a.mp3", "missing.m3u", "folder.m3u", "huge.m3u"}) {
        EXPECT_EQ(playlists.entriesOf(stick.folder.path(name)), nullptr) << name;
    }
    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("huge.m3u: File too large"));
    EXPECT_EQ(playlists.entriesOf("/etc/list.m3u"), nullptr);
}

} // namespace
} // namespace desktop
