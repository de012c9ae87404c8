#pragma once

#include <memory>
#include <string>
#include <vector>

struct libmnt_monitor;

namespace desktop {

/// One mount as the kernel's table of this process has it. Paths are bytes.
struct Mount {
    int id = 0;
    std::string folder;      ///< where it is mounted
    std::string source;      ///< the device, or what the file system calls its source
    std::string root;        ///< the folder of the file system that is seen there; "/" for all of it
    std::string type;        ///< of the file system
    bool propagates = false; ///< whether mounts that are made below it elsewhere come here, too
};

/// Reports that mounts have come or gone. What has is for the reader of the table to find out: several changes may be one
/// piece of news.
class MountMonitor {
public:
    /// Throws std::system_error when the kernel cannot be asked.
    MountMonitor();

    /// Readable when something has changed.
    int fd() const { return m_fd; }
    /// Makes the descriptor wait for the next change.
    void clear();

private:
    struct Unref {
        void operator()(libmnt_monitor* monitor) const;
    };

    std::unique_ptr<libmnt_monitor, Unref> m_monitor;
    int m_fd = -1;
};

/// The mounts as they are now, in the order they were made; empty when the table cannot be read.
std::vector<Mount> readMounts();

} // namespace desktop
