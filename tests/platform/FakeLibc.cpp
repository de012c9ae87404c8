#include "platform/Recording.h"

#include <cerrno>
#include <cstdlib>
#include <dirent.h>
#include <dlfcn.h>
#include <string>
#include <sys/vfs.h>
#include <unistd.h>

// The libc calls that reach outside stand in front of the C library's own. Only the plugin's fixed places are faked: every
// other path goes to the machine, so that test directories are real.

namespace {

template <typename Function>
Function* real(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool isUsbDirectory(const char* path)
{
    return std::string(path) == "/proc/scsi/usb-storage";
}

bool isThumbnailDirectory(const char* path)
{
    return std::string(path).rfind("/mtd_rwarea", 0) == 0;
}

DIR* usbDirectory = nullptr;

} // namespace

extern "C" {

DIR* opendir(const char* path)
{
    const auto realOpen = real<DIR*(const char*)>("opendir");
    if (!isUsbDirectory(path)) {
        return realOpen(path);
    }
    recording::call("opendir", std::string(path));
    if (!FakePlatform::instance().usbDirectoryOpens) {
        errno = ENOENT;
        return nullptr;
    }
    return usbDirectory = realOpen("/");
}

int closedir(DIR* directory)
{
    if (directory == usbDirectory) {
        recording::call("closedir");
        usbDirectory = nullptr;
    }
    return real<int(DIR*)>("closedir")(directory);
}

int access(const char* path, int mode) noexcept
{
    if (!isThumbnailDirectory(path)) {
        return real<int(const char*, int)>("access")(path, mode);
    }
    recording::call("access", std::string(path), mode);
    return FakePlatform::instance().thumbnailDirectoriesExist ? 0 : -1;
}

int system(const char* command)
{
    const int ret = recording::call("system", std::string(command));
    return FakePlatform::instance().runShellCommands ? real<int(const char*)>("system")(command) : ret;
}

int statfs(const char* path, struct statfs* fs) noexcept
{
    const int ret = recording::call("statfs", std::string(path));
    *fs = FakePlatform::instance().fileSystem;
    return ret;
}

} // extern "C"
