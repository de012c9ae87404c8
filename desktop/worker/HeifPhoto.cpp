#include "desktop/worker/HeifPhoto.h"

#include "desktop/worker/MediaError.h"
#include "desktop/worker/PhotoMetadata.h"

#include <libheif/heif.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace desktop {

namespace {

constexpr std::int64_t kMaxPoints = 48 << 20; // of the largest telephones; each takes six bytes on its way
constexpr int kLongestSide = 16384;           // pixels, also of what is within the picture

/// Deleters for what libheif gives out.
struct FreeHeif {
    void operator()(heif_context* context) const { heif_context_free(context); }
    void operator()(heif_image_handle* item) const { heif_image_handle_release(item); }
    void operator()(heif_image* image) const { heif_image_release(image); }
};
using ContextPointer = std::unique_ptr<heif_context, FreeHeif>;
using ItemPointer = std::unique_ptr<heif_image_handle, FreeHeif>;
using ImagePointer = std::unique_ptr<heif_image, FreeHeif>;

void check(const heif_error& error)
{
    if (error.code != heif_error_Ok) {
        throw MediaError(std::string("The picture cannot be decoded: ") + error.message);
    }
}

PixelSize sizeOf(const heif_image_handle& item)
{
    return {heif_image_handle_get_width(&item), heif_image_handle_get_height(&item)};
}

/// The picture that @p file is opened for; the file must outlive it.
ItemPointer primaryItem(const MappedFile& file)
{
    const ContextPointer context(heif_context_alloc());
    heif_context_set_max_decoding_threads(context.get(), 0);
    heif_context_set_maximum_image_size_limit(context.get(), kLongestSide);
    check(heif_context_read_from_memory_without_copy(context.get(), file.data(), file.size(), nullptr));
    heif_image_handle* item = nullptr;
    check(heif_context_get_primary_image_handle(context.get(), &item));
    return ItemPointer(item);
}

/// The smaller version of @p item that is enough for @p wanted; null when there is none.
ItemPointer smallerVersion(const heif_image_handle& item, PixelSize wanted)
{
    std::vector<heif_item_id> ids(static_cast<std::size_t>(heif_image_handle_get_number_of_thumbnails(&item)));
    heif_image_handle_get_list_of_thumbnail_IDs(&item, ids.data(), static_cast<int>(ids.size()));
    for (const heif_item_id id : ids) {
        heif_image_handle* smaller = nullptr;
        check(heif_image_handle_get_thumbnail(&item, id, &smaller));
        ItemPointer owner(smaller);
        const PixelSize size = sizeOf(*smaller);
        if (size.width >= wanted.width && size.height >= wanted.height) {
            return owner;
        }
    }
    return nullptr;
}

FramePointer decode(const heif_image_handle& item)
{
    const PixelSize claimed = sizeOf(item);
    if (std::int64_t{claimed.width} * claimed.height > kMaxPoints) {
        throw MediaError("The picture is too large."); // before it takes the memory
    }
    heif_image* decoded = nullptr;
    check(heif_decode_image(&item, &decoded, heif_colorspace_RGB, heif_chroma_interleaved_RGB, nullptr));
    const ImagePointer image(decoded);
    constexpr heif_channel kChannel = heif_channel_interleaved;
    FramePointer frame = makeFrame({heif_image_get_width(decoded, kChannel), heif_image_get_height(decoded, kChannel)});
    int pitch = 0;
    const std::uint8_t* line = heif_image_get_plane_readonly(decoded, kChannel, &pitch);
    for (int y = 0; y < frame->height; ++y, line += pitch) {
        std::copy_n(line, frame->width * kColours, frame->data[0] + std::ptrdiff_t{y} * frame->linesize[0]);
    }
    return frame;
}

} // namespace

void prepareHeif()
{
    heif_init(nullptr);
}

bool isHeif(const MappedFile& file)
{
    constexpr std::size_t kLeast = 12;  // the library cannot recognise less
    constexpr std::size_t kHead = 1024; // the brands stand in it
    if (file.size() < kLeast) {
        return false;
    }
    const auto found = heif_check_filetype(file.data(), static_cast<int>(std::min(file.size(), kHead)));
    return found == heif_filetype_yes_supported || found == heif_filetype_maybe; // the commonest brand says no more
}

MediaMetadata readHeifMetadata(const MappedFile& file)
{
    const PixelSize size = sizeOf(*primaryItem(file));
    MediaMetadata metadata;
    try {
        metadata = readPhotoMetadata(file);
    } catch (const MediaError&) { // its metadata is missing then, the picture is not
    }
    metadata.width = size.width;
    metadata.height = size.height;
    metadata.rotation = 0;
    return metadata;
}

FramePointer decodeHeif(const MappedFile& file, PixelSize bound)
{
    const ItemPointer item = primaryItem(file);
    const ItemPointer smaller = smallerVersion(*item, fitInto(sizeOf(*item), bound));
    return decode(smaller != nullptr ? *smaller : *item);
}

} // namespace desktop
