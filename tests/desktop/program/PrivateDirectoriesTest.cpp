#include "tests/desktop/support/Computer.h"
#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;
using testsupport::Program;
using testsupport::Shell;

constexpr const char* kOwnDirectory = "/mtd_rwarea";
constexpr const char* kNobody = "65534";

bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

std::vector<std::string> asNobody()
{
    return {"setpriv", "--reuid", kNobody, "--regid", kNobody, "--clear-groups"};
}

std::vector<std::string> join(std::vector<std::string> first, const std::vector<std::string>& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// Whether a command that needs a right of the kernel's is allowed here.
bool allowed(const std::vector<std::string>& command)
{
    return Program(command).wait() == 0;
}

/// What the computer itself has at the plugin's fixed place; must be the same after a test.
class PrivateDirectories : public testing::Test {
protected:
    ~PrivateDirectories() override { EXPECT_EQ(fs::exists(kOwnDirectory), m_before) << "the computer itself was touched"; }

    static void expectOwnDirectory(Program& program)
    {
        EXPECT_EQ(program.wait(), 0) << program.errors();
        EXPECT_EQ(program.errors(), "");
        EXPECT_TRUE(contains(program.output(), "/mtd_rwarea/apdat/Thumbnaildata/Mass\n")) << program.output();
        EXPECT_TRUE(contains(program.output(), "/mtd_rwarea/apdat/Thumbnaildata/Sing\n")) << program.output();
    }

    const std::vector<std::string> m_list = {DESKTOP_TV, "--stick", kOwnDirectory, "browse", "--recursive"};

private:
    const bool m_before = fs::exists(kOwnDirectory);
};

TEST_F(PrivateDirectories, AsTheUserOfTheTest_AreThereForThePluginAlone)
{
    if (!allowed({"unshare", geteuid() == 0 ? "-m" : "-Um", "true"})) {
        GTEST_SKIP() << "this kernel gives this user no namespace of their own";
    }
    Program program(m_list);
    expectOwnDirectory(program);
}

TEST_F(PrivateDirectories, AsAnOrdinaryUser_AreThereForThePluginAlone)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "run as an ordinary user, the test above is this one";
    }
    if (!allowed(join(asNobody(), {"unshare", "-Um", "true"})) || !allowed(join(asNobody(), {DESKTOP_TV, "commands"}))) {
        GTEST_SKIP() << "this computer gives ordinary users no namespace, or no access to the program";
    }
    Program program(join(asNobody(), m_list));
    expectOwnDirectory(program);
}

TEST_F(PrivateDirectories, KernelThatRefuses_IsToldAndNoShellCommandIsRun)
{
    if (!allowed({"unshare", "-Ur", "true"})) {
        GTEST_SKIP() << "this kernel gives this user no user namespace, in which to forbid mount namespaces";
    }
    const testsupport::TemporaryDirectory stick;
    stick.makeFile("a.jpg");
    Program program({"unshare", "-Ur", "sh", "-c",
                     "echo 0 >/proc/sys/user/max_mnt_namespaces && exec " DESKTOP_TV " --stick " + stick.path() +
                         " --log-level warning browse"});
    EXPECT_EQ(program.wait(), 0);
    EXPECT_TRUE(contains(program.errors(), "desktop-tv: no private directories, so none for thumbnails"))
        << program.errors();
    EXPECT_TRUE(contains(program.errors(), "not run on this computer: mkdir -p /mtd_rwarea/")) << program.errors();
    EXPECT_TRUE(contains(program.output(), "a.jpg")) << program.output();
}

TEST_F(PrivateDirectories, WorkingDirectory_StaysWhatItWas)
{
    const testsupport::TemporaryDirectory folder;
    folder.makeDirectory("stick");
    folder.makeFile("stick/a.jpg");
    Program program({"sh", "-c", "cd " + folder.path() + " && exec " DESKTOP_TV " --stick stick browse"});
    EXPECT_EQ(program.wait(), 0) << program.errors();
    EXPECT_TRUE(contains(program.output(), folder.path("stick"))) << program.output();
    EXPECT_TRUE(contains(program.output(), "a.jpg")) << program.output();
}

TEST_F(PrivateDirectories, WhatIsMountedLater_IsSeen)
{
    const testsupport::Computer computer;
    if (!computer.works()) {
        GTEST_SKIP() << "this kernel gives this user no namespace in which to mount";
    }
    const testsupport::TemporaryDirectory stick;
    stick.makeDirectory("sub");
    Shell shell({"--stick", stick.path()}, computer.on());
    shell.notification("storagemedia.usb.mount"); // it runs
    const std::string sub = stick.path("sub");
    ASSERT_EQ(computer.run("mount -t tmpfs none " + sub + " && touch " + sub + "/later.jpg"), "");
    shell.send("storagemedia.folder.chgdir", testsupport::changeRequest(stick.path("sub")));
    const Json::Value body = shell.notification("storagemedia.folder.chgdir.complete")["body"];
    EXPECT_EQ(body["filelst"][0]["name"], "later.jpg") << body;
    EXPECT_EQ(shell.program.wait(), 0);
}

} // namespace
