#include "tests/desktop/support/DemoStick.h"
#include "tests/desktop/support/Films.h"
#include "tests/desktop/support/PictureSubtitles.h"
#include "tests/desktop/support/Playing.h"
#include "tests/support/CaseName.h"

#include <gtest/gtest.h>

// Subtitles of every format, within a video and beside it.

namespace desktop {
namespace {

using testsupport::demoFile;
using testsupport::Films;
using testsupport::Picture;
using testsupport::Playing;
using namespace std::string_literals;

class PlayerSubtitles : public testing::Test {
protected:
    SubtitleFile beside(const std::string& name, const std::string& bytes, const std::string& language = "") const
    {
        return {name, language, opened(films.write(name, bytes)), UniqueFd()};
    }
    static UniqueFd opened(const std::string& file) { return UniqueFd(open(file.c_str(), O_RDONLY | O_CLOEXEC)); }

    /// A black video, paused in its second second.
    PlayerMedium film()
    {
        PlayerMedium medium = Playing::medium(
            films.make("film.mkv",
                       "-f lavfi -i color=c=black:size=320x180:rate=25:duration=5 -c:v libx264 -preset ultrafast"),
            FILE_TYPE_VIDEO);
        medium.start = 1.5;
        medium.paused = true;
        return medium;
    }
    bool becomesText(const std::string& text)
    {
        return playing.wait<PlayerSubtitleText>([&text](const PlayerSubtitleText& told) { return told.text == text; })
            .has_value();
    }
    /// Whether there is something bright in the lower part of the picture, where the upper one is empty.
    bool showsSubtitle()
    {
        const Picture picture = playing.frame();
        const auto isBright = [](unsigned char value) { return value > 150; };
        const auto middle = picture.rgb.begin() + static_cast<std::ptrdiff_t>(picture.rgb.size() / 2);
        return std::none_of(picture.rgb.begin(), middle, isBright) && std::any_of(middle, picture.rgb.end(), isBright);
    }

    Films films;
    Playing playing;
};

constexpr const char* kSrt = "1\n00:00:01,000 --> 00:00:03,000\n";

struct Form {
    const char* name; ///< of the file
    std::string content;
    std::string text;
    const char* codec;
};

const Form kForms[] = {
    {"a.srt", kSrt + "First line\nand <i>another</i>\n"s, "First line\nand another", "subrip"},
    {"dos.srt", "1\r\n00:00:01,000 --> 00:00:03,000\r\nFrom DOS\r\n", "From DOS", "subrip"},
    {"a.vtt", "WEBVTT\n\n00:01.000 --> 00:03.000\nFor the web\n", "For the web", "webvtt"},
    {"a.ass",
     "[Script Info]\nScriptType: v4.00+\n[V4+ Styles]\nFormat: Name, Fontname, Fontsize, PrimaryColour\nStyle: "
     "Default,Sans,20,&H00FFFFFF\n[Events]\nFormat: Start, End, Style, Text\nDialogue: "
     "0:00:01.00,0:00:03.00,Default,{\\b1}With style\n",
     "With style", "ass"},
    {"a.ssa",
     "[Script Info]\nScriptType: v4.00\n[V4 Styles]\nFormat: Name, Fontname, Fontsize, PrimaryColour\nStyle: "
     "Default,Sans,20,16777215\n[Events]\nFormat: Marked, Start, End, Style, Text\nDialogue: "
     "Marked=0,0:00:01.00,0:00:03.00,Default,Older style\n",
     "Older style", "ass"},
    {"a.sub", "{25}{75}By frames|of the video\n{100}{110}Later\n{115}{120}Last\n", "By frames\nof the video", "microdvd"},
    {"a.txt", "{25}{75}By frames too\n{100}{110}Later\n{115}{120}Last\n", "By frames too", "microdvd"},
    {"cyrillic.srt",
     kSrt +
         "\xCF\xF0\xE8\xE2\xE5\xF2, \xEA\xE0\xEA \xE4\xE5\xEB\xE0? \xD3 \xEC\xE5\xED\xFF \xE2\xF1\xB8 \xF5\xEE\xF0\xEE\xF8\xEE.\n"s,
     "Привет, как дела? У меня всё хорошо.", "subrip"},
    {"french.srt", kSrt + "Voil\xE0, \xE7 a \xE9t\xE9 tr\xE8s bien\n"s, "Voilà, ç a été très bien", "subrip"},
    {"marked.srt", "\xEF\xBB\xBF"s + kSrt + "Märked\n", "Märked", "subrip"},
    {"utf16.srt",
     [] {
         std::string wide = "\xFF\xFE";
         for (const char c : kSrt + "Wide\n"s) {
             wide += std::string{c, '\0'};
         }
         return wide;
     }(),
     "Wide", "subrip"},
};

class PlayerSubtitleForm : public PlayerSubtitles, public testing::WithParamInterface<Form> {};

TEST_P(PlayerSubtitleForm, FileBeside_IsToldAndShown)
{
    PlayerMedium medium = film();
    medium.subtitles.push_back(beside(GetParam().name, GetParam().content, "eng"));
    const auto facts = playing.load(std::move(medium));
    ASSERT_TRUE(facts);
    ASSERT_EQ(facts->subtitleTracks.size(), 1U);
    EXPECT_EQ(facts->subtitleTracks[0].id, 1);
    EXPECT_EQ(facts->subtitleTracks[0].title, GetParam().name);
    EXPECT_EQ(facts->subtitleTracks[0].language, "eng");
    EXPECT_EQ(facts->subtitleTracks[0].codec, GetParam().codec);
    EXPECT_TRUE(facts->subtitleTracks[0].external);
    EXPECT_EQ(facts->subtitleTrack, 1);
    EXPECT_TRUE(becomesText(GetParam().text));
    EXPECT_TRUE(testsupport::becomes([this] { return showsSubtitle(); }));
}

INSTANTIATE_TEST_SUITE_P(Forms, PlayerSubtitleForm, testing::ValuesIn(kForms),
                         [](const auto& row) { return testsupport::caseName(row.index, row.param.name); });

TEST_F(PlayerSubtitles, InTheFile_ComeAndGo)
{
    ASSERT_TRUE(playing.load(demoFile("Movies/two subtitle tracks.mkv"), FILE_TYPE_VIDEO));
    for (const char* const text : {"Second 0", "", "Second 1", "Second 2"}) {
        EXPECT_TRUE(becomesText(text)) << text;
    }
}

TEST_F(PlayerSubtitles, SwitchedOff_AreToldButNotShown)
{
    PlayerMedium medium = film();
    medium.subtitles.push_back(beside("a.srt", kSrt + "Hidden\n"s));
    medium.options.subtitles = false;
    ASSERT_TRUE(playing.load(std::move(medium)));
    EXPECT_TRUE(becomesText("Hidden"));
    EXPECT_FALSE(showsSubtitle());
    playing.player.setOptions({});
    EXPECT_TRUE(testsupport::becomes([this] { return showsSubtitle(); }));
}

TEST_F(PlayerSubtitles, CharsetOfTheUser_CountsAtOnceAndLater)
{
    PlayerMedium medium = film();
    medium.subtitles.push_back(beside("a.srt", kSrt + "\xC1\xC2\xC3\n"s));
    medium.options.subtitleCharset = "windows-1253";
    ASSERT_TRUE(playing.load(std::move(medium)));
    EXPECT_TRUE(becomesText("ΑΒΓ"));
    PlayerOptions options;
    options.subtitleCharset = "windows-1251";
    playing.player.setOptions(options);
    EXPECT_TRUE(becomesText("БВГ"));
    const std::vector<PlayerFactsChanged> changes = playing.all<PlayerFactsChanged>();
    EXPECT_TRUE(changes.empty() || changes.back().facts.subtitleTrack == 1);
}

TEST_F(PlayerSubtitles, SeveralFiles_FollowThoseInTheVideoInTheirOrder)
{
    PlayerMedium medium = Playing::medium(demoFile("Movies/two subtitle tracks.mkv"), FILE_TYPE_VIDEO);
    medium.paused = true;
    medium.start = 1.5;
    medium.subtitles.push_back(beside("b.srt", kSrt + "Beside B\n"s, "fre"));
    medium.subtitles.push_back(beside("broken.srt", "no subtitles at all"));
    medium.subtitles.push_back(beside("a.srt", kSrt + "Beside A\n"s));
    const auto facts = playing.load(std::move(medium));
    ASSERT_TRUE(facts);
    ASSERT_EQ(facts->subtitleTracks.size(), 4U);
    EXPECT_EQ(facts->subtitleTracks[2].title, "b.srt");
    EXPECT_EQ(facts->subtitleTracks[2].id, 3);
    EXPECT_EQ(facts->subtitleTracks[3].title, "a.srt");
    EXPECT_EQ(facts->subtitleTracks[3].id, 4);
    EXPECT_EQ(facts->subtitleTrack, 3);
    EXPECT_TRUE(becomesText("Beside B"));
    PlayerOptions options;
    options.subtitleTrack = 4;
    playing.player.setOptions(options);
    EXPECT_TRUE(becomesText("Beside A"));
    options.subtitleTrack = 2;
    playing.player.setOptions(options);
    EXPECT_TRUE(becomesText("Second 1"));
    EXPECT_TRUE(playing.wait<PlayerFactsChanged>(
        [](const PlayerFactsChanged& changed) { return changed.facts.subtitleTrack == 2; }));
}

/// A video of a minute with a text in the first half of each second.
class PlayerSubtitlesWhileWinding : public PlayerSubtitles, public testing::WithParamInterface<int> {
protected:
    PlayerSubtitlesWhileWinding()
    {
        std::string lines;
        for (int second = 0; second < 60; ++second) {
            const std::string at = "00:00:" + std::string(second < 10 ? "0" : "") + std::to_string(second);
            lines += std::to_string(second + 1) + "\n" + at + ",000 --> " + at + ",500\nSecond " + std::to_string(second) +
                     "\n\n";
        }
        PlayerMedium medium = Playing::medium(films.video("film.mp4", 60), FILE_TYPE_VIDEO);
        medium.start = 30.2;
        medium.subtitles.push_back(beside("film.srt", lines));
        EXPECT_TRUE(playing.load(std::move(medium)));
        EXPECT_TRUE(becomesText("Second 30"));
    }

    std::vector<std::string> texts()
    {
        std::vector<std::string> texts;
        for (const PlayerSubtitleText& told : playing.all<PlayerSubtitleText>()) {
            texts.push_back(told.text);
        }
        return texts;
    }
};

TEST_P(PlayerSubtitlesWhileWinding, ByJumps_NoneIsToldUntilItEnds)
{
    playing.player.wind(GetParam());
    const double to = 30 + GetParam() * 2;
    ASSERT_TRUE(playing.wait<PlayerPosition>([to](const PlayerPosition& told) { return std::abs(told.seconds - to) < 6; }));
    EXPECT_EQ(texts(), (std::vector<std::string>{"Second 30", ""}));
    playing.forget();
    playing.player.wind(1);
    const auto told = playing.wait<PlayerSubtitleText>();
    ASSERT_TRUE(told);
    EXPECT_EQ(told->text.rfind("Second ", 0), 0U) << told->text;
    EXPECT_NEAR(std::stod(told->text.substr(7)), to, 8);
}

INSTANTIATE_TEST_SUITE_P(Speed, PlayerSubtitlesWhileWinding, testing::Values(8, -8),
                         [](const auto& row) { return row.param > 0 ? "Forwards" : "Backwards"; });

TEST_F(PlayerSubtitles, Delay_MovesThem)
{
    PlayerMedium medium = film();
    medium.subtitles.push_back(beside("a.srt", kSrt + "Late\n"s));
    medium.options.subtitleDelay = 2000;
    ASSERT_TRUE(playing.load(std::move(medium)));
    playing.player.seek(3.5);
    EXPECT_TRUE(becomesText("Late"));
    for (const PlayerEvent& event : playing.events()) {
        if (const auto* const position = std::get_if<PlayerPosition>(&event.told)) {
            EXPECT_TRUE(position->seconds > 3 || playing.all<PlayerSubtitleText>().size() <= 1U);
        }
    }
}

TEST_F(PlayerSubtitles, Color_IsThatOfTheOptions)
{
    PlayerMedium medium = film();
    medium.subtitles.push_back(beside("a.srt", kSrt + "XXXXXXXX\n"s));
    medium.options.subtitleColor = 0x00FF00;
    medium.options.subtitleScale = 2;
    ASSERT_TRUE(playing.load(std::move(medium)));
    EXPECT_TRUE(testsupport::becomes([this] {
        const Picture picture = playing.frame();
        for (std::size_t i = 0; i + 2 < picture.rgb.size(); i += 3) {
            if (picture.rgb[i] < 60 && picture.rgb[i + 1] > 200 && picture.rgb[i + 2] < 60) {
                return true;
            }
        }
        return false;
    }));
}

TEST_F(PlayerSubtitles, Position_IsThatOfTheOptions)
{
    PlayerMedium medium = film();
    medium.subtitles.push_back(beside("a.srt", kSrt + "Above\n"s));
    medium.options.subtitlePosition = 30;
    ASSERT_TRUE(playing.load(std::move(medium)));
    EXPECT_TRUE(testsupport::becomes([this] {
        const Picture picture = playing.frame();
        const auto middle = picture.rgb.begin() + static_cast<std::ptrdiff_t>(picture.rgb.size() / 2);
        return std::any_of(picture.rgb.begin(), middle, [](unsigned char value) { return value > 150; });
    }));
}

// Pictures.

class PlayerPictures : public PlayerSubtitles {
protected:
    void expectPicture(double begin, double end)
    {
        const auto shown = playing.wait<PlayerSubtitlePicture>();
        ASSERT_TRUE(shown);
        EXPECT_EQ(shown->png.substr(1, 3), "PNG");
        EXPECT_EQ(shown->x, 30);
        EXPECT_EQ(shown->y, 100);
        EXPECT_EQ(shown->width, 40);
        EXPECT_EQ(shown->height, 20);
        const auto hidden =
            playing.wait<PlayerSubtitlePicture>([](const PlayerSubtitlePicture& told) { return told.png.empty(); });
        EXPECT_TRUE(hidden);
        double last = 0;
        bool isShown = false;
        for (const PlayerEvent& event : playing.events()) {
            if (const auto* const position = std::get_if<PlayerPosition>(&event.told)) {
                last = position->seconds;
            } else if (const auto* const picture = std::get_if<PlayerSubtitlePicture>(&event.told)) {
                EXPECT_NEAR(last, isShown ? end : begin, 1);
                isShown = !picture->png.empty();
            }
        }
    }
    void expectRed() { EXPECT_EQ(playing.frame().colourAt(50.0 / 320, 110.0 / 180), "red"); }
};

TEST_F(PlayerPictures, BlurayInTheFile_AreToldWithTheirPlaces)
{
    films.write("a.sup", testsupport::bluraySubtitle(1, 3));
    const std::string film =
        films.make("film.mkv", "-f lavfi -i color=c=black:size=320x180:rate=25:duration=5 -copyts -i " +
                                   films.path("a.sup") + " -map 0 -map 1 -c:v libx264 -preset ultrafast -c:s copy");
    const auto facts = playing.load(film, FILE_TYPE_VIDEO);
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->subtitle, "hdmv_pgs_subtitle");
    ASSERT_TRUE(playing.wait<PlayerSubtitlePicture>());
    expectRed();
    expectPicture(1, 3);
}

TEST_F(PlayerPictures, JumpIntoOne_TellsIt)
{
    films.write("a.sup", testsupport::bluraySubtitle(1, 4));
    const std::string film =
        films.make("film.mkv", "-f lavfi -i color=c=black:size=320x180:rate=25:duration=5 -copyts -i " +
                                   films.path("a.sup") + " -map 0 -map 1 -c:v libx264 -preset ultrafast -c:s copy");
    PlayerMedium medium = Playing::medium(film, FILE_TYPE_VIDEO);
    medium.paused = true;
    ASSERT_TRUE(playing.load(std::move(medium)));
    playing.player.seek(3);
    EXPECT_TRUE(playing.wait<PlayerSubtitlePicture>());
    playing.forget();
    playing.player.seek(0.2);
    EXPECT_EQ(playing.wait<PlayerSubtitlePicture>().value().png, "");
}

TEST_F(PlayerPictures, WindingByJumps_ShowsNoneUntilItEnds)
{
    films.write("a.sup", testsupport::bluraySubtitle(1, 40));
    const std::string film =
        films.make("film.mkv", "-f lavfi -i color=c=black:size=320x180:rate=25:duration=45 -copyts -i " +
                                   films.path("a.sup") + " -map 0 -map 1 -c:v libx264 -preset ultrafast -c:s copy");
    PlayerMedium medium = Playing::medium(film, FILE_TYPE_VIDEO);
    medium.start = 2;
    ASSERT_TRUE(playing.load(std::move(medium)));
    ASSERT_TRUE(playing.wait<PlayerSubtitlePicture>());
    playing.forget();
    playing.player.wind(8);
    ASSERT_TRUE(playing.wait<PlayerPosition>([](const PlayerPosition& told) { return told.seconds > 10; }));
    ASSERT_EQ(playing.all<PlayerSubtitlePicture>().size(), 1U);
    EXPECT_EQ(playing.all<PlayerSubtitlePicture>()[0].png, "");
    playing.player.wind(1);
    EXPECT_TRUE(playing.wait<PlayerSubtitlePicture>([](const PlayerSubtitlePicture& told) { return !told.png.empty(); }));
}

TEST_F(PlayerPictures, VobSubBeside_AreToldAndShown)
{
    PlayerMedium medium = Playing::medium(
        films.make("film.mkv", "-f lavfi -i color=c=black:size=320x180:rate=25:duration=4 -c:v libx264 -preset ultrafast"),
        FILE_TYPE_VIDEO);
    SubtitleFile subtitle = beside("film.idx", testsupport::vobSubIndex(), "en");
    subtitle.pictures = opened(films.write("film.sub", testsupport::vobSubPictures()));
    medium.subtitles.push_back(std::move(subtitle));
    const auto facts = playing.load(std::move(medium));
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->subtitle, "dvd_subtitle");
    ASSERT_TRUE(playing.wait<PlayerSubtitlePicture>());
    expectRed();
    expectPicture(1, 2);
}

TEST_F(PlayerPictures, IndexWithoutItsPictures_LeavesTheVideoPlaying)
{
    PlayerMedium medium = film();
    SubtitleFile subtitle = beside("film.idx", testsupport::vobSubIndex());
    subtitle.pictures = opened(films.write("film.sub", "no pictures"));
    medium.subtitles.push_back(std::move(subtitle));
    medium.subtitles.push_back(beside("other.idx", testsupport::vobSubIndex()));
    EXPECT_TRUE(playing.load(std::move(medium)));
}

} // namespace
} // namespace desktop
