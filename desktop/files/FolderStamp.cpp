#include "desktop/files/FolderStamp.h"

#include "desktop/base/FileTime.h"

#include <sys/stat.h>

#include <tuple>

namespace desktop {

FolderStamp::FolderStamp(const struct stat& status)
    : device(status.st_dev)
    , inode(status.st_ino)
    , modified(nanoseconds(status.st_mtim))
    , changed(nanoseconds(status.st_ctim))
{
}

bool FolderStamp::operator==(const FolderStamp& other) const
{
    return std::tie(device, inode, modified, changed) == std::tie(other.device, other.inode, other.modified, other.changed);
}

} // namespace desktop
