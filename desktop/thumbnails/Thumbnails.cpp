#include "desktop/thumbnails/Thumbnails.h"

#include "desktop/base/Log.h"

#include "platform/SocMwEvents.h"

#include <algorithm>

namespace desktop {

namespace {

constexpr int kMaxEntries = 100'000;        // each ends in an event
constexpr unsigned int kLargestSide = 8192; // pixels

bool refuse(const std::string& reason)
{
    logLine(LogLevel::Warning, "no thumbnails: " + reason);
    return false;
}

} // namespace

Thumbnails::Thumbnails(std::shared_ptr<ThumbnailMaker> maker, EventQueue& events,
                       std::shared_ptr<const ReadReporter> reporter, const ThumbnailFolders& folders)
    : m_maker(std::move(maker))
    , m_events(events)
    , m_reporter(std::move(reporter))
    , m_rangeFolder(std::make_shared<PictureFolder>(folders.range))
    , m_singleFolder(std::make_shared<PictureFolder>(folders.single))
{
}

bool Thumbnails::append(const EntryList& entries, int start, int count)
{
    if (entries == nullptr) {
        return refuse("no folder has been read");
    }
    if (start < 0 || count < 1 || count > kMaxEntries) {
        return refuse("not from " + std::to_string(start) + " on, " + std::to_string(count) + " entries");
    }
    const auto first = static_cast<std::size_t>(start);
    for (std::size_t i = first; i < first + static_cast<std::size_t>(count); ++i) {
        m_list.push_back(i < entries->size() ? (*entries)[i].path : "");
    }
    m_listIsRange = true;
    return true;
}

void Thumbnails::append(const std::string& path)
{
    m_list.push_back(path);
    m_listIsRange = false;
}

bool Thumbnails::start(unsigned int width, unsigned int height, FileType type)
{
    endRun();
    ThumbnailRequest request;
    request.paths.swap(m_list);
    if (request.paths.empty() || width == 0 || height == 0) {
        return refuse(request.paths.empty() ? "none is asked for" : "their size is nothing");
    }
    request.form.width = static_cast<int>(std::min(width, kLargestSide));
    request.form.height = static_cast<int>(std::min(height, kLargestSide));
    request.form.type = type;
    request.event = m_listIsRange ? SOCMW_MM_EVENT_THUMBNAIL_DATA_READY : SOCMW_MM_EVENT_THUMBNAIL_DATA_READY_SECOND;
    const auto& folder = m_listIsRange ? m_rangeFolder : m_singleFolder;
    folder->trim();
    auto run = std::make_unique<ThumbnailRun>(std::move(request), m_maker, folder, m_events, m_reporter);
    const LockGuard lock(m_runMutex);
    m_run = std::move(run);
    return true;
}

void Thumbnails::stop()
{
    endRun();
    m_list.clear();
}

void Thumbnails::close()
{
    stop();
    m_ended.clear();
}

void Thumbnails::volumeRemoved(const std::string& volume)
{
    const LockGuard lock(m_runMutex);
    if (m_run != nullptr) {
        m_run->volumeRemoved(volume);
    }
}

void Thumbnails::endRun()
{
    m_ended.erase(std::remove_if(m_ended.begin(), m_ended.end(), [](const auto& run) { return run->ended(); }),
                  m_ended.end());
    std::unique_ptr<ThumbnailRun> run;
    {
        const LockGuard lock(m_runMutex);
        run = std::move(m_run);
    }
    if (run != nullptr) {
        run->cancel();
        m_ended.push_back(std::move(run));
    }
}

} // namespace desktop
