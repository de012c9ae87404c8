#include "desktop/browsing/Listing.h"

#include "desktop/base/FileTime.h"

#include <sys/stat.h>

#include <algorithm>
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

std::vector<FolderFileInfo_s> cutPage(const Listing& listing, int page, int itemsPerPage)
{
    const auto count = static_cast<std::int64_t>(listing.entries.size());
    const std::int64_t size = itemsPerPage > 0 ? itemsPerPage : std::max<std::int64_t>(count, 1);
    const std::int64_t begin = std::min(page * size, count);
    const std::int64_t end = std::min(begin + size, count);
    return {listing.entries.begin() + begin, listing.entries.begin() + end};
}

} // namespace desktop
