#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/browsing/ListingReader.h"
#include "desktop/jobs/BackgroundJob.h"

#include <chrono>
#include <condition_variable>
#include <stop_token>

namespace desktop {

/// One folder being opened and listed on a thread of its own, so that a folder that does not answer holds up nothing but
/// itself.
class ListingTask {
public:
    /// What came of it. Owned by the reading thread too, which may outlive the ListingTask.
    struct Outcome {
        std::stop_source cancelled; ///< the result is no longer wanted
        std::stop_source withdrawn; ///< nobody is to be told of it, though the listing may be
        Mutex mutex;
        std::condition_variable changed;
        bool opened GUARDED_BY(mutex) = false;   ///< there is such a folder
        bool finished GUARDED_BY(mutex) = false; ///< nothing changes below any more
        int error GUARDED_BY(mutex) = 0;
        ListingPointer listing GUARDED_BY(mutex); ///< set when finished without error
    };
    using OutcomePointer = std::shared_ptr<Outcome>;

    /// How a read of a folder ended.
    struct Result {
        ListingPointer listing;    ///< null when it failed
        int error = 0;             ///< why, as an errno value
        std::stop_token withdrawn; ///< has a stop requested once nobody is to be told any more
    };

    /// What a task works with. The reading thread may outlive the task, but never calls done then.
    struct Context {
        std::shared_ptr<PanoramaFinder> panoramas; ///< may be null
        ReadProgress progress;
        /// The listing of the folder if it has been read already in the state @p stamp.
        std::function<ListingPointer(const FolderStamp& stamp)> known;
        /// Called at the end of a folder that could be opened, on the reading thread or that of fail(); never once
        /// cancelled.
        std::function<void(const Result& result)> done;
    };

    ListingTask(OpenedFolder folder, Context context);
    /// Cancels; waits for the thread, but not for long when the file system keeps it.
    ~ListingTask() { cancel(); }
    ListingTask(const ListingTask&) = delete;
    ListingTask& operator=(const ListingTask&) = delete;

    const std::string& directory() const { return m_directory; }
    const std::string& volume() const { return m_volume; }
    /// Returns at once; when it has returned, Context::done is not called any more.
    void cancel();
    /// Nobody is told of the result any more, who has not been yet; a listing that has been read stays.
    void withdraw() { m_outcome->withdrawn.request_stop(); }
    /// Ends the read at once with errno value @p error, whatever keeps its thread; nothing when it has ended. Safe on any
    /// thread.
    void fail(int error);
    /// Waits until the folder has been opened, but no longer than @p time. Returns 0, or why it has not as an errno value.
    int waitUntilOpened(std::chrono::milliseconds time) const;
    /// Whether the read has ended, which it is given @p time for.
    bool waitFor(std::chrono::milliseconds time) const;
    bool isCancelled() const { return m_outcome->cancelled.stop_requested(); }
    bool finished() const { return waitFor(std::chrono::milliseconds(0)); }
    /// Whether the object can go without waiting.
    bool threadEnded() const { return m_job.waitFor(std::chrono::milliseconds(0)); }
    /// The listing; null while it is being read, and when that failed or was cancelled.
    ListingPointer listing() const;

private:
    std::string m_directory;
    std::string m_volume;
    std::shared_ptr<const Context> m_context;
    OutcomePointer m_outcome;
    BackgroundJob m_job; ///< last: it uses the others
};

} // namespace desktop
