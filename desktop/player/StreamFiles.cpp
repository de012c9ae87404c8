#include "desktop/player/StreamFiles.h"

#include <mpv/stream_cb.h>

#include <stdexcept>

namespace desktop {

namespace {

constexpr const char* kScheme = "stick";

/// A file that mpv has open, and where it reads.
struct Stream {
    std::shared_ptr<OpenMedium> file;
    std::int64_t offset = 0;
};

std::int64_t readStream(void* cookie, char* buffer, std::uint64_t size)
{
    auto& stream = *static_cast<Stream*>(cookie);
    const ssize_t got = stream.file->read(buffer, size, stream.offset);
    stream.offset += got > 0 ? got : 0;
    return got;
}

std::int64_t seekStream(void* cookie, std::int64_t offset)
{
    if (offset < 0) {
        return MPV_ERROR_GENERIC;
    }
    return static_cast<Stream*>(cookie)->offset = offset;
}

std::int64_t sizeOfStream(void* cookie)
{
    return static_cast<Stream*>(cookie)->file->size();
}

void closeStream(void* cookie)
{
    const std::unique_ptr<Stream> stream(static_cast<Stream*>(cookie));
}

} // namespace

void StreamFiles::attachTo(mpv_handle& mpv)
{
    if (mpv_stream_cb_add_ro(&mpv, kScheme, this, &StreamFiles::openStream) < 0) {
        throw std::runtime_error("mpv takes no streams.");
    }
}

std::string StreamFiles::add(std::shared_ptr<OpenMedium> file)
{
    const LockGuard lock(m_mutex);
    std::string name = std::string(kScheme) + "://" + std::to_string(++m_last);
    m_files.emplace(name, std::move(file));
    return name;
}

void StreamFiles::remove(const std::string& name)
{
    std::shared_ptr<OpenMedium> last; // closed without the lock
    const LockGuard lock(m_mutex);
    const auto found = m_files.find(name);
    if (found != m_files.end()) {
        last = std::move(found->second);
        m_files.erase(found);
    }
}

std::shared_ptr<OpenMedium> StreamFiles::find(const std::string& name)
{
    const LockGuard lock(m_mutex);
    const auto found = m_files.find(name);
    return found != m_files.end() ? found->second : nullptr;
}

int StreamFiles::openStream(void* files, char* name, mpv_stream_cb_info* stream)
{
    std::shared_ptr<OpenMedium> file = static_cast<StreamFiles*>(files)->find(name);
    if (file == nullptr) {
        return MPV_ERROR_LOADING_FAILED;
    }
    stream->cookie = std::make_unique<Stream>(Stream{std::move(file)}).release();
    stream->read_fn = &readStream;
    stream->seek_fn = &seekStream;
    stream->size_fn = &sizeOfStream;
    stream->close_fn = &closeStream;
    return 0;
}

} // namespace desktop
