#include "desktop/middleware/Volumes.h"

#include "desktop/middleware/NameEncoding.h"

#include "platform/SocMwEvents.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>

#include <cerrno>
#include <system_error>
#include <tuple>

namespace desktop {

namespace {

constexpr int kDeviceTypeUsb = 0;

std::string parentOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

std::string displayName(const std::string& folder)
{
    return folder == "/" ? folder : encodeName(folder.substr(folder.rfind('/') + 1));
}

} // namespace

bool Volumes::Identity::operator==(const Identity& other) const
{
    return std::tie(device, inode, birth) == std::tie(other.device, other.inode, other.birth);
}

Volumes::Volumes(std::vector<std::string> folders, EventQueue& events)
    : m_events(events)
    , m_watch(inotify_init1(IN_CLOEXEC | IN_NONBLOCK))
{
    if (!m_watch) {
        throw std::system_error(errno, std::generic_category(), "cannot watch for sticks");
    }
    for (std::string& folder : folders) {
        m_volumes.push_back({std::move(folder), Identity()});
    }
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
    const std::lock_guard<std::mutex> lock(m_mutex);
    Json::Value list(Json::arrayValue);
    for (const Volume& volume : m_volumes) {
        if (volume.identity.inode != 0) {
            Json::Value device;
            device["path"] = encodeName(volume.folder);
            device["name"] = displayName(volume.folder);
            list.append(std::move(device));
        }
    }
    Json::Value devices;
    devices["devcount"] = static_cast<Json::Int>(list.size());
    devices["devlist"] = std::move(list);
    return devices;
}

Volumes::Identity Volumes::identify(const std::string& folder)
{
    struct statx status = {};
    const int ret = statx(AT_FDCWD, folder.c_str(), AT_NO_AUTOMOUNT, STATX_TYPE | STATX_INO | STATX_BTIME, &status);
    if (ret != 0 || !S_ISDIR(status.stx_mode)) {
        return {};
    }
    Identity identity;
    identity.device = (std::uint64_t{status.stx_dev_major} << 32) | status.stx_dev_minor;
    identity.inode = status.stx_ino;
    identity.birth = status.stx_btime.tv_sec * 1'000'000'000 + status.stx_btime.tv_nsec;
    return identity;
}

void Volumes::watchLoop()
{
    pollfd waits[] = {{m_watch.get(), POLLIN, 0}, {m_stop.fd(), POLLIN, 0}};
    while (true) {
        poll(waits, 2, -1);
        if (waits[1].revents != 0) {
            return;
        }
        // What happened does not matter: the folders themselves are looked at, and changes may be told in one go.
        char news[4096];
        while (read(m_watch.get(), news, sizeof news) > 0) {
        }
        refresh();
    }
}

// The nearest folder above @p folder that exists, watched from now on.
std::string Volumes::watchAbove(const std::string& folder)
{
    constexpr std::uint32_t kChanges = IN_CREATE | IN_DELETE | IN_MOVE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
    std::string above = folder;
    do {
        above = parentOf(above);
    } while (inotify_add_watch(m_watch.get(), above.c_str(), kChanges) < 0 && above != "/");
    return above;
}

void Volumes::refresh()
{
    for (Volume& volume : m_volumes) {
        // Watched before it is looked at, and again until nothing nearer has appeared meanwhile: no change is missed.
        std::string above;
        for (std::string nearer = watchAbove(volume.folder); nearer != above; nearer = watchAbove(volume.folder)) {
            above = nearer;
        }
        const Identity now = identify(volume.folder);
        if (now == volume.identity) {
            continue;
        }
        if (volume.identity.inode != 0) {
            setIdentity(volume, Identity());
            announceRemoval(volume.folder);
        }
        if (now.inode != 0) {
            setIdentity(volume, now);
            announceArrival();
        }
    }
}

void Volumes::setIdentity(Volume& volume, const Identity& identity)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    volume.identity = identity;
}

void Volumes::announceArrival()
{
    m_events.post(SOCMW_MM_EVENT_USB_DEVICE_PLUGIN);
    m_events.post(SOCMW_MM_EVENT_USB_DEVICE_MOUNT);
    announceList();
}

void Volumes::announceRemoval(const std::string& folder)
{
    Json::Value removed;
    removed["devType"] = kDeviceTypeUsb;
    removed["path"] = encodeName(folder);
    m_events.post(SOCMW_MM_EVENT_USB_DEVICE_REMOVED, std::make_shared<Json::Value>(std::move(removed)));
    announceList();
}

void Volumes::announceList()
{
    Json::Value devices = deviceList();
    devices["devType"] = kDeviceTypeUsb;
    m_events.post(SOCMW_MM_EVENT_DEVICE_LIST_UPDATE, std::make_shared<Json::Value>(std::move(devices)));
}

} // namespace desktop
