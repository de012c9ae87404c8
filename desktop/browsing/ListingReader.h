#pragma once

#include "desktop/browsing/Listing.h"
#include "desktop/files/PathResolver.h"
#include "desktop/metadata/MediaLibrary.h"

#include <atomic>
#include <ctime>
#include <functional>

namespace desktop {

/// A folder to read: where it is, its open descriptor, and the text its entries' paths begin with.
struct FolderToRead {
    Location location;
    UniqueFd fd;
    FolderStamp stamp;                     ///< when it was opened
    std::string directory;                 ///< as Listing::directory
    std::shared_ptr<MediaLibrary> library; ///< tells what is known of its files; may be null
};

/// Told the number of entries read so far, every few hundred.
using ReadProgress = std::function<void(std::size_t entries)>;

/// Reads @p folder into @p listing, in time and memory proportional to its entries but for their sorting. Returns 0, or why
/// it failed as an errno value: ECANCELED once @p cancelled is set, ENOENT when the folder was removed meanwhile.
int readFolder(const FolderToRead& folder, const std::atomic<bool>& cancelled, const ReadProgress& progress,
               Listing& listing);

/// Entry @p name, as bytes, of the folder whose text is @p directory, as lists show it; @p known may be null.
FolderFileInfo_s describeEntry(const std::string& directory, const std::string& name, const EntryFacts& facts,
                               const MediaFacts* known = nullptr);

/// The time @p time as "YYYY-MM-DD hh:mm:ss", local.
std::string formatTime(std::time_t time);

} // namespace desktop
