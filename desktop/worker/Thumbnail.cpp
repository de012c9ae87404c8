#include "desktop/worker/Thumbnail.h"

#include "desktop/base/TurboJpeg.h"
#include "desktop/worker/MediaError.h"
#include "desktop/worker/PicturePoints.h"

#include <unistd.h>

#include <cerrno>
#include <memory>

namespace desktop {

namespace {

constexpr int kQuality = 85;

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

void writeThumbnail(const Picture& picture, PixelSize bound, int output)
{
    const Points points = shownPoints(picture, bound);
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
