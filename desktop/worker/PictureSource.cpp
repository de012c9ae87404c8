#include "desktop/worker/PictureSource.h"

#include "desktop/worker/AnimatedWebp.h"
#include "desktop/worker/HeifPhoto.h"
#include "desktop/worker/JpegDecoder.h"
#include "desktop/worker/MediaError.h"
#include "desktop/worker/PhotoMetadata.h"
#include "desktop/worker/StreamMetadata.h"

#include <algorithm>
#include <cmath>

namespace desktop {

namespace {

constexpr int kPartBefore = 10; // of a video's length: its beginning is often dark

CodecPointer openDecoder(const AVStream& stream)
{
    const AVCodec* const codec = avcodec_find_decoder(stream.codecpar->codec_id);
    if (codec == nullptr) {
        throw MediaError("The picture is of no known kind.");
    }
    CodecPointer decoder = own(avcodec_alloc_context3(codec));
    decoder->thread_count = 1;                 // one frame is wanted; threads only wait for more
    decoder->flags |= AV_CODEC_FLAG_LOW_DELAY; // and it is wanted as soon as it is there
    if (avcodec_parameters_to_context(decoder.get(), stream.codecpar) < 0 ||
        avcodec_open2(decoder.get(), codec, nullptr) < 0) {
        throw MediaError("The picture's decoder cannot be opened.");
    }
    return decoder;
}

FramePointer receiveFrame(AVCodecContext& decoder)
{
    FramePointer frame = own(av_frame_alloc());
    const bool whole = avcodec_receive_frame(&decoder, frame.get()) == 0 && frame->width > 0 && frame->height > 0;
    return whole ? std::move(frame) : nullptr;
}

/// The first frame from here on; null when none can be decoded.
FramePointer nextFrame(AvInput& input, const AVStream& stream)
{
    const CodecPointer decoder = openDecoder(stream);
    const PacketPointer packet = own(av_packet_alloc());
    while (input.read(stream, *packet)) {
        avcodec_send_packet(decoder.get(), packet.get()); // damage in one packet may be made good by the next
        av_packet_unref(packet.get());
        if (FramePointer frame = receiveFrame(*decoder)) {
            return frame;
        }
    }
    avcodec_send_packet(decoder.get(), nullptr); // what it has held back
    return receiveFrame(*decoder);
}

FramePointer decodeCover(const AVStream& stream, PixelSize bound)
{
    const AVPacket& packet = stream.attached_pic;
    if (FramePointer frame = decodeJpeg(packet.data, static_cast<std::size_t>(packet.size), bound)) {
        return frame;
    }
    const CodecPointer decoder = openDecoder(stream);
    avcodec_send_packet(decoder.get(), &packet);
    avcodec_send_packet(decoder.get(), nullptr);
    return receiveFrame(*decoder);
}

FramePointer frameALittleWayIn(AvInput& input, const AVStream& stream)
{
    if (input->duration > 0) {
        const std::int64_t start = input->start_time != AV_NOPTS_VALUE ? input->start_time : 0;
        const std::int64_t time = start + input->duration / kPartBefore;
        if (avformat_seek_file(input.operator->(), -1, INT64_MIN, time, time, 0) >= 0) {
            if (FramePointer frame = nextFrame(input, stream)) {
                return frame;
            }
        }
        avformat_seek_file(input.operator->(), -1, INT64_MIN, INT64_MIN + 1, INT64_MAX,
                           0); // as near the beginning as can be
    }
    return nextFrame(input, stream);
}

Picture orRefuse(FramePointer frame, Turn turn)
{
    if (frame == nullptr) {
        throw MediaError("The picture cannot be decoded.");
    }
    return {std::move(frame), turn};
}

Picture readPhoto(int fd, PixelSize bound)
{
    const MappedFile file(fd);
    if (isHeif(file)) {
        return {decodeHeif(file, bound), Turn()};
    }
    const Turn turn = readPhotoTurn(file);
    if (FramePointer frame = decodeJpeg(file.data(), file.size(), bound)) {
        return {std::move(frame), turn};
    }
    if (isAnimatedWebp(file)) {
        return {decodeAnimatedWebp(file), turn};
    }
    AvInput input(fd);
    const AVStream* const stream = input.video();
    return orRefuse(stream != nullptr ? nextFrame(input, *stream) : nullptr, turn);
}

Picture readStreams(int fd, bool withFrames, PixelSize bound)
{
    AvInput input(fd);
    if (const AVStream* const cover = input.cover()) {
        return orRefuse(decodeCover(*cover, bound), Turn());
    }
    const AVStream* stream = withFrames ? input.video() : nullptr;
    if (withFrames && (stream == nullptr || !isDescribed(*stream))) {
        input.describeStreams();
        stream = input.video();
    }
    if (stream == nullptr) {
        throw MediaError("The file holds no picture.");
    }
    return orRefuse(frameALittleWayIn(input, *stream), turnOf(*stream));
}

} // namespace

PixelSize fitInto(PixelSize picture, PixelSize bound)
{
    const double scale = std::min(
        {1.0, static_cast<double>(bound.width) / picture.width, static_cast<double>(bound.height) / picture.height});
    const auto scaled = [scale](int side) { return std::max(static_cast<int>(std::lround(side * scale)), 1); };
    return {scaled(picture.width), scaled(picture.height)};
}

FramePointer makeFrame(PixelSize size)
{
    FramePointer frame = own(av_frame_alloc());
    frame->width = size.width;
    frame->height = size.height;
    frame->format = AV_PIX_FMT_RGB24;
    if (av_frame_get_buffer(frame.get(), 0) < 0) {
        throw std::bad_alloc();
    }
    return frame;
}

Picture readPicture(int fd, FileType type, PixelSize bound)
{
    switch (type) {
    case FILE_TYPE_PHOTO:
    case FILE_TYPE_PANORAMA:
        return readPhoto(fd, bound);
    case FILE_TYPE_VIDEO:
        return readStreams(fd, true, bound);
    case FILE_TYPE_MUSIC:
        return readStreams(fd, false, bound);
    default:
        throw MediaError("Files of this kind have no picture.");
    }
}

} // namespace desktop
