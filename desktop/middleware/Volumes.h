#pragma once

#include "desktop/middleware/EventQueue.h"
#include "desktop/middleware/UniqueFd.h"
#include "desktop/middleware/Wakeup.h"

#include <json/json.h>

#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace desktop {

/// The sticks, each a folder, and whether they are there. A folder that appears is a stick put in: events
/// SOCMW_MM_EVENT_USB_DEVICE_PLUGIN, _MOUNT and DEVICE_LIST_UPDATE; one that goes, a stick pulled:
/// SOCMW_MM_EVENT_USB_DEVICE_REMOVED and DEVICE_LIST_UPDATE.
class Volumes {
public:
    /// @p folders: absolute paths as bytes. Events go to @p events, which must outlive this object.
    Volumes(std::vector<std::string> folders, EventQueue& events);
    ~Volumes();
    Volumes(const Volumes&) = delete;
    Volumes& operator=(const Volumes&) = delete;

    /// The sticks that are there: {"devcount", "devlist": [{"path", "name"}]}. Safe on any thread.
    Json::Value deviceList() const;

private:
    /// Tells a folder from another that has taken its place.
    struct Identity {
        std::uint64_t device = 0;
        std::uint64_t inode = 0; ///< 0: no folder is there
        std::int64_t birth = 0;  ///< nanoseconds
        bool operator==(const Identity& other) const;
    };
    struct Volume {
        std::string folder;
        Identity identity;
    };

    static Identity identify(const std::string& folder);
    void watchLoop();
    std::string watchAbove(const std::string& folder);
    void refresh();
    void setIdentity(Volume& volume, const Identity& identity);
    void announceArrival();
    void announceRemoval(const std::string& folder);
    void announceList();

    EventQueue& m_events;
    mutable std::mutex m_mutex;
    std::vector<Volume> m_volumes;
    UniqueFd m_watch;
    Wakeup m_stop;
    std::thread m_thread;
};

} // namespace desktop
