#include "desktop/playlists/Playlists.h"

#include "desktop/base/Log.h"
#include "desktop/files/MediaTypes.h"
#include "desktop/files/TreeWalk.h"
#include "desktop/metadata/EntryDescription.h"
#include "desktop/text/NameEncoding.h"
#include "desktop/text/Normalization.h"
#include "desktop/text/UriText.h"
#include "desktop/workers/PlaylistTransfer.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <stop_token>

namespace desktop {

namespace {

constexpr std::chrono::seconds kTimeout(5);
constexpr std::chrono::seconds kOpenTimeout(3);
// How long photos that the index does not know are read for one list; all of it has to be done within kTimeout.
constexpr std::chrono::seconds kKeptFor(10);

using Paths = std::vector<std::string>;

struct FoundFiles {
    Paths paths;
    int error = 0; ///< errno value
};

FoundFiles findFiles(const OpenedFolder& folder, const std::stop_token& cancelled)
{
    FoundFiles files;
    const auto isPlaylist = [](std::string_view name) { return typeByExtension(name) == FILE_TYPE_PLAYLIST; };
    TreeWalk walk(folder.location, cancelled, isPlaylist, [&](const WalkedFolder& found, const WalkTotals&) {
        const std::string directory = folder.directoryOf(found.location);
        for (const std::string& name : found.files) {
            files.paths.push_back(directory + "/" + encodeName(name));
        }
    });
    files.error = walk.run();
    return files;
}

/// A playlist file, open for a worker; neither open nor with an error when it is none.
struct OpenPlaylist {
    UniqueFd fd;
    std::string error;
    FileStamp stamp;
};

OpenPlaylist openPlaylist(const Location& file)
{
    const UniqueFd pinned = PathResolver::open(file, O_PATH);
    const auto status = pinned ? inspectPinned(pinned.get(), file.name()) : std::nullopt;
    if (!status) {
        return {UniqueFd(), describeError(errno), {}};
    }
    if (status->type != FILE_TYPE_PLAYLIST) {
        return OpenPlaylist();
    }
    if (status->size > kMaxPlaylistFile) {
        return {UniqueFd(), describeError(EFBIG), {}};
    }
    UniqueFd fd = openRegularFile(pinned.get());
    return fd ? OpenPlaylist{std::move(fd), "", stampOf(*status)} : OpenPlaylist{UniqueFd(), describeError(errno), {}};
}

std::string withSlashes(std::string target)
{
    std::replace(target.begin(), target.end(), '\\', '/');
    const std::size_t drive = target.starts_with('/') ? 1 : 0; // "/C:/" in an URI
    const bool hasDrive = target.size() > drive + 2 && target[drive + 1] == ':' && target[drive + 2] == '/';
    return hasDrive ? target.substr(drive + 2) : target;
}

// What an entry may mean, the likeliest first: programs write paths in the charset, with the separators and in the form of
// letters with marks of the computer that they run on, and some as an URI. None when it cannot be the path of a file.
Paths readings(const PlaylistEntry& entry)
{
    Paths readings;
    const auto add = [&readings](const std::string& reading) {
        const bool possible = !reading.empty() && reading.find('\0') == std::string::npos;
        if (possible && std::find(readings.begin(), readings.end(), reading) == readings.end()) {
            readings.push_back(reading);
        }
    };
    for (const std::string& written : {entry.target, entry.path, withSlashes(entry.target), withSlashes(entry.path),
                                       withoutEscapes(withSlashes(entry.target))}) {
        add(written);
    }
    const Paths written = readings;
    for (const std::string& reading : written) {
        add(composed(reading));
        add(decomposed(reading));
    }
    return readings;
}

// The place @p path, beneath the volume @p root and without "."s; an empty one when it leads out.
Location beneath(const Location& root, const std::string& path)
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
    Location location = root;
    for (const std::string& name : names) {
        location = location.child(name);
    }
    return location;
}

/// One playlist file being looked through.
class PlaylistReading {
public:
    PlaylistReading(Location file, std::string path, std::shared_ptr<MetadataCatalog> catalog,
                    std::chrono::milliseconds photoTime)
        : m_file(std::move(file))
        , m_path(std::move(path))
        , m_catalog(std::move(catalog))
        , m_readUntil(std::chrono::steady_clock::now() + photoTime)
    {
    }

    /// What @p content lists of the volume.
    EntryList run(const PlaylistContent& content, const std::stop_token& cancelled)
    {
        auto entries = std::make_shared<std::vector<FolderFileInfo_s>>();
        std::size_t missing = content.omitted;
        m_cancelled = cancelled;
        for (const PlaylistEntry& entry : content.entries) {
            auto file = cancelled.stop_requested() ? std::nullopt : find(entry);
            if (file) {
                file->id = static_cast<std::int32_t>(entries->size());
                entries->push_back(std::move(*file));
            } else {
                ++missing;
            }
        }
        if (missing > 0) {
            logLine(LogLevel::Warning, std::to_string(missing) + " entries of " + m_path + " are not on the stick");
        }
        return entries;
    }

private:
    std::optional<FolderFileInfo_s> find(const PlaylistEntry& entry)
    {
        const std::string folder = m_file.relative.substr(0, m_file.relative.rfind('/')) + "/";
        for (const std::string& target : readings(entry)) {
            const bool absolute = target.front() == '/';
            Paths places = {absolute ? target : folder + target};
            if (absolute && liesIn(target, m_file.volume)) {
                places.insert(places.begin(), target.substr(std::min(target.size(), m_file.volume.size())));
            }
            for (const std::string& place : places) {
                if (auto file = describeAt(beneath(m_file.root(), place), entry.title)) {
                    return file;
                }
            }
        }
        return std::nullopt;
    }

    std::optional<FolderFileInfo_s> describeAt(const Location& location, const std::string& title)
    {
        if (!location || location.relative == location.root().relative) {
            return std::nullopt;
        }
        const std::string name = location.name();
        const UniqueFd pinned = PathResolver::open(location, O_PATH);
        const auto status = pinned ? inspectPinned(pinned.get(), name) : std::nullopt;
        if (!status || status->type == FILE_TYPE_FOLDER) {
            return std::nullopt;
        }
        FolderFileInfo_s file = describeEntry(encodeName(location.parent().path()), name, *status);
        if (status->type == FILE_TYPE_PHOTO && isPanorama(location, *status, pinned.get())) {
            markPanorama(file);
        }
        if (!title.empty()) {
            file.title = title;
        }
        return file;
    }

    // As far as the index knows @p photo, or there is time to read it.
    bool isPanorama(const Location& photo, const EntryStatus& status, int pinned)
    {
        if (m_catalog == nullptr) {
            return false;
        }
        KnownFiles& known = knownIn(photo.parent());
        if (const MediaMetadata* metadata = known.find(photo.name(), stampOf(status))) {
            return metadata->panorama;
        }
        if (m_cancelled.stop_requested() || std::chrono::steady_clock::now() >= m_readUntil) {
            return false;
        }
        MediaMetadata metadata = m_catalog->metadataOf(photo, status, pinned);
        const bool panorama = metadata.panorama;
        known.add({photo.name(), stampOf(status), std::move(metadata)});
        return panorama;
    }

    // Most entries lie where the one before does.
    KnownFiles& knownIn(const Location& folder)
    {
        if (m_knownFolder != folder.relative) {
            m_known = m_catalog->known(folder);
            m_knownFolder = folder.relative;
        }
        return m_known;
    }

    Location m_file;
    std::string m_path;
    std::shared_ptr<MetadataCatalog> m_catalog;
    std::stop_token m_cancelled;
    const std::chrono::steady_clock::time_point m_readUntil; ///< photos that the index does not know
    std::string m_knownFolder;                               ///< beneath the volume; empty: none yet
    KnownFiles m_known;                                      ///< of that folder
};

} // namespace

Playlists::Playlists(LocationOpener opener, std::shared_ptr<MediaWorkers> workers, std::shared_ptr<MetadataCatalog> catalog,
                     std::chrono::milliseconds photoTime)
    : m_opener(std::move(opener))
    , m_workers(std::move(workers))
    , m_catalog(std::move(catalog))
    , m_photoTime(photoTime)
{
}

std::optional<std::vector<std::string>> Playlists::filesBelow(const std::string& directory) const
{
    const auto folder = std::make_shared<OpenedFolder>(m_opener.folderAt(directory));
    auto files = m_opener.runWithin<FoundFiles>(
        kTimeout, directory, [folder](const std::stop_token& cancelled) { return findFiles(*folder, cancelled); });
    if (!files) {
        return std::nullopt;
    }
    if (files->error != 0) {
        m_opener.report(directory, files->error);
        return std::nullopt;
    }
    return std::move(files->paths);
}

std::optional<bool> Playlists::isPlaylist(const std::string& path) const
{
    const Location file = m_opener.locate(path);
    return m_opener.runWithin<bool>(kOpenTimeout, path, [file](const std::stop_token&) {
        const UniqueFd pinned = PathResolver::open(file, O_PATH);
        const auto status = pinned ? inspectPinned(pinned.get(), file.name()) : std::nullopt;
        return status && status->type == FILE_TYPE_PLAYLIST;
    });
}

EntryList Playlists::entriesOf(const std::string& path)
{
    const Location file = m_opener.locate(path);
    const FileType type = typeByExtension(file.name());
    if (!file || (type != FILE_TYPE_PLAYLIST && type != FILE_TYPE_UNKNOWN)) {
        return nullptr;
    }
    const auto opened =
        m_opener.runWithin<OpenPlaylist>(kTimeout, path, [file](const std::stop_token&) { return openPlaylist(file); });
    if (!opened || (!opened->fd && opened->error.empty())) {
        return nullptr;
    }
    if (!opened->fd) {
        reportUnreadable(file, path, opened->error);
        return nullptr;
    }
    const auto now = std::chrono::steady_clock::now();
    const bool isKept = m_kept.entries != nullptr && m_kept.path == path && m_kept.stamp == opened->stamp;
    if (!isKept || now > m_kept.until) {
        m_kept = {path, opened->stamp, now + kKeptFor, readEntries(path, file, opened->fd.get())};
    }
    return m_kept.entries;
}

EntryList Playlists::readEntries(const std::string& path, const Location& file, int fd)
{
    const std::string extension = typeByExtension(file.name()) == FILE_TYPE_PLAYLIST ? extensionOf(file.name()) : "";
    auto content = m_workers->readPlaylist(fd, extension);
    if (!content.error.empty()) {
        reportUnreadable(file, path, content.error);
        return nullptr;
    }
    const auto entries =
        m_opener.runWithin<EntryList>(kTimeout, path,
                                      [file, path, content = std::move(content), catalog = m_catalog,
                                       photoTime = m_photoTime](const std::stop_token& cancelled) {
                                          return PlaylistReading(file, path, catalog, photoTime).run(content, cancelled);
                                      });
    return entries.value_or(nullptr);
}

void Playlists::reportUnreadable(const Location& file, const std::string& path, const std::string& reason) const
{
    logUnreadable(file, reason);
    m_opener.reporter().failed(path, reason);
}

} // namespace desktop
