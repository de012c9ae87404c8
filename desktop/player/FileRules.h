#pragma once

#include <string>
#include <vector>

namespace desktop {

/// What the process may still do beneath folders, or with files, by their paths. Those that are not there are left out.
struct FileRules {
    std::vector<std::string> readable;
    std::vector<std::string> writable; ///< read and written, nothing made or removed
};

/// From now on this thread, and those that it starts, open files only by @p rules. False when the kernel cannot hold that.
bool allowOnlyFiles(const FileRules& rules);

} // namespace desktop
