#include "tests/desktop/support/DemoStick.h"
#include "tests/desktop/support/Films.h"
#include "tests/desktop/support/MediaReading.h"
#include "tests/desktop/support/Playing.h"
#include "tests/desktop/support/ServedFileSystem.h"
#include "tests/support/CaseName.h"

#include <gtest/gtest.h>

#include <signal.h>

#include <filesystem>
#include <random>

// Media and processes that fail: each is told, and the next medium plays.

namespace desktop {
namespace {

using Reason = PlayerEnded::Reason;
using testsupport::demoFile;
using testsupport::Films;
using testsupport::Playing;
using testsupport::ServedFileSystem;
using testsupport::StandIn;

// Writes its process id, then is the player.
constexpr const char* kTelling = "echo $$ >> $0.log; exec '" MEDIA_PLAYER "' \"$@\"";

PlayerSettings settingsFor(const StandIn& program)
{
    PlayerSettings settings;
    settings.program = program.program();
    return settings;
}

class PlayerFaults : public testing::Test {
protected:
    /// Plays @p file, which ends without having played; how.
    PlayerEnded endOf(const std::string& file, FileType type = FILE_TYPE_VIDEO)
    {
        EXPECT_FALSE(playing.load(file, type));
        return playing.end().value_or(PlayerEnded());
    }
    void expectThatPlayingGoesOn()
    {
        EXPECT_TRUE(playing.load(demoFile("Movies/counter.mp4"), FILE_TYPE_VIDEO));
        EXPECT_EQ(playing.frame().width, 320);
    }

    Films films;
    StandIn telling{kTelling};
    Playing playing{settingsFor(telling)};
};

// Media.

struct BadFile {
    const char* name;
    const char* content;
    FileType type;
};

class PlayerBadFile : public PlayerFaults, public testing::WithParamInterface<BadFile> {};

TEST_P(PlayerBadFile, File_FailsToLoad)
{
    const PlayerEnded end = endOf(films.write("medium", GetParam().content), GetParam().type);
    EXPECT_EQ(end.reason, Reason::LoadFailed);
    EXPECT_NE(end.text, "");
    expectThatPlayingGoesOn();
}

INSTANTIATE_TEST_SUITE_P(
    File, PlayerBadFile,
    testing::Values(BadFile{"EmptyVideo", "", FILE_TYPE_VIDEO}, BadFile{"EmptyMusic", "", FILE_TYPE_MUSIC},
                    BadFile{"EmptyPhoto", "", FILE_TYPE_PHOTO}, BadFile{"Garbage", "This is no film.", FILE_TYPE_VIDEO},
                    BadFile{"GarbagePhoto", "\xFF\xD8\xFF\xE0 no photo", FILE_TYPE_PHOTO},
                    BadFile{"List", "#EXTM3U\n/etc/passwd\n", FILE_TYPE_VIDEO},
                    BadFile{"Concatenation", "ffconcat version 1.0\nfile /etc/passwd\n", FILE_TYPE_VIDEO},
                    BadFile{"Stream", "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1\nhttp://localhost/a.ts\n",
                            FILE_TYPE_VIDEO},
                    BadFile{"Edition", "# mpv EDL v0\n/etc/passwd\n", FILE_TYPE_VIDEO}),
    [](const auto& row) { return testsupport::caseName(row.index, row.param.name); });

TEST_F(PlayerFaults, TruncatedVideo_EndsAsIncomplete)
{
    const std::string film = films.video("film.mkv", 10, "-c:v libx264 -preset ultrafast -g 25 -c:a aac");
    std::filesystem::resize_file(film, std::filesystem::file_size(film) / 3);
    ASSERT_TRUE(playing.load(film, FILE_TYPE_VIDEO));
    const auto end = playing.end();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->reason, Reason::Incomplete);
    EXPECT_NE(end->text.find("incomplete"), std::string::npos) << end->text;
    EXPECT_LT(end->position, 6);
}

TEST_F(PlayerFaults, FileCutWhilePlaying_EndsAsUnreadable)
{
    const std::string film = films.video("film.mkv", 60, "-c:v libx264 -preset ultrafast -g 25 -c:a aac");
    ASSERT_TRUE(playing.load(film, FILE_TYPE_VIDEO));
    std::filesystem::resize_file(film, 1000);
    playing.player.seek(40);
    EXPECT_EQ(playing.end().value().reason, Reason::ReadFailed);
}

TEST_F(PlayerFaults, FileReplacedWhilePlaying_PlaysOn)
{
    const std::string film = films.video("film.mp4", 2);
    ASSERT_TRUE(playing.load(film, FILE_TYPE_VIDEO));
    films.write("other", "something else");
    std::filesystem::rename(films.path("other"), film);
    EXPECT_EQ(playing.end().value().reason, Reason::Finished);
}

// Names of codecs as Matroska has them, and others as long.
constexpr const char* kSound = "A_AAC";
constexpr const char* kUnknownSound = "A_QQQ";
constexpr const char* kPicture = "V_MPEG4/ISO/AVC";
constexpr const char* kUnknownPicture = "V_QQQQQ/ISO/AVC";

/// @p bytes with the letters of a codec's name replaced.
std::string renamed(std::string bytes, const std::string& from, const std::string& to)
{
    for (std::size_t at = bytes.find(from); at != std::string::npos; at = bytes.find(from, at)) {
        bytes.replace(at, from.size(), to);
    }
    return bytes;
}

TEST_F(PlayerFaults, UnknownSound_PlaysSilently)
{
    const std::string film = testsupport::readFile(films.video("film.mkv", 1));
    const auto facts = playing.load(films.write("silent.mkv", renamed(film, kSound, kUnknownSound)), FILE_TYPE_VIDEO);
    ASSERT_TRUE(facts);
    EXPECT_TRUE(facts->audioUnsupported);
    EXPECT_FALSE(facts->videoUnsupported);
    EXPECT_EQ(facts->audioTrack, 0);
    EXPECT_EQ(playing.end().value().reason, Reason::Finished);
}

TEST_F(PlayerFaults, UnknownPicture_PlaysItsSound)
{
    const std::string film = testsupport::readFile(films.video("film.mkv", 1));
    const auto facts = playing.load(films.write("dark.mkv", renamed(film, kPicture, kUnknownPicture)), FILE_TYPE_VIDEO);
    ASSERT_TRUE(facts);
    EXPECT_TRUE(facts->videoUnsupported);
    EXPECT_FALSE(facts->audioUnsupported);
    EXPECT_EQ(playing.frame().width, 0);
    EXPECT_EQ(playing.end().value().reason, Reason::Finished);
}

TEST_F(PlayerFaults, NothingKnown_IsUnsupported)
{
    const std::string film = testsupport::readFile(films.video("film.mkv", 1));
    const std::string bytes = renamed(renamed(film, kPicture, kUnknownPicture), kSound, kUnknownSound);
    EXPECT_EQ(endOf(films.write("unknown.mkv", bytes)).reason, Reason::Unsupported);
    expectThatPlayingGoesOn();
}

TEST_F(PlayerFaults, RandomDamage_NeverStopsThePlayer)
{
    std::mt19937 random(20);
    const std::string film = testsupport::readFile(films.video("film.mp4", 1));
    for (int i = 0; i < 30; ++i) {
        std::string bytes = film;
        for (int flips = 0; flips < 20; ++flips) {
            bytes[random() % bytes.size()] = static_cast<char>(random());
        }
        bytes.resize(i % 3 == 0 ? random() % bytes.size() : bytes.size());
        playing.load(films.write("film.mp4", bytes), FILE_TYPE_VIDEO);
        playing.frame();
    }
    expectThatPlayingGoesOn();
}

// Storage.

class PlayerStorage : public PlayerFaults {
protected:
    PlayerStorage()
        : storage(folder.path(),
                  testsupport::readFile(films.video("film.mkv", 60, "-c:v libx264 -preset ultrafast -g 25 -c:a aac")))
    {
        EXPECT_TRUE(storage.works()) << "this test wants root and FUSE";
    }

    testsupport::TemporaryDirectory folder;
    ServedFileSystem storage;
};

TEST_F(PlayerStorage, ReadErrorWhilePlaying_IsToldAtOnce)
{
    ASSERT_TRUE(playing.load(storage.file(), FILE_TYPE_VIDEO));
    storage.fail();
    const auto begin = std::chrono::steady_clock::now();
    const auto end = playing.end();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->reason, Reason::ReadFailed);
    EXPECT_EQ(end->text, "Input/output error");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(15));
    expectThatPlayingGoesOn();
}

TEST_F(PlayerStorage, ReadErrorAtLoading_IsTold)
{
    storage.fail();
    EXPECT_EQ(endOf(storage.file()).reason, Reason::ReadFailed);
    EXPECT_EQ(endOf(storage.file(), FILE_TYPE_PHOTO).reason, Reason::ReadFailed);
    expectThatPlayingGoesOn();
}

TEST_F(PlayerStorage, SilentStorage_DoesNotHoldUpTheNextMedium)
{
    ASSERT_TRUE(playing.load(storage.file(), FILE_TYPE_VIDEO));
    storage.fallSilent();
    playing.player.seek(50);
    ASSERT_TRUE(storage.hasSilenced());
    const auto begin = std::chrono::steady_clock::now();
    expectThatPlayingGoesOn();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

TEST_F(PlayerStorage, SilentStorageWhileWinding_IsToldWhereItStopped)
{
    ASSERT_TRUE(playing.load(storage.file(), FILE_TYPE_VIDEO));
    playing.player.wind(8);
    ASSERT_TRUE(playing.wait<PlayerPosition>([](const PlayerPosition& told) { return told.seconds > 4; }));
    storage.fallSilent();
    const auto end = playing.end();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->reason, Reason::ReadFailed);
    EXPECT_EQ(end->text, "The storage does not answer.");
    EXPECT_LT(end->position, 40);
    expectThatPlayingGoesOn();
}

TEST_F(PlayerStorage, SilentStorageAtLoading_EndsAtTheDeadline)
{
    PlayerSettings settings = settingsFor(telling);
    settings.load = std::chrono::seconds(1);
    Playing impatient(settings);
    storage.fallSilent();
    EXPECT_FALSE(impatient.load(storage.file(), FILE_TYPE_VIDEO));
    const auto end = impatient.end();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->reason, Reason::LoadFailed);
    EXPECT_EQ(end->text, "The file took too long to open.");
    EXPECT_TRUE(impatient.load(demoFile("Movies/counter.mp4"), FILE_TYPE_VIDEO));
}

TEST_F(PlayerStorage, SilentStorage_DoesNotHoldUpTheEnd)
{
    {
        Playing other(settingsFor(telling));
        ASSERT_TRUE(other.load(storage.file(), FILE_TYPE_VIDEO));
        storage.fallSilent();
        other.player.seek(50);
        ASSERT_TRUE(storage.hasSilenced());
        const auto begin = std::chrono::steady_clock::now();
        other.player.unload();
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(200));
    }
}

// The process.

pid_t lastProcess(const StandIn& telling)
{
    std::istringstream lines(telling.log());
    pid_t pid = 0;
    for (pid_t each = 0; lines >> each;) {
        pid = each;
    }
    return pid;
}

TEST_F(PlayerFaults, KilledProcess_IsToldAndReplaced)
{
    ASSERT_TRUE(playing.load(films.video("film.mp4", 30), FILE_TYPE_VIDEO));
    playing.player.seek(20);
    ASSERT_TRUE(playing.wait<PlayerPosition>([](const PlayerPosition& told) { return told.seconds >= 20; }));
    kill(lastProcess(telling), SIGKILL);
    const auto end = playing.end();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->reason, Reason::PlayerLost);
    EXPECT_EQ(end->text, "The player has stopped.");
    EXPECT_NEAR(end->position, 20, 3);
    expectThatPlayingGoesOn();
}

TEST_F(PlayerFaults, ProcessKilledBetweenMedia_IsReplacedUnnoticed)
{
    expectThatPlayingGoesOn();
    playing.player.unload();
    playing.frame();
    const pid_t first = lastProcess(telling);
    kill(first, SIGKILL);
    expectThatPlayingGoesOn();
    EXPECT_NE(lastProcess(telling), first);
}

TEST_F(PlayerFaults, StoppedProcess_IsToldAndReplaced)
{
    const StandIn other(kTelling);
    PlayerSettings settings = settingsFor(other);
    settings.silence = std::chrono::seconds(1);
    Playing impatient(settings);
    ASSERT_TRUE(impatient.load(films.video("film.mp4", 30), FILE_TYPE_VIDEO));
    const pid_t first = lastProcess(other);
    kill(first, SIGSTOP);
    const auto end = impatient.end();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->reason, Reason::PlayerLost);
    EXPECT_EQ(end->text, "The player does not answer any more.");
    EXPECT_TRUE(testsupport::becomes([first] { return kill(first, 0) != 0; }));
    EXPECT_TRUE(impatient.load(demoFile("Movies/counter.mp4"), FILE_TYPE_VIDEO));
}

TEST_F(PlayerFaults, StoppedProcess_CostsAFrameItsTimeOnly)
{
    ASSERT_TRUE(playing.load(films.video("film.mp4", 30), FILE_TYPE_VIDEO));
    kill(lastProcess(telling), SIGSTOP);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(playing.frame().width, 0);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
}

TEST_F(PlayerFaults, EndOfThePlayer_EndsItsProcess)
{
    pid_t process = 0;
    {
        const StandIn program(kTelling);
        Playing other(settingsFor(program));
        ASSERT_TRUE(other.load(demoFile("Movies/counter.mp4"), FILE_TYPE_VIDEO));
        process = lastProcess(program);
    }
    EXPECT_TRUE(testsupport::becomes([process] { return kill(process, 0) != 0; }));
}

TEST(PlayerProgram, NotThere_IsNamed)
{
    PlayerSettings settings;
    settings.program = "/nowhere/player";
    Playing playing(settings);
    EXPECT_FALSE(playing.load(demoFile("Movies/counter.mp4"), FILE_TYPE_VIDEO));
    const auto end = playing.end();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->reason, Reason::PlayerLost);
    EXPECT_EQ(end->text, "/nowhere/player: No such file or directory");
}

TEST(PlayerProgram, RunByHand_SaysWhatItIsFor)
{
    testsupport::Program player({MEDIA_PLAYER});
    EXPECT_EQ(player.wait(), 2);
    EXPECT_NE(player.errors().find("serves desktop-tv"), std::string::npos);
}

std::size_t entriesOf(const std::string& folder)
{
    const std::filesystem::directory_iterator entries(folder);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

TEST_F(PlayerFaults, ManyMedia_LeaveNoDescriptorsAndThreads)
{
    expectThatPlayingGoesOn();
    playing.player.unload();
    const std::string process = "/proc/" + std::to_string(lastProcess(telling));
    std::size_t files = 0;
    const auto settles = [&] { // the medium is closed after the unloading has been answered
        const std::size_t before = std::exchange(files, entriesOf(process + "/fd"));
        return before == files;
    };
    EXPECT_TRUE(testsupport::becomes(settles));
    const std::size_t threads = entriesOf(process + "/task");
    for (int i = 0; i < 10; ++i) {
        PlayerMedium medium = Playing::medium(demoFile("Movies/two subtitle tracks.mkv"), FILE_TYPE_VIDEO);
        medium.subtitles.push_back(
            {"a.srt", "", UniqueFd(open(demoFile("Movies/counter.srt").c_str(), O_RDONLY)), UniqueFd()});
        EXPECT_TRUE(playing.load(std::move(medium)));
        playing.frame();
        playing.load(demoFile("Photos/2023/upright.jpg"), FILE_TYPE_PHOTO);
        playing.player.unload();
    }
    EXPECT_TRUE(testsupport::becomes([&] { return entriesOf(process + "/fd") <= files; })) << entriesOf(process + "/fd");
    EXPECT_TRUE(testsupport::becomes([&] { return entriesOf(process + "/task") <= threads; }))
        << entriesOf(process + "/task");
}

TEST_F(PlayerFaults, ProcessAtWork_IsConfined)
{
    expectThatPlayingGoesOn();
    const std::string status = testsupport::readFile("/proc/" + std::to_string(lastProcess(telling)) + "/status");
    EXPECT_NE(status.find("NoNewPrivs:\t1"), std::string::npos);
    EXPECT_NE(status.find("Seccomp:\t2"), std::string::npos);
    EXPECT_NE(status.find("CapEff:\t0000000000000000"), std::string::npos);
}

// What a process may say that a medium has taken over: a script that answers the first load with each of the messages.

const char* const kLies[] = {
    R"({"tell":"loaded"})",
    R"({"tell":"loaded","medium":"x","facts":5})",
    R"({"tell":"loaded","medium":-1})",
    R"({"tell":"position","medium":M,"seconds":1e300})",
    R"({"tell":"position","medium":M,"seconds":-5})",
    R"({"tell":"position","medium":M,"seconds":"now"})",
    R"({"tell":"position","medium":99999,"seconds":1})",
    R"({"tell":"text","medium":M,"text":"\u0000\u0007a\nb"})",
    R"({"tell":"text","medium":M,"text":[1,2]})",
    R"({"tell":"picture","medium":M,"x":99999999999,"y":1,"width":-1,"height":1})",
    R"({"tell":"key","medium":M,"name":"AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA"})",
    R"({"tell":"frame","frame":1,"empty":false})",
    R"({"tell":"frame","frame":"first"})",
    R"({"tell":"closed","medium":{}})",
    R"({"tell":{"a":1},"medium":M})",
    R"({"tell":"facts","medium":M,"facts":{"duration":-1,"title":7,"video":[],"audioTracks":[5,{"id":-3},{"id":2,"title":"x\ny"}]}})",
};

std::string lyingProgram()
{
    std::string script = "exec python3 - <<'END'\nimport socket, re\ns = socket.socket(fileno=3)\n"
                         "while True:\n    m = s.recv(65536).decode()\n    if not m: break\n"
                         "    n = re.search(r'\"medium\":(\\d+)', m).group(1)\n    if '\"load\"' not in m: continue\n";
    for (const char* const lie : kLies) {
        script += "    s.send(r'''" + std::string(lie) + "'''.replace('M', n).encode())\n";
    }
    return script + "    s.send(b'{\"tell\":\"loaded\",\"medium\":' + n.encode() + b'}')\nEND";
}

TEST(PlayerLies, Messages_AreBoundedOrDropped)
{
    const StandIn lying(lyingProgram());
    Playing playing(settingsFor(lying));
    ASSERT_TRUE(playing.load(demoFile("Movies/counter.mp4"), FILE_TYPE_VIDEO));
    for (const PlayerPosition& position : playing.all<PlayerPosition>()) {
        EXPECT_EQ(position.seconds, 0);
    }
    for (const PlayerSubtitleText& text : playing.all<PlayerSubtitleText>()) {
        EXPECT_TRUE(text.text.empty() || text.text == "  a\nb") << text.text;
    }
    for (const PlayerSubtitlePicture& picture : playing.all<PlayerSubtitlePicture>()) {
        EXPECT_EQ(picture.png + std::to_string(picture.x) + std::to_string(picture.width), "00");
    }
    ASSERT_EQ(playing.all<PlayerKey>().size(), 1U);
    EXPECT_LE(playing.all<PlayerKey>()[0].name.size(), 32U);
    ASSERT_EQ(playing.all<PlayerFactsChanged>().size(), 1U);
    const MediaFacts facts = playing.all<PlayerFactsChanged>()[0].facts;
    EXPECT_EQ(facts.duration, 0);
    EXPECT_EQ(facts.title, "");
    ASSERT_EQ(facts.audioTracks.size(), 1U);
    EXPECT_EQ(facts.audioTracks[0].title, "x y");
}

// One on a stick may never answer.
TEST(PlayerLies, PictureThatIsNotInMemory_IsNotRead)
{
    const StandIn lying(R"(exec python3 - <<'END'
import json, socket
s = socket.socket(fileno=3)
message, files, flags, address = socket.recv_fds(s, 65536, 1)
told = {"medium": json.loads(message)["medium"], "tell": "picture"}
socket.send_fds(s, [json.dumps(told).encode()], files)
s.send(json.dumps({**told, "tell": "loaded"}).encode())
s.recv(9)
END)");
    const testsupport::TemporaryDirectory stick;
    const ServedFileSystem served(stick.path(), "\x89PNG\r\n\x1A\n");
    if (!served.works()) {
        GTEST_SKIP() << "this machine mounts no file system of a test's own";
    }
    Playing playing(settingsFor(lying));
    ASSERT_TRUE(playing.load(served.file(), FILE_TYPE_VIDEO));
    ASSERT_EQ(playing.all<PlayerSubtitlePicture>().size(), 1U);
    EXPECT_EQ(playing.all<PlayerSubtitlePicture>()[0].png, "");
}

TEST(PlayerLies, EventsWithoutEnd_EndTheProcess)
{
    const StandIn flooding(R"(exec python3 - <<'END'
import json, socket
s = socket.socket(fileno=3)
medium = json.loads(s.recv(65536))["medium"]
s.send(json.dumps({"medium": medium, "tell": "loaded"}).encode())
for second in range(100000):
    s.send(json.dumps({"medium": medium, "tell": "position", "seconds": second}).encode())
s.recv(9)
END)");
    Playing playing(settingsFor(flooding));
    ASSERT_TRUE(playing.load(demoFile("Movies/counter.mp4"), FILE_TYPE_VIDEO));
    const auto end = playing.end();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->reason, Reason::PlayerLost);
    EXPECT_EQ(end->text, "The player tells more than it can have to tell.");
    EXPECT_LT(playing.all<PlayerPosition>().size(), 5000U); // some hundreds for each second that it may take
}

TEST(PlayerLies, NoMessage_EndsTheProcess)
{
    const StandIn lying(
        "exec python3 -c 'import socket\ns = socket.socket(fileno=3)\ns.recv(65536)\ns.send(b\"[1,2\")\ns.recv(9)'");
    Playing playing(settingsFor(lying));
    EXPECT_FALSE(playing.load(demoFile("Movies/counter.mp4"), FILE_TYPE_VIDEO));
    EXPECT_EQ(playing.end().value().reason, Reason::PlayerLost);
}

} // namespace
} // namespace desktop
