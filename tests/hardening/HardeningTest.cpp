#include "tests/hardening/ElfFile.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using testsupport::ElfFile;

/// A file of the build, by the name that its tests have.
struct BuiltFile {
    const char* name;
    const char* path;
};

// How the tests' listing shows it.
void PrintTo(const BuiltFile& file, std::ostream* out)
{
    *out << file.path;
}

constexpr BuiltFile kLibrary = {"plugin", PLUGIN_LIBRARY};
#ifdef DESKTOP_TV
constexpr BuiltFile kPrograms[] = {
    {"desktop_tv", DESKTOP_TV}, {"desktop_media_player", MEDIA_PLAYER}, {"desktop_media_worker", MEDIA_WORKER}};
#endif

std::vector<BuiltFile> allFiles()
{
    std::vector<BuiltFile> files = {kLibrary};
#ifdef DESKTOP_TV
    files.insert(files.end(), std::begin(kPrograms), std::end(kPrograms));
#endif
    return files;
}

std::string nameOf(const testing::TestParamInfo<BuiltFile>& file)
{
    return file.param.name;
}

bool hasFlag(const ElfFile& file, ElfW(Sxword) tag, ElfW(Xword) flag)
{
    return (file.dynamic(tag).value_or(0) & flag) != 0;
}

/// One of our files, held against what a process that plays files from strangers' sticks asks of it.
class Hardening : public testing::TestWithParam<BuiltFile> {
protected:
    const ElfFile file{GetParam().path};
};

TEST_P(Hardening, Addresses_AreResolvedAtOnceAndReadOnlyAfterwards)
{
    EXPECT_TRUE(file.segment(PT_GNU_RELRO).has_value()) << "link with -z relro";
    EXPECT_TRUE(hasFlag(file, DT_FLAGS, DF_BIND_NOW)) << "link with -z now";
    EXPECT_TRUE(hasFlag(file, DT_FLAGS_1, DF_1_NOW)) << "link with -z now";
}

TEST_P(Hardening, Stack_CannotBeExecuted)
{
    const auto stack = file.segment(PT_GNU_STACK);
    ASSERT_TRUE(stack.has_value()) << "without the mark the loader makes every stack executable";
    EXPECT_EQ(stack->p_flags & PF_X, 0U) << "link with -z noexecstack";
}

TEST_P(Hardening, NoSegment_IsWritableAndExecutable)
{
    for (const ElfW(Phdr) & segment : file.segments()) {
        EXPECT_NE(segment.p_flags & (PF_W | PF_X), static_cast<ElfW(Word)>(PF_W | PF_X)) << "at " << segment.p_vaddr;
    }
}

TEST_P(Hardening, Code_CanLieAtAnyAddress)
{
    EXPECT_EQ(file.type(), ET_DYN) << "compile with -fPIE or -fPIC, link a program with -pie";
    EXPECT_FALSE(file.dynamic(DT_TEXTREL).has_value()) << "compile with -fPIE or -fPIC";
    EXPECT_FALSE(hasFlag(file, DT_FLAGS, DF_TEXTREL)) << "compile with -fPIE or -fPIC";
}

TEST_P(Hardening, Libraries_AreLookedForInNoPlaceOfItsOwn)
{
    EXPECT_FALSE(file.dynamic(DT_RPATH).has_value());
    EXPECT_FALSE(file.dynamic(DT_RUNPATH).has_value());
}

TEST_P(Hardening, Functions_GuardTheirStackFrames)
{
    EXPECT_EQ(file.undefinedNames().count("__stack_chk_fail"), 1U) << "compile with -fstack-protector-strong";
}

#ifdef FORTIFIED
// The C library's checking functions end in _chk: __snprintf_chk and the like. clang calls the plain ones where it sees that
// the buffer suffices, so this looks at what gcc builds only.
TEST_P(Hardening, Buffers_AreCheckedInOptimisedBuildsOnly)
{
    const auto names = file.undefinedNames();
    const auto isCheck = [](const std::string& name) {
        const std::string end = "_chk";
        return name.size() > end.size() && name.compare(name.size() - end.size(), end.size(), end) == 0;
    };
    EXPECT_EQ(std::any_of(names.begin(), names.end(), isCheck), FORTIFIED == 1) << "compile with _FORTIFY_SOURCE=2";
}
#endif

INSTANTIATE_TEST_SUITE_P(Built, Hardening, testing::ValuesIn(allFiles()), nameOf);

// A stick may be larger than 4 GiB or 16 TiB, and times pass 2038: no long of 32 bits may hold one.
TEST(PluginLibrary, FilesAndTimes_GoThroughTheWideFunctions)
{
    using Names = std::vector<std::string>;
    const bool isNarrow = sizeof(long) == 4;
    const auto names = ElfFile(kLibrary.path).undefinedNames();
    for (const auto& wide : isNarrow ? Names{"__lstat64_time64", "readdir64", "statfs64", "__time64", "__ctime64_r"}
                                     : Names{"lstat64", "readdir64", "statfs64", "time", "ctime_r"}) {
        EXPECT_EQ(names.count(wide), 1U) << wide;
    }
    for (const auto& narrow : isNarrow ? Names{"lstat", "lstat64", "readdir", "statfs", "time", "ctime_r"}
                                       : Names{"lstat", "readdir", "statfs"}) {
        EXPECT_EQ(names.count(narrow), 0U) << narrow;
    }
}

#ifdef DESKTOP_TV
TEST(Programs, Kind_IsPositionIndependent)
{
    for (const BuiltFile& program : kPrograms) {
        EXPECT_TRUE(hasFlag(ElfFile(program.path), DT_FLAGS_1, DF_1_PIE)) << program.name << ": link with -pie";
    }
}
#endif

} // namespace
