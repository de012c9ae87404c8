#include "desktop/files/FolderStamp.h"

#include "desktop/base/FileTime.h"

#include <sys/stat.h>

namespace desktop {

FolderStamp::FolderStamp(const struct stat& status)
    : device(status.st_dev)
    , inode(status.st_ino)
    , modified(nanoseconds(status.st_mtim))
    , changed(nanoseconds(status.st_ctim))
{
}

} // namespace desktop
