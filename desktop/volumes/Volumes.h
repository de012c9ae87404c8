#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/base/Wakeup.h"
#include "desktop/files/PathResolver.h"
#include "desktop/jobs/EventQueue.h"
#include "desktop/volumes/FolderWatch.h"
#include "desktop/volumes/MountMonitor.h"

#include <json/json.h>

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace desktop {

/// Where volumes come from. Absolute paths as bytes, without a trailing "/".
struct VolumeSources {
    /// Each stands for a volume while it is there. One that something has been mounted on is a volume only while it is.
    std::vector<std::string> folders;
    /// Every device, and every file system of a program (FUSE), that the computer mounts below one of these is a volume,
    /// too.
    std::vector<std::string> mountFolders;
};

/// The volumes, each a folder, as they come and go. One that is added raises SOCMW_MM_EVENT_USB_DEVICE_PLUGIN, _MOUNT and
/// DEVICE_LIST_UPDATE; one that is removed SOCMW_MM_EVENT_USB_DEVICE_REMOVED and DEVICE_LIST_UPDATE. A folder that another
/// takes the place of, or that something is mounted over, is a volume removed before another is added.
class Volumes {
public:
    /// Called on the thread that watches as soon as @p volume has been removed, before its events.
    using Removed = std::function<void(const std::string& volume)>;

    /// Volumes that are there are added at once. @p resolver follows the volumes. Events go to @p events, which must outlive
    /// this object.
    Volumes(VolumeSources sources, PathResolver resolver, EventQueue& events, Removed removed = nullptr);
    ~Volumes();
    Volumes(const Volumes&) = delete;
    Volumes& operator=(const Volumes&) = delete;

    /// The volumes that are there: {"devcount", "devlist": [{"path", "name"}]}; the name is the file system's label, or the
    /// folder's. Safe on any thread.
    Json::Value deviceList() const;

private:
    /// Distinguishes a folder from another that has taken its place.
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
    std::vector<Volume> present() const;
    void updateResolver() const;
    void announceList();

    const VolumeSources m_sources;
    const PathResolver m_resolver;
    EventQueue& m_events;
    const Removed m_removed;
    FolderWatch m_folderWatch;
    MountMonitor m_mountMonitor;
    std::set<std::string> m_mountPoints; ///< the given folders that something has been mounted on
    mutable Mutex m_mutex;
    std::vector<Volume>
        m_volumes GUARDED_BY(m_mutex); ///< those that are there, in the order they came; changed by one thread only
    Wakeup m_stop;
    std::thread m_thread;
};

} // namespace desktop
