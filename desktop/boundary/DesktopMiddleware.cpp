#include "desktop/boundary/DesktopMiddleware.h"

#include "desktop/workers/PlayerProcess.h"

#include "platform/SocMwEvents.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <future>

namespace desktop {

namespace {

constexpr std::chrono::seconds kFrameTimeout(2);

// Where Linux computers mount volumes.
constexpr const char* kMountFolders[] = {"/media", "/run/media", "/mnt"};

std::string absoluteFolder(const std::string& folder)
{
    const std::filesystem::path path = std::filesystem::absolute(folder).lexically_normal();
    return path.has_filename() ? path.string() : path.parent_path().string(); // without a trailing slash
}

} // namespace

VolumeSources DesktopSettings::sources() const
{
    VolumeSources sources;
    for (const std::string& stick : sticks) {
        const std::string folder = absoluteFolder(stick);
        if (std::find(sources.folders.begin(), sources.folders.end(), folder) == sources.folders.end()) {
            sources.folders.push_back(folder);
        }
    }
    if (mountedSticks) {
        sources.mountFolders.assign(std::begin(kMountFolders), std::end(kMountFolders));
    }
    return sources;
}

DesktopMiddleware& DesktopMiddleware::instance()
{
    static auto* const instance = new DesktopMiddleware();
    return *instance;
}

DesktopMiddleware::DesktopMiddleware()
    : m_resolver({})
    , m_opener(m_resolver, m_reporter)
{
    makeParts({});
}

void DesktopMiddleware::open(DesktopSettings settings)
{
    VolumeSources sources = settings.sources();
    m_screenSwitched = std::move(settings.screenSwitched);
    m_startAt = settings.startAt;
    m_requestDropped = std::move(settings.requestDropped);
    makeParts(settings);
    m_volumes = std::make_unique<Volumes>(std::move(sources), m_resolver, m_events,
                                          [this](const std::string& volume) { volumeRemoved(volume); });
}

void DesktopMiddleware::startEvents()
{
    m_events.start();
}

void DesktopMiddleware::close()
{
    m_listings->cancel();
    m_grouping->cancel();
    m_workers->stop(); // which the grouping may wait for
    m_grouping->stop();
    m_search->stop();
    m_volumes.reset();
    m_playOptions.reset();
    m_playback.reset();
    m_thumbnails->close();
    m_events.stop();
    m_events.setListener(nullptr);
    m_reporter->disconnect();
    m_requestDropped = nullptr;
    makeParts({}); // joins what still ends
}

void DesktopMiddleware::pressKey(SetKey key)
{
    m_events.post(key == SetKey::UsbSource ? SOCMW_MM_EVENT_SET_USB_SOURCE : SOCMW_MM_EVENT_FASTBOOT_SUPERDEMO);
}

ScreenFrame DesktopMiddleware::takeScreen(int width, int height)
{
    const auto frame = std::make_shared<std::promise<ScreenFrame>>(); // it may come later than anybody waits
    auto taken = frame->get_future();
    m_playback->takeFrame(width, height, [frame](ScreenFrame found) { frame->set_value(std::move(found)); });
    return taken.wait_for(kFrameTimeout) == std::future_status::ready ? taken.get() : ScreenFrame();
}

Json::Value DesktopMiddleware::deviceList() const
{
    return m_volumes != nullptr ? m_volumes->deviceList() : Json::Value(Json::objectValue);
}

void DesktopMiddleware::screenSwitched(bool off) const
{
    if (m_screenSwitched) {
        m_screenSwitched(off);
    }
}

void DesktopMiddleware::requestDropped(BackgroundRequest kind) const
{
    if (m_requestDropped) {
        m_requestDropped(kind);
    }
}

void DesktopMiddleware::makeParts(const DesktopSettings& settings)
{
    m_reporter = std::make_shared<ReadReporter>(settings.observer);
    m_opener = LocationOpener(m_resolver, m_reporter);
    m_workers = std::make_shared<MediaWorkers>(); // their processes start with the first file
    m_catalog = std::make_shared<MetadataCatalog>(m_workers, settings.cacheFolder);
    m_listings = std::make_unique<FolderListings>(m_opener, m_events, m_catalog);
    m_search = std::make_unique<Search>(m_opener, m_events);
    m_grouping = std::make_unique<Grouping>(m_opener, m_catalog, m_events);
    m_playlists = std::make_unique<Playlists>(m_opener, m_workers, m_catalog);
    m_thumbnails = std::make_unique<Thumbnails>(
        std::make_shared<ThumbnailMaker>(m_resolver, m_workers, settings.cacheFolder), m_events, m_reporter);
    m_shownLists = std::make_unique<ShownLists>(m_opener, *m_listings, *m_grouping, *m_playlists);
    m_playback = std::make_unique<Playback>(
        m_opener, m_events, std::make_shared<PlayPositions>(settings.cacheFolder),
        settings.players != nullptr ? settings.players : playerProcesses(settings.playerOutput), settings.keyPressed);
    m_playOptions = std::make_unique<PlayOptions>(*m_playback);
}

// On the thread that watches the volumes: whatever reads from the volume ends now.
void DesktopMiddleware::volumeRemoved(const std::string& volume)
{
    m_listings->volumeRemoved(volume);
    m_search->volumeRemoved(volume);
    m_grouping->volumeRemoved(volume);
    m_thumbnails->volumeRemoved(volume);
    m_playback->volumeRemoved(volume);
}

} // namespace desktop
