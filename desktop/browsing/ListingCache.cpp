#include "desktop/browsing/ListingCache.h"

#include "desktop/files/PathResolver.h"
#include "desktop/text/NameEncoding.h"

#include <algorithm>

namespace desktop {

namespace {

// Bounds on what is kept besides the newest listing.
constexpr std::size_t kMaxListings = 32;
constexpr std::size_t kMaxEntries = 200'000;

bool tooMuch(const std::vector<ListingPointer>& listings)
{
    std::size_t entries = 0;
    for (const ListingPointer& listing : listings) {
        entries += listing->entries.size();
    }
    return listings.size() > 1 && (listings.size() > kMaxListings || entries > kMaxEntries);
}

} // namespace

void ListingCache::keep(ListingPointer listing)
{
    const LockGuard lock(m_mutex);
    forget(listing->directory);
    m_listings.push_back(std::move(listing));
    while (tooMuch(m_listings)) {
        m_listings.erase(m_listings.begin());
    }
}

ListingPointer ListingCache::find(const std::string& directory, const FolderStamp& stamp)
{
    const LockGuard lock(m_mutex);
    for (const ListingPointer& listing : m_listings) {
        const bool isOutdated = listing->outdated != nullptr && *listing->outdated;
        if (listing->directory == directory && listing->stamp == stamp && !isOutdated) {
            return listing;
        }
    }
    return nullptr;
}

ListingPointer ListingCache::kept(const std::string& directory)
{
    const LockGuard lock(m_mutex);
    const auto same = [&directory](const ListingPointer& listing) { return listing->directory == directory; };
    const auto found = std::find_if(m_listings.begin(), m_listings.end(), same);
    return found != m_listings.end() ? *found : nullptr;
}

void ListingCache::dropBelow(const std::string& folder)
{
    const LockGuard lock(m_mutex);
    const auto below = [&folder](const ListingPointer& listing) { return liesIn(decodeName(listing->directory), folder); };
    m_listings.erase(std::remove_if(m_listings.begin(), m_listings.end(), below), m_listings.end());
}

void ListingCache::forget(const std::string& directory)
{
    const auto same = [&directory](const ListingPointer& listing) { return listing->directory == directory; };
    m_listings.erase(std::remove_if(m_listings.begin(), m_listings.end(), same), m_listings.end());
}

} // namespace desktop
