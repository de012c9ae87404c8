#pragma once

#include "tests/desktop/support/Program.h"

#include <sched.h>
#include <sys/mount.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace testsupport {

/// Mounts that only this process, from now on, and the programs it starts see. Wants root.
class OwnMounts {
public:
    OwnMounts()
    {
        const bool own = unshare(CLONE_NEWNS) == 0 && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
        m_refusal = own ? "" : std::string("no mounts of its own for this user: ") + std::strerror(errno);
    }

    /// Why this machine cannot mount a file system image; empty when it can.
    const std::string& refusal() const { return m_refusal; }

    /// Mounts image file @p image on folder @p folder.
    bool mountImage(const std::string& image, const std::string& folder)
    {
        Program mount({"mount", "-o", "loop,ro", image, folder});
        const bool mounted = mount.wait() == 0;
        m_refusal = mounted ? "" : "this machine mounts no images: " + mount.errors();
        return mounted;
    }

    static void mountEmpty(const std::string& folder) { check(::mount("none", folder.c_str(), "tmpfs", 0, nullptr)); }
    static void unmount(const std::string& folder) { check(umount2(folder.c_str(), 0)); }
    static void unmountLazily(const std::string& folder) { check(umount2(folder.c_str(), MNT_DETACH)); }

private:
    static void check(int result)
    {
        if (result != 0) {
            throw std::runtime_error(std::strerror(errno));
        }
    }

    std::string m_refusal;
};

/// Makes @p image an ext4 file system with @p label, @p uuid and the content of folder @p content.
inline void makeExt4Image(const std::string& image, const std::string& label, const std::string& uuid,
                          const std::string& content)
{
    Program make({"mkfs.ext4", "-q", "-F", "-O", "^has_journal", "-L", label, "-U", uuid, "-d", content, image, "4M"});
    if (make.wait() != 0) {
        throw std::runtime_error("mkfs.ext4: " + make.errors());
    }
}

/// Makes @p image a squashfs file system, which has neither label nor UUID, with the content of folder @p content.
inline void makeSquashfsImage(const std::string& image, const std::string& content)
{
    Program make({"mksquashfs", content, image, "-quiet", "-no-progress"});
    if (make.wait() != 0) {
        throw std::runtime_error("mksquashfs: " + make.errors());
    }
}

} // namespace testsupport
