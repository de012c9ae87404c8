#include "desktop/files/LocationOpener.h"

#include "tests/desktop/support/Waiting.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LocationOpenerTest : public testing::Test {
protected:
    LocationOpenerTest()
    {
        folder.makeDirectory("a/b");
        folder.makeFile("file");
    }

    ReadObserver observer()
    {
        ReadObserver reports;
        reports.failed = [this](const std::string& path, const std::string& reason) { failures.add(path + ": " + reason); };
        return reports;
    }

    testsupport::TemporaryDirectory folder;
    testsupport::Gathered<std::string> failures;
    const PathResolver resolver{{folder.path()}};
    const LocationOpener opener{resolver, std::make_shared<ReadReporter>(observer())};
};

TEST_F(LocationOpenerTest, Folder_IsOpenedWithItsPathAndState)
{
    const auto opened = opener.openFolder(folder.path("a") + "/");
    ASSERT_TRUE(opened);
    EXPECT_TRUE(opened->fd);
    EXPECT_EQ(opened->directory, folder.path("a"));
    EXPECT_EQ(opened->location.path(), folder.path("a"));
    EXPECT_NE(opened->stamp.inode, 0U);
    EXPECT_EQ(opened->directoryOf(opened->location.child("b")), folder.path("a/b"));
    EXPECT_EQ(opened->directoryOf(opened->location.child("caf\xE9")), folder.path("a/caf\\xE9"));
    EXPECT_THAT(failures.sofar(), IsEmpty());
}

TEST_F(LocationOpenerTest, WhatIsNoFolderOnAVolume_IsRefusedWithItsReason)
{
    for (const std::string& path : {folder.path("missing"), folder.path("file"), std::string("/etc")}) {
        EXPECT_FALSE(opener.openFolder(path)) << path;
    }
    EXPECT_THAT(failures.sofar(), ElementsAre(folder.path("missing") + ": No such file or directory",
                                              folder.path("file") + ": Not a directory", "/etc: Not on a stick"));
}

TEST_F(LocationOpenerTest, WorkThatTakesTooLong_IsReported)
{
    const auto end = std::make_shared<testsupport::Door>();
    const auto result = opener.runWithin<int>(std::chrono::milliseconds(1), "/stick/a", [end](const std::stop_token&) {
        end->wait();
        return 1;
    });
    EXPECT_FALSE(result);
    EXPECT_THAT(failures.sofar(), ElementsAre("/stick/a: The stick does not answer"));
    end->open();
}

TEST_F(LocationOpenerTest, VolumeThatHasGone_IsMissing)
{
    EXPECT_TRUE(opener.hasVolume(folder.path()));
    EXPECT_FALSE(opener.hasVolume(folder.path("a")));
    resolver.setVolumes({});
    EXPECT_FALSE(opener.hasVolume(folder.path()));
}

} // namespace
} // namespace desktop
