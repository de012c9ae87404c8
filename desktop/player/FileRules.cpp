#include "desktop/player/FileRules.h"

#include "desktop/base/UniqueFd.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <cstdint>

namespace desktop {

namespace {

// The C library has no functions for these calls.

int landlockVersion()
{
    return static_cast<int>(syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION));
}

constexpr std::uint64_t kReadFile = LANDLOCK_ACCESS_FS_READ_FILE;
constexpr std::uint64_t kRead = kReadFile | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr std::uint64_t kWriteFile = LANDLOCK_ACCESS_FS_WRITE_FILE;
// Whatever the first version knows of, from EXECUTE to MAKE_SYM.
constexpr std::uint64_t kFirstVersion = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1) - 1;
constexpr std::uint64_t kLinkElsewhere = 1ULL << 13; // from version 2 on
constexpr std::uint64_t kTruncate = 1ULL << 14;      // from version 3 on

std::uint64_t accessesOf(int version)
{
    return kFirstVersion | (version >= 2 ? kLinkElsewhere : 0) | (version >= 3 ? kTruncate : 0);
}

// One that is not there needs no rule.
bool addRule(int rules, const std::string& path, std::uint64_t access)
{
    const UniqueFd place(open(path.c_str(), O_PATH | O_CLOEXEC));
    struct stat status = {};
    if (!place || fstat(place.get(), &status) != 0) {
        return true;
    }
    landlock_path_beneath_attr rule = {};
    rule.allowed_access = S_ISDIR(status.st_mode) ? access : access & (kReadFile | kWriteFile);
    rule.parent_fd = place.get();
    return syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0;
}

} // namespace

bool allowOnlyFiles(const FileRules& rules)
{
    const int version = landlockVersion();
    if (version < 1) {
        return false;
    }
    landlock_ruleset_attr attributes = {};
    attributes.handled_access_fs = accessesOf(version);
    const UniqueFd ruleset(
        static_cast<int>(syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes.handled_access_fs, 0)));
    if (!ruleset) {
        return false;
    }
    for (const std::string& path : rules.readable) {
        if (!addRule(ruleset.get(), path, kRead)) {
            return false;
        }
    }
    for (const std::string& path : rules.writable) {
        if (!addRule(ruleset.get(), path, kRead | kWriteFile)) {
            return false;
        }
    }
    return syscall(SYS_landlock_restrict_self, ruleset.get(), 0) == 0;
}

} // namespace desktop
