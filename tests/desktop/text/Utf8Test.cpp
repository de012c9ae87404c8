#include "desktop/text/Utf8.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

std::string cut(std::string text, std::size_t bytes)
{
    cutUtf8(text, bytes);
    return text;
}

TEST(Utf8Test, TextCut_EndsBetweenTwoCharacters)
{
    const std::string text = "a\u00e9\u20ac";
    EXPECT_EQ(cut(text, 6), text);
    EXPECT_EQ(cut(text, 5), "a\u00e9");
    EXPECT_EQ(cut(text, 4), "a\u00e9");
    EXPECT_EQ(cut(text, 3), "a\u00e9");
    EXPECT_EQ(cut(text, 2), "a");
    EXPECT_EQ(cut(text, 0), "");
    EXPECT_EQ(cut("\u20ac", 2), "");
}

} // namespace
} // namespace desktop
