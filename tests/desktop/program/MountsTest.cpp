#include "tests/desktop/support/Computer.h"
#include "tests/desktop/support/DemoStick.h"
#include "tests/desktop/support/OwnMounts.h"
#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include "platform/SocMwTypes.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using testsupport::changeRequest;
using testsupport::Computer;
using testsupport::Program;
using testsupport::Shell;

constexpr const char* kUuid = "5b1f0c3e-2d44-4f7a-8c19-73e0a6d2b851";

/// A computer without sticks, and one stick to put in.
class MountsTest : public testing::Test {
protected:
    MountsTest()
    {
        folder.makeDirectory("content");
        folder.makeFile("content/a.jpg");
        std::filesystem::copy(testsupport::demoFile("Movies/counter.mp4"), folder.path("content/film.mp4"));
        testsupport::makeExt4Image(folder.path("image"), "HOLIDAY", kUuid, folder.path("content"));
        m_refusal =
            computer.works() ? computer.run("mount -t tmpfs none /mnt && mkdir /mnt/usb") : "no mounts for this user";
    }
    // The mount keeps the loop device.
    ~MountsTest() override { computer.run("umount -l /mnt/usb"); }

    bool putIn()
    {
        if (m_refusal.empty()) {
            m_refusal = computer.run("mount -o loop,ro " + folder.path("image") + " /mnt/usb");
        }
        return m_refusal.empty();
    }

    static bool isNews(const Json::Value& line) { return line.isMember("notification") || line.isMember("desktop"); }

    testsupport::TemporaryDirectory folder;
    Computer computer;
    std::string m_refusal;
};

TEST_F(MountsTest, StickMountedLater_SwitchesTheScreenOnAndIsListed)
{
    Shell shell({"--auto"}, computer.on());
    shell.sendLine(R"({"desktop":"screen","off":true})");
    EXPECT_EQ(shell.next(isNews)["off"], true);
    if (!putIn()) {
        GTEST_SKIP() << m_refusal;
    }
    EXPECT_EQ(shell.next(isNews)["off"], false);
    EXPECT_EQ(shell.next(isNews)["notification"], "storagemedia.usb.plugin");
    const Json::Value device = shell.notification("storagemedia.usb.mount")["body"]["devlist"][0];
    EXPECT_EQ(device["path"], "/mnt/usb");
    EXPECT_EQ(device["name"], "HOLIDAY");
    shell.send("storagemedia.folder.chgdir", changeRequest("/mnt/usb"));
    EXPECT_EQ(shell.notification("storagemedia.folder.chgdir.complete")["body"]["filelst"][1]["name"], "a.jpg");
    EXPECT_EQ(shell.program.wait(), 0);
}

// The file that is open still could be read.
TEST_F(MountsTest, StickUnmountedLazilyWhileAFilmPlays_FailsIt)
{
    if (!putIn()) {
        GTEST_SKIP() << m_refusal;
    }
    Shell shell({"--auto"}, computer.on());
    shell.notification("storagemedia.usb.mount");
    Json::Value film;
    film["dirpath"] = "/mnt/usb";
    film["index"] = 0;
    film["type"] = FILE_TYPE_VIDEO;
    film["playall"] = false;
    shell.send("storagemedia.media.playfile", film);
    ASSERT_EQ(shell.notification("storagemedia.media.loadsuccess")["body"]["path"], "/mnt/usb/film.mp4");
    EXPECT_EQ(computer.run("umount -l /mnt/usb"), "");
    EXPECT_EQ(shell.notification("storagemedia.media.playfailed")["body"], Json::Value());
    shell.send("storagemedia.media.stopfile", film);
    EXPECT_EQ(shell.reply()["result"], false); // nothing plays any more
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST_F(MountsTest, StickUnmountedLazily_IsPulledAndRefused)
{
    if (!putIn()) {
        GTEST_SKIP() << m_refusal;
    }
    Shell shell({"--auto"}, computer.on());
    shell.notification("storagemedia.usb.mount");
    EXPECT_EQ(computer.run("exec 3</mnt/usb/a.jpg; umount -l /mnt/usb"), "");
    EXPECT_EQ(shell.notification("storagemedia.usb.unmount")["body"]["path"], "/mnt/usb");
    EXPECT_EQ(shell.notification("storagemedia.usb.mount")["body"]["devcount"], 0);
    shell.send("storagemedia.folder.chgdir", changeRequest("/mnt/usb"));
    EXPECT_FALSE(shell.reply()["result"].asBool());
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST_F(MountsTest, AutoWithoutAnyStick_IsTold)
{
    if (!m_refusal.empty()) {
        GTEST_SKIP() << m_refusal;
    }
    std::vector<std::string> command = computer.on();
    command.insert(command.end(),
                   {"sh", "-c", "mount -t tmpfs none /media; mount -t tmpfs none /run; exec " DESKTOP_TV " --auto browse"});
    Program program(command);
    EXPECT_EQ(program.wait(), 1);
    EXPECT_EQ(program.errors(), "desktop-tv: no stick: Nothing is mounted under /media, /run/media or /mnt\n");
}

TEST_F(MountsTest, PlaceForAStickOnAPrivateMount_IsWarnedOfUnlessItIsThere)
{
    if (!m_refusal.empty()) {
        GTEST_SKIP() << m_refusal;
    }
    const auto warningFor = [this](const std::string& setUp, const std::string& arguments) {
        std::vector<std::string> command = computer.on();
        command.insert(command.end(), {"unshare", "-m", "--propagation", "unchanged", "sh", "-c",
                                       setUp + "; exec " DESKTOP_TV " --log-level off " + arguments + " shell"});
        Program program(command);
        EXPECT_EQ(program.wait(), 0) << arguments;
        return program.errors();
    };
    const std::string begin = "desktop-tv: what is mounted from now on will not be seen in ";
    const std::string end = ": the mounts there are private (mount --make-rshared / shares them)\n";
    const std::string makePrivate = "mount --make-rprivate /";
    EXPECT_EQ(warningFor(makePrivate, "--stick /mnt/usb"), begin + "/mnt/usb" + end);
    EXPECT_EQ(warningFor(makePrivate, "--stick /mnt/missing"), begin + "/mnt/missing" + end);
    EXPECT_EQ(warningFor(makePrivate, "--stick " + folder.path("content")), "");
    EXPECT_EQ(warningFor(makePrivate + "; mount -t tmpfs none /mnt/usb", "--stick /mnt/usb"), "");
    EXPECT_EQ(warningFor(":", "--stick /mnt/usb"), "");
    EXPECT_EQ(warningFor("mount --make-rslave /", "--stick /mnt/usb"), "");
}

TEST_F(MountsTest, WithoutAuto_OnlyGivenFoldersAreSticks)
{
    if (!putIn()) {
        GTEST_SKIP() << m_refusal;
    }
    Shell shell({"--stick", folder.path("content")}, computer.on());
    const Json::Value list = shell.notification("storagemedia.usb.mount")["body"]["devlist"];
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0]["path"], folder.path("content"));
    EXPECT_EQ(shell.program.wait(), 0);
}

} // namespace
