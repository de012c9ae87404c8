#pragma once

#include "desktop/browsing/Listing.h"
#include "desktop/files/LocationOpener.h"
#include "desktop/metadata/MetadataCatalog.h"

#include <functional>
#include <stop_token>

namespace desktop {

/// Called with the number of entries read so far, every few hundred.
using ReadProgress = std::function<void(std::size_t entries)>;

/// Reads @p folder, which is open, into @p listing, in time and memory proportional to its entries but for their sorting.
/// @p catalog, which may be null, has what is known of its files. Returns 0, or why it failed as an errno value: ECANCELED
/// once @p cancelled has a stop requested, ENOENT when the folder was removed meanwhile.
int readListing(OpenedFolder folder, const std::shared_ptr<MetadataCatalog>& catalog, const std::stop_token& cancelled,
                const ReadProgress& progress, Listing& listing);

} // namespace desktop
