#include "desktop/workers/PlaylistTransfer.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

using namespace std::string_literals;

void expectSame(const PlaylistEntries& entries, const PlaylistEntries& expected)
{
    ASSERT_EQ(entries.size(), expected.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        EXPECT_EQ(entries[i].target, expected[i].target) << i;
        EXPECT_EQ(entries[i].path, expected[i].path) << i;
        EXPECT_EQ(entries[i].title, expected[i].title) << i;
    }
}

TEST(PlaylistTransferTest, Entries_ArriveAsTheyAre)
{
    const PlaylistEntries entries = {{"caf\xE9.mp3", "caf\u00e9.mp3", "Caf\u00e9"}, {"a\0b"s, "a\0b"s, ""}, {"", "", "x"}};
    expectSame(unpackEntries(packEntries(entries)), entries);
    EXPECT_TRUE(unpackEntries(packEntries({})).empty());
}

TEST(PlaylistTransferTest, BytesThatBreakOff_GiveWhatIsWhole)
{
    const std::string first = packEntries({{"a", "a", "A"}});
    const std::string bytes = packEntries({{"a", "a", "A"}, {"b", "b", "B"}});
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        expectSame(unpackEntries(std::string_view(bytes).substr(0, length)),
                   length < first.size() ? PlaylistEntries() : PlaylistEntries({{"a", "a", "A"}}));
    }
}

TEST(PlaylistTransferTest, LengthsBeyondTheBounds_EndTheEntries)
{
    const std::string good = packEntries({{"a", "a", "A"}});
    EXPECT_EQ(unpackEntries(good + "\xFF\xFF\xFF\xFF" + std::string(100, 'x')).size(), 1U);
    const std::string tooLong = "\x01\x10\0\0"s + std::string(4097, 'x'); // which are there
    EXPECT_EQ(unpackEntries(good + tooLong + tooLong + tooLong).size(), 1U);
}

TEST(PlaylistTransferTest, TextsThatAreNoUtf8_AreLeftEmpty)
{
    expectSame(unpackEntries(packEntries({{"\xE9", "\xE9", "\xE9"}})), {{"\xE9", "", ""}});
}

TEST(PlaylistTransferTest, PathLongerThanAny_IsLeftEmpty)
{
    const std::string longest(4096, 'x');
    expectSame(unpackEntries(packEntries({{longest, longest + "x", ""}, {"b", "b", ""}})),
               {{longest, "", ""}, {"b", "b", ""}});
}

TEST(PlaylistTransferTest, TooManyEntries_AreCut)
{
    const PlaylistEntries many(kMaxPlaylistEntries + 1, PlaylistEntry{"a", "a", ""});
    const std::string bytes = packEntries(many);
    EXPECT_EQ(unpackEntries(bytes).size(), kMaxPlaylistEntries);
    EXPECT_EQ(unpackEntries(bytes + packEntries({{"b", "b", ""}})).size(), kMaxPlaylistEntries);
    const std::string text(4000, 'x');
    const std::string large = packEntries(PlaylistEntries(2000, PlaylistEntry{text, text, text}));
    EXPECT_LE(large.size(), kMaxPackedEntries);
    EXPECT_EQ(unpackEntries(large).size(), kMaxPackedEntries / 12012);
}

} // namespace
} // namespace desktop
