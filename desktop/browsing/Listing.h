#pragma once

#include "desktop/files/FolderStamp.h"

#include "platform/SocMwTypes.h"

#include <memory>
#include <string>
#include <vector>

namespace desktop {

/// What a folder holds: folders first, then natural order.
struct Listing {
    std::string directory; ///< as text, without a trailing "/" ("" for the root); what the paths of the entries begin with
    FolderStamp stamp;     ///< taken before the folder was read
    std::vector<FolderFileInfo_s> entries;
};
using ListingPointer = std::shared_ptr<Listing>;

} // namespace desktop
