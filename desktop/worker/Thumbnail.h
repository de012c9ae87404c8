#pragma once

#include "desktop/worker/PictureSource.h"

namespace desktop {

/// Writes @p picture, turned as it is to be shown and made to fit into @p bound, as a JPEG file into @p output. Throws
/// MediaError.
void writeThumbnail(const Picture& picture, PixelSize bound, int output);

} // namespace desktop
