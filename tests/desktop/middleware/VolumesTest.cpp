#include "desktop/middleware/Volumes.h"

#include "platform/SocMwEvents.h"

#include "tests/desktop/support/Waiting.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace desktop {
namespace {

namespace fs = std::filesystem;

testsupport::Gathered<std::string>* s_news = nullptr;

// One word an event: plugin, mount, list:NAMES, removed:PATH.
void gather(int id, void* data)
{
    std::string word;
    if (id == SOCMW_MM_EVENT_USB_DEVICE_PLUGIN) {
        word = "plugin";
    } else if (id == SOCMW_MM_EVENT_USB_DEVICE_MOUNT) {
        word = "mount";
    } else if (id == SOCMW_MM_EVENT_USB_DEVICE_REMOVED) {
        const auto& removed = *static_cast<Json::Value*>(data);
        EXPECT_EQ(removed["devType"], Json::Value(0));
        word = "removed:" + removed["path"].asString();
    } else if (id == SOCMW_MM_EVENT_DEVICE_LIST_UPDATE) {
        const auto& list = *static_cast<Json::Value*>(data);
        EXPECT_EQ(list["devType"], Json::Value(0));
        EXPECT_EQ(list["devcount"].asUInt(), list["devlist"].size());
        word = "list:";
        for (const Json::Value& device : list["devlist"]) {
            word += device["name"].asString() + ";";
        }
    }
    s_news->add(word);
}

using Words = std::vector<std::string>;

class VolumesTest : public testing::Test {
protected:
    VolumesTest()
    {
        s_news = &news;
        events.setListener(&gather);
        events.start();
    }
    ~VolumesTest() override { events.stop(); }

    testsupport::TemporaryDirectory folder;
    testsupport::Gathered<std::string> news;
    EventQueue events;
};

TEST_F(VolumesTest, SticksThatAreThere_AreAnnouncedAtOnce)
{
    folder.makeDirectory("one");
    folder.makeDirectory("电影");
    const Volumes volumes({folder.path("one"), folder.path("missing"), folder.path("电影")}, events);
    EXPECT_EQ(news.waitFor(6), (Words{"plugin", "mount", "list:one;", "plugin", "mount", "list:one;电影;"}));
    EXPECT_EQ(volumes.deviceList()["devcount"].asInt(), 2);
    EXPECT_EQ(volumes.deviceList()["devlist"][0]["path"].asString(), folder.path("one"));
}

TEST_F(VolumesTest, FolderThatAppearsAndGoes_IsAStickPutInAndPulled)
{
    const Volumes volumes({folder.path("stick")}, events);
    folder.makeDirectory("stick");
    EXPECT_EQ(news.waitFor(3), (Words{"plugin", "mount", "list:stick;"}));
    news.clear();
    fs::remove(folder.path("stick"));
    EXPECT_EQ(news.waitFor(2), (Words{"removed:" + folder.path("stick"), "list:"}));
    EXPECT_EQ(volumes.deviceList()["devcount"].asInt(), 0);
}

TEST_F(VolumesTest, FolderMovedAwayAndBack_IsPulledAndPutIn)
{
    folder.makeDirectory("stick");
    const Volumes volumes({folder.path("stick")}, events);
    news.waitFor(3);
    news.clear();
    fs::rename(folder.path("stick"), folder.path("elsewhere"));
    EXPECT_EQ(news.waitFor(2).front(), "removed:" + folder.path("stick"));
    news.clear();
    fs::rename(folder.path("elsewhere"), folder.path("stick"));
    EXPECT_EQ(news.waitFor(3).front(), "plugin");
}

TEST_F(VolumesTest, FolderReplacedByAnother_IsPulledBeforeTheOtherIsPutIn)
{
    folder.makeDirectory("stick");
    folder.makeDirectory("other");
    const Volumes volumes({folder.path("stick")}, events);
    news.waitFor(3);
    news.clear();
    fs::rename(folder.path("other"), folder.path("stick")); // in one step
    EXPECT_EQ(news.waitFor(5), (Words{"removed:" + folder.path("stick"), "list:", "plugin", "mount", "list:stick;"}));
}

TEST_F(VolumesTest, ParentsMadeLater_AreFollowedDownToTheStick)
{
    const Volumes volumes({folder.path("a/b/c/stick")}, events);
    folder.makeDirectory("a/b/c/stick");
    EXPECT_EQ(news.waitFor(3), (Words{"plugin", "mount", "list:stick;"}));
    news.clear();
    fs::remove_all(folder.path("a"));
    EXPECT_EQ(news.waitFor(2).front(), "removed:" + folder.path("a/b/c/stick"));
}

TEST_F(VolumesTest, FileInPlaceOfTheFolder_IsNoStick)
{
    folder.makeFile("stick");
    const Volumes volumes({folder.path("stick")}, events);
    EXPECT_EQ(volumes.deviceList()["devcount"].asInt(), 0);
}

TEST_F(VolumesTest, NameThatIsNoUtf8_IsShownEncoded)
{
    folder.makeDirectory("caf\xE9");
    const Volumes volumes({folder.path("caf\xE9")}, events);
    EXPECT_EQ(volumes.deviceList()["devlist"][0]["name"].asString(), "caf\\xE9");
    EXPECT_EQ(volumes.deviceList()["devlist"][0]["path"].asString(), folder.path("caf\\xE9"));
}

} // namespace
} // namespace desktop
