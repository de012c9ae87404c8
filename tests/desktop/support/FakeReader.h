#pragma once

#include "desktop/workers/MediaMetadata.h"

#include <sys/stat.h>

#include <functional>
#include <mutex>

namespace testsupport {

/// Answers for every file what a test wants, and counts what it is asked to read.
class FakeReader : public desktop::MediaReader {
public:
    using Read = std::function<desktop::MediaMetadata(const std::string& content, FileType type)>;

    explicit FakeReader(Read reader)
        : m_read(std::move(reader))
    {
    }

    desktop::MediaMetadata read(int fd, FileType type) override
    {
        char bytes[256];
        const ssize_t got = pread(fd, bytes, sizeof bytes, 0);
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            ++m_reads;
        }
        return m_read(std::string(bytes, got > 0 ? static_cast<std::size_t>(got) : 0), type);
    }

    std::vector<desktop::MediaMetadata> readAll(const std::vector<desktop::OpenMedia>& files,
                                                const std::stop_token&) override
    {
        std::vector<desktop::MediaMetadata> metadata;
        for (const desktop::OpenMedia& file : files) {
            metadata.push_back(read(file.fd, file.type));
        }
        return metadata;
    }

    int reads() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_reads;
    }

private:
    Read m_read;
    mutable std::mutex m_mutex;
    int m_reads = 0;
};

} // namespace testsupport
