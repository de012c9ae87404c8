#include "desktop/browsing/PhotoSort.h"

#include "desktop/base/Log.h"
#include "desktop/files/MediaTypes.h"
#include "desktop/metadata/FactsReaders.h"
#include "desktop/text/NameEncoding.h"
#include "desktop/text/NaturalOrder.h"

#include <algorithm>

namespace desktop {

namespace {

constexpr std::chrono::seconds kPatience(4);

using Names = std::vector<std::string>;
using Times = std::vector<std::string>;

// When the photos @p names of @p folder were taken; empty where they do not tell.
Times timesTaken(const FolderToRead& folder, const Names& names, const CancelFlag& cancelled)
{
    std::vector<MediaFacts> facts(names.size());
    {
        FactsReaders readers(folder.library, cancelled);
        const KnownFiles known = folder.library->known(folder.location);
        for (std::size_t i = 0; i < names.size() && !*cancelled; ++i) {
            const auto entry = inspectFile(folder.fd.get(), names[i]);
            const MediaFacts* photo = entry ? known.find(names[i], stampOf(*entry)) : nullptr;
            if (photo != nullptr) {
                facts[i] = *photo;
            } else if (entry) {
                readers.add(folder.location, folder.fd.get(), names[i], *entry, facts[i]);
            }
        }
    }
    Times times;
    for (const MediaFacts& photo : facts) {
        times.push_back(photo.taken);
    }
    return times;
}

std::string extensionOf(const std::string& name)
{
    std::string extension = name.substr(nameWithoutExtension(name).size());
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return extension;
}

std::string padded(std::uint64_t number)
{
    const std::string digits = std::to_string(number);
    return std::string(20 - digits.size(), '0') + digits; // as many as the largest has
}

// The texts whose order is that of the photos; nothing when they cannot be had in time.
std::optional<Names> sortKeys(const std::vector<FolderFileInfo_s>& photos, const Listing& listing,
                              const FolderListings& listings, PhotoOrder order)
{
    Names keys;
    if (order != PhotoOrder::Taken) {
        for (const FolderFileInfo_s& photo : photos) {
            keys.push_back(order == PhotoOrder::Size   ? padded(photo.size)
                           : order == PhotoOrder::Type ? extensionOf(photo.name)
                                                       : "");
        }
        return keys;
    }
    const auto folder = std::make_shared<FolderToRead>();
    if (!listings.openFolder(listing.directory.empty() ? "/" : listing.directory, *folder)) {
        return std::nullopt;
    }
    Names names;
    for (const FolderFileInfo_s& photo : photos) {
        names.push_back(decodeName(photo.name));
    }
    auto times = runWithin<Times>(
        kPatience, [folder, names](const CancelFlag& cancelled) { return timesTaken(*folder, names, cancelled); });
    for (std::size_t i = 0; times && i < photos.size(); ++i) {
        std::string& time = (*times)[i];
        time = time.empty() ? photos[i].ctime : time;
    }
    return times;
}

} // namespace

bool sortPhotos(const Listing& listing, const FolderListings& listings, PhotoOrder order, bool ascending,
                std::vector<FolderFileInfo_s>& photos)
{
    photos.clear();
    std::copy_if(listing.entries.begin(), listing.entries.end(), std::back_inserter(photos),
                 [](const FolderFileInfo_s& entry) { return entry.type == FILE_TYPE_PHOTO; });
    const auto keys = sortKeys(photos, listing, listings, order);
    if (!keys) {
        logLine(LogLevel::Warning, "the photos of " + listing.directory + " could not all be read");
        return false;
    }
    // The listing has them by name already.
    std::vector<std::pair<std::string, FolderFileInfo_s>> keyed;
    for (std::size_t i = 0; i < photos.size(); ++i) {
        keyed.emplace_back((*keys)[i], std::move(photos[i]));
    }
    std::stable_sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    if (!ascending) {
        std::reverse(keyed.begin(), keyed.end());
    }
    for (std::size_t i = 0; i < photos.size(); ++i) {
        photos[i] = std::move(keyed[i].second);
    }
    return true;
}

} // namespace desktop
