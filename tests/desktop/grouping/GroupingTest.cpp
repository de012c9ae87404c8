#include "desktop/grouping/Grouping.h"

#include "platform/SocMwEvents.h"

#include "tests/desktop/support/MediaStick.h"
#include "tests/desktop/support/UsedUpDescriptors.h"
#include "tests/desktop/support/Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Keys = std::vector<std::string>;
testsupport::Gathered<Keys>* s_keys = nullptr;

class GroupingTest : public testing::Test {
protected:
    GroupingTest()
    {
        s_keys = &received;
        stick.events.setListener([](int event, void* data) {
            EXPECT_EQ(event, SOCMW_MM_EVENT_GROUP_COMPLETED);
            s_keys->add(*static_cast<Keys*>(data));
        });
        stick.events.start();
        stick.write("b/2 beta.mp3", "artist=Beta\ngenre= Jazz \nalbum=Two\ntitle=Second\nlength=20");
        stick.write("b/10 beta.mp3", "artist=Beta\ngenre=Jazz\nalbum=Two\nlength=30");
        stick.write("a/1.ogg", "artist=\u00e4lpha\ngenre=Pop\nalbum=One 10");
        stick.write("3.flac", "artist=Gamma\nalbum=One 9");
        stick.write("4.mp3", "artist=  ");
        stick.write("x.jpg", "taken=2023-12-24 18:00:00");
        stick.write("y/z.jpg", "taken=2024-05-17 12:30:00");
        stick.write("y/w.jpg", "taken=2024-12-01 08:00:00");
        stick.write("y/unknown.jpg", "title=No date");
        stick.write("film.mkv", "artist=Nobody");
    }

    Keys group(GroupFileType type, const std::string& below = "")
    {
        const std::size_t before = received.sofar().size();
        EXPECT_TRUE(grouping.start(stick.folder.path(below), type));
        const std::vector<Keys> all = received.waitFor(before + 1);
        return all.size() > before ? all.back() : Keys{"no answer"};
    }

    Keys namesOf(const std::string& key, int number = 0, GroupOrder order = GroupOrder::AsWalked)
    {
        Keys names;
        const auto entries = grouping.list(key, number, order);
        for (const MediaEntry& entry : entries.value_or(std::vector<MediaEntry>())) {
            names.push_back(entry.file.name);
        }
        return names;
    }

    testsupport::Gathered<Keys> received;
    testsupport::MediaStick stick;
    Grouping grouping{stick.opener, stick.catalog, stick.events};
};

TEST_F(GroupingTest, Music_HasItsTagsInNaturalOrderAndWhatIsUnknownLast)
{
    EXPECT_THAT(group(GROUP_TYPE_ARTIST), ElementsAre("\u00e4lpha", "Beta", "Gamma", "Unknown"));
    EXPECT_THAT(group(GROUP_TYPE_GENRE), ElementsAre("Jazz", "Pop", "Unknown"));
    EXPECT_THAT(group(GROUP_TYPE_ALBUM), ElementsAre("One 9", "One 10", "Two", "Unknown"));
    EXPECT_THAT(namesOf("Two"), ElementsAre("2 beta.mp3", "10 beta.mp3"));
    EXPECT_THAT(namesOf("Unknown"), ElementsAre("4.mp3"));
}

TEST_F(GroupingTest, FileOfSeveralArtistsOrGenres_IsInAGroupOfEach)
{
    stick.write("both/1.mp3", "artist=Beta\nartist=AC/DC\ngenre=Pop; Rock\ngenre=Jazz");
    stick.write("both/2.mp3", "artist=Beta\nartist= beta \nartist=\ngenre=Jazz");
    EXPECT_THAT(group(GROUP_TYPE_ARTIST, "both"), ElementsAre("AC/DC", "Beta"));
    EXPECT_THAT(namesOf("Beta"), ElementsAre("1.mp3", "2.mp3"));
    EXPECT_THAT(namesOf("AC/DC"), ElementsAre("1.mp3"));
    EXPECT_THAT(group(GROUP_TYPE_GENRE, "both"), ElementsAre("Jazz", "Pop; Rock"));
    EXPECT_THAT(namesOf("Jazz"), ElementsAre("1.mp3", "2.mp3"));
}

constexpr const char* kComposed = "Beyonc\u00e9";
constexpr const char* kDecomposed = "Beyonce\u0301";

TEST_F(GroupingTest, SpellingsOfOneName_AreOneGroup)
{
    stick.write("x/1.mp3", std::string("artist=") + kComposed);
    stick.write("x/2.mp3", std::string("artist=") + kDecomposed);
    stick.write("x/3.mp3", "artist=BEYONC\u00c9");
    stick.write("x/4.mp3", "artist=Stra\u00dfe");
    stick.write("x/5.mp3", "artist=STRASSE");
    stick.write("x/6.mp3", "artist=Beyonce");
    EXPECT_EQ(group(GROUP_TYPE_ARTIST, "x").size(), 3U);
    for (const char* key : {kComposed, kDecomposed, "bEYONC\u00c9", " Beyonc\u00e9 "}) {
        EXPECT_THAT(namesOf(key), ElementsAre("1.mp3", "2.mp3", "3.mp3")) << key;
    }
    EXPECT_THAT(namesOf("strasse"), ElementsAre("4.mp3", "5.mp3"));
}

TEST_F(GroupingTest, Group_IsNamedAsMostOfItsFilesNameIt)
{
    stick.write("x/1.mp3", "artist=the beatles\nalbum=b\ngenre=UNKNOWN");
    stick.write("x/2.mp3", "artist=The Beatles\nalbum=B");
    stick.write("x/3.mp3", "artist=The Beatles\nalbum=A");
    stick.write("x/4.mp3", "artist=THE BEATLES\nalbum=a");
    EXPECT_THAT(group(GROUP_TYPE_ARTIST, "x"), ElementsAre("The Beatles"));
    EXPECT_THAT(group(GROUP_TYPE_ALBUM, "x"), ElementsAre("a", "b"));
    EXPECT_THAT(group(GROUP_TYPE_GENRE, "x"), ElementsAre("UNKNOWN"));
    EXPECT_THAT(namesOf("Unknown"), ElementsAre("1.mp3", "2.mp3", "3.mp3", "4.mp3"));
}

TEST_F(GroupingTest, Photos_HaveTheirDates)
{
    EXPECT_THAT(group(GROUP_TYPE_DATE), ElementsAre("2023-12-24", "2024-05-17", "2024-12-01", "Unknown"));
    EXPECT_THAT(group(GROUP_TYPE_MONTH), ElementsAre("2023-12", "2024-05", "2024-12", "Unknown"));
    EXPECT_THAT(group(GROUP_TYPE_MONTH_OF_YEAR), ElementsAre("05", "12", "Unknown"));
    EXPECT_THAT(group(GROUP_TYPE_YEAR), ElementsAre("2023", "2024", "Unknown"));
    EXPECT_THAT(namesOf("2024"), ElementsAre("w.jpg", "z.jpg"));
}

TEST_F(GroupingTest, WithoutATag_AllIsOneGroup)
{
    EXPECT_THAT(group(GROUP_TYPE_MUSIC), ElementsAre("All"));
    EXPECT_THAT(namesOf("All"), ElementsAre("3.flac", "4.mp3", "1.ogg", "2 beta.mp3", "10 beta.mp3"));
    EXPECT_THAT(group(GROUP_TYPE_NONE), ElementsAre("All"));
    EXPECT_EQ(namesOf("All").size(), 9U);
}

TEST_F(GroupingTest, FolderWithoutMedia_HasNoGroups)
{
    stick.folder.makeDirectory("empty");
    EXPECT_THAT(group(GROUP_TYPE_ARTIST, "empty"), IsEmpty());
}

TEST_F(GroupingTest, Lists_AreCutAndSortedAsAsked)
{
    group(GROUP_TYPE_MUSIC);
    EXPECT_THAT(namesOf("All", 2), ElementsAre("3.flac", "4.mp3"));
    EXPECT_THAT(namesOf("All", 0, GroupOrder::NameAscending),
                ElementsAre("1.ogg", "2 beta.mp3", "3.flac", "4.mp3", "10 beta.mp3"));
    EXPECT_THAT(namesOf("All", 3, GroupOrder::NameDescending), ElementsAre("10 beta.mp3", "4.mp3", "3.flac"));
}

TEST_F(GroupingTest, Pages_GoOnWhereTheListEnds)
{
    group(GROUP_TYPE_MUSIC);
    namesOf("All", 2, GroupOrder::NameDescending);
    const auto second = grouping.page("All", 1);
    ASSERT_TRUE(second);
    ASSERT_EQ(second->size(), 2U);
    EXPECT_EQ((*second)[0].name, "3.flac");
    EXPECT_EQ(grouping.page("All", 2)->size(), 1U);
    EXPECT_TRUE(grouping.page("All", 3)->empty());
    EXPECT_FALSE(grouping.page("None", 0));
}

TEST_F(GroupingTest, Entries_HaveTheirFacts)
{
    group(GROUP_TYPE_ALBUM);
    const auto entries = grouping.list("Two", 1, GroupOrder::AsWalked);
    ASSERT_TRUE(entries);
    EXPECT_EQ(entries->at(0).file.path, stick.folder.path("b/2 beta.mp3"));
    EXPECT_EQ(entries->at(0).file.title, "Second");
    EXPECT_EQ(entries->at(0).metadata.duration, 20);
    EXPECT_THAT(entries->at(0).metadata.artists, ElementsAre("Beta"));
}

TEST_F(GroupingTest, SecondGrouping_ReadsNothingAgain)
{
    group(GROUP_TYPE_ARTIST);
    EXPECT_EQ(stick.reader->reads(), 5);
    EXPECT_THAT(group(GROUP_TYPE_GENRE), ElementsAre("Jazz", "Pop", "Unknown"));
    EXPECT_EQ(stick.reader->reads(), 5);
    group(GROUP_TYPE_YEAR);
    EXPECT_EQ(stick.reader->reads(), 9);
}

TEST_F(GroupingTest, FileThatCannotBeRead_IsUnknownAndKeepsItsPlace)
{
    stick.write("b/3 broken.mp3", "error=it is broken");
    EXPECT_THAT(group(GROUP_TYPE_ARTIST, "b"), ElementsAre("Beta", "Unknown"));
    EXPECT_THAT(namesOf("Unknown"), ElementsAre("3 broken.mp3"));
}

TEST_F(GroupingTest, TypeOrFolderThatIsNone_IsRefused)
{
    for (const int type : {-1, 9, 10, 11}) {
        EXPECT_FALSE(grouping.start(stick.folder.path(), static_cast<GroupFileType>(type))) << type;
    }
    EXPECT_FALSE(grouping.start(stick.folder.path("missing"), GROUP_TYPE_ARTIST));
    EXPECT_FALSE(grouping.list("All", 9, GroupOrder::AsWalked));
}

TEST_F(GroupingTest, NewGrouping_DropsTheGroupsBefore)
{
    group(GROUP_TYPE_ARTIST);
    group(GROUP_TYPE_YEAR);
    EXPECT_FALSE(grouping.list("Beta", 9, GroupOrder::AsWalked));
}

/// A grouping whose reader opens one door and waits at another.
class StuckGroupingTest : public testing::Test {
protected:
    StuckGroupingTest()
    {
        s_keys = &received;
        events.setListener([](int, void* data) { s_keys->add(*static_cast<Keys*>(data)); });
        events.start();
        stick.makeFile("1.mp3");
        EXPECT_TRUE(grouping.start(stick.path(), GROUP_TYPE_ARTIST));
        EXPECT_TRUE(reading.wait());
    }
    ~StuckGroupingTest() override { goOn.open(); }

    testsupport::Gathered<Keys> received;
    testsupport::Door reading;
    testsupport::Door goOn;
    testsupport::TemporaryDirectory stick;
    EventQueue events;
    std::shared_ptr<MetadataCatalog> catalog =
        std::make_shared<MetadataCatalog>(std::make_shared<testsupport::FakeReader>([this](const std::string&, FileType) {
                                              reading.open();
                                              goOn.wait();
                                              return MediaMetadata();
                                          }),
                                          "");
    Grouping grouping{LocationOpener(PathResolver({stick.path()}), std::make_shared<ReadReporter>()), catalog, events};
};

TEST_F(StuckGroupingTest, Cancelled_RaisesNoEventAndRemembersNothing)
{
    grouping.cancel();
    goOn.open();
    grouping.stop();
    events.stop();
    EXPECT_THAT(received.sofar(), IsEmpty());
    EXPECT_TRUE(catalog->known({stick.path(), "."}).empty());
}

TEST_F(StuckGroupingTest, PulledStick_IsAnsweredAtOnceWithoutGroups)
{
    grouping.volumeRemoved("/another/stick");
    grouping.volumeRemoved(stick.path());
    EXPECT_THAT(received.waitFor(1), ElementsAre(IsEmpty()));
}

TEST_F(GroupingTest, DescriptorsThatRunOut_NeverLoseFilesSilently)
{
    testsupport::UsedUpDescriptors usedUp;
    std::size_t told = 0;
    for (int left = 12; left > 2; --left) {
        usedUp.leave(left);
        Grouping afresh(stick.opener, std::make_shared<MetadataCatalog>(stick.reader, ""), stick.events);
        const std::size_t before = received.sofar().size();
        if (!afresh.start(stick.folder.path(), GROUP_TYPE_ALBUM)) {
            continue;
        }
        const std::vector<Keys> all = received.waitFor(before + 1);
        ASSERT_GT(all.size(), before);
        const std::size_t failures = stick.failures().size();
        EXPECT_TRUE(all.back() == Keys({"One 9", "One 10", "Two", "Unknown"}) || failures > told) << left;
        told = failures;
    }
    EXPECT_GT(told, 0U);
    EXPECT_THAT(stick.failures().back(), testing::HasSubstr("cannot be read"));
}

} // namespace
} // namespace desktop
