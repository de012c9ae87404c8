#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/files/LocationOpener.h"
#include "desktop/jobs/BackgroundJob.h"
#include "desktop/metadata/MetadataCatalog.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace desktop {

/// Finds the 360-degree photos of a folder, whatever has been asked of its files before. Photos that the index does not know
/// are read, but a listing does not wait for them longer than a limit; the rest is read in the background for the next time.
/// Safe on any thread.
class PanoramaFinder {
public:
    static constexpr std::chrono::milliseconds kLimit{1000};

    /// @p catalog may be null: no photo is one then.
    explicit PanoramaFinder(std::shared_ptr<MetadataCatalog> catalog, std::chrono::milliseconds limit = kLimit);

    /// A photo of the folder.
    struct Photo {
        std::string name; ///< bytes
        EntryStatus status;
        std::size_t index = 0; ///< what the caller knows it by
    };
    struct Result {
        std::vector<std::size_t> panoramas; ///< the indexes of those that are known to be ones
        /// Becomes true once the rest has been read too; null when there is no rest.
        std::shared_ptr<const std::atomic<bool>> moreIsKnown;
    };

    /// Looks at @p photos of @p folder, which is open; returns early when a stop of @p cancelled is requested.
    Result find(const OpenedFolder& folder, std::vector<Photo> photos, const std::stop_token& cancelled);
    /// Ends the reading in the background, of the latest folder. Returns at once.
    void cancel();
    /// Volume @p volume, a path as bytes, has been removed: the reading of it in the background ends.
    void volumeRemoved(const std::string& volume);

private:
    struct Reading;
    struct VolumeReading {
        std::string volume;
        std::unique_ptr<BackgroundJob> job;
    };

    Result readUnknown(const std::shared_ptr<Reading>& reading, const std::stop_token& cancelled);
    void keepInBackground(const std::string& volume, std::unique_ptr<BackgroundJob> job);

    const std::shared_ptr<MetadataCatalog> m_catalog;
    const std::chrono::milliseconds m_limit;
    Mutex m_mutex;
    std::vector<VolumeReading> m_jobs GUARDED_BY(m_mutex); ///< the latest last, and cancelled ones that still end
};

} // namespace desktop
