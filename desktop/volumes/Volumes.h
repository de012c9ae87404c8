#pragma once

#include "desktop/base/Wakeup.h"
#include "desktop/files/PathResolver.h"
#include "desktop/jobs/EventQueue.h"
#include "desktop/volumes/FolderWatch.h"
#include "desktop/volumes/MountMonitor.h"

#include <json/json.h>

#include <cstdint>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace desktop {

/// Where sticks come from. Absolute paths as bytes, without a trailing "/".
struct StickSources {
    /// Each stands for a stick while it is there. One that something has been mounted on is a stick only while it is.
    std::vector<std::string> folders;
    /// Every device that the computer mounts below one of these is a stick, too.
    std::vector<std::string> mountFolders;
};

/// The sticks, each a folder, as they come and go. One that is put in raises SOCMW_MM_EVENT_USB_DEVICE_PLUGIN, _MOUNT and
/// DEVICE_LIST_UPDATE; one that is pulled SOCMW_MM_EVENT_USB_DEVICE_REMOVED and DEVICE_LIST_UPDATE. A folder that another
/// takes the place of, or that something is mounted over, is a stick pulled before another is put in.
class Volumes {
public:
    /// Called on the thread that watches as soon as @p stick has been pulled, before its events.
    using Pulled = std::function<void(const std::string& stick)>;

    /// Sticks that are there are put in at once. @p resolver follows the sticks. Events go to @p events, which must outlive
    /// this object.
    Volumes(StickSources sources, PathResolver resolver, EventQueue& events, Pulled pulled = nullptr);
    ~Volumes();
    Volumes(const Volumes&) = delete;
    Volumes& operator=(const Volumes&) = delete;

    /// The sticks that are there: {"devcount", "devlist": [{"path", "name"}]}; the name is the file system's label, or the
    /// folder's. Safe on any thread.
    Json::Value deviceList() const;

private:
    /// Tells a folder from another that has taken its place.
    struct Identity {
        std::uint64_t mount = 0; ///< the kernel's id of the mount
        std::uint64_t device = 0;
        std::uint64_t inode = 0; ///< 0: no folder is there
        std::int64_t birth = 0;  ///< nanoseconds
        bool isMountPoint = false;
        bool operator==(const Identity& other) const;
    };
    struct Volume {
        std::string folder;
        Identity identity;
        std::string name;
        std::string id; ///< its file system's UUID and the folder in it, or just the folder where there is no UUID
    };

    static Identity identify(const std::string& folder);
    static void describe(Volume& volume, const std::vector<Mount>& mounts);
    void watchLoop();
    void refresh();
    std::vector<Volume> find(const std::vector<Mount>& mounts);
    void addGiven(std::vector<Volume>& found);
    void addMounted(const std::vector<Mount>& mounts, std::vector<Volume>& found) const;
    void remove(const Volume& volume);
    void add(Volume volume);
    void updateResolver() const;
    void announceList();

    const StickSources m_sources;
    const PathResolver m_resolver;
    EventQueue& m_events;
    const Pulled m_pulled;
    FolderWatch m_folderWatch;
    MountMonitor m_mountMonitor;
    std::set<std::string> m_mountPoints; ///< the given folders that something has been mounted on
    mutable std::mutex m_mutex;
    std::vector<Volume> m_volumes; ///< those that are there, in the order they came; changed by one thread only
    Wakeup m_stop;
    std::thread m_thread;
};

} // namespace desktop
