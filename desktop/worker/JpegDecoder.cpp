#include "desktop/worker/JpegDecoder.h"

#include "desktop/base/TurboJpeg.h"

#include <algorithm>

namespace desktop {

namespace {

// The sides may still be swapped by a turn: enough for either way is enough.
PixelSize smallestDecoded(PixelSize picture, PixelSize bound)
{
    const int side = std::max(bound.width, bound.height);
    const PixelSize wanted = fitInto(picture, {side, side});
    int count = 0;
    const tjscalingfactor* const factors = tjGetScalingFactors(&count);
    PixelSize smallest = picture;
    for (int i = 0; i < count; ++i) {
        const PixelSize scaled = {TJSCALED(picture.width, factors[i]), TJSCALED(picture.height, factors[i])};
        if (scaled.width >= wanted.width && scaled.height >= wanted.height && scaled.width < smallest.width) {
            smallest = scaled;
        }
    }
    return smallest;
}

} // namespace

FramePointer decodeJpeg(const unsigned char* bytes, std::size_t size, PixelSize bound)
{
    const TurboJpeg decoder(tjInitDecompress());
    PixelSize picture;
    int subsampling = 0;
    int colours = 0;
    if (tjDecompressHeader3(decoder.get(), bytes, size, &picture.width, &picture.height, &subsampling, &colours) != 0) {
        return nullptr;
    }
    const PixelSize decoded = smallestDecoded(picture, bound);
    FramePointer frame = makeFrame(decoded);
    const int result = tjDecompress2(decoder.get(), bytes, size, frame->data[0], decoded.width, frame->linesize[0],
                                     decoded.height, TJPF_RGB, TJFLAG_FASTDCT | TJFLAG_LIMITSCANS);
    const bool usable = result == 0 || tjGetErrorCode(decoder.get()) == TJERR_WARNING;
    return usable ? std::move(frame) : nullptr;
}

} // namespace desktop
