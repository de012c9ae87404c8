#pragma once

#include <cstdint>

struct stat;

namespace desktop {

/// The state a folder was in; a folder whose stamp is another has been changed or replaced.
struct FolderStamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t modified = 0; ///< nanoseconds
    std::int64_t changed = 0;  ///< nanoseconds

    FolderStamp() = default;
    explicit FolderStamp(const struct stat& status);
    bool operator==(const FolderStamp& other) const = default;
};

} // namespace desktop
