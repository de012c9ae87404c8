#include "desktop/metadata/MetadataReadPool.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <utility>

namespace desktop {

namespace {

constexpr std::size_t kMaxWaiting = 64;  // each holds a descriptor
constexpr off_t kHead = 32L * 1024;      // bytes of a file that most of its metadata lie in
constexpr std::size_t kRemembered = 512; // files remembered at a time: the index writes much for each time

} // namespace

MetadataReadPool::MetadataReadPool(std::shared_ptr<MetadataCatalog> catalog, std::stop_token cancelled, std::size_t batch)
    : m_catalog(std::move(catalog))
    , m_cancelled(std::move(cancelled))
    , m_batch(batch)
{
    for (std::size_t i = 0; i < kWorkerCount; ++i) {
        m_threads.emplace_back(&MetadataReadPool::readLoop, this);
    }
}

bool MetadataReadPool::add(const Location& folder, int fd, const std::string& name, const EntryStatus& entry, Done done)
{
    const UniqueFd pinned(openat(fd, name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    UniqueFd opened = openRegularFile(pinned.get());
    if (!opened) {
        logUnreadable(folder.child(name), describeError(errno));
        return false;
    }
    // The volume fetches it while others are being read.
    posix_fadvise(opened.get(), 0, kHead, POSIX_FADV_WILLNEED);
    UniqueLock lock(m_mutex);
    m_changed.wait(lock.native(), [this]() REQUIRES(m_mutex) { return m_files.size() < kMaxWaiting; });
    m_files.push_back({folder, name, entry, std::move(opened), std::move(done), {}});
    if (m_files.size() == 1) { // readers that are at work look for more by themselves
        m_changed.notify_all();
    }
    return true;
}

void MetadataReadPool::finish()
{
    {
        const LockGuard lock(m_mutex);
        m_finishing = true;
        m_changed.notify_all();
    }
    for (std::thread& thread : m_threads) {
        thread.join();
    }
    m_threads.clear();
}

void MetadataReadPool::readLoop()
{
    Read known;
    for (Files files = takeSome(); !files.empty(); files = takeSome()) {
        if (!m_cancelled.stop_requested()) {
            read(files);
        }
        if (!m_cancelled.stop_requested()) { // else it may have been broken off
            keep(files, known);
        }
        for (File& file : files) {
            file.done(std::move(file.metadata));
        }
        if (known.count >= kRemembered) {
            m_catalog->remember(std::exchange(known, {}).files);
        }
    }
    if (known.count > 0) {
        m_catalog->remember(known.files);
    }
}

// A batch; empty once there are no more.
MetadataReadPool::Files MetadataReadPool::takeSome()
{
    UniqueLock lock(m_mutex);
    m_changed.wait(lock.native(), [this]() REQUIRES(m_mutex) { return m_finishing || !m_files.empty(); });
    const auto end = m_files.begin() + static_cast<std::ptrdiff_t>(std::min(m_files.size(), m_batch));
    Files files(std::make_move_iterator(m_files.begin()), std::make_move_iterator(end));
    m_files.erase(m_files.begin(), end);
    m_changed.notify_all();
    return files;
}

void MetadataReadPool::read(Files& files)
{
    std::vector<OpenMedia> media;
    for (const File& file : files) {
        media.push_back({file.fd.get(), file.entry.type});
    }
    std::vector<MediaMetadata> metadata = m_catalog->read(media, m_cancelled);
    for (std::size_t i = 0; i < files.size(); ++i) {
        files[i].metadata = std::move(metadata[i]);
    }
}

void MetadataReadPool::keep(const Files& files, Read& known) const
{
    for (const File& file : files) {
        if (!file.metadata.error.empty()) {
            logUnreadable(file.folder.child(file.name), file.metadata.error);
        }
        if (!m_catalog->lasts(file.metadata, file.fd.get(), file.entry, file.folder.volume)) {
            continue;
        }
        if (known.files.empty() || known.files.back().folder.relative != file.folder.relative) {
            known.files.push_back({file.folder, {}});
        }
        known.files.back().files.push_back({file.name, stampOf(file.entry), file.metadata});
        ++known.count;
    }
}

} // namespace desktop
