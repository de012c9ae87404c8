#include "desktop/player/OpenMedium.h"

#include "desktop/worker/FileSize.h"

#include <cerrno>

namespace desktop {

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
    const auto begin = Clock::now();
    {
        const LockGuard lock(m_mutex);
        m_reads.insert(begin);
    }
    const ssize_t got = TEMP_FAILURE_RETRY(pread(m_fd.get(), buffer, size, offset));
    const int error = errno;
    {
        const LockGuard lock(m_mutex);
        m_reads.erase(m_reads.find(begin));
    }
    if (got < 0) {
        fail(error);
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
    const LockGuard lock(m_mutex);
    const Clock::duration time = m_reads.empty() ? Clock::duration::zero() : Clock::now() - *m_reads.begin();
    return std::chrono::duration_cast<std::chrono::milliseconds>(time);
}

} // namespace desktop
