#include "plugin/CommandHash.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::str2hashid;

TEST(CommandHash, EmptyName_IsZero)
{
    EXPECT_EQ(str2hashid(""), 0U);
}

TEST(CommandHash, KnownName_HasItsProtocolValue)
{
    EXPECT_EQ(str2hashid("storagemedia.folder.chgdir"), 3414262598U);
}

TEST(CommandHash, EachByte_CountsTimes31)
{
    EXPECT_EQ(str2hashid("a"), 97U);
    EXPECT_EQ(str2hashid("ab"), 97U * 31U + 98U);
    EXPECT_EQ(str2hashid("ba"), 98U * 31U + 97U);
}

TEST(CommandHash, ByteOf128AndAbove_CountsUnsigned)
{
    EXPECT_EQ(str2hashid("\xC3"), 195U);
    EXPECT_EQ(str2hashid("\xFF\x80"), 255U * 31U + 128U);
}

TEST(CommandHash, LongName_WrapsAt32Bits)
{
    unsigned long long exact = 0;
    const char* name = "zzzzzzzzz";
    for (const char* c = name; *c != '\0'; ++c) {
        exact = exact * 31 + static_cast<unsigned char>(*c);
    }
    ASSERT_GT(exact, 0xFFFFFFFFULL);
    EXPECT_EQ(str2hashid(name), static_cast<unsigned int>(exact));
}

} // namespace
