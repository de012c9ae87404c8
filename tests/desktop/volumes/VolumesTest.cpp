#include "desktop/volumes/Volumes.h"

#include "platform/SocMwEvents.h"

#include "tests/desktop/support/DeadFileSystem.h"
#include "tests/desktop/support/OwnMounts.h"
#include "tests/desktop/support/Waiting.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

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
    PathResolver resolver{{}};
};

TEST_F(VolumesTest, SticksThatAreThere_AreAnnouncedAtOnce)
{
    folder.makeDirectory("one");
    folder.makeDirectory("电影");
    const Volumes volumes({{folder.path("one"), folder.path("missing"), folder.path("电影")}, {}}, resolver, events);
    EXPECT_EQ(news.waitFor(6), (Words{"plugin", "mount", "list:one;", "plugin", "mount", "list:one;电影;"}));
    EXPECT_EQ(volumes.deviceList()["devcount"].asInt(), 2);
    EXPECT_EQ(volumes.deviceList()["devlist"][0]["path"].asString(), folder.path("one"));
}

TEST_F(VolumesTest, FolderThatAppearsAndGoes_IsAStickPutInAndPulled)
{
    const Volumes volumes({{folder.path("stick")}, {}}, resolver, events);
    folder.makeDirectory("stick");
    EXPECT_EQ(news.waitFor(3), (Words{"plugin", "mount", "list:stick;"}));
    news.clear();
    fs::remove(folder.path("stick"));
    EXPECT_EQ(news.waitFor(2), (Words{"removed:" + folder.path("stick"), "list:"}));
    EXPECT_EQ(volumes.deviceList()["devcount"].asInt(), 0);
}

TEST_F(VolumesTest, ResolverAndWhoeverReads_KnowOfAPulledStickBeforeItsEvent)
{
    folder.makeDirectory("stick");
    testsupport::Gathered<Words> pulled;
    const Volumes volumes({{folder.path("stick")}, {}}, resolver, events, [&](const std::string& stick) {
        EXPECT_FALSE(resolver.locate(folder.path("stick/a.jpg")));
        pulled.add({stick, std::to_string(news.sofar().size())});
    });
    EXPECT_TRUE(resolver.locate(folder.path("stick/a.jpg")));
    news.waitFor(3);
    fs::remove(folder.path("stick"));
    EXPECT_EQ(pulled.waitFor(1), (std::vector<Words>{{folder.path("stick"), "3"}}));
}

TEST_F(VolumesTest, PlainFolder_IsKnownByItsPlace)
{
    folder.makeDirectory("stick");
    const Volumes volumes({{folder.path("stick")}, {}}, resolver, events);
    const std::string id = resolver.locate(folder.path("stick")).volumeId;
    EXPECT_EQ(id.substr(id.rfind("/storagemedia")),
              folder.path("stick").substr(folder.path("stick").rfind("/storagemedia")));
    EXPECT_EQ(resolver.locate(folder.path("other")).volumeId, "");
}

TEST_F(VolumesTest, FolderMovedAwayAndBack_IsPulledAndPutIn)
{
    folder.makeDirectory("stick");
    const Volumes volumes({{folder.path("stick")}, {}}, resolver, events);
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
    const Volumes volumes({{folder.path("stick")}, {}}, resolver, events);
    news.waitFor(3);
    news.clear();
    fs::rename(folder.path("other"), folder.path("stick")); // in one step
    EXPECT_EQ(news.waitFor(5), (Words{"removed:" + folder.path("stick"), "list:", "plugin", "mount", "list:stick;"}));
}

TEST_F(VolumesTest, ParentsMadeLater_AreFollowedDownToTheStick)
{
    const Volumes volumes({{folder.path("a/b/c/stick")}, {}}, resolver, events);
    folder.makeDirectory("a/b/c/stick");
    EXPECT_EQ(news.waitFor(3), (Words{"plugin", "mount", "list:stick;"}));
    news.clear();
    fs::remove_all(folder.path("a"));
    EXPECT_EQ(news.waitFor(2).front(), "removed:" + folder.path("a/b/c/stick"));
}

TEST_F(VolumesTest, FileInPlaceOfTheFolder_IsNoStick)
{
    folder.makeFile("stick");
    const Volumes volumes({{folder.path("stick")}, {}}, resolver, events);
    EXPECT_EQ(volumes.deviceList()["devcount"].asInt(), 0);
}

TEST_F(VolumesTest, NameThatIsNoUtf8_IsShownEncoded)
{
    folder.makeDirectory("caf\xE9");
    const Volumes volumes({{folder.path("caf\xE9")}, {}}, resolver, events);
    EXPECT_EQ(volumes.deviceList()["devlist"][0]["name"].asString(), "caf\\xE9");
    EXPECT_EQ(volumes.deviceList()["devlist"][0]["path"].asString(), folder.path("caf\\xE9"));
}

constexpr const char* kUuid = "0d5c2a7e-8f14-4b0e-9a53-6f2d1c9b7e40";

/// Sticks as file systems of their own; the place that the computer mounts sticks in is the folder "mnt".
class MountedVolumesTest : public VolumesTest {
protected:
    MountedVolumesTest()
    {
        folder.makeDirectory("mnt/one");
        folder.makeDirectory("mnt/two");
        folder.makeDirectory("content");
        folder.makeFile("content/a.jpg");
    }
    ~MountedVolumesTest() override
    {
        for (const char* mounted : {"mnt/one", "mnt/one", "mnt/two"}) {
            umount2(folder.path(mounted).c_str(), MNT_DETACH);
        }
    }

    bool putIn(const std::string& below)
    {
        if (!fs::exists(folder.path("image"))) {
            testsupport::makeExt4Image(folder.path("image"), "HOLIDAY", kUuid, folder.path("content"));
        }
        return mounts.refusal().empty() && mounts.mountImage(folder.path("image"), folder.path(below));
    }

    VolumeSources mountedOnes() const { return {{}, {folder.path("mnt")}}; }

    testsupport::OwnMounts mounts;
};

TEST_F(MountedVolumesTest, MountBelowAWatchedFolder_IsAStickWithItsLabel)
{
    const Volumes volumes(mountedOnes(), resolver, events);
    if (!putIn("mnt/one")) {
        GTEST_SKIP() << mounts.refusal();
    }
    EXPECT_EQ(news.waitFor(3), (Words{"plugin", "mount", "list:HOLIDAY;"}));
    EXPECT_EQ(volumes.deviceList()["devlist"][0]["path"].asString(), folder.path("mnt/one"));
    EXPECT_EQ(resolver.locate(folder.path("mnt/one")).volumeId, std::string(kUuid) + ":/");
    news.clear();
    testsupport::OwnMounts::unmount(folder.path("mnt/one"));
    EXPECT_EQ(news.waitFor(2), (Words{"removed:" + folder.path("mnt/one"), "list:"}));
}

TEST_F(MountedVolumesTest, SameStickInAnotherPlace_KeepsItsId)
{
    if (!putIn("mnt/one")) {
        GTEST_SKIP() << mounts.refusal();
    }
    const Volumes volumes(mountedOnes(), resolver, events);
    const std::string id = resolver.locate(folder.path("mnt/one")).volumeId;
    testsupport::OwnMounts::unmount(folder.path("mnt/one"));
    putIn("mnt/two");
    news.waitFor(8);
    EXPECT_EQ(resolver.locate(folder.path("mnt/two")).volumeId, id);
    EXPECT_EQ(resolver.locate(folder.path("mnt/one")).volumeId, "");
}

TEST_F(MountedVolumesTest, MountOfNoDevice_IsNoStick)
{
    if (!mounts.refusal().empty()) {
        GTEST_SKIP() << mounts.refusal();
    }
    testsupport::OwnMounts::mountEmpty(folder.path("mnt/one"));
    const Volumes volumes(mountedOnes(), resolver, events);
    EXPECT_EQ(volumes.deviceList()["devcount"].asInt(), 0);
}

TEST_F(MountedVolumesTest, FileSystemOfAProgram_IsAStick)
{
    const testsupport::DeadFileSystem remote(folder.path("mnt/one"), "fuse.remote");
    if (!remote.works()) {
        GTEST_SKIP() << "this machine mounts no file system of a program";
    }
    const Volumes volumes(mountedOnes(), resolver, events);
    ASSERT_EQ(volumes.deviceList()["devcount"].asInt(), 1);
    EXPECT_EQ(volumes.deviceList()["devlist"][0]["path"].asString(), folder.path("mnt/one"));
}

TEST_F(MountedVolumesTest, StickUnmountedLazilyWhileAFileIsOpen_IsPulled)
{
    if (!putIn("mnt/one")) {
        GTEST_SKIP() << mounts.refusal();
    }
    const Volumes volumes(mountedOnes(), resolver, events);
    news.waitFor(3);
    news.clear();
    const std::ifstream open(folder.path("mnt/one/a.jpg"));
    ASSERT_TRUE(open.good());
    testsupport::OwnMounts::unmountLazily(folder.path("mnt/one"));
    EXPECT_EQ(news.waitFor(2), (Words{"removed:" + folder.path("mnt/one"), "list:"}));
}

TEST_F(MountedVolumesTest, StickThatSomethingIsMountedOver_IsPulledUntilThatGoes)
{
    if (!putIn("mnt/one")) {
        GTEST_SKIP() << mounts.refusal();
    }
    const Volumes volumes(mountedOnes(), resolver, events);
    news.waitFor(3);
    news.clear();
    testsupport::OwnMounts::mountEmpty(folder.path("mnt/one"));
    EXPECT_EQ(news.waitFor(2), (Words{"removed:" + folder.path("mnt/one"), "list:"}));
    news.clear();
    testsupport::OwnMounts::unmount(folder.path("mnt/one"));
    EXPECT_EQ(news.waitFor(3), (Words{"plugin", "mount", "list:HOLIDAY;"}));
}

TEST_F(MountedVolumesTest, GivenFolderThatWasAMountPoint_IsAStickOnlyWhileMounted)
{
    testsupport::makeSquashfsImage(folder.path("squashed"), folder.path("content"));
    const Volumes volumes({{folder.path("mnt/one")}, {}}, resolver, events);
    news.waitFor(3);
    news.clear();
    if (!mounts.refusal().empty() || !mounts.mountImage(folder.path("squashed"), folder.path("mnt/one"))) {
        GTEST_SKIP() << mounts.refusal();
    }
    EXPECT_EQ(news.waitFor(5), (Words{"removed:" + folder.path("mnt/one"), "list:", "plugin", "mount", "list:one;"}));
    EXPECT_EQ(resolver.locate(folder.path("mnt/one")).volumeId, folder.path("mnt/one"));
    news.clear();
    testsupport::OwnMounts::unmount(folder.path("mnt/one"));
    EXPECT_EQ(news.waitFor(2), (Words{"removed:" + folder.path("mnt/one"), "list:"}));
    EXPECT_EQ(volumes.deviceList()["devcount"].asInt(), 0);
}

} // namespace
} // namespace desktop
