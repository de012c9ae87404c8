#pragma once

#include "desktop/base/UniqueFd.h"

#include <string>

namespace desktop {

/// A file of the user's under a name of its own until it is whole; removed unless it is kept.
class UnfinishedFile {
public:
    /// Makes it in @p folder.
    explicit UnfinishedFile(const std::string& folder);
    ~UnfinishedFile();
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    /// To be written to; negative when the file could not be made, and errno says why.
    int fd() const { return m_fd.get(); }
    /// Gives it its name @p path, in the same file system, in place of what has that name. False, with errno, when it cannot
    /// be kept.
    bool keepAs(const std::string& path);

private:
    std::string m_path;
    UniqueFd m_fd;
    bool m_made;
};

} // namespace desktop
