#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/base/UniqueFd.h"

#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <set>

namespace desktop {

/// An open file as everything in this process reads it. Notes what mpv takes for an ordinary end: reads that fail, and a
/// file that has become shorter. Safe on any thread.
class OpenMedium {
public:
    /// @p failed is called on the thread of the first read that fails, @p closed on the thread that lets go of the file
    /// last.
    OpenMedium(UniqueFd fd, std::function<void()> failed, std::function<void()> closed);
    ~OpenMedium();
    OpenMedium(const OpenMedium&) = delete;
    OpenMedium& operator=(const OpenMedium&) = delete;

    int fd() const { return m_fd.get(); }
    /// Bytes, as it was opened.
    std::int64_t size() const { return m_size; }
    /// As pread(2).
    ssize_t read(void* buffer, std::size_t size, std::int64_t offset);
    /// errno of the first read that failed; 0 when none has. EIO for a file that has been cut.
    int error() const { return m_error; }
    /// How long the oldest of the reads that have not come back has been under way; zero when there is none.
    std::chrono::milliseconds stuckFor() const;

private:
    using Clock = std::chrono::steady_clock;

    void fail(int error);

    const UniqueFd m_fd;
    const std::int64_t m_size;
    const std::function<void()> m_failed;
    const std::function<void()> m_closed;
    std::atomic<int> m_error{0};
    mutable Mutex m_mutex;
    std::multiset<Clock::time_point> m_reads GUARDED_BY(m_mutex); ///< when those began that have not come back
};

} // namespace desktop
