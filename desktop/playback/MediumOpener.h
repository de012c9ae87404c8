#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/files/LocationOpener.h"
#include "desktop/jobs/BackgroundJob.h"
#include "desktop/workers/MediaPlayer.h"

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

    explicit MediumOpener(Done done);
    /// Waits for the call of Done that runs.
    ~MediumOpener();
    MediumOpener(const MediumOpener&) = delete;
    MediumOpener& operator=(const MediumOpener&) = delete;

    /// Opens the file at @p file, and, of a video, the subtitle files beside it; ends in a call of Done with @p number,
    /// which a file system that does not answer may delay for ever. False, and no call, when too many others
    /// are delayed so on its volume.
    bool open(std::uint64_t number, const Location& file, FileType kind);

private:
    struct Opening {
        std::string volume;
        std::unique_ptr<BackgroundJob> job;
    };
    struct Receiver {
        Mutex mutex;
        Done done GUARDED_BY(mutex); ///< null once nobody waits any more
    };

    std::shared_ptr<Receiver> m_receiver = std::make_shared<Receiver>(); ///< threads left behind still look at it
    std::vector<Opening> m_openings;                                     ///< those that may still run
};

} // namespace desktop
