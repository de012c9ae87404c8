#include "desktop/playlists/Playlists.h"

#include "desktop/base/Log.h"
#include "desktop/files/MediaTypes.h"
#include "desktop/files/TreeWalk.h"
#include "desktop/playlists/PlaylistFormats.h"
#include "desktop/text/NameEncoding.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>

namespace desktop {

namespace {

constexpr std::chrono::seconds kPatience(5);
constexpr std::size_t kMostBytes = 4 << 20; // of a playlist file

using Paths = std::vector<std::string>;

std::optional<Paths> findFiles(const FolderToRead& folder, const CancelFlag& cancelled)
{
    Paths paths;
    TreeWalk walk(folder.location, cancelled, isPlaylistName, [&](const WalkedFolder& found, const WalkTotals&) {
        const std::string below = found.location.relative.substr(folder.location.relative.size());
        for (const std::string& name : found.files) {
            paths.push_back(folder.directory + encodeName(below + "/" + name));
        }
    });
    return walk.run() == 0 ? std::optional<Paths>(std::move(paths)) : std::nullopt;
}

// Sets errno when there is nothing.
std::optional<std::string> readWhole(const Location& file)
{
    const UniqueFd pinned = PathResolver::open(file, O_PATH);
    const UniqueFd fd = pinned ? openRegularFile(pinned.get()) : UniqueFd();
    std::string content;
    char bytes[65536];
    ssize_t got = fd ? 1 : -1;
    while (got > 0 && (got = read(fd.get(), bytes, sizeof bytes)) > 0) {
        content.append(bytes, static_cast<std::size_t>(got));
        if (content.size() > kMostBytes) {
            errno = EFBIG;
            return std::nullopt;
        }
    }
    return got == 0 ? std::optional<std::string>(std::move(content)) : std::nullopt;
}

std::string withSlashes(std::string target)
{
    std::replace(target.begin(), target.end(), '\\', '/');
    const bool hasDrive = target.size() > 2 && target[1] == ':' && target[2] == '/';
    return hasDrive ? target.substr(2) : target;
}

// What an entry may mean, the likeliest first: programs write paths in the charset, and with the separators, of the computer
// that they run on.
Paths readings(const PlaylistEntry& entry)
{
    Paths readings;
    for (const std::string& bytes : {entry.target, entry.path, withSlashes(entry.target), withSlashes(entry.path)}) {
        if (std::find(readings.begin(), readings.end(), bytes) == readings.end()) {
            readings.push_back(bytes);
        }
    }
    return readings;
}

// The place @p path, beneath @p stick and without "."s; an empty one when it leads out.
Location beneath(const std::string& stick, const std::string& path)
{
    std::vector<std::string> names;
    for (const std::string& name : splitPath(path)) {
        if (name != "..") {
            names.push_back(name);
        } else if (names.empty()) {
            return {};
        } else {
            names.pop_back();
        }
    }
    Location location = {stick, "."};
    for (const std::string& name : names) {
        location = location.child(name);
    }
    return location;
}

/// One playlist file being looked through.
class PlaylistReading {
public:
    PlaylistReading(Location file, std::string path, std::shared_ptr<MediaLibrary> library)
        : m_file(std::move(file))
        , m_path(std::move(path))
        , m_library(std::move(library))
    {
    }

    /// Null when it cannot be read.
    ListingPointer run(const CancelFlag& cancelled)
    {
        const auto content = readWhole(m_file);
        if (!content) {
            logUnreadable(m_file, describeError(errno));
            return nullptr;
        }
        auto listing = std::make_shared<Listing>();
        listing->directory = m_path;
        std::size_t missing = 0;
        for (const PlaylistEntry& entry : parsePlaylist(m_file.relative, *content)) {
            auto file = *cancelled ? std::nullopt : find(entry);
            if (file) {
                file->id = static_cast<std::int32_t>(listing->entries.size());
                listing->entries.push_back(std::move(*file));
            } else {
                ++missing;
            }
        }
        if (missing > 0) {
            logLine(LogLevel::Warning, std::to_string(missing) + " entries of " + m_path + " are not on the stick");
        }
        return listing;
    }

private:
    std::optional<FolderFileInfo_s> find(const PlaylistEntry& entry)
    {
        const std::string folder = m_file.relative.substr(0, m_file.relative.rfind('/'));
        for (const std::string& target : readings(entry)) {
            const bool absolute = target.front() == '/';
            Paths places = {absolute ? target : folder + "/" + target};
            if (absolute && liesIn(target, m_file.stick)) {
                places.insert(places.begin(), target.substr(std::min(target.size(), m_file.stick.size())));
            }
            for (const std::string& place : places) {
                if (auto file = describeAt(beneath(m_file.stick, place), entry.title)) {
                    return file;
                }
            }
        }
        return std::nullopt;
    }

    std::optional<FolderFileInfo_s> describeAt(const Location& location, const std::string& title)
    {
        const std::size_t slash = location.relative.rfind('/');
        if (!location || slash == std::string::npos) {
            return std::nullopt;
        }
        const std::string name = location.relative.substr(slash + 1);
        const Location folder = {location.stick, location.relative.substr(0, slash)};
        const UniqueFd pinned = PathResolver::open(location, O_PATH);
        const auto facts = pinned ? inspectPinned(pinned.get(), name) : std::nullopt;
        if (!facts || facts->type == FILE_TYPE_FOLDER) {
            return std::nullopt;
        }
        if (folder.relative != m_knownFolder) { // most entries lie where the one before them does
            m_known = knownFiles(m_library, folder);
            m_knownFolder = folder.relative;
        }
        FolderFileInfo_s file = describeEntry(encodeName(folder.path()), name, *facts, m_known.find(name, stampOf(*facts)));
        if (!title.empty()) {
            file.title = title;
        }
        return file;
    }

    Location m_file;
    std::string m_path;
    std::shared_ptr<MediaLibrary> m_library;
    std::string m_knownFolder;
    KnownFiles m_known; ///< of that folder
};

} // namespace

Playlists::Playlists(PathResolver resolver, const FolderListings& listings)
    : m_resolver(std::move(resolver))
    , m_listings(listings)
{
}

std::optional<std::vector<std::string>> Playlists::filesBelow(const std::string& directory) const
{
    const auto folder = std::make_shared<FolderToRead>();
    if (!m_listings.openFolder(directory, *folder)) {
        return std::nullopt;
    }
    const auto paths = runWithin<std::optional<Paths>>(
        kPatience, [folder](const CancelFlag& cancelled) { return findFiles(*folder, cancelled); });
    if (!paths) {
        m_listings.report(directory, ETIMEDOUT);
    }
    return paths.value_or(std::nullopt);
}

ListingPointer Playlists::entriesOf(const std::string& path) const
{
    const Location file = m_resolver.locate(decodeName(path));
    if (!file || !isPlaylistName(file.relative)) {
        return nullptr;
    }
    const auto listing =
        runWithin<ListingPointer>(kPatience, [file, path, library = m_listings.library()](const CancelFlag& cancelled) {
            return PlaylistReading(file, path, library).run(cancelled);
        });
    if (!listing) {
        m_listings.report(path, ETIMEDOUT);
    }
    return listing.value_or(nullptr);
}

} // namespace desktop
