#include "desktop/files/ReadObserver.h"

#include <mutex>

namespace desktop {

ReadReporter::ReadReporter(ReadObserver observer)
    : m_observer(std::move(observer))
{
}

void ReadReporter::progress(const std::string& directory, std::size_t entries) const
{
    const std::shared_lock<std::shared_mutex> lock(m_mutex);
    if (m_observer.progress) {
        m_observer.progress(directory, entries);
    }
}

void ReadReporter::failed(const std::string& path, const std::string& reason) const
{
    const std::shared_lock<std::shared_mutex> lock(m_mutex);
    if (m_observer.failed) {
        m_observer.failed(path, reason);
    }
}

void ReadReporter::described(const std::string& path, const MediaDetails& details) const
{
    const std::shared_lock<std::shared_mutex> lock(m_mutex);
    if (m_observer.described) {
        m_observer.described(path, details);
    }
}

void ReadReporter::disconnect()
{
    const std::unique_lock<std::shared_mutex> lock(m_mutex);
    m_observer = {};
}

} // namespace desktop
