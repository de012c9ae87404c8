#include "desktop/worker/MappedFile.h"

#include "desktop/worker/FileSize.h"
#include "desktop/worker/MediaError.h"

#include <sys/mman.h>

#include <algorithm>

namespace desktop {

namespace {

constexpr std::int64_t kMax = 128 << 20; // what describes a picture stands at its beginning; the rest need not be in memory

} // namespace

MappedFile::MappedFile(int fd)
{
    const std::int64_t size = fileSize(fd);
    if (size <= 0) {
        throw MediaError("The file is empty.");
    }
    m_size = static_cast<std::size_t>(std::min(size, kMax));
    void* const data = mmap(nullptr, m_size, PROT_READ, MAP_PRIVATE, fd, 0);
    if (data == MAP_FAILED) {
        throw MediaError("The file cannot be brought into memory.");
    }
    m_data = static_cast<unsigned char*>(data);
}

MappedFile::~MappedFile()
{
    munmap(m_data, m_size);
}

} // namespace desktop
