#include "desktop/worker/Thumbnail.h"

#include "desktop/base/TurboJpeg.h"
#include "desktop/worker/MediaError.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace desktop {

namespace {

constexpr int kQuality = 85;
constexpr int kLeastHeightOfHd = 720; // pixels; from there on video is in the newer colours unless it says otherwise

/// Points of three bytes, line after line without gaps.
struct Points {
    PictureSize size;
    std::vector<unsigned char> bytes;

    explicit Points(PictureSize pictureSize)
        : size(pictureSize)
        , bytes(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) * kColours)
    {
    }
    unsigned char* at(int x, int y)
    {
        return bytes.data() +
               (static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width) + static_cast<std::size_t>(x)) * kColours;
    }
};

/// The size in which @p frame is shown before it is turned: its points need not be square.
PictureSize shownSize(const AVFrame& frame)
{
    const AVRational shape = frame.sample_aspect_ratio;
    const double stretch = shape.num > 0 && shape.den > 0 ? av_q2d(shape) : 1;
    if (stretch < 1.0 / 16 || stretch > 16) { // a damaged claim
        return {frame.width, frame.height};
    }
    return {std::max(static_cast<int>(std::lround(frame.width * stretch)), 1), frame.height};
}

void setColours(SwsContext* scaler, const AVFrame& frame)
{
    int space = frame.colorspace;
    if (space == AVCOL_SPC_UNSPECIFIED) {
        space = frame.height >= kLeastHeightOfHd ? SWS_CS_ITU709 : SWS_CS_ITU601;
    }
    int* inverse = nullptr;
    int* table = nullptr;
    int fromRange = 0, toRange = 0, brightness = 0, contrast = 0, saturation = 0;
    if (sws_getColorspaceDetails(scaler, &inverse, &fromRange, &table, &toRange, &brightness, &contrast, &saturation) >= 0) {
        const int range = frame.color_range == AVCOL_RANGE_JPEG ? 1 : fromRange;
        sws_setColorspaceDetails(scaler, sws_getCoefficients(space), range, table, toRange, brightness, contrast,
                                 saturation);
    }
}

Points scale(const AVFrame& frame, PictureSize size)
{
    const ScalerPointer scaler(sws_getContext(frame.width, frame.height, static_cast<AVPixelFormat>(frame.format),
                                              size.width, size.height, AV_PIX_FMT_RGB24, SWS_AREA, nullptr, nullptr,
                                              nullptr));
    if (scaler == nullptr) {
        throw MediaError("The picture cannot be made smaller.");
    }
    setColours(scaler.get(), frame);
    Points points(size);
    std::uint8_t* const planes[] = {points.bytes.data()};
    const int pitches[] = {size.width * kColours};
    sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, planes, pitches);
    return points;
}

Points turned(Points from, Turn turn)
{
    if (!turn.mirror && turn.quarters == 0) {
        return from;
    }
    const auto [width, height] = from.size;
    Points to(turn.swapsSides() ? PictureSize{height, width} : from.size);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            int toX = turn.mirror ? width - 1 - x : x;
            int toY = y;
            for (int quarter = 0, rows = height, columns = width; quarter < turn.quarters; ++quarter) {
                toX = std::exchange(toY, toX);
                toX = rows - 1 - toX;
                std::swap(rows, columns);
            }
            std::copy_n(from.at(x, y), kColours, to.at(toX, toY));
        }
    }
    return to;
}

void writeAll(int output, const unsigned char* bytes, std::size_t size)
{
    while (size > 0) {
        const ssize_t written = TEMP_FAILURE_RETRY(write(output, bytes, size));
        if (written <= 0) {
            throw MediaError("The picture cannot be written.");
        }
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
}

} // namespace

void writeThumbnail(const Picture& picture, PictureSize bound, int output)
{
    const PictureSize untouchedBound = picture.turn.swapsSides() ? PictureSize{bound.height, bound.width} : bound;
    const Points points = turned(scale(*picture.frame, fitInto(shownSize(*picture.frame), untouchedBound)), picture.turn);
    const TurboJpeg encoder(tjInitCompress());
    unsigned char* jpeg = nullptr;
    unsigned long size = 0;
    const int result = tjCompress2(encoder.get(), points.bytes.data(), points.size.width, 0, points.size.height, TJPF_RGB,
                                   &jpeg, &size, TJSAMP_420, kQuality, 0);
    const TurboBytes owner(jpeg);
    if (result != 0) {
        throw MediaError("The picture cannot be written.");
    }
    writeAll(output, jpeg, size);
}

} // namespace desktop
