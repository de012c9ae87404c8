#include "tests/desktop/support/DemoStick.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using testsupport::changeRequest;
using testsupport::demoFile;
using testsupport::Shell;

constexpr const char* kStart = "storagemedia.start.thumbnail";

Json::Value thumbnailRequest(const std::string& reqId)
{
    Json::Value request;
    request["channelId"] = "pictures";
    request["reqId"] = reqId;
    request["type"] = 0;
    return request;
}

class ThumbnailCommandTest : public testing::Test {
protected:
    ThumbnailCommandTest()
    {
        shell.send("storagemedia.folder.chgdir", changeRequest(demoFile("Photos/2024")));
        shell.notification("storagemedia.folder.chgdir.complete");
    }

    Shell shell{{"--stick", demoFile("")}};
};

TEST_F(ThumbnailCommandTest, RangeOfTheCurrentFolder_ComesPictureByPicture)
{
    Json::Value request = thumbnailRequest("range");
    request["count"] = 6; // the folder has four
    shell.send(kStart, request);
    EXPECT_TRUE(shell.reply()["result"].asBool());
    for (int i = 0; i < 6; ++i) {
        const Json::Value published = shell.notification(i < 5 ? "startThumbnail.fragment" : "startThumbnail.complete");
        EXPECT_EQ(published["source"], "pictures");
        EXPECT_EQ(published["body"]["reqId"], "range");
        EXPECT_EQ(published["body"]["index"], i);
        EXPECT_EQ(published["body"]["path"].asString().empty(), i >= 4);
        EXPECT_EQ(published["body"].isMember("filepath"), i < 4);
    }
    EXPECT_EQ(shell.program.wait(), 0);
}

TEST_F(ThumbnailCommandTest, SingleFile_IsCompleteWithItsPicture)
{
    Json::Value request = thumbnailRequest("single");
    request["path"] = demoFile("Movies/counter.mp4");
    shell.send(kStart, request);
    const Json::Value published = shell.notification("startThumbnail.complete");
    EXPECT_EQ(published["body"]["path"], request["path"]);
    EXPECT_EQ(published["body"]["filepath"], "/mtd_rwarea/apdat/Thumbnaildata/Sing/0.jpg");
    EXPECT_EQ(shell.program.wait(), 0);
    EXPECT_FALSE(std::filesystem::exists("/mtd_rwarea")); // the program's own, not the computer's
}

TEST(ThumbnailCommand, RangeWithoutAFolder_IsRefused)
{
    Shell fresh({"--stick", demoFile("")});
    fresh.send(kStart, thumbnailRequest("none"));
    EXPECT_FALSE(fresh.reply()["result"].asBool());
    EXPECT_EQ(fresh.program.wait(), 0);
}

} // namespace
