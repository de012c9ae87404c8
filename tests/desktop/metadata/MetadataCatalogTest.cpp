#include "tests/desktop/support/MediaStick.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

namespace desktop {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class MetadataCatalogTest : public testing::Test {
protected:
    media_file_info_s describe(const std::string& name) const
    {
        media_file_info_s info;
        EXPECT_TRUE(stick.listings.describe(stick.folder.path(name), info));
        return info;
    }

    static LocationOpener openerFor(const std::vector<std::string>& sticks)
    {
        return LocationOpener(PathResolver(sticks), std::make_shared<ReadReporter>());
    }

    testsupport::TemporaryDirectory cache;
    testsupport::MediaStick stick{cache.path()};
};

TEST_F(MetadataCatalogTest, MediaFile_IsDescribedByItsFacts)
{
    stick.write("a.mp3", "artist=The Artist\nalbum=The Album\ngenre=Jazz\ntitle=The Title\nlength=185\n");
    const media_file_info_s info = describe("a.mp3");
    EXPECT_EQ(info.path, stick.folder.path("a.mp3"));
    EXPECT_EQ(info.type, FILE_TYPE_MUSIC);
    EXPECT_EQ(info.title, "The Title");
    EXPECT_EQ(info.duration, 185);
    EXPECT_EQ(info.music.artist, "The Artist");
    EXPECT_EQ(info.music.album, "The Album");
    EXPECT_EQ(info.music.genre, "Jazz");
}

TEST_F(MetadataCatalogTest, SeveralArtistsAndGenres_AreShownTogether)
{
    stick.write("a.mp3", "artist=The Artist\nartist=AC/DC\ngenre=Jazz\ngenre=Pop\n");
    const media_file_info_s info = describe("a.mp3");
    EXPECT_EQ(info.music.artist, "The Artist / AC/DC");
    EXPECT_EQ(info.music.genre, "Jazz / Pop");
}

TEST_F(MetadataCatalogTest, PhotoOfAllAround_IsAPanorama)
{
    stick.write("a.jpg", "around");
    stick.write("b.jpg", "title=A title");
    EXPECT_EQ(describe("a.jpg").type, FILE_TYPE_PANORAMA);
    EXPECT_EQ(describe("b.jpg").type, FILE_TYPE_PHOTO);
}

TEST_F(MetadataCatalogTest, FileThatCannotBeRead_IsDescribedByItsNameAndLogged)
{
    stick.write("bad one.mp4", "error=it is broken\n");
    testing::internal::CaptureStdout();
    const media_file_info_s info = describe("bad one.mp4");
    EXPECT_THAT(testing::internal::GetCapturedStdout(),
                HasSubstr("cannot read " + stick.folder.path("bad one.mp4") + ": it is broken"));
    EXPECT_EQ(info.type, FILE_TYPE_VIDEO);
    EXPECT_EQ(info.title, "bad one");
}

TEST_F(MetadataCatalogTest, SecondVisit_ReadsNothingAgain)
{
    stick.write("a.mp3", "title=The Title");
    stick.write("broken.mp3", "error=it is broken");
    for (int visit = 0; visit < 3; ++visit) {
        EXPECT_EQ(describe("a.mp3").title, "The Title");
        EXPECT_EQ(describe("broken.mp3").title, "broken");
        EXPECT_EQ(stick.reader->reads(), 2);
    }
}

TEST_F(MetadataCatalogTest, FileThatHasChanged_IsReadAgain)
{
    stick.write("a.mp3", "title=Old");
    EXPECT_EQ(describe("a.mp3").title, "Old");
    stick.write("a.mp3", "title=New one");
    EXPECT_EQ(describe("a.mp3").title, "New one");
    const timespec times[] = {{1, 0}, {1, 1}};
    ASSERT_EQ(utimensat(AT_FDCWD, stick.folder.path("a.mp3").c_str(), times, 0), 0);
    EXPECT_EQ(describe("a.mp3").title, "New one");
    EXPECT_EQ(stick.reader->reads(), 3);
}

TEST_F(MetadataCatalogTest, StickThatWasPulledWhileItWasRead_LeavesNoFaultBehind)
{
    testsupport::TemporaryDirectory parent;
    parent.makeDirectory("usb");
    parent.makeFile("usb/a.mp3");
    std::string error = "pulled";
    const auto reader = std::make_shared<testsupport::FakeReader>([&](const std::string&, FileType) {
        if (!error.empty()) {
            fs::rename(parent.path("usb"), parent.path("away"));
        }
        MediaMetadata metadata;
        metadata.error = error;
        metadata.title = error.empty() ? "The Title" : "";
        return metadata;
    });
    const auto catalog = std::make_shared<MetadataCatalog>(reader, "");
    EventQueue events;
    const FolderListings listings(openerFor({parent.path("usb")}), events, catalog);
    media_file_info_s info;
    EXPECT_TRUE(listings.describe(parent.path("usb/a.mp3"), info));
    fs::rename(parent.path("away"), parent.path("usb"));
    error.clear();
    EXPECT_TRUE(listings.describe(parent.path("usb/a.mp3"), info));
    EXPECT_EQ(info.title, "The Title");
}

TEST_F(MetadataCatalogTest, FileThatNobodyReadToItsEnd_IsTriedAgain)
{
    testsupport::TemporaryDirectory usb;
    usb.makeFile("a.mp3");
    MediaMetadata answer;
    const auto reader = std::make_shared<testsupport::FakeReader>([&](const std::string&, FileType) { return answer; });
    const auto catalog = std::make_shared<MetadataCatalog>(reader, "");
    EventQueue events;
    const FolderListings listings(openerFor({usb.path()}), events, catalog);
    media_file_info_s info;

    answer.error = "its reader was killed";
    answer.unread = true;
    EXPECT_TRUE(listings.describe(usb.path("a.mp3"), info));
    answer.error = "it is broken";
    answer.unread = false;
    EXPECT_TRUE(listings.describe(usb.path("a.mp3"), info));
    EXPECT_EQ(reader->reads(), 2);
    EXPECT_TRUE(listings.describe(usb.path("a.mp3"), info));
    EXPECT_EQ(reader->reads(), 2) << "the file's own fault is remembered";
}

TEST_F(MetadataCatalogTest, StickUnderAnotherName_IsKnownByItsId)
{
    testsupport::TemporaryDirectory other;
    const PathResolver resolver({});
    resolver.setVolumes({{stick.folder.path(), "1234-ABCD"}, {other.path(), "1234-ABCD"}});
    MetadataCatalog catalog(stick.reader, "");
    catalog.remember(resolver.locate(stick.folder.path("Music")), {{"a.mp3", {1, 2}, MediaMetadata()}});
    EXPECT_FALSE(catalog.known(resolver.locate(other.path("Music"))).empty());
    EXPECT_TRUE(catalog.known(resolver.locate(other.path())).empty());
}

TEST_F(MetadataCatalogTest, LocationOfAStickThatHasGone_IsStillKnownByItsId)
{
    const PathResolver resolver({});
    resolver.setVolumes({{stick.folder.path(), "1234-ABCD"}});
    const Location music = resolver.locate(stick.folder.path("Music"));
    resolver.setVolumes({});
    MetadataCatalog catalog(stick.reader, "");
    catalog.remember(music.child("a"), {{"a.mp3", {1, 2}, MediaMetadata()}});
    EXPECT_FALSE(catalog.known({"/elsewhere", "./Music/a", "1234-ABCD"}).empty());
}

TEST_F(MetadataCatalogTest, Forgetting_MakesFilesUnread)
{
    stick.write("music/a.mp3", "title=The Title");
    describe("music/a.mp3");
    EXPECT_TRUE(stick.listings.forget(stick.folder.path("music")));
    describe("music/a.mp3");
    EXPECT_EQ(stick.reader->reads(), 2);
}

} // namespace
} // namespace desktop
