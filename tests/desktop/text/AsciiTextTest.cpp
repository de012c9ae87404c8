#include "desktop/text/AsciiText.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

TEST(AsciiText_LowerCase, LettersBeyondAscii_StayAsTheyAre)
{
    EXPECT_EQ(lowerCase("AbZ[\xC4 9"), "abz[\xC4 9");
    EXPECT_EQ(lowerCase(""), "");
}

TEST(AsciiText_Trimmed, BlanksWithin_Stay)
{
    EXPECT_EQ(trimmed(" \t a  b\r\n"), "a  b");
    EXPECT_EQ(trimmed("a"), "a");
}

TEST(AsciiText_Trimmed, NothingButBlanks_IsEmpty)
{
    EXPECT_EQ(trimmed(" \t\r\n"), "");
    EXPECT_EQ(trimmed(""), "");
}

} // namespace
} // namespace desktop
