#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/files/LocationOpener.h"
#include "desktop/jobs/BackgroundJob.h"
#include "desktop/workers/MediaPlayer.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace desktop {

/// A file that is to be played, opened together with the subtitle files beside it.
struct OpenedMedium {
    std::uint64_t number = 0;          ///< as it was asked for
    FileType kind = FILE_TYPE_UNKNOWN; ///< as it was asked for
    UniqueFd fd{};                     ///< a regular file; none when it could not be opened
    std::vector<SubtitleFile> subtitles{};
    std::string error{}; ///< why it could not be opened
};

/// Opens what is to be played, in the background: a stick that does not answer holds up nobody. Operations are called on one
/// thread at a time, and return at once.
class MediumOpener {
public:
    /// Called on a thread of the opener's; not any more once the opener is destroyed.
    using Done = std::function<void(OpenedMedium medium)>;

    /// @p patience: how long an opening may take until its volume counts as one that does not answer.
    MediumOpener(std::chrono::milliseconds patience, Done done);
    /// Waits for the call of Done that runs.
    ~MediumOpener();
    MediumOpener(const MediumOpener&) = delete;
    MediumOpener& operator=(const MediumOpener&) = delete;

    /// Opens the file at @p file, and, of a video, the subtitle files beside it; ends in a call of Done with @p number,
    /// which a file system that does not answer may delay for ever. Behind too many others of its volume it waits, and is
    /// forgotten when another of its kind comes. False, and no call, when the volume does not answer these others.
    bool open(std::uint64_t number, const Location& file, FileType kind);
    /// Opens what waits, where there is room now; to be called after each call of Done.
    void openWaiting();

private:
    using Clock = std::chrono::steady_clock;

    struct Order {
        std::uint64_t number;
        Location file;
        FileType kind;
    };
    struct Opening {
        std::string volume;
        Clock::time_point begin;
        std::shared_ptr<std::atomic<bool>> ended;
        std::unique_ptr<BackgroundJob> job;
    };
    struct Receiver {
        Mutex mutex;
        Done done GUARDED_BY(mutex); ///< null once nobody waits any more
    };

    std::vector<const Opening*> runningOn(const std::string& volume) const;
    void start(const Order& order);

    const std::chrono::milliseconds m_patience;
    std::shared_ptr<Receiver> m_receiver = std::make_shared<Receiver>(); ///< threads left behind still look at it
    std::vector<Opening> m_openings;                                     ///< those that may still run
    std::vector<Order> m_waiting;                                        ///< one of a kind at most
};

} // namespace desktop
