#include "desktop/browsing/PanoramaFinder.h"

#include "desktop/files/VolumePresence.h"
#include "desktop/metadata/MetadataReadPool.h"

#include <fcntl.h>

#include <algorithm>
#include <utility>

namespace desktop {

/// Photos being read; shared by the job and whoever waits for it.
struct PanoramaFinder::Reading {
    Reading(const OpenedFolder& folder, std::vector<Photo> unknown)
        : location(folder.location)
        , fd(fcntl(folder.fd.get(), F_DUPFD_CLOEXEC, 0))
        , photos(std::move(unknown))
    {
    }

    const Location location;
    const UniqueFd fd;
    const std::vector<Photo> photos;
    const std::shared_ptr<std::atomic<bool>> finished = std::make_shared<std::atomic<bool>>(false);
    Mutex mutex;
    std::condition_variable_any changed;
    std::vector<std::size_t> panoramas GUARDED_BY(mutex);

    void run(const std::shared_ptr<MetadataCatalog>& catalog, const std::stop_token& cancelled)
    {
        {
            const VolumePresence volume(location.volume);
            MetadataReadPool readers(catalog, cancelled);
            bool there = true;
            for (auto photo = photos.begin(); there && photo != photos.end() && !cancelled.stop_requested(); ++photo) {
                there = readers.add(location, fd.get(), photo->name, photo->status,
                                    [this, index = photo->index](const MediaMetadata& metadata) { add(index, metadata); }) ||
                        !volume.gone();
            }
        }
        const LockGuard lock(mutex);
        *finished = true;
        changed.notify_all();
    }

    void add(std::size_t index, const MediaMetadata& metadata)
    {
        const LockGuard lock(mutex);
        if (metadata.panorama) {
            panoramas.push_back(index);
        }
    }

    /// Those found within @p limit.
    std::vector<std::size_t> wait(std::chrono::milliseconds limit, const std::stop_token& cancelled)
    {
        UniqueLock lock(mutex);
        changed.wait_for(lock.native(), cancelled, limit, [this] { return finished->load(); });
        return panoramas;
    }
};

PanoramaFinder::PanoramaFinder(std::shared_ptr<MetadataCatalog> catalog, std::chrono::milliseconds limit)
    : m_catalog(std::move(catalog))
    , m_limit(limit)
{
}

PanoramaFinder::Result PanoramaFinder::find(const OpenedFolder& folder, std::vector<Photo> photos,
                                            const std::stop_token& cancelled)
{
    Result result;
    if (m_catalog == nullptr || photos.empty()) {
        return result;
    }
    const KnownFiles known = m_catalog->known(folder.location);
    std::vector<Photo> unknown;
    for (Photo& photo : photos) {
        const MediaMetadata* const metadata = known.find(photo.name, stampOf(photo.status));
        if (metadata == nullptr) {
            unknown.push_back(std::move(photo));
        } else if (metadata->panorama) {
            result.panoramas.push_back(photo.index);
        }
    }
    if (unknown.empty()) {
        return result;
    }
    const auto reading = std::make_shared<Reading>(folder, std::move(unknown));
    auto job = std::make_unique<BackgroundJob>(
        [reading, catalog = m_catalog](const std::stop_token& jobCancelled) { reading->run(catalog, jobCancelled); });
    const std::vector<std::size_t> found = reading->wait(m_limit, cancelled);
    result.panoramas.insert(result.panoramas.end(), found.begin(), found.end());
    if (!*reading->finished) {
        result.moreIsKnown = reading->finished;
        if (cancelled.stop_requested()) {
            job->cancel();
        }
        keepInBackground(std::move(job));
    }
    return result;
}

void PanoramaFinder::cancel()
{
    const LockGuard lock(m_mutex);
    if (!m_jobs.empty()) {
        m_jobs.back()->cancel();
    }
}

// In place of the reading of an earlier folder: the user has gone on.
void PanoramaFinder::keepInBackground(std::unique_ptr<BackgroundJob> job)
{
    const auto ended = [](const std::unique_ptr<BackgroundJob>& one) { return one->waitFor(std::chrono::milliseconds(0)); };
    const LockGuard lock(m_mutex);
    if (!m_jobs.empty()) {
        m_jobs.back()->cancel();
    }
    m_jobs.erase(std::remove_if(m_jobs.begin(), m_jobs.end(), ended), m_jobs.end());
    m_jobs.push_back(std::move(job));
}

} // namespace desktop
