#include "desktop/browsing/PanoramaFinder.h"

#include "desktop/files/VolumePresence.h"
#include "desktop/metadata/MetadataReadPool.h"

#include <fcntl.h>

#include <algorithm>
#include <system_error>
#include <utility>

namespace desktop {

namespace {

constexpr std::size_t kBatch = 4; // photos read at a time: what a larger batch has found comes too late

} // namespace

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
        try {
            readAll(catalog, cancelled);
        } catch (const std::exception& failure) { // without threads, for example
            logUnreadable(location, failure.what());
        }
        const LockGuard lock(mutex);
        *finished = true;
        changed.notify_all();
    }

    void readAll(const std::shared_ptr<MetadataCatalog>& catalog, const std::stop_token& cancelled)
    {
        const VolumePresence volume(location.volume);
        MetadataReadPool readers(catalog, cancelled, kBatch);
        bool there = true;
        for (auto photo = photos.begin(); there && photo != photos.end() && !cancelled.stop_requested(); ++photo) {
            there = readers.add(location, fd.get(), photo->name, photo->status,
                                [this, index = photo->index](const MediaMetadata& metadata) { add(index, metadata); }) ||
                    !volume.gone();
        }
    }

    void add(std::size_t index, const MediaMetadata& metadata)
    {
        const LockGuard lock(mutex);
        if (metadata.panorama) {
            panoramas.push_back(index);
        }
    }

    /// What is found within @p limit.
    Result wait(std::chrono::milliseconds limit, const std::stop_token& cancelled)
    {
        UniqueLock lock(mutex);
        const bool all = changed.wait_for(lock.native(), cancelled, limit, [this] { return finished->load(); });
        return {panoramas, all ? nullptr : finished};
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
    Result read = readUnknown(std::make_shared<Reading>(folder, std::move(unknown)), cancelled);
    result.panoramas.insert(result.panoramas.end(), read.panoramas.begin(), read.panoramas.end());
    result.moreIsKnown = std::move(read.moreIsKnown);
    return result;
}

PanoramaFinder::Result PanoramaFinder::readUnknown(const std::shared_ptr<Reading>& reading, const std::stop_token& cancelled)
try {
    auto job = std::make_unique<BackgroundJob>(
        [reading, catalog = m_catalog](const std::stop_token& jobCancelled) { reading->run(catalog, jobCancelled); });
    Result result = reading->wait(m_limit, cancelled);
    if (result.moreIsKnown != nullptr) {
        if (cancelled.stop_requested()) {
            job->cancel();
        }
        keepInBackground(reading->location.volume, std::move(job));
    }
    return result;
} catch (const std::system_error& noThread) {
    logUnreadable(reading->location, noThread.what());
    return {{}, std::make_shared<const std::atomic<bool>>(true)}; // the next listing tries again
}

void PanoramaFinder::cancel()
{
    const LockGuard lock(m_mutex);
    if (!m_jobs.empty()) {
        m_jobs.back().job->cancel();
    }
}

void PanoramaFinder::volumeRemoved(const std::string& volume)
{
    const LockGuard lock(m_mutex);
    if (!m_jobs.empty() && m_jobs.back().volume == volume) {
        m_jobs.back().job->cancel();
    }
}

// In place of the reading of an earlier folder: the user has gone on.
void PanoramaFinder::keepInBackground(const std::string& volume, std::unique_ptr<BackgroundJob> job)
{
    cancel();
    const auto ended = [](const VolumeReading& reading) { return reading.job->waitFor(std::chrono::milliseconds(0)); };
    const LockGuard lock(m_mutex);
    m_jobs.erase(std::remove_if(m_jobs.begin(), m_jobs.end(), ended), m_jobs.end());
    m_jobs.push_back({volume, std::move(job)});
}

} // namespace desktop
