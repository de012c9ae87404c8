#pragma once

#include "desktop/workers/MediaPlayer.h"

#include "platform/SocMwTypes.h"

#include <string>

namespace desktop {

/// The codecs of a medium of @p kind, photo, video or music, that is called @p title. What is not known, and the fields of
/// other kinds, stay empty or 0; the numbers of codecs are those of protocol/CodecTable.h.
browser_codec describeCodecs(FileType kind, const std::string& title, const MediaFacts& facts);

/// What people want to know of a medium of @p kind, the file @p entry, that is called @p title. Its date is that of its
/// tags, else that of the entry.
meta_data_t describeMedium(FileType kind, const std::string& title, const FolderFileInfo_s& entry, const MediaFacts& facts);

} // namespace desktop
