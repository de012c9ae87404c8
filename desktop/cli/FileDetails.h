#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/files/ReadObserver.h"

#include <string>

namespace desktop {

/// What the platform has found out of the file that was described last. Safe on any thread.
class FileDetails {
public:
    void set(const std::string& path, const MediaDetails& details)
    {
        const LockGuard lock(m_mutex);
        m_path = path;
        m_details = details;
    }
    /// Those of @p path; empty when another file was described last.
    MediaDetails of(const std::string& path) const
    {
        const LockGuard lock(m_mutex);
        return m_path == path ? m_details : MediaDetails();
    }

private:
    mutable Mutex m_mutex;
    std::string m_path GUARDED_BY(m_mutex);
    MediaDetails m_details GUARDED_BY(m_mutex);
};

} // namespace desktop
