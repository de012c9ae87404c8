#pragma once

#include "desktop/worker/MappedFile.h"
#include "desktop/worker/Turn.h"

#include "desktop/workers/MediaMetadata.h"

namespace desktop {

/// Reads the metadata of the photo in @p file; sizes are 0 when its format keeps them where this does not look. Throws
/// MediaError for what is no photo of a known format.
MediaMetadata readPhotoMetadata(const MappedFile& file);

/// How the photo in @p file is to be turned; not at all when it does not say.
Turn readPhotoTurn(const MappedFile& file);

} // namespace desktop
