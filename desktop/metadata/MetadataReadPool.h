#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/metadata/MetadataCatalog.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <stop_token>
#include <thread>

namespace desktop {

/// Reads the metadata of many media files on two threads and has the catalog remember them.
class MetadataReadPool {
public:
    /// @p batch: how many files are read at a time; a larger one takes less time in all, a smaller one tells sooner.
    MetadataReadPool(std::shared_ptr<MetadataCatalog> catalog, std::stop_token cancelled, std::size_t batch = kBatch);
    ~MetadataReadPool() { finish(); }
    MetadataReadPool(const MetadataReadPool&) = delete;
    MetadataReadPool& operator=(const MetadataReadPool&) = delete;

    /// Gets what has been read of a file, on one of the pool's threads.
    using Done = std::function<void(MediaMetadata metadata)>;

    /// Has regular file @p name of the open folder @p fd at @p folder read, and @p done called with what it says of itself.
    /// @p entry is the file's status. Waits while many others are still to be read. False, which is logged, when the file
    /// cannot be opened; @p done is not called then.
    bool add(const Location& folder, int fd, const std::string& name, const EntryStatus& entry, Done done);
    /// Waits until all have been read; what is still to be read when cancelled is left out.
    void finish();

private:
    static constexpr std::size_t kBatch = 32;

    /// One file to be read.
    struct File {
        Location folder;
        std::string name; ///< bytes
        EntryStatus entry;
        UniqueFd fd;
        Done done;
        MediaMetadata metadata;
    };

    using Files = std::vector<File>;
    /// What has been read but not yet remembered.
    struct Read {
        std::vector<LocatedFiles> files;
        std::size_t count = 0;
    };

    void readLoop();
    Files takeSome();
    void read(Files& files);
    void keep(const Files& files, Read& known) const;

    std::shared_ptr<MetadataCatalog> m_catalog;
    std::stop_token m_cancelled;
    const std::size_t m_batch;
    Mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<File> m_files GUARDED_BY(m_mutex);
    bool m_finishing GUARDED_BY(m_mutex) = false;
    std::vector<std::thread> m_threads;
};

} // namespace desktop
