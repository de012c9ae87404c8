#include "desktop/workers/WorkerChannel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kTextKeys[] = {"title", "album", "year", "taken"};

/// What arrives as the title when a worker answers @p title.
std::string titleOf(const Json::Value& title)
{
    Json::Value json(Json::objectValue);
    json["title"] = title;
    return metadataFromJson(json).title;
}

TEST(WorkerChannelTest, Metadata_ArrivesAsItIs)
{
    MediaMetadata sent;
    sent.title = "Caf\u00e9";
    sent.artists = {"A", "B"};
    sent.album = "Album";
    sent.genres = {"Rock"};
    sent.year = "1999";
    sent.taken = "2020-01-02 03:04:05";
    sent.duration = 185;
    sent.width = 1920;
    sent.height = 1080;
    sent.rotation = 270;
    sent.panorama = true;
    const MediaMetadata arrived = metadataFromJson(toJson(sent));
    EXPECT_EQ(toJson(arrived), toJson(sent));
    EXPECT_EQ(arrived.artists, sent.artists);
    EXPECT_EQ(arrived.rotation, 270);
}

TEST(WorkerChannelTest, TextsThatAreNoUtf8_AreLeftEmpty)
{
    Json::Value json(Json::objectValue);
    for (const char* key : kTextKeys) {
        json[key] = "caf\xE9";
    }
    json["artists"].append("\xFF");
    json["artists"].append("B");
    const MediaMetadata metadata = metadataFromJson(json);
    EXPECT_EQ(metadata.title + metadata.album + metadata.year + metadata.taken, "");
    EXPECT_THAT(metadata.artists, ElementsAre("B"));
    EXPECT_EQ(metadata.error, "");
}

TEST(WorkerChannelTest, ControlCharacters_BecomeBlanks)
{
    EXPECT_EQ(titleOf("a\nb\r\nc\x1B[2Jd\x7F"
                      "e\t"),
              "a b  c [2Jd e");
    EXPECT_EQ(titleOf(std::string("a\0b", 3)), "a b");
}

TEST(WorkerChannelTest, LongTexts_AreCutBetweenCharacters)
{
    EXPECT_EQ(titleOf(std::string(60000, 'x')), std::string(1000, 'x'));
    EXPECT_EQ(titleOf(std::string(999, 'x') + "\u00e9"), std::string(999, 'x'));
    EXPECT_EQ(titleOf(std::string(998, 'x') + "\u00e9"), std::string(998, 'x') + "\u00e9");
}

TEST(WorkerChannelTest, Lists_HaveFewValuesAndNoneEmpty)
{
    Json::Value json(Json::objectValue);
    for (const char* empty : {"", " \n "}) {
        json["genres"].append(empty);
    }
    json["genres"].append(5);
    for (int i = 0; i < 40; ++i) {
        json["genres"].append("genre " + std::to_string(i));
    }
    json["artists"] = "no list";
    const MediaMetadata metadata = metadataFromJson(json);
    ASSERT_EQ(metadata.genres.size(), 30U);
    EXPECT_EQ(metadata.genres.front(), "genre 0");
    EXPECT_EQ(metadata.genres.back(), "genre 29");
    EXPECT_THAT(metadata.artists, IsEmpty());
}

TEST(WorkerChannelTest, NumbersThatCannotBe_AreZero)
{
    for (const Json::Value& number :
         {Json::Value(-1), Json::Value(1.5), Json::Value(Json::Int64(1) << 40), Json::Value("5")}) {
        Json::Value json(Json::objectValue);
        for (const char* key : {"duration", "width", "height", "rotation"}) {
            json[key] = number;
        }
        const MediaMetadata metadata = metadataFromJson(json);
        EXPECT_THAT((std::vector<int>{metadata.duration, metadata.width, metadata.height, metadata.rotation}),
                    ElementsAre(0, 0, 0, 0))
            << number;
    }
}

TEST(WorkerChannelTest, Rotation_IsAQuarterTurn)
{
    for (const auto& [sent, arrived] :
         std::vector<std::pair<int, int>>{{90, 90}, {180, 180}, {270, 270}, {45, 0}, {360, 0}}) {
        Json::Value json(Json::objectValue);
        json["rotation"] = sent;
        EXPECT_EQ(metadataFromJson(json).rotation, arrived) << sent;
    }
}

TEST(WorkerChannelTest, ErrorThatCannotBeShown_StaysAnError)
{
    for (const char* error : {"\xFF", "\n"}) {
        Json::Value json(Json::objectValue);
        json["error"] = error;
        EXPECT_EQ(metadataFromJson(json).error, "The file cannot be read.");
    }
}

} // namespace
} // namespace desktop
