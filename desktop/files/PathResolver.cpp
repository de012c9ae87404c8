#include "desktop/files/PathResolver.h"

#include "desktop/base/Log.h"
#include "desktop/text/NameEncoding.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace desktop {

namespace {

// A path that another program keeps renaming while it is walked is tried this often.
constexpr int kAttempts = 16;

UniqueFd openBeneath(int folder, const std::string& relative, int flags)
{
    open_how how = {};
    how.flags = static_cast<__u64>(flags | O_CLOEXEC);
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_MAGICLINKS;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        const long fd = syscall(SYS_openat2, folder, relative.c_str(), &how, sizeof how);
        if (fd >= 0 || errno != EAGAIN) {
            return UniqueFd(static_cast<int>(fd));
        }
    }
    return UniqueFd();
}

bool startsWith(const std::vector<std::string>& path, const std::vector<std::string>& start)
{
    return path.size() >= start.size() && std::equal(start.begin(), start.end(), path.begin());
}

std::string join(const std::vector<std::string>& names, std::size_t first)
{
    std::string path = ".";
    for (std::size_t i = first; i < names.size(); ++i) {
        path += "/" + names[i];
    }
    return path;
}

} // namespace

std::vector<std::string> splitPath(const std::string& path)
{
    std::vector<std::string> names;
    std::size_t begin = 0;
    while (begin < path.size()) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        const std::string name = path.substr(begin, end - begin);
        if (!name.empty() && name != ".") {
            names.push_back(name);
        }
        begin = end + 1;
    }
    return names;
}

std::string withoutTrailingSlash(std::string path)
{
    while (!path.empty() && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

bool liesIn(const std::string& path, const std::string& folder)
{
    return startsWith(splitPath(path), splitPath(folder));
}

PathResolver::PathResolver(const std::vector<std::string>& folders)
    : m_shared(std::make_shared<Shared>())
{
    for (const std::string& folder : folders) {
        m_shared->volumes.push_back({folder, ""});
    }
}

void PathResolver::setVolumes(std::vector<PresentVolume> volumes) const
{
    const LockGuard lock(m_shared->mutex);
    m_shared->volumes = std::move(volumes);
}

std::vector<PresentVolume> PathResolver::volumes() const
{
    const LockGuard lock(m_shared->mutex);
    return m_shared->volumes;
}

Location PathResolver::locate(const std::string& path) const
{
    const bool usable = !path.empty() && path.front() == '/' && path.find('\0') == std::string::npos;
    if (!usable) {
        return {};
    }
    const std::vector<std::string> names = splitPath(path);
    Location found;
    std::size_t depth = 0;
    for (const PresentVolume& volume : volumes()) {
        const std::vector<std::string> folder = splitPath(volume.folder);
        // Of volumes within volumes the innermost has it.
        if (startsWith(names, folder) && (!found || folder.size() > depth)) {
            found = {volume.folder, join(names, folder.size()), volume.id};
            depth = folder.size();
        }
    }
    return found;
}

UniqueFd PathResolver::open(const Location& location, int flags)
{
    if (!location) {
        errno = EXDEV;
        return UniqueFd();
    }
    const UniqueFd folder(::open(location.volume.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    return folder ? openBeneath(folder.get(), location.relative, flags) : UniqueFd();
}

void logUnreadable(const Location& location, const std::string& reason)
{
    logLine(LogLevel::Warning, "cannot read " + encodeName(location.path()) + ": " + reason);
}

std::string describeError(int error)
{
    switch (error) {
    case EXDEV:
        return "Not on a stick";
    case ENODEV:
        return "The stick has been pulled";
    case ETIMEDOUT:
        return "The stick does not answer";
    case ENOSYS:
        return "This kernel cannot keep a path beneath a folder (openat2, Linux 5.6 or later)";
    default:
        return std::strerror(error);
    }
}

} // namespace desktop
