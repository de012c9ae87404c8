#pragma once

#include "desktop/files/LocationOpener.h"
#include "desktop/files/Pages.h"
#include "desktop/metadata/MetadataCatalog.h"
#include "desktop/workers/MediaWorkers.h"

#include <chrono>

namespace desktop {

/// The playlist files on the volumes. Operations are called on the command thread; what takes too long fails, which is
/// reported.
class Playlists {
public:
    static constexpr std::chrono::milliseconds kPhotoTime{1000};

    /// @p photoTime: how long the photos of a list that the index does not know are read.
    Playlists(LocationOpener opener, std::shared_ptr<MediaWorkers> workers, std::shared_ptr<MetadataCatalog> catalog,
              std::chrono::milliseconds photoTime = kPhotoTime);

    /// The paths of the files below @p directory whose extension is that of a playlist, in the order of a walk; nothing when
    /// it cannot be read.
    std::optional<std::vector<std::string>> filesBelow(const std::string& directory) const;
    /// Whether @p path is a playlist file, by its name or by its content; not when it cannot be looked at. Nothing, which is
    /// reported, when the volume does not answer for 3 seconds.
    std::optional<bool> isPlaylist(const std::string& path) const;
    /// What playlist file @p path lists, as entries that lie anywhere on the volume; those that are not there are left out,
    /// which is logged. Null when it is no playlist, or cannot be read, which is reported. The file is read and parsed by a
    /// media worker, once for all pages that are asked for within a few seconds.
    EntryList entriesOf(const std::string& path);

private:
    /// A playlist as it was read last.
    struct Kept {
        std::string path;
        FileStamp stamp;
        std::chrono::steady_clock::time_point until; ///< files may come and go on the volume
        EntryList entries;
    };

    void reportUnreadable(const Location& file, const std::string& path, const std::string& reason) const;
    EntryList readEntries(const std::string& path, const Location& file, int fd);

    LocationOpener m_opener;
    std::shared_ptr<MediaWorkers> m_workers;
    std::shared_ptr<MetadataCatalog> m_catalog;
    std::chrono::milliseconds m_photoTime;
    Kept m_kept;
};

} // namespace desktop
