#pragma once

#include "desktop/files/FolderStamp.h"

#include "platform/SocMwTypes.h"

#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace desktop {

/// What a folder holds: folders first, then natural order.
struct Listing {
    std::string directory; ///< as text, without a trailing "/" ("" for the root); what the paths of the entries begin with
    FolderStamp stamp;     ///< taken before the folder was read
    std::vector<FolderFileInfo_s> entries;
    /// True once more is known of its photos than it shows; may be null.
    std::shared_ptr<const std::atomic<bool>> outdated;
};
using ListingPointer = std::shared_ptr<Listing>;

} // namespace desktop
