#include "desktop/text/NaturalOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace desktop {
namespace {

std::vector<std::string> sorted(std::vector<std::string> names)
{
    NaturalOrder order;
    std::sort(names.begin(), names.end(),
              [&order](const std::string& a, const std::string& b) { return order.key(a) < order.key(b); });
    return names;
}

using Names = std::vector<std::string>;

TEST(NaturalOrder_Key, NumbersInNames_CompareByValue)
{
    EXPECT_EQ(sorted({"clip 10", "clip 9", "clip 2b", "clip 2", "clip 010"}).front(), "clip 2");
    EXPECT_EQ(sorted({"a100", "a20", "a3"}), (Names{"a3", "a20", "a100"}));
    EXPECT_EQ(sorted({"9999999999999999999999", "10000000000000000000000", "2"}),
              (Names{"2", "9999999999999999999999", "10000000000000000000000"}));
}

TEST(NaturalOrder_Key, CaseAndAccents_StandByTheirLetter)
{
    EXPECT_EQ(sorted({"zebra", "Éclair", "eagle", "Apple", "apple pie"}),
              (Names{"Apple", "apple pie", "eagle", "Éclair", "zebra"}));
}

TEST(NaturalOrder_Key, ScriptsOfTheWorld_KeepTheirOwnOrder)
{
    EXPECT_EQ(sorted({"яблоко", "арбуз", "بيت", "ألف", "apple"}), (Names{"apple", "арбуз", "яблоко", "ألف", "بيت"}));
}

TEST(NaturalOrder_Key, NameOf255Characters_IsComparedToItsEnd)
{
    NaturalOrder order;
    const std::string longName(254, 'x');
    EXPECT_LT(order.key(longName + "a"), order.key(longName + "b"));
}

} // namespace
} // namespace desktop
