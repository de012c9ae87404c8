#include "desktop/search/Search.h"

#include "platform/SocMwEvents.h"

#include "tests/desktop/support/ManyFiles.h"
#include "tests/desktop/support/MediaStick.h"
#include "tests/desktop/support/UsedUpDescriptors.h"
#include "tests/desktop/support/Waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <json/json.h>

namespace desktop {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

struct Received {
    int event;
    Json::Value object;
};
testsupport::Gathered<Received>* s_received = nullptr;

class SearchTest : public testing::Test {
protected:
    SearchTest()
    {
        s_received = &received;
        stick.events.setListener([](int event, void* data) { s_received->add({event, *static_cast<Json::Value*>(data)}); });
    }

    /// The events of the search of @p directory, its end last.
    std::vector<Received> find(const std::string& directory, FileType type = FILE_TYPE_VIDEO, int itemsPerPage = 9)
    {
        EXPECT_TRUE(search.start(directory, type, itemsPerPage));
        return waitForEnd();
    }

    std::vector<Received> waitForEnd()
    {
        stick.events.start();
        for (std::size_t count = 1;; ++count) {
            const std::vector<Received> all = received.waitFor(count);
            if (all.size() < count || all.back().event == SOCMW_MM_EVENT_FB_FOLDER_UPDATE) {
                return all;
            }
        }
    }

    testsupport::Gathered<Received> received;
    testsupport::MediaStick stick;
    Search search{stick.opener, stick.events};
};

std::vector<std::string> namesIn(const std::vector<Received>& received)
{
    std::vector<std::string> names;
    for (const Received& piece : received) {
        for (const Json::Value& file : piece.object["filelst"]) {
            names.push_back(file["name"].asString());
        }
    }
    return names;
}

TEST_F(SearchTest, FilesOfTheType_AreFoundBelowTheFolderWithTotals)
{
    for (const char* file : {"b/2.mkv", "b/10.mkv", "1.mp4", "b/3.mp3", "a/c/4.avi", "a/text.txt"}) {
        stick.write(file, "x");
    }
    stick.write("a/movie", "\x1A\x45\xDF\xA3");
    const std::vector<Received> all = find(stick.folder.path());
    EXPECT_THAT(namesIn(all), ElementsAre("1.mp4", "movie", "4.avi", "2.mkv", "10.mkv"));
    const Json::Value& end = all.back().object;
    EXPECT_EQ(end["dirpath"], stick.folder.path());
    EXPECT_EQ(end["total"].asInt(), 5);
    EXPECT_EQ(end["folders"].asInt(), 4);
    EXPECT_EQ(end["unreadable"].asInt(), 0);
    EXPECT_FALSE(end.isMember("error"));
}

TEST_F(SearchTest, File_HasTheKeysOfAPage)
{
    stick.write("films/caf\xE9.mkv", "12345");
    const std::vector<Received> all = find(stick.folder.path() + "/");
    EXPECT_EQ(all[0].object["filecount"].asInt(), 1);
    EXPECT_EQ(all[0].object["dirpath"], stick.folder.path());
    const Json::Value& file = all[0].object["filelst"][0];
    EXPECT_EQ(file["path"], stick.folder.path("films/caf\\xE9.mkv"));
    EXPECT_EQ(file["title"], "caf\\xE9");
    EXPECT_EQ(file["size"].asInt(), 5);
    EXPECT_EQ(file["type"], FILE_TYPE_VIDEO);
    EXPECT_NE(file["ctime"].asString(), "");
    EXPECT_EQ(file.getMemberNames().size(), 6U);
}

TEST_F(SearchTest, Pieces_AreAsLongAsAPage)
{
    testsupport::makeManyFiles(stick.folder.path(), 10);
    std::vector<unsigned> sizes;
    for (const Received& piece : find(stick.folder.path(), FILE_TYPE_PHOTO, 4)) {
        sizes.push_back(piece.object["filecount"].asUInt());
    }
    EXPECT_THAT(sizes, ElementsAre(4U, 4U, 2U, 0U));
}

TEST_F(SearchTest, NothingFound_IsAnsweredToo)
{
    const std::vector<Received> all = find(stick.folder.path());
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].object["total"].asInt(), 0);
}

TEST_F(SearchTest, NoSuchFolder_IsRefused)
{
    EXPECT_FALSE(search.start(stick.folder.path("missing"), FILE_TYPE_VIDEO, 9));
    EXPECT_FALSE(search.start("/etc", FILE_TYPE_VIDEO, 9));
}

TEST_F(SearchTest, SecondSearch_IsTheOnlyOneAnswered)
{
    stick.write("a/1.mkv", "x");
    stick.write("b/2.mkv", "x");
    EXPECT_TRUE(search.start(stick.folder.path("a"), FILE_TYPE_VIDEO, 9));
    const std::vector<Received> all = find(stick.folder.path("b"));
    EXPECT_THAT(namesIn(all), ElementsAre("2.mkv"));
    EXPECT_EQ(all.size(), 2U);
}

TEST_F(SearchTest, DescriptorsThatRunOut_NeverLoseFilesSilently)
{
    constexpr int kFolders = 40;
    for (int i = 0; i < kFolders; ++i) {
        stick.write(std::to_string(i) + "/film.mkv", "x");
        stick.write(std::to_string(i) + "/film", "\x1A\x45\xDF\xA3");
    }
    testsupport::UsedUpDescriptors usedUp;
    int incomplete = 0;
    for (int left = 24; left > 0; --left) {
        received.clear();
        usedUp.leave(left);
        if (!search.start(stick.folder.path(), FILE_TYPE_VIDEO, 1000)) {
            continue;
        }
        const Json::Value end = waitForEnd().back().object;
        const bool told = end["unreadable"].asUInt() + end["unreadableFiles"].asUInt() > 0 || end.isMember("error");
        EXPECT_EQ(end["total"].asInt() == 2 * kFolders, !told) << end;
        incomplete += told ? 1 : 0;
    }
    EXPECT_GT(incomplete, 0);
}

TEST_F(SearchTest, Cancelled_RaisesNoEvent)
{
    stick.write("1.mkv", "x");
    EXPECT_TRUE(search.start(stick.folder.path(), FILE_TYPE_VIDEO, 9));
    search.cancel();
    search.stop();
    stick.events.start();
    stick.events.stop();
    EXPECT_THAT(received.sofar(), IsEmpty());
}

TEST_F(SearchTest, PulledStick_EndsItWithItsReasonAndWhatWasFound)
{
    Search slow(stick.opener, stick.events);
    stick.write("1.mkv", "x");
    testsupport::makeManyFiles(stick.folder.path(), 3000);
    EXPECT_TRUE(slow.start(stick.folder.path(), FILE_TYPE_PHOTO, 1)); // far more pieces than may wait undelivered
    slow.volumeRemoved(stick.folder.path());
    stick.events.start();
    for (std::size_t count = 1;; ++count) {
        const std::vector<Received> all = received.waitFor(count);
        ASSERT_EQ(all.size(), count);
        if (all.back().event == SOCMW_MM_EVENT_FB_FOLDER_UPDATE) {
            EXPECT_EQ(all.back().object["error"], "The stick has been pulled");
            EXPECT_LT(all.size(), 3000U);
            break;
        }
    }
    stick.events.stop();
    EXPECT_EQ(received.sofar().back().event, SOCMW_MM_EVENT_FB_FOLDER_UPDATE);
}

} // namespace
} // namespace desktop
