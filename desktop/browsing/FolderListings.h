#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/browsing/ListingCache.h"
#include "desktop/browsing/ListingTask.h"
#include "desktop/jobs/EventQueue.h"

namespace desktop {

/// The folders that the browser shows. Paths are texts, as encodeName writes them. Operations are called on the command
/// thread unless said otherwise.
class FolderListings {
public:
    /// @p catalog has the known metadata of the files that are listed; may be null.
    FolderListings(LocationOpener opener, EventQueue& events, std::shared_ptr<MetadataCatalog> catalog = nullptr);

    /// Makes @p directory the current one and starts reading it; ends in SOCMW_MM_EVENT_FB_CHANGE_DIR_COMPLETED, with no
    /// entries when the reading fails. A change that is overtaken before its event is delivered raises none. False, and no
    /// event, when there is no such folder on a volume, or the volume does not answer for 3 seconds.
    bool change(const std::string& directory, int itemsPerPage);
    /// Stops what is being read, in the background too; it raises no event.
    void cancel();
    /// Volume @p volume, a path as bytes, has been removed: what is being read from it fails at once. Safe on any thread.
    void volumeRemoved(const std::string& volume);

    /// The current directory's listing; null until it has been read.
    ListingPointer current() const;
    /// The listing of @p directory, read now unless it is known and unchanged; null when that fails or takes too long.
    ListingPointer of(const std::string& directory);
    /// The listing of @p directory as it was read last, without looking at the stick; null when it is not known.
    ListingPointer known(const std::string& directory) const;
    /// Entries to a page, as the latest change gave it.
    int itemsPerPage() const { return m_itemsPerPage; }

    /// Describes what @p path stands for in @p info; a media file by its metadata, which may have to be read first. False,
    /// which is reported, when it is not there, on no volume, or the volume does not answer for 8 seconds. A media file that
    /// cannot be read is described without metadata, and reported.
    bool describe(const std::string& path, media_file_info_s& info) const;
    /// Forgets the listings below @p directory and what is known of the files there; false when it lies on no volume.
    bool forget(const std::string& directory);
    /// The directory of @p path, spelled as the latest change spelled it. Safe on any thread.
    std::string directoryOf(const std::string& path) const;

private:
    using Done = std::function<void(const ListingTask::Result& result)>;

    std::unique_ptr<ListingTask> makeTask(const std::string& directory, Done done) REQUIRES(m_readsMutex);
    ListingTask* runningRead(const std::string& directory) const;
    ListingTask* startPageRead(const std::string& directory);
    bool waitUntilOpened(ListingTask& task, const std::string& directory) const;
    void retireChange();
    void finishRead(const std::string& directory, const ListingTask::Result& result);
    void answer(const ListingTask::Result& result);
    void dropFinishedReads();

    LocationOpener m_opener;
    EventQueue& m_events;
    std::shared_ptr<MetadataCatalog> m_catalog;
    std::shared_ptr<PanoramaFinder> m_panoramas;                              ///< threads left behind may still use it
    std::shared_ptr<ListingCache> m_cache = std::make_shared<ListingCache>(); ///< threads left behind may still look at it
    mutable Mutex m_spellingMutex;
    std::string m_spelling GUARDED_BY(m_spellingMutex); ///< the latest change's directory, as it was asked for
    int m_itemsPerPage = 9;
    mutable Mutex m_readsMutex; ///< only the command thread, which may keep pointers to the tasks, changes what it guards
    std::unique_ptr<ListingTask> m_change GUARDED_BY(m_readsMutex); ///< the latest; null when it could not begin
    std::vector<std::unique_ptr<ListingTask>>
        m_others GUARDED_BY(m_readsMutex); ///< reads for single pages, and overtaken changes that still end
};

} // namespace desktop
