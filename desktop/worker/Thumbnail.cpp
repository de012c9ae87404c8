#include "desktop/worker/Thumbnail.h"

#include "desktop/base/TurboJpeg.h"
#include "desktop/base/WriteAll.h"
#include "desktop/worker/MediaError.h"
#include "desktop/worker/PicturePoints.h"

namespace desktop {

namespace {

constexpr int kQuality = 85;

} // namespace

void writeThumbnail(const Picture& picture, PixelSize bound, int output)
{
    const Points points = shownPoints(picture, bound);
    const TurboJpeg encoder(tjInitCompress());
    unsigned char* jpeg = nullptr;
    unsigned long size = 0;
    const int result = tjCompress2(encoder.get(), points.bytes.data(), points.size.width, 0, points.size.height, TJPF_RGB,
                                   &jpeg, &size, TJSAMP_420, kQuality, 0);
    const TurboBytes owner(jpeg);
    if (result != 0 || !writeAll(output, jpeg, size)) {
        throw MediaError("The picture cannot be written.");
    }
}

} // namespace desktop
