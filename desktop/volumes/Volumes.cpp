#include "desktop/volumes/Volumes.h"

#include "desktop/files/EntryStatus.h"
#include "desktop/text/NameEncoding.h"
#include "desktop/volumes/DeviceProbe.h"

#include "platform/SocMwEvents.h"

#include <fcntl.h>
#include <linux/stat.h>
#include <poll.h>
#include <sys/stat.h>

#include <algorithm>
#include <tuple>

namespace desktop {

namespace {

constexpr int kDeviceTypeUsb = 0;
constexpr const char* kDevices = "/dev/";

std::string folderName(const std::string& folder)
{
    return folder == "/" ? folder : lastName(folder);
}

bool isDevice(const std::string& source)
{
    return source.starts_with(kDevices);
}

// File systems of programs name their source as they like.
bool isStickMount(const Mount& mount)
{
    return isDevice(mount.source) || mount.type == "fuse" || mount.type.starts_with("fuse.");
}

bool liesBelowOneOf(const std::string& folder, const std::vector<std::string>& parents)
{
    return std::any_of(parents.begin(), parents.end(),
                       [&folder](const std::string& parent) { return folder != parent && liesIn(folder, parent); });
}

// Where @p folder lies in the file system that @p mount shows.
std::string folderInFileSystem(const std::string& folder, const Mount& mount)
{
    std::string path = mount.root == "/" ? "" : mount.root;
    const std::vector<std::string> names = splitPath(folder);
    for (std::size_t i = splitPath(mount.folder).size(); i < names.size(); ++i) {
        path += "/" + names[i];
    }
    return path.empty() ? "/" : path;
}

} // namespace

bool Volumes::Identity::operator==(const Identity& other) const
{
    return std::tie(mount, device, inode, birth) == std::tie(other.mount, other.device, other.inode, other.birth);
}

Volumes::Volumes(VolumeSources sources, PathResolver resolver, EventQueue& events, Removed removed)
    : m_sources(std::move(sources))
    , m_resolver(std::move(resolver))
    , m_events(events)
    , m_removed(std::move(removed))
{
    m_resolver.setVolumes({});
    refresh();
    m_thread = std::thread(&Volumes::watchLoop, this);
}

Volumes::~Volumes()
{
    m_stop.raise();
    m_thread.join();
}

Json::Value Volumes::deviceList() const
{
    const LockGuard lock(m_mutex);
    Json::Value list(Json::arrayValue);
    for (const Volume& volume : m_volumes) {
        Json::Value device;
        device["path"] = encodeName(volume.folder);
        device["name"] = encodeName(volume.name);
        list.append(std::move(device));
    }
    Json::Value devices;
    devices["devcount"] = static_cast<Json::Int>(list.size());
    devices["devlist"] = std::move(list);
    return devices;
}

Volumes::Identity Volumes::identify(const std::string& folder)
{
    const auto status = statusWithoutWaiting(folder, STATX_TYPE | STATX_INO | STATX_BTIME | STATX_MNT_ID);
    if (!status || !S_ISDIR(status->stx_mode)) {
        return {};
    }
    Identity identity;
    identity.mount = status->stx_mnt_id;
    identity.device = (std::uint64_t{status->stx_dev_major} << 32) | status->stx_dev_minor;
    identity.inode = status->stx_ino;
    identity.birth = status->stx_btime.tv_sec * 1'000'000'000 + status->stx_btime.tv_nsec;
    identity.isMountPoint = (status->stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
    return identity;
}

void Volumes::watchLoop()
{
    pollfd waits[] = {{m_folderWatch.fd(), POLLIN, 0}, {m_mountMonitor.fd(), POLLIN, 0}, {m_stop.fd(), POLLIN, 0}};
    while (true) {
        poll(waits, 3, -1);
        if (waits[2].revents != 0) {
            return;
        }
        // Many changes may raise one event, so what is there now is read anew.
        m_folderWatch.clear();
        m_mountMonitor.clear();
        refresh();
    }
}

void Volumes::refresh()
{
    const std::vector<Mount> mounts = readMounts();
    std::vector<Volume> found = find(mounts);
    const auto isIn = [](const std::vector<Volume>& volumes, const Volume& wanted) {
        return std::any_of(volumes.begin(), volumes.end(), [&wanted](const Volume& volume) {
            return volume.folder == wanted.folder && volume.identity == wanted.identity;
        });
    };
    for (const Volume& volume : present()) {
        if (!isIn(found, volume)) {
            remove(volume);
        }
    }
    const std::vector<Volume> known = present();
    for (Volume& volume : found) {
        if (!isIn(known, volume)) {
            describe(volume, mounts);
            add(std::move(volume));
        }
    }
}

// The volumes that are there, in the order of their sources.
std::vector<Volumes::Volume> Volumes::find(const std::vector<Mount>& mounts)
{
    std::vector<Volume> found;
    addGiven(found);
    addMounted(mounts, found);
    return found;
}

void Volumes::addGiven(std::vector<Volume>& found)
{
    for (const std::string& folder : m_sources.folders) {
        m_folderWatch.follow(folder); // before it is looked at
        const Identity identity = identify(folder);
        if (identity.isMountPoint) {
            m_mountPoints.insert(folder);
        }
        // The empty folder that a volume was mounted on is not the volume.
        const bool unmounted = !identity.isMountPoint && m_mountPoints.count(folder) > 0;
        if (identity.inode != 0 && !unmounted) {
            found.push_back({folder, identity, "", ""});
        }
    }
}

void Volumes::addMounted(const std::vector<Mount>& mounts, std::vector<Volume>& found) const
{
    for (const Mount& mount : mounts) {
        if (!isStickMount(mount) || !liesBelowOneOf(mount.folder, m_sources.mountFolders)) {
            continue;
        }
        const Identity identity = identify(mount.folder);
        const bool isOnTop = identity.inode != 0 && identity.mount == static_cast<std::uint64_t>(mount.id);
        const bool isKnown = std::any_of(found.begin(), found.end(),
                                         [&mount](const Volume& volume) { return volume.folder == mount.folder; });
        if (isOnTop && !isKnown) {
            found.push_back({mount.folder, identity, "", ""});
        }
    }
}

// Fills in the name and the id, by the device where there is one.
void Volumes::describe(Volume& volume, const std::vector<Mount>& mounts)
{
    volume.name = folderName(volume.folder);
    volume.id = volume.folder;
    const auto mount = std::find_if(mounts.begin(), mounts.end(), [&volume](const Mount& candidate) {
        return static_cast<std::uint64_t>(candidate.id) == volume.identity.mount;
    });
    if (mount == mounts.end() || !isDevice(mount->source)) {
        return;
    }
    const DeviceDescription device = probeDevice(mount->source);
    if (volume.identity.isMountPoint && !device.label.empty()) {
        volume.name = device.label;
    }
    if (!device.uuid.empty()) {
        volume.id = device.uuid + ":" + folderInFileSystem(volume.folder, *mount);
    }
}

void Volumes::remove(const Volume& volume)
{
    {
        const LockGuard lock(m_mutex);
        m_volumes.erase(std::find_if(m_volumes.begin(), m_volumes.end(),
                                     [&volume](const Volume& known) { return known.folder == volume.folder; }));
    }
    updateResolver();
    if (m_removed) {
        m_removed(volume.folder);
    }
    Json::Value removed;
    removed["devType"] = kDeviceTypeUsb;
    removed["path"] = encodeName(volume.folder);
    m_events.post(SOCMW_MM_EVENT_USB_DEVICE_REMOVED, std::make_shared<Json::Value>(std::move(removed)));
    announceList();
}

void Volumes::add(Volume volume)
{
    {
        const LockGuard lock(m_mutex);
        m_volumes.push_back(std::move(volume));
    }
    updateResolver();
    m_events.post(SOCMW_MM_EVENT_USB_DEVICE_PLUGIN);
    m_events.post(SOCMW_MM_EVENT_USB_DEVICE_MOUNT);
    announceList();
}

std::vector<Volumes::Volume> Volumes::present() const
{
    const LockGuard lock(m_mutex);
    return m_volumes;
}

void Volumes::updateResolver() const
{
    std::vector<PresentVolume> volumes;
    for (const Volume& volume : present()) {
        volumes.push_back({volume.folder, volume.id});
    }
    m_resolver.setVolumes(std::move(volumes));
}

void Volumes::announceList()
{
    Json::Value devices = deviceList();
    devices["devType"] = kDeviceTypeUsb;
    m_events.post(SOCMW_MM_EVENT_DEVICE_LIST_UPDATE, std::make_shared<Json::Value>(std::move(devices)));
}

} // namespace desktop
