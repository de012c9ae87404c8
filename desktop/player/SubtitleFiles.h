#pragma once

#include "desktop/base/UniqueFd.h"
#include "desktop/workers/MediaPlayer.h"

#include <string>
#include <vector>

namespace desktop {

/// A subtitle file beside a video, read into memory.
struct StoredSubtitle {
    std::string name;
    std::string language;
    std::string text;  ///< the file's bytes, of the .idx file too; empty when it could not be read
    UniqueFd pictures; ///< of an .idx file: what belongs to it, in memory
};

/// Reads @p file. A file that is too large, or cannot be read, has no text.
StoredSubtitle storeSubtitle(SubtitleFile file);

/// A file in memory, as mpv reads it: the text in UTF-8, read in @p charset, or in the one that it seems to be in when
/// @p charset is empty; pictures in Matroska. None when it cannot be made.
UniqueFd playableSubtitle(const StoredSubtitle& subtitle, const std::string& charset);

} // namespace desktop
