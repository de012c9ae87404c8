#include "plugin/ElfFile.h"

#include <gtest/gtest.h>

namespace {

/// The library's file, held against what a process that plays files from strangers' sticks asks of it.
class Hardening : public testing::Test {
protected:
    bool hasFlag(ElfW(Sxword) tag, ElfW(Xword) flag) const { return (library.dynamic(tag).value_or(0) & flag) != 0; }

    const testsupport::ElfFile library{PLUGIN_LIBRARY};
};

TEST_F(Hardening, Addresses_AreResolvedAtOnceAndReadOnlyAfterwards)
{
    EXPECT_TRUE(library.segment(PT_GNU_RELRO).has_value()) << "link with -z relro";
    EXPECT_TRUE(hasFlag(DT_FLAGS, DF_BIND_NOW)) << "link with -z now";
    EXPECT_TRUE(hasFlag(DT_FLAGS_1, DF_1_NOW)) << "link with -z now";
}

TEST_F(Hardening, Stack_CannotBeExecuted)
{
    const auto stack = library.segment(PT_GNU_STACK);
    ASSERT_TRUE(stack.has_value()) << "without the mark the loader makes every stack executable";
    EXPECT_EQ(stack->p_flags & PF_X, 0U) << "link with -z noexecstack";
}

TEST_F(Hardening, NoSegment_IsWritableAndExecutable)
{
    for (const ElfW(Phdr) & segment : library.segments()) {
        EXPECT_NE(segment.p_flags & (PF_W | PF_X), static_cast<ElfW(Word)>(PF_W | PF_X)) << "at " << segment.p_vaddr;
    }
}

TEST_F(Hardening, Code_NeedsNoRelocation)
{
    EXPECT_FALSE(library.dynamic(DT_TEXTREL).has_value()) << "compile with -fPIC, link with -z text";
    EXPECT_FALSE(hasFlag(DT_FLAGS, DF_TEXTREL)) << "compile with -fPIC, link with -z text";
}

TEST_F(Hardening, Libraries_AreLookedForInNoPlaceOfItsOwn)
{
    EXPECT_FALSE(library.dynamic(DT_RPATH).has_value());
    EXPECT_FALSE(library.dynamic(DT_RUNPATH).has_value());
}

TEST_F(Hardening, Functions_GuardTheirStackFrames)
{
    EXPECT_EQ(library.undefinedNames().count("__stack_chk_fail"), 1U) << "compile with -fstack-protector-strong";
}

// A stick may be larger than 4 GiB or 16 TiB, and times pass 2038: no long of 32 bits may hold one.
TEST_F(Hardening, FilesAndTimes_GoThroughTheWideFunctions)
{
    using Names = std::vector<std::string>;
    const bool isNarrow = sizeof(long) == 4;
    const auto names = library.undefinedNames();
    for (const auto& wide : isNarrow ? Names{"__lstat64_time64", "readdir64", "statfs64", "__time64", "__ctime64_r"}
                                     : Names{"lstat64", "readdir64", "statfs64", "time", "ctime_r"}) {
        EXPECT_EQ(names.count(wide), 1U) << wide;
    }
    for (const auto& narrow : isNarrow ? Names{"lstat", "lstat64", "readdir", "statfs", "time", "ctime_r"}
                                       : Names{"lstat", "readdir", "statfs"}) {
        EXPECT_EQ(names.count(narrow), 0U) << narrow;
    }
}

} // namespace
