#include "desktop/thumbnails/ThumbnailMaker.h"

#include "desktop/files/EntryStatus.h"
#include "desktop/files/MediaTypes.h"
#include "desktop/text/NameEncoding.h"

#include <fcntl.h>

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <string_view>

namespace desktop {

namespace {

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

std::string ThumbnailMaker::make(const std::string& path, const ThumbnailForm& form, PictureFolder& folder,
                                 const std::stop_token& cancelled, std::string& error)
{
    const Location location = m_resolver.locate(decodeName(path));
    const UniqueFd pinned = PathResolver::open(location, O_PATH);
    const auto status = pinned ? inspectPinned(pinned.get(), location.relative) : std::nullopt;
    if (!status) {
        error = describeError(errno);
        return "";
    }
    if (!form.wants(status->type)) {
        return "";
    }
    const UniqueFd file = openRegularFile(pinned.get());
    const NewPicture picture = file ? folder.begin() : NewPicture();
    if (!picture.fd) {
        error = describeError(errno);
        return "";
    }
    error =
        write(file.get(), status->type, form, contentKey(location, file.get(), *status, form), picture.fd.get(), cancelled);
    if (!error.empty()) {
        PictureFolder::discard(picture);
        return "";
    }
    folder.keep(picture);
    return picture.path;
}

// Writes the picture that is kept under @p key, or else a new one; returns why there is none.
std::string ThumbnailMaker::write(int file, FileType type, const ThumbnailForm& form, const std::string& key, int picture,
                                  const std::stop_token& cancelled)
{
    if (const UniqueFd known = m_cache.find(key)) {
        return copyFile(known.get(), picture) ? "" : describeError(errno);
    }
    std::string error = m_workers->makeThumbnail(file, type, form.width, form.height, picture, cancelled);
    if (error.empty()) {
        m_cache.keep(key, picture);
    }
    return error;
}

} // namespace desktop
