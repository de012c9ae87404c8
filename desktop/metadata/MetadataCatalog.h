#pragma once

#include "desktop/files/EntryStatus.h"
#include "desktop/metadata/MetadataDatabase.h"

#include <stop_token>

namespace desktop {

/// Files of one folder.
struct LocatedFiles {
    Location folder;
    std::vector<StoredFile> files;
};

/// The metadata of the media files on the volumes: from the index where it knows them, else read and remembered. Safe on any
/// thread.
class MetadataCatalog {
public:
    /// @p reader may be null: nothing but what the index has is known then.
    MetadataCatalog(std::shared_ptr<MediaReader> reader, const std::string& cacheFolder);

    /// What is known of the files of folder @p folder; reads none.
    KnownFiles known(const Location& folder);
    /// Reads @p files, as MediaReader::readAll does. Nothing is remembered yet.
    std::vector<MediaMetadata> read(const std::vector<OpenMedia>& files, const std::stop_token& cancelled);
    /// Whether the result of read() for @p fd holds for later visits: not when the file was changed meanwhile, nor when the
    /// fault may lie elsewhere, as with a volume that has been removed.
    bool lasts(const MediaMetadata& metadata, int fd, const EntryStatus& entry, const std::string& volume) const;
    /// Stores the results of read() for @p files, in one transaction.
    void remember(const std::vector<LocatedFiles>& files);
    void remember(const Location& folder, const std::vector<StoredFile>& files) { remember({{folder, files}}); }
    void forgetBelow(const Location& folder);

    /// The metadata of the one media file @p file, pinned by @p pinned, an O_PATH descriptor. A file that cannot be read has
    /// only an error, which is logged.
    MediaMetadata metadataOf(const Location& file, const EntryStatus& entry, int pinned);

private:
    std::shared_ptr<MediaReader> m_reader;
    MetadataDatabase m_index;
};

FileStamp stampOf(const EntryStatus& entry);

} // namespace desktop
