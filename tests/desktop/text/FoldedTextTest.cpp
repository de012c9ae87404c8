#include "desktop/text/FoldedText.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

TEST(FoldedText, SpellingsOfOneText_AreTheSame)
{
    EXPECT_EQ(foldedText("Caf\u00c9"), foldedText("cafe\u0301"));
    EXPECT_EQ(foldedText("Stra\u00dfe"), foldedText("STRASSE"));
    EXPECT_EQ(foldedText("\u039f\u0394\u039f\u03a3"), foldedText("\u03bf\u03b4\u03bf\u03c2"));
    EXPECT_EQ(foldedText("\u1f80"), foldedText("\u1f08\u0345")); // a mark that becomes a letter in capitals
    EXPECT_EQ(foldedText("\ufb01n"), foldedText("FIN"));
}

TEST(FoldedText, TextsOfOtherLetters_Differ)
{
    EXPECT_NE(foldedText("cafe"), foldedText("caf\u00e9"));
    EXPECT_NE(foldedText("AC/DC"), foldedText("ACDC"));
    EXPECT_EQ(foldedText(""), "");
}

TEST(FoldedText, BytesThatAreNoText_StayAsTheyAre)
{
    EXPECT_EQ(foldedText("CAF\xE9"), "CAF\xE9");
}

} // namespace
} // namespace desktop
