#pragma once

#include "desktop/browsing/Listing.h"
#include "desktop/files/LocationOpener.h"
#include "desktop/metadata/MetadataCatalog.h"

namespace desktop {

/// What photos are sorted by; the numbers are those of the requests.
enum class PhotoOrder {
    Name = 0,  ///< in natural order
    Taken = 1, ///< when the photo was taken; where that is not known, when its file was made
    Size = 2,
    Type = 3, ///< the file's extension
};

/// What reads the photos of a listing when it must.
struct PhotoReading {
    LocationOpener opener;
    std::shared_ptr<MetadataCatalog> catalog;
};

/// Puts the photos of @p listing into @p photos: sorted by @p order, equal ones by name. False, which is logged, when
/// reading them takes too long; what has been read then need not be read again.
bool sortPhotos(const Listing& listing, const PhotoReading& reading, PhotoOrder order, bool ascending,
                std::vector<FolderFileInfo_s>& photos);

} // namespace desktop
