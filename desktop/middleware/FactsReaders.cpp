#include "desktop/middleware/FactsReaders.h"

#include <fcntl.h>

#include <cerrno>

namespace desktop {

namespace {

constexpr int kReaders = 2;
constexpr std::size_t kMostWaiting = 32; // each holds a descriptor
constexpr std::size_t kBatch = 128;      // files remembered at a time

} // namespace

FactsReaders::FactsReaders(std::shared_ptr<MediaLibrary> library, CancelFlag cancelled)
    : m_library(std::move(library))
    , m_cancelled(std::move(cancelled))
{
    for (int i = 0; i < kReaders; ++i) {
        m_threads.emplace_back(&FactsReaders::readLoop, this);
    }
}

void FactsReaders::add(const Location& folder, int fd, const std::string& name, const EntryFacts& entry, MediaFacts& facts)
{
    const UniqueFd pinned(openat(fd, name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    UniqueFd opened = openRegularFile(pinned.get());
    if (!opened) {
        logUnreadable(folder.child(name), describeError(errno));
        return;
    }
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [this] { return m_files.size() < kMostWaiting; });
    m_files.push_back({folder, name, entry, std::move(opened), &facts});
    m_changed.notify_all();
}

void FactsReaders::finish()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_finishing = true;
        m_changed.notify_all();
    }
    for (std::thread& thread : m_threads) {
        thread.join();
    }
    m_threads.clear();
}

// What has been read is remembered in batches, each of one folder.
void FactsReaders::readLoop()
{
    Location folder;
    std::vector<IndexedFile> toRemember;
    const auto remember = [&] {
        if (!toRemember.empty()) {
            m_library->remember(folder, toRemember);
            toRemember.clear();
        }
    };
    while (std::optional<File> file = next()) {
        const bool sameFolder = file->folder.stick == folder.stick && file->folder.relative == folder.relative;
        if (!sameFolder || toRemember.size() == kBatch) {
            remember();
            folder = file->folder;
        }
        read(*file, toRemember);
    }
    remember();
}

std::optional<FactsReaders::File> FactsReaders::next()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [this] { return m_finishing || !m_files.empty(); });
    if (m_files.empty()) {
        return std::nullopt;
    }
    File file = std::move(m_files.front());
    m_files.pop_front();
    m_changed.notify_all();
    return file;
}

void FactsReaders::read(File& file, std::vector<IndexedFile>& toRemember)
{
    if (*m_cancelled) {
        return;
    }
    *file.facts = m_library->read(file.fd.get(), file.entry);
    if (*m_cancelled) {
        return; // it may have been broken off
    }
    if (!file.facts->error.empty()) {
        logUnreadable(file.folder.child(file.name), file.facts->error);
    }
    if (m_library->lasts(*file.facts, file.fd.get(), file.entry, file.folder.stick)) {
        toRemember.push_back({file.name, stampOf(file.entry), *file.facts});
    }
}

} // namespace desktop
