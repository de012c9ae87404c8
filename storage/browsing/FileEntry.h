#pragma once

#include "platform/SocMwTypes.h"

#include <json/json.h>

namespace tvfirmware {

/// What every list tells of a file: "path", "name", "ctime", "size".
Json::Value fileEntry(const FolderFileInfo_s& file);

/// fileEntry with "title" and "type", for the lists that show folders.
Json::Value folderEntry(const FolderFileInfo_s& file);

} // namespace tvfirmware
