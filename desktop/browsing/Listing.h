#pragma once

#include "platform/SocMwTypes.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct stat;

namespace desktop {

/// The state a folder was in; a folder whose stamp is another has been changed or replaced.
struct FolderStamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t modified = 0; ///< nanoseconds
    std::int64_t changed = 0;  ///< nanoseconds

    FolderStamp() = default;
    explicit FolderStamp(const struct stat& status);
    bool operator==(const FolderStamp& other) const;
};

/// What a folder holds: folders first, then natural order.
struct Listing {
    std::string directory; ///< as text, without a trailing "/" ("" for the root); what the paths of the entries begin with
    FolderStamp stamp;     ///< taken before the folder was read
    std::vector<FolderFileInfo_s> entries;
};
using ListingPointer = std::shared_ptr<Listing>;

/// Page @p page, from 0, of @p listing, @p itemsPerPage to a page; below 1 puts all on one page. Empty beyond the end.
std::vector<FolderFileInfo_s> cutPage(const Listing& listing, int page, int itemsPerPage);

} // namespace desktop
