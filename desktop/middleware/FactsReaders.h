#pragma once

#include "desktop/middleware/MediaLibrary.h"

#include <condition_variable>
#include <deque>
#include <thread>

namespace desktop {

/// Reads the facts of many media files, two at a time, and has the library remember them.
class FactsReaders {
public:
    /// One file to be read.
    struct File {
        Location folder;
        std::string name; ///< bytes
        EntryFacts entry;
        UniqueFd fd;                 ///< the open file
        MediaFacts* facts = nullptr; ///< where to put what it tells
    };

    FactsReaders(std::shared_ptr<MediaLibrary> library, CancelFlag cancelled);
    ~FactsReaders() { finish(); }
    FactsReaders(const FactsReaders&) = delete;
    FactsReaders& operator=(const FactsReaders&) = delete;

    /// Has @p file read; waits while many others are still to be.
    void add(File file);
    /// Waits until all have been read, or the rest left out once cancelled.
    void finish();

private:
    void readLoop();
    std::optional<File> next();
    void read(File& file, std::vector<IndexedFile>& toRemember);

    std::shared_ptr<MediaLibrary> m_library;
    CancelFlag m_cancelled;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<File> m_files;
    bool m_finishing = false;
    std::vector<std::thread> m_threads;
};

} // namespace desktop
