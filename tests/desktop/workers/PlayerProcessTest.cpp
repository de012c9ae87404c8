#include "tests/desktop/support/DemoStick.h"
#include "tests/desktop/support/Films.h"
#include "tests/desktop/support/Photos.h"
#include "tests/desktop/support/Playing.h"
#include "tests/support/CaseName.h"

#include <gtest/gtest.h>

#include <cmath>

// What plays, and how: real files, played by the real process.

namespace desktop {
namespace {

using Reason = PlayerEnded::Reason;
using testsupport::demoFile;
using testsupport::Films;
using testsupport::Picture;
using testsupport::Playing;

class PlayerProcessTest : public testing::Test {
protected:
    PlayerMedium paused(const std::string& file, FileType type = FILE_TYPE_VIDEO)
    {
        PlayerMedium medium = Playing::medium(file, type);
        medium.paused = true;
        return medium;
    }
    void expectPositionFrom(double least)
    {
        EXPECT_TRUE(playing.wait<PlayerPosition>([least](const PlayerPosition& told) { return told.seconds >= least; }))
            << least;
    }
    /// Whether the picture becomes of @p color at these parts of its sides.
    bool becomesColor(double x, double y, const std::string& color)
    {
        return testsupport::becomes([&] {
            const Picture picture = playing.frame();
            return picture.width > 0 && picture.colourAt(x, y) == color;
        });
    }

    Films films;
    Playing playing;
};

constexpr double kNear = 0.25; ///< well within a field of the picture
constexpr double kFar = 0.75;

// Videos.

TEST_F(PlayerProcessTest, Video_IsDescribedAndPlaysToItsEnd)
{
    const auto facts = playing.load(films.video("film.mp4", 2), FILE_TYPE_VIDEO);
    ASSERT_TRUE(facts);
    EXPECT_NEAR(facts->duration, 2, 0.1);
    EXPECT_EQ(facts->video.codec, "h264");
    EXPECT_EQ(facts->video.profile, "Constrained Baseline");
    EXPECT_EQ(facts->video.level, "1.2");
    EXPECT_EQ(facts->video.width, 320);
    EXPECT_EQ(facts->video.height, 180);
    EXPECT_DOUBLE_EQ(facts->video.frameRate, 25);
    EXPECT_FALSE(facts->video.hdr);
    EXPECT_EQ(facts->audio.codec, "aac");
    EXPECT_EQ(facts->audio.profile, "LC");
    EXPECT_EQ(facts->audio.channels, 1);
    EXPECT_EQ(facts->audio.sampleRate, 44100);
    EXPECT_GT(facts->audio.bitRate, 10000);
    EXPECT_EQ(facts->audioTrack, 1);
    EXPECT_EQ(facts->subtitleTrack, 0);
    const auto end = playing.end();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->reason, Reason::Finished);
    EXPECT_EQ(end->text, "");
    EXPECT_NEAR(end->position, 2, 0.2);
    const std::vector<PlayerPosition> positions = playing.all<PlayerPosition>();
    ASSERT_GE(positions.size(), 2U);
    EXPECT_LT(positions[0].seconds, 1);
    EXPECT_GE(positions[1].seconds, 1);
    EXPECT_LT(positions[1].seconds, 2);
}

TEST_F(PlayerProcessTest, Tags_AreTold)
{
    const auto facts = playing.load(demoFile("Movies/two subtitle tracks.mkv"), FILE_TYPE_VIDEO);
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->title, "Embedded subtitles");
    ASSERT_EQ(facts->subtitleTracks.size(), 2U);
    EXPECT_EQ(facts->subtitleTracks[0].language, "eng");
    EXPECT_EQ(facts->subtitleTracks[1].language, "ger");
    EXPECT_EQ(facts->subtitleTracks[0].codec, "subrip");
    EXPECT_FALSE(facts->subtitleTracks[0].external);
    EXPECT_EQ(facts->subtitle, "subrip");
}

TEST_F(PlayerProcessTest, LoadedPaused_WaitsAtItsStart)
{
    PlayerMedium medium = paused(films.video("film.mp4", 4));
    medium.start = 2;
    ASSERT_TRUE(playing.load(std::move(medium)));
    const auto position = playing.wait<PlayerPosition>();
    ASSERT_TRUE(position);
    EXPECT_NEAR(position->seconds, 2, 0.1);
    EXPECT_EQ(playing.frame().colourAt(kNear, kNear), "red");
    EXPECT_EQ(playing.all<PlayerPosition>().size(), 1U);
    playing.player.pause(false);
    EXPECT_EQ(playing.end().value().reason, Reason::Finished);
}

TEST_F(PlayerProcessTest, StartBeyondTheEnd_PlaysFromTheBeginning)
{
    PlayerMedium medium = paused(films.video("film.mp4", 1));
    medium.start = 100;
    ASSERT_TRUE(playing.load(std::move(medium)));
    EXPECT_LT(playing.wait<PlayerPosition>().value().seconds, 0.5);
}

TEST_F(PlayerProcessTest, Jump_IsToldWhilePaused)
{
    ASSERT_TRUE(playing.load(paused(films.video("film.mp4", 4))));
    playing.player.seek(2.5);
    const auto told = playing.wait<PlayerPosition>([](const PlayerPosition& position) { return position.seconds > 1; });
    ASSERT_TRUE(told);
    EXPECT_NEAR(told->seconds, 2.5, 0.1);
    playing.forget();
    playing.player.seek(2.6); // within the same second
    EXPECT_NEAR(playing.wait<PlayerPosition>().value().seconds, 2.6, 0.1);
}

TEST_F(PlayerProcessTest, Frame_ShowsTheFields)
{
    ASSERT_TRUE(playing.load(paused(films.video("film.mp4", 2))));
    const Picture picture = playing.frame();
    EXPECT_EQ(picture.colourAt(kNear, kNear), "red");
    EXPECT_EQ(picture.colourAt(kFar, kNear), "green");
    EXPECT_EQ(picture.colourAt(kNear, kFar), "blue");
    EXPECT_EQ(picture.colourAt(kFar, kFar), "white");
    EXPECT_EQ(playing.frame(640, 360).colourAt(kFar, kFar), "white");
}

TEST_F(PlayerProcessTest, FrameWithBars_HasThemBlack)
{
    ASSERT_TRUE(playing.load(paused(films.video("film.mp4", 2))));
    const Picture picture = playing.frame(320, 320);
    EXPECT_EQ(picture.rgb[0], 0);
    EXPECT_EQ(picture.rgb[1], 0);
    EXPECT_EQ(picture.rgb[2], 0);
    EXPECT_EQ(picture.colourAt(kNear, 0.35), "red");
}

TEST_F(PlayerProcessTest, FrameOfNothing_IsNone)
{
    EXPECT_EQ(playing.frame().width, 0);
    ASSERT_TRUE(playing.load(films.make("tone.wav", "-f lavfi -i sine=duration=2"), FILE_TYPE_MUSIC));
    EXPECT_EQ(playing.frame().width, 0);
    EXPECT_EQ(playing.frame(0, 100).width, 0);
    EXPECT_EQ(playing.frame(100000, 100).width, 0);
}

TEST_F(PlayerProcessTest, PhoneVideo_IsShownUpright)
{
    const std::string film = films.video("film.mp4", 1);
    const std::string turned = films.make("turned.mp4", "-i " + film + " -c copy -metadata:s:v rotate=90"); // to the left
    const auto facts = playing.load(paused(turned));
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->video.width, 180);
    EXPECT_EQ(facts->video.height, 320);
    const Picture picture = playing.frame(180, 320);
    EXPECT_EQ(picture.colourAt(kNear, kNear), "green");
    EXPECT_EQ(picture.colourAt(kFar, kNear), "white");
    EXPECT_EQ(picture.colourAt(kFar, kFar), "blue");
}

TEST_F(PlayerProcessTest, Turn_IsAppliedAndTakenBack)
{
    ASSERT_TRUE(playing.load(paused(films.video("film.mp4", 1))));
    PlayerOptions options;
    options.turn = 180;
    playing.player.setOptions(options);
    EXPECT_TRUE(becomesColor(kNear, kNear, "white"));
    options.turn = 0;
    playing.player.setOptions(options);
    EXPECT_TRUE(becomesColor(kNear, kNear, "red"));
}

struct Transfer {
    const char* name;
    bool hdr;
};

class PlayerHdr : public PlayerProcessTest, public testing::WithParamInterface<Transfer> {};

TEST_P(PlayerHdr, Transfer_IsTold)
{
    const std::string colors = " -color_primaries bt2020 -colorspace bt2020nc -color_trc " + std::string(GetParam().name);
    const auto facts = playing.load(films.video("film.mp4", 1, Films::kH264 + colors), FILE_TYPE_VIDEO);
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->video.hdr, GetParam().hdr);
}

INSTANTIATE_TEST_SUITE_P(Video, PlayerHdr,
                         testing::Values(Transfer{"smpte2084", true}, Transfer{"arib-std-b67", true},
                                         Transfer{"bt709", false}),
                         [](const auto& row) { return testsupport::caseName(row.index, row.param.name); });

struct SizeCase {
    const char* name;
    PictureSize size;
    double y;           ///< on a square screen: of a point in its middle third from the left
    const char* colour; ///< there
};

class PlayerPictureSize : public PlayerProcessTest, public testing::WithParamInterface<SizeCase> {};

TEST_P(PlayerPictureSize, Video_FillsTheScreenSo)
{
    PlayerMedium medium = paused(films.video("film.mp4", 1));
    medium.options.pictureSize = GetParam().size;
    ASSERT_TRUE(playing.load(std::move(medium)));
    const Picture picture = playing.frame(640, 640);
    EXPECT_EQ(picture.colourAt(0.45, GetParam().y), GetParam().colour);
}

// The picture is twice as large as its points, or not; black counts as "other".
INSTANTIATE_TEST_SUITE_P(Size, PlayerPictureSize,
                         testing::Values(SizeCase{"Automatic", PictureSize::Automatic, 0.19, "other"},
                                         SizeCase{"FourToThree", PictureSize::FourToThree, 0.15, "red"},
                                         SizeCase{"SixteenToNine", PictureSize::SixteenToNine, 0.19, "other"},
                                         SizeCase{"Stretched", PictureSize::Stretched, 0.05, "red"},
                                         SizeCase{"Original", PictureSize::Original, 0.3, "other"},
                                         SizeCase{"Zoomed", PictureSize::Zoomed, 0.05, "red"}),
                         [](const auto& row) { return testsupport::caseName(row.index, row.param.name); });

// Photos.

TEST_F(PlayerProcessTest, Photo_IsDescribedAndStays)
{
    const auto facts = playing.load(films.write("photo.jpg", testsupport::fourFieldsJpeg(640, 320, 6)), FILE_TYPE_PHOTO);
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->duration, 0);
    EXPECT_EQ(facts->video.codec, "mjpeg");
    EXPECT_EQ(facts->video.profile, "Baseline");
    EXPECT_EQ(facts->video.width, 320);
    EXPECT_EQ(facts->video.height, 640);
    const Picture picture = playing.frame(160, 320);
    EXPECT_EQ(picture.colourAt(kNear, kNear), "blue");
    EXPECT_EQ(picture.colourAt(kFar, kNear), "red");
    playing.player.wind(8); // which photos are not
    playing.player.seek(3);
    EXPECT_EQ(playing.frame(160, 320).colourAt(kNear, kNear), "blue");
    EXPECT_FALSE(playing.all<PlayerEnded>().size());
}

TEST_F(PlayerProcessTest, TurnedPhoto_IsTurnedBesidesItsOwnWay)
{
    PlayerMedium medium =
        Playing::medium(films.write("photo.jpg", testsupport::fourFieldsJpeg(640, 320, 6)), FILE_TYPE_PHOTO);
    medium.options.turn = 90;
    ASSERT_TRUE(playing.load(std::move(medium)));
    const Picture picture = playing.frame();
    EXPECT_EQ(picture.colourAt(kNear, kNear), "white");
    EXPECT_EQ(picture.colourAt(kFar, kNear), "blue");
    EXPECT_EQ(picture.colourAt(kNear, kFar), "green");
}

TEST_F(PlayerProcessTest, ZoomedPhoto_ShowsItsMiddle)
{
    PlayerMedium medium =
        Playing::medium(films.write("photo.jpg", testsupport::fourFieldsJpeg(640, 320, 1)), FILE_TYPE_PHOTO);
    ASSERT_TRUE(playing.load(std::move(medium)));
    EXPECT_EQ(playing.frame(320, 320).colourAt(kNear, 0.1), "other") << "a bar";
    PlayerOptions options;
    options.zoom = 4;
    playing.player.setOptions(options);
    EXPECT_TRUE(becomesColor(kNear, 0.1, "red"));
}

TEST_F(PlayerProcessTest, ProgressivePhotoOfAnotherKind_IsToldSo)
{
    const auto facts =
        playing.load(films.make("photo.png", "-f lavfi -i color=c=lime:size=64x32 -frames:v 1"), FILE_TYPE_PHOTO);
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->video.codec, "png");
    EXPECT_EQ(facts->video.width, 64);
    EXPECT_EQ(playing.frame().colourAt(0.5, 0.5), "green");
}

// Music.

TEST_F(PlayerProcessTest, Music_IsDescribedAndShowsItsCover)
{
    const auto facts = playing.load(demoFile("Music/The Sines/01 First.mp3"), FILE_TYPE_MUSIC);
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->title, "First");
    EXPECT_EQ(facts->artist, "The Sines");
    EXPECT_EQ(facts->album, "Pure Tones");
    EXPECT_EQ(facts->date, "2024");
    EXPECT_EQ(facts->audio.codec, "mp3");
    EXPECT_EQ(facts->audio.bitRate, 64000);
    EXPECT_NEAR(facts->duration, 5, 0.1);
    EXPECT_EQ(facts->video.width, 300);
    EXPECT_EQ(playing.frame(300, 300).width, 300);
    expectPositionFrom(1);
}

// Tracks.

TEST_F(PlayerProcessTest, OtherTrack_ChangesTheFacts)
{
    const std::string film =
        films.make("film.mkv", "-f lavfi -i testsrc2=size=320x180:duration=4 -f lavfi -i sine=duration=4 "
                               "-f lavfi -i sine=duration=4 -map 0 -map 1 -map 2 -c:v libx264 -preset "
                               "ultrafast -c:a:0 aac -c:a:1 flac -metadata:s:a:1 language=ger "
                               "-metadata:s:a:1 title=Kommentar");
    const auto facts = playing.load(paused(film));
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->audioTrack, 1);
    ASSERT_EQ(facts->audioTracks.size(), 2U);
    EXPECT_EQ(facts->audioTracks[1].id, 2);
    EXPECT_EQ(facts->audioTracks[1].title, "Kommentar");
    EXPECT_EQ(facts->audioTracks[1].language, "ger");
    PlayerOptions options;
    options.audioTrack = 2;
    playing.player.setOptions(options);
    const auto changed = playing.wait<PlayerFactsChanged>();
    ASSERT_TRUE(changed);
    EXPECT_EQ(changed->facts.audioTrack, 2);
    EXPECT_EQ(changed->facts.audio.codec, "flac");
}

TEST_F(PlayerProcessTest, Speed_IsThatOfTheOptions)
{
    PlayerMedium medium = Playing::medium(films.video("film.mp4", 4), FILE_TYPE_VIDEO);
    medium.options.speed = 2;
    const auto begin = std::chrono::steady_clock::now();
    ASSERT_TRUE(playing.load(std::move(medium)));
    EXPECT_EQ(playing.end().value().reason, Reason::Finished);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(3700));
}

// Winding.

class PlayerWinding : public PlayerProcessTest, public testing::WithParamInterface<int> {
protected:
    PlayerWinding()
    {
        PlayerMedium medium = Playing::medium(films.video("film.mp4", 60), FILE_TYPE_VIDEO);
        medium.start = 30;
        EXPECT_TRUE(playing.load(std::move(medium)));
        playing.wait<PlayerPosition>();
        playing.forget();
    }
};

TEST_P(PlayerWinding, Forwards_ReachesTheEnd)
{
    const auto begin = std::chrono::steady_clock::now();
    playing.player.wind(GetParam());
    expectPositionFrom(32);
    const auto end = playing.end();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->reason, Reason::Finished);
    EXPECT_NEAR(end->position, 60, 0.5);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30 / GetParam() + 4));
}

TEST_P(PlayerWinding, Backwards_ReachesTheStartAndPlaysOn)
{
    playing.player.wind(-GetParam());
    ASSERT_TRUE(playing.wait<PlayerAtStart>());
    EXPECT_TRUE(playing.wait<PlayerPosition>([](const PlayerPosition& told) { return told.seconds < 1; }));
    double last = 60;
    for (const PlayerEvent& event : playing.events()) {
        if (std::holds_alternative<PlayerAtStart>(event.told)) {
            break;
        }
        const auto* const position = std::get_if<PlayerPosition>(&event.told);
        ASSERT_NE(position, nullptr);
        EXPECT_LT(position->seconds, last);
        last = position->seconds;
    }
    std::vector<PlayerPosition> told = playing.all<PlayerPosition>();
    playing.forget();
    expectPositionFrom(1);
    const std::vector<PlayerPosition> later = playing.all<PlayerPosition>();
    told.insert(told.end(), later.begin(), later.end());
    EXPECT_EQ(std::count_if(told.begin(), told.end(), [](const PlayerPosition& place) { return place.seconds < 1; }), 1);
}

INSTANTIATE_TEST_SUITE_P(Speed, PlayerWinding, testing::Values(4, 8, 16),
                         [](const auto& row) { return "Times" + std::to_string(row.param); });

class PlayerTelling : public PlayerProcessTest, public testing::WithParamInterface<int> {};

TEST_P(PlayerTelling, PositionWhileWinding_IsToldOnceASecond)
{
    testsupport::Gathered<std::chrono::steady_clock::time_point> told;
    PlayerProcess player(Playing::usual(), [&told](const PlayerEvent& event) {
        if (std::holds_alternative<PlayerPosition>(event.told)) {
            told.add(std::chrono::steady_clock::now());
        }
    });
    PlayerMedium medium = Playing::medium(films.video("film.mp4", 60), FILE_TYPE_VIDEO);
    medium.start = GetParam() > 0 ? 5 : 55;
    player.load(std::move(medium));
    ASSERT_EQ(told.waitFor(1).size(), 1U);
    player.wind(GetParam());
    const auto times = told.waitFor(5);
    ASSERT_GE(times.size(), 5U);
    EXPECT_GT(times[4] - times[1], std::chrono::milliseconds(2500)); // each a moment late, or not
}

INSTANTIATE_TEST_SUITE_P(Speed, PlayerTelling, testing::Values(2, 8, -8), [](const auto& row) {
    return (row.param < 0 ? "BackwardsTimes" : "Times") + std::to_string(std::abs(row.param));
});

TEST_F(PlayerProcessTest, WindingWhatHasNoLength_ReachesTheEnd)
{
    const auto facts = playing.load(films.video("film.mkv", 20, Films::kH264 + std::string(" -live 1")), FILE_TYPE_VIDEO);
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->duration, 0);
    playing.player.wind(8);
    const auto end = playing.end();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->reason, Reason::Finished);
    EXPECT_NEAR(end->position, 20, 1);
}

TEST_F(PlayerProcessTest, WindingEnded_PlaysOnFromThere)
{
    ASSERT_TRUE(playing.load(films.video("film.mp4", 60), FILE_TYPE_VIDEO));
    playing.player.wind(16);
    expectPositionFrom(8);
    playing.player.wind(1);
    playing.forget();
    const auto first = playing.wait<PlayerPosition>();
    ASSERT_TRUE(first);
    const auto later =
        playing.wait<PlayerPosition>([&first](const PlayerPosition& told) { return told.seconds > first->seconds + 0.9; });
    ASSERT_TRUE(later);
    EXPECT_LT(later->seconds, first->seconds + 2.5);
    EXPECT_TRUE(playing.all<PlayerEnded>().empty());
}

TEST_F(PlayerProcessTest, PausedWhileWinding_WaitsThere)
{
    ASSERT_TRUE(playing.load(films.video("film.mp4", 60), FILE_TYPE_VIDEO));
    playing.player.wind(16);
    expectPositionFrom(8);
    playing.player.pause(true);
    const Picture picture = playing.frame(); // drawn after the pause has come through
    EXPECT_EQ(picture.colourAt(kNear, kNear), "red");
    playing.player.seek(50);
    const auto there = playing.wait<PlayerPosition>([](const PlayerPosition& told) { return told.seconds > 49; });
    ASSERT_TRUE(there);
    EXPECT_NEAR(there->seconds, 50, 0.1);
}

// One after another.

TEST_F(PlayerProcessTest, NextMedium_EndsThatBeforeUnheard)
{
    const std::string film = films.video("film.mp4", 3);
    ASSERT_TRUE(playing.load(film, FILE_TYPE_VIDEO));
    const std::uint64_t first = playing.events().front().medium;
    PlayerMedium next = Playing::medium(demoFile("Music/The Sines/01 First.mp3"), FILE_TYPE_MUSIC);
    const std::uint64_t second = next.number;
    playing.forget();
    ASSERT_TRUE(playing.load(std::move(next)));
    expectPositionFrom(2);
    for (const PlayerEvent& event : playing.events()) {
        EXPECT_NE(event.medium, first);
        EXPECT_EQ(event.medium, second);
    }
}

TEST_F(PlayerProcessTest, ManyMediaInARow_PlayTheLast)
{
    const std::string film = films.video("film.mp4", 2);
    const std::string photo = demoFile("Photos/2023/upright.jpg");
    for (int i = 0; i < 20; ++i) {
        const bool isFilm = i % 2 == 0;
        playing.player.load(Playing::medium(isFilm ? film : photo, isFilm ? FILE_TYPE_VIDEO : FILE_TYPE_PHOTO));
    }
    ASSERT_TRUE(playing.load(film, FILE_TYPE_VIDEO));
    EXPECT_EQ(playing.end().value().reason, Reason::Finished);
}

TEST_F(PlayerProcessTest, Unloaded_TellsNothingMore)
{
    ASSERT_TRUE(playing.load(films.video("film.mp4", 3), FILE_TYPE_VIDEO));
    playing.player.unload();
    EXPECT_EQ(playing.frame().width, 0); // comes after the unloading
    playing.forget();
    playing.player.pause(true);
    playing.player.wind(2);
    playing.player.seek(1);
    playing.player.setOptions({});
    EXPECT_EQ(playing.frame().width, 0);
    EXPECT_TRUE(playing.events().empty());
}

} // namespace
} // namespace desktop
