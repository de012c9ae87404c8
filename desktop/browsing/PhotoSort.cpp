#include "desktop/browsing/PhotoSort.h"

#include "desktop/base/Log.h"
#include "desktop/files/MediaTypes.h"
#include "desktop/metadata/MetadataReadPool.h"
#include "desktop/text/AsciiText.h"
#include "desktop/text/NameEncoding.h"

#include <algorithm>
#include <stop_token>

namespace desktop {

namespace {

constexpr std::chrono::seconds kReadTimeout(4);

using Names = std::vector<std::string>;
using Times = std::vector<std::string>;

struct TimesResult {
    Times times;   ///< empty where a photo does not say when it was taken
    int error = 0; ///< errno value
};

// When the photos @p names of @p folder, which is still to be opened, were taken.
TimesResult timesTaken(OpenedFolder& folder, const std::shared_ptr<MetadataCatalog>& catalog, const Names& names,
                       const std::stop_token& cancelled)
{
    TimesResult result;
    result.error = LocationOpener::open(folder);
    if (result.error != 0) {
        return result;
    }
    std::vector<MediaMetadata> metadata(names.size());
    {
        MetadataReadPool readers(catalog, cancelled);
        const KnownFiles known = catalog->known(folder.location);
        for (std::size_t i = 0; i < names.size() && !cancelled.stop_requested(); ++i) {
            const auto entry = inspectFile(folder.fd.get(), names[i]);
            const MediaMetadata* photo = entry ? known.find(names[i], stampOf(*entry)) : nullptr;
            if (photo != nullptr) {
                metadata[i] = *photo;
            } else if (entry) {
                readers.add(folder.location, folder.fd.get(), names[i], *entry,
                            [&one = metadata[i]](MediaMetadata read) { one = std::move(read); });
            }
        }
    }
    for (const MediaMetadata& photo : metadata) {
        result.times.push_back(photo.taken);
    }
    return result;
}

// When each of @p photos was taken, or its file made where it does not say; nothing, which is reported, when they cannot be
// read in time.
std::optional<Times> timesOf(const std::vector<FolderFileInfo_s>& photos, const Listing& listing,
                             const PhotoReading& reading)
{
    const std::string directory = listing.directory.empty() ? "/" : listing.directory;
    const auto folder = std::make_shared<OpenedFolder>(reading.opener.folderAt(directory));
    Names names;
    for (const FolderFileInfo_s& photo : photos) {
        names.push_back(decodeName(photo.name));
    }
    auto result = reading.opener.runWithin<TimesResult>(
        kReadTimeout, directory, [folder, names, catalog = reading.catalog](const std::stop_token& cancelled) {
            return timesTaken(*folder, catalog, names, cancelled);
        });
    if (!result) {
        return std::nullopt;
    }
    if (result->error != 0) {
        reading.opener.report(directory, result->error);
        return std::nullopt;
    }
    for (std::size_t i = 0; i < photos.size(); ++i) {
        std::string& time = result->times[i];
        time = time.empty() ? photos[i].ctime : time;
    }
    return std::move(result->times);
}

std::string padded(std::uint64_t number)
{
    const std::string digits = std::to_string(number);
    return std::string(20 - digits.size(), '0') + digits; // as many as the largest has
}

// The texts whose order is that of the photos; nothing when they cannot be had in time.
std::optional<Names> sortKeys(const std::vector<FolderFileInfo_s>& photos, const Listing& listing,
                              const PhotoReading& reading, PhotoOrder order)
{
    if (order == PhotoOrder::Taken) {
        return timesOf(photos, listing, reading);
    }
    Names keys;
    for (const FolderFileInfo_s& photo : photos) {
        const std::string extension = photo.name.substr(nameWithoutExtension(photo.name).size());
        keys.push_back(order == PhotoOrder::Size   ? padded(photo.size)
                       : order == PhotoOrder::Type ? lowerCase(extension)
                                                   : "");
    }
    return keys;
}

} // namespace

bool sortPhotos(const Listing& listing, const PhotoReading& reading, PhotoOrder order, bool ascending,
                std::vector<FolderFileInfo_s>& photos)
{
    photos.clear();
    std::copy_if(
        listing.entries.begin(), listing.entries.end(), std::back_inserter(photos),
        [](const FolderFileInfo_s& entry) { return entry.type == FILE_TYPE_PHOTO || entry.type == FILE_TYPE_PANORAMA; });
    const auto keys = sortKeys(photos, listing, reading, order);
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
