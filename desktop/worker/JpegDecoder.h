#pragma once

#include "desktop/worker/PictureSource.h"

namespace desktop {

/// Decodes the JPEG file @p bytes in the smallest size that is enough for a picture within @p bound, which costs a fraction
/// of the whole. A damaged one gives what is there. Null for what is no JPEG of this decoder's kinds.
FramePointer decodeJpeg(const unsigned char* bytes, std::size_t size, PixelSize bound);

} // namespace desktop
