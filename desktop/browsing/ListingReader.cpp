#include "desktop/browsing/ListingReader.h"

#include "desktop/files/DirectoryStream.h"
#include "desktop/metadata/EntryDescription.h"
#include "desktop/text/NaturalOrder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <tuple>

namespace desktop {

namespace {

constexpr std::size_t kProgressStep = 512; // entries

void sortEntries(std::vector<FolderFileInfo_s>& entries)
{
    struct Ranked {
        bool isFile;
        std::string key;
        FolderFileInfo_s entry;
    };
    NaturalOrder order;
    std::vector<Ranked> ranked;
    ranked.reserve(entries.size());
    for (FolderFileInfo_s& entry : entries) {
        ranked.push_back({entry.type != FILE_TYPE_FOLDER, order.key(entry.name), std::move(entry)});
    }
    std::sort(ranked.begin(), ranked.end(), [](const Ranked& a, const Ranked& b) {
        return std::tie(a.isFile, a.key, a.entry.name) < std::tie(b.isFile, b.key, b.entry.name);
    });
    for (std::size_t i = 0; i < ranked.size(); ++i) {
        entries[i] = std::move(ranked[i].entry);
        entries[i].id = static_cast<std::int32_t>(i);
    }
}

using Photos = std::vector<PanoramaFinder::Photo>;

// Also gathers the photos among @p entries.
int readEntries(DIR* directory, const OpenedFolder& folder, const std::stop_token& cancelled, const ReadProgress& progress,
                std::vector<FolderFileInfo_s>& entries, Photos& photos)
{
    const EntryInspector inspector(dirfd(directory), folder.location);
    while (!cancelled.stop_requested()) {
        errno = 0;
        const dirent* found = readdir(directory);
        if (found == nullptr) {
            return errno;
        }
        if (isSelfOrParent(found->d_name)) {
            continue;
        }
        const std::string name = found->d_name;
        if (const auto status = inspector.inspect(name)) {
            if (status->type == FILE_TYPE_PHOTO && status->size > 0) {
                photos.push_back({name, *status, entries.size()});
            }
            entries.push_back(describeEntry(folder.directory, name, *status));
            if (entries.size() % kProgressStep == 0 && !cancelled.stop_requested()) {
                progress(entries.size());
            }
        }
    }
    return ECANCELED;
}

void markPanoramas(const OpenedFolder& folder, PanoramaFinder* panoramas, Photos photos, const std::stop_token& cancelled,
                   Listing& listing)
{
    if (panoramas == nullptr) {
        return;
    }
    const PanoramaFinder::Result found = panoramas->find(folder, std::move(photos), cancelled);
    for (const std::size_t index : found.panoramas) {
        markPanorama(listing.entries[index]);
    }
    listing.outdated = found.moreIsKnown;
}

} // namespace

int readListing(OpenedFolder folder, PanoramaFinder* panoramas, const std::stop_token& cancelled,
                const ReadProgress& progress, Listing& listing)
{
    const Directory directory = openDirectory(UniqueFd(fcntl(folder.fd.get(), F_DUPFD_CLOEXEC, 0)));
    if (directory == nullptr) {
        return errno;
    }
    listing.directory = folder.directory;
    listing.stamp = folder.stamp;
    Photos photos;
    const int error = readEntries(directory.get(), folder, cancelled, progress, listing.entries, photos);
    if (error != 0) {
        return error;
    }
    // A removed folder reads as an empty one.
    struct stat status = {};
    if (fstat(dirfd(directory.get()), &status) != 0 || status.st_nlink == 0) {
        return ENOENT;
    }
    markPanoramas(folder, panoramas, std::move(photos), cancelled, listing);
    sortEntries(listing.entries);
    return 0;
}

} // namespace desktop
