#pragma once

#include "desktop/workers/MediaMetadata.h"

#include <optional>

namespace desktop {

/// The tags and the length of the music in @p fd; nothing for what the tag library does not know.
std::optional<MediaMetadata> readMusicMetadata(int fd);

} // namespace desktop
