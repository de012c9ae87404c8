#include "support/Scenario.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace {

// A file that a narrow lstat cannot describe would be left behind, where a television counts bytes in 32 bits.
TEST(EmptyFilesUnderdir, FileBeyondFourGibibytes_IsRemovedLikeAnyOther)
{
    const testsupport::TemporaryDirectory temporary;
    temporary.makeFile("film");
    ASSERT_EQ(truncate(temporary.path("film").c_str(), 6LL << 30), 0) << "no room for a file with holes";

    FakePlatform platform;
    ExposedPlugin plugin;
    EXPECT_EQ(plugin.emptyFilesUnderdir(temporary.path()), 0);
    EXPECT_FALSE(temporary.has("film"));
}

} // namespace
