#pragma once

#include "desktop/files/LocationOpener.h"
#include "desktop/jobs/StickJob.h"
#include "desktop/metadata/MediaLibrary.h"

namespace desktop {

/// Finds the files of one type below a directory. Operations are called on the command thread unless said otherwise.
class Search {
public:
    Search(LocationOpener opener, std::shared_ptr<MediaLibrary> library, EventQueue& events);

    /// Stops the search that runs and starts one for files of @p type below @p directory. What it finds comes as events
    /// SOCMW_MM_EVENT_FILTER_DATA_READY_UPDATE of up to @p itemsPerPage files, the end as SOCMW_MM_EVENT_FB_FOLDER_UPDATE.
    /// False, and no event, when there is no such directory on a stick.
    bool start(const std::string& directory, FileType type, int itemsPerPage);
    /// Stops the search that runs; it raises no further event.
    void cancel() { m_job.cancel(); }
    /// Stick @p stick has been pulled: a search of it ends. Safe on any thread.
    void lose(const std::string& stick) { m_job.lose(stick); }
    /// Cancels, and waits for all threads that can end.
    void stop() { m_job.stop(); }

private:
    LocationOpener m_opener;
    std::shared_ptr<MediaLibrary> m_library;
    StickJob m_job;
};

} // namespace desktop
