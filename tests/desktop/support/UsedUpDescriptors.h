#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <vector>

namespace testsupport {

/// Leaves this process few descriptors for as long as the object lives.
class UsedUpDescriptors {
public:
    UsedUpDescriptors()
    {
        getrlimit(RLIMIT_NOFILE, &m_before);
        constexpr rlim_t kFew = 200;
        const rlimit few = {kFew, m_before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &few);
    }
    ~UsedUpDescriptors()
    {
        closeAll();
        setrlimit(RLIMIT_NOFILE, &m_before);
    }
    UsedUpDescriptors(const UsedUpDescriptors&) = delete;
    UsedUpDescriptors& operator=(const UsedUpDescriptors&) = delete;

    /// From now on @p count more can be opened.
    void leave(int count)
    {
        closeAll();
        for (int fd = open("/dev/null", O_RDONLY | O_CLOEXEC); fd >= 0; fd = open("/dev/null", O_RDONLY | O_CLOEXEC)) {
            m_used.push_back(fd);
        }
        for (; count > 0 && !m_used.empty(); --count) {
            close(m_used.back());
            m_used.pop_back();
        }
    }

private:
    void closeAll()
    {
        for (const int fd : m_used) {
            close(fd);
        }
        m_used.clear();
    }

    rlimit m_before = {};
    std::vector<int> m_used;
};

} // namespace testsupport
