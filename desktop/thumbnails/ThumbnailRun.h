#pragma once

#include "desktop/files/ReadObserver.h"
#include "desktop/jobs/BackgroundJob.h"
#include "desktop/jobs/EventQueue.h"
#include "desktop/thumbnails/ThumbnailMaker.h"

#include <vector>

namespace desktop {

/// The pictures of one request.
struct ThumbnailRequest {
    std::vector<std::string> paths; ///< of files, as encodeName writes them; empty ones stand for no file
    ThumbnailForm form;
    int event = 0; ///< what each picture ends in, a SocMwEventId
};

/// One request at work, on threads of its own. Each path ends in one event, in the order of the paths. Operations are called
/// on the command thread unless said otherwise.
class ThumbnailRun {
public:
    /// The makers and the folder may be shared with other runs; @p events must outlive what is posted. @p reporter is told
    /// why a file has no picture, before its event.
    ThumbnailRun(ThumbnailRequest request, std::shared_ptr<ThumbnailMaker> maker, std::shared_ptr<PictureFolder> folder,
                 EventQueue& events, std::shared_ptr<const ReadReporter> reporter);
    ~ThumbnailRun();
    ThumbnailRun(const ThumbnailRun&) = delete;
    ThumbnailRun& operator=(const ThumbnailRun&) = delete;

    /// No event is delivered any more, and what is being made is cancelled. Returns at once.
    void cancel();
    /// Volume @p volume, a path as bytes, has been removed: files on it end without a picture at once. Safe on any thread.
    void volumeRemoved(const std::string& volume);
    /// Whether its threads have ended.
    bool ended() const;

private:
    struct State;

    std::shared_ptr<State> m_state;
    std::vector<std::unique_ptr<BackgroundJob>> m_jobs;
};

} // namespace desktop
