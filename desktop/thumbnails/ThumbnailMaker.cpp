#include "desktop/thumbnails/ThumbnailMaker.h"

#include "desktop/files/EntryStatus.h"
#include "desktop/files/MediaTypes.h"
#include "desktop/jobs/BackgroundJob.h"
#include "desktop/text/NameEncoding.h"

#include <fcntl.h>

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <string_view>

namespace desktop {

namespace {

constexpr std::chrono::seconds kOpenTimeout(3);
constexpr std::size_t kHead = 4096; // bytes of a file that go into its key

FileType kindOf(FileType type)
{
    return type == FILE_TYPE_PANORAMA ? FILE_TYPE_PHOTO : type;
}

/// The 64-bit FNV-1a hash of what it is fed with.
class Hash {
public:
    void add(std::string_view bytes)
    {
        for (const char byte : bytes) {
            m_value = (m_value ^ static_cast<unsigned char>(byte)) * 0x100000001B3U;
        }
    }
    template <typename Number>
    void addNumber(Number number)
    {
        add({reinterpret_cast<const char*>(&number), sizeof number});
    }
    std::string text() const
    {
        char digits[2 * sizeof m_value + 1];
        std::snprintf(digits, sizeof digits, "%016" PRIx64, m_value);
        return digits;
    }

private:
    std::uint64_t m_value = 0xCBF29CE484222325U;
};

/// What the picture of a file depends on. The place is the one on the volume, so that a volume that comes back under another
/// name finds its pictures again; the head distinguishes files that agree in everything else.
std::string contentKey(const Location& location, int fd, const EntryStatus& status, const ThumbnailForm& form)
{
    char head[kHead];
    const ssize_t got = pread(fd, head, sizeof head, 0);
    Hash hash;
    hash.addNumber(kReadingVersion);
    hash.add(location.relative);
    hash.addNumber(status.size);
    hash.addNumber(status.modified);
    hash.addNumber(form.width);
    hash.addNumber(form.height);
    hash.add({head, got > 0 ? static_cast<std::size_t>(got) : 0});
    return hash.text();
}

} // namespace

/// The file that a picture is made of.
struct ThumbnailMaker::SourceFile {
    UniqueFd fd; ///< none when no picture is wanted, or for the reason in error
    FileType type = FILE_TYPE_UNKNOWN;
    std::string key; ///< under which its picture is kept
    int error = 0;   ///< errno value
};

bool ThumbnailForm::wants(FileType file) const
{
    return isMedia(file) && (!isMedia(kindOf(type)) || kindOf(type) == file);
}

ThumbnailMaker::ThumbnailMaker(PathResolver resolver, std::shared_ptr<MediaWorkers> workers, const std::string& cacheFolder)
    : m_resolver(std::move(resolver))
    , m_workers(std::move(workers))
    , m_cache(cacheFolder)
{
}

// Takes as long as the file system does.
ThumbnailMaker::SourceFile ThumbnailMaker::openSource(const Location& location, const ThumbnailForm& form)
{
    SourceFile file;
    const UniqueFd pinned = PathResolver::open(location, O_PATH);
    const auto status = pinned ? inspectPinned(pinned.get(), location.relative) : std::nullopt;
    if (!status) {
        file.error = errno;
        return file;
    }
    if (!form.wants(status->type)) {
        return file;
    }
    file.type = status->type;
    file.fd = openRegularFile(pinned.get());
    if (file.fd) {
        file.key = contentKey(location, file.fd.get(), *status, form);
    } else {
        file.error = errno;
    }
    return file;
}

std::string ThumbnailMaker::volumeOf(const std::string& path) const
{
    return m_resolver.locate(decodeName(path)).volume;
}

ThumbnailResult ThumbnailMaker::make(const std::string& path, const ThumbnailForm& form, PictureFolder& folder,
                                     const std::stop_token& cancelled)
{
    const Location location = m_resolver.locate(decodeName(path));
    const auto file = runWithin<SourceFile>(
        kOpenTimeout, [location, form](const std::stop_token&) { return openSource(location, form); }, cancelled);
    if (!file) {
        return {"", describeError(ETIMEDOUT), location.volume};
    }
    if (!file->fd) {
        return {"", file->error != 0 ? describeError(file->error) : "", ""};
    }
    const NewPicture picture = folder.begin();
    if (!picture.fd) {
        return {"", "There is no place for the picture: " + describeError(errno), ""};
    }
    const std::string error = write(*file, form, picture.fd.get(), cancelled);
    if (!error.empty()) {
        PictureFolder::discard(picture);
        return {"", error, ""};
    }
    folder.keep(picture);
    return {picture.path, "", ""};
}

// Writes the picture that is kept for @p file, or else a new one; returns why there is none.
std::string ThumbnailMaker::write(const SourceFile& file, const ThumbnailForm& form, int picture,
                                  const std::stop_token& cancelled)
{
    if (const UniqueFd known = m_cache.find(file.key)) {
        return copyFile(known.get(), picture) ? "" : describeError(errno);
    }
    std::string error = m_workers->makeThumbnail(file.fd.get(), file.type, form.width, form.height, picture, cancelled);
    if (error.empty()) {
        m_cache.keep(file.key, picture);
    }
    return error;
}

} // namespace desktop
