#include "tests/desktop/support/Jpeg.h"

#include <turbojpeg.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace testsupport {

namespace {

using TurboJpeg = std::unique_ptr<void, int (*)(void*)>;

const unsigned char* unsignedBytes(const std::string& bytes)
{
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

// A big-endian TIFF with nothing but the orientation.
std::string exifSegment(int orientation)
{
    using namespace std::string_literals;
    const std::string content =
        "Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0"s + static_cast<char>(orientation) + "\0\0\0\0\0\0"s;
    return "\xFF\xE1\0"s + static_cast<char>(content.size() + 2) + content;
}

} // namespace

std::string Picture::colourAt(double x, double y) const
{
    const int column = static_cast<int>(x * width);
    const int row = static_cast<int>(y * height);
    const unsigned char* const point = rgb.data() + static_cast<std::size_t>(3 * (row * width + column));
    const bool red = point[0] > 200, green = point[1] > 200, blue = point[2] > 200;
    const bool noRed = point[0] < 60, noGreen = point[1] < 60, noBlue = point[2] < 60;
    if (red && green && blue) {
        return "white";
    }
    if (red && noGreen && noBlue) {
        return "red";
    }
    if (noRed && green && noBlue) {
        return "green";
    }
    return noRed && noGreen && blue ? "blue" : "other";
}

Picture decodeJpeg(const std::string& bytes)
{
    const TurboJpeg decoder(tjInitDecompress(), &tjDestroy);
    Picture picture;
    int subsampling = 0, colours = 0;
    if (tjDecompressHeader3(decoder.get(), unsignedBytes(bytes), bytes.size(), &picture.width, &picture.height, &subsampling,
                            &colours) != 0) {
        return Picture();
    }
    picture.rgb.resize(static_cast<std::size_t>(3 * picture.width * picture.height));
    const int result = tjDecompress2(decoder.get(), unsignedBytes(bytes), bytes.size(), picture.rgb.data(), picture.width, 0,
                                     picture.height, TJPF_RGB, 0);
    return result == 0 ? picture : Picture();
}

Picture readJpeg(const std::string& file)
{
    return decodeJpeg(readFile(file));
}

std::string fourFieldsJpeg(int width, int height, int orientation)
{
    constexpr unsigned char kColours[2][2][3] = {{{255, 0, 0}, {0, 255, 0}}, {{0, 0, 255}, {255, 255, 255}}};
    std::string rgb;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const unsigned char* const colour = kColours[2 * y / height][2 * x / width];
            rgb.append(reinterpret_cast<const char*>(colour), 3);
        }
    }
    const TurboJpeg encoder(tjInitCompress(), &tjDestroy);
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    if (tjCompress2(encoder.get(), unsignedBytes(rgb), width, 0, height, TJPF_RGB, &bytes, &size, TJSAMP_444, 95, 0) != 0) {
        throw std::runtime_error("cannot make a JPEG file");
    }
    const std::unique_ptr<unsigned char, void (*)(unsigned char*)> owner(bytes, &tjFree);
    std::string jpeg(reinterpret_cast<const char*>(bytes), size);
    return jpeg.insert(2, exifSegment(orientation));
}

std::string readFile(const std::string& file)
{
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void writeFile(const std::string& file, const std::string& bytes)
{
    std::ofstream out(file, std::ios::binary);
    if (!(out << bytes << std::flush)) {
        throw std::runtime_error("cannot write " + file);
    }
}

} // namespace testsupport
