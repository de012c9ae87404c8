#pragma once

#include "desktop/files/LocationOpener.h"
#include "desktop/jobs/VolumeJob.h"

#include "platform/SocMwTypes.h"

namespace desktop {

/// Finds the files of one type below a directory. Operations are called on the command thread unless said otherwise.
class Search {
public:
    Search(LocationOpener opener, EventQueue& events);

    /// Stops the search that runs and starts one for files of @p type below @p directory. What it finds comes as events
    /// SOCMW_MM_EVENT_FILTER_DATA_READY_UPDATE of up to @p itemsPerPage files, the end as SOCMW_MM_EVENT_FB_FOLDER_UPDATE.
    /// False, and no event, when there is no such directory on a volume.
    bool start(const std::string& directory, FileType type, int itemsPerPage);
    /// Stops the search that runs; it raises no further event.
    void cancel() { m_job.cancel(); }
    /// Volume @p volume has been removed: a search of it ends. Safe on any thread.
    void volumeRemoved(const std::string& volume) { m_job.volumeRemoved(volume); }
    /// Cancels, and waits for all threads that can end.
    void stop() { m_job.stop(); }

private:
    LocationOpener m_opener;
    VolumeJob m_job;
};

} // namespace desktop
