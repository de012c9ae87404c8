#pragma once

#include "desktop/base/UniqueFd.h"

#include <string>

namespace desktop {

/// Reports that something has appeared or gone where a folder is or should be.
class FolderWatch {
public:
    /// Throws std::system_error when the kernel gives no watch.
    FolderWatch();

    /// Readable when something has changed.
    int fd() const { return m_inotify.get(); }
    /// Makes the descriptor wait for the next change.
    void clear();
    /// Watches the way down to @p folder, an absolute path, as far as it exists; to be called again after a change.
    void follow(const std::string& folder);

private:
    std::string watchAbove(const std::string& folder);

    UniqueFd m_inotify;
};

} // namespace desktop
