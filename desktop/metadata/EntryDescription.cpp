#include "desktop/metadata/EntryDescription.h"

#include "desktop/files/MediaTypes.h"
#include "desktop/text/NameEncoding.h"

namespace desktop {

namespace {

std::string joined(const std::vector<std::string>& values)
{
    std::string text;
    for (const std::string& value : values) {
        text += (text.empty() ? "" : " / ") + value;
    }
    return text;
}

} // namespace

FolderFileInfo_s describeEntry(const std::string& directory, const std::string& name, const EntryStatus& status)
{
    FolderFileInfo_s entry;
    entry.type = status.type;
    entry.size = status.size;
    entry.ctime = formatTime(status.created);
    entry.name = encodeName(name);
    entry.path = directory + "/" + entry.name;
    entry.title = status.type == FILE_TYPE_FOLDER ? entry.name : encodeName(nameWithoutExtension(name));
    return entry;
}

void markPanorama(FolderFileInfo_s& entry)
{
    entry.type = FILE_TYPE_PANORAMA;
    entry.isPhoto360 = 1;
}

std::string formatTime(std::time_t time)
{
    std::tm local = {};
    char text[sizeof "YYYYYYYYYY-MM-DD hh:mm:ss"] = {};
    if (localtime_r(&time, &local) != nullptr) {
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    }
    return text;
}

media_file_info_s describeMedia(const std::string& path, FileType type, const std::string& title,
                                const MediaMetadata& metadata)
{
    media_file_info_s info;
    info.path = path;
    info.type = type == FILE_TYPE_PHOTO && metadata.panorama ? FILE_TYPE_PANORAMA : type;
    info.title = metadata.title.empty() ? title : metadata.title;
    info.year = metadata.year;
    info.duration = metadata.duration;
    info.width = metadata.width;
    info.height = metadata.height;
    info.music = {joined(metadata.artists), metadata.album, joined(metadata.genres)};
    return info;
}

} // namespace desktop
