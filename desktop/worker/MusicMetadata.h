#pragma once

#include "desktop/workers/MediaMetadata.h"

namespace desktop {

/// The tags and the length of the music in @p fd. Throws MediaError for what is no media file.
MediaMetadata readMusicMetadata(int fd);

} // namespace desktop
