#include "desktop/worker/PhotoMetadata.h"

#include "desktop/worker/MediaError.h"

#include "desktop/text/AsciiText.h"

#include <exiv2/exiv2.hpp>

#include <chrono>
#include <cstdio>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace desktop {

namespace {

using ImagePointer = std::unique_ptr<Exiv2::Image>;

ImagePointer openImage(const MappedFile& file)
{
    Exiv2::enableBMFF(true); // HEIC and its like are left out unless asked for
    ImagePointer image(Exiv2::ImageFactory::open(file.data(), static_cast<long>(file.size())).release());
    if (image->mimeType().starts_with("video/")) {
        throw MediaError("The file is no photo."); // and what the library reads videos with overruns its memory
    }
    image->readMetadata();
    return image;
}

std::string exifText(const Exiv2::ExifData& exif, const char* key)
{
    const auto found = exif.findKey(Exiv2::ExifKey(key));
    return found != exif.end() ? found->toString() : "";
}

std::string xmpText(const Exiv2::XmpData& xmp, const char* key)
{
    const auto found = xmp.findKey(Exiv2::XmpKey(key));
    return found != xmp.end() ? found->toString() : "";
}

std::string iptcText(const Exiv2::IptcData& iptc, const char* key)
{
    const auto found = iptc.findKey(Exiv2::IptcKey(key));
    return found != iptc.end() ? found->toString() : "";
}

/// Whether there has been such a day.
bool isDay(int year, int month, int day)
{
    const std::chrono::year_month_day date(std::chrono::year(year), std::chrono::month(static_cast<unsigned int>(month)),
                                           std::chrono::day(static_cast<unsigned int>(day)));
    return year > 0 && month > 0 && day > 0 && date.ok();
}

/// @p date, "2024:05:01 12:00:02" or "2024-05-01T12:00:02" and the like, in our form; empty when it is no date.
std::string uniformDate(const std::string& date)
{
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    const int read =
        std::sscanf(date.c_str(), "%4d%*1[:-]%2d%*1[:-]%2d%*1[ T]%2d:%2d:%2d", &year, &month, &day, &hour, &minute, &second);
    const bool isDate = read >= 3 && isDay(year, month, day) && hour >= 0 && hour < 24 && minute >= 0 && minute < 60 &&
                        second >= 0 && second <= 60;
    char text[sizeof "YYYY-MM-DD hh:mm:ss"] = "";
    if (isDate) {
        std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u", static_cast<unsigned int>(year) % 10000,
                      static_cast<unsigned int>(month) % 100, static_cast<unsigned int>(day) % 100,
                      static_cast<unsigned int>(hour) % 100, static_cast<unsigned int>(minute) % 100,
                      static_cast<unsigned int>(second) % 100);
    }
    return text;
}

/// The dates that @p image has, as they are stored; what is trusted most comes first.
std::vector<std::string> datesOf(const Exiv2::Image& image)
{
    std::vector<std::string> dates;
    for (const char* key : {"Exif.Photo.DateTimeOriginal", "Exif.Photo.DateTimeDigitized", "Exif.Image.DateTime"}) {
        dates.push_back(exifText(image.exifData(), key));
    }
    for (const char* key : {"Xmp.exif.DateTimeOriginal", "Xmp.photoshop.DateCreated", "Xmp.xmp.CreateDate"}) {
        dates.push_back(xmpText(image.xmpData(), key));
    }
    dates.push_back(iptcText(image.iptcData(), "Iptc.Application2.DateCreated") + " " +
                    iptcText(image.iptcData(), "Iptc.Application2.TimeCreated"));
    return dates;
}

std::string dateTaken(const Exiv2::Image& image)
{
    for (const std::string& stored : datesOf(image)) {
        std::string date = uniformDate(stored);
        if (!date.empty()) {
            return date;
        }
    }
    return "";
}

// Other projections, as of cylinders, do not go all around.
bool isPanorama(const Exiv2::Image& image)
{
    // The namespace is not one of the library's own.
    Exiv2::XmpProperties::registerNs("http://ns.google.com/photos/1.0/panorama/", "GPano");
    const std::string viewer = lowerCase(trimmed(xmpText(image.xmpData(), "Xmp.GPano.UsePanoramaViewer")));
    const std::string projection = lowerCase(trimmed(xmpText(image.xmpData(), "Xmp.GPano.ProjectionType")));
    return projection == "equirectangular" && viewer != "false";
}

// The decoder of JPEG XL turns it, as the picture itself says; what EXIF says of it is not to count.
bool turnsItself(const MappedFile& file)
{
    constexpr std::string_view kBegin("\0\0\0\x0CJXL ", 8);
    return std::string_view(reinterpret_cast<const char*>(file.data()), file.size()).starts_with(kBegin);
}

Turn turnOf(const Exiv2::Image& image)
{
    constexpr Turn kTurns[] = {{false, 0}, {true, 0}, {false, 2}, {true, 2}, {true, 3}, {false, 1}, {true, 1}, {false, 3}};
    const auto found = Exiv2::orientation(image.exifData());
    const long orientation = found != image.exifData().end() && found->count() > 0 ? found->toLong() : 1;
    return orientation >= 1 && orientation <= 8 ? kTurns[orientation - 1] : Turn();
}

} // namespace

MediaMetadata readPhotoMetadata(const MappedFile& file)
try {
    const ImagePointer image = openImage(file);
    const Turn turn = turnsItself(file) ? Turn() : turnOf(*image);
    MediaMetadata metadata;
    metadata.taken = dateTaken(*image);
    metadata.width = image->pixelWidth();
    metadata.height = image->pixelHeight();
    if (turn.swapsSides()) {
        std::swap(metadata.width, metadata.height);
    }
    metadata.rotation = turn.degrees();
    metadata.panorama = isPanorama(*image);
    return metadata;
} catch (const Exiv2::AnyError& error) {
    throw MediaError(error.what());
}

Turn readPhotoTurn(const MappedFile& file)
try {
    return turnsItself(file) ? Turn() : turnOf(*openImage(file));
} catch (const Exiv2::AnyError&) {
    return Turn();
} catch (const MediaError&) {
    return Turn();
}

} // namespace desktop
