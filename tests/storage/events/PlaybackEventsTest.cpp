#include "support/CaseName.h"
#include "support/Scenario.h"
#include "support/TypedJson.h"

#include "platform/SocMwEvents.h"

#include <gtest/gtest.h>

namespace {

using testsupport::caseName;
using testsupport::parsed;

Happening frame(int id)
{
    return info("nEvt : " + std::to_string(id));
}

class PlayingState : public testing::TestWithParam<int> {};

TEST_P(PlayingState, Changed_PublishesSpeedAndDynamicRange)
{
    for (const auto& [speed, hdr] : std::map<int, bool>{{2, true}, {-8, false}}) {
        play_state_s state = {speed, hdr};
        Scenario(GetParam(), &state)
            .happens(
                {frame(GetParam()),
                 dbg("SOCMW_MM_EVENT_PLAYING_STATE: speed:" + std::to_string(speed) + ", HDR:" + (hdr ? "1" : "0")),
                 broadcast("storagemedia.media.curplayspeed", std::string(R"({"hdrvideo":)") + (hdr ? "true" : "false") +
                                                                  R"(,"speed":)" + std::to_string(speed) + "}")})
            .check();
    }
}

INSTANTIATE_TEST_SUITE_P(Ids, PlayingState, testing::Values(13, 23),
                         [](const auto& row) { return "Id" + std::to_string(row.param); });

struct Movie {
    std::string info;
    std::vector<std::string> unknown;
    std::string line;
};

class MovieInfo : public testing::TestWithParam<std::tuple<int, Movie>> {};

TEST_P(MovieInfo, Updated_LogsWhatItCanReadAndPublishesTheObjectUnchanged)
{
    const auto& [id, movie] = GetParam();
    Json::Value object = parsed(movie.info);
    Journal journal = {frame(id)};
    const auto reading = [&journal, &movie = movie](const Happening& read, const std::string& key) {
        journal.push_back(read);
        if (std::find(movie.unknown.begin(), movie.unknown.end(), key) != movie.unknown.end()) {
            journal.push_back(dbg("unknown " + key));
        }
    };
    reading(readUInt("duration"), "duration");
    reading(readString("title"), "title");
    reading(readString("path"), "path");
    reading(readString("artist"), "artist");
    journal.insert(journal.end(), {dbg(movie.line), broadcast("storagemedia.media.infoupdate", testsupport::typed(object))});
    Scenario(id, &object).happens(journal).check();
}

INSTANTIATE_TEST_SUITE_P(
    Ids, MovieInfo,
    testing::Combine(
        testing::Values(21, 26),
        testing::Values(
            Movie{R"({"artist":"A","duration":61,"extra":[1],"path":"/p","title":"T"})",
                  {},
                  "Title:T\r\n\tpath:/p\r\n\tduration:61"},
            Movie{R"({"duration":4294967295,"path":"/p","title":"T"})", {"artist"}, "Title:T\r\n\tpath:/p\r\n\tduration:-1"},
            Movie{R"({"artist":"A","path":"/p","title":"T"})", {"duration"}, "Title:T\r\n\tpath:/p\r\n\tduration:0"},
            Movie{R"({"artist":"A","duration":1,"path":"/p"})", {"title"}, "Title:\r\n\tpath:/p\r\n\tduration:1"},
            Movie{R"({"artist":"A","duration":1,"title":"T"})", {"path"}, "Title:T\r\n\tpath:\r\n\tduration:1"},
            Movie{R"({"artist":1,"duration":-1,"path":2,"title":3})",
                  {"duration", "title", "path", "artist"},
                  "Title:\r\n\tpath:\r\n\tduration:0"},
            Movie{"{}", {"duration", "title", "path", "artist"}, "Title:\r\n\tpath:\r\n\tduration:0"})),
    [](const auto& row) {
        return caseName(row.index, "Id" + std::to_string(std::get<0>(row.param)) + " " + std::get<1>(row.param).info);
    });

TEST(MusicStopped, Index_IsPublishedUnsigned)
{
    for (const auto& [index, publishedIndex] : std::map<int, std::string>{{3, "3"}, {-1, "4294967295"}}) {
        music_stop_info_s stopped = {index, "/m/a.mp3"};
        Scenario(27, &stopped)
            .happens({frame(27),
                      dbg("SOCMW_MM_EVENT_MUSIC_STOP_SUCCESS_STATE: curIdx:" + std::to_string(index) + ", Path:/m/a.mp3"),
                      broadcast("storagemedia.music.stopsucc", R"({"index":)" + publishedIndex + R"(u,"path":"/m/a.mp3"})")})
            .check();
    }
}

TEST(PhotoPlayEnded, Index_IsPublishedUnsigned)
{
    for (std::uint32_t index : {0U, 5U, 4294967295U}) {
        Scenario(34, &index)
            .happens({frame(34), broadcast("storagemedia.photo.playend", R"({"index":)" + std::to_string(index) + "u}")})
            .check();
    }
}

TEST(PlaybackProgress, Time_IsPublishedUnsigned)
{
    for (std::uint32_t time : {0U, 61U, 4294967295U}) {
        Scenario(37, &time)
            .happens({frame(37), broadcast("storagemedia.media.process", R"({"time":)" + std::to_string(time) + "u}")})
            .check();
    }
}

TEST(SubtitleChanged, Text_IsPublishedAndThePictureLeftAlone)
{
    char picture[] = "picture";
    subtitle_info_s subtitle = {0, "Hello", {}};
    subtitle.image.picture = picture;
    Scenario(38, &subtitle)
        .happens({frame(38), dbg("subTitle type:0"), dbg("subTitle: Hello"),
                  broadcast("storagemedia.media.titleinfo", R"({"strtitle":"Hello","type":0})")})
        .check();
    EXPECT_EQ(subtitle.image.picture, picture);
}

TEST(SubtitleChanged, Picture_IsPublishedAndForgottenButNotReleased)
{
    for (const int type : {1, 2, -1}) {
        char picture[] = "picture"; // freeing it would abort
        subtitle_info_s subtitle;
        subtitle.type = type;
        subtitle.text = "not read";
        const auto fill = [&subtitle, &picture](FakePlatform&, ExposedPlugin&) {
            subtitle.image = {1, 2, 3, 4, 4000000000U, 99, -7, picture};
        };
        Scenario(38, &subtitle)
            .given(fill)
            .happens(
                {frame(38), dbg("subTitle type:" + std::to_string(type)), dbg("size:-294967296"),
                 broadcast("storagemedia.media.titleinfo",
                           R"({"format":-7,"height":4u,"pictitle":"picture","size":4000000000u,"startH":1u,"startV":2u,)"
                           R"("type":)" +
                               std::to_string(type) + R"(,"width":3u})")})
            .afterwards([&] {
                EXPECT_EQ(subtitle.image.picture, nullptr);
                EXPECT_STREQ(picture, "picture");
                EXPECT_EQ(subtitle.image.reserved, 99U);
            })
            .check();
    }
}

TEST(SubtitleChanged, PictureWithoutBuffer_IsDropped)
{
    subtitle_info_s subtitle;
    subtitle.type = 1;
    Scenario(38, &subtitle).happens({frame(38), dbg("subTitle type:1"), dbg("<==============>Image is NULL!!!")}).check();
}

} // namespace
