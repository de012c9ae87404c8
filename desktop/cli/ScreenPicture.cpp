#include "desktop/cli/ScreenPicture.h"

#include "desktop/cli/UnfinishedFile.h"

#include "desktop/base/TurboJpeg.h"
#include "desktop/base/WriteAll.h"

#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <vector>

namespace desktop {

namespace {

namespace fs = std::filesystem;

constexpr int kQuality = 90;
constexpr int kBytesPerPixel = 4;

/// @p frame, or black pixels when it has none.
ScreenFrame shownFrame(ScreenFrame frame, int width, int height)
{
    if (frame.pixels == nullptr) {
        const auto black = std::make_shared<std::vector<std::uint8_t>>(static_cast<std::size_t>(width) *
                                                                       static_cast<std::size_t>(height) * kBytesPerPixel);
        frame = {width, height, std::shared_ptr<const std::uint8_t>(black, black->data())};
    }
    return frame;
}

bool writeJpeg(const ScreenFrame& frame, int fd)
{
    const TurboJpeg encoder(tjInitCompress());
    unsigned char* jpeg = nullptr;
    unsigned long size = 0;
    const int failed = tjCompress2(encoder.get(), frame.pixels.get(), frame.width, 0, frame.height, TJPF_RGBX, &jpeg, &size,
                                   TJSAMP_444, kQuality, 0);
    const TurboBytes owner(jpeg);
    errno = failed != 0 ? ENOMEM : 0;
    return failed == 0 && writeAll(fd, jpeg, size);
}

// A folder or a device is not replaced. 0 when what is written may have the name.
int faultOfTarget(const fs::path& file)
{
    struct stat status = {};
    if (stat(file.c_str(), &status) != 0) {
        return errno == ENOENT ? 0 : errno;
    }
    if (S_ISDIR(status.st_mode)) {
        return EISDIR;
    }
    return S_ISREG(status.st_mode) ? 0 : EEXIST;
}

} // namespace

int writeScreenPicture(Host& host, int width, int height, const std::string& file)
{
    if (const int fault = faultOfTarget(file)) {
        return fault;
    }
    const fs::path folder = fs::path(file).parent_path();
    const ScreenFrame frame = shownFrame(host.takeScreen(width, height), width, height);
    UnfinishedFile picture(folder.empty() ? "." : folder.string());
    return picture.fd() >= 0 && writeJpeg(frame, picture.fd()) && picture.keepAs(file) ? 0 : errno;
}

} // namespace desktop
