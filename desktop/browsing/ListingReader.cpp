#include "desktop/browsing/FolderReader.h"

#include "desktop/files/DirectoryStream.h"
#include "desktop/files/MediaTypes.h"
#include "desktop/text/NameEncoding.h"
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

int readEntries(DIR* directory, const FolderToRead& folder, const std::atomic<bool>& cancelled, const ReadProgress& progress,
                std::vector<FolderFileInfo_s>& entries)
{
    const EntryInspector inspector(dirfd(directory), folder.location);
    const KnownFiles known = knownFiles(folder.library, folder.location);
    while (!cancelled) {
        errno = 0;
        const dirent* found = readdir(directory);
        if (found == nullptr) {
            return errno;
        }
        if (isSelfOrParent(found->d_name)) {
            continue;
        }
        const std::string name = found->d_name;
        if (const auto facts = inspector.inspect(name)) {
            const MediaFacts* media = known.find(name, stampOf(*facts));
            entries.push_back(describeEntry(folder.directory, name, *facts, media));
            if (entries.size() % kProgressStep == 0 && !cancelled) {
                progress(entries.size());
            }
        }
    }
    return ECANCELED;
}

} // namespace

int readFolder(const FolderToRead& folder, const std::atomic<bool>& cancelled, const ReadProgress& progress,
               Listing& listing)
{
    struct stat status = {};
    // A second view of the folder, read from its beginning; closing it leaves the first one open.
    const Directory directory = openDirectory(UniqueFd(openat(folder.fd.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
    if (directory == nullptr || fstat(folder.fd.get(), &status) != 0) {
        return errno;
    }
    listing.directory = folder.directory;
    listing.stamp = FolderStamp(status);
    const int error = readEntries(directory.get(), folder, cancelled, progress, listing.entries);
    if (error != 0) {
        return error;
    }
    // A removed folder reads as an empty one.
    if (fstat(folder.fd.get(), &status) != 0 || status.st_nlink == 0) {
        return ENOENT;
    }
    sortEntries(listing.entries);
    return 0;
}

FolderFileInfo_s describeEntry(const std::string& directory, const std::string& name, const EntryFacts& facts,
                               const MediaFacts* known)
{
    FolderFileInfo_s entry;
    entry.type = facts.type;
    entry.size = facts.size;
    entry.ctime = formatTime(facts.created);
    entry.name = encodeName(name);
    entry.path = directory + "/" + entry.name;
    entry.title = facts.type == FILE_TYPE_FOLDER ? entry.name : encodeName(nameWithoutExtension(name));
    if (known != nullptr) {
        entry.title = known->title.empty() ? entry.title : known->title;
        entry.isPhoto360 = known->panorama ? 1 : 0;
    }
    return entry;
}

std::string formatTime(std::time_t time)
{
    std::tm local = {};
    char text[sizeof "YYYYYYYYYY-MM-DD hh:mm:ss"] = {};
    if (localtime_r(&time, &local) != nullptr) {
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    }
    return text;
}

} // namespace desktop
