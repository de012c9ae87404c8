#include "tests/desktop/support/LegacyBytes.h"
#include "tests/desktop/support/MediaReading.h"
#include "tests/desktop/support/UsedUpDescriptors.h"
#include "tests/desktop/support/Waiting.h"

#include "desktop/workers/PlaylistTransfer.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

using testsupport::MediaReading;
using testsupport::StandIn;

class PlaylistWorkTest : public testsupport::MediaFileTest {
protected:
    PlaylistContent read(MediaReading& by, const std::string& content, const std::string& extension = "m3u") const
    {
        const std::string file = made("list", content);
        return by.workers.readPlaylist(UniqueFd(open(file.c_str(), O_RDONLY | O_CLOEXEC)).get(), extension);
    }

    MediaReading patient{{MEDIA_WORKER, testsupport::kDeadline}}; ///< for what takes long on a busy computer
};

TEST_F(PlaylistWorkTest, Playlist_IsReadByAWorker)
{
    const PlaylistContent content = read(media, "#EXTINF:1,Caf\xE9\ncaf\xE9.mp3\n");
    EXPECT_EQ(content.error, "");
    ASSERT_EQ(content.entries.size(), 1U);
    EXPECT_EQ(content.entries[0].target, "caf\xE9.mp3");
    EXPECT_EQ(content.entries[0].path, "caf\u00e9.mp3");
    EXPECT_EQ(content.entries[0].title, "Caf\u00e9");
    EXPECT_EQ(content.omitted, 0U);
}

TEST_F(PlaylistWorkTest, EveryFormat_IsReadThere)
{
    const std::pair<const char*, const char*> lists[] = {
        {"m3u8", "a.mp3"},
        {"pls", "[playlist]\nFile1=a.mp3"},
        {"cue", "FILE a.mp3 MP3"},
        {"xspf",
         "<?xml version='1.0' encoding='windows-1251'?><playlist><track><location>a.mp3</location></track></playlist>"},
        {"asx", "<asx><entry><ref href=a.mp3></entry></asx>"},
        {"wpl", "<smil><media src='a.mp3'/></smil>"},
        {"", "#EXTM3U\na.mp3"},
    };
    for (const auto& [extension, text] : lists) {
        const PlaylistContent content = read(media, text, extension);
        EXPECT_EQ(content.error, "") << extension;
        ASSERT_EQ(content.entries.size(), 1U) << extension;
        EXPECT_EQ(content.entries[0].target, "a.mp3") << extension;
    }
}

TEST_F(PlaylistWorkTest, MoreThanAMessageHolds_Arrives)
{
    std::string lines;
    for (int i = 0; i < 20000; ++i) {
        lines += "Music/Some Album/" + std::to_string(i) + ".mp3\n";
    }
    const PlaylistContent content = read(patient, lines);
    EXPECT_EQ(content.error, "");
    ASSERT_EQ(content.entries.size(), 20000U);
    EXPECT_EQ(content.entries.back().path, "Music/Some Album/19999.mp3");
}

TEST_F(PlaylistWorkTest, MoreThanAPlaylistMayHave_IsCounted)
{
    std::string lines;
    for (std::size_t i = 0; i < kMaxPlaylistEntries + 5; ++i) {
        lines += "a\n";
    }
    const PlaylistContent content = read(patient, lines);
    EXPECT_EQ(content.entries.size(), kMaxPlaylistEntries);
    EXPECT_EQ(content.omitted, 5U);
}

TEST_F(PlaylistWorkTest, LargestPlaylistInAnOldCharset_IsRead)
{
    std::string path;
    for (int i = 0; i < 50; ++i) {
        path += "ลอยกระทง สุนทราภรณ์/"; // three bytes a letter in UTF-8
    }
    const std::string line = testsupport::writtenIn(path, "windows-874") + '\n';
    std::string lines;
    while (lines.size() + line.size() <= kMaxPlaylistFile) {
        lines += line;
    }
    const PlaylistContent content = read(patient, lines);
    EXPECT_EQ(content.error, ""); // no more is written than a worker may write
    ASSERT_GT(content.entries.size(), 3000U);
    EXPECT_EQ(content.entries.back().path, path);
    EXPECT_GT(content.omitted, 0U);
    EXPECT_EQ(content.entries.size() + content.omitted, lines.size() / line.size());
}

TEST_F(PlaylistWorkTest, WhatIsNoPlaylist_HasAnError)
{
    EXPECT_EQ(read(media, "Some text.", "").error, "The file is no playlist.");
    EXPECT_EQ(read(media, std::string(kMaxPlaylistFile + 1, '\n')).error, "The playlist is too large.");
    EXPECT_NE(media.workers.readPlaylist(-1, "m3u").error, "");
}

TEST_F(PlaylistWorkTest, WithoutDescriptors_TheWorkerIsNotBlamed)
{
    StandIn counted("echo started >> $0.log; exec '" MEDIA_WORKER "'");
    MediaReading reading({counted.program()});
    EXPECT_EQ(read(reading, "a.mp3").entries.size(), 1U);
    const UniqueFd file(open(made("other", "b.mp3").c_str(), O_RDONLY | O_CLOEXEC));
    {
        testsupport::UsedUpDescriptors descriptors;
        descriptors.leave(0);
        EXPECT_EQ(reading.workers.readPlaylist(file.get(), "m3u").error, "Too many open files");
    }
    EXPECT_EQ(reading.workers.readPlaylist(file.get(), "m3u").entries.size(), 1U);
    EXPECT_EQ(counted.log(), "started\n");
}

TEST_F(PlaylistWorkTest, WorkerThatDiesOfAPlaylist_CostsThatOneOnly)
{
    StandIn dying("[ -e $0.log ] && exec '" MEDIA_WORKER "'; touch $0.log; sleep 0.1; kill -SEGV $$");
    MediaReading reading({dying.program()});
    EXPECT_EQ(read(reading, "a.mp3").error, "The file stopped the process that read it.");
    EXPECT_EQ(read(reading, "a.mp3").entries.size(), 1U);
}

TEST_F(PlaylistWorkTest, WorkerThatHangs_IsKilledAtTheDeadline)
{
    StandIn hanging("[ -e $0.log ] && exec '" MEDIA_WORKER "'; touch $0.log; exec sleep 1000");
    MediaReading reading({hanging.program(), std::chrono::seconds(1)});
    EXPECT_EQ(read(reading, "a.mp3").error, "The file took too long to read.");
    EXPECT_EQ(read(reading, "a.mp3").entries.size(), 1U);
}

} // namespace
} // namespace desktop
