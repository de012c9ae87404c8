#pragma once

#include "desktop/files/EntryStatus.h"
#include "desktop/workers/MediaMetadata.h"

#include "platform/SocMwTypes.h"

#include <ctime>
#include <string>

namespace desktop {

/// Entry @p name, as bytes, of the folder whose text is @p directory, as lists show it. The title is the name without its
/// extension, whatever is known of the file.
FolderFileInfo_s describeEntry(const std::string& directory, const std::string& name, const EntryStatus& status);

/// Shows @p entry, a photo, as the 360-degree photo that it is.
void markPanorama(FolderFileInfo_s& entry);

/// What a page shows of file @p path of @p type: @p metadata, several artists or genres joined by " / ", and @p title where
/// it has none.
media_file_info_s describeMedia(const std::string& path, FileType type, const std::string& title,
                                const MediaMetadata& metadata);

/// The time @p time as "YYYY-MM-DD hh:mm:ss", local.
std::string formatTime(std::time_t time);

} // namespace desktop
