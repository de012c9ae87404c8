#pragma once

#include "desktop/formats/PlaylistEntry.h"

#include <string>

namespace desktop {

/// The tracks of the XSPF playlist @p content, as far as it is well formed; texts are UTF-8.
PlaylistEntries parseXspf(std::string content);

} // namespace desktop
