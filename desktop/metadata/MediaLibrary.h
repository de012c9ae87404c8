#pragma once

#include "desktop/files/EntryFacts.h"
#include "desktop/jobs/BackgroundJob.h"
#include "desktop/metadata/MediaIndex.h"

namespace desktop {

/// Files of one folder.
struct LocatedFiles {
    Location folder;
    std::vector<IndexedFile> files;
};

/// The facts of the media files on the sticks: from the index where it knows them, else read and remembered. Safe on any
/// thread.
class MediaLibrary {
public:
    /// @p reader may be null: nothing but what the index has is known then.
    MediaLibrary(std::shared_ptr<MediaReader> reader, const std::string& cacheFolder);

    /// What is known of the files of folder @p folder; reads none.
    KnownFiles known(const Location& folder);
    /// Reads @p files, as MediaReader::readAll does. Nothing is remembered yet.
    std::vector<MediaFacts> read(const std::vector<OpenMedia>& files, const std::atomic<bool>& cancelled);
    /// Whether what read() told of @p fd holds for later visits: not when the file was changed meanwhile, nor when the fault
    /// may lie elsewhere, as with a stick that has been pulled.
    bool lasts(const MediaFacts& facts, int fd, const EntryFacts& entry, const std::string& stick) const;
    /// Remembers what read() told of @p files, in one go.
    void remember(const std::vector<LocatedFiles>& files);
    void remember(const Location& folder, const std::vector<IndexedFile>& files) { remember({{folder, files}}); }
    void forgetBelow(const Location& folder);

    /// The facts of the one media file @p file, pinned by @p pinned, an O_PATH descriptor. A file that cannot be read has
    /// only an error, which is logged.
    MediaFacts factsOf(const Location& file, const EntryFacts& entry, int pinned);

private:
    std::shared_ptr<MediaReader> m_reader;
    MediaIndex m_index;
};

/// What @p library, if there is one, knows of the files of @p folder.
inline KnownFiles knownFiles(const std::shared_ptr<MediaLibrary>& library, const Location& folder)
{
    return library != nullptr ? library->known(folder) : KnownFiles();
}

FileStamp stampOf(const EntryFacts& entry);

} // namespace desktop
