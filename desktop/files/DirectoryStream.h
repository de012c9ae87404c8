#pragma once

#include "desktop/base/UniqueFd.h"

#include <dirent.h>

#include <cstring>
#include <memory>

namespace desktop {

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

/// Reads the folder that @p folder, opened for reading, stands for; null, with errno, when it is none.
inline Directory openDirectory(UniqueFd folder)
{
    Directory directory(folder ? fdopendir(folder.get()) : nullptr);
    if (directory != nullptr) {
        folder.release();
    }
    return directory;
}

inline bool isSelfOrParent(const char* name)
{
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

} // namespace desktop
