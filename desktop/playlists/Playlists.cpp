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
#include <stop_token>

namespace desktop {

namespace {

constexpr std::chrono::seconds kTimeout(5);

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
};

OpenPlaylist openPlaylist(const Location& file)
{
    const UniqueFd pinned = PathResolver::open(file, O_PATH);
    const auto status = pinned ? inspectPinned(pinned.get(), file.name()) : std::nullopt;
    if (!status) {
        return {UniqueFd(), describeError(errno)};
    }
    if (status->type != FILE_TYPE_PLAYLIST) {
        return OpenPlaylist();
    }
    if (status->size > kMaxPlaylistFile) {
        return {UniqueFd(), describeError(EFBIG)};
    }
    UniqueFd fd = openRegularFile(pinned.get());
    return fd ? OpenPlaylist{std::move(fd), ""} : OpenPlaylist{UniqueFd(), describeError(errno)};
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
    PlaylistReading(Location file, std::string path, std::shared_ptr<MetadataCatalog> catalog)
        : m_file(std::move(file))
        , m_path(std::move(path))
        , m_catalog(std::move(catalog))
    {
    }

    /// What @p content lists of the volume.
    EntryList run(const PlaylistContent& content, const std::stop_token& cancelled)
    {
        auto entries = std::make_shared<std::vector<FolderFileInfo_s>>();
        std::size_t missing = content.omitted;
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
        const std::size_t slash = location.relative.rfind('/');
        if (!location || slash == std::string::npos) {
            return std::nullopt;
        }
        const std::string name = location.relative.substr(slash + 1);
        const Location folder = {location.volume, location.relative.substr(0, slash), location.volumeId};
        const UniqueFd pinned = PathResolver::open(location, O_PATH);
        const auto status = pinned ? inspectPinned(pinned.get(), name) : std::nullopt;
        if (!status || status->type == FILE_TYPE_FOLDER) {
            return std::nullopt;
        }
        FolderFileInfo_s file = describeEntry(encodeName(folder.path()), name, *status);
        const bool isPhoto = status->type == FILE_TYPE_PHOTO && m_catalog != nullptr;
        if (isPhoto && m_catalog->metadataOf(location, *status, pinned.get()).panorama) {
            markPanorama(file);
        }
        if (!title.empty()) {
            file.title = title;
        }
        return file;
    }

    Location m_file;
    std::string m_path;
    std::shared_ptr<MetadataCatalog> m_catalog;
};

} // namespace

Playlists::Playlists(LocationOpener opener, std::shared_ptr<MediaWorkers> workers, std::shared_ptr<MetadataCatalog> catalog)
    : m_opener(std::move(opener))
    , m_workers(std::move(workers))
    , m_catalog(std::move(catalog))
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

EntryList Playlists::entriesOf(const std::string& path) const
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
    const std::string extension = type == FILE_TYPE_PLAYLIST ? extensionOf(file.name()) : "";
    auto content = opened->fd ? m_workers->readPlaylist(opened->fd.get(), extension) : PlaylistContent{{}, 0, opened->error};
    if (!content.error.empty()) {
        logUnreadable(file, content.error);
        return nullptr;
    }
    const auto entries = m_opener.runWithin<EntryList>(
        kTimeout, path, [file, path, content = std::move(content), catalog = m_catalog](const std::stop_token& cancelled) {
            return PlaylistReading(file, path, catalog).run(content, cancelled);
        });
    return entries.value_or(nullptr);
}

} // namespace desktop
