#include "desktop/cli/Suggestion.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

const std::vector<std::string> kNames = {"browse", "search", "groups", "info", "thumbnails", "shell", "commands"};

TEST(Suggestion, WordOfAFewWrongLetters_IsNearToItsName)
{
    EXPECT_EQ(nearestName("brwose", kNames), "browse"); // swapped
    EXPECT_EQ(nearestName("serch", kNames), "search");  // left out
    EXPECT_EQ(nearestName("sheell", kNames), "shell");  // put in
    EXPECT_EQ(nearestName("groupz", kNames), "groups"); // replaced
    EXPECT_EQ(suggestion("inf", kNames), "; did you mean 'info'?");
}

TEST(Suggestion, BeginningOfOneName_IsNearToIt)
{
    EXPECT_EQ(nearestName("thu", kNames), "thumbnails");
    EXPECT_EQ(nearestName("s", kNames), ""); // of two
}

TEST(Suggestion, AnotherWord_IsNearToNone)
{
    EXPECT_EQ(nearestName("", kNames), "");
    EXPECT_EQ(nearestName("teapot", kNames), "");
    EXPECT_EQ(nearestName("x", kNames), "");
    EXPECT_EQ(nearestName(std::string(100'000, 'b'), kNames), "");
    EXPECT_EQ(suggestion("teapot", kNames), "");
}

} // namespace
} // namespace desktop
