#pragma once

#include "platform/SocMwTypes.h"

#include <cstddef>
#include <stop_token>
#include <string>
#include <vector>

namespace desktop {

/// The version of what is read of files, metadata and pictures alike; what was kept under an older one is not used.
constexpr int kReadingVersion = 3;

/// How many processes read media files.
constexpr std::size_t kWorkerCount = 2;

/// What a media file says of itself. Texts are UTF-8 and empty where the file has none; numbers are 0.
struct MediaMetadata {
    std::string title;
    std::string artist;
    std::string album;
    std::string genre;
    std::string year;      ///< four digits
    std::string taken;     ///< when a photo was taken, "YYYY-MM-DD hh:mm:ss" as the camera's clock had it
    int duration = 0;      ///< seconds
    int width = 0;         ///< pixels, as shown: after turning
    int height = 0;        ///< pixels, as shown
    int rotation = 0;      ///< degrees clockwise that the stored picture is turned by to be shown: 0, 90, 180, 270
    bool panorama = false; ///< a 360-degree photo
    std::string error;     ///< why the file could not be read; its other members are empty then
    bool unread = false;   ///< the error is not the file's: it was not read to its end, and another try may succeed
};

/// An open media file, and what kind it is of.
struct OpenMedia {
    int fd = -1;
    FileType type = FILE_TYPE_UNKNOWN;
};

/// Reads media files. Implementations are safe on any thread.
class MediaReader {
public:
    virtual ~MediaReader() = default;

    /// The metadata of the open regular file @p fd of kind @p type; its offset may change. Takes a few seconds at most: a
    /// file that hangs, kills or exhausts its reader has only an error.
    virtual MediaMetadata read(int fd, FileType type) = 0;

    /// The metadata of @p files, in their order, as read() returns them; once @p cancelled has a stop requested, the rest
    /// may have errors. Takes less time than one by one.
    virtual std::vector<MediaMetadata> readAll(const std::vector<OpenMedia>& files, const std::stop_token& cancelled) = 0;
};

} // namespace desktop
