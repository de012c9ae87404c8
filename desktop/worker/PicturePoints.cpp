#include "desktop/worker/PicturePoints.h"

#include "desktop/worker/MediaError.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace desktop {

namespace {

constexpr int kLeastHeightOfHd = 720; // pixels; from there on video is in the newer colours unless it says otherwise

/// The size in which @p frame is shown before it is turned: its points need not be square.
PixelSize shownSize(const AVFrame& frame)
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

Points scale(const AVFrame& frame, PixelSize size)
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
    Points to(turn.swapsSides() ? PixelSize{height, width} : from.size);
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

} // namespace

Points shownPoints(const Picture& picture, PixelSize bound)
{
    const PixelSize untouchedBound = picture.turn.swapsSides() ? PixelSize{bound.height, bound.width} : bound;
    return turned(scale(*picture.frame, fitInto(shownSize(*picture.frame), untouchedBound)), picture.turn);
}

} // namespace desktop
