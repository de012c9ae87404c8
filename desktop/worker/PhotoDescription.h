#pragma once

#include "desktop/workers/MediaMetadata.h"

namespace desktop {

/// The metadata of the photo @p fd, of whatever format. Throws MediaError for what is no photo.
MediaMetadata describePhoto(int fd);

} // namespace desktop
