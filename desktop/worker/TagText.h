#pragma once

#include "desktop/workers/MediaMetadata.h"

#include <string>
#include <string_view>

namespace desktop {

/// Makes the tags in @p metadata, as they are stored, texts that can be shown: valid UTF-8 on one line, of bounded length.
/// Bytes that are no UTF-8 are read in the charset for which all of them together speak, and UTF-8 that was stored as Latin
/// letters is set right. Of several artists or genres each is kept once, and none is empty.
void tidyTexts(MediaMetadata& metadata);

/// The year that @p date, a text of any form, begins with: four digits, or empty.
std::string yearOf(std::string_view date);

} // namespace desktop
