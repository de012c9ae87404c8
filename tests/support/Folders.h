#pragma once

#include "platform/SocMwTypes.h"

#include <string>

/// A folder entry whose every field differs from the others'.
inline FolderFileInfo_s folderFile(const std::string& path, int type = 4, std::uint64_t size = 5000000000ULL)
{
    FolderFileInfo_s file;
    file.id = 77;
    file.type = type;
    file.size = size;
    file.ctime = "time of " + path;
    file.name = "name of " + path;
    file.path = path;
    file.title = "title of " + path;
    return file;
}
