#include "desktop/player/OpenMedium.h"

#include "desktop/worker/FileSize.h"

#include <cerrno>

namespace desktop {

namespace {

std::int64_t now()
{
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
}

} // namespace

OpenMedium::OpenMedium(UniqueFd fd, std::function<void()> failed, std::function<void()> closed)
    : m_fd(std::move(fd))
    , m_size(fileSize(m_fd.get()))
    , m_failed(std::move(failed))
    , m_closed(std::move(closed))
{
}

OpenMedium::~OpenMedium()
{
    m_closed();
}

ssize_t OpenMedium::read(void* buffer, std::size_t size, std::int64_t offset)
{
    m_readingSince = now();
    const ssize_t got = TEMP_FAILURE_RETRY(pread(m_fd.get(), buffer, size, offset));
    m_readingSince = 0;
    if (got < 0) {
        fail(errno);
    } else if (got == 0 && size > 0 && offset < m_size) {
        fail(EIO);
    }
    return got;
}

void OpenMedium::fail(int error)
{
    int none = 0;
    if (m_error.compare_exchange_strong(none, error)) {
        m_failed();
    }
}

std::chrono::milliseconds OpenMedium::stuckFor() const
{
    const std::int64_t since = m_readingSince;
    return std::chrono::milliseconds(since != 0 ? now() - since : 0);
}

} // namespace desktop
