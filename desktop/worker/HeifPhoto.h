#pragma once

#include "desktop/worker/MappedFile.h"
#include "desktop/worker/PictureSource.h"

#include "desktop/workers/MediaMetadata.h"

namespace desktop {

// Photos of the HEIF family, HEIC and AVIF. Such a file says itself, apart from EXIF, how it is cropped and turned; its
// picture and its size are given as they are to be shown.

/// Loads what decodes them; before this process gives up opening files.
void prepareHeif();

bool isHeif(const MappedFile& file);

/// Reads the photo's metadata. Throws MediaError.
MediaMetadata readHeifMetadata(const MappedFile& file);

/// The photo, or the smaller one in the same file when that is enough for a picture within @p bound. Throws MediaError.
FramePointer decodeHeif(const MappedFile& file, PixelSize bound);

} // namespace desktop
