#pragma once

#include "desktop/browsing/Listing.h"
#include "desktop/browsing/PanoramaFinder.h"
#include "desktop/files/LocationOpener.h"

#include <functional>
#include <stop_token>

namespace desktop {

/// Called with the number of entries read so far, every few hundred.
using ReadProgress = std::function<void(std::size_t entries)>;

/// Reads @p folder, which is open, into @p listing, in time and memory proportional to its entries but for their sorting.
/// @p panoramas, which may be null, tells 360-degree photos from others. Returns 0, or why it failed as an errno value:
/// ECANCELED once @p cancelled has a stop requested, ENOENT when the folder was removed meanwhile.
int readListing(OpenedFolder folder, PanoramaFinder* panoramas, const std::stop_token& cancelled,
                const ReadProgress& progress, Listing& listing);

} // namespace desktop
