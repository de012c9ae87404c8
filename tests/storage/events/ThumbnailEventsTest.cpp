#include "support/CaseName.h"
#include "support/Scenario.h"

#include "platform/SocMwEvents.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

using testsupport::caseName;
struct Ready {
    int index;
    int total;
    std::string ending;
};

std::function<void(FakePlatform&, ExposedPlugin&)> request(int total)
{
    return [total](FakePlatform&, ExposedPlugin& plugin) {
        plugin.m_requestSlots[3] = {"c1", "r1", "startThumbnail", "extra"};
        plugin.m_thumbnailTotal = total;
    };
}

class ThumbnailReady : public testing::TestWithParam<std::tuple<int, Ready>> {};

TEST_P(ThumbnailReady, Picture_IsPublishedToTheRequester)
{
    const auto& [id, ready] = GetParam();
    const std::string index = std::to_string(ready.index);
    thumbnail_ready_s thumbnail = {ready.index, 1, "/m/a.jpg", "/t/a.jpg"};
    Scenario(id, &thumbnail)
        .given(request(ready.total))
        .happens({info("nEvt : " + std::to_string(id)), dbg("idx:" + index + ", Path:/m/a.jpg"),
                  published("c1", "startThumbnail" + ready.ending,
                            R"({"filepath":"/t/a.jpg","index":)" + index + R"(,"path":"/m/a.jpg","reqId":"r1"})")})
        .check();
}

INSTANTIATE_TEST_SUITE_P(
    Ids, ThumbnailReady,
    testing::Combine(testing::Values(8, 9),
                     testing::Values(Ready{0, 1, ".complete"}, Ready{0, 9, ".fragment"}, Ready{7, 9, ".fragment"},
                                     Ready{8, 9, ".complete"}, Ready{9, 9, ".complete"}, Ready{-1, 1, ".fragment"},
                                     Ready{-1, 0, ".complete"}, Ready{0, -4, ".complete"},
                                     Ready{INT_MAX, INT_MAX, ".complete"}, Ready{INT_MAX - 1, INT_MAX, ".complete"},
                                     Ready{INT_MAX - 2, INT_MAX, ".fragment"})),
    [](const auto& row) {
        const Ready ready = std::get<1>(row.param);
        return caseName(row.index, "Id" + std::to_string(std::get<0>(row.param)) + " Index" + std::to_string(ready.index) +
                                       " Of" + std::to_string(ready.total));
    });

TEST(ThumbnailReady, Failed_HasAnEmptyPathAndNoFile)
{
    thumbnail_ready_s thumbnail = {0, 0, "/m/a.jpg", "/t/a.jpg"};
    Scenario(8, &thumbnail)
        .given(request(1))
        .happens({info("nEvt : 8"), dbg("idx:0, Path:/m/a.jpg"),
                  published("c1", "startThumbnail.complete", R"({"index":0,"path":"","reqId":"r1"})")})
        .check();
}

TEST(ThumbnailReady, AnyNonZeroFlag_IsAPicture)
{
    for (const int ok : {1, -1, 256}) {
        thumbnail_ready_s thumbnail = {0, ok, "/m/a.jpg", "/t/a.jpg"};
        Scenario(8, &thumbnail)
            .given(request(1))
            .happens({info("nEvt : 8"), dbg("idx:0, Path:/m/a.jpg"),
                      published("c1", "startThumbnail.complete",
                                R"({"filepath":"/t/a.jpg","index":0,"path":"/m/a.jpg","reqId":"r1"})")})
            .check();
    }
}

TEST(ThumbnailReady, NoRequestYet_IsPublishedUnderTheBareEnding)
{
    thumbnail_ready_s thumbnail = {0, 0, "/m/a.jpg", nullptr};
    Scenario(8, &thumbnail)
        .given([](FakePlatform&, ExposedPlugin& plugin) {
            plugin.m_requestSlots[3].clear();
            plugin.m_thumbnailTotal = 0;
        })
        .happens({info("nEvt : 8"), dbg("idx:0, Path:/m/a.jpg"),
                  published("", ".complete", R"({"index":0,"path":"","reqId":""})")})
        .check();
}

TEST(ThumbnailReady, RangeOfNine_CompletesWithTheNinth)
{
    FakePlatform platform;
    ExposedPlugin plugin;
    plugin.setCallback(recordPublication);
    Json::Value request;
    request["channelId"] = "c1";
    request["reqId"] = "r1";
    request["type"] = 3;
    ASSERT_TRUE(plugin.startThumbnail(&request, nullptr));
    for (int index = 0; index < 9; ++index) {
        platform.takeJournal();
        thumbnail_ready_s thumbnail = {index, 1, "/m/a.jpg", "/t/a.jpg"};
        platform.listener(8, &thumbnail);
        const std::string name = index < 8 ? "startThumbnail.fragment" : "startThumbnail.complete";
        EXPECT_EQ(platform.takeJournal().find("<publish c1 " + name + " "), 0U);
    }
}

TEST(ThumbnailReady, RequestThatOvertakes_GetsTheRestOfTheOlder)
{
    FakePlatform platform;
    ExposedPlugin plugin;
    plugin.setCallback(recordPublication);
    Json::Value request;
    request["channelId"] = "c1";
    request["reqId"] = "r1";
    request["type"] = 3;
    ASSERT_TRUE(plugin.startThumbnail(&request, nullptr));
    request["channelId"] = "c2";
    request["reqId"] = "r2";
    request["count"] = 3;
    ASSERT_TRUE(plugin.startThumbnail(&request, nullptr));
    platform.takeJournal();
    thumbnail_ready_s thumbnail = {2, 0, "/m/a.jpg", nullptr};
    platform.listener(8, &thumbnail);
    EXPECT_EQ(platform.takeJournal(), "<publish c2 startThumbnail.complete {\"index\":2,\"path\":\"\",\"reqId\":\"r2\"}>\n");
}

} // namespace
