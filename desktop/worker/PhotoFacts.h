#pragma once

#include "desktop/worker/MappedFile.h"
#include "desktop/worker/Turn.h"

#include "desktop/workers/MediaFacts.h"

namespace desktop {

/// What the photo in @p file tells of itself; sizes are 0 when its format keeps them where this does not look. Throws
/// MediaError for what is no photo of a known format.
MediaFacts readPhotoFacts(const MappedFile& file);

/// How the photo in @p file is to be turned; not at all when it does not say.
Turn readPhotoTurn(const MappedFile& file);

} // namespace desktop
