#pragma once

#include "desktop/base/UniqueFd.h"

#include <string>

namespace desktop {

/// The subtitles that the .idx file's text @p index describes and the file in memory @p pictures holds, as a Matroska file
/// in memory; none when they are damaged.
UniqueFd vobSubAsMatroska(const std::string& index, int pictures);

} // namespace desktop
