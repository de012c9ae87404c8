#pragma once

#include "desktop/metadata/MediaLibrary.h"

#include <condition_variable>
#include <deque>
#include <thread>

namespace desktop {

/// Reads the facts of many media files, two at a time, and has the library remember them.
class FactsReaders {
public:
    FactsReaders(std::shared_ptr<MediaLibrary> library, CancelFlag cancelled);
    ~FactsReaders() { finish(); }
    FactsReaders(const FactsReaders&) = delete;
    FactsReaders& operator=(const FactsReaders&) = delete;

    /// Has regular file @p name, which has the facts @p entry, of the open folder @p fd at @p folder read into @p facts,
    /// which must stay until finish(). Waits while many others are still to be read.
    void add(const Location& folder, int fd, const std::string& name, const EntryFacts& entry, MediaFacts& facts);
    /// Waits until all have been read; what is still to be read when cancelled is left out.
    void finish();

private:
    /// One file to be read.
    struct File {
        Location folder;
        std::string name; ///< bytes
        EntryFacts entry;
        UniqueFd fd;
        MediaFacts* facts = nullptr;
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

    std::shared_ptr<MediaLibrary> m_library;
    CancelFlag m_cancelled;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<File> m_files;
    bool m_finishing = false;
    std::vector<std::thread> m_threads;
};

} // namespace desktop
