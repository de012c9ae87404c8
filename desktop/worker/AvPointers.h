#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

#include <memory>

namespace desktop {

/// Deleters for what the libraries of libav give out.
struct FreeAv {
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
    void operator()(SwsContext* scaler) const { sws_freeContext(scaler); }
};
using FramePointer = std::unique_ptr<AVFrame, FreeAv>;
using PacketPointer = std::unique_ptr<AVPacket, FreeAv>;
using CodecPointer = std::unique_ptr<AVCodecContext, FreeAv>;
using ScalerPointer = std::unique_ptr<SwsContext, FreeAv>;

/// @p made, which the library has just given out; throws std::bad_alloc when it gave nothing.
template <typename T>
std::unique_ptr<T, FreeAv> own(T* made)
{
    if (made == nullptr) {
        throw std::bad_alloc();
    }
    return std::unique_ptr<T, FreeAv>(made);
}

} // namespace desktop
