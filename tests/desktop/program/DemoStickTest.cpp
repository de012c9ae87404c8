#include "tests/desktop/support/Program.h"
#include "tests/desktop/support/Waiting.h"
#include "tests/support/TemporaryDirectory.h"

#include "platform/SocMwTypes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace {

namespace fs = std::filesystem;
using testsupport::Program;

bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

TEST(DemoStick, MadeOnce_IsListedWithEveryKindOfFile)
{
    Program make({MAKE_DEMO_STICK, DEMO_STICK});
    ASSERT_EQ(make.wait(), 0) << make.errors();
    const auto made = fs::last_write_time(DEMO_STICK ".made");
    Program again({MAKE_DEMO_STICK, DEMO_STICK});
    EXPECT_EQ(again.wait(), 0) << again.errors();
    EXPECT_EQ(fs::last_write_time(DEMO_STICK ".made"), made);

    Program browse({DESKTOP_TV, "--stick", DEMO_STICK, "browse", "--recursive"});
    EXPECT_EQ(browse.wait(), 0) << browse.errors();
    for (const char* name : {"Half a minute.mp4", "Half a minute.en.srt", "Half a minute.de.srt", "two subtitle tracks.mkv",
                             "counter.srt", "02 Second.flac", "03 Third.ogg", "caf\\xE9.mp3", "All.m3u", "upright.jpg",
                             "短片.mkv", "أغنية.mp3", "🎂.jpg", "broken.mp4", "empty.mp4"}) {
        EXPECT_TRUE(contains(browse.output(), name)) << name;
    }
}

// A busy computer may read the photo too late for the first time.
TEST(DemoStick, ScreenThatOnlyChangesFolders_SeesTheAllAroundPhoto)
{
    Program make({MAKE_DEMO_STICK, DEMO_STICK});
    ASSERT_EQ(make.wait(), 0) << make.errors();
    const testsupport::TemporaryDirectory cache;
    testsupport::Shell shell({"--stick", DEMO_STICK, "--cache", cache.path()});
    EXPECT_TRUE(testsupport::becomes([&shell] {
        shell.send("storagemedia.folder.chgdir", testsupport::changeRequest(DEMO_STICK "/Photos/2024"));
        const Json::Value body = shell.notification("storagemedia.folder.chgdir.complete")["body"];
        return std::any_of(body["filelst"].begin(), body["filelst"].end(), [](const Json::Value& entry) {
            return entry["name"] == "all around.jpg" && entry["isPhoto360"] == true && entry["type"] == FILE_TYPE_PANORAMA;
        });
    }));
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST(DemoStick, FolderOfSomebodyElse_IsLeftAlone)
{
    const testsupport::TemporaryDirectory folder;
    folder.makeFile("precious.txt");
    Program make({MAKE_DEMO_STICK, folder.path()});
    EXPECT_EQ(make.wait(), 1);
    EXPECT_TRUE(contains(make.errors(), "is no demo stick")) << make.errors();
    EXPECT_TRUE(folder.has("precious.txt"));
}

} // namespace
