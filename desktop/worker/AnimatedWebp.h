#pragma once

#include "desktop/worker/MappedFile.h"
#include "desktop/worker/PictureSource.h"

namespace desktop {

/// Whether @p file is a WebP picture of several frames, which libav does not decode.
bool isAnimatedWebp(const MappedFile& file);

/// Its first frame, where it stands within the whole picture. Throws MediaError.
FramePointer decodeAnimatedWebp(const MappedFile& file);

} // namespace desktop
