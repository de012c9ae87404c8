#pragma once

#include <taglib/mpegfile.h>

namespace desktop {

/// The length of @p file, in milliseconds, by all its frames, when their bit rates differ and no header tells how many there
/// are; 0 when the tag library's reckoning by one frame holds.
int lengthOfChangingRate(TagLib::MPEG::File& file);

} // namespace desktop
