#include "desktop/files/EntryStatus.h"

#include "desktop/base/FileTime.h"
#include "desktop/files/MediaTypes.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace desktop {

namespace {

constexpr unsigned int kFields = STATX_TYPE | STATX_SIZE | STATX_MTIME | STATX_BTIME | STATX_CTIME;

std::time_t creationTime(const struct statx& status)
{
    const bool born = (status.stx_mask & STATX_BTIME) != 0 && status.stx_btime.tv_sec > 0;
    return static_cast<std::time_t>(born ? status.stx_btime.tv_sec : status.stx_ctime.tv_sec);
}

bool look(int folder, const std::string& name, struct statx& status)
{
    return statx(folder, name.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, kFields, &status) == 0;
}

EntryStatus regularFileStatus(const std::string& name, const struct statx& status, int pinned)
{
    const FileType type = regularFileType(name, status.stx_size, pinned);
    return {type, status.stx_size, nanoseconds(status.stx_mtime), creationTime(status)};
}

EntryStatus plainFileStatus(int folder, const std::string& name, const struct statx& status)
{
    // Most files need no descriptor: their extension says it all.
    const bool needed = status.stx_size > 0 && typeByExtension(name) == FILE_TYPE_UNKNOWN;
    const UniqueFd pinned(needed ? openat(folder, name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC) : -1);
    if (needed && !pinned) {
        return {};
    }
    return regularFileStatus(name, status, pinned.get());
}

} // namespace

std::optional<EntryStatus> inspectFile(int folder, const std::string& name)
{
    struct statx status = {};
    if (!look(folder, name, status)) {
        return errno == ENOENT ? std::nullopt : std::optional<EntryStatus>(EntryStatus());
    }
    return S_ISREG(status.stx_mode) ? std::optional<EntryStatus>(plainFileStatus(folder, name, status)) : std::nullopt;
}

std::optional<EntryStatus> inspectPinned(int pinned, const std::string& name)
{
    struct statx status = {};
    if (statx(pinned, "", AT_EMPTY_PATH, kFields, &status) != 0) {
        return std::nullopt;
    }
    if (S_ISDIR(status.stx_mode)) {
        return EntryStatus{FILE_TYPE_FOLDER, 0, 0, creationTime(status)};
    }
    if (!S_ISREG(status.stx_mode)) {
        return EntryStatus();
    }
    return regularFileStatus(name, status, pinned);
}

std::optional<struct statx> statusWithoutWaiting(const std::string& path, unsigned int fields)
{
    struct statx status = {};
    const int ret = statx(AT_FDCWD, path.c_str(), AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC, fields, &status);
    return ret == 0 ? std::optional<struct statx>(status) : std::nullopt;
}

UniqueFd openRegularFile(int pinned)
{
    struct stat status = {};
    if (pinned < 0 || fstat(pinned, &status) != 0) { // errno says already why there is no descriptor
        return UniqueFd();
    }
    if (!S_ISREG(status.st_mode)) {
        errno = EINVAL;
        return UniqueFd();
    }
    // By its descriptor, so that what is opened is what was looked at.
    const std::string self = "/proc/self/fd/" + std::to_string(pinned);
    return UniqueFd(open(self.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

FileType regularFileType(const std::string& name, std::uint64_t size, int pinned)
{
    const FileType byName = typeByExtension(name);
    if (byName != FILE_TYPE_UNKNOWN) {
        return byName;
    }
    if (size == 0) {
        return FILE_TYPE_OTHER;
    }
    const UniqueFd file = openRegularFile(pinned);
    std::array<char, kContentBytes> bytes = {};
    const ssize_t got = file ? pread(file.get(), bytes.data(), bytes.size(), 0) : -1;
    return got < 0 ? FILE_TYPE_UNKNOWN : typeByContent({bytes.data(), static_cast<std::size_t>(got)});
}

EntryInspector::EntryInspector(int folder, Location location)
    : m_folder(folder)
    , m_location(std::move(location))
{
    Location above = m_location.root();
    const auto remember = [this, &above] {
        const UniqueFd fd = PathResolver::open(above, O_PATH | O_DIRECTORY);
        struct stat status = {};
        if (fd && fstat(fd.get(), &status) == 0) {
            m_path.push_back(status);
        }
    };
    remember();
    for (const std::string& name : splitPath(m_location.relative)) {
        above = above.child(name);
        remember();
    }
}

std::optional<EntryStatus> EntryInspector::inspect(const std::string& name) const
{
    struct statx status = {};
    if (!look(m_folder, name, status)) {
        // One damaged entry must not hide the others: it is shown as unreadable.
        return errno == ENOENT ? std::nullopt : std::optional<EntryStatus>(EntryStatus());
    }
    const std::time_t created = creationTime(status);
    if (S_ISDIR(status.stx_mode)) {
        return EntryStatus{FILE_TYPE_FOLDER, 0, 0, created};
    }
    if (S_ISREG(status.stx_mode)) {
        return plainFileStatus(m_folder, name, status);
    }
    return S_ISLNK(status.stx_mode) ? followLink(name, created) : EntryStatus{FILE_TYPE_UNKNOWN, 0, 0, created};
}

EntryStatus EntryInspector::followLink(const std::string& name, std::time_t created) const
{
    const UniqueFd target = PathResolver::open(m_location.child(name), O_PATH);
    struct stat status = {};
    const bool found = target && fstat(target.get(), &status) == 0;
    if (found && S_ISDIR(status.st_mode) && !leadsBack(status)) {
        return {FILE_TYPE_FOLDER, 0, 0, created};
    }
    if (found && S_ISREG(status.st_mode)) {
        const auto size = static_cast<std::uint64_t>(status.st_size);
        return {regularFileType(name, size, target.get()), size, nanoseconds(status.st_mtim), created};
    }
    return {FILE_TYPE_UNKNOWN, 0, 0, created};
}

bool EntryInspector::leadsBack(const struct stat& target) const
{
    return std::any_of(m_path.begin(), m_path.end(), [&target](const struct stat& folder) {
        return folder.st_dev == target.st_dev && folder.st_ino == target.st_ino;
    });
}

} // namespace desktop
