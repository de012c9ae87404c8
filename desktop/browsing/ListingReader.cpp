#include "desktop/browsing/ListingReader.h"

#include "desktop/files/DirectoryStream.h"
#include "desktop/metadata/EntryDescription.h"
#include "desktop/text/NaturalOrder.h"

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

int readEntries(DIR* directory, const OpenedFolder& folder, const KnownFiles& known, const std::stop_token& cancelled,
                const ReadProgress& progress, std::vector<FolderFileInfo_s>& entries)
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
            const MediaMetadata* media = known.find(name, stampOf(*status));
            entries.push_back(describeEntry(folder.directory, name, *status, media));
            if (entries.size() % kProgressStep == 0 && !cancelled.stop_requested()) {
                progress(entries.size());
            }
        }
    }
    return ECANCELED;
}

} // namespace

int readListing(OpenedFolder folder, const std::shared_ptr<MetadataCatalog>& catalog, const std::stop_token& cancelled,
                const ReadProgress& progress, Listing& listing)
{
    const Directory directory = openDirectory(std::move(folder.fd));
    if (directory == nullptr) {
        return errno;
    }
    listing.directory = folder.directory;
    listing.stamp = folder.stamp;
    const KnownFiles known = knownFiles(catalog, folder.location);
    const int error = readEntries(directory.get(), folder, known, cancelled, progress, listing.entries);
    if (error != 0) {
        return error;
    }
    // A removed folder reads as an empty one.
    struct stat status = {};
    if (fstat(dirfd(directory.get()), &status) != 0 || status.st_nlink == 0) {
        return ENOENT;
    }
    sortEntries(listing.entries);
    return 0;
}

} // namespace desktop
