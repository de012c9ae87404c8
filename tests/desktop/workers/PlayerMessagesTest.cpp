#include "desktop/workers/PlayerMessages.h"

#include "desktop/workers/WorkerChannel.h"

#include <gtest/gtest.h>

#include <sys/socket.h>

// The wire's messages: what goes in at one end comes out at the other, bounded.

namespace desktop {
namespace {

PlayerOptions otherOptions()
{
    PlayerOptions options;
    options.audioTrack = 2;
    options.subtitleTrack = 3;
    options.subtitles = false;
    options.subtitleScale = 1.5;
    options.subtitleColor = 0x123456;
    options.subtitlePosition = 50;
    options.subtitleDelay = -1500;
    options.subtitleCharset = "windows-1251";
    options.speed = 0.5;
    options.pictureSize = PictureSize::Zoomed;
    options.zoom = 4;
    options.turn = 270;
    return options;
}

TEST(PlayerMessages, Options_ComeBackAsTheyWere)
{
    EXPECT_EQ(optionsFromJson(toJson(PlayerOptions())), PlayerOptions());
    EXPECT_EQ(optionsFromJson(toJson(otherOptions())), otherOptions());
}

TEST(PlayerMessages, OptionsOutOfTheirRange_AreTheUsualOnes)
{
    PlayerOptions wrong;
    wrong.audioTrack = -1;
    wrong.subtitleScale = 9;
    wrong.subtitlePosition = 101;
    wrong.subtitleDelay = 60001;
    wrong.speed = 0;
    wrong.zoom = 100;
    wrong.turn = 45;
    wrong.subtitleColor = 0x1000000;
    EXPECT_EQ(optionsFromJson(toJson(wrong)), PlayerOptions());
    EXPECT_EQ(optionsFromJson(Json::Value(Json::objectValue)), PlayerOptions());
}

MediaFacts fullFacts()
{
    MediaFacts facts;
    facts.duration = 12.5;
    facts.title = "Title";
    facts.artist = "Artist";
    facts.album = "Album";
    facts.date = "2024";
    facts.video = {"hevc", "Main 10", "5.1", 3840, 2160, 23.976, true};
    facts.audio = {"eac3", "Profile", "1", 6, 48000, 640000};
    facts.subtitle = "ass";
    facts.audioTracks = {{1, "One", "eng", "eac3", false}, {2, "Two", "ger", "aac", false}};
    facts.subtitleTracks = {{1, "file.srt", "fre", "subrip", true}};
    facts.audioTrack = 2;
    facts.subtitleTrack = 1;
    facts.audioUnsupported = true;
    facts.videoUnsupported = true;
    return facts;
}

template <typename Told>
Told sent(Told told)
{
    const std::optional<PlayerEvent> event = eventFromJson(toJson(PlayerEvent{7, std::move(told)}));
    EXPECT_TRUE(event);
    EXPECT_EQ(event->medium, 7U);
    return std::get<Told>(event->told);
}

TEST(PlayerMessages, Facts_ComeBackAsTheyWere)
{
    const MediaFacts facts = sent(PlayerLoaded{fullFacts()}).facts;
    EXPECT_EQ(toJson(PlayerEvent{7, PlayerLoaded{facts}}), toJson(PlayerEvent{7, PlayerLoaded{fullFacts()}}));
    EXPECT_EQ(facts.duration, 12.5);
    EXPECT_EQ(facts.video.level, "5.1");
    EXPECT_EQ(facts.audio.sampleRate, 48000);
    EXPECT_TRUE(facts.subtitleTracks.at(0).external);
    EXPECT_EQ(sent(PlayerFactsChanged{fullFacts()}).facts.audioTrack, 2);
}

TEST(PlayerMessages, OtherEvents_ComeBackAsTheyWere)
{
    EXPECT_EQ(sent(PlayerPosition{1.25}).seconds, 1.25);
    EXPECT_EQ(sent(PlayerSubtitleText{"one\ntwo"}).text, "one\ntwo");
    const PlayerEnded ended = sent(PlayerEnded{PlayerEnded::Reason::ReadFailed, "why", 3.5});
    EXPECT_EQ(ended.reason, PlayerEnded::Reason::ReadFailed);
    EXPECT_EQ(ended.text, "why");
    EXPECT_EQ(ended.position, 3.5);
    EXPECT_EQ(sent(PlayerEnded{PlayerEnded::Reason::Incomplete, "", 0}).reason, PlayerEnded::Reason::Incomplete);
    EXPECT_EQ(sent(PlayerKey{"SPACE"}).name, "SPACE");
    const PlayerSubtitlePicture picture = sent(PlayerSubtitlePicture{"", 1, 2, 3, 4});
    EXPECT_EQ(picture.x, 1);
    EXPECT_EQ(picture.height, 4);
    sent(PlayerAtStart());
}

TEST(PlayerMessages, UnknownReason_IsTheLossOfThePlayer)
{
    Json::Value json = toJson(PlayerEvent{7, PlayerEnded{}});
    json["reason"] = 77;
    EXPECT_EQ(std::get<PlayerEnded>(eventFromJson(json)->told).reason, PlayerEnded::Reason::PlayerLost);
}

TEST(PlayerMessages, FactsOfEndlessTexts_FitIntoAMessage)
{
    std::string endless;
    for (int i = 0; i < 5000; ++i) {
        endless += "\xF0\x9F\x8E\x89"; // which JSON writes as twelve characters
    }
    MediaFacts facts = fullFacts();
    facts.title = facts.artist = facts.album = facts.date = facts.subtitle = endless;
    facts.video.codec = facts.video.profile = facts.video.level = endless;
    facts.audio.codec = facts.audio.profile = facts.audio.level = endless;
    facts.audioTracks.assign(500, {1, endless, endless, endless, false});
    facts.subtitleTracks.assign(500, {1, endless, endless, endless, true});
    int ends[2] = {-1, -1};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
    const UniqueFd one(ends[0]);
    const UniqueFd other(ends[1]);
    ASSERT_TRUE(sendMessage(one.get(), toJson(PlayerEvent{7, PlayerLoaded{facts}})));
    const auto received = receiveMessage(other.get());
    ASSERT_TRUE(received);
    const auto event = eventFromJson(received->body);
    ASSERT_TRUE(event);
    EXPECT_EQ(std::get<PlayerLoaded>(event->told).facts.audioTracks.size(), 32U);
}

} // namespace
} // namespace desktop
