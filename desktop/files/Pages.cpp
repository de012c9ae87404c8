#include "desktop/files/Pages.h"

#include <algorithm>
#include <cstdint>

namespace desktop {

std::vector<FolderFileInfo_s> cutPage(const std::vector<FolderFileInfo_s>& entries, int page, int itemsPerPage)
{
    const auto count = static_cast<std::int64_t>(entries.size());
    const std::int64_t size = itemsPerPage > 0 ? itemsPerPage : std::max<std::int64_t>(count, 1);
    const std::int64_t begin = std::min(page * size, count);
    const std::int64_t end = std::min(begin + size, count);
    return {entries.begin() + begin, entries.begin() + end};
}

} // namespace desktop
