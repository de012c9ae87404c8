#pragma once

#include "desktop/middleware/EventQueue.h"
#include "desktop/middleware/FolderListings.h"
#include "desktop/middleware/Volumes.h"

#include <memory>
#include <string>
#include <vector>

namespace desktop {

/// What a host sets before the plugin is loaded.
struct DesktopSettings {
    /// The folders that stand for USB sticks. They may come and go while the desktop runs.
    std::vector<std::string> sticks;
    FolderObserver observer;
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

    // For the managers of the middleware.
    EventQueue& events() { return m_events; }
    FolderListings& listings() { return *m_listings; }
    /// Safe on any thread.
    Json::Value deviceList() const;

private:
    DesktopMiddleware();

    EventQueue m_events;
    std::unique_ptr<FolderListings> m_listings;
    std::unique_ptr<Volumes> m_volumes;
};

} // namespace desktop
