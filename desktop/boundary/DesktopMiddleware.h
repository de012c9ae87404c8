#pragma once

#include "desktop/boundary/ShownLists.h"
#include "desktop/browsing/FolderListings.h"
#include "desktop/browsing/PhotoSort.h"
#include "desktop/grouping/Grouping.h"
#include "desktop/jobs/EventQueue.h"
#include "desktop/playback/PlayOptions.h"
#include "desktop/playback/Playback.h"
#include "desktop/playlists/Playlists.h"
#include "desktop/search/Search.h"
#include "desktop/thumbnails/Thumbnails.h"
#include "desktop/volumes/Volumes.h"
#include "desktop/workers/MediaPlayer.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace desktop {

/// Requests that run in the background and end in an event.
enum class BackgroundRequest { DirectoryChange, Search, Grouping, Thumbnails };
constexpr std::size_t kBackgroundRequests = 4;

/// Keys of the television set that the plugin tells its user interface.
enum class SetKey { UsbSource, SuperDemo };

/// What a host sets before the plugin is loaded.
struct DesktopSettings {
    /// The folders that stand for USB sticks. They may come and go while the desktop runs.
    std::vector<std::string> sticks;
    /// Whether what is mounted under /media, /run/media and /mnt is a stick, too.
    bool mountedSticks = false;
    /// Folder that keeps what has been read, for the next time; empty: nothing is kept.
    std::string cacheFolder;
    PlayerOutput playerOutput;
    /// Seconds from which on the medium that is played first plays, instead of its start or where it was left.
    std::optional<double> startAt;
    ReadObserver observer;
    /// Makes the players; null: processes of their own.
    PlayerFactory players;
    /// Called whenever the screen has been switched, on the thread that did. May be null.
    std::function<void(bool off)> screenSwitched;
    /// Called with each key of a player's window, as PlayerKey names it, on a thread of a player's. May be null.
    std::function<void(const std::string& key)> keyPressed;
    /// Called when what runs of this kind has been ended without its event, if anything did, on the command thread. May be
    /// null.
    std::function<void(BackgroundRequest kind)> requestDropped;

    /// Where the volumes come from by these settings.
    VolumeSources sources() const;
};

/// The desktop behind the platform's boundary, as the host controls it: open(), load the plugin and give it its callback,
/// startEvents(), any commands, close(), unload the plugin. Operations are called on the host's thread unless said
/// otherwise.
class DesktopMiddleware {
public:
    /// The one of the process. It is never destroyed: threads that a dead file system keeps may still look at it.
    static DesktopMiddleware& instance();

    /// Puts the sticks in. Their events gather until startEvents().
    void open(DesktopSettings settings);
    void startEvents();
    /// Stops every read, delivers the events that are due and stops all threads; no event comes after it.
    void close();

    /// The set's key @p key is pressed: its event is posted. Safe on any thread.
    void pressKey(SetKey key);
    /// A picture of what is played, @p width x @p height pixels large; one without pixels when nothing is shown. Waits for
    /// two seconds at most. Safe on any thread between open() and close().
    ScreenFrame takeScreen(int width, int height);

    // For the managers of the middleware.
    EventQueue& events() { return m_events; }
    FolderListings& listings() { return *m_listings; }
    Search& search() { return *m_search; }
    Grouping& grouping() { return *m_grouping; }
    Playlists& playlists() { return *m_playlists; }
    Thumbnails& thumbnails() { return *m_thumbnails; }
    ShownLists& shownLists() { return *m_shownLists; }
    Playback& playback() { return *m_playback; }
    PlayOptions& playOptions() { return *m_playOptions; }
    PhotoReading photoReading() const { return {m_opener, m_catalog}; }
    Json::Value deviceList() const;
    /// Safe on any thread.
    void screenSwitched(bool off) const;
    /// Where the medium that is played now begins, if the host has said so; known once.
    std::optional<double> takeStart() { return std::exchange(m_startAt, std::nullopt); }
    /// What runs of @p kind, if anything does, is ended without its event.
    void requestDropped(BackgroundRequest kind) const;

private:
    DesktopMiddleware();
    void makeParts(const DesktopSettings& settings);
    void volumeRemoved(const std::string& volume);

    EventQueue m_events;
    PathResolver m_resolver;
    std::function<void(bool off)> m_screenSwitched;
    std::optional<double> m_startAt;
    std::function<void(BackgroundRequest kind)> m_requestDropped;
    std::shared_ptr<ReadReporter> m_reporter = std::make_shared<ReadReporter>();
    LocationOpener m_opener;
    std::shared_ptr<MediaWorkers> m_workers;
    std::shared_ptr<MetadataCatalog> m_catalog;
    std::unique_ptr<FolderListings> m_listings;
    std::unique_ptr<Search> m_search;
    std::unique_ptr<Grouping> m_grouping;
    std::unique_ptr<Playlists> m_playlists;
    std::unique_ptr<Thumbnails> m_thumbnails;
    std::unique_ptr<ShownLists> m_shownLists;
    std::unique_ptr<Playback> m_playback;
    std::unique_ptr<PlayOptions> m_playOptions;
    std::unique_ptr<Volumes> m_volumes;
};

} // namespace desktop
