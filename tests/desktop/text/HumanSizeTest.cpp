#include "desktop/text/HumanSize.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

TEST(HumanSize, Bytes_AreToldInBinaryUnits)
{
    EXPECT_EQ(humanSize(0), "0 B");
    EXPECT_EQ(humanSize(1023), "1023 B");
    EXPECT_EQ(humanSize(1024), "1.0 KB");
    EXPECT_EQ(humanSize(1536), "1.5 KB");
    EXPECT_EQ(humanSize((1ULL << 20) - 1), "1.0 MB");
    EXPECT_EQ(humanSize(5'000'000'000), "4.7 GB");
    EXPECT_EQ(humanSize(~0ULL), "16.0 EB");
}

} // namespace
} // namespace desktop
