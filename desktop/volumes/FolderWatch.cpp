#include "desktop/volumes/FolderWatch.h"

#include <sys/inotify.h>

#include <cerrno>
#include <system_error>

namespace desktop {

namespace {

std::string parentOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

} // namespace

FolderWatch::FolderWatch()
    : m_inotify(inotify_init1(IN_CLOEXEC | IN_NONBLOCK))
{
    if (!m_inotify) {
        throw std::system_error(errno, std::generic_category(), "cannot watch for sticks");
    }
}

void FolderWatch::clear()
{
    char events[4096];
    while (read(m_inotify.get(), events, sizeof events) > 0) {
    }
}

void FolderWatch::follow(const std::string& folder)
{
    // Again until nothing nearer has appeared meanwhile, so that no change is missed.
    std::string above;
    for (std::string nearer = watchAbove(folder); nearer != above; nearer = watchAbove(folder)) {
        above = nearer;
    }
}

// The nearest folder above @p folder that exists, watched from now on.
std::string FolderWatch::watchAbove(const std::string& folder)
{
    constexpr std::uint32_t kChanges = IN_CREATE | IN_DELETE | IN_MOVE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
    std::string above = folder;
    do {
        above = parentOf(above);
    } while (inotify_add_watch(m_inotify.get(), above.c_str(), kChanges) < 0 && above != "/");
    return above;
}

} // namespace desktop
