#include "desktop/metadata/MediaLibrary.h"

#include "desktop/base/FileTime.h"

#include <sys/stat.h>

#include <cerrno>

namespace desktop {

namespace {

std::string join(const std::vector<std::string>& names)
{
    std::string path;
    for (const std::string& name : names) {
        path += path.empty() ? name : "/" + name;
    }
    return path;
}

IndexedFolder indexed(const Location& folder)
{
    return {folder.volumeId.empty() ? folder.stick : folder.volumeId, join(splitPath(folder.relative))};
}

} // namespace

MediaLibrary::MediaLibrary(std::shared_ptr<MediaReader> reader, const std::string& cacheFolder)
    : m_reader(std::move(reader))
    , m_index(cacheFolder)
{
}

KnownFiles MediaLibrary::known(const Location& folder)
{
    return m_index.filesOf(indexed(folder));
}

std::vector<MediaFacts> MediaLibrary::read(const std::vector<OpenMedia>& files, const std::atomic<bool>& cancelled)
{
    if (m_reader != nullptr) {
        return m_reader->readAll(files, cancelled);
    }
    MediaFacts none;
    none.error = "there is nothing to read it with";
    none.unread = true;
    return std::vector<MediaFacts>(files.size(), none);
}

bool MediaLibrary::lasts(const MediaFacts& facts, int fd, const EntryFacts& entry, const std::string& stick) const
{
    struct stat now = {};
    struct stat there = {};
    const bool unchanged = fstat(fd, &now) == 0 && static_cast<std::uint64_t>(now.st_size) == entry.size &&
                           nanoseconds(now.st_mtim) == entry.modified;
    const bool stickIsThere = stat(stick.c_str(), &there) == 0 && there.st_dev == now.st_dev;
    const bool isFilesFault = !facts.unread && stickIsThere;
    return unchanged && (facts.error.empty() || isFilesFault);
}

void MediaLibrary::remember(const std::vector<LocatedFiles>& files)
{
    std::vector<IndexedFolderFiles> folders;
    for (const LocatedFiles& of : files) {
        folders.push_back({indexed(of.folder), of.files});
    }
    m_index.store(folders);
}

void MediaLibrary::forgetBelow(const Location& folder)
{
    m_index.forgetBelow(indexed(folder));
}

MediaFacts MediaLibrary::factsOf(const Location& file, const EntryFacts& entry, int pinned)
{
    const std::size_t slash = file.relative.rfind('/');
    const Location folder = {file.stick, file.relative.substr(0, slash), file.volumeId};
    const std::string name = file.relative.substr(slash + 1);
    const KnownFiles knownFiles = known(folder);
    if (const MediaFacts* facts = knownFiles.find(name, stampOf(entry))) {
        return *facts;
    }
    const UniqueFd fd = openRegularFile(pinned);
    if (!fd) {
        MediaFacts none;
        none.error = describeError(errno);
        return none;
    }
    const MediaFacts facts = read({{fd.get(), entry.type}}, false).front();
    if (!facts.error.empty()) {
        logUnreadable(file, facts.error);
    }
    if (lasts(facts, fd.get(), entry, file.stick)) {
        remember(folder, {{name, stampOf(entry), facts}});
    }
    return facts;
}

FileStamp stampOf(const EntryFacts& entry)
{
    return {entry.size, entry.modified};
}

} // namespace desktop
