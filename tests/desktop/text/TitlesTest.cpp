#include "desktop/text/LegacyText.h"

#include "tests/desktop/support/Titles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

// How well charsets are guessed, in shares; docs/charsets.md shows them beside another detector's.

namespace desktop {
namespace {

/// At least so many of a hundred are read as they were meant: titles alone, and ten together.
const std::map<std::string, testsupport::ReadShare> kLeast = {
    {"czech", {89, 100}},
    {"slovak", {95, 100}},
    {"polish", {99, 100}},
    {"hungarian", {96, 100}},
    {"romanian", {93, 100}},
    {"turkish", {93, 100}},
    {"french", {100, 100}},
    {"german", {100, 100}},
    {"spanish", {100, 100}},
    {"italian", {100, 100}},
    {"portuguese", {100, 100}},
    {"swedish", {100, 100}},
    {"danish", {100, 100}},
    {"russian", {98, 100}},
    {"greek", {100, 100}},
    {"hebrew", {98, 100}},
    {"arabic", {96, 100}},
    {"thai", {84, 90}},
    {"japanese", {95, 100}},
    {"korean", {80, 100}},
    {"chinese-simplified", {90, 100}},
    {"chinese-traditional", {88, 100}},
};

class TitlesTest : public testing::TestWithParam<testsupport::TitleLanguage> {};

TEST_P(TitlesTest, Titles_AreReadAsTheyWereMeant)
{
    ASSERT_GE(GetParam().titles.size(), 150U);
    const testsupport::ReadShare share =
        shareRead(GetParam(), [](const std::string& bytes) { return toUtf8(bytes, guessCharset(bytes)); });
    const testsupport::ReadShare& least = kLeast.at(GetParam().name);
    EXPECT_GE(share.single, least.single);
    EXPECT_GE(share.album, least.album);
}

std::string nameOf(const testing::TestParamInfo<testsupport::TitleLanguage>& row)
{
    std::string name = row.param.name;
    name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
    return name;
}

INSTANTIATE_TEST_SUITE_P(Language, TitlesTest, testing::ValuesIn(testsupport::readTitles(TITLES)), nameOf);

} // namespace
} // namespace desktop
