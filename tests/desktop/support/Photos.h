#pragma once

#include "tests/desktop/support/Jpeg.h"
#include "tests/desktop/support/Songs.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace testsupport {

// Photos in memory, written byte by byte, with the metadata that a test wants.

/// A JPEG segment; kApp1 holds EXIF and XMP, kApp13 IPTC.
constexpr char kApp1 = '\xE1';
constexpr char kApp13 = '\xED';
inline std::string jpegSegment(char marker, const std::string& content)
{
    return std::string("\xFF") + marker + bigEndian(content.size() + 2, 2) + content;
}

/// A small JPEG photo with these segments.
inline std::string jpegWith(const std::string& segments)
{
    return fourFieldsJpeg(64, 32, 1).insert(2, segments);
}

/// EXIF with the time at which the photo was taken, and the one at which it was changed; empty texts are left out.
inline std::string exifSegment(const std::string& taken, const std::string& changed)
{
    using namespace std::string_literals;
    const auto entry = [](std::size_t tag, std::size_t type, std::size_t count, std::size_t value) {
        return bigEndian(tag, 2) + bigEndian(type, 2) + bigEndian(count) + bigEndian(value);
    };
    constexpr std::size_t kText = 2, kNumber = 4; // types
    constexpr std::size_t kFirst = 8, kSecond = 38, kTexts = 56;
    const std::string first = bigEndian(2, 2) + entry(0x0132, kText, changed.size() + 1, kTexts) +
                              entry(0x8769, kNumber, 1, kSecond) + bigEndian(0);
    const std::string second =
        bigEndian(1, 2) + entry(0x9003, kText, taken.size() + 1, kTexts + changed.size() + 1) + bigEndian(0);
    return jpegSegment(kApp1, "Exif\0\0MM\0*"s + bigEndian(kFirst) + first + second + changed + '\0' + taken + '\0');
}

/// A packet of XMP whose description has these attributes.
inline std::string xmpPacket(const std::string& attributes)
{
    return R"(<x:xmpmeta xmlns:x="adobe:ns:meta/"><rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">)"
           R"(<rdf:Description xmlns:GPano="http://ns.google.com/photos/1.0/panorama/" )"
           R"(xmlns:xmp="http://ns.adobe.com/xap/1.0/" )" +
           attributes + "/></rdf:RDF></x:xmpmeta>";
}

inline std::string xmpSegment(const std::string& attributes)
{
    return jpegSegment(kApp1, std::string("http://ns.adobe.com/xap/1.0/") + '\0' + xmpPacket(attributes));
}

/// IPTC as photo editors write it: datasets of the second record.
inline std::string iptcSegment(const std::vector<std::pair<int, std::string>>& datasets)
{
    std::string content;
    for (const auto& [number, text] : datasets) {
        content += std::string("\x1C\x02") + static_cast<char>(number) + bigEndian(text.size(), 2) + text;
    }
    const std::string resource = "8BIM" + bigEndian(0x0404, 2) + bigEndian(0, 2) + bigEndian(content.size()) + content;
    return jpegSegment(kApp13, std::string("Photoshop 3.0") + '\0' + resource + std::string(content.size() % 2, '\0'));
}

/// A PNG file that has XMP and no picture.
inline std::string pngWithXmp(const std::string& packet)
{
    using namespace std::string_literals;
    const auto chunk = [](const std::string& content) { return bigEndian(content.size() - 4) + content + "CRC!"; };
    return "\x89PNG\r\n\x1A\n" + chunk("IHDR" + bigEndian(64) + bigEndian(32) + "\x08\x02\0\0\0"s) +
           chunk("iTXtXML:com.adobe.xmp\0\0\0\0\0"s + packet) + chunk("IDAT") + chunk("IEND");
}

/// The header of a WebP file that says what is in it: 0x02 for frames, 0x04 for XMP.
inline std::string webpHeader(char what, std::size_t width, std::size_t height)
{
    return riffChunk("VP8X", what + std::string(3, '\0') + littleEndian(width - 1, 3) + littleEndian(height - 1, 3));
}

/// A WebP file that has XMP and no picture.
inline std::string webpWithXmp(const std::string& packet)
{
    return riffChunk("RIFF", "WEBP" + webpHeader('\x04', 64, 32) + riffChunk("XMP ", packet));
}

/// A WebP file of @p width x @p height whose first frame is the picture of the WebP file @p picture at @p x and @p y, even
/// numbers; it has @p frames such.
inline std::string animatedWebp(const std::string& picture, std::size_t pictureWidth, std::size_t pictureHeight,
                                std::size_t x, std::size_t y, std::size_t width, std::size_t height, int frames)
{
    constexpr std::size_t kFileHeader = 12;
    const std::string frame = littleEndian(x / 2, 3) + littleEndian(y / 2, 3) + littleEndian(pictureWidth - 1, 3) +
                              littleEndian(pictureHeight - 1, 3) + littleEndian(100, 3) + '\0' + picture.substr(kFileHeader);
    std::string chunks = webpHeader('\x02', width, height) + riffChunk("ANIM", std::string(6, '\0'));
    for (int i = 0; i < frames; ++i) {
        chunks += riffChunk("ANMF", frame);
    }
    return riffChunk("RIFF", "WEBP" + chunks);
}

/// A TIFF file of four fields, as fourFieldsJpeg() has them, in the order of bytes that its name says.
inline std::string fourFieldsTiff(std::size_t width, std::size_t height, int orientation, bool isBigEndian)
{
    const auto number = [isBigEndian](std::size_t value, int size) {
        return isBigEndian ? bigEndian(value, size) : littleEndian(value, size);
    };
    constexpr const char* kColours[] = {"\xFF\0\0", "\0\xFF\0", "\0\0\xFF", "\xFF\xFF\xFF"};
    std::string points;
    for (std::size_t y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            points.append(kColours[2 * y / height * 2 + 2 * x / width], 3);
        }
    }
    constexpr std::size_t kBits = 8 + 2 + 10 * 12 + 4; // where three numbers of bits stand, and then the points
    const std::pair<std::size_t, std::size_t> entries[] = {{256, width},
                                                           {257, height},
                                                           {258, kBits},
                                                           {259, 1},
                                                           {262, 2},
                                                           {273, kBits + 6},
                                                           {274, static_cast<std::size_t>(orientation)},
                                                           {277, 3},
                                                           {278, height},
                                                           {279, points.size()}};
    std::string file = (isBigEndian ? std::string("MM\0*", 4) : std::string("II*\0", 4)) + number(8, 4) + number(10, 2);
    for (const auto& [tag, value] : entries) {
        const bool isWide = tag == 273 || tag == 279;
        file += number(tag, 2) + number(isWide ? 4 : 3, 2) + number(tag == 258 ? 3 : 1, 4);
        file += isWide || tag == 258 ? number(value, 4) : number(value, 2) + number(0, 2);
    }
    return file + number(0, 4) + number(8, 2) + number(8, 2) + number(8, 2) + points;
}

} // namespace testsupport
