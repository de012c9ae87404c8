#include "desktop/player/MediaProbe.h"
#include "desktop/player/MemoryFile.h"
#include "desktop/player/MpvSettings.h"
#include "desktop/player/OpenMedium.h"
#include "desktop/player/PictureStream.h"
#include "desktop/player/SubtitleFiles.h"
#include "desktop/player/VobSub.h"
#include "desktop/player/Winding.h"

#include "tests/desktop/support/PictureSubtitles.h"
#include "tests/desktop/support/ServedFileSystem.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/mman.h>

// What the player's process is made of, by itself.

namespace desktop {
namespace {

using namespace std::chrono_literals;

std::string contentOf(const UniqueFd& file)
{
    std::string content(1000, '\0');
    const ssize_t got = pread(file.get(), content.data(), content.size(), 0);
    content.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    return content;
}

TEST(Winding, Clock_RunsWithItsSpeed)
{
    const auto now = Winding::Clock::now();
    EXPECT_DOUBLE_EQ(Winding(8, 10, now).position(now + 2s), 26);
    EXPECT_DOUBLE_EQ(Winding(-4, 10, now).position(now + 2s), 2);
    EXPECT_DOUBLE_EQ(Winding(-4, 10, now).position(now + 5s), 0);
    EXPECT_TRUE(Winding(-2, 0, now).isBackwards());
}

TEST(Winding, Clock_HoldsAndGoesOn)
{
    const auto now = Winding::Clock::now();
    Winding winding(8, 10, now);
    winding.hold(true, now + 1s);
    EXPECT_DOUBLE_EQ(winding.position(now + 5s), 18);
    winding.hold(true, now + 6s);
    EXPECT_DOUBLE_EQ(winding.position(now + 7s), 18);
    winding.hold(false, now + 8s);
    EXPECT_DOUBLE_EQ(winding.position(now + 9s), 26);
}

TEST(OpenMedium, ReadThatFails_IsNotedOnce)
{
    int failures = 0;
    int closed = 0;
    {
        OpenMedium file(
            UniqueFd(open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC)), [&] { ++failures; }, [&] { ++closed; });
        char byte = 0;
        EXPECT_EQ(file.read(&byte, 1, 0), -1);
        EXPECT_EQ(file.read(&byte, 1, 0), -1);
        EXPECT_EQ(file.error(), EISDIR);
        EXPECT_EQ(file.stuckFor(), 0ms);
        EXPECT_EQ(closed, 0);
    }
    EXPECT_EQ(failures, 1);
    EXPECT_EQ(closed, 1);
}

TEST(OpenMedium, EndOfTheFile_IsNoError)
{
    OpenMedium file(
        memoryFile("abc"), [] {}, [] {});
    char bytes[8] = "";
    EXPECT_EQ(file.size(), 3);
    EXPECT_EQ(file.read(bytes, sizeof bytes, 0), 3);
    EXPECT_EQ(file.read(bytes, sizeof bytes, 3), 0);
    EXPECT_EQ(file.error(), 0);
}

TEST(OpenMedium, FileThatHasBeenCut_IsAnError)
{
    OpenMedium file(
        memoryFile("abcdef"), [] {}, [] {});
    ASSERT_EQ(ftruncate(file.fd(), 2), 0);
    char byte = 0;
    EXPECT_EQ(file.read(&byte, 1, 4), 0);
    EXPECT_EQ(file.error(), EIO);
}

TEST(OpenMedium, OldestRead_SaysHowLongOneIsStuck)
{
    const testsupport::TemporaryDirectory folder;
    std::thread stuck;
    {
        testsupport::ServedFileSystem storage(folder.path(), "abcdef");
        ASSERT_TRUE(storage.works()) << "this test wants root and FUSE";
        const auto file = std::make_shared<OpenMedium>(
            UniqueFd(open(storage.file().c_str(), O_RDONLY | O_CLOEXEC)), [] {}, [] {});
        storage.fallSilent();
        stuck = std::thread([file] {
            char byte = 0;
            EXPECT_EQ(file->read(&byte, 1, 3), -1);
        });
        EXPECT_TRUE(storage.hasSilenced());
        storage.answerAgain();
        char byte = 0;
        EXPECT_EQ(file->read(&byte, 1, 0), 1);
        EXPECT_TRUE(testsupport::becomes([&file] { return file->stuckFor() > 10ms; }));
    } // which ends the read
    stuck.join();
}

TEST(MemoryFile, CopyOfTooMuch_IsNone)
{
    const UniqueFd file = memoryFile("abcdef");
    EXPECT_EQ(contentOf(copyInMemory(file.get(), 6)), "abcdef");
    errno = 0;
    EXPECT_FALSE(copyInMemory(file.get(), 5));
    EXPECT_EQ(errno, EFBIG);
    EXPECT_FALSE(copyInMemory(-1, 5));
}

TEST(PictureStream, Points_AreAnUncompressedFile)
{
    Points points({2, 1});
    points.bytes = {'a', 'b', 'c', 'd', 'e', 'f'};
    EXPECT_EQ(contentOf(pictureStream(points)), "P6\n2 1\n255\nabcdef");
}

TEST(PictureStream, Png_IsOne)
{
    EXPECT_EQ(pngOf(std::vector<unsigned char>(4 * 3 * 2, 128), {3, 2}).substr(0, 4), "\x89PNG");
    EXPECT_EQ(pngOf({}, {0, 0}), "");
}

SubtitleFile fileOf(const std::string& bytes)
{
    return {"name.srt", "eng", memoryFile(bytes), UniqueFd()};
}

TEST(SubtitleFiles, Text_IsMadeUtf8)
{
    const StoredSubtitle stored = storeSubtitle(fileOf("\xC4\xD6"));
    EXPECT_EQ(stored.name, "name.srt");
    EXPECT_EQ(stored.language, "eng");
    EXPECT_EQ(contentOf(playableSubtitle(stored, "")), "ÄÖ");
    EXPECT_EQ(contentOf(playableSubtitle(stored, "windows-1251")), "ДЦ");
    EXPECT_EQ(contentOf(playableSubtitle(stored, "no such charset")), "ÄÖ");
    EXPECT_EQ(contentOf(playableSubtitle(storeSubtitle(fileOf("Ä")), "")), "Ä");
}

TEST(SubtitleFiles, FileThatIsTooLarge_IsLeftOut)
{
    EXPECT_TRUE(playableSubtitle(storeSubtitle(fileOf(std::string(16 << 20, 'a'))), ""));
    EXPECT_FALSE(playableSubtitle(storeSubtitle(fileOf(std::string((16 << 20) + 1, 'a'))), ""));
    EXPECT_FALSE(playableSubtitle(storeSubtitle(fileOf("")), ""));
}

TEST(VobSub, Pair_BecomesMatroska)
{
    const UniqueFd pictures = memoryFile(testsupport::vobSubPictures());
    const UniqueFd matroska = vobSubAsMatroska(testsupport::vobSubIndex(), pictures.get());
    ASSERT_TRUE(matroska);
    const ProbedMedia media = probeMedia(matroska.get());
    ASSERT_EQ(media.subtitles.size(), 1U);
    EXPECT_EQ(media.subtitles[0].track.codec, "dvd_subtitle");
    EXPECT_EQ(media.subtitles[0].track.language, "en");
}

TEST(VobSub, DamagedIndex_IsNone)
{
    const UniqueFd pictures = memoryFile("nothing");
    EXPECT_FALSE(vobSubAsMatroska("nothing", pictures.get()));
    EXPECT_FALSE(vobSubAsMatroska("# VobSub index file, v7\n", -1));
}

TEST(MediaProbe, PictureSubtitles_AreToldFromTexts)
{
    EXPECT_TRUE(isPictureSubtitle("hdmv_pgs_subtitle"));
    EXPECT_TRUE(isPictureSubtitle("dvd_subtitle"));
    EXPECT_TRUE(isPictureSubtitle("dvb_subtitle"));
    EXPECT_FALSE(isPictureSubtitle("subrip"));
    EXPECT_FALSE(isPictureSubtitle("no such codec"));
}

/// The key that mpv sends as a message next; empty when none comes.
std::string keyTold(const Mpv& mpv)
{
    for (int i = 0; i < 100; ++i) {
        const mpv_event* const event = mpv_wait_event(&mpv.handle(), 0.1);
        if (event->event_id == MPV_EVENT_SHUTDOWN) {
            return "";
        }
        if (event->event_id == MPV_EVENT_CLIENT_MESSAGE) {
            const auto& message = *static_cast<const mpv_event_client_message*>(event->data);
            return message.num_args == 2 && message.args[0] == std::string("key") ? message.args[1] : "";
        }
    }
    return "";
}

TEST(MpvSettings, Keys_AreMessages)
{
    const Mpv mpv;
    setUp(mpv, {});
    mpv.initialize();
    bindKeys(mpv);
    for (const char* const key : {"SPACE", "LEFT", "q", "R", "[", "\\", "\"", "'", "#", "CLOSE_WIN", "F5", "ENTER", "~"}) {
        ASSERT_GE(mpv.command({"keypress", key}), 0) << key;
        EXPECT_EQ(keyTold(mpv), key);
    }
}

} // namespace
} // namespace desktop
