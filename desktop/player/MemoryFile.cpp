#include "desktop/player/MemoryFile.h"

#include "desktop/base/WriteAll.h"

#include <sys/mman.h>

#include <cerrno>
#include <vector>

namespace desktop {

UniqueFd memoryFile(std::string_view bytes)
{
    UniqueFd file(memfd_create("medium", MFD_CLOEXEC));
    return file && writeAll(file.get(), bytes.data(), bytes.size()) ? std::move(file) : UniqueFd();
}

UniqueFd copyInMemory(int fd, std::int64_t most)
{
    UniqueFd copy(memfd_create("medium", MFD_CLOEXEC));
    std::vector<char> buffer(256UL * 1024);
    std::int64_t copied = 0;
    ssize_t got = -1;
    while ((got = TEMP_FAILURE_RETRY(pread(fd, buffer.data(), buffer.size(), copied))) > 0) {
        copied += got;
        if (copied > most) {
            errno = EFBIG;
            return UniqueFd();
        }
        if (!writeAll(copy.get(), buffer.data(), static_cast<std::size_t>(got))) {
            return UniqueFd();
        }
    }
    return got == 0 ? std::move(copy) : UniqueFd();
}

} // namespace desktop
