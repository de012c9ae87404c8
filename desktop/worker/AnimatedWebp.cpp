#include "desktop/worker/AnimatedWebp.h"

#include "desktop/worker/MediaError.h"

#include <webp/decode.h>
#include <webp/demux.h>

#include <cstdint>
#include <cstring>
#include <memory>

namespace desktop {

namespace {

constexpr std::int64_t kMaxPoints = 24 << 20; // of which each takes seven bytes at most

struct DeleteDemuxer {
    void operator()(WebPDemuxer* demuxer) const { WebPDemuxDelete(demuxer); }
};
using DemuxerPointer = std::unique_ptr<WebPDemuxer, DeleteDemuxer>;

struct ReleaseFrame {
    void operator()(WebPIterator* frame) const { WebPDemuxReleaseIterator(frame); }
};

FramePointer emptyPicture(const WebPDemuxer& file)
{
    const PixelSize size = {static_cast<int>(WebPDemuxGetI(&file, WEBP_FF_CANVAS_WIDTH)),
                            static_cast<int>(WebPDemuxGetI(&file, WEBP_FF_CANVAS_HEIGHT))};
    if (std::int64_t{size.width} * size.height > kMaxPoints) {
        throw MediaError("The picture is too large."); // before it takes the memory
    }
    FramePointer picture = makeFrame(size);
    std::memset(picture->data[0], 0, static_cast<std::size_t>(picture->linesize[0]) * static_cast<std::size_t>(size.height));
    return picture;
}

} // namespace

bool isAnimatedWebp(const MappedFile& file)
{
    WebPBitstreamFeatures features;
    return WebPGetFeatures(file.data(), file.size(), &features) == VP8_STATUS_OK && features.has_animation != 0;
}

FramePointer decodeAnimatedWebp(const MappedFile& file)
{
    const WebPData bytes = {file.data(), file.size()};
    WebPDemuxState state = WEBP_DEMUX_PARSE_ERROR;
    const DemuxerPointer demuxer(WebPDemuxPartial(&bytes, &state)); // frames that are missing at the end are not wanted
    WebPIterator first = {};
    if (demuxer == nullptr || WebPDemuxGetFrame(demuxer.get(), 1, &first) == 0) {
        throw MediaError("The picture cannot be decoded.");
    }
    const std::unique_ptr<WebPIterator, ReleaseFrame> release(&first);
    FramePointer picture = emptyPicture(*demuxer);
    if (first.x_offset < 0 || first.y_offset < 0 || first.width > picture->width - first.x_offset ||
        first.height > picture->height - first.y_offset) {
        throw MediaError("The picture's first frame lies outside it.");
    }
    const int pitch = picture->linesize[0];
    const std::ptrdiff_t corner = std::ptrdiff_t{first.y_offset} * pitch + std::ptrdiff_t{first.x_offset} * kColours;
    const auto room = static_cast<std::size_t>(std::ptrdiff_t{picture->height} * pitch - corner);
    if (WebPDecodeRGBInto(first.fragment.bytes, first.fragment.size, picture->data[0] + corner, room, pitch) == nullptr) {
        throw MediaError("The picture cannot be decoded.");
    }
    return picture;
}

} // namespace desktop
