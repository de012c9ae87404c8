#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/files/Pages.h"
#include "desktop/thumbnails/ThumbnailRun.h"

namespace desktop {

/// The two folders that the plugin makes and empties for pictures.
struct ThumbnailFolders {
    std::string range = "/mtd_rwarea/apdat/Thumbnaildata/Mass";
    std::string single = "/mtd_rwarea/apdat/Thumbnaildata/Sing";
};

/// Makes the pictures that are asked for: entries are appended, then the making is started. A range of the current folder
/// ends in events SOCMW_MM_EVENT_THUMBNAIL_DATA_READY, single files in SOCMW_MM_EVENT_THUMBNAIL_DATA_READY_SECOND, in order,
/// exactly one for each entry. Operations are called on the command thread unless said otherwise.
class Thumbnails {
public:
    /// @p reporter is told why a file has no picture, before its event.
    Thumbnails(std::shared_ptr<ThumbnailMaker> maker, EventQueue& events, std::shared_ptr<const ReadReporter> reporter,
               const ThumbnailFolders& folders = {});

    /// Appends @p count of @p entries, the current folder's, from @p start. Those beyond its end have no picture. False,
    /// with a log line, for a range that is none or when @p entries is null.
    bool append(const EntryList& entries, int start, int count);
    void append(const std::string& path);
    /// Makes what has been appended since the last start. An earlier request ends without further events. False, with a log
    /// line, when there is nothing to make or no size to make it in.
    bool start(unsigned int width, unsigned int height, FileType type);
    /// Ends the request that runs, without further events, and empties the list.
    void stop();
    /// Stops, and waits for all threads that can end.
    void close();
    /// Volume @p volume, a path as bytes, has been removed. Safe on any thread.
    void volumeRemoved(const std::string& volume);

private:
    void endRun();

    const std::shared_ptr<ThumbnailMaker> m_maker;
    EventQueue& m_events;
    const std::shared_ptr<const ReadReporter> m_reporter;
    const std::shared_ptr<PictureFolder> m_rangeFolder;
    const std::shared_ptr<PictureFolder> m_singleFolder;
    std::vector<std::string> m_list;
    bool m_listIsRange = false;
    Mutex m_runMutex; ///< for volumeRemoved(); only the command thread changes what it guards
    std::unique_ptr<ThumbnailRun> m_run GUARDED_BY(m_runMutex); ///< the latest
    std::vector<std::unique_ptr<ThumbnailRun>> m_ended;         ///< cancelled ones whose threads still end
};

} // namespace desktop
