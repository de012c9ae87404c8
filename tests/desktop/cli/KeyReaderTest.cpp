#include "desktop/cli/KeyReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(KeyReader, Characters_AreKeysByThemselves)
{
    KeyReader reader;
    EXPECT_THAT(reader.add("q #\r\n["), ElementsAre("q", "SPACE", "#", "ENTER", "ENTER", "["));
}

TEST(KeyReader, Arrows_AreKnownInBothForms)
{
    KeyReader reader;
    EXPECT_THAT(reader.add("\x1b[A\x1b[B\x1b[C\x1b[D\x1bOA\x1bOD"),
                ElementsAre("UP", "DOWN", "RIGHT", "LEFT", "UP", "LEFT"));
}

TEST(KeyReader, KeyInPieces_WaitsForItsRest)
{
    KeyReader reader;
    EXPECT_THAT(reader.add("\x1b"), IsEmpty());
    EXPECT_THAT(reader.add("["), IsEmpty());
    EXPECT_THAT(reader.add("C."), ElementsAre("RIGHT", "."));
}

TEST(KeyReader, KeysWithoutAName_AreLeftOut)
{
    KeyReader reader;
    EXPECT_THAT(reader.add("\x1b[1;5C\x1b[3~\x1b[Z\x04\x7F\xC3\xA4q"), ElementsAre("q"));
    EXPECT_THAT(reader.add("\x1b\x1b[Aj"), ElementsAre("UP", "j"));
}

} // namespace
} // namespace desktop
