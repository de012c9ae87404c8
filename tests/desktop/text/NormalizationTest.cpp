#include "desktop/text/Normalization.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

TEST(NormalizationTest, LettersWithMarks_AreOneCharacterOrTwo)
{
    const std::string one = "caf\u00e9 \ud55c";
    const std::string two = "cafe\u0301 \u1112\u1161\u11ab";
    EXPECT_EQ(composed(one), one);
    EXPECT_EQ(composed(two), one);
    EXPECT_EQ(decomposed(one), two);
    EXPECT_EQ(decomposed(two), two);
}

TEST(NormalizationTest, WhatIsNoUtf8_HasNoForm)
{
    EXPECT_EQ(composed("caf\xE9"), "");
    EXPECT_EQ(decomposed("caf\xE9"), "");
    EXPECT_EQ(composed(""), "");
}

} // namespace
} // namespace desktop
