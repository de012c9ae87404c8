#include "desktop/metadata/MetadataCatalog.h"

#include "desktop/base/FileTime.h"

#include <sys/stat.h>

#include <cerrno>

namespace desktop {

MetadataCatalog::MetadataCatalog(std::shared_ptr<MediaReader> reader, const std::string& cacheFolder)
    : m_reader(std::move(reader))
    , m_index(cacheFolder)
{
}

KnownFiles MetadataCatalog::known(const Location& folder)
{
    return m_index.filesOf(storedAs(folder));
}

std::vector<MediaMetadata> MetadataCatalog::read(const std::vector<OpenMedia>& files, const std::stop_token& cancelled)
{
    if (m_reader != nullptr) {
        return m_reader->readAll(files, cancelled);
    }
    MediaMetadata none;
    none.error = "there is nothing to read it with";
    none.unread = true;
    return std::vector<MediaMetadata>(files.size(), none);
}

bool MetadataCatalog::lasts(const MediaMetadata& metadata, int fd, const EntryStatus& entry, const std::string& volume) const
{
    struct stat now = {};
    struct stat there = {};
    const bool unchanged = fstat(fd, &now) == 0 && static_cast<std::uint64_t>(now.st_size) == entry.size &&
                           nanoseconds(now.st_mtim) == entry.modified;
    const bool volumeIsThere = stat(volume.c_str(), &there) == 0 && there.st_dev == now.st_dev;
    const bool isFilesFault = !metadata.unread && volumeIsThere;
    return unchanged && (metadata.error.empty() || isFilesFault);
}

void MetadataCatalog::remember(const std::vector<LocatedFiles>& files)
{
    std::vector<StoredFolderFiles> folders;
    folders.reserve(files.size());
    for (const LocatedFiles& of : files) {
        folders.push_back({storedAs(of.folder), of.files});
    }
    m_index.store(folders);
}

void MetadataCatalog::forgetBelow(const Location& folder)
{
    m_index.forgetBelow(storedAs(folder));
}

MediaMetadata MetadataCatalog::metadataOf(const Location& file, const EntryStatus& entry, int pinned)
{
    const KnownFiles knownFiles = known(file.parent());
    if (const MediaMetadata* metadata = knownFiles.find(file.name(), stampOf(entry))) {
        return *metadata;
    }
    const UniqueFd fd = openRegularFile(pinned);
    if (!fd) {
        MediaMetadata none;
        none.error = describeError(errno);
        return none;
    }
    MediaMetadata metadata = read({{fd.get(), entry.type}}, {}).front();
    if (!metadata.error.empty()) {
        logUnreadable(file, metadata.error);
    }
    if (lasts(metadata, fd.get(), entry, file.volume)) {
        remember(file.parent(), {{file.name(), stampOf(entry), metadata}});
    }
    return metadata;
}

FileStamp stampOf(const EntryStatus& entry)
{
    return {entry.size, entry.modified};
}

} // namespace desktop
