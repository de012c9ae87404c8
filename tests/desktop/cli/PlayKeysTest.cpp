#include "desktop/cli/PlayKeys.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <sstream>

namespace desktop {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class PlayKeysTest : public testing::Test {
protected:
    PlayKeys keysFor(FileType kind)
    {
        return {kind, [this](const std::string& command, const Json::Value& request, Json::Value& reply) {
                    Json::StreamWriterBuilder builder;
                    builder["indentation"] = "";
                    const std::string text = Json::writeString(builder, request);
                    sent.push_back(command.substr(std::string("storagemedia.").size()) + " " + text);
                    std::istringstream(options) >> reply;
                    return refused.count(command) == 0;
                }};
    }

    std::vector<std::string> sent; ///< commands without their common beginning, with their requests
    std::set<std::string> refused;
    std::string options = "{}"; ///< what the plugin replies
};

TEST_F(PlayKeysTest, Keys_AreThoseOfMpvUsers)
{
    EXPECT_EQ(playActionOf("SPACE", FILE_TYPE_VIDEO), PlayAction::PlayOrPause);
    EXPECT_EQ(playActionOf("LEFT", FILE_TYPE_MUSIC), PlayAction::Rewind);
    EXPECT_EQ(playActionOf("LEFT", FILE_TYPE_PHOTO), PlayAction::Previous);
    EXPECT_EQ(playActionOf(">", FILE_TYPE_VIDEO), PlayAction::Next);
    EXPECT_EQ(playActionOf("SHARP", FILE_TYPE_VIDEO), playActionOf("#", FILE_TYPE_VIDEO));
    EXPECT_EQ(playActionOf("r", FILE_TYPE_PHOTO), PlayAction::TurnRight);
    EXPECT_EQ(playActionOf("r", FILE_TYPE_VIDEO), std::nullopt);
    EXPECT_EQ(playActionOf("j", FILE_TYPE_PHOTO), std::nullopt);
    EXPECT_EQ(playActionOf("CLOSE_WIN", FILE_TYPE_PHOTO), PlayAction::Quit);
    EXPECT_EQ(playActionOf("MBTN_LEFT", FILE_TYPE_VIDEO), std::nullopt);
}

TEST_F(PlayKeysTest, Help_NamesTheKeysOfTheKind)
{
    EXPECT_THAT(playKeysHelp(FILE_TYPE_VIDEO), HasSubstr("# sound"));
    EXPECT_THAT(playKeysHelp(FILE_TYPE_PHOTO), HasSubstr("r turn right"));
}

TEST_F(PlayKeysTest, Buttons_CarryTheKind)
{
    PlayKeys keys = keysFor(FILE_TYPE_MUSIC);
    for (const PlayAction action : {PlayAction::Rewind, PlayAction::FastForward, PlayAction::Previous, PlayAction::Next}) {
        EXPECT_EQ(keys.press(action, 1), "");
    }
    EXPECT_THAT(sent, ElementsAre(R"(button.fastrewind {"type":5})", R"(button.fastforward {"type":5})",
                                  R"(button.prev {"type":5})", R"(button.next {"type":5})"));
}

TEST_F(PlayKeysTest, Space_PausesWhatPlaysAndPlaysWhatDoesNot)
{
    PlayKeys keys = keysFor(FILE_TYPE_VIDEO);
    for (const int speed : {1, 0, 4, -2}) {
        EXPECT_EQ(keys.press(PlayAction::PlayOrPause, speed), "");
    }
    EXPECT_THAT(sent,
                ElementsAre(R"(button.playOrpause {"play":false,"type":4})", R"(button.playOrpause {"play":true,"type":4})",
                            R"(button.playOrpause {"play":true,"type":4})", R"(button.playOrpause {"play":true,"type":4})"));
}

TEST_F(PlayKeysTest, Speed_ChangesInStepsWithinItsRange)
{
    struct Row {
        int before;
        PlayAction action;
        int after;
    };
    constexpr Row kRows[] = {{100, PlayAction::Faster, 110},
                             {100, PlayAction::Slower, 90},
                             {195, PlayAction::Faster, 200},
                             {50, PlayAction::Slower, 50}};
    PlayKeys keys = keysFor(FILE_TYPE_VIDEO);
    for (const Row& row : kRows) {
        options = R"({"options":[{"option":"playback","suboption":"speed","minimum":50,"maximum":200,"value":)" +
                  std::to_string(row.before) + "}]}";
        EXPECT_EQ(keys.press(row.action, 1), "Speed " + std::to_string(row.after) + " %");
        EXPECT_EQ(sent.back(),
                  R"(option.set {"option":"playback","suboption":"speed","value":)" + std::to_string(row.after) + "}");
    }
}

TEST_F(PlayKeysTest, Sound_GoesRoundItsTracks)
{
    PlayKeys keys = keysFor(FILE_TYPE_VIDEO);
    const auto told = [](int current) {
        return R"({"options":[{"option":"subtitle","suboption":"track"},{"option":"audio","suboption":"track","value":0,"current":)" +
               std::to_string(current) +
               R"(,"choices":[{"value":1,"name":"","language":"eng"},{"value":2,"name":"","language":""},)"
               R"({"value":3,"name":"\u001b[2J","language":"ger"}]}]})";
    };
    options = told(1);
    EXPECT_EQ(keys.press(PlayAction::NextSound, 1), "Sound: track 2");
    EXPECT_EQ(sent.back(), R"(option.set {"option":"audio","suboption":"track","value":2})");
    options = told(2);
    EXPECT_EQ(keys.press(PlayAction::NextSound, 1), "Sound: ger, <U+001B>[2J");
    options = told(3);
    EXPECT_EQ(keys.press(PlayAction::NextSound, 1), "Sound: eng");
    options.replace(options.find("\"value\":0"), 9, "\"value\":1"); // has been chosen, but does not play yet
    EXPECT_EQ(keys.press(PlayAction::NextSound, 1), "Sound: track 2");
    options = "{}";
    EXPECT_EQ(keys.press(PlayAction::NextSound, 1), "There is no other sound");
}

TEST_F(PlayKeysTest, Subtitles_GoRoundTheirTracksAndOff)
{
    PlayKeys keys = keysFor(FILE_TYPE_VIDEO);
    const auto told = [](const char* shown, int current) {
        return std::string(R"({"subtitles":)") + shown +
               R"(,"options":[{"option":"subtitle","suboption":"track","value":0,"current":)" + std::to_string(current) +
               R"(,"choices":[{"value":1,"name":"","language":"eng"},{"value":2,"name":"a.srt","language":""}]}]})";
    };
    options = told("true", 1);
    EXPECT_EQ(keys.press(PlayAction::NextSubtitle, 1), "Subtitles: a.srt");
    EXPECT_THAT(sent,
                ElementsAre("folder.getcuroptions {}", R"(option.set {"option":"subtitle","suboption":"track","value":2})",
                            R"(substitle.switch {"value":1})"));
    options = told("true", 2);
    EXPECT_TRUE(keys.subtitlesAreShown());
    EXPECT_EQ(keys.press(PlayAction::NextSubtitle, 1), "Subtitles: off");
    EXPECT_FALSE(keys.subtitlesAreShown());
    EXPECT_EQ(sent.back(), R"(substitle.switch {"value":0})");
    options = told("false", 2);
    EXPECT_EQ(keys.press(PlayAction::NextSubtitle, 1), "Subtitles: eng");
    EXPECT_TRUE(keys.subtitlesAreShown());
    EXPECT_EQ(keys.press(PlayAction::PreviousSubtitle, 1), "Subtitles: a.srt");
    options = told("true", 1);
    EXPECT_EQ(keys.press(PlayAction::PreviousSubtitle, 1), "Subtitles: off");
    options = "{}";
    EXPECT_EQ(keys.press(PlayAction::NextSubtitle, 1), "There are no subtitles");
}

TEST_F(PlayKeysTest, WhatIsRefused_IsTold)
{
    PlayKeys keys = keysFor(FILE_TYPE_VIDEO);
    refused = {"storagemedia.button.next", "storagemedia.button.fastrewind", "storagemedia.option.set"};
    EXPECT_EQ(keys.press(PlayAction::Next, 1), "There is none after it");
    EXPECT_EQ(keys.press(PlayAction::Rewind, 1), "It cannot be wound back now");
    EXPECT_EQ(keys.press(PlayAction::Faster, 1), "Its speed cannot be changed");
}

TEST_F(PlayKeysTest, TurningRight_IsForThePhotoThatIsShown)
{
    EXPECT_EQ(keysFor(FILE_TYPE_PHOTO).press(PlayAction::TurnRight, 1), "");
    EXPECT_THAT(sent, ElementsAre(R"(photo.rotate {"rotate":true})"));
}

} // namespace
} // namespace desktop
