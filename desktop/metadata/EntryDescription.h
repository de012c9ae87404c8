#pragma once

#include "desktop/files/EntryStatus.h"
#include "desktop/workers/MediaMetadata.h"

#include "platform/SocMwTypes.h"

#include <ctime>
#include <string>

namespace desktop {

/// Entry @p name, as bytes, of the folder whose text is @p directory, as lists show it; @p known may be null.
FolderFileInfo_s describeEntry(const std::string& directory, const std::string& name, const EntryStatus& status,
                               const MediaMetadata* known = nullptr);

/// What a page shows of file @p path of @p type: @p metadata, and @p title where it has none.
media_file_info_s describeMedia(const std::string& path, FileType type, const std::string& title,
                                const MediaMetadata& metadata);

/// The time @p time as "YYYY-MM-DD hh:mm:ss", local.
std::string formatTime(std::time_t time);

} // namespace desktop
