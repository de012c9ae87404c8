#pragma once

#include "desktop/browsing/FolderReader.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace desktop {

/// One folder being read on a thread of its own, so that a folder that does not answer holds up nothing but itself.
class FolderRead {
public:
    /// What came of it. Owned by the reading thread too, which may outlive the FolderRead.
    struct Outcome {
        std::atomic<bool> stopping{false};  ///< the reading thread is to end
        std::atomic<bool> cancelled{false}; ///< nobody wants the result any more
        std::mutex mutex;
        std::condition_variable changed;
        bool finished = false;    ///< nothing changes below any more
        bool threadEnded = false; ///< later than finished when the read was broken off
        int error = 0;
        ListingPointer listing; ///< set when finished without error
    };
    using OutcomePointer = std::shared_ptr<Outcome>;

    /// Called at the end, on the reading thread or that of fail(), the outcome's mutex held; never once cancelled.
    using Done = std::function<void(const OutcomePointer& outcome)>;

    FolderRead(FolderToRead folder, ReadProgress progress, Done done);
    /// Cancels; waits for the thread, but not for long when the file system keeps it.
    ~FolderRead();
    FolderRead(const FolderRead&) = delete;
    FolderRead& operator=(const FolderRead&) = delete;

    const std::string& directory() const { return m_directory; }
    const std::string& stick() const { return m_stick; }
    /// Returns at once; when it has returned, Done is not called any more.
    void cancel();
    /// Ends the read at once with errno value @p error, whatever keeps its thread; nothing when it has ended. Safe on any
    /// thread.
    void fail(int error);
    /// Whether the read has ended, which it is given @p time for.
    bool waitFor(std::chrono::milliseconds time) const;
    bool finished() const { return waitFor(std::chrono::milliseconds(0)); }
    /// Whether the object can go without waiting.
    bool threadEnded() const;
    /// The listing; null while it is being read, and when that failed or was cancelled.
    ListingPointer listing() const;

private:
    std::string m_directory;
    std::string m_stick;
    Done m_done;
    OutcomePointer m_outcome;
    std::thread m_thread;
};

} // namespace desktop
