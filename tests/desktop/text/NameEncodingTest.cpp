#include "desktop/text/NameEncoding.h"

#include "desktop/text/Utf8.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

TEST(NameEncoding_Encode, Utf8Name_StaysAsItIs)
{
    for (const char* name : {"plain.txt", "电影", "موسيقى", "🎂.jpg", "a\\b", "\\x", "\\xZZ", "\\xe9", "tab\there", ""}) {
        EXPECT_EQ(encodeName(name), name);
        EXPECT_EQ(decodeName(name), name);
    }
}

TEST(NameEncoding_Encode, BytesThatAreNoUtf8_AreWrittenInHex)
{
    EXPECT_EQ(encodeName("caf\xE9.mp3"), "caf\\xE9.mp3");
    EXPECT_EQ(encodeName("\xE7\x94"), "\\xE7\\x94");                   // a character cut short
    EXPECT_EQ(encodeName("\xC0\xAF"), "\\xC0\\xAF");                   // an overlong "/"
    EXPECT_EQ(encodeName("\xED\xA0\x80"), "\\xED\\xA0\\x80");          // a surrogate
    EXPECT_EQ(encodeName("\xF4\x90\x80\x80"), "\\xF4\\x90\\x80\\x80"); // beyond U+10FFFF
    EXPECT_EQ(encodeName("电\xFF影"), "电\\xFF影");
}

TEST(NameEncoding_Encode, BackslashThatReadsAsHex_IsItselfWrittenInHex)
{
    EXPECT_EQ(encodeName("caf\\xE9"), "caf\\x5CxE9");
    EXPECT_EQ(decodeName("caf\\x5CxE9"), "caf\\xE9");
}

TEST(NameEncoding_Decode, TextWithBadBytes_KeepsThem)
{
    EXPECT_EQ(decodeName("a\xE9\\xE8"), "a\xE9\xE8");
}

TEST(NameEncoding_RoundTrip, AnyBytes_GiveUtf8AndComeBack)
{
    const std::string alphabet = "\\x5CE9/\xE9\xE7\x94\xB5\xF0\x9F\x80 ";
    unsigned int state = 1;
    for (int round = 0; round < 20000; ++round) {
        std::string bytes;
        for (int i = 0; i < 12; ++i) {
            state = state * 1664525U + 1013904223U;
            bytes += alphabet[(state >> 16) % alphabet.size()];
        }
        const std::string text = encodeName(bytes);
        ASSERT_TRUE(isUtf8(text)) << text;
        ASSERT_EQ(decodeName(text), bytes) << text;
    }
}

TEST(NameEncoding_EscapeBadBytes, PrefixGiven_StandsBeforeTheDigits)
{
    EXPECT_EQ(escapeBadBytes("{\"a\":\"\xE9\\xE9\"}", "\\\\x"), "{\"a\":\"\\\\xE9\\xE9\"}");
}

} // namespace
} // namespace desktop
