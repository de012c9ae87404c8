#pragma once

#include "desktop/browsing/FolderListings.h"

namespace desktop {

/// The playlist files on the sticks. Operations are called on the command thread; what takes too long fails, the observer
/// told.
class Playlists {
public:
    /// Directories and files are opened as @p listings opens them.
    Playlists(PathResolver resolver, const FolderListings& listings);

    /// The paths of the playlist files below @p directory, in the order of a walk; nothing when it cannot be read.
    std::optional<std::vector<std::string>> filesBelow(const std::string& directory) const;
    /// What playlist file @p path lists, as a listing whose entries lie anywhere on the stick; entries that are not there
    /// are left out, which is logged. Null when it is no playlist or cannot be read.
    ListingPointer entriesOf(const std::string& path) const;

private:
    PathResolver m_resolver;
    const FolderListings& m_listings;
};

} // namespace desktop
