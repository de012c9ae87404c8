#include "desktop/metadata/EntryDescription.h"

#include "desktop/files/MediaTypes.h"
#include "desktop/text/NameEncoding.h"

namespace desktop {

FolderFileInfo_s describeEntry(const std::string& directory, const std::string& name, const EntryFacts& facts,
                               const MediaFacts* known)
{
    FolderFileInfo_s entry;
    entry.type = facts.type;
    entry.size = facts.size;
    entry.ctime = formatTime(facts.created);
    entry.name = encodeName(name);
    entry.path = directory + "/" + entry.name;
    entry.title = facts.type == FILE_TYPE_FOLDER ? entry.name : encodeName(nameWithoutExtension(name));
    if (known != nullptr) {
        entry.title = known->title.empty() ? entry.title : known->title;
        entry.isPhoto360 = known->panorama ? 1 : 0;
    }
    return entry;
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

media_file_info_s describeMedia(const std::string& path, FileType type, const std::string& title, const MediaFacts& facts)
{
    media_file_info_s info;
    info.path = path;
    info.type = type == FILE_TYPE_PHOTO && facts.panorama ? FILE_TYPE_PANORAMA : type;
    info.title = facts.title.empty() ? title : facts.title;
    info.year = facts.year;
    info.duration = facts.duration;
    info.width = facts.width;
    info.height = facts.height;
    info.music = {facts.artist, facts.album, facts.genre};
    return info;
}

} // namespace desktop
