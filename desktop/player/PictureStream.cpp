#include "desktop/player/PictureStream.h"

#include "desktop/player/MemoryFile.h"

#include <cstring>

namespace desktop {

namespace {

constexpr std::size_t kBytesOfPixel = 4;

FramePointer frameOf(const std::vector<unsigned char>& rgba, PixelSize size)
{
    FramePointer frame = own(av_frame_alloc());
    frame->width = size.width;
    frame->height = size.height;
    frame->format = AV_PIX_FMT_RGBA;
    if (av_frame_get_buffer(frame.get(), 0) < 0) {
        throw std::bad_alloc();
    }
    const std::size_t line = static_cast<std::size_t>(size.width) * kBytesOfPixel;
    for (int y = 0; y < size.height; ++y) {
        std::memcpy(frame->data[0] + std::ptrdiff_t{y} * frame->linesize[0],
                    rgba.data() + static_cast<std::size_t>(y) * line, line);
    }
    return frame;
}

} // namespace

UniqueFd pictureStream(const Points& points)
{
    std::string file = "P6\n" + std::to_string(points.size.width) + " " + std::to_string(points.size.height) + "\n255\n";
    file.append(reinterpret_cast<const char*>(points.bytes.data()), points.bytes.size());
    return memoryFile(file);
}

std::string pngOf(const std::vector<unsigned char>& rgba, PixelSize size)
{
    const AVCodec* const codec = avcodec_find_encoder(AV_CODEC_ID_PNG);
    if (codec == nullptr) {
        return "";
    }
    const CodecPointer encoder = own(avcodec_alloc_context3(codec));
    encoder->width = size.width;
    encoder->height = size.height;
    encoder->pix_fmt = AV_PIX_FMT_RGBA;
    encoder->time_base = {1, 1};
    const PacketPointer packet = own(av_packet_alloc());
    if (avcodec_open2(encoder.get(), codec, nullptr) < 0 ||
        avcodec_send_frame(encoder.get(), frameOf(rgba, size).get()) < 0 ||
        avcodec_receive_packet(encoder.get(), packet.get()) < 0) {
        return "";
    }
    return {reinterpret_cast<const char*>(packet->data), static_cast<std::size_t>(packet->size)};
}

} // namespace desktop
