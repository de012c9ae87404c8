#pragma once

#include <unistd.h>

#include <cstdint>

namespace desktop {

/// The size in bytes of the open regular file @p fd, below 0 when it cannot be told. Its offset changes. Not by fstat(2),
/// for which the C library needs a call that takes paths, too.
inline std::int64_t fileSize(int fd)
{
    return lseek(fd, 0, SEEK_END);
}

} // namespace desktop
