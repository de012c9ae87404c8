#include "protocol/OptionTable.h"

#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <set>
#include <string>
#include <utility>

namespace protocol {
namespace {

const OptionDescription& find(const std::string& option, const std::string& suboption)
{
    return *std::find_if(kOptions.begin(), kOptions.end(), [&](const OptionDescription& description) {
        return description.option == option && description.suboption == suboption;
    });
}

TEST(OptionTable, EveryOption_IsThereOnce)
{
    std::set<std::pair<std::string, std::string>> names;
    for (const OptionDescription& option : kOptions) {
        EXPECT_TRUE(names.insert({option.option, option.suboption}).second) << option.option << " " << option.suboption;
    }
}

TEST(OptionTable, FirstValues_AreWithinTheBounds)
{
    for (const OptionDescription& option : kOptions) {
        SCOPED_TRACE(std::string(option.option) + " " + option.suboption);
        EXPECT_LE(option.minimum, option.initial);
        EXPECT_LE(option.initial, option.maximum);
        EXPECT_EQ(option.minimum < option.maximum, option.kind != OptionKind::Track);
    }
}

TEST(OptionTable, Choices_AreNumberedFromZero)
{
    for (const OptionDescription& option : kOptions) {
        SCOPED_TRACE(std::string(option.option) + " " + option.suboption);
        int value = 0;
        for (const OptionChoice& choice : option.choices) {
            EXPECT_EQ(choice.value, value++);
        }
        EXPECT_EQ(value, option.kind == OptionKind::Choice ? option.maximum + 1 : 0);
    }
}

TEST(OptionTable, Choices_StandForWhatTheirUnitSays)
{
    EXPECT_EQ(find("subtitle", "color").choices.first[1].means, 0xFFFF00);
    EXPECT_EQ(find("subtitle", "size").choices.first[1].means, 100);
    EXPECT_STREQ(find("subtitle", "size").unit, "percent");
}

TEST(OptionTable, Charsets_CanBeConverted)
{
    const OptionChoices charsets = find("subtitle", "charset").choices;
    EXPECT_STREQ(charsets.first->name, "automatic");
    for (const OptionChoice& charset : charsets) {
        UErrorCode status = U_ZERO_ERROR;
        ucnv_close(ucnv_open(charset.name, &status));
        EXPECT_EQ(U_SUCCESS(status), charset.value != 0) << charset.name;
    }
}

} // namespace
} // namespace protocol
