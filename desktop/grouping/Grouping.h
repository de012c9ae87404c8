#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/files/LocationOpener.h"
#include "desktop/files/Pages.h"
#include "desktop/grouping/Groups.h"
#include "desktop/jobs/VolumeJob.h"
#include "desktop/metadata/MetadataCatalog.h"

namespace desktop {

/// Groups the media below a directory by their tags or dates, and lists the groups. Operations are called on the command
/// thread unless said otherwise.
class Grouping {
public:
    Grouping(LocationOpener opener, std::shared_ptr<MetadataCatalog> catalog, EventQueue& events);

    /// Drops the groups there are and starts grouping what is below @p directory by @p type; ends in
    /// SOCMW_MM_EVENT_GROUP_COMPLETED, with no keys when the volume is removed. False, and no event, when there is no such
    /// directory on a volume or no such type of group.
    bool start(const std::string& directory, GroupFileType type);
    /// Stops the grouping that runs; it raises no event.
    void cancel() { m_job.cancel(); }
    /// Volume @p volume has been removed: a grouping of it ends. Safe on any thread.
    void volumeRemoved(const std::string& volume) { m_job.volumeRemoved(volume); }
    /// Cancels, and waits for all threads that can end.
    void stop() { m_job.stop(); }

    /// The first @p number files of group @p key, all of them when below 1; nothing when there is no such group.
    std::optional<std::vector<MediaEntry>> list(const std::string& key, int number, GroupOrder order);
    /// Page @p page, from 0, of group @p key: pages have the length and the order that the latest list asked for.
    std::optional<std::vector<FolderFileInfo_s>> page(const std::string& key, int page) const;
    /// The order that pages have.
    GroupOrder order() const { return m_order; }
    /// All files of group @p key; null when there is no such group.
    EntryList entries(const std::string& key, GroupOrder order) const;

private:
    /// Where a grouping leaves what it has made.
    struct Result {
        Mutex mutex;
        std::shared_ptr<const Groups> groups GUARDED_BY(mutex); ///< null until then
    };

    std::optional<std::vector<MediaEntry>> group(const std::string& key, GroupOrder order) const;

    LocationOpener m_opener;
    std::shared_ptr<MetadataCatalog> m_catalog;
    std::shared_ptr<Result> m_result = std::make_shared<Result>();
    int m_number = 9;
    GroupOrder m_order = GroupOrder::AsWalked;
    VolumeJob m_job;
};

} // namespace desktop
