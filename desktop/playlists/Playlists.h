#pragma once

#include "desktop/files/LocationOpener.h"
#include "desktop/files/Pages.h"
#include "desktop/metadata/MetadataCatalog.h"
#include "desktop/workers/MediaWorkers.h"

namespace desktop {

/// The playlist files on the volumes. Operations are called on the command thread; what takes too long fails, which is
/// reported.
class Playlists {
public:
    Playlists(LocationOpener opener, std::shared_ptr<MediaWorkers> workers, std::shared_ptr<MetadataCatalog> catalog);

    /// The paths of the files below @p directory whose extension is that of a playlist, in the order of a walk; nothing when
    /// it cannot be read.
    std::optional<std::vector<std::string>> filesBelow(const std::string& directory) const;
    /// What playlist file @p path lists, as entries that lie anywhere on the volume; those that are not there are left out,
    /// which is logged. Null when it is no playlist or cannot be read. The file is read and parsed by a media worker.
    EntryList entriesOf(const std::string& path) const;

private:
    LocationOpener m_opener;
    std::shared_ptr<MediaWorkers> m_workers;
    std::shared_ptr<MetadataCatalog> m_catalog;
};

} // namespace desktop
