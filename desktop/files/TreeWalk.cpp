#include "desktop/files/TreeWalk.h"

#include "desktop/text/NameEncoding.h"
#include "desktop/text/NaturalOrder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

namespace desktop {

namespace {

constexpr std::chrono::milliseconds kStickInterval(200);
constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;

// The kind of an entry; of file systems that do not list it, asked for.
unsigned char kindOf(int folder, const dirent& entry)
{
    struct stat status = {};
    if (entry.d_type != DT_UNKNOWN || fstatat(folder, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
        return entry.d_type;
    }
    return static_cast<unsigned char>(IFTODT(status.st_mode));
}

bool hasGone(int error)
{
    return error == ENOENT || error == ENOTDIR || error == ELOOP; // or something else has taken its place
}

} // namespace

TreeWalk::TreeWalk(Location root, std::stop_token cancelled, Wants wants, Visit visit)
    : m_location(std::move(root))
    , m_cancelled(std::move(cancelled))
    , m_wants(std::move(wants))
    , m_visit(std::move(visit))
    , m_volume(m_location.volume)
    , m_presenceTimer(kStickInterval)
{
}

int TreeWalk::run()
{
    Directory root = openDirectory(PathResolver::open(m_location, O_RDONLY | O_DIRECTORY | O_NONBLOCK));
    if (root == nullptr) {
        return errno;
    }
    walkInto(std::move(root));
    while (!m_steps.empty() && !m_cancelled.stop_requested()) {
        if (m_presenceTimer.due() && m_volume.gone()) {
            return ENODEV;
        }
        if (m_steps.back().pending.empty()) {
            leaveFolder();
        } else {
            nextFolder();
        }
    }
    if (m_cancelled.stop_requested()) {
        return ECANCELED;
    }
    return m_volume.gone() ? ENODEV : 0; // what has gone reads as empty folders
}

void TreeWalk::nextFolder()
{
    Step& step = m_steps.back();
    const std::string name = std::move(step.pending.back());
    step.pending.pop_back();
    m_location.relative.resize(step.pathLength);
    m_location.relative += "/" + name;
    Directory folder = openDirectory(UniqueFd(openat(dirfd(m_current.get()), name.c_str(), kFolderFlags)));
    if (folder != nullptr) {
        walkInto(std::move(folder));
    } else if (!hasGone(errno)) {
        note(errno);
    }
}

void TreeWalk::leaveFolder()
{
    m_steps.pop_back();
    if (m_steps.empty()) {
        return;
    }
    Step& above = m_steps.back();
    m_location.relative.resize(above.pathLength);
    m_current = reopen(above);
    if (m_current == nullptr) {
        note(errno);
        above.pending.clear();
    }
}

void TreeWalk::walkInto(Directory folder)
{
    struct stat status = {};
    if (fstat(dirfd(folder.get()), &status) != 0 || isOnTheWay(status)) {
        note(ELOOP); // a damaged file system may lead back
        return;
    }
    std::vector<std::string> files;
    std::vector<std::string> folders;
    const int error = readEntries(folder.get(), files, folders);
    ++m_totals.folders;
    if (error != 0) {
        note(error);
    }
    if (m_cancelled.stop_requested()) {
        return;
    }
    sortNaturally(files, encodeName);
    m_visit({dirfd(folder.get()), m_location, files}, m_totals);
    if (!folders.empty()) {
        sortNaturally(folders, encodeName);
        std::reverse(folders.begin(), folders.end());
        m_steps.push_back({status.st_dev, status.st_ino, m_location.relative.size(), std::move(folders)});
        m_current = std::move(folder);
    }
}

int TreeWalk::readEntries(DIR* folder, std::vector<std::string>& files, std::vector<std::string>& folders)
{
    while (!m_cancelled.stop_requested()) {
        errno = 0;
        const dirent* entry = readdir(folder);
        if (entry == nullptr) {
            return errno;
        }
        if (isSelfOrParent(entry->d_name)) {
            continue;
        }
        ++m_totals.entries;
        const unsigned char kind = kindOf(dirfd(folder), *entry);
        if (kind == DT_DIR) {
            folders.emplace_back(entry->d_name);
        } else if (kind == DT_REG && m_wants(entry->d_name)) {
            files.emplace_back(entry->d_name);
        }
    }
    return 0;
}

// Upwards from the folder that has been left, as long as that is still where it was; else from the volume's folder down.
Directory TreeWalk::reopen(const Step& step) const
{
    const auto isTheOne = [&step](const Directory& folder) {
        struct stat status = {};
        return folder != nullptr && fstat(dirfd(folder.get()), &status) == 0 && status.st_dev == step.device &&
               status.st_ino == step.inode;
    };
    if (m_current != nullptr) {
        Directory above = openDirectory(UniqueFd(openat(dirfd(m_current.get()), "..", kFolderFlags)));
        if (isTheOne(above)) {
            return above;
        }
    }
    Directory again = openDirectory(PathResolver::open(m_location, O_RDONLY | O_DIRECTORY | O_NONBLOCK));
    if (isTheOne(again)) {
        return again;
    }
    errno = ESTALE;
    return nullptr;
}

bool TreeWalk::isOnTheWay(const struct stat& folder) const
{
    return std::any_of(m_steps.begin(), m_steps.end(),
                       [&folder](const Step& step) { return step.device == folder.st_dev && step.inode == folder.st_ino; });
}

void TreeWalk::note(int error)
{
    ++m_totals.unreadable;
    logUnreadable(m_location, describeError(error));
}

} // namespace desktop
