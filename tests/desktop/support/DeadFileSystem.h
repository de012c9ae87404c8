#pragma once

#include "desktop/base/UniqueFd.h"

#include "tests/desktop/support/OwnMounts.h"

#include <fcntl.h>

namespace testsupport {

/// A file system that never answers, mounted for as long as the object lives. Whoever waits for it is let go at its end.
class DeadFileSystem {
public:
    /// Mounts it on @p folder as of type @p type.
    explicit DeadFileSystem(std::string folder, const char* type = "fuse")
        : m_folder(std::move(folder))
        , m_server(open("/dev/fuse", O_RDWR | O_CLOEXEC))
    {
        const std::string options = "fd=" + std::to_string(m_server.get()) + ",rootmode=40000,user_id=0,group_id=0";
        m_works = m_mounts.refusal().empty() && m_server &&
                  ::mount("host:folder", m_folder.c_str(), type, 0, options.c_str()) == 0;
    }
    ~DeadFileSystem()
    {
        if (m_works) {
            umount2(m_folder.c_str(), MNT_DETACH);
        }
    }
    DeadFileSystem(const DeadFileSystem&) = delete;
    DeadFileSystem& operator=(const DeadFileSystem&) = delete;

    /// Whether this machine mounts one.
    bool works() const { return m_works; }

private:
    OwnMounts m_mounts;
    std::string m_folder;
    desktop::UniqueFd m_server;
    bool m_works = false;
};

} // namespace testsupport
