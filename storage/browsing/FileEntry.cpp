#include "storage/browsing/FileEntry.h"

namespace tvfirmware {

Json::Value fileEntry(const FolderFileInfo_s& file)
{
    Json::Value entry(Json::objectValue);
    entry["path"] = file.path;
    entry["name"] = file.name;
    entry["ctime"] = file.ctime;
    entry["size"] = static_cast<Json::UInt64>(file.size);
    return entry;
}

Json::Value folderEntry(const FolderFileInfo_s& file)
{
    Json::Value entry = fileEntry(file);
    entry["title"] = file.title;
    entry["type"] = file.type;
    return entry;
}

} // namespace tvfirmware
