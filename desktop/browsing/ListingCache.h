#pragma once

#include "desktop/base/ThreadAnnotations.h"
#include "desktop/browsing/Listing.h"

namespace desktop {

/// Keeps the listings that were read last. Safe on any thread.
class ListingCache {
public:
    /// Keeps @p listing, in place of an older one of its directory.
    void keep(ListingPointer listing);
    /// The listing of @p directory, if one is kept that is not outdated and the folder is still in the state @p stamp.
    ListingPointer find(const std::string& directory, const FolderStamp& stamp);
    /// The listing of @p directory as it was kept, whatever the folder's state is now; null when none is.
    ListingPointer kept(const std::string& directory);
    /// Forgets the listings of @p folder, a path as bytes, and of all folders below it.
    void dropBelow(const std::string& folder);

private:
    void forget(const std::string& directory) REQUIRES(m_mutex);

    Mutex m_mutex;
    std::vector<ListingPointer> m_listings GUARDED_BY(m_mutex); ///< newest last
};

} // namespace desktop
