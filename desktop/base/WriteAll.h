#pragma once

#include <unistd.h>

#include <cerrno>
#include <cstddef>

namespace desktop {

/// Writes the @p size bytes at @p data to the descriptor @p fd, which is to block. False when they cannot all be written;
/// errno says why then, ENOSPC when nothing more is taken without an error.
inline bool writeAll(int fd, const void* data, std::size_t size)
{
    for (const char* rest = static_cast<const char*>(data); size > 0;) {
        const ssize_t written = TEMP_FAILURE_RETRY(write(fd, rest, size));
        if (written <= 0) {
            errno = written == 0 ? ENOSPC : errno;
            return false;
        }
        rest += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

} // namespace desktop
