#pragma once

#include "desktop/browsing/FolderListings.h"

namespace desktop {

/// What photos are sorted by; the numbers are those of the requests.
enum class PhotoOrder {
    Name = 0,  ///< in natural order
    Taken = 1, ///< when the photo was taken; when its file was made where it does not tell
    Size = 2,
    Type = 3, ///< the file's extension
};

/// Puts the photos of @p listing, one of @p listings, into @p photos: sorted by @p order, equal ones by name.
/// False, which is logged, when reading them takes too long; what has been read then need not be read again.
bool sortPhotos(const Listing& listing, const FolderListings& listings, PhotoOrder order, bool ascending,
                std::vector<FolderFileInfo_s>& photos);

} // namespace desktop
