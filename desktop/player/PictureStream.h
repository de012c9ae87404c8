#pragma once

#include "desktop/base/UniqueFd.h"
#include "desktop/worker/PicturePoints.h"

#include <string>

namespace desktop {

/// @p points as an uncompressed picture file (PPM) in memory; none when there is no room.
UniqueFd pictureStream(const Points& points);

/// Width times height pixels of red, green, blue and opacity, a byte each, as a PNG file; empty when it cannot be made.
std::string pngOf(const std::vector<unsigned char>& rgba, PixelSize size);

} // namespace desktop
