#include "desktop/worker/MappedFile.h"

#include "desktop/worker/MediaError.h"

#include <sys/mman.h>
#include <sys/stat.h>

#include <algorithm>

namespace desktop {

namespace {

constexpr off_t kMax = 128L << 20; // what describes a picture stands at its beginning; the rest need not be in memory

} // namespace

MappedFile::MappedFile(int fd)
{
    struct stat status = {};
    if (fstat(fd, &status) != 0 || status.st_size <= 0) {
        throw MediaError("The file is empty.");
    }
    m_size = static_cast<std::size_t>(std::min(status.st_size, kMax));
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
