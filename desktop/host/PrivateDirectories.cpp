#include "desktop/host/PrivateDirectories.h"

#include "desktop/base/ErrorText.h"
#include "desktop/base/ProgramFiles.h"
#include "desktop/base/UniqueFd.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

namespace desktop {

namespace {

namespace fs = std::filesystem;

constexpr const char* kOwnDirectory = "mtd_rwarea"; // in the root
constexpr mode_t kMode = 0755;

bool s_private = false;

void check(long result, const std::string& what)
{
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

/// One entry of the old root, to be put into the new one.
struct TopEntry {
    std::string name;
    fs::path linkTarget;        // of a symbolic link
    UniqueFd tree = UniqueFd(); // of anything else: a copy of the mounts below it
    bool isFolder = false;
};

void writeFile(const char* file, const std::string& text)
{
    std::ofstream out(file);
    out << text << std::flush;
    if (!out) {
        throw std::system_error(errno, std::generic_category(), file);
    }
}

// An ordinary user gets the right to mount inside a user namespace, in which everybody stays who they are.
void unshareAsUser()
{
    const std::string user = std::to_string(geteuid());
    const std::string group = std::to_string(getegid());
    check(unshare(CLONE_NEWUSER | CLONE_NEWNS), "user namespace");
    writeFile("/proc/self/uid_map", user + " " + user + " 1\n");
    writeFile("/proc/self/setgroups", "deny\n");
    writeFile("/proc/self/gid_map", group + " " + group + " 1\n");
}

void unshareMounts()
{
    if (unshare(CLONE_NEWNS) < 0) {
        if (errno != EPERM) {
            check(-1, "mount namespace");
        }
        unshareAsUser();
    }
    // Later mounts of the computer come in, ours do not go out.
    check(mount(nullptr, "/", nullptr, MS_REC | MS_SLAVE, nullptr), "mount propagation");
}

TopEntry topEntry(const fs::directory_entry& found)
{
    TopEntry entry;
    entry.name = found.path().filename();
    if (found.is_symlink()) {
        entry.linkTarget = fs::read_symlink(found.path());
        return entry;
    }
    entry.isFolder = found.is_directory();
    const unsigned int flags = OPEN_TREE_CLONE | OPEN_TREE_CLOEXEC | AT_RECURSIVE | AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
    entry.tree = UniqueFd(static_cast<int>(syscall(SYS_open_tree, AT_FDCWD, found.path().c_str(), flags)));
    check(entry.tree.get(), found.path());
    return entry;
}

std::vector<TopEntry> topEntries()
{
    std::vector<TopEntry> entries;
    for (const fs::directory_entry& found : fs::directory_iterator("/")) {
        if (found.path().filename() != kOwnDirectory) {
            entries.push_back(topEntry(found));
        }
    }
    return entries;
}

// Puts @p entry into the working directory.
void place(const TopEntry& entry)
{
    const char* const name = entry.name.c_str();
    if (!entry.tree) {
        check(symlink(entry.linkTarget.c_str(), name), entry.name);
        return;
    }
    if (entry.isFolder) {
        check(mkdir(name, kMode), entry.name);
    } else {
        check(UniqueFd(open(name, O_CREAT | O_WRONLY | O_CLOEXEC, kMode)).get(), entry.name);
    }
    check(syscall(SYS_move_mount, entry.tree.get(), "", AT_FDCWD, name, MOVE_MOUNT_F_EMPTY_PATH), entry.name);
}

// The new root stands on one of the old root's folders while it is filled: the copies of the mounts are already taken.
void replaceRoot(const std::vector<TopEntry>& entries, const std::string& buildFolder)
{
    check(mount("tmpfs", buildFolder.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, "mode=0755"), "tmpfs");
    try {
        check(chdir(buildFolder.c_str()), buildFolder);
        for (const TopEntry& entry : entries) {
            place(entry);
        }
        check(mkdir(kOwnDirectory, kMode), kOwnDirectory);
        check(syscall(SYS_pivot_root, ".", "."), "pivot_root");
    } catch (...) {
        umount2(buildFolder.c_str(), MNT_DETACH);
        throw;
    }
    check(umount2(".", MNT_DETACH), "old root"); // which now lies on the new one
}

std::string buildFolderAmong(const std::vector<TopEntry>& entries)
{
    for (const TopEntry& entry : entries) {
        if (entry.isFolder) {
            return "/" + entry.name;
        }
    }
    throw std::runtime_error("the root has no folder");
}

} // namespace

std::string makeDirectoriesPrivate()
{
    programFolder();         // found out while the old root is there
    std::error_code ignored; // a working directory that has been removed stays out of reach
    const fs::path workingDirectory = fs::current_path(ignored);
    try {
        unshareMounts();
        const std::vector<TopEntry> entries = topEntries();
        replaceRoot(entries, buildFolderAmong(entries));
        s_private = true;
    } catch (const std::exception& refusal) {
        fs::current_path(workingDirectory, ignored);
        return errorText(refusal);
    }
    fs::current_path(workingDirectory, ignored);
    return "";
}

bool directoriesArePrivate()
{
    return s_private;
}

} // namespace desktop
