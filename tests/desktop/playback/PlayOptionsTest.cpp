#include "desktop/playback/PlayOptions.h"

#include "tests/desktop/support/FakePlayers.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace desktop {
namespace {

using protocol::OptionDescription;
using protocol::OptionKind;

class PlayOptionsTest : public testing::Test {
protected:
    PlayOptionsTest()
    {
        for (const auto& [name, type] : {std::pair("a.mp4", FILE_TYPE_VIDEO), std::pair("b.mp3", FILE_TYPE_MUSIC),
                                         std::pair("c.jpg", FILE_TYPE_PHOTO)}) {
            stick.makeFile(name);
            FolderFileInfo_s entry;
            entry.type = type;
            entry.path = stick.path(name);
            list->push_back(entry);
        }
    }

    void play(FileType kind)
    {
        PlayerLoaded loaded;
        loaded.facts.audioTracks = {{1, "Stereo", "eng", "aac"}, {2, "", "fra", "ac3"}};
        loaded.facts.subtitleTracks = {{1, "film.en.srt", "en", "subrip", true}};
        loaded.facts.audioTrack = 1;
        playback.play({list, kind});
        players.of(kind).tell(1, loaded);
    }

    static std::string nameOf(const OptionDescription& option)
    {
        return std::string(option.option) + "/" + option.suboption;
    }

    bool set(const OptionDescription& option, int value) { return options.set(option.option, option.suboption, value); }
    int value(const OptionDescription& option) { return options.value(option.option, option.suboption); }

    testsupport::TemporaryDirectory stick;
    std::shared_ptr<std::vector<FolderFileInfo_s>> list = std::make_shared<std::vector<FolderFileInfo_s>>();
    LocationOpener opener{PathResolver({stick.path()}), std::make_shared<ReadReporter>()};
    EventQueue queue;
    testsupport::FakePlayers players;
    Playback playback{opener, queue, std::make_shared<PlayPositions>(""), players.factory()};
    PlayOptions options{playback};
};

class EveryPlayOption : public PlayOptionsTest, public testing::WithParamInterface<OptionDescription> {};

TEST_P(EveryPlayOption, Value_BeginsWithItsInitialOne)
{
    EXPECT_EQ(value(GetParam()), GetParam().initial);
}

TEST_P(EveryPlayOption, Values_AreTakenWithinTheirBoundsAndRefusedBeyond)
{
    const OptionDescription& option = GetParam();
    if (option.kind == OptionKind::Track) {
        EXPECT_FALSE(set(option, 0)); // of nothing that plays
        return;
    }
    play(option.option == std::string("photo") ? FILE_TYPE_PHOTO : FILE_TYPE_VIDEO);
    for (int step = 0; step < 4; ++step) {
        const int wanted = option.minimum + (option.maximum - option.minimum) * step / 3;
        EXPECT_TRUE(set(option, wanted));
        EXPECT_EQ(value(option), wanted);
    }
    EXPECT_FALSE(set(option, option.minimum - 1));
    EXPECT_FALSE(set(option, option.maximum + 1));
    EXPECT_EQ(value(option), option.maximum);
}

TEST_P(EveryPlayOption, ValueForOneMedium_IsRefusedWhileNonePlaysAndForgottenWithIt)
{
    const OptionDescription& option = GetParam();
    if (option.kind == OptionKind::Track) {
        return; // which the tests of tracks look at
    }
    const FileType kind = option.option == std::string("photo") ? FILE_TYPE_PHOTO : FILE_TYPE_VIDEO;
    EXPECT_EQ(set(option, option.maximum), !option.isOfMedium);
    EXPECT_EQ(value(option), option.isOfMedium ? option.initial : option.maximum);
    play(kind);
    EXPECT_EQ(value(option), option.isOfMedium ? option.initial : option.maximum);
    EXPECT_TRUE(set(option, option.maximum));
    EXPECT_EQ(value(option), option.maximum);
    playback.stop(kind);
    EXPECT_EQ(value(option), option.isOfMedium ? option.initial : option.maximum);
    playback.play({list, kind});
    EXPECT_EQ(value(option), option.isOfMedium ? option.initial : option.maximum);
    EXPECT_EQ(set(option, option.maximum), !option.isOfMedium); // it is still being loaded
}

TEST_P(EveryPlayOption, Description_HasWhatCanBeChosen)
{
    const OptionDescription& option = GetParam();
    const Json::Value all = options.all();
    const auto found = std::find_if(all["options"].begin(), all["options"].end(), [&](const Json::Value& json) {
        return json["option"] == option.option && json["suboption"] == option.suboption;
    });
    ASSERT_NE(found, all["options"].end());
    EXPECT_EQ((*found)["value"], option.initial);
    if (option.kind == OptionKind::Range) {
        EXPECT_EQ((*found)["minimum"], option.minimum);
        EXPECT_EQ((*found)["maximum"], option.maximum);
        EXPECT_EQ((*found)["unit"], option.unit);
    } else {
        EXPECT_EQ((*found)["choices"].size(), option.choices.count);
    }
    for (const auto& choice : option.choices) {
        EXPECT_EQ((*found)["choices"][choice.value]["value"], choice.value);
        EXPECT_EQ((*found)["choices"][choice.value]["name"], choice.name);
    }
}

INSTANTIATE_TEST_SUITE_P(Table, EveryPlayOption, testing::ValuesIn(protocol::kOptions),
                         [](const auto& option) { return std::string(option.param.option) + "_" + option.param.suboption; });

TEST_F(PlayOptionsTest, Choices_ReachThePlayers)
{
    play(FILE_TYPE_PHOTO);
    EXPECT_TRUE(options.set("photo", "zoom", 250));
    EXPECT_EQ(playback.options(FILE_TYPE_PHOTO).zoom, 2.5);
    play(FILE_TYPE_VIDEO);
    EXPECT_TRUE(options.set("subtitle", "size", 2));
    EXPECT_TRUE(options.set("subtitle", "color", 1));
    EXPECT_TRUE(options.set("subtitle", "position", 80));
    EXPECT_TRUE(options.set("subtitle", "delay", -250));
    EXPECT_TRUE(options.set("subtitle", "charset", 4));
    EXPECT_TRUE(options.set("playback", "speed", 150));
    EXPECT_TRUE(options.set("video", "picsize", 2));
    options.showSubtitles(false);
    PlayerOptions expected;
    expected.subtitleScale = 1.5;
    expected.subtitleColor = 0xFFFF00;
    expected.subtitlePosition = 80;
    expected.subtitleDelay = -250;
    expected.subtitleCharset = "windows-1251";
    expected.speed = 1.5;
    expected.pictureSize = PictureSize::SixteenToNine;
    expected.subtitles = false;
    EXPECT_EQ(playback.options(FILE_TYPE_VIDEO), expected);
    EXPECT_EQ(playback.options(FILE_TYPE_MUSIC).speed, 1.5);
    EXPECT_EQ(options.all()["subtitles"], false);
}

TEST_F(PlayOptionsTest, AutomaticCharset_IsNone)
{
    EXPECT_TRUE(options.set("subtitle", "charset", 1));
    EXPECT_EQ(playback.options(FILE_TYPE_VIDEO).subtitleCharset, "UTF-8");
    EXPECT_TRUE(options.set("subtitle", "charset", 0));
    EXPECT_EQ(playback.options(FILE_TYPE_VIDEO).subtitleCharset, "");
}

TEST_F(PlayOptionsTest, UnknownNames_AreRefused)
{
    EXPECT_FALSE(options.set("subtitle", "", 1));
    EXPECT_FALSE(options.set("", "", 0));
    EXPECT_FALSE(options.set("subtitle", "Size", 1));
    EXPECT_FALSE(options.set("picsize", "video", 1));
}

TEST_F(PlayOptionsTest, Tracks_AreThoseOfWhatPlays)
{
    play(FILE_TYPE_VIDEO);
    EXPECT_FALSE(options.set("audio", "track", 3));
    EXPECT_FALSE(options.set("audio", "track", -1));
    EXPECT_TRUE(options.set("audio", "track", 2));
    EXPECT_TRUE(options.set("subtitle", "track", 1));
    EXPECT_FALSE(options.set("subtitle", "track", 2));
    EXPECT_EQ(players.video().options().back().audioTrack, 2);
    EXPECT_EQ(players.video().options().back().subtitleTrack, 1);
    const Json::Value audio = options.all()["options"][0];
    EXPECT_EQ(audio["value"], 2);
    EXPECT_EQ(audio["current"], 1); // as the player has told last
    ASSERT_EQ(audio["choices"].size(), 2U);
    EXPECT_EQ(audio["choices"][0]["name"], "Stereo");
    EXPECT_EQ(audio["choices"][1]["value"], 2);
    EXPECT_EQ(audio["choices"][1]["language"], "fra");
    EXPECT_EQ(audio["choices"][1]["codec"], "ac3");
    EXPECT_EQ(audio["choices"][1]["external"], false);
    EXPECT_EQ(options.all()["options"][1]["choices"][0]["external"], true);
    EXPECT_TRUE(options.set("audio", "track", 0));
}

TEST_F(PlayOptionsTest, TracksOfMusic_AreChosenToo)
{
    play(FILE_TYPE_MUSIC);
    EXPECT_TRUE(options.set("audio", "track", 2));
    EXPECT_EQ(players.music().options().back().audioTrack, 2);
    EXPECT_EQ(options.value("audio", "track"), 2);
    EXPECT_FALSE(options.set("subtitle", "track", 1)); // which music has none of
}

TEST_F(PlayOptionsTest, Photo_IsTurnedInQuarters)
{
    EXPECT_FALSE(options.rotatePhoto(true)); // none is shown
    play(FILE_TYPE_PHOTO);
    for (const int turn : {90, 180, 270, 0}) {
        EXPECT_TRUE(options.rotatePhoto(true));
        EXPECT_EQ(players.photo().options().back().turn, turn);
        EXPECT_EQ(options.all()["rotation"], turn);
    }
    EXPECT_TRUE(options.rotatePhoto(false));
    EXPECT_EQ(players.photo().options().back().turn, 270);
}

} // namespace
} // namespace desktop
